// Parsing the generated XML files (three shapes, about 1, 10 and 50 MB)
// into a document tree and freeing it, against tinyxml2, pugixml and
// libxml2 when they were found. Every parser reads the file by name or
// FILE, so the figures include the I/O; throughput is in bytes/s.
// Benchmark names are "xml_parse/<impl>/<shape>_<MB>".
#include "support/BenchInputs.h"

#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLParser.h>

#include <cstdio>
#include <string>

#ifdef TALVO_BENCH_HAVE_TINYXML2
#include <tinyxml2.h>
#endif
#ifdef TALVO_BENCH_HAVE_PUGIXML
#include <pugixml.hpp>
#endif
#ifdef TALVO_BENCH_HAVE_LIBXML2
#include <libxml/parser.h>
#endif

namespace {

using talvo_bench::fileSize;
using talvo_bench::inputPath;

const char* const kShapes[] = {"flat", "deep", "text"};
const int kMegabytes[] = {1, 10, 50};

// A parse of one file; returns false on failure.
using ParseOnce = bool (*)(const std::string& path);

bool parseTalvo(const std::string& path) {
    FILE* file = std::fopen(path.c_str(), "r");
    if (file == nullptr) return false;
    TalvoXMLDocument document;
    TalvoXMLParser parser;
    int result = parser.parseFile(&document, file);
    std::fclose(file);
    return result == 0;
}

#ifdef TALVO_BENCH_HAVE_TINYXML2
bool parseTinyxml2(const std::string& path) {
    tinyxml2::XMLDocument document;
    return document.LoadFile(path.c_str()) == tinyxml2::XML_SUCCESS;
}
#endif

#ifdef TALVO_BENCH_HAVE_PUGIXML
bool parsePugixml(const std::string& path) {
    pugi::xml_document document;
    return static_cast<bool>(document.load_file(path.c_str()));
}
#endif

#ifdef TALVO_BENCH_HAVE_LIBXML2
bool parseLibxml2(const std::string& path) {
    xmlDocPtr document = xmlReadFile(path.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_HUGE);
    if (document == nullptr) return false;
    xmlFreeDoc(document);
    return true;
}
#endif

void parseFile(benchmark::State& state, ParseOnce parse, std::string path) {
    long size = fileSize(path);
    if (size < 0) {
        state.SkipWithError(("missing input " + path + " (run bench/make_inputs.py)").c_str());
        return;
    }
    for (auto _ : state) {
        if (!parse(path)) {
            state.SkipWithError(("parse failed on " + path).c_str());
            break;
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * size);
}

void registerParser(const char* impl, ParseOnce parse) {
    for (const char* shape : kShapes) {
        for (int megabytes : kMegabytes) {
            std::string file = std::string("xml_") + shape + "_" + std::to_string(megabytes) + ".xml";
            std::string name = std::string("xml_parse/") + impl + "/" + shape + "_" + std::to_string(megabytes);
            auto* b = benchmark::RegisterBenchmark(name.c_str(), parseFile, parse, inputPath(file));
            b->Unit(benchmark::kMillisecond);
            // the large files are timed on a fixed count to keep the suite short
            if (megabytes >= 10) b->Iterations(megabytes >= 50 ? 1 : 3);
        }
    }
}

int registerAll() {
    registerParser("talvo", parseTalvo);
#ifdef TALVO_BENCH_HAVE_TINYXML2
    registerParser("tinyxml2", parseTinyxml2);
#endif
#ifdef TALVO_BENCH_HAVE_PUGIXML
    registerParser("pugixml", parsePugixml);
#endif
#ifdef TALVO_BENCH_HAVE_LIBXML2
    registerParser("libxml2", parseLibxml2);
#endif
    return 0;
}

const int kRegistered = registerAll();

}  // namespace
