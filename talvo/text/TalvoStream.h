/// @file
/// TalvoStream: the library's character stream, and the sink it is by itself.
///
/// A stream is fixed as reading or writing when it is made. Characters given
/// back with unGetChar wait in `_pushBack` (a TalvoCharBuffer made by the
/// concrete stream) and are read again last-in first-out. Every stream counts
/// the newlines it reads (a given-back newline uncounts itself), formats
/// floating values with `_significantDigitNumber` significant digits, and may
/// echo every character it reads, gives back or writes to `_traceStream`.
///
/// The base class reads as already ended and swallows every write; the
/// concrete streams are TalvoFileStream (a FILE) and TalvoRawStringStream (a
/// caller's character buffer). The virtual slots stand in the order below.
///
/// Writing: put(const char*) interprets the escapes `\\`, `\n`, `\t` and a
/// backslash before a double quote (any other backslash pair is written as it
/// is); every putln writes its value as the matching put does, then a newline,
/// then flushes. Numbers: "%d", "%ld", "%p", and "%.Ng" for float and double,
/// N being the significant-digit number.
///
/// Copying a stream copies its fields, so the copy shares the give-back buffer.
#pragma once

#include <talvo/foundation/TalvoObject.h>
#include <talvo/text/TalvoCharBuffer.h>

#include <cstdio>

/// A character stream that reads or writes; by itself an empty, ended sink.
class TALVO_API TalvoStream : public TalvoObject<TalvoStream> {
public:
    static constexpr const char* ClassName = "TalvoStream";  ///< Name in the allocation trace.

    /// A bare sink: writing, no give-back buffer, precision 0 (the concrete
    /// streams set 6), no trace stream.
    TalvoStream();
    /// Releases the stream's own state; the trace stream is not touched.
    virtual ~TalvoStream();

    /// The FILE under the stream; null here and for memory streams.
    virtual FILE* getFile();
    /// The next character; -1 at the end, on a writing stream, or here.
    virtual char getChar();
    /// Gives `c` back to be read next; nothing here.
    virtual void unGetChar(char c);
    /// Non-zero at the end; 1 here.
    virtual int isAtEnd();
    /// Writes `string` with its escapes interpreted; null or "" writes nothing.
    virtual void put(const char* string);
    /// Writes `value` formatted with the caller's printf `format`, through put(const char*).
    virtual void put(const char* format, double value);
    /// Writes `value` with the stream's significant-digit number ("%.6g" by default).
    virtual void put(double value);
    /// Writes `value` formatted with the caller's printf `format`, through put(const char*).
    virtual void put(const char* format, float value);
    /// Writes `value` with the stream's significant-digit number ("%.6g" by default).
    virtual void put(float value);
    /// Writes "%ld" of `value`.
    virtual void put(long value);
    /// Writes "%d" of `value`.
    virtual void put(int value);
    /// Writes one character as it is.
    virtual void put(char c);
    /// Pushes written characters out (and flushes the trace stream).
    virtual void flush();
    /// Ends the stream's use of its file or buffer.
    virtual void close();

    /// Writes "%p" of `pointer` through put(const char*).
    void put(int* pointer);

    /// Writes '\n' with put(char), then flush().
    void putln();
    /// put(c), then putln().
    void putln(char c);
    /// put(value), then putln().
    void putln(int value);
    /// put(value), then putln().
    void putln(long value);
    /// put(value), then putln().
    void putln(float value);
    /// put(value), then putln().
    void putln(double value);
    /// put(string), then putln().
    void putln(const char* string);
    /// put(format, value), then putln().
    void putln(const char* format, float value);
    /// put(format, value), then putln().
    void putln(const char* format, double value);
    /// put(pointer), then putln().
    void putln(int* pointer);

    /// Newlines read so far, minus those given back.
    int getLineNumber() const { return _lineNumber; }
    /// Sets the line number to 0.
    void resetLineNumber() { _lineNumber = 0; }
    /// Precision of the float and double puts.
    int getSignificantDigitNumber() const { return _significantDigitNumber; }
    /// Precision of the float and double puts; any value is kept as given.
    void setSignificantDigitNumber(int digits) { _significantDigitNumber = digits; }
    /// The echo target (not owned); null when none.
    TalvoStream* getTraceStream() const { return _traceStream; }
    /// Echoes every character read, given back or written to `stream` (not
    /// owned; null for none).
    void setTraceStream(TalvoStream* stream) { _traceStream = stream; }
    /// Stops the echo.
    void resetTraceStream() { _traceStream = nullptr; }

protected:
    /// The precision a concrete stream starts with.
    static const int kDefaultSignificantDigits = 6;
    /// Growth step of the give-back buffer.
    static const int kPushBackIncrement = 32;

    /// The state a concrete stream starts in: its direction, a new give-back
    /// buffer, line 0, precision 6, no trace stream.
    explicit TalvoStream(bool isReading);

    // The writing code both concrete streams share; their overrides call
    // these once they know the stream can write.

    /// put(char) for each character of `string`, escapes interpreted.
    void _putEscaped(const char* string);
    /// printf of `value` with `format`, written with put(const char*).
    void _putFormatted(const char* format, double value);
    /// "%d" of `value`, written with put(const char*).
    void _putInt(int value);
    /// "%ld" of `value`, written with put(const char*).
    void _putLong(long value);
    /// Builds "%.Ng" (N the significant-digit number) and calls the virtual put(format, value).
    void _putWithPrecision(double value);
    /// The same for a float.
    void _putWithPrecision(float value);

    /// True when characters wait in the give-back buffer.
    bool _hasPushBack() const { return _pushBack && _pushBack->getLength() > 0; }
    /// Takes the last given-back character; the buffer must not be empty.
    char _popPushBack() { return _pushBack->popChar(); }
    /// Appends `c` to the give-back buffer, uncounts a newline, echoes `c`.
    void _giveBack(char c);
    /// Counts a newline and echoes a character just read; returns it.
    char _noteAndEcho(char c);
    /// Echoes `c` to the trace stream (which must be set); returns it.
    char _echoed(char c);
    /// Adds `delta` to the line number, wrapping in 32 bits.
    void _addLines(int delta) {
        _lineNumber = static_cast<int>(static_cast<unsigned>(_lineNumber) + static_cast<unsigned>(delta));
    }
    /// put(c) on the trace stream, when there is one.
    void _echo(char c) {
        if (_traceStream)
            _traceStream->put(c);
    }
    /// flush() of the trace stream, when there is one.
    void _flushTrace() {
        if (_traceStream)
            _traceStream->flush();
    }
    /// Releases the give-back buffer (the concrete destructors call it).
    void _deletePushBack();

    bool _isReading;                  ///< Fixed when the stream is made.
    TalvoCharBuffer* _pushBack;       ///< Given-back characters, last out first; may be null.
    int _lineNumber;                  ///< Newlines read minus newlines given back.
    int _significantDigitNumber;      ///< Precision of the float and double puts.
    TalvoStream* _traceStream;        ///< Echo target, not owned; null for none.
};
