// talvo chrono: reduces an (x, y) history to a bounded number of points, each
// with the width of its interval and the statistics of the y values on it.
#include "Commands.h"
#include "SvgPicture.h"
#include "ToolSupport.h"

#include <talvo/stats/TalvoChronogram.h>
#include <talvo/stats/TalvoMeasure.h>

#include <algorithm>
#include <cstdio>

namespace talvo_tool {

namespace {

// The chain is reduced whenever it grows past this many times the requested
// points (or this floor), which bounds memory on any input length.
constexpr int ReductionFactor = 8;
constexpr int ReductionFloor = 4096;

struct PointSummary {
    double x;
    double width;
    int count;
    double mean;
    double minimum;
    double maximum;
};

std::vector<PointSummary> summarise(TalvoChronogram& chronogram) {
    std::vector<PointSummary> points;
    for (TalvoChronogramPoint* p = chronogram.getFirstPoint(); p; p = p->getNext()) {
        TalvoMeasure* m = p->getMeasure();
        if (!m)
            continue;
        points.push_back({p->getX(), p->getWidth(), m->getNumberOfValues(), m->computeMean(),
                          m->getMinimumValue(), m->getMaximumValue()});
    }
    return points;
}

void printPoints(const std::vector<PointSummary>& points) {
    std::printf("# x width count mean minimum maximum\n");
    for (const PointSummary& p : points)
        std::printf("%.6g %.6g %d %.6g %.6g %.6g\n", p.x, p.width, p.count, p.mean, p.minimum, p.maximum);
}

bool drawPoints(const std::vector<PointSummary>& points, const std::string& path) {
    double left = points.front().x - points.front().width;
    double right = points.back().x;
    double low = points.front().minimum, high = points.front().maximum;
    for (const PointSummary& p : points) {
        low = std::min(low, p.minimum);
        high = std::max(high, p.maximum);
    }
    SvgScale x = SvgChart::horizontal(left, right);
    SvgScale y = SvgChart::vertical(low, high);
    // Each point is drawn at the centre of its interval: the band runs along
    // the maxima and back along the minima, the line through the means.
    SvgPicture::Points band, means;
    for (const PointSummary& p : points) {
        band.emplace_back(x(p.x - p.width / 2), y(p.maximum));
        means.emplace_back(x(p.x - p.width / 2), y(p.mean));
    }
    for (auto p = points.rbegin(); p != points.rend(); ++p)
        band.emplace_back(x(p->x - p->width / 2), y(p->minimum));
    SvgChart chart;
    chart.addPolygon(band, "lightsteelblue");
    chart.addPolyline(means, "navy");
    chart.addHorizontalAxis(left, right);
    chart.addVerticalAxis(low, high);
    chart.addTitle("mean with minimum-maximum band");
    return chart.writeTo(path);
}

// Feeds the "x y" lines of one input; x must not go back within the history.
void readHistory(NumberScanner& scanner, TalvoChronogram& chronogram, bool& started, double& lastX) {
    std::vector<double> numbers;
    int reductionThreshold = std::max(ReductionFloor, chronogram.getExpectedNumberOfPoints() * ReductionFactor);
    while (scanner.nextLineOfNumbers(numbers)) {
        if (scanner.lineHadMalformedNumber())
            continue;
        if (numbers.empty())
            continue;
        if (numbers.size() != 2) {
            scanner.reportLineProblem("expected two numbers \"x y\" in", scanner.currentLine());
            continue;
        }
        if (started && numbers[0] < lastX) {
            scanner.reportLineProblem("x goes back in", scanner.currentLine());
            continue;
        }
        chronogram.appendValueToHistory(numbers[0], numbers[1]);
        started = true;
        lastX = numbers[0];
        if (chronogram.getNumberOfPoints() > reductionThreshold)
            chronogram.stopHistory();
    }
}

}  // namespace

int runChrono(const ChronoOptions& options) {
    TalvoChronogram chronogram("history", options.points);
    chronogram.startHistory();
    int status = ExitSuccess;
    bool started = false;
    double lastX = 0;
    for (const std::string& name : inputsOrStandardInput(options.files)) {
        LineReader reader(name);
        if (!reader.isOpen()) {
            status = ExitTrouble;
            continue;
        }
        NumberScanner scanner(reader);
        readHistory(scanner, chronogram, started, lastX);
        scanner.finish();
        if (reader.failed())
            status = ExitTrouble;
    }
    chronogram.stopHistory();
    std::vector<PointSummary> points = summarise(chronogram);
    printPoints(points);
    if (options.svg.empty())
        return status;
    if (points.empty()) {
        reportProblem("no points to draw");
        return std::max(status, ExitFailure);
    }
    if (!drawPoints(points, options.svg))
        status = ExitTrouble;
    return status;
}

}  // namespace talvo_tool
