#include "support/TalvoTest.h"

#include <talvo/text/TalvoUTF8Char.h>

namespace {

struct Bytes { unsigned char b0, b1, b2, b3; };
bool operator==(Bytes a, Bytes b) { return a.b0 == b.b0 && a.b1 == b.b1 && a.b2 == b.b2 && a.b3 == b.b3; }

Bytes bytesOf(const TalvoUTF8Char& c) {
    return {c.getByte(0), c.getByte(1), c.getByte(2), c.getByte(3)};
}

const Bytes kReplacement{0xEF, 0xBF, 0xBD, 0};

}  // namespace

TEST(TalvoUTF8Char, CharConstructorEncodesLatin1AndGetByteOutOfRangeGivesZero) {
    EXPECT_TRUE(bytesOf(TalvoUTF8Char('\x80')) == (Bytes{0xC2, 0x80, 0, 0}));
    EXPECT_TRUE(bytesOf(TalvoUTF8Char('\xff')) == (Bytes{0xC3, 0xBF, 0, 0}));
    EXPECT_EQ(TalvoUTF8Char('\xff').getByte(4), 0);
    EXPECT_EQ(TalvoUTF8Char('\xff').getByte(-1), 0);
}

TEST(TalvoUTF8Char, IsValidUTF8ByteSequence_KeepsTheLibraryRules) {
    struct Case { Bytes bytes; bool valid; } cases[] = {
        {{0x41, 0x41, 0, 0}, false},      // ASCII needs three zeros
        {{0xC0, 0x80, 0, 0}, true},       // overlong passes
        {{0xC3, 0x41, 0, 0}, false},      // not a continuation
        {{0xC3, 0xA9, 0x80, 0}, false},   // two-byte lead with a third byte
        {{0xD0, 0x90, 0, 0}, false},      // 0xD_ leads are refused
        {{0xED, 0xA0, 0x80, 0}, true},    // a surrogate passes
        {{0xF8, 0x80, 0x80, 0x80}, true},  // 0xF8-0xFF are four-byte leads
        {{0x80, 0, 0, 0}, false},          // a lone continuation
    };
    for (const Case& c : cases) {
        const Bytes& b = c.bytes;
        EXPECT_EQ(TalvoUTF8Char::isValidUTF8ByteSequence(b.b0, b.b1, b.b2, b.b3), c.valid)
            << std::hex << int(b.b0) << " " << int(b.b1) << " " << int(b.b2) << " " << int(b.b3);
        EXPECT_EQ(bytesOf(TalvoUTF8Char(b.b0, b.b1, b.b2, b.b3)), c.valid ? b : kReplacement);
    }
}

TEST(TalvoUTF8Char, GetNumberOfBytes_ByHighNibbleOfLead) {
    const int cases[][2] = {{0x7F, 1}, {0x80, 0}, {0xCF, 2}, {0xD0, 0}, {0xDF, 0}, {0xE0, 3}, {0xF8, 4}, {0xFF, 4}};
    for (const auto& c : cases)
        EXPECT_EQ(TalvoUTF8Char::getNumberOfBytes(c[0]), c[1]) << std::hex << c[0];
}
