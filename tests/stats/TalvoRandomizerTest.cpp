#include "support/TalvoTest.h"

#include <talvo/stats/TalvoRandomizer.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace {

// Hands out a fixed stream of uniforms, then 0.5 for ever.
class ScriptedRandomizer : public TalvoRandomizer {
public:
    explicit ScriptedRandomizer(std::vector<double> uniforms) : uniforms_(std::move(uniforms)) {}
    using TalvoRandomizer::uniformDraw;
    double uniformDraw() override {
        ++used;
        return next_ < uniforms_.size() ? uniforms_[next_++] : 0.5;
    }
    int used = 0;

private:
    std::vector<double> uniforms_;
    std::size_t next_ = 0;
};

std::vector<int> draws(TalvoRandomizer* r, int n) {
    std::vector<int> result;
    for (int i = 0; i < n; ++i)
        result.push_back(r->draw());
    return result;
}

// The exponential doubling step read literally, for a stream that continues
// with 0.5: ln 2 is added once per doubling, never multiplied.
double literalExponential(double u) {
    const double ln2 = 0.6931471805599453;
    double a = 0.0;
    for (u += u; u <= 1.0; u += u)
        a += ln2;
    u -= 1.0;
    return u <= ln2 ? a + u : a + 0.5 * ln2;
}

// The Schrage step written out with 64-bit intermediates, wrapped to 32 bits
// as the generator's arithmetic wraps.
int literalSchrageStep(int k, int a, int m) {
    std::int64_t q = m / a, r = m % a;
    std::uint32_t s = static_cast<std::uint32_t>(a * (k % q) - r * (k / q));
    return static_cast<int>(static_cast<int>(s) < 0 ? s + static_cast<std::uint32_t>(m) : s);
}

}  // namespace

// Expected sequences come from the Schrage step worked out independently in
// exact integer arithmetic: seed 12345, m = 2147483647, mask 123459876.
TEST(TalvoCongruentialRandomizer, Draw_FirstValuesOfEachKindFromDefaultSeed) {
    const std::vector<int> expected[] = {
        {612281237, 1758924121, 25774822, 1840869417, 1100157545},
        {483612462, 785187073, 111541451, 1200189012, 1932578345},
        {1373635143, 1482465826, 1514092929, 738309747, 1043454587},
    };
    for (int kind = 1; kind <= 3; ++kind) {
        TalvoCongruentialRandomizer r(kind);
        EXPECT_EQ(expected[kind - 1], draws(&r, 5)) << "kind " << kind;
    }
}

// Multipliers whose step is exact (r < q) and ones whose step wraps, seeds
// at zero, at the modulus, above and below it: every draw is the step itself.
TEST(TalvoCongruentialRandomizer, Draw_IsSchrageStepForAnyMultiplierAndSeed) {
    const int m = 2147483647, mask = 123459876;
    const int multipliers[] = {1, 16807, 46340, 46341, 65536, 1 << 20, 2147483646};
    const int seeds[] = {0, 1, mask, m - 1, m, -1, -5, INT_MIN, 1 << 30, 987654321};
    for (int a : multipliers) {
        TalvoCongruentialRandomizer* r = new TalvoCongruentialRandomizer(m, a, mask);
        for (int seed : seeds) {
            r->setSeed(seed);
            EXPECT_EQ(literalSchrageStep(seed ^ mask, a, m) ^ mask, r->draw()) << "a " << a << " seed " << seed;
        }
        delete r;
    }
}

// With multiplier 1 and no mask a draw hands back the seed, so the quotient
// is checked on draws chosen around 2^22 and up to the modulus.
TEST(TalvoCongruentialRandomizer, UniformDraw_IsCorrectlyRoundedQuotientForEveryDrawSize) {
    const int m = 2147483647;
    const int draws[] = {1, 3, (1 << 22) - 1, 1 << 22, (1 << 22) + 1, 1 << 30, 1234567891, m - 2, m - 1};
    TalvoCongruentialRandomizer* r = new TalvoCongruentialRandomizer(m, 1, 0);
    std::mt19937 more(7);
    for (int i = 0; i < 100000; ++i) {
        int d = i < 9 ? draws[i] : static_cast<int>(more() % static_cast<unsigned>(m));
        r->setSeed(d);
        ASSERT_EQ(static_cast<double>(d) / m, r->uniformDraw()) << "draw " << d;
    }
    delete r;
}

// A copy continues the same sequence.
TEST(TalvoShuffledCongruentialRandomizer, Draw_FirstValuesFromDefaultSeedAndCopy) {
    TalvoShuffledCongruentialRandomizer r(1);
    EXPECT_EQ(32, r.getSize());
    EXPECT_EQ(1982386332, r.draw());
    TalvoRandomizer* c = r.copy();
    EXPECT_EQ((std::vector<int>{715426902, 424962143, 2038867620, 1683198519}), draws(c, 4));
    EXPECT_EQ(715426902 / 2147483647.0, r.uniformDraw());
    delete c;
}

TEST(TalvoShuffledCongruentialRandomizer, Reset_ZeroSeedActsAsOneNegativeIsNegatedOddSizesStayInside) {
    for (int seed : {0, -5}) {
        TalvoShuffledCongruentialRandomizer a(1), b(1);
        a.setSeed(seed);
        b.setSeed(seed ? -seed : 1);
        EXPECT_EQ(draws(&b, 3), draws(&a, 3)) << "seed " << seed;
    }
    TalvoShuffledCongruentialRandomizer r(-7, 3, 0, 0);  // unusual parameters stay inside the table
    EXPECT_EQ(1, r.getSize());
    draws(&r, 50);
    r.initialize(100, 0, 0, 4);
    draws(&r, 5);
}

TEST(TalvoRandomizer, NormalDraw_RejectsPairsOutsideUnitCircle) {
    ScriptedRandomizer r({0.9, 0.9, 0.5, 0.5, 0.6, 0.7});
    EXPECT_EQ(0.802356008872396, r.normalDraw());
    EXPECT_EQ(6, r.used);
    EXPECT_EQ(1.604712017744792 * 2 + 3, r.normalDraw(3, 2));  // the cached second of the pair
    EXPECT_EQ(6, r.used);
}

TEST(TalvoRandomizer, StandardScore_FirstRowNotExceeded) {
    struct Case {
        double p, score;
    } cases[] = {{0.5, 0.6745}, {0.6, 1.0}, {0.96, 2.5759}, {0.99993, 4.0}, {0.99994, 4.4172}};
    for (const Case& c : cases)
        EXPECT_EQ(c.score, TalvoRandomizer::standardScore(c.p)) << "p " << c.p;
}

// Shape 0 stands for the exponential draw.
TEST(TalvoRandomizer, ExponentialAndGammaDraw_KnownUniformStreams) {
    struct Case {
        double shape;
        std::vector<double> uniforms;
        double expected;
        int used;
    } cases[] = {
        {0, {0.3}, 0.8931471805599452, 1},                         // one doubling, direct
        {0, {0.0, 0.9, 0.5, 0.4}, 0.2772588722239781, 4},          // zero redrawn, Q[1] stops
        {0, {0.995, 0.7, 0.6, 0.9, 0.2}, 0.13862943611198905, 5},  // Q[3] stops
        {2.0, {0.6, 0.7, 0.5}, 2.9319143468951325, 3},             // squeeze accepts
        {2.0, {0.3, 0.5, 0.6}, 0.21552472797646452, 3},            // logarithm test accepts
        {2.0, {0.495, 0.50005, 0.5}, 1.7226884226153798, 3},       // v <= 0, cached deviate used
        {0.5, {0.25, 0.6, 0.7, 0.5}, 0.1416008617801306, 4},       // u drawn before the shape + 1 draw
    };
    for (const Case& c : cases) {
        ScriptedRandomizer r(c.uniforms);
        SCOPED_TRACE(::testing::Message() << "shape " << c.shape << " first " << c.uniforms[0]);
        EXPECT_EQ(c.expected, c.shape ? r.gammaDraw(c.shape) : r.exponentialDraw());
        EXPECT_EQ(c.used, r.used);
    }
    ScriptedRandomizer({5.0, 0.3, 0.2}).exponentialDraw();  // a uniform above one stays inside the table
    EXPECT_TRUE(std::isnan(ScriptedRandomizer({}).gammaDraw(NAN)));  // an unusable shape
}

TEST(TalvoRandomizer, ExponentialDraw_DoublingMatchesLiteralLoop) {
    std::vector<double> us = {1.0, 0.5, DBL_MIN, 4.9e-324, std::nextafter(0.5, 0.0)};
    std::mt19937_64 engine(3);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    for (int i = 0; i < 20000; ++i)
        us.push_back(i % 2 ? uniform(engine) : std::ldexp(uniform(engine), -(i % 1100)));
    for (double u : us) {
        if (u == 0.0)
            continue;
        ScriptedRandomizer r({u});
        EXPECT_EQ(literalExponential(u), r.exponentialDraw()) << "u " << u;
    }
}

TEST(TalvoRandomizer, DrawModuloAndRange) {
    ScriptedRandomizer r({0.99999, 1.0, 0.0, 0.25, 0.5});
    EXPECT_EQ(9, r.drawModulo(10));
    EXPECT_EQ(10, r.drawModulo(10));
    EXPECT_EQ(0, r.drawModulo(10));
    EXPECT_EQ(-3, r.drawModulo(-10));
    EXPECT_EQ(3.0, r.uniformDraw(2.0, 4.0));
}

// The base class and a zero multiplier draw only zeros and never hang.
TEST(TalvoRandomizer, DegenerateGeneratorsDrawZero) {
    TalvoRandomizer base;
    TalvoCongruentialRandomizer zero(2147483647, 0, 0);
    EXPECT_EQ(nullptr, base.copy());
    for (TalvoRandomizer* r : {&base, static_cast<TalvoRandomizer*>(&zero)}) {
        EXPECT_EQ(0, r->draw());
        EXPECT_EQ(0.0, r->exponentialDraw());
    }
    EXPECT_EQ(0.0, zero.normalDraw());
}

// A reset cache makes the next call draw a new pair; lognormal and beta follow
// their formulas; a congruential copy continues the seed without the cache.
TEST(TalvoRandomizer, DerivedDrawsAndCopies) {
    const double z = 0.802356008872396;  // first deviate of the pair (0.6, 0.7)
    ScriptedRandomizer s({0.6, 0.7, 0.6, 0.7});
    EXPECT_EQ(z, s.normalDraw());
    s.resetNormalDrawValue();
    EXPECT_EQ(z, s.normalDraw());
    EXPECT_EQ(4, s.used);
    ScriptedRandomizer l({0.6, 0.7});  // factor e^(0.5 x 1.9599) at 95 %: sigma 0.5
    EXPECT_DOUBLE_EQ(std::exp(std::log(2.0) - 0.125 + 0.5 * z), l.lognormalDraw(2, std::exp(0.5 * 1.9599), 0.95));
    TalvoCongruentialRandomizer r(1);
    r.normalDraw();  // leaves a cached deviate that the copy must not take
    TalvoRandomizer* c = r.copy();
    r.resetNormalDrawValue();
    double x = c->gammaDraw(0.5), y = c->gammaDraw(3);
    EXPECT_EQ(x / (x + y), r.betaDraw(0.5, 3));
    delete c;
}
