/// @file
/// TalvoArray: a growable array of Item slots addressed by a 0-based index.
///
/// Layout: one block of `size` pointers (traced as "void*[]"), replaced by a
/// larger or smaller block in steps of `increment`. Slots may be empty (null).
/// `itemCount` counts the non-null slots as the operations below keep it; two
/// of them deliberately let it drift (reduceDownToIndex cuts Items without
/// counting them, copyWithItems counts the slots copied), and the operations
/// that rely on it (pushItem, popItem, getNthItem, ...) then act on the stale
/// count. The array never owns its Items except where a free call-back is given.
///
/// Invariant: every index from 0 to size - 1 is a slot of the block; every
/// access outside that range is ignored or answers null / -1.
///
/// Block operations taking (from, length) cover the indexes from max(from, 0)
/// to min(from + length, size - 1) INCLUSIVE: length + 1 slots when the block
/// does not meet the end. Callers rely on this bound; it is kept.
#pragma once

#include <talvo/foundation/TalvoCallbacks.h>
#include <talvo/foundation/TalvoObject.h>

/// A growable array of Item slots addressed by a 0-based index; it never owns
/// its Items.
class TALVO_API TalvoArray : public TalvoObject<TalvoArray> {
public:
    static constexpr const char* ClassName = "TalvoArray";  ///< Name in the allocation trace.

    /// 1024 null slots, growing by 1024.
    TalvoArray();
    /// `n` null slots, growing by `n` (a negative n gives no slots).
    explicit TalvoArray(int n);
    /// Member-wise copy: the two arrays share one block (as with operator=).
    TalvoArray(const TalvoArray&) = default;
    /// Releases the block; the Items are untouched.
    ~TalvoArray();

    /// Copies the four fields: both arrays then share one block. Shallow on
    /// purpose; use copy().
    TalvoArray& operator=(const TalvoArray&) = default;
    /// A new array (owned by the caller) with the same size, increment and
    /// Items at the same indexes; its itemCount is its number of Items. O(size).
    TalvoArray* copy();
    /// The same holding copyItem's result for each non-null slot; its itemCount
    /// is the number of slots copied. A null call-back copies no Item. O(size).
    TalvoArray* copyWithItems(TalvoCopyFunction copyItem);
    /// deleteItems(freeItem), then deletes this array. O(size).
    void deleteWithItems(TalvoFreeFunction freeItem);
    /// Calls `freeItem` on the Item at `index` and empties the slot; nothing
    /// when the index is out of range or the slot is empty.
    void deleteItem(int index, TalvoFreeFunction freeItem);

    /// The number of slots.
    int getSize() const { return _size; }
    /// True when itemCount is 0.
    bool isEmpty() const { return _itemCount == 0; }
    /// itemCount.
    int getNumberOfItems() const { return _itemCount; }

    /// The Item in the slot; null when the index is outside 0..size-1.
    void* getCell(int index) const { return _inBlock(index) ? _cells[index] : nullptr; }
    /// Stores `item` at `index`, growing the block by whole increments when the
    /// index is at or beyond size; a negative index is ignored. itemCount
    /// follows a slot turning non-null or null.
    void setCell(int index, void* item) {
        if (_inBlock(index))
            _storeInSlot(index, item);
        else
            _storeOutsideBlock(index, item);
    }
    /// Empties the slot when the index is in range.
    void removeItem(int index);
    /// Empties every slot; the size is kept. O(size).
    void removeItems();
    /// Exchanges two slots when both indexes are in range.
    void swap(int i, int j);
    /// Grows the block by whole increments until size exceeds `index`; nothing
    /// when it already does. O(size).
    void extendUpToIndex(int index);
    /// Shrinks the block to the smallest multiple of the increment above
    /// `index` (0 for a negative index) when that is below size. itemCount is
    /// NOT lowered for the Items cut off: kept as it stands. O(size).
    void reduceDownToIndex(int index);

    /// Stores a non-null Item at index itemCount (growing if needed); itemCount
    /// grows only when that slot was empty. A null Item is ignored.
    void pushItem(void* item);
    /// The Item at index itemCount - 1 (null out of range), emptying the slot.
    void* popItem();

    /// False when itemCount is 0; else whether a slot holds that pointer. O(size).
    bool contains(void* item) const;
    /// The lowest index holding that pointer, -1 when none; 0 (not -1) when
    /// itemCount is 0, kept as it stands. O(size).
    int findItemIndex(void* item) const;
    /// The Item of the lowest slot whose compare(slotItem, key) is 0, empty
    /// slots included; null when none, when itemCount is 0 or the call-back is
    /// null. O(size).
    void* searchItem(TalvoCompareFunction compare, void* key) const;
    /// The index of that slot; -1 in the same cases. O(size).
    int searchIndexOfItem(TalvoCompareFunction compare, void* key) const;
    /// The Item of the lowest non-null slot; null when itemCount is below 1. O(size).
    void* getFirstItem() const;
    /// The index of that slot; -1 when itemCount is below 1. O(size).
    int getIndexOfFirstItem() const;
    /// The n-th Item counting non-null slots from index 0 (1-based); for n = 0
    /// whatever slot 0 holds; null when n is below 0 or above itemCount. O(size).
    void* getNthItem(int n) const;
    /// Its index: 0 for n = 0, -1 when n is below 0, above itemCount or not met.
    int getIndexOfNthItem(int n) const;
    /// getNthItem(itemCount).
    void* getLastItem() const;
    /// -1 when itemCount is negative, 0 when it is 0, else the index of the
    /// itemCount-th Item (-1 when not met). O(size).
    int getIndexOfLastItem() const;

    /// Empties the slots of the block (inclusive bound, see above); indexes
    /// outside the array are skipped. O(length).
    void clearBlock(int from, int length);
    /// The same, calling `freeItem` (when not null) on each Item first.
    void clearBlockAndFreeItems(int from, int length, TalvoFreeFunction freeItem);
    /// Calls `freeItem` on every Item and empties its slot; the size is kept. O(size).
    void deleteItems(TalvoFreeFunction freeItem);

    /// Moves the block's slots by `shift`. A slot landing on an Item loses that
    /// Item; a slot whose target falls outside is emptied and its Item dropped.
    /// For a negative shift a target of 0 counts as outside: kept as it stands.
    void moveBlock(int from, int length, int shift);
    /// Gathers the block's Items at its start, keeping their order. itemCount
    /// is unchanged. O(length).
    void compactBlockLeft(int from, int length);
    /// Gathers the block's Items at its end, keeping their order. itemCount is
    /// unchanged. O(length).
    void compactBlockRight(int from, int length);
    /// Gathers every Item at the start of the array, in order. O(size).
    void compactLeft();
    /// Gathers every Item at the end of the array, in order. O(size).
    void compactRight();
    /// Gathers the Items of slots max(from, 0) to min(to, size - 1) at the
    /// block's start and sorts them stably ascending by compare(left, right).
    /// O(k log k) for k Items with a scratch block of k pointers, quadratic
    /// when that block cannot be had.
    void sortBlock(int from, int to, TalvoCompareFunction compare);

private:
    /// 0 <= index < size, in one comparison (size is never negative).
    bool _inBlock(int index) const {
        return static_cast<unsigned>(index) < static_cast<unsigned>(_size);
    }
    /// The first and last index of a (from, length) block; first > last when empty.
    void _blockBounds(int from, int length, int& first, int& last) const;
    /// Stores into an existing slot, keeping itemCount in step.
    /// Branches rather than adding a computed difference: the usual stores
    /// (an Item into an empty slot) are then predicted and the count does
    /// not wait on the slot's load.
    void _storeInSlot(int index, void* item) {
        void*& slot = _cells[index];
        if (!slot) {
            if (item)
                ++_itemCount;
        } else if (!item) {
            --_itemCount;
        }
        slot = item;
    }
    /// setCell for an index outside the block: grows or ignores.
    void _storeOutsideBlock(int index, void* item);
    /// Replaces the block by one of `newSize` slots keeping the first slots;
    /// nothing when the new block cannot be allocated.
    void _resizeBlock(int newSize);
    /// Empties the slots first..last, calling `freeItem` (when not null) on each Item.
    void _clearSlots(int first, int last, TalvoFreeFunction freeItem);
    /// Empties one slot, lowering itemCount when it held an Item.
    void _emptySlot(int index);
    /// The index of the n-th (1-based) non-null slot, -1 when not met.
    int _indexOfNthNonNull(int n) const;

    void** _cells;
    int _size;
    int _increment;
    int _itemCount;
};
