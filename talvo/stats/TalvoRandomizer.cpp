#include <talvo/stats/TalvoRandomizer.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

const int kDefaultSeed = 12345;
const int kDefaultModulus = 2147483647;
const int kDefaultMask = 123459876;
const int kDefaultTableSize = 32;
const int kWarmUpSteps = 8;
// Multipliers of the generator kinds 1, 2 and 3; any other kind takes the first.
const int kMultipliers[] = {16807, 48271, 69621};

// A working generator needs a handful of attempts; a degenerate one (the
// base class, a multiplier of 0) would otherwise loop for ever.
const int kMaxAttempts = 1000;
// gammaDraw recurses once per unit below 1; deeper than this is refused.
const double kMinimumShape = -1000.0;

const double kLn2 = 0.6931471805599453;
// Q[k] = sum of (ln 2)^i / i! for i = 1 .. k + 1, summed in double precision;
// it must end at 1.0 so that the search of the exponential draw stops.
const double kQ[] = {
    0.6931471805599453, 0.9333736875190459, 0.9888777961838675, 0.998495925291496,
    0.9998292811061389, 0.9999833164100727, 0.9999985691438767, 0.9999998906925558,
    0.9999999924734159, 0.9999999995283275, 0.9999999999728814, 0.9999999999985598,
    0.999999999999929,  0.9999999999999968, 0.9999999999999999, 1.0};
const int kQLast = sizeof(kQ) / sizeof(kQ[0]) - 1;

// Two-sided standard scores: the first row whose bound the probability does
// not exceed gives the score; above every bound the last score applies.
struct ScoreRow {
    double bound;
    double score;
};
const ScoreRow kScores[] = {
    {0.5, 0.6745},    {0.68269, 1.0}, {0.9, 1.6449},   {0.95, 1.9599},
    {0.9545, 2.0},    {0.99, 2.5759}, {0.9973, 3.0},   {0.999, 3.2905},
    {0.9999, 3.8906}, {0.99993, 4.0},
};
const double kScoreAboveTable = 4.4172;

// --- 32-bit signed arithmetic that wraps instead of overflowing.

int add32(int x, int y) {
    return static_cast<int>(static_cast<std::uint32_t>(x) + static_cast<std::uint32_t>(y));
}

int sub32(int x, int y) {
    return static_cast<int>(static_cast<std::uint32_t>(x) - static_cast<std::uint32_t>(y));
}

int mul32(int x, int y) {
    return static_cast<int>(static_cast<std::uint32_t>(x) * static_cast<std::uint32_t>(y));
}

// Truncating division; 0 for a zero divisor, wrapping for INT_MIN / -1.
int div32(int x, int y) {
    if (y == 0)
        return 0;
    if (y == -1)
        return sub32(0, x);
    return x / y;
}

// Remainder of the truncating division; 0 for a zero divisor.
int mod32(int x, int y) {
    if (y == 0 || y == -1)
        return 0;
    return x % y;
}

// a x k mod (2^31 - 1) for k >= 0 and 0 < a < 2^31: the high bits of the
// 64-bit product fold onto the low 31, as 2^31 = 1 modulo 2^31 - 1.
int mersenneProduct(int a, int k) {
    const std::uint64_t modulus = kDefaultModulus;
    std::uint64_t product = static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(k);
    std::uint64_t folded = (product & modulus) + (product >> 31);
    return static_cast<int>(folded >= modulus ? folded - modulus : folded);
}

// Below this a draw is divided by the default modulus; from it on, multiplied.
const int kLeastProductDraw = 1 << 22;

// d / m in floating point. For the default modulus and d >= 2^22 the same
// correctly rounded quotient comes without a division: d / (2^31 - 1) is
// (2N + x) x 2^-63 for N = d (2^31 + 1) and some x in (0, 2]. From 2^54 on,
// doubles lie 4 or more apart and round at even integers, so 2N + 1, with
// no such point between it and 2N + x, rounds to the same double.
double quotient(int d, int m) {
    if (m != kDefaultModulus || d < kLeastProductDraw)
        return static_cast<double>(d) / m;
    std::uint64_t n = static_cast<std::uint64_t>(d) * (std::uint64_t{kDefaultModulus} + 2);
    return static_cast<double>(static_cast<std::int64_t>(2 * n + 1)) * 0x1p-63;
}

// Schrage (1979), "A more portable Fortran random number generator": a x k
// mod m without overflow, for q = m / a and r = m mod a. With a > 0 and
// r < q the step is exact, so for the default modulus and k >= 0 (never
// above it) the folded 64-bit product gives the same value without dividing.
int schrageStep(int k, int a, int m, int q, int r) {
    if (m == kDefaultModulus && k >= 0 && a > 0 && r < q)
        return mersenneProduct(a, k);
    int s = sub32(mul32(a, mod32(k, q)), mul32(r, div32(k, q)));
    if (s < 0)
        s = add32(s, m);
    return s;
}

int multiplierOfKind(int kind) {
    return kind >= 2 && kind <= 3 ? kMultipliers[kind - 1] : kMultipliers[0];
}

// floor(x) as an int, saturated to the int range (0 for not-a-number).
int floorToInt(double x) {
    double f = std::floor(x);
    if (!(f == f))
        return 0;
    if (f <= static_cast<double>(std::numeric_limits<int>::min()))
        return std::numeric_limits<int>::min();
    if (f >= static_cast<double>(std::numeric_limits<int>::max()))
        return std::numeric_limits<int>::max();
    return static_cast<int>(f);
}

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// --- The doubling step of the exponential draw.

// kLn2Sums[n] is ln 2 added n times to 0.0, one addition after the other, as
// the doubling loop adds it.
const int kLn2SumCount = 1024;  // covers every normal double in (0, 1]
std::array<double, kLn2SumCount> makeLn2Sums() {
    std::array<double, kLn2SumCount> sums{};
    double a = 0.0;
    for (double& sum : sums) {
        sum = a;
        a = a + kLn2;
    }
    return sums;
}
const std::array<double, kLn2SumCount> kLn2Sums = makeLn2Sums();

const int kExponentShift = 52;
const std::uint64_t kExponentBits = 0x7ff;
const std::uint64_t kFractionBits = (std::uint64_t(1) << kExponentShift) - 1;
const int kExponentBias = 1023;

struct Doubled {
    double u;  // above 1
    double a;  // ln 2 once per doubling after the first
};

// u = 2u; while u <= 1: a = a + ln 2, u = 2u. Doubling is exact, so for a
// normal u in (0, 1] the count follows from the exponent and the sums come
// from the table: the same bits without a loop whose exit is unpredictable.
// Other values take the loop itself.
Doubled doubleAboveOne(double u) {
    std::uint64_t bits;
    std::memcpy(&bits, &u, sizeof bits);
    int biased = static_cast<int>((bits >> kExponentShift) & kExponentBits);
    if (u > 0.0 && u <= 1.0 && biased != 0) {
        int exponent = biased - kExponentBias;  // u = 1.f x 2^exponent
        // Doublings beyond the first: a power of two needs one more, as
        // reaching exactly 1 does not end the loop.
        int n = (bits & kFractionBits) == 0 ? -exponent : -(exponent + 1);
        if (n < 0)
            n = 0;
        bits += static_cast<std::uint64_t>(n + 1) << kExponentShift;
        Doubled result;
        std::memcpy(&result.u, &bits, sizeof bits);
        result.a = kLn2Sums[n];
        return result;
    }
    Doubled result = {u + u, 0.0};
    // About 1075 doublings bring the smallest positive double above 1.
    for (int doubling = 0; result.u <= 1.0 && doubling < 2 * kMaxAttempts; ++doubling) {
        result.a = result.a + kLn2;
        result.u = result.u + result.u;
    }
    return result;
}

}  // namespace

// ---------------------------------------------------------------- base

TalvoRandomizer::TalvoRandomizer() : seed(kDefaultSeed), normalDrawValue(0.0) {}

TalvoRandomizer::~TalvoRandomizer() = default;

TalvoRandomizer* TalvoRandomizer::copy() const {
    return nullptr;
}

int TalvoRandomizer::draw() {
    return 0;
}

double TalvoRandomizer::uniformDraw() {
    return 0.0;
}

void TalvoRandomizer::setSeed(int seed) {
    this->seed = seed;
}

void TalvoRandomizer::resetNormalDrawValue() {
    normalDrawValue = 0.0;
}

double TalvoRandomizer::uniformDraw(double low, double high) {
    return low + uniformDraw() * (high - low);
}

int TalvoRandomizer::drawModulo(int n) {
    return floorToInt(uniformDraw() * n);
}

// Marsaglia and Bray (1964), the polar method: two deviates per accepted
// pair, the second cached. A cached deviate of exactly 0.0 counts as none.
double TalvoRandomizer::normalDraw() {
    if (normalDrawValue != 0.0) {
        double cached = normalDrawValue;
        normalDrawValue = 0.0;
        return cached;
    }
    for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
        double y1 = 2.0 * uniformDraw() - 1.0;
        double y2 = 2.0 * uniformDraw() - 1.0;
        double s = y1 * y1 + y2 * y2;
        if (s < 1.0 && s != 0.0) {
            double f = std::sqrt(-2.0 * std::log(s) / s);
            normalDrawValue = y2 * f;
            return y1 * f;
        }
    }
    return 0.0;
}

double TalvoRandomizer::normalDraw(double mean, double deviation) {
    return normalDraw() * deviation + mean;
}

double TalvoRandomizer::standardScore(double probability) {
    for (const ScoreRow& row : kScores) {
        if (probability <= row.bound)
            return row.score;
    }
    return kScoreAboveTable;
}

double TalvoRandomizer::lognormalDraw(double mean, double factor, double probability) {
    double sigma = std::log(factor) / standardScore(probability);
    return std::exp(std::log(mean) - sigma * sigma / 2.0 + sigma * normalDraw());
}

// Ahrens and Dieter (1972), method SA: doubling the uniform counts how many
// times ln 2 is added; the fraction is then taken from the minimum of a
// number of uniforms that the table Q decides.
double TalvoRandomizer::exponentialDraw() {
    double u = uniformDraw();
    for (int attempt = 0; u == 0.0 && attempt < kMaxAttempts; ++attempt)
        u = uniformDraw();
    if (u == 0.0)
        return 0.0;  // a generator stuck at zero
    Doubled doubled = doubleAboveOne(u);
    double a = doubled.a;
    u = doubled.u - 1.0;
    if (u <= kLn2)
        return a + u;
    double umin = uniformDraw();
    for (int k = 1;; ++k) {
        double ustar = uniformDraw();
        if (ustar < umin)
            umin = ustar;
        // Q ends at 1.0; the bound on k only matters for draws above 1.
        if (u <= kQ[k] || k == kQLast)
            break;
    }
    return a + umin * kLn2;
}

// Marsaglia and Tsang (2000), "A simple method for generating gamma
// variables"; shapes below 1 are raised by one and scaled by u^(1/shape).
double TalvoRandomizer::gammaDraw(double shape) {
    if (std::isnan(shape) || shape < kMinimumShape)
        return kNaN;
    if (shape < 1.0) {
        double u = uniformDraw();
        return gammaDraw(shape + 1.0) * std::pow(u, 1.0 / shape);
    }
    double d = shape - 1.0 / 3.0;
    double g = (1.0 / 3.0) / std::sqrt(d);
    for (int attempt = 0; attempt < kMaxAttempts; ++attempt) {
        double x = normalDraw();
        double v = 1.0 + g * x;
        if (v <= 0.0)
            continue;
        v = v * v * v;
        double u = uniformDraw();
        double x2 = x * x;
        if (u < 1.0 - 0.0331 * (x2 * x2))
            return d * v;
        if (std::log(u) < x2 / 2.0 + d * (1.0 - v + std::log(v)))
            return d * v;
    }
    return kNaN;
}

double TalvoRandomizer::gammaDraw(double shape, double scale) {
    return gammaDraw(shape) * scale;
}

double TalvoRandomizer::betaDraw(double a, double b) {
    double x = gammaDraw(a);
    double y = gammaDraw(b);
    return x / (x + y);
}

// ---------------------------------------------------------------- congruential

TalvoCongruentialRandomizer::TalvoCongruentialRandomizer(int kind)
    : m(0), a(0), mask(0), q(0), r(0) {
    initialize(kDefaultModulus, multiplierOfKind(kind), kDefaultMask);
}

TalvoCongruentialRandomizer::TalvoCongruentialRandomizer(int m, int a, int mask)
    : m(0), a(0), mask(0), q(0), r(0) {
    initialize(m, a, mask);
}

TalvoCongruentialRandomizer::~TalvoCongruentialRandomizer() = default;

void TalvoCongruentialRandomizer::initialize(int m, int a, int mask) {
    this->m = m;
    this->a = a;
    this->mask = mask;
    q = div32(m, a);
    r = mod32(m, a);
    seed = kDefaultSeed;
    normalDrawValue = 0.0;
}

TalvoCongruentialRandomizer* TalvoCongruentialRandomizer::copy() const {
    TalvoCongruentialRandomizer* result = new TalvoCongruentialRandomizer(m, a, mask);
    if (result)
        result->seed = seed;
    return result;
}

// Park and Miller (1988), the minimal standard step by Schrage's method, with
// the seed masked on the way in and out.
int TalvoCongruentialRandomizer::draw() {
    int k = seed ^ mask;
    int s = schrageStep(k, a, m, q, r);
    seed = s ^ mask;
    return seed;
}

double TalvoCongruentialRandomizer::uniformDraw() {
    return quotient(draw(), m);
}

// ---------------------------------------------------------------- shuffled

TalvoShuffledCongruentialRandomizer::TalvoShuffledCongruentialRandomizer(int kind)
    : m(0), a(0), mask(0), q(0), r(0), table(nullptr), size(0), divisor(0), lastOutput(0) {
    initialize(kDefaultModulus, multiplierOfKind(kind), kDefaultMask, kDefaultTableSize);
}

TalvoShuffledCongruentialRandomizer::TalvoShuffledCongruentialRandomizer(int m, int a, int mask, int size)
    : m(0), a(0), mask(0), q(0), r(0), table(nullptr), size(0), divisor(0), lastOutput(0) {
    initialize(m, a, mask, size);
}

TalvoShuffledCongruentialRandomizer::~TalvoShuffledCongruentialRandomizer() {
    _freeTable();
}

void TalvoShuffledCongruentialRandomizer::initialize(int m, int a, int mask, int size) {
    this->m = m;
    this->a = a;
    this->mask = mask;
    q = div32(m, a);
    r = mod32(m, a);
    _allocateTable(size < 1 ? 1 : size);
    divisor = add32(div32(sub32(m, 1), this->size), 1);
    seed = kDefaultSeed;
    lastOutput = 0;
    normalDrawValue = 0.0;
}

void TalvoShuffledCongruentialRandomizer::_allocateTable(int size) {
    _freeTable();
    table = static_cast<int*>(TalvoMemoryManager::newCell(sizeof(int) * static_cast<std::size_t>(size)));
    this->size = table ? size : 0;
}

void TalvoShuffledCongruentialRandomizer::_freeTable() {
    if (table)
        TalvoMemoryManager::deleteCell(table);
    table = nullptr;
    size = 0;
}

// Bays and Durham (1976), the shuffle table: filled backwards after eight
// warm-up steps.
void TalvoShuffledCongruentialRandomizer::reset() {
    int k = seed;
    if (k == 0)
        k = 1;
    else if (k < 0)
        k = sub32(0, k);
    for (int i = 0; i < kWarmUpSteps; ++i)
        k = schrageStep(k, a, m, q, r);
    for (int j = size - 1; j >= 0; --j) {
        k = schrageStep(k, a, m, q, r);
        table[j] = k;
    }
    seed = k;
    lastOutput = k;
}

// With the usual parameters output / divisor is always a valid index; other
// parameters can give negative or large outputs, which wrap into the table.
int TalvoShuffledCongruentialRandomizer::_tableIndex(int output) const {
    int j = div32(output, divisor);
    if (j >= 0 && j < size)
        return j;
    j = mod32(j, size);
    return j < 0 ? j + size : j;
}

int TalvoShuffledCongruentialRandomizer::draw() {
    if (size == 0) {
        // No table (its allocation failed): the plain recurrence.
        seed = schrageStep(seed, a, m, q, r);
        return seed;
    }
    if (lastOutput == 0)
        reset();
    seed = schrageStep(seed, a, m, q, r);
    int j = _tableIndex(lastOutput);
    lastOutput = table[j];
    table[j] = seed;
    return lastOutput;
}

double TalvoShuffledCongruentialRandomizer::uniformDraw() {
    return quotient(draw(), m);
}

TalvoShuffledCongruentialRandomizer* TalvoShuffledCongruentialRandomizer::copy() const {
    TalvoShuffledCongruentialRandomizer* result = new TalvoShuffledCongruentialRandomizer(m, a, mask, size);
    if (!result)
        return nullptr;
    result->seed = seed;
    result->lastOutput = lastOutput;
    if (result->size == size && size > 0)
        std::memcpy(result->table, table, sizeof(int) * static_cast<std::size_t>(size));
    return result;
}
