#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoFunction.h>
#include <talvo/foundation/TalvoInteger.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/values/TalvoAttribute.h>

TEST(TalvoAttribute, Constructors_SetPrivacyByValueKindAndAreLocal) {
    int box = 1;
    TalvoConstant pointerValue(&box, TalvoFunction::doNothing, 0), text("t");
    TalvoAttribute plain("a"), number("b", 2), pointer("c", TalvoInteger::allocate(2), TalvoInteger::free, 1);
    TalvoAttribute fromText("d", &text), fromPointer("e", &pointerValue);
    EXPECT_TRUE(plain.isNil());
    EXPECT_TRUE(plain.isPublic() && plain.isLocal());
    EXPECT_TRUE(number.isPublic() && number.isLocal());
    EXPECT_TRUE(pointer.isPrivate() && pointer.isLocal());
    EXPECT_TRUE(fromText.isPublic());
    EXPECT_TRUE(fromPointer.isPrivate() && fromPointer.isPointer());
    EXPECT_FALSE(fromPointer.isInherited() || fromPointer.isSynthesized());
}

TEST(TalvoAttribute, Masks_MatchOnACommonBit) {
    TalvoAttribute publicOne("a", 1), privateOne("b", 1);
    privateOne.setPrivacy(TalvoAttribute::Private);
    publicOne.setLocality(TalvoAttribute::Synthesized);
    for (TalvoAttribute* a : {&publicOne, &privateOne}) {
        EXPECT_TRUE(a->doesPrivacyMatch(3));
        EXPECT_FALSE(a->doesLocalityMatch(0));
        EXPECT_TRUE(a->doesLocalityMatch(7));
    }
    EXPECT_FALSE(publicOne.doesPrivacyMatch(TalvoAttribute::Private));
    EXPECT_TRUE(privateOne.doesPrivacyMatch(TalvoAttribute::Private));
    EXPECT_TRUE(publicOne.isSynthesized());
    EXPECT_EQ(publicOne.getLocality(), TalvoAttribute::Synthesized);
}

TEST(TalvoAttribute, DecrementValue_OnlyTheIntOverloadSubtracts) {
    TalvoAttribute a("n", 10), x("x", 1.0), c("c", 10);
    TalvoConstant three(3);
    a.decrementValue(4);
    EXPECT_EQ(a.getValueAsInt(), 6);
    x.decrementValue(1.5);  // adds, as incrementValue(double) does
    EXPECT_EQ(x.getValueAsDouble(), 2.5);
    c.decrementValue(&three);  // adds too
    EXPECT_EQ(c.getValueAsInt(), 13);
    x.decrementValue(1);
    EXPECT_EQ(x.getValueAsDouble(), 1.5);
    TalvoAttribute s("s", "text");
    s.decrementValue(1);
    EXPECT_STREQ(s.getValueAsString(), "text");
}

TEST(TalvoAttribute, Getters_FollowTheValueConversions) {
    TalvoAttribute i("i", 7);
    EXPECT_EQ(*static_cast<int*>(i.getValueAsPointer()), 7);
    EXPECT_EQ(i.getValueAsPointerOfCode(0), nullptr);
    EXPECT_TRUE(i.getValue()->isInt());
    char* name = i.copyName();
    EXPECT_STREQ(name, "i");
    EXPECT_NE(name, i.getName());
    TalvoRawString::free(name);
}

TEST(TalvoAttribute, Compare_ByNameThenByValue) {
    TalvoAttribute a1("a", 1), a2("a", 2), b("b", 0), noName(static_cast<const char*>(nullptr), 9), high("\xE9", 0);
    EXPECT_EQ(a1.compare(&a2), -1);
    EXPECT_EQ(a2.compare(&a1), 1);
    EXPECT_EQ(a2.compare(&b), -1);
    EXPECT_EQ(noName.compare(&a1), -1);
    EXPECT_EQ(high.compare(&b), 1);
    EXPECT_EQ(TalvoAttribute::compare(&a1, &a1), 0);
    EXPECT_EQ(a1.compareValues(&b), 1);
    EXPECT_EQ(a1.compareValue(1.0), 0);
    EXPECT_EQ(a1.compareValue("1"), -2);  // int tag 2 minus string tag 4
}

TEST(TalvoAttribute, Free_DestroysNameAndValue) {
    TalvoAttribute::free(new TalvoAttribute("p", TalvoInteger::allocate(3), TalvoInteger::free, 4));
    TalvoAttribute::free(new TalvoAttribute("s", "v"));
    TalvoAttribute::free(nullptr);
    EXPECT_EQ(talvo_test::readDumpWithoutDates(), "<missing>");  // null ignored silently
}

TEST(TalvoAttribute, NullName_IsReportedOnReleaseWithoutUncounting) {
    delete new TalvoAttribute(static_cast<const char*>(nullptr), 1);
    EXPECT_EQ(talvo_test::readDumpWithoutDates(), "[banner]\nAttempt to free a NULL pointer.\n");
}
