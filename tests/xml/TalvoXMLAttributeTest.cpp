#include "support/TalvoTest.h"

#include <talvo/xml/TalvoXMLAttribute.h>

#include <string>

TEST(TalvoXMLAttribute, ConstructorsFormatNumbers) {
    TalvoXMLAttribute* text = new TalvoXMLAttribute("a", "x y");
    TalvoXMLAttribute* integer = new TalvoXMLAttribute("b", -42);
    TalvoXMLAttribute* real = new TalvoXMLAttribute("c", 1.0 / 3.0);
    EXPECT_STREQ(text->getName(), "a");
    EXPECT_STREQ(text->getValue(), "x y");
    EXPECT_STREQ(integer->getValue(), "-42");
    EXPECT_STREQ(real->getValue(), "0.333333");
    TalvoXMLAttribute::free(text);
    TalvoXMLAttribute::free(integer);
    TalvoXMLAttribute::free(real);
    TalvoXMLAttribute::free(nullptr);
}

TEST(TalvoXMLAttribute, BoolRecognisesExactLowerCaseWordsOnly) {
    struct Case {
        const char* value;
        bool isBool;
        bool asBool;
    } cases[] = {{"true", true, true},   {"false", true, false}, {"True", false, false},
                 {"1", false, false},    {"true ", false, false}, {"", false, false}};
    for (const Case& c : cases) {
        TalvoXMLAttribute* attribute = new TalvoXMLAttribute("n", c.value);
        EXPECT_EQ(attribute->isBool(), c.isBool) << c.value;
        EXPECT_EQ(attribute->getValueAsBool(), c.asBool) << c.value;
        delete attribute;
    }
}

TEST(TalvoXMLAttribute, TypedValuesConvertLikeAtoiAndAtof) {
    TalvoXMLAttribute* attribute = new TalvoXMLAttribute("n", "12abc");
    EXPECT_EQ(attribute->getValueAsInt(), 12);
    EXPECT_FALSE(attribute->isInt());
    attribute->setValue("2.5e1");
    EXPECT_DOUBLE_EQ(attribute->getValueAsDouble(), 25.0);
    EXPECT_TRUE(attribute->isDouble());
    EXPECT_EQ(attribute->getValueAsInt(), 2);
    delete attribute;
}

TEST(TalvoXMLAttribute, SettersStoreTheirTextForms) {
    TalvoXMLAttribute* attribute = new TalvoXMLAttribute("n", "old");
    attribute->setValueAsBool(false);
    EXPECT_STREQ(attribute->getValue(), "false");
    attribute->setValueAsInt(7);
    EXPECT_STREQ(attribute->getValue(), "7");
    EXPECT_TRUE(attribute->isInt());
    attribute->setValueAsDouble(1234567.0);
    EXPECT_STREQ(attribute->getValue(), "1.23457e+06");
    attribute->setValue(nullptr);
    EXPECT_EQ(attribute->getValue(), nullptr);
    EXPECT_EQ(attribute->getValueAsInt(), 0);
    EXPECT_FALSE(attribute->isBool());
    delete attribute;
}
