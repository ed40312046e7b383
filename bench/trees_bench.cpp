// The AVL tree against std::multiset and the hash table against
// std::unordered_set, on a million boxed ints in random order.
//
// Each benchmark times one whole pass over the million items per iteration;
// the "per_op" counter is the time per item. "bytes_per_item" is the heap
// growth (glibc mallinfo2) while the container is full, divided by the count.
#include <talvo/containers/TalvoAVLTree.h>
#include <talvo/containers/TalvoHashTable.h>
#include <talvo/foundation/TalvoInteger.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <malloc.h>
#include <random>
#include <set>
#include <unordered_set>
#include <vector>

namespace {

const int kItems = 1000000;

// The boxes, made once, in a random order shared by every benchmark.
const std::vector<int*>& boxes() {
    static std::vector<int*> all = [] {
        std::vector<int*> made;
        made.reserve(kItems);
        for (int i = 0; i < kItems; i++)
            made.push_back(TalvoInteger::allocate(i));
        std::shuffle(made.begin(), made.end(), std::mt19937(42));
        return made;
    }();
    return all;
}

int compareBoxes(void* a, void* b) {
    int x = *static_cast<int*>(a);
    int y = *static_cast<int*>(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

int hashBox(void* item) { return *static_cast<int*>(item); }

int sameBox(void* item, void* key) { return item == key ? 0 : 1; }

struct BoxLess {
    bool operator()(const int* a, const int* b) const { return *a < *b; }
};

struct BoxHash {
    std::size_t operator()(const int* a) const { return static_cast<std::size_t>(*a); }
};

using StdTree = std::multiset<int*, BoxLess>;
using StdHash = std::unordered_set<int*, BoxHash>;

long heapInUse() { return static_cast<long>(mallinfo2().uordblks); }

void perItem(benchmark::State& state, int items = kItems) {
    state.counters["per_op"] = benchmark::Counter(
        items, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

TalvoAVLTree* fullTree() {
    TalvoAVLTree* tree = new TalvoAVLTree(compareBoxes);
    for (int* b : boxes())
        tree->insertItem(b);
    return tree;
}

TalvoHashTable* fullTable(int items = kItems) {
    TalvoHashTable* table = new TalvoHashTable(hashBox);
    for (int i = 0; i < items; i++)
        table->insertItem(boxes()[i]);
    return table;
}

// ---------------------------------------------------------------- AVL tree vs std::multiset

void AVL_Insert(benchmark::State& state) {
    boxes();
    for (auto _ : state) {
        long before = heapInUse();
        TalvoAVLTree* tree = fullTree();
        state.PauseTiming();
        state.counters["bytes_per_item"] = double(heapInUse() - before) / kItems;
        delete tree;
        state.ResumeTiming();
    }
    perItem(state);
}

void Multiset_Insert(benchmark::State& state) {
    boxes();
    for (auto _ : state) {
        long before = heapInUse();
        StdTree* tree = new StdTree();
        for (int* b : boxes())
            tree->insert(b);
        state.PauseTiming();
        state.counters["bytes_per_item"] = double(heapInUse() - before) / kItems;
        delete tree;
        state.ResumeTiming();
    }
    perItem(state);
}

void AVL_SearchByCompare(benchmark::State& state) {
    TalvoAVLTree* tree = fullTree();
    for (auto _ : state) {
        for (int* b : boxes())
            benchmark::DoNotOptimize(tree->lookForItem(b));
    }
    perItem(state);
    delete tree;
}

void Multiset_Find(benchmark::State& state) {
    StdTree tree(boxes().begin(), boxes().end());
    for (auto _ : state) {
        for (int* b : boxes())
            benchmark::DoNotOptimize(tree.find(b));
    }
    perItem(state);
}

void AVL_Remove(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        TalvoAVLTree* tree = fullTree();
        state.ResumeTiming();
        for (int* b : boxes())
            tree->removeItem(b);
        state.PauseTiming();
        delete tree;
        state.ResumeTiming();
    }
    perItem(state);
}

void Multiset_Erase(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        StdTree* tree = new StdTree(boxes().begin(), boxes().end());
        state.ResumeTiming();
        for (int* b : boxes())
            tree->erase(tree->find(b));
        state.PauseTiming();
        delete tree;
        state.ResumeTiming();
    }
    perItem(state);
}

void AVL_Walk(benchmark::State& state) {
    TalvoAVLTree* tree = fullTree();
    TalvoAVLTreeCursor* c = tree->newCursor();
    for (auto _ : state) {
        for (c->resetOnFirstItem(); !c->isAfterLastItem(); c->increment())
            benchmark::DoNotOptimize(c->getItem());
    }
    perItem(state);
    delete c;
    delete tree;
}

void Multiset_Walk(benchmark::State& state) {
    StdTree tree(boxes().begin(), boxes().end());
    for (auto _ : state) {
        for (int* b : tree)
            benchmark::DoNotOptimize(b);
    }
    perItem(state);
}

// ---------------------------------------------------------------- hash table vs std::unordered_set

void Hash_Insert(benchmark::State& state) {
    boxes();
    for (auto _ : state) {
        long before = heapInUse();
        TalvoHashTable* table = fullTable();
        state.PauseTiming();
        state.counters["bytes_per_item"] = double(heapInUse() - before) / kItems;
        delete table;
        state.ResumeTiming();
    }
    perItem(state);
}

void UnorderedSet_Insert(benchmark::State& state) {
    boxes();
    for (auto _ : state) {
        long before = heapInUse();
        StdHash* set = new StdHash();
        for (int* b : boxes())
            set->insert(b);
        state.PauseTiming();
        state.counters["bytes_per_item"] = double(heapInUse() - before) / kItems;
        delete set;
        state.ResumeTiming();
    }
    perItem(state);
}

// The lookups run on the first state.range(0) boxes: with a million Items the
// table stops at its maximum of 131072 slots (about 7.6 Items per bucket);
// with ten thousand it keeps its designed load of at most 0.1 per slot.
void Hash_LookForItem(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    TalvoHashTable* table = fullTable(n);
    for (auto _ : state) {
        for (int i = 0; i < n; i++)
            benchmark::DoNotOptimize(table->lookForItem(sameBox, boxes()[i]));
    }
    perItem(state, n);
    delete table;
}

void Hash_Contains(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    TalvoHashTable* table = fullTable(n);
    for (auto _ : state) {
        for (int i = 0; i < n; i++)
            benchmark::DoNotOptimize(table->contains(boxes()[i]));
    }
    perItem(state, n);
    delete table;
}

void UnorderedSet_Find(benchmark::State& state) {
    int n = static_cast<int>(state.range(0));
    StdHash set(boxes().begin(), boxes().begin() + n);
    for (auto _ : state) {
        for (int i = 0; i < n; i++)
            benchmark::DoNotOptimize(set.find(boxes()[i]));
    }
    perItem(state, n);
}

void Hash_Remove(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        TalvoHashTable* table = fullTable();
        state.ResumeTiming();
        for (int* b : boxes())
            table->removeItem(b);
        state.PauseTiming();
        delete table;
        state.ResumeTiming();
    }
    perItem(state);
}

void UnorderedSet_Erase(benchmark::State& state) {
    for (auto _ : state) {
        state.PauseTiming();
        StdHash* set = new StdHash(boxes().begin(), boxes().end());
        state.ResumeTiming();
        for (int* b : boxes())
            set->erase(b);
        state.PauseTiming();
        delete set;
        state.ResumeTiming();
    }
    perItem(state);
}

}  // namespace

BENCHMARK(AVL_Insert)->Name("avl_insert_shuffled/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(Multiset_Insert)->Name("avl_insert_shuffled/std")->Unit(benchmark::kMillisecond);
BENCHMARK(AVL_SearchByCompare)->Name("avl_find_shuffled/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(Multiset_Find)->Name("avl_find_shuffled/std")->Unit(benchmark::kMillisecond);
BENCHMARK(AVL_Remove)->Name("avl_remove_shuffled/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(Multiset_Erase)->Name("avl_remove_shuffled/std")->Unit(benchmark::kMillisecond);
BENCHMARK(AVL_Walk)->Name("avl_walk/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(Multiset_Walk)->Name("avl_walk/std")->Unit(benchmark::kMillisecond);
BENCHMARK(Hash_Insert)->Name("hash_insert_shuffled/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(UnorderedSet_Insert)->Name("hash_insert_shuffled/std")->Unit(benchmark::kMillisecond);
BENCHMARK(Hash_LookForItem)->Name("hash_look_for_item/talvo")->Arg(kItems)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Hash_Contains)->Name("hash_find/talvo")->Arg(kItems)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(UnorderedSet_Find)->Name("hash_find/std")->Arg(kItems)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Hash_Remove)->Name("hash_remove/talvo")->Unit(benchmark::kMillisecond);
BENCHMARK(UnorderedSet_Erase)->Name("hash_remove/std")->Unit(benchmark::kMillisecond);
