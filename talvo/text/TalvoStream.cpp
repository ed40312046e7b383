#include <talvo/text/TalvoStream.h>

#include <talvo/foundation/TalvoRawString.h>

#include <cstdio>

namespace {

// Room for "%d", "%ld", "%p" and most formatted doubles; longer text (a
// "%f" of a huge value, a long caller's format) takes a block of its size.
const int kTextSize = 128;
// Room for "%.<int>g".
const int kPrecisionFormatSize = 32;

}  // namespace

TalvoStream::TalvoStream()
    : _isReading(false), _pushBack(nullptr), _lineNumber(0), _significantDigitNumber(0), _traceStream(nullptr) {}

TalvoStream::TalvoStream(bool isReading)
    : _isReading(isReading),
      _pushBack(new TalvoCharBuffer(kPushBackIncrement)),
      _lineNumber(0),
      _significantDigitNumber(kDefaultSignificantDigits),
      _traceStream(nullptr) {}

TalvoStream::~TalvoStream() = default;

// --- The bare stream: ended for reading, a sink for writing.

FILE* TalvoStream::getFile() { return nullptr; }
char TalvoStream::getChar() { return -1; }
void TalvoStream::unGetChar(char) {}
int TalvoStream::isAtEnd() { return 1; }
void TalvoStream::put(const char*) {}
void TalvoStream::put(const char*, double) {}
void TalvoStream::put(double) {}
void TalvoStream::put(const char*, float) {}
void TalvoStream::put(float) {}
void TalvoStream::put(long) {}
void TalvoStream::put(int) {}
void TalvoStream::put(char) {}
void TalvoStream::flush() {}
void TalvoStream::close() {}

// --- Non-virtual writing, through the virtual slots.

void TalvoStream::put(int* pointer) {
    char text[kTextSize];
    std::snprintf(text, sizeof text, "%p", static_cast<void*>(pointer));
    put(static_cast<const char*>(text));
}

void TalvoStream::putln() {
    put('\n');
    flush();
}

void TalvoStream::putln(char c) {
    put(c);
    putln();
}

void TalvoStream::putln(int value) {
    put(value);
    putln();
}

void TalvoStream::putln(long value) {
    put(value);
    putln();
}

void TalvoStream::putln(float value) {
    put(value);
    putln();
}

void TalvoStream::putln(double value) {
    put(value);
    putln();
}

void TalvoStream::putln(const char* string) {
    put(string);
    putln();
}

void TalvoStream::putln(const char* format, float value) {
    put(format, value);
    putln();
}

void TalvoStream::putln(const char* format, double value) {
    put(format, value);
    putln();
}

void TalvoStream::putln(int* pointer) {
    put(pointer);
    putln();
}

// --- Writing code shared by the concrete streams.

void TalvoStream::_putEscaped(const char* string) {
    if (!string)
        return;
    for (const char* s = string; *s; ++s) {
        if (*s != '\\') {
            put(*s);
            continue;
        }
        char next = s[1];
        if (next == '\0') {
            put('\\');  // a lone final backslash: written, and the scan stops here
            return;
        }
        ++s;
        switch (next) {
        case 'n':
            put('\n');
            break;
        case 't':
            put('\t');
            break;
        case '\\':
        case '"':
            put(next);
            break;
        default:
            put('\\');
            put(next);
            break;
        }
    }
}

void TalvoStream::_putFormatted(const char* format, double value) {
    if (!format)
        return;
    char text[kTextSize];
    int length = std::snprintf(text, sizeof text, format, value);
    if (length < static_cast<int>(sizeof text)) {
        if (length >= 0)
            put(static_cast<const char*>(text));
        return;
    }
    char* longText = TalvoRawString::allocate(length + 1);
    if (!longText)
        return;
    std::snprintf(longText, static_cast<std::size_t>(length) + 1, format, value);
    put(static_cast<const char*>(longText));
    TalvoRawString::free(longText);
}

void TalvoStream::_putInt(int value) {
    char text[kTextSize];
    std::snprintf(text, sizeof text, "%d", value);
    put(static_cast<const char*>(text));
}

void TalvoStream::_putLong(long value) {
    char text[kTextSize];
    std::snprintf(text, sizeof text, "%ld", value);
    put(static_cast<const char*>(text));
}

void TalvoStream::_putWithPrecision(double value) {
    char format[kPrecisionFormatSize];
    std::snprintf(format, sizeof format, "%%.%dg", _significantDigitNumber);
    put(static_cast<const char*>(format), value);
}

void TalvoStream::_putWithPrecision(float value) {
    char format[kPrecisionFormatSize];
    std::snprintf(format, sizeof format, "%%.%dg", _significantDigitNumber);
    put(static_cast<const char*>(format), value);
}

// --- Give-back bookkeeping.

void TalvoStream::_giveBack(char c) {
    if (_pushBack)
        _pushBack->append(c);
    if (c == '\n')
        _addLines(-1);
    _echo(c);
}

char TalvoStream::_noteAndEcho(char c) {
    if (c == '\n')
        _addLines(1);
    _echo(c);
    return c;
}

char TalvoStream::_echoed(char c) {
    _traceStream->put(c);
    return c;
}

void TalvoStream::_deletePushBack() {
    TalvoCharBuffer::free(_pushBack);
    _pushBack = nullptr;
}
