#include "support/TalvoTest.h"

#include <talvo/stats/TalvoCurve.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <utility>

namespace {

const double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::numeric_limits<double>::quiet_NaN();

// A curve built from (x, y) pairs, freed with the guard.
struct Curve {
    TalvoCurve* c = new TalvoCurve();
    Curve(std::initializer_list<std::pair<double, double>> points) {
        for (const auto& p : points)
            c->insertPoint(p.first, p.second);
    }
    ~Curve() { TalvoCurve::free(c); }
    TalvoCurve* operator->() { return c; }
};

struct Query {
    double from, to;
    double minimum, maximum, integral, mean;
};

void checkQueries(TalvoCurve* curve, std::initializer_list<Query> queries) {
    for (const Query& q : queries) {
        SCOPED_TRACE(::testing::Message() << "[" << q.from << ", " << q.to << "]");
        EXPECT_DOUBLE_EQ(q.minimum, curve->computeMinimum(q.from, q.to));
        EXPECT_DOUBLE_EQ(q.maximum, curve->computeMaximum(q.from, q.to));
        EXPECT_DOUBLE_EQ(q.integral, curve->computeIntegral(q.from, q.to));
        EXPECT_DOUBLE_EQ(q.mean, curve->computeMean(q.from, q.to));
    }
}

}  // namespace

// Steps: [0,1) 2, [1,3) 5, [3,4) -1, and 4 at x = 4 alone.
TEST(TalvoCurve, QueriesOnStepCurve) {
    Curve curve{{0, 2}, {1, 5}, {3, -1}, {4, 4}};
    checkQueries(curve.c, {
        {0, 4, -1, 5, 11, 2.75},
        {0.5, 2, 2, 5, 6, 4},
        {3, 4, -1, 4, -1, -1},        // the last point's value counts for the extremes only
        {1, 1, 5, 5, 0, 0},           // a single instant: no length
        {5, 9, 0, 0, 0, 0},           // beyond the last point
        {3, 1, 0, 0, 0, 0},           // from above to
        {kNaN, 2, 0, 0, 0, 0},
        {-kInf, kInf, -1, 5, 11, 2.75},
    });
    const double xs[] = {0.999, 1, 4, 4.1, -1, kNaN}, ys[] = {2, 5, 4, 0, 0, 0};
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(ys[i], curve->getValueAt(xs[i])) << xs[i];
}

TEST(TalvoCurve, SojournCountsLengthWhereLowLeqYLeqHigh) {
    Curve curve{{0, 2}, {1, 5}, {3, -1}, {4, 4}};
    struct Case {
        double from, to, low, high, expected;
    } cases[] = {
        {0, 4, 0, 5, 3},       // bounds inclusive: the 5 counts
        {2, 10, 4, 4, 0},      // the last point has no length
        {0.5, 3.5, 2, 5, 2.5},
        {0, 4, kNaN, kInf, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.from << " " << c.to << " " << c.low << " " << c.high);
        EXPECT_DOUBLE_EQ(c.expected, curve->computeSojourn(c.from, c.to, c.low, c.high));
    }
}

// Two points at x = 2: the first holds over an empty step, the second gives f(2).
TEST(TalvoCurve, EqualXKeepsTheLastValue) {
    Curve curve{{0, 1}, {2, 7}, {2, 3}, {5, 0}};
    EXPECT_EQ(3.0, curve->getValueAt(2));
    checkQueries(curve.c, {
        {0, 5, 0, 3, 11, 2.2},
        {2, 2, 3, 3, 0, 0},
    });
    EXPECT_EQ(0.0, curve->computeSojourn(0, 5, 7, 7));
}

TEST(TalvoCurve, EmptyCurveAnswersZero) {
    Curve curve{};
    checkQueries(curve.c, {{-kInf, kInf, 0, 0, 0, 0}});
    EXPECT_EQ(0.0, curve->computeSojourn(-kInf, kInf, -kInf, kInf));
    EXPECT_EQ(0.0, curve->getValueAt(0));
}

TEST(TalvoCurve, InsertKeepsXOrderAndEqualsInInsertionOrderAndRejectsNonFiniteX) {
    Curve curve{{3, 30}, {1, 10}, {1, 11}, {0, 0}};
    EXPECT_EQ(nullptr, curve->insertPoint(kNaN, 1));
    EXPECT_EQ(nullptr, curve->insertPoint(kInf, 1));
    EXPECT_NE(nullptr, curve->insertPoint(4, kNaN));
    const double ys[] = {0, 10, 11, 30};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(ys[i], curve->getNthPoint(i)->getY());
    EXPECT_EQ(nullptr, curve->getNthPoint(-1));
    EXPECT_EQ(nullptr, curve->getNthPoint(5));
}

// Positions are clamped; a cursor left beyond a shrunk curve still ends its walk.
TEST(TalvoCurveCursor, ResetInPositionAndOnItem) {
    Curve curve{{1, 0}, {2, 0}, {3, 0}};
    TalvoCurveCursor c(curve.c);
    c.resetInPosition(-3);
    EXPECT_TRUE(c.isOnFirstItem());
    c.resetOnItem(&c);
    EXPECT_EQ(nullptr, c.getItem());
    c.resetInPosition(7);
    EXPECT_TRUE(c.isOnLastItem());
    curve->reset();
    EXPECT_EQ(nullptr, c.getItem());
    c.increment();
    EXPECT_TRUE(c.isAfterLastItem());
}

TEST(TalvoCurveCursor, RemoveAtCursorLeavesCursorOnNext) {
    Curve curve{{1, 0}, {2, 0}, {3, 0}};
    TalvoCurveCursor c(curve.c);
    c.resetInPosition(1);
    void* removed = c.removeItemAndIncrement();
    EXPECT_EQ(2.0, static_cast<TalvoCurvePoint*>(removed)->getX());
    TalvoCurvePoint::free(removed);
    EXPECT_EQ(2, curve->getNumberOfPoints());
    EXPECT_EQ(3.0, static_cast<TalvoCurvePoint*>(c.getItem())->getX());
    TalvoCurvePoint::free(c.removeItemAndIncrement());
    EXPECT_TRUE(c.isAfterLastItem());
    EXPECT_EQ(nullptr, c.removeItemAndIncrement());
    for (c.resetOnFirstItem(); !c.isAfterLastItem();)  // removing every point in a loop ends
        TalvoCurvePoint::free(c.removeItemAndIncrement());
    EXPECT_EQ(0, curve->getNumberOfPoints());
}

// A copy is independent; walking it backwards removes toward the front.
TEST(TalvoCurveCursor, BackwardWalkOnCopy) {
    Curve curve{{2, 7}, {0, 1}, {2, 3}};
    TalvoCurve* copy = curve->copy();
    curve->getFirstPoint()->setY(9);
    EXPECT_EQ(1.0, copy->getFirstPoint()->getY());
    EXPECT_EQ(3.0, copy->getLastPoint()->getY());  // the last inserted of equal x
    TalvoCurveCursor* c = copy->newCursor();
    EXPECT_TRUE(c->isBeforeFirstItem());
    c->resetOnLastItem();
    c->decrement();
    void* removed = c->removeItemAndDecrement();
    EXPECT_EQ(7.0, static_cast<TalvoCurvePoint*>(removed)->getY());
    TalvoCurvePoint::free(removed);
    EXPECT_EQ(1.0, static_cast<TalvoCurvePoint*>(c->getItem())->getY());
    TalvoCurvePoint::free(c->removeItemAndDecrement());
    EXPECT_TRUE(c->isBeforeFirstItem());
    EXPECT_EQ(1, copy->getNumberOfPoints());
    delete c;
    TalvoCurve::free(copy);
}
