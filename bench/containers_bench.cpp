// Lists and arrays against their standard counterparts and GLib's GQueue and
// GList (when found), one million items each.
#include <talvo/containers/TalvoArray.h>
#include <talvo/containers/TalvoList.h>
#include <talvo/foundation/TalvoInteger.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <list>
#include <random>
#include <vector>

#ifdef TALVO_BENCH_HAVE_GLIB
#include <glib.h>
#endif

namespace {

constexpr int N = 1000000;

// Reports the time per item processed in one iteration.
void perItem(benchmark::State& state, double itemsPerIteration) {
    state.counters["per_item"] = benchmark::Counter(
        itemsPerIteration, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// N boxed ints 0..N-1, shuffled or in order; freed by freeBoxes.
std::vector<int*> boxes(bool shuffled) {
    std::vector<int*> result;
    result.reserve(N);
    for (int i = 0; i < N; ++i)
        result.push_back(TalvoInteger::allocate(i));
    if (shuffled)
        std::shuffle(result.begin(), result.end(), std::mt19937(42));
    return result;
}

void freeBoxes(std::vector<int*>& values) {
    for (int* box : values)
        TalvoInteger::free(box);
}

void TalvoListQueue(benchmark::State& state) {
    int item = 0;
    for (auto _ : state) {
        TalvoList list;
        for (int i = 0; i < N; ++i)
            list.insertItemLast(&item);
        for (int i = 0; i < N; ++i)
            benchmark::DoNotOptimize(list.removeFirstItem());
    }
    perItem(state, N);
}

void StdListQueue(benchmark::State& state) {
    int item = 0;
    for (auto _ : state) {
        std::list<void*> list;
        for (int i = 0; i < N; ++i)
            list.push_back(&item);
        for (int i = 0; i < N; ++i) {
            benchmark::DoNotOptimize(list.front());
            list.pop_front();
        }
    }
    perItem(state, N);
}

void TalvoListQuickSort(benchmark::State& state) {
    std::vector<int*> values = boxes(state.range(0) != 0);
    TalvoList list;
    for (auto _ : state) {
        state.PauseTiming();
        list.removeItems();
        for (int* box : values)
            list.insertItemLast(box);
        state.ResumeTiming();
        list.quickSort(TalvoInteger::geq);
    }
    list.removeItems();
    freeBoxes(values);
    perItem(state, N);
}

void StdListSort(benchmark::State& state) {
    std::vector<int*> values = boxes(state.range(0) != 0);
    std::list<int*> list;
    for (auto _ : state) {
        state.PauseTiming();
        list.assign(values.begin(), values.end());
        state.ResumeTiming();
        list.sort([](int* a, int* b) { return *a < *b; });
    }
    freeBoxes(values);
    perItem(state, N);
}

void TalvoListCursorWalk(benchmark::State& state) {
    int item = 0;
    TalvoList list;
    for (int i = 0; i < N; ++i)
        list.insertItemLast(&item);
    TalvoListCursor cursor(&list);
    for (auto _ : state) {
        for (cursor.resetOnFirstItem(); !cursor.isAfterLastItem(); cursor.increment())
            benchmark::DoNotOptimize(cursor.getItem());
    }
    perItem(state, N);
}

void StdListWalk(benchmark::State& state) {
    int item = 0;
    std::list<void*> list(N, &item);
    for (auto _ : state) {
        for (void* p : list)
            benchmark::DoNotOptimize(p);
    }
    perItem(state, N);
}

// One setCell and one getCell per slot.
void TalvoArraySetGet(benchmark::State& state) {
    int item = 0;
    TalvoArray array(N);
    for (auto _ : state) {
        for (int i = 0; i < N; ++i)
            array.setCell(i, (i & 1) ? &item : nullptr);
        for (int i = 0; i < N; ++i)
            benchmark::DoNotOptimize(array.getCell(i));
        benchmark::ClobberMemory();
    }
    perItem(state, 2.0 * N);
}

void StdVectorSetGet(benchmark::State& state) {
    int item = 0;
    std::vector<void*> array(N);
    for (auto _ : state) {
        for (int i = 0; i < N; ++i)
            array[i] = (i & 1) ? &item : nullptr;
        for (int i = 0; i < N; ++i)
            benchmark::DoNotOptimize(array[i]);
        benchmark::ClobberMemory();
    }
    perItem(state, 2.0 * N);
}

// sortBlock has no standard peer; std::stable_sort on a vector shows its distance.
void TalvoArraySortBlock(benchmark::State& state) {
    std::vector<int*> values = boxes(state.range(0) != 0);
    TalvoArray array(N);
    for (auto _ : state) {
        state.PauseTiming();
        for (int i = 0; i < N; ++i)
            array.setCell(i, values[i]);
        state.ResumeTiming();
        array.sortBlock(0, N - 1, TalvoInteger::geq);
    }
    freeBoxes(values);
    perItem(state, N);
}

void StdStableSort(benchmark::State& state) {
    std::vector<int*> values = boxes(state.range(0) != 0);
    std::vector<int*> array;
    for (auto _ : state) {
        state.PauseTiming();
        array = values;
        state.ResumeTiming();
        std::stable_sort(array.begin(), array.end(), [](int* a, int* b) { return *a < *b; });
    }
    freeBoxes(values);
    perItem(state, N);
}

#ifdef TALVO_BENCH_HAVE_GLIB
void GlibQueue(benchmark::State& state) {
    int item = 0;
    for (auto _ : state) {
        GQueue* queue = g_queue_new();
        for (int i = 0; i < N; ++i)
            g_queue_push_tail(queue, &item);
        for (int i = 0; i < N; ++i)
            benchmark::DoNotOptimize(g_queue_pop_head(queue));
        g_queue_free(queue);
    }
    perItem(state, N);
}

gint compareIntBoxes(gconstpointer a, gconstpointer b) {
    int x = *static_cast<const int*>(a);
    int y = *static_cast<const int*>(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

// The boxes as a GList in the given order (prepended, then reversed).
GList* glibListOf(const std::vector<int*>& values) {
    GList* list = nullptr;
    for (int* box : values)
        list = g_list_prepend(list, box);
    return g_list_reverse(list);
}

void GlibListSort(benchmark::State& state) {
    std::vector<int*> values = boxes(state.range(0) != 0);
    GList* list = nullptr;
    for (auto _ : state) {
        state.PauseTiming();
        g_list_free(list);
        list = glibListOf(values);
        state.ResumeTiming();
        list = g_list_sort(list, compareIntBoxes);
    }
    g_list_free(list);
    freeBoxes(values);
    perItem(state, N);
}

void GlibListWalk(benchmark::State& state) {
    int item = 0;
    GList* list = glibListOf(std::vector<int*>(N, &item));
    for (auto _ : state) {
        for (GList* cell = list; cell != nullptr; cell = cell->next)
            benchmark::DoNotOptimize(cell->data);
    }
    g_list_free(list);
    perItem(state, N);
}
#endif

}  // namespace

BENCHMARK(TalvoListQueue)->Name("list_queue/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(StdListQueue)->Name("list_queue/std")->Unit(benchmark::kMillisecond);
BENCHMARK(TalvoListQuickSort)->Name("list_sort/talvo")->Arg(1)->Arg(0)->ArgName("random")->Unit(benchmark::kMillisecond);
BENCHMARK(StdListSort)->Name("list_sort/std")->Arg(1)->Arg(0)->ArgName("random")->Unit(benchmark::kMillisecond);
BENCHMARK(TalvoListCursorWalk)->Name("list_walk/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(StdListWalk)->Name("list_walk/std")->Unit(benchmark::kMillisecond);
BENCHMARK(TalvoArraySetGet)->Name("array_set_get/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(StdVectorSetGet)->Name("array_set_get/std")->Unit(benchmark::kMillisecond);
BENCHMARK(TalvoArraySortBlock)->Name("array_sort_block/talvo")->Arg(1)->Arg(0)->ArgName("random")->Unit(benchmark::kMillisecond);
BENCHMARK(StdStableSort)->Name("array_sort_block/std")->Arg(1)->Arg(0)->ArgName("random")->Unit(benchmark::kMillisecond);
#ifdef TALVO_BENCH_HAVE_GLIB
BENCHMARK(GlibQueue)->Name("list_queue/glib")->Unit(benchmark::kMillisecond);
BENCHMARK(GlibListSort)->Name("list_sort/glib")->Arg(1)->Arg(0)->ArgName("random")->Unit(benchmark::kMillisecond);
BENCHMARK(GlibListWalk)->Name("list_walk/glib")->Unit(benchmark::kMillisecond);
#endif
