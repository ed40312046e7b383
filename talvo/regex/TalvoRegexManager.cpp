#include <talvo/regex/TalvoRegexManager.h>

#include <talvo/containers/TalvoArray.h>
#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoMemoryManager.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/regex/TalvoRegexEngine.h>

#include <cstdint>
#include <cstring>
#include <new>

namespace {

const int kInitialBackReferenceSlots = 16;

// A new raw string holding `length` bytes from `bytes`.
char* copyRange(const char* bytes, int length) {
    char* copy = TalvoRawString::allocate(length + 1);
    if (copy != nullptr && length > 0) std::memcpy(copy, bytes, static_cast<std::size_t>(length));
    return copy;
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

TalvoRegexManager::TalvoRegexManager(const char* pattern)
    : pattern(TalvoRawString::copy(pattern)), cursor(nullptr), nodes(new TalvoList()),
      topRegex(nullptr), backReferences(new TalvoArray(kInitialBackReferenceSlots)),
      compileTried(false), programIsCurrent(false),
      program(new (std::nothrow) TalvoRegexProgram()), matcher(new (std::nothrow) TalvoRegexMatcher()) {
    cursor = this->pattern;
}

TalvoRegexManager::~TalvoRegexManager() {
    if (pattern != nullptr) TalvoRawString::free(pattern);
    if (nodes != nullptr) nodes->deleteWithItems(TalvoRegex::free);
    if (backReferences != nullptr) {
        backReferences->deleteItems(TalvoRawString::free);
        delete backReferences;
    }
    delete program;
    delete matcher;
}

char TalvoRegexManager::getChar() {
    if (cursor == nullptr) return 0;
    char c = *cursor;
    if (c != 0) cursor++;
    return c;
}

TalvoRegex* TalvoRegexManager::newRegex(TalvoRegex::Type type) {
    TalvoRegex* regex = new TalvoRegex(this, type);
    if (nodes != nullptr) nodes->insertItemLast(regex);
    return regex;
}

void TalvoRegexManager::setTopRegex(TalvoRegex* regex) {
    topRegex = regex;
    if (regex != nullptr) regex->setBackReferenceNumber(0);
    programIsCurrent = false;
}

char* TalvoRegexManager::getBackReference(int n) const {
    if (backReferences == nullptr) return nullptr;
    return static_cast<char*>(backReferences->getCell(n));
}

void TalvoRegexManager::setBackReference(int n, const char* text) {
    if (n < 0 || backReferences == nullptr) return;
    char* old = getBackReference(n);
    if (old != nullptr) TalvoRawString::free(old);
    backReferences->setCell(n, text != nullptr ? TalvoRawString::copy(text) : nullptr);
}

void TalvoRegexManager::_storeBackReference(int n, const char* bytes, int length) {
    if (n < 0 || backReferences == nullptr) return;
    char* old = getBackReference(n);
    if (old != nullptr) TalvoRawString::free(old);
    backReferences->setCell(n, copyRange(bytes, length));
}

int TalvoRegexManager::compilePattern() {
    compileTried = true;
    int result = _parse();
    if (topRegex != nullptr) {
        int next = 1;
        topRegex->defineBackReferenceNumbers(&next);
    }
    programIsCurrent = false;
    return result;
}

void TalvoRegexManager::_setRepetitionMaximum(int maximum) {
    if (program != nullptr) program->repetitionMaximum = maximum;
}

void TalvoRegexManager::printTopRegex(FILE* file) const {
    if (topRegex != nullptr) topRegex->print(file);
}

void TalvoRegexManager::printTopRegex(TalvoStream* stream) const {
    if (topRegex != nullptr) topRegex->print(stream);
}

// Compiles on first use; a failed compilation is not retried (the scanner
// would find nothing left to read). Then flattens the tree when it changed.
bool TalvoRegexManager::_ensureCompiled() {
    if (topRegex == nullptr) {
        if (compileTried) return false;
        if (compilePattern() != 0 || topRegex == nullptr) return false;
    }
    if (program == nullptr || matcher == nullptr) return false;
    if (!programIsCurrent) {
        program->build(topRegex, {}, static_cast<std::size_t>(nodes->getNumberOfItems()));
        programIsCurrent = true;
    }
    return program->valid;
}

int TalvoRegexManager::matchPattern(const char* text) {
    if (text == nullptr || !_ensureCompiled()) return -1;
    int length = static_cast<int>(std::strlen(text));
    matcher->begin(*program, this, text);
    int end = -1;
    int start = matcher->search(0, length, &end);
    matcher->flush();
    if (start >= length) return -1;
    _storeBackReference(0, text + start, end - start);
    return start;
}

char* TalvoRegexManager::extractPattern(const char* text) {
    if (matchPattern(text) == -1) return nullptr;
    return TalvoRawString::copy(getBackReference(0));
}

TalvoList* TalvoRegexManager::splitWithPattern(const char* text) {
    TalvoList* result = new TalvoList();
    if (result == nullptr || text == nullptr || !_ensureCompiled()) return result;
    int length = static_cast<int>(std::strlen(text));
    int pieceStart = 0;
    int position = 0;
    matcher->begin(*program, this, text);
    while (position < length) {
        int end = -1;
        position = matcher->search(position, length, &end);
        if (position >= length) break;
        result->insertItemLast(copyRange(text + pieceStart, position - pieceStart));
        pieceStart = end;
        // An empty match would be found again at once: step past one byte.
        position = end == position ? end + 1 : end;
    }
    matcher->flush();
    if (pieceStart != length) result->insertItemLast(copyRange(text + pieceStart, length - pieceStart));
    return result;
}

char* TalvoRegexManager::substitutePattern(const char* text, const char* replacement) {
    return _substitutePatterns(text, replacement, 0);
}

char* TalvoRegexManager::substitutePatterns(const char* text, const char* replacement) {
    return _substitutePatterns(text, replacement, 1);
}

// Appends the replacement with every "\N" expanded to capture N.
void TalvoRegexManager::_appendReplacement(std::string* out, const char* replacement) {
    if (replacement == nullptr) return;
    const char* r = replacement;
    while (*r != 0) {
        if (r[0] == '\\' && isDigit(r[1])) {
            std::uint32_t number = 0;
            for (r++; isDigit(*r); r++) number = number * 10u + static_cast<std::uint32_t>(*r - '0');
            const char* capture = getBackReference(static_cast<int>(number));
            if (capture != nullptr) out->append(capture);
            continue;
        }
        out->push_back(*r);
        r++;
    }
}

// The output grows in a std::string: a buffer growing by a fixed step would
// copy itself over and over on long texts. The result is the same bytes, or
// null when no byte was written.
char* TalvoRegexManager::_substitutePatterns(const char* text, const char* replacement, int all) {
    if (text == nullptr || !_ensureCompiled()) return nullptr;
    std::string out;
    int length = static_cast<int>(std::strlen(text));
    int position = 0;
    bool first = true;
    matcher->begin(*program, this, text);
    while (position < length) {
        int end = -1;
        int found = (all == 1 || first) ? matcher->search(position, length, &end) : length;
        out.append(text + position, static_cast<std::size_t>(found - position));
        position = found;
        if (position >= length) break;
        first = false;
        matcher->flush();  // the replacement reads the captures from the slots
        _appendReplacement(&out, replacement);
        // After an empty match the byte there is copied, or it would match again.
        if (end == position) out.push_back(text[position++]);
        else position = end;
    }
    matcher->flush();
    if (out.empty()) return nullptr;
    return copyRange(out.data(), static_cast<int>(out.size()));
}
