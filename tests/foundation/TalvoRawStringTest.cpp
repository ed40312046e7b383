#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoMemoryManager.h>
#include <talvo/foundation/TalvoRawString.h>

#include <cmath>
#include <string>

using talvo_test::readDumpWithoutDates;

namespace {

void* item(const char* s) { return const_cast<char*>(s); }

// Frees a new raw string and returns its text.
std::string take(char* s) {
    std::string text = s ? s : "<null>";
    TalvoRawString::free(s);
    return text;
}

}  // namespace

// A new block is counted and zero-filled; freeing null still lowers the
// balance and is reported.
TEST(TalvoRawString, AllocateAndFree) {
    long before = TalvoMemoryManager::getAllocationBalance();
    char* block = TalvoRawString::allocate(8);
    EXPECT_EQ(TalvoMemoryManager::getAllocationBalance(), before + 1);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(block[i], 0);
    TalvoRawString::free(block);
    TalvoMemoryManager::traceNew(nullptr, "TalvoRawString");
    TalvoRawString::free(nullptr);
    EXPECT_EQ(TalvoMemoryManager::getAllocationBalance(), before);
    EXPECT_EQ(readDumpWithoutDates(), "[banner]\nAttempt to free a NULL pointer.\n");
}

TEST(TalvoRawString, BuildingOperations) {
    EXPECT_EQ(take(TalvoRawString::copy("abc")), "abc");
    EXPECT_EQ(take(TalvoRawString::copy("")), "");
    EXPECT_EQ(TalvoRawString::copy(nullptr), nullptr);
    EXPECT_EQ(take(TalvoRawString::concat("ab", "cd")), "abcd");
    EXPECT_EQ(take(TalvoRawString::concat("a", "", "c")), "ac");
    EXPECT_EQ(take(TalvoRawString::concat(nullptr, "x")), "x");
    EXPECT_EQ(TalvoRawString::getLength("hello"), 5);
    EXPECT_EQ(TalvoRawString::getLength(""), 0);
    EXPECT_EQ(TalvoRawString::getLength(nullptr), 0);

    char buffer[8] = "xxxxxxx";
    TalvoRawString::overwrite(buffer, "ab");
    EXPECT_STREQ(buffer, "ab");
    EXPECT_EQ(buffer[3], 'x');
}

TEST(TalvoRawString, ToStringFormats) {
    EXPECT_EQ(take(TalvoRawString::toString(-42)), "-42");
    EXPECT_EQ(take(TalvoRawString::toString(0.5)), "0.5");
    EXPECT_EQ(take(TalvoRawString::toString(1e20)), "1e+20");
    EXPECT_EQ(take(TalvoRawString::toString(0.1 + 0.2)), "0.3");
    EXPECT_EQ(take(TalvoRawString::toString(123456789.0)), "1.23457e+08");
}

TEST(TalvoRawString, IsIntRequiresExactRoundTrip) {
    struct Case {
        const char* text;
        bool isInt;
        int value;
    };
    const Case cases[] = {
        {"12", true, 12},     {"-5", true, -5},      {"0", true, 0},
        {"+5", false, 5},     {"007", false, 7},     {" 7", false, 7},
        {"7 ", false, 7},     {"-0", false, 0},      {"", false, 0},
        {"12abc", false, 12}, {"abc", false, 0},     {"2147483647", true, 2147483647},
        {"2147483648", false, 2147483647},           {"-2147483648", true, -2147483647 - 1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(TalvoRawString::isInt(c.text), c.isInt) << '"' << c.text << '"';
        EXPECT_EQ(TalvoRawString::toInt(c.text), c.value) << '"' << c.text << '"';
    }
    EXPECT_FALSE(TalvoRawString::isInt(nullptr));
    EXPECT_EQ(TalvoRawString::toInt(nullptr), 0);
}

TEST(TalvoRawString, IsDoubleIsLenient) {
    struct Case {
        const char* text;
        bool isDouble;
    };
    const Case cases[] = {
        {"3.5", true},  {"1e3", true},    {"2abc", true},   {"5 apples", true}, {"nan", true},
        {"0", true},    {"0.0", true},    {"0.00", true},   {"abc", false},     {"0.000", false},
        {"-0", false},  {"0e0", false},   {"", false},      {" 0", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(TalvoRawString::isDouble(c.text), c.isDouble) << '"' << c.text << '"';
    EXPECT_FALSE(TalvoRawString::isDouble(nullptr));
    EXPECT_DOUBLE_EQ(TalvoRawString::toDouble(" 2.5x"), 2.5);
}

TEST(TalvoRawString, CompareOrdersNullFirstAndBytesUnsigned) {
    EXPECT_EQ(TalvoRawString::compare(nullptr, nullptr), 0);
    EXPECT_EQ(TalvoRawString::compare(nullptr, item("")), -1);
    EXPECT_EQ(TalvoRawString::compare(item(""), nullptr), 1);
    EXPECT_EQ(TalvoRawString::compare(item("ab"), item("abc")), -1);
    EXPECT_EQ(TalvoRawString::compare(item("abd"), item("abc")), 1);
    EXPECT_EQ(TalvoRawString::compare(item("abc"), item("abc")), 0);
    EXPECT_EQ(TalvoRawString::compare(item("\xc8"), item("\x64")), 1);  // 200 after 100

    EXPECT_EQ(TalvoRawString::reverseCompare(nullptr, item("")), 1);
    EXPECT_EQ(TalvoRawString::reverseCompare(item(""), nullptr), -1);
    EXPECT_EQ(TalvoRawString::reverseCompare(item("a"), item("b")), 1);
}

TEST(TalvoRawString, CompareNumerically) {
    EXPECT_EQ(TalvoRawString::compareNumerically(item("10"), item("9")), 1);
    EXPECT_EQ(TalvoRawString::compareNumerically(item("2.50"), item("2.5")), 0);
    EXPECT_EQ(TalvoRawString::compareNumerically(item("abc"), item("0")), 0);
    EXPECT_EQ(TalvoRawString::compareNumerically(item("nan"), item("1")), -1);
    EXPECT_EQ(TalvoRawString::compareNumerically(item("1"), item("nan")), -1);
    EXPECT_EQ(TalvoRawString::reverseCompareNumerically(item("10"), item("9")), -1);
}

TEST(TalvoRawString, PredicatesFollowNullRules) {
    bool (*predicates[])(const char*, const char*) = {
        TalvoRawString::isEqual,       TalvoRawString::isDifferent,   TalvoRawString::isLessThan,
        TalvoRawString::isLessOrEqual, TalvoRawString::isGreaterThan, TalvoRawString::isGreaterOrEqual};
    // The answers of the predicates above, in that order.
    struct {
        const char* x;
        const char* y;
        const char* answers;
    } cases[] = {{nullptr, nullptr, "100101"}, {nullptr, "a", "011100"}, {"a", nullptr, "010011"},
                 {"a", "b", "011100"},         {"b", "a", "010011"},     {"a", "a", "100101"}};
    for (const auto& c : cases) {
        std::string answers;
        for (auto predicate : predicates)
            answers += predicate(c.x, c.y) ? '1' : '0';
        EXPECT_EQ(answers, c.answers) << (c.x ? c.x : "null") << " vs " << (c.y ? c.y : "null");
    }
}

TEST(TalvoRawString, PrefixAndSuffix) {
    EXPECT_TRUE(TalvoRawString::isPrefix("", "x"));
    EXPECT_TRUE(TalvoRawString::isSuffix("", "x"));
    EXPECT_TRUE(TalvoRawString::isPrefix("ab", "abc"));
    EXPECT_FALSE(TalvoRawString::isPrefix("abcd", "abc"));
    EXPECT_TRUE(TalvoRawString::isSuffix("bc", "abc"));
    EXPECT_FALSE(TalvoRawString::isSuffix("xy", "y"));
    EXPECT_FALSE(TalvoRawString::isSuffix("ab", "abc"));
    EXPECT_FALSE(TalvoRawString::isPrefix(nullptr, "x"));
    EXPECT_FALSE(TalvoRawString::isSuffix("x", nullptr));
}
