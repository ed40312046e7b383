// Line counting and first-match extraction over ~10 MB of generated
// English-like text, for the library's regex manager and std::regex
// (ECMAScript) on the same patterns. Throughput is reported in bytes/s.
#include <talvo/foundation/TalvoRawString.h>
#include <talvo/regex/TalvoRegexManager.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>
#include <regex>
#include <string>
#include <vector>

namespace {

const std::size_t kTextBytes = 10 * 1000 * 1000;

// Lines of words drawn with a skewed frequency, with some capitals,
// numbers and punctuation; fixed seed so every run sees the same text.
const std::vector<std::string>& lines() {
    static std::vector<std::string> text = [] {
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
    std::size_t total = 0;
    for (const std::string& line : lines()) total += line.size() + 1;
    return total;
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
    for (auto _ : state) {
        matched = 0;
        for (const std::string& line : lines()) matched += manager.matchPattern(line.c_str()) != -1;
        benchmark::DoNotOptimize(matched);
    }
    state.counters["lines"] = static_cast<double>(matched);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * textBytes()));
}

void countStd(benchmark::State& state, const Pattern& p) {
    std::regex re(p.ecmascript, std::regex::ECMAScript);
    long matched = 0;
    for (auto _ : state) {
        matched = 0;
        for (const std::string& line : lines()) matched += std::regex_search(line, re);
        benchmark::DoNotOptimize(matched);
    }
    state.counters["lines"] = static_cast<double>(matched);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * textBytes()));
}

void extractTalvo(benchmark::State& state, const Pattern& p) {
    TalvoRegexManager manager(p.talvo);
    long bytes = 0;
    for (auto _ : state) {
        bytes = 0;
        for (const std::string& line : lines()) {
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
    for (auto _ : state) {
        bytes = 0;
        std::smatch m;
        for (const std::string& line : lines()) {
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

int registerAll() {
    for (const Pattern& p : kPatterns) {
        std::string name = p.name;
        benchmark::RegisterBenchmark(("count/talvo/" + name).c_str(), countTalvo, p)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("count/std/" + name).c_str(), countStd, p)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("extract/talvo/" + name).c_str(), extractTalvo, p)->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("extract/std/" + name).c_str(), extractStd, p)->Unit(benchmark::kMillisecond);
    }
    return 0;
}

const int kRegistered = registerAll();

}  // namespace
