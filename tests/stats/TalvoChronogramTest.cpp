#include "support/TalvoTest.h"

#include <talvo/stats/TalvoChronogram.h>
#include <talvo/stats/TalvoMeasure.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <vector>

namespace {

struct Chrono {
    TalvoChronogram* c;
    Chrono(int expected, const char* name = "history") : c(new TalvoChronogram(name, expected)) {}
    ~Chrono() { TalvoChronogram::free(c); }
    TalvoChronogram* operator->() { return c; }
};

std::vector<TalvoChronogramPoint*> points(TalvoChronogram* c) {
    std::vector<TalvoChronogramPoint*> result;
    for (TalvoChronogramPoint* p = c->getFirstPoint(); p; p = p->getNext())
        result.push_back(p);
    return result;
}

double mean(TalvoChronogramPoint* p) {
    return p->getMeasure()->computeMean();
}

// Every link both ways, the count, and the widths adding up to the last x
// (the chain was built by increasing x from an empty chronogram).
void checkChain(TalvoChronogram* c, double lastX) {
    std::vector<TalvoChronogramPoint*> chain = points(c);
    ASSERT_EQ(static_cast<int>(chain.size()), c->getNumberOfPoints());
    double total = 0.0;
    for (size_t i = 0; i < chain.size(); ++i) {
        EXPECT_EQ(i ? chain[i - 1] : nullptr, chain[i]->getPrevious()) << i;
        total += chain[i]->getWidth();
        if (i) {
            EXPECT_NEAR(chain[i - 1]->getX(), chain[i]->getX() - chain[i]->getWidth(), 1e-9 * lastX) << i;
        }
    }
    if (!chain.empty()) {
        EXPECT_EQ(lastX, chain.back()->getX());
        EXPECT_NEAR(lastX, total, 1e-9 * lastX);
    }
}

}  // namespace

TEST(TalvoChronogram, ConstructorKeepsNameAndExpectedCount) {
    Chrono c(7, "queue");
    EXPECT_STREQ("queue", c->getName());
    EXPECT_EQ(7, c->getExpectedNumberOfPoints());
    EXPECT_EQ(0, c->getNumberOfPoints());
    EXPECT_EQ(nullptr, c->getFirstPoint());
    Chrono unnamed(3, nullptr);
    EXPECT_EQ(nullptr, unnamed->getName());
}

TEST(TalvoChronogram, AppendsInIncreasingXMakeUnitWidths) {
    Chrono c(10);
    c->appendValueToHistory(1, 10);
    c->appendValueToHistory(2, 20);
    c->appendValueToHistory(3, 30);
    std::vector<TalvoChronogramPoint*> chain = points(c.c);
    ASSERT_EQ(3u, chain.size());
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(i + 1.0, chain[i]->getX());
        EXPECT_EQ(1.0, chain[i]->getWidth());
        EXPECT_EQ(1, chain[i]->getMeasure()->getNumberOfValues());  // nothing passed over
        EXPECT_EQ(10.0 * (i + 1), mean(chain[i]));
    }
    checkChain(c.c, 3);
}

TEST(TalvoChronogram, ValueAtExistingXAfterStartCountsInEveryPointPassed) {
    Chrono c(10);
    for (int x = 1; x <= 3; ++x)
        c->appendValueToHistory(x, 0);
    c->startHistory();
    c->appendValueToHistory(2, 6);
    std::vector<TalvoChronogramPoint*> chain = points(c.c);
    ASSERT_EQ(3u, chain.size());
    EXPECT_EQ(2, chain[0]->getMeasure()->getNumberOfValues());
    EXPECT_EQ(6.0, chain[0]->getMeasure()->getSumOfValues());
    EXPECT_EQ(2, chain[1]->getMeasure()->getNumberOfValues());
    EXPECT_EQ(1, chain[2]->getMeasure()->getNumberOfValues());
    // The search goes on after the point that took the value.
    c->appendValueToHistory(3, 4);
    EXPECT_EQ(2, chain[1]->getMeasure()->getNumberOfValues());
    EXPECT_EQ(2, chain[2]->getMeasure()->getNumberOfValues());
}

TEST(TalvoChronogram, ValueBetweenPointsCopiesRightNeighbourAndShortensIt) {
    Chrono c(10);
    c->appendValueToHistory(1, 1);
    c->appendValueToHistory(2, 2);
    c->appendValueToHistory(3, 30);
    c->startHistory();
    c->appendValueToHistory(2.5, 90);
    std::vector<TalvoChronogramPoint*> chain = points(c.c);
    ASSERT_EQ(4u, chain.size());
    TalvoChronogramPoint* added = chain[2];
    EXPECT_EQ(2.5, added->getX());
    EXPECT_EQ(0.5, added->getWidth());
    EXPECT_EQ(2, added->getMeasure()->getNumberOfValues());  // 30 from the copy, then 90
    EXPECT_EQ(120.0, added->getMeasure()->getSumOfValues());
    EXPECT_EQ(0.5, chain[3]->getWidth());
    EXPECT_EQ(1, chain[3]->getMeasure()->getNumberOfValues());
    EXPECT_EQ(2, chain[0]->getMeasure()->getNumberOfValues());  // passed over
    EXPECT_EQ(2, chain[1]->getMeasure()->getNumberOfValues());
    checkChain(c.c, 3);
}

TEST(TalvoChronogram, ValueBeforeFirstPointBecomesFirst) {
    Chrono c(10);
    c->appendValueToHistory(4, 1);
    c->startHistory();
    c->appendValueToHistory(1, 2);
    std::vector<TalvoChronogramPoint*> chain = points(c.c);
    ASSERT_EQ(2u, chain.size());
    EXPECT_EQ(1.0, chain[0]->getWidth());
    EXPECT_EQ(3.0, chain[1]->getWidth());
    EXPECT_EQ(nullptr, chain[0]->getPrevious());
    checkChain(c.c, 4);
}

TEST(TalvoChronogram, SameXTwiceAtTheEndMakesAPointOfWidthZero) {
    Chrono c(10);
    c->appendValueToHistory(1, 1);
    c->appendValueToHistory(1, 2);
    std::vector<TalvoChronogramPoint*> chain = points(c.c);
    ASSERT_EQ(2u, chain.size());
    EXPECT_EQ(0.0, chain[1]->getWidth());
}

TEST(TalvoChronogram, SmallerXGoesAfterTheCurrentPointWithNegativeWidth) {
    Chrono c(10);
    c->appendValueToHistory(1, 0);
    c->appendValueToHistory(3, 0);
    c->appendValueToHistory(2, 0);
    std::vector<TalvoChronogramPoint*> chain = points(c.c);
    ASSERT_EQ(3u, chain.size());
    EXPECT_EQ(2.0, chain[2]->getX());
    EXPECT_EQ(-1.0, chain[2]->getWidth());
}

TEST(TalvoChronogram, StopWithNoMorePointsThanExpectedChangesNothing) {
    Chrono c(3);
    c->appendValueToHistory(1, 5);
    c->appendValueToHistory(2, 7);
    c->appendValueToHistory(3, 9);
    std::vector<TalvoChronogramPoint*> before = points(c.c);
    for (TalvoChronogramPoint* p : before)
        p->setDistanceToNextPoint(-1);  // would be overwritten by a reduction
    c->stopHistory();
    EXPECT_EQ(before, points(c.c));
    for (TalvoChronogramPoint* p : before) {
        EXPECT_EQ(-1.0, p->getDistanceToNextPoint());
        EXPECT_EQ(1.0, p->getWidth());
    }
}

// Means 0, 0, 30 over x 1..3: scale 3 / 30; distances 1 and sqrt(10).
TEST(TalvoChronogram, StopMergesTheClosestPointsInTheScaledPlane) {
    Chrono c(2);
    c->appendValueToHistory(1, 0);
    c->appendValueToHistory(2, 0);
    c->appendValueToHistory(3, 30);
    c->stopHistory();
    std::vector<TalvoChronogramPoint*> chain = points(c.c);
    ASSERT_EQ(2u, chain.size());
    EXPECT_EQ(2.0, chain[0]->getX());
    EXPECT_EQ(2.0, chain[0]->getWidth());
    EXPECT_EQ(0.0, mean(chain[0]));
    EXPECT_DOUBLE_EQ(std::sqrt(1.5 * 1.5 + 3.0 * 3.0), chain[0]->getDistanceToNextPoint());
    EXPECT_EQ(DBL_MAX, chain[1]->getDistanceToNextPoint());
    checkChain(c.c, 3);
}

TEST(TalvoChronogram, MergeAveragesSumsWeightedByWidths) {
    Chrono c(1);
    c->appendValueToHistory(1, 10);
    c->appendValueToHistory(3, 40);
    c->stopHistory();
    TalvoChronogramPoint* p = c->getFirstPoint();
    ASSERT_EQ(1, c->getNumberOfPoints());
    EXPECT_EQ(3.0, p->getX());
    EXPECT_EQ(3.0, p->getWidth());
    EXPECT_DOUBLE_EQ((1 * 10.0 + 2 * 40.0) / 3, p->getMeasure()->getSumOfValues());
    EXPECT_EQ(1, p->getMeasure()->getNumberOfValues());  // import keeps the count
    EXPECT_EQ(10.0, p->getMeasure()->getMinimumValue());
    EXPECT_EQ(40.0, p->getMeasure()->getMaximumValue());
}

// With equal means the scale ratio is 0, so distances are the x distances of
// the interval centres alone.
TEST(TalvoChronogram, EqualMeansMergeByXDistanceAlone) {
    Chrono c(3);
    for (int x = 1; x <= 6; ++x)
        c->appendValueToHistory(x, 5);
    c->stopHistory();
    std::vector<TalvoChronogramPoint*> chain = points(c.c);
    ASSERT_EQ(3u, chain.size());
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(2.0 * (i + 1), chain[i]->getX());
        EXPECT_EQ(2.0, chain[i]->getWidth());
        EXPECT_EQ(5.0, mean(chain[i]));
    }
    EXPECT_EQ(2.0, chain[0]->getDistanceToNextPoint());
    EXPECT_EQ(2.0, chain[1]->getDistanceToNextPoint());
}

// Every mean 0: the largest mean keeps its tiny starting value, the scale
// ratio overflows and every distance is NaN; the reduction still ends.
TEST(TalvoChronogram, AllMeansZeroStillReduces) {
    Chrono c(4);
    for (int x = 1; x <= 50; ++x)
        c->appendValueToHistory(x * 10, 0);
    c->stopHistory();
    EXPECT_LE(c->getNumberOfPoints(), 4);
    EXPECT_GE(c->getNumberOfPoints(), 1);
    EXPECT_TRUE(std::isnan(c->getFirstPoint()->getDistanceToNextPoint()));
    checkChain(c.c, 500);
}

TEST(TalvoChronogram, ExpectedBelowTwoStopsAtASinglePoint) {
    for (int expected : {1, 0, -3, INT_MIN}) {
        SCOPED_TRACE(expected);
        Chrono c(expected);
        for (int x = 1; x <= 20; ++x)
            c->appendValueToHistory(x, x % 3);
        c->stopHistory();
        ASSERT_EQ(1, c->getNumberOfPoints());
        EXPECT_EQ(20.0, c->getFirstPoint()->getWidth());
        checkChain(c.c, 20);
    }
}

TEST(TalvoChronogram, ReductionKeepsTotalWidthAndLinks) {
    unsigned state = 12345;
    for (int expected : {2, 3, 7, 20, 99}) {
        for (int round = 0; round < 5; ++round) {
            SCOPED_TRACE(::testing::Message() << expected << " " << round);
            Chrono c(expected);
            double x = 0;
            for (int i = 0; i < 100; ++i) {
                state = state * 1103515245u + 12345u;
                x += 0.5 + (state >> 16) % 7;
                double y = round == 4 ? 1.0 : static_cast<double>((state >> 8) % 100) - 50;
                c->appendValueToHistory(x, y);
            }
            c->stopHistory();
            EXPECT_LE(c->getNumberOfPoints(), expected);
            checkChain(c.c, x);
        }
    }
}

TEST(TalvoChronogram, EmptyChronogramStopsAndResets) {
    Chrono c(-1);
    c->stopHistory();
    EXPECT_EQ(0, c->getNumberOfPoints());
    c->appendValueToHistory(1, 1);
    c->appendValueToHistory(2, 1);
    c->reset();
    EXPECT_EQ(0, c->getNumberOfPoints());
    EXPECT_EQ(nullptr, c->getFirstPoint());
    c->appendValueToHistory(5, 1);
    EXPECT_EQ(5.0, c->getFirstPoint()->getWidth());
}

TEST(TalvoChronogram, AppendAfterStopContinuesSafely) {
    Chrono c(2);
    for (int x = 1; x <= 10; ++x)
        c->appendValueToHistory(x, x);
    c->stopHistory();
    c->appendValueToHistory(11, 11);
    EXPECT_EQ(11.0, points(c.c).back()->getX());
    checkChain(c.c, 11);
}

TEST(TalvoChronogramPoint, CopyHasSameXWidthAndAnIndependentMeasure) {
    Chrono c(10);
    c->appendValueToHistory(2, 8);
    TalvoChronogramPoint* copy = c->getFirstPoint()->copy();
    EXPECT_EQ(2.0, copy->getX());
    EXPECT_EQ(2.0, copy->getWidth());
    EXPECT_EQ(nullptr, copy->getNext());
    EXPECT_EQ(0.0, copy->getDistanceToNextPoint());
    ASSERT_NE(c->getFirstPoint()->getMeasure(), copy->getMeasure());
    EXPECT_EQ(8.0, copy->getMeasure()->getSumOfValues());
    TalvoChronogramPoint::free(copy);
    TalvoChronogramPoint empty;
    TalvoChronogramPoint* emptyCopy = empty.copy();
    EXPECT_EQ(nullptr, emptyCopy->getMeasure());
    emptyCopy->updateDistanceToNextPoint(1.0);
    EXPECT_EQ(DBL_MAX, emptyCopy->getDistanceToNextPoint());
    TalvoChronogramPoint::free(emptyCopy);
}
