// TalvoXMLTerm: one item of an XML tree (a text, a CDATA section, a node or a
// comment).
//
// Layout: `_type`; `_text`, an owned copy holding the tag name of a node and
// the content of the other types; `_attributes`, a TalvoList of owned
// TalvoXMLAttribute; `_children`, a TalvoList of owned TalvoXMLTerm;
// `_lineNumber`, the line where the parser made the term. Both lists exist for
// every type and live inside the term (two allocations fewer per term); only
// nodes normally fill them.
// Invariant: a term owns its whole subtree. The destructor frees it with a
// recursion of bounded depth, so a tree as deep as memory allows can be
// deleted.
#pragma once

#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoExport.h>
#include <talvo/foundation/TalvoObject.h>

class TalvoXMLAttribute;

class TALVO_API TalvoXMLTerm : public TalvoObject<TalvoXMLTerm> {
public:
    static constexpr const char* ClassName = "TalvoXMLTerm";

    enum Type { text = 0, CDATA = 1, node = 2, comment = 3 };

    // A term of `type` holding a copy of `content` (null stays null), with
    // empty attribute and child lists and line number 0.
    TalvoXMLTerm(Type type, const char* content);
    // Frees the text, every attribute and the whole subtree. O(subtree size).
    ~TalvoXMLTerm();
    TalvoXMLTerm(const TalvoXMLTerm&) = delete;
    TalvoXMLTerm& operator=(const TalvoXMLTerm&) = delete;

    // Deletes a term given as an Item, with its subtree; null is accepted.
    static void free(void* term);

    Type getType() const { return _type; }
    bool isText() const { return _type == text; }
    bool isCDATA() const { return _type == CDATA; }
    bool isNode() const { return _type == node; }
    bool isComment() const { return _type == comment; }

    // The stored text of any term (the tag of a node), owned by the term.
    const char* getTag() const { return _text; }
    // The content of a text, CDATA or comment; null for a node.
    const char* getText() const { return _type == node ? nullptr : _text; }
    // A new copy of the stored text of any term, owned by the caller.
    char* copyTag() const;

    // -1, 0 or 1 comparing the stored text with `tag` as unsigned bytes; a
    // null sorts first and two nulls are equal.
    int compareTag(const char* tag) const;
    // The same between the texts of two terms (a null term counts as a null text).
    int compareTags(const TalvoXMLTerm* other) const;
    // Compare call-backs: a term with a raw-string tag, and two terms.
    static int compareTag(void* term, void* tag);
    static int compareTags(void* term, void* other);
    // True only for a node whose tag equals `tag`.
    bool isNodeOfTag(const char* tag) const;

    // --- Attributes, kept in insertion order; duplicate names are allowed.

    bool hasAttribute() const { return !_attributes.isEmpty(); }
    // A new cursor on the attribute list, owned by the caller.
    TalvoListCursor* newCursorOnAttributes();
    // The first attribute named `name`, or null. O(attributes).
    TalvoXMLAttribute* findAttribute(const char* name);
    // Appends `attribute`, which the term then owns; null is ignored.
    void addAttribute(TalvoXMLAttribute* attribute);
    // Appends a new attribute holding copies of `name` and `value`.
    void addAttribute(const char* name, const char* value);
    // Appends a new attribute whose value is formatted with "%d".
    void addAttribute(const char* name, int value);
    // Appends a new attribute whose value is formatted with "%g".
    void addAttribute(const char* name, double value);
    // The stored value of the first attribute named `name` (not a copy), or null.
    const char* getAttributeValue(const char* name);
    // atoi of that value; 0 when the attribute is missing.
    int getAttributeValueAsInt(const char* name);
    // atof of that value; 0.0 when the attribute is missing.
    double getAttributeValueAsDouble(const char* name);

    // --- Children, kept in insertion order.

    bool hasChildren() const { return !_children.isEmpty(); }
    // A new cursor on the child list, owned by the caller.
    TalvoListCursor* newCursorOnChildren();
    // Appends `child`, which the term then owns; null is ignored.
    void addChild(TalvoXMLTerm* child);
    // The first child of any type whose stored text equals `tag`, or null.
    TalvoXMLTerm* findChild(const char* tag);
    // The child at `n` counted from 0 over all children; null out of range. O(n).
    TalvoXMLTerm* getNthChild(int n);
    // Number of children of every type.
    int getNumberOfChildren() const { return _children.getNumberOfItems(); }
    // Number of node children. O(children).
    int getNumberOfNodeChildren();
    // Number of node children whose tag equals `tag`. O(children).
    int getNumberOfNodeChildrenOfTag(const char* tag);
    // The n-th node child counted from 1 (deliberately unlike getNthChild):
    // getNthNodeChild(1) is the first node child, 0 gives null. O(children).
    TalvoXMLTerm* getNthNodeChild(int n);

    int getLineNumber() const { return _lineNumber; }
    void setLineNumber(int lineNumber) { _lineNumber = lineNumber; }

private:
    static void _deleteTerm(TalvoXMLTerm* term, int depth);
    void _deleteChildren(int depth);
    void _deleteChildrenIteratively();

    Type _type;
    char* _text;
    TalvoList _attributes;
    TalvoList _children;
    int _lineNumber;
};
