/// @file
/// TalvoList: a doubly linked list of untyped Items, with its cells and cursors.
///
/// Layout: the list holds a cached count and the first and last cells; every
/// TalvoListCell is a separate traced object holding one Item and the links to
/// its neighbours. The list never owns its Items: only the operations that take
/// a free call-back release them. Membership always compares Items by identity
/// (pointer equality) unless a compare call-back or a comparator is passed.
///
/// Invariant (kept by every list operation): first has no previous, last has no
/// next, an empty list has both null. The count equals the number of cells with
/// one deliberate exception: a cursor insertion in the middle of a list links a
/// cell without counting it (see TalvoListCursor). Every walk therefore follows
/// the links, never the count, so a stale count cannot make it read past the end.
///
/// Positions are 1-based. Where noted, a negative position counts from the end:
/// -1 is the last item.
///
/// Walking a list:
///
///     TalvoListCursor* cursor = list->newCursor();
///     for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment())
///         use(cursor->getItem());
///     delete cursor;
///
/// A cursor survives any change made through itself (removeItemAndIncrement,
/// insertItemBefore, ...) and any change through the list that leaves its
/// current cell in place. Removing its current cell through the list leaves it
/// dangling.
#pragma once

#include <talvo/foundation/TalvoCallbacks.h>
#include <talvo/foundation/TalvoCursor.h>
#include <talvo/foundation/TalvoObject.h>

class TalvoComparator;
class TalvoList;
class TalvoListCursor;

/// One link of a list: an Item and its two neighbours.
class TALVO_API TalvoListCell : public TalvoObject<TalvoListCell> {
public:
    static constexpr const char* ClassName = "TalvoListCell";  ///< Name in the allocation trace.

    /// A cell with no Item and no neighbours.
    TalvoListCell();

    /// The Item held, not owned by the cell.
    void* getItem() const { return _item; }
    /// The next cell; null for the last.
    TalvoListCell* getNext() const { return _next; }
    /// The previous cell; null for the first.
    TalvoListCell* getPrevious() const { return _previous; }
    /// Replaces the Item; the old one is not released.
    void setItem(void* item) { _item = item; }

private:
    friend class TalvoList;
    friend class TalvoListCursor;

    /// Links a new cell holding `item` directly after this one, which must have
    /// a next cell. No list count is changed: the caller keeps it.
    void insertAfter(void* item);

    void* _item;
    TalvoListCell* _next;
    TalvoListCell* _previous;
};

/// A doubly linked list of untyped Items, which it never owns.
class TALVO_API TalvoList : public TalvoObject<TalvoList> {
public:
    static constexpr const char* ClassName = "TalvoList";  ///< Name in the allocation trace.

    /// @name Construction and copying
    /// @{

    /// An empty list.
    TalvoList();
    /// A list of the `n` Items passed after `n` (each a pointer), in argument
    /// order; n below 1 gives an empty list.
    TalvoList(int n, ...);
    /// Member-wise copy: the two lists share their cells (as with operator=).
    TalvoList(const TalvoList&) = default;
    /// Removes all cells; the Items are untouched.
    ~TalvoList();

    /// Deletes the list given as a void pointer; null is ignored silently.
    static void free(void* list);
    /// Calls `freeItem` on every Item, first to last, then deletes this list.
    /// A null call-back releases no Item. O(n).
    void deleteWithItems(TalvoFreeFunction freeItem);
    /// A new list (owned by the caller) with the same Items in the same order. O(n).
    TalvoList* copy();
    /// A new list (owned by the caller) of `copyItem`'s result for each Item, in
    /// order. A null call-back gives an empty list. O(n).
    TalvoList* copyWithItems(TalvoCopyFunction copyItem);
    /// Copies count, first and last: both lists then share the same cells and
    /// their counts diverge on the next change. Shallow on purpose; use copy().
    TalvoList& operator=(const TalvoList&) = default;
    /// True when the count is 0.
    bool isEmpty() const;
    /// The count.
    int getNumberOfItems() const;
    /// @}

    /// @name Access
    /// @{

    /// The Item at `position` (negative from the end); null when the position is
    /// 0 or beyond the count either way. O(position).
    void* getNthItem(int position) const;
    /// The last Item, null when empty.
    void* getLastItem() const;
    /// The first Item, null when empty.
    void* getTop() const;
    /// True when some cell holds that very pointer. O(n).
    bool contains(void* item) const;
    /// 1-based position of the first cell holding that pointer, 0 when absent. O(n).
    int getItemPosition(void* item) const;
    /// The first Item for which compare(item, key) is 0; null when none or when
    /// the call-back is null. O(n).
    void* searchItem(TalvoCompareFunction compare, void* key) const;
    /// The same with comparator->compareItems(item, key). O(n).
    void* searchItemWithComparator(TalvoComparator* comparator, void* key) const;
    /// @}

    /// @name Insertion
    /// Each adds one cell and one to the count; nothing happens when the cell
    /// cannot be allocated.
    /// @{

    /// Inserts the Item before the first one.
    void insertItemFirst(void* item);
    /// Inserts the Item after the last one.
    void insertItemLast(void* item);
    /// Position below 2 inserts first, beyond the count inserts last; otherwise
    /// the Item becomes the one at `position`. O(position).
    void insertItemInPosition(void* item, int position);
    /// Inserts before the first cell whose Item gives compare(cellItem, item) >= 0,
    /// so before its equals; last when there is none. O(n).
    void insertItemBefore(TalvoCompareFunction compare, void* item);
    /// Inserts before the first cell whose Item gives compare(cellItem, item) > 0,
    /// so after its equals; last when there is none. O(n).
    void insertItemAfter(TalvoCompareFunction compare, void* item);
    /// Inserts every Item of `other` last, in order; `other` is unchanged and may
    /// be this list. O(other).
    void append(TalvoList* other);
    /// insertItemFirst.
    void push(void* item);
    /// insertItemLast.
    void enQueue(void* item);
    /// @}

    /// @name Removal
    /// Cells are freed, Items only through a free call-back.
    /// @{

    /// Removes the first cell holding that pointer; nothing when absent. O(n).
    void removeItem(void* item);
    /// Removes and returns the Item at `position` (negative from the end); null
    /// and no change when out of range. O(position).
    void* removeNthItem(int position);
    /// Removes and returns the first Item; null when empty.
    void* removeFirstItem();
    /// removeFirstItem().
    void* pop();
    /// removeFirstItem().
    void* deQueue();
    /// Removes and returns the last Item; null when empty.
    void* removeLastItem();
    /// Removes all cells. O(n).
    void removeItems();
    /// subtraction(other).
    void removeItems(TalvoList* other);
    /// Calls `freeItem` on every Item and removes all cells; the list stays. O(n).
    void deleteItems(TalvoFreeFunction freeItem);
    /// Empties `other` from its front; for each Item taken, removes its first
    /// occurrence here (if any) and calls `freeItem` on it, present here or not.
    /// O(n * other).
    void deleteItems(TalvoList* other, TalvoFreeFunction freeItem);
    /// Removes every cell whose Item gives compare(item, key) == 0; a null
    /// call-back removes nothing. O(n).
    void compareAndRemoveItems(TalvoCompareFunction compare, void* key);
    /// The same with comparator->compareItems(item, key); a null comparator
    /// removes nothing. O(n).
    void compareAndRemoveItems(TalvoComparator* comparator, void* key);
    /// Removes every cell whose Item gives compare(item, key) == 0, calling
    /// `freeItem` (when not null) on the Item before its cell goes; a null
    /// compare removes nothing. O(n).
    void compareAndDeleteItems(TalvoCompareFunction compare, void* key, TalvoFreeFunction freeItem);
    /// The same with comparator->compareItems(item, key); a null comparator
    /// removes nothing. O(n).
    void compareAndDeleteItems(TalvoComparator* comparator, void* key, TalvoFreeFunction freeItem);
    /// A new list (owned by the caller) of the Items at positions `from` to `to`
    /// inclusive; positions outside the list are simply not met. O(to).
    TalvoList* extractRange(int from, int to);
    /// @}

    /// @name Set operations by identity
    /// This list is the first operand, a null other counts as empty. Quadratic:
    /// O(n * other).
    /// @{

    /// Inserts last each Item of `other` not yet here (tested as the list grows,
    /// so a repeated Item is added once).
    void addition(TalvoList* other);
    /// Removes one occurrence here per occurrence in `other`.
    void subtraction(TalvoList* other);
    /// Removes every cell whose Item `other` does not contain.
    void selection(TalvoList* other);
    /// A new list owned by the caller: copy() then addition(other).
    TalvoList* buildUnion(TalvoList* other);
    /// A new list owned by the caller: the Items of this list (with
    /// repetitions, in order) that `other` contains.
    TalvoList* buildIntersection(TalvoList* other);
    /// A new list owned by the caller: the Items of this list (with
    /// repetitions, in order) that `other` does not contain.
    TalvoList* buildDifference(TalvoList* other);
    /// other's count plus the cells here whose Item `other` does not contain.
    int getNumberOfItemsOfUnion(TalvoList* other) const;
    /// The number of cells here whose Item `other` contains.
    int getNumberOfItemsOfIntersection(TalvoList* other) const;
    /// The number of cells here whose Item `other` does not contain.
    int getNumberOfItemsOfDifference(TalvoList* other) const;
    /// False when this count is below other's; else whether every Item of
    /// `other` is here (true for an empty other).
    bool doesContainMembersOf(TalvoList* other) const;
    /// False when the counts differ; else whether every Item of `other` is here.
    bool hasSameMembersAs(TalvoList* other) const;
    /// @}

    /// @name Linear set operations
    /// The Items carry a mark of their own, set by `mark`(item, flag) and read
    /// by `test`(item). Every mark is 0 on return. Each returns a new list
    /// owned by the caller. O(n + other).
    /// @{

    /// This list's Items in order, then other's Items not in this list, each once.
    TalvoList* buildLinearUnion(TalvoList* other, TalvoTestFunction test, TalvoMarkFunction mark);
    /// other's Items (in other's order) that are in this list.
    TalvoList* buildLinearIntersection(TalvoList* other, TalvoTestFunction test, TalvoMarkFunction mark);
    /// This list's Items not in `other`, each once.
    TalvoList* buildLinearDifference(TalvoList* other, TalvoTestFunction test, TalvoMarkFunction mark);
    /// @}

    /// @name Sorting
    /// Stable ascending, cells relinked in place.
    /// @{

    /// Sorts by the keys access(item, context), compared with compare(key, key).
    /// Never allocates; O(n log n) comparisons and constant stack depth.
    /// Null call-backs leave the list as it is.
    void quickSort(TalvoAccessFunction access, TalvoCompareFunction compare, void* context);
    /// The same comparing the Items themselves; a null call-back changes nothing.
    void quickSort(TalvoCompareFunction compare);
    /// The same with comparator->compareItems; a null comparator changes nothing.
    void quickSort(TalvoComparator* comparator);
    /// Exchange sort of neighbouring cells by the keys access(item, context);
    /// quadratic. A compare that contradicts itself cannot make it loop: it
    /// stops after n(n-1)/2 exchanges, more than any consistent compare needs.
    /// Null call-backs leave the list as it is.
    void bubbleSort(TalvoAccessFunction access, TalvoCompareFunction compare, void* context);
    /// The same comparing the Items themselves.
    void bubbleSort(TalvoCompareFunction compare);
    /// Reverses the order of the cells in place. O(n).
    void reverse();
    /// @}

    /// @name Cursors
    /// @{

    /// A new cursor (owned by the caller) on this list, before its first item.
    TalvoListCursor* newCursor();
    /// @}

protected:
    int _count;             ///< Cells counted by the list (see the class notes).
    TalvoListCell* _first;  ///< First cell; null when empty.
    TalvoListCell* _last;   ///< Last cell; null when empty.

private:
    friend class TalvoListCursor;

    /// The cell at `position` (negative from the end), null when out of range.
    TalvoListCell* _getNthCell(int position) const;
    /// The first cell holding that pointer, null when none.
    TalvoListCell* _findCell(void* item) const;
    /// Allocates a cell for `item` and links it first / last / after `cell`;
    /// each adds one to the count. Nothing happens when the allocation fails.
    void _insertCellFirst(void* item);
    void _insertCellLast(void* item);
    void _insertCellAfter(TalvoListCell* cell, void* item);
    /// Unlinks `cell`, frees it, subtracts one from the count, returns its Item.
    void* _removeCell(TalvoListCell* cell);
    /// Removes every cell whose Item `matches` accepts, calling `freeItem` (when
    /// not null) on its Item first.
    template <class Match>
    void _removeMatchingCells(Match matches, TalvoFreeFunction freeItem);
    /// Sorts the cells by `order` (a callable of two Items returning int).
    template <class Order>
    void _sortCells(Order order);
    /// Merges two sorted chains linked by next only; stable.
    template <class Order>
    static TalvoListCell* _mergeChains(TalvoListCell* a, TalvoListCell* b, Order& order);
    /// Restores every previous link and last after the next links were rebuilt.
    void _relinkBackwards();
    /// Marks every Item of `list` with `flag`.
    static void _markAll(TalvoList* list, TalvoMarkFunction mark, int flag);
};

/// A position in a list: on a cell, before the first item or after the last.
/// A cursor on an empty list is both before and after. Increment and decrement
/// move only from a cell; a cursor off the list must be reset first.
/// The walking operations are inline and the class is final, so that a loop
/// over a TalvoListCursor* compiles to plain pointer chasing.
class TALVO_API TalvoListCursor final : public TalvoCursor, public TalvoObject<TalvoListCursor> {
public:
    static constexpr const char* ClassName = "TalvoListCursor";  ///< Name in the allocation trace.

    /// A cursor on `list` (not owned), before its first item and after its last.
    /// A null list behaves as an empty one.
    explicit TalvoListCursor(TalvoList* list);
    /// A cursor in the same state on the same list.
    TalvoListCursor(const TalvoListCursor&) = default;
    /// Copies the list, the cell and both flags.
    TalvoListCursor& operator=(const TalvoListCursor&) = default;
    ~TalvoListCursor() override;

    /// A new cursor (owned by the caller) in the same state.
    TalvoListCursor* copy();
    /// Takes the list, cell and flags of `other`; a null other is ignored.
    void resetOnCursor(TalvoListCursor* other);

    bool isBeforeFirstItem() override { return _beforeFirst; }
    bool isAfterLastItem() override { return _afterLast; }
    /// True when on a cell and that cell is the list's first.
    bool isOnFirstItem() override;
    /// True when on a cell and that cell is the list's last.
    bool isOnLastItem() override;
    void resetOnFirstItem() override;
    void resetOnLastItem() override;
    /// On the item at 1-based `position` (position 1 or less: the first);
    /// after the last item when the list is shorter. O(position).
    void resetInPosition(int position) override;
    /// On the first cell holding that pointer, else after the last item. O(n).
    void resetOnItem(void* item) override;
    /// From a cell only: to the next cell, or after the last item.
    void increment() override {
        if (!_cell)
            return;
        _cell = _cell->_next;
        _beforeFirst = false;
        if (!_cell)
            _afterLast = true;
    }
    /// From a cell only: to the previous cell, or before the first item.
    void decrement() override {
        if (!_cell)
            return;
        _cell = _cell->_previous;
        _afterLast = false;
        if (!_cell)
            _beforeFirst = true;
    }
    /// The current Item; null when not on a cell.
    void* getItem() override { return _cell ? _cell->_item : nullptr; }
    /// Moves on as increment does, removes the cell the cursor was on and
    /// returns its Item; null and no change when not on a cell.
    void* removeItemAndIncrement() override;
    /// Moves back as decrement does, removes the cell the cursor was on and
    /// returns its Item; null and no change when not on a cell.
    void* removeItemAndDecrement() override;

    /// Swaps the Items of the two current cells when both cursors are on cells.
    void exchangeItems(TalvoListCursor* other);
    /// Puts `item` in the current cell and returns the Item that was there;
    /// null and no change when not on a cell.
    void* substituteItemForItem(void* item);
    /// Inserts `item` before the cursor, which does not move. Before the first
    /// item, on the first, or after the last, this inserts first (last when
    /// after the last) and counts the new cell. In the middle of a list the
    /// new cell is linked but the list's count is NOT increased: callers rely
    /// on this, it is kept. A cursor without a list does nothing.
    void insertItemBefore(void* item);
    /// Inserts `item` after the cursor, which does not move; the mirror of
    /// insertItemBefore, with the same uncounted insertion in the middle.
    void insertItemAfter(void* item);

private:
    /// Leaves the cursor on `cell`, or both before and after when it is null.
    void _resetOnCell(TalvoListCell* cell);

    TalvoList* _list;
    TalvoListCell* _cell;
    bool _beforeFirst;
    bool _afterLast;
};
