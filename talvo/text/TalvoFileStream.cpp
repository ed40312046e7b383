#include <talvo/text/TalvoFileStream.h>

#include <cstdio>

#if defined(_WIN32)
#  define TALVO_GETC _fgetc_nolock
#  define TALVO_PUTC _fputc_nolock
#else
#  define TALVO_GETC getc_unlocked
#  define TALVO_PUTC putc_unlocked
#endif

namespace {

// A byte moved within the FILE's own buffer needs no call at all, which keeps
// getChar and put(char) leaf functions on their common path. Where the
// buffer is not visible, every byte takes the stdio call.
#if defined(__GLIBC__)
bool canTakeBufferedByte(FILE* f) { return f->_IO_read_ptr < f->_IO_read_end; }
char takeBufferedByte(FILE* f) { return *f->_IO_read_ptr++; }
bool canPutBufferedByte(FILE* f) { return f->_IO_write_ptr < f->_IO_write_end; }
void putBufferedByte(FILE* f, char c) { *f->_IO_write_ptr++ = c; }
#else
bool canTakeBufferedByte(FILE*) { return false; }
char takeBufferedByte(FILE*) { return -1; }
bool canPutBufferedByte(FILE*) { return false; }
void putBufferedByte(FILE*, char) {}
#endif

}  // namespace

TalvoFileStream::TalvoFileStream(bool isReading, FILE* file) : TalvoStream(isReading), _file(file) {}

TalvoFileStream::~TalvoFileStream() {
    _deletePushBack();
}

FILE* TalvoFileStream::getFile() {
    return _file;
}

char TalvoFileStream::getChar() {
    if (_isReading && _file && !_traceStream && !_hasPushBack() && canTakeBufferedByte(_file)) {
        char c = takeBufferedByte(_file);
        _addLines(c == '\n');  // branch-free: newlines come at random
        return c;
    }
    return _getCharSlowly();
}

char TalvoFileStream::_getCharSlowly() {
    if (!_isReading || !_file)
        return -1;
    if (_hasPushBack())
        return _noteAndEcho(_popPushBack());
    int byte = TALVO_GETC(_file);
    if (byte == EOF && std::feof(_file))
        return -1;
    return _noteAndEcho(static_cast<char>(byte));
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
    if (!_isReading && _file && !_traceStream && canPutBufferedByte(_file)) {
        putBufferedByte(_file, c);
        return;
    }
    _putCharSlowly(c);
}

void TalvoFileStream::_putCharSlowly(char c) {
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
