#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoFunction.h>
#include <talvo/foundation/TalvoInteger.h>
#include <talvo/values/TalvoAttributeList.h>

#include <string>

namespace {

std::string names(TalvoList* list) {
    std::string result;
    for (int i = 1; i <= list->getNumberOfItems(); ++i) {
        const char* name = static_cast<TalvoAttribute*>(list->getNthItem(i))->getName();
        result += (i > 1 ? "," : "") + std::string(name ? name : "(null)");
    }
    return result;
}

}  // namespace

TEST(TalvoAttributeList, FindAttributeGivesTheFirstOfANameGettersDefaultOnlyWhenAbsent) {
    TalvoAttributeList list;
    TalvoAttribute* first = new TalvoAttribute("a", 1);
    list.insertItemLast(first);
    list.insertItemLast(new TalvoAttribute("a", 2));
    list.insertItemLast(new TalvoAttribute(static_cast<const char*>(nullptr), 3));
    EXPECT_EQ(list.findAttribute("a"), first);
    EXPECT_EQ(list.getValueOfAttributeAsInt(nullptr, 0), 3);  // null matches only null
    list.resetValueOfAttribute("a");
    EXPECT_EQ(list.getValueOfAttributeAsInt("a", 0), 2);
    int box = 5;  // getters give defaults only for absent attributes
    list.setValueOfAttribute("i", 7);
    list.setValueOfAttribute("p", &box, TalvoFunction::doNothing, 4);
    EXPECT_EQ(list.getValueOfAttributeAsString("i", "default"), nullptr);  // not a string
    EXPECT_STREQ(list.getValueOfAttributeAsString("absent", "default"), "default");
    EXPECT_EQ(list.getValueOfAttributeAsPointerOfCode("p", 3, &box), nullptr);
    EXPECT_EQ(list.getValueOfAttributeAsPointerOfCode("absent", 4, &box), nullptr);  // never the default
    EXPECT_FALSE(list.isNilAttribute("absent"));
}

// Setters of every kind: a new attribute comes from the matching constructor
// (a pointer value makes it private), an existing one keeps its flags.
TEST(TalvoAttributeList, SettersAndGetters_OfEveryKind) {
    TalvoAttributeList list;
    int box = 5;
    TalvoConstant one("1"), shared(&box, TalvoFunction::doNothing, 2);
    TalvoAttribute* p = list.setValueOfAttribute("p", TalvoInteger::allocate(5), TalvoInteger::free, 1);
    EXPECT_EQ(list.setValueOfAttribute("p", true), p);  // releases the box
    EXPECT_TRUE(p->isBool() && p->isPrivate());
    list.setValueOfAttribute("q", &shared);
    EXPECT_FALSE(list.hasPublicAttribute());
    list.setValueOfAttribute("d", 2.5);
    EXPECT_TRUE(list.hasPublicAttribute());
    list.setValueOfAttribute("s", &one);
    EXPECT_TRUE(list.hasAttribute("q") && !list.hasAttribute("Q") && !list.hasAttribute(nullptr));
    EXPECT_EQ(list.getValueOfAttribute("p"), p->getValue());
    EXPECT_EQ(list.getValueOfAttribute("absent"), nullptr);
    EXPECT_TRUE(list.getValueOfAttributeAsBool("s", false));  // atoi("1")
    EXPECT_TRUE(list.getValueOfAttributeAsBool("absent", true));
    EXPECT_EQ(*static_cast<double*>(list.getValueOfAttributeAsPointer("d", nullptr)), 2.5);  // the value slot
    EXPECT_STREQ(static_cast<char*>(list.getValueOfAttributeAsPointer("s", nullptr)), "1");
    EXPECT_NE(list.getValueOfAttributeAsPointer("s", nullptr), one.toString());  // a copy
    EXPECT_EQ(list.getValueOfAttributeAsPointer("q", nullptr), &box);
    EXPECT_EQ(list.getValueOfAttributeAsPointer("absent", &one), &one);
    EXPECT_TRUE(list.findAttribute("q")->isPrivate());
    TalvoAttribute* s = list.findAttribute("s");
    EXPECT_TRUE(list.setValueOfAttribute("s") == s && s->isNil());
    EXPECT_TRUE(list.setValueOfAttribute("s", &box, TalvoFunction::doNothing, 3) == s && s->isPublic());
    EXPECT_TRUE(list.setValueOfAttribute("b", false)->isPublic());
    EXPECT_EQ(list.setValueOfAttribute("p", "one"), p);
    EXPECT_TRUE(p->isString() && p->isPrivate());
    EXPECT_EQ(names(&list), "p,q,d,s,b");
}

TEST(TalvoAttributeList, DecrementAndIncrement_CreateWithTheAmountItself) {
    TalvoAttributeList list;
    TalvoAttribute* n = list.decrementValueOfAttribute("n", 2);
    EXPECT_EQ(n->getValueAsInt(), 2);  // not -2
    list.decrementValueOfAttribute("n", 2);
    EXPECT_EQ(n->getValueAsInt(), 0);
    list.setValueOfAttribute("x", 1.0);
    list.decrementValueOfAttribute("x", 1.5);  // the double overload adds
    EXPECT_EQ(list.getValueOfAttributeAsDouble("x", 0), 2.5);
    TalvoAttribute* s = list.setValueOfAttribute("s", "text");
    EXPECT_EQ(list.incrementValueOfAttribute("s", 1), s);
    EXPECT_STREQ(s->getValueAsString(), "text");
}

TEST(TalvoAttributeList, ResetAndCollect_SelectByBothMasks) {
    TalvoAttributeList list;
    list.setValueOfAttribute("public", 1);
    list.setValueOfAttribute("private", 2)->setPrivacy(TalvoAttribute::Private);
    list.setValueOfAttribute("pointer", TalvoInteger::allocate(3), TalvoInteger::free, 0);
    list.setValueOfAttribute("inherited", 4)->setLocality(TalvoAttribute::Inherited);
    TalvoList collected;
    list.collectAttributes(&collected, 2, 7);
    EXPECT_EQ(names(&collected), "private,pointer");
    collected.removeItems();
    list.resetValuesOfAttributes(2, 7);
    EXPECT_EQ(names(&list), "public,inherited");
}

TEST(TalvoAttributeList, SetValuesOfAttributes_CopiesValuesAndFlagsInPlace) {
    TalvoAttributeList mine, other;
    mine.setValueOfAttribute("a", 1);
    mine.setValueOfAttribute("b", 2);
    TalvoAttribute* b = other.setValueOfAttribute("b", "two");
    b->setLocality(TalvoAttribute::Synthesized);
    other.setValueOfAttribute("c", 3.5);
    mine.setValuesOfAttributes(&other);
    mine.setValuesOfAttributes(&mine);
    EXPECT_EQ(names(&mine), "a,b,c");
    TalvoAttribute* mineB = mine.findAttribute("b");
    EXPECT_NE(mineB->getValueAsString(), b->getValueAsString());  // a copy
    EXPECT_TRUE(mineB->isSynthesized());
}
