#include "support/TalvoTest.h"

#include "RegexTestHelpers.h"

#include <string>
#include <vector>

using regex_test::take;
using regex_test::takeList;

TEST(TalvoRawString, MatchPattern_SubjectFirstThenPattern) {
    EXPECT_EQ(TalvoRawString::matchPattern("xabba", "(a)(b)\\2\\1"), 1);
    EXPECT_EQ(TalvoRawString::matchPattern("abc", "d"), -1);
    EXPECT_EQ(TalvoRawString::matchPattern("", "a*"), -1);
    EXPECT_EQ(TalvoRawString::matchPattern(nullptr, "a"), -1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(TalvoRawString::matchPattern("a", "a|"), -1);
    EXPECT_EQ(TalvoRawString::matchPattern("a", nullptr), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "syntax errorsyntax error");
}

TEST(TalvoRawString, ExtractPattern_NewCopyOrNull) {
    EXPECT_EQ(take(TalvoRawString::extractPattern("the 42 cats", "[0-9]+")), "42");
    EXPECT_EQ(take(TalvoRawString::extractPattern("ab", "a+ab")), "ab");
    EXPECT_EQ(take(TalvoRawString::extractPattern("abc", "x")), "<null>");
    EXPECT_EQ(take(TalvoRawString::extractPattern("baa", "a*")), "");
}

TEST(TalvoRawString, SplitWithPattern_NewListOfNewStrings) {
    EXPECT_EQ(takeList(TalvoRawString::splitWithPattern(",a,,b,", ",")),
              (std::vector<std::string>{"", "a", "", "b"}));
    EXPECT_EQ(takeList(TalvoRawString::splitWithPattern("a1b22c", "[0-9]+")),
              (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_TRUE(takeList(TalvoRawString::splitWithPattern("", ",")).empty());
    testing::internal::CaptureStderr();
    EXPECT_TRUE(takeList(TalvoRawString::splitWithPattern("a,b", "(")).empty());
    testing::internal::GetCapturedStderr();
}

TEST(TalvoRawString, SubstitutePatterns_FirstOrEvery) {
    EXPECT_EQ(take(TalvoRawString::substitutePattern("foo", "o", "0")), "f0o");
    EXPECT_EQ(take(TalvoRawString::substitutePatterns("foo", "o", "0")), "f00");
    EXPECT_EQ(take(TalvoRawString::substitutePatterns("banana", "(a)", "<\\1>")), "b<a>n<a>n<a>");
    EXPECT_EQ(take(TalvoRawString::substitutePatterns("a-b", "(.)-(.)", "\\2-\\1")), "b-a");
    EXPECT_EQ(take(TalvoRawString::substitutePattern("", "a", "x")), "<null>");
    EXPECT_EQ(take(TalvoRawString::substitutePatterns("aa", "a", "")), "<null>");
    EXPECT_EQ(take(TalvoRawString::substitutePatterns("abc", "x*", "-")), "-a-b-c");
}
