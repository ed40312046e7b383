/// @file
/// TalvoDictionary: a map from string keys to string definitions.
///
/// Layout: one TalvoAVLTree, owned, ordered by TalvoHandle::compareKeys; each
/// item is a TalvoAttribute owned by the dictionary whose name is the key and
/// whose value is the definition as a string constant. Look-ups search the
/// tree with TalvoHandle::compareKey against the bare key, so no temporary
/// handle or attribute is made. Keys are unique; a null key is a key like any
/// other and sorts first; bytes compare unsigned.
///
/// TalvoDictionaryCursor walks the entries in ascending key order:
///
///     TalvoDictionaryCursor* c = dictionary->newCursor();
///     for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment())
///         use(c->getKey(), c->getDefinition());
///     delete c;
///
/// A cursor survives every change but the removal of its own entry (except
/// through its own removeItemAndIncrement / removeItemAndDecrement, whose
/// returned attribute the caller must then destroy with TalvoAttribute::free).
#pragma once

#include <talvo/containers/TalvoAVLTree.h>
#include <talvo/values/TalvoAttribute.h>

class TalvoDictionaryCursor;
class TalvoList;

/// A map from string keys to string definitions, kept in key order.
class TALVO_API TalvoDictionary : public TalvoObject<TalvoDictionary> {
public:
    static constexpr const char* ClassName = "TalvoDictionary";  ///< Name in the allocation trace.

    /// An empty dictionary.
    TalvoDictionary();
    /// The dictionary owns its tree: copying would free it twice.
    TalvoDictionary(const TalvoDictionary&) = delete;
    /// Not assignable, for the same reason.
    TalvoDictionary& operator=(const TalvoDictionary&) = delete;
    /// Destroys every entry and the tree. O(n).
    ~TalvoDictionary();

    /// Destroys a dictionary given as an Item; null is ignored.
    static void free(void* dictionary);

    /// True when an entry has that key. O(log n).
    bool hasEntry(const char* key) const;
    /// The entry's definition (the stored string itself, not a copy); null
    /// when there is no such entry or its value is not a string. O(log n).
    char* getEntry(const char* key) const;
    /// Replaces the definition of an existing key with a copy of `definition`,
    /// or inserts a new entry with copies of both. O(log n).
    void setEntry(const char* key, const char* definition);
    /// Removes and destroys the entry; nothing for an absent key. O(log n).
    void removeEntry(const char* key);
    /// Destroys every entry; the dictionary stays usable. O(n).
    void reset();
    /// The number of entries.
    int getNumberOfEntries() const;

    /// A new cursor (owned by the caller) before the first entry.
    TalvoDictionaryCursor* newCursor();
    /// A new list (owned by the caller) of the keys in ascending order. It
    /// holds the entries' own name strings, not copies: they are valid only
    /// while their entries exist and must not be freed. O(n).
    TalvoList* getKeys() const;

    /// The entry of that key, owned by the dictionary; null when absent. O(log n).
    TalvoAttribute* getAttribute(const char* key) const;

private:
    friend class TalvoDictionaryCursor;

    /// The tree node of the entry with that key; null when absent.
    TalvoAVLTreeNode* _entryNode(const char* key) const;

    TalvoAVLTree* _tree;
};

/// An in-order cursor over the entries; all movement is the tree cursor's.
class TALVO_API TalvoDictionaryCursor : public TalvoAVLTreeCursor, public TalvoTracedAs<TalvoDictionaryCursor> {
public:
    static constexpr const char* ClassName = "TalvoDictionaryCursor";  ///< Name in the allocation trace.

    /// Before the first entry and after the last. A null dictionary behaves
    /// as an empty one.
    explicit TalvoDictionaryCursor(TalvoDictionary* dictionary);
    /// Releases the cursor only.
    ~TalvoDictionaryCursor() override;

    /// The current entry's key; null when on no entry.
    char* getKey();
    /// The current entry's definition when it is a string; null otherwise or
    /// when on no entry.
    char* getDefinition();
    /// On an entry: replaces its value with a copy of `definition`; nothing
    /// when on no entry.
    void setDefinition(const char* definition);

private:
    TalvoAttribute* _current();

    [[maybe_unused]] TalvoDictionary* _dictionary;  ///< the dictionary walked; kept beside the tree cursor
};
