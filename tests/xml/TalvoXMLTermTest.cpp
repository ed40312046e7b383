#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/xml/TalvoXMLAttribute.h>
#include <talvo/xml/TalvoXMLTerm.h>

TEST(TalvoXMLTerm, CompareTagOrdersUnsignedWithNullFirst) {
    TalvoXMLTerm* a = new TalvoXMLTerm(TalvoXMLTerm::node, "a");
    TalvoXMLTerm* high = new TalvoXMLTerm(TalvoXMLTerm::node, "\xE9");
    TalvoXMLTerm* none = new TalvoXMLTerm(TalvoXMLTerm::node, nullptr);
    EXPECT_EQ(a->compareTag("b"), -1);
    EXPECT_EQ(a->compareTag("A"), 1);
    EXPECT_EQ(a->compareTag(nullptr), 1);
    EXPECT_EQ(high->compareTags(a), 1);  // 0xE9 is above 'a' as unsigned
    EXPECT_EQ(none->compareTag(nullptr), 0);
    EXPECT_EQ(none->compareTags(a), -1);
    char* tag = a->copyTag();  // a node has no text but its tag copies
    EXPECT_EQ(a->getText(), nullptr);
    EXPECT_STREQ(tag, "a");
    EXPECT_NE(tag, a->getTag());
    TalvoRawString::free(tag);
    for (TalvoXMLTerm* term : {a, high, none}) delete term;
}

TEST(TalvoXMLTerm, AttributeLookupFindsTheFirstOfDuplicates) {
    TalvoXMLTerm* term = new TalvoXMLTerm(TalvoXMLTerm::node, "a");
    term->addAttribute("x", "first");
    term->addAttribute("n", 12);
    term->addAttribute("x", "second");
    term->addAttribute(static_cast<TalvoXMLAttribute*>(nullptr));
    EXPECT_STREQ(term->getAttributeValue("x"), "first");
    EXPECT_EQ(term->getAttributeValueAsInt("n"), 12);
    EXPECT_EQ(term->getAttributeValue("missing"), nullptr);
    EXPECT_EQ(term->getAttributeValueAsDouble("missing"), 0.0);
    delete term;
}

TEST(TalvoXMLTerm, NthChildCountsFromZeroNthNodeChildFromOne) {
    TalvoXMLTerm* a = new TalvoXMLTerm(TalvoXMLTerm::node, "a");
    a->addChild(new TalvoXMLTerm(TalvoXMLTerm::text, "t"));
    a->addChild(new TalvoXMLTerm(TalvoXMLTerm::node, "b"));
    a->addChild(new TalvoXMLTerm(TalvoXMLTerm::comment, "c"));
    a->addChild(new TalvoXMLTerm(TalvoXMLTerm::node, "c"));
    a->addChild(new TalvoXMLTerm(TalvoXMLTerm::node, "b"));
    a->addChild(nullptr);
    EXPECT_EQ(a->getNthChild(5), nullptr);
    EXPECT_EQ(a->getNthChild(-1), nullptr);
    EXPECT_EQ(a->getNthNodeChild(0), nullptr);
    EXPECT_EQ(a->getNthNodeChild(2), a->getNthChild(3));
    EXPECT_EQ(a->getNthNodeChild(4), nullptr);
    EXPECT_EQ(a->getNumberOfChildren(), 5);
    EXPECT_EQ(a->getNumberOfNodeChildren(), 3);
    EXPECT_EQ(a->getNumberOfNodeChildrenOfTag("c"), 1);  // the comment "c" is not a node
    EXPECT_TRUE(a->findChild("c")->isComment());         // but findChild matches any type
    EXPECT_EQ(a->findChild("zz"), nullptr);
    delete a;
}
