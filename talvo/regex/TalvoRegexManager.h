// TalvoRegexManager: one pattern, its compiled tree and its captures.
//
// The manager keeps a copy of the pattern and compiles it, on the first text
// operation that needs it, into a tree of TalvoRegex nodes that it owns (every
// node it ever made is in `nodes`, deleted with the manager). The captures of
// the latest matches live in `backReferences`: slot 0 holds the text of the
// last matchPattern match, slot n the last text group n completed on any path
// tried. They persist between operations, so a substitution may use the "\0"
// of an earlier search.
//
// Pattern language (bytes, no locale): . any byte; [..] [^..] classes; ( )
// groups numbered by opening parenthesis; | alternation (loosest, left first);
// postfix * + ? (tightest, greedy, stackable); ^ position 0; $ end of text when
// nothing else is left to match; \N back reference to group N; escapes \t \n \r
// and \( \) \[ \] \$ \^ \. \| \* \+ \\ (no others: "\?" is a backslash, then ?).
// A literal newline in the pattern is echoed to standard output and ignored.
// A malformed pattern writes "syntax error" to standard error when compiled,
// and every operation then fails; the failure is remembered.
//
// The compiler's and the matcher's state live in the manager, so distinct
// managers may be used from distinct threads at once; one manager may not.
#pragma once

#include <talvo/foundation/TalvoExport.h>
#include <talvo/foundation/TalvoObject.h>
#include <talvo/regex/TalvoRegex.h>

#include <cstdio>
#include <string>

class TalvoArray;
class TalvoList;
class TalvoStream;
struct TalvoRegexProgram;
class TalvoRegexMatcher;

class TALVO_API TalvoRegexManager : public TalvoObject<TalvoRegexManager> {
public:
    static constexpr const char* ClassName = "TalvoRegexManager";

    // Tokens of the pattern language, numbered from 258.
    enum Token {
        TOKEN_END = 0,
        TOKEN_STAR = 258,
        TOKEN_PLUS,
        TOKEN_QMARK,
        TOKEN_BAR,
        TOKEN_DOT,
        TOKEN_LPAR,
        TOKEN_RPAR,
        TOKEN_LBRACK,
        TOKEN_RBRACK,
        TOKEN_CARET,
        TOKEN_DOLLAR,
        TOKEN_CHAR,
        TOKEN_ESCAPEDCHAR,
        TOKEN_CHARCLASS,
        TOKEN_BACKREFERENCE
    };

    // A manager for a copy of `pattern` (null is taken as a pattern that
    // does not compile). Nothing is compiled yet.
    explicit TalvoRegexManager(const char* pattern);
    // Deletes every node, every stored capture and the pattern copy.
    ~TalvoRegexManager();

    // The next pattern byte for the scanner, advancing past it; the
    // terminating 0 is returned again and again once reached.
    char getChar();

    // A new node of `type` owned by this manager (kept in its node list);
    // null when it cannot be allocated.
    TalvoRegex* newRegex(TalvoRegex::Type type);
    // Makes `regex` the root and sets its back-reference number to 0.
    void setTopRegex(TalvoRegex* regex);
    // The root of the compiled tree, null before a successful compilation.
    TalvoRegex* getTopRegex() const { return topRegex; }

    // The stored capture n, owned by the manager; null when n is not a slot
    // or the slot is empty.
    char* getBackReference(int n) const;
    // Stores a copy of `text` as capture n, freeing the previous one and
    // growing the slots as needed. A negative n stores nothing.
    void setBackReference(int n, const char* text);

    // Parses the pattern from where the scanner stands, then numbers the
    // groups from 1. Returns 0 when the parser finished (also after a syntax
    // error, which leaves no tree), 2 when memory ran out.
    int compilePattern();

    // Writes the compiled tree in pattern syntax; nothing without a tree.
    void printTopRegex(FILE* file) const;
    // The same through a stream.
    void printTopRegex(TalvoStream* stream) const;

    // The first start at which the pattern matches `text` (only starts where
    // a byte stands are tried, so "" never matches), and stores the match as
    // capture 0. -1 when none, for a null text or a pattern that does not
    // compile. At worst quadratic in the text length per pattern node.
    int matchPattern(const char* text);
    // A new copy of the first match (owned by the caller), null when none.
    char* extractPattern(const char* text);
    // A new list (owned by the caller with its new strings) of the pieces
    // between matches: a match at 0 gives an empty first piece, adjacent
    // matches an empty piece, a match at the end no empty last piece. An
    // empty match is skipped by one byte. Empty list on failure.
    TalvoList* splitWithPattern(const char* text);
    // A new string with the first match replaced by `replacement`, in which
    // "\N" stands for capture N (a backslash before anything else is kept).
    // Null when nothing would be written or the pattern does not compile.
    char* substitutePattern(const char* text, const char* replacement);
    // The same for every match; after an empty match the next byte is copied.
    char* substitutePatterns(const char* text, const char* replacement);

    // For the matcher: stores `length` bytes at `bytes` as capture n.
    void _storeBackReference(int n, const char* bytes, int length);
    // For tests: lowers the iteration count of star and plus (normally
    // 2147483647) so that a brute-force model can follow every iteration.
    void _setRepetitionMaximum(int maximum);
    // For the nodes: the tree changed, so the flattened program is stale.
    void _treeChanged() { programIsCurrent = false; }

private:
    struct ScannedToken;
    struct ParseLevel;

    TalvoRegexManager(const TalvoRegexManager&) = delete;
    TalvoRegexManager& operator=(const TalvoRegexManager&) = delete;

    char* _substitutePatterns(const char* text, const char* replacement, int all);
    bool _ensureCompiled();
    void _appendReplacement(std::string* out, const char* replacement);
    // Scanner and parser (TalvoRegexCompiler.cpp).
    int _scanToken(ScannedToken* token);
    int _parse();
    TalvoRegex* _newNode(TalvoRegex::Type type, TalvoRegex* left, TalvoRegex* right);
    bool _addAtom(ParseLevel* level, TalvoRegex* atom);
    TalvoRegex* _closeLevel(ParseLevel* level);

    char* pattern;
    char* cursor;
    TalvoList* nodes;
    TalvoRegex* topRegex;
    TalvoArray* backReferences;
    // Beyond the pattern's own state: the compile-once flag, the flattened
    // tree and the matcher's reusable stacks.
    bool compileTried;
    bool programIsCurrent;
    TalvoRegexProgram* program;
    TalvoRegexMatcher* matcher;
};
