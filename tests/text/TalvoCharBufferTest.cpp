#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoCharBuffer.h>

#include <string>

TEST(TalvoCharBuffer, NeverAllocated_HasNoStringUntilFirstAppendAndSortsFirst) {
    TalvoCharBuffer never(32);
    EXPECT_EQ(never.getString(), nullptr);
    EXPECT_EQ(never.popChar(), '\0');
    TalvoCharBuffer* copy = never.copy();
    EXPECT_EQ(copy->getString(), nullptr);
    TalvoCharBuffer::free(copy);
    TalvoCharBuffer::free(nullptr);
    never.append("");  // "" allocates the first block
    ASSERT_NE(never.getString(), nullptr);
    EXPECT_STREQ(never.getString(), "");
    TalvoCharBuffer small(4), large(8), empty(""), b("b"), high("\xe9");  // never allocated sorts first
    EXPECT_EQ(small.compare(&large), 0);
    EXPECT_EQ(small.compare(&empty), -1);
    EXPECT_EQ(b.compare(&high), -1);  // bytes compare unsigned
    EXPECT_EQ(small.compare(nullptr), 0);
    EXPECT_EQ(b.compare(nullptr), 1);
}

TEST(TalvoCharBuffer, AppendForms) {
    TalvoCharBuffer buffer("");  // an increment of 1: the terminator must stay inside the block (ASan)
    for (char c : std::string("abc")) buffer.append(c);
    buffer.append(buffer.getString());  // its own text is copied before the old block goes
    buffer.append(-42);
    buffer.append(1234567.0);
    EXPECT_STREQ(buffer.getString(), "abcabc-421.23457e+06");
}

TEST(TalvoCharBuffer, ComputeKey_WeightsRunOddThenMinusOneAtThirty) {
    struct Case { std::string text; int key; } cases[] = {
        {"ab", 97 + 3 * 98},
        {std::string(30, 'a'), 97 * (29 * 29 - 1)},  // 1 + 3 + ... + 57, then -1
        {std::string(31, 'a'), 97 * (29 * 29 - 1 + 1)},
        {"\xff", -1},  // bytes count as signed
    };
    for (const Case& c : cases) {
        TalvoCharBuffer buffer(c.text.c_str());
        EXPECT_EQ(buffer.computeKey(), c.key) << "length " << c.text.size();
    }
}
