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

TEST(TalvoRawString, ExtractSplitSubstitute_SubjectFirst) {
    EXPECT_EQ(take(TalvoRawString::extractPattern("the 42 cats", "[0-9]+")), "42");
    EXPECT_EQ(take(TalvoRawString::extractPattern("abc", "x")), "<null>");
    EXPECT_EQ(takeList(TalvoRawString::splitWithPattern("a1b22c", "[0-9]+")),
              (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_TRUE(takeList(TalvoRawString::splitWithPattern("", ",")).empty());
    EXPECT_EQ(take(TalvoRawString::substitutePattern("foo", "o", "0")), "f0o");
    EXPECT_EQ(take(TalvoRawString::substitutePatterns("a-b", "(.)-(.)", "\\2-\\1")), "b-a");
    EXPECT_EQ(take(TalvoRawString::substitutePatterns("aa", "a", "")), "<null>");
    testing::internal::CaptureStderr();
    EXPECT_TRUE(takeList(TalvoRawString::splitWithPattern("a,b", "(")).empty());
    EXPECT_EQ(take(TalvoRawString::substitutePatterns("a", "(", "x")), "<null>");
    testing::internal::GetCapturedStderr();
}
