#include "support/TalvoTest.h"

#include <talvo/containers/TalvoHashTable.h>
#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoInteger.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace {

// Small integers stand in as Items; each hashes to its own value.
void* itemOf(std::intptr_t value) { return reinterpret_cast<void*>(value); }
std::intptr_t valueOf(void* item) { return reinterpret_cast<std::intptr_t>(item); }
int valueHash(void* item) { return static_cast<int>(valueOf(item)); }
int negativeHash(void* item) { return -1 - static_cast<int>(valueOf(item)); }
int boxHash(void* item) { return item ? *static_cast<int*>(item) : 0; }
int compareLastDigits(void* a, void* b) { return static_cast<int>(valueOf(a) % 10 - valueOf(b) % 10); }
int nullHashes = 0;
int countingHash(void* item) {
    nullHashes += item == nullptr;
    return valueHash(item);
}
std::vector<std::intptr_t> freedValues;
void recordFree(void* item) { freedValues.push_back(valueOf(item)); }

// The values a cursor meets from the first Item to the last; deletes the cursor.
std::vector<std::intptr_t> walk(TalvoCursor* c) {
    std::vector<std::intptr_t> values;
    for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment())
        values.push_back(valueOf(c->getItem()));
    delete c;
    return values;
}

std::vector<std::intptr_t> cursorOrder(TalvoHashTable* table) { return walk(table->newCursor()); }

using Steps = std::vector<std::pair<int, int>>;

// Inserts the Items `from` up to `to`, or removes them when `from` > `to`
// (walking down); returns the (count, new size) pairs at each change of size.
Steps resizeSteps(TalvoHashTable* table, int from, int to) {
    Steps steps;
    int step = from <= to ? 1 : -1;
    for (int i = from; i != to + step; i += step) {
        int before = table->getSize();
        step > 0 ? table->insertItem(itemOf(i)) : table->removeItem(itemOf(i));
        if (table->getSize() != before)
            steps.push_back({table->getNumberOfItems(), table->getSize()});
    }
    return steps;
}

}  // namespace

TEST(TalvoHashTable, SetModulo_FollowsLadderWithItsOddRow) {
    struct { int size; int modulo; } table[] = {
        {1024, 1021}, {32678, 32749}, {32768, 32768}, {131072, 131071}, {1000, 1000}};
    for (auto& row : table)
        EXPECT_EQ(TalvoHashTable::setModulo(row.size), row.modulo) << "size=" << row.size;
}

TEST(TalvoHashTable, InsertAndRemove_DoubleUpToMaximumAndHalveDownToMinimum) {
    TalvoHashTable* table = new TalvoHashTable(valueHash);
    Steps expected = {{102, 2048}, {204, 4096}, {409, 8192}, {819, 16384}, {1638, 32768}, {3276, 65536}, {6553, 131072}};
    EXPECT_EQ(resizeSteps(table, 1, 20000), expected);
    // The thresholds follow the size: a tenth and a hundredth, rounded down.
    EXPECT_EQ(table->getEnlargementThreshold(), 13107);
    EXPECT_EQ(table->getReductionThreshold(), 1310);
    table->removeItems();  // a bulk removal halves at most once
    EXPECT_EQ(table->getSize(), 65536);
    table->reset();
    resizeSteps(table, 1, 7000);
    ASSERT_EQ(table->getSize(), 131072);
    expected = {{1310, 65536}, {655, 32768}, {327, 16384}, {163, 8192}, {81, 4096}, {40, 2048}, {20, 1024}};
    EXPECT_EQ(resizeSteps(table, 7000, 1), expected);
    delete table;
}

// Slot order first, then insertion order within a bucket: 1024 and 3 share
// slot 3, 1 and 2043 share slot 1 (mod 1021). searchItem scans every bucket
// in that order; lookForItem searches one bucket only, that of the given
// hash (reduced by the modulo) or of the key.
TEST(TalvoHashTable, CursorAndSearch_WalkSlotOrderThenBucketOrder) {
    TalvoHashTable* table = new TalvoHashTable(valueHash);
    for (int v : {1024, 3, 1, 2043, 1020})
        table->insertItem(itemOf(v));
    EXPECT_EQ(cursorOrder(table), (std::vector<std::intptr_t>{1, 2043, 1024, 3, 1020}));
    struct { int n; std::intptr_t value; } table2[] = {{0, 0}, {1, 1}, {5, 1020}, {6, 0}};
    for (auto& row : table2)
        EXPECT_EQ(valueOf(table->getNthItem(row.n)), row.value) << "n=" << row.n;
    EXPECT_EQ(table->getNextNonEmptyEntryNumber(1020), -1);
    struct { int value; int position; } positions[] = {{1, 1}, {2043, 2}, {3, 4}, {7, 0}};
    for (auto& row : positions)
        EXPECT_EQ(table->getItemPosition(itemOf(row.value)), row.position) << row.value;
    EXPECT_EQ(valueOf(table->searchItem(compareLastDigits, itemOf(3))), 2043);
    TalvoComparator byAddress;
    EXPECT_EQ(valueOf(table->searchItemWithComparator(&byAddress, itemOf(1024))), 1024);
    EXPECT_EQ(valueOf(table->lookForItem(compareLastDigits, itemOf(3))), 3);
    EXPECT_EQ(valueOf(table->lookForItem(1022, compareLastDigits, itemOf(3))), 2043);
    EXPECT_EQ(table->lookForItem(compareLastDigits, itemOf(13)), nullptr);  // slot 13 has no list
    delete table;
}

// The compare forms remove every match in every bucket and keep the count;
// a list removes one occurrence per Item; the delete forms free exactly the
// Items they remove, and every Item of a list.
TEST(TalvoHashTable, BulkRemoval_CompareAndDeleteForms) {
    TalvoHashTable* table = new TalvoHashTable(valueHash);
    for (int v : {22, 1, 2, 12, 3, 13})
        table->insertItem(itemOf(v));
    TalvoComparator byAddress;
    table->compareAndRemoveItems(compareLastDigits, itemOf(2));
    table->compareAndRemoveItems(&byAddress, itemOf(1));
    EXPECT_EQ(cursorOrder(table), (std::vector<std::intptr_t>{3, 13}));
    freedValues.clear();
    table->compareAndDeleteItems(&byAddress, itemOf(13), recordFree);
    for (int v : {4, 23, 5, 5})
        table->insertItem(itemOf(v));
    table->compareAndDeleteItems(compareLastDigits, itemOf(3), recordFree);
    TalvoList list(1, itemOf(5));
    table->removeItems(&list);  // one occurrence
    EXPECT_TRUE(table->getNumberOfItems() == 2 && list.getNumberOfItems() == 1);
    list.insertItemLast(itemOf(9));
    table->deleteItems(&list, recordFree);  // 9 too, which the table never held
    EXPECT_TRUE(table->getNumberOfItems() == 1 && list.isEmpty());
    table->deleteItems(recordFree);
    EXPECT_EQ(freedValues, (std::vector<std::intptr_t>{13, 3, 23, 5, 9, 4}));
    delete table;
}

// Positions count in cursor order, not insertion order; out-of-range ones
// are simply not met. The extracted table carries the ratios as copy does.
TEST(TalvoHashTable, Extract_ByCursorPositionsAndExplicitResizes) {
    TalvoHashTable* table = new TalvoHashTable(valueHash);
    table->setEnlargementRatio(0.5);
    for (int v : {5, 4, 3, 2, 1})
        table->insertItem(itemOf(v));
    struct { int from; int to; std::vector<std::intptr_t> values; } ranges[] = {
        {2, 4, {2, 3, 4}}, {-3, 2, {1, 2}}, {4, 9, {4, 5}}, {3, 2, {}}};
    for (auto& row : ranges) {
        TalvoList* list = table->extractList(row.from, row.to);
        EXPECT_EQ(walk(list->newCursor()), row.values) << row.from << ".." << row.to;
        delete list;
    }
    TalvoHashTable* range = table->extractRange(2, 3);
    EXPECT_EQ(cursorOrder(range), (std::vector<std::intptr_t>{2, 3}));
    EXPECT_EQ(range->getEnlargementThreshold(), 512);
    delete range;
    table->enlarge();
    EXPECT_EQ(table->getSize(), 2048);
    table->reduce();
    table->reduce();  // not below the minimum size
    EXPECT_EQ(table->getSize(), 1024);
    delete table;
}

// Removing through the cursor keeps resizing off, so the walk meets every
// Item once although the count drops far below the reduction threshold.
TEST(TalvoHashTable, CursorRemoveItemAndIncrement_VisitsEveryItemOnce) {
    TalvoHashTable* table = new TalvoHashTable(valueHash);
    for (int i = 1; i <= 300; i++)
        table->insertItem(itemOf(i * 7));
    ASSERT_EQ(table->getSize(), 4096);
    std::vector<std::intptr_t> before = cursorOrder(table), removed;
    TalvoHashTableCursor* c = table->newCursor();
    for (c->resetOnFirstItem(); !c->isAfterLastItem();)
        removed.push_back(valueOf(c->removeItemAndIncrement()));
    EXPECT_EQ(removed, before);
    EXPECT_TRUE(table->getNumberOfItems() == 0 && table->getSize() == 4096);
    delete c;
    delete table;
}

// The same pointer twice in one bucket: stepping back lands on the other
// occurrence, which must survive the removal.
TEST(TalvoHashTable, CursorRemoveItemAndDecrement_WithRepeatedPointer) {
    TalvoHashTable* table = new TalvoHashTable(valueHash);
    for (int v : {3, 1024, 3})
        table->insertItem(itemOf(v));
    TalvoHashTableCursor* c = table->newCursor();
    c->resetOnLastItem();
    EXPECT_EQ(valueOf(c->removeItemAndDecrement()), 3);
    EXPECT_EQ(valueOf(c->getItem()), 1024);
    EXPECT_EQ(cursorOrder(table), (std::vector<std::intptr_t>{1024, 3}));
    delete c;
    delete table;
}

// Removals empty the lowest existing bucket: getFirstItem then answers null
// although the table still holds Items (required behaviour).
TEST(TalvoHashTable, GetFirstItemAndRemovals_OnEmptiedBuckets) {
    TalvoHashTable* table = new TalvoHashTable(countingHash);
    for (int v : {5, 9})
        table->insertItem(itemOf(v));
    table->removeItem(itemOf(5));
    EXPECT_TRUE(table->getNumberOfItems() == 1 && table->getFirstItem() == nullptr);
    EXPECT_EQ(valueOf(table->getLastItem()), 9);
    table->removeItem(itemOf(9));
    // Removing the first, last or n-th Item of an empty table still removes
    // null, so the hash call-back receives it.
    nullHashes = 0;
    EXPECT_TRUE(!table->removeFirstItem() && !table->removeLastItem() && !table->removeNthItem(1));
    EXPECT_EQ(nullHashes, 3);
    delete table;
}

// Entry numbers are accepted up to the modulo itself (that slot is empty).
// The ladder's 32678 row has a modulo above the size: every slot stays inside.
TEST(TalvoHashTable, GetNthEntry_AcceptsModuloItself) {
    TalvoHashTable* table = new TalvoHashTable(valueHash);
    table->insertItem(itemOf(4));
    EXPECT_EQ(table->getNthEntry(-1), nullptr);
    TalvoListCursor* c = table->newCursorOnNthEntry(1021);
    EXPECT_TRUE(c && !table->newCursorOnNthEntry(1022));
    delete c;
    table->setMinimumSize(32678);
    table->reset();
    EXPECT_EQ(table->getModulo(), 32749);
    table->insertItem(itemOf(32748));
    EXPECT_EQ(table->getNthEntry(32749), nullptr);
    EXPECT_EQ(table->getLastNonEmptyEntryNumber(), 32748);
    delete table;
}

// A negative hash lands in the slot of its unsigned value instead of below
// the array.
TEST(TalvoHashTable, NegativeHash_StaysInsideTheTable) {
    TalvoHashTable* table = new TalvoHashTable(negativeHash);
    for (int i = 0; i < 300; i++)
        table->insertItem(itemOf(i));
    EXPECT_EQ(table->hashItem(itemOf(4)), -5);
    EXPECT_TRUE(table->contains(itemOf(4)));
    EXPECT_EQ(static_cast<int>(cursorOrder(table).size()), 300);
    delete table;
}

TEST(TalvoHashTable, Copy_CarriesParametersButCopyWithItemsDoesNot) {
    TalvoHashTable* table = new TalvoHashTable(boxHash);
    table->setMinimumSize(512);
    table->setEnlargementRatio(0.5);
    table->setResizing(false);
    for (int v : {1, 2, 3})
        table->insertItem(TalvoInteger::allocate(v));
    TalvoHashTable *same = table->copy(), *deep = table->copyWithItems(TalvoInteger::copy);
    EXPECT_TRUE(same->getMinimumSize() == 512 && same->getEnlargementThreshold() == 512 && same->getResizing());
    EXPECT_TRUE(deep->getMinimumSize() == 1024 && deep->getEnlargementThreshold() == 102);
    delete same;
    deep->deleteWithItems(TalvoInteger::free);
    table->deleteWithItems(TalvoInteger::free);
}

TEST(TalvoHashTable, SetOperations_ByIdentity) {
    TalvoHashTable *a = new TalvoHashTable(valueHash), *b = new TalvoHashTable(valueHash);
    for (int v : {1, 2, 2, 3})
        a->insertItem(itemOf(v));
    for (int v : {2, 4, 4})
        b->insertItem(itemOf(v));
    EXPECT_EQ(a->getNumberOfItemsOfIntersection(b), 2);
    EXPECT_EQ(a->getNumberOfItemsOfDifference(b), 2);
    EXPECT_EQ(a->getNumberOfItemsOfUnion(b), 5);
    struct { TalvoHashTable* built; std::vector<std::intptr_t> values; } table[] = {
        {a->buildUnion(b), {1, 2, 2, 3, 4}}, {a->buildIntersection(b), {2, 2}}, {a->buildDifference(b), {1, 3}}};
    for (auto& row : table) {
        EXPECT_EQ(cursorOrder(row.built), row.values);
        delete row.built;
    }
    a->subtraction(b);  // one occurrence of 2
    EXPECT_EQ(cursorOrder(a), (std::vector<std::intptr_t>{1, 2, 3}));
    a->selection(b);
    a->addition(b);  // 4 once
    EXPECT_EQ(cursorOrder(a), (std::vector<std::intptr_t>{2, 4}));
    a->insertItems(a);
    EXPECT_EQ(a->getNumberOfItems(), 4);
    for (TalvoHashTable* t : {a, b})
        delete t;
}

// Stepping back skips slots without a list and the emptied list of slot 3;
// a copied cursor moves on its own.
TEST(TalvoHashTable, Cursor_StepsBackAcrossEmptyBucketsAndCopies) {
    TalvoHashTable* table = new TalvoHashTable(valueHash);
    for (int v : {700, 3, 5, 1, 2043})
        table->insertItem(itemOf(v));
    table->removeItem(itemOf(3));
    TalvoHashTableCursor* c = table->newCursor();
    EXPECT_TRUE(c->isBeforeFirstItem() && !c->isOnFirstItem());
    std::vector<std::intptr_t> backward;
    for (c->resetOnLastItem(); !c->isBeforeFirstItem(); c->decrement())
        backward.push_back(valueOf(c->getItem()));
    EXPECT_EQ(backward, (std::vector<std::intptr_t>{700, 5, 2043, 1}));
    c->resetOnItem(itemOf(2043));
    EXPECT_FALSE(c->isOnFirstItem());
    c->decrement();
    EXPECT_TRUE(c->isOnFirstItem() && !c->isOnLastItem());
    c->resetOnItem(itemOf(5));
    TalvoHashTableCursor* d = c->copy();
    d->increment();
    EXPECT_TRUE(d->isOnLastItem());
    EXPECT_EQ(valueOf(c->getItem()), 5);
    c->resetOnCursor(d);
    d->decrement();
    EXPECT_EQ(valueOf(c->getItem()), 700);
    delete d;
    delete c;
    delete table;
}
