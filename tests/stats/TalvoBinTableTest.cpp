#include "support/TalvoTest.h"

#include <talvo/stats/TalvoBinTable.h>

#include <initializer_list>
#include <vector>

namespace {

struct Entry {
    double value;
    double weight;
};

void addValues(TalvoBinTable& t, std::initializer_list<double> values) {
    for (double v : values)
        t.addValue(v);
}

void expectEntries(const TalvoBinTable& t, const std::vector<Entry>& expected) {
    ASSERT_EQ(static_cast<int>(expected.size()), t.getTop());
    for (int i = 0; i < t.getTop(); ++i) {
        EXPECT_DOUBLE_EQ(expected[i].value, t.getValue(i)) << "entry " << i;
        EXPECT_DOUBLE_EQ(expected[i].weight, t.getWeight(i)) << "entry " << i;
    }
}

}  // namespace

TEST(TalvoBinTable, Shrink_CarriesPartialWeightToNextBin) {
    TalvoBinTable t(2, 3);
    addValues(t, {6, 5, 4, 3, 2, 1, 10, 0, 0, 0, 20});
    // Bin weight 10 / 2 = 5: three zeros and two thirds of the 2s, then the rest.
    expectEntries(t, {{0.8, 5}, {5.4, 5}, {20, 1}});
    EXPECT_EQ(11.0, t.getWeight());
}

TEST(TalvoBinTable, Shrink_HeavyEntryEmitsOneBinAndCarriesTheRest) {
    TalvoBinTable t(2, 2);
    addValues(t, {1, 2, 3, 4});
    t.shrink(1);
    expectEntries(t, {{2.5, 4}});
    addValues(t, {10, 20, 30});
    t.shrink(4);
    // Bin weight 7 / 4 = 1.75; the entry of weight 4 fills one bin only and
    // carries 2.25, so the next bin's share of 10 is negative.
    expectEntries(t, {{2.5, 1.75},
                      {(2.25 * 2.5 + -0.5 * 10) / 1.75, 1.75},
                      {(1.5 * 10 + 0.25 * 20) / 1.75, 1.75},
                      {(0.75 * 20 + 1 * 30) / 1.75, 1.75}});
    EXPECT_EQ(7.0, t.getWeight());
    TalvoBinTable heavy(1, 2);
    addValues(heavy, {1, 3});
    heavy.shrink(1);
    heavy.shrink(2);  // the one entry of weight 2 emits one bin and carries the other
    expectEntries(heavy, {{2, 1}, {2, 1}});
}

TEST(TalvoBinTable, AddValue_ShrinkFactorOneStaysInsideArrays) {
    TalvoBinTable t(3, 1);
    addValues(t, {1, 2, 3, 4});
    // Shrinking to 3 bins frees nothing, so the table goes to 2 bins first.
    expectEntries(t, {{4.0 / 3.0, 1.5}, {8.0 / 3.0, 1.5}, {4, 1}});
    TalvoBinTable single(1, 1);  // size one merges into the only entry
    addValues(single, {1, 3, 5});
    expectEntries(single, {{3, 3}});
}

// Weight left after the last entry makes a last bin; as a rounding residue
// once every slot holds a bin (bins of 4 / 3 over 1.5, 1.5 and 1) it stays
// inside the arrays.
TEST(TalvoBinTable, Shrink_LeftoverWeightEndsInALastBin) {
    TalvoBinTable t(1, 3);
    addValues(t, {3, 1, 2});
    t.shrink(2);
    expectEntries(t, {{4.0 / 3, 1.5}, {8.0 / 3, 1.5}});
    t.addValue(10);
    t.shrink(3);
    expectEntries(t, {{4.0 / 3, 4.0 / 3}, {2.5, 4.0 / 3}, {49.0 / 6, 4.0 / 3}});
    EXPECT_EQ(4.0, t.getWeight());
}

// Empty and sizeless tables end their shrinks; indexes outside the arrays,
// the capacity itself included, read 0.
TEST(TalvoBinTable, EmptySizelessAndOutsideIndexesAreSafe) {
    TalvoBinTable empty(3, 2);
    empty.shrink(3);
    EXPECT_EQ(0.0, empty.getWeight());
    TalvoBinTable sizeless(0, 3);
    sizeless.addValue(1);
    sizeless.shrink(1);
    expectEntries(sizeless, {});
    TalvoBinTable t(1, 2);
    addValues(t, {7, 8});
    EXPECT_EQ(0.0, t.getValue(-1));
    EXPECT_EQ(0.0, t.getWeight(2));
}
