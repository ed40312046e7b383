// TalvoXMLParser: reads a file of XML text into a TalvoXMLDocument.
//
// A hand-written reader over a runtime FILE, one character at a time, for a
// deliberately narrow dialect: the file opens with a "<?...?>" declaration;
// attribute values are double-quoted; no character or entity reference is
// decoded; white-space runs in texts collapse to one blank; comments and
// "<!...>" declarations are both kept as comment terms. It counts lines and
// stops at the first syntax error, which it reports on its error stream with
// a text from its messenger (codes 1001 to 1013), leaving the document empty.
//
// Layout: the file and document being worked on, the optional input file
// name, the line number of the next unread character, the default error
// stream (standard error) and an optional replacement, `_lastString` (the
// name, value or text just read), a growable stack of the open node terms,
// the error flag, and the messenger and printer, both owned and made on
// first use.
// Invariant: every term the parser makes is attached to the document at
// once (as a root, or as the last child of the open node on top of the
// stack), so the document alone owns the tree, on success and on failure.
// Open nodes live on an explicit stack: nesting is bounded only by memory.
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

class TALVO_API TalvoXMLParser : public TalvoObject<TalvoXMLParser> {
public:
    static constexpr const char* ClassName = "TalvoXMLParser";

    // Reports go to standard error until setErrorFile is called.
    TalvoXMLParser();
    // Frees the parser's own streams, buffer, stack, messenger and printer;
    // never closes a file.
    ~TalvoXMLParser();
    TalvoXMLParser(const TalvoXMLParser&) = delete;
    TalvoXMLParser& operator=(const TalvoXMLParser&) = delete;

    // Replaces the roots of `document` by the items read from `file`.
    // Returns 0 on success; 1 after a syntax error, which is reported on the
    // error stream and leaves the document empty. White space after the last
    // item ends the parse normally. The caller opens and closes the file.
    // A null document or file gives 1 and changes nothing. O(file size).
    int parseFile(TalvoXMLDocument* document, FILE* file);

    // The name shown in reports (a copy is kept; null shows none).
    void setInputFileName(const char* name);
    const char* getInputFileName() const { return _inputFileName; }

    // The line of the next unread character, 1 at the start of a parse.
    int getLineNumber() const { return _lineNumber; }
    void resetLineNumber() { _lineNumber = 1; }
    void incrementLineNumber() { ++_lineNumber; }

    // The stream that replaces standard error for reports, or null.
    TalvoStream* getErrorStream() { return _errorStream; }
    // Sends later reports to `file` through a writing stream the parser owns
    // (the file itself stays the caller's). Null returns to standard error.
    void setErrorFile(FILE* file);

    // True once a syntax error has stopped the current parse.
    bool getParseError() const { return _parseError; }
    void resetParseError() { _parseError = false; }

    // The messenger, made on first use; owned by the parser.
    TalvoXMLParserMessenger* getMessenger();
    // Replaces the messenger; the parser takes `messenger` over and deletes
    // the previous one. Null brings the default back at next use.
    void setMessenger(TalvoXMLParserMessenger* messenger);
    // The printer, made on first use; owned by the parser.
    TalvoXMLPrinter* getPrinter();
    // Replaces the printer; the parser takes `printer` over and deletes the
    // previous one.
    void setPrinter(TalvoXMLPrinter* printer);

    // Reports a problem found in a parsed document at the line of `term`
    // (line 0 for a null term) under the type "ERROR" or "WARNING":
    //   ERROR [<file name>, line <n>]:
    //   <text><argument>
    // where the text is the messenger's text for `code` or the given text,
    // the file name and its comma appear only when set, and a null text or
    // argument writes nothing. The parse error flag is left alone.
    void raiseError(int code, TalvoXMLTerm* term);
    void raiseError(const char* text, TalvoXMLTerm* term);
    void raiseError(int code, const char* argument, TalvoXMLTerm* term);
    void raiseError(const char* text, const char* argument, TalvoXMLTerm* term);
    void raiseWarning(int code, TalvoXMLTerm* term);
    void raiseWarning(const char* text, TalvoXMLTerm* term);
    void raiseWarning(int code, const char* argument, TalvoXMLTerm* term);
    void raiseWarning(const char* text, const char* argument, TalvoXMLTerm* term);

private:
    // Reading, with line counting.
    int _getChar();
    void _ungetChar(int c);
    bool _isAtEnd();

    // Collecting `_lastString`.
    void _beginString();
    void _appendChar(int c);
    void _endString();
    const char* _lastText();

    // One function per construct, each leaving the reader just after it.
    void _parseHeader();
    void _parseTag();
    void _parseSpaces();
    void _parseText(int first);
    void _parseNode();
    void _parseKeyword();
    void _parseAttribute(TalvoXMLTerm* term);
    void _parseString();
    void _parseComment();
    void _parseCData();
    void _parseCloseTag();
    TalvoXMLTerm* _newTerm(TalvoXMLTerm::Type type);

    // The stack of open nodes.
    bool _isStackEmpty() const { return _termStackTop < 0; }
    void _resetTermStack() { _termStackTop = -1; }
    bool _pushTerm(TalvoXMLTerm* term);
    TalvoXMLTerm* _popTerm();
    TalvoXMLTerm* _topTerm() const;

    // Reports.
    TalvoStream* _reportStream();
    void _raiseSyntaxError(int code);
    void _raiseAlert(int type, int code, const char* argument, TalvoXMLTerm* term);
    void _raiseAlert(int type, const char* text, const char* argument, TalvoXMLTerm* term);
    void _putReportHeader(TalvoStream* stream, int type, int line);

    static const int ChunkSize = 256;

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
    // The character given back by _ungetChar, NoChar when none; it goes
    // back to the file when a parse stops early.
    int _pushedBack;
    // Characters are gathered here and handed to `_lastString` a chunk at a
    // time; `_chunkLength` counts them, `_stringCut` is set by a NUL byte,
    // after which a raw string cannot show anything more.
    char _chunk[ChunkSize + 1];
    int _chunkLength;
    bool _stringCut;
};
