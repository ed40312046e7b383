/// @file
/// TalvoCurve: a step curve of (x, y) points kept in x order.
///
/// The curve is a step function: each point holds its y from its own x up to
/// the next point's x, excluded. The last point holds its y at its own x only,
/// so the curve is defined on [first x, last x] and a single point covers no
/// length. Points of equal x keep their insertion order; the last of them
/// gives the value at that x, the others hold over an empty step.
///
/// Layout: one growable block of point pointers ("void*[]"), sorted by x, and
/// the points themselves (each a traced TalvoCurvePoint owned by the curve).
/// Invariant: x[0] <= x[1] <= ... <= x[count - 1], every x finite.
///
/// Interval queries take a closed x interval [from, to] and use only its part
/// inside [first x, last x]; an interval that meets no point of the curve
/// (from > to, beyond either end, empty curve, NaN bounds) gives 0.0.
///   - minimum, maximum: the extremes of the values the curve takes on the
///     interval, ends included (so a step starting exactly at `to` counts);
///   - integral: the sum of y times the length of each step inside it;
///   - mean: integral / covered length; 0.0 when the covered length is 0;
///   - sojourn(low, high): the length inside it where low <= y <= high.
/// Single instants carry no length, so the last point adds nothing to the
/// integral, the mean or the sojourn.
#pragma once

#include <talvo/foundation/TalvoCursor.h>
#include <talvo/foundation/TalvoObject.h>

class TalvoCurve;

/// One (x, y) point of a curve. x is fixed once the point is in a curve.
class TALVO_API TalvoCurvePoint : public TalvoObject<TalvoCurvePoint> {
public:
    static constexpr const char* ClassName = "TalvoCurvePoint";  ///< Name in the allocation trace.

    /// The point (0, 0).
    TalvoCurvePoint();
    /// The point (x, y).
    TalvoCurvePoint(double x, double y);
    /// Releases the point only.
    ~TalvoCurvePoint() = default;
    /// Not copyable: use copy().
    TalvoCurvePoint(const TalvoCurvePoint&) = delete;
    /// Not assignable: x is fixed once the point is in a curve.
    TalvoCurvePoint& operator=(const TalvoCurvePoint&) = delete;
    /// Deletes a point (free call-back); nothing for null.
    static void free(void* point);
    /// A new point with the same x and y, owned by the caller.
    TalvoCurvePoint* copy();

    /// The point's x.
    double getX();
    /// The point's y.
    double getY();
    /// Replaces y; the curve's order, by x, is unchanged.
    void setY(double y);

private:
    friend class TalvoCurve;

    double x;
    double y;
};

/// Walks the points of a curve in x order. The item is a TalvoCurvePoint*.
///
///     TalvoCurveCursor* c = curve->newCursor();
///     for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment())
///         use(static_cast<TalvoCurvePoint*>(c->getItem()));
///
/// States as for the list cursor: on a point, before the first, after the last
/// (a new cursor, and any cursor on an empty curve, is both). The cursor keeps
/// a position, not a point: it survives its own removals, while an insertion
/// or removal made through the curve may shift it onto a neighbouring point.
/// It never reads outside the curve.
class TALVO_API TalvoCurveCursor : public TalvoCursor, public TalvoObject<TalvoCurveCursor> {
public:
    static constexpr const char* ClassName = "TalvoCurveCursor";  ///< Name in the allocation trace.

    /// A cursor on `curve` (not owned), before the first and after the last
    /// point. A null curve behaves as an empty one.
    explicit TalvoCurveCursor(TalvoCurve* curve);
    /// Releases the cursor only.
    ~TalvoCurveCursor() override;
    /// Not copyable.
    TalvoCurveCursor(const TalvoCurveCursor&) = delete;
    /// Not assignable.
    TalvoCurveCursor& operator=(const TalvoCurveCursor&) = delete;

    bool isBeforeFirstItem() override;
    bool isAfterLastItem() override;
    /// True when on the point at index 0.
    bool isOnFirstItem() override;
    /// True when on the last point.
    bool isOnLastItem() override;
    /// On the first point (before and after on an empty curve).
    void resetOnFirstItem() override;
    /// On the last point (before and after on an empty curve).
    void resetOnLastItem() override;
    /// On the point at 0-based `position`, clamped to the first and last.
    void resetInPosition(int position) override;
    /// On that very point, or after the last when the curve does not hold it.
    void resetOnItem(void* point) override;
    /// To the next point, or after the last; moves only when on a point (a
    /// cursor before the first must be reset).
    void increment() override;
    /// To the previous point, or before the first; moves only when on a point.
    void decrement() override;
    /// The current point, null when not on one.
    void* getItem() override;
    /// Takes the current point out of the curve, moves to the next point and
    /// returns the removed point, which the caller now owns
    /// (TalvoCurvePoint::free). Null when not on a point.
    void* removeItemAndIncrement() override;
    /// The same, moving to the previous point.
    void* removeItemAndDecrement() override;

private:
    TalvoCurve* curve;
    int index;  ///< -1 when not on a point
    bool beforeFirst;
    bool afterLast;

    void _placeOn(int position);
};

/// A step curve of (x, y) points kept in x order; it owns its points.
class TALVO_API TalvoCurve : public TalvoObject<TalvoCurve> {
public:
    static constexpr const char* ClassName = "TalvoCurve";  ///< Name in the allocation trace.

    /// An empty curve.
    TalvoCurve();
    /// Deletes every point.
    ~TalvoCurve();
    /// Not copyable (the curve owns its points): use copy().
    TalvoCurve(const TalvoCurve&) = delete;
    /// Not assignable: use copy().
    TalvoCurve& operator=(const TalvoCurve&) = delete;
    /// Deletes a curve with its points (free call-back); nothing for null.
    static void free(void* curve);
    /// A new curve with copies of every point, owned by the caller. O(count).
    TalvoCurve* copy();
    /// Deletes every point; the curve stays, empty.
    void reset();

    /// Adds (x, y) after the points whose x is at most x, and returns the new
    /// point (owned by the curve). Null and no change when x is not finite or
    /// on allocation failure. O(log count) plus the points moved after it
    /// (none when x is the largest so far).
    TalvoCurvePoint* insertPoint(double x, double y);

    /// The number of points.
    int getNumberOfPoints();
    /// The point at 0-based `index`; null outside 0 .. count - 1.
    TalvoCurvePoint* getNthPoint(int index);
    /// The point of smallest x (owned by the curve); null when empty.
    TalvoCurvePoint* getFirstPoint();
    /// The point of largest x, the last inserted of equals; null when empty.
    TalvoCurvePoint* getLastPoint();
    /// A new cursor on this curve, before the first point; the caller deletes it.
    TalvoCurveCursor* newCursor();

    /// The curve's value at x (see above); 0.0 outside [first x, last x].
    /// O(log count).
    double getValueAt(double x);

    /// @name Interval queries
    /// Over the closed interval [from, to] clipped to the curve (see the file
    /// overview); 0.0 when the interval meets no point. Each costs
    /// O(log count) plus the points inside the interval.
    /// @{

    /// The smallest value the curve takes on the interval.
    double computeMinimum(double from, double to);
    /// The largest value the curve takes on the interval.
    double computeMaximum(double from, double to);
    /// The integral divided by the covered length; 0.0 for a length of 0.
    double computeMean(double from, double to);
    /// The sum of y times the length of each step inside the interval.
    double computeIntegral(double from, double to);
    /// The length inside the interval where low <= y <= high.
    double computeSojourn(double from, double to, double low, double high);
    /// @}

private:
    friend class TalvoCurveCursor;

    TalvoCurvePoint** points;
    int count;
    int capacity;

    bool _grow();
    /// Index of the first point whose x is above x (count when none).
    int _upperBound(double x);
    /// Clips [from, to] to the curve; false when nothing is left.
    bool _clip(double& from, double& to);
    /// Takes the point at index out of the block; the caller owns it.
    TalvoCurvePoint* _unlinkPoint(int index);
    template <class Visit>
    void _forEachStep(double from, double to, Visit visit);
    template <class Visit>
    void _forEachValue(double from, double to, Visit visit);
};
