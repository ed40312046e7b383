// talvo stats: running statistics, estimated quantiles and an equal-weight
// histogram of a stream of numbers, in memory bounded whatever the input size.
#include "Commands.h"
#include "SvgPicture.h"
#include "ToolSupport.h"

#include <talvo/stats/TalvoBinTable.h>
#include <talvo/stats/TalvoMeasure.h>
#include <talvo/stats/TalvoQuantilizer.h>

#include <algorithm>
#include <cstdio>

namespace talvo_tool {

namespace {

// Quantilizer shape: 16 buffers of 1,024 values keep about 130 KB and estimate
// quantiles of a hundred million values to a fraction of a percent.
constexpr int QuantilizerBuffers = 16;
constexpr int QuantilizerBufferSize = 1024;
// The bin table holds this many times the requested bins before it shrinks;
// its shrink sorts in quadratic time, so the factor stays small.
constexpr int BinShrinkFactor = 8;
constexpr int HistogramBarWidth = 50;
// A shrink can leave a last bin holding only rounding residue; bins lighter
// than this fraction of the total are not shown.
constexpr double NegligibleWeightFraction = 1e-9;

// One bin of the histogram: its interval, weight and weight per unit of x.
struct Bin {
    double from;
    double to;
    double weight;
    double density;
};

class NumberSummary {
public:
    explicit NumberSummary(const StatsOptions& options) : measure("stats"), count(0), minimum(0), maximum(0) {
        measure.setQuantilizer(new TalvoQuantilizer(QuantilizerBuffers, QuantilizerBufferSize));
        if (options.histogram || !options.svg.empty())
            measure.createBinTable(options.bins, BinShrinkFactor);
    }

    void add(double x) {
        // The extremes are kept here: the measure's maximum starts at the
        // smallest positive double, which would misreport all-negative data.
        if (count == 0 || x < minimum)
            minimum = x;
        if (count == 0 || x > maximum)
            maximum = x;
        ++count;
        measure.addValue(x);
    }

    long long getCount() const { return count; }
    void printSummary(int quantiles);
    std::vector<Bin> collectBins(int bins);

private:
    TalvoMeasure measure;
    long long count;
    double minimum;
    double maximum;
};

void NumberSummary::printSummary(int quantiles) {
    std::printf("count     %lld\n", count);
    if (count == 0)
        return;
    std::printf("mean      %.10g\n", measure.computeMean());
    std::printf("stddev    %.10g\n", measure.computeStandardDeviation());
    std::printf("slack95   %.10g\n", measure.computeNinetyFivePercentConfidenceSlack());
    std::printf("minimum   %.10g\n", minimum);
    std::printf("maximum   %.10g\n", maximum);
    TalvoQuantileTable* table = measure.getQuantilizer()->extractQuantiles(quantiles);
    if (!table)
        return;
    // The quantilizer picks the value at each of n equally spaced steps of
    // the data, so slot i estimates the (i + 1) / n quantile. A step that a
    // single heavy value already overshot is left at 0.0 by the quantilizer
    // (as with more quantiles than values); quantiles never decrease and never
    // pass the maximum, so such a slot repeats the one before it.
    double previous = minimum;
    for (int i = 0; i < quantiles; ++i) {
        double q = table->getQuantile(i);
        if (i > 0 && (q < previous || q > maximum))
            q = previous;
        std::printf("q%-8g %.10g\n", static_cast<double>(i + 1) / quantiles, q);
        previous = q;
    }
    delete table;
}

std::vector<Bin> NumberSummary::collectBins(int bins) {
    TalvoBinTable* table = measure.getBinTable();
    std::vector<Bin> result;
    if (!table || table->getTop() == 0)
        return result;
    table->shrink(std::min(bins, table->getTop()));
    int top = table->getTop();
    while (top > 1 && table->getWeight(top - 1) < table->getWeight() * NegligibleWeightFraction)
        --top;
    // Bins hold equal weights around their mean values; each one spans from
    // the midpoint with its left neighbour to the midpoint with its right
    // one, the outer ones reaching the extremes of the data.
    for (int i = 0; i < top; ++i) {
        double value = table->getValue(i);
        double from = i == 0 ? minimum : (table->getValue(i - 1) + value) / 2;
        double to = i == top - 1 ? maximum : (value + table->getValue(i + 1)) / 2;
        double weight = table->getWeight(i);
        result.push_back({from, to, weight, to > from ? weight / (to - from) : 0.0});
    }
    double highest = 0;
    for (const Bin& bin : result)
        highest = std::max(highest, bin.density);
    // A bin of zero width (repeated values) is as dense as the densest one.
    for (Bin& bin : result)
        if (bin.to <= bin.from)
            bin.density = highest > 0 ? highest : 1.0;
    return result;
}

double highestDensity(const std::vector<Bin>& bins) {
    double highest = 0;
    for (const Bin& bin : bins)
        highest = std::max(highest, bin.density);
    return highest;
}

void printHistogram(const std::vector<Bin>& bins) {
    double highest = highestDensity(bins);
    std::printf("# histogram: bins of equal weight, bar length proportional to density\n");
    std::printf("# %12s %12s %10s\n", "from", "to", "weight");
    for (const Bin& bin : bins) {
        int length = highest > 0 ? static_cast<int>(bin.density / highest * HistogramBarWidth + 0.5) : 0;
        std::printf("  %12.6g %12.6g %10.6g  %s\n", bin.from, bin.to, bin.weight, std::string(length, '#').c_str());
    }
}

bool drawHistogram(const std::vector<Bin>& bins, long long count, const std::string& path) {
    SvgChart chart;
    double low = bins.front().from;
    double high = bins.back().to;
    SvgScale x = SvgChart::horizontal(low, high);
    SvgScale y = SvgChart::vertical(0, highestDensity(bins));
    for (const Bin& bin : bins) {
        double left = x(bin.from);
        double width = std::max(x(bin.to) - left, 1.0);
        double top = y(bin.density);
        chart.addRectangle(left, top, width, SvgChart::Bottom - top, "steelblue");
    }
    chart.addHorizontalAxis(low, high);
    chart.addTitle("histogram of " + std::to_string(count) + " values");
    return chart.writeTo(path);
}

}  // namespace

int runStats(const StatsOptions& options) {
    NumberSummary summary(options);
    int status = ExitSuccess;
    std::vector<double> numbers;
    for (const std::string& name : inputsOrStandardInput(options.files)) {
        LineReader reader(name);
        if (!reader.isOpen()) {
            status = ExitTrouble;
            continue;
        }
        NumberScanner scanner(reader);
        while (scanner.nextLineOfNumbers(numbers))
            for (double x : numbers)
                summary.add(x);
        scanner.finish();
        if (reader.failed())
            status = ExitTrouble;
    }
    summary.printSummary(options.quantiles);
    if (summary.getCount() == 0) {
        if (options.histogram || !options.svg.empty())
            reportProblem("no numbers to draw");
        return options.histogram || !options.svg.empty() ? std::max(status, ExitFailure) : status;
    }
    std::vector<Bin> bins = summary.collectBins(options.bins);
    if (options.histogram)
        printHistogram(bins);
    if (!options.svg.empty() && !drawHistogram(bins, summary.getCount(), options.svg))
        status = ExitTrouble;
    return status;
}

}  // namespace talvo_tool
