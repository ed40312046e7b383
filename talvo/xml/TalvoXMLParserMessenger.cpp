#include <talvo/xml/TalvoXMLParserMessenger.h>

namespace {

const char* const MessageTypes[] = {"line", "SYNTAX ERROR", "ERROR", "WARNING"};
const int MessageTypeCount = sizeof MessageTypes / sizeof MessageTypes[0];

const int FirstMessageCode = TalvoXMLParserMessenger::UnexpectedEndOfFile;
const char* const MessageTexts[] = {
    "Unexpected end of file\n",
    "A char was expected\n",
    "A '\"' was expected\n",
    "Ill formed header\n",
    "A '-' was expected\n",
    "Ill formed CDATA section\n",
    "A '=' was expected\n",
    "Ill formed attribute name\n",
    "A '>' was expected\n",
    "No opening tag\n",
    "Open and close tags do not correspond\n",
    "Ill formed tag name\n",
    "Non closed tag(s)\n",
};
const int MessageTextCount = sizeof MessageTexts / sizeof MessageTexts[0];

}  // namespace

TalvoXMLParserMessenger::TalvoXMLParserMessenger() = default;

TalvoXMLParserMessenger::~TalvoXMLParserMessenger() = default;

const char* TalvoXMLParserMessenger::getMessageType(int type) {
    return type >= 0 && type < MessageTypeCount ? MessageTypes[type] : nullptr;
}

const char* TalvoXMLParserMessenger::getMessageText(int code) {
    if (code < FirstMessageCode || code - FirstMessageCode >= MessageTextCount)
        return nullptr;
    return MessageTexts[code - FirstMessageCode];
}
