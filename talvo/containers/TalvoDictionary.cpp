#include <talvo/containers/TalvoDictionary.h>

#include <talvo/containers/TalvoHandle.h>
#include <talvo/containers/TalvoList.h>

TalvoDictionary::TalvoDictionary() : _tree(new TalvoAVLTree(TalvoHandle::compareKeys)) {}

TalvoDictionary::~TalvoDictionary() {
    if (_tree)
        _tree->deleteWithItems(TalvoAttribute::free);
}

void TalvoDictionary::free(void* dictionary) {
    if (dictionary)
        delete static_cast<TalvoDictionary*>(dictionary);
}

// compareKey reads the attribute's name against the bare key: no temporary
// handle is built for the search. Keys are unique, so the descent may stop
// at the first node whose key is equal.
TalvoAVLTreeNode* TalvoDictionary::_entryNode(const char* key) const {
    return _tree ? _tree->_equalNode(TalvoHandle::compareKey, const_cast<char*>(key)) : nullptr;
}

TalvoAttribute* TalvoDictionary::getAttribute(const char* key) const {
    TalvoAVLTreeNode* node = _entryNode(key);
    return node ? static_cast<TalvoAttribute*>(node->getItem()) : nullptr;
}

bool TalvoDictionary::hasEntry(const char* key) const { return getAttribute(key) != nullptr; }

char* TalvoDictionary::getEntry(const char* key) const {
    TalvoAttribute* entry = getAttribute(key);
    return entry ? entry->getValueAsString() : nullptr;
}

// One descent serves both the search and the insertion: when no entry has
// the key, the lower-bound descent by key ends where insertItem would attach
// the new entry (keys compare alike by name in both orders).
void TalvoDictionary::setEntry(const char* key, const char* definition) {
    if (!_tree) {
        TalvoAttribute::free(new TalvoAttribute(key, definition));
        return;
    }
    TalvoAVLTreeNode* leaf;
    bool left;
    void* keyItem = const_cast<char*>(key);
    TalvoAVLTreeNode* bound = _tree->_lowerBoundWithLeaf(TalvoHandle::compareKey, keyItem, leaf, left);
    if (bound && TalvoHandle::compareKey(bound->getItem(), keyItem) == 0) {
        static_cast<TalvoAttribute*>(bound->getItem())->setValue(definition);
        return;
    }
    TalvoAttribute* entry = new TalvoAttribute(key, definition);
    if (entry)
        _tree->_attachLeaf(entry, leaf, left);
}

// The node found is the one removeItem would remove: the only one with the key.
void TalvoDictionary::removeEntry(const char* key) {
    TalvoAVLTreeNode* node = _entryNode(key);
    if (!node)
        return;
    TalvoAttribute* entry = static_cast<TalvoAttribute*>(node->getItem());
    _tree->_removeNode(node);
    TalvoAttribute::free(entry);
}

void TalvoDictionary::reset() {
    if (_tree)
        _tree->deleteItems(TalvoAttribute::free);
}

int TalvoDictionary::getNumberOfEntries() const { return _tree ? _tree->getNumberOfItems() : 0; }

TalvoDictionaryCursor* TalvoDictionary::newCursor() { return new TalvoDictionaryCursor(this); }

TalvoList* TalvoDictionary::getKeys() const {
    TalvoList* keys = new TalvoList();
    if (!keys || !_tree)
        return keys;
    TalvoAVLTreeCursor cursor(_tree);
    for (cursor.resetOnFirstItem(); !cursor.isAfterLastItem(); cursor.increment())
        keys->insertItemLast(static_cast<TalvoAttribute*>(cursor.getItem())->getName());
    return keys;
}

TalvoDictionaryCursor::TalvoDictionaryCursor(TalvoDictionary* dictionary)
    : TalvoAVLTreeCursor(dictionary ? dictionary->_tree : nullptr), _dictionary(dictionary) {}

TalvoDictionaryCursor::~TalvoDictionaryCursor() = default;

TalvoAttribute* TalvoDictionaryCursor::_current() { return static_cast<TalvoAttribute*>(getItem()); }

char* TalvoDictionaryCursor::getKey() {
    TalvoAttribute* entry = _current();
    return entry ? entry->getName() : nullptr;
}

char* TalvoDictionaryCursor::getDefinition() {
    TalvoAttribute* entry = _current();
    return entry ? entry->getValueAsString() : nullptr;
}

void TalvoDictionaryCursor::setDefinition(const char* definition) {
    TalvoAttribute* entry = _current();
    if (entry)
        entry->setValue(definition);
}
