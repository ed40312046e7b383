#include <talvo/text/TalvoFileStream.h>

#include <cstdio>

#if defined(_WIN32)
#  define TALVO_GETC _fgetc_nolock
#  define TALVO_PUTC _fputc_nolock
#else
#  define TALVO_GETC getc_unlocked
#  define TALVO_PUTC putc_unlocked
#endif

TalvoFileStream::TalvoFileStream(bool isReading, FILE* file) : TalvoStream(isReading), _file(file) {}

TalvoFileStream::~TalvoFileStream() {
    _deletePushBack();
}

FILE* TalvoFileStream::getFile() {
    return _file;
}

char TalvoFileStream::getChar() {
    if (!_isReading || !_file)
        return -1;
    char c;
    if (_hasPushBack()) {
        c = _popPushBack();
    } else {
        int byte = TALVO_GETC(_file);
        if (byte == EOF && std::feof(_file))
            return -1;
        c = static_cast<char>(byte);
    }
    _noteRead(c);
    return c;
}

void TalvoFileStream::unGetChar(char c) {
    if (_isReading && _file)
        _giveBack(c);
}

int TalvoFileStream::isAtEnd() {
    if (!_isReading || !_file)
        return 1;
    char c = getChar();
    unGetChar(c);
    return c == -1;
}

void TalvoFileStream::put(const char* string) {
    if (_canWrite())
        _putEscaped(string);
}

void TalvoFileStream::put(const char* format, double value) {
    if (_canWrite())
        _putFormatted(format, value);
}

void TalvoFileStream::put(double value) {
    _putWithPrecision(value);
}

void TalvoFileStream::put(const char* format, float value) {
    if (_canWrite())
        _putFormatted(format, value);
}

void TalvoFileStream::put(float value) {
    _putWithPrecision(value);
}

void TalvoFileStream::put(long value) {
    if (_canWrite())
        _putLong(value);
}

void TalvoFileStream::put(int value) {
    if (_canWrite())
        _putInt(value);
}

void TalvoFileStream::put(char c) {
    if (!_canWrite())
        return;
    TALVO_PUTC(c, _file);
    _echo(c);
}

void TalvoFileStream::flush() {
    if (!_file)
        return;
    std::fflush(_file);
    _flushTrace();
}

void TalvoFileStream::close() {
    if (!_file)
        return;
    flush();
    if (_file != stdin && _file != stdout && _file != stderr)
        std::fclose(_file);
    _file = nullptr;
    if (_pushBack)
        _pushBack->reset();
    _lineNumber = 0;
}
