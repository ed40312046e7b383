#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoComparator.h>
#include <talvo/foundation/TalvoCursor.h>
#include <talvo/foundation/TalvoFunction.h>
#include <talvo/foundation/TalvoInteger.h>
#include <talvo/foundation/TalvoMath.h>
#include <talvo/foundation/TalvoMemoryManager.h>

#include <climits>
#include <cmath>
#include <cstdint>

using talvo_test::readFile;

namespace {
void* address(std::uintptr_t value) { return reinterpret_cast<void*>(value); }
}  // namespace

// geq is a - b and leq b - a, wrapping in 32 bits; a null box reads as 0.
TEST(TalvoInteger, GeqAndLeqSubtractAndWrap) {
    int three = 3, five = 5, low = INT_MIN, one = 1, high = INT_MAX, minusOne = -1;
    EXPECT_EQ(TalvoInteger::geq(&three, &five), -2);
    EXPECT_EQ(TalvoInteger::leq(&three, &five), 2);
    EXPECT_EQ(TalvoInteger::geq(&low, &one), INT_MAX);
    EXPECT_EQ(TalvoInteger::leq(&one, &low), INT_MAX);
    EXPECT_EQ(TalvoInteger::geq(&high, &minusOne), INT_MIN);
    EXPECT_EQ(TalvoInteger::geq(&five, nullptr), 5);
    EXPECT_EQ(TalvoInteger::leq(&five, nullptr), -5);
}

TEST(TalvoInteger, CopyIsIndependent) {
    int* box = TalvoInteger::allocate(7);
    int* copy = static_cast<int*>(TalvoInteger::copy(box));
    EXPECT_NE(copy, box);
    EXPECT_EQ(*copy, 7);
    TalvoInteger::free(box);
    TalvoInteger::free(copy);
    EXPECT_EQ(TalvoInteger::copy(nullptr), nullptr);
}

TEST(TalvoDouble, GeqAndLeqHaveOppositeSenseToInteger) {
    double* three = TalvoDouble::allocate(3.0);
    double* five = TalvoDouble::allocate(5.0);
    EXPECT_EQ(TalvoDouble::geq(three, five), 1);
    EXPECT_EQ(TalvoDouble::geq(five, three), -1);
    EXPECT_EQ(TalvoDouble::leq(three, five), -1);
    EXPECT_EQ(TalvoDouble::leq(five, three), 1);
    double nan = std::nan(""), half = 0.5;
    EXPECT_EQ(TalvoDouble::geq(&nan, three), 0);
    EXPECT_EQ(TalvoDouble::leq(three, &nan), 0);
    EXPECT_EQ(TalvoDouble::geq(nullptr, &half), 1);  // null reads as 0
    EXPECT_EQ(TalvoDouble::leq(nullptr, nullptr), 0);
    void* copy = TalvoDouble::copy(five);
    EXPECT_EQ(*static_cast<double*>(copy), 5.0);
    TalvoDouble::free(copy);
    TalvoDouble::free(three);
    TalvoDouble::free(five);
}

TEST(TalvoFunction, CompareAddressIsUnsigned) {
    void* low = address(1);
    void* high = address(UINTPTR_MAX);
    EXPECT_EQ(TalvoFunction::compareAddress(low, high), -1);
    EXPECT_EQ(TalvoFunction::compareAddress(high, low), 1);
    EXPECT_EQ(TalvoFunction::compareAddress(low, low), 0);
}

TEST(TalvoFunction, TraceMessageAppendsToTraceFile) {
    TalvoFunction::traceMessage("one %d\n");
    TalvoFunction::traceMessage("two\n");
    EXPECT_EQ(readFile("trace.txt"), "one %d\ntwo\n");
}

TEST(TalvoComparator, BaseComparesPointersAsSigned32BitDifference) {
    TalvoComparator* comparator = new TalvoComparator;
    EXPECT_EQ(comparator->compareItems(address(10), address(3)), 7);
    EXPECT_EQ(comparator->compareItems(address(3), address(10)), -7);
    EXPECT_EQ(comparator->compareItems(address(0x80000000u), address(0)), INT_MIN);
    delete comparator;
}

TEST(TalvoCursor, BaseBodiesAnswerAsEmpty) {
    TalvoCursor cursor;
    EXPECT_TRUE(cursor.isBeforeFirstItem());
    EXPECT_TRUE(cursor.isAfterLastItem());
    EXPECT_TRUE(cursor.isOnFirstItem());
    EXPECT_TRUE(cursor.isOnLastItem());
    cursor.resetOnFirstItem();
    cursor.resetOnLastItem();
    cursor.resetInPosition(3);
    cursor.resetOnItem(nullptr);
    cursor.increment();
    cursor.decrement();
    EXPECT_EQ(cursor.getItem(), nullptr);
    EXPECT_EQ(cursor.removeItemAndIncrement(), nullptr);
    EXPECT_EQ(cursor.removeItemAndDecrement(), nullptr);
}

TEST(TalvoMath, ConstantsAndGammaFormula) {
    EXPECT_EQ(TalvoMath::pi(), 3.141592653589793);
    EXPECT_EQ(TalvoMath::e(), 2.718281828459045);
    EXPECT_EQ(TalvoMath::degree(), 0.017453292519943295);
    // The inner term adds 1/(10x): gammaln(1) is not 0.
    double t = std::log(1.0 + 1.0 / (0.1 + 12.0));
    double expected = (std::log(2.0 * 3.141592653589793) - 0.0) * 0.5 + (t - 1.0);
    EXPECT_EQ(TalvoMath::gammaln(1.0), expected);
    EXPECT_NEAR(TalvoMath::gammaln(1.0), -0.00165, 1e-5);
    EXPECT_NEAR(TalvoMath::gamma(5.0), 24.0, 0.01);
    EXPECT_NEAR(TalvoMath::gammaDensity(1.0, 1.0, 1.0), std::exp(-1.0) / TalvoMath::gamma(1.0), 1e-15);
}
