/// @file
/// TalvoBinTable: a fixed-capacity histogram of weighted values.
///
/// Two parallel arrays of `size` = targetSize x shrinkFactor doubles hold the
/// entries (value, weight); entries 0 .. top-1 are in use and `weight` is the
/// sum of their weights. A new value is one entry of weight 1. When the table
/// is full it is shrunk: entries are sorted by value and merged into
/// targetSize bins of equal weight, written over the front of the same arrays.
/// The total weight never changes by a shrink.
#pragma once

#include <talvo/foundation/TalvoObject.h>

/// A fixed-capacity histogram of weighted values, shrunk into bins when full.
class TALVO_API TalvoBinTable : public TalvoObject<TalvoBinTable> {
public:
    static constexpr const char* ClassName = "TalvoBinTable";  ///< Name in the allocation trace.

    /// An empty table of targetSize x shrinkFactor entries. A target size or a
    /// shrink factor below 1 (or a failed allocation, reported as
    /// "Memory overflow.\n" in the dump file) gives a table of size 0 that
    /// ignores values.
    TalvoBinTable(int targetSize, int shrinkFactor);
    /// Releases the entries.
    ~TalvoBinTable();
    /// Not copyable (the table owns its arrays): use copy().
    TalvoBinTable(const TalvoBinTable&) = delete;
    /// Not assignable: use copy().
    TalvoBinTable& operator=(const TalvoBinTable&) = delete;

    /// A new table with the same parameters, weight and entries, owned by the
    /// caller.
    TalvoBinTable* copy() const;
    /// Weight 0, no entries, every value and weight 0.0.
    void reset();

    /// Adds x with weight 1, shrinking to targetSize bins first when full.
    /// When that shrink frees no room (a shrink factor of 1), the table is
    /// shrunk to size - 1 bins; if even that leaves it full (size 1), x is
    /// merged into the last entry as a weighted mean. O(size^2) on a shrink.
    void addValue(double x);
    /// Sorts the entries and merges them into k bins of weight weight / k
    /// (the last one may be lighter). Nothing happens when k is below 1 or
    /// above the size. O(top^2).
    void shrink(int k);

    /// The value of entry i; 0.0 when i is outside 0 .. size-1.
    double getValue(int i) const;
    /// The weight of entry i; 0.0 when i is outside 0 .. size-1.
    double getWeight(int i) const;

    /// The number of bins a shrink makes.
    int getTargetSize() const { return targetSize; }
    /// How many times targetSize the capacity is.
    int getShrinkFactor() const { return shrinkFactor; }
    /// The capacity in entries: targetSize x shrinkFactor (0 for a table that
    /// ignores values).
    int getSize() const { return size; }
    /// The number of entries in use.
    int getTop() const { return top; }
    /// Total weight of all entries.
    double getWeight() const { return weight; }

private:
    bool _isFull() const { return top >= size; }
    void _append(double x);
    void _mergeIntoLastEntry(double x);
    void _sort();
    void _swapEntries(int i, int j);

    int targetSize;
    int shrinkFactor;
    int size;
    int top;
    double weight;
    double* values;
    double* weights;
};
