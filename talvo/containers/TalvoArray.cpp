#include <talvo/containers/TalvoArray.h>

#include <algorithm>
#include <climits>
#include <cstdint>

namespace {

constexpr int DefaultSize = 1024;
constexpr const char* BlockLabel = "void*[]";

// A zero-filled block of `n` slots, traced when it exists.
void** newBlock(int n) {
    void** block = static_cast<void**>(TalvoMemoryManager::newCell(sizeof(void*) * static_cast<std::size_t>(n)));
    if (block)
        TalvoMemoryManager::traceNew(block, BlockLabel);
    return block;
}

// Releases a block; a null one is reported as any null release is.
void releaseBlock(void** block) {
    if (block)
        TalvoMemoryManager::traceDelete(block, BlockLabel);
    TalvoMemoryManager::deleteCell(block);
}

// Items sorted by insertion before runs are merged; short runs insert fastest.
constexpr std::ptrdiff_t InsertionRun = 16;

// Sorts items[0, n) stably by insertion: an Item passes an earlier one only
// when `precedes(item, earlier)`. Quadratic; used on short runs, or on the
// whole block when no scratch memory is available.
template <class Precedes>
void insertionSort(void** items, std::ptrdiff_t n, Precedes precedes) {
    for (std::ptrdiff_t i = 1; i < n; ++i) {
        void* item = items[i];
        std::ptrdiff_t j = i;
        for (; j > 0 && precedes(item, items[j - 1]); --j)
            items[j] = items[j - 1];
        items[j] = item;
    }
}

// Merges the sorted runs from[lo, mid) and from[mid, hi) into to[lo, hi). On
// ties the left run's Item comes first, which keeps the sort stable.
template <class Precedes>
void mergeRuns(void** from, void** to, std::ptrdiff_t lo, std::ptrdiff_t mid, std::ptrdiff_t hi,
               Precedes precedes) {
    if (mid == hi || !precedes(from[mid], from[mid - 1])) {
        std::copy(from + lo, from + hi, to + lo);  // already in order
        return;
    }
    std::ptrdiff_t left = lo, right = mid, out = lo;
    while (left < mid && right < hi)
        to[out++] = precedes(from[right], from[left]) ? from[right++] : from[left++];
    std::copy(from + left, from + mid, to + out);
    std::copy(from + right, from + hi, to + out + (mid - left));
}

// Sorts items[0, n) stably, leaving the result in `items` or, when
// `intoOther`, in other[0, n); the rest of both blocks serves as scratch.
// The halves are sorted depth first, so that the small merges work on Items
// still in the cache.
template <class Precedes>
void sortInto(void** items, void** other, std::ptrdiff_t n, bool intoOther, Precedes precedes) {
    if (n <= InsertionRun) {
        insertionSort(items, n, precedes);
        if (intoOther)
            std::copy(items, items + n, other);
        return;
    }
    std::ptrdiff_t half = n / 2;
    sortInto(items, other, half, !intoOther, precedes);
    sortInto(items + half, other + half, n - half, !intoOther, precedes);
    if (intoOther)
        mergeRuns(items, other, 0, half, n, precedes);
    else
        mergeRuns(other, items, 0, half, n, precedes);
}

// Sorts items[0, n) stably by merging through a scratch block of n pointers
// (allocated and traced as any block is), O(n log n). Without scratch memory
// the whole block is sorted by insertion, as quadratic as exchanging
// neighbours.
template <class Precedes>
void stableSort(void** items, int n, Precedes precedes) {
    void** scratch = n > InsertionRun ? newBlock(n) : nullptr;
    if (scratch) {
        sortInto(items, scratch, n, false, precedes);
        releaseBlock(scratch);
    } else {
        insertionSort(items, n, precedes);
    }
}

}  // namespace

// ---------------------------------------------------------------- construction

TalvoArray::TalvoArray() : TalvoArray(DefaultSize) {}

TalvoArray::TalvoArray(int n) : _cells(nullptr), _size(0), _increment(n), _itemCount(0) {
    _cells = newBlock(std::max(n, 0));
    if (_cells)
        _size = std::max(n, 0);
}

TalvoArray::~TalvoArray() { releaseBlock(_cells); }

TalvoArray* TalvoArray::copy() {
    TalvoArray* result = copyWithItems(nullptr);
    if (!result)
        return nullptr;
    for (int i = 0; i < _size && i < result->_size; ++i)
        result->_storeInSlot(i, _cells[i]);
    return result;
}

TalvoArray* TalvoArray::copyWithItems(TalvoCopyFunction copyItem) {
    TalvoArray* result = new TalvoArray(_size);
    if (!result)
        return nullptr;
    result->_increment = _increment;
    if (!copyItem || result->_size < _size)
        return result;
    for (int i = 0; i < _size; ++i) {
        if (_cells[i]) {
            result->_cells[i] = copyItem(_cells[i]);
            ++result->_itemCount;
        }
    }
    return result;
}

void TalvoArray::deleteWithItems(TalvoFreeFunction freeItem) {
    deleteItems(freeItem);
    delete this;
}

void TalvoArray::deleteItem(int index, TalvoFreeFunction freeItem) {
    if (index < 0 || index >= _size || !_cells[index])
        return;
    if (freeItem)
        freeItem(_cells[index]);
    _emptySlot(index);
}

// ---------------------------------------------------------------- slots

void TalvoArray::_storeOutsideBlock(int index, void* item) {
    if (index < 0)
        return;
    extendUpToIndex(index);
    if (index < _size)
        _storeInSlot(index, item);
}

void TalvoArray::_emptySlot(int index) {
    if (_cells[index]) {
        _cells[index] = nullptr;
        --_itemCount;
    }
}

void TalvoArray::removeItem(int index) {
    if (index >= 0 && index < _size)
        _emptySlot(index);
}

void TalvoArray::removeItems() { _clearSlots(0, _size - 1, nullptr); }

void TalvoArray::swap(int i, int j) {
    if (i >= 0 && i < _size && j >= 0 && j < _size)
        std::swap(_cells[i], _cells[j]);
}

void TalvoArray::_resizeBlock(int newSize) {
    void** block = newBlock(newSize);
    if (!block)
        return;
    std::copy(_cells, _cells + std::min(_size, newSize), block);
    releaseBlock(_cells);
    _cells = block;
    _size = newSize;
}

void TalvoArray::extendUpToIndex(int index) {
    if (index < _size)
        return;
    std::int64_t newSize = index + std::int64_t{1};
    // A step below 1 could never pass the index: grow to it exactly instead.
    if (_increment >= 1) {
        std::int64_t steps = (index - std::int64_t{_size}) / _increment + 1;
        newSize = _size + steps * _increment;
    }
    _resizeBlock(static_cast<int>(std::min<std::int64_t>(newSize, INT_MAX)));
}

void TalvoArray::reduceDownToIndex(int index) {
    std::int64_t newSize = 0;
    if (index >= 0) {
        if (_increment < 1)
            return;  // no multiple of such a step exceeds the index
        newSize = (index / _increment + std::int64_t{1}) * _increment;
    }
    if (newSize < _size)
        _resizeBlock(static_cast<int>(newSize));
}

void TalvoArray::pushItem(void* item) {
    if (item)
        setCell(_itemCount, item);
}

void* TalvoArray::popItem() {
    int index = _itemCount - 1;
    if (index < 0 || index >= _size)
        return nullptr;
    void* item = _cells[index];
    _emptySlot(index);
    return item;
}

// ---------------------------------------------------------------- search

bool TalvoArray::contains(void* item) const {
    if (_itemCount == 0)
        return false;
    return std::find(_cells, _cells + _size, item) != _cells + _size;
}

int TalvoArray::findItemIndex(void* item) const {
    if (_itemCount == 0)
        return 0;
    void** found = std::find(_cells, _cells + _size, item);
    return found == _cells + _size ? -1 : static_cast<int>(found - _cells);
}

int TalvoArray::searchIndexOfItem(TalvoCompareFunction compare, void* key) const {
    if (_itemCount == 0 || _size < 1 || !compare)
        return -1;
    for (int i = 0; i < _size; ++i) {
        if (compare(_cells[i], key) == 0)
            return i;
    }
    return -1;
}

void* TalvoArray::searchItem(TalvoCompareFunction compare, void* key) const {
    int index = searchIndexOfItem(compare, key);
    return index < 0 ? nullptr : _cells[index];
}

int TalvoArray::_indexOfNthNonNull(int n) const {
    for (int i = 0; i < _size; ++i) {
        if (_cells[i] && --n == 0)
            return i;
    }
    return -1;
}

void* TalvoArray::getFirstItem() const {
    int index = getIndexOfFirstItem();
    return index < 0 ? nullptr : _cells[index];
}

int TalvoArray::getIndexOfFirstItem() const {
    return _itemCount < 1 ? -1 : _indexOfNthNonNull(1);
}

int TalvoArray::getIndexOfNthItem(int n) const {
    if (n < 0 || n > _itemCount)
        return -1;
    return n == 0 ? 0 : _indexOfNthNonNull(n);
}

void* TalvoArray::getNthItem(int n) const {
    int index = getIndexOfNthItem(n);
    // n = 0 answers slot 0 whatever it holds; an array of no slots has none.
    return index < 0 ? nullptr : getCell(index);
}

void* TalvoArray::getLastItem() const { return getNthItem(_itemCount); }

int TalvoArray::getIndexOfLastItem() const {
    if (_itemCount < 0)
        return -1;
    return _itemCount == 0 ? 0 : _indexOfNthNonNull(_itemCount);
}

// ---------------------------------------------------------------- blocks

void TalvoArray::_blockBounds(int from, int length, int& first, int& last) const {
    first = std::max(from, 0);
    std::int64_t end = std::int64_t{from} + length;
    last = static_cast<int>(std::min<std::int64_t>(end, _size - std::int64_t{1}));
}

void TalvoArray::_clearSlots(int first, int last, TalvoFreeFunction freeItem) {
    for (int i = first; i <= last; ++i) {
        if (_cells[i] && freeItem)
            freeItem(_cells[i]);
        _emptySlot(i);
    }
}

void TalvoArray::clearBlock(int from, int length) { clearBlockAndFreeItems(from, length, nullptr); }

void TalvoArray::clearBlockAndFreeItems(int from, int length, TalvoFreeFunction freeItem) {
    int first, last;
    _blockBounds(from, length, first, last);
    _clearSlots(first, last, freeItem);
}

void TalvoArray::deleteItems(TalvoFreeFunction freeItem) { _clearSlots(0, _size - 1, freeItem); }

void TalvoArray::moveBlock(int from, int length, int shift) {
    int first, last;
    _blockBounds(from, length, first, last);
    if (shift == 0 || first > last)
        return;
    // Walk against the shift so that no slot is overwritten before it moves.
    int step = shift > 0 ? -1 : 1;
    int i = shift > 0 ? last : first;
    for (int moved = 0; moved <= last - first; ++moved, i += step) {
        std::int64_t target = std::int64_t{i} + shift;
        bool inside = shift > 0 ? target < _size : target > 0;
        if (inside) {
            _emptySlot(static_cast<int>(target));
            _cells[target] = _cells[i];
            _cells[i] = nullptr;
        } else {
            _emptySlot(i);
        }
    }
}

void TalvoArray::compactBlockLeft(int from, int length) {
    int first, last;
    _blockBounds(from, length, first, last);
    int write = first;  // the next slot to fill
    for (int read = first; read <= last; ++read) {
        if (_cells[read])
            std::swap(_cells[write++], _cells[read]);
    }
}

void TalvoArray::compactBlockRight(int from, int length) {
    int first, last;
    _blockBounds(from, length, first, last);
    int write = last;  // the next slot to fill
    for (int read = last; read >= first; --read) {
        if (_cells[read])
            std::swap(_cells[write--], _cells[read]);
    }
}

void TalvoArray::compactLeft() { compactBlockLeft(0, _size); }

void TalvoArray::compactRight() { compactBlockRight(0, _size); }

void TalvoArray::sortBlock(int from, int to, TalvoCompareFunction compare) {
    int first = std::max(from, 0);
    int last = std::min(to, _size - 1);
    if (!compare || last <= first)
        return;
    compactBlockLeft(first, last - first);
    int end = first;  // one past the last Item
    while (end <= last && _cells[end])
        ++end;
    // The same order as exchanging neighbours while compare(left, right) > 0:
    // an Item moves ahead of an earlier one only when strictly smaller.
    stableSort(_cells + first, end - first, [=](void* r, void* l) { return compare(l, r) > 0; });
}
