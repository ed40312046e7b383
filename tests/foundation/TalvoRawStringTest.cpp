#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoMemoryManager.h>
#include <talvo/foundation/TalvoRawString.h>

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

// Freeing null still lowers the balance and is reported.
TEST(TalvoRawString, BuildingOperationsAndFreeNull) {
    TalvoMemoryManager::traceNew(nullptr, "TalvoRawString");
    TalvoRawString::free(nullptr);
    EXPECT_EQ(readDumpWithoutDates(), "[banner]\nAttempt to free a NULL pointer.\n");
    EXPECT_EQ(TalvoRawString::copy(nullptr), nullptr);
    EXPECT_EQ(take(TalvoRawString::concat(nullptr, "x")), "x");
    char buffer[8] = "xxxxxxx";
    TalvoRawString::overwrite(buffer, "ab");
    EXPECT_STREQ(buffer, "ab");
    EXPECT_EQ(take(TalvoRawString::toString(1e20)), "1e+20");
}

TEST(TalvoRawString, IsIntRequiresExactRoundTripIsDoubleIsLenient) {
    struct Case {
        const char* text;
        bool isInt;
        int value;
    };
    const Case cases[] = {
        {"-5", true, -5},    {"+5", false, 5},      {" 7", false, 7},      {"12abc", false, 12},
        {"2147483648", false, 2147483647}, {"-2147483648", true, -2147483647 - 1},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(TalvoRawString::isInt(c.text), c.isInt) << '"' << c.text << '"';
        EXPECT_EQ(TalvoRawString::toInt(c.text), c.value) << '"' << c.text << '"';
    }
    EXPECT_FALSE(TalvoRawString::isInt(nullptr));
    // isDouble takes any leading number; a zero only in the spellings it accepts.
    const char* doubles[] = {"2abc", "nan", "0.00"}, *notDoubles[] = {"abc", "0.000", "-0", "0e0", " 0"};
    for (const char* text : doubles)
        EXPECT_TRUE(TalvoRawString::isDouble(text)) << '"' << text << '"';
    for (const char* text : notDoubles)
        EXPECT_FALSE(TalvoRawString::isDouble(text)) << '"' << text << '"';
    EXPECT_DOUBLE_EQ(TalvoRawString::toDouble(" 2.5x"), 2.5);
}

TEST(TalvoRawString, CompareOrdersNullFirstBytesUnsignedOrNumerically) {
    EXPECT_EQ(TalvoRawString::compare(nullptr, item("")), -1);
    EXPECT_EQ(TalvoRawString::compare(item("ab"), item("abc")), -1);
    EXPECT_EQ(TalvoRawString::compare(item("\xc8"), item("\x64")), 1);  // 200 after 100
    EXPECT_EQ(TalvoRawString::reverseCompare(nullptr, item("")), 1);
    EXPECT_EQ(TalvoRawString::compareNumerically(item("abc"), item("0")), 0);
    EXPECT_EQ(TalvoRawString::compareNumerically(item("nan"), item("1")), -1);
    EXPECT_EQ(TalvoRawString::compareNumerically(item("1"), item("nan")), -1);
    EXPECT_EQ(TalvoRawString::reverseCompareNumerically(item("10"), item("9")), -1);
}

TEST(TalvoRawString, PredicatesAndAffixesFollowNullRules) {
    bool (*predicates[])(const char*, const char*) = {
        TalvoRawString::isEqual,       TalvoRawString::isDifferent,   TalvoRawString::isLessThan,
        TalvoRawString::isLessOrEqual, TalvoRawString::isGreaterThan, TalvoRawString::isGreaterOrEqual};
    // The answers of the predicates above, in that order.
    struct {
        const char* x;
        const char* y;
        const char* answers;
    } cases[] = {{nullptr, nullptr, "100101"}, {nullptr, "a", "011100"}, {"a", nullptr, "010011"}, {"a", "a", "100101"}};
    for (const auto& c : cases) {
        std::string answers;
        for (auto predicate : predicates)
            answers += predicate(c.x, c.y) ? '1' : '0';
        EXPECT_EQ(answers, c.answers) << (c.x ? c.x : "null") << " vs " << (c.y ? c.y : "null");
    }
    EXPECT_TRUE(TalvoRawString::isSuffix("", "x"));
    EXPECT_FALSE(TalvoRawString::isSuffix("xy", "y"));
    EXPECT_FALSE(TalvoRawString::isPrefix(nullptr, "x"));
}
