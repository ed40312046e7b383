// TalvoXMLParserMessenger: the texts of the XML parser's reports.
//
// It holds no data: two virtual look-ups map a message type index (0 "line",
// 1 "SYNTAX ERROR", 2 "ERROR", 3 "WARNING") and a message code (1001 to
// 1013) to constant texts. Derive from it and override both to translate the
// reports; the parser asks its messenger for every text it writes.
#pragma once

#include <talvo/foundation/TalvoExport.h>
#include <talvo/foundation/TalvoObject.h>

class TALVO_API TalvoXMLParserMessenger : public TalvoObject<TalvoXMLParserMessenger> {
public:
    static constexpr const char* ClassName = "TalvoXMLParserMessenger";

    // Message type indexes.
    enum { LineType = 0, SyntaxErrorType = 1, ErrorType = 2, WarningType = 3 };
    // Message codes of the parser's syntax errors.
    enum {
        UnexpectedEndOfFile = 1001,
        CharExpected = 1002,
        QuoteExpected = 1003,
        IllFormedHeader = 1004,
        DashExpected = 1005,
        IllFormedCData = 1006,
        EqualExpected = 1007,
        IllFormedAttributeName = 1008,
        GreaterThanExpected = 1009,
        NoOpeningTag = 1010,
        TagMismatch = 1011,
        IllFormedTagName = 1012,
        NonClosedTags = 1013
    };

    TalvoXMLParserMessenger();
    virtual ~TalvoXMLParserMessenger();
    TalvoXMLParserMessenger(const TalvoXMLParserMessenger&) = delete;
    TalvoXMLParserMessenger& operator=(const TalvoXMLParserMessenger&) = delete;

    // The text of message type 0 to 3; null for any other index.
    virtual const char* getMessageType(int type);
    // The text of message code 1001 to 1013 (each ends with a newline); null
    // for any other code.
    virtual const char* getMessageText(int code);
};
