#include <talvo/text/TalvoUTF8Buffer.h>

#include <talvo/foundation/TalvoRawString.h>

#include <climits>
#include <cstring>

namespace {

// The block grows in multiples of this many bytes.
const int kGrowthStep = 32;
const unsigned char kLatin1High = 0x80;

unsigned char* allocateBytes(int size) {
    return reinterpret_cast<unsigned char*>(TalvoRawString::allocate(size));
}

// Bytes of `text` once each byte is encoded as an ISO 8859-1 character.
int encodedLength(const unsigned char* text) {
    int length = 0;
    for (; *text; ++text)
        length += *text < kLatin1High ? 1 : 2;
    return length;
}

}  // namespace

TalvoUTF8Buffer::TalvoUTF8Buffer() : _bytes(nullptr), _capacity(0), _byteLength(0), _charLength(0) {}

TalvoUTF8Buffer::~TalvoUTF8Buffer() {
    if (_bytes)
        TalvoRawString::free(_bytes);
}

void TalvoUTF8Buffer::free(void* buffer) {
    delete static_cast<TalvoUTF8Buffer*>(buffer);
}

int TalvoUTF8Buffer::_computeByteIndex(int index) const {
    if (index == _charLength)
        return _byteLength;
    if (index < 0 || index > _charLength)
        return -1;
    int offset = 0;
    for (int k = 0; k < index; ++k) {
        if (offset >= _byteLength)
            return -1;
        int n = TalvoUTF8Char::getNumberOfBytes(_bytes[offset]);
        if (n == 0)
            return -1;
        offset += n;
    }
    return offset < _byteLength ? offset : -1;
}

bool TalvoUTF8Buffer::_reserve(int needed) {
    if (_capacity >= needed)
        return true;
    long long capacity = _capacity + static_cast<long long>(kGrowthStep) * (needed / kGrowthStep + 1);
    if (capacity > INT_MAX)
        return false;
    unsigned char* block = allocateBytes(static_cast<int>(capacity));
    if (!block)
        return false;
    if (_bytes) {
        std::memcpy(block, _bytes, static_cast<std::size_t>(_byteLength));
        TalvoRawString::free(_bytes);
    }
    _bytes = block;
    _capacity = static_cast<int>(capacity);
    return true;
}

bool TalvoUTF8Buffer::_openGap(int offset, int count) {
    if (count > INT_MAX - _byteLength || !_reserve(_byteLength + count))
        return false;
    std::memmove(_bytes + offset + count, _bytes + offset, static_cast<std::size_t>(_byteLength - offset));
    _byteLength += count;
    return true;
}

TalvoUTF8Buffer& TalvoUTF8Buffer::insert(int index, const TalvoUTF8Char& c) {
    int n = c.getNumberOfBytes();
    if (n < 1 || n > TalvoUTF8Char::kMaxBytes)
        return *this;
    int offset = _computeByteIndex(index);
    if (offset < 0 || !_openGap(offset, n))
        return *this;
    for (int i = 0; i < n; ++i)
        _bytes[offset + i] = c.getByte(i);
    ++_charLength;
    return *this;
}

TalvoUTF8Buffer& TalvoUTF8Buffer::insert(int index, char c) {
    return insert(index, TalvoUTF8Char(c));
}

TalvoUTF8Buffer& TalvoUTF8Buffer::insert(int index, const char* text) {
    if (!text)
        return *this;
    const unsigned char* s = reinterpret_cast<const unsigned char*>(text);
    // Inserting byte k at index + k one by one: while index + k is negative
    // nothing happens, from then on each byte lands after the previous one.
    for (; index < 0 && *s; ++index)
        ++s;
    if (!*s)
        return *this;
    int offset = _computeByteIndex(index);
    int byteCount = encodedLength(s);
    int charCount = static_cast<int>(std::strlen(reinterpret_cast<const char*>(s)));
    if (offset < 0 || !_openGap(offset, byteCount))
        return *this;
    unsigned char* out = _bytes + offset;
    for (; *s; ++s) {
        TalvoUTF8Char c(static_cast<char>(*s));
        for (int i = 0, n = c.getNumberOfBytes(); i < n; ++i)
            *out++ = c.getByte(i);
    }
    _charLength += charCount;
    return *this;
}

TalvoUTF8Buffer& TalvoUTF8Buffer::append(char c) {
    return insert(_charLength, c);
}

TalvoUTF8Buffer& TalvoUTF8Buffer::append(const char* text) {
    return insert(_charLength, text);
}

TalvoUTF8Buffer& TalvoUTF8Buffer::append(const TalvoUTF8Char& c) {
    return insert(_charLength, c);
}

TalvoUTF8Buffer& TalvoUTF8Buffer::append(const TalvoUTF8Buffer& other) {
    int byteCount = other._byteLength;
    int charCount = other._charLength;
    if (byteCount <= 0 || !_openGap(_byteLength, byteCount))
        return *this;
    // Read `other` only now: it may be this buffer, just moved to a new block.
    std::memcpy(_bytes + _byteLength - byteCount, other._bytes, static_cast<std::size_t>(byteCount));
    _charLength += charCount;
    return *this;
}

TalvoUTF8Buffer& TalvoUTF8Buffer::remove(int index) {
    int offset = _computeByteIndex(index);
    if (offset < 0 || offset >= _byteLength)
        return *this;
    int n = TalvoUTF8Char::getNumberOfBytes(_bytes[offset]);
    if (n == 0)
        return *this;
    if (n > _byteLength - offset)
        n = _byteLength - offset;
    std::memmove(_bytes + offset, _bytes + offset + n, static_cast<std::size_t>(_byteLength - offset - n));
    _byteLength -= n;
    --_charLength;
    return *this;
}

TalvoUTF8Buffer& TalvoUTF8Buffer::clear() {
    _byteLength = 0;
    _charLength = 0;
    return *this;
}

TalvoUTF8Char TalvoUTF8Buffer::getChar(int index) const {
    int offset = _computeByteIndex(index);
    if (offset < 0 || offset >= _byteLength)
        return TalvoUTF8Char();
    int n = TalvoUTF8Char::getNumberOfBytes(_bytes[offset]);
    if (n > _byteLength - offset)
        return TalvoUTF8Char();
    unsigned char b[TalvoUTF8Char::kMaxBytes] = {_bytes[offset], 0, 0, 0};
    for (int i = 1; i < n; ++i)
        b[i] = _bytes[offset + i];
    return TalvoUTF8Char(b[0], b[1], b[2], b[3]);
}
