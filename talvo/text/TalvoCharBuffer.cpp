#include <talvo/text/TalvoCharBuffer.h>

#include <talvo/foundation/TalvoRawString.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

// Room for "%d" of any int and "%g" of any double, with the terminator.
const int kNumberTextSize = 64;
// The weights of computeKey repeat with this period.
const int kKeyPeriod = 30;

}  // namespace

TalvoCharBuffer::TalvoCharBuffer(int increment)
    : _string(nullptr), _capacity(0), _length(0), _increment(increment < 1 ? 1 : increment) {}

TalvoCharBuffer::TalvoCharBuffer(const char* string)
    : _string(nullptr), _capacity(0), _length(0), _increment(TalvoRawString::getLength(string) + 1) {
    append(string);
}

TalvoCharBuffer::~TalvoCharBuffer() {
    if (_string)
        TalvoRawString::free(_string);
}

TalvoCharBuffer* TalvoCharBuffer::copy() const {
    TalvoCharBuffer* result = new TalvoCharBuffer(_increment);
    if (result && _string)
        result->_append(_string, _length);
    return result;
}

void TalvoCharBuffer::free(void* buffer) {
    delete static_cast<TalvoCharBuffer*>(buffer);
}

bool TalvoCharBuffer::_grow(int capacity, char** previous) {
    char* block = TalvoRawString::allocate(capacity);
    if (!block)
        return false;
    if (_string)
        std::memcpy(block, _string, static_cast<std::size_t>(_length));
    *previous = _string;
    _string = block;
    _capacity = capacity;
    return true;
}

void TalvoCharBuffer::_appendGrowing(char c) {
    // One step of the increment is the rule; with an increment of 1 a single
    // step leaves no room for the terminator, so step until both fit.
    long long capacity = _capacity;
    while (_length >= capacity - 1)
        capacity += _increment;
    char* previous = nullptr;
    if (capacity > INT32_MAX || !_grow(static_cast<int>(capacity), &previous))
        return;
    if (previous)
        TalvoRawString::free(previous);
    _string[_length++] = c;
    _string[_length] = '\0';
}

void TalvoCharBuffer::_append(const char* bytes, int count) {
    long long room = static_cast<long long>(_capacity) - _length - 1;
    char* previous = nullptr;
    if (room < count) {
        long long steps = (count - room + _increment - 1) / _increment;
        long long capacity = _capacity + steps * _increment;
        if (capacity > INT32_MAX || !_grow(static_cast<int>(capacity), &previous))
            return;
    }
    std::memcpy(_string + _length, bytes, static_cast<std::size_t>(count));
    _length += count;
    _string[_length] = '\0';
    // Released only now: `bytes` may be this buffer's own text.
    if (previous)
        TalvoRawString::free(previous);
}

void TalvoCharBuffer::append(const char* string) {
    if (string)
        _append(string, TalvoRawString::getLength(string));
}

void TalvoCharBuffer::append(int value) {
    char text[kNumberTextSize];
    std::snprintf(text, sizeof text, "%d", value);
    append(static_cast<const char*>(text));
}

void TalvoCharBuffer::append(double value) {
    char text[kNumberTextSize];
    std::snprintf(text, sizeof text, "%g", value);
    append(static_cast<const char*>(text));
}

char TalvoCharBuffer::popChar() {
    if (_length <= 0)
        return '\0';
    return _string[--_length];
}

char* TalvoCharBuffer::copyString() const {
    if (!_string)
        return nullptr;
    // The text is the first _length bytes: a popped byte may still sit before the terminator.
    char* text = TalvoRawString::allocate(_length + 1);
    if (text)
        std::memcpy(text, _string, static_cast<std::size_t>(_length));
    return text;
}

void TalvoCharBuffer::reset() {
    if (!_string)
        return;
    _string[0] = '\0';
    _length = 0;
}

int TalvoCharBuffer::computeKey() const {
    std::uint32_t key = 0;
    for (int i = 0; i < _length; ++i) {
        int weight = 2 * ((i + 1) % kKeyPeriod) - 1;
        int byte = static_cast<signed char>(_string[i]);
        key += static_cast<std::uint32_t>(byte * weight);
    }
    return static_cast<int>(key);
}

int TalvoCharBuffer::compare(const TalvoCharBuffer* other) const {
    const char* theirs = other ? other->_string : nullptr;
    if (!_string || !theirs)
        return (_string ? 1 : 0) - (theirs ? 1 : 0);
    // Go by the lengths, not the terminators, which popChar leaves behind.
    int common = _length < other->_length ? _length : other->_length;
    int order = std::memcmp(_string, theirs, static_cast<std::size_t>(common));  // unsigned bytes
    if (order == 0)
        order = _length - other->_length;
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}
