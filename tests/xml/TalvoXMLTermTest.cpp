#include "support/TalvoTest.h"

#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/xml/TalvoXMLAttribute.h>
#include <talvo/xml/TalvoXMLTerm.h>

namespace {

// A node `a` whose children are: text "t", node b, comment "c", node c, node b.
TalvoXMLTerm* makeMixedNode() {
    TalvoXMLTerm* a = new TalvoXMLTerm(TalvoXMLTerm::node, "a");
    a->addChild(new TalvoXMLTerm(TalvoXMLTerm::text, "t"));
    a->addChild(new TalvoXMLTerm(TalvoXMLTerm::node, "b"));
    a->addChild(new TalvoXMLTerm(TalvoXMLTerm::comment, "c"));
    a->addChild(new TalvoXMLTerm(TalvoXMLTerm::node, "c"));
    a->addChild(new TalvoXMLTerm(TalvoXMLTerm::node, "b"));
    return a;
}

}  // namespace

TEST(TalvoXMLTerm, TypeTestsAndTexts) {
    TalvoXMLTerm* node = new TalvoXMLTerm(TalvoXMLTerm::node, "tag");
    TalvoXMLTerm* text = new TalvoXMLTerm(TalvoXMLTerm::text, "hello");
    TalvoXMLTerm* cdata = new TalvoXMLTerm(TalvoXMLTerm::CDATA, "raw");
    TalvoXMLTerm* comment = new TalvoXMLTerm(TalvoXMLTerm::comment, "-- c --");
    EXPECT_EQ(TalvoXMLTerm::text, 0);
    EXPECT_EQ(TalvoXMLTerm::CDATA, 1);
    EXPECT_EQ(TalvoXMLTerm::node, 2);
    EXPECT_EQ(TalvoXMLTerm::comment, 3);
    EXPECT_TRUE(node->isNode() && text->isText() && cdata->isCDATA() && comment->isComment());
    EXPECT_EQ(node->getText(), nullptr);  // a node holds a tag, not a text
    char* copy = node->copyTag();
    EXPECT_STREQ(copy, "tag");
    TalvoRawString::free(copy);
    EXPECT_TRUE(node->isNodeOfTag("tag"));
    EXPECT_FALSE(text->isNodeOfTag("hello"));
    TalvoXMLTerm::free(node);
    TalvoXMLTerm::free(text);
    TalvoXMLTerm::free(cdata);
    TalvoXMLTerm::free(comment);
    TalvoXMLTerm::free(nullptr);
}

TEST(TalvoXMLTerm, CompareTagOrdersUnsignedWithNullFirst) {
    TalvoXMLTerm* a = new TalvoXMLTerm(TalvoXMLTerm::node, "a");
    TalvoXMLTerm* high = new TalvoXMLTerm(TalvoXMLTerm::node, "\xE9");
    TalvoXMLTerm* none = new TalvoXMLTerm(TalvoXMLTerm::node, nullptr);
    EXPECT_EQ(a->compareTag("b"), -1);
    EXPECT_EQ(a->compareTag("a"), 0);
    EXPECT_EQ(a->compareTag("A"), 1);
    EXPECT_EQ(a->compareTag(nullptr), 1);
    EXPECT_EQ(high->compareTags(a), 1);  // 0xE9 is above 'a' as unsigned
    EXPECT_EQ(none->compareTag(nullptr), 0);
    EXPECT_EQ(none->compareTags(a), -1);
    EXPECT_EQ(TalvoXMLTerm::compareTag(a, const_cast<char*>("a")), 0);
    EXPECT_EQ(TalvoXMLTerm::compareTags(a, high), -1);
    delete a;
    delete high;
    delete none;
}

TEST(TalvoXMLTerm, AttributesKeepOrderAndDuplicates) {
    TalvoXMLTerm* term = new TalvoXMLTerm(TalvoXMLTerm::node, "a");
    EXPECT_FALSE(term->hasAttribute());
    term->addAttribute("x", "first");
    term->addAttribute("n", 12);
    term->addAttribute("d", 2.5);
    term->addAttribute("x", "second");
    term->addAttribute(new TalvoXMLAttribute("bad", "12abc"));
    term->addAttribute(static_cast<TalvoXMLAttribute*>(nullptr));
    EXPECT_TRUE(term->hasAttribute());
    EXPECT_STREQ(term->getAttributeValue("x"), "first");
    EXPECT_EQ(term->getAttributeValueAsInt("n"), 12);
    EXPECT_DOUBLE_EQ(term->getAttributeValueAsDouble("d"), 2.5);
    EXPECT_EQ(term->getAttributeValueAsInt("bad"), 12);
    EXPECT_EQ(term->getAttributeValue("missing"), nullptr);
    EXPECT_EQ(term->getAttributeValueAsInt("missing"), 0);
    EXPECT_EQ(term->getAttributeValueAsDouble("missing"), 0.0);
    EXPECT_EQ(term->findAttribute(nullptr), nullptr);

    TalvoListCursor* cursor = term->newCursorOnAttributes();
    const char* names[] = {"x", "n", "d", "x", "bad"};
    int i = 0;
    for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment())
        EXPECT_STREQ(static_cast<TalvoXMLAttribute*>(cursor->getItem())->getName(), names[i++]);
    EXPECT_EQ(i, 5);
    delete cursor;
    delete term;
}

TEST(TalvoXMLTerm, NthChildCountsFromZeroNthNodeChildFromOne) {
    TalvoXMLTerm* a = makeMixedNode();
    EXPECT_STREQ(a->getNthChild(0)->getText(), "t");
    EXPECT_STREQ(a->getNthChild(4)->getTag(), "b");
    EXPECT_EQ(a->getNthChild(5), nullptr);
    EXPECT_EQ(a->getNthChild(-1), nullptr);
    EXPECT_EQ(a->getNthNodeChild(0), nullptr);
    EXPECT_EQ(a->getNthNodeChild(1), a->getNthChild(1));
    EXPECT_EQ(a->getNthNodeChild(2), a->getNthChild(3));
    EXPECT_EQ(a->getNthNodeChild(3), a->getNthChild(4));
    EXPECT_EQ(a->getNthNodeChild(4), nullptr);
    EXPECT_EQ(a->getNumberOfChildren(), 5);
    EXPECT_EQ(a->getNumberOfNodeChildren(), 3);
    EXPECT_EQ(a->getNumberOfNodeChildrenOfTag("b"), 2);
    EXPECT_EQ(a->getNumberOfNodeChildrenOfTag("c"), 1);  // the comment "c" is not a node
    delete a;
}

TEST(TalvoXMLTerm, FindChildMatchesAnyType) {
    TalvoXMLTerm* a = makeMixedNode();
    EXPECT_TRUE(a->findChild("c")->isComment());  // the comment comes before node c
    EXPECT_TRUE(a->findChild("t")->isText());
    EXPECT_EQ(a->findChild("b"), a->getNthChild(1));
    EXPECT_EQ(a->findChild("zz"), nullptr);
    delete a;
}

TEST(TalvoXMLTerm, EmptyTermHasNoChildren) {
    TalvoXMLTerm* term = new TalvoXMLTerm(TalvoXMLTerm::text, "");
    EXPECT_FALSE(term->hasChildren());
    EXPECT_EQ(term->getNumberOfChildren(), 0);
    EXPECT_EQ(term->getNthChild(0), nullptr);
    EXPECT_EQ(term->getNthNodeChild(1), nullptr);
    term->addChild(nullptr);
    EXPECT_FALSE(term->hasChildren());
    delete term;
}

TEST(TalvoXMLTerm, DeletingAVeryDeepTreeNeedsNoRecursion) {
    const int depth = 200000;
    TalvoXMLTerm* root = new TalvoXMLTerm(TalvoXMLTerm::node, "r");
    TalvoXMLTerm* parent = root;
    for (int i = 0; i < depth; ++i) {
        TalvoXMLTerm* child = new TalvoXMLTerm(TalvoXMLTerm::node, "n");
        child->addAttribute("i", i);
        parent->addChild(new TalvoXMLTerm(TalvoXMLTerm::text, "x"));
        parent->addChild(child);
        parent = child;
    }
    delete root;  // the balance check of the test catches anything left behind
}
