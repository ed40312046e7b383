// TalvoXMLPrinter: writes XML text on a TalvoStream, a whole document or
// piece by piece (open a tag, print attributes of several types, close it).
//
// Layout: `_depth`, the current nesting depth (0 after construction), and
// `_indentation`, an owned copy of the unit written once per depth level
// (two blanks after construction). Every piece of text goes through the
// stream's put(char*), so backslash escapes in tags, values and texts are
// interpreted by the stream.
// Every formatting operation is virtual, in a fixed slot order, so that a
// derived printer can change the layout; printNode, printTerm and
// printDocument call them through their slots. printNode walks the tree with
// an explicit stack, so any depth prints without exhausting the call stack.
#pragma once

#include <talvo/foundation/TalvoExport.h>
#include <talvo/foundation/TalvoObject.h>

class TalvoConstant;
class TalvoStream;
class TalvoXMLAttribute;
class TalvoXMLDocument;
class TalvoXMLTerm;

class TALVO_API TalvoXMLPrinter : public TalvoObject<TalvoXMLPrinter> {
public:
    static constexpr const char* ClassName = "TalvoXMLPrinter";

    // Depth 0, indentation unit of two blanks.
    TalvoXMLPrinter();
    virtual ~TalvoXMLPrinter();
    TalvoXMLPrinter(const TalvoXMLPrinter&) = delete;
    TalvoXMLPrinter& operator=(const TalvoXMLPrinter&) = delete;

    // Each operation below writes nothing when the stream is null.

    // indent, "<", tag, " />\n".
    virtual void printTag(const char* tag, TalvoStream* stream);
    // indent, "<", tag, " >\n"; the depth grows by 1 afterwards.
    virtual void printOpenTag(const char* tag, TalvoStream* stream);
    // indent, "<", tag.
    virtual void printOpenTagOpening(const char* tag, TalvoStream* stream);
    // " >\n"; the depth grows by 1 afterwards.
    virtual void printOpenTagClosing(TalvoStream* stream);
    // " />\n".
    virtual void printOpenTagEnding(TalvoStream* stream);
    // The depth shrinks by 1 first; then indent, "</", tag, ">\n".
    virtual void printCloseTag(const char* tag, TalvoStream* stream);
    // The attribute's name and value as a string value; null prints nothing.
    virtual void printAttribute(TalvoXMLAttribute* attribute, TalvoStream* stream);
    // " name=\"" value "\"" by the constant's type: nil and pointers give
    // "nil", booleans "true"/"false", integers put(int), doubles put(double),
    // strings their text. A null constant prints as nil.
    virtual void printAttribute(const char* name, TalvoConstant* value, TalvoStream* stream);
    // " name=\"value\"".
    virtual void printAttribute(const char* name, const char* value, TalvoStream* stream);
    // " name=\"" put(double) "\"", with the stream's significant digits.
    virtual void printAttribute(const char* name, double value, TalvoStream* stream);
    // " name=\"" put(int) "\"".
    virtual void printAttribute(const char* name, int value, TalvoStream* stream);
    // " name=\"true\"" or " name=\"false\"".
    virtual void printAttribute(const char* name, bool value, TalvoStream* stream);
    // printText of the term's text.
    virtual void printText(TalvoXMLTerm* term, TalvoStream* stream);
    // text, a newline, flush; never indented.
    virtual void printText(const char* text, TalvoStream* stream);
    // printCData of the term's text.
    virtual void printCData(TalvoXMLTerm* term, TalvoStream* stream);
    // "<![CDATA\n", text, "]]>\n"; never indented. The opening lacks its
    // second bracket on purpose: that is the format readers of our files expect.
    virtual void printCData(const char* text, TalvoStream* stream);
    // indent, "<!", text, ">", a newline, flush. A comment's text carries its
    // own dashes.
    virtual void printComment(const char* text, TalvoStream* stream);
    // printComment of the term's text.
    virtual void printComment(TalvoXMLTerm* term, TalvoStream* stream);

    // Add or take 1 from the depth, without bound.
    void incrementDepth() { ++_depth; }
    void decrementDepth() { --_depth; }
    int getDepth() const { return _depth; }
    // Replaces the unit by a copy of `unit` (null counts as empty).
    void setIndentation(const char* unit);
    // Replaces the unit by `blanks` blanks (none when below 1).
    void setIndentation(int blanks);
    // Writes the unit once per depth level; nothing at depth 0 or below.
    void printIndentation(TalvoStream* stream);
    // The XML declaration line, then "<!DOCTYPE doctype>\n" when `doctype`
    // is not null. Sets the depth to 0.
    void printDocumentHeader(const char* doctype, TalvoStream* stream);
    // The XML declaration, the document type when set, then every root by
    // its type. Leaves the depth as it was. O(tree size).
    void printDocument(TalvoXMLDocument* document, TalvoStream* stream);
    // One term by its type: text, CDATA, node (with its subtree) or comment.
    void printTerm(TalvoXMLTerm* term, TalvoStream* stream);
    // A node with its attributes and subtree; a childless node is written
    // as a self-closing tag. O(subtree size), no recursion.
    void printNode(TalvoXMLTerm* term, TalvoStream* stream);

private:
    void _printAttributeOpening(const char* name, TalvoStream* stream);
    void _printAttributeClosing(TalvoStream* stream);
    bool _printNodeOpening(TalvoXMLTerm* term, TalvoStream* stream);
    void _printLeaf(TalvoXMLTerm* term, TalvoStream* stream);

    int _depth;
    char* _indentation;
};
