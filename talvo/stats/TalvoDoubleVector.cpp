#include <talvo/stats/TalvoDoubleVector.h>

#include <talvo/text/TalvoStream.h>

#include <cfloat>
#include <cmath>

namespace {

// Starting values of the extremes. The maxima start at the smallest positive
// double, not at -DBL_MAX: callers rely on it.
const double kMinStart = DBL_MAX;
const double kMaxStart = DBL_MIN;
const double kSlackStart = 0.0;

double relativeSlack(double a, double b) {
    if (a == 0.0 && b == 0.0)
        return 0.0;
    return std::fabs(a - b) / ((std::fabs(a) + std::fabs(b)) * 0.5);
}

// Strict comparisons: an element replaces the extreme only when it beats it.
void keepSmaller(double& extreme, double d) {
    if (d < extreme)
        extreme = d;
}

void keepLarger(double& extreme, double d) {
    if (d > extreme)
        extreme = d;
}

}  // namespace

TalvoDoubleVector::TalvoDoubleVector(int size) : size(0), values(nullptr) {
    int wanted = size > 0 ? size : 0;
    values = static_cast<double*>(TalvoMemoryManager::newCell(sizeof(double) * static_cast<std::size_t>(wanted)));
    if (values)
        this->size = wanted;
}

TalvoDoubleVector::~TalvoDoubleVector() {
    TalvoMemoryManager::deleteCell(values);
}

void TalvoDoubleVector::free(void* vector) {
    delete static_cast<TalvoDoubleVector*>(vector);
}

TalvoDoubleVector* TalvoDoubleVector::copy() {
    TalvoDoubleVector* result = new TalvoDoubleVector(size);
    if (result)
        result->set(this);
    return result;
}

int TalvoDoubleVector::getSize() {
    return size;
}

bool TalvoDoubleVector::_isIndex(int i) {
    return i >= 0 && i < size;
}

int TalvoDoubleVector::_commonSize(TalvoDoubleVector* v) {
    if (!v)
        return 0;
    return v->size < size ? v->size : size;
}

double TalvoDoubleVector::get(int i) {
    return _isIndex(i) ? values[i] : 0.0;
}

void TalvoDoubleVector::set(int i, double d) {
    if (_isIndex(i))
        values[i] = d;
}

void TalvoDoubleVector::add(int i, double d) {
    if (_isIndex(i))
        values[i] += d;
}

void TalvoDoubleVector::sub(int i, double d) {
    if (_isIndex(i))
        values[i] -= d;
}

void TalvoDoubleVector::mul(int i, double d) {
    if (_isIndex(i))
        values[i] *= d;
}

void TalvoDoubleVector::div(int i, double d) {
    if (_isIndex(i))
        values[i] /= d;
}

void TalvoDoubleVector::set(double d) {
    for (int i = 0; i < size; ++i)
        values[i] = d;
}

void TalvoDoubleVector::add(double d) {
    for (int i = 0; i < size; ++i)
        values[i] += d;
}

void TalvoDoubleVector::sub(double d) {
    for (int i = 0; i < size; ++i)
        values[i] -= d;
}

void TalvoDoubleVector::mul(double d) {
    for (int i = 0; i < size; ++i)
        values[i] *= d;
}

void TalvoDoubleVector::div(double d) {
    for (int i = 0; i < size; ++i)
        values[i] /= d;
}

void TalvoDoubleVector::set(TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        values[i] = v->values[i];
}

void TalvoDoubleVector::add(TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        values[i] += v->values[i];
}

void TalvoDoubleVector::sub(TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        values[i] -= v->values[i];
}

void TalvoDoubleVector::mul(TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        values[i] *= v->values[i];
}

void TalvoDoubleVector::div(TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        values[i] /= v->values[i];
}

void TalvoDoubleVector::set(double d, TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        values[i] = d * v->values[i];
}

void TalvoDoubleVector::add(double d, TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        values[i] += d * v->values[i];
}

void TalvoDoubleVector::sub(double d, TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        values[i] -= d * v->values[i];
}

void TalvoDoubleVector::mul(double d, TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        values[i] *= d * v->values[i];
}

void TalvoDoubleVector::div(double d, TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        values[i] /= d * v->values[i];
}

void TalvoDoubleVector::round(double eps) {
    for (int i = 0; i < size; ++i)
        if (std::fabs(values[i]) <= eps)
            values[i] = 0.0;
}

double TalvoDoubleVector::getMinValue() {
    double extreme = kMinStart;
    for (int i = 0; i < size; ++i)
        keepSmaller(extreme, values[i]);
    return extreme;
}

double TalvoDoubleVector::getMaxValue() {
    double extreme = kMaxStart;
    for (int i = 0; i < size; ++i)
        keepLarger(extreme, values[i]);
    return extreme;
}

double TalvoDoubleVector::getMinDiff(TalvoDoubleVector* v) {
    double extreme = kMinStart;
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        keepSmaller(extreme, values[i] - v->values[i]);
    return extreme;
}

double TalvoDoubleVector::getMaxDiff(TalvoDoubleVector* v) {
    double extreme = kMaxStart;
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        keepLarger(extreme, values[i] - v->values[i]);
    return extreme;
}

double TalvoDoubleVector::getMinSlack(TalvoDoubleVector* v) {
    double extreme = kMinStart;
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        keepSmaller(extreme, std::fabs(values[i] - v->values[i]));
    return extreme;
}

double TalvoDoubleVector::getMaxSlack(TalvoDoubleVector* v) {
    double extreme = kSlackStart;
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        keepLarger(extreme, std::fabs(values[i] - v->values[i]));
    return extreme;
}

double TalvoDoubleVector::getMinRelativeSlack(TalvoDoubleVector* v) {
    double extreme = kMinStart;
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        keepSmaller(extreme, relativeSlack(values[i], v->values[i]));
    return extreme;
}

double TalvoDoubleVector::getMaxRelativeSlack(TalvoDoubleVector* v) {
    double extreme = kSlackStart;
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        keepLarger(extreme, relativeSlack(values[i], v->values[i]));
    return extreme;
}

double TalvoDoubleVector::getProduct(TalvoDoubleVector* v) {
    double sum = 0.0;
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        sum += values[i] * v->values[i];
    return sum;
}

double TalvoDoubleVector::getDistance(TalvoDoubleVector* v) {
    double sum = 0.0;
    for (int i = 0, n = _commonSize(v); i < n; ++i)
        sum += std::fabs(values[i] * v->values[i]);
    return std::sqrt(sum);
}

double TalvoDoubleVector::getNorm() {
    return getDistance(this);
}

int TalvoDoubleVector::compare(TalvoDoubleVector* v) {
    for (int i = 0, n = _commonSize(v); i < n; ++i) {
        if (values[i] < v->values[i])
            return -1;
        if (values[i] > v->values[i])
            return 1;
    }
    return 0;
}

int TalvoDoubleVector::compare(void* a, void* b) {
    TalvoDoubleVector* first = static_cast<TalvoDoubleVector*>(a);
    return first ? first->compare(static_cast<TalvoDoubleVector*>(b)) : 0;
}

void TalvoDoubleVector::print(FILE* file) {
    if (!file)
        return;
    std::fputc('<', file);
    for (int i = 0; i < size; ++i)
        std::fprintf(file, i ? ",%g" : "%g", values[i]);
    std::fputc('>', file);
}

void TalvoDoubleVector::print(TalvoStream* stream) {
    if (!stream)
        return;
    stream->put('<');
    for (int i = 0; i < size; ++i) {
        if (i)
            stream->put(',');
        stream->put("%g", values[i]);
    }
    stream->put('>');
}
