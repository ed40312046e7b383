#include <talvo/xml/TalvoXMLParser.h>

#include <talvo/foundation/TalvoMemoryManager.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoCharBuffer.h>
#include <talvo/text/TalvoFileStream.h>
#include <talvo/xml/TalvoXMLAttribute.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLParserMessenger.h>
#include <talvo/xml/TalvoXMLPrinter.h>

#include <cstring>

#if defined(_WIN32)
#define TALVO_GETC _fgetc_nolock
#else
#define TALVO_GETC getc_unlocked
#endif

namespace {

typedef TalvoXMLParserMessenger Messages;

// Growth step of `_lastString`.
const int LastStringIncrement = 1024;
// First capacity of the term stack; it doubles whenever it is full.
const int InitialTermStackCapacity = 1024;
const char* const StackLabel = "void*[]";
// No character waiting to be read again (EOF itself is never given back).
const int NoChar = -2;

// Character classes of the "C" locale, so that the dialect does not change
// with the caller's locale: white space as isspace, letters as isalpha, and
// the characters that may follow the first letter of a name.
// TextStop marks the characters that interrupt a plain run of text.
enum { Space = 1, Letter = 2, NameChar = 4, TextStop = 8 };

struct CharClassTable {
    unsigned char classes[256];
    CharClassTable() : classes() {
        for (const char* p = " \t\n\v\f\r"; *p; ++p)
            classes[static_cast<unsigned char>(*p)] = Space;
        for (int c = 'a'; c <= 'z'; ++c)
            classes[c] = classes[c - 'a' + 'A'] = Letter | NameChar;
        for (int c = '0'; c <= '9'; ++c)
            classes[c] = NameChar;
        for (const char* p = "_-:."; *p; ++p)
            classes[static_cast<unsigned char>(*p)] = NameChar;
        for (const char* p = " \t\n\v\f\r<"; *p; ++p)
            classes[static_cast<unsigned char>(*p)] |= TextStop;
        classes[0] |= TextStop;
    }
};
const CharClassTable CharClasses;

inline bool is(int c, int mask) { return c >= 0 && (CharClasses.classes[c] & mask) != 0; }

}  // namespace

TalvoXMLParser::TalvoXMLParser()
    : _file(nullptr),
      _inputFileName(nullptr),
      _lineNumber(1),
      _defaultErrorStream(new TalvoFileStream(false, stderr)),
      _errorStream(nullptr),
      _document(nullptr),
      _lastString(new TalvoCharBuffer(LastStringIncrement)),
      _termStack(nullptr),
      _termStackCapacity(0),
      _termStackTop(-1),
      _parseError(false),
      _messenger(nullptr),
      _printer(nullptr),
      _pushedBack(NoChar),
      _chunk(),
      _chunkLength(0),
      _stringCut(false) {}

TalvoXMLParser::~TalvoXMLParser() {
    if (_inputFileName)
        TalvoRawString::free(_inputFileName);
    if (_defaultErrorStream)
        delete _defaultErrorStream;
    setErrorFile(nullptr);
    if (_lastString)
        TalvoCharBuffer::free(_lastString);
    if (_termStack) {
        TalvoMemoryManager::traceDelete(_termStack, StackLabel);
        TalvoMemoryManager::deleteCell(_termStack);
    }
    setMessenger(nullptr);
    setPrinter(nullptr);
}

// --- Settings.

void TalvoXMLParser::setInputFileName(const char* name) {
    char* copy = TalvoRawString::copy(name);
    if (_inputFileName)
        TalvoRawString::free(_inputFileName);
    _inputFileName = copy;
}

void TalvoXMLParser::setErrorFile(FILE* file) {
    if (_errorStream)
        delete _errorStream;
    _errorStream = file ? new TalvoFileStream(false, file) : nullptr;
}

TalvoXMLParserMessenger* TalvoXMLParser::getMessenger() {
    if (!_messenger)
        _messenger = new TalvoXMLParserMessenger();
    return _messenger;
}

void TalvoXMLParser::setMessenger(TalvoXMLParserMessenger* messenger) {
    if (_messenger && _messenger != messenger)
        delete _messenger;
    _messenger = messenger;
}

TalvoXMLPrinter* TalvoXMLParser::getPrinter() {
    if (!_printer)
        _printer = new TalvoXMLPrinter();
    return _printer;
}

void TalvoXMLParser::setPrinter(TalvoXMLPrinter* printer) {
    if (_printer && _printer != printer)
        delete _printer;
    _printer = printer;
}

// --- The whole file.

int TalvoXMLParser::parseFile(TalvoXMLDocument* document, FILE* file) {
    if (!document || !file)
        return 1;
    _file = file;
    _document = document;
    _pushedBack = NoChar;
    resetLineNumber();
    resetParseError();
    _resetTermStack();
    document->reset();
    _parseHeader();
    while (!_parseError && !_isAtEnd())
        _parseTag();
    if (!_parseError && !_isStackEmpty())
        _raiseSyntaxError(Messages::NonClosedTags);
    // Open nodes are already in the tree: the document alone frees them.
    _resetTermStack();
    if (_pushedBack != NoChar)
        ungetc(_pushedBack, _file);
    _pushedBack = NoChar;
    if (!_parseError)
        return 0;
    document->reset();
    return 1;
}

// --- Reading. The helpers of the hot loops are defined inline so that
// calls within this file do not go through the library's symbol table.

inline int TalvoXMLParser::_getChar() {
    int c;
    if (_pushedBack != NoChar) {
        c = _pushedBack;
        _pushedBack = NoChar;
    } else {
        c = TALVO_GETC(_file);
    }
    if (c == '\n')
        ++_lineNumber;
    return c;
}

// Every construct gives back at most the one character it has just read.
inline void TalvoXMLParser::_ungetChar(int c) {
    if (c == EOF)
        return;
    _pushedBack = c;
    if (c == '\n')
        --_lineNumber;
}

inline bool TalvoXMLParser::_isAtEnd() {
    int c = _getChar();
    _ungetChar(c);
    return c == EOF;
}

// --- Collecting names, values and texts.

void TalvoXMLParser::_beginString() {
    if (_lastString)
        _lastString->reset();
    _chunkLength = 0;
    _stringCut = false;
}

// A NUL byte ends what a raw string can show: whatever follows it in the
// same string is dropped.
inline void TalvoXMLParser::_appendChar(int c) {
    if (c == '\0') {
        _endString();
        _stringCut = true;
        return;
    }
    _chunk[_chunkLength++] = static_cast<char>(c);
    if (_chunkLength == ChunkSize)
        _endString();
}

// Hands the gathered characters to `_lastString`.
void TalvoXMLParser::_endString() {
    if (_chunkLength == 0 || !_lastString || _stringCut) {
        _chunkLength = 0;
        return;
    }
    _chunk[_chunkLength] = '\0';
    _lastString->append(_chunk);
    _chunkLength = 0;
}

const char* TalvoXMLParser::_lastText() {
    const char* text = _lastString ? _lastString->getString() : nullptr;
    return text ? text : "";
}

// --- Constructs.

// "<?" and everything up to the first "?>" (further "?" may stand between).
void TalvoXMLParser::_parseHeader() {
    if (_getChar() != '<' || _getChar() != '?') {
        _raiseSyntaxError(Messages::IllFormedHeader);
        return;
    }
    int c = _getChar();
    for (;;) {
        if (c == EOF) {
            _raiseSyntaxError(Messages::UnexpectedEndOfFile);
            return;
        }
        if (c != '?') {
            c = _getChar();
            continue;
        }
        do
            c = _getChar();
        while (c == '?');
        if (c == '>')
            return;
    }
}

void TalvoXMLParser::_parseSpaces() {
    int c;
    do
        c = _getChar();
    while (is(c, Space));
    _ungetChar(c);
}

// One item: a text, a node's opening tag, a CDATA section, a comment or
// declaration, or a closing tag.
void TalvoXMLParser::_parseTag() {
    _parseSpaces();
    int c = _getChar();
    if (c == EOF)
        return;  // white space up to the end of the file ends the parse quietly
    if (c != '<') {
        _parseText(c);
        return;
    }
    c = _getChar();
    if (is(c, Letter)) {
        _ungetChar(c);
        _parseNode();
    } else if (c == '!') {
        c = _getChar();
        if (c == '[') {
            _parseCData();
        } else {
            _ungetChar(c);
            _parseComment();
        }
    } else if (c == '/') {
        _parseCloseTag();
    } else {
        _raiseSyntaxError(Messages::IllFormedTagName);
    }
}

// Up to the next "<", which is given back; each white-space run is one blank.
void TalvoXMLParser::_parseText(int first) {
    _beginString();
    int c = first;
    for (;;) {
        if (c >= 0 && !(CharClasses.classes[c] & TextStop)) {  // the common case first
            _chunk[_chunkLength++] = static_cast<char>(c);
            if (_chunkLength == ChunkSize)
                _endString();
            c = _getChar();
            continue;
        }
        if (c == EOF) {
            _raiseSyntaxError(Messages::UnexpectedEndOfFile);
            return;
        }
        if (c == '<') {
            _ungetChar(c);
            break;
        }
        if (is(c, Space)) {
            _appendChar(' ');
            do
                c = _getChar();
            while (is(c, Space));
            continue;
        }
        _appendChar(c);
        c = _getChar();
    }
    _endString();
    _newTerm(TalvoXMLTerm::text);
}

// The name and attributes of an opening tag; the node stays open (pushed)
// unless the tag closes itself with "/>".
void TalvoXMLParser::_parseNode() {
    _parseKeyword();
    if (_parseError)
        return;
    TalvoXMLTerm* term = _newTerm(TalvoXMLTerm::node);
    for (;;) {
        _parseSpaces();
        int c = _getChar();
        if (is(c, Letter)) {
            _ungetChar(c);
            _parseAttribute(term);
            if (_parseError)
                return;
        } else if (c == '/') {
            if (_getChar() != '>')
                _raiseSyntaxError(Messages::IllFormedAttributeName);
            return;
        } else if (c == '>') {
            _pushTerm(term);
            return;
        } else {
            _raiseSyntaxError(Messages::IllFormedAttributeName);
            return;
        }
    }
}

// A tag or attribute name: a letter, then letters, digits, "_", "-", ":", ".".
void TalvoXMLParser::_parseKeyword() {
    _parseSpaces();
    int c = _getChar();
    if (!is(c, Letter)) {
        _raiseSyntaxError(Messages::CharExpected);
        return;
    }
    _beginString();
    do {
        _appendChar(c);
        c = _getChar();
    } while (is(c, NameChar));
    if (c == EOF) {
        _raiseSyntaxError(Messages::UnexpectedEndOfFile);
        return;
    }
    _ungetChar(c);
    _endString();
}

// name = "value", appended to `term`'s attributes.
void TalvoXMLParser::_parseAttribute(TalvoXMLTerm* term) {
    _parseKeyword();
    if (_parseError)
        return;
    TalvoXMLAttribute* attribute = new TalvoXMLAttribute(_lastText(), static_cast<const char*>(nullptr));
    _parseSpaces();
    int c = _getChar();
    // The two codes stand this way round on purpose: the end of the file
    // where "=" is due is 1007, any other character there 1001.
    if (c == EOF)
        _raiseSyntaxError(Messages::EqualExpected);
    else if (c != '=')
        _raiseSyntaxError(Messages::UnexpectedEndOfFile);
    else
        _parseString();
    if (_parseError || !term) {
        if (attribute)
            delete attribute;
        return;
    }
    if (attribute)
        attribute->setValue(_lastText());
    term->addAttribute(attribute);
}

// A double-quoted value, taken as it stands (newlines included, no escapes).
void TalvoXMLParser::_parseString() {
    _parseSpaces();
    if (_getChar() != '"') {
        _raiseSyntaxError(Messages::QuoteExpected);
        return;
    }
    _beginString();
    for (;;) {
        int c = _getChar();
        if (c == EOF) {
            _raiseSyntaxError(Messages::UnexpectedEndOfFile);
            return;
        }
        if (c == '"')
            break;
        _appendChar(c);
    }
    _endString();
}

// After "<!": "--...-->" keeps its dashes; anything else up to ">" (a
// document-type declaration, say) is kept as it stands. Both become comments.
void TalvoXMLParser::_parseComment() {
    _beginString();
    int c = _getChar();
    if (c == '-') {
        _appendChar(c);
        if (_getChar() != '-') {
            _raiseSyntaxError(Messages::DashExpected);
            return;
        }
        _appendChar('-');
        int dashes = 0;  // dashes just read after the opening pair
        for (;;) {
            c = _getChar();
            if (c == EOF) {
                _raiseSyntaxError(Messages::UnexpectedEndOfFile);
                return;
            }
            if (c == '>' && dashes >= 2)
                break;
            _appendChar(c);
            dashes = c == '-' ? dashes + 1 : 0;
        }
    } else {
        for (; c != '>'; c = _getChar()) {
            if (c == EOF) {
                _raiseSyntaxError(Messages::UnexpectedEndOfFile);
                return;
            }
            _appendChar(c);
        }
    }
    _endString();
    _newTerm(TalvoXMLTerm::comment);
}

// After "<![": "CDATA", optional white space, "[", then the content up to
// "]]>". A "]]" followed by any other character stays in the content with it.
void TalvoXMLParser::_parseCData() {
    _parseSpaces();
    for (const char* p = "CDATA"; *p; ++p) {
        if (_getChar() != *p) {
            _raiseSyntaxError(Messages::IllFormedCData);
            return;
        }
    }
    _parseSpaces();
    if (_getChar() != '[') {
        _raiseSyntaxError(Messages::IllFormedCData);
        return;
    }
    _beginString();
    for (;;) {
        int c = _getChar();
        if (c != ']') {
            if (c == EOF)
                break;
            _appendChar(c);
            continue;
        }
        int second = _getChar();
        if (second != ']') {
            if (second == EOF)
                break;
            _appendChar(']');
            _appendChar(second);
            continue;
        }
        int third = _getChar();
        if (third == '>') {
            _endString();
            _newTerm(TalvoXMLTerm::CDATA);
            return;
        }
        if (third == EOF)
            break;
        _appendChar(']');
        _appendChar(']');
        _appendChar(third);
    }
    _raiseSyntaxError(Messages::UnexpectedEndOfFile);
}

// After "</": the name, optional white space and ">"; closes the open node.
void TalvoXMLParser::_parseCloseTag() {
    _parseKeyword();
    if (_parseError)
        return;
    _parseSpaces();
    if (_getChar() != '>') {
        _raiseSyntaxError(Messages::IllFormedAttributeName);
        return;
    }
    if (_isStackEmpty()) {
        _raiseSyntaxError(Messages::NoOpeningTag);
        return;
    }
    if (_topTerm()->compareTag(_lastText()) != 0) {
        _raiseSyntaxError(Messages::TagMismatch);
        return;
    }
    _popTerm();
}

// A term of `type` holding `_lastString`, made at the current line and
// attached at once: to the open node on top of the stack, else as a root.
TalvoXMLTerm* TalvoXMLParser::_newTerm(TalvoXMLTerm::Type type) {
    TalvoXMLTerm* term = new TalvoXMLTerm(type, _lastText());
    if (!term)
        return nullptr;
    term->setLineNumber(_lineNumber);
    TalvoXMLTerm* parent = _topTerm();
    if (parent)
        parent->addChild(term);
    else
        _document->addRoot(term);
    return term;
}

// --- The stack of open nodes.

bool TalvoXMLParser::_pushTerm(TalvoXMLTerm* term) {
    if (_termStackTop + 1 >= _termStackCapacity) {
        int capacity = _termStackCapacity ? 2 * _termStackCapacity : InitialTermStackCapacity;
        if (capacity <= _termStackCapacity)
            return false;  // the int count itself would overflow
        auto** grown = static_cast<TalvoXMLTerm**>(
            TalvoMemoryManager::newCell(static_cast<size_t>(capacity) * sizeof(TalvoXMLTerm*)));
        if (!grown)
            return false;  // reported as "Memory overflow."; the node stays unpushed
        TalvoMemoryManager::traceNew(grown, StackLabel);
        if (_termStack) {
            std::memcpy(grown, _termStack, static_cast<size_t>(_termStackTop + 1) * sizeof(TalvoXMLTerm*));
            TalvoMemoryManager::traceDelete(_termStack, StackLabel);
            TalvoMemoryManager::deleteCell(_termStack);
        }
        _termStack = grown;
        _termStackCapacity = capacity;
    }
    _termStack[++_termStackTop] = term;
    return true;
}

TalvoXMLTerm* TalvoXMLParser::_popTerm() {
    return _isStackEmpty() ? nullptr : _termStack[_termStackTop--];
}

TalvoXMLTerm* TalvoXMLParser::_topTerm() const {
    return _isStackEmpty() ? nullptr : _termStack[_termStackTop];
}

// --- Reports.

TalvoStream* TalvoXMLParser::_reportStream() {
    return _errorStream ? _errorStream : _defaultErrorStream;
}

// "<type> [<file name>, <line> <n>]:" and a newline, then a flush.
void TalvoXMLParser::_putReportHeader(TalvoStream* stream, int type, int line) {
    TalvoXMLParserMessenger* messenger = getMessenger();
    const char* typeText = messenger ? messenger->getMessageType(type) : nullptr;
    const char* lineText = messenger ? messenger->getMessageType(Messages::LineType) : nullptr;
    if (typeText)
        stream->put(typeText);
    stream->put(" [");
    if (_inputFileName) {
        stream->put(_inputFileName);
        stream->put(", ");
    }
    if (lineText)
        stream->put(lineText);
    stream->put(" ");
    stream->put(line);
    stream->put("]:");
    stream->put('\n');
    stream->flush();
}

void TalvoXMLParser::_raiseSyntaxError(int code) {
    TalvoStream* stream = _reportStream();
    if (stream) {
        _putReportHeader(stream, Messages::SyntaxErrorType, _lineNumber);
        const char* text = getMessenger() ? getMessenger()->getMessageText(code) : nullptr;
        if (text) {
            stream->put(text);
            stream->put('\n');
            stream->flush();
        }
        stream->flush();
    }
    _parseError = true;
}

void TalvoXMLParser::_raiseAlert(int type, int code, const char* argument, TalvoXMLTerm* term) {
    TalvoXMLParserMessenger* messenger = getMessenger();
    _raiseAlert(type, messenger ? messenger->getMessageText(code) : nullptr, argument, term);
}

void TalvoXMLParser::_raiseAlert(int type, const char* text, const char* argument, TalvoXMLTerm* term) {
    TalvoStream* stream = _reportStream();
    if (!stream)
        return;
    _putReportHeader(stream, type, term ? term->getLineNumber() : 0);
    if (text)
        stream->put(text);
    if (argument)
        stream->put(argument);
    stream->put('\n');
    stream->flush();
}

void TalvoXMLParser::raiseError(int code, TalvoXMLTerm* term) {
    _raiseAlert(Messages::ErrorType, code, nullptr, term);
}

void TalvoXMLParser::raiseError(const char* text, TalvoXMLTerm* term) {
    _raiseAlert(Messages::ErrorType, text, nullptr, term);
}

void TalvoXMLParser::raiseError(int code, const char* argument, TalvoXMLTerm* term) {
    _raiseAlert(Messages::ErrorType, code, argument, term);
}

void TalvoXMLParser::raiseError(const char* text, const char* argument, TalvoXMLTerm* term) {
    _raiseAlert(Messages::ErrorType, text, argument, term);
}

void TalvoXMLParser::raiseWarning(int code, TalvoXMLTerm* term) {
    _raiseAlert(Messages::WarningType, code, nullptr, term);
}

void TalvoXMLParser::raiseWarning(const char* text, TalvoXMLTerm* term) {
    _raiseAlert(Messages::WarningType, text, nullptr, term);
}

void TalvoXMLParser::raiseWarning(int code, const char* argument, TalvoXMLTerm* term) {
    _raiseAlert(Messages::WarningType, code, argument, term);
}

void TalvoXMLParser::raiseWarning(const char* text, const char* argument, TalvoXMLTerm* term) {
    _raiseAlert(Messages::WarningType, text, argument, term);
}
