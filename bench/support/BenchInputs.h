// Access to the inputs written by bench/make_inputs.py. The directory is
// taken from the environment variable TALVO_BENCH_DATA (bench/run.sh sets
// it); a benchmark whose input is missing skips with a message.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace talvo_bench {

// Full path of an input file, or "" when TALVO_BENCH_DATA is not set.
inline std::string inputPath(const std::string& name) {
    const char* directory = std::getenv("TALVO_BENCH_DATA");
    return directory == nullptr ? std::string() : std::string(directory) + "/" + name;
}

// Size of the file in bytes, -1 when it cannot be opened.
inline long fileSize(const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return -1;
    std::fseek(file, 0, SEEK_END);
    long size = std::ftell(file);
    std::fclose(file);
    return size;
}

// The whole file as bytes; empty when missing.
inline std::string readWhole(const std::string& path) {
    std::string content;
    FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) return content;
    char block[1 << 16];
    std::size_t got;
    while ((got = std::fread(block, 1, sizeof block, file)) > 0) content.append(block, got);
    std::fclose(file);
    return content;
}

// A key stream: little-endian int32 values, as many as the file holds.
inline std::vector<int> readKeys(const std::string& name) {
    std::string bytes = readWhole(inputPath(name));
    std::vector<int> keys(bytes.size() / sizeof(std::int32_t));
    for (std::size_t i = 0; i < keys.size(); i++) {
        const unsigned char* p = reinterpret_cast<const unsigned char*>(bytes.data()) + 4 * i;
        std::uint32_t value = p[0] | (p[1] << 8) | (p[2] << 16) | (std::uint32_t(p[3]) << 24);
        keys[i] = static_cast<int>(value);
    }
    return keys;
}

// The text file split into lines (without their newlines).
inline std::vector<std::string> readLines(const std::string& name) {
    std::string text = readWhole(inputPath(name));
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) end = text.size();
        lines.emplace_back(text, start, end - start);
        start = end + 1;
    }
    return lines;
}

// Reports time per item processed in one iteration as the counter "per_item".
inline void perItem(benchmark::State& state, double itemsPerIteration) {
    state.counters["per_item"] = benchmark::Counter(
        itemsPerIteration, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

}  // namespace talvo_bench
