// XML parsing of arbitrary bytes.
//
// The input is read as a file (through fmemopen) into a document, which is
// printed, parsed back from its own print and printed again, twice. The
// first round may still change texts (the printer puts a text on a line of
// its own and the parser turns that newline into a blank), so it is the
// second round that must print the same text again. Printing goes through
// put(const char*), which reads backslash escapes, and a NUL byte cuts the
// text it falls in, so an input holding either may change at every round
// and is not compared. A CDATA section is printed without the second
// opening bracket of its marker, so reading the print back takes the
// section's first character (which must be a bracket) as the marker: a print
// holding a CDATA section loses a bracket at every round and is not compared
// either. Every document, parser and stream
// is deleted, and the allocation balance must come back to where it started.
#include "FuzzSupport.h"

#include <talvo/text/TalvoRawStringStream.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLParser.h>

#include <vector>

namespace {

const int kIndentation = 2;
// Print-and-parse rounds after the first parse; the last must change nothing.
const int kRounds = 2;
// Printing goes to a memory stream this big, drained into gPrinted.
const int kPrintBufferSize = 256;

std::string gPrinted;

void drain(char** buffer, int* size) {
    gPrinted.append(*buffer, std::strlen(*buffer));
    (*buffer)[0] = '\0';
    (void)size;
}

// Parses `bytes` as a file into `document`; the parse result (0 on success).
int parse(TalvoXMLDocument* document, const std::string& bytes, FILE* errors) {
    if (bytes.empty())
        return 1;  // fmemopen refuses an empty buffer
    FILE* file = fmemopen(const_cast<char*>(bytes.data()), bytes.size(), "r");
    if (!file)
        return 1;
    TalvoXMLParser* parser = new TalvoXMLParser();
    parser->setErrorFile(errors);
    int result = parser->parseFile(document, file);
    delete parser;
    std::fclose(file);
    return result;
}

std::string print(TalvoXMLDocument* document) {
    std::vector<char> buffer(kPrintBufferSize + 1, '\0');
    gPrinted.clear();
    TalvoRawStringStream* stream = new TalvoRawStringStream(false, buffer.data(), kPrintBufferSize, drain);
    document->print(stream, kIndentation);
    stream->flush();
    delete stream;
    return gPrinted;
}

bool holdsCData(const std::string& printed) {
    return printed.find("<![CDATA\n") != std::string::npos;
}

FILE* errorSink() {
    static FILE* sink = std::fopen("/dev/null", "w");
    return sink;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    long start = TalvoMemoryManager::getAllocationBalance();
    std::string bytes(reinterpret_cast<const char*>(data), size);

    TalvoXMLDocument* document = new TalvoXMLDocument();
    int result = parse(document, bytes, errorSink());
    std::string printed = print(document);
    delete document;

    bool comparable = bytes.find_first_of(std::string("\\\0", 2)) == std::string::npos;
    for (int round = 1; result == 0 && round <= kRounds; ++round) {
        TalvoXMLDocument* again = new TalvoXMLDocument();
        result = parse(again, printed, errorSink());
        std::string reprinted = print(again);
        delete again;
        comparable = comparable && !holdsCData(printed);
        if (round == kRounds && result == 0 && comparable && reprinted != printed) {
            std::fprintf(stderr, "print of the reparsed document differs:\n%s\n----\n%s\n",
                         printed.c_str(), reprinted.c_str());
            std::abort();
        }
        printed = reprinted;
    }
    talvo_fuzz::requireBalance(start, "XML parse, print and delete");
    return 0;
}
