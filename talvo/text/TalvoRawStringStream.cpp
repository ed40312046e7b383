#include <talvo/text/TalvoRawStringStream.h>

TalvoRawStringStream::TalvoRawStringStream(bool isReading, char* buffer, int size,
                                           TalvoStreamFlushFunction flushFunction)
    : TalvoStream(isReading),
      _buffer(buffer),
      _size(size),
      _current(buffer),
      _flushFunction(flushFunction ? flushFunction : _noFlush) {}

TalvoRawStringStream::TalvoRawStringStream(bool isReading, char* buffer, int size)
    : TalvoRawStringStream(isReading, buffer, size, _noFlush) {}

TalvoRawStringStream::~TalvoRawStringStream() {
    _deletePushBack();
}

void TalvoRawStringStream::_noFlush(char**, int*) {}

char TalvoRawStringStream::getChar() {
    if (!_isReading || !_buffer)
        return -1;
    bool givenBack = _hasPushBack();
    char c;
    if (givenBack) {
        c = _popPushBack();
    } else {
        c = _peek();
        if (c == '\0') {
            flush();  // the call-back may refill the buffer
            c = _peek();
        }
    }
    if (c == '\0')
        return 0;
    // A given-back character moves the position on as well (kept on purpose),
    // but never past the end of the text.
    if (!givenBack || _peek() != '\0')
        ++_current;
    return _noteAndEcho(c);
}

void TalvoRawStringStream::unGetChar(char c) {
    if (_isReading && _buffer)
        _giveBack(c);
}

int TalvoRawStringStream::isAtEnd() {
    if (!_isReading || !_buffer)
        return -1;
    return *_current == '\0';
}

void TalvoRawStringStream::put(const char* string) {
    if (!_isReading && _buffer)
        _putEscaped(string);
}

void TalvoRawStringStream::put(const char* format, double value) {
    if (!_isReading && _buffer)
        _putFormatted(format, value);
}

void TalvoRawStringStream::put(double value) {
    _putWithPrecision(value);
}

void TalvoRawStringStream::put(const char* format, float value) {
    if (!_isReading && _buffer)
        _putFormatted(format, value);
}

void TalvoRawStringStream::put(float value) {
    _putWithPrecision(value);
}

void TalvoRawStringStream::put(long value) {
    if (!_isReading && _buffer)
        _putLong(value);
}

void TalvoRawStringStream::put(int value) {
    if (!_isReading && _buffer)
        _putInt(value);
}

void TalvoRawStringStream::put(char c) {
    if (_isReading || !_buffer)
        return;
    if (_current - _buffer >= _size)
        flush();
    if (!_buffer || _current - _buffer >= _size)
        return;  // still full: the character is dropped
    *_current++ = c;
    _echo(c);
}

void TalvoRawStringStream::flush() {
    if (!_buffer)
        return;
    if (!_isReading)
        *_current = '\0';
    // Without a call-back nothing was drained or refilled, so the stream
    // keeps its place instead of starting over the same characters.
    if (_flushFunction != _noFlush) {
        _flushFunction(&_buffer, &_size);
        _current = _buffer;
    }
    _flushTrace();
}

void TalvoRawStringStream::close() {
    flush();
    _buffer = nullptr;
    _current = nullptr;
    _lineNumber = 0;
    _traceStream = nullptr;
}
