#include <talvo/containers/TalvoList.h>

#include <talvo/foundation/TalvoComparator.h>
#include <talvo/foundation/TalvoFunction.h>

#include <cassert>
#include <cstdarg>
#include <cstdint>

// ---------------------------------------------------------------- TalvoListCell

TalvoListCell::TalvoListCell() : _item(nullptr), _next(nullptr), _previous(nullptr) {}

void TalvoListCell::insertAfter(void* item) {
    assert(_next && "insertAfter needs a following cell");
    TalvoListCell* cell = new TalvoListCell;
    if (!cell)
        return;
    cell->_item = item;
    cell->_previous = this;
    cell->_next = _next;
    _next->_previous = cell;
    _next = cell;
}

// ---------------------------------------------------------------- construction

TalvoList::TalvoList() : _count(0), _first(nullptr), _last(nullptr) {}

TalvoList::TalvoList(int n, ...) : _count(0), _first(nullptr), _last(nullptr) {
    va_list items;
    va_start(items, n);
    for (int i = 0; i < n; ++i)
        _insertCellLast(va_arg(items, void*));
    va_end(items);
}

TalvoList::~TalvoList() { removeItems(); }

void TalvoList::free(void* list) { delete static_cast<TalvoList*>(list); }

void TalvoList::deleteWithItems(TalvoFreeFunction freeItem) {
    if (freeItem) {
        for (TalvoListCell* c = _first; c; c = c->_next)
            freeItem(c->_item);
    }
    delete this;
}

TalvoList* TalvoList::copy() {
    TalvoList* result = new TalvoList;
    if (result)
        result->append(this);
    return result;
}

TalvoList* TalvoList::copyWithItems(TalvoCopyFunction copyItem) {
    TalvoList* result = new TalvoList;
    if (!result || !copyItem)
        return result;
    TalvoListCursor cursor(this);
    for (cursor.resetOnFirstItem(); !cursor.isAfterLastItem(); cursor.increment())
        result->_insertCellLast(copyItem(cursor.getItem()));
    return result;
}

bool TalvoList::isEmpty() const { return _count == 0; }

int TalvoList::getNumberOfItems() const { return _count; }

// ---------------------------------------------------------------- cell helpers

TalvoListCell* TalvoList::_getNthCell(int position) const {
    if (position == 0 || position > _count || position < -_count)
        return nullptr;
    TalvoListCell* c;
    if (position > 0) {
        c = _first;
        for (int i = 1; c && i < position; ++i)
            c = c->_next;
    } else {
        c = _last;
        for (int i = -1; c && i > position; --i)
            c = c->_previous;
    }
    return c;
}

TalvoListCell* TalvoList::_findCell(void* item) const {
    TalvoListCell* c = _first;
    while (c && c->_item != item)
        c = c->_next;
    return c;
}

void TalvoList::_insertCellFirst(void* item) {
    TalvoListCell* cell = new TalvoListCell;
    if (!cell)
        return;
    cell->_item = item;
    cell->_next = _first;
    if (_first)
        _first->_previous = cell;
    else
        _last = cell;
    _first = cell;
    ++_count;
}

void TalvoList::_insertCellLast(void* item) {
    TalvoListCell* cell = new TalvoListCell;
    if (!cell)
        return;
    cell->_item = item;
    cell->_previous = _last;
    if (_last)
        _last->_next = cell;
    else
        _first = cell;
    _last = cell;
    ++_count;
}

void TalvoList::_insertCellAfter(TalvoListCell* cell, void* item) {
    if (cell == _last) {
        _insertCellLast(item);
        return;
    }
    cell->insertAfter(item);
    ++_count;
}

void* TalvoList::_removeCell(TalvoListCell* cell) {
    if (cell->_previous)
        cell->_previous->_next = cell->_next;
    else
        _first = cell->_next;
    if (cell->_next)
        cell->_next->_previous = cell->_previous;
    else
        _last = cell->_previous;
    void* item = cell->_item;
    delete cell;
    --_count;
    return item;
}

template <class Match>
void TalvoList::_removeMatchingCells(Match matches, TalvoFreeFunction freeItem) {
    TalvoListCell* c = _first;
    while (c) {
        TalvoListCell* next = c->_next;
        if (matches(c->_item)) {
            if (freeItem)
                freeItem(c->_item);
            _removeCell(c);
        }
        c = next;
    }
}

// ---------------------------------------------------------------- access

void* TalvoList::getNthItem(int position) const {
    TalvoListCell* c = _getNthCell(position);
    return c ? c->_item : nullptr;
}

void* TalvoList::getLastItem() const { return _last ? _last->_item : nullptr; }

void* TalvoList::getTop() const { return _first ? _first->_item : nullptr; }

bool TalvoList::contains(void* item) const { return _findCell(item) != nullptr; }

int TalvoList::getItemPosition(void* item) const {
    int position = 1;
    for (TalvoListCell* c = _first; c; c = c->_next, ++position) {
        if (c->_item == item)
            return position;
    }
    return 0;
}

void* TalvoList::searchItem(TalvoCompareFunction compare, void* key) const {
    if (!compare)
        return nullptr;
    for (TalvoListCell* c = _first; c; c = c->_next) {
        if (compare(c->_item, key) == 0)
            return c->_item;
    }
    return nullptr;
}

void* TalvoList::searchItemWithComparator(TalvoComparator* comparator, void* key) const {
    if (!comparator)
        return nullptr;
    for (TalvoListCell* c = _first; c; c = c->_next) {
        if (comparator->compareItems(c->_item, key) == 0)
            return c->_item;
    }
    return nullptr;
}

// ---------------------------------------------------------------- insertion

void TalvoList::insertItemFirst(void* item) { _insertCellFirst(item); }

void TalvoList::insertItemLast(void* item) { _insertCellLast(item); }

void TalvoList::insertItemInPosition(void* item, int position) {
    if (position < 2) {
        _insertCellFirst(item);
        return;
    }
    TalvoListCell* before = position > _count ? nullptr : _getNthCell(position - 1);
    if (before)
        _insertCellAfter(before, item);
    else
        _insertCellLast(item);
}

void TalvoList::insertItemBefore(TalvoCompareFunction compare, void* item) {
    TalvoListCell* c = _first;
    while (c && compare && compare(c->_item, item) < 0)
        c = c->_next;
    if (!c)
        _insertCellLast(item);
    else if (!c->_previous)
        _insertCellFirst(item);
    else
        _insertCellAfter(c->_previous, item);
}

void TalvoList::insertItemAfter(TalvoCompareFunction compare, void* item) {
    TalvoListCell* c = _first;
    while (c && compare && compare(c->_item, item) <= 0)
        c = c->_next;
    if (!c)
        _insertCellLast(item);
    else if (!c->_previous)
        _insertCellFirst(item);
    else
        _insertCellAfter(c->_previous, item);
}

void TalvoList::append(TalvoList* other) {
    if (!other || !other->_first)
        return;
    // Stop at the other list's present last cell: it may be this list, growing.
    TalvoListCell* stop = other->_last;
    for (TalvoListCell* c = other->_first; c; c = c->_next) {
        _insertCellLast(c->_item);
        if (c == stop)
            break;
    }
}

void TalvoList::push(void* item) { _insertCellFirst(item); }

void TalvoList::enQueue(void* item) { _insertCellLast(item); }

// ---------------------------------------------------------------- removal

void TalvoList::removeItem(void* item) {
    TalvoListCell* c = _findCell(item);
    if (c)
        _removeCell(c);
}

void* TalvoList::removeNthItem(int position) {
    TalvoListCell* c = _getNthCell(position);
    return c ? _removeCell(c) : nullptr;
}

void* TalvoList::removeFirstItem() { return _first ? _removeCell(_first) : nullptr; }

void* TalvoList::pop() { return removeFirstItem(); }

void* TalvoList::deQueue() { return removeFirstItem(); }

void* TalvoList::removeLastItem() { return _last ? _removeCell(_last) : nullptr; }

void TalvoList::removeItems() {
    TalvoListCell* c = _first;
    while (c) {
        TalvoListCell* next = c->_next;
        delete c;
        c = next;
    }
    _first = _last = nullptr;
    _count = 0;
}

void TalvoList::removeItems(TalvoList* other) { subtraction(other); }

void TalvoList::deleteItems(TalvoFreeFunction freeItem) {
    if (freeItem) {
        for (TalvoListCell* c = _first; c; c = c->_next)
            freeItem(c->_item);
    }
    removeItems();
}

void TalvoList::deleteItems(TalvoList* other, TalvoFreeFunction freeItem) {
    if (!other)
        return;
    while (other->_first) {
        void* item = other->_removeCell(other->_first);
        removeItem(item);
        if (freeItem)
            freeItem(item);
    }
}

void TalvoList::compareAndRemoveItems(TalvoCompareFunction compare, void* key) {
    compareAndDeleteItems(compare, key, nullptr);
}

void TalvoList::compareAndRemoveItems(TalvoComparator* comparator, void* key) {
    compareAndDeleteItems(comparator, key, nullptr);
}

void TalvoList::compareAndDeleteItems(TalvoCompareFunction compare, void* key,
                                      TalvoFreeFunction freeItem) {
    if (compare)
        _removeMatchingCells([=](void* item) { return compare(item, key) == 0; }, freeItem);
}

void TalvoList::compareAndDeleteItems(TalvoComparator* comparator, void* key,
                                      TalvoFreeFunction freeItem) {
    if (comparator)
        _removeMatchingCells([=](void* item) { return comparator->compareItems(item, key) == 0; },
                             freeItem);
}

TalvoList* TalvoList::extractRange(int from, int to) {
    TalvoList* result = new TalvoList;
    if (!result)
        return nullptr;
    int position = 1;
    for (TalvoListCell* c = _first; c && position <= to; c = c->_next, ++position) {
        if (position >= from)
            result->_insertCellLast(c->_item);
    }
    return result;
}

// ---------------------------------------------------------------- set operations

void TalvoList::addition(TalvoList* other) {
    if (!other || other == this)
        return;
    for (TalvoListCell* c = other->_first; c; c = c->_next) {
        if (!contains(c->_item))
            _insertCellLast(c->_item);
    }
}

void TalvoList::subtraction(TalvoList* other) {
    if (!other)
        return;
    TalvoListCell* c = other->_first;
    while (c) {
        // When other is this list, the cell removed may be c itself.
        TalvoListCell* next = c->_next;
        removeItem(c->_item);
        c = next;
    }
}

void TalvoList::selection(TalvoList* other) {
    if (other == this)
        return;
    _removeMatchingCells([=](void* item) { return !other || !other->contains(item); }, nullptr);
}

TalvoList* TalvoList::buildUnion(TalvoList* other) {
    TalvoList* result = copy();
    if (result)
        result->addition(other);
    return result;
}

TalvoList* TalvoList::buildIntersection(TalvoList* other) {
    TalvoList* result = new TalvoList;
    if (!result || !other)
        return result;
    for (TalvoListCell* c = _first; c; c = c->_next) {
        if (other->contains(c->_item))
            result->_insertCellLast(c->_item);
    }
    return result;
}

TalvoList* TalvoList::buildDifference(TalvoList* other) {
    TalvoList* result = new TalvoList;
    if (!result)
        return nullptr;
    for (TalvoListCell* c = _first; c; c = c->_next) {
        if (!other || !other->contains(c->_item))
            result->_insertCellLast(c->_item);
    }
    return result;
}

int TalvoList::getNumberOfItemsOfUnion(TalvoList* other) const {
    return (other ? other->_count : 0) + getNumberOfItemsOfDifference(other);
}

int TalvoList::getNumberOfItemsOfIntersection(TalvoList* other) const {
    int n = 0;
    for (TalvoListCell* c = _first; c; c = c->_next) {
        if (other && other->contains(c->_item))
            ++n;
    }
    return n;
}

int TalvoList::getNumberOfItemsOfDifference(TalvoList* other) const {
    int n = 0;
    for (TalvoListCell* c = _first; c; c = c->_next) {
        if (!other || !other->contains(c->_item))
            ++n;
    }
    return n;
}

bool TalvoList::doesContainMembersOf(TalvoList* other) const {
    if (!other)
        return true;
    if (_count < other->_count)
        return false;
    for (TalvoListCell* c = other->_first; c; c = c->_next) {
        if (!contains(c->_item))
            return false;
    }
    return true;
}

bool TalvoList::hasSameMembersAs(TalvoList* other) const {
    if (!other)
        return _count == 0;
    return _count == other->_count && doesContainMembersOf(other);
}

// ---------------------------------------------------------------- linear set operations

void TalvoList::_markAll(TalvoList* list, TalvoMarkFunction mark, int flag) {
    for (TalvoListCell* c = list->_first; c; c = c->_next)
        mark(c->_item, flag);
}

TalvoList* TalvoList::buildLinearUnion(TalvoList* other, TalvoTestFunction test,
                                       TalvoMarkFunction mark) {
    if (!test || !mark)
        return nullptr;
    TalvoList* result = new TalvoList;
    if (!result)
        return nullptr;
    if (other)
        _markAll(other, mark, 1);
    for (TalvoListCell* c = _first; c; c = c->_next) {
        mark(c->_item, 0);
        result->_insertCellLast(c->_item);
    }
    for (TalvoListCell* c = other ? other->_first : nullptr; c; c = c->_next) {
        if (test(c->_item)) {
            result->_insertCellLast(c->_item);
            mark(c->_item, 0);
        }
    }
    return result;
}

TalvoList* TalvoList::buildLinearIntersection(TalvoList* other, TalvoTestFunction test,
                                              TalvoMarkFunction mark) {
    if (!test || !mark)
        return nullptr;
    TalvoList* result = new TalvoList;
    if (!result)
        return nullptr;
    if (other)
        _markAll(other, mark, 0);
    _markAll(this, mark, 1);
    for (TalvoListCell* c = other ? other->_first : nullptr; c; c = c->_next) {
        if (test(c->_item))
            result->_insertCellLast(c->_item);
    }
    _markAll(this, mark, 0);
    return result;
}

TalvoList* TalvoList::buildLinearDifference(TalvoList* other, TalvoTestFunction test,
                                            TalvoMarkFunction mark) {
    if (!test || !mark)
        return nullptr;
    TalvoList* result = new TalvoList;
    if (!result)
        return nullptr;
    _markAll(this, mark, 1);
    if (other)
        _markAll(other, mark, 0);
    for (TalvoListCell* c = _first; c; c = c->_next) {
        if (test(c->_item)) {
            result->_insertCellLast(c->_item);
            mark(c->_item, 0);
        }
    }
    return result;
}

// ---------------------------------------------------------------- sorting

// Enough runs for any list: run k holds 2^k cells and a count is below 2^31.
static constexpr int MaxRuns = 64;

// `a` holds the earlier cells, so a cell of `b` goes first only when
// order(a, b) is above 0: equal keys keep their order, as pivot-first
// partitioning keeps them.
template <class Order>
TalvoListCell* TalvoList::_mergeChains(TalvoListCell* a, TalvoListCell* b, Order& order) {
    TalvoListCell* head = nullptr;
    TalvoListCell** tail = &head;
    while (a && b) {
        if (order(a->_item, b->_item) > 0) {
            *tail = b;
            tail = &b->_next;
            b = b->_next;
        } else {
            *tail = a;
            tail = &a->_next;
            a = a->_next;
        }
    }
    *tail = a ? a : b;
    return head;
}

template <class Order>
void TalvoList::_sortCells(Order order) {
    if (!_first || !_first->_next)
        return;
    // Bottom-up merge: runs[k] is empty or a sorted chain of 2^k cells, all of
    // them earlier than the cells of runs[k - 1]. No recursion, no allocation.
    TalvoListCell* runs[MaxRuns] = {};
    TalvoListCell* c = _first;
    while (c) {
        TalvoListCell* next = c->_next;
        c->_next = nullptr;
        TalvoListCell* run = c;
        int k = 0;
        for (; k < MaxRuns - 1 && runs[k]; ++k) {
            run = _mergeChains(runs[k], run, order);
            runs[k] = nullptr;
        }
        runs[k] = run;
        c = next;
    }
    TalvoListCell* sorted = nullptr;
    for (int k = 0; k < MaxRuns; ++k) {
        if (runs[k])
            sorted = _mergeChains(runs[k], sorted, order);
    }
    _first = sorted;
    _relinkBackwards();
}

void TalvoList::_relinkBackwards() {
    TalvoListCell* previous = nullptr;
    for (TalvoListCell* c = _first; c; c = c->_next) {
        c->_previous = previous;
        previous = c;
    }
    _last = previous;
}

void TalvoList::quickSort(TalvoAccessFunction access, TalvoCompareFunction compare, void* context) {
    if (!access || !compare)
        return;
    _sortCells([=](void* a, void* b) { return compare(access(a, context), access(b, context)); });
}

void TalvoList::quickSort(TalvoCompareFunction compare) {
    if (compare)
        _sortCells(compare);
}

void TalvoList::quickSort(TalvoComparator* comparator) {
    if (comparator)
        _sortCells([=](void* a, void* b) { return comparator->compareItems(a, b); });
}

void TalvoList::bubbleSort(TalvoAccessFunction access, TalvoCompareFunction compare, void* context) {
    if (!access || !compare || !_first || !_first->_next)
        return;
    // A consistent compare makes one exchange per inverted pair, at most
    // n(n-1)/2 of them; a contradictory one could exchange forever.
    std::int64_t n = 0;
    for (TalvoListCell* c = _first; c; c = c->_next)
        ++n;
    std::int64_t exchangesLeft = n * (n - 1) / 2;
    TalvoListCell* a = _first;
    TalvoListCell* b = a->_next;
    while (b && exchangesLeft > 0) {
        if (compare(access(a->_item, context), access(b->_item, context)) <= 0) {
            a = b;
            b = b->_next;
            continue;
        }
        --exchangesLeft;
        // Relink ... p a b q ... as ... p b a q ...
        TalvoListCell* p = a->_previous;
        TalvoListCell* q = b->_next;
        if (p)
            p->_next = b;
        else
            _first = b;
        if (q)
            q->_previous = a;
        b->_previous = p;
        b->_next = a;
        a->_previous = b;
        a->_next = q;
        if (!p) {
            b = a->_next;
        } else {
            a = p;
        }
    }
    // Walk on to the end: the loop may stop early, and the last cell may have moved.
    while (a->_next)
        a = a->_next;
    _last = a;
}

void TalvoList::bubbleSort(TalvoCompareFunction compare) {
    bubbleSort(TalvoFunction::selfAccess, compare, nullptr);
}

void TalvoList::reverse() {
    TalvoListCell* c = _first;
    while (c) {
        TalvoListCell* next = c->_next;
        c->_next = c->_previous;
        c->_previous = next;
        c = next;
    }
    TalvoListCell* oldFirst = _first;
    _first = _last;
    _last = oldFirst;
}

TalvoListCursor* TalvoList::newCursor() { return new TalvoListCursor(this); }

// ---------------------------------------------------------------- TalvoListCursor

TalvoListCursor::TalvoListCursor(TalvoList* list)
    : _list(list), _cell(nullptr), _beforeFirst(true), _afterLast(true) {}

TalvoListCursor::~TalvoListCursor() = default;

TalvoListCursor* TalvoListCursor::copy() { return new TalvoListCursor(*this); }

void TalvoListCursor::resetOnCursor(TalvoListCursor* other) {
    if (other)
        *this = *other;
}

bool TalvoListCursor::isBeforeFirstItem() { return _beforeFirst; }

bool TalvoListCursor::isAfterLastItem() { return _afterLast; }

bool TalvoListCursor::isOnFirstItem() { return _cell && _list && _cell == _list->_first; }

bool TalvoListCursor::isOnLastItem() { return _cell && _list && _cell == _list->_last; }

void TalvoListCursor::_resetOnCell(TalvoListCell* cell) {
    _cell = cell;
    _beforeFirst = _afterLast = (cell == nullptr);
}

void TalvoListCursor::resetOnFirstItem() { _resetOnCell(_list ? _list->_first : nullptr); }

void TalvoListCursor::resetOnLastItem() { _resetOnCell(_list ? _list->_last : nullptr); }

void TalvoListCursor::resetInPosition(int position) {
    resetOnFirstItem();
    for (int steps = 0; steps < position - 1 && !_afterLast; ++steps)
        increment();
}

void TalvoListCursor::resetOnItem(void* item) {
    resetOnFirstItem();
    while (_cell && _cell->_item != item)
        increment();
}

void TalvoListCursor::increment() {
    if (!_cell)
        return;
    _cell = _cell->_next;
    _beforeFirst = false;
    if (!_cell)
        _afterLast = true;
}

void TalvoListCursor::decrement() {
    if (!_cell)
        return;
    _cell = _cell->_previous;
    _afterLast = false;
    if (!_cell)
        _beforeFirst = true;
}

void* TalvoListCursor::getItem() { return _cell ? _cell->_item : nullptr; }

void* TalvoListCursor::removeItemAndIncrement() {
    if (!_cell)
        return nullptr;
    TalvoListCell* old = _cell;
    increment();
    return _list->_removeCell(old);
}

void* TalvoListCursor::removeItemAndDecrement() {
    if (!_cell)
        return nullptr;
    TalvoListCell* old = _cell;
    decrement();
    return _list->_removeCell(old);
}

void TalvoListCursor::exchangeItems(TalvoListCursor* other) {
    if (!other || !_cell || !other->_cell)
        return;
    void* item = _cell->_item;
    _cell->_item = other->_cell->_item;
    other->_cell->_item = item;
}

void* TalvoListCursor::substituteItemForItem(void* item) {
    if (!_cell)
        return nullptr;
    void* old = _cell->_item;
    _cell->_item = item;
    return old;
}

void TalvoListCursor::insertItemBefore(void* item) {
    if (!_list)
        return;
    if (_beforeFirst)
        _list->insertItemFirst(item);
    else if (_afterLast || !_cell)
        _list->insertItemLast(item);
    else if (_cell == _list->_first || !_cell->_previous)
        _list->insertItemFirst(item);
    else
        _cell->_previous->insertAfter(item);  // uncounted on purpose
}

void TalvoListCursor::insertItemAfter(void* item) {
    if (!_list)
        return;
    if (_afterLast)
        _list->insertItemLast(item);
    else if (_beforeFirst || !_cell)
        _list->insertItemFirst(item);
    else if (_cell == _list->_last || !_cell->_next)
        _list->insertItemLast(item);
    else
        _cell->insertAfter(item);  // uncounted on purpose
}
