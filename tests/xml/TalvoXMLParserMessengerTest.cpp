#include "support/TalvoTest.h"

#include <talvo/xml/TalvoXMLParserMessenger.h>

#include <climits>

TEST(TalvoXMLParserMessenger, MessageTypesAndTextsByIndex) {
    TalvoXMLParserMessenger* messenger = new TalvoXMLParserMessenger();
    EXPECT_STREQ(messenger->getMessageType(0), "line");
    EXPECT_STREQ(messenger->getMessageType(3), "WARNING");
    EXPECT_EQ(messenger->getMessageType(-1), nullptr);
    EXPECT_EQ(messenger->getMessageType(4), nullptr);
    EXPECT_STREQ(messenger->getMessageText(1001), "Unexpected end of file\n");
    EXPECT_STREQ(messenger->getMessageText(1013), "Non closed tag(s)\n");
    for (int code : {1000, 1014, INT_MIN})
        EXPECT_EQ(messenger->getMessageText(code), nullptr) << code;
    delete messenger;
}
