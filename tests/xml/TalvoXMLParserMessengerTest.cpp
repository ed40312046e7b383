#include "support/TalvoTest.h"

#include <talvo/xml/TalvoXMLParserMessenger.h>

#include <climits>

TEST(TalvoXMLParserMessenger, MessageTypesByIndex) {
    TalvoXMLParserMessenger* messenger = new TalvoXMLParserMessenger();
    EXPECT_STREQ(messenger->getMessageType(0), "line");
    EXPECT_STREQ(messenger->getMessageType(1), "SYNTAX ERROR");
    EXPECT_STREQ(messenger->getMessageType(2), "ERROR");
    EXPECT_STREQ(messenger->getMessageType(3), "WARNING");
    EXPECT_EQ(messenger->getMessageType(-1), nullptr);
    EXPECT_EQ(messenger->getMessageType(4), nullptr);
    delete messenger;
}

TEST(TalvoXMLParserMessenger, MessageTextsByCode) {
    const char* texts[] = {
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
    TalvoXMLParserMessenger* messenger = new TalvoXMLParserMessenger();
    for (int code = 1001; code <= 1013; ++code)
        EXPECT_STREQ(messenger->getMessageText(code), texts[code - 1001]) << code;
    for (int code : {1000, 1014, 0, -1, INT_MIN, INT_MAX})
        EXPECT_EQ(messenger->getMessageText(code), nullptr) << code;
    delete messenger;
}
