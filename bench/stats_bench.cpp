// Speed of the random generators against std::minstd_rand with the matching
// std distributions, and speed, memory and accuracy of the quantilizer.
//
// The accuracy runs feed 1e7 values to a quantilizer of 10 buffers of 1000
// values, extract 1000 quantiles and compare each with the exact rank of the
// sorted data: max_rank_error is the largest distance, as a fraction of the
// number of values, between the rank a quantile should have and the ranks
// its value occupies.
#include <talvo/stats/TalvoQuantilizer.h>
#include <talvo/stats/TalvoRandomizer.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <vector>

namespace {

const int kBuffers = 10;
const int kBufferSize = 1000;
const int kQuantiles = 1000;
const std::size_t kAccuracyValues = 10000000;
const double kGammaShape = 2.0;

// --- generators

template <class Draw>
void runTalvo(benchmark::State& state, Draw draw) {
    TalvoCongruentialRandomizer* r = new TalvoCongruentialRandomizer(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(draw(r));
    state.SetItemsProcessed(state.iterations());
    delete r;
}

template <class Distribution>
void runStd(benchmark::State& state, Distribution distribution) {
    std::minstd_rand engine(12345);
    for (auto _ : state)
        benchmark::DoNotOptimize(distribution(engine));
    state.SetItemsProcessed(state.iterations());
}

void BM_TalvoUniformDraw(benchmark::State& state) {
    runTalvo(state, [](TalvoRandomizer* r) { return r->uniformDraw(); });
}
void BM_StdUniform(benchmark::State& state) {
    runStd(state, std::uniform_real_distribution<double>(0.0, 1.0));
}
void BM_TalvoNormalDraw(benchmark::State& state) {
    runTalvo(state, [](TalvoRandomizer* r) { return r->normalDraw(); });
}
void BM_StdNormal(benchmark::State& state) {
    runStd(state, std::normal_distribution<double>(0.0, 1.0));
}
void BM_TalvoExponentialDraw(benchmark::State& state) {
    runTalvo(state, [](TalvoRandomizer* r) { return r->exponentialDraw(); });
}
void BM_StdExponential(benchmark::State& state) {
    runStd(state, std::exponential_distribution<double>(1.0));
}
void BM_TalvoGammaDraw(benchmark::State& state) {
    runTalvo(state, [](TalvoRandomizer* r) { return r->gammaDraw(kGammaShape); });
}
void BM_StdGamma(benchmark::State& state) {
    runStd(state, std::gamma_distribution<double>(kGammaShape, 1.0));
}
void BM_TalvoShuffledUniformDraw(benchmark::State& state) {
    TalvoShuffledCongruentialRandomizer* r = new TalvoShuffledCongruentialRandomizer(1);
    for (auto _ : state)
        benchmark::DoNotOptimize(r->uniformDraw());
    state.SetItemsProcessed(state.iterations());
    delete r;
}

BENCHMARK(BM_TalvoUniformDraw)->Name("rand_uniform/talvo");
BENCHMARK(BM_StdUniform)->Name("rand_uniform/std");
BENCHMARK(BM_TalvoNormalDraw)->Name("rand_normal/talvo");
BENCHMARK(BM_StdNormal)->Name("rand_normal/std");
BENCHMARK(BM_TalvoExponentialDraw)->Name("rand_exponential/talvo");
BENCHMARK(BM_StdExponential)->Name("rand_exponential/std");
BENCHMARK(BM_TalvoGammaDraw)->Name("rand_gamma/talvo");
BENCHMARK(BM_StdGamma)->Name("rand_gamma/std");
BENCHMARK(BM_TalvoShuffledUniformDraw)->Name("rand_uniform_shuffled/talvo");

// --- quantilizer

void BM_QuantilizerAddValue(benchmark::State& state) {
    TalvoQuantilizer* q = new TalvoQuantilizer(kBuffers, kBufferSize);
    std::mt19937_64 engine(1);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    std::vector<double> values(1 << 16);
    for (double& v : values)
        v = uniform(engine);
    std::size_t i = 0;
    for (auto _ : state) {
        q->addValue(values[i]);
        i = (i + 1) & (values.size() - 1);
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["bytes"] = q->getSizeInBytes();
    delete q;
}
BENCHMARK(BM_QuantilizerAddValue)->Name("quantilizer_add_value/talvo");

// Largest distance between the rank each extracted quantile should have and
// the ranks its value occupies in the sorted data, as a fraction of n.
double maxRankError(const TalvoQuantileTable* quantiles, const std::vector<double>& sorted) {
    double n = static_cast<double>(sorted.size());
    double worst = 0.0;
    for (int j = 0; j < kQuantiles; ++j) {
        double v = quantiles->getQuantile(j);
        double target = (j + 1) * n / kQuantiles;  // 1-based rank
        double low = static_cast<double>(std::lower_bound(sorted.begin(), sorted.end(), v) - sorted.begin()) + 1;
        double high = static_cast<double>(std::upper_bound(sorted.begin(), sorted.end(), v) - sorted.begin());
        double error = std::max({0.0, low - target, target - high});
        worst = std::max(worst, error / n);
    }
    return worst;
}

template <class Generate>
void runAccuracy(benchmark::State& state, Generate generate) {
    std::mt19937_64 engine(7);
    std::vector<double> values(kAccuracyValues);
    for (double& v : values)
        v = generate(engine);
    std::vector<double> sorted = values;
    std::sort(sorted.begin(), sorted.end());
    double error = 0.0;
    int bytes = 0;
    for (auto _ : state) {
        TalvoQuantilizer* q = new TalvoQuantilizer(kBuffers, kBufferSize);
        for (double v : values)
            q->addValue(v);
        TalvoQuantileTable* quantiles = q->extractQuantiles(kQuantiles);
        error = maxRankError(quantiles, sorted);
        bytes = q->getSizeInBytes();
        delete quantiles;
        delete q;
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(kAccuracyValues));
    state.counters["max_rank_error"] = error;
    state.counters["bytes"] = bytes;
}

void BM_QuantilizerRankErrorUniform(benchmark::State& state) {
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    runAccuracy(state, [&](std::mt19937_64& e) { return uniform(e); });
}

// Pareto with tail index 1 (x = 1 / u): no finite mean; a few values exceed
// 2147483647, which a collapse never picks.
void BM_QuantilizerRankErrorPareto(benchmark::State& state) {
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    runAccuracy(state, [&](std::mt19937_64& e) { return 1.0 / (1.0 - uniform(e)); });
}

// Tail index 1/2 (x = 1 / u^2): about 2 values in 100000 exceed 2147483647.
void BM_QuantilizerRankErrorParetoHalf(benchmark::State& state) {
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    runAccuracy(state, [&](std::mt19937_64& e) {
        double u = 1.0 - uniform(e);
        return 1.0 / (u * u);
    });
}

BENCHMARK(BM_QuantilizerRankErrorUniform)->Name("quantile_accuracy_uniform/talvo")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QuantilizerRankErrorPareto)->Name("quantile_accuracy_pareto/talvo")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QuantilizerRankErrorParetoHalf)->Name("quantile_accuracy_pareto_half/talvo")->Iterations(1)->Unit(benchmark::kMillisecond);

// --- quantiles of 1e6 values: the quantilizer (bounded memory, approximate)
// against exact answers from a sorted copy and from nth_element selections.

const std::size_t kQuantileValues = 1000000;

const std::vector<double>& quantileInput() {
    static const std::vector<double> values = [] {
        std::mt19937_64 engine(11);
        std::uniform_real_distribution<double> uniform(0.0, 1.0);
        std::vector<double> v(kQuantileValues);
        for (double& x : v)
            x = uniform(engine);
        return v;
    }();
    return values;
}

// 0-based rank of the j-th of kQuantiles quantiles (j from 0) among n values.
std::size_t quantileRank(int j, std::size_t n) {
    return static_cast<std::size_t>((j + 1) * static_cast<double>(n) / kQuantiles) - 1;
}

void BM_QuantilesQuantilizer(benchmark::State& state) {
    for (auto _ : state) {
        TalvoQuantilizer* q = new TalvoQuantilizer(kBuffers, kBufferSize);
        for (double v : quantileInput())
            q->addValue(v);
        TalvoQuantileTable* quantiles = q->extractQuantiles(kQuantiles);
        benchmark::DoNotOptimize(quantiles->getQuantile(kQuantiles / 2));
        delete quantiles;
        delete q;
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(kQuantileValues));
}

void BM_QuantilesSort(benchmark::State& state) {
    std::vector<double> result(kQuantiles);
    for (auto _ : state) {
        std::vector<double> values = quantileInput();
        std::sort(values.begin(), values.end());
        for (int j = 0; j < kQuantiles; ++j)
            result[j] = values[quantileRank(j, values.size())];
        benchmark::DoNotOptimize(result.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(kQuantileValues));
}

// Places the quantiles first..last (indexes) at their ranks in [begin, end):
// select the middle one, then each half on its own side.
void selectQuantiles(std::vector<double>& v, std::size_t begin, std::size_t end, int first, int last) {
    if (first > last) return;
    int middle = first + (last - first) / 2;
    std::size_t rank = quantileRank(middle, v.size());
    std::nth_element(v.begin() + begin, v.begin() + rank, v.begin() + end);
    selectQuantiles(v, begin, rank, first, middle - 1);
    selectQuantiles(v, rank + 1, end, middle + 1, last);
}

void BM_QuantilesNthElement(benchmark::State& state) {
    std::vector<double> result(kQuantiles);
    for (auto _ : state) {
        std::vector<double> values = quantileInput();
        selectQuantiles(values, 0, values.size(), 0, kQuantiles - 1);
        for (int j = 0; j < kQuantiles; ++j)
            result[j] = values[quantileRank(j, values.size())];
        benchmark::DoNotOptimize(result.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(kQuantileValues));
}

BENCHMARK(BM_QuantilesQuantilizer)->Name("quantiles_1e6/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QuantilesSort)->Name("quantiles_1e6/sort")->Unit(benchmark::kMillisecond);
BENCHMARK(BM_QuantilesNthElement)->Name("quantiles_1e6/nth_element")->Unit(benchmark::kMillisecond);

}  // namespace
