#include "support/TalvoTest.h"

#include "ContainerTestHelpers.h"

#include <talvo/containers/TalvoArray.h>
#include <talvo/foundation/TalvoInteger.h>

#include <climits>
#include <string>
#include <vector>

namespace {

using namespace containertest;

// An array of `size` slots (increment `size`) holding `items`, null for empty.
TalvoArray* arrayOf(int size, const std::vector<void*>& items) {
    TalvoArray* a = new TalvoArray(size);
    for (size_t i = 0; i < items.size(); ++i)
        a->setCell(static_cast<int>(i), items[i]);
    return a;
}

std::vector<void*> slots(TalvoArray* a) {
    std::vector<void*> result;
    for (int i = 0; i < a->getSize(); ++i)
        result.push_back(a->getCell(i));
    return result;
}

int compareWithNull(void* a, void* b) { return a == b ? 0 : 1; }
// Compares values; the empty slots it is also given match nothing.
int compareValues(void* item, void* key) { return item && compareInts(item, key) == 0 ? 0 : 1; }

}  // namespace

// Sizes move by whole increments, up and down.
TEST(TalvoArray, Resizes_ByWholeIncrements) {
    TalvoArray a;
    EXPECT_EQ(a.getSize(), 1024);
    a.setCell(1024, I(1));
    EXPECT_EQ(a.getSize(), 2048);
    a.setCell(5000, I(2));
    EXPECT_EQ(a.getSize(), 5120);
    a.setCell(-1, I(3));
    EXPECT_TRUE(a.getNumberOfItems() == 2 && !a.getCell(-1) && !a.getCell(5120));
    TalvoArray b(4);
    b.extendUpToIndex(15);
    EXPECT_EQ(b.getSize(), 16);
    b.setCell(13, I(1));
    b.reduceDownToIndex(10);
    EXPECT_EQ(b.getSize(), 12);
    EXPECT_EQ(b.getNumberOfItems(), 1);  // the cut Item is still counted
    b.reduceDownToIndex(-3);
    EXPECT_EQ(b.getSize(), 0);
    // A zero increment still grows the array to the index.
    TalvoArray zero(0);
    zero.setCell(3, I(1));
    EXPECT_EQ(zero.getSize(), 4);
}

TEST(TalvoArray, PushAndPop) {
    TalvoArray a(2);
    EXPECT_EQ(a.popItem(), nullptr);  // slot -1
    for (void* item : {I(1), static_cast<void*>(nullptr), I(2), I(3)})
        a.pushItem(item);
    EXPECT_EQ(a.popItem(), I(3));
    EXPECT_EQ(a.popItem(), I(2));
    // The push slot is itemCount, even when that slot is taken.
    a.setCell(3, I(4));
    EXPECT_EQ(a.getNumberOfItems(), 2);
    a.pushItem(I(5));
    a.pushItem(I(6));  // lands on slot 3: replaces, not counted
    EXPECT_EQ(a.getCell(3), I(6));
    EXPECT_EQ(a.getNumberOfItems(), 3);
    a.removeItem(3);
    a.removeItem(3);  // an empty slot is not uncounted
    EXPECT_EQ(a.getNumberOfItems(), 2);
}

// Searches see the empty slots (and pass them to the call-back); the n-th
// Item counts only the filled ones.
TEST(TalvoArray, SearchesAndNthItems) {
    TalvoArray empty(4);
    EXPECT_EQ(empty.findItemIndex(I(1)), 0);
    EXPECT_FALSE(empty.contains(nullptr));
    EXPECT_EQ(empty.searchIndexOfItem(compareWithNull, nullptr), -1);
    EXPECT_EQ(empty.getIndexOfFirstItem(), -1);
    EXPECT_EQ(empty.getIndexOfLastItem(), 0);
    TalvoArray* a = arrayOf(6, {nullptr, I(1), nullptr, I(3), I(1)});
    struct { int n; void* item; int index; } table[] = {
        {-1, nullptr, -1}, {0, nullptr, 0}, {2, I(3), 3}, {4, nullptr, -1}};
    for (auto& row : table) {
        EXPECT_EQ(a->getNthItem(row.n), row.item) << "n " << row.n;
        EXPECT_EQ(a->getIndexOfNthItem(row.n), row.index) << "n " << row.n;
    }
    EXPECT_EQ(a->findItemIndex(I(9)), -1);
    EXPECT_TRUE(a->contains(nullptr));
    EXPECT_EQ(a->searchIndexOfItem(compareWithNull, nullptr), 0);
    int three = 3;
    EXPECT_EQ(a->searchItem(compareValues, &three), I(3));
    EXPECT_EQ(empty.getFirstItem(), nullptr);
    EXPECT_EQ(a->getFirstItem(), I(1));  // not slot 0
    a->setCell(4, I(4));
    EXPECT_EQ(a->getLastItem(), I(4));  // not slot size - 1
    a->swap(0, 3);
    a->swap(0, 6);
    EXPECT_EQ(slots(a), (std::vector<void*>{I(3), I(1), nullptr, nullptr, I(4), nullptr}));
    a->removeItems();
    EXPECT_EQ(slots(a), std::vector<void*>(6, nullptr));
    EXPECT_EQ(a->getNumberOfItems(), 0);
    delete a;
}

// Copies keep the increment, not the size, as the growth step.
TEST(TalvoArray, CopiesAndDeletes) {
    TalvoArray* a = arrayOf(3, {nullptr, I(1), nullptr, nullptr, I(4)});
    TalvoArray* c = a->copy();
    EXPECT_EQ(slots(c), (std::vector<void*>{nullptr, I(1), nullptr, nullptr, I(4), nullptr}));
    c->setCell(6, I(6));
    EXPECT_TRUE(c->getNumberOfItems() == 3 && c->getSize() == 9);
    delete c;
    delete a;
    TalvoArray* boxes = arrayOf(4, {nullptr, nullptr, TalvoInteger::allocate(7), TalvoInteger::allocate(8)});
    TalvoArray* copies = boxes->copyWithItems(TalvoInteger::copy);
    EXPECT_TRUE(copies->getNumberOfItems() == 2 && copies->getCell(2) != boxes->getCell(2));
    EXPECT_EQ(*static_cast<int*>(copies->getCell(2)), 7);
    copies->deleteWithItems(TalvoInteger::free);  // the balance check sees a missed free
    boxes->deleteItem(2, TalvoInteger::free);
    boxes->deleteItem(2, TalvoInteger::free);  // empty now: nothing to free twice
    boxes->deleteItem(4, TalvoInteger::free);
    EXPECT_TRUE(boxes->getCell(2) == nullptr && boxes->getNumberOfItems() == 1);
    boxes->deleteWithItems(TalvoInteger::free);
}

TEST(TalvoArray, ClearBlockBoundIsInclusive) {
    TalvoArray* a = arrayOf(8, {I(0), I(1), I(2), I(3), I(4), I(5), I(6), I(7)});
    a->clearBlock(2, 3);
    EXPECT_EQ(slots(a), (std::vector<void*>{I(0), I(1), nullptr, nullptr, nullptr, nullptr, I(6), I(7)}));
    EXPECT_EQ(a->getNumberOfItems(), 4);
    a->clearBlock(-3, 4);  // from 0 to 1
    EXPECT_EQ(a->getNumberOfItems(), 2);
    a->clearBlock(INT_MAX, INT_MAX);
    a->sortBlock(INT_MIN, INT_MAX, compareInts);
    delete a;
}

TEST(TalvoArray, MoveBlock) {
    struct { int from, length, shift; std::vector<void*> expected; int count; } table[] = {
        {1, 0, -1, {I(0), nullptr, I(2), I(3), I(4), nullptr}, 4},  // target 0 drops
        {3, 5, 2, {I(0), I(1), I(2), nullptr, nullptr, I(3)}, 4},      // 4 falls off the end
        {0, 2, 3, {nullptr, nullptr, nullptr, I(0), I(1), I(2)}, 3},   // 3 and 4 overwritten
        {INT_MIN, INT_MAX, 1, {I(0), I(1), I(2), I(3), I(4), nullptr}, 5},  // ends at -1
        {0, INT_MAX, INT_MAX, {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr}, 0},
    };
    for (auto& row : table) {
        TalvoArray* a = arrayOf(6, {I(0), I(1), I(2), I(3), I(4)});
        a->moveBlock(row.from, row.length, row.shift);
        SCOPED_TRACE(std::to_string(row.from) + "," + std::to_string(row.length) + "," + std::to_string(row.shift));
        EXPECT_EQ(slots(a), row.expected);
        EXPECT_EQ(a->getNumberOfItems(), row.count);
        delete a;
    }
}

TEST(TalvoArray, CompactAndSortBlockKeepOrder) {
    TalvoArray* packed = arrayOf(6, {nullptr, I(1), nullptr, I(3), nullptr, I(5)});
    packed->compactBlockLeft(0, 3);  // slots 0..3
    EXPECT_EQ(slots(packed), (std::vector<void*>{I(1), I(3), nullptr, nullptr, nullptr, I(5)}));
    packed->compactBlockRight(0, 3);
    EXPECT_EQ(slots(packed), (std::vector<void*>{nullptr, nullptr, I(1), I(3), nullptr, I(5)}));
    packed->compactLeft();
    EXPECT_EQ(slots(packed), (std::vector<void*>{I(1), I(3), I(5), nullptr, nullptr, nullptr}));
    packed->compactRight();
    EXPECT_EQ(slots(packed), (std::vector<void*>{nullptr, nullptr, nullptr, I(1), I(3), I(5)}));
    EXPECT_EQ(packed->getNumberOfItems(), 3);
    delete packed;
    int a = 21, b = 15, c = 25, d = 11, e = 3, f = 99;
    TalvoArray* arr = arrayOf(8, {&f, &a, nullptr, &b, &c, nullptr, &d, &e});
    arr->sortBlock(1, 6, compareTens);  // e stays outside
    EXPECT_EQ(slots(arr), (std::vector<void*>{&f, &b, &d, &a, &c, nullptr, nullptr, &e}));
    delete arr;
}
