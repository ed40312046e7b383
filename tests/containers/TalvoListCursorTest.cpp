#include "support/TalvoTest.h"

#include "ContainerTestHelpers.h"

#include <talvo/containers/TalvoList.h>

#include <climits>
#include <vector>

namespace {

using namespace containertest;

struct State {
    void* item;
    bool before, after, onFirst, onLast;
    bool operator==(const State& o) const {
        return item == o.item && before == o.before && after == o.after && onFirst == o.onFirst &&
               onLast == o.onLast;
    }
};

State stateOf(TalvoListCursor& c) {
    return {c.getItem(), c.isBeforeFirstItem(), c.isAfterLastItem(), c.isOnFirstItem(), c.isOnLastItem()};
}

const State Outside = {nullptr, true, true, false, false};
const State Before = {nullptr, true, false, false, false};
const State After = {nullptr, false, true, false, false};
State on(void* item, bool first, bool last) { return {item, false, false, first, last}; }

}  // namespace

// A new cursor is off the list, and moves off the list do nothing: a cursor
// after the last item must be reset, not decremented. On an empty list or
// none, a cursor is both before the first item and after the last.
TEST(TalvoListCursor, MovesAtBothEndsAndOnEmptyList) {
    TalvoList list(2, I(1), I(2));
    TalvoListCursor* c = list.newCursor();
    c->increment();
    c->decrement();
    EXPECT_EQ(stateOf(*c), Outside);
    c->resetOnLastItem();
    c->increment();
    c->decrement();
    EXPECT_EQ(stateOf(*c), After);
    c->resetOnFirstItem();
    c->decrement();
    c->increment();
    EXPECT_EQ(stateOf(*c), Before);
    delete c;
    TalvoList empty;
    TalvoListCursor e(&empty), nowhere(nullptr);
    e.resetOnFirstItem();
    EXPECT_EQ(stateOf(e), Outside);
    EXPECT_EQ(e.removeItemAndDecrement(), nullptr);
    nowhere.resetOnFirstItem();
    EXPECT_EQ(stateOf(nowhere), Outside);
    nowhere.insertItemAfter(I(1));
}

TEST(TalvoListCursor, ResetInPosition) {
    TalvoList list(3, I(1), I(2), I(3));
    TalvoListCursor c(&list);
    struct { int position; State expected; } table[] = {
        {INT_MIN, on(I(1), true, false)}, {0, on(I(1), true, false)}, {3, on(I(3), false, true)}, {4, After}};
    for (auto& row : table) {
        c.resetInPosition(row.position);
        EXPECT_EQ(stateOf(c), row.expected) << "position " << row.position;
    }
}

// Removing moves the cursor to the next item (or the previous one), so a
// removing walk empties the list.
TEST(TalvoListCursor, RemoveAtCursorLeavesCursorOnNext) {
    TalvoList list(4, I(1), I(2), I(3), I(4));
    TalvoListCursor c(&list);
    c.resetOnLastItem();
    EXPECT_EQ(c.removeItemAndIncrement(), I(4));
    EXPECT_EQ(stateOf(c), After);
    c.resetInPosition(2);
    EXPECT_EQ(c.removeItemAndDecrement(), I(2));
    EXPECT_EQ(stateOf(c), on(I(1), true, false));
    EXPECT_EQ(c.removeItemAndDecrement(), I(1));
    EXPECT_EQ(stateOf(c), Before);
    for (c.resetOnFirstItem(); !c.isAfterLastItem();)
        c.removeItemAndIncrement();
    EXPECT_TRUE(list.getNumberOfItems() == 0 && backward(&list).empty());
}

TEST(TalvoListCursor, InsertionsAtEndsAreCountedInTheMiddleNot) {
    TalvoList list(1, I(1));
    TalvoListCursor c(&list);
    c.insertItemBefore(I(0));  // before the first: first
    c.resetOnLastItem();
    c.insertItemAfter(I(2));   // on the last: last
    c.increment();
    c.increment();
    c.insertItemBefore(I(4));  // after the last: last
    EXPECT_EQ(forward(&list), (std::vector<void*>{I(0), I(1), I(2), I(4)}));
    EXPECT_EQ(list.getNumberOfItems(), 4);
    // In the middle they are not counted.
    c.resetInPosition(2);
    c.insertItemBefore(I(7));
    c.insertItemAfter(I(8));
    EXPECT_EQ(stateOf(c), on(I(1), false, false));
    EXPECT_EQ(forward(&list), (std::vector<void*>{I(0), I(7), I(1), I(8), I(2), I(4)}));
    EXPECT_EQ(backward(&list), forward(&list));
    EXPECT_EQ(list.getNumberOfItems(), 4);
    // The stale count bounds positional access but never breaks a walk.
    EXPECT_EQ(list.getNthItem(5), nullptr);
    while (list.removeFirstItem()) {
    }
    EXPECT_EQ(list.getNumberOfItems(), -2);
    EXPECT_EQ(list.getTop(), nullptr);
}

// Copies take the list too; item edits leave both cursors on their cells.
TEST(TalvoListCursor, CopiesAndItemEdits) {
    TalvoList list(4, I(1), I(2), I(3), I(2));
    TalvoListCursor c(&list);
    c.resetOnItem(I(9));
    EXPECT_EQ(stateOf(c), After);
    c.resetOnItem(I(2));
    EXPECT_EQ(stateOf(c), on(I(2), false, false));  // the first occurrence
    c.increment();
    TalvoListCursor* d = c.copy();
    d->increment();
    EXPECT_EQ(stateOf(c), on(I(3), false, false));
    TalvoList other(1, I(7));
    TalvoListCursor e(&other);
    e.resetOnCursor(d);
    EXPECT_EQ(stateOf(e), on(I(2), false, true));  // last of list, not of other
    delete d;
    TalvoListCursor off(&list);
    c.exchangeItems(&off);
    off.exchangeItems(&c);
    c.exchangeItems(&e);
    EXPECT_EQ(stateOf(c), on(I(2), false, false));
    EXPECT_EQ(stateOf(e), on(I(3), false, true));
    EXPECT_EQ(c.substituteItemForItem(I(9)), I(2));
    EXPECT_EQ(off.substituteItemForItem(I(8)), nullptr);
    EXPECT_EQ(forward(&list), (std::vector<void*>{I(1), I(2), I(9), I(3)}));
}
