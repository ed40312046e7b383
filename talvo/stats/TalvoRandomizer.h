/// @file
/// Reproducible pseudo-random generators and the distributions drawn from them.
///
/// TalvoRandomizer holds the seed and one cached normal deviate and derives
/// every distribution from the virtual `uniformDraw`. Two concrete generators
/// supply it:
///   - TalvoCongruentialRandomizer: seed' = a x seed mod m evaluated by
///     Schrage's method on the seed XOR a mask, the result XOR-ed again;
///   - TalvoShuffledCongruentialRandomizer: the same recurrence without mask
///     behind a Bays-Durham shuffle table, loaded lazily on the first draw.
/// All integer arithmetic is signed 32-bit (wrapping on overflow with unusual
/// parameters), so the same parameters and seed give the same sequence
/// everywhere. Defaults: m = 2147483647, mask = 123459876, seed 12345.
///
/// Parameters of the distributions are not validated: they give what the
/// formulas give. Loops that wait for an acceptable draw give up after a
/// number of attempts no working generator ever needs, so a degenerate
/// generator (multiplier 0, the base class) cannot hang them.
#pragma once

#include <talvo/foundation/TalvoObject.h>

/// The base of the generators: a seed, one cached normal deviate, and every
/// distribution derived from uniformDraw().
class TALVO_API TalvoRandomizer : public TalvoObject<TalvoRandomizer> {
public:
    static constexpr const char* ClassName = "TalvoRandomizer";  ///< Name in the allocation trace.

    /// A generator with seed 12345 and no cached deviate. The base class draws
    /// nothing useful; use one of the derived generators.
    TalvoRandomizer();
    /// Releases the generator.
    virtual ~TalvoRandomizer();
    /// Not copyable: use copy().
    TalvoRandomizer(const TalvoRandomizer&) = delete;
    /// Not assignable: use copy().
    TalvoRandomizer& operator=(const TalvoRandomizer&) = delete;

    /// A new generator continuing the same sequence, owned by the caller.
    /// The base class returns null.
    virtual TalvoRandomizer* copy() const;
    /// One step of the integer generator. The base class returns 0.
    virtual int draw();
    /// A double in [0, 1] from the generator. The base class returns 0.0.
    virtual double uniformDraw();

    /// Sets the seed only: the cached deviate and a shuffle table stay.
    void setSeed(int seed);
    /// The current seed: the generator's state.
    int getSeed() const { return seed; }
    /// Forgets the cached normal deviate.
    void resetNormalDrawValue();

    /// low + uniformDraw() x (high - low).
    double uniformDraw(double low, double high);
    /// floor(uniformDraw() x n) as an int (saturated to the int range).
    int drawModulo(int n);
    /// A standard normal deviate (polar method, one deviate cached).
    double normalDraw();
    /// normalDraw() x deviation + mean.
    double normalDraw(double mean, double deviation);
    /// The two-sided standard score of a confidence level, from a table.
    static double standardScore(double probability);
    /// A log-normal deviate of the given mean whose error factor at the given
    /// confidence is `factor`.
    double lognormalDraw(double mean, double factor, double probability);
    /// A standard exponential deviate (mean 1).
    double exponentialDraw();
    /// A gamma deviate of scale 1. Not-a-number for a NaN shape or one far
    /// below zero.
    double gammaDraw(double shape);
    /// gammaDraw(shape) x scale.
    double gammaDraw(double shape, double scale);
    /// X / (X + Y) with X = gammaDraw(a) drawn before Y = gammaDraw(b).
    double betaDraw(double a, double b);

protected:
    int seed;                ///< The generator's state.
    double normalDrawValue;  ///< second deviate of the last polar pair; 0.0 for none
};

/// A multiplicative congruential generator with an XOR mask.
class TALVO_API TalvoCongruentialRandomizer : public TalvoRandomizer,
                                              public TalvoTracedAs<TalvoCongruentialRandomizer> {
public:
    static constexpr const char* ClassName = "TalvoCongruentialRandomizer";  ///< Name in the allocation trace.

    /// m = 2147483647, mask 123459876, seed 12345 and the multiplier of
    /// `kind`: 1 -> 16807, 2 -> 48271, 3 -> 69621, any other -> 16807.
    explicit TalvoCongruentialRandomizer(int kind = 1);
    /// The given modulus, multiplier and mask (see initialize), seed 12345.
    TalvoCongruentialRandomizer(int m, int a, int mask);
    /// Releases the generator.
    ~TalvoCongruentialRandomizer() override;

    /// Sets the parameters, seed 12345, no cached deviate. A multiplier of 0
    /// (or a modulus below it) makes every step give 0.
    void initialize(int m, int a, int mask);
    /// The XOR mask.
    int getMask() const { return mask; }
    /// The modulus m.
    int getModulus() const { return m; }
    /// The multiplier a.
    int getMultiplier() const { return a; }

    /// Same parameters and seed, no cached deviate.
    TalvoCongruentialRandomizer* copy() const override;
    /// seed = step(seed XOR mask) XOR mask; returns the new seed.
    int draw() override;
    /// draw() / m.
    double uniformDraw() override;
    using TalvoRandomizer::uniformDraw;

private:
    int m;
    int a;
    int mask;
    int q;  ///< m / a, for Schrage's method
    int r;  ///< m mod a
};

/// A congruential generator behind a Bays-Durham shuffle table.
class TALVO_API TalvoShuffledCongruentialRandomizer : public TalvoRandomizer,
                                                      public TalvoTracedAs<TalvoShuffledCongruentialRandomizer> {
public:
    static constexpr const char* ClassName = "TalvoShuffledCongruentialRandomizer";  ///< Name in the allocation trace.

    /// As TalvoCongruentialRandomizer(kind), with a table of 32 entries.
    explicit TalvoShuffledCongruentialRandomizer(int kind = 1);
    /// A table size below 1 counts as 1.
    TalvoShuffledCongruentialRandomizer(int m, int a, int mask, int size);
    /// Releases the table.
    ~TalvoShuffledCongruentialRandomizer() override;

    /// Sets the parameters and a new zeroed table, seed 12345, table not
    /// loaded, no cached deviate. The mask is kept but never used.
    void initialize(int m, int a, int mask, int size);
    /// The number of table entries.
    int getSize() const { return size; }
    /// The mask given, kept but never used.
    int getMask() const { return mask; }

    /// Loads the table from the seed (0 taken as 1, a negative seed negated,
    /// eight warm-up steps). O(size).
    void reset();
    /// Same parameters, seed, table and last output: the copy continues the
    /// same sequence. No cached deviate.
    TalvoShuffledCongruentialRandomizer* copy() const override;
    /// One shuffled step; loads the table first if needed.
    int draw() override;
    /// draw() / m.
    double uniformDraw() override;
    using TalvoRandomizer::uniformDraw;

private:
    void _allocateTable(int size);
    void _freeTable();
    int _tableIndex(int output) const;

    int m;
    int a;
    int mask;
    int q;
    int r;
    int* table;
    int size;
    int divisor;     ///< (m - 1) / size + 1: maps an output to a table index
    int lastOutput;  ///< 0 while the table is not loaded
};
