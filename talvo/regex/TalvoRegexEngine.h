// TalvoRegexEngine: the backtracking matcher behind TalvoRegex::match and the
// manager's text operations. Internal to the library (not exported).
//
// A tree of TalvoRegex nodes is flattened into a TalvoRegexProgram: one
// instruction per node, with the class of a bracket expression turned into a
// 256-entry table. TalvoRegexMatcher then runs the tree's continuation-passing
// search without recursion:
//   - the continuation (the nodes still to match after the current one) is a
//     linked list of frames in one arena, shared by every choice point that
//     saw it; a frame either runs a node or closes a group;
//   - choice points (the untried right branch of an alternation, the
//     shorter-repetition fallbacks, the barrier of a repetition's iteration)
//     live on a second heap stack;
//   - each repetition iteration is a nested search behind a barrier: its first
//     success cuts every choice point made inside it, so an iteration is never
//     revised, exactly as when it is matched alone against an empty stack.
// The order in which paths are tried, and therefore every result and every
// capture recorded on the way (abandoned paths included), is that of the
// recursive definition; only the machine stack is replaced by the heap.
//
// Shortcuts never skip a path that could record a capture: a start, an
// alternative or a repetition fallback is passed over only when the node to
// run there would fail at once on that byte, and the starts inside a failed
// leading one-byte run only when the attempt recorded nothing. A
// concatenation of plain characters, which has no choice and no group, is
// compared in one step.
//
// An iteration that consumes nothing and changes no capture would repeat
// identically until the repetition count runs out; the matcher then stops
// iterating and tries the continuation the number of times the unbounded
// rule would, skipping the repeats once one of them changes nothing either.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

class TalvoRegex;
class TalvoRegexManager;

// One node of a flattened tree.
struct TalvoRegexInstruction {
    int type;          // TalvoRegex::Type value
    int left;          // operand index, -1 when absent
    int right;         // right operand index, -1 when absent
    int number;        // group or back-reference number
    unsigned char byte;   // the byte of a TYPE_CHAR / TYPE_ESCAPEDCHAR node
    int table;         // index of the class table of a TYPE_CHARCLASS node
    bool byteGroup;    // a group around one one-byte node
    int guard;         // index of a table of the bytes this node can start
                       // with, when it fails at once (recording nothing) on
                       // any other byte after position 0; -1 when unknown
    int literal;       // index in literals of the bytes a concatenation of
                       // plain characters matches, -1 for other nodes
};

// A flattened tree plus what the search loop needs to skip hopeless starts.
struct TalvoRegexProgram {
    std::vector<TalvoRegexInstruction> code;
    std::vector<std::array<bool, 256>> tables;  // class and guard byte tables
    std::vector<const TalvoRegex*> nodes;   // node of each instruction
    std::vector<std::string> literals;      // see TalvoRegexInstruction::literal
    int root = -1;
    int slotCount = 1;    // capture slots the groups use: highest group number + 1
    int repetitionMaximum = 2147483647;  // iterations of a star or a plus
    bool valid = false;   // false for an empty tree or a tree with a cycle
    // Start filters. Each holds only when an attempt at a rejected start
    // would fail without recording any capture, so skipping it changes
    // nothing observable.
    bool anchored = false;          // every attempt after position 0 fails
    bool caretFree = false;         // no caret: the filters hold at position 0 too
    int leading = -1;   // a star or plus of one byte that every attempt runs first
    std::string prefix;             // every attempt that does anything starts with these bytes
    std::string caretPrefix;        // the same for attempts at 0, after a leading caret
    bool useFirstBytes = false;     // first byte of any success is in firstBytes
    bool firstBytes[256] = {};
    // Where every attempt starts: the node that first reads the text, under
    // the right operands of the concatenations above it (outermost first).
    int entry = -1;
    std::vector<int> spine;

    // Flattens the tree under `root` (and the extra nodes, which may be
    // reached from a caller's stack). Iterative: any depth is fine.
    // `expectedNodes`, when known, saves regrowing the tables on the way.
    void build(const TalvoRegex* root, const std::vector<const TalvoRegex*>& extra, std::size_t expectedNodes = 0);
    // The instruction index of a node, -1 when not in the program.
    int indexOf(const TalvoRegex* node) const;
    // The first start at or after `start` (below `end`, the text's length)
    // where an attempt might succeed or record a capture; `end` when none.
    // At position 0, where a caret matches, only the prefixes filter, unless
    // the pattern has no caret.
    int nextStart(const char* text, int start, int end) const;

private:
    int _findPrefix(const char* text, int start, int end) const;
    void _computeFilters();
    void _computeSpine();
};

// The search state: the frame arena, the choice points and the captures
// recorded during one top-level attempt. Reused across attempts.
class TalvoRegexMatcher {
public:
    // Frames to continue with after the node, first frame first.
    struct StackEntry {
        int node;        // instruction index
        bool closing;    // a group reached again: records, then continues
        int groupStart;  // where that group's attempt started
    };

    // Matches instruction `node` at `position` of `text`, followed by the
    // entries of `stack` (first entry first). Returns the end of the match or
    // -1. Captures recorded on the way are stored into `manager` (when not
    // null) before returning.
    int match(const TalvoRegexProgram& program, TalvoRegexManager* manager,
              const char* text, int position, int node,
              const std::vector<StackEntry>& stack);

    // Searches of the whole pattern over one text: begin, any number of
    // searches, then flush. Captures stay views into the text until flush
    // copies them into the manager, so a failed attempt costs no
    // allocation. The text must not change before flush.
    void begin(const TalvoRegexProgram& program, TalvoRegexManager* manager, const char* text);
    // The first start in [start, end) where an attempt of the pattern (with
    // nothing after it) succeeds, its end in *matchEnd; `end` when none.
    // `end` is the text's length or less. O(attempts tried).
    int search(int start, int end, int* matchEnd);
    // Stores the captures recorded since begin (or the last flush).
    void flush();

private:
    struct Frame { int node; int groupStart; int next; bool closing; };
    // A point to come back to when the path tried fails. The fields used
    // depend on the kind; see the matcher source.
    struct Choice {
        int kind;
        int node;
        int position;
        int continuation;
        int frameMark;
        int positionMark;
        int minimum;
        int maximum;
        int previousBarrier;
        bool hasFallback;
        std::int64_t count;
        std::uint64_t version;
        int snapshot;   // where this choice's saved captures begin in snapshots_
    };
    struct Capture { int start; int length; };

    int _attempt(int position);
    int _nextAfterFailure(int start) const;
    int _run(int node, int position, int continuation);
    int _pushFrame(int node, bool closing, int groupStart, int next);
    Choice& _pushChoice(int kind, int node, int position, int continuation, int barrier);
    const bool* _guardOf(int continuation) const;
    bool _refuses(int node, int position) const;
    bool _matchesByte(const TalvoRegexInstruction& in, char c) const;
    void _record(int number, int start, int end);
    void _growCaptures(std::size_t size);
    bool _readBackReference(int number, const char** bytes, int* length) const;
    void _storeCaptures();
    int _takeSnapshot();
    bool _unchangedSince(const Choice& choice) const;
    bool _sameState(int mark) const;
    void _restoreState(int mark);
    int _findState(int mark, int count) const;
    void _pushRepeat(int start, int continuation, int barrier, std::int64_t more);
    bool _repeatIsSettled(Choice& c);
    bool _closeEmptyCycle(int start, int continuation, int barrier, const Choice& b);
    void _reset(std::size_t frames);
    void _pushSpine();

    const TalvoRegexProgram* program_ = nullptr;
    TalvoRegexManager* manager_ = nullptr;
    const char* text_ = nullptr;
    std::vector<Frame> frames_;
    std::vector<Choice> choices_;
    std::vector<int> positions_;   // fallback starts of the repetitions
    std::vector<Capture> captures_;    // per slot; start -1 = not recorded
    std::vector<int> recorded_;        // slots recorded in this attempt
    std::vector<Capture> snapshots_;   // capture states saved by barriers and repeats
    std::uint64_t version_ = 0;       // bumped whenever a capture changes
    std::uint64_t attemptVersion_ = 0;  // version_ when the last attempt began
    int leadingRunEnd_ = -1;          // end of the leading run in the last attempt
    int entryContinuation_ = -1;      // the spine's frames, the first spineFrames_ ones
    static constexpr std::size_t kNoSpine = static_cast<std::size_t>(-1);
    std::size_t spineFrames_ = kNoSpine;  // kNoSpine until the text's first attempt
};
