/// @file
/// TalvoCharBuffer: a growable, NUL-terminated byte string.
///
/// Layout: `_string` is a zero-filled block of `_capacity` bytes (a raw string
/// traced as "TalvoRawString"), null until the first append; `_length` bytes of
/// text precede the terminator; the block grows by `_increment` bytes at a time.
///
/// Invariant once allocated: _length <= _capacity - 1, so the text and its
/// terminator always fit in the block. `popChar` is the one exception to
/// "the terminator follows the text": it only shortens `_length`, so readers go
/// by getLength() after popping.
#pragma once

#include <talvo/foundation/TalvoObject.h>

/// A growable, NUL-terminated byte string.
class TALVO_API TalvoCharBuffer : public TalvoObject<TalvoCharBuffer> {
public:
    static constexpr const char* ClassName = "TalvoCharBuffer";  ///< Name in the allocation trace.

    /// An empty buffer that allocates nothing yet and grows by `increment`
    /// bytes (the streams use 32). An increment below 1 is taken as 1.
    explicit TalvoCharBuffer(int increment);
    /// A buffer holding a copy of `string`, growing by its length plus 1.
    /// Null counts as the empty string (and allocates nothing).
    explicit TalvoCharBuffer(const char* string);
    ~TalvoCharBuffer();

    /// A new buffer, owned by the caller, with the same increment and text; a
    /// buffer that never allocated gives one that has not either. O(length).
    TalvoCharBuffer* copy() const;
    /// Releases a buffer and its text; null is accepted.
    static void free(void* buffer);

    /// Appends one byte, growing the block by the increment when full.
    void append(char c) {
        if (_length < _capacity - 1) {
            _string[_length++] = c;
            _string[_length] = '\0';
        } else {
            _appendGrowing(c);
        }
    }
    /// Appends a copy of `string`; null appends nothing. Even the empty string
    /// makes a buffer that never allocated take its first block. O(length).
    void append(const char* string);
    /// Appends the value formatted with "%d".
    void append(int value);
    /// Appends the value formatted with "%g".
    void append(double value);
    /// The same as append(char).
    void pushChar(char c) { append(c); }
    /// Removes and returns the last byte; 0 when empty. The terminator stays
    /// where it was, so getString() still shows the byte until the next append.
    char popChar();

    /// A new raw string (owned by the caller, release with TalvoRawString::free)
    /// holding the text (the first getLength() bytes); null when nothing was
    /// ever allocated. O(length).
    char* copyString() const;
    /// Empties the text and keeps the block; nothing when never allocated.
    void reset();

    /// Hash key: the sum of each byte (signed) times 2 * ((i + 1) mod 30) - 1,
    /// wrapping in 32 bits; 0 when empty. O(length).
    int computeKey() const;
    /// -1, 0 or 1 by the unsigned bytes of the two texts (getLength() bytes
    /// each, a proper prefix first). A buffer that never allocated (or a null
    /// `other`) sorts before any allocated one; two such compare equal. O(length).
    int compare(const TalvoCharBuffer* other) const;

    /// The text itself (not a copy, owned by the buffer, valid until the next
    /// change); null when nothing was ever allocated.
    const char* getString() const { return _string; }
    /// Bytes of text, not counting the terminator.
    int getLength() const { return _length; }

private:
    /// append(char) when the block is full or not yet allocated.
    void _appendGrowing(char c);
    /// Appends `count` bytes of `bytes` (which need no terminator).
    void _append(const char* bytes, int count);
    /// Moves the text into a new zero-filled block of `capacity` bytes and
    /// hands back the old block (possibly null) in `previous` for the caller
    /// to release. False, with nothing changed, when the allocation fails.
    bool _grow(int capacity, char** previous);

    char* _string;
    int _capacity;
    int _length;
    int _increment;
};
