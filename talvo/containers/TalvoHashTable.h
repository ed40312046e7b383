// TalvoHashTable: an unordered bag of Items spread over bucket lists by a
// caller-supplied hash call-back, with its cursor TalvoHashTableCursor.
//
// Layout: an entry array of `size` pointers to TalvoList; an Item lives in
// the bucket of slot hash(item) mod modulo, where the modulo comes from a
// fixed ladder of primes near the size. A bucket list is made on the first
// insertion into its slot and stays (possibly empty) until the table is
// resized or destroyed. Only slots 0 to modulo - 1 are ever used.
//
// Invariants: the number of items is the sum of the bucket counts; the two
// thresholds are always floor(ratio x size). The table doubles when an
// insertion brings the count to the enlargement threshold and halves when a
// removal brings it down to the reduction threshold, within the minimum and
// maximum sizes and only while resizing is on. The default ratios 0.1 and
// 0.01 are deliberately low (one item per ten slots at most): keep them.
//
// The table never owns its Items and never looks inside them except through
// the hash call-back and the compare call-backs an operation is given.
// Identity tests (contains, removeItem, getItemPosition, the set operations)
// compare pointers. Cursor order is slot order, then bucket (insertion)
// order, and changes with every resize.
//
// Guards kept apart from the plain arithmetic: a negative hash value is
// reduced as an unsigned 32-bit number (so it still lands in a slot; a
// non-negative hash gives exactly hash % modulo); the entry array always has
// room for slots 0 to modulo (the ladder maps 32678 to the larger 32749);
// sizes below 1 are never used; a null hash call-back hashes everything to 0.
#pragma once

#include <talvo/foundation/TalvoCallbacks.h>
#include <talvo/foundation/TalvoComparator.h>
#include <talvo/foundation/TalvoCursor.h>
#include <talvo/foundation/TalvoObject.h>

class TalvoHashTableCursor;
class TalvoList;
class TalvoListCursor;

class TALVO_API TalvoHashTable : public TalvoObject<TalvoHashTable> {
public:
    static constexpr const char* ClassName = "TalvoHashTable";

    // A table with 1024 null slots, modulo 1021, ratios 0.1 / 0.01 (thresholds
    // 102 / 10), minimum size 1024, maximum size 131072, resizing on.
    explicit TalvoHashTable(TalvoHashFunction hash);
    // Deletes every bucket list (cells only, never the Items) and the array.
    ~TalvoHashTable();
    // Copies the fields only: both tables then share their buckets
    // (kept as for every container; `copy` is the way to duplicate).
    TalvoHashTable& operator=(const TalvoHashTable&) = default;

    // Passes every Item (cursor order) to `free`, then deletes the table.
    void deleteWithItems(TalvoFreeFunction free);
    // A new table (owned by the caller) with the same hash, minimum and maximum
    // sizes and ratios, starting at 1024 slots with resizing on, holding every
    // Item inserted in cursor order. O(n).
    TalvoHashTable* copy();
    // A new table with the same hash and otherwise all defaults, holding
    // copy(item) for each Item in cursor order; null for a null call-back.
    TalvoHashTable* copyWithItems(TalvoCopyFunction copy);

    // --- Parameters

    // The modulo the ladder gives for `size` (any size off the ladder is its
    // own modulo). Changes nothing. 32678 (not 32768) maps to 32749: kept.
    static int setModulo(int size);
    // Stores the minimum size; does not resize.
    void setMinimumSize(int size);
    double getEnlargementRatio() const { return enlargementRatio; }
    // Store the ratio and set its threshold to floor(ratio x current size).
    void setEnlargementRatio(double ratio);
    void setReductionRatio(double ratio);
    int getEnlargementThreshold() const { return enlargementThreshold; }
    int getReductionThreshold() const { return reductionThreshold; }
    bool getResizing() const { return resizing; }
    void setResizing(bool flag) { resizing = flag; }
    TalvoHashFunction getHash() const { return hash; }
    // The call-back's raw value for `item`, not reduced by the modulo.
    int hashItem(void* item);

    int getNumberOfItems() const { return numberOfItems; }
    int getSize() const { return size; }
    int getModulo() const { return modulo; }
    int getMinimumSize() const { return minimumSize; }
    int getMaximumSize() const { return maximumSize; }

    // --- Queries (positions are 1-based, in cursor order)

    // True when that very pointer is in the bucket of its hash.
    bool contains(void* item);
    // The first Item of the lowest existing bucket, or null when that bucket
    // is empty (even when other buckets hold Items: required). Null when the
    // table is empty. O(modulo).
    void* getFirstItem();
    // The same with the last Item of the highest existing bucket.
    void* getLastItem();
    // The n-th Item; null when n < 1 or n > count. O(modulo + bucket).
    void* getNthItem(int n);
    // The position of the first occurrence of that pointer, 0 when absent. O(modulo + n).
    int getItemPosition(void* item);
    // The first Item, in cursor order, with compare(item, key) == 0; null
    // when none. A full scan: O(modulo + n).
    void* searchItem(TalvoCompareFunction compare, void* key);
    void* searchItemWithComparator(TalvoComparator* comparator, void* key);
    // The first Item of the bucket of `hashValue` with compare(item, key)
    // == 0, without calling the hash call-back; null when none.
    void* lookForItem(int hashValue, TalvoCompareFunction compare, void* key);
    // The same with the hash call-back's value for `key`.
    void* lookForItem(TalvoCompareFunction compare, void* key);
    // The bucket list of slot i (may be null); null when i < 0 or i > modulo.
    TalvoList* getNthEntry(int i);
    // Slots (0 to modulo - 1) whose list exists and is not empty; next and
    // previous look strictly after / before i; -1 when none. O(modulo).
    int getFirstNonEmptyEntryNumber();
    int getLastNonEmptyEntryNumber();
    int getNextNonEmptyEntryNumber(int i);
    int getPreviousNonEmptyEntryNumber(int i);

    // --- Changes

    // Appends the Item to its bucket (duplicates kept) and doubles the table
    // when the count reaches the enlargement threshold.
    void insertItem(void* item);
    // insertItem for each Item of the list (list order) or of the other table
    // (its cursor order; the table itself is allowed). Null does nothing.
    void insertItems(TalvoList* list);
    void insertItems(TalvoHashTable* other);
    // Removes the first occurrence of that pointer from its bucket, then
    // halves the table when the count is down to the reduction threshold.
    // An absent Item (or null) changes nothing, but is still hashed.
    void removeItem(void* item);
    // getNthItem(n), then removeItem of it (also when it is null, which the
    // hash call-back then receives); returns it.
    void* removeNthItem(int n);
    // The same with getFirstItem / getLastItem.
    void* removeFirstItem();
    void* removeLastItem();
    // Bulk removals: every bucket in slot order, then one reduction test, so
    // a call halves the table at most once. Items freed by `free` when given.
    void removeItems();
    void deleteItems(TalvoFreeFunction free);
    void compareAndRemoveItems(TalvoCompareFunction compare, void* key);
    void compareAndRemoveItems(TalvoComparator* comparator, void* key);
    void compareAndDeleteItems(TalvoCompareFunction compare, void* key, TalvoFreeFunction free);
    void compareAndDeleteItems(TalvoComparator* comparator, void* key, TalvoFreeFunction free);
    // removeItem for each Item of the list; the list is unchanged.
    void removeItems(TalvoList* list);
    // Empties the list from its first cell; each Item taken off is removed
    // here if present and then passed to `free` in any case.
    void deleteItems(TalvoList* list, TalvoFreeFunction free);
    // removeItems(), then a resize to the minimum size.
    void reset();
    // A new TalvoList (owned by the caller) of the Items at positions from
    // to to, inclusive, in cursor order; positions out of range are not met.
    TalvoList* extractList(int from, int to);
    // The same Items in a new table made as by copy().
    TalvoHashTable* extractRange(int from, int to);
    // Resize to 2 x size / size / 2 when resizing is on and the result stays
    // within the maximum / minimum size. O(modulo + n).
    void enlarge();
    void reduce();

    // --- Set operations by identity; `other` is never changed. A null other
    // changes nothing, builds nothing (null) and counts 0.

    // Inserts each Item of other (cursor order) not already here.
    void addition(TalvoHashTable* other);
    // Removes here one occurrence of each Item of other.
    void subtraction(TalvoHashTable* other);
    // Removes here every Item that other does not contain.
    void selection(TalvoHashTable* other);
    // New tables owned by the caller: copy() + addition(other); made as by
    // copy() and holding the Items here (cursor order, with repetitions)
    // that other contains / does not contain.
    TalvoHashTable* buildUnion(TalvoHashTable* other);
    TalvoHashTable* buildIntersection(TalvoHashTable* other);
    TalvoHashTable* buildDifference(TalvoHashTable* other);
    // other's count + Items here not in other; Items here in other; Items here
    // not in other (with repetitions). No table is built.
    int getNumberOfItemsOfUnion(TalvoHashTable* other);
    int getNumberOfItemsOfIntersection(TalvoHashTable* other);
    int getNumberOfItemsOfDifference(TalvoHashTable* other);

    // --- Cursors (owned by the caller)

    // A new cursor, before the first and after the last Item.
    TalvoHashTableCursor* newCursor();
    // A new list cursor on the bucket of slot i (a missing bucket behaves as an
    // empty list); null when i < 0 or i > modulo.
    TalvoListCursor* newCursorOnNthEntry(int i);

private:
    friend class TalvoHashTableCursor;

    int _slotOf(int hashValue) const;
    TalvoList* _bucketOf(void* item);
    TalvoHashTable* _emptyCopy();
    TalvoList* _snapshot();
    void _reduceIfSparse();
    template <class Change>
    void _changeEveryBucket(Change change);
    template <class Visit>
    void _forEachItem(Visit visit);
    void _resize(int newSize);
    void _deleteBuckets(TalvoList** slots, int used);

    int numberOfItems;
    int size;
    int modulo;
    int minimumSize;
    int maximumSize;
    TalvoList** entries;
    double enlargementRatio;
    double reductionRatio;
    int enlargementThreshold;
    int reductionThreshold;
    bool resizing;
    TalvoHashFunction hash;
};

// A walk over every Item: slot by slot, each bucket in list order. States: on
// an Item, before the first, after the last (both on an empty table).
//
//     TalvoHashTableCursor* c = table->newCursor();
//     for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment())
//         use(c->getItem());
//     delete c;
//
// removeItemAndIncrement / removeItemAndDecrement switch the table's resizing
// off while they remove, so the cursor stays valid through them (the table
// may then stay larger than its thresholds ask until the next change outside
// a cursor). Any insertion, and any removal through the table, may resize it
// and leaves the cursor invalid. resetInPosition is the base one: it does
// nothing.
class TALVO_API TalvoHashTableCursor : public TalvoCursor, public TalvoObject<TalvoHashTableCursor> {
public:
    static constexpr const char* ClassName = "TalvoHashTableCursor";

    // A cursor on `table` (not owned; null behaves as an empty table).
    explicit TalvoHashTableCursor(TalvoHashTable* table);
    // Deletes the owned bucket cursor.
    ~TalvoHashTableCursor() override;
    TalvoHashTableCursor(const TalvoHashTableCursor&) = delete;
    TalvoHashTableCursor& operator=(const TalvoHashTableCursor&) = delete;

    // A new cursor (owned by the caller) in the same state.
    TalvoHashTableCursor* copy();
    // Takes other's table, slot, flags and bucket-cursor state; null is ignored.
    void resetOnCursor(TalvoHashTableCursor* other);

    bool isBeforeFirstItem() override;
    bool isAfterLastItem() override;
    // False when a flag is set; else whether the current Item is the pointer
    // getFirstItem / getLastItem gives. O(modulo).
    bool isOnFirstItem() override;
    bool isOnLastItem() override;
    // On the first Item of the first / last Item of the last non-empty bucket.
    void resetOnFirstItem() override;
    void resetOnLastItem() override;
    // From the first Item until that pointer, else after the last Item. O(n).
    void resetOnItem(void* item) override;
    // Next / previous Item, crossing to the next / previous non-empty bucket;
    // nothing when not on an Item.
    void increment() override;
    void decrement() override;
    // The current Item; null when not on one.
    void* getItem() override;
    // Take the current Item (null when none), switch resizing off, move,
    // removeItem the Item (also null, which is then hashed), restore the flag
    // and return the Item.
    void* removeItemAndIncrement() override;
    void* removeItemAndDecrement() override;

private:
    void _enterBucket(int entryNumber, bool atFirst);
    void _clearBucketCursor();
    void* _removeAndStep(bool forward);

    TalvoHashTable* table;
    int entryNumber;
    TalvoListCursor* listCursor;
    bool beforeFirst;
    bool afterLast;
};
