/// @file
/// TalvoChronogram: a history of (x, y) values summarised in a bounded number
/// of points.
///
/// The history is a doubly linked chain of TalvoChronogramPoint ordered by x.
/// Each point stands for the interval (previous x, x] (for the first point,
/// (0, x]): its width is x minus the previous point's x. Each point owns a
/// TalvoMeasure of the y values that fell on it. The chronogram owns the chain;
/// callers read it through getFirstPoint() and each point's getNext().
///
/// When a history stops, neighbouring points that lie close together are
/// merged until at most the expected number of points is left. Closeness is
/// measured in a plane where x and the points' mean y share one scale: the
/// scale ratio makes the range of the means as long as the last x. A merge
/// keeps the total width, and the merged measure averages the two measures'
/// sums weighted by the two widths.
#pragma once

#include <talvo/foundation/TalvoObject.h>

class TalvoMeasure;
class TalvoChronogram;

/// One point of a chronogram: an interval of x ending at getX() and the
/// measure of the y values that fell on it.
class TALVO_API TalvoChronogramPoint : public TalvoObject<TalvoChronogramPoint> {
public:
    static constexpr const char* ClassName = "TalvoChronogramPoint";  ///< Name in the allocation trace.

    /// x 0, width 0, no measure, no neighbours, distance 0.
    TalvoChronogramPoint();
    /// Releases the measure (not the neighbours).
    ~TalvoChronogramPoint();
    /// Not copyable (the point owns its measure): use copy().
    TalvoChronogramPoint(const TalvoChronogramPoint&) = delete;
    /// Not assignable: use copy().
    TalvoChronogramPoint& operator=(const TalvoChronogramPoint&) = delete;
    /// Deletes a point (free call-back); nothing for null.
    static void free(void* point);
    /// A new point with the same x and width and a copy of the measure; no
    /// neighbours, distance 0. Owned by the caller.
    TalvoChronogramPoint* copy();

    /// Stores `distance` as the distance to the next point.
    void setDistanceToNextPoint(double distance);
    /// Distance in the scaled plane between the centres of this point's
    /// interval and the next one's: sqrt(dx^2 + (dmean * scale)^2). The largest
    /// double when there is no next point.
    void updateDistanceToNextPoint(double scale);

    /// The right end of the point's interval.
    double getX();
    /// The width of the interval: x minus the previous point's x.
    double getWidth();
    /// The point's own measure (null only after an allocation failure).
    TalvoMeasure* getMeasure();
    /// The previous point of the chain; null for the first.
    TalvoChronogramPoint* getPrevious();
    /// The next point of the chain; null for the last.
    TalvoChronogramPoint* getNext();
    /// The distance last stored or computed; see updateDistanceToNextPoint.
    double getDistanceToNextPoint();

private:
    friend class TalvoChronogram;

    double x;  ///< right end of the interval
    double width;
    TalvoMeasure* measure;
    TalvoChronogramPoint* previous;
    TalvoChronogramPoint* next;
    double distanceToNextPoint;

    double _mean();
};

/// A history of (x, y) values summarised in a bounded number of points.
class TALVO_API TalvoChronogram : public TalvoObject<TalvoChronogram> {
public:
    static constexpr const char* ClassName = "TalvoChronogram";  ///< Name in the allocation trace.

    /// An empty chronogram named with a copy of `name` (null for none) that
    /// stopHistory reduces to `expectedNumberOfPoints` points (to a single
    /// point when that is below 1).
    TalvoChronogram(const char* name, int expectedNumberOfPoints);
    /// Resets, then releases the name.
    ~TalvoChronogram();
    /// Not copyable: the chronogram owns its points.
    TalvoChronogram(const TalvoChronogram&) = delete;
    /// Not assignable: the chronogram owns its points.
    TalvoChronogram& operator=(const TalvoChronogram&) = delete;
    /// Deletes a chronogram (free call-back); nothing for null.
    static void free(void* chronogram);

    /// Releases every point with its measure. O(points).
    void reset();
    /// The next value is placed by searching from the first point; recorded
    /// points stay.
    void startHistory();
    /// Records y at x. The search starts after the point that received the
    /// previous value (from the first point after startHistory) and adds y to
    /// every point it passes (kept on purpose). An x already in the chain adds
    /// y there; an x between two points makes a new point that starts with a
    /// copy of the right neighbour's measure and takes its width from it; an x
    /// beyond the end makes a new last point. So appending the same x twice
    /// at the end makes a point of width 0, and an x below the current point's
    /// makes a point of negative width after it: append in increasing x within
    /// one history. O(points passed).
    void appendValueToHistory(double x, double y);
    /// Merges neighbouring points until at most the expected number is left;
    /// nothing when there are no more already. Ends on every input.
    /// O(passes x points).
    void stopHistory();

    /// The first point of the chain (owned by the chronogram); null when empty.
    TalvoChronogramPoint* getFirstPoint();
    /// The number of points in the chain.
    int getNumberOfPoints();
    /// The number of points stopHistory reduces to.
    int getExpectedNumberOfPoints();
    /// The chronogram's own name (not a copy); null when none.
    const char* getName();

private:
    char* name;
    [[maybe_unused]] int unusedFlag;  ///< part of the record, not read by any operation
    TalvoChronogramPoint* firstPoint;
    int numberOfPoints;
    int expectedNumberOfPoints;
    TalvoChronogramPoint* currentPoint;
    double historyMark;  ///< cleared by reset and startHistory, not read
    double scaleRatio;

    TalvoChronogramPoint* newPoint();
    TalvoChronogramPoint* copyPoint(TalvoChronogramPoint* point);
    void deletePoint(TalvoChronogramPoint* point);
    void _linkAfter(TalvoChronogramPoint* point, TalvoChronogramPoint* previous);
    void _addPointBefore(TalvoChronogramPoint* candidate, TalvoChronogramPoint* previous, double x, double y);
    void _addPointLast(TalvoChronogramPoint* previous, double x, double y);

    void updateScaleRatio();
    void updateDistancesToNextPoints();
    void getDistanceToNextPointBounds(double& lower, double& upper);
    int countAdjacentPointsAtDistance(double distance);
    double determineMergingDistance(int steps, double low, double high);
    void mergeWithNextPoint(TalvoChronogramPoint* point);
    int mergeAdjacentPointsAtDistance(double distance);
    void _mergeClosestPoints();
    void reduceNumberOfPointsToExpectedNumber();
};
