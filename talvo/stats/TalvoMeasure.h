/// @file
/// TalvoMeasure: running statistics of a named stream of doubles.
///
/// Keeps the count, the sum, the sum of squares, the last value, the minimum
/// and the maximum of the values added, and derives mean, standard deviation
/// and 95 % confidence figures from them. It may own a TalvoQuantilizer and a
/// TalvoBinTable, both fed with every value added.
///
/// The minimum starts at the largest double and the maximum at the smallest
/// positive double (not at -DBL_MAX): a measure that only saw values at or
/// below zero reports 2.2250738585072014e-308 as its maximum, on purpose.
#pragma once

#include <talvo/foundation/TalvoObject.h>

class TalvoQuantilizer;
class TalvoBinTable;

/// Running statistics (count, sums, extremes) of a named stream of doubles.
class TALVO_API TalvoMeasure : public TalvoObject<TalvoMeasure> {
public:
    static constexpr const char* ClassName = "TalvoMeasure";  ///< Name in the allocation trace.

    /// A measure named with a copy of `name` (null for none).
    explicit TalvoMeasure(const char* name = nullptr);
    /// Deletes the bin table, the quantilizer and the name.
    ~TalvoMeasure();
    /// Not copy-constructible: use copy().
    TalvoMeasure(const TalvoMeasure&) = delete;
    /// Copies every field as it is: both measures then share the name, the
    /// quantilizer and the bin table. Use `copy` to duplicate.
    TalvoMeasure& operator=(const TalvoMeasure&) = default;

    /// Deletes a measure given as an Item (free call-back); nothing for null.
    static void free(void* measure);
    /// A new measure with a copy of the name, the same reference, sums, count,
    /// minimum and maximum, and copies of the quantilizer and bin table. The
    /// last value is not copied (0.0). Owned by the caller.
    TalvoMeasure* copy() const;
    /// Forgets every value: sums and count 0, minimum and maximum back to their
    /// starting values, the quantilizer and the bin table emptied. Name,
    /// reference and last value are kept.
    void reset();

    /// Accounts x in the sums, the extremes, the quantilizer and the bin table.
    void addValue(double x);

    /// Sum / count; 0.0 without values.
    double computeMean() const;
    /// Sample (n - 1) standard deviation; 0.0 below 2 values.
    double computeStandardDeviation() const;
    /// Deviation x 1.96 / sqrt(n), the half-width of the 95 % interval of the
    /// mean; 0.0 below 2 values.
    double computeNinetyFivePercentConfidenceSlack() const;
    /// e to the power deviation x 1.96, for values on a logarithmic scale;
    /// 0.0 below 2 values.
    double computeNinetyFivePercentErrorFactor() const;

    /// Weighted merge: each sum becomes (weight x this + otherWeight x other's)
    /// / (weight + otherWeight), and the extremes widen to other's. Count, last
    /// value, quantilizer and bin table stay as they are. Null does nothing.
    void import(const TalvoMeasure* other, double weight, double otherWeight);

    /// The quantilizer, owned by the measure (null when none).
    TalvoQuantilizer* getQuantilizer() const { return quantilizer; }
    /// Deletes the current quantilizer and takes ownership of `q` (may be null).
    void setQuantilizer(TalvoQuantilizer* q);
    /// The bin table, owned by the measure (null when none).
    TalvoBinTable* getBinTable() const { return binTable; }
    /// Replaces the bin table by a new empty one (null if allocation fails).
    void createBinTable(int targetSize, int shrinkFactor);
    /// Deletes the bin table.
    void deleteBinTable();

    /// The name, owned by the measure (null when none).
    const char* getName() const { return name; }
    /// -1, 0 or 1 by unsigned bytes; a null name sorts first, two nulls are equal.
    int compareName(const char* other) const;
    /// compareName(other's name); a null other counts as one without a name.
    int compareNames(const TalvoMeasure* other) const;
    /// Compare call-back: a measure against a name. A null measure counts as
    /// one without a name.
    static int compareName(void* measure, void* name);
    /// Compare call-back: two measures by name. A null measure counts as one
    /// without a name.
    static int compareNames(void* a, void* b);

    /// The caller's item attached to the measure (not owned); null when none.
    void* getReference() const { return reference; }
    /// Attaches the caller's item; the measure never reads or frees it.
    void setReference(void* item) { reference = item; }
    /// The sum of the values added.
    double getSumOfValues() const { return sumOfValues; }
    /// The sum of their squares.
    double getSumOfValueSquares() const { return sumOfValueSquares; }
    /// The number of values added.
    int getNumberOfValues() const { return numberOfValues; }
    /// The last value added; 0.0 before any.
    double getLastValue() const { return lastValue; }
    /// The smallest value, starting at the largest double.
    double getMinimumValue() const { return minimumValue; }
    /// The largest value, starting at the smallest positive double.
    double getMaximumValue() const { return maximumValue; }

private:
    char* name;
    void* reference;  ///< the caller's item, never interpreted
    double sumOfValues;
    double sumOfValueSquares;
    int numberOfValues;
    double lastValue;
    double minimumValue;
    double maximumValue;
    TalvoQuantilizer* quantilizer;
    TalvoBinTable* binTable;
};
