#include "support/TalvoTest.h"

#include <talvo/containers/TalvoList.h>
#include <talvo/xml/TalvoXMLAttribute.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLParser.h>
#include <talvo/xml/TalvoXMLParserMessenger.h>
#include <talvo/xml/TalvoXMLPrinter.h>
#include <talvo/xml/TalvoXMLTerm.h>

#include <cstdio>
#include <string>
#include <vector>

#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace {

using talvo_test::readFile;
using talvo_test::writeFile;

// The outcome of parsing one input: the result code, the report written on
// the error stream, and the document as printed afterwards.
struct Outcome {
    int code;
    std::string report;
    std::string printed;
};

std::string printDocument(TalvoXMLDocument* document) {
    document->print(std::fopen("printed.xml", "wb"), 2);  // closes the file
    return readFile("printed.xml");
}

// Parses `xml` into `document` with reports sent to a file.
int parseInto(TalvoXMLDocument* document, const std::string& xml, std::string* report,
              const char* name = nullptr) {
    writeFile("in.xml", xml);
    FILE* in = std::fopen("in.xml", "rb");
    FILE* errors = std::fopen("errors.txt", "wb");
    TalvoXMLParser* parser = new TalvoXMLParser();
    parser->setErrorFile(errors);
    parser->setInputFileName(name);
    int code = parser->parseFile(document, in);
    delete parser;
    std::fclose(errors);
    std::fclose(in);
    *report = readFile("errors.txt");
    return code;
}

Outcome parse(const std::string& xml, const char* name = nullptr) {
    TalvoXMLDocument* document = new TalvoXMLDocument();
    Outcome outcome;
    outcome.code = parseInto(document, xml, &outcome.report, name);
    outcome.printed = printDocument(document);
    delete document;
    return outcome;
}

const std::string Header = "<?xml version=\"1.0\"?>\n";

// Everything `file` still holds from its current position.
std::string restOf(FILE* file) {
    std::string rest;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file))
        rest += static_cast<char>(c);
    return rest;
}

// A comment long enough to push what follows past the first read-ahead block.
std::string padding(size_t size) { return "<!--" + std::string(size, 'p') + "-->\n"; }

// The text the parser stores for `raw`: each white-space run one blank, the
// leading run dropped.
std::string collapsed(const std::string& raw) {
    std::string text;
    bool inRun = true;
    for (char c : raw) {
        bool space = c == ' ' || (c >= '\t' && c <= '\r');
        if (space && !inRun)
            text += ' ';
        else if (!space)
            text += c;
        inRun = space;
    }
    return text;
}

std::string syntaxError(int line, const char* text) {
    return "SYNTAX ERROR [line " + std::to_string(line) + "]:\n" + text + "\n";
}

}  // namespace

// --- Errors: every code, its line and the exact report.

TEST(TalvoXMLParser, ErrorsReportCodeAndLine) {
    struct Case {
        const char* input;
        int code;
        int line;
    } cases[] = {
        // 1001: the end of the file inside a construct, and the "=" quirk.
        {"<?xml version", 1001, 1},
        {"<?xml ?", 1001, 1},
        {"<?xml?>\n<a>\nhello", 1001, 3},
        {"<?xml?>\n<a>hello  \n", 1001, 3},
        {"<?xml?>\n<abc", 1001, 2},
        {"<?xml?>\n<a></a", 1001, 2},
        {"<?xml?>\n<a x y=\"1\"/>", 1001, 2},
        {"<?xml?>\n<a x=\"abc\n", 1001, 3},
        {"<?xml?>\n<!-- abc --", 1001, 2},
        {"<?xml?>\n<!-- abc -- >\n", 1001, 3},
        {"<?xml?>\n<!DOCTYPE a", 1001, 2},
        {"<?xml?>\n<!", 1001, 2},
        {"<?xml?>\n<![CDATA[abc]]", 1001, 2},
        {"<?xml?>\n<![CDATA[abc]", 1001, 2},
        {"<?xml?>\n<![CDATA[abc", 1001, 2},
        {"<?xml?>\n<![CDATA[a]]]>", 1001, 2},
        // 1002: a name must start with a letter.
        {"<?xml?>\n<a></1>", 1002, 2},
        {"<?xml?>\n<a>\n</\n>", 1002, 4},
        {"<?xml?>\n<a></", 1002, 2},
        // 1003: values are double-quoted.
        {"<?xml?>\n<a x='1'/>", 1003, 2},
        {"<?xml?>\n<a x=", 1003, 2},
        {"<?xml?>\n<a x=1/>", 1003, 2},
        // 1004: the declaration comes first, with nothing before it.
        {"", 1004, 1},
        {" <?xml?>", 1004, 1},
        {"\n<?xml?>", 1004, 2},
        {"<a/>", 1004, 1},
        {"\xEF\xBB\xBF<?xml?>", 1004, 1},
        // 1005: the second dash of a comment.
        {"<?xml?>\n<!-x>", 1005, 2},
        {"<?xml?>\n<!-", 1005, 2},
        // 1006: the CDATA marker.
        {"<?xml?>\n<![CDAT[x]]>", 1006, 2},
        {"<?xml?>\n<![CDATA x]]>", 1006, 2},
        {"<?xml?>\n<![CD\nATA[x]]>", 1006, 3},
        {"<?xml?>\n<![", 1006, 2},
        // 1007: the end of the file where "=" is due.
        {"<?xml?>\n<a x ", 1007, 2},
        {"<?xml?>\n<a x\n", 1007, 3},
        // 1008: inside a tag.
        {"<?xml?>\n<a/ >", 1008, 2},
        {"<?xml?>\n<a $>", 1008, 2},
        {"<?xml?>\n<a x=\"1\"", 1008, 2},
        {"<?xml?>\n<a ", 1008, 2},
        {"<?xml?>\n<a/", 1008, 2},
        {"<?xml?>\n<a></a b>", 1008, 2},
        {"<?xml?>\n<a></a", 1001, 2},
        // 1010, 1011: closing tags.
        {"<?xml?>\n</a>", 1010, 2},
        {"<?xml?>\n<a/>\n</a>", 1010, 3},
        {"<?xml?>\n<a>\n<b></a>", 1011, 3},
        {"<?xml?>\n<a></A>", 1011, 2},
        // 1012: "<" not followed by a letter, "!" or "/".
        {"<?xml?>\n<1>", 1012, 2},
        {"<?xml?>\n< a>", 1012, 2},
        {"<?xml?>\n<?pi?>", 1012, 2},
        {"<?xml?>\n<", 1012, 2},
        // 1013: nodes still open at the end, counted to the end of the file.
        {"<?xml?>\n<a>\n<b>\n", 1013, 4},
        {"<?xml?>\n<a>", 1013, 2},
        {"<?xml?>\n<a><b></b>", 1013, 2},
    };
    TalvoXMLParserMessenger* messenger = new TalvoXMLParserMessenger();
    for (const Case& c : cases) {
        Outcome outcome = parse(c.input);
        EXPECT_EQ(outcome.code, 1) << c.input;
        EXPECT_EQ(outcome.report, syntaxError(c.line, messenger->getMessageText(c.code))) << c.input;
        EXPECT_EQ(outcome.printed, Header) << c.input;  // a failed parse leaves the document empty
    }
    delete messenger;
}

TEST(TalvoXMLParser, ReportNamesTheInputFile) {
    Outcome outcome = parse("<?xml?>\n\n\n\n\n\n\n\n\n\n\n<a x='1'/>\n", "in.xml");
    EXPECT_EQ(outcome.report, "SYNTAX ERROR [in.xml, line 12]:\nA '\"' was expected\n\n");
}

TEST(TalvoXMLParser, FailedParseEmptiesAFilledDocument) {
    TalvoXMLDocument* document = new TalvoXMLDocument();
    std::string report;
    EXPECT_EQ(parseInto(document, Header + "<a><b/><c>text</c>", &report), 1);
    EXPECT_EQ(printDocument(document), Header);
    document->addRoot(new TalvoXMLTerm(TalvoXMLTerm::node, "old"));
    EXPECT_EQ(parseInto(document, Header + "<a><b x=\"1\" y=\"2\"/><c>text</d>", &report), 1);
    EXPECT_EQ(document->findRoot("old"), nullptr);
    EXPECT_EQ(printDocument(document), Header);
    delete document;
}

TEST(TalvoXMLParser, ParserIsReusableAfterAnError) {
    writeFile("bad.xml", "<?xml?>\n<a>");
    writeFile("good.xml", "<?xml?>\n<a/>\n");
    FILE* errors = std::fopen("errors.txt", "wb");
    TalvoXMLParser* parser = new TalvoXMLParser();
    parser->setErrorFile(errors);
    TalvoXMLDocument* document = new TalvoXMLDocument();
    FILE* bad = std::fopen("bad.xml", "rb");
    EXPECT_EQ(parser->parseFile(document, bad), 1);
    EXPECT_TRUE(parser->getParseError());
    std::fclose(bad);
    FILE* good = std::fopen("good.xml", "rb");
    EXPECT_EQ(parser->parseFile(document, good), 0);
    EXPECT_FALSE(parser->getParseError());
    EXPECT_EQ(parser->getLineNumber(), 3);
    std::fclose(good);
    EXPECT_NE(document->findRoot("a"), nullptr);
    EXPECT_EQ(parser->parseFile(nullptr, nullptr), 1);
    delete document;
    delete parser;
    std::fclose(errors);
    EXPECT_EQ(readFile("errors.txt"), syntaxError(2, "Non closed tag(s)\n"));
}

// --- White space at the end of the file.

TEST(TalvoXMLParser, TrailingWhiteSpaceEndsTheParseQuietly) {
    const char* inputs[] = {
        "<?xml?>",
        "<?xml?>\n",
        "<?xml?>\n<a/>",
        "<?xml?>\n<a/>\n",
        "<?xml?>\n<a/>\n\n  \t\r\n",
        "<?xml?><a>x</a>   ",
    };
    for (const char* input : inputs) {
        Outcome outcome = parse(input);
        EXPECT_EQ(outcome.code, 0) << input;
        EXPECT_EQ(outcome.report, "") << input;
    }
    EXPECT_EQ(parse("<?xml?>\n<a/>\ntail").report, syntaxError(3, "Unexpected end of file\n"));
    EXPECT_EQ(parse("<?xml?>\n<a/>\n  tail  \n\n").report, syntaxError(5, "Unexpected end of file\n"));
}

// --- What the tree holds.

TEST(TalvoXMLParser, SelfClosingChildAndLineNumbers) {
    TalvoXMLDocument* document = new TalvoXMLDocument();
    std::string report;
    ASSERT_EQ(parseInto(document, "<?xml version=\"1.0\"?>\n<a>\n  <b/>\n\n  text\n</a>\n", &report), 0);
    TalvoXMLTerm* a = document->findRoot("a");
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->getLineNumber(), 2);
    ASSERT_EQ(a->getNumberOfChildren(), 2);
    EXPECT_TRUE(a->getNthChild(0)->isNodeOfTag("b"));
    EXPECT_EQ(a->getNthChild(0)->getLineNumber(), 3);
    EXPECT_FALSE(a->getNthChild(0)->hasChildren());
    EXPECT_STREQ(a->getNthChild(1)->getText(), "text ");
    EXPECT_EQ(a->getNthChild(1)->getLineNumber(), 6);  // a text is made at the "<" that ends it
    delete document;
}

TEST(TalvoXMLParser, TextsCollapseWhiteSpaceRuns) {
    struct Case {
        const char* body;
        const char* text;
    } cases[] = {
        {"<a>  x   y  </a>", "x y "},
        {"<a>x\n\t\ny</a>", "x y"},
        {"<a>\n  one &amp; two\n</a>", "one &amp; two "},
        {"<a>a>b</a>", "a>b"},
        {"<a>q\"uote'</a>", "q\"uote'"},
    };
    for (const Case& c : cases) {
        TalvoXMLDocument* document = new TalvoXMLDocument();
        std::string report;
        ASSERT_EQ(parseInto(document, Header + c.body, &report), 0) << c.body << report;
        EXPECT_STREQ(document->findRoot("a")->getNthChild(0)->getText(), c.text) << c.body;
        delete document;
    }
}

TEST(TalvoXMLParser, NulByteEndsWhatAStringShows) {
    const std::string nul(1, '\0');
    std::string body = "<a v=\"x" + nul + "y\">t" + nul + std::string(600, 'u') + "<!--c" + nul + "d--></a>";
    TalvoXMLDocument* document = new TalvoXMLDocument();
    std::string report;
    ASSERT_EQ(parseInto(document, Header + body, &report), 0) << report;
    TalvoXMLTerm* a = document->findRoot("a");
    EXPECT_STREQ(a->getAttributeValue("v"), "x");
    EXPECT_STREQ(a->getNthChild(0)->getText(), "t");
    EXPECT_STREQ(a->getNthChild(1)->getText(), "--c");
    delete document;
}

TEST(TalvoXMLParser, AttributesKeepTheirValuesAsWritten) {
    TalvoXMLDocument* document = new TalvoXMLDocument();
    std::string report;
    ASSERT_EQ(parseInto(document,
                        Header + "<a x = \"1\"\n y=\"two\nlines\" x=\"&lt;\" empty=\"\" n.s:q-r_s=\"'\"/>",
                        &report),
              0)
        << report;
    TalvoXMLTerm* a = document->findRoot("a");
    const char* expected[][2] = {{"x", "1"}, {"y", "two\nlines"}, {"x", "&lt;"}, {"empty", ""}, {"n.s:q-r_s", "'"}};
    TalvoListCursor* cursor = a->newCursorOnAttributes();
    int i = 0;
    for (cursor->resetOnFirstItem(); !cursor->isAfterLastItem(); cursor->increment(), ++i) {
        auto* attribute = static_cast<TalvoXMLAttribute*>(cursor->getItem());
        EXPECT_STREQ(attribute->getName(), expected[i][0]);
        EXPECT_STREQ(attribute->getValue(), expected[i][1]);
    }
    EXPECT_EQ(i, 5);
    delete cursor;
    delete document;
}

TEST(TalvoXMLParser, CommentsAndDeclarationsBecomeCommentTerms) {
    struct Case {
        const char* body;
        const char* text;
    } cases[] = {
        {"<!-- hi -->", "-- hi --"},
        {"<!---->", "----"},
        {"<!-- a -- b -->", "-- a -- b --"},
        {"<!-- a->b --->", "-- a->b ---"},
        {"<!--\nline\n-->", "--\nline\n--"},
        {"<!DOCTYPE note SYSTEM \"note.dtd\">", "DOCTYPE note SYSTEM \"note.dtd\""},
        {"<!>", ""},
    };
    for (const Case& c : cases) {
        TalvoXMLDocument* document = new TalvoXMLDocument();
        std::string report;
        ASSERT_EQ(parseInto(document, Header + c.body, &report), 0) << c.body << report;
        TalvoListCursor* cursor = document->newCursorOnRoots();
        cursor->resetOnFirstItem();
        auto* term = static_cast<TalvoXMLTerm*>(cursor->getItem());
        EXPECT_TRUE(term->isComment()) << c.body;
        EXPECT_STREQ(term->getText(), c.text) << c.body;
        delete cursor;
        delete document;
    }
}

TEST(TalvoXMLParser, CDataKeepsItsContentAsItStands) {
    struct Case {
        const char* body;
        const char* text;
    } cases[] = {
        {"<![CDATA[a <b> & c]]>", "a <b> & c"},
        {"<![ CDATA \n [x]]>", "x"},
        {"<![CDATA[a]b]]>", "a]b"},
        {"<![CDATA[a]]b]]>", "a]]b"},
        {"<![CDATA[]]>", ""},
        {"<![CDATA[\n two\n]]>", "\n two\n"},
    };
    for (const Case& c : cases) {
        TalvoXMLDocument* document = new TalvoXMLDocument();
        std::string report;
        ASSERT_EQ(parseInto(document, Header + "<a>" + c.body + "</a>", &report), 0) << c.body << report;
        TalvoXMLTerm* term = document->findRoot("a")->getNthChild(0);
        EXPECT_TRUE(term->isCDATA()) << c.body;
        EXPECT_STREQ(term->getText(), c.text) << c.body;
        delete document;
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

TEST(TalvoXMLParser, HeaderIsSkippedUpToQuestionMarkAndAngle) {
    for (const char* header : {"<?" "?>", "<?xml a=\"?\" ?>", "<?x?" "?>", "<?>?>", "<?xml\nversion='1.0'\n?>"}) {
        TalvoXMLDocument* document = new TalvoXMLDocument();
        std::string report;
        EXPECT_EQ(parseInto(document, std::string(header) + "<a/>", &report), 0) << header;
        EXPECT_NE(document->findRoot("a"), nullptr) << header;
        delete document;
    }
}

TEST(TalvoXMLParser, SeveralRootsOfEveryType) {
    Outcome outcome = parse(Header + "<!-- c --><a/>text<b></b>");
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.printed, Header + "<!-- c -->\n<a />\ntext\n<b />\n");
}

// --- Depth.

TEST(TalvoXMLParser, DeepNestingParsesPrintsAndDeletes) {
    const int depth = 100000;
    std::string xml = Header;
    for (int i = 0; i < depth; ++i)
        xml += "<n>";
    xml += "x";
    for (int i = 0; i < depth; ++i)
        xml += "</n>";
    xml += "\n";
    TalvoXMLDocument* document = new TalvoXMLDocument();
    std::string report;
    ASSERT_EQ(parseInto(document, xml, &report), 0) << report;
    TalvoXMLTerm* term = document->findRoot("n");
    int levels = 0;
    for (; term && term->isNode(); term = term->getNthChild(0))
        ++levels;
    EXPECT_EQ(levels, depth);
    // Printed without indentation, every level takes one opening and one closing line.
    document->print(std::fopen("printed.xml", "wb"), 0);
    std::string printed = readFile("printed.xml");
    EXPECT_EQ(printed.size(), Header.size() + depth * (5 + 5) + 2);
    EXPECT_EQ(printed.find("<n >\nx\n</n>\n</n>\n"), Header.size() + 5 * (depth - 1));
    TalvoXMLDocument::free(document);

    // Unclosed, the same depth fails cleanly and frees everything.
    xml.resize(Header.size() + 3 * depth);
    EXPECT_EQ(parse(xml).report, syntaxError(2, "Non closed tag(s)\n"));
}

TEST(TalvoXMLParser, DeepNestingPrintsWithIndentation) {
    const int depth = 2000;  // the indentation makes the output quadratic in depth
    std::string xml = Header;
    for (int i = 0; i < depth; ++i)
        xml += "<n>";
    for (int i = 0; i < depth; ++i)
        xml += "</n>";
    Outcome outcome = parse(xml);
    ASSERT_EQ(outcome.code, 0);
    std::string innermost = std::string(2 * (depth - 1), ' ') + "<n />\n" +
                            std::string(2 * (depth - 2), ' ') + "</n>\n";
    EXPECT_NE(outcome.printed.find(innermost), std::string::npos);
    EXPECT_EQ(outcome.printed.substr(outcome.printed.size() - 5), "</n>\n");
}

// --- Round trip.

TEST(TalvoXMLParser, RealisticDocumentRoundTrips) {
    const std::string config =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE config>\n"
        "<!-- simulation settings -->\n"
        "<config version=\"3\" name=\"harbour model\">\n"
        "  <clock start=\"0\" stop=\"86400\" step=\"0.5\"/>\n"
        "  <random seed=\"12345\" generator=\"mrg\" />\n"
        "  <servers>\n"
        "    <server id=\"s1\" rate=\"1.25\" enabled=\"true\">Main quay</server>\n"
        "    <server id=\"s2\" rate=\"0.75\" enabled=\"false\">\n"
        "      Old quay,   closed on\n"
        "      Sundays\n"
        "    </server>\n"
        "  </servers>\n"
        "  <notes>Weights &amp; measures</notes>\n"
        "</config>\n";
    const std::string expected =
        "<?xml version=\"1.0\"?>\n"
        "<!DOCTYPE config>\n"
        "<!-- simulation settings -->\n"
        "<config version=\"3\" name=\"harbour model\" >\n"
        "  <clock start=\"0\" stop=\"86400\" step=\"0.5\" />\n"
        "  <random seed=\"12345\" generator=\"mrg\" />\n"
        "  <servers >\n"
        "    <server id=\"s1\" rate=\"1.25\" enabled=\"true\" >\n"
        "Main quay\n"
        "    </server>\n"
        "    <server id=\"s2\" rate=\"0.75\" enabled=\"false\" >\n"
        "Old quay, closed on Sundays \n"
        "    </server>\n"
        "  </servers>\n"
        "  <notes >\n"
        "Weights &amp; measures\n"
        "  </notes>\n"
        "</config>\n";
    Outcome first = parse(config);
    ASSERT_EQ(first.code, 0) << first.report;
    EXPECT_EQ(first.printed, expected);
    // Read back, each text gains the blank of the newline printed after it;
    // from then on printing and parsing are a fixed point.
    std::string reread = expected;
    for (const char* text : {"Main quay\n", "Weights &amp; measures\n"}) {
        std::string t(text);
        reread.replace(reread.find(t), t.size(), t.substr(0, t.size() - 1) + " \n");
    }
    Outcome second = parse(first.printed);
    ASSERT_EQ(second.code, 0) << second.report;
    EXPECT_EQ(second.printed, reread);
    Outcome third = parse(second.printed);
    EXPECT_EQ(third.printed, reread);

    TalvoXMLDocument* document = new TalvoXMLDocument();
    std::string report;
    ASSERT_EQ(parseInto(document, config, &report), 0);
    TalvoXMLTerm* servers = document->findRoot("config")->findChild("servers");
    EXPECT_EQ(servers->getNumberOfNodeChildrenOfTag("server"), 2);
    EXPECT_DOUBLE_EQ(servers->getNthNodeChild(1)->getAttributeValueAsDouble("rate"), 1.25);
    EXPECT_TRUE(servers->getNthNodeChild(2)->findAttribute("enabled")->isBool());
    EXPECT_EQ(document->findRoot("config")->findChild("clock")->getAttributeValueAsInt("stop"), 86400);
    delete document;
}

// --- Reports of the caller's own problems.

TEST(TalvoXMLParser, RaiseErrorAndWarningUseTheTermLine) {
    FILE* errors = std::fopen("errors.txt", "wb");
    TalvoXMLParser* parser = new TalvoXMLParser();
    parser->setErrorFile(errors);
    TalvoXMLTerm* term = new TalvoXMLTerm(TalvoXMLTerm::node, "server");
    term->setLineNumber(7);
    parser->raiseError(1011, term);
    parser->raiseError("Unknown rate: ", term);
    parser->setInputFileName("cfg.xml");
    parser->raiseError(1003, "rate", term);
    parser->raiseError("Unknown rate: ", "fast", term);
    parser->raiseWarning(1001, term);
    parser->raiseWarning("Deprecated", nullptr);
    parser->raiseWarning(1012, "x", nullptr);
    parser->raiseWarning("Unused: ", "speed", term);
    EXPECT_FALSE(parser->getParseError());
    delete term;
    delete parser;
    std::fclose(errors);
    EXPECT_EQ(readFile("errors.txt"),
              "ERROR [line 7]:\nOpen and close tags do not correspond\n\n"
              "ERROR [line 7]:\nUnknown rate: \n"
              "ERROR [cfg.xml, line 7]:\nA '\"' was expected\nrate\n"
              "ERROR [cfg.xml, line 7]:\nUnknown rate: fast\n"
              "WARNING [cfg.xml, line 7]:\nUnexpected end of file\n\n"
              "WARNING [cfg.xml, line 0]:\nDeprecated\n"
              "WARNING [cfg.xml, line 0]:\nIll formed tag name\nx\n"
              "WARNING [cfg.xml, line 7]:\nUnused: speed\n");
}

namespace {

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

}  // namespace

TEST(TalvoXMLParser, DerivedMessengerTranslatesReports) {
    writeFile("in.xml", "<?xml?>\n<a></b>\n<");
    FILE* in = std::fopen("in.xml", "rb");
    FILE* errors = std::fopen("errors.txt", "wb");
    TalvoXMLParser* parser = new TalvoXMLParser();
    parser->setErrorFile(errors);
    parser->setMessenger(new FrenchMessenger());
    TalvoXMLDocument* document = new TalvoXMLDocument();
    EXPECT_EQ(parser->parseFile(document, in), 1);
    std::rewind(in);
    writeFile("in.xml", "<?xml?>\n<");
    std::fclose(in);
    in = std::fopen("in.xml", "rb");
    EXPECT_EQ(parser->parseFile(document, in), 1);  // no text for 1012: the header alone
    std::fclose(in);
    delete document;
    delete parser;
    std::fclose(errors);
    EXPECT_EQ(readFile("errors.txt"),
              "ERREUR DE SYNTAXE [ligne 2]:\nBalises ouvrante et fermante differentes\n\n"
              "ERREUR DE SYNTAXE [ligne 2]:\n");
}

TEST(TalvoXMLParser, OwnsItsPrinterAndMessenger) {
    TalvoXMLParser* parser = new TalvoXMLParser();
    EXPECT_EQ(parser->getErrorStream(), nullptr);
    TalvoXMLPrinter* printer = parser->getPrinter();
    EXPECT_NE(printer, nullptr);
    EXPECT_EQ(parser->getPrinter(), printer);
    parser->setPrinter(new TalvoXMLPrinter());
    EXPECT_NE(parser->getMessenger(), nullptr);
    parser->setMessenger(nullptr);
    EXPECT_NE(parser->getMessenger(), nullptr);
    parser->setErrorFile(stdout);
    EXPECT_NE(parser->getErrorStream(), nullptr);
    parser->setErrorFile(nullptr);
    EXPECT_EQ(parser->getErrorStream(), nullptr);
    delete parser;
}

// --- Reading ahead: results, lines and what is left in the file.

struct StopCase {
    const char* body;  // after the header and the padding
    const char* rest;  // what the file still holds after the failed parse
};

const StopCase StopCases[] = {
    {"<a x='1'/>tail", "1'/>tail"},
    {"<a $>tail", ">tail"},
    {"<a>\n<b></a>tail", "tail"},
    {"<a/></b>\ntail", "\ntail"},
    {"<1>tail", ">tail"},
    {"<!-x>tail", ">tail"},
};

TEST(TalvoXMLParser, FailedParseLeavesTheFileJustAfterTheLastCharacterRead) {
    for (size_t size : {size_t(0), size_t(5000), size_t(40000)}) {
        for (const StopCase& c : StopCases) {
            std::string xml = Header + padding(size) + c.body;
            writeFile("in.xml", xml);
            FILE* in = std::fopen("in.xml", "rb");
            FILE* errors = std::fopen("errors.txt", "wb");
            TalvoXMLParser* parser = new TalvoXMLParser();
            parser->setErrorFile(errors);
            TalvoXMLDocument* document = new TalvoXMLDocument();
            EXPECT_EQ(parser->parseFile(document, in), 1) << c.body;
            EXPECT_FALSE(std::feof(in)) << c.body;
            EXPECT_EQ(std::ftell(in), static_cast<long>(xml.size() - std::string(c.rest).size())) << c.body;
            EXPECT_EQ(restOf(in), c.rest) << size << " " << c.body;
            delete document;
            delete parser;
            std::fclose(errors);
            std::fclose(in);
        }
    }
}

TEST(TalvoXMLParser, SuccessfulParseReadsToTheEnd) {
    writeFile("in.xml", Header + padding(40000) + "<a>x</a>\n");
    FILE* in = std::fopen("in.xml", "rb");
    TalvoXMLParser* parser = new TalvoXMLParser();
    TalvoXMLDocument* document = new TalvoXMLDocument();
    EXPECT_EQ(parser->parseFile(document, in), 0);
    EXPECT_TRUE(std::feof(in));
    EXPECT_EQ(std::fgetc(in), EOF);
    delete document;
    delete parser;
    std::fclose(in);
}

#if !defined(_WIN32)
// A pipe cannot be sought back: it is read one character at a time, and the
// one character given back on a failure stays readable.
TEST(TalvoXMLParser, PipeInputGivesTheSameResultsAndRest) {
    for (const StopCase& c : StopCases) {
        std::string xml = Header + padding(5000) + c.body;
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        ASSERT_EQ(write(ends[1], xml.data(), xml.size()), static_cast<ssize_t>(xml.size()));  // fits the pipe
        close(ends[1]);
        FILE* in = fdopen(ends[0], "rb");
        FILE* errors = std::fopen("errors.txt", "wb");
        TalvoXMLParser* parser = new TalvoXMLParser();
        parser->setErrorFile(errors);
        TalvoXMLDocument* document = new TalvoXMLDocument();
        EXPECT_EQ(parser->parseFile(document, in), 1) << c.body;
        EXPECT_EQ(restOf(in), c.rest) << c.body;
        delete document;
        delete parser;
        std::fclose(errors);
        std::fclose(in);
        EXPECT_EQ(readFile("errors.txt"), parse(xml).report) << c.body;  // the same report as from a file
    }
}
#endif

TEST(TalvoXMLParser, LineNumbersHoldAcrossReadBlocks) {
    // Elements of varied lengths and line counts, so block ends fall everywhere:
    // inside names, values, texts and white-space runs.
    std::string xml = Header + "<r>\n";
    int line = 3;
    std::vector<int> lines;
    unsigned seed = 7;
    for (int i = 0; i < 3000; ++i) {
        seed = seed * 1103515245u + 12345u;
        int newlines = static_cast<int>((seed >> 16) % 3);
        lines.push_back(line);
        xml += "<element" + std::to_string(i) + (newlines ? "\n" : " ") + "v=\"" +
               std::string((seed >> 8) % 40, 'v') + std::string(static_cast<size_t>(newlines), '\n') + "\"/>";
        line += (newlines ? 1 : 0) + newlines;
        xml += std::string((seed >> 4) % 7, ' ') + "\n";
        ++line;
    }
    xml += "</r>\n";
    TalvoXMLDocument* document = new TalvoXMLDocument();
    std::string report;
    ASSERT_EQ(parseInto(document, xml, &report), 0) << report;
    TalvoXMLTerm* r = document->findRoot("r");
    ASSERT_EQ(r->getNumberOfNodeChildren(), 3000);
    int wrong = 0;
    for (int i = 0; i < 3000; ++i)
        wrong += r->getNthNodeChild(i + 1)->getLineNumber() != lines[static_cast<size_t>(i)];
    EXPECT_EQ(wrong, 0);
    delete document;
}

// Texts are scanned many bytes at a time: each case puts the byte that must
// stop the scan (or must not) at every offset of a run longer than a group.
TEST(TalvoXMLParser, TextScanTreatsEveryByteAtEveryOffset) {
    const std::string stoppers[] = {"\xc3\xa9", "\x7f", "\x01", "\x1f", " \xff", "  ", " \t", "\n", "! ", "~"};
    for (const std::string& odd : stoppers) {
        for (size_t offset = 0; offset < 40; ++offset) {
            std::string raw = std::string(offset, 'w') + odd + std::string(40, 'v') + " z";
            TalvoXMLDocument* document = new TalvoXMLDocument();
            std::string report;
            ASSERT_EQ(parseInto(document, Header + "<a>" + raw + "</a>", &report), 0) << report;
            EXPECT_EQ(std::string(document->findRoot("a")->getNthChild(0)->getText()), collapsed(raw))
                << offset << " " << odd;
            delete document;
        }
    }
}

// The parser reads a file 16 KiB at a time: a white-space run cut by the
// end of a read still becomes one blank, and its newlines still count.
TEST(TalvoXMLParser, WhiteSpaceRunAcrossReadsIsOneBlank) {
    const size_t ReadSize = 16 * 1024;
    const std::string opening = Header + "<a>";
    for (size_t before = 1; before <= 6; ++before) {
        std::string raw = std::string(ReadSize - opening.size() - before, 'w') + " \n \n\t z";
        TalvoXMLDocument* document = new TalvoXMLDocument();
        std::string report;
        ASSERT_EQ(parseInto(document, opening + raw + "</a>\n<b/>", &report), 0) << report;
        EXPECT_EQ(std::string(document->findRoot("a")->getNthChild(0)->getText()), collapsed(raw)) << before;
        EXPECT_EQ(document->findRoot("b")->getLineNumber(), 5) << before;
        delete document;
    }
}

TEST(TalvoXMLParser, ShortAndHugeTextsKeepTheirContent) {
    std::string huge;
    const char* const blanks[] = {" ", "  ", "\n", " \n\t ", "\r\n", "\t"};
    unsigned seed = 11;
    while (huge.size() < 200000) {
        seed = seed * 1103515245u + 12345u;
        huge += std::string(1 + (seed >> 8) % 30, static_cast<char>('a' + (seed >> 4) % 26));
        huge += blanks[(seed >> 12) % 6];
    }
    const std::string texts[] = {"x", "xy", " x ", huge, huge + "z"};
    for (const std::string& raw : texts) {
        TalvoXMLDocument* document = new TalvoXMLDocument();
        std::string report;
        ASSERT_EQ(parseInto(document, Header + "<a>" + raw + "</a><b/>", &report), 0) << report;
        TalvoXMLTerm* a = document->findRoot("a");
        ASSERT_NE(a, nullptr);
        EXPECT_EQ(std::string(a->getNthChild(0)->getText()), collapsed(raw)) << raw.size();
        delete document;
    }
    // A huge value and a huge name read as they stand.
    std::string value(70000, 'q');
    value[30000] = '\n';
    std::string name = "n" + std::string(50000, '.');
    TalvoXMLDocument* document = new TalvoXMLDocument();
    std::string report;
    std::string xml = Header + "<" + name + " v=\"" + value + "\"/>\n<c/>";
    ASSERT_EQ(parseInto(document, xml, &report), 0) << report;
    EXPECT_STREQ(document->findRoot(name.c_str())->getAttributeValue("v"), value.c_str());
    EXPECT_EQ(document->findRoot("c")->getLineNumber(), 4);
    delete document;
}
