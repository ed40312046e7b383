// Chronogram reduction and step-curve queries on a million points.
#include <talvo/stats/TalvoChronogram.h>
#include <talvo/stats/TalvoCurve.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <malloc.h>
#include <vector>

namespace {

const int kPoints = 1000000;
const int kExpectedPoints = 100;

// A reproducible y: a slow sine around 50 with hashed noise, so that the
// means differ from point to point.
double wave(int i) {
    unsigned h = static_cast<unsigned>(i) * 2654435761u;
    double noise = static_cast<double>(h >> 16) / 65536.0 - 0.5;
    return 50.0 + 30.0 * std::sin(i * 1e-5) + 10.0 * noise;
}

// Bytes the allocator has handed out and not taken back. The chain only
// shrinks once it stops, so the figure right after feeding is the peak.
double heapInUseBytes() {
    return static_cast<double>(mallinfo2().uordblks);
}

void BM_ChronogramFeedAndReduce(benchmark::State& state) {
    double peakBytes = 0.0;
    int left = 0;
    for (auto _ : state) {
        state.PauseTiming();
        double before = heapInUseBytes();
        state.ResumeTiming();
        TalvoChronogram* chronogram = new TalvoChronogram("load", kExpectedPoints);
        for (int i = 1; i <= kPoints; ++i)
            chronogram->appendValueToHistory(i, wave(i));
        state.PauseTiming();
        peakBytes = heapInUseBytes() - before;
        state.ResumeTiming();
        chronogram->stopHistory();
        left = chronogram->getNumberOfPoints();
        TalvoChronogram::free(chronogram);
    }
    state.counters["points_left"] = left;
    state.counters["peak_MB"] = peakBytes / (1024.0 * 1024.0);
    state.counters["bytes_per_point"] = peakBytes / kPoints;
    state.counters["ns_per_value"] =
        benchmark::Counter(static_cast<double>(kPoints), benchmark::Counter::kIsIterationInvariantRate |
                                                             benchmark::Counter::kInvert);
}
BENCHMARK(BM_ChronogramFeedAndReduce)->Name("chronogram_feed_reduce/talvo")->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_ChronogramFeedOnly(benchmark::State& state) {
    for (auto _ : state) {
        TalvoChronogram* chronogram = new TalvoChronogram("load", kExpectedPoints);
        for (int i = 1; i <= kPoints; ++i)
            chronogram->appendValueToHistory(i, wave(i));
        benchmark::DoNotOptimize(chronogram->getFirstPoint());
        state.PauseTiming();
        TalvoChronogram::free(chronogram);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_ChronogramFeedOnly)->Name("chronogram_feed/talvo")->Unit(benchmark::kMillisecond)->Iterations(3);

TalvoCurve* buildCurve() {
    TalvoCurve* curve = new TalvoCurve();
    for (int i = 0; i < kPoints; ++i)
        curve->insertPoint(i * 0.5, wave(i));
    return curve;
}

void BM_CurveIntegral(benchmark::State& state) {
    TalvoCurve* curve = buildCurve();
    for (auto _ : state)
        benchmark::DoNotOptimize(curve->computeIntegral(-1.0, kPoints));
    state.SetItemsProcessed(state.iterations() * kPoints);
    TalvoCurve::free(curve);
}
BENCHMARK(BM_CurveIntegral)->Name("curve_integral/talvo")->Unit(benchmark::kMillisecond);

void BM_CurveSojourn(benchmark::State& state) {
    TalvoCurve* curve = buildCurve();
    for (auto _ : state)
        benchmark::DoNotOptimize(curve->computeSojourn(-1.0, kPoints, 30.0, 70.0));
    state.SetItemsProcessed(state.iterations() * kPoints);
    TalvoCurve::free(curve);
}
BENCHMARK(BM_CurveSojourn)->Name("curve_sojourn/talvo")->Unit(benchmark::kMillisecond);

// Peer: the same integral over two plain arrays, no point objects.
void BM_PlainArrayIntegral(benchmark::State& state) {
    std::vector<double> xs(kPoints), ys(kPoints);
    for (int i = 0; i < kPoints; ++i) {
        xs[i] = i * 0.5;
        ys[i] = wave(i);
    }
    for (auto _ : state) {
        double sum = 0.0;
        for (int i = 0; i + 1 < kPoints; ++i)
            sum += ys[i] * (xs[i + 1] - xs[i]);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
}
BENCHMARK(BM_PlainArrayIntegral)->Name("curve_integral/std")->Unit(benchmark::kMillisecond);

void BM_CurveBuild(benchmark::State& state) {
    double bytes = 0.0;
    for (auto _ : state) {
        state.PauseTiming();
        double before = heapInUseBytes();
        state.ResumeTiming();
        TalvoCurve* curve = buildCurve();
        state.PauseTiming();
        bytes = heapInUseBytes() - before;
        TalvoCurve::free(curve);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kPoints);
    state.counters["bytes_per_point"] = bytes / kPoints;
}
BENCHMARK(BM_CurveBuild)->Name("curve_build/talvo")->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
