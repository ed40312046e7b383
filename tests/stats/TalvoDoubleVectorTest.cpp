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

// Each form, alone or after another, from v = (1, 2) and w = (3, 4).
TEST(TalvoDoubleVector, ArithmeticForms) {
    using V = TalvoDoubleVector*;
    struct Case {
        const char* form;
        void (*apply)(V v, V w);
        const char* expected;
    } cases[] = {
        {"div(i, d)", [](V v, V) { v->div(1, 8); }, "<1,0.25>"},
        {"div(d)", [](V v, V) { v->div(2); }, "<0.5,1>"},
        {"div(w)", [](V v, V w) { v->div(w); }, "<0.333333,0.5>"},
        {"sub(d, w)", [](V v, V w) { v->sub(0.5, w); }, "<-0.5,0>"},
        {"div(d, w)", [](V v, V w) { v->div(0.5, w); }, "<0.666667,1>"},
        {"set(d), add(i, d)", [](V v, V) { v->set(7); v->add(0, 0.5); }, "<7.5,7>"},
        {"set(w), mul(i, d)", [](V v, V w) { v->set(w); v->mul(1, 3); }, "<3,12>"},
        {"set(d, w), sub(i, d)", [](V v, V w) { v->set(2, w); v->sub(1, 5); }, "<6,3>"},
        {"add(d), mul(d)", [](V v, V) { v->add(1); v->mul(-2); }, "<-4,-6>"},
        {"add(d, w), sub(d)", [](V v, V w) { v->add(2, w); v->sub(1); }, "<6,9>"},
        {"sub(w), mul(w)", [](V v, V w) { v->sub(w); v->mul(w); }, "<-6,-8>"},
        {"mul(d, w)", [](V v, V w) { v->mul(0.5, w); }, "<1.5,4>"},
    };
    for (const Case& c : cases) {
        Vec v{1, 2}, w{3, 4};
        c.apply(v, w);
        EXPECT_EQ(c.expected, printed(v)) << c.form;
    }
}

// The copy owns its values; rounding clears |x| <= eps, the bound included.
TEST(TalvoDoubleVector, CopyThenRound) {
    Vec v{0.0005, -0.001, 0.002};
    TalvoDoubleVector* c = v->copy();
    v->round(0.001);
    EXPECT_EQ("<0,0,0.002>", printed(v));
    EXPECT_EQ("<0.0005,-0.001,0.002>", printed(c));
    TalvoDoubleVector::free(c);
}

// Indexes outside the vector and a shorter or null other vector touch
// nothing they do not have; extremes of values start from their bounds.
TEST(TalvoDoubleVector, OutsideIndexesShortOrNullOtherAndEmptyAreSafe) {
    TalvoDoubleVector negative(-4);  // a negative size gives an empty vector
    EXPECT_EQ(0, negative.getSize());
    Vec v{1, 2, 3}, w{10};
    EXPECT_EQ(0.0, v->get(-1));
    EXPECT_EQ(0.0, v->get(3));
    v->set(3, 9);
    v->add(-1, 9);
    v->add(w);
    v->add(nullptr);
    EXPECT_EQ("<11,2,3>", printed(v));
    EXPECT_EQ(0.0, v->getProduct(nullptr));
    EXPECT_EQ(kLargest, v->getMinDiff(nullptr));
    Vec negatives{-3, -1}, empty{};
    EXPECT_EQ(-3.0, negatives->getMinValue());
    EXPECT_EQ(kTinyPositive, negatives->getMaxValue());  // never below its tiny starting value
    EXPECT_EQ(kLargest, empty->getMinValue());
    EXPECT_EQ("<>", printed(empty));
    v->print(static_cast<FILE*>(nullptr));
}

// Differences, slacks and relative slacks of a against b, each from its own
// starting value.
TEST(TalvoDoubleVector, ExtremesOfDifferences) {
    struct Case {
        std::initializer_list<double> a, b;
        double minDiff, maxDiff, minSlack, maxSlack, minRelative, maxRelative;
    } cases[] = {
        {{-5, -1, 2}, {-1, 1, 1}, -4, 1, 1, 4, 2.0 / 3, 2},
        {{}, {}, kLargest, kTinyPositive, kLargest, 0, kLargest, 0},
        {{0, 1}, {0, 3}, -2, kTinyPositive, 0, 2, 0, 1},  // both zero: relative slack 0
    };
    for (const Case& c : cases) {
        Vec a(c.a), b(c.b);
        SCOPED_TRACE(printed(a) + " " + printed(b));
        EXPECT_EQ(c.minDiff, a->getMinDiff(b));
        EXPECT_EQ(c.maxDiff, a->getMaxDiff(b));
        EXPECT_EQ(c.minSlack, a->getMinSlack(b));
        EXPECT_EQ(c.maxSlack, a->getMaxSlack(b));
        EXPECT_DOUBLE_EQ(c.minRelative, a->getMinRelativeSlack(b));
        EXPECT_DOUBLE_EQ(c.maxRelative, a->getMaxRelativeSlack(b));
    }
}

// The distance multiplies elements; compare is lexicographic over this size.
TEST(TalvoDoubleVector, DistanceAndCompare) {
    Vec a{1, 2}, b{3, -4}, c{1, 3}, d{0, 9}, longer{1, 2, 3};
    EXPECT_EQ(std::sqrt(3.0 + 8.0), a->getDistance(b));
    EXPECT_EQ(-5.0, a->getProduct(b));
    EXPECT_EQ(5.0, b->getNorm());
    EXPECT_EQ(-1, a->compare(c));
    EXPECT_EQ(1, a->compare(d));
    EXPECT_EQ(0, a->compare(longer));
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
