#include <talvo/xml/TalvoXMLTerm.h>

#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/xml/TalvoXMLAttribute.h>

#include <cstring>

namespace {

// Levels of a subtree deleted by plain recursion before switching to the
// iterative walk.
const int RecursionLimit = 64;

// -1, 0 or 1 by unsigned bytes; null sorts first, two nulls are equal.
int compareTexts(const char* a, const char* b) {
    if (!a || !b)
        return a ? 1 : (b ? -1 : 0);
    int order = std::strcmp(a, b);  // strcmp compares as unsigned char
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

bool sameText(const char* a, const char* b) { return compareTexts(a, b) == 0; }

// The n-th item (from 0) of `list` that `accept` takes, or null. The list is
// walked with a cursor so the cost is one pass.
template <class Accept>
TalvoXMLTerm* findNthTerm(TalvoList* list, int n, Accept accept) {
    if (!list || n < 0)
        return nullptr;
    TalvoListCursor* cursor = list->newCursor();
    if (!cursor)
        return nullptr;
    TalvoXMLTerm* found = nullptr;
    for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment()) {
        auto* term = static_cast<TalvoXMLTerm*>(cursor->getItem());
        if (term && accept(term) && n-- == 0) {
            found = term;
            break;
        }
    }
    delete cursor;
    return found;
}

// Number of items of `list` that `accept` takes.
template <class Accept>
int countTerms(TalvoList* list, Accept accept) {
    if (!list)
        return 0;
    TalvoListCursor* cursor = list->newCursor();
    if (!cursor)
        return 0;
    int count = 0;
    for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment()) {
        auto* term = static_cast<TalvoXMLTerm*>(cursor->getItem());
        if (term && accept(term))
            ++count;
    }
    delete cursor;
    return count;
}

}  // namespace

TalvoXMLTerm::TalvoXMLTerm(Type type, const char* content)
    : _type(type), _text(TalvoRawString::copy(content)), _attributes(), _children(), _lineNumber(0) {}

TalvoXMLTerm::~TalvoXMLTerm() {
    if (_text)
        TalvoRawString::free(_text);
    _attributes.deleteItems(TalvoXMLAttribute::free);
    _deleteChildren(0);
}

// Deletes `term`, found at `depth` below the term being deleted, with its subtree.
void TalvoXMLTerm::_deleteTerm(TalvoXMLTerm* term, int depth) {
    if (!term)
        return;
    term->_deleteChildren(depth);  // leaves nothing for the destructor to walk
    delete term;
}

// Plain recursion while shallow (the common case, and the cheapest); below
// RecursionLimit levels the subtree is taken apart iteratively instead, so
// the call stack never grows with the depth of the tree.
void TalvoXMLTerm::_deleteChildren(int depth) {
    if (depth >= RecursionLimit) {
        _deleteChildrenIteratively();
        return;
    }
    while (!_children.isEmpty())
        _deleteTerm(static_cast<TalvoXMLTerm*>(_children.removeLastItem()), depth + 1);
}

// A child that still has children gives its last child up to this list
// first, so every term is deleted only once it is a leaf. Each term moves
// at most once.
void TalvoXMLTerm::_deleteChildrenIteratively() {
    while (!_children.isEmpty()) {
        auto* child = static_cast<TalvoXMLTerm*>(_children.getLastItem());
        if (child && !child->_children.isEmpty()) {
            _children.insertItemLast(child->_children.removeLastItem());
            continue;
        }
        _children.removeLastItem();
        if (child)
            delete child;
    }
}

void TalvoXMLTerm::free(void* term) {
    if (term)
        delete static_cast<TalvoXMLTerm*>(term);
}

char* TalvoXMLTerm::copyTag() const { return TalvoRawString::copy(_text); }

int TalvoXMLTerm::compareTag(const char* tag) const { return compareTexts(_text, tag); }

int TalvoXMLTerm::compareTags(const TalvoXMLTerm* other) const {
    return compareTexts(_text, other ? other->_text : nullptr);
}

int TalvoXMLTerm::compareTag(void* term, void* tag) {
    auto* self = static_cast<TalvoXMLTerm*>(term);
    return compareTexts(self ? self->_text : nullptr, static_cast<const char*>(tag));
}

int TalvoXMLTerm::compareTags(void* term, void* other) {
    auto* self = static_cast<TalvoXMLTerm*>(term);
    auto* that = static_cast<TalvoXMLTerm*>(other);
    return compareTexts(self ? self->_text : nullptr, that ? that->_text : nullptr);
}

bool TalvoXMLTerm::isNodeOfTag(const char* tag) const {
    return _type == node && sameText(_text, tag);
}

TalvoListCursor* TalvoXMLTerm::newCursorOnAttributes() {
    return _attributes.newCursor();
}

TalvoXMLAttribute* TalvoXMLTerm::findAttribute(const char* name) {
    TalvoListCursor* cursor = _attributes.newCursor();
    if (!cursor)
        return nullptr;
    TalvoXMLAttribute* found = nullptr;
    for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment()) {
        auto* attribute = static_cast<TalvoXMLAttribute*>(cursor->getItem());
        if (attribute && sameText(attribute->getName(), name)) {
            found = attribute;
            break;
        }
    }
    delete cursor;
    return found;
}

void TalvoXMLTerm::addAttribute(TalvoXMLAttribute* attribute) {
    if (attribute)
        _attributes.insertItemLast(attribute);
}

void TalvoXMLTerm::addAttribute(const char* name, const char* value) {
    addAttribute(new TalvoXMLAttribute(name, value));
}

void TalvoXMLTerm::addAttribute(const char* name, int value) {
    addAttribute(new TalvoXMLAttribute(name, value));
}

void TalvoXMLTerm::addAttribute(const char* name, double value) {
    addAttribute(new TalvoXMLAttribute(name, value));
}

const char* TalvoXMLTerm::getAttributeValue(const char* name) {
    TalvoXMLAttribute* attribute = findAttribute(name);
    return attribute ? attribute->getValue() : nullptr;
}

int TalvoXMLTerm::getAttributeValueAsInt(const char* name) {
    return TalvoRawString::toInt(getAttributeValue(name));
}

double TalvoXMLTerm::getAttributeValueAsDouble(const char* name) {
    return TalvoRawString::toDouble(getAttributeValue(name));
}

TalvoListCursor* TalvoXMLTerm::newCursorOnChildren() {
    return _children.newCursor();
}

void TalvoXMLTerm::addChild(TalvoXMLTerm* child) {
    if (child)
        _children.insertItemLast(child);
}

TalvoXMLTerm* TalvoXMLTerm::findChild(const char* tag) {
    return findNthTerm(&_children, 0, [tag](TalvoXMLTerm* t) { return sameText(t->_text, tag); });
}

TalvoXMLTerm* TalvoXMLTerm::getNthChild(int n) {
    return findNthTerm(&_children, n, [](TalvoXMLTerm*) { return true; });
}

int TalvoXMLTerm::getNumberOfNodeChildren() {
    return countTerms(&_children, [](TalvoXMLTerm* t) { return t->isNode(); });
}

int TalvoXMLTerm::getNumberOfNodeChildrenOfTag(const char* tag) {
    return countTerms(&_children, [tag](TalvoXMLTerm* t) { return t->isNodeOfTag(tag); });
}

TalvoXMLTerm* TalvoXMLTerm::getNthNodeChild(int n) {
    return findNthTerm(&_children, n - 1, [](TalvoXMLTerm* t) { return t->isNode(); });
}
