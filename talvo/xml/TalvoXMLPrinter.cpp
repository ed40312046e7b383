#include <talvo/xml/TalvoXMLPrinter.h>

#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/text/TalvoStream.h>
#include <talvo/values/TalvoConstant.h>
#include <talvo/xml/TalvoXMLAttribute.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLTerm.h>

#include <cstring>

namespace {

const char* const DefaultIndentation = "  ";
const char* const XMLDeclaration = "<?xml version=\"1.0\"?>\n";
const char* const NilText = "nil";

// put(char*) of a text that may be null (a null text writes nothing).
void putText(TalvoStream* stream, const char* text) {
    if (text)
        stream->put(text);
}

}  // namespace

TalvoXMLPrinter::TalvoXMLPrinter()
    : _depth(0), _indentation(TalvoRawString::copy(DefaultIndentation)) {}

TalvoXMLPrinter::~TalvoXMLPrinter() {
    if (_indentation)
        TalvoRawString::free(_indentation);
}

// --- Tags.

void TalvoXMLPrinter::printTag(const char* tag, TalvoStream* stream) {
    if (!stream)
        return;
    printIndentation(stream);
    stream->put("<");
    putText(stream, tag);
    stream->put(" />\n");
}

void TalvoXMLPrinter::printOpenTag(const char* tag, TalvoStream* stream) {
    if (!stream)
        return;
    printIndentation(stream);
    stream->put("<");
    putText(stream, tag);
    stream->put(" >\n");
    incrementDepth();
}

void TalvoXMLPrinter::printOpenTagOpening(const char* tag, TalvoStream* stream) {
    if (!stream)
        return;
    printIndentation(stream);
    stream->put("<");
    putText(stream, tag);
}

void TalvoXMLPrinter::printOpenTagClosing(TalvoStream* stream) {
    if (!stream)
        return;
    stream->put(" >\n");
    incrementDepth();
}

void TalvoXMLPrinter::printOpenTagEnding(TalvoStream* stream) {
    if (stream)
        stream->put(" />\n");
}

void TalvoXMLPrinter::printCloseTag(const char* tag, TalvoStream* stream) {
    if (!stream)
        return;
    decrementDepth();
    printIndentation(stream);
    stream->put("</");
    putText(stream, tag);
    stream->put(">\n");
}

// --- Attributes.

void TalvoXMLPrinter::_printAttributeOpening(const char* name, TalvoStream* stream) {
    stream->put(" ");
    putText(stream, name);
    stream->put("=\"");
}

void TalvoXMLPrinter::_printAttributeClosing(TalvoStream* stream) { stream->put("\""); }

void TalvoXMLPrinter::printAttribute(TalvoXMLAttribute* attribute, TalvoStream* stream) {
    if (attribute)
        printAttribute(attribute->getName(), attribute->getValue(), stream);
}

void TalvoXMLPrinter::printAttribute(const char* name, TalvoConstant* value, TalvoStream* stream) {
    if (!stream)
        return;
    _printAttributeOpening(name, stream);
    if (!value || value->isPointer())
        stream->put(NilText);
    else if (value->isBool())
        stream->put(value->toBool() ? "true" : "false");
    else if (value->isInt())
        stream->put(value->toInt());
    else if (value->isNum())
        stream->put(value->toDouble());
    else if (value->isString())
        putText(stream, value->toString());
    else
        stream->put(NilText);
    _printAttributeClosing(stream);
}

void TalvoXMLPrinter::printAttribute(const char* name, const char* value, TalvoStream* stream) {
    if (!stream)
        return;
    _printAttributeOpening(name, stream);
    putText(stream, value);
    _printAttributeClosing(stream);
}

void TalvoXMLPrinter::printAttribute(const char* name, double value, TalvoStream* stream) {
    if (!stream)
        return;
    _printAttributeOpening(name, stream);
    stream->put(value);
    _printAttributeClosing(stream);
}

void TalvoXMLPrinter::printAttribute(const char* name, int value, TalvoStream* stream) {
    if (!stream)
        return;
    _printAttributeOpening(name, stream);
    stream->put(value);
    _printAttributeClosing(stream);
}

void TalvoXMLPrinter::printAttribute(const char* name, bool value, TalvoStream* stream) {
    if (!stream)
        return;
    _printAttributeOpening(name, stream);
    stream->put(value ? "true" : "false");
    _printAttributeClosing(stream);
}

// --- Texts, CDATA and comments.

void TalvoXMLPrinter::printText(TalvoXMLTerm* term, TalvoStream* stream) {
    if (term)
        printText(term->getText(), stream);
}

void TalvoXMLPrinter::printText(const char* text, TalvoStream* stream) {
    if (!stream)
        return;
    putText(stream, text);
    stream->put('\n');
    stream->flush();
}

void TalvoXMLPrinter::printCData(TalvoXMLTerm* term, TalvoStream* stream) {
    if (term)
        printCData(term->getText(), stream);
}

void TalvoXMLPrinter::printCData(const char* text, TalvoStream* stream) {
    if (!stream)
        return;
    stream->put("<![CDATA\n");
    putText(stream, text);
    stream->put("]]>\n");
}

void TalvoXMLPrinter::printComment(const char* text, TalvoStream* stream) {
    if (!stream)
        return;
    printIndentation(stream);
    stream->put("<!");
    putText(stream, text);
    stream->put(">");
    stream->put('\n');
    stream->flush();
}

void TalvoXMLPrinter::printComment(TalvoXMLTerm* term, TalvoStream* stream) {
    if (term)
        printComment(term->getText(), stream);
}

// --- Indentation.

void TalvoXMLPrinter::setIndentation(const char* unit) {
    char* copy = TalvoRawString::copy(unit ? unit : "");
    if (_indentation)
        TalvoRawString::free(_indentation);
    _indentation = copy;
}

void TalvoXMLPrinter::setIndentation(int blanks) {
    if (blanks < 0)
        blanks = 0;
    char* unit = TalvoRawString::allocate(blanks + 1);  // zero-filled: terminated
    if (unit)
        std::memset(unit, ' ', static_cast<size_t>(blanks));
    if (_indentation)
        TalvoRawString::free(_indentation);
    _indentation = unit;
}

void TalvoXMLPrinter::printIndentation(TalvoStream* stream) {
    if (!stream || !_indentation || _indentation[0] == '\0')
        return;
    for (int level = 0; level < _depth; ++level)
        stream->put(_indentation);
}

// --- Documents and trees.

void TalvoXMLPrinter::printDocumentHeader(const char* doctype, TalvoStream* stream) {
    _depth = 0;
    if (!stream)
        return;
    stream->put(XMLDeclaration);
    if (doctype) {
        stream->put("<!DOCTYPE ");
        stream->put(doctype);
        stream->put(">\n");
    }
}

void TalvoXMLPrinter::printDocument(TalvoXMLDocument* document, TalvoStream* stream) {
    if (!document || !stream)
        return;
    stream->put(XMLDeclaration);
    if (document->getDocType()) {
        stream->put("<!DOCTYPE ");
        stream->put(document->getDocType());
        stream->put(">\n");
    }
    TalvoListCursor* cursor = document->newCursorOnRoots();
    if (!cursor)
        return;
    for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment())
        printTerm(static_cast<TalvoXMLTerm*>(cursor->getItem()), stream);
    delete cursor;
}

void TalvoXMLPrinter::printTerm(TalvoXMLTerm* term, TalvoStream* stream) {
    if (term && term->isNode())
        printNode(term, stream);
    else
        _printLeaf(term, stream);
}

// A term that is not a node, through the slot of its type.
void TalvoXMLPrinter::_printLeaf(TalvoXMLTerm* term, TalvoStream* stream) {
    if (!term)
        return;
    switch (term->getType()) {
    case TalvoXMLTerm::text: printText(term, stream); break;
    case TalvoXMLTerm::CDATA: printCData(term, stream); break;
    case TalvoXMLTerm::comment: printComment(term, stream); break;
    case TalvoXMLTerm::node: break;
    }
}

// The opening tag with its attributes. Returns true when the node has
// children (the tag is left open), false when it was written self-closing.
bool TalvoXMLPrinter::_printNodeOpening(TalvoXMLTerm* term, TalvoStream* stream) {
    printOpenTagOpening(term->getTag(), stream);
    TalvoListCursor* cursor = term->newCursorOnAttributes();
    if (cursor) {
        for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment())
            printAttribute(static_cast<TalvoXMLAttribute*>(cursor->getItem()), stream);
        delete cursor;
    }
    if (!term->hasChildren()) {
        printOpenTagEnding(stream);
        return false;
    }
    printOpenTagClosing(stream);
    return true;
}

// Depth-first walk with an explicit stack of (node, cursor on its children)
// frames, so the call stack stays flat however deep the tree is. The calls
// made, and their order, are those of the plain recursive walk.
void TalvoXMLPrinter::printNode(TalvoXMLTerm* term, TalvoStream* stream) {
    if (!term || !stream || !_printNodeOpening(term, stream))
        return;
    TalvoList* frames = new TalvoList();
    if (!frames)
        return;
    frames->push(term);
    frames->push(term->newCursorOnChildren());
    static_cast<TalvoListCursor*>(frames->getTop())->resetOnFirstItem();
    while (!frames->isEmpty()) {
        auto* cursor = static_cast<TalvoListCursor*>(frames->getTop());
        if (!cursor || cursor->isAfterLastItem()) {
            frames->pop();
            if (cursor)
                delete cursor;
            auto* done = static_cast<TalvoXMLTerm*>(frames->pop());
            printCloseTag(done->getTag(), stream);
            continue;
        }
        auto* child = static_cast<TalvoXMLTerm*>(cursor->getItem());
        cursor->increment();
        if (!child || !child->isNode()) {
            _printLeaf(child, stream);
        } else if (_printNodeOpening(child, stream)) {
            TalvoListCursor* inner = child->newCursorOnChildren();
            if (inner)
                inner->resetOnFirstItem();
            frames->push(child);
            frames->push(inner);
        }
    }
    delete frames;
}
