#include "support/TalvoTest.h"

#include <talvo/foundation/TalvoComparator.h>
#include <talvo/foundation/TalvoFunction.h>
#include <talvo/foundation/TalvoInteger.h>
#include <talvo/foundation/TalvoMath.h>
#include <talvo/foundation/TalvoMemoryManager.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <string>

namespace {
void* address(std::uintptr_t value) { return reinterpret_cast<void*>(value); }
}  // namespace

// Integer geq is a - b and leq b - a, wrapping in 32 bits; the double ones
// have the opposite sense. A null box reads as 0.
TEST(TalvoInteger, GeqAndLeqSubtractAndWrapDoubleOnesAreOpposite) {
    int three = 3, five = 5, low = INT_MIN, one = 1;
    EXPECT_EQ(TalvoInteger::geq(&three, &five), -2);
    EXPECT_EQ(TalvoInteger::leq(&three, &five), 2);
    EXPECT_EQ(TalvoInteger::geq(&low, &one), INT_MAX);
    EXPECT_EQ(TalvoInteger::leq(&five, nullptr), -5);
    double threeD = 3.0, fiveD = 5.0, nan = std::nan(""), half = 0.5;
    EXPECT_EQ(TalvoDouble::geq(&threeD, &fiveD), 1);
    EXPECT_EQ(TalvoDouble::leq(&threeD, &fiveD), -1);
    EXPECT_EQ(TalvoDouble::geq(&nan, &threeD), 0);
    EXPECT_EQ(TalvoDouble::geq(nullptr, &half), 1);
}

TEST(TalvoDouble, AllocateCopyAndFreeTraceEachBox) {
    long before = TalvoMemoryManager::getAllocationBalance();
    double* box = TalvoDouble::allocate(-0.5);
    double* copy = static_cast<double*>(TalvoDouble::copy(box));
    EXPECT_EQ(TalvoMemoryManager::getAllocationBalance(), before + 2);
    EXPECT_TRUE(copy != box && *copy == -0.5);
    TalvoMemoryManager::setTraceAllocationsFlag(true);
    TalvoDouble::free(box);
    TalvoMemoryManager::setTraceAllocationsFlag(false);
    TalvoDouble::free(copy);
    EXPECT_NE(talvo_test::readFile("talvo-allocations.txt").find(" :: delete TalvoDouble ["), std::string::npos);
}

TEST(TalvoFunction, CompareAddressIsUnsignedAndTraceMessageAppends) {
    EXPECT_EQ(TalvoFunction::compareAddress(address(1), address(UINTPTR_MAX)), -1);
    TalvoFunction::traceMessage("one %d\n");
    TalvoFunction::traceMessage("two\n");
    EXPECT_EQ(talvo_test::readFile("trace.txt"), "one %d\ntwo\n");
}

TEST(TalvoComparator, BaseComparesPointersAsSigned32BitDifference) {
    TalvoComparator* comparator = new TalvoComparator;
    EXPECT_EQ(comparator->compareItems(address(3), address(10)), -7);
    EXPECT_EQ(comparator->compareItems(address(0x80000000u), address(0)), INT_MIN);
    delete comparator;
}

TEST(TalvoMath, GammaFormulaKeepsItsInnerTerm) {
    EXPECT_EQ(TalvoMath::degree(), 0.017453292519943295);
    EXPECT_EQ(TalvoMath::pi(), 3.141592653589793);
    EXPECT_EQ(TalvoMath::e(), 2.718281828459045);
    // Shape 2 and scale 3 (not a rate): x e^(-x/3) / (3^2 gamma(2)).
    double density = 2.0 * std::exp(-2.0 / 3.0) / (9.0 * TalvoMath::gamma(2.0));
    EXPECT_DOUBLE_EQ(TalvoMath::gammaDensity(2.0, 2.0, 3.0), density);
    // The inner term adds 1/(10x): gammaln(1) is not 0.
    double t = std::log(1.0 + 1.0 / (0.1 + 12.0));
    EXPECT_EQ(TalvoMath::gammaln(1.0), std::log(2.0 * 3.141592653589793) * 0.5 + (t - 1.0));
    EXPECT_NEAR(TalvoMath::gamma(5.0), 24.0, 0.01);
}
