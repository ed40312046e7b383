#include <talvo/containers/TalvoHashTable.h>

#include <talvo/containers/TalvoList.h>

#include <climits>
#include <cmath>
#include <cstdint>

namespace {

const int kDefaultSize = 1024;
const int kDefaultModulo = 1021;
const int kDefaultMaximumSize = 131072;
// Deliberately low: at most one Item per ten slots before doubling.
const double kDefaultEnlargementRatio = 0.1;
const double kDefaultReductionRatio = 0.01;
const char* const kEntryArrayLabel = "void*[]";

struct LadderRow {
    int size;
    int modulo;
};

// Sizes and the prime used as modulo for each. The sixth row's size is 32678,
// not 32768: a table doubling to 32768 slots uses 32768 itself. Kept.
const LadderRow kModuloLadder[] = {
    {1024, 1021},         {2048, 2039},         {4096, 4093},         {8192, 8191},
    {16384, 16381},       {32678, 32749},       {65536, 65521},       {131072, 131071},
    {262144, 262139},     {524288, 524287},     {1048576, 1048573},   {2097152, 2097143},
    {4194304, 4194301},   {8388608, 8388593},   {16777216, 16777213}, {33554432, 33554393},
};

// floor(ratio x size), held within the int range (NaN gives 0).
int thresholdFor(double ratio, int size) {
    double t = std::floor(ratio * size);
    if (std::isnan(t))
        return 0;
    if (t <= static_cast<double>(INT_MIN))
        return INT_MIN;
    if (t >= static_cast<double>(INT_MAX))
        return INT_MAX;
    return static_cast<int>(t);
}

// Slots the entry array holds: every slot 0..modulo must be readable
// (getNthEntry accepts modulo), and the ladder's 32678 row has a modulo
// above its size.
int capacityFor(int size, int modulo) { return size > modulo ? size : modulo + 1; }

TalvoList** allocateEntries(int capacity) {
    void* block = TalvoMemoryManager::newCell(static_cast<std::size_t>(capacity) * sizeof(TalvoList*));
    if (block)
        TalvoMemoryManager::traceNew(block, kEntryArrayLabel);
    return static_cast<TalvoList**>(block);
}

void releaseEntries(TalvoList** entries) {
    if (entries)
        TalvoMemoryManager::traceDelete(entries, kEntryArrayLabel);
    TalvoMemoryManager::deleteCell(entries);
}

// Twice / half a size without overflow.
long long doubled(int size) { return 2LL * size; }

}  // namespace

// ---------------------------------------------------------------- construction

TalvoHashTable::TalvoHashTable(TalvoHashFunction hash)
    : numberOfItems(0),
      size(kDefaultSize),
      modulo(kDefaultModulo),
      minimumSize(kDefaultSize),
      maximumSize(kDefaultMaximumSize),
      entries(allocateEntries(capacityFor(kDefaultSize, kDefaultModulo))),
      enlargementRatio(kDefaultEnlargementRatio),
      reductionRatio(kDefaultReductionRatio),
      enlargementThreshold(thresholdFor(kDefaultEnlargementRatio, kDefaultSize)),
      reductionThreshold(thresholdFor(kDefaultReductionRatio, kDefaultSize)),
      resizing(true),
      hash(hash) {
    // Without an array nothing can be stored: the table stays empty for good.
    if (!entries)
        modulo = 0;
}

TalvoHashTable::~TalvoHashTable() {
    _deleteBuckets(entries, modulo);
    releaseEntries(entries);
}

void TalvoHashTable::_deleteBuckets(TalvoList** slots, int used) {
    for (int i = 0; i < used; i++)
        delete slots[i];
}

void TalvoHashTable::deleteWithItems(TalvoFreeFunction free) {
    if (free)
        _forEachItem([&](void* item) { free(item); });
    delete this;
}

TalvoHashTable* TalvoHashTable::_emptyCopy() {
    TalvoHashTable* result = new TalvoHashTable(hash);
    if (result) {
        result->maximumSize = maximumSize;
        result->minimumSize = minimumSize;
        result->setEnlargementRatio(enlargementRatio);
        result->setReductionRatio(reductionRatio);
    }
    return result;
}

TalvoHashTable* TalvoHashTable::copy() {
    TalvoHashTable* result = _emptyCopy();
    if (result)
        result->insertItems(this);
    return result;
}

TalvoHashTable* TalvoHashTable::copyWithItems(TalvoCopyFunction copy) {
    if (!copy)
        return nullptr;
    TalvoHashTable* result = new TalvoHashTable(hash);
    if (result)
        _forEachItem([&](void* item) { result->insertItem(copy(item)); });
    return result;
}

// ---------------------------------------------------------------- parameters

int TalvoHashTable::setModulo(int size) {
    for (const LadderRow& row : kModuloLadder) {
        if (row.size == size)
            return row.modulo;
    }
    return size;
}

void TalvoHashTable::setMinimumSize(int size) { minimumSize = size; }

void TalvoHashTable::setEnlargementRatio(double ratio) {
    enlargementRatio = ratio;
    enlargementThreshold = thresholdFor(ratio, size);
}

void TalvoHashTable::setReductionRatio(double ratio) {
    reductionRatio = ratio;
    reductionThreshold = thresholdFor(ratio, size);
}

int TalvoHashTable::hashItem(void* item) { return hash ? hash(item) : 0; }

// hash mod modulo. The remainder is taken on the unsigned value, which equals
// the signed remainder for every hash >= 0 and keeps a negative hash inside
// the array instead of indexing below it.
int TalvoHashTable::_slotOf(int hashValue) const {
    return static_cast<int>(static_cast<std::uint32_t>(hashValue) % static_cast<std::uint32_t>(modulo));
}

TalvoList* TalvoHashTable::_bucketOf(void* item) {
    int h = hashItem(item);
    return modulo > 0 ? entries[_slotOf(h)] : nullptr;
}

// ---------------------------------------------------------------- walking

// Calls visit(item) for every Item in cursor order. `visit` must not change
// this table.
template <class Visit>
void TalvoHashTable::_forEachItem(Visit visit) {
    for (int i = 0; i < modulo; i++) {
        if (!entries[i])
            continue;
        TalvoListCursor cursor(entries[i]);
        for (cursor.resetOnFirstItem(); !cursor.isAfterLastItem(); cursor.increment())
            visit(cursor.getItem());
    }
}

// A new list of every Item in cursor order, for walks that change the table.
TalvoList* TalvoHashTable::_snapshot() {
    TalvoList* items = new TalvoList();
    if (items)
        _forEachItem([&](void* item) { items->insertItemLast(item); });
    return items;
}

// ---------------------------------------------------------------- queries

bool TalvoHashTable::contains(void* item) {
    TalvoList* bucket = _bucketOf(item);
    return bucket && bucket->contains(item);
}

void* TalvoHashTable::getFirstItem() {
    if (numberOfItems == 0)
        return nullptr;
    for (int i = 0; i < modulo; i++) {
        if (entries[i])
            return entries[i]->getTop();
    }
    return nullptr;
}

void* TalvoHashTable::getLastItem() {
    if (numberOfItems == 0)
        return nullptr;
    for (int i = modulo - 1; i >= 0; i--) {
        if (entries[i])
            return entries[i]->getLastItem();
    }
    return nullptr;
}

void* TalvoHashTable::getNthItem(int n) {
    if (n < 1 || numberOfItems == 0 || n > numberOfItems)
        return nullptr;
    int remaining = n;
    for (int i = 0; i < modulo; i++) {
        if (!entries[i])
            continue;
        int held = entries[i]->getNumberOfItems();
        if (remaining <= held)
            return entries[i]->getNthItem(remaining);
        remaining -= held;
    }
    return nullptr;
}

int TalvoHashTable::getItemPosition(void* item) {
    int before = 0;
    for (int i = 0; i < modulo; i++) {
        if (!entries[i])
            continue;
        int position = entries[i]->getItemPosition(item);
        if (position > 0)
            return before + position;
        before += entries[i]->getNumberOfItems();
    }
    return 0;
}

void* TalvoHashTable::searchItem(TalvoCompareFunction compare, void* key) {
    if (!compare)
        return nullptr;
    for (int i = 0; i < modulo; i++) {
        void* found = entries[i] ? entries[i]->searchItem(compare, key) : nullptr;
        if (found)
            return found;
    }
    return nullptr;
}

void* TalvoHashTable::searchItemWithComparator(TalvoComparator* comparator, void* key) {
    if (!comparator)
        return nullptr;
    for (int i = 0; i < modulo; i++) {
        void* found = entries[i] ? entries[i]->searchItemWithComparator(comparator, key) : nullptr;
        if (found)
            return found;
    }
    return nullptr;
}

void* TalvoHashTable::lookForItem(int hashValue, TalvoCompareFunction compare, void* key) {
    if (!compare || modulo <= 0)
        return nullptr;
    TalvoList* bucket = entries[_slotOf(hashValue)];
    return bucket ? bucket->searchItem(compare, key) : nullptr;
}

void* TalvoHashTable::lookForItem(TalvoCompareFunction compare, void* key) {
    return lookForItem(hashItem(key), compare, key);
}

TalvoList* TalvoHashTable::getNthEntry(int i) {
    return i < 0 || i > modulo || !entries ? nullptr : entries[i];
}

int TalvoHashTable::getFirstNonEmptyEntryNumber() { return getNextNonEmptyEntryNumber(-1); }

int TalvoHashTable::getLastNonEmptyEntryNumber() { return getPreviousNonEmptyEntryNumber(modulo); }

int TalvoHashTable::getNextNonEmptyEntryNumber(int i) {
    for (int j = i < 0 ? 0 : i + 1; j < modulo; j++) {
        if (entries[j] && !entries[j]->isEmpty())
            return j;
    }
    return -1;
}

int TalvoHashTable::getPreviousNonEmptyEntryNumber(int i) {
    for (int j = i > modulo ? modulo - 1 : i - 1; j >= 0; j--) {
        if (entries[j] && !entries[j]->isEmpty())
            return j;
    }
    return -1;
}

// ---------------------------------------------------------------- changes

void TalvoHashTable::insertItem(void* item) {
    int h = hashItem(item);
    if (modulo <= 0)
        return;
    TalvoList*& bucket = entries[_slotOf(h)];
    if (!bucket)
        bucket = new TalvoList();
    if (!bucket)
        return;
    bucket->insertItemLast(item);
    numberOfItems++;
    if (numberOfItems >= enlargementThreshold && resizing && doubled(size) <= maximumSize)
        _resize(size * 2);
}

void TalvoHashTable::insertItems(TalvoList* list) {
    if (!list)
        return;
    TalvoListCursor cursor(list);
    for (cursor.resetOnFirstItem(); !cursor.isAfterLastItem(); cursor.increment())
        insertItem(cursor.getItem());
}

void TalvoHashTable::insertItems(TalvoHashTable* other) {
    if (!other)
        return;
    if (other == this) {
        // Inserting may resize the table being walked: walk a snapshot.
        TalvoList* items = _snapshot();
        insertItems(items);
        delete items;
        return;
    }
    other->_forEachItem([&](void* item) { insertItem(item); });
}

void TalvoHashTable::_reduceIfSparse() {
    if (numberOfItems <= reductionThreshold && resizing && size / 2 >= minimumSize)
        _resize(size / 2);
}

void TalvoHashTable::removeItem(void* item) {
    TalvoList* bucket = _bucketOf(item);
    if (!bucket)
        return;
    int held = bucket->getNumberOfItems();
    bucket->removeItem(item);
    if (bucket->getNumberOfItems() == held)
        return;
    numberOfItems--;
    _reduceIfSparse();
}

void* TalvoHashTable::removeNthItem(int n) {
    void* item = getNthItem(n);
    removeItem(item);
    return item;
}

void* TalvoHashTable::removeFirstItem() {
    void* item = getFirstItem();
    removeItem(item);
    return item;
}

void* TalvoHashTable::removeLastItem() {
    void* item = getLastItem();
    removeItem(item);
    return item;
}

// Applies `change` to every existing bucket in slot order, corrects the count
// by what each lost, then makes the reduction test once.
template <class Change>
void TalvoHashTable::_changeEveryBucket(Change change) {
    for (int i = 0; i < modulo; i++) {
        if (!entries[i])
            continue;
        int held = entries[i]->getNumberOfItems();
        change(entries[i]);
        numberOfItems -= held - entries[i]->getNumberOfItems();
    }
    _reduceIfSparse();
}

void TalvoHashTable::removeItems() {
    _changeEveryBucket([](TalvoList* bucket) { bucket->removeItems(); });
}

void TalvoHashTable::deleteItems(TalvoFreeFunction free) {
    _changeEveryBucket([&](TalvoList* bucket) {
        if (free)
            bucket->deleteItems(free);
        else
            bucket->removeItems();
    });
}

void TalvoHashTable::compareAndRemoveItems(TalvoCompareFunction compare, void* key) {
    if (compare)
        _changeEveryBucket([&](TalvoList* bucket) { bucket->compareAndRemoveItems(compare, key); });
}

void TalvoHashTable::compareAndRemoveItems(TalvoComparator* comparator, void* key) {
    if (comparator)
        _changeEveryBucket([&](TalvoList* bucket) { bucket->compareAndRemoveItems(comparator, key); });
}

void TalvoHashTable::compareAndDeleteItems(TalvoCompareFunction compare, void* key, TalvoFreeFunction free) {
    if (compare)
        _changeEveryBucket([&](TalvoList* bucket) { bucket->compareAndDeleteItems(compare, key, free); });
}

void TalvoHashTable::compareAndDeleteItems(TalvoComparator* comparator, void* key, TalvoFreeFunction free) {
    if (comparator)
        _changeEveryBucket([&](TalvoList* bucket) { bucket->compareAndDeleteItems(comparator, key, free); });
}

void TalvoHashTable::removeItems(TalvoList* list) {
    if (!list)
        return;
    TalvoListCursor cursor(list);
    for (cursor.resetOnFirstItem(); !cursor.isAfterLastItem(); cursor.increment())
        removeItem(cursor.getItem());
}

void TalvoHashTable::deleteItems(TalvoList* list, TalvoFreeFunction free) {
    if (!list)
        return;
    while (!list->isEmpty()) {
        void* item = list->removeFirstItem();
        removeItem(item);
        if (free)
            free(item);
    }
}

void TalvoHashTable::reset() {
    removeItems();
    _resize(minimumSize);
}

TalvoList* TalvoHashTable::extractList(int from, int to) {
    TalvoList* result = new TalvoList();
    if (!result)
        return nullptr;
    int position = 0;
    _forEachItem([&](void* item) {
        position++;
        if (position >= from && position <= to)
            result->insertItemLast(item);
    });
    return result;
}

TalvoHashTable* TalvoHashTable::extractRange(int from, int to) {
    TalvoHashTable* result = _emptyCopy();
    TalvoList* items = extractList(from, to);
    if (result)
        result->insertItems(items);
    delete items;
    return result;
}

void TalvoHashTable::enlarge() {
    if (resizing && doubled(size) <= maximumSize)
        _resize(size * 2);
}

void TalvoHashTable::reduce() {
    if (resizing && size / 2 >= minimumSize)
        _resize(size / 2);
}

// Moves every Item into a new array of `newSize` slots by re-insertion (the
// hash is computed again), bucket by bucket in slot order. A failed
// allocation leaves the table as it was.
void TalvoHashTable::_resize(int newSize) {
    if (!resizing || newSize == size || newSize < minimumSize || newSize > maximumSize || newSize < 1)
        return;
    int newModulo = setModulo(newSize);
    TalvoList** fresh = allocateEntries(capacityFor(newSize, newModulo));
    if (!fresh)
        return;
    TalvoList** old = entries;
    int oldModulo = modulo;
    entries = fresh;
    size = newSize;
    modulo = newModulo;
    numberOfItems = 0;
    enlargementThreshold = thresholdFor(enlargementRatio, newSize);
    reductionThreshold = thresholdFor(reductionRatio, newSize);
    resizing = false;  // re-insertion must not resize again
    for (int i = 0; i < oldModulo; i++) {
        if (!old[i])
            continue;
        insertItems(old[i]);
        delete old[i];
    }
    releaseEntries(old);
    resizing = true;
}

// ---------------------------------------------------------------- set operations

void TalvoHashTable::addition(TalvoHashTable* other) {
    if (!other || other == this)  // a table already holds its own Items
        return;
    other->_forEachItem([&](void* item) {
        if (!contains(item))
            insertItem(item);
    });
}

void TalvoHashTable::subtraction(TalvoHashTable* other) {
    if (!other)
        return;
    if (other == this) {
        // Removing may resize the table being walked: walk a snapshot.
        TalvoList* items = _snapshot();
        removeItems(items);
        delete items;
        return;
    }
    other->_forEachItem([&](void* item) { removeItem(item); });
}

void TalvoHashTable::selection(TalvoHashTable* other) {
    if (!other || other == this)
        return;
    TalvoList* items = _snapshot();
    if (!items)
        return;
    TalvoListCursor cursor(items);
    for (cursor.resetOnFirstItem(); !cursor.isAfterLastItem(); cursor.increment()) {
        if (!other->contains(cursor.getItem()))
            removeItem(cursor.getItem());
    }
    delete items;
}

TalvoHashTable* TalvoHashTable::buildUnion(TalvoHashTable* other) {
    if (!other)
        return nullptr;
    TalvoHashTable* result = copy();
    if (result)
        result->addition(other);
    return result;
}

TalvoHashTable* TalvoHashTable::buildIntersection(TalvoHashTable* other) {
    if (!other)
        return nullptr;
    TalvoHashTable* result = _emptyCopy();
    if (result) {
        _forEachItem([&](void* item) {
            if (other->contains(item))
                result->insertItem(item);
        });
    }
    return result;
}

TalvoHashTable* TalvoHashTable::buildDifference(TalvoHashTable* other) {
    if (!other)
        return nullptr;
    TalvoHashTable* result = _emptyCopy();
    if (result) {
        _forEachItem([&](void* item) {
            if (!other->contains(item))
                result->insertItem(item);
        });
    }
    return result;
}

int TalvoHashTable::getNumberOfItemsOfUnion(TalvoHashTable* other) {
    return other ? other->numberOfItems + getNumberOfItemsOfDifference(other) : 0;
}

int TalvoHashTable::getNumberOfItemsOfIntersection(TalvoHashTable* other) {
    int found = 0;
    if (other)
        _forEachItem([&](void* item) { found += other->contains(item) ? 1 : 0; });
    return found;
}

int TalvoHashTable::getNumberOfItemsOfDifference(TalvoHashTable* other) {
    return other ? numberOfItems - getNumberOfItemsOfIntersection(other) : 0;
}

// ---------------------------------------------------------------- cursors

TalvoHashTableCursor* TalvoHashTable::newCursor() { return new TalvoHashTableCursor(this); }

TalvoListCursor* TalvoHashTable::newCursorOnNthEntry(int i) {
    if (i < 0 || i > modulo)
        return nullptr;
    return new TalvoListCursor(getNthEntry(i));
}

TalvoHashTableCursor::TalvoHashTableCursor(TalvoHashTable* table)
    : table(table), entryNumber(-1), listCursor(nullptr), beforeFirst(true), afterLast(true) {}

TalvoHashTableCursor::~TalvoHashTableCursor() { delete listCursor; }

void TalvoHashTableCursor::_clearBucketCursor() {
    delete listCursor;
    listCursor = nullptr;
}

// Puts the cursor on the first or last Item of the bucket at `entry`.
void TalvoHashTableCursor::_enterBucket(int entry, bool atFirst) {
    _clearBucketCursor();
    entryNumber = entry;
    listCursor = table->entries[entry]->newCursor();
    if (!listCursor)
        return;
    if (atFirst)
        listCursor->resetOnFirstItem();
    else
        listCursor->resetOnLastItem();
    beforeFirst = afterLast = false;
}

TalvoHashTableCursor* TalvoHashTableCursor::copy() {
    TalvoHashTableCursor* twin = new TalvoHashTableCursor(table);
    if (twin)
        twin->resetOnCursor(this);
    return twin;
}

void TalvoHashTableCursor::resetOnCursor(TalvoHashTableCursor* other) {
    if (!other || other == this)
        return;
    _clearBucketCursor();
    table = other->table;
    entryNumber = other->entryNumber;
    beforeFirst = other->beforeFirst;
    afterLast = other->afterLast;
    if (other->listCursor)
        listCursor = other->listCursor->copy();
}

bool TalvoHashTableCursor::isBeforeFirstItem() { return beforeFirst; }

bool TalvoHashTableCursor::isAfterLastItem() { return afterLast; }

bool TalvoHashTableCursor::isOnFirstItem() {
    return !beforeFirst && !afterLast && getItem() == table->getFirstItem();
}

bool TalvoHashTableCursor::isOnLastItem() {
    return !beforeFirst && !afterLast && getItem() == table->getLastItem();
}

void TalvoHashTableCursor::resetOnFirstItem() {
    _clearBucketCursor();
    int entry = table ? table->getFirstNonEmptyEntryNumber() : -1;
    if (entry >= 0) {
        _enterBucket(entry, true);
    } else {
        entryNumber = -1;
        beforeFirst = afterLast = true;
    }
}

void TalvoHashTableCursor::resetOnLastItem() {
    _clearBucketCursor();
    int entry = table ? table->getLastNonEmptyEntryNumber() : -1;
    if (entry >= 0) {
        _enterBucket(entry, false);
    } else {
        entryNumber = -1;
        beforeFirst = afterLast = true;
    }
}

void TalvoHashTableCursor::resetOnItem(void* item) {
    resetOnFirstItem();
    while (!afterLast && getItem() != item)
        increment();
}

void TalvoHashTableCursor::increment() {
    if (!listCursor || listCursor->isBeforeFirstItem() || listCursor->isAfterLastItem())
        return;
    listCursor->increment();
    if (!listCursor->isAfterLastItem()) {
        beforeFirst = afterLast = false;
        return;
    }
    int entry = table->getNextNonEmptyEntryNumber(entryNumber);
    if (entry >= 0) {
        _enterBucket(entry, true);
    } else {
        beforeFirst = false;
        afterLast = true;
    }
}

void TalvoHashTableCursor::decrement() {
    if (!listCursor || listCursor->isBeforeFirstItem() || listCursor->isAfterLastItem())
        return;
    listCursor->decrement();
    if (!listCursor->isBeforeFirstItem()) {
        beforeFirst = afterLast = false;
        return;
    }
    int entry = table->getPreviousNonEmptyEntryNumber(entryNumber);
    if (entry >= 0) {
        _enterBucket(entry, false);
    } else {
        afterLast = false;
        beforeFirst = true;
    }
}

void* TalvoHashTableCursor::getItem() { return listCursor ? listCursor->getItem() : nullptr; }

namespace {
// Stands in the cursor's cell while a removal runs: no Item is this pointer.
char cursorPlaceholder;
}  // namespace

// The removal takes the first cell holding the Item in its bucket. When the
// cursor has just moved back onto an earlier cell holding the same pointer,
// that cell would be the one freed under it; the placeholder keeps it out
// of the search, and putting the Item back leaves the bucket as the plain
// removal would (one occurrence fewer, the same order).
void* TalvoHashTableCursor::_removeAndStep(bool forward) {
    if (!table)
        return nullptr;
    void* item = getItem();
    bool resizingWas = table->resizing;
    table->resizing = false;
    if (forward)
        increment();
    else
        decrement();
    bool shield = listCursor && getItem() == item && !listCursor->isBeforeFirstItem() &&
                  !listCursor->isAfterLastItem();
    if (shield)
        listCursor->substituteItemForItem(&cursorPlaceholder);
    table->removeItem(item);
    if (shield)
        listCursor->substituteItemForItem(item);
    table->resizing = resizingWas;
    return item;
}

void* TalvoHashTableCursor::removeItemAndIncrement() { return _removeAndStep(true); }

void* TalvoHashTableCursor::removeItemAndDecrement() { return _removeAndStep(false); }
