#include "support/TalvoTest.h"

#include <talvo/stats/TalvoBinTable.h>

#include <vector>

namespace {

struct Entry {
    double value;
    double weight;
};

void expectEntries(const TalvoBinTable* t, const std::vector<Entry>& expected) {
    ASSERT_EQ(static_cast<int>(expected.size()), t->getTop());
    for (int i = 0; i < t->getTop(); ++i) {
        EXPECT_DOUBLE_EQ(expected[i].value, t->getValue(i)) << "entry " << i;
        EXPECT_DOUBLE_EQ(expected[i].weight, t->getWeight(i)) << "entry " << i;
    }
}

}  // namespace

TEST(TalvoBinTable, AddValue_SeventhValueShrinksToTwoBins) {
    TalvoBinTable* t = new TalvoBinTable(2, 3);
    EXPECT_EQ(6, t->getSize());
    for (double v : {6, 5, 4, 3, 2, 1})
        t->addValue(v);
    EXPECT_EQ(6, t->getTop());
    t->addValue(10);
    expectEntries(t, {{2, 3}, {5, 3}, {10, 1}});
    EXPECT_EQ(7.0, t->getWeight());
    delete t;
}

TEST(TalvoBinTable, Shrink_CarriesPartialWeightToNextBin) {
    TalvoBinTable* t = new TalvoBinTable(2, 3);
    for (double v : {6, 5, 4, 3, 2, 1, 10, 0, 0, 0})
        t->addValue(v);
    t->addValue(20);
    // Bin weight 10 / 2 = 5: three zeros and two thirds of the 2s, then the rest.
    expectEntries(t, {{0.8, 5}, {5.4, 5}, {20, 1}});
    EXPECT_EQ(11.0, t->getWeight());
    delete t;
}

TEST(TalvoBinTable, Shrink_HeavyEntryEmitsOneBinAndCarriesTheRest) {
    TalvoBinTable* t = new TalvoBinTable(2, 2);
    for (double v : {1, 2, 3, 4})
        t->addValue(v);
    t->shrink(1);
    expectEntries(t, {{2.5, 4}});
    for (double v : {10, 20, 30})
        t->addValue(v);
    t->shrink(4);
    // Bin weight 7 / 4 = 1.75; the entry of weight 4 fills one bin only and
    // carries 2.25, so the next bin's share of 10 is negative.
    expectEntries(t, {{2.5, 1.75},
                      {(2.25 * 2.5 + -0.5 * 10) / 1.75, 1.75},
                      {(1.5 * 10 + 0.25 * 20) / 1.75, 1.75},
                      {(0.75 * 20 + 1 * 30) / 1.75, 1.75}});
    EXPECT_EQ(7.0, t->getWeight());
    delete t;
}

TEST(TalvoBinTable, Shrink_OutOfRangeBinCountLeavesTableUnchanged) {
    TalvoBinTable* t = new TalvoBinTable(2, 2);
    for (double v : {3, 1, 2})
        t->addValue(v);
    t->shrink(0);
    t->shrink(5);
    expectEntries(t, {{3, 1}, {1, 1}, {2, 1}});
    delete t;
}

TEST(TalvoBinTable, Shrink_EmptyTableEnds) {
    TalvoBinTable* t = new TalvoBinTable(3, 2);
    t->shrink(3);
    EXPECT_EQ(0, t->getTop());
    EXPECT_EQ(0.0, t->getWeight());
    delete t;
}

TEST(TalvoBinTable, AddValue_ShrinkFactorOneStaysInsideArrays) {
    TalvoBinTable* t = new TalvoBinTable(3, 1);
    for (double v : {1, 2, 3, 4})
        t->addValue(v);
    // Shrinking to 3 bins frees nothing, so the table goes to 2 bins first.
    expectEntries(t, {{4.0 / 3.0, 1.5}, {8.0 / 3.0, 1.5}, {4, 1}});
    for (int i = 0; i < 100; ++i)
        t->addValue(i);
    EXPECT_EQ(104.0, t->getWeight());
    EXPECT_LE(t->getTop(), 3);
    delete t;
}

TEST(TalvoBinTable, AddValue_SizeOneMergesIntoTheOnlyEntry) {
    TalvoBinTable* t = new TalvoBinTable(1, 1);
    t->addValue(1);
    t->addValue(3);
    t->addValue(5);
    expectEntries(t, {{3, 3}});
    delete t;
}

TEST(TalvoBinTable, Constructor_NonPositiveSizeIgnoresValues) {
    TalvoBinTable* t = new TalvoBinTable(0, 3);
    t->addValue(1);
    t->shrink(1);
    EXPECT_EQ(0, t->getSize());
    EXPECT_EQ(0, t->getTop());
    EXPECT_EQ(0.0, t->getValue(0));
    delete t;
}

TEST(TalvoBinTable, GetValue_OutsideArraysGivesZero) {
    TalvoBinTable* t = new TalvoBinTable(1, 2);
    t->addValue(7);
    t->addValue(8);
    EXPECT_EQ(0.0, t->getValue(-1));
    EXPECT_EQ(0.0, t->getValue(2));
    EXPECT_EQ(0.0, t->getWeight(2));
    EXPECT_EQ(8.0, t->getValue(1));
    delete t;
}

TEST(TalvoBinTable, CopyAndReset) {
    TalvoBinTable* t = new TalvoBinTable(2, 2);
    for (double v : {4, 3, 2, 1, 0})
        t->addValue(v);
    TalvoBinTable* c = t->copy();
    expectEntries(c, {{1.5, 2}, {3.5, 2}, {0, 1}});
    EXPECT_EQ(5.0, c->getWeight());
    t->reset();
    EXPECT_EQ(0, t->getTop());
    EXPECT_EQ(0.0, t->getValue(0));
    EXPECT_EQ(0.0, t->getWeight(0));
    delete c;
    delete t;
}
