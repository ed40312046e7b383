// Line counting and first-match extraction over ~10 MB of generated
// English-like text, for the library's regex manager, std::regex
// (ECMAScript) and PCRE2 (interpreted and JIT, when found) on the same
// patterns, which all engines read alike: the "lines" and "matched_bytes"
// counters agree across engines. The text is bench/make_inputs.py's
// text.txt when TALVO_BENCH_DATA names its directory, else the same kind of
// text generated here. Throughput is reported in bytes/s.
// Benchmark names are "regex_<count|extract>/<impl>/<pattern>"; the
// "regex_compile/<impl>/<pattern>" ones time making a ready pattern from its
// text, what a one-shot call (the raw-string pattern functions) pays each time.
#include "support/BenchInputs.h"

#include <talvo/foundation/TalvoRawString.h>
#include <talvo/regex/TalvoRegexManager.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>
#include <regex>
#include <string>
#include <vector>

#ifdef TALVO_BENCH_HAVE_PCRE2
#define PCRE2_CODE_UNIT_WIDTH 8
#include <pcre2.h>
#endif

namespace {

const std::size_t kTextBytes = 10 * 1000 * 1000;

// Lines of words drawn with a skewed frequency, with some capitals,
// numbers and punctuation; fixed seed so every run sees the same text.
const std::vector<std::string>& lines() {
    static std::vector<std::string> text = [] {
        std::vector<std::string> fromFile = talvo_bench::readLines("text.txt");
        if (!fromFile.empty()) return fromFile;
        static const char* words[] = {
            "the", "of", "and", "to", "a", "in", "that", "it", "was", "he", "his", "I", "with", "as",
            "had", "for", "you", "not", "be", "her", "on", "at", "by", "which", "have", "or", "from",
            "this", "him", "but", "all", "she", "they", "were", "my", "are", "me", "one", "their",
            "so", "an", "said", "them", "we", "who", "would", "been", "will", "no", "when", "there",
            "The", "little", "room", "looking", "door", "morning", "street", "letter", "window",
            "coming", "evening", "carriage", "horse", "river", "silver", "cattle", "dog", "cat",
            "address", "coffee", "committee", "running", "sitting", "bookkeeper", "Mississippi",
            "balloon", "shall", "upon", "again", "better", "summer", "little", "gotten", "tomorrow"};
        const int count = sizeof(words) / sizeof(words[0]);
        std::mt19937 random(2026);
        std::vector<std::string> result;
        std::size_t total = 0;
        while (total < kTextBytes) {
            std::string line;
            int n = 6 + static_cast<int>(random() % 10);
            for (int i = 0; i < n; i++) {
                // squaring skews toward the frequent words at the front
                double u = (random() % 10000) / 10000.0;
                line += words[static_cast<int>(u * u * count)];
                if (random() % 23 == 0) line += ",";
                line += " ";
            }
            if (random() % 5 == 0) line += std::to_string(random() % 1000);
            else line += "end.";
            total += line.size() + 1;
            result.push_back(line);
        }
        return result;
    }();
    return text;
}

std::size_t textBytes() {
    static const std::size_t total = [] {
        std::size_t sum = 0;
        for (const std::string& line : lines()) sum += line.size() + 1;
        return sum;
    }();
    return total;
}

// Every benchmark calls this before its timed loop: otherwise the first one
// to run would time the reading and splitting of the whole text file.
const std::vector<std::string>& loadedText() {
    textBytes();
    return lines();
}

struct Pattern { const char* name; const char* talvo; const char* ecmascript; };

const Pattern kPatterns[] = {
    {"literal", "carriage", "carriage"},
    {"literal_rare", "Mississippi", "Mississippi"},
    {"class_plus", "[a-z]+ing", "[a-z]+ing"},
    {"alternation", "cattle|river|silver|balloon", "cattle|river|silver|balloon"},
    {"backref", "([a-z])\\1([a-z])\\2", "([a-z])\\1([a-z])\\2"},
    {"anchored_start", "^The [a-z]+", "^The [a-z]+"},
    {"anchored_end", "[0-9]+$", "[0-9]+$"},
};

void countTalvo(benchmark::State& state, const Pattern& p) {
    TalvoRegexManager manager(p.talvo);
    long matched = 0;
    const std::vector<std::string>& text = loadedText();
    for (auto _ : state) {
        matched = 0;
        for (const std::string& line : text) matched += manager.matchPattern(line.c_str()) != -1;
        benchmark::DoNotOptimize(matched);
    }
    state.counters["lines"] = static_cast<double>(matched);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * textBytes()));
}

void countStd(benchmark::State& state, const Pattern& p) {
    std::regex re(p.ecmascript, std::regex::ECMAScript);
    long matched = 0;
    const std::vector<std::string>& text = loadedText();
    for (auto _ : state) {
        matched = 0;
        for (const std::string& line : text) matched += std::regex_search(line, re);
        benchmark::DoNotOptimize(matched);
    }
    state.counters["lines"] = static_cast<double>(matched);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * textBytes()));
}

void extractTalvo(benchmark::State& state, const Pattern& p) {
    TalvoRegexManager manager(p.talvo);
    long bytes = 0;
    const std::vector<std::string>& text = loadedText();
    for (auto _ : state) {
        bytes = 0;
        for (const std::string& line : text) {
            char* found = manager.extractPattern(line.c_str());
            if (found != nullptr) {
                bytes += TalvoRawString::getLength(found);
                TalvoRawString::free(found);
            }
        }
        benchmark::DoNotOptimize(bytes);
    }
    state.counters["matched_bytes"] = static_cast<double>(bytes);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * textBytes()));
}

void extractStd(benchmark::State& state, const Pattern& p) {
    std::regex re(p.ecmascript, std::regex::ECMAScript);
    long bytes = 0;
    const std::vector<std::string>& text = loadedText();
    for (auto _ : state) {
        bytes = 0;
        std::smatch m;
        for (const std::string& line : text) {
            if (std::regex_search(line, m, re)) {
                std::string found = m.str(0);
                bytes += static_cast<long>(found.size());
            }
        }
        benchmark::DoNotOptimize(bytes);
    }
    state.counters["matched_bytes"] = static_cast<double>(bytes);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * textBytes()));
}

#ifdef TALVO_BENCH_HAVE_PCRE2
// A compiled PCRE2 pattern with its match data, JIT-compiled on request.
class Pcre2Pattern {
public:
    Pcre2Pattern(const char* pattern, bool jit) {
        int error = 0;
        PCRE2_SIZE offset = 0;
        _code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern), PCRE2_ZERO_TERMINATED, 0, &error, &offset,
                              nullptr);
        if (_code != nullptr && jit) pcre2_jit_compile(_code, PCRE2_JIT_COMPLETE);
        _data = _code == nullptr ? nullptr : pcre2_match_data_create_from_pattern(_code, nullptr);
    }
    ~Pcre2Pattern() {
        pcre2_match_data_free(_data);
        pcre2_code_free(_code);
    }
    Pcre2Pattern(const Pcre2Pattern&) = delete;
    Pcre2Pattern& operator=(const Pcre2Pattern&) = delete;

    bool valid() const { return _code != nullptr; }
    // Length of the first match in the line, -1 when none; its offset in *start.
    long match(const std::string& line, std::size_t* start = nullptr) {
        int rc = pcre2_match(_code, reinterpret_cast<PCRE2_SPTR>(line.data()), line.size(), 0, 0, _data, nullptr);
        if (rc < 0) return -1;
        PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(_data);
        if (start != nullptr) *start = ovector[0];
        return static_cast<long>(ovector[1] - ovector[0]);
    }

private:
    pcre2_code* _code = nullptr;
    pcre2_match_data* _data = nullptr;
};

void countPcre2(benchmark::State& state, const Pattern& p, bool jit) {
    Pcre2Pattern re(p.ecmascript, jit);
    if (!re.valid()) {
        state.SkipWithError("PCRE2 did not compile the pattern");
        return;
    }
    long matched = 0;
    const std::vector<std::string>& text = loadedText();
    for (auto _ : state) {
        matched = 0;
        for (const std::string& line : text) matched += re.match(line) >= 0;
        benchmark::DoNotOptimize(matched);
    }
    state.counters["lines"] = static_cast<double>(matched);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * textBytes()));
}

void extractPcre2(benchmark::State& state, const Pattern& p, bool jit) {
    Pcre2Pattern re(p.ecmascript, jit);
    if (!re.valid()) {
        state.SkipWithError("PCRE2 did not compile the pattern");
        return;
    }
    long bytes = 0;
    const std::vector<std::string>& text = loadedText();
    for (auto _ : state) {
        bytes = 0;
        for (const std::string& line : text) {
            std::size_t start = 0;
            long length = re.match(line, &start);
            if (length >= 0) {
                // an owned copy, as the other engines return
                std::string found(line, start, static_cast<std::size_t>(length));
                bytes += static_cast<long>(found.size());
            }
        }
        benchmark::DoNotOptimize(bytes);
    }
    state.counters["matched_bytes"] = static_cast<double>(bytes);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * textBytes()));
}

void compilePcre2(benchmark::State& state, const Pattern& p, bool jit) {
    for (auto _ : state) {
        Pcre2Pattern re(p.ecmascript, jit);
        benchmark::DoNotOptimize(re.valid());
    }
}
#endif

// The library compiles on first use: matching the empty text compiles and
// flattens the pattern and tries it once.
void compileTalvo(benchmark::State& state, const Pattern& p) {
    for (auto _ : state) {
        TalvoRegexManager* manager = new TalvoRegexManager(p.talvo);
        benchmark::DoNotOptimize(manager->matchPattern(""));
        delete manager;
    }
}

void compileStd(benchmark::State& state, const Pattern& p) {
    for (auto _ : state) {
        std::regex re(p.ecmascript, std::regex::ECMAScript);
        benchmark::DoNotOptimize(re.mark_count());
    }
}

int registerAll() {
    for (const Pattern& p : kPatterns) {
        std::string name = p.name;
        benchmark::RegisterBenchmark(("regex_count/talvo/" + name).c_str(), countTalvo, p)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("regex_count/std/" + name).c_str(), countStd, p)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("regex_extract/talvo/" + name).c_str(), extractTalvo, p)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("regex_extract/std/" + name).c_str(), extractStd, p)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("regex_compile/talvo/" + name).c_str(), compileTalvo, p);
        benchmark::RegisterBenchmark(("regex_compile/std/" + name).c_str(), compileStd, p);
#ifdef TALVO_BENCH_HAVE_PCRE2
        for (bool jit : {false, true}) {
            std::string impl = jit ? "pcre2jit/" : "pcre2/";
            benchmark::RegisterBenchmark(("regex_count/" + impl + name).c_str(), countPcre2, p, jit)
                ->Unit(benchmark::kMillisecond);
            benchmark::RegisterBenchmark(("regex_extract/" + impl + name).c_str(), extractPcre2, p, jit)
                ->Unit(benchmark::kMillisecond);
            benchmark::RegisterBenchmark(("regex_compile/" + impl + name).c_str(), compilePcre2, p, jit);
        }
#endif
    }
    return 0;
}

const int kRegistered = registerAll();

}  // namespace
