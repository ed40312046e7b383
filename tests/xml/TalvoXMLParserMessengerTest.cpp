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
    TalvoXMLParserMessenger* messenger = new TalvoXMLParserMessenger();
    EXPECT_STREQ(messenger->getMessageText(1001), "Unexpected end of file\n");
    EXPECT_STREQ(messenger->getMessageText(1010), "No opening tag\n");
    EXPECT_STREQ(messenger->getMessageText(1013), "Non closed tag(s)\n");
    for (int code = 1001; code <= 1013; ++code)
        EXPECT_NE(messenger->getMessageText(code), nullptr) << code;
    for (int code : {1000, 1014, 0, -1, INT_MIN, INT_MAX})
        EXPECT_EQ(messenger->getMessageText(code), nullptr) << code;
    delete messenger;
}
