#include "support/TalvoTest.h"

#include "ContainerTestHelpers.h"

#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoComparator.h>
#include <talvo/foundation/TalvoInteger.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <string>
#include <vector>

namespace {

using namespace containertest;

// Checks the next links (walk from first), the previous links (walk from
// last), first, last and the count.
void expectList(TalvoList* list, const std::vector<void*>& items) {
    EXPECT_EQ(forward(list), items);
    EXPECT_EQ(backward(list), items);
    EXPECT_EQ(list->getNumberOfItems(), static_cast<int>(items.size()));
    EXPECT_EQ(list->isEmpty(), items.empty());
    EXPECT_EQ(list->getTop(), items.empty() ? nullptr : items.front());
    EXPECT_EQ(list->getLastItem(), items.empty() ? nullptr : items.back());
}

void* tensAccess(void* item, void*) { return item; }

struct Marked {
    int mark;
};
int testMark(void* item) { return static_cast<Marked*>(item)->mark; }
void setMark(void* item, int flag) { static_cast<Marked*>(item)->mark = flag; }

// 0 when the item is above the key: a search that swaps (item, key) finds another item.
int zeroWhenAbove(void* item, void* key) { return *static_cast<int*>(item) > *static_cast<int*>(key) ? 0 : 1; }

template <int (*compare)(void*, void*)>
struct ComparatorOf : TalvoComparator {
    int compareItems(void* a, void* b) override { return compare(a, b); }
};

std::vector<void*> freed;
void recordFree(void* item) { freed.push_back(item); }

// Keys looked up in the context: key of item v is context[v].
void* keyInContext(void* item, void* context) { return static_cast<int*>(context) + *static_cast<int*>(item); }

}  // namespace

TEST(TalvoList, AssignmentSharesCellsWhileCountsDiverge) {
    TalvoList a(2, I(1), I(2));
    TalvoList* b = new TalvoList;
    *b = a;
    b->insertItemLast(I(3));
    // a's last cell now has a next cell: walking a from first sees the new item.
    EXPECT_EQ(forward(&a), (std::vector<void*>{I(1), I(2), I(3)}));
    EXPECT_TRUE(a.getNumberOfItems() == 2 && b->getNumberOfItems() == 3);
    b->removeItems();  // only one of them may free the shared cells
    TalvoList empty;
    a = empty;
    TalvoList::free(b);
}

// Positions count from 1 and find the first occurrence; searches compare
// (item, key) and return the list's item, not the key.
TEST(TalvoList, Search_PositionsAndLookUp) {
    TalvoList list(4, I(1), I(3), I(2), I(3));
    struct { int position; void* expected; } table[] = {
        {0, nullptr}, {1, I(1)}, {4, I(3)}, {5, nullptr}, {-1, I(3)}, {-4, I(1)}, {-5, nullptr}, {INT_MIN, nullptr}};
    for (auto& row : table)
        EXPECT_EQ(list.getNthItem(row.position), row.expected) << "position " << row.position;
    EXPECT_EQ(list.getItemPosition(I(3)), 2);
    EXPECT_EQ(list.getItemPosition(I(9)), 0);
    int two = 2;
    ComparatorOf<zeroWhenAbove> above;
    EXPECT_EQ(list.searchItem(zeroWhenAbove, &two), I(3));
    EXPECT_EQ(list.searchItemWithComparator(&above, &two), I(3));
    EXPECT_EQ(list.searchItem(compareInts, &two), I(2));
    EXPECT_EQ(list.searchItem(zeroWhenAbove, I(9)), nullptr);
}

TEST(TalvoList, Insertions_PositionBoundsAndAroundEquals) {
    struct { int position; std::vector<void*> expected; } table[] = {
        {INT_MIN, {I(9), I(1), I(2)}}, {2, {I(1), I(9), I(2)}}, {INT_MAX, {I(1), I(2), I(9)}}};
    for (auto& row : table) {
        TalvoList list(2, I(1), I(2));
        list.insertItemInPosition(I(9), row.position);
        SCOPED_TRACE(row.position);
        expectList(&list, row.expected);
    }
    int one = 1, twoA = 2, twoB = 2, three = 3, twoNew = 2;
    TalvoList list(4, &one, &twoA, &twoB, &three);
    list.insertItemAfter(compareInts, &twoNew);
    expectList(&list, {&one, &twoA, &twoB, &twoNew, &three});
    list.removeItem(&twoNew);
    list.insertItemBefore(compareInts, &twoNew);
    expectList(&list, {&one, &twoNew, &twoA, &twoB, &three});
}

TEST(TalvoList, RemovalsKeepLinks) {
    TalvoList list(5, I(1), I(2), I(3), I(2), I(4));
    list.removeItem(I(2));
    expectList(&list, {I(1), I(3), I(2), I(4)});
    EXPECT_EQ(list.removeNthItem(-1), I(4));
    EXPECT_EQ(list.removeNthItem(0), nullptr);
    list.enQueue(I(5));
    EXPECT_EQ(list.deQueue(), I(1));
    expectList(&list, {I(3), I(2), I(5)});
    list.append(&list);  // onto itself
    expectList(&list, {I(3), I(2), I(5), I(3), I(2), I(5)});
}

TEST(TalvoList, DeleteItemsWithOtherFreesEveryItemOfOther) {
    int *a = TalvoInteger::allocate(1), *b = TalvoInteger::allocate(2), *c = TalvoInteger::allocate(3);
    TalvoList list(3, a, b, a), other(2, a, c);
    list.deleteItems(&other, TalvoInteger::free);  // the balance check sees a missed free
    expectList(&other, {});
    expectList(&list, {b, a});  // only the first occurrence of a goes
    list.removeItems();
    TalvoInteger::free(b);
}

// Matches first, last and side by side in the middle all go; the delete
// forms free exactly the matching items, in order.
TEST(TalvoList, CompareAndRemoveItems_EveryMatch) {
    int a = 21, b = 5, c = 22, d = 23, e = 7, f = 29, key = 20;
    ComparatorOf<compareTens> tens;
    struct { std::vector<void*> items, kept, removed; } table[] = {
        {{&a, &b, &c, &d, &e, &f}, {&b, &e}, {&a, &c, &d, &f}}, {{&a, &c}, {}, {&a, &c}}, {{&b}, {&b}, {}}};
    std::function<void(TalvoList&)> forms[] = {
        [&](TalvoList& l) { l.compareAndRemoveItems(compareTens, &key); },
        [&](TalvoList& l) { l.compareAndRemoveItems(&tens, &key); },
        [&](TalvoList& l) { l.compareAndDeleteItems(compareTens, &key, recordFree); },
        [&](TalvoList& l) { l.compareAndDeleteItems(&tens, &key, recordFree); }};
    for (auto& row : table) {
        for (int form = 0; form < 4; ++form) {
            TalvoList list;
            for (void* item : row.items)
                list.enQueue(item);
            freed.clear();
            forms[form](list);
            SCOPED_TRACE("form " + std::to_string(form) + ", items " + std::to_string(row.items.size()));
            expectList(&list, row.kept);
            EXPECT_EQ(freed, form < 2 ? std::vector<void*>{} : row.removed);
        }
    }
}

TEST(TalvoList, ExtractRangeClipsToList) {
    TalvoList list(4, I(1), I(2), I(3), I(4));
    struct { int from, to; std::vector<void*> expected; } table[] = {
        {2, 3, {I(2), I(3)}}, {-5, 1, {I(1)}}, {3, 99, {I(3), I(4)}}, {3, 2, {}}};
    for (auto& row : table) {
        TalvoList* range = list.extractRange(row.from, row.to);
        SCOPED_TRACE(row.from);
        expectList(range, row.expected);
        delete range;
    }
}

// Addition adds a repeated Item once; subtraction removes one occurrence per
// occurrence; selection keeps repetitions.
TEST(TalvoList, InPlaceSetOperationsWithRepeatedItems) {
    TalvoList list(1, I(1)), other(4, I(2), I(2), I(1), I(3));
    list.addition(&other);
    expectList(&list, {I(1), I(2), I(3)});
    TalvoList minus(5, I(1), I(2), I(1), I(1), I(3)), twice(3, I(1), I(1), I(9));
    minus.subtraction(&twice);
    expectList(&minus, {I(2), I(1), I(3)});
    TalvoList select(5, I(1), I(2), I(1), I(3), I(2)), kept(2, I(2), I(1));
    select.selection(&kept);
    expectList(&select, {I(1), I(2), I(1), I(2)});
    select.selection(nullptr);
    expectList(&select, {});
}

TEST(TalvoList, BuildOperationsWithRepeatedItems) {
    TalvoList list(5, I(1), I(2), I(1), I(3), I(4)), other(3, I(3), I(5), I(1));
    TalvoList *u = list.buildUnion(&other), *i = list.buildIntersection(&other), *d = list.buildDifference(&other);
    expectList(u, {I(1), I(2), I(1), I(3), I(4), I(5)});
    expectList(i, {I(1), I(1), I(3)});
    expectList(d, {I(2), I(4)});
    // The union count adds other's count to the cells here not in other: 3 + 2,
    // one less than buildUnion's list.
    EXPECT_EQ(list.getNumberOfItemsOfUnion(&other), 5);
    EXPECT_EQ(list.getNumberOfItemsOfIntersection(&other), 3);
    EXPECT_EQ(list.getNumberOfItemsOfDifference(&other), 2);
    for (TalvoList* built : {u, i, d})
        delete built;
}

TEST(TalvoList, MembershipComparesCountsFirst) {
    TalvoList list(3, I(1), I(2), I(3)), sub(2, I(3), I(1)), repeated(4, I(1), I(1), I(1), I(1));
    EXPECT_TRUE(list.doesContainMembersOf(&sub));
    EXPECT_FALSE(list.doesContainMembersOf(&repeated));  // more cells than here
    TalvoList twice(3, I(1), I(1), I(2)), other(3, I(2), I(2), I(1));
    EXPECT_TRUE(twice.hasSameMembersAs(&other));  // counts and members, not multiplicities
}

TEST(TalvoList, LinearOperationsFollowTheirOrderAndClearMarks) {
    Marked m[6] = {};
    TalvoList list(5, &m[0], &m[1], &m[0], &m[2], &m[1]), other(4, &m[3], &m[2], &m[3], &m[0]);
    TalvoList* u = list.buildLinearUnion(&other, testMark, setMark);
    expectList(u, {&m[0], &m[1], &m[0], &m[2], &m[1], &m[3]});
    TalvoList* i = list.buildLinearIntersection(&other, testMark, setMark);
    expectList(i, {&m[2], &m[0]});
    TalvoList* d = list.buildLinearDifference(&other, testMark, setMark);
    expectList(d, {&m[1]});  // once, unlike buildDifference
    for (auto& mark : m)
        EXPECT_EQ(mark.mark, 0);
    for (TalvoList* built : {u, i, d})
        delete built;
}

// Every sort entry point is stable: random keys with many equal tens digits
// come out as std::stable_sort orders them, from the empty list up.
TEST(TalvoList, SortsAreStableOnEqualKeys) {
    std::function<void(TalvoList&)> sorts[] = {[](TalvoList& l) { l.quickSort(compareTens); },
                                               [](TalvoList& l) { l.bubbleSort(tensAccess, compareTens, nullptr); }};
    unsigned seed = 12345;
    for (int round = 0; round < 40; ++round) {
        std::vector<int> values(round * 3);
        std::vector<void*> expected;
        for (auto& value : values) {
            seed = seed * 1103515245u + 12345u;
            value = static_cast<int>((seed >> 16) % 60);
            expected.push_back(&value);
        }
        std::stable_sort(expected.begin(), expected.end(), [](void* a, void* b) { return compareTens(a, b) < 0; });
        for (int s = 0; s < 2; ++s) {
            TalvoList list;
            for (auto& value : values)
                list.insertItemLast(&value);
            sorts[s](list);
            SCOPED_TRACE("sort " + std::to_string(s) + " round " + std::to_string(round));
            expectList(&list, expected);
        }
    }
}

TEST(TalvoList, SortFormsAndReverse) {
    int keys[10] = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0};  // descending with the value
    TalvoList list(4, I(1), I(5), I(3), I(2));
    list.quickSort(keyInContext, compareInts, keys);
    expectList(&list, {I(5), I(3), I(2), I(1)});
    list.reverse();
    expectList(&list, {I(1), I(2), I(3), I(5)});
    int a = 31, b = 25, c = 22, d = 11, e = 29;
    TalvoList tens(5, &a, &b, &c, &d, &e);
    ComparatorOf<compareTens> comparator;
    tens.quickSort(&comparator);
    expectList(&tens, {&d, &b, &c, &e, &a});
    TalvoList empty;
    empty.reverse();
    expectList(&empty, {});
}

// A compare that always answers "greater" exchanges forever unless bounded.
int alwaysGreater(void*, void*) { return 1; }

TEST(TalvoList, BubbleSortStopsOnContradictoryCompare) {
    TalvoList list(4, I(1), I(2), I(3), I(4));
    list.bubbleSort(alwaysGreater);
    EXPECT_EQ(list.getNumberOfItems(), 4);
    EXPECT_EQ(backward(&list), forward(&list));
}

// Already sorted input: the worst case for a naive pivot must not exhaust
// the stack, and equal values keep their (address) order.
TEST(TalvoList, QuickSortOfAMillionOrderedCellsKeepsTheStack) {
    std::vector<int> values(1000000, 7);
    TalvoList list;
    for (int& value : values)
        list.insertItemLast(&value);
    list.quickSort(compareInts);
    std::vector<void*> items = forward(&list);
    EXPECT_EQ(items.size(), values.size());
    EXPECT_TRUE(std::is_sorted(items.begin(), items.end()));
}
