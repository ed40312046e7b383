/// @file
/// TalvoQuantileTable and TalvoQuantilizer: streaming quantile estimation in
/// fixed memory.
///
/// A quantilizer keeps numberOfBuffers data tables of bufferSize doubles each
/// (tables[1] to tables[b]) plus one scratch table (tables[0]). Values fill the
/// data tables from left to right; a table that fills up is sorted. When every
/// table is full, a run of tables at the right end is collapsed into one table
/// of higher weight by picking equally spaced values of their weighted merge,
/// which frees the tables after it.
///
/// Invariants: tables 1 to current-1 are full and sorted; a table's `weight` is
/// the number of input values each stored value stands for, its `level` the
/// number of collapses that produced it; count <= capacity for every table.
///
/// A TalvoQuantileTable is both such a buffer and the result of every
/// extraction (values in `values[0 .. count-1]`).
#pragma once

#include <talvo/foundation/TalvoObject.h>

class TalvoQuantilizer;

/// A table of values with a count, a level and a weight: a quantilizer's
/// buffer, and the result of its extractions.
class TALVO_API TalvoQuantileTable : public TalvoObject<TalvoQuantileTable> {
public:
    static constexpr const char* ClassName = "TalvoQuantileTable";  ///< Name in the allocation trace.

    /// A table of `capacity` slots, all 0.0 (a negative capacity counts as 0).
    /// A failed allocation of the slots writes "Memory overflow.\n" to the dump
    /// file and leaves a table of capacity 0.
    explicit TalvoQuantileTable(int capacity);
    /// Releases the slots.
    ~TalvoQuantileTable();
    /// Not copyable (the table owns its slots): use copyContent.
    TalvoQuantileTable(const TalvoQuantileTable&) = delete;
    /// Not assignable: use copyContent.
    TalvoQuantileTable& operator=(const TalvoQuantileTable&) = delete;

    /// Empties the table: lower bound -2147483648.0, count, cursor and level 0,
    /// weight 1. The slot values are left as they are.
    void reset();
    /// The value in slot i; 0.0 when i is outside 0 .. capacity-1.
    double getQuantile(int i) const;
    /// The value in slot 0 (the smallest once sorted); 0.0 for capacity 0.
    double getMinimumValue() const;
    /// Sorts the first `count` values ascending. O(count log count).
    void sortValues();
    /// Copies the lower bound, as many slot values as both tables hold, count,
    /// cursor, level and weight of `other` (count and cursor are limited to
    /// this table's capacity). Nothing happens for null.
    void copyContent(const TalvoQuantileTable* other);
    /// capacity x 8 + 40.
    int getSizeInBytes() const;

    /// The number of slots.
    int getCapacity() const { return capacity; }
    /// The number of slots in use.
    int getCount() const { return count; }
    /// How many collapses produced the values (0 for raw values).
    int getLevel() const { return level; }
    /// How many original values each value stands for.
    int getWeight() const { return weight; }
    /// The lower bound written by reset and by a collapse.
    double getLowerBound() const { return lowerBound; }

private:
    friend class TalvoQuantilizer;

    bool isFull() const { return count >= capacity; }
    bool hasNext() const { return cursor < count; }
    double nextValue() const { return values[cursor]; }

    int capacity;
    double lowerBound;  ///< written on reset and by a collapse, never read
    double* values;
    int count;
    int cursor;  ///< read position during a merge
    int level;
    int weight;
};

/// Approximate quantiles of a stream of values in bounded memory.
class TALVO_API TalvoQuantilizer : public TalvoObject<TalvoQuantilizer> {
public:
    static constexpr const char* ClassName = "TalvoQuantilizer";  ///< Name in the allocation trace.

    /// numberOfBuffers data tables (raised to 2 if smaller) of bufferSize slots
    /// (raised to 1 if smaller) plus the scratch table. A failed allocation
    /// writes "Memory overflow.\n" to the dump file and leaves a quantilizer
    /// that ignores values and extracts null.
    TalvoQuantilizer(int numberOfBuffers, int bufferSize);
    /// Releases every table.
    ~TalvoQuantilizer();
    /// Not copyable (it owns its tables): use copy().
    TalvoQuantilizer(const TalvoQuantilizer&) = delete;
    /// Not assignable: use copy().
    TalvoQuantilizer& operator=(const TalvoQuantilizer&) = delete;

    /// Deletes a quantilizer given as an Item (free call-back); nothing for null.
    static void free(void* quantilizer);
    /// A new quantilizer with the same buffers, contents and fill position,
    /// owned by the caller.
    TalvoQuantilizer* copy() const;
    /// Empties every table; the next value goes to buffer 1.
    void reset();

    /// Adds one value. Collapses the right-hand buffers first when all are
    /// full. O(bufferSize log bufferSize) when a buffer fills,
    /// O(numberOfBuffers x bufferSize) when buffers collapse, else O(1).
    void addValue(double x);

    /// @name Extractions
    /// Each extraction returns a new table of capacity n owned by the caller
    /// (null when n < 1 or the quantilizer could not allocate its tables). The
    /// partly filled buffer is sorted first.
    /// @{

    /// n equally spaced values of the weighted merge of all data (count n); an
    /// empty quantilizer gives n zeros. Values of 2147483647.0 and above are
    /// never picked. O(n + data).
    TalvoQuantileTable* extractQuantiles(int n);
    /// The means of n bins of (nearly) equal weight, in ascending order (count
    /// n). A bin that receives no value (n above the number of values) is
    /// not-a-number. O(data x numberOfBuffers).
    TalvoQuantileTable* extractBins(int n);
    /// A histogram of n equal-width slots over [minimum, maximum): each value
    /// adds its weight to its slot; values below go to slot 0, values at or
    /// above maximum to slot n-1. The table's count stays 0. O(n + data).
    TalvoQuantileTable* extractDistribution(double minimum, double maximum, int n);
    /// extractDistribution followed by running sums over the slots.
    TalvoQuantileTable* extractCumulativeDistribution(double minimum, double maximum, int n);
    /// @}

    /// numberOfBuffers x 4 + 16 plus the size of every table.
    int getSizeInBytes() const;

    /// The number of data buffers.
    int getNumberOfBuffers() const { return numberOfBuffers; }
    /// The number of slots of each buffer.
    int getBufferSize() const { return bufferSize; }
    /// Index of the buffer being filled (numberOfBuffers + 1 when all are full).
    int getCurrent() const { return current; }
    /// Data buffer i (1 to numberOfBuffers) or the scratch table (0); null
    /// outside that range. The quantilizer keeps ownership.
    const TalvoQuantileTable* getTable(int i) const;

private:
    bool _allocateTables();
    void _freeTables();
    int _lastDataBuffer();
    TalvoQuantileTable* getBufferWithMinimumTopValue(int first, int last);
    void collapseBuffers(int first, int last);
    void collapseRightBuffers();
    void _rewindCursors(int last);

    TalvoQuantileTable** tables;  ///< [0] scratch, [1 .. numberOfBuffers] data
    int numberOfBuffers;
    int bufferSize;
    int current;
};
