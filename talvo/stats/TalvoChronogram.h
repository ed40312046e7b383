// TalvoChronogram: a history of (x, y) values summarised in a bounded number
// of points.
//
// The history is a doubly linked chain of TalvoChronogramPoint ordered by x.
// Each point stands for the interval (previous x, x] (for the first point,
// (0, x]): its width is x minus the previous point's x. Each point owns a
// TalvoMeasure of the y values that fell on it. The chronogram owns the chain;
// callers read it through getFirstPoint() and each point's getNext().
//
// When a history stops, neighbouring points that lie close together are
// merged until at most the expected number of points is left. Closeness is
// measured in a plane where x and the points' mean y share one scale: the
// scale ratio makes the range of the means as long as the last x. A merge
// keeps the total width, and the merged measure averages the two measures'
// sums weighted by the two widths.
#pragma once

#include <talvo/foundation/TalvoObject.h>

class TalvoMeasure;
class TalvoChronogram;

class TALVO_API TalvoChronogramPoint : public TalvoObject<TalvoChronogramPoint> {
public:
    static constexpr const char* ClassName = "TalvoChronogramPoint";

    // x 0, width 0, no measure, no neighbours, distance 0.
    TalvoChronogramPoint();
    // Releases the measure (not the neighbours).
    ~TalvoChronogramPoint();
    TalvoChronogramPoint(const TalvoChronogramPoint&) = delete;
    TalvoChronogramPoint& operator=(const TalvoChronogramPoint&) = delete;
    // Deletes a point (free call-back); nothing for null.
    static void free(void* point);
    // A new point with the same x and width and a copy of the measure; no
    // neighbours, distance 0. Owned by the caller.
    TalvoChronogramPoint* copy();

    void setDistanceToNextPoint(double distance);
    // Distance in the scaled plane between the centres of this point's
    // interval and the next one's: sqrt(dx^2 + (dmean * scale)^2). The largest
    // double when there is no next point.
    void updateDistanceToNextPoint(double scale);

    double getX();
    double getWidth();
    // The point's own measure (null only after an allocation failure).
    TalvoMeasure* getMeasure();
    TalvoChronogramPoint* getPrevious();
    TalvoChronogramPoint* getNext();
    double getDistanceToNextPoint();

private:
    friend class TalvoChronogram;

    double x;  // right end of the interval
    double width;
    TalvoMeasure* measure;
    TalvoChronogramPoint* previous;
    TalvoChronogramPoint* next;
    double distanceToNextPoint;

    double _mean();
};

class TALVO_API TalvoChronogram : public TalvoObject<TalvoChronogram> {
public:
    static constexpr const char* ClassName = "TalvoChronogram";

    // An empty chronogram named with a copy of `name` (null for none) that
    // stopHistory reduces to `expectedNumberOfPoints` points (to a single
    // point when that is below 1).
    TalvoChronogram(const char* name, int expectedNumberOfPoints);
    // Resets, then releases the name.
    ~TalvoChronogram();
    TalvoChronogram(const TalvoChronogram&) = delete;
    TalvoChronogram& operator=(const TalvoChronogram&) = delete;
    // Deletes a chronogram (free call-back); nothing for null.
    static void free(void* chronogram);

    // Releases every point with its measure. O(points).
    void reset();
    // The next value is placed by searching from the first point; recorded
    // points stay.
    void startHistory();
    // Records y at x. The search starts after the point that received the
    // previous value (from the first point after startHistory) and adds y to
    // every point it passes (kept on purpose). An x already in the chain adds
    // y there; an x between two points makes a new point that starts with a
    // copy of the right neighbour's measure and takes its width from it; an x
    // beyond the end makes a new last point. So appending the same x twice
    // at the end makes a point of width 0, and an x below the current point's
    // makes a point of negative width after it: append in increasing x within
    // one history. O(points passed).
    void appendValueToHistory(double x, double y);
    // Merges neighbouring points until at most the expected number is left;
    // nothing when there are no more already. Ends on every input.
    // O(passes x points).
    void stopHistory();

    TalvoChronogramPoint* getFirstPoint();
    int getNumberOfPoints();
    int getExpectedNumberOfPoints();
    // The chronogram's own name (not a copy); null when none.
    const char* getName();

private:
    char* name;
    int unusedFlag;  // part of the record, not read by any operation
    TalvoChronogramPoint* firstPoint;
    int numberOfPoints;
    int expectedNumberOfPoints;
    TalvoChronogramPoint* currentPoint;
    double historyMark;  // cleared by reset and startHistory, not read
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
