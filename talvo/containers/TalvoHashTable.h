/// @file
/// TalvoHashTable: an unordered bag of Items spread over bucket lists by a
/// caller-supplied hash call-back, with its cursor TalvoHashTableCursor.
///
/// Layout: an entry array of `size` pointers to TalvoList; an Item lives in
/// the bucket of slot hash(item) mod modulo, where the modulo comes from a
/// fixed ladder of primes near the size. A bucket list is made on the first
/// insertion into its slot and stays (possibly empty) until the table is
/// resized or destroyed. Only slots 0 to modulo - 1 are ever used.
///
/// Invariants: the number of items is the sum of the bucket counts; the two
/// thresholds are always floor(ratio x size). The table doubles when an
/// insertion brings the count to the enlargement threshold and halves when a
/// removal brings it down to the reduction threshold, within the minimum and
/// maximum sizes and only while resizing is on. The default ratios 0.1 and
/// 0.01 are deliberately low (one item per ten slots at most): keep them.
///
/// The table never owns its Items and never looks inside them except through
/// the hash call-back and the compare call-backs an operation is given.
/// Identity tests (contains, removeItem, getItemPosition, the set operations)
/// compare pointers. Cursor order is slot order, then bucket (insertion)
/// order, and changes with every resize.
///
/// Guards kept apart from the plain arithmetic: a negative hash value is
/// reduced as an unsigned 32-bit number (so it still lands in a slot; a
/// non-negative hash gives exactly hash % modulo); the entry array always has
/// room for slots 0 to modulo (the ladder maps 32678 to the larger 32749);
/// sizes below 1 are never used; a null hash call-back hashes everything to 0.
#pragma once

#include <talvo/foundation/TalvoCallbacks.h>
#include <talvo/foundation/TalvoComparator.h>
#include <talvo/foundation/TalvoCursor.h>
#include <talvo/foundation/TalvoObject.h>

class TalvoHashTableCursor;
class TalvoList;
class TalvoListCursor;

/// A chained hash table of untyped Items, which it never owns; each slot's
/// bucket is a TalvoList.
class TALVO_API TalvoHashTable : public TalvoObject<TalvoHashTable> {
public:
    static constexpr const char* ClassName = "TalvoHashTable";  ///< Name in the allocation trace.

    /// A table with 1024 null slots, modulo 1021, ratios 0.1 / 0.01 (thresholds
    /// 102 / 10), minimum size 1024, maximum size 131072, resizing on.
    explicit TalvoHashTable(TalvoHashFunction hash);
    /// Deletes every bucket list (cells only, never the Items) and the array.
    ~TalvoHashTable();
    /// Copies the fields only: both tables then share their buckets
    /// (kept as for every container; `copy` is the way to duplicate).
    TalvoHashTable& operator=(const TalvoHashTable&) = default;

    /// Passes every Item (cursor order) to `free`, then deletes the table.
    void deleteWithItems(TalvoFreeFunction free);
    /// A new table (owned by the caller) with the same hash, minimum and maximum
    /// sizes and ratios, starting at 1024 slots with resizing on, holding every
    /// Item inserted in cursor order. O(n).
    TalvoHashTable* copy();
    /// A new table with the same hash and otherwise all defaults, holding
    /// copy(item) for each Item in cursor order; null for a null call-back.
    TalvoHashTable* copyWithItems(TalvoCopyFunction copy);

    /// @name Parameters
    /// @{

    /// The modulo the ladder gives for `size` (any size off the ladder is its
    /// own modulo). Changes nothing. 32678 (not 32768) maps to 32749: kept.
    static int setModulo(int size);
    /// Stores the minimum size; does not resize.
    void setMinimumSize(int size);
    /// The count-to-size ratio at which an insertion doubles the table.
    double getEnlargementRatio() const { return enlargementRatio; }
    /// Stores the ratio and sets its threshold to floor(ratio x current size).
    /// Does not resize.
    void setEnlargementRatio(double ratio);
    /// Stores the ratio and sets its threshold to floor(ratio x current size).
    /// Does not resize.
    void setReductionRatio(double ratio);
    /// The count at which an insertion doubles the table.
    int getEnlargementThreshold() const { return enlargementThreshold; }
    /// The count at or below which a removal halves the table.
    int getReductionThreshold() const { return reductionThreshold; }
    /// True when insertions and removals may resize the table.
    bool getResizing() const { return resizing; }
    /// Allows or forbids resizing; the table is not resized now.
    void setResizing(bool flag) { resizing = flag; }
    /// The hash call-back; may be null (everything hashes to 0).
    TalvoHashFunction getHash() const { return hash; }
    /// The call-back's raw value for `item`, not reduced by the modulo.
    int hashItem(void* item);

    /// The number of Items.
    int getNumberOfItems() const { return numberOfItems; }
    /// The nominal number of slots.
    int getSize() const { return size; }
    /// The number the hash is reduced by: the slots in use are 0 to modulo - 1.
    int getModulo() const { return modulo; }
    /// The size a reduction never goes below.
    int getMinimumSize() const { return minimumSize; }
    /// The size an enlargement never goes above.
    int getMaximumSize() const { return maximumSize; }
    /// @}

    /// @name Queries
    /// Positions are 1-based, in cursor order.
    /// @{

    /// True when that very pointer is in the bucket of its hash.
    bool contains(void* item);
    /// The first Item of the lowest existing bucket, or null when that bucket
    /// is empty (even when other buckets hold Items: required). Null when the
    /// table is empty. O(modulo).
    void* getFirstItem();
    /// The same with the last Item of the highest existing bucket.
    void* getLastItem();
    /// The n-th Item; null when n < 1 or n > count. O(modulo + bucket).
    void* getNthItem(int n);
    /// The position of the first occurrence of that pointer, 0 when absent. O(modulo + n).
    int getItemPosition(void* item);
    /// The first Item, in cursor order, with compare(item, key) == 0; null
    /// when none. A full scan: O(modulo + n).
    /// A null call-back finds nothing.
    void* searchItem(TalvoCompareFunction compare, void* key);
    /// The same with comparator->compareItems(item, key); null for a null
    /// comparator. O(modulo + n).
    void* searchItemWithComparator(TalvoComparator* comparator, void* key);
    /// The first Item of the bucket of `hashValue` with compare(item, key)
    /// == 0, without calling the hash call-back; null when none.
    void* lookForItem(int hashValue, TalvoCompareFunction compare, void* key);
    /// The same with the hash call-back's value for `key`.
    void* lookForItem(TalvoCompareFunction compare, void* key);
    /// The bucket list of slot i (may be null); null when i < 0 or i > modulo.
    TalvoList* getNthEntry(int i);
    /// The lowest slot (0 to modulo - 1) whose list exists and is not empty;
    /// -1 when none. O(modulo).
    int getFirstNonEmptyEntryNumber();
    /// The highest such slot; -1 when none. O(modulo).
    int getLastNonEmptyEntryNumber();
    /// The lowest such slot strictly after i (from 0 for a negative i); -1 when
    /// none. O(modulo).
    int getNextNonEmptyEntryNumber(int i);
    /// The highest such slot strictly before i (from modulo - 1 for i beyond
    /// modulo); -1 when none. O(modulo).
    int getPreviousNonEmptyEntryNumber(int i);
    /// @}

    /// @name Changes
    /// @{

    /// Appends the Item to its bucket (duplicates kept) and doubles the table
    /// when the count reaches the enlargement threshold.
    void insertItem(void* item);
    /// insertItem for each Item of the list, in list order. Null does nothing.
    void insertItems(TalvoList* list);
    /// insertItem for each Item of the other table, in its cursor order; the
    /// table itself is allowed. Null does nothing.
    void insertItems(TalvoHashTable* other);
    /// Removes the first occurrence of that pointer from its bucket, then
    /// halves the table when the count is down to the reduction threshold.
    /// An absent Item (or null) changes nothing, but is still hashed.
    void removeItem(void* item);
    /// getNthItem(n), then removeItem of it (also when it is null, which the
    /// hash call-back then receives); returns it.
    void* removeNthItem(int n);
    /// getFirstItem(), then removeItem of it; returns it.
    void* removeFirstItem();
    /// getLastItem(), then removeItem of it; returns it.
    void* removeLastItem();
    /// Removes every Item: every bucket in slot order, then one reduction
    /// test, so a call halves the table at most once (as every bulk removal
    /// below). O(modulo + n).
    void removeItems();
    /// Removes every Item, passing each to `free` when it is not null.
    void deleteItems(TalvoFreeFunction free);
    /// Removes every Item with compare(item, key) == 0; a null call-back
    /// removes nothing.
    void compareAndRemoveItems(TalvoCompareFunction compare, void* key);
    /// The same with comparator->compareItems(item, key); a null comparator
    /// removes nothing.
    void compareAndRemoveItems(TalvoComparator* comparator, void* key);
    /// Removes every Item with compare(item, key) == 0, passing each to `free`
    /// when it is not null; a null compare removes nothing.
    void compareAndDeleteItems(TalvoCompareFunction compare, void* key, TalvoFreeFunction free);
    /// The same with comparator->compareItems(item, key); a null comparator
    /// removes nothing.
    void compareAndDeleteItems(TalvoComparator* comparator, void* key, TalvoFreeFunction free);
    /// removeItem for each Item of the list; the list is unchanged. Null does
    /// nothing.
    void removeItems(TalvoList* list);
    /// Empties the list from its first cell; each Item taken off is removed
    /// here if present and then passed to `free` (when not null) in any case.
    /// Null does nothing.
    void deleteItems(TalvoList* list, TalvoFreeFunction free);
    /// removeItems(), then a resize to the minimum size.
    void reset();
    /// A new TalvoList (owned by the caller) of the Items at positions from
    /// to to, inclusive, in cursor order; positions out of range are not met.
    TalvoList* extractList(int from, int to);
    /// The same Items in a new table made as by copy().
    TalvoHashTable* extractRange(int from, int to);
    /// Resizes to 2 x size when resizing is on and the result stays within the
    /// maximum size; nothing otherwise. O(modulo + n).
    void enlarge();
    /// Resizes to size / 2 when resizing is on and the result stays within the
    /// minimum size; nothing otherwise. O(modulo + n).
    void reduce();
    /// @}

    /// @name Set operations by identity
    /// `other` is never changed. A null other changes nothing, builds nothing
    /// (null) and counts 0.
    /// @{

    /// Inserts each Item of other (cursor order) not already here.
    void addition(TalvoHashTable* other);
    /// Removes here one occurrence of each Item of other.
    void subtraction(TalvoHashTable* other);
    /// Removes here every Item that other does not contain.
    void selection(TalvoHashTable* other);
    /// A new table owned by the caller: copy() + addition(other).
    TalvoHashTable* buildUnion(TalvoHashTable* other);
    /// A new table owned by the caller, made as by copy() and holding the
    /// Items here (cursor order, with repetitions) that other contains.
    TalvoHashTable* buildIntersection(TalvoHashTable* other);
    /// The same with the Items here that other does not contain.
    TalvoHashTable* buildDifference(TalvoHashTable* other);
    /// other's count plus the Items here not in other (with repetitions). No
    /// table is built.
    int getNumberOfItemsOfUnion(TalvoHashTable* other);
    /// The Items here (with repetitions) that other contains.
    int getNumberOfItemsOfIntersection(TalvoHashTable* other);
    /// The Items here (with repetitions) that other does not contain.
    int getNumberOfItemsOfDifference(TalvoHashTable* other);
    /// @}

    /// @name Cursors
    /// Owned by the caller.
    /// @{

    /// A new cursor, before the first and after the last Item.
    TalvoHashTableCursor* newCursor();
    /// A new list cursor on the bucket of slot i (a missing bucket behaves as an
    /// empty list); null when i < 0 or i > modulo.
    TalvoListCursor* newCursorOnNthEntry(int i);
    /// @}

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

/// A walk over every Item: slot by slot, each bucket in list order. States: on
/// an Item, before the first, after the last (both on an empty table).
///
///     TalvoHashTableCursor* c = table->newCursor();
///     for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment())
///         use(c->getItem());
///     delete c;
///
/// removeItemAndIncrement / removeItemAndDecrement switch the table's resizing
/// off while they remove, so the cursor stays valid through them (the table
/// may then stay larger than its thresholds ask until the next change outside
/// a cursor). Any insertion, and any removal through the table, may resize it
/// and leaves the cursor invalid. resetInPosition is the base one: it does
/// nothing.
class TALVO_API TalvoHashTableCursor : public TalvoCursor, public TalvoObject<TalvoHashTableCursor> {
public:
    static constexpr const char* ClassName = "TalvoHashTableCursor";  ///< Name in the allocation trace.

    /// A cursor on `table` (not owned; null behaves as an empty table).
    explicit TalvoHashTableCursor(TalvoHashTable* table);
    /// Deletes the owned bucket cursor.
    ~TalvoHashTableCursor() override;
    /// Not copyable (it owns a bucket cursor): use copy().
    TalvoHashTableCursor(const TalvoHashTableCursor&) = delete;
    /// Not assignable: use resetOnCursor().
    TalvoHashTableCursor& operator=(const TalvoHashTableCursor&) = delete;

    /// A new cursor (owned by the caller) in the same state.
    TalvoHashTableCursor* copy();
    /// Takes other's table, slot, flags and bucket-cursor state; null is ignored.
    void resetOnCursor(TalvoHashTableCursor* other);

    bool isBeforeFirstItem() override;
    bool isAfterLastItem() override;
    /// False when a flag is set; else whether the current Item is the pointer
    /// getFirstItem gives. O(modulo).
    bool isOnFirstItem() override;
    /// False when a flag is set; else whether the current Item is the pointer
    /// getLastItem gives. O(modulo).
    bool isOnLastItem() override;
    /// On the first Item of the first non-empty bucket (before and after on an
    /// empty table).
    void resetOnFirstItem() override;
    /// On the last Item of the last non-empty bucket (before and after on an
    /// empty table).
    void resetOnLastItem() override;
    /// From the first Item until that pointer, else after the last Item. O(n).
    void resetOnItem(void* item) override;
    /// Next Item, crossing to the next non-empty bucket, or after the last;
    /// nothing when not on an Item.
    void increment() override;
    /// Previous Item, crossing to the previous non-empty bucket, or before the
    /// first; nothing when not on an Item.
    void decrement() override;
    /// The current Item; null when not on one.
    void* getItem() override;
    /// Takes the current Item (null when none), switches resizing off, moves
    /// as increment does, removes the Item with removeItem (also null, which
    /// is then hashed), restores the flag and returns the Item.
    void* removeItemAndIncrement() override;
    /// The same moving as decrement does.
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
