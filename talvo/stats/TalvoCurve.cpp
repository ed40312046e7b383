#include <talvo/stats/TalvoCurve.h>

#include <cmath>
#include <cstring>

namespace {

const char* const kBlockLabel = "void*[]";
const int kInitialCapacity = 16;

TalvoCurvePoint** newBlock(int capacity) {
    void* block = TalvoMemoryManager::newCell(sizeof(TalvoCurvePoint*) * static_cast<std::size_t>(capacity));
    if (block)
        TalvoMemoryManager::traceNew(block, kBlockLabel);
    return static_cast<TalvoCurvePoint**>(block);
}

void deleteBlock(TalvoCurvePoint** block) {
    if (!block)
        return;
    TalvoMemoryManager::traceDelete(block, kBlockLabel);
    TalvoMemoryManager::deleteCell(block);
}

}  // namespace

// --- TalvoCurvePoint

TalvoCurvePoint::TalvoCurvePoint() : x(0.0), y(0.0) {}

TalvoCurvePoint::TalvoCurvePoint(double x, double y) : x(x), y(y) {}

void TalvoCurvePoint::free(void* point) {
    delete static_cast<TalvoCurvePoint*>(point);
}

TalvoCurvePoint* TalvoCurvePoint::copy() {
    return new TalvoCurvePoint(x, y);
}

double TalvoCurvePoint::getX() {
    return x;
}

double TalvoCurvePoint::getY() {
    return y;
}

void TalvoCurvePoint::setY(double y) {
    this->y = y;
}

// --- TalvoCurve: storage

TalvoCurve::TalvoCurve() : points(nullptr), count(0), capacity(0) {}

TalvoCurve::~TalvoCurve() {
    reset();
}

void TalvoCurve::free(void* curve) {
    delete static_cast<TalvoCurve*>(curve);
}

TalvoCurve* TalvoCurve::copy() {
    TalvoCurve* result = new TalvoCurve();
    if (!result)
        return nullptr;
    for (int i = 0; i < count; ++i)
        result->insertPoint(points[i]->getX(), points[i]->getY());
    return result;
}

void TalvoCurve::reset() {
    for (int i = 0; i < count; ++i)
        delete points[i];
    deleteBlock(points);
    points = nullptr;
    count = 0;
    capacity = 0;
}

bool TalvoCurve::_grow() {
    int larger = capacity ? 2 * capacity : kInitialCapacity;
    TalvoCurvePoint** block = newBlock(larger);
    if (!block)
        return false;
    if (count)
        std::memcpy(block, points, sizeof(TalvoCurvePoint*) * static_cast<std::size_t>(count));
    deleteBlock(points);
    points = block;
    capacity = larger;
    return true;
}

int TalvoCurve::_upperBound(double x) {
    // Appending in x order is the common case: answer it without searching.
    if (count == 0 || points[count - 1]->x <= x)
        return count;
    int lo = 0, hi = count;
    while (lo < hi) {
        int mid = lo + (hi - lo) / 2;
        if (points[mid]->x <= x)
            lo = mid + 1;
        else
            hi = mid;
    }
    return lo;
}

TalvoCurvePoint* TalvoCurve::insertPoint(double x, double y) {
    if (!std::isfinite(x))
        return nullptr;
    if (count == capacity && !_grow())
        return nullptr;
    TalvoCurvePoint* point = new TalvoCurvePoint(x, y);
    if (!point)
        return nullptr;
    int at = _upperBound(x);
    std::memmove(points + at + 1, points + at, sizeof(TalvoCurvePoint*) * static_cast<std::size_t>(count - at));
    points[at] = point;
    ++count;
    return point;
}

TalvoCurvePoint* TalvoCurve::_unlinkPoint(int index) {
    TalvoCurvePoint* point = points[index];
    std::memmove(points + index, points + index + 1, sizeof(TalvoCurvePoint*) * static_cast<std::size_t>(count - index - 1));
    --count;
    return point;
}

// --- TalvoCurve: access

int TalvoCurve::getNumberOfPoints() {
    return count;
}

TalvoCurvePoint* TalvoCurve::getNthPoint(int index) {
    return index >= 0 && index < count ? points[index] : nullptr;
}

TalvoCurvePoint* TalvoCurve::getFirstPoint() {
    return getNthPoint(0);
}

TalvoCurvePoint* TalvoCurve::getLastPoint() {
    return getNthPoint(count - 1);
}

TalvoCurveCursor* TalvoCurve::newCursor() {
    return new TalvoCurveCursor(this);
}

// --- TalvoCurve: queries

bool TalvoCurve::_clip(double& from, double& to) {
    if (count == 0 || !(from <= to))
        return false;
    if (from < points[0]->x)
        from = points[0]->x;
    if (to > points[count - 1]->x)
        to = points[count - 1]->x;
    return from <= to;
}

// Calls visit(y, length) for every step that overlaps [from, to] (already
// clipped), with the length of the overlap, in x order.
template <class Visit>
void TalvoCurve::_forEachStep(double from, double to, Visit visit) {
    for (int j = _upperBound(from) - 1; j < count - 1 && points[j]->x < to; ++j) {
        double start = points[j]->x > from ? points[j]->x : from;
        double end = points[j + 1]->x < to ? points[j + 1]->x : to;
        visit(points[j]->y, end - start);
    }
}

// Calls visit(y) for every value the curve takes on [from, to] (already
// clipped): the value at `from`, then each point inside that ends a run of
// equal x.
template <class Visit>
void TalvoCurve::_forEachValue(double from, double to, Visit visit) {
    int j = _upperBound(from) - 1;
    visit(points[j]->y);
    for (++j; j < count && points[j]->x <= to; ++j)
        if (j == count - 1 || points[j + 1]->x > points[j]->x)
            visit(points[j]->y);
}

double TalvoCurve::getValueAt(double x) {
    double to = x;
    if (!_clip(x, to) || x != to)
        return 0.0;
    return points[_upperBound(x) - 1]->y;
}

double TalvoCurve::computeMinimum(double from, double to) {
    if (!_clip(from, to))
        return 0.0;
    double minimum = 0.0;
    bool first = true;
    _forEachValue(from, to, [&](double y) {
        if (first || y < minimum)
            minimum = y;
        first = false;
    });
    return minimum;
}

double TalvoCurve::computeMaximum(double from, double to) {
    if (!_clip(from, to))
        return 0.0;
    double maximum = 0.0;
    bool first = true;
    _forEachValue(from, to, [&](double y) {
        if (first || y > maximum)
            maximum = y;
        first = false;
    });
    return maximum;
}

double TalvoCurve::computeIntegral(double from, double to) {
    if (!_clip(from, to))
        return 0.0;
    double integral = 0.0;
    _forEachStep(from, to, [&](double y, double length) { integral += y * length; });
    return integral;
}

double TalvoCurve::computeMean(double from, double to) {
    if (!_clip(from, to) || to == from)
        return 0.0;
    return computeIntegral(from, to) / (to - from);
}

double TalvoCurve::computeSojourn(double from, double to, double low, double high) {
    if (!_clip(from, to))
        return 0.0;
    double sojourn = 0.0;
    _forEachStep(from, to, [&](double y, double length) {
        if (low <= y && y <= high)
            sojourn += length;
    });
    return sojourn;
}

// --- TalvoCurveCursor

TalvoCurveCursor::TalvoCurveCursor(TalvoCurve* curve)
    : curve(curve), index(-1), beforeFirst(true), afterLast(true) {}

TalvoCurveCursor::~TalvoCurveCursor() = default;

void TalvoCurveCursor::_placeOn(int position) {
    int count = curve ? curve->count : 0;
    bool empty = count == 0;
    index = empty ? -1 : position;
    beforeFirst = empty;
    afterLast = empty;
}

bool TalvoCurveCursor::isBeforeFirstItem() {
    return beforeFirst;
}

bool TalvoCurveCursor::isAfterLastItem() {
    return afterLast;
}

bool TalvoCurveCursor::isOnFirstItem() {
    return getItem() && index == 0;
}

bool TalvoCurveCursor::isOnLastItem() {
    return getItem() && index == curve->count - 1;
}

void TalvoCurveCursor::resetOnFirstItem() {
    _placeOn(0);
}

void TalvoCurveCursor::resetOnLastItem() {
    _placeOn(curve ? curve->count - 1 : -1);
}

void TalvoCurveCursor::resetInPosition(int position) {
    int last = curve ? curve->count - 1 : -1;
    _placeOn(position < 0 ? 0 : (position > last ? last : position));
}

void TalvoCurveCursor::resetOnItem(void* point) {
    int count = curve ? curve->count : 0;
    for (int i = 0; i < count; ++i) {
        if (curve->points[i] == point) {
            _placeOn(i);
            return;
        }
    }
    index = -1;
    beforeFirst = count == 0;
    afterLast = true;
}

// A position left beyond the end by removals made through the curve counts as
// the last point for moving, so that walking loops still end.
void TalvoCurveCursor::increment() {
    if (index < 0)
        return;
    ++index;
    beforeFirst = false;
    if (index >= curve->count) {
        index = -1;
        afterLast = true;
    }
}

void TalvoCurveCursor::decrement() {
    if (index < 0)
        return;
    index = (index < curve->count ? index : curve->count) - 1;
    afterLast = false;
    if (index < 0) {
        index = -1;
        beforeFirst = true;
    }
}

void* TalvoCurveCursor::getItem() {
    return curve ? curve->getNthPoint(index) : nullptr;
}

void* TalvoCurveCursor::removeItemAndIncrement() {
    if (!getItem()) {
        increment();
        return nullptr;
    }
    TalvoCurvePoint* point = curve->_unlinkPoint(index);
    // The next point has slid into this position.
    if (index >= curve->count) {
        index = -1;
        afterLast = true;
    }
    beforeFirst = false;
    return point;
}

void* TalvoCurveCursor::removeItemAndDecrement() {
    if (!getItem()) {
        decrement();
        return nullptr;
    }
    TalvoCurvePoint* point = curve->_unlinkPoint(index);
    --index;
    afterLast = false;
    if (index < 0) {
        index = -1;
        beforeFirst = true;
    }
    return point;
}
