// The pattern compiler of TalvoRegexManager: a hand-written scanner reading
// the pattern through getChar, and a parser that builds the tree with
// explicit stacks (one level per open parenthesis), so neither the pattern's
// length nor its nesting depth touches the machine stack.
//
// Grammar, with what each rule builds:
//   regex  : regex1                   the root (setTopRegex)
//   regex1 : regex1 "|" regex2        alternation, left-associative
//          | regex2
//   regex2 : regex2 regex3            concatenation, left-associative
//          | regex3
//   regex3 : regex3 "*" | regex3 "+" | regex3 "?"    postfix, stackable
//          | "$" | "^" | "." | char | escaped char | class | back reference
//          | "(" regex1 ")"           group
// Anything else (an empty pattern or alternative, "()", a leading operator,
// an unbalanced parenthesis, a stray "[" or "]") is a syntax error.
#include <talvo/regex/TalvoRegexManager.h>

#include <talvo/foundation/TalvoRawString.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

const char* const kSyntaxError = "syntax error";
const char* const kMemoryExhausted = "memory exhausted";
const int kParsed = 0;
const int kOutOfMemory = 2;

// The byte a two-character escape stands for, or -1 when "\c" is no escape.
int escapedByte(char c) {
    switch (c) {
    case 't': return '\t';
    case 'n': return '\n';
    case 'r': return '\r';
    case '(': case ')': case '[': case ']': case '$': case '^':
    case '.': case '|': case '*': case '+': case '\\':
        return static_cast<unsigned char>(c);
    default:
        return -1;
    }
}

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Length of a complete class starting just after its "[" at `s`, counting the
// closing "]", or 0: an optional "^", an optional "]" member, then at least
// one byte other than "]" and newline, then "]".
int classLength(const char* s) {
    int i = 0;
    if (s[i] == '^') i++;
    if (s[i] == ']') i++;
    int members = 0;
    while (s[i] != 0 && s[i] != ']' && s[i] != '\n') {
        i++;
        members++;
    }
    return (members > 0 && s[i] == ']') ? i + 1 : 0;
}

}  // namespace

struct TalvoRegexManager::ScannedToken {
    std::string text;  // the byte or the class text
    int number = 0;    // a back reference's number
};

// One parenthesis level: the alternation built so far, the concatenation of
// the current alternative, and its last atom (which a postfix operator takes).
struct TalvoRegexManager::ParseLevel {
    TalvoRegex* alternation = nullptr;
    TalvoRegex* sequence = nullptr;
    TalvoRegex* last = nullptr;
};

int TalvoRegexManager::_scanToken(ScannedToken* token) {
    for (;;) {
        char c = getChar();
        switch (c) {
        case 0: return TOKEN_END;
        case '\n':
            // No rule takes a newline: it is echoed and skipped.
            std::fputc('\n', stdout);
            continue;
        case '*': return TOKEN_STAR;
        case '+': return TOKEN_PLUS;
        case '?': return TOKEN_QMARK;
        case '|': return TOKEN_BAR;
        case '.': return TOKEN_DOT;
        case '(': return TOKEN_LPAR;
        case ')': return TOKEN_RPAR;
        case ']': return TOKEN_RBRACK;
        case '^': return TOKEN_CARET;
        case '$': return TOKEN_DOLLAR;
        case '[': {
            int length = cursor != nullptr ? classLength(cursor) : 0;
            if (length == 0) return TOKEN_LBRACK;
            token->text.assign(1, '[');
            for (int i = 0; i < length; i++) token->text += getChar();
            return TOKEN_CHARCLASS;
        }
        case '\\': {
            char next = cursor != nullptr ? *cursor : 0;
            if (isDigit(next)) {
                std::uint32_t number = 0;
                while (cursor != nullptr && isDigit(*cursor))
                    number = number * 10u + static_cast<std::uint32_t>(getChar() - '0');
                token->number = static_cast<int>(number);
                return TOKEN_BACKREFERENCE;
            }
            int byte = next != 0 ? escapedByte(next) : -1;
            if (byte < 0) {
                token->text.assign(1, '\\');  // the next byte is scanned on its own
                return TOKEN_CHAR;
            }
            getChar();
            token->text.assign(1, static_cast<char>(byte));
            return TOKEN_ESCAPEDCHAR;
        }
        default:
            token->text.assign(1, c);
            return TOKEN_CHAR;
        }
    }
}

TalvoRegex* TalvoRegexManager::_newNode(TalvoRegex::Type type, TalvoRegex* left, TalvoRegex* right) {
    TalvoRegex* node = newRegex(type);
    if (node == nullptr) return nullptr;
    node->setLeftArgument(left);
    node->setRightArgument(right);
    return node;
}

// Puts `atom` after the level's current alternative. False when out of memory.
bool TalvoRegexManager::_addAtom(ParseLevel* level, TalvoRegex* atom) {
    if (atom == nullptr) return false;
    if (level->last != nullptr) {
        level->sequence = level->sequence == nullptr
                              ? level->last
                              : _newNode(TalvoRegex::TYPE_CONCATENATION, level->sequence, level->last);
        if (level->sequence == nullptr) return false;
    }
    level->last = atom;
    return true;
}

// Ends the current alternative and returns the level's whole tree; null when
// out of memory. The caller has checked that the alternative is not empty.
TalvoRegex* TalvoRegexManager::_closeLevel(ParseLevel* level) {
    TalvoRegex* sequence = level->sequence == nullptr
                               ? level->last
                               : _newNode(TalvoRegex::TYPE_CONCATENATION, level->sequence, level->last);
    if (sequence == nullptr) return nullptr;
    level->sequence = level->last = nullptr;
    level->alternation = level->alternation == nullptr
                             ? sequence
                             : _newNode(TalvoRegex::TYPE_ALTERNATION, level->alternation, sequence);
    return level->alternation;
}

int TalvoRegexManager::_parse() {
    std::vector<ParseLevel> levels(1);
    ScannedToken token;
    bool syntaxError = false;
    bool outOfMemory = false;
    int kind = TOKEN_END;
    while (!syntaxError && !outOfMemory) {
        kind = _scanToken(&token);
        ParseLevel& level = levels.back();
        TalvoRegex* atom = nullptr;
        TalvoRegex::Type postfix = TalvoRegex::TYPE_STAR;
        switch (kind) {
        case TOKEN_DOT: atom = newRegex(TalvoRegex::TYPE_DOT); break;
        case TOKEN_CARET: atom = newRegex(TalvoRegex::TYPE_CARET); break;
        case TOKEN_DOLLAR: atom = newRegex(TalvoRegex::TYPE_DOLLAR); break;
        case TOKEN_CHAR:
        case TOKEN_ESCAPEDCHAR:
        case TOKEN_CHARCLASS:
            atom = newRegex(kind == TOKEN_CHAR ? TalvoRegex::TYPE_CHAR
                            : kind == TOKEN_ESCAPEDCHAR ? TalvoRegex::TYPE_ESCAPEDCHAR
                                                        : TalvoRegex::TYPE_CHARCLASS);
            if (atom != nullptr) atom->setCharacterClass(token.text.c_str());
            break;
        case TOKEN_BACKREFERENCE:
            atom = newRegex(TalvoRegex::TYPE_BACKREFERENCE);
            if (atom != nullptr) atom->setBackReferenceNumber(token.number);
            break;
        case TOKEN_STAR:
        case TOKEN_PLUS:
        case TOKEN_QMARK:
            if (level.last == nullptr) {
                syntaxError = true;
                break;
            }
            postfix = kind == TOKEN_STAR ? TalvoRegex::TYPE_STAR
                      : kind == TOKEN_PLUS ? TalvoRegex::TYPE_PLUS : TalvoRegex::TYPE_QMARK;
            level.last = _newNode(postfix, level.last, nullptr);
            outOfMemory = level.last == nullptr;
            continue;
        case TOKEN_BAR:
            if (level.last == nullptr) syntaxError = true;
            else outOfMemory = _closeLevel(&level) == nullptr;
            continue;
        case TOKEN_LPAR:
            levels.emplace_back();
            continue;
        case TOKEN_RPAR: {
            if (levels.size() < 2 || level.last == nullptr) {
                syntaxError = true;
                break;
            }
            TalvoRegex* inside = _closeLevel(&level);
            levels.pop_back();
            atom = inside != nullptr ? _newNode(TalvoRegex::TYPE_GROUP, inside, nullptr) : nullptr;
            break;
        }
        case TOKEN_END: {
            if (levels.size() != 1 || level.last == nullptr) {
                syntaxError = true;
                break;
            }
            TalvoRegex* top = _closeLevel(&level);
            if (top == nullptr) {
                outOfMemory = true;
                break;
            }
            setTopRegex(top);
            return kParsed;
        }
        default:  // a "[" that opens no class, a stray "]"
            syntaxError = true;
            break;
        }
        if (!syntaxError && !_addAtom(&levels.back(), atom)) outOfMemory = true;
    }
    if (outOfMemory) {
        std::fprintf(stderr, "%s", kMemoryExhausted);
        return kOutOfMemory;
    }
    // Recovery discards every token up to the end of the pattern (newlines
    // among them are still echoed) and leaves no tree.
    std::fprintf(stderr, "%s", kSyntaxError);
    while (kind != TOKEN_END) kind = _scanToken(&token);
    return kParsed;
}
