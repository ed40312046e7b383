#include "support/TalvoTest.h"

#include "RegexTestHelpers.h"

#include <string>

using regex_test::take;

TEST(TalvoRawString, Patterns_SubjectFirstThenPattern) {
    EXPECT_EQ(TalvoRawString::matchPattern("xabba", "(a)(b)\\2\\1"), 1);
    EXPECT_EQ(TalvoRawString::matchPattern(nullptr, "a"), -1);
    EXPECT_EQ(take(TalvoRawString::extractPattern("the 42 cats", "[0-9]+")), "42");
    EXPECT_EQ(take(TalvoRawString::substitutePatterns("a-b", "(.)-(.)", "\\2-\\1")), "b-a");
    // One occurrence only; a fresh manager has no slot 0 for "\0".
    EXPECT_EQ(take(TalvoRawString::substitutePattern("foo", "o", "0")), "f0o");
    EXPECT_EQ(take(TalvoRawString::substitutePattern("a-b c-d", "(.)-(.)", "\\2-\\1[\\0]")), "b-a[] c-d");
    EXPECT_EQ(take(TalvoRawString::substitutePattern("abc", "z", "Q")), "abc");
    EXPECT_EQ(take(TalvoRawString::substitutePattern("a", "a", "")), "<null>");
    testing::internal::CaptureStderr();
    EXPECT_EQ(TalvoRawString::matchPattern("a", nullptr), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "syntax error");
}
