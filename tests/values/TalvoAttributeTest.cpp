#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoFunction.h>
#include <talvo/foundation/TalvoInteger.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/values/TalvoAttribute.h>

#include <string>

TEST(TalvoAttribute, Constructors_SetPrivacyByValueKindAndAreLocal) {
    int box = 1;
    TalvoConstant pointerValue(&box, TalvoFunction::doNothing, 0);
    TalvoAttribute number("b", 2), pointer("c", TalvoInteger::allocate(2), TalvoInteger::free, 1);
    TalvoAttribute fromPointer("e", &pointerValue);
    EXPECT_TRUE(number.isPublic() && number.isLocal());
    EXPECT_TRUE(pointer.isPrivate() && pointer.isLocal());
    EXPECT_TRUE(fromPointer.isPrivate() && fromPointer.isPointer());
    char* name = number.copyName();
    EXPECT_TRUE(name != number.getName() && std::string(name) == "b");
    TalvoRawString::free(name);
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
}

TEST(TalvoAttribute, Compare_ByNameThenByValue) {
    TalvoAttribute a1("a", 1), a2("a", 2), b("b", 0), noName(static_cast<const char*>(nullptr), 9), high("\xE9", 0);
    EXPECT_EQ(a2.compare(&a1), 1);
    EXPECT_EQ(a2.compare(&b), -1);
    EXPECT_EQ(noName.compare(&a1), -1);
    EXPECT_EQ(high.compare(&b), 1);
    EXPECT_EQ(a1.compareValue("1"), -2);  // int tag 2 minus string tag 4
}

TEST(TalvoAttribute, Free_IgnoresNullSilentlyButNullNameIsReported) {
    TalvoAttribute::free(nullptr);
    EXPECT_EQ(talvo_test::readDumpWithoutDates(), "<missing>");
    delete new TalvoAttribute(static_cast<const char*>(nullptr), 1);
    EXPECT_EQ(talvo_test::readDumpWithoutDates(), "[banner]\nAttempt to free a NULL pointer.\n");
}
