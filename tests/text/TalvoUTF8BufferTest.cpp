#include "support/TalvoTest.h"

#include <talvo/text/TalvoUTF8Buffer.h>

#include <string>

namespace {

std::string textOf(const TalvoUTF8Buffer& buffer) {
    std::string bytes;
    if (buffer.getBytes())
        bytes.assign(reinterpret_cast<const char*>(buffer.getBytes()), static_cast<std::size_t>(buffer.getByteLength()));
    return bytes + " #" + std::to_string(buffer.getLength());
}

}  // namespace

TEST(TalvoUTF8Buffer, Append_CountsCharactersAndBytes) {
    TalvoUTF8Buffer buffer;
    EXPECT_EQ(buffer.getBytes(), nullptr);
    buffer.append('\xe9').append('A');
    EXPECT_EQ(textOf(buffer), "\xc3\xa9" "A #2");
    buffer.append(TalvoUTF8Char(0xE2, 0x82, 0xAC, 0)).append("x\xff");
    buffer.append("").append(static_cast<const char*>(nullptr));
    EXPECT_EQ(textOf(buffer), "\xc3\xa9" "A\xe2\x82\xac" "x\xc3\xbf #5");
    TalvoUTF8Buffer b;
    b.append("y").append(b).append(buffer);  // a buffer's bytes and both lengths, even its own
    EXPECT_EQ(textOf(b), "yy\xc3\xa9" "A\xe2\x82\xac" "x\xc3\xbf #7");
}

TEST(TalvoUTF8Buffer, Insert_OnlyFromZeroToLength) {
    TalvoUTF8Buffer buffer;
    buffer.append('\xe9').append('A');
    buffer.insert(3, 'B').insert(-1, 'B').insert(2, 'B').insert(1, '\xe8');
    buffer.insert(0, TalvoUTF8Char(0xF0, 0x9F, 0x98, 0x80));
    EXPECT_EQ(textOf(buffer), "\xf0\x9f\x98\x80\xc3\xa9\xc3\xa8" "AB #5");
    // Inserting a text makes each byte one character.
    struct Case { int index; const char* text; const char* expected; } cases[] = {
        {1, "\xe9z", "1\xc3\xa9z2 #4"},
        {3, "ab", "12 #2"},
        {-1, "abc", "bc12 #4"},  // 'a' had no place; the rest goes to 0, 1
    };
    for (const Case& c : cases) {
        TalvoUTF8Buffer twelve;
        twelve.append("12");
        twelve.insert(c.index, c.text);
        EXPECT_EQ(textOf(twelve), c.expected) << c.index << " " << c.text;
    }
}

TEST(TalvoUTF8Buffer, Remove_CutsWholeCharacter) {
    TalvoUTF8Buffer buffer;
    buffer.append("a\xe9").append(TalvoUTF8Char(0xE2, 0x82, 0xAC, 0)).append('b');
    buffer.remove(1);
    EXPECT_EQ(textOf(buffer), "a\xe2\x82\xac" "b #3");
    buffer.remove(3).remove(-1).remove(1);
    EXPECT_EQ(textOf(buffer), "ab #2");
}

TEST(TalvoUTF8Buffer, Reserve_AddsThirtyTwoTimesNeededOverThirtyTwoPlusOneAndClearKeepsIt) {
    TalvoUTF8Buffer buffer;
    buffer.append('a');  // needs 1: capacity 0 + 32 * 1
    const unsigned char* block = buffer.getBytes();
    for (int i = 1; i < 32; ++i)
        buffer.append('a');
    EXPECT_EQ(buffer.getBytes(), block);
    buffer.append('a');  // needs 33: capacity 32 + 32 * 2 = 96
    EXPECT_NE(buffer.getBytes(), block);
    block = buffer.getBytes();
    buffer.clear();  // keeps the block
    buffer.append('z');
    EXPECT_EQ(buffer.getBytes(), block);
    EXPECT_EQ(textOf(buffer), "z #1");
}
