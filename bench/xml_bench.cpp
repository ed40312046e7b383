// XML benchmarks: parse a file into a document and delete it, and parse then
// print, on generated documents of about 1 MB and 10 MB in three shapes
// (config-like nesting, many small records, text-heavy). Throughput is in
// bytes per second of input; "heapPerInputByte" is the heap held at the end
// of a parse (the peak: the whole tree plus the parser) per byte of input.
//
// Peers are built in only when the build links them and says so
// (TALVO_BENCH_HAVE_LIBXML2, TALVO_BENCH_HAVE_TINYXML2) and their headers
// are visible: libxml2 (<libxml/parser.h>) and tinyxml2 (<tinyxml2.h>).
#include <benchmark/benchmark.h>

#include "support/BenchInputs.h"

#include <talvo/text/TalvoFileStream.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLParser.h>

#include <malloc.h>

#include <cstdio>
#include <filesystem>
#include <string>

#if defined(TALVO_BENCH_HAVE_LIBXML2) && __has_include(<libxml/parser.h>)
#include <libxml/parser.h>
#include <libxml/tree.h>
#define TALVO_BENCH_LIBXML2 1
#endif
#if defined(TALVO_BENCH_HAVE_TINYXML2) && __has_include(<tinyxml2.h>)
#include <tinyxml2.h>
#define TALVO_BENCH_TINYXML2 1
#endif

namespace {

enum Shape { Config = 0, Records = 1, Text = 2 };
const char* const ShapeNames[] = {"config", "records", "text"};
const size_t OneMB = 1 << 20;
const char* const NullDevice = "/dev/null";

// A small deterministic generator so every run sees the same documents.
struct Lcg {
    unsigned state = 12345;
    unsigned next() { return state = state * 1103515245u + 12345u; }
    unsigned below(unsigned n) { return (next() >> 8) % n; }
};

const char* const Words[] = {"harbour", "quay", "vessel", "crane", "berth", "tide", "cargo",
                             "pilot",   "dock", "lock",   "buoy",  "hull",  "mast", "keel"};

void appendWords(std::string& out, Lcg& random, int count) {
    for (int i = 0; i < count; ++i) {
        if (i)
            out += random.below(8) ? " " : "\n      ";
        out += Words[random.below(14)];
    }
}

void appendConfigSection(std::string& out, Lcg& random, int index) {
    out += "  <section name=\"s" + std::to_string(index) + "\" enabled=\"true\">\n";
    for (int g = 0; g < 3; ++g) {
        out += "    <group id=\"" + std::to_string(g) + "\" weight=\"" + std::to_string(random.below(1000) / 10.0) + "\">\n";
        for (int p = 0; p < 4; ++p)
            out += "      <param key=\"k" + std::to_string(p) + "\" value=\"" + std::to_string(random.below(100000)) +
                   "\" unit=\"s\"/>\n";
        out += "    </group>\n";
    }
    out += "    <!-- tuned by hand -->\n  </section>\n";
}

void appendRecord(std::string& out, Lcg& random, int index) {
    out += "  <r id=\"" + std::to_string(index) + "\" a=\"" + std::to_string(random.below(1000)) + "\" b=\"" +
           Words[random.below(14)] + "\" c=\"" + std::to_string(random.below(100000) / 100.0) + "\"/>\n";
}

void appendParagraph(std::string& out, Lcg& random, int index) {
    out += "  <para n=\"" + std::to_string(index) + "\">\n      ";
    appendWords(out, random, 40 + static_cast<int>(random.below(80)));
    out += "\n  </para>\n";
}

std::string generate(Shape shape, size_t size) {
    Lcg random;
    std::string out = "<?xml version=\"1.0\"?>\n<root>\n";
    for (int i = 0; out.size() < size; ++i) {
        if (shape == Config)
            appendConfigSection(out, random, i);
        else if (shape == Records)
            appendRecord(out, random, i);
        else
            appendParagraph(out, random, i);
    }
    out += "</root>\n";
    return out;
}

// Where a generated file goes: the inputs directory when one is set, else the
// system's temporary directory (never the directory the benchmark runs in).
std::string generatedPath(const std::string& name) {
    std::string path = talvo_bench::inputPath(name);
    return path.empty() ? (std::filesystem::temp_directory_path() / name).string() : path;
}

// The generated file for a shape and size in MB, written once.
std::string inputFile(Shape shape, int megabytes, size_t* bytes) {
    std::string path =
        generatedPath(std::string("xml_bench_") + ShapeNames[shape] + "_" + std::to_string(megabytes) + "MB.xml");
    std::string content = generate(shape, static_cast<size_t>(megabytes) * OneMB);
    *bytes = content.size();
    FILE* file = std::fopen(path.c_str(), "rb");
    if (file) {
        std::fclose(file);
        return path;
    }
    file = std::fopen(path.c_str(), "wb");
    std::fwrite(content.data(), 1, content.size(), file);
    std::fclose(file);
    return path;
}

size_t heapInUse() {
    struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// Measures the heap held at the end of one parse (untimed), then times
// `parse` (which returns an opaque handle) followed by `release`.
template <class Parse, class Release>
void run(benchmark::State& state, const std::string& path, size_t bytes, Parse parse, Release release) {
    size_t before = heapInUse();
    auto measured = parse(path);
    double held = static_cast<double>(heapInUse() - before);
    release(measured);
    for (auto _ : state)
        release(parse(path));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(bytes));
    state.counters["heapPerInputByte"] = held / static_cast<double>(bytes);
}

void setUp(benchmark::State& state, std::string* path, size_t* bytes) {
    *path = inputFile(static_cast<Shape>(state.range(0)), static_cast<int>(state.range(1)), bytes);
    state.SetLabel(std::string(ShapeNames[state.range(0)]) + "/" + std::to_string(state.range(1)) + "MB");
}

// --- talvo.

TalvoXMLDocument* talvoParse(const std::string& path) {
    TalvoXMLDocument* document = new TalvoXMLDocument();
    FILE* file = std::fopen(path.c_str(), "rb");
    TalvoXMLParser* parser = new TalvoXMLParser();
    if (parser->parseFile(document, file) != 0)
        std::fprintf(stderr, "talvo could not parse %s\n", path.c_str());
    delete parser;
    std::fclose(file);
    return document;
}

void BM_TalvoParse(benchmark::State& state) {
    std::string path;
    size_t bytes;
    setUp(state, &path, &bytes);
    run(state, path, bytes, talvoParse, [](TalvoXMLDocument* document) { delete document; });
}

void BM_TalvoParsePrint(benchmark::State& state) {
    std::string path;
    size_t bytes;
    setUp(state, &path, &bytes);
    run(state, path, bytes, talvoParse, [](TalvoXMLDocument* document) {
        document->print(std::fopen(NullDevice, "wb"), 2);  // closes the file
        delete document;
    });
}

#define TALVO_BENCH_SIZES \
    ->Args({Config, 1})->Args({Records, 1})->Args({Text, 1}) \
    ->Args({Config, 10})->Args({Records, 10})->Args({Text, 10})->Unit(benchmark::kMillisecond)

BENCHMARK(BM_TalvoParse)->Name("xml_own_parse/talvo") TALVO_BENCH_SIZES;
BENCHMARK(BM_TalvoParsePrint)->Name("xml_own_parse_print/talvo") TALVO_BENCH_SIZES;

// --- libxml2: the DOM reader and its dump, white space kept as text nodes.

#ifdef TALVO_BENCH_LIBXML2
xmlDocPtr libxml2Parse(const std::string& path) { return xmlReadFile(path.c_str(), nullptr, 0); }

void BM_Libxml2Parse(benchmark::State& state) {
    std::string path;
    size_t bytes;
    setUp(state, &path, &bytes);
    run(state, path, bytes, libxml2Parse, [](xmlDocPtr document) { xmlFreeDoc(document); });
}

void BM_Libxml2ParsePrint(benchmark::State& state) {
    std::string path;
    size_t bytes;
    setUp(state, &path, &bytes);
    run(state, path, bytes, libxml2Parse, [](xmlDocPtr document) {
        FILE* out = std::fopen(NullDevice, "wb");
        xmlDocDump(out, document);
        std::fclose(out);
        xmlFreeDoc(document);
    });
}

BENCHMARK(BM_Libxml2Parse)->Name("xml_own_parse/libxml2") TALVO_BENCH_SIZES;
BENCHMARK(BM_Libxml2ParsePrint)->Name("xml_own_parse_print/libxml2") TALVO_BENCH_SIZES;
#endif

// --- tinyxml2: loads the whole file into memory, then parses in place.

#ifdef TALVO_BENCH_TINYXML2
tinyxml2::XMLDocument* tinyxml2Parse(const std::string& path) {
    auto* document = new tinyxml2::XMLDocument();
    document->LoadFile(path.c_str());
    return document;
}

void BM_Tinyxml2Parse(benchmark::State& state) {
    std::string path;
    size_t bytes;
    setUp(state, &path, &bytes);
    run(state, path, bytes, tinyxml2Parse, [](tinyxml2::XMLDocument* document) { delete document; });
}

void BM_Tinyxml2ParsePrint(benchmark::State& state) {
    std::string path;
    size_t bytes;
    setUp(state, &path, &bytes);
    run(state, path, bytes, tinyxml2Parse, [](tinyxml2::XMLDocument* document) {
        FILE* out = std::fopen(NullDevice, "wb");
        document->SaveFile(out);
        std::fclose(out);
        delete document;
    });
}

BENCHMARK(BM_Tinyxml2Parse)->Name("xml_own_parse/tinyxml2") TALVO_BENCH_SIZES;
BENCHMARK(BM_Tinyxml2ParsePrint)->Name("xml_own_parse_print/tinyxml2") TALVO_BENCH_SIZES;
#endif

}  // namespace
