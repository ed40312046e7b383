#include <talvo/xml/TalvoXMLParser.h>

#include <talvo/foundation/TalvoMemoryManager.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoCharBuffer.h>
#include <talvo/text/TalvoFileStream.h>
#include <talvo/xml/TalvoXMLAttribute.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLParserMessenger.h>
#include <talvo/xml/TalvoXMLPrinter.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

typedef TalvoXMLParserMessenger Messages;

// Growth step of `_lastString`. Runs are handed to it in pieces shorter
// than one step, so it grows one step at a time, as it would byte by byte.
const int LastStringIncrement = 1024;
const size_t LongestPiece = LastStringIncrement - 1;
// Runs up to this length are appended byte by byte, longer ones as strings.
const size_t ShortRun = 12;
// First capacity of the term stack; it doubles whenever it is full.
const int InitialTermStackCapacity = 1024;
const char* const StackLabel = "void*[]";
// Character classes of the "C" locale, so that the dialect does not change
// with the caller's locale: white space as isspace, letters as isalpha, and
// the characters that may follow the first letter of a name. The stop
// classes end a run of text (white space or "<") or of a quoted value.
// Newlines and NUL bytes always interrupt a run (see _collectRun).
enum { Space = 1, Letter = 2, NameChar = 4, TextStop = 8, QuoteStop = 16, Newline = 32, Nul = 64 };

struct CharClassTable {
    unsigned char classes[256];
    CharClassTable() : classes() {
        for (const char* p = " \t\n\v\f\r"; *p; ++p)
            classes[static_cast<unsigned char>(*p)] = Space | TextStop;
        for (int c = 'a'; c <= 'z'; ++c)
            classes[c] = classes[c - 'a' + 'A'] = Letter | NameChar;
        for (int c = '0'; c <= '9'; ++c)
            classes[c] = NameChar;
        for (const char* p = "_-:."; *p; ++p)
            classes[static_cast<unsigned char>(*p)] = NameChar;
        classes[static_cast<unsigned char>('<')] = TextStop;
        classes[static_cast<unsigned char>('"')] = QuoteStop;
        classes[static_cast<unsigned char>('\n')] |= Newline;
        classes[0] = Nul;
    }
};
const CharClassTable CharClasses;

inline int classOf(char c) { return CharClasses.classes[static_cast<unsigned char>(c)]; }
inline bool is(int c, int mask) { return c >= 0 && (CharClasses.classes[c] & mask) != 0; }

#if defined(__SSE2__)
// Skips plain text: bytes of "!" or above other than "<", and lone blanks
// (followed by a byte of "!" or above). Sixteen bytes at a time, stopping on
// the first byte that is not plain, which the byte loop then examines.
inline char* skipPlainText(char* p, const char* end) {
    const char LastBlank = 0x20;  // bytes up to here count as white space or control
    const __m128i lastBlank = _mm_set1_epi8(LastBlank);
    const __m128i blanks = _mm_set1_epi8(' ');
    const __m128i angles = _mm_set1_epi8('<');
    while (end - p > 16) {  // the byte after the group must be readable too
        __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
        unsigned low = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_min_epu8(x, lastBlank), x)));
        unsigned blank = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(x, blanks)));
        unsigned angle = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(x, angles)));
        unsigned lowAfter = (low >> 1) | (static_cast<unsigned char>(p[16]) <= LastBlank ? 1u << 15 : 0);
        unsigned notPlain = (low & ~blank) | (blank & lowAfter) | angle;
        if (notPlain)  // bit i stands for byte i
            return p + __builtin_ctz(notPlain);
        p += 16;
    }
    return p;
}
#elif defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
const uint64_t EachByte = 0x0101010101010101ULL;
const uint64_t HighBits = 0x8080808080808080ULL;
const uint64_t LowBits = 0x7f7f7f7f7f7f7f7fULL;

// The high bit of each byte of `x` below `n` (n <= 128), exactly, byte by byte.
inline uint64_t bytesBelow(uint64_t x, unsigned n) {
    return ~(((x & LowBits) + (0x80 - n) * EachByte) | x) & HighBits;
}

// Skips plain text: bytes of "!" or above other than "<", and lone blanks
// (followed by a byte of "!" or above). Eight bytes at a time, stopping on
// the first byte that is not plain, which the byte loop then examines.
inline char* skipPlainText(char* p, const char* end) {
    const unsigned FirstPrintable = 0x21;
    while (end - p > 8) {  // the byte after the group must be readable too
        uint64_t x;
        std::memcpy(&x, p, sizeof x);
        uint64_t low = bytesBelow(x, FirstPrintable);
        uint64_t blank = bytesBelow(x ^ (' ' * EachByte), 1);
        uint64_t angle = bytesBelow(x ^ ('<' * EachByte), 1);
        uint64_t lastHigh = 0x80ULL << 56;
        uint64_t lowAfter = (low >> 8) | (static_cast<unsigned char>(p[8]) < FirstPrintable ? lastHigh : 0);
        uint64_t notPlain = (low & ~blank) | (blank & lowAfter) | angle;
        if (notPlain)  // the lowest flagged byte comes first in memory
            return p + __builtin_ctzll(notPlain) / 8;
        p += sizeof x;
    }
    return p;
}
#else
inline char* skipPlainText(char* p, const char*) { return p; }
#endif

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
      _readsAhead(false),
      _reachedEnd(false),
      _next(_block),
      _end(_block),
      _block(),
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
    _attachFile(file);
    _document = document;
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
    _releaseFile();
    if (!_parseError)
        return 0;
    document->reset();
    return 1;
}

// --- Reading. The helpers of the hot loops are defined inline so that
// calls within this file do not go through the library's symbol table.

void TalvoXMLParser::_attachFile(FILE* file) {
    _file = file;
    _reachedEnd = false;
    _next = _end = _block;
    *_end = '\0';
#if defined(_WIN32)
    _readsAhead = false;  // text-mode offsets are not byte counts there
#else
    int savedErrno = errno;  // a failed ftell (a pipe) is an answer, not an error
    _readsAhead = std::ftell(file) >= 0;
    errno = savedErrno;
#endif
}

// Gives the file back positioned just after the last character consumed.
// Until the parse itself met the end, the seek also clears the end-of-file
// flag that a short block read may have set.
void TalvoXMLParser::_releaseFile() {
    long unread = static_cast<long>(_end - _next);
    if (_readsAhead && !_reachedEnd)
        std::fseek(_file, -unread, SEEK_CUR);
    else if (!_readsAhead && unread > 0)
        std::ungetc(static_cast<unsigned char>(*_next), _file);
    _next = _end = _block;
    *_end = '\0';
}

// Reads the next block (one character when the file cannot be read ahead);
// false at the end of the file. Only called once the block is used up.
bool TalvoXMLParser::_fill() {
    size_t count = 0;
    if (_readsAhead) {
        count = std::fread(_block, 1, BlockSize, _file);
    } else {
        int c = std::getc(_file);
        if (c != EOF)
            _block[count++] = static_cast<char>(c);
    }
    _next = _block;
    _end = _block + count;
    *_end = '\0';
    if (count == 0)
        _reachedEnd = true;
    return count > 0;
}

inline int TalvoXMLParser::_getChar() {
    if (_next == _end && !_fill())
        return EOF;
    int c = static_cast<unsigned char>(*_next++);
    if (c == '\n')
        ++_lineNumber;
    return c;
}

// Gives back the character just read, which is still in the block.
inline void TalvoXMLParser::_ungetChar(int c) {
    if (c == EOF)
        return;
    --_next;
    if (c == '\n')
        --_lineNumber;
}

inline bool TalvoXMLParser::_isAtEnd() {
    return _next == _end && !_fill();
}

// Most calls find no white space at all: that case costs one test.
inline void TalvoXMLParser::_parseSpaces() {
    if (classOf(*_next) & Space)
        _skipSpaces();
    else if (_next == _end && _fill())
        _parseSpaces();
}

void TalvoXMLParser::_skipSpaces() {
    for (;;) {
        char* p = _next;
        while (classOf(*p) & Space) {
            if (*p == '\n')
                ++_lineNumber;
            ++p;
        }
        _next = p;
        if (p != _end || !_fill())
            return;
    }
}

// --- Collecting names, values and texts.

void TalvoXMLParser::_beginString() {
    if (_lastString)
        _lastString->reset();
    _stringCut = false;
}

// A NUL byte ends what a raw string can show: whatever follows it in the
// same string is dropped.
inline void TalvoXMLParser::_appendChar(int c) {
    if (_stringCut || !_lastString)
        return;
    if (c == '\0')
        _stringCut = true;
    else
        _lastString->append(static_cast<char>(c));
}

// Appends `length` bytes of the block at `run` (holding no NUL). Each piece
// is terminated in place for the moment of the append: the byte after a run
// is always inside the block or its sentinel.
void TalvoXMLParser::_appendRun(char* run, size_t length) {
    if (_stringCut || !_lastString)
        return;
    if (length <= ShortRun) {  // names and most values: cheaper byte by byte
        for (size_t i = 0; i < length; ++i)
            _lastString->append(run[i]);
        return;
    }
    while (length > 0) {
        size_t piece = length < LongestPiece ? length : LongestPiece;
        char saved = run[piece];
        run[piece] = '\0';
        _lastString->append(static_cast<const char*>(run));
        run[piece] = saved;
        run += piece;
        length -= piece;
    }
}

// Appends the input up to the first character of a class in `stops`, which
// is left unread and returned; EOF when the file ends first. Newlines on the
// way count lines; a NUL byte cuts the string and is skipped.
inline int TalvoXMLParser::_collectRun(int stops) {
    char* p = _next;
    for (;;) {
        while (!(classOf(*p) & (stops | Newline | Nul)))
            ++p;
        int c = static_cast<unsigned char>(*p);
        if (c == '\n' && !(classOf(*p) & stops)) {
            ++_lineNumber;
            ++p;
            continue;
        }
        _appendRun(_next, static_cast<size_t>(p - _next));
        _next = p;
        if (c != '\0' || (classOf(*p) & stops))
            return c;
        if (p == _end) {
            if (!_fill())
                return EOF;
        } else {
            _stringCut = true;
            ++_next;
        }
        p = _next;
    }
}

// Appends a text up to the "<" that ends it, which is left unread and
// returned; EOF when the file ends first. Each white-space run becomes one
// blank. Within a block the text is compacted in place, over the bytes
// already read (never needed again), and appended in one piece.
int TalvoXMLParser::_collectText() {
    char* r = _next;  // the read pointer
    char* w = _next;  // the write pointer: the compacted text is [_next, w)
    for (;;) {
        char* p = skipPlainText(r, _end);
        while (!(classOf(*p) & (TextStop | Nul)))
            ++p;
        std::memmove(w, r, static_cast<size_t>(p - r));
        w += p - r;
        if (classOf(*p) & Space) {
            for (; classOf(*p) & Space; ++p) {
                if (*p == '\n')
                    ++_lineNumber;
            }
            *w++ = ' ';  // w was at most the first byte of the run
            r = p;
            if (p != _end)
                continue;
            _appendRun(_next, static_cast<size_t>(w - _next));
            _next = p;
            _skipSpaces();  // the run may go on in the next blocks
            r = w = _next;
            continue;
        }
        _appendRun(_next, static_cast<size_t>(w - _next));
        _next = p;
        if (*p == '<')
            return '<';
        if (p == _end) {
            if (!_fill())
                return EOF;
        } else {
            _stringCut = true;  // a NUL byte
            ++_next;
        }
        r = w = _next;
    }
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

// Up to the next "<", which is left unread; each white-space run is one blank.
void TalvoXMLParser::_parseText(int first) {
    _beginString();
    _appendChar(first);
    if (_collectText() == EOF) {
        _raiseSyntaxError(Messages::UnexpectedEndOfFile);
        return;
    }
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
    _ungetChar(c);  // the letter is the first byte of the run
    _beginString();
    for (;;) {
        char* p = _next;
        while (classOf(*p) & NameChar)
            ++p;
        _appendRun(_next, static_cast<size_t>(p - _next));
        _next = p;
        if (p != _end)
            return;  // the character that ends the name stays unread
        if (!_fill()) {
            _raiseSyntaxError(Messages::UnexpectedEndOfFile);
            return;
        }
    }
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
    if (_collectRun(QuoteStop) == EOF) {
        _raiseSyntaxError(Messages::UnexpectedEndOfFile);
        return;
    }
    ++_next;  // the closing quote
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
