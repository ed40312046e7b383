// TalvoRegex: one node of a compiled regular expression.
//
// The manager's compiler builds a tree of these nodes from a pattern: an
// alternation or a concatenation has a left and a right argument, a
// repetition (star, plus, question mark) or a group has its operand in the
// left argument, a character or a bracket class keeps its text in
// characterClass. A node belongs to the manager that created it; the manager
// deletes every node it made, and a node never frees its operands.
//
// A node matches itself, followed by a stack of nodes still to match, against
// a NUL-terminated byte string by depth-first backtracking: alternatives left
// first, each repetition iteration matched on its own and never revised,
// greedy repetitions. Captures go to the manager whenever a group completes,
// on every path tried. groupState and groupIndex are 0 whenever no match runs.
//
// Invariant: the subtree under a node is a tree (no node reached twice); a
// subtree with a cycle never matches.
#pragma once

#include <talvo/foundation/TalvoExport.h>
#include <talvo/foundation/TalvoObject.h>

#include <cstdint>
#include <cstdio>
#include <string>

class TalvoList;
class TalvoRegexManager;
class TalvoStream;

class TALVO_API TalvoRegex : public TalvoObject<TalvoRegex> {
public:
    static constexpr const char* ClassName = "TalvoRegex";

    // Node kinds; the values are fixed.
    enum Type : std::int32_t {
        TYPE_DOT = 0,
        TYPE_CHAR = 1,
        TYPE_ESCAPEDCHAR = 2,
        TYPE_CHARCLASS = 3,
        TYPE_ALTERNATION = 4,
        TYPE_CONCATENATION = 5,
        TYPE_STAR = 6,
        TYPE_PLUS = 7,
        TYPE_QMARK = 8,
        TYPE_DOLLAR = 9,
        TYPE_CARET = 10,
        TYPE_GROUP = 11,
        TYPE_BACKREFERENCE = 12
    };

    // A node of `type` owned by `manager`, with no operands, no class text
    // and back-reference number -1. Nodes are normally made by
    // TalvoRegexManager::newRegex, which also keeps them.
    TalvoRegex(TalvoRegexManager* manager, Type type);
    // Frees the class text only.
    ~TalvoRegex();
    // Copies all eight fields; the class text is then shared, not copied.
    TalvoRegex& operator=(const TalvoRegex& other);

    // Free call-back for a node: destructor then release. Null is accepted.
    static void free(void* regex);

    TalvoRegexManager* getManager() const { return manager; }
    Type getType() const { return type; }
    TalvoRegex* getLeftArgument() const { return leftArgument; }
    void setLeftArgument(TalvoRegex* regex);
    TalvoRegex* getRightArgument() const { return rightArgument; }
    void setRightArgument(TalvoRegex* regex);
    const char* getCharacterClass() const { return characterClass; }
    // Frees the previous text and keeps a copy of `text` (null stores null).
    void setCharacterClass(const char* text);
    int getBackReferenceNumber() const { return backReferenceNumber; }
    void setBackReferenceNumber(int number);
    int getGroupState() const { return groupState; }
    void setGroupState(int state) { groupState = state; }
    int getGroupIndex() const { return groupIndex; }
    void setGroupIndex(int index) { groupIndex = index; }

    // 1 when byte `c` belongs to this node's class, else 0. A character node
    // compares c with its one byte; a bracket class "[...]" is walked member
    // by member ("^" negates, a leading "]" is a member, "a-z" style ranges
    // within one of a-z, A-Z, 0-9, "\n" "\t" "\r" stand for their bytes).
    // 0 when there is no class text. O(length of the class).
    int isCharacterInClass(char c) const;

    // Numbers the groups of the subtree in the order of their opening
    // parentheses, giving each *next and incrementing it. Null is ignored.
    void defineBackReferenceNumbers(int* next);

    // The end of a match of this node at `position` of `text` followed by
    // every node of `stack` (first item next), or -1. The stack is left as
    // it was found (it may be null: nothing follows). Captures recorded on
    // the way are stored in the manager. -1 for a null text or a position
    // outside the text. Linear memory in the length matched.
    int match(const char* text, int position, TalvoList* stack);

    // Writes the subtree back in pattern syntax (no parentheses are added
    // for precedence). Nothing for a null file.
    void print(FILE* file) const;
    // The same text, byte by byte through put(char). Nothing for null.
    void print(TalvoStream* stream) const;

private:
    void _treeChanged();
    std::string _printedText() const;

    TalvoRegexManager* manager;
    Type type;
    TalvoRegex* leftArgument;
    TalvoRegex* rightArgument;
    char* characterClass;
    int backReferenceNumber;
    int groupState;
    int groupIndex;
};
