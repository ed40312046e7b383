#include "support/TalvoTest.h"

#include <talvo/stats/TalvoQuantilizer.h>

#include <cmath>
#include <vector>

namespace {

void addValues(TalvoQuantilizer* q, const std::vector<double>& values) {
    for (double v : values)
        q->addValue(v);
}

std::vector<double> contentOf(const TalvoQuantileTable* t) {
    std::vector<double> result;
    for (int i = 0; i < t->getCount(); ++i)
        result.push_back(t->getQuantile(i));
    return result;
}

std::vector<double> slotsOf(const TalvoQuantileTable* t) {
    std::vector<double> result;
    for (int i = 0; i < t->getCapacity(); ++i)
        result.push_back(t->getQuantile(i));
    return result;
}

}  // namespace

TEST(TalvoQuantileTable, OutsideCapacityGivesZeroAndCopiesFit) {
    TalvoQuantileTable* t = new TalvoQuantileTable(2);
    EXPECT_EQ(0.0, t->getQuantile(-1));
    EXPECT_EQ(0.0, t->getQuantile(2));
    EXPECT_EQ(-2147483648.0, t->getLowerBound());
    EXPECT_EQ(56, t->getSizeInBytes());
    delete t;
    // copyContent between sizes copies what both hold
    TalvoQuantileTable* small = new TalvoQuantileTable(1);
    TalvoQuantileTable* large = new TalvoQuantileTable(3);
    large->copyContent(small);
    small->copyContent(large);
    small->copyContent(nullptr);
    EXPECT_EQ(0, small->getCount());
    delete small;
    delete large;
}

TEST(TalvoQuantilizer, Constructor_OneBufferCountsAsTwo) {
    TalvoQuantilizer* q = new TalvoQuantilizer(1, 4);
    EXPECT_EQ(2, q->getNumberOfBuffers());
    EXPECT_EQ(2 * 4 + 16 + 3 * (4 * 8 + 40), q->getSizeInBytes());
    delete q;
}

TEST(TalvoQuantilizer, AddValue_NinthValueCollapsesBothBuffers) {
    TalvoQuantilizer* q = new TalvoQuantilizer(2, 4);
    addValues(q, {4, 3, 2, 1, 8, 7, 6, 5});
    EXPECT_EQ(3, q->getCurrent());
    EXPECT_EQ((std::vector<double>{1, 2, 3, 4}), contentOf(q->getTable(1)));
    q->addValue(9);
    const TalvoQuantileTable* collapsed = q->getTable(1);
    EXPECT_EQ((std::vector<double>{2, 4, 6, 8}), contentOf(collapsed));
    EXPECT_EQ(2, collapsed->getWeight());
    EXPECT_EQ(1, collapsed->getLevel());
    EXPECT_EQ((std::vector<double>{9}), contentOf(q->getTable(2)));
    EXPECT_EQ(0, q->getTable(2)->getLevel());
    delete q;
}

TEST(TalvoQuantilizer, CollapseRightBuffers_IncludesLowerLevelWhereScanStops) {
    TalvoQuantilizer* q = new TalvoQuantilizer(3, 2);
    for (int v = 1; v <= 11; ++v)
        q->addValue(v);
    // 1..6 collapsed into buffer 1, then 7..10 into buffer 2; 11 waits in 3.
    EXPECT_EQ((std::vector<double>{3, 6}), contentOf(q->getTable(1)));
    EXPECT_EQ(3, q->getTable(1)->getWeight());
    EXPECT_EQ((std::vector<double>{8, 10}), contentOf(q->getTable(2)));
    EXPECT_EQ(2, q->getTable(2)->getWeight());
    EXPECT_EQ(1, q->getTable(2)->getLevel());
    q->addValue(12);
    q->addValue(13);
    // All three at the same level or above: everything merges into buffer 1.
    EXPECT_EQ((std::vector<double>{6, 12}), contentOf(q->getTable(1)));
    EXPECT_EQ(6, q->getTable(1)->getWeight());
    EXPECT_EQ(2, q->getTable(1)->getLevel());
    EXPECT_EQ(2, q->getCurrent());
    EXPECT_EQ((std::vector<double>{13}), contentOf(q->getTable(2)));
    delete q;
}

TEST(TalvoQuantilizer, ExtractQuantiles_EmptyGivesZeros) {
    TalvoQuantilizer* q = new TalvoQuantilizer(3, 5);
    TalvoQuantileTable* t = q->extractQuantiles(4);
    EXPECT_EQ((std::vector<double>{0, 0, 0, 0}), contentOf(t));
    delete t;
    EXPECT_EQ(nullptr, q->extractQuantiles(0));
    delete q;
}

TEST(TalvoQuantilizer, ExtractQuantiles_OvershotSlotsGetZeroNotPreviousValue) {
    TalvoQuantilizer* q = new TalvoQuantilizer(2, 4);
    q->addValue(5);
    TalvoQuantileTable* t = q->extractQuantiles(4);
    EXPECT_EQ((std::vector<double>{5, 0, 0, 0}), contentOf(t));
    delete t;
    delete q;
}

TEST(TalvoQuantilizer, ExtractQuantiles_HugeValuesAreNeverPicked) {
    TalvoQuantilizer* q = new TalvoQuantilizer(2, 4);
    addValues(q, {2147483647.0, 1, 3e9, 2});
    TalvoQuantileTable* t = q->extractQuantiles(4);
    EXPECT_EQ((std::vector<double>{1, 2, 0, 0}), contentOf(t));
    delete t;
    delete q;
}

TEST(TalvoQuantilizer, ExtractQuantiles_SpansPartlyFilledBuffer) {
    TalvoQuantilizer* q = new TalvoQuantilizer(2, 4);
    addValues(q, {1, 2, 3, 4, 8, 6});
    TalvoQuantileTable* t = q->extractQuantiles(3);
    EXPECT_EQ((std::vector<double>{2, 4, 8}), contentOf(t));
    delete t;
    delete q;
}

TEST(TalvoQuantilizer, ExtractBins_EqualWeightMeans) {
    TalvoQuantilizer* q = new TalvoQuantilizer(2, 4);
    addValues(q, {8, 7, 6, 5, 4, 3, 2, 1});
    TalvoQuantileTable* t = q->extractBins(4);
    EXPECT_EQ((std::vector<double>{1.5, 3.5, 5.5, 7.5}), contentOf(t));
    delete t;
    delete q;
}

TEST(TalvoQuantilizer, ExtractBins_MoreBinsThanValuesGivesNaNForEmptyBins) {
    TalvoQuantilizer* q = new TalvoQuantilizer(2, 4);
    addValues(q, {30, 10, 20});
    TalvoQuantileTable* t = q->extractBins(10);
    ASSERT_EQ(10, t->getCount());
    // Thresholds j * 3 / 10: 0 0 0 1 1 1 2 2 2 3.
    std::vector<double> expected = {NAN, NAN, NAN, 10, NAN, NAN, 20, NAN, NAN, 30};
    for (int i = 0; i < 10; ++i) {
        if (std::isnan(expected[i]))
            EXPECT_TRUE(std::isnan(t->getQuantile(i))) << "bin " << i;
        else
            EXPECT_EQ(expected[i], t->getQuantile(i)) << "bin " << i;
    }
    delete t;
    delete q;
}

TEST(TalvoQuantilizer, ExtractDistribution_WeightsPerSlotAndCountZero) {
    TalvoQuantilizer* q = new TalvoQuantilizer(2, 4);
    addValues(q, {1, 2, 3, 4, 5, 6, 7, 8, -3});
    // After the collapse buffer 1 holds 2 4 6 8 with weight 2; -3 has weight 1.
    TalvoQuantileTable* d = q->extractDistribution(0, 8, 4);
    EXPECT_EQ((std::vector<double>{1, 2, 2, 4}), slotsOf(d));
    EXPECT_EQ(0, d->getCount());
    TalvoQuantileTable* c = q->extractCumulativeDistribution(0, 8, 4);
    EXPECT_EQ((std::vector<double>{1, 3, 5, 9}), slotsOf(c));
    delete d;
    delete c;
    delete q;
}

TEST(TalvoQuantilizer, ExtractDistribution_NaNAndEmptyRangeStayInside) {
    TalvoQuantilizer* q = new TalvoQuantilizer(2, 4);
    addValues(q, {NAN, 1, 2});
    TalvoQuantileTable* d = q->extractDistribution(1, 1, 3);
    EXPECT_EQ((std::vector<double>{1, 0, 2}), slotsOf(d));
    delete d;
    delete q;
}

TEST(TalvoQuantilizer, Copy_CarriesFillPositionAndContent) {
    TalvoQuantilizer* q = new TalvoQuantilizer(2, 2);
    addValues(q, {5, 4, 3});
    TalvoQuantilizer* c = q->copy();
    EXPECT_EQ(2, c->getCurrent());
    addValues(c, {2, 1, 0});
    addValues(q, {2, 1, 0});
    TalvoQuantileTable* a = q->extractQuantiles(2);
    TalvoQuantileTable* b = c->extractQuantiles(2);
    EXPECT_EQ(contentOf(a), contentOf(b));
    delete a;
    delete b;
    delete c;
    delete q;
}

TEST(TalvoQuantilizer, Reset_EmptiesEveryBuffer) {
    TalvoQuantilizer* q = new TalvoQuantilizer(2, 2);
    addValues(q, {1, 2, 3, 4, 5});
    q->reset();
    EXPECT_EQ(1, q->getCurrent());
    for (int i = 0; i <= 2; ++i) {
        EXPECT_EQ(0, q->getTable(i)->getCount());
        EXPECT_EQ(1, q->getTable(i)->getWeight());
    }
    EXPECT_EQ(nullptr, q->getTable(3));
    delete q;
}
