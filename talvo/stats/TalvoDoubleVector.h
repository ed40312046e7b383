/// @file
/// TalvoDoubleVector: a fixed-size vector of doubles for numeric work.
///
/// The object holds its size and one owned, zero-filled block of `size`
/// doubles (the block itself is not traced). The size never changes.
///
/// Operations taking a second vector walk this vector's indexes and read the
/// other at the same indexes, so the other should be at least as long. As
/// guards only: a null other vector counts as empty, and indexes the other
/// lacks are skipped; an index outside this vector reads 0.0 and writes
/// nothing. None of these guards changes a result of a valid call.
///
/// The extremes keep the library's starting values: minima start at the
/// largest double, maxima at the smallest positive double (so a vector of
/// negative values reports that tiny positive number as its maximum).
#pragma once

#include <talvo/foundation/TalvoObject.h>

#include <cstdio>

class TalvoStream;

/// A fixed-size vector of doubles that owns its values.
class TALVO_API TalvoDoubleVector : public TalvoObject<TalvoDoubleVector> {
public:
    static constexpr const char* ClassName = "TalvoDoubleVector";  ///< Name in the allocation trace.

    /// `size` zeros; a negative size gives an empty vector. A failed block
    /// allocation writes "Memory overflow.\n" to the dump file and leaves the
    /// vector empty.
    explicit TalvoDoubleVector(int size);
    /// Releases the values.
    ~TalvoDoubleVector();
    /// Copying would share the block; `copy` is the way to duplicate.
    TalvoDoubleVector(const TalvoDoubleVector&) = delete;
    /// Not assignable, for the same reason.
    TalvoDoubleVector& operator=(const TalvoDoubleVector&) = delete;
    /// Deletes a vector (free call-back); nothing for null.
    static void free(void* vector);
    /// A new vector of the same size and values, owned by the caller. O(size).
    TalvoDoubleVector* copy();

    /// The number of elements (0 when the block could not be allocated).
    int getSize();

    /// @name One element
    /// 0.0 and no change for an index outside the vector. Division follows
    /// IEEE rules: dividing by 0.0 gives an infinity or NaN.
    /// @{

    /// Element `i`.
    double get(int i);
    /// Element `i` becomes `d`.
    void set(int i, double d);
    /// Adds `d` to element `i`.
    void add(int i, double d);
    /// Subtracts `d` from element `i`.
    void sub(int i, double d);
    /// Multiplies element `i` by `d`.
    void mul(int i, double d);
    /// Divides element `i` by `d`.
    void div(int i, double d);
    /// @}

    /// @name Every element with a scalar
    /// O(size).
    /// @{

    /// Every element becomes `d`.
    void set(double d);
    /// Adds `d` to every element.
    void add(double d);
    /// Subtracts `d` from every element.
    void sub(double d);
    /// Multiplies every element by `d`.
    void mul(double d);
    /// Divides every element by `d`.
    void div(double d);
    /// @}

    /// @name Every element with the element of v at the same index
    /// O(size). A null `v` changes nothing.
    /// @{

    /// values[i] = v[i].
    void set(TalvoDoubleVector* v);
    /// values[i] += v[i].
    void add(TalvoDoubleVector* v);
    /// values[i] -= v[i].
    void sub(TalvoDoubleVector* v);
    /// values[i] *= v[i].
    void mul(TalvoDoubleVector* v);
    /// values[i] /= v[i].
    void div(TalvoDoubleVector* v);
    /// @}

    /// @name Every element with d times the element of v
    /// O(size). A null `v` changes nothing.
    /// @{

    /// values[i] = d * v[i].
    void set(double d, TalvoDoubleVector* v);
    /// values[i] += d * v[i].
    void add(double d, TalvoDoubleVector* v);
    /// values[i] -= d * v[i].
    void sub(double d, TalvoDoubleVector* v);
    /// values[i] *= d * v[i].
    void mul(double d, TalvoDoubleVector* v);
    /// values[i] /= d * v[i].
    void div(double d, TalvoDoubleVector* v);

    /// Every element whose absolute value is at most eps becomes 0.0. O(size).
    void round(double eps);
    /// @}

    /// @name Extremes
    /// O(size). An empty vector (or a null `v`) gives the starting value.
    /// @{

    /// Smallest element, starting from the largest double.
    double getMinValue();
    /// Largest element, starting from the smallest positive double.
    double getMaxValue();
    /// Smallest values[i] - v[i], starting from the largest double.
    double getMinDiff(TalvoDoubleVector* v);
    /// Largest values[i] - v[i], starting from the smallest positive double.
    double getMaxDiff(TalvoDoubleVector* v);
    /// Smallest |values[i] - v[i]|, starting from the largest double.
    double getMinSlack(TalvoDoubleVector* v);
    /// Largest |values[i] - v[i]|, starting from 0.0.
    double getMaxSlack(TalvoDoubleVector* v);
    /// Smallest relative slack |a - b| / ((|a| + |b|) / 2), 0.0 where both
    /// elements are 0.0; starting from the largest double.
    double getMinRelativeSlack(TalvoDoubleVector* v);
    /// Largest relative slack, starting from 0.0.
    double getMaxRelativeSlack(TalvoDoubleVector* v);
    /// @}

    /// @name Products and comparison
    /// O(size). A null `v` counts as empty.
    /// @{

    /// Sum of values[i] * v[i]; 0.0 for an empty or null vector.
    double getProduct(TalvoDoubleVector* v);
    /// Square root of the sum of |values[i] * v[i]|: a product, not the
    /// Euclidean distance between the vectors (kept on purpose).
    double getDistance(TalvoDoubleVector* v);
    /// getDistance(this): the Euclidean norm.
    double getNorm();

    /// -1 or 1 at the first index where this vector's element is smaller or
    /// larger than v's, 0 when none differs. Only this vector's size counts.
    /// O(size).
    int compare(TalvoDoubleVector* v);
    /// Compare call-back: a->compare(b); 0 when a is null.
    static int compare(void* a, void* b);

    /// Writes "<", the elements with "%g" separated by ",", then ">".
    /// Nothing for a null file. O(size).
    void print(FILE* file);
    /// The same text written on a stream (each element with "%g", whatever the
    /// stream's precision). Nothing for a null stream. O(size).
    void print(TalvoStream* stream);
    /// @}

private:
    int size;
    double* values;

    /// Number of indexes shared with `v`: this size, or less when v is shorter.
    int _commonSize(TalvoDoubleVector* v);
    bool _isIndex(int i);
};
