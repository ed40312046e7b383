/// @file
/// TalvoRawStringStream: a TalvoStream over a caller's character buffer.
///
/// `_buffer` (not owned) holds `_size` characters; `_current` is the next
/// position to read or write. A reading stream reads up to the first NUL; a
/// writing stream fills the `_size` characters and keeps a NUL just past the
/// last one written, so the caller's buffer needs `_size + 1` bytes.
///
/// The flush call-back is where the caller drains a full writing buffer or
/// refills an exhausted reading one: it receives the addresses of the buffer
/// pointer and of the size and may replace either; the stream then starts
/// again at the (possibly new) buffer. Without a call-back the stream keeps
/// its place, so a writing stream keeps the first `_size` characters and
/// drops the rest, and a reading stream stays at its end.
///
/// Kept on purpose: a character given back and read again still moves
/// `_current` on, so the buffer character after it is skipped; and isAtEnd
/// answers -1 on a writing stream.
#pragma once

#include <talvo/foundation/TalvoCallbacks.h>
#include <talvo/text/TalvoStream.h>

/// A reading or writing stream over a character buffer the caller owns.
class TALVO_API TalvoRawStringStream : public TalvoStream, public TalvoTracedAs<TalvoRawStringStream> {
public:
    static constexpr const char* ClassName = "TalvoRawStringStream";  ///< Name in the allocation trace.

    /// A stream over `buffer` of `size` characters with a flush call-back
    /// (null counts as none). The buffer stays the caller's.
    TalvoRawStringStream(bool isReading, char* buffer, int size, TalvoStreamFlushFunction flushFunction);
    /// The same without a call-back.
    TalvoRawStringStream(bool isReading, char* buffer, int size);
    /// Releases the give-back buffer; the character buffer stays the caller's.
    ~TalvoRawStringStream() override;

    /// The last given-back character, else the character at the current
    /// position (after a flush when that is NUL). NUL is returned as 0 and
    /// nothing moves; otherwise the position advances, a newline is counted
    /// and the character echoed. -1 on a writing stream or without a buffer.
    char getChar() override;
    /// Gives `c` back (reading stream with a buffer only): uncounts a newline, echoes.
    void unGetChar(char c) override;
    /// -1 on a writing stream or without a buffer; otherwise whether the
    /// character at the current position is NUL (given-back characters and
    /// the call-back are not consulted).
    int isAtEnd() override;

    /// @name Writing
    /// Each put writes as TalvoStream's does, on a writing stream with a
    /// buffer only; otherwise it writes nothing.
    /// @{

    using TalvoStream::put;
    void put(const char* string) override;
    void put(const char* format, double value) override;
    void put(double value) override;
    void put(const char* format, float value) override;
    void put(float value) override;
    void put(long value) override;
    void put(int value) override;
    /// Stores `c` (writing stream with a buffer only), flushing first when the
    /// buffer is full; dropped without a word when it stays full. Echoes `c`.
    void put(char c) override;
    /// A writing stream terminates its text; the call-back may then drain,
    /// refill or replace the buffer; the trace stream is flushed.
    void flush() override;
    /// Flushes, then forgets the buffer, sets line 0 and clears the trace stream.
    void close() override;
    /// @}

private:
    /// The default call-back: does nothing.
    static void _noFlush(char** buffer, int* size);
    /// The character at the current position; NUL without a buffer.
    char _peek() const { return _buffer ? *_current : '\0'; }

    char* _buffer;
    int _size;
    char* _current;
    TalvoStreamFlushFunction _flushFunction;
};
