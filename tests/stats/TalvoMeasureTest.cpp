#include "support/TalvoTest.h"

#include <talvo/stats/TalvoBinTable.h>
#include <talvo/stats/TalvoMeasure.h>
#include <talvo/stats/TalvoQuantilizer.h>

#include <cfloat>
#include <cmath>
#include <initializer_list>

namespace {

void addValues(TalvoMeasure& m, std::initializer_list<double> values) {
    for (double v : values)
        m.addValue(v);
}

}  // namespace

TEST(TalvoMeasure, AddValue_FiguresAndExtremes) {
    TalvoMeasure m("x");
    addValues(m, {1, 2, 3});
    EXPECT_EQ(6.0, m.getSumOfValues());
    EXPECT_EQ(14.0, m.getSumOfValueSquares());
    EXPECT_EQ(1.0, m.computeStandardDeviation());
    EXPECT_EQ(1.96 / std::sqrt(3.0), m.computeNinetyFivePercentConfidenceSlack());
    EXPECT_EQ(std::exp(1.96), m.computeNinetyFivePercentErrorFactor());
    TalvoMeasure n(nullptr);
    EXPECT_EQ(0.0, n.computeNinetyFivePercentErrorFactor());  // no values: every figure 0
    addValues(n, {-4, 0});
    EXPECT_EQ(2.2250738585072014e-308, n.getMaximumValue());  // only negatives keep the tiny maximum
    EXPECT_EQ(-4.0, n.getMinimumValue());
    EXPECT_EQ(0.0, n.computeStandardDeviation() - std::sqrt(8.0));
}

TEST(TalvoMeasure, Import_WeightedMergeOfSumsOnly) {
    TalvoMeasure a("a"), b("b");
    addValues(a, {1, 2, 3});
    b.addValue(10);
    a.import(&b, 3, 1);
    EXPECT_EQ((3 * 6.0 + 1 * 10.0) / 4, a.getSumOfValues());
    EXPECT_EQ((3 * 14.0 + 1 * 100.0) / 4, a.getSumOfValueSquares());
    EXPECT_EQ(10.0, a.getMaximumValue());
    a.import(nullptr, 1, 1);
}

// Values feed both helpers; a copy leaves the last value out; reset keeps it
// and empties the quantilizer, whose filling restarts at buffer 1, and the bin table.
TEST(TalvoMeasure, FeedCopyResetAndDeleteHelpers) {
    TalvoMeasure m("kept");
    m.setQuantilizer(new TalvoQuantilizer(2, 2));
    m.createBinTable(1, 3);
    addValues(m, {3, 1, 2});
    EXPECT_EQ(1.0, m.getQuantilizer()->getTable(1)->getMinimumValue());
    TalvoMeasure* c = m.copy();
    EXPECT_NE(m.getName(), c->getName());
    EXPECT_EQ(0.0, c->getLastValue());
    EXPECT_NE(m.getQuantilizer(), c->getQuantilizer());
    EXPECT_EQ(3, c->getBinTable()->getTop());
    delete c;
    m.reset();
    EXPECT_EQ(0, m.getNumberOfValues());
    EXPECT_EQ(DBL_MAX, m.getMinimumValue());
    EXPECT_EQ(2.0, m.getLastValue());
    EXPECT_EQ(0.0, m.getBinTable()->getValue(2));
    m.addValue(9);
    EXPECT_EQ(9.0, m.getQuantilizer()->getTable(1)->getMinimumValue());
    EXPECT_EQ(1, m.getBinTable()->getTop());
    m.deleteBinTable();
    EXPECT_EQ(nullptr, m.getBinTable());
    m.setQuantilizer(nullptr);
    m.addValue(4);
    EXPECT_EQ(2, m.getNumberOfValues());
}

TEST(TalvoMeasure, CompareName_NullSortsFirst) {
    TalvoMeasure a("abc"), none(nullptr);
    EXPECT_EQ(1, a.compareName(static_cast<const char*>(nullptr)));
    EXPECT_EQ(-1, none.compareNames(&a));
    EXPECT_EQ(0, none.compareNames(static_cast<const TalvoMeasure*>(nullptr)));
    char high[] = "\xff";
    EXPECT_EQ(-1, TalvoMeasure::compareName(&a, high));
}
