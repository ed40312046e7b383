#include "support/TalvoTest.h"

#include <talvo/stats/TalvoChronogram.h>
#include <talvo/stats/TalvoMeasure.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <string>
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

// Each point as "x:width:count:mean".
std::string chainText(TalvoChronogram* c) {
    std::string result;
    char point[96];
    for (TalvoChronogramPoint* p : points(c)) {
        std::snprintf(point, sizeof point, "%s%g:%g:%d:%g", result.empty() ? "" : " ", p->getX(), p->getWidth(),
                      p->getMeasure()->getNumberOfValues(), p->getMeasure()->computeMean());
        result += point;
    }
    return result;
}

// Every back link, the count, and the widths adding up to the last x (the
// chain was built by increasing x from an empty chronogram).
void checkChain(TalvoChronogram* c, double lastX) {
    std::vector<TalvoChronogramPoint*> chain = points(c);
    ASSERT_EQ(static_cast<int>(chain.size()), c->getNumberOfPoints());
    double total = 0.0;
    for (size_t i = 0; i < chain.size(); ++i) {
        EXPECT_EQ(i ? chain[i - 1] : nullptr, chain[i]->getPrevious()) << i;
        total += chain[i]->getWidth();
    }
    EXPECT_NEAR(lastX, total, 1e-9 * lastX);
}

}  // namespace

TEST(TalvoChronogram, ValueAtExistingXAfterStartCountsInEveryPointPassed) {
    Chrono c(10);
    for (int x = 1; x <= 3; ++x)
        c->appendValueToHistory(x, 0);
    c->startHistory();
    c->appendValueToHistory(2, 6);
    EXPECT_EQ("1:1:2:3 2:1:2:3 3:1:1:0", chainText(c.c));
    c->appendValueToHistory(3, 4);  // the search goes on after the point that took the value
    EXPECT_EQ("1:1:2:3 2:1:2:3 3:1:2:2", chainText(c.c));
}

TEST(TalvoChronogram, ValueBetweenPointsCopiesRightNeighbourAndShortensIt) {
    Chrono c(10);
    for (double y : {1, 2, 30})
        c->appendValueToHistory(c->getNumberOfPoints() + 1, y);
    c->startHistory();
    c->appendValueToHistory(2.5, 90);  // the new point holds 30 from the copy, then 90
    EXPECT_EQ("1:1:2:45.5 2:1:2:46 2.5:0.5:2:60 3:0.5:1:30", chainText(c.c));
    checkChain(c.c, 3);
}

// The search starts after the current point: the same x again makes a point
// of width 0, and a smaller x goes after it with a negative width.
TEST(TalvoChronogram, SearchStartsAfterTheCurrentPoint) {
    Chrono c(10);
    for (double x : {1, 3, 3, 2})
        c->appendValueToHistory(x, 0);
    EXPECT_EQ("1:1:1:0 3:2:1:0 3:0:1:0 2:-1:1:0", chainText(c.c));
}

// Means 0, 0, 30 over x 1..3: scale 3 / 30; distances 1 and sqrt(10).
TEST(TalvoChronogram, StopMergesTheClosestPointsInTheScaledPlane) {
    Chrono c(2);
    for (double y : {0, 0, 30})
        c->appendValueToHistory(c->getNumberOfPoints() + 1, y);
    c->stopHistory();
    EXPECT_EQ("2:2:1:0 3:1:1:30", chainText(c.c));
    EXPECT_DOUBLE_EQ(std::sqrt(1.5 * 1.5 + 3.0 * 3.0), c->getFirstPoint()->getDistanceToNextPoint());
    EXPECT_EQ(DBL_MAX, c->getFirstPoint()->getNext()->getDistanceToNextPoint());
    checkChain(c.c, 3);
}

// Every mean 0: the largest mean keeps its tiny starting value, the scale
// ratio overflows and every distance is NaN; the reduction still ends.
TEST(TalvoChronogram, AllMeansZeroStillReduces) {
    Chrono c(4);
    for (int x = 1; x <= 50; ++x)
        c->appendValueToHistory(x * 10, 0);
    c->stopHistory();
    EXPECT_LE(c->getNumberOfPoints(), 4);
    EXPECT_TRUE(std::isnan(c->getFirstPoint()->getDistanceToNextPoint()));
    checkChain(c.c, 500);
}

TEST(TalvoChronogram, ReductionKeepsTotalWidthAndLinks) {
    unsigned state = 12345;
    for (int expected : {INT_MIN, 2, 7}) {  // below two: a single point
        for (int round = 0; round < 3; ++round) {
            SCOPED_TRACE(::testing::Message() << expected << " " << round);
            Chrono c(expected);
            double x = 0;
            for (int i = 0; i < 100; ++i) {
                state = state * 1103515245u + 12345u;
                x += 0.5 + (state >> 16) % 7;
                double y = round == 2 ? 1.0 : static_cast<double>((state >> 8) % 100) - 50;
                c->appendValueToHistory(x, y);
            }
            c->stopHistory();
            EXPECT_LE(c->getNumberOfPoints(), std::max(expected, 1));
            checkChain(c.c, x);
            c->appendValueToHistory(x + 1, 0);  // its current point may have been merged away
            checkChain(c.c, x + 1);
        }
    }
}

TEST(TalvoChronogram, EmptyChronogramStopsAndResets) {
    Chrono c(-1, nullptr);
    EXPECT_EQ(nullptr, c->getName());
    c->stopHistory();
    EXPECT_EQ(0, c->getNumberOfPoints());
    c->appendValueToHistory(1, 1);
    c->reset();
    c->appendValueToHistory(5, 1);  // no current point left behind: the first width is x
    EXPECT_EQ("5:5:1:1", chainText(c.c));
}

// A stored distance stays until recomputed; a copy starts at 0.
TEST(TalvoChronogramPoint, SetDistanceThenCopyAndUpdate) {
    TalvoChronogramPoint p;
    p.setDistanceToNextPoint(2.5);
    EXPECT_EQ(2.5, p.getDistanceToNextPoint());
    TalvoChronogramPoint* c = p.copy();
    EXPECT_EQ(0.0, c->getDistanceToNextPoint());
    TalvoChronogramPoint::free(c);
    p.updateDistanceToNextPoint(1.0);  // no next point
    EXPECT_EQ(DBL_MAX, p.getDistanceToNextPoint());
}
