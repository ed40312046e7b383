/// @file
/// TalvoFileStream: a TalvoStream over a runtime FILE.
///
/// The stream neither opens nor owns the file: the caller opens it (see
/// TalvoFile::open), and `close` flushes it and closes it unless it is the
/// process's standard input, output or error. Reading takes given-back
/// characters first, then bytes from the file; a byte 0xFF reads as the end,
/// as -1 does for any char-valued reader.
///
/// Bytes move without the stdio lock (straight through the FILE's buffer
/// where the C library shows it, else with the unlocked calls): a stream, like
/// the rest of the library, belongs to one thread at a time.
#pragma once

#include <talvo/text/TalvoStream.h>

/// A reading or writing stream over a FILE the caller opened.
class TALVO_API TalvoFileStream : public TalvoStream, public TalvoTracedAs<TalvoFileStream> {
public:
    static constexpr const char* ClassName = "TalvoFileStream";  ///< Name in the allocation trace.

    /// A reading or writing stream over `file` (may be null: the stream then
    /// reads as ended and writes nothing). Precision 6, line 0, no trace stream.
    TalvoFileStream(bool isReading, FILE* file);
    /// Releases the give-back buffer; neither flushes nor closes the file.
    ~TalvoFileStream() override;

    /// The file; null after close.
    FILE* getFile() override;
    /// Replaces the file, leaving the old one as it is.
    void setFile(FILE* file) { _file = file; }

    /// The last given-back character, else the next byte of the file; -1 at the
    /// end, on a writing stream or without a file. Counts newlines, echoes.
    char getChar() override;
    /// Gives `c` back (reading stream with a file only): uncounts a newline, echoes.
    void unGetChar(char c) override;
    /// 1 on a writing stream or without a file; otherwise whether the next
    /// character is -1 (read and given back, so a trace shows it twice).
    int isAtEnd() override;

    /// @name Writing
    /// Each put writes as TalvoStream's does, on a writing stream with a file
    /// only; otherwise it writes nothing.
    /// @{

    using TalvoStream::put;
    void put(const char* string) override;
    void put(const char* format, double value) override;
    void put(double value) override;
    void put(const char* format, float value) override;
    void put(float value) override;
    void put(long value) override;
    void put(int value) override;
    /// Writes `c` (writing stream with a file only), then echoes it.
    void put(char c) override;
    /// fflush of the file, then flush of the trace stream.
    void flush() override;
    /// Flushes; closes the file unless it is stdin, stdout or stderr; forgets
    /// it; empties the give-back buffer; line number 0. The trace stream stays.
    void close() override;
    /// @}

private:
    /// The general paths behind getChar and put(char): give-backs, the trace
    /// echo, buffer refills and drains, the end of the file.
    char _getCharSlowly();
    void _putCharSlowly(char c);
    bool _canWrite() const { return !_isReading && _file; }

    FILE* _file;
};
