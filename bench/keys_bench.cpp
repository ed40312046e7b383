// The AVL tree and the hash table against the std containers and GLib's
// GTree and GHashTable, on the generated key streams (1e5 and 1e6 keys;
// sequential, random, and drawn with duplicates). Keys are boxed ints, boxed
// once outside the timing; every container holds every box.
//   trees  order by key value (GTree, which keeps one entry per key, also
//          by address so that equal keys stay distinct entries);
//   tables hash by key value and test identity, so duplicates are kept.
// Benchmark names are "<workload>/<impl>/<order>_<count>"; per_item is the
// time per key.
#include "support/BenchInputs.h"

#include <talvo/containers/TalvoAVLTree.h>
#include <talvo/containers/TalvoHashTable.h>

#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#ifdef TALVO_BENCH_HAVE_GLIB
#include <glib.h>
#endif

namespace {

using talvo_bench::perItem;

// The boxes of one stream, made on first use and kept for the whole run.
struct Stream {
    std::string name;
    std::vector<int> keys;
    std::vector<int*> boxes;
};

Stream& stream(const std::string& name) {
    static std::vector<Stream*> loaded;
    for (Stream* s : loaded)
        if (s->name == name) return *s;
    Stream* s = new Stream{name, talvo_bench::readKeys("keys_" + name + ".bin"), {}};
    for (int& key : s->keys) s->boxes.push_back(&key);
    loaded.push_back(s);
    return *s;
}

int compareBoxes(void* a, void* b) {
    int x = *static_cast<int*>(a);
    int y = *static_cast<int*>(b);
    return x < y ? -1 : (x > y ? 1 : 0);
}

int hashBox(void* item) { return *static_cast<int*>(item); }

struct BoxLess {
    bool operator()(const int* a, const int* b) const { return *a < *b; }
};
struct BoxHash {
    std::size_t operator()(const int* a) const { return static_cast<std::size_t>(*a); }
};

using Boxes = std::vector<int*>;

// Each workload: fills (and for lookups, queries) a container with every box.
using Workload = void (*)(benchmark::State&, const Boxes&);

void treeInsertTalvo(benchmark::State& state, const Boxes& boxes) {
    for (auto _ : state) {
        TalvoAVLTree tree(compareBoxes);
        for (int* b : boxes) tree.insertItem(b);
        benchmark::DoNotOptimize(tree.getNumberOfItems());
    }
}

void treeInsertStd(benchmark::State& state, const Boxes& boxes) {
    for (auto _ : state) {
        std::multiset<int*, BoxLess> tree;
        for (int* b : boxes) tree.insert(b);
        benchmark::DoNotOptimize(tree.size());
    }
}

void treeLookupTalvo(benchmark::State& state, const Boxes& boxes) {
    TalvoAVLTree tree(compareBoxes);
    for (int* b : boxes) tree.insertItem(b);
    for (auto _ : state)
        for (int* b : boxes) benchmark::DoNotOptimize(tree.lookForItem(b));
}

void treeLookupStd(benchmark::State& state, const Boxes& boxes) {
    std::multiset<int*, BoxLess> tree(boxes.begin(), boxes.end());
    for (auto _ : state)
        for (int* b : boxes) benchmark::DoNotOptimize(tree.find(b));
}

void hashInsertTalvo(benchmark::State& state, const Boxes& boxes) {
    for (auto _ : state) {
        TalvoHashTable table(hashBox);
        for (int* b : boxes) table.insertItem(b);
        benchmark::DoNotOptimize(table.getNumberOfItems());
    }
}

void hashInsertStd(benchmark::State& state, const Boxes& boxes) {
    for (auto _ : state) {
        std::unordered_set<int*, BoxHash> table;
        for (int* b : boxes) table.insert(b);
        benchmark::DoNotOptimize(table.size());
    }
}

void hashLookupTalvo(benchmark::State& state, const Boxes& boxes) {
    TalvoHashTable table(hashBox);
    for (int* b : boxes) table.insertItem(b);
    for (auto _ : state)
        for (int* b : boxes) benchmark::DoNotOptimize(table.contains(b));
}

void hashLookupStd(benchmark::State& state, const Boxes& boxes) {
    std::unordered_set<int*, BoxHash> table(boxes.begin(), boxes.end());
    for (auto _ : state)
        for (int* b : boxes) benchmark::DoNotOptimize(table.count(b));
}

#ifdef TALVO_BENCH_HAVE_GLIB
gint compareBoxesThenAddress(gconstpointer a, gconstpointer b, gpointer) {
    int x = *static_cast<const int*>(a);
    int y = *static_cast<const int*>(b);
    if (x != y) return x < y ? -1 : 1;
    return a < b ? -1 : (a > b ? 1 : 0);
}

guint hashBoxGlib(gconstpointer item) { return static_cast<guint>(*static_cast<const int*>(item)); }

GTree* fullGTree(const Boxes& boxes) {
    GTree* tree = g_tree_new_with_data(compareBoxesThenAddress, nullptr);
    for (int* b : boxes) g_tree_insert(tree, b, b);
    return tree;
}

GHashTable* fullGHashTable(const Boxes& boxes) {
    GHashTable* table = g_hash_table_new(hashBoxGlib, g_direct_equal);
    for (int* b : boxes) g_hash_table_add(table, b);
    return table;
}

void treeInsertGlib(benchmark::State& state, const Boxes& boxes) {
    for (auto _ : state) {
        GTree* tree = fullGTree(boxes);
        benchmark::DoNotOptimize(g_tree_nnodes(tree));
        g_tree_destroy(tree);
    }
}

void treeLookupGlib(benchmark::State& state, const Boxes& boxes) {
    GTree* tree = fullGTree(boxes);
    for (auto _ : state)
        for (int* b : boxes) benchmark::DoNotOptimize(g_tree_lookup(tree, b));
    g_tree_destroy(tree);
}

void hashInsertGlib(benchmark::State& state, const Boxes& boxes) {
    for (auto _ : state) {
        GHashTable* table = fullGHashTable(boxes);
        benchmark::DoNotOptimize(g_hash_table_size(table));
        g_hash_table_destroy(table);
    }
}

void hashLookupGlib(benchmark::State& state, const Boxes& boxes) {
    GHashTable* table = fullGHashTable(boxes);
    for (auto _ : state)
        for (int* b : boxes) benchmark::DoNotOptimize(g_hash_table_contains(table, b));
    g_hash_table_destroy(table);
}
#endif

void run(benchmark::State& state, Workload workload, std::string streamName) {
    Stream& s = stream(streamName);
    if (s.boxes.empty()) {
        state.SkipWithError(("missing input keys_" + streamName + ".bin (run bench/make_inputs.py)").c_str());
        return;
    }
    workload(state, s.boxes);
    perItem(state, static_cast<double>(s.boxes.size()));
}

void registerWorkload(const char* workload, const char* impl, Workload body) {
    for (const char* order : {"seq", "rand", "dup"}) {
        for (const char* count : {"1e5", "1e6"}) {
            std::string streamName = std::string(order) + "_" + count;
            std::string name = std::string(workload) + "/" + impl + "/" + streamName;
            benchmark::RegisterBenchmark(name.c_str(), run, body, streamName)->Unit(benchmark::kMillisecond);
        }
    }
}

int registerAll() {
    registerWorkload("tree_insert", "talvo", treeInsertTalvo);
    registerWorkload("tree_insert", "std", treeInsertStd);
    registerWorkload("tree_lookup", "talvo", treeLookupTalvo);
    registerWorkload("tree_lookup", "std", treeLookupStd);
    registerWorkload("hash_insert", "talvo", hashInsertTalvo);
    registerWorkload("hash_insert", "std", hashInsertStd);
    registerWorkload("hash_lookup", "talvo", hashLookupTalvo);
    registerWorkload("hash_lookup", "std", hashLookupStd);
#ifdef TALVO_BENCH_HAVE_GLIB
    registerWorkload("tree_insert", "glib", treeInsertGlib);
    registerWorkload("tree_lookup", "glib", treeLookupGlib);
    registerWorkload("hash_insert", "glib", hashInsertGlib);
    registerWorkload("hash_lookup", "glib", hashLookupGlib);
#endif
    return 0;
}

const int kRegistered = registerAll();

}  // namespace
