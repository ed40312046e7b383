#include <talvo/stats/TalvoBinTable.h>

#include <cstring>
#include <utility>

namespace {

double* newEntries(int size) {
    return static_cast<double*>(TalvoMemoryManager::newCell(sizeof(double) * static_cast<std::size_t>(size)));
}

void deleteEntries(double* entries) {
    if (entries)
        TalvoMemoryManager::deleteCell(entries);
}

}  // namespace

TalvoBinTable::TalvoBinTable(int targetSize, int shrinkFactor)
    : targetSize(targetSize),
      shrinkFactor(shrinkFactor),
      size(0),
      top(0),
      weight(0.0),
      values(nullptr),
      weights(nullptr) {
    if (targetSize < 1 || shrinkFactor < 1)
        return;
    long long wanted = static_cast<long long>(targetSize) * shrinkFactor;
    if (wanted > 0x7fffffff)
        return;
    values = newEntries(static_cast<int>(wanted));
    weights = newEntries(static_cast<int>(wanted));
    if (values && weights) {
        size = static_cast<int>(wanted);
        return;
    }
    deleteEntries(values);
    deleteEntries(weights);
    values = weights = nullptr;
}

TalvoBinTable::~TalvoBinTable() {
    deleteEntries(values);
    deleteEntries(weights);
}

TalvoBinTable* TalvoBinTable::copy() const {
    TalvoBinTable* result = new TalvoBinTable(targetSize, shrinkFactor);
    if (!result || result->size != size)
        return result;
    result->weight = weight;
    result->top = top;
    if (top > 0) {
        std::memcpy(result->values, values, sizeof(double) * static_cast<std::size_t>(top));
        std::memcpy(result->weights, weights, sizeof(double) * static_cast<std::size_t>(top));
    }
    return result;
}

void TalvoBinTable::reset() {
    weight = 0.0;
    top = 0;
    for (int i = 0; i < size; ++i) {
        values[i] = 0.0;
        weights[i] = 0.0;
    }
}

void TalvoBinTable::addValue(double x) {
    if (size == 0)
        return;
    if (_isFull())
        shrink(targetSize);
    // A shrink factor of 1 merges into as many bins as there are entries.
    if (_isFull())
        shrink(size - 1);
    if (_isFull())
        _mergeIntoLastEntry(x);
    else
        _append(x);
}

void TalvoBinTable::_append(double x) {
    values[top] = x;
    weights[top] = 1.0;
    ++top;
    weight += 1.0;
}

void TalvoBinTable::_mergeIntoLastEntry(double x) {
    int last = top - 1;
    double w = weights[last];
    values[last] = (values[last] * w + x) / (w + 1.0);
    weights[last] = w + 1.0;
    weight += 1.0;
}

void TalvoBinTable::shrink(int k) {
    if (k < 1 || k > size)
        return;
    _sort();
    double binWeight = weight / k;
    double carriedWeight = 0.0;
    double carriedSum = 0.0;  // sum of value x weight carried to the next bin
    int out = 0;              // next bin written; never ahead of the entry read
    for (int i = 0; i < top; ++i) {
        double v = values[i];
        double w = weights[i];
        values[i] = 0.0;
        weights[i] = 0.0;
        if (carriedWeight + w >= binWeight) {
            // One bin per entry at most: an excess beyond one bin is carried on.
            double part = binWeight - carriedWeight;
            weights[out] = binWeight;
            values[out] = (carriedSum + part * v) / binWeight;
            ++out;
            carriedWeight = w - part;
            carriedSum = carriedWeight * v;
        } else {
            carriedSum += v * w;
            carriedWeight += w;
        }
    }
    if (carriedWeight > 0.0 && out < size) {
        weights[out] = carriedWeight;
        values[out] = carriedSum / carriedWeight;
        top = out + 1;
    } else if (carriedWeight > 0.0) {
        // Every slot holds a bin (only with k = size): the rounding residue
        // joins the last bin rather than a slot past the arrays.
        int last = out - 1;
        values[last] = (values[last] * weights[last] + carriedSum) / (weights[last] + carriedWeight);
        weights[last] += carriedWeight;
        top = out;
    } else {
        top = out;
    }
}

// Exchange sort by value, one cursor stepping back after each exchange; equal
// values are never exchanged, so entries of equal value keep their order.
void TalvoBinTable::_sort() {
    // Read literally the loop below never ends on an empty table.
    if (top < 2)
        return;
    int i = 0;
    while (i != top - 1) {
        if (values[i + 1] < values[i]) {
            _swapEntries(i, i + 1);
            i = i == 0 ? 1 : i - 1;
        } else {
            ++i;
        }
    }
}

void TalvoBinTable::_swapEntries(int i, int j) {
    std::swap(values[i], values[j]);
    std::swap(weights[i], weights[j]);
}

double TalvoBinTable::getValue(int i) const {
    return i >= 0 && i < size ? values[i] : 0.0;
}

double TalvoBinTable::getWeight(int i) const {
    return i >= 0 && i < size ? weights[i] : 0.0;
}
