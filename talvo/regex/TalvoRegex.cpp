#include <talvo/regex/TalvoRegex.h>

#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/regex/TalvoRegexEngine.h>
#include <talvo/regex/TalvoRegexManager.h>
#include <talvo/text/TalvoStream.h>

#include <cstdint>
#include <cstring>
#include <vector>

namespace {

// A range bound pair is valid only inside one of these three runs.
bool isRangeInOneGroup(char low, char high) {
    if (high <= low) return false;
    return (low >= 'a' && high <= 'z') || (low >= 'A' && high <= 'Z') || (low >= '0' && high <= '9');
}

// The byte a backslash escape stands for inside a class, 0 when none.
char classEscape(char c) {
    switch (c) {
    case 'n': return '\n';
    case 't': return '\t';
    case 'r': return '\r';
    default: return 0;
    }
}

bool hasOperand(TalvoRegex::Type type) {
    return type == TalvoRegex::TYPE_STAR || type == TalvoRegex::TYPE_PLUS ||
           type == TalvoRegex::TYPE_QMARK || type == TalvoRegex::TYPE_GROUP;
}

bool hasTwoOperands(TalvoRegex::Type type) {
    return type == TalvoRegex::TYPE_ALTERNATION || type == TalvoRegex::TYPE_CONCATENATION;
}

}  // namespace

TalvoRegex::TalvoRegex(TalvoRegexManager* manager, Type type)
    : manager(manager), type(type), leftArgument(nullptr), rightArgument(nullptr),
      characterClass(nullptr), backReferenceNumber(-1), groupState(0), groupIndex(0) {}

TalvoRegex::~TalvoRegex() {
    if (characterClass != nullptr) TalvoRawString::free(characterClass);
}

TalvoRegex& TalvoRegex::operator=(const TalvoRegex& other) {
    manager = other.manager;
    type = other.type;
    leftArgument = other.leftArgument;
    rightArgument = other.rightArgument;
    characterClass = other.characterClass;
    backReferenceNumber = other.backReferenceNumber;
    groupState = other.groupState;
    groupIndex = other.groupIndex;
    _treeChanged();
    return *this;
}

void TalvoRegex::free(void* regex) {
    delete static_cast<TalvoRegex*>(regex);
}

void TalvoRegex::_treeChanged() {
    if (manager != nullptr) manager->_treeChanged();
}

void TalvoRegex::setLeftArgument(TalvoRegex* regex) {
    leftArgument = regex;
    _treeChanged();
}

void TalvoRegex::setRightArgument(TalvoRegex* regex) {
    rightArgument = regex;
    _treeChanged();
}

void TalvoRegex::setCharacterClass(const char* text) {
    if (characterClass != nullptr) TalvoRawString::free(characterClass);
    characterClass = text != nullptr ? TalvoRawString::copy(text) : nullptr;
    _treeChanged();
}

void TalvoRegex::setBackReferenceNumber(int number) {
    backReferenceNumber = number;
    _treeChanged();
}

int TalvoRegex::isCharacterInClass(char c) const {
    const char* s = characterClass;
    if (s == nullptr) return 0;
    // A character node holds one byte, even "[" (from "\["): never a class walk.
    if (type != TYPE_CHARCLASS || s[0] != '[') return c == s[0] ? 1 : 0;
    int i = 1;
    bool negated = false;
    if (s[1] == '^') {
        negated = true;
        i = 2;
        if (s[2] == ']') {
            if (c == ']') return 0;
            i = 3;
        }
    } else if (s[1] == ']') {
        if (c == ']') return 1;
        i = 2;
    }
    bool found = false;
    // A class text set by hand may lack its "]": the terminator ends the walk too.
    while (s[i] != ']' && s[i] != 0) {
        char ch = s[i];
        if (ch == c && ch != '\\') {
            found = true;
            break;
        }
        if (s[i + 1] == '-' && isRangeInOneGroup(ch, s[i + 2])) {
            if (c >= ch && c <= s[i + 2]) {
                found = true;
                break;
            }
            i += 3;
            continue;
        }
        if (ch == '\\') {
            char escaped = classEscape(s[i + 1]);
            if (escaped != 0) {
                if (c == escaped) {
                    found = true;
                    break;
                }
                i += 2;
                continue;
            }
        }
        i++;  // a single member, or a backslash that only lets the next byte through
    }
    return found != negated ? 1 : 0;
}

void TalvoRegex::defineBackReferenceNumbers(int* next) {
    if (next == nullptr) return;
    // Pre-order walk with an explicit stack: a long pattern makes a deep tree.
    std::vector<TalvoRegex*> work(1, this);
    while (!work.empty()) {
        TalvoRegex* node = work.back();
        work.pop_back();
        if (node == nullptr) continue;
        if (node->type == TYPE_GROUP) {
            node->backReferenceNumber = *next;
            *next = static_cast<int>(static_cast<std::uint32_t>(*next) + 1u);
        }
        if (hasTwoOperands(node->type)) work.push_back(node->rightArgument);
        if (hasTwoOperands(node->type) || hasOperand(node->type)) work.push_back(node->leftArgument);
    }
    _treeChanged();
}

int TalvoRegex::match(const char* text, int position, TalvoList* stack) {
    if (text == nullptr || position < 0) return -1;
    if (static_cast<std::size_t>(position) > std::strlen(text)) return -1;
    std::vector<const TalvoRegex*> items;
    if (stack != nullptr) {
        TalvoListCursor* cursor = stack->newCursor();
        for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment())
            items.push_back(static_cast<const TalvoRegex*>(cursor->getItem()));
        delete cursor;
    }
    TalvoRegexProgram program;
    program.build(this, items);
    std::vector<TalvoRegexMatcher::StackEntry> entries;
    for (const TalvoRegex* item : items) {
        if (item == nullptr) return -1;  // nothing can continue through a missing node
        bool closing = item->type == TYPE_GROUP && item->groupState == 1;
        entries.push_back({program.indexOf(item), closing, item->groupIndex});
    }
    TalvoRegexMatcher matcher;
    return matcher.match(program, manager, text, position, program.root, entries);
}

void TalvoRegex::print(FILE* file) const {
    if (file == nullptr) return;
    std::string text = _printedText();
    std::fwrite(text.data(), 1, text.size(), file);
}

void TalvoRegex::print(TalvoStream* stream) const {
    if (stream == nullptr) return;
    for (char c : _printedText()) stream->put(c);
}

// The pattern text of the subtree, built with an explicit stack: items are
// nodes still to print or fixed texts to write.
std::string TalvoRegex::_printedText() const {
    struct Item { const TalvoRegex* node; const char* text; };
    std::string out;
    std::vector<Item> work{{this, nullptr}};
    while (!work.empty()) {
        Item item = work.back();
        work.pop_back();
        if (item.text != nullptr) {
            out += item.text;
            continue;
        }
        const TalvoRegex* node = item.node;
        if (node == nullptr) continue;
        const char* s = node->characterClass;
        switch (node->type) {
        case TYPE_DOT: out += '.'; break;
        case TYPE_CHAR: if (s != nullptr) out += s[0]; break;
        case TYPE_ESCAPEDCHAR: if (s != nullptr) { out += '\\'; out += s[0]; } break;
        case TYPE_CHARCLASS: if (s != nullptr) out += s; break;
        case TYPE_ALTERNATION:
            work.push_back({node->rightArgument, nullptr});
            work.push_back({nullptr, "|"});
            work.push_back({node->leftArgument, nullptr});
            break;
        case TYPE_CONCATENATION:
            work.push_back({node->rightArgument, nullptr});
            work.push_back({node->leftArgument, nullptr});
            break;
        case TYPE_STAR: work.push_back({nullptr, "*"}); work.push_back({node->leftArgument, nullptr}); break;
        case TYPE_PLUS: work.push_back({nullptr, "+"}); work.push_back({node->leftArgument, nullptr}); break;
        case TYPE_QMARK: work.push_back({nullptr, "?"}); work.push_back({node->leftArgument, nullptr}); break;
        case TYPE_DOLLAR: out += '$'; break;
        case TYPE_CARET: out += '^'; break;
        case TYPE_GROUP:
            out += '(';
            work.push_back({nullptr, ")"});
            work.push_back({node->leftArgument, nullptr});
            break;
        case TYPE_BACKREFERENCE: out += "\\" + std::to_string(node->backReferenceNumber); break;
        default: break;
        }
    }
    return out;
}
