#include "support/TalvoTest.h"

#include <talvo/stats/TalvoQuantilizer.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

void addValues(TalvoQuantilizer* q, const std::vector<double>& values) {
    for (double v : values)
        q->addValue(v);
}

// The first n values of t (its count when n is negative), "nan" for any NaN.
std::string text(const TalvoQuantileTable* t, int n = -1) {
    std::string result;
    char number[32];
    for (int i = 0; i < (n < 0 ? t->getCount() : n); ++i) {
        std::snprintf(number, sizeof number, "%g", t->getQuantile(i));
        result += (i ? " " : "") + std::string(std::isnan(t->getQuantile(i)) ? "nan" : number);
    }
    return result;
}

}  // namespace

// One buffer counts as two; a table reads 0 outside its capacity and
// copies what both tables hold.
TEST(TalvoQuantilizer, Constructor_OneBufferCountsAsTwoAndTablesStayInside) {
    TalvoQuantilizer* q = new TalvoQuantilizer(1, 4);
    EXPECT_EQ(2, q->getNumberOfBuffers());
    EXPECT_EQ(2 * 4 + 16 + 3 * (4 * 8 + 40), q->getSizeInBytes());
    EXPECT_EQ(nullptr, q->extractQuantiles(0));
    delete q;
    TalvoQuantileTable t(2), large(3);
    EXPECT_EQ(0.0, t.getQuantile(-1));
    EXPECT_EQ(-2147483648.0, t.getLowerBound());
    t.copyContent(&large);
    t.copyContent(nullptr);
}

TEST(TalvoQuantilizer, CollapseRightBuffers_IncludesLowerLevelWhereScanStops) {
    TalvoQuantilizer* q = new TalvoQuantilizer(3, 2);
    for (int v = 1; v <= 11; ++v)
        q->addValue(v);
    // 1..6 collapsed into buffer 1, then 7..10 into buffer 2; 11 waits in 3.
    EXPECT_EQ("3 6", text(q->getTable(1)));
    EXPECT_EQ("8 10", text(q->getTable(2)));
    q->addValue(12);
    q->addValue(13);
    // All three at the same level or above: everything merges into buffer 1.
    EXPECT_EQ("6 12", text(q->getTable(1)));
    EXPECT_EQ(6, q->getTable(1)->getWeight());
    EXPECT_EQ("13", text(q->getTable(2)));
    delete q;
}

// Every extraction from two buffers of four; `expected` lists every slot.
TEST(TalvoQuantilizer, Extractions) {
    using Q = TalvoQuantilizer*;
    const std::vector<double> collapsed = {1, 2, 3, 4, 5, 6, 7, 8, -3};  // 2 4 6 8 of weight 2, then -3
    struct Case {
        std::vector<double> values;
        TalvoQuantileTable* (*extract)(Q);
        const char* expected;
        int count;
    } cases[] = {
        {{}, [](Q q) { return q->extractQuantiles(4); }, "0 0 0 0", 4},
        {{5}, [](Q q) { return q->extractQuantiles(4); }, "5 0 0 0", 4},  // overshot slots get 0
        {{2147483647.0, 1, 3e9, 2}, [](Q q) { return q->extractQuantiles(4); }, "1 2 0 0", 4},  // huge: never picked
        {{1, 2, 3, 4, 8, 6}, [](Q q) { return q->extractQuantiles(3); }, "2 4 8", 3},  // partly filled buffer
        {{8, 7, 6, 5, 4, 3, 2, 1}, [](Q q) { return q->extractBins(4); }, "1.5 3.5 5.5 7.5", 4},
        // Thresholds j * 3 / 10 are 0 0 0 1 1 1 2 2 2 3: empty bins are 0 / 0.
        {{30, 10, 20}, [](Q q) { return q->extractBins(10); }, "nan nan nan 10 nan nan 20 nan nan 30", 10},
        {collapsed, [](Q q) { return q->extractDistribution(0, 8, 4); }, "1 2 2 4", 0},  // weights per slot
        {collapsed, [](Q q) { return q->extractCumulativeDistribution(0, 8, 4); }, "1 3 5 9", 0},
        {{NAN, 1, 2}, [](Q q) { return q->extractDistribution(1, 1, 3); }, "1 0 2", 0},  // stays inside
    };
    for (const Case& c : cases) {
        TalvoQuantilizer* q = new TalvoQuantilizer(2, 4);
        addValues(q, c.values);
        TalvoQuantileTable* t = c.extract(q);
        EXPECT_EQ(c.expected, text(t, t->getCapacity()));
        EXPECT_EQ(c.count, t->getCount()) << c.expected;
        delete t;
        delete q;
    }
}
