#include <talvo/stats/TalvoChronogram.h>

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/stats/TalvoMeasure.h>

#include <cfloat>
#include <cmath>

namespace {

// Distance of a point that has no next point: never reached by a bisection.
const double kNoDistance = DBL_MAX;
// Starting values of the extremes of the means, as for a measure: the largest
// mean starts at the smallest positive double, so a chain of negative means
// keeps that tiny maximum (kept on purpose).
const double kSmallestMeanStart = DBL_MAX;
const double kLargestMeanStart = DBL_MIN;
// Depth of the bisection that chooses the merging distance of a pass.
const int kBisectionSteps = 5;
// A reduction never goes below one point: a lone point has no next to merge.
const int kFewestPoints = 1;

}  // namespace

// --- TalvoChronogramPoint

TalvoChronogramPoint::TalvoChronogramPoint()
    : x(0.0), width(0.0), measure(nullptr), previous(nullptr), next(nullptr), distanceToNextPoint(0.0) {}

TalvoChronogramPoint::~TalvoChronogramPoint() {
    delete measure;
}

void TalvoChronogramPoint::free(void* point) {
    delete static_cast<TalvoChronogramPoint*>(point);
}

TalvoChronogramPoint* TalvoChronogramPoint::copy() {
    TalvoMeasure* measureCopy = measure ? measure->copy() : nullptr;
    TalvoChronogramPoint* result = new TalvoChronogramPoint();
    if (!result) {
        delete measureCopy;
        return nullptr;
    }
    result->x = x;
    result->width = width;
    result->measure = measureCopy;
    return result;
}

void TalvoChronogramPoint::setDistanceToNextPoint(double distance) {
    distanceToNextPoint = distance;
}

double TalvoChronogramPoint::_mean() {
    if (!measure || measure->getNumberOfValues() == 0)
        return 0.0;
    return measure->getSumOfValues() / measure->getNumberOfValues();
}

void TalvoChronogramPoint::updateDistanceToNextPoint(double scale) {
    if (!next) {
        distanceToNextPoint = kNoDistance;
        return;
    }
    TalvoChronogramPoint* n = next;
    double dx = (x - 0.5 * width) - (n->x - 0.5 * n->width);
    double dy = (_mean() - n->_mean()) * scale;
    distanceToNextPoint = std::sqrt(dx * dx + dy * dy);
}

double TalvoChronogramPoint::getX() {
    return x;
}

double TalvoChronogramPoint::getWidth() {
    return width;
}

TalvoMeasure* TalvoChronogramPoint::getMeasure() {
    return measure;
}

TalvoChronogramPoint* TalvoChronogramPoint::getPrevious() {
    return previous;
}

TalvoChronogramPoint* TalvoChronogramPoint::getNext() {
    return next;
}

double TalvoChronogramPoint::getDistanceToNextPoint() {
    return distanceToNextPoint;
}

// --- TalvoChronogram: life cycle

TalvoChronogram::TalvoChronogram(const char* name, int expectedNumberOfPoints)
    : name(TalvoRawString::copy(name)),
      unusedFlag(0),
      firstPoint(nullptr),
      numberOfPoints(0),
      expectedNumberOfPoints(expectedNumberOfPoints),
      currentPoint(nullptr),
      historyMark(0.0),
      scaleRatio(0.0) {}

TalvoChronogram::~TalvoChronogram() {
    reset();
    // Freeing null would still count a release, so only a real name is freed.
    if (name)
        TalvoRawString::free(name);
}

void TalvoChronogram::free(void* chronogram) {
    delete static_cast<TalvoChronogram*>(chronogram);
}

void TalvoChronogram::reset() {
    while (firstPoint) {
        TalvoChronogramPoint* next = firstPoint->next;
        deletePoint(firstPoint);
        firstPoint = next;
    }
    currentPoint = nullptr;
    numberOfPoints = 0;
    historyMark = 0.0;
}

void TalvoChronogram::startHistory() {
    currentPoint = nullptr;
    historyMark = 0.0;
}

TalvoChronogramPoint* TalvoChronogram::getFirstPoint() {
    return firstPoint;
}

int TalvoChronogram::getNumberOfPoints() {
    return numberOfPoints;
}

int TalvoChronogram::getExpectedNumberOfPoints() {
    return expectedNumberOfPoints;
}

const char* TalvoChronogram::getName() {
    return name;
}

// --- Points

TalvoChronogramPoint* TalvoChronogram::newPoint() {
    TalvoMeasure* measure = new TalvoMeasure();
    TalvoChronogramPoint* point = new TalvoChronogramPoint();
    if (!point) {
        delete measure;
        return nullptr;
    }
    point->measure = measure;
    return point;
}

TalvoChronogramPoint* TalvoChronogram::copyPoint(TalvoChronogramPoint* point) {
    return point->copy();
}

void TalvoChronogram::deletePoint(TalvoChronogramPoint* point) {
    delete point;
}

// Links `point` after `previous`, or first when previous is null, and sets
// its width from the previous x.
void TalvoChronogram::_linkAfter(TalvoChronogramPoint* point, TalvoChronogramPoint* previous) {
    point->previous = previous;
    if (previous) {
        point->width = point->x - previous->x;
        previous->next = point;
    } else {
        point->width = point->x;
        firstPoint = point;
    }
    ++numberOfPoints;
    currentPoint = point;
}

void TalvoChronogram::_addPointLast(TalvoChronogramPoint* previous, double x, double y) {
    TalvoChronogramPoint* point = newPoint();
    if (!point)
        return;
    if (point->measure)
        point->measure->addValue(y);
    point->x = x;
    _linkAfter(point, previous);
}

// The new point starts from a copy of candidate's measure and takes its
// width out of candidate's interval.
void TalvoChronogram::_addPointBefore(TalvoChronogramPoint* candidate, TalvoChronogramPoint* previous, double x,
                                      double y) {
    TalvoChronogramPoint* point = copyPoint(candidate);
    if (!point)
        return;
    if (point->measure)
        point->measure->addValue(y);
    point->x = x;
    point->next = candidate;
    _linkAfter(point, previous);
    candidate->width = candidate->width - point->width;
    candidate->previous = point;
}

void TalvoChronogram::appendValueToHistory(double x, double y) {
    TalvoChronogramPoint* previous = currentPoint;
    TalvoChronogramPoint* candidate = currentPoint ? currentPoint->next : firstPoint;
    while (candidate) {
        if (x == candidate->x) {
            if (candidate->measure)
                candidate->measure->addValue(y);
            currentPoint = candidate;
            return;
        }
        if (candidate->x > x) {
            _addPointBefore(candidate, previous, x, y);
            return;
        }
        // Every point the search passes counts the value too (kept on purpose).
        if (candidate->measure)
            candidate->measure->addValue(y);
        previous = candidate;
        candidate = candidate->next;
    }
    _addPointLast(previous, x, y);
}

// --- Reduction

void TalvoChronogram::updateScaleRatio() {
    double smallest = kSmallestMeanStart;
    double largest = kLargestMeanStart;
    double lastX = 0.0;
    for (TalvoChronogramPoint* p = firstPoint; p; p = p->next) {
        double mean = p->_mean();
        if (mean < smallest)
            smallest = mean;
        if (mean > largest)
            largest = mean;
        lastX = p->x;
    }
    double range = largest - smallest;
    scaleRatio = range == 0.0 ? 0.0 : lastX / range;
}

void TalvoChronogram::updateDistancesToNextPoints() {
    for (TalvoChronogramPoint* p = firstPoint; p; p = p->next)
        p->updateDistanceToNextPoint(scaleRatio);
}

// The last point's distance (the largest double) never counts for the upper
// bound.
void TalvoChronogram::getDistanceToNextPointBounds(double& lower, double& upper) {
    lower = kNoDistance;
    upper = 0.0;
    for (TalvoChronogramPoint* p = firstPoint; p; p = p->next) {
        double d = p->distanceToNextPoint;
        if (d < lower)
            lower = d;
        if (d > upper && d < kNoDistance)
            upper = d;
    }
}

int TalvoChronogram::countAdjacentPointsAtDistance(double distance) {
    int count = 0;
    for (TalvoChronogramPoint* p = firstPoint; p; p = p->next)
        if (p->distanceToNextPoint <= distance)
            ++count;
    return count;
}

// A bisection of fixed depth towards the distance at which about as many
// points as there are points in excess would merge.
double TalvoChronogram::determineMergingDistance(int steps, double low, double high) {
    if (steps == 0)
        return high;
    double mid = (low + high) * 0.5;
    long long target = static_cast<long long>(numberOfPoints) - expectedNumberOfPoints;
    if (countAdjacentPointsAtDistance(mid) < target)
        return determineMergingDistance(steps - 1, mid, high);
    return determineMergingDistance(steps - 1, low, mid);
}

void TalvoChronogram::mergeWithNextPoint(TalvoChronogramPoint* point) {
    TalvoChronogramPoint* n = point->next;
    if (!n)
        return;
    double w = point->width;
    double wn = n->width;
    point->x = n->x;
    point->width = w + wn;
    point->next = n->next;
    if (point->measure)
        point->measure->import(n->measure, w, wn);
    point->updateDistanceToNextPoint(scaleRatio);
    if (point->previous)
        point->previous->updateDistanceToNextPoint(scaleRatio);
    --numberOfPoints;
    if (currentPoint == n)
        currentPoint = point;
    deletePoint(n);
    if (point->next)
        point->next->previous = point;
}

// Returns the number of merges. A point without a next point is passed even
// when its distance is within reach, since it has nothing to merge with.
int TalvoChronogram::mergeAdjacentPointsAtDistance(double distance) {
    int merges = 0;
    TalvoChronogramPoint* p = firstPoint;
    while (p) {
        if (p->next && p->distanceToNextPoint <= distance) {
            mergeWithNextPoint(p);
            ++merges;
        } else {
            p = p->next;
        }
    }
    return merges;
}

// Fallback for a pass that merged nothing, which would otherwise repeat
// forever (for instance when every distance is NaN): merges the closest pair,
// a NaN distance counting as the farthest.
void TalvoChronogram::_mergeClosestPoints() {
    TalvoChronogramPoint* closest = nullptr;
    for (TalvoChronogramPoint* p = firstPoint; p && p->next; p = p->next) {
        bool closer = !closest || p->distanceToNextPoint < closest->distanceToNextPoint ||
                      (std::isnan(closest->distanceToNextPoint) && !std::isnan(p->distanceToNextPoint));
        if (closer)
            closest = p;
    }
    if (closest)
        mergeWithNextPoint(closest);
}

void TalvoChronogram::reduceNumberOfPointsToExpectedNumber() {
    if (numberOfPoints <= expectedNumberOfPoints)
        return;
    updateScaleRatio();
    updateDistancesToNextPoints();
    int fewest = expectedNumberOfPoints > kFewestPoints ? expectedNumberOfPoints : kFewestPoints;
    while (numberOfPoints > fewest) {
        double lower, upper;
        getDistanceToNextPointBounds(lower, upper);
        double distance = determineMergingDistance(kBisectionSteps, lower, upper);
        if (mergeAdjacentPointsAtDistance(distance) == 0)
            _mergeClosestPoints();
    }
}

void TalvoChronogram::stopHistory() {
    reduceNumberOfPointsToExpectedNumber();
}
