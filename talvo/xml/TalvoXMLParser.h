/// @file
/// TalvoXMLParser: reads a file of XML text into a TalvoXMLDocument.
///
/// A hand-written reader over a runtime FILE for a deliberately narrow
/// dialect: the file opens with a "<?...?>" declaration; attribute values are
/// double-quoted; no character or entity reference is decoded; white-space
/// runs in texts collapse to one blank; comments and "<!...>" declarations
/// are both kept as comment terms. It counts lines and stops at the first
/// syntax error, which it reports on its error stream with a text from its
/// messenger (codes 1001 to 1013), leaving the document empty.
///
/// Layout: the file and document being worked on, a block of read-ahead
/// input, the optional input file name, the line number of the next unread
/// character, the default error stream (standard error) and an optional
/// replacement, `_lastString` (the name, value or text just read), a growable
/// stack of the open node terms, the error flag, and the messenger and
/// printer, both owned and made on first use.
/// Invariant: every term the parser makes is attached to the document at
/// once (as a root, or as the last child of the open node on top of the
/// stack), so the document alone owns the tree, on success and on failure.
/// Open nodes live on an explicit stack: nesting is bounded only by memory.
/// Read-ahead: a regular (seekable) file is read a block at a time and the
/// scanners work on runs of the block; when the parse stops early the unread
/// rest of the block is given back by seeking, so the file is left exactly
/// where a reader of one character at a time would have left it. Any other
/// file (a pipe, a terminal) is read one character at a time, so the parser
/// never waits for input it does not need; at most one character is then
/// given back, with ungetc.
#pragma once

#include <talvo/foundation/TalvoExport.h>
#include <talvo/foundation/TalvoObject.h>
#include <talvo/xml/TalvoXMLTerm.h>

#include <cstdio>

class TalvoCharBuffer;
class TalvoFileStream;
class TalvoStream;
class TalvoXMLDocument;
class TalvoXMLParserMessenger;
class TalvoXMLPrinter;

/// Reads a file of XML text into a TalvoXMLDocument, reporting the first
/// syntax error.
class TALVO_API TalvoXMLParser : public TalvoObject<TalvoXMLParser> {
public:
    static constexpr const char* ClassName = "TalvoXMLParser";  ///< Name in the allocation trace.

    /// Reports go to standard error until setErrorFile is called.
    TalvoXMLParser();
    /// Frees the parser's own streams, buffer, stack, messenger and printer;
    /// never closes a file.
    ~TalvoXMLParser();
    /// Not copyable: the parser owns its streams, messenger and printer.
    TalvoXMLParser(const TalvoXMLParser&) = delete;
    /// Not assignable, for the same reason.
    TalvoXMLParser& operator=(const TalvoXMLParser&) = delete;

    /// Replaces the roots of `document` by the items read from `file`.
    /// Returns 0 on success; 1 after a syntax error, which is reported on the
    /// error stream and leaves the document empty. White space after the last
    /// item ends the parse normally. The caller opens and closes the file.
    /// A null document or file gives 1 and changes nothing. O(file size).
    int parseFile(TalvoXMLDocument* document, FILE* file);

    /// The name shown in reports (a copy is kept; null shows none).
    void setInputFileName(const char* name);
    /// The name shown in reports (owned by the parser); null when none.
    const char* getInputFileName() const { return _inputFileName; }

    /// The line of the next unread character, 1 at the start of a parse.
    int getLineNumber() const { return _lineNumber; }
    /// Sets the line number back to 1.
    void resetLineNumber() { _lineNumber = 1; }
    /// Adds 1 to the line number.
    void incrementLineNumber() { ++_lineNumber; }

    /// The stream that replaces standard error for reports, or null.
    TalvoStream* getErrorStream() { return _errorStream; }
    /// Sends later reports to `file` through a writing stream the parser owns
    /// (the file itself stays the caller's). Null returns to standard error.
    void setErrorFile(FILE* file);

    /// True once a syntax error has stopped the current parse.
    bool getParseError() const { return _parseError; }
    /// Clears the syntax-error flag.
    void resetParseError() { _parseError = false; }

    /// The messenger, made on first use; owned by the parser.
    TalvoXMLParserMessenger* getMessenger();
    /// Replaces the messenger; the parser takes `messenger` over and deletes
    /// the previous one. Null brings the default back at next use.
    void setMessenger(TalvoXMLParserMessenger* messenger);
    /// The printer, made on first use; owned by the parser.
    TalvoXMLPrinter* getPrinter();
    /// Replaces the printer; the parser takes `printer` over and deletes the
    /// previous one.
    void setPrinter(TalvoXMLPrinter* printer);

    /// @name Reports
    /// Each reports a problem found in a parsed document at the line of `term`
    /// (line 0 for a null term) under the type "ERROR" or "WARNING", on the
    /// error stream:
    ///
    ///     ERROR [<file name>, line <n>]:
    ///     <text><argument>
    ///
    /// where the text is the messenger's text for `code` or the given text,
    /// the file name and its comma appear only when set, and a null text or
    /// argument writes nothing. The parse error flag is left alone.
    /// @{

    /// An error with the messenger's text for `code`.
    void raiseError(int code, TalvoXMLTerm* term);
    /// An error with the given text.
    void raiseError(const char* text, TalvoXMLTerm* term);
    /// An error with the messenger's text for `code` followed by `argument`.
    void raiseError(int code, const char* argument, TalvoXMLTerm* term);
    /// An error with the given text followed by `argument`.
    void raiseError(const char* text, const char* argument, TalvoXMLTerm* term);
    /// A warning with the messenger's text for `code`.
    void raiseWarning(int code, TalvoXMLTerm* term);
    /// A warning with the given text.
    void raiseWarning(const char* text, TalvoXMLTerm* term);
    /// A warning with the messenger's text for `code` followed by `argument`.
    void raiseWarning(int code, const char* argument, TalvoXMLTerm* term);
    /// A warning with the given text followed by `argument`.
    void raiseWarning(const char* text, const char* argument, TalvoXMLTerm* term);
    /// @}

private:
    /// Reading, with line counting.
    void _attachFile(FILE* file);
    void _releaseFile();
    bool _fill();
    int _getChar();
    void _ungetChar(int c);
    bool _isAtEnd();

    /// Collecting `_lastString`.
    void _beginString();
    void _appendChar(int c);
    void _appendRun(char* run, size_t length);
    int _collectRun(int stops);
    int _collectText();
    const char* _lastText();

    /// One function per construct, each leaving the reader just after it.
    void _parseHeader();
    void _parseTag();
    void _parseSpaces();
    void _skipSpaces();
    void _parseText(int first);
    void _parseNode();
    void _parseKeyword();
    void _parseAttribute(TalvoXMLTerm* term);
    void _parseString();
    void _parseComment();
    void _parseCData();
    void _parseCloseTag();
    TalvoXMLTerm* _newTerm(TalvoXMLTerm::Type type);

    /// The stack of open nodes.
    bool _isStackEmpty() const { return _termStackTop < 0; }
    void _resetTermStack() { _termStackTop = -1; }
    bool _pushTerm(TalvoXMLTerm* term);
    TalvoXMLTerm* _popTerm();
    TalvoXMLTerm* _topTerm() const;

    /// Reports.
    TalvoStream* _reportStream();
    void _raiseSyntaxError(int code);
    void _raiseAlert(int type, int code, const char* argument, TalvoXMLTerm* term);
    void _raiseAlert(int type, const char* text, const char* argument, TalvoXMLTerm* term);
    void _putReportHeader(TalvoStream* stream, int type, int line);

    /// Bytes read ahead at a time from a seekable file.
    static const int BlockSize = 16 * 1024;

    FILE* _file;
    char* _inputFileName;
    int _lineNumber;
    TalvoFileStream* _defaultErrorStream;
    TalvoStream* _errorStream;
    TalvoXMLDocument* _document;
    TalvoCharBuffer* _lastString;
    TalvoXMLTerm** _termStack;
    int _termStackCapacity;
    int _termStackTop;
    bool _parseError;
    TalvoXMLParserMessenger* _messenger;
    TalvoXMLPrinter* _printer;
    /// True when the file can be read ahead and sought back.
    bool _readsAhead;
    /// True once a read found the end of the file.
    bool _reachedEnd;
    /// The unread input is [_next, _end) in `_block`; *_end is always a NUL
    /// sentinel, so a scanner needs no bounds test inside its loop. Bytes
    /// before _next are never read again: a text is compacted over them.
    char* _next;
    char* _end;
    char _block[BlockSize + 1];
    /// Set by a NUL byte: a raw string cannot show anything after it, so the
    /// rest of the current string is read but not kept.
    bool _stringCut;
};
