#include <talvo/stats/TalvoQuantilizer.h>

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

// Lower bound written on reset and by a collapse (the smallest 32-bit int).
const double kLowerBound = -2147483648.0;
// A collapse never picks a value at or above this bound (the largest 32-bit int).
const double kCollapseBound = 2147483647.0;
const int kMinimumBuffers = 2;
const int kMinimumBufferSize = 1;
const int kTableHeaderBytes = 40;
const int kQuantilizerHeaderBytes = 16;
const int kBytesPerTablePointer = 4;
const char* const kPointerArrayLabel = "void*[]";

// a + b wrapping in 32 bits, for weights that a very long stream could overflow.
int wrappingAdd(int a, int b) {
    return static_cast<int>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

// Ascending order of doubles, with not-a-number last so that the order stays
// strict and weak (ordinary values sort as with the library's comparison).
bool ascending(double a, double b) {
    return a < b || (std::isnan(b) && !std::isnan(a));
}

// A table of `capacity` values, or null when its values cannot be allocated.
TalvoQuantileTable* newTableOf(int capacity) {
    TalvoQuantileTable* table = new TalvoQuantileTable(capacity);
    if (table && table->getCapacity() != capacity) {
        delete table;
        return nullptr;
    }
    return table;
}

}  // namespace

// ---------------------------------------------------------------- table

TalvoQuantileTable::TalvoQuantileTable(int capacity)
    : capacity(0), lowerBound(kLowerBound), values(nullptr), count(0), cursor(0), level(0), weight(1) {
    if (capacity <= 0)
        return;
    values = static_cast<double*>(TalvoMemoryManager::newCell(sizeof(double) * static_cast<std::size_t>(capacity)));
    if (values)
        this->capacity = capacity;
}

TalvoQuantileTable::~TalvoQuantileTable() {
    if (values)
        TalvoMemoryManager::deleteCell(values);
}

void TalvoQuantileTable::reset() {
    lowerBound = kLowerBound;
    count = 0;
    cursor = 0;
    level = 0;
    weight = 1;
}

double TalvoQuantileTable::getQuantile(int i) const {
    return i >= 0 && i < capacity ? values[i] : 0.0;
}

double TalvoQuantileTable::getMinimumValue() const {
    return getQuantile(0);
}

void TalvoQuantileTable::sortValues() {
    if (count > 1)
        std::sort(values, values + count, ascending);
}

void TalvoQuantileTable::copyContent(const TalvoQuantileTable* other) {
    if (!other)
        return;
    lowerBound = other->lowerBound;
    int shared = std::min(capacity, other->capacity);
    if (shared > 0)
        std::memcpy(values, other->values, sizeof(double) * static_cast<std::size_t>(shared));
    count = std::min(other->count, capacity);
    cursor = std::min(other->cursor, capacity);
    level = other->level;
    weight = other->weight;
}

int TalvoQuantileTable::getSizeInBytes() const {
    return capacity * static_cast<int>(sizeof(double)) + kTableHeaderBytes;
}

// ---------------------------------------------------------------- quantilizer

TalvoQuantilizer::TalvoQuantilizer(int numberOfBuffers, int bufferSize)
    : tables(nullptr),
      numberOfBuffers(std::max(numberOfBuffers, kMinimumBuffers)),
      bufferSize(std::max(bufferSize, kMinimumBufferSize)),
      current(1) {
    if (!_allocateTables())
        _freeTables();
}

TalvoQuantilizer::~TalvoQuantilizer() {
    _freeTables();
}

bool TalvoQuantilizer::_allocateTables() {
    std::size_t bytes = sizeof(TalvoQuantileTable*) * (static_cast<std::size_t>(numberOfBuffers) + 1);
    tables = static_cast<TalvoQuantileTable**>(TalvoMemoryManager::newCell(bytes));
    TalvoMemoryManager::traceNew(tables, kPointerArrayLabel);
    if (!tables)
        return false;
    for (int i = 0; i <= numberOfBuffers; ++i) {
        tables[i] = newTableOf(bufferSize);
        if (!tables[i])
            return false;
    }
    return true;
}

// Deletes the tables that exist and the pointer array; also undoes a
// partly failed allocation.
void TalvoQuantilizer::_freeTables() {
    if (tables) {
        for (int i = 0; i <= numberOfBuffers; ++i)
            delete tables[i];
    }
    TalvoMemoryManager::traceDelete(tables, kPointerArrayLabel);
    if (tables)
        TalvoMemoryManager::deleteCell(tables);
    tables = nullptr;
}

void TalvoQuantilizer::free(void* quantilizer) {
    delete static_cast<TalvoQuantilizer*>(quantilizer);
}

TalvoQuantilizer* TalvoQuantilizer::copy() const {
    TalvoQuantilizer* result = new TalvoQuantilizer(numberOfBuffers, bufferSize);
    if (!result || !result->tables || !tables)
        return result;
    for (int i = 0; i <= numberOfBuffers; ++i)
        result->tables[i]->copyContent(tables[i]);
    // Carried over so that adding to the copy continues where this one is.
    result->current = current;
    return result;
}

void TalvoQuantilizer::reset() {
    if (tables) {
        for (int i = 0; i <= numberOfBuffers; ++i)
            tables[i]->reset();
    }
    current = 1;
}

void TalvoQuantilizer::addValue(double x) {
    if (!tables)
        return;
    if (current > numberOfBuffers)
        collapseRightBuffers();
    TalvoQuantileTable* t = tables[current];
    t->values[t->count++] = x;
    if (t->isFull()) {
        t->sortValues();
        ++current;
    }
}

const TalvoQuantileTable* TalvoQuantilizer::getTable(int i) const {
    return tables && i >= 0 && i <= numberOfBuffers ? tables[i] : nullptr;
}

int TalvoQuantilizer::getSizeInBytes() const {
    int size = numberOfBuffers * kBytesPerTablePointer + kQuantilizerHeaderBytes;
    if (tables) {
        for (int i = 0; i <= numberOfBuffers; ++i)
            size += tables[i]->getSizeInBytes();
    }
    return size;
}

// ---------------------------------------------------------------- merging

// Ties go to the lowest index; the bound 2147483647.0 is kept as it is, so
// larger values are never chosen. Null when no table qualifies.
TalvoQuantileTable* TalvoQuantilizer::getBufferWithMinimumTopValue(int first, int last) {
    TalvoQuantileTable* best = nullptr;
    double minimum = kCollapseBound;
    for (int i = first; i <= last; ++i) {
        TalvoQuantileTable* t = tables[i];
        if (t->hasNext() && t->nextValue() < minimum) {
            minimum = t->nextValue();
            best = t;
        }
    }
    return best;
}

// Picks tables[0]->capacity equally spaced values of the weighted merge of
// tables first to last into tables[0].
void TalvoQuantilizer::collapseBuffers(int first, int last) {
    TalvoQuantileTable* out = tables[0];
    out->lowerBound = kLowerBound;
    out->level = tables[first]->level + 1;
    out->weight = 0;
    out->count = 0;
    out->cursor = 0;
    double total = 0.0;
    for (int i = first; i <= last; ++i) {
        TalvoQuantileTable* t = tables[i];
        out->weight = wrappingAdd(out->weight, t->weight);
        t->cursor = 0;
        total += static_cast<double>(t->count) * t->weight;
    }
    double step = total / out->capacity;
    double position = 0.0;
    double target = 0.0;
    while (out->count < out->capacity) {
        target += step;
        // A slot whose step was already overshot by a heavy value gets 0.0,
        // not the previous value: kept on purpose.
        double value = 0.0;
        while (position < target) {
            TalvoQuantileTable* t = getBufferWithMinimumTopValue(first, last);
            if (!t) {
                position = target;
                break;
            }
            value = t->values[t->cursor++];
            position += t->weight;
        }
        out->values[out->count++] = value;
    }
}

void TalvoQuantilizer::collapseRightBuffers() {
    int b = numberOfBuffers;
    int level = tables[b - 1]->level;
    int i = b - 1;
    while (i > 1 && tables[i]->level == level)
        --i;
    // A lower-level table where the scan stopped joins the collapse.
    int start = tables[i]->level > level && i < b - 1 ? i + 1 : i;
    collapseBuffers(start, b);
    std::swap(tables[0], tables[start]);
    current = start + 1;
    for (int j = start + 1; j <= b; ++j)
        tables[j]->reset();
}

// ---------------------------------------------------------------- extraction

// Sorts the partly filled buffer and returns the index of the last data buffer.
int TalvoQuantilizer::_lastDataBuffer() {
    if (current <= numberOfBuffers) {
        tables[current]->sortValues();
        return current;
    }
    return numberOfBuffers;
}

void TalvoQuantilizer::_rewindCursors(int last) {
    for (int i = 1; i <= last; ++i)
        tables[i]->cursor = 0;
}

TalvoQuantileTable* TalvoQuantilizer::extractQuantiles(int n) {
    if (!tables || n < 1)
        return nullptr;
    int last = _lastDataBuffer();
    TalvoQuantileTable* result = newTableOf(n);
    if (!result)
        return nullptr;
    TalvoQuantileTable* scratch = tables[0];
    tables[0] = result;
    collapseBuffers(1, last);
    tables[0] = scratch;
    return result;
}

TalvoQuantileTable* TalvoQuantilizer::extractBins(int n) {
    if (!tables || n < 1)
        return nullptr;
    int last = _lastDataBuffer();
    TalvoQuantileTable* result = newTableOf(n);
    if (!result)
        return nullptr;
    _rewindCursors(last);
    long long total = 0;
    for (int i = 1; i <= last; ++i)
        total += static_cast<long long>(tables[i]->count) * tables[i]->weight;
    long long consumed = 0;
    for (int j = 1; j <= n; ++j) {
        long long threshold = std::min(j * total / n, total);
        long long binWeight = 0;
        double binSum = 0.0;
        while (consumed < threshold) {
            TalvoQuantileTable* best = nullptr;
            double minimum = DBL_MAX;
            for (int i = 1; i <= last; ++i) {
                TalvoQuantileTable* t = tables[i];
                if (t->hasNext() && t->nextValue() < minimum) {
                    minimum = t->nextValue();
                    best = t;
                }
            }
            if (!best)
                break;  // only values no ordering can pick (infinite or NaN) are left
            double value = best->values[best->cursor++];
            binWeight += best->weight;
            binSum += value * best->weight;
            consumed += best->weight;
        }
        // An empty bin is not-a-number, as 0 / 0 gives.
        result->values[j - 1] = binWeight == 0 ? std::numeric_limits<double>::quiet_NaN()
                                               : binSum / static_cast<double>(binWeight);
    }
    result->count = n;
    return result;
}

TalvoQuantileTable* TalvoQuantilizer::extractDistribution(double minimum, double maximum, int n) {
    if (!tables || n < 1)
        return nullptr;
    int last = _lastDataBuffer();
    TalvoQuantileTable* result = newTableOf(n);
    if (!result)
        return nullptr;
    double width = (maximum - minimum) / n;
    for (int i = 1; i <= last; ++i) {
        const TalvoQuantileTable* t = tables[i];
        for (int k = 0; k < t->count; ++k) {
            double v = t->values[k];
            int slot;
            if (v < minimum) {
                slot = 0;
            } else if (v >= maximum) {
                slot = n - 1;
            } else {
                // Rounding (or a NaN value) could land outside the table.
                double index = std::floor((v - minimum) / width);
                slot = index >= 0.0 ? static_cast<int>(std::min(index, static_cast<double>(n - 1))) : 0;
            }
            result->values[slot] += t->weight;
        }
    }
    return result;
}

TalvoQuantileTable* TalvoQuantilizer::extractCumulativeDistribution(double minimum, double maximum, int n) {
    TalvoQuantileTable* result = extractDistribution(minimum, maximum, n);
    if (!result)
        return nullptr;
    for (int i = 1; i < n; ++i)
        result->values[i] += result->values[i - 1];
    return result;
}
