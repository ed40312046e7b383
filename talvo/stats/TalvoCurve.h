// TalvoCurve: a step curve of (x, y) points kept in x order.
//
// The curve is a step function: each point holds its y from its own x up to
// the next point's x, excluded. The last point holds its y at its own x only,
// so the curve is defined on [first x, last x] and a single point covers no
// length. Points of equal x keep their insertion order; the last of them
// gives the value at that x, the others hold over an empty step.
//
// Layout: one growable block of point pointers ("void*[]"), sorted by x, and
// the points themselves (each a traced TalvoCurvePoint owned by the curve).
// Invariant: x[0] <= x[1] <= ... <= x[count - 1], every x finite.
//
// Interval queries take a closed x interval [from, to] and use only its part
// inside [first x, last x]; an interval that meets no point of the curve
// (from > to, beyond either end, empty curve, NaN bounds) gives 0.0.
//   - minimum, maximum: the extremes of the values the curve takes on the
//     interval, ends included (so a step starting exactly at `to` counts);
//   - integral: the sum of y times the length of each step inside it;
//   - mean: integral / covered length; 0.0 when the covered length is 0;
//   - sojourn(low, high): the length inside it where low <= y <= high.
// Single instants carry no length, so the last point adds nothing to the
// integral, the mean or the sojourn.
#pragma once

#include <talvo/foundation/TalvoCursor.h>
#include <talvo/foundation/TalvoObject.h>

class TalvoCurve;

// One (x, y) point of a curve. x is fixed once the point is in a curve.
class TALVO_API TalvoCurvePoint : public TalvoObject<TalvoCurvePoint> {
public:
    static constexpr const char* ClassName = "TalvoCurvePoint";

    TalvoCurvePoint();
    TalvoCurvePoint(double x, double y);
    ~TalvoCurvePoint() = default;
    TalvoCurvePoint(const TalvoCurvePoint&) = delete;
    TalvoCurvePoint& operator=(const TalvoCurvePoint&) = delete;
    // Deletes a point (free call-back); nothing for null.
    static void free(void* point);
    // A new point with the same x and y, owned by the caller.
    TalvoCurvePoint* copy();

    double getX();
    double getY();
    void setY(double y);

private:
    friend class TalvoCurve;

    double x;
    double y;
};

// Walks the points of a curve in x order. The item is a TalvoCurvePoint*.
//
//     TalvoCurveCursor* c = curve->newCursor();
//     for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment())
//         use(static_cast<TalvoCurvePoint*>(c->getItem()));
//
// States as for the list cursor: on a point, before the first, after the last
// (a new cursor, and any cursor on an empty curve, is both). The cursor keeps
// a position, not a point: it survives its own removals, while an insertion
// or removal made through the curve may shift it onto a neighbouring point.
// It never reads outside the curve.
class TALVO_API TalvoCurveCursor : public TalvoCursor, public TalvoObject<TalvoCurveCursor> {
public:
    static constexpr const char* ClassName = "TalvoCurveCursor";

    explicit TalvoCurveCursor(TalvoCurve* curve);
    ~TalvoCurveCursor() override;
    TalvoCurveCursor(const TalvoCurveCursor&) = delete;
    TalvoCurveCursor& operator=(const TalvoCurveCursor&) = delete;

    bool isBeforeFirstItem() override;
    bool isAfterLastItem() override;
    bool isOnFirstItem() override;
    bool isOnLastItem() override;
    void resetOnFirstItem() override;
    void resetOnLastItem() override;
    // On the point at 0-based `position`, clamped to the first and last.
    void resetInPosition(int position) override;
    // On that very point, or after the last when the curve does not hold it.
    void resetOnItem(void* point) override;
    // Move only when on a point (a cursor before the first must be reset).
    void increment() override;
    void decrement() override;
    // The current point, null when not on one.
    void* getItem() override;
    // Takes the current point out of the curve, moves to the next (previous)
    // point and returns the removed point, which the caller now owns
    // (TalvoCurvePoint::free). Null when not on a point.
    void* removeItemAndIncrement() override;
    void* removeItemAndDecrement() override;

private:
    TalvoCurve* curve;
    int index;  // -1 when not on a point
    bool beforeFirst;
    bool afterLast;

    void _placeOn(int position);
};

class TALVO_API TalvoCurve : public TalvoObject<TalvoCurve> {
public:
    static constexpr const char* ClassName = "TalvoCurve";

    // An empty curve.
    TalvoCurve();
    // Deletes every point.
    ~TalvoCurve();
    TalvoCurve(const TalvoCurve&) = delete;
    TalvoCurve& operator=(const TalvoCurve&) = delete;
    // Deletes a curve with its points (free call-back); nothing for null.
    static void free(void* curve);
    // A new curve with copies of every point, owned by the caller. O(count).
    TalvoCurve* copy();
    // Deletes every point; the curve stays, empty.
    void reset();

    // Adds (x, y) after the points whose x is at most x, and returns the new
    // point (owned by the curve). Null and no change when x is not finite or
    // on allocation failure. O(log count) plus the points moved after it
    // (none when x is the largest so far).
    TalvoCurvePoint* insertPoint(double x, double y);

    int getNumberOfPoints();
    // The point at 0-based `index`; null outside 0 .. count - 1.
    TalvoCurvePoint* getNthPoint(int index);
    TalvoCurvePoint* getFirstPoint();
    TalvoCurvePoint* getLastPoint();
    // A new cursor on this curve, before the first point; the caller deletes it.
    TalvoCurveCursor* newCursor();

    // The curve's value at x (see above); 0.0 outside [first x, last x].
    // O(log count).
    double getValueAt(double x);

    // Queries over the closed interval [from, to]; see the header comment.
    // Each costs O(log count) plus the points inside the interval.
    double computeMinimum(double from, double to);
    double computeMaximum(double from, double to);
    double computeMean(double from, double to);
    double computeIntegral(double from, double to);
    double computeSojourn(double from, double to, double low, double high);

private:
    friend class TalvoCurveCursor;

    TalvoCurvePoint** points;
    int count;
    int capacity;

    bool _grow();
    // Index of the first point whose x is above x (count when none).
    int _upperBound(double x);
    // Clips [from, to] to the curve; false when nothing is left.
    bool _clip(double& from, double& to);
    // Takes the point at index out of the block; the caller owns it.
    TalvoCurvePoint* _unlinkPoint(int index);
    template <class Visit>
    void _forEachStep(double from, double to, Visit visit);
    template <class Visit>
    void _forEachValue(double from, double to, Visit visit);
};
