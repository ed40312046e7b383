#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoCharBuffer.h>

#include <string>

// A buffer that never allocated holds no string at all, and copies, pops and
// resets as an empty one without allocating.
TEST(TalvoCharBuffer, NeverAllocated_HasNoStringUntilFirstAppend) {
    TalvoCharBuffer never(32);
    EXPECT_EQ(never.getString(), nullptr);
    EXPECT_EQ(never.copyString(), nullptr);
    EXPECT_EQ(never.popChar(), '\0');
    never.reset();
    EXPECT_EQ(never.getString(), nullptr);
    EXPECT_EQ(never.getLength(), 0);
    TalvoCharBuffer* copy = never.copy();
    EXPECT_EQ(copy->getString(), nullptr);
    TalvoCharBuffer::free(copy);
    TalvoCharBuffer::free(nullptr);
    never.append("");  // "" allocates the first block
    ASSERT_NE(never.getString(), nullptr);
    EXPECT_STREQ(never.getString(), "");
    never.append(static_cast<const char*>(nullptr));
    EXPECT_EQ(never.getLength(), 0);
}

TEST(TalvoCharBuffer, AppendChar_WithIncrementOneKeepsTerminatorInsideBlock) {
    // The string constructor of "" makes an increment of 1; ASan checks the block.
    TalvoCharBuffer buffer("");
    const std::string text = "abcdefghij";
    for (char c : text)
        buffer.append(c);
    EXPECT_STREQ(buffer.getString(), text.c_str());
    EXPECT_EQ(buffer.getLength(), 10);
}

TEST(TalvoCharBuffer, AppendOwnText_CopiesBeforeReleasingOldBlock) {
    TalvoCharBuffer buffer(2);
    buffer.append("abc");
    buffer.append(buffer.getString());
    EXPECT_STREQ(buffer.getString(), "abcabc");
}

TEST(TalvoCharBuffer, AppendNumbers_UsesIntAndShortestDoubleFormats) {
    TalvoCharBuffer buffer(32);
    buffer.append(-42);
    buffer.append(' ');
    buffer.append(0.1);
    buffer.append(' ');
    buffer.append(1234567.0);
    EXPECT_STREQ(buffer.getString(), "-42 0.1 1.23457e+06");
}

TEST(TalvoCharBuffer, PopChar_LeavesTerminatorInPlace) {
    TalvoCharBuffer buffer("ab");
    EXPECT_EQ(buffer.popChar(), 'b');
    EXPECT_EQ(buffer.getLength(), 1);
    EXPECT_STREQ(buffer.getString(), "ab");  // shown until the next append
    buffer.pushChar('c');
    EXPECT_STREQ(buffer.getString(), "ac");
    buffer.popChar();
    buffer.popChar();
    EXPECT_EQ(buffer.popChar(), '\0');  // empty
    EXPECT_EQ(buffer.getLength(), 0);
}

TEST(TalvoCharBuffer, Reset_EmptiesButKeepsBlock) {
    TalvoCharBuffer buffer("hello");
    const char* block = buffer.getString();
    buffer.reset();
    EXPECT_EQ(buffer.getString(), block);
    EXPECT_STREQ(buffer.getString(), "");
}

TEST(TalvoCharBuffer, CopiesAreIndependent) {
    TalvoCharBuffer buffer("text");
    char* copy = buffer.copyString();
    EXPECT_STREQ(copy, "text");
    EXPECT_NE(copy, buffer.getString());
    TalvoRawString::free(copy);
    TalvoCharBuffer* whole = buffer.copy();
    EXPECT_STREQ(whole->getString(), "text");
    EXPECT_NE(whole->getString(), buffer.getString());
    TalvoCharBuffer::free(whole);
}

TEST(TalvoCharBuffer, ComputeKey_WeightsRunOddThenMinusOneAtThirty) {
    struct Case {
        std::string text;
        int key;
    } cases[] = {
        {"", 0},
        {"a", 97},
        {"ab", 97 + 3 * 98},
        {std::string(29, 'a'), 97 * (29 * 29)},  // 1 + 3 + ... + 57
        {std::string(30, 'a'), 97 * (29 * 29 - 1)},
        {std::string(31, 'a'), 97 * (29 * 29 - 1 + 1)},
        {"\xff", -1},  // bytes count as signed
    };
    for (const Case& c : cases) {
        TalvoCharBuffer buffer(c.text.c_str());
        EXPECT_EQ(buffer.computeKey(), c.key) << "length " << c.text.size();
    }
}

TEST(TalvoCharBuffer, Compare_NeverAllocatedSortsFirst) {
    TalvoCharBuffer never(4), otherNever(8), empty(""), a("a"), b("b"), high("\xe9");
    struct Case {
        TalvoCharBuffer* left;
        TalvoCharBuffer* right;
        int expected;
    } cases[] = {
        {&never, &otherNever, 0}, {&never, &empty, -1}, {&empty, &never, 1},
        {&empty, &a, -1},         {&a, &b, -1},         {&b, &a, 1},
        {&a, &a, 0},              {&b, &high, -1},      {&never, nullptr, 0},
        {&a, nullptr, 1},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.left->compare(c.right), c.expected);
}

TEST(TalvoCharBuffer, Growth_MovesBlockOnlyWhenIncrementStepIsDue) {
    TalvoCharBuffer buffer(4);
    buffer.append('a');  // first block: 4 bytes
    const char* block = buffer.getString();
    buffer.append('b');
    buffer.append('c');
    EXPECT_EQ(buffer.getString(), block);  // "abc" and the terminator fill it
    buffer.append('d');
    EXPECT_NE(buffer.getString(), block);  // 8 bytes now
    block = buffer.getString();
    buffer.append("efg");
    buffer.append("");
    EXPECT_EQ(buffer.getString(), block);
    buffer.append("hijklmnop");  // 7 + 9 + 1 bytes: three steps to 20, one move
    EXPECT_NE(buffer.getString(), block);
    block = buffer.getString();
    buffer.append('q');
    buffer.append('r');
    buffer.append('s');  // append(char) moves only when the terminator has no room
    EXPECT_EQ(buffer.getString(), block);
    EXPECT_STREQ(buffer.getString(), "abcdefghijklmnopqrs");
    EXPECT_EQ(buffer.getLength(), 19);
}
