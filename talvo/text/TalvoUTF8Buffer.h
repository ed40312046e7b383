/// @file
/// TalvoUTF8Buffer: growable UTF-8 text indexed by character.
///
/// Layout: `_bytes` is a zero-filled block of `_capacity` bytes (null until
/// the first insertion, not NUL-terminated) whose first `_byteLength` bytes
/// encode `_charLength` characters. Every character enters as a validated
/// TalvoUTF8Char, so the bytes always walk cleanly lead by lead.
///
/// Characters are found by walking from the start, so indexing, insert,
/// remove and getChar cost O(index). The block grows by 32-byte steps: to hold
/// `needed` bytes it adds 32 * (needed / 32 + 1) to the old capacity.
///
/// Plain `char` text is read as ISO 8859-1: each byte is one character, two
/// bytes in the buffer when it is 0x80 or above.
#pragma once

#include <talvo/foundation/TalvoObject.h>
#include <talvo/text/TalvoUTF8Char.h>

/// A growable sequence of UTF-8 encoded characters.
class TALVO_API TalvoUTF8Buffer : public TalvoObject<TalvoUTF8Buffer> {
public:
    static constexpr const char* ClassName = "TalvoUTF8Buffer";  ///< Name in the allocation trace.

    /// An empty buffer that allocates nothing yet.
    TalvoUTF8Buffer();
    /// Releases the bytes.
    ~TalvoUTF8Buffer();
    /// Releases a buffer and its bytes; null is accepted.
    static void free(void* buffer);

    /// @name Editing
    /// Each editing operation returns the buffer itself for chaining. When the
    /// block cannot grow, the edit is dropped.
    /// @{

    /// Appends `c` read as ISO 8859-1.
    TalvoUTF8Buffer& append(char c);
    /// Appends each byte of `text` as an ISO 8859-1 character; null or "" does nothing.
    TalvoUTF8Buffer& append(const char* text);
    /// Appends the bytes of `c`.
    TalvoUTF8Buffer& append(const TalvoUTF8Char& c);
    /// Appends a copy of the bytes of `other` (which may be this buffer).
    TalvoUTF8Buffer& append(const TalvoUTF8Buffer& other);
    /// Inserts before character `index` (0 to getLength(); getLength() appends).
    /// Any other index changes nothing.
    TalvoUTF8Buffer& insert(int index, char c);
    /// Inserts the bytes of `c` before character `index`, under the same rule.
    TalvoUTF8Buffer& insert(int index, const TalvoUTF8Char& c);
    /// Inserts the bytes of `text` as characters at index, index + 1, ... . A
    /// negative index loses the first -index bytes (their places do not exist)
    /// and inserts the rest at 0. Null or "" changes nothing.
    TalvoUTF8Buffer& insert(int index, const char* text);
    /// Removes character `index`; an index out of 0 .. getLength() - 1 changes nothing.
    TalvoUTF8Buffer& remove(int index);
    /// Empties the text and keeps the block.
    TalvoUTF8Buffer& clear();
    /// @}

    /// Character `index` checked by TalvoUTF8Char's four-byte constructor; the
    /// empty character for an index out of range.
    TalvoUTF8Char getChar(int index) const;

    /// Number of characters.
    int getLength() const { return _charLength; }
    /// Number of encoded bytes.
    int getByteLength() const { return _byteLength; }
    /// The encoded bytes themselves (not a copy and not NUL-terminated); null
    /// when nothing was ever allocated.
    const unsigned char* getBytes() const { return _bytes; }

private:
    /// Byte offset where character `index` begins; the byte length for the
    /// character length (the append position); -1 otherwise. O(index).
    int _computeByteIndex(int index) const;
    /// Makes the block hold at least `needed` bytes; false when it cannot.
    bool _reserve(int needed);
    /// Moves the bytes from `offset` on `count` places right, leaving a gap
    /// counted in the byte length; false (nothing changed) when it cannot grow.
    bool _openGap(int offset, int count);

    unsigned char* _bytes;
    int _capacity;
    int _byteLength;
    int _charLength;
};
