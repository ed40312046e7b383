/// @file
/// TalvoUTF8Char: one character encoded in UTF-8, as a value.
///
/// Layout: four bytes, the encoded character first and zero bytes after it;
/// four zero bytes are the empty character.
///
/// The validity rules are the library's own and deliberately differ from the
/// standard: a two-byte lead must have the high nibble 0xC (so 0xD0-0xDF are
/// refused), 0xF8-0xFF count as four-byte leads, and overlong forms and
/// surrogates pass. Every constructor leaves a sequence these rules accept.
#pragma once

#include <talvo/foundation/TalvoObject.h>

/// One character as its UTF-8 bytes, padded with zeros to four.
class TALVO_API TalvoUTF8Char : public TalvoObject<TalvoUTF8Char> {
public:
    static constexpr const char* ClassName = "TalvoUTF8Char";  ///< Name in the allocation trace.

    /// Bytes of the longest encoding.
    static const int kMaxBytes = 4;

    /// The empty character.
    TalvoUTF8Char();
    /// `c` read as ISO 8859-1: below 128 one byte, otherwise the two bytes
    /// 0xC0 | (c >> 6) and 0x80 | (c & 0x3F).
    explicit TalvoUTF8Char(char c);
    /// The four bytes when isValidUTF8ByteSequence accepts them, otherwise the
    /// replacement character U+FFFD (0xEF 0xBF 0xBD 0).
    TalvoUTF8Char(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3);

    /// True for exactly: an ASCII byte and three zeros; a lead 0xC_ with one
    /// continuation (10xxxxxx) and two zeros; a lead 0xE_ with two
    /// continuations and a zero; a lead 0xF_ with three continuations.
    static bool isValidUTF8ByteSequence(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3);
    /// Length of the character a lead byte starts: 1 below 0x80, then by the
    /// high nibble 0xC 2, 0xE 3, 0xF 4; 0 for any other byte.
    static int getNumberOfBytes(int leadByte);
    /// Length of this character by its first byte (1 for the empty character).
    int getNumberOfBytes() const;
    /// Byte `i` (0 to 3); 0 for any other index.
    unsigned char getByte(int i) const;

private:
    unsigned char _bytes[kMaxBytes];
};
