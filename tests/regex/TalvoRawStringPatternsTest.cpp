#include "support/TalvoTest.h"

#include "RegexTestHelpers.h"

#include <string>

using regex_test::take;

TEST(TalvoRawString, Patterns_SubjectFirstThenPattern) {
    EXPECT_EQ(TalvoRawString::matchPattern("xabba", "(a)(b)\\2\\1"), 1);
    EXPECT_EQ(TalvoRawString::matchPattern(nullptr, "a"), -1);
    EXPECT_EQ(take(TalvoRawString::extractPattern("the 42 cats", "[0-9]+")), "42");
    EXPECT_EQ(take(TalvoRawString::substitutePatterns("a-b", "(.)-(.)", "\\2-\\1")), "b-a");
    testing::internal::CaptureStderr();
    EXPECT_EQ(TalvoRawString::matchPattern("a", nullptr), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "syntax error");
}
