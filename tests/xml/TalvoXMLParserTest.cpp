#include "support/TalvoTest.h"

#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLParser.h>
#include <talvo/xml/TalvoXMLParserMessenger.h>
#include <talvo/xml/TalvoXMLPrinter.h>
#include <talvo/xml/TalvoXMLTerm.h>

#include <cstdio>
#include <string>

#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace {

using talvo_test::readFile;
using talvo_test::writeFile;

const std::string Header = "<?xml version=\"1.0\"?>\n";

// A parser whose reports go to errors.txt; report() deletes it and returns them.
struct Reporting {
    FILE* errors = std::fopen("errors.txt", "wb");
    TalvoXMLParser* parser = new TalvoXMLParser();
    explicit Reporting(const char* name = nullptr) {
        parser->setErrorFile(errors);
        parser->setInputFileName(name);
    }
    ~Reporting() { report(); }
    std::string report() {
        delete parser;
        parser = nullptr;
        if (errors) std::fclose(errors);
        errors = nullptr;
        return readFile("errors.txt");
    }
};

// Parses the open file `in` into a fresh document, dropped afterwards.
int parseOpenFile(FILE* in, std::string* report = nullptr) {
    TalvoXMLDocument* document = new TalvoXMLDocument();
    Reporting run;
    int code = run.parser->parseFile(document, in);
    delete document;
    if (report) *report = run.report();
    return code;
}

// Parses `xml` into `document` with reports sent to *report.
int parseInto(TalvoXMLDocument* document, const std::string& xml, std::string* report,
              const char* name = nullptr) {
    writeFile("in.xml", xml);
    FILE* in = std::fopen("in.xml", "rb");
    Reporting run(name);
    int code = run.parser->parseFile(document, in);
    *report = run.report();
    std::fclose(in);
    return code;
}

// A document parsed from `xml`, deleted with this object.
struct Parsed {
    TalvoXMLDocument* document = new TalvoXMLDocument();
    std::string report;
    int code;
    explicit Parsed(const std::string& xml, const char* name = nullptr) : code(parseInto(document, xml, &report, name)) {}
    ~Parsed() { delete document; }
    TalvoXMLTerm* root(const char* tag) const { return document->findRoot(tag); }
};

std::string printDocument(TalvoXMLDocument* document) {
    document->print(std::fopen("printed.xml", "wb"), 2);  // closes the file
    return readFile("printed.xml");
}

// Result code, error report and the document as printed afterwards.
struct Outcome { int code; std::string report, printed; };

Outcome parse(const std::string& xml, const char* name = nullptr) {
    Parsed parsed(xml, name);
    return {parsed.code, parsed.report, printDocument(parsed.document)};
}

// Everything `file` still holds from its current position.
std::string restOf(FILE* file) {
    std::string rest;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) rest += static_cast<char>(c);
    return rest;
}

// A comment long enough to push what follows past the first read-ahead block.
std::string padding(size_t size) { return "<!--" + std::string(size, 'p') + "-->\n"; }

// The stored text for `raw`: white-space runs one blank, the leading one dropped.
std::string collapsed(const std::string& raw) {
    std::string text;
    bool inRun = true;
    for (char c : raw) {
        bool space = c == ' ' || (c >= '\t' && c <= '\r');
        if (space && !inRun) text += ' ';
        else if (!space) text += c;
        inRun = space;
    }
    return text;
}

std::string syntaxError(int line, const char* text) {
    return "SYNTAX ERROR [line " + std::to_string(line) + "]:\n" + text + "\n";
}

}  // namespace

TEST(TalvoXMLParser, ErrorsReportCodeAndLine) {
    struct Case { const char* input; int code, line; } cases[] = {
        {"<?xml?>\n<a>\nhello", 1001, 3},
        {"<?xml?>\n<a x y=\"1\"/>", 1001, 2},  // a name without "=" runs into the next one
        {"<?xml?>\n<![CDATA[a]]]>", 1001, 2},
        {"<?xml?>\n<a>\n</\n>", 1002, 4},
        {"<?xml?>\n<a x='1'/>", 1003, 2},
        {"\xEF\xBB\xBF<?xml?>", 1004, 1},
        {"<?xml?>\n<!-x>", 1005, 2},
        {"<?xml?>\n<![CD\nATA[x]]>", 1006, 3},
        {"<?xml?>\n<a x\n", 1007, 3},
        {"<?xml?>\n<a/ >", 1008, 2},
        {"<?xml?>\n<a/>\n</a>", 1010, 3},
        {"<?xml?>\n<a></A>", 1011, 2},
        {"<?xml?>\n<?pi?>", 1012, 2},
        {"<?xml?>\n<a>\n<b>\n", 1013, 4},  // counted to the end of the file
    };
    TalvoXMLParserMessenger* messenger = new TalvoXMLParserMessenger();
    for (const Case& c : cases) {
        Outcome outcome = parse(c.input);
        EXPECT_EQ(outcome.code, 1) << c.input;
        EXPECT_EQ(outcome.report, syntaxError(c.line, messenger->getMessageText(c.code))) << c.input;
        EXPECT_EQ(outcome.printed, Header) << c.input;  // a failed parse leaves the document empty
    }
    delete messenger;
    EXPECT_EQ(parse("<?xml?>\n\n\n\n\n\n\n\n\n\n\n<a x='1'/>\n", "in.xml").report,
              "SYNTAX ERROR [in.xml, line 12]:\nA '\"' was expected\n\n");
}

TEST(TalvoXMLParser, ParserIsReusableAfterAnError) {
    writeFile("bad.xml", "<?xml?>\n<a>");
    writeFile("good.xml", "<?xml?>\n<a/>\n");
    FILE *bad = std::fopen("bad.xml", "rb"), *good = std::fopen("good.xml", "rb");
    TalvoXMLDocument* document = new TalvoXMLDocument();
    Reporting run;
    EXPECT_EQ(run.parser->parseFile(document, bad), 1);
    EXPECT_EQ(run.parser->parseFile(document, good), 0);
    EXPECT_EQ(run.parser->getLineNumber(), 3);
    EXPECT_NE(document->findRoot("a"), nullptr);
    EXPECT_EQ(run.parser->parseFile(nullptr, nullptr), 1);
    EXPECT_EQ(run.report(), syntaxError(2, "Non closed tag(s)\n"));
    std::fclose(bad);
    std::fclose(good);
    delete document;
}

TEST(TalvoXMLParser, SelfClosingChildLineNumbersAndNulBytes) {
    Parsed parsed(Header + "<a>\n  <b/>\n\n  text\n</a>\n");
    ASSERT_EQ(parsed.code, 0);
    TalvoXMLTerm* a = parsed.root("a");
    EXPECT_EQ(a->getLineNumber(), 2);
    ASSERT_EQ(a->getNumberOfChildren(), 2);
    EXPECT_TRUE(a->getNthChild(0)->isNodeOfTag("b"));
    EXPECT_STREQ(a->getNthChild(1)->getText(), "text ");
    EXPECT_EQ(a->getNthChild(1)->getLineNumber(), 6);  // a text is made at the "<" that ends it
    const std::string nul(1, '\0');  // a NUL byte ends what a string shows
    std::string body = "<a v=\"x" + nul + "y\">t" + nul + std::string(600, 'u') + "<!--c" + nul + "d--></a>";
    Parsed withNul(Header + body);
    ASSERT_EQ(withNul.code, 0) << withNul.report;
    a = withNul.root("a");
    EXPECT_STREQ(a->getAttributeValue("v"), "x");
    EXPECT_STREQ(a->getNthChild(0)->getText(), "t");
    EXPECT_STREQ(a->getNthChild(1)->getText(), "--c");
}

TEST(TalvoXMLParser, ChildTermsStoreWhatWasRead) {
    struct Case { const char* body; TalvoXMLTerm::Type type; const char* text; } cases[] = {
        // Texts: each white-space run one blank, the leading one dropped; no entities.
        {"  x   y  ", TalvoXMLTerm::text, "x y "},
        {"\n  one &amp; two\n", TalvoXMLTerm::text, "one &amp; two "},
        {"<!-- a -- b -->", TalvoXMLTerm::comment, "-- a -- b --"},
        {"<!DOCTYPE note SYSTEM \"note.dtd\">", TalvoXMLTerm::comment, "DOCTYPE note SYSTEM \"note.dtd\""},
        {"<![CDATA[a <b> & c]]>", TalvoXMLTerm::CDATA, "a <b> & c"},
        {"<![CDATA[a]]b]]>", TalvoXMLTerm::CDATA, "a]]b"},
    };
    for (const Case& c : cases) {
        Parsed parsed(Header + "<a>" + c.body + "</a>");
        ASSERT_EQ(parsed.code, 0) << c.body << parsed.report;
        TalvoXMLTerm* term = parsed.root("a")->getNthChild(0);
        EXPECT_EQ(term->getType(), c.type) << c.body;
        EXPECT_STREQ(term->getText(), c.text) << c.body;
    }
}

TEST(TalvoXMLParser, PrintedCDataReadsBackOnlyAfterABracket) {
    Outcome bracket = parse(Header + "<a><![CDATA[[x]]></a>");
    EXPECT_EQ(bracket.printed, Header + "<a >\n<![CDATA\n[x]]>\n</a>\n");
    Outcome reread = parse(bracket.printed);
    EXPECT_EQ(reread.code, 0);
    EXPECT_EQ(reread.printed, Header + "<a >\n<![CDATA\nx]]>\n</a>\n");  // the bracket was the marker's
    EXPECT_EQ(parse(reread.printed).report, syntaxError(4, "Ill formed CDATA section\n"));
}

TEST(TalvoXMLParser, DocumentsPrintBackWithTheirReport) {
    struct Case { std::string xml, report, printed; } cases[] = {
        {"<?xml?>\n<a/>\n\n  \t\r\n", "", Header + "<a />\n"},  // trailing white space ends quietly
        {"<?xml?>\n<a/>\n  tail  \n\n", syntaxError(5, "Unexpected end of file\n"), Header},
        {Header + "<a x = \"1\"\n y=\"two\nlines\" x=\"&lt;\" empty=\"\" n.s:q-r_s=\"'\"/>", "",
         Header + "<a x=\"1\" y=\"two\nlines\" x=\"&lt;\" empty=\"\" n.s:q-r_s=\"'\" />\n"},
        // the header is skipped up to the first "?>"
        {"<?xml a=\"?\" ?><a/>", "", Header + "<a />\n"},
        {"<?>?><a/>", "", Header + "<a />\n"},
        {Header + "<!-- c --><a/>text<b></b>", "", Header + "<!-- c -->\n<a />\ntext\n<b />\n"},
    };
    for (const Case& c : cases) {
        Outcome outcome = parse(c.xml);
        EXPECT_EQ(outcome.code, c.report.empty() ? 0 : 1) << c.xml;
        EXPECT_EQ(outcome.report, c.report) << c.xml;
        EXPECT_EQ(outcome.printed, c.printed) << c.xml;
    }
}

// Far deeper than the term stack: parsed, printed and deleted without trouble.
TEST(TalvoXMLParser, DeepNestingParsesPrintsAndDeletes) {
    const int depth = 100000;
    std::string opening, closing;
    for (int i = 0; i < depth; ++i) opening += "<n>", closing += "</n>";
    std::string xml = Header + opening + "x" + closing + "\n";
    {
        Parsed parsed(xml);
        ASSERT_EQ(parsed.code, 0) << parsed.report;
        int levels = 0;
        for (TalvoXMLTerm* term = parsed.root("n"); term && term->isNode(); term = term->getNthChild(0)) ++levels;
        EXPECT_EQ(levels, depth);
        // Printed without indentation, every level takes one opening and one closing line.
        parsed.document->print(std::fopen("printed.xml", "wb"), 0);
        EXPECT_EQ(readFile("printed.xml").find("<n >\nx\n</n>\n</n>\n"), Header.size() + 5 * (depth - 1));
    }
    // Unclosed, the same depth fails cleanly and frees everything.
    xml.resize(Header.size() + 3 * depth);
    EXPECT_EQ(parse(xml).report, syntaxError(2, "Non closed tag(s)\n"));
}

TEST(TalvoXMLParser, RaiseErrorAndWarningUseTheTermLine) {
    Reporting run;
    TalvoXMLParser* parser = run.parser;
    TalvoXMLTerm* term = new TalvoXMLTerm(TalvoXMLTerm::node, "server");
    term->setLineNumber(7);
    parser->raiseError(1011, term);
    parser->setInputFileName("cfg.xml");
    parser->raiseError("Unknown rate: ", "fast", term);
    parser->raiseWarning(1012, "x", nullptr);
    EXPECT_FALSE(parser->getParseError());
    delete term;
    // A printer is there on first use; a replacement is the one handed out.
    TalvoXMLPrinter *first = parser->getPrinter(), *other = new TalvoXMLPrinter();
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(parser->getPrinter(), first);
    parser->setPrinter(other);
    EXPECT_EQ(parser->getPrinter(), other);
    EXPECT_EQ(run.report(),
              "ERROR [line 7]:\nOpen and close tags do not correspond\n\n"
              "ERROR [cfg.xml, line 7]:\nUnknown rate: fast\n"
              "WARNING [cfg.xml, line 0]:\nIll formed tag name\nx\n");
}

// Translates the texts the parser writes.
class FrenchMessenger : public TalvoXMLParserMessenger {
public:
    const char* getMessageType(int type) override {
        return type == 0 ? "ligne" : type == 1 ? "ERREUR DE SYNTAXE" : TalvoXMLParserMessenger::getMessageType(type);
    }
    const char* getMessageText(int code) override {
        return code == 1011 ? "Balises ouvrante et fermante differentes\n" : nullptr;
    }
};

TEST(TalvoXMLParser, DerivedMessengerTranslatesReports) {
    TalvoXMLDocument* document = new TalvoXMLDocument();
    Reporting run;
    run.parser->setMessenger(new FrenchMessenger());
    for (const char* xml : {"<?xml?>\n<a></b>\n<", "<?xml?>\n<"}) {
        writeFile("in.xml", xml);
        FILE* in = std::fopen("in.xml", "rb");
        EXPECT_EQ(run.parser->parseFile(document, in), 1);
        std::fclose(in);
    }
    delete document;
    EXPECT_EQ(run.report(),
              "ERREUR DE SYNTAXE [ligne 2]:\nBalises ouvrante et fermante differentes\n\n"
              "ERREUR DE SYNTAXE [ligne 2]:\n");  // no text for 1012: the header alone
}

struct StopCase {
    const char* body;  // after the header and the padding
    const char* rest;  // what the file still holds after the failed parse
};

const StopCase StopCases[] = {
    {"<a x='1'/>tail", "1'/>tail"},
    {"<a $>tail", ">tail"},
    {"<a>\n<b></a>tail", "tail"},
    {"<!-x>tail", ">tail"},
};

TEST(TalvoXMLParser, FailedParseLeavesTheFileJustAfterTheLastCharacterRead) {
    for (size_t size : {size_t(0), size_t(40000)}) {
        for (const StopCase& c : StopCases) {
            std::string xml = Header + padding(size) + c.body;
            writeFile("in.xml", xml);
            FILE* in = std::fopen("in.xml", "rb");
            EXPECT_EQ(parseOpenFile(in), 1) << c.body;
            EXPECT_FALSE(std::feof(in)) << c.body;
            EXPECT_EQ(restOf(in), c.rest) << size << " " << c.body;
            std::fclose(in);
        }
    }
}

#if !defined(_WIN32)
// A pipe is read one character at a time; the one given back stays readable.
TEST(TalvoXMLParser, PipeInputGivesTheSameResultsAndRest) {
    for (const StopCase& c : StopCases) {
        std::string xml = Header + padding(5000) + c.body;
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        ASSERT_EQ(write(ends[1], xml.data(), xml.size()), static_cast<ssize_t>(xml.size()));  // fits the pipe
        close(ends[1]);
        FILE* in = fdopen(ends[0], "rb");
        std::string report;
        EXPECT_EQ(parseOpenFile(in, &report), 1) << c.body;
        EXPECT_EQ(restOf(in), c.rest) << c.body;
        std::fclose(in);
        EXPECT_EQ(report, parse(xml).report) << c.body;  // the same report as from a file
    }
}
#endif

// Texts are scanned in groups: each odd byte is tried at every offset of a run.
TEST(TalvoXMLParser, TextScanTreatsEveryByteAtEveryOffset) {
    const std::string stoppers[] = {"\xc3\xa9", "\x7f", "\x01", "\x1f", " \xff", "  ", " \t", "\n", "! ", "~"};
    for (const std::string& odd : stoppers) {
        for (size_t offset = 0; offset < 40; ++offset) {
            std::string raw = std::string(offset, 'w') + odd + std::string(40, 'v') + " z";
            Parsed parsed(Header + "<a>" + raw + "</a>");
            ASSERT_EQ(parsed.code, 0) << parsed.report;
            EXPECT_EQ(std::string(parsed.root("a")->getNthChild(0)->getText()), collapsed(raw))
                << offset << " " << odd;
        }
    }
}

// A white-space run cut by the end of a 16 KiB read is one blank; its newlines count.
TEST(TalvoXMLParser, WhiteSpaceRunAcrossReadsIsOneBlank) {
    const size_t ReadSize = 16 * 1024;
    const std::string opening = Header + "<a>";
    for (size_t before : {1, 2, 5}) {
        std::string raw = std::string(ReadSize - opening.size() - before, 'w') + " \n \n\t z";
        Parsed parsed(opening + raw + "</a>\n<b/>");
        ASSERT_EQ(parsed.code, 0) << parsed.report;
        EXPECT_EQ(std::string(parsed.root("a")->getNthChild(0)->getText()), collapsed(raw)) << before;
        EXPECT_EQ(parsed.root("b")->getLineNumber(), 5) << before;
    }
}
