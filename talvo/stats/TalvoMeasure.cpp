#include <talvo/stats/TalvoMeasure.h>

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/stats/TalvoBinTable.h>
#include <talvo/stats/TalvoQuantilizer.h>

#include <cfloat>
#include <cmath>

namespace {

const double kStartingMinimum = DBL_MAX;
// The smallest positive normal double, not -DBL_MAX: callers rely on it.
const double kStartingMaximum = DBL_MIN;
// Two-sided 95 % score of the normal distribution.
const double kNinetyFivePercentScore = 1.96;

const char* nameOf(const void* measure) {
    return measure ? static_cast<const TalvoMeasure*>(measure)->getName() : nullptr;
}

int compareNameTexts(const char* a, const char* b) {
    return TalvoRawString::compare(const_cast<char*>(a), const_cast<char*>(b));
}

}  // namespace

TalvoMeasure::TalvoMeasure(const char* name)
    : name(TalvoRawString::copy(name)),
      reference(nullptr),
      sumOfValues(0.0),
      sumOfValueSquares(0.0),
      numberOfValues(0),
      lastValue(0.0),
      minimumValue(kStartingMinimum),
      maximumValue(kStartingMaximum),
      quantilizer(nullptr),
      binTable(nullptr) {}

TalvoMeasure::~TalvoMeasure() {
    delete binTable;
    delete quantilizer;
    // Freeing null would still count a release, so only a real name is freed.
    if (name)
        TalvoRawString::free(name);
}

void TalvoMeasure::free(void* measure) {
    delete static_cast<TalvoMeasure*>(measure);
}

TalvoMeasure* TalvoMeasure::copy() const {
    TalvoMeasure* result = new TalvoMeasure(name);
    if (!result)
        return nullptr;
    result->reference = reference;
    result->sumOfValues = sumOfValues;
    result->sumOfValueSquares = sumOfValueSquares;
    result->numberOfValues = numberOfValues;
    result->minimumValue = minimumValue;
    result->maximumValue = maximumValue;
    if (quantilizer)
        result->quantilizer = quantilizer->copy();
    if (binTable)
        result->binTable = binTable->copy();
    return result;
}

void TalvoMeasure::reset() {
    sumOfValues = 0.0;
    sumOfValueSquares = 0.0;
    numberOfValues = 0;
    minimumValue = kStartingMinimum;
    maximumValue = kStartingMaximum;
    if (quantilizer)
        quantilizer->reset();
    if (binTable)
        binTable->reset();
}

void TalvoMeasure::addValue(double x) {
    ++numberOfValues;
    sumOfValues += x;
    sumOfValueSquares += x * x;
    lastValue = x;
    if (x < minimumValue)
        minimumValue = x;
    if (x > maximumValue)
        maximumValue = x;
    if (quantilizer)
        quantilizer->addValue(x);
    if (binTable)
        binTable->addValue(x);
}

double TalvoMeasure::computeMean() const {
    return numberOfValues == 0 ? 0.0 : sumOfValues / numberOfValues;
}

double TalvoMeasure::computeStandardDeviation() const {
    if (numberOfValues < 2)
        return 0.0;
    double n = numberOfValues;
    // The absolute value absorbs a slightly negative difference from rounding.
    return std::sqrt(std::fabs(sumOfValueSquares - sumOfValues * (sumOfValues / n)) / (n - 1.0));
}

double TalvoMeasure::computeNinetyFivePercentConfidenceSlack() const {
    if (numberOfValues < 2)
        return 0.0;
    return computeStandardDeviation() * kNinetyFivePercentScore / std::sqrt(static_cast<double>(numberOfValues));
}

double TalvoMeasure::computeNinetyFivePercentErrorFactor() const {
    if (numberOfValues < 2)
        return 0.0;
    return std::exp(computeStandardDeviation() * kNinetyFivePercentScore);
}

void TalvoMeasure::import(const TalvoMeasure* other, double weight, double otherWeight) {
    if (!other)
        return;
    double total = weight + otherWeight;
    sumOfValues = (weight * sumOfValues + otherWeight * other->sumOfValues) / total;
    sumOfValueSquares = (weight * sumOfValueSquares + otherWeight * other->sumOfValueSquares) / total;
    if (other->minimumValue < minimumValue)
        minimumValue = other->minimumValue;
    if (other->maximumValue > maximumValue)
        maximumValue = other->maximumValue;
}

void TalvoMeasure::setQuantilizer(TalvoQuantilizer* q) {
    if (q == quantilizer)
        return;
    delete quantilizer;
    quantilizer = q;
}

void TalvoMeasure::createBinTable(int targetSize, int shrinkFactor) {
    delete binTable;
    binTable = new TalvoBinTable(targetSize, shrinkFactor);
}

void TalvoMeasure::deleteBinTable() {
    delete binTable;
    binTable = nullptr;
}

int TalvoMeasure::compareName(const char* other) const {
    return compareNameTexts(name, other);
}

int TalvoMeasure::compareNames(const TalvoMeasure* other) const {
    return compareNameTexts(name, nameOf(other));
}

int TalvoMeasure::compareName(void* measure, void* name) {
    return compareNameTexts(nameOf(measure), static_cast<const char*>(name));
}

int TalvoMeasure::compareNames(void* a, void* b) {
    return compareNameTexts(nameOf(a), nameOf(b));
}
