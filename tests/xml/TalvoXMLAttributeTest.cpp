#include "support/TalvoTest.h"

#include <talvo/xml/TalvoXMLAttribute.h>

#include <string>

TEST(TalvoXMLAttribute, NumbersFormatAndConvertLikeAtoiAndAtof) {
    TalvoXMLAttribute* real = new TalvoXMLAttribute("c", 1.0 / 3.0);
    EXPECT_STREQ(real->getValue(), "0.333333");
    real->setValueAsDouble(1234567.0);
    EXPECT_STREQ(real->getValue(), "1.23457e+06");
    real->setValue("12abc");
    EXPECT_EQ(real->getValueAsInt(), 12);
    EXPECT_FALSE(real->isInt());
    real->setValue("2.5e1");
    EXPECT_DOUBLE_EQ(real->getValueAsDouble(), 25.0);
    EXPECT_EQ(real->getValueAsInt(), 2);
    EXPECT_TRUE(real->isDouble());
    real->setValue("0.000");  // zero reads as a real only when written 0, 0.0 or 0.00
    EXPECT_FALSE(real->isDouble());
    real->setValueAsInt(-42);
    EXPECT_STREQ(real->getValue(), "-42");
    EXPECT_TRUE(real->isInt());
    real->setValue(nullptr);
    EXPECT_EQ(real->getValueAsInt(), 0);
    TalvoXMLAttribute::free(real);
    TalvoXMLAttribute::free(nullptr);
}

TEST(TalvoXMLAttribute, BoolRecognisesExactLowerCaseWordsOnly) {
    struct Case { const char* value; bool isBool, asBool; } cases[] = {
        {"true", true, true}, {"false", true, false}, {"True", false, false}, {"1", false, false}};
    for (const Case& c : cases) {
        TalvoXMLAttribute* attribute = new TalvoXMLAttribute("n", c.value);
        EXPECT_EQ(attribute->isBool(), c.isBool) << c.value;
        EXPECT_EQ(attribute->getValueAsBool(), c.asBool) << c.value;
        attribute->setValueAsBool(!c.asBool);
        EXPECT_STREQ(attribute->getValue(), c.asBool ? "false" : "true");
        delete attribute;
    }
}
