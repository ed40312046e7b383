#include "support/TalvoTest.h"

#include <talvo/stats/TalvoDoubleVector.h>
#include <talvo/text/TalvoRawStringStream.h>

#include <cfloat>
#include <cmath>
#include <initializer_list>
#include <string>

namespace {

// Tests own their vectors through this guard so every path frees them.
struct Vec {
    TalvoDoubleVector* v;
    Vec(std::initializer_list<double> values) : v(new TalvoDoubleVector(static_cast<int>(values.size()))) {
        int i = 0;
        for (double d : values)
            v->set(i++, d);
    }
    ~Vec() { TalvoDoubleVector::free(v); }
    TalvoDoubleVector* operator->() { return v; }
    operator TalvoDoubleVector*() { return v; }
};

std::string printed(TalvoDoubleVector* v) {
    FILE* file = std::fopen("vector.txt", "w");
    v->print(file);
    std::fclose(file);
    return talvo_test::readFile("vector.txt");
}

const double kTinyPositive = 2.2250738585072014e-308;
const double kLargest = 1.7976931348623157e308;

}  // namespace

TEST(TalvoDoubleVector, ConstructorGivesZerosOrNothing) {
    Vec v{0, 0, 0};
    TalvoDoubleVector* fresh = new TalvoDoubleVector(3);
    EXPECT_EQ(3, fresh->getSize());
    EXPECT_EQ(0, fresh->compare(v));
    EXPECT_EQ(0.0, fresh->get(2));
    TalvoDoubleVector::free(fresh);
    TalvoDoubleVector negative(-4);  // a negative size gives an empty vector
    EXPECT_EQ(0, negative.getSize());
    EXPECT_EQ(kLargest, negative.getMinValue());
}

TEST(TalvoDoubleVector, ElementOperations) {
    Vec v{10, 10, 10, 10, 10};
    v->set(0, 1);
    v->add(1, 2);
    v->sub(2, 3);
    v->mul(3, 4);
    v->div(4, 5);
    Vec expected{1, 12, 7, 40, 2};
    EXPECT_EQ(0, v->compare(expected));
}

TEST(TalvoDoubleVector, IndexOutsideReadsZeroAndWritesNothing) {
    Vec v{1, 2};
    EXPECT_EQ(0.0, v->get(-1));
    EXPECT_EQ(0.0, v->get(2));
    v->set(2, 9);
    v->add(-1, 9);
    EXPECT_EQ(1.0, v->get(0));
    EXPECT_EQ(2.0, v->get(1));
}

TEST(TalvoDoubleVector, ScalarOperations) {
    Vec v{1, 2};
    v->add(1);
    EXPECT_EQ(3.0, v->get(1));
    v->mul(2);
    EXPECT_EQ(4.0, v->get(0));
    v->sub(1);
    EXPECT_EQ(5.0, v->get(1));
    v->div(2);
    EXPECT_EQ(1.5, v->get(0));
    v->set(7);
    EXPECT_EQ(7.0, v->get(0));
    EXPECT_EQ(7.0, v->get(1));
}

TEST(TalvoDoubleVector, VectorOperations) {
    Vec v{1, 2}, w{3, 4};
    v->add(w);
    EXPECT_EQ(6.0, v->get(1));
    v->mul(w);
    EXPECT_EQ(12.0, v->get(0));
    v->sub(w);
    EXPECT_EQ(20.0, v->get(1));
    v->div(w);
    EXPECT_EQ(3.0, v->get(0));
    v->set(w);
    EXPECT_EQ(4.0, v->get(1));
}

TEST(TalvoDoubleVector, ScaledVectorOperations) {
    Vec v{1, 2}, w{3, 4};
    v->add(2, w);  // 7, 10
    EXPECT_EQ(10.0, v->get(1));
    v->sub(0.5, w);  // 5.5, 8
    EXPECT_EQ(5.5, v->get(0));
    v->mul(2, w);  // 33, 64
    EXPECT_EQ(64.0, v->get(1));
    v->div(0.5, w);  // 22, 32
    EXPECT_EQ(22.0, v->get(0));
    v->set(-1, w);
    EXPECT_EQ(-4.0, v->get(1));
}

TEST(TalvoDoubleVector, ShorterOrNullOtherVectorIsReadOnlyWhereItHasElements) {
    Vec v{1, 2, 3}, w{10};
    v->add(w);
    EXPECT_EQ(11.0, v->get(0));
    EXPECT_EQ(2.0, v->get(1));
    v->add(nullptr);
    EXPECT_EQ(0.0, v->getProduct(nullptr));
    EXPECT_EQ(kLargest, v->getMinDiff(nullptr));
}

TEST(TalvoDoubleVector, RoundClearsSmallValuesInclusive) {
    Vec v{0.0005, -0.001, 0.002};
    v->round(0.001);
    EXPECT_EQ(0.0, v->get(0));
    EXPECT_EQ(0.0, v->get(1));
    EXPECT_EQ(0.002, v->get(2));
}

TEST(TalvoDoubleVector, ExtremesOfValues) {
    struct Case {
        std::initializer_list<double> values;
        double min, max;
    } cases[] = {
        {{3, -1, 2}, -1, 3},
        {{-3, -1}, -3, kTinyPositive},  // the maximum never drops below its start
        {{0, 0}, 0, kTinyPositive},
        {{}, kLargest, kTinyPositive},
    };
    for (const Case& c : cases) {
        Vec v(c.values);
        SCOPED_TRACE(printed(v));
        EXPECT_EQ(c.min, v->getMinValue());
        EXPECT_EQ(c.max, v->getMaxValue());
    }
}

TEST(TalvoDoubleVector, ExtremesOfDifferencesWithNegativeValues) {
    Vec a{-5, -1, 2}, b{-1, 1, 1};  // differences -4, -2, 1
    EXPECT_EQ(-4.0, a->getMinDiff(b));
    EXPECT_EQ(1.0, a->getMaxDiff(b));
    EXPECT_EQ(1.0, a->getMinSlack(b));
    EXPECT_EQ(4.0, a->getMaxSlack(b));

    Vec c{-5, -3}, d{-1, -1};  // every difference negative
    EXPECT_EQ(-4.0, c->getMinDiff(d));
    EXPECT_EQ(kTinyPositive, c->getMaxDiff(d));
    EXPECT_EQ(2.0, c->getMinSlack(d));
    EXPECT_EQ(4.0, c->getMaxSlack(d));
}

TEST(TalvoDoubleVector, ExtremesOfEmptyVectorsAreStartingValues) {
    Vec a{}, b{};
    EXPECT_EQ(kLargest, a->getMinDiff(b));
    EXPECT_EQ(kTinyPositive, a->getMaxDiff(b));
    EXPECT_EQ(kLargest, a->getMinSlack(b));
    EXPECT_EQ(0.0, a->getMaxSlack(b));
    EXPECT_EQ(kLargest, a->getMinRelativeSlack(b));
    EXPECT_EQ(0.0, a->getMaxRelativeSlack(b));
}

TEST(TalvoDoubleVector, RelativeSlack) {
    Vec a{0, 1}, b{0, 3};
    EXPECT_EQ(0.0, a->getMinRelativeSlack(b));
    EXPECT_EQ(1.0, a->getMaxRelativeSlack(b));
    Vec c{-2, 4}, d{2, 2};  // |-4| / 2 = 2; |2| / 3
    EXPECT_DOUBLE_EQ(2.0 / 3.0, c->getMinRelativeSlack(d));
    EXPECT_EQ(2.0, c->getMaxRelativeSlack(d));
}

TEST(TalvoDoubleVector, DistanceMultipliesElements) {
    Vec a{1, 2}, b{3, -4};
    EXPECT_EQ(std::sqrt(3.0 + 8.0), a->getDistance(b));
    EXPECT_EQ(-5.0, a->getProduct(b));
    Vec c{3, -4};
    EXPECT_EQ(5.0, c->getNorm());
}

TEST(TalvoDoubleVector, CompareIsLexicographic) {
    Vec a{1, 2}, b{1, 3}, c{1, 2}, d{0, 9};
    EXPECT_EQ(-1, a->compare(b));
    EXPECT_EQ(1, b->compare(a));
    EXPECT_EQ(0, a->compare(c));
    EXPECT_EQ(1, a->compare(d));
    EXPECT_EQ(-1, TalvoDoubleVector::compare(a, b));
    Vec longer{1, 2, 3};
    EXPECT_EQ(0, a->compare(longer));  // only this size counts
}

TEST(TalvoDoubleVector, CopyIsIndependent) {
    Vec v{1.5, -2};
    TalvoDoubleVector* copy = v->copy();
    EXPECT_EQ(0, copy->compare(v));
    copy->set(0, 9);
    EXPECT_EQ(1.5, v->get(0));
    TalvoDoubleVector::free(copy);
}

TEST(TalvoDoubleVector, Print) {
    Vec v{1.5, 2}, empty{}, one{-1e-7};
    EXPECT_EQ("<1.5,2>", printed(v));
    EXPECT_EQ("<>", printed(empty));
    EXPECT_EQ("<-1e-07>", printed(one));
    v->print(static_cast<FILE*>(nullptr));
}

TEST(TalvoDoubleVector, PrintOnStreamIgnoresItsPrecision) {
    char buffer[64] = {};
    TalvoRawStringStream stream(false, buffer, 63);
    stream.setSignificantDigitNumber(2);
    Vec v{1.5, 2, 1234.5678};
    v->print(&stream);
    stream.flush();
    EXPECT_STREQ("<1.5,2,1234.57>", buffer);
    v->print(static_cast<TalvoStream*>(nullptr));
}
