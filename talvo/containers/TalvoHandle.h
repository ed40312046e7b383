/// @file
/// TalvoHandle: a string key paired with an untyped item.
///
/// Layout: the key (a private copy, owned by the handle) is the first data
/// member, the item (not owned) the second. The class is standard-layout and
/// TalvoAttribute also begins with its name string, so the static key
/// comparisons below read the key of either kind of object through the same
/// untyped pointer: they are the compare call-backs for ordered containers of
/// handles or of attributes (the dictionary's tree uses them).
///
/// Key rule: a null key sorts before every other, two null keys are equal,
/// otherwise bytes compare as unsigned characters; the result is -1, 0 or 1.
#pragma once

#include <talvo/foundation/TalvoObject.h>

/// A string key, owned by the handle, paired with an item it does not own.
class TALVO_API TalvoHandle : public TalvoObject<TalvoHandle> {
public:
    static constexpr const char* ClassName = "TalvoHandle";  ///< Name in the allocation trace.

    /// Copies `key` (null stays null) and stores `item` as it is.
    TalvoHandle(const char* key, void* item);
    /// Not copyable: the handle owns its key.
    TalvoHandle(const TalvoHandle&) = delete;
    /// Not assignable: the handle owns its key.
    TalvoHandle& operator=(const TalvoHandle&) = delete;
    /// Releases the key; the item is untouched.
    ~TalvoHandle();

    /// Destroys a handle given as an Item; null is ignored.
    static void free(void* handle);

    /// The key itself (not a copy), owned by the handle.
    char* getKey() const { return _key; }
    /// Releases the old key and keeps a copy of `key`.
    void setKey(const char* key);
    /// The item, not owned by the handle.
    void* getItem() const { return _item; }
    /// Stores the pointer unchanged; it is not copied.
    void setItem(void* item) { _item = item; }

    /// Own key against a raw string, by the key rule.
    int compareKey(const char* key) const;
    /// The key of a handle or attribute (`keyed`) against the raw string `key`:
    /// the look-up call-back of a keyed search. A null `keyed` has a null key.
    static int compareKey(void* keyed, void* key);
    /// The keys of two handles or attributes.
    static int compareKeys(void* keyed1, void* keyed2);
    /// other's key against own key; a null other has a null key.
    int reverseCompareKeys(const TalvoHandle* other) const;
    /// keyed2's key against keyed1's.
    static int reverseCompareKeys(void* keyed1, void* keyed2);
    /// Own key against other's by TalvoRawString::compareNumerically; a null
    /// other has a null key.
    int compareNumericallyKeys(const TalvoHandle* other) const;
    /// keyed1's key against keyed2's by TalvoRawString::compareNumerically.
    static int compareNumericallyKeys(void* keyed1, void* keyed2);
    /// other's key against own key, numerically; a null other has a null key.
    int reverseCompareNumericallyKeys(const TalvoHandle* other) const;
    /// keyed2's key against keyed1's, numerically.
    static int reverseCompareNumericallyKeys(void* keyed1, void* keyed2);

    /// The key rule on two raw strings: -1, 0 or 1.
    static int compareKeyStrings(const char* a, const char* b);
    /// The first member of a handle or attribute; null for a null pointer.
    static char* keyOf(void* keyed);

private:
    char* _key;     ///< first member: read by keyOf, see above
    void* _item;
};
