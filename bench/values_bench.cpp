// Dictionary and constant throughput.
//
// The dictionary phases (set, get, remove of 1e6 distinct keys in shuffled
// order) run against std::map<std::string, std::string> doing the same work;
// compare the items-per-second figures. Constant arithmetic: 1e7 `add` calls.
#include <talvo/containers/TalvoDictionary.h>
#include <talvo/values/TalvoConstant.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

const int kKeyCount = 1000000;
const int kAddCount = 10000000;
const unsigned kSeed = 20261122;

// kKeyCount distinct keys of 10 to 11 bytes, in a fixed shuffled order.
const std::vector<std::string>& keys() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> k;
        k.reserve(kKeyCount);
        char text[32];
        for (int i = 0; i < kKeyCount; ++i) {
            std::snprintf(text, sizeof text, "key-%07d", i);
            k.emplace_back(text);
        }
        std::shuffle(k.begin(), k.end(), std::mt19937(kSeed));
        return k;
    }();
    return all;
}

const char* const kDefinition = "definition";

void fill(TalvoDictionary& d) {
    for (const std::string& k : keys())
        d.setEntry(k.c_str(), kDefinition);
}

void fill(std::map<std::string, std::string>& m) {
    for (const std::string& k : keys())
        m[k] = kDefinition;
}

void BM_DictionarySetEntry(benchmark::State& state) {
    for (auto _ : state) {
        TalvoDictionary d;
        fill(d);
        state.PauseTiming();
        d.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kKeyCount);
}

void BM_MapInsert(benchmark::State& state) {
    for (auto _ : state) {
        std::map<std::string, std::string> m;
        fill(m);
        state.PauseTiming();
        m.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kKeyCount);
}

void BM_DictionaryGetEntry(benchmark::State& state) {
    TalvoDictionary d;
    fill(d);
    for (auto _ : state)
        for (const std::string& k : keys())
            benchmark::DoNotOptimize(d.getEntry(k.c_str()));
    state.SetItemsProcessed(state.iterations() * kKeyCount);
}

void BM_MapFind(benchmark::State& state) {
    std::map<std::string, std::string> m;
    fill(m);
    for (auto _ : state)
        for (const std::string& k : keys())
            benchmark::DoNotOptimize(m.find(k)->second.c_str());
    state.SetItemsProcessed(state.iterations() * kKeyCount);
}

void BM_DictionaryRemoveEntry(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        TalvoDictionary d;
        fill(d);
        state.ResumeTiming();
        for (const std::string& k : keys())
            d.removeEntry(k.c_str());
    }
    state.SetItemsProcessed(state.iterations() * kKeyCount);
}

void BM_MapErase(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        std::map<std::string, std::string> m;
        fill(m);
        state.ResumeTiming();
        for (const std::string& k : keys())
            m.erase(k);
    }
    state.SetItemsProcessed(state.iterations() * kKeyCount);
}

void BM_ConstantAdd(benchmark::State& state) {
    TalvoConstant sum(0), step(3), half(0.5);
    const TalvoConstant* operand = state.range(0) ? &half : &step;
    for (auto _ : state) {
        for (int i = 0; i < kAddCount; ++i)
            sum.add(&sum, operand);
        benchmark::DoNotOptimize(sum.toDouble());
    }
    state.SetItemsProcessed(state.iterations() * kAddCount);
}

}  // namespace

BENCHMARK(BM_DictionarySetEntry)->Name("dict_set/talvo")->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_MapInsert)->Name("dict_set/std")->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_DictionaryGetEntry)->Name("dict_get/talvo")->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_MapFind)->Name("dict_get/std")->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_DictionaryRemoveEntry)->Name("dict_remove/talvo")->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_MapErase)->Name("dict_remove/std")->Unit(benchmark::kMillisecond)->Iterations(3);
// 0: int + int stays an int; 1: the sum turns double on the first call.
BENCHMARK(BM_ConstantAdd)->Name("constant_add/talvo")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);
