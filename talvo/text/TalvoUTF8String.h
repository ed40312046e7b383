/// @file
/// TalvoUTF8String: a UTF-8 string that shares its buffer until it changes.
///
/// Layout: `_utf8Buffer` points to a TalvoUTF8Buffer and `_referenceCounter`
/// to a boxed int (a TalvoInteger) counting the strings that share it. Copy
/// construction and assignment share the other string's buffer and count one
/// more; each editing operation first gives this string a buffer of its own
/// when the count is above 1; the last string to let go releases the buffer.
///
/// Assignment takes the other string's share without giving up the one it
/// held: strings still on the old buffer go on counting this one (kept on
/// purpose). A share that no other string can see is released.
#pragma once

#include <talvo/foundation/TalvoObject.h>
#include <talvo/text/TalvoUTF8Buffer.h>
#include <talvo/text/TalvoUTF8Char.h>

/// A UTF-8 string sharing its buffer with its copies until one of them changes.
class TALVO_API TalvoUTF8String : public TalvoObject<TalvoUTF8String> {
public:
    static constexpr const char* ClassName = "TalvoUTF8String";  ///< Name in the allocation trace.

    /// An empty string with a buffer of its own (counter 1).
    TalvoUTF8String();
    /// Shares `other`'s buffer: both count one more.
    TalvoUTF8String(const TalvoUTF8String& other);
    /// Shares `other`'s buffer, keeping the share held before (see above).
    TalvoUTF8String& operator=(const TalvoUTF8String& other);
    /// Gives up this string's share; the last one releases the buffer.
    ~TalvoUTF8String();
    /// Deletes a string made with new; null is accepted.
    static void free(void* string);

    /// @name Editing
    /// The editing operations of TalvoUTF8Buffer, with the same answers to bad
    /// input, made on a private buffer first when shared; each returns this
    /// string for chaining. A change that cannot get a private buffer is dropped.
    /// @{

    /// Appends `c` read as ISO 8859-1.
    TalvoUTF8String& append(char c);
    /// Appends each byte of `text` as an ISO 8859-1 character; null or "" does nothing.
    TalvoUTF8String& append(const char* text);
    /// Appends the bytes of `c`.
    TalvoUTF8String& append(const TalvoUTF8Char& c);
    /// Appends the characters of `other` (which may be this string).
    TalvoUTF8String& append(const TalvoUTF8String& other);
    /// Inserts `c` (ISO 8859-1) before character `index` (0 to getLength()).
    TalvoUTF8String& insert(int index, char c);
    /// Inserts the bytes of `text` as characters from `index` on, as
    /// TalvoUTF8Buffer::insert(int, const char*) does.
    TalvoUTF8String& insert(int index, const char* text);
    /// Inserts the bytes of `c` before character `index` (0 to getLength()).
    TalvoUTF8String& insert(int index, const TalvoUTF8Char& c);
    /// Removes character `index`; an index out of range changes nothing.
    TalvoUTF8String& remove(int index);
    /// Empties the string.
    TalvoUTF8String& clear();
    /// @}

    /// Character `index`; the empty character when out of range. O(index).
    TalvoUTF8Char getChar(int index) const;
    /// Number of characters.
    int getLength() const;
    /// True when the string has no character.
    bool isEmpty() const;
    /// Number of strings sharing this string's buffer.
    int getReferenceCounter() const;

private:
    /// Gives this string its own copy of the buffer when it shares one.
    void _privatizeBuffer();
    /// The buffer after _privatizeBuffer, when this string alone holds it;
    /// null when it could not be made private (the change is then dropped).
    TalvoUTF8Buffer* _ownBuffer();
    /// Counts one share less; the last share releases buffer and counter.
    static void _release(int* counter, TalvoUTF8Buffer* buffer);

    int* _referenceCounter;
    TalvoUTF8Buffer* _utf8Buffer;
};
