#include <talvo/regex/TalvoRegexEngine.h>

#include <talvo/regex/TalvoRegex.h>
#include <talvo/regex/TalvoRegexManager.h>

#include <cassert>
#include <cstdint>
#include <cstring>

namespace {

const int kNoFrame = -1;
const int kNoBarrier = -1;
// Long enough for any literal search to pay off; keeps the analysis linear.
const std::size_t kMaximumPrefix = 64;
constexpr int kByteCount = 256;
// States kept to spot cycles of captures among tries that consume nothing.
const int kHistoryLimit = 64;
// Group numbers above this (only a hand-built tree has them) get no saved
// state for the empty-iteration test; their slots still record.
const int kMaximumSlots = 1 << 16;

// Choice-point kinds.
enum ChoiceKind {
    CHOICE_ALTERNATIVE,  // run `node` (a right branch) at position
    CHOICE_FALLBACK,     // continue at the saved repetition starts, latest first
    CHOICE_RANGE,        // continue at maximum, maximum - 1, ..., minimum
    CHOICE_BARRIER,      // start of a repetition iteration's nested search
    CHOICE_REPEAT        // continue at position again, `count` more times
};

bool isSingleByte(int type) {
    return type == TalvoRegex::TYPE_DOT || type == TalvoRegex::TYPE_CHAR ||
           type == TalvoRegex::TYPE_ESCAPEDCHAR || type == TalvoRegex::TYPE_CHARCLASS;
}

// A concatenation whose left operand takes one byte (perhaps in a group):
// the matcher runs that byte directly instead of pushing the right operand.
bool opensWithByte(const std::vector<TalvoRegexInstruction>& code, const TalvoRegexInstruction& in) {
    return in.left >= 0 && (isSingleByte(code[in.left].type) || code[in.left].byteGroup);
}

// A set of byte values, a bit each.
struct ByteSet {
    std::uint64_t words[4] = {};

    void add(int b) { words[b >> 6] |= std::uint64_t{1} << (b & 63); }
    void addAllButZero() {
        for (std::uint64_t& w : words) w = ~std::uint64_t{0};
        words[0] &= ~std::uint64_t{1};
    }
    void addAll() { for (std::uint64_t& w : words) w = ~std::uint64_t{0}; }
    bool full() const { return (words[0] & words[1] & words[2] & words[3]) == ~std::uint64_t{0}; }
    ByteSet operator|(const ByteSet& other) const {
        ByteSet both;
        for (int i = 0; i < 4; i++) both.words[i] = words[i] | other.words[i];
        return both;
    }
    bool operator==(const ByteSet& other) const { return std::memcmp(words, other.words, sizeof words) == 0; }
    // Writes the set as a table of 256 flags; the cost goes with the bytes in it.
    void fill(bool* table) const {
        std::memset(table, 0, kByteCount);
        for (int i = 0; i < 4; i++)
            for (std::uint64_t w = words[i]; w != 0; w &= w - 1) table[i * 64 + __builtin_ctzll(w)] = true;
    }
};

const std::uint64_t kHashMultiplier = 0x9E3779B97F4A7C15ull;

std::size_t hashOf(const ByteSet& set) {
    std::uint64_t h = 0;
    for (std::uint64_t w : set.words) h = (h ^ w) * kHashMultiplier;
    return static_cast<std::size_t>(h ^ (h >> 32));
}

std::size_t hashOf(const TalvoRegex* node) {
    std::uint64_t h = reinterpret_cast<std::uintptr_t>(node) * kHashMultiplier;
    return static_cast<std::size_t>(h ^ (h >> 32));
}

// Key -> non-negative index, in one array probed linearly: compiling fills
// a few of these per pattern, and a node-based map would allocate per key.
// Keys are never removed.
template <typename Key>
class FlatIndex {
public:
    explicit FlatIndex(std::size_t expected) { _resize(expected); }

    // The index of `key`, -1 when absent.
    int find(const Key& key) const { return _slots[_slotOf(key)].index; }

    // The index of `key`, storing `index` for it first when absent.
    int insert(const Key& key, int index) {
        Slot& slot = _slots[_slotOf(key)];
        if (slot.index >= 0) return slot.index;
        slot = {key, index};
        if (++_used * 2 > _slots.size()) _resize(_used);
        return index;
    }

private:
    struct Slot {
        Key key{};
        int index = -1;
    };

    std::size_t _slotOf(const Key& key) const {
        std::size_t mask = _slots.size() - 1;
        std::size_t i = hashOf(key) & mask;
        while (_slots[i].index >= 0 && !(_slots[i].key == key)) i = (i + 1) & mask;
        return i;
    }

    // Room for `count` keys at most a quarter full, keeping those held.
    void _resize(std::size_t count) {
        std::size_t size = 16;
        while (size < 4 * count) size *= 2;
        std::vector<Slot> old(size);
        old.swap(_slots);
        for (const Slot& slot : old)
            if (slot.index >= 0) _slots[_slotOf(slot.key)] = slot;
    }

    std::vector<Slot> _slots;
    std::size_t _used = 0;
};

// Byte tables already made for guards, by the set they hold.
using GuardTables = FlatIndex<ByteSet>;

// The index in `tables` of the table holding `bytes`, made on first use:
// nodes that start alike (a concatenation and its left operand, say) share one.
int guardTable(const ByteSet& bytes, GuardTables& made, std::vector<std::array<bool, kByteCount>>& tables) {
    int index = made.insert(bytes, static_cast<int>(tables.size()));
    if (index == static_cast<int>(tables.size())) {
        tables.emplace_back();
        bytes.fill(tables.back().data());
    }
    return index;
}

// What an attempt starting at a position after 0 where a byte stands can do.
struct StartInfo {
    ByteSet first;  // bytes a consuming path can start with
    bool nullable = false;   // may succeed without consuming
    bool unsafe = false;     // may record a capture before consuming
    bool anchored = false;   // always fails there, recording nothing
    std::string prefix;      // bytes every path that does anything starts with
    bool complete = false;   // the node matches exactly `prefix`
};

// Whether `text` begins with `bytes` (which hold no 0: a shorter text fails
// at its terminator). Inline: most calls fail on the first byte.
inline bool startsWith(const char* text, const std::string& bytes) {
    for (std::size_t i = 0; i < bytes.size(); i++)
        if (text[i] != bytes[i]) return false;
    return true;
}

// When the pattern opens with a caret (on the left edge of its
// concatenations), the bytes every attempt at position 0 that does anything
// starts with: the caret matches there consuming nothing, then the prefixes
// of the operands after it follow as in a concatenation. Empty otherwise.
std::string prefixAfterCaret(const std::vector<TalvoRegexInstruction>& code, int root,
                             const std::vector<StartInfo>& info) {
    std::vector<int> rights;  // innermost last
    int node = root;
    while (code[node].type == TalvoRegex::TYPE_CONCATENATION && code[node].left >= 0 && code[node].right >= 0) {
        rights.push_back(code[node].right);
        node = code[node].left;
    }
    std::string prefix;
    if (code[node].type != TalvoRegex::TYPE_CARET) return prefix;
    for (auto r = rights.rbegin(); r != rights.rend() && prefix.size() < kMaximumPrefix; ++r) {
        prefix += info[*r].prefix;
        if (!info[*r].complete) break;
    }
    if (prefix.size() > kMaximumPrefix) prefix.resize(kMaximumPrefix);
    return prefix;
}

}  // namespace

// ---------------------------------------------------------------- program

int TalvoRegexProgram::indexOf(const TalvoRegex* node) const {
    for (std::size_t i = 0; i < nodes.size(); i++)
        if (nodes[i] == node) return static_cast<int>(i);
    return -1;
}

void TalvoRegexProgram::build(const TalvoRegex* top, const std::vector<const TalvoRegex*>& extra,
                              std::size_t expectedNodes) {
    code.clear();
    tables.clear();
    nodes.clear();
    literals.clear();
    root = -1;
    leading = -1;
    entry = -1;
    spine.clear();
    slotCount = 1;
    valid = top != nullptr;
    if (!valid) return;
    enum { GREY, BLACK };
    FlatIndex<const TalvoRegex*> seen(expectedNodes);  // node -> instruction index
    std::vector<int> colour;
    std::vector<std::pair<const TalvoRegex*, bool>> work;  // node, children done
    colour.reserve(expectedNodes);
    code.reserve(expectedNodes);
    nodes.reserve(expectedNodes);
    std::vector<const TalvoRegex*> roots(1, top);
    roots.insert(roots.end(), extra.begin(), extra.end());
    for (const TalvoRegex* r : roots) {
        if (r != nullptr) work.push_back({r, false});
        while (!work.empty()) {
            auto [node, done] = work.back();
            work.pop_back();
            int found = seen.find(node);
            if (!done) {
                if (found >= 0) {
                    if (colour[found] == GREY) valid = false;  // a cycle
                    continue;
                }
                int index = static_cast<int>(code.size());
                seen.insert(node, index);
                colour.push_back(GREY);
                nodes.push_back(node);
                TalvoRegexInstruction in{node->getType(), -1, -1, node->getBackReferenceNumber(), 0, -1, false, -1, -1};
                const char* text = node->getCharacterClass();
                if (text != nullptr) in.byte = static_cast<unsigned char>(text[0]);
                if (in.type == TalvoRegex::TYPE_CHARCLASS) {
                    std::array<bool, kByteCount> table{};
                    for (int b = 1; b < kByteCount; b++)
                        table[b] = node->isCharacterInClass(static_cast<char>(b)) != 0;
                    in.table = static_cast<int>(tables.size());
                    tables.push_back(table);
                }
                if (in.type == TalvoRegex::TYPE_GROUP && in.number >= slotCount && in.number < kMaximumSlots)
                    slotCount = in.number + 1;
                code.push_back(in);
                work.push_back({node, true});
                bool binary = in.type == TalvoRegex::TYPE_ALTERNATION || in.type == TalvoRegex::TYPE_CONCATENATION;
                bool unary = in.type >= TalvoRegex::TYPE_STAR && in.type <= TalvoRegex::TYPE_QMARK;
                unary = unary || in.type == TalvoRegex::TYPE_GROUP;
                if (binary && node->getRightArgument() != nullptr) work.push_back({node->getRightArgument(), false});
                if ((binary || unary) && node->getLeftArgument() != nullptr) work.push_back({node->getLeftArgument(), false});
            } else {
                int index = found;
                colour[index] = BLACK;
                TalvoRegexInstruction& in = code[index];
                bool binary = in.type == TalvoRegex::TYPE_ALTERNATION || in.type == TalvoRegex::TYPE_CONCATENATION;
                bool unary = (in.type >= TalvoRegex::TYPE_STAR && in.type <= TalvoRegex::TYPE_QMARK) ||
                             in.type == TalvoRegex::TYPE_GROUP;
                if ((binary || unary) && node->getLeftArgument() != nullptr) in.left = seen.find(node->getLeftArgument());
                if (binary && node->getRightArgument() != nullptr) in.right = seen.find(node->getRightArgument());
                in.byteGroup = in.type == TalvoRegex::TYPE_GROUP && in.left >= 0 && isSingleByte(code[in.left].type);
            }
        }
    }
    root = 0;
    if (valid) _computeFilters();
}

void TalvoRegexProgram::_computeFilters() {
    // Children always finish before their parent, so a pass in post order
    // (recomputed here from the code) sees every operand's facts first.
    std::vector<StartInfo> info(code.size());
    std::vector<std::pair<int, bool>> work;
    work.reserve(2 * code.size());
    work.push_back({root, false});
    std::vector<bool> done(code.size(), false);
    GuardTables guards(code.size());
    while (!work.empty()) {
        auto [i, expanded] = work.back();
        work.pop_back();
        const TalvoRegexInstruction in = code[i];
        if (!expanded) {
            if (done[i]) continue;
            work.push_back({i, true});
            if (in.right >= 0) work.push_back({in.right, false});
            if (in.left >= 0) work.push_back({in.left, false});
            continue;
        }
        if (done[i]) continue;
        done[i] = true;
        StartInfo& s = info[i];
        StartInfo none;  // a missing operand never matches
        const StartInfo& l = in.left >= 0 ? info[in.left] : none;
        const StartInfo& r = in.right >= 0 ? info[in.right] : none;
        switch (in.type) {
        case TalvoRegex::TYPE_DOT:
            s.first.addAllButZero();
            break;
        case TalvoRegex::TYPE_CHAR:
        case TalvoRegex::TYPE_ESCAPEDCHAR:
            if (in.byte != 0) {
                s.first.add(in.byte);
                s.prefix.assign(1, static_cast<char>(in.byte));
                s.complete = true;
            }
            break;
        case TalvoRegex::TYPE_CHARCLASS:
            for (int b = 1; b < kByteCount; b++)
                if (tables[in.table][b]) s.first.add(b);
            break;
        case TalvoRegex::TYPE_ALTERNATION:
            s.first = l.first | r.first;
            s.nullable = l.nullable || r.nullable;
            s.unsafe = l.unsafe || r.unsafe;
            s.anchored = l.anchored && r.anchored;
            break;
        case TalvoRegex::TYPE_CONCATENATION:
            s.first = l.nullable ? (l.first | r.first) : l.first;
            s.nullable = l.nullable && r.nullable;
            s.unsafe = l.unsafe || (l.nullable && r.unsafe);
            s.anchored = l.anchored;
            s.prefix = l.prefix;
            if (l.complete && s.prefix.size() < kMaximumPrefix) s.prefix += r.prefix;
            if (s.prefix.size() > kMaximumPrefix) s.prefix.resize(kMaximumPrefix);
            s.complete = l.complete && r.complete && s.prefix.size() < kMaximumPrefix;
            if (s.complete) {
                code[i].literal = static_cast<int>(literals.size());
                literals.push_back(s.prefix);
            }
            break;
        case TalvoRegex::TYPE_STAR:
        case TalvoRegex::TYPE_QMARK:
            s.first = l.first;
            s.nullable = true;
            s.unsafe = l.unsafe;
            break;
        case TalvoRegex::TYPE_PLUS:
        case TalvoRegex::TYPE_GROUP:
            // A plus fails when its first iteration does; a group records
            // only once its content has matched.
            s.first = l.first;
            s.nullable = l.nullable;
            s.unsafe = l.unsafe || (in.type == TalvoRegex::TYPE_GROUP && l.nullable);
            s.anchored = l.anchored;
            s.prefix = l.prefix;
            break;
        case TalvoRegex::TYPE_DOLLAR:
        case TalvoRegex::TYPE_CARET:
            s.anchored = true;  // a byte stands at every start tried, and it is not 0
            break;
        case TalvoRegex::TYPE_BACKREFERENCE:
            s.first.addAll();
            s.nullable = true;
            s.unsafe = true;
            break;
        default:
            break;
        }
        if (!s.nullable && !s.unsafe && !s.first.full()) code[i].guard = guardTable(s.first, guards, tables);
    }
    int first = root;
    while (code[first].type == TalvoRegex::TYPE_CONCATENATION && code[first].left >= 0) first = code[first].left;
    const TalvoRegexInstruction& lead = code[first];
    if ((lead.type == TalvoRegex::TYPE_STAR || lead.type == TalvoRegex::TYPE_PLUS) && lead.left >= 0 &&
        isSingleByte(code[lead.left].type))
        leading = first;
    const StartInfo& top = info[root];
    anchored = top.anchored;
    caretFree = true;
    for (const TalvoRegexInstruction& in : code)
        if (in.type == TalvoRegex::TYPE_CARET) caretFree = false;
    prefix = top.prefix;
    caretPrefix = prefixAfterCaret(code, root, info);
    useFirstBytes = !top.nullable && !top.unsafe;
    _computeSpine();
    top.first.fill(firstBytes);
}

// Every attempt opens by going down the concatenations on the left edge,
// pushing their right operands, before it reads a byte: the same frames
// each time, so the matcher pushes them once per text.
void TalvoRegexProgram::_computeSpine() {
    spine.clear();
    entry = root;
    while (entry >= 0 && code[entry].type == TalvoRegex::TYPE_CONCATENATION && code[entry].literal < 0 &&
           code[entry].right >= 0 && !opensWithByte(code, code[entry])) {
        spine.push_back(code[entry].right);
        entry = code[entry].left;
    }
}

int TalvoRegexProgram::nextStart(const char* text, int start, int end) const {
    if (start >= end) return start;
    if (!prefix.empty()) return _findPrefix(text, start, end);
    if (start == 0 && !caretFree) {
        // A caret may match there without consuming; what follows it may be known.
        if (startsWith(text, caretPrefix)) return 0;
        start = 1;
        if (start >= end) return end;
    }
    if (anchored) return end;
    if (useFirstBytes) {
        int p = start;
        while (p < end && !firstBytes[static_cast<unsigned char>(text[p])]) p++;
        return p;
    }
    return start;
}

// The first place at or after `start` where the prefix stands whole, `end`
// when none. Holds at position 0 too: a caret or dollar ends the prefix.
int TalvoRegexProgram::_findPrefix(const char* text, int start, int end) const {
    const char* p = text + start;
    const char* limit = text + end;
    std::size_t n = prefix.size();
    while (static_cast<std::size_t>(limit - p) >= n) {
        p = static_cast<const char*>(std::memchr(p, prefix[0], limit - p));
        if (p == nullptr || static_cast<std::size_t>(limit - p) < n) return end;
        if (std::memcmp(p, prefix.data(), n) == 0) return static_cast<int>(p - text);
        p++;
    }
    return end;
}

// ---------------------------------------------------------------- matcher

void TalvoRegexMatcher::begin(const TalvoRegexProgram& program, TalvoRegexManager* manager, const char* text) {
    program_ = &program;
    manager_ = manager;
    text_ = text;
    for (int slot : recorded_) captures_[slot].start = -1;
    recorded_.clear();
    if (captures_.size() < static_cast<std::size_t>(program.slotCount))
        captures_.resize(program.slotCount, Capture{-1, 0});
    frames_.clear();
    spineFrames_ = kNoSpine;
}

// Pushes the spine's frames, kept under every attempt's frames until the
// next begin. Done at the first attempt: most texts may have none.
void TalvoRegexMatcher::_pushSpine() {
    entryContinuation_ = kNoFrame;
    for (int node : program_->spine) entryContinuation_ = _pushFrame(node, false, 0, entryContinuation_);
    spineFrames_ = frames_.size();
}

int TalvoRegexMatcher::search(int start, int end, int* matchEnd) {
    if (!program_->valid) return end;
    for (int p = program_->nextStart(text_, start, end); p < end;
         p = program_->nextStart(text_, _nextAfterFailure(p), end)) {
        int found = _attempt(p);
        if (found != -1) {
            *matchEnd = found;
            return p;
        }
    }
    return end;
}

// One attempt at `position` with nothing after the pattern: its end or -1.
inline int TalvoRegexMatcher::_attempt(int position) {
    if (spineFrames_ == kNoSpine) _pushSpine();
    _reset(spineFrames_);
    attemptVersion_ = version_;
    leadingRunEnd_ = -1;
    return _run(program_->entry, position, entryContinuation_);
}

// After a failed attempt at `start`: the first later start that might do
// anything. When the pattern opens with a star or plus of one byte and the
// attempt recorded nothing, every start up to the end of that first run
// would only retry the same continuations: it is skipped.
inline int TalvoRegexMatcher::_nextAfterFailure(int start) const {
    if (leadingRunEnd_ < start || version_ != attemptVersion_) return start + 1;
    return leadingRunEnd_ + 1;
}

void TalvoRegexMatcher::flush() {
    _storeCaptures();
}

int TalvoRegexMatcher::match(const TalvoRegexProgram& program, TalvoRegexManager* manager,
                             const char* text, int position, int node,
                             const std::vector<StackEntry>& stack) {
    if (!program.valid || node < 0) return -1;
    begin(program, manager, text);
    _reset(0);
    int continuation = kNoFrame;
    for (auto e = stack.rbegin(); e != stack.rend(); ++e)
        continuation = _pushFrame(e->node, e->closing, e->groupStart, continuation);
    int result = _run(node, position, continuation);
    flush();
    return result;
}

// Clears the stacks of the previous attempt down to the first `frames`
// frames; the captures stay.
void TalvoRegexMatcher::_reset(std::size_t frames) {
    frames_.resize(frames);
    choices_.clear();
    positions_.clear();
    snapshots_.clear();
}

// Whether a one-byte node (dot, character, class) takes byte `c`.
inline bool TalvoRegexMatcher::_matchesByte(const TalvoRegexInstruction& in, char c) const {
    unsigned char b = static_cast<unsigned char>(c);
    if (b == 0) return false;
    if (in.type == TalvoRegex::TYPE_DOT) return true;
    if (in.type == TalvoRegex::TYPE_CHARCLASS) return program_->tables[in.table][b];
    return b == in.byte;
}

// True when node would fail at `position` without recording anything: its
// guard rejects the byte there. Guards do not hold where a caret or dollar
// could match without consuming.
inline bool TalvoRegexMatcher::_refuses(int node, int position) const {
    if (node < 0) return true;
    int guard = program_->code[node].guard;
    if (guard < 0 || text_[position] == 0 || (position == 0 && !program_->caretFree)) return false;
    return !program_->tables[guard][static_cast<unsigned char>(text_[position])];
}

// The guard table of the node the continuation runs next, if it has one.
const bool* TalvoRegexMatcher::_guardOf(int continuation) const {
    if (continuation == kNoFrame) return nullptr;
    const Frame& f = frames_[continuation];
    if (f.closing) return nullptr;
    int guard = program_->code[f.node].guard;
    return guard >= 0 ? program_->tables[guard].data() : nullptr;
}

// Frames and choices are filled in place: a temporary copied in is written
// field by field and read back whole, which stalls on every push.
int TalvoRegexMatcher::_pushFrame(int node, bool closing, int groupStart, int next) {
    Frame& f = frames_.emplace_back();
    f.node = node;
    f.groupStart = groupStart;
    f.next = next;
    f.closing = closing;
    return static_cast<int>(frames_.size()) - 1;
}

// A choice of `kind` with the marks of the current stacks; the caller sets
// the fields its kind uses beyond these.
TalvoRegexMatcher::Choice& TalvoRegexMatcher::_pushChoice(int kind, int node, int position, int continuation,
                                                          int barrier) {
    Choice& c = choices_.emplace_back();
    c.kind = kind;
    c.node = node;
    c.position = position;
    c.continuation = continuation;
    c.frameMark = static_cast<int>(frames_.size());
    c.previousBarrier = barrier;
    c.snapshot = static_cast<int>(snapshots_.size());
    return c;
}

// Inline: a group around one byte records at every start tried.
inline void TalvoRegexMatcher::_record(int number, int start, int end) {
    if (number < 0) return;  // the manager would keep nothing
    std::size_t slot = static_cast<std::size_t>(number);
    if (slot >= captures_.size()) _growCaptures(slot + 1);
    Capture& c = captures_[slot];
    if (c.start == start && c.length == end - start) return;
    if (c.start < 0) recorded_.push_back(number);
    c.start = start;
    c.length = end - start;
    version_++;
}

// Only a hand-built tree numbers a group beyond the program's slots.
void TalvoRegexMatcher::_growCaptures(std::size_t size) {
    captures_.resize(size, Capture{-1, 0});
}

bool TalvoRegexMatcher::_readBackReference(int number, const char** bytes, int* length) const {
    if (number < 0) return false;
    std::size_t slot = static_cast<std::size_t>(number);
    if (slot < captures_.size() && captures_[slot].start >= 0) {
        *bytes = text_ + captures_[slot].start;
        *length = captures_[slot].length;
        return true;
    }
    const char* stored = manager_ != nullptr ? manager_->getBackReference(number) : nullptr;
    if (stored == nullptr) return false;
    *bytes = stored;
    *length = static_cast<int>(std::strlen(stored));
    return true;
}

// Saves the capture state (one view per slot) and returns where it begins.
int TalvoRegexMatcher::_takeSnapshot() {
    int mark = static_cast<int>(snapshots_.size());
    snapshots_.insert(snapshots_.end(), captures_.begin(), captures_.begin() + program_->slotCount);
    return mark;
}

// True when the captures are what `choice` saw when it was made. Views are
// compared by place, so equal text at another place counts as a change;
// that only costs another try.
bool TalvoRegexMatcher::_unchangedSince(const Choice& choice) const {
    return version_ == choice.version || _sameState(choice.snapshot);
}

bool TalvoRegexMatcher::_sameState(int mark) const {
    for (int i = 0; i < program_->slotCount; i++) {
        const Capture& now = captures_[i];
        const Capture& then = snapshots_[mark + i];
        if (now.start != then.start || (now.start >= 0 && now.length != then.length)) return false;
    }
    return true;
}

void TalvoRegexMatcher::_restoreState(int mark) {
    for (int i = 0; i < program_->slotCount; i++) captures_[i] = snapshots_[mark + i];
    version_++;
}

// Index in a history of `count` states of the one equal to the current
// state, or -1.
int TalvoRegexMatcher::_findState(int mark, int count) const {
    for (int i = 0; i < count; i++)
        if (_sameState(mark + i * program_->slotCount)) return i;
    return -1;
}

// Tries of the continuation at `start`: this one and `more` after it. The
// choice keeps the capture state each try began with, to spot repeats.
void TalvoRegexMatcher::_pushRepeat(int start, int continuation, int barrier, std::int64_t more) {
    Choice& c = _pushChoice(CHOICE_REPEAT, -1, start, continuation, barrier);
    c.maximum = 1;
    c.count = more;
    c.version = version_;
    _takeSnapshot();  // at c.snapshot
}

// Called when a try of a repeat has failed. True when no try is left or
// the remaining ones are known to fail: the captures went back to a state a
// try already began with, so the tries cycle; the captures are then set to
// where the cycle stands after the remaining tries. Otherwise records the
// new starting state.
bool TalvoRegexMatcher::_repeatIsSettled(Choice& c) {
    if (c.count < 1 || version_ == c.version) return true;
    int slots = program_->slotCount;
    int history = c.maximum;
    int seen = _findState(c.snapshot, history);
    if (seen >= 0) {
        std::int64_t period = history - seen;
        _restoreState(c.snapshot + static_cast<int>(seen + c.count % period) * slots);
        return true;
    }
    if (history < kHistoryLimit) {
        snapshots_.insert(snapshots_.end(), captures_.begin(), captures_.begin() + slots);
        c.maximum++;
    }
    return false;
}

// An iteration at `start` consumed nothing but changed the captures (the
// barrier's snapshot holds the state it began with). The fallback choice on
// top keeps the starting states of the empty iterations in a row; when the
// new state is one of them, the iterations cycle until the count runs out.
// Then the captures are set to where the cycle ends, the pending tries at
// `start` become one repeat, and true is returned.
bool TalvoRegexMatcher::_closeEmptyCycle(int start, int continuation, int barrier, const Choice& b) {
    int slots = program_->slotCount;
    Choice& fallback = choices_.back();
    snapshots_.resize(b.snapshot + slots);  // the iteration's starting state joins the history
    int history = (static_cast<int>(snapshots_.size()) - fallback.snapshot) / slots;
    int seen = _findState(fallback.snapshot, history);
    if (seen < 0) {
        if (history > kHistoryLimit) snapshots_.resize(b.snapshot);
        return false;
    }
    std::int64_t period = history - seen;
    std::int64_t further = b.maximum - 1;  // iterations the deeper levels would make
    _restoreState(fallback.snapshot + static_cast<int>(seen + further % period) * slots);
    std::int64_t pending = 0;  // fallbacks already queued at `start`
    while (static_cast<int>(positions_.size()) > fallback.positionMark && positions_.back() == start) {
        positions_.pop_back();
        pending++;
    }
    snapshots_.resize(fallback.snapshot);
    if (static_cast<int>(positions_.size()) == fallback.positionMark) choices_.pop_back();
    _pushRepeat(start, continuation, barrier, pending + b.maximum);
    return true;
}

void TalvoRegexMatcher::_storeCaptures() {
    for (int slot : recorded_) {
        if (captures_[slot].start < 0) continue;  // a duplicate entry, already stored
        if (manager_ != nullptr)
            manager_->_storeBackReference(slot, text_ + captures_[slot].start, captures_[slot].length);
        captures_[slot].start = -1;
    }
    recorded_.clear();
}

// The search loop. `position` and `k` (the continuation) describe the path
// being tried; `step` says what to do next with them.
int TalvoRegexMatcher::_run(int node, int position, int k) {
    enum Step { RUN, CONTINUE, FAIL, ITERATE };
    const std::vector<TalvoRegexInstruction>& code = program_->code;
    const char* s = text_;
    Step step = RUN;
    int barrier = kNoBarrier;  // innermost open iteration, as a choice index
    // The repetition being iterated (ITERATE): node, bounds, fallback state.
    int minimum = 0, maximum = 0;
    bool hasFallback = false;
    for (;;) {
        switch (step) {
        case RUN: {
            if (node < 0) { step = FAIL; break; }
            const TalvoRegexInstruction& in = code[node];
            if (in.literal >= 0) {
                // Plain characters only: no choice, no capture, just the bytes.
                const std::string& bytes = program_->literals[in.literal];
                if (std::strncmp(s + position, bytes.data(), bytes.size()) != 0) { step = FAIL; break; }
                position += static_cast<int>(bytes.size());
                step = CONTINUE;
                break;
            }
            switch (in.type) {
            case TalvoRegex::TYPE_DOT:
                if (s[position] == 0) { step = FAIL; break; }
                position++;
                step = CONTINUE;
                break;
            case TalvoRegex::TYPE_CHAR:
            case TalvoRegex::TYPE_ESCAPEDCHAR:
                if (s[position] == 0 || static_cast<unsigned char>(s[position]) != in.byte) { step = FAIL; break; }
                position++;
                step = CONTINUE;
                break;
            case TalvoRegex::TYPE_CHARCLASS:
                if (!program_->tables[in.table][static_cast<unsigned char>(s[position])]) { step = FAIL; break; }
                position++;
                step = CONTINUE;
                break;
            case TalvoRegex::TYPE_ALTERNATION:
                // A branch that would fail at once, recording nothing, is not tried.
                if (_refuses(in.left, position)) {
                    node = in.right;
                    break;
                }
                if (!_refuses(in.right, position)) _pushChoice(CHOICE_ALTERNATIVE, in.right, position, k, barrier);
                node = in.left;
                break;
            case TalvoRegex::TYPE_CONCATENATION:
                if (in.right < 0) { step = FAIL; break; }
                if (opensWithByte(code, in)) {
                    // Pushing the right node only to pop it after one byte
                    // (and the group's record) changes nothing: do it directly.
                    const TalvoRegexInstruction& l = code[in.left];
                    const TalvoRegexInstruction& byte = l.byteGroup ? code[l.left] : l;
                    if (!_matchesByte(byte, s[position])) { step = FAIL; break; }
                    if (l.byteGroup) _record(l.number, position, position + 1);
                    position++;
                    node = in.right;
                    break;
                }
                k = _pushFrame(in.right, false, 0, k);
                node = in.left;
                break;
            case TalvoRegex::TYPE_STAR:
            case TalvoRegex::TYPE_PLUS:
            case TalvoRegex::TYPE_QMARK:
                minimum = in.type == TalvoRegex::TYPE_PLUS ? 1 : 0;
                maximum = in.type == TalvoRegex::TYPE_QMARK ? 1 : program_->repetitionMaximum;
                hasFallback = false;
                step = ITERATE;
                break;
            case TalvoRegex::TYPE_DOLLAR:
                step = (s[position] == 0 && k == kNoFrame) ? CONTINUE : FAIL;
                break;
            case TalvoRegex::TYPE_CARET:
                step = position == 0 ? CONTINUE : FAIL;
                break;
            case TalvoRegex::TYPE_GROUP:
                if (in.byteGroup) {
                    if (!_matchesByte(code[in.left], s[position])) { step = FAIL; break; }
                    _record(in.number, position, position + 1);
                    position++;
                    step = CONTINUE;
                    break;
                }
                k = _pushFrame(node, true, position, k);
                node = in.left;
                break;
            case TalvoRegex::TYPE_BACKREFERENCE: {
                const char* bytes = nullptr;
                int length = 0;
                bool same = _readBackReference(in.number, &bytes, &length);
                for (int i = 0; same && i < length; i++) same = s[position + i] == bytes[i];
                if (!same) {
                    step = FAIL;
                    break;
                }
                position += length;
                step = CONTINUE;
                break;
            }
            default:
                step = FAIL;
                break;
            }
            break;
        }
        case ITERATE: {
            // One level of the repetition of `node` at `position`, with
            // continuation k and the remaining bounds.
            const TalvoRegexInstruction& in = code[node];
            if (maximum < 1) { step = CONTINUE; break; }
            if (in.left < 0) {
                step = minimum > 0 ? FAIL : CONTINUE;
                break;
            }
            const TalvoRegexInstruction& op = code[in.left];
            if (!hasFallback && isSingleByte(op.type)) {
                // Every iteration is one byte: run them all at once and keep
                // one choice for the shorter counts.
                int n = 0;
                while (n < maximum && _matchesByte(op, s[position + n])) n++;
                if (node == program_->leading && n < maximum) leadingRunEnd_ = position + n;
                if (n == 0) { step = minimum > 0 ? FAIL : CONTINUE; break; }
                Choice& c = _pushChoice(CHOICE_RANGE, node, position, k, barrier);
                c.minimum = position;
                c.maximum = position + n - 1;
                position += n;
                step = CONTINUE;  // the deepest level: the count ran out or the operand failed
                break;
            }
            Choice& c = _pushChoice(CHOICE_BARRIER, node, position, k, barrier);
            c.positionMark = static_cast<int>(positions_.size());
            c.minimum = minimum;
            c.maximum = maximum;
            c.hasFallback = hasFallback;
            c.version = version_;
            _takeSnapshot();  // at c.snapshot
            barrier = static_cast<int>(choices_.size()) - 1;
            k = kNoFrame;
            node = in.left;
            step = RUN;
            break;
        }
        case CONTINUE: {
            if (k != kNoFrame) {
                const Frame& f = frames_[k];
                k = f.next;
                if (f.closing) {
                    _record(code[f.node].number, f.groupStart, position);
                } else {
                    node = f.node;
                    step = RUN;
                }
                break;
            }
            if (barrier == kNoBarrier) return position;
            // The iteration matched up to `position`: cut its choices.
            const Choice b = choices_[barrier];
            bool empty = position == b.position;
            bool unchanged = empty && _unchangedSince(b);
            choices_.resize(barrier);
            frames_.resize(b.frameMark);
            positions_.resize(b.positionMark);
            barrier = b.previousBarrier;
            node = b.node;
            k = b.continuation;
            int start = b.position;
            if (unchanged) {
                // Every further iteration would do the same; what remains is
                // the continuation at `start`, once per level left plus once.
                snapshots_.resize(b.snapshot);
                _pushRepeat(start, k, barrier, b.maximum);
                position = start;
                step = CONTINUE;
                break;
            }
            if (!b.hasFallback) {
                Choice& c = _pushChoice(CHOICE_FALLBACK, node, 0, k, barrier);
                c.positionMark = static_cast<int>(positions_.size());
                c.snapshot = b.snapshot;
            }
            if (!empty) {
                snapshots_.resize(choices_.back().snapshot);  // a new start: no history
            } else if (_closeEmptyCycle(start, k, barrier, b)) {
                position = start;
                step = CONTINUE;
                break;
            }
            positions_.push_back(start);
            minimum = b.minimum - 1;
            maximum = b.maximum - 1;
            hasFallback = true;
            step = ITERATE;
            break;
        }
        case FAIL: {
            if (choices_.empty()) return -1;
            Choice& c = choices_.back();
            frames_.resize(c.frameMark);
            k = c.continuation;
            barrier = c.previousBarrier;  // the iteration the choice was made in
            switch (c.kind) {
            case CHOICE_ALTERNATIVE:
                node = c.node;
                position = c.position;
                choices_.pop_back();
                step = RUN;
                break;
            case CHOICE_FALLBACK:
                snapshots_.resize(c.snapshot);  // the iterations are over: drop their history
                position = positions_.back();
                positions_.pop_back();
                if (static_cast<int>(positions_.size()) == c.positionMark) choices_.pop_back();
                step = CONTINUE;
                break;
            case CHOICE_RANGE: {
                // Starts where the next node fails at once are skipped: they
                // would record nothing and fail.
                int p = c.maximum;
                const bool* guard = _guardOf(k);
                if (guard != nullptr)
                    while (p >= c.minimum && p > 0 && s[p] != 0 && !guard[static_cast<unsigned char>(s[p])]) p--;
                if (p < c.minimum) {
                    choices_.pop_back();
                    break;
                }
                position = p;
                if (p == c.minimum) choices_.pop_back(); else c.maximum = p - 1;
                step = CONTINUE;
                break;
            }
            case CHOICE_BARRIER: {
                // The iteration found no match.
                positions_.resize(c.positionMark);
                snapshots_.resize(c.snapshot);
                position = c.position;
                bool required = c.minimum > 0;
                choices_.pop_back();
                step = required ? FAIL : CONTINUE;
                break;
            }
            case CHOICE_REPEAT:
                if (_repeatIsSettled(c)) {
                    // The remaining tries would all fail: their captures are set.
                    snapshots_.resize(c.snapshot);
                    choices_.pop_back();
                    break;
                }
                c.count--;
                c.version = version_;
                position = c.position;
                step = CONTINUE;
                break;
            default:
                assert(false && "unknown choice kind");
                choices_.pop_back();
                break;
            }
            break;
        }
        }
    }
}
