#include "support/TalvoTest.h"

#include <talvo/text/TalvoFileStream.h>
#include <talvo/values/TalvoConstant.h>
#include <talvo/xml/TalvoXMLAttribute.h>
#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLPrinter.h>
#include <talvo/xml/TalvoXMLTerm.h>

#include <cstdio>
#include <string>
#include <utility>

namespace {

// Runs `write` with a printer and a writing stream, and returns what it wrote.
template <class Write>
std::string printed(Write write, TalvoXMLPrinter* printer = nullptr) {
    FILE* file = std::fopen("out.txt", "wb");
    TalvoFileStream* stream = new TalvoFileStream(false, file);
    TalvoXMLPrinter* own = printer ? nullptr : new TalvoXMLPrinter();
    write(printer ? printer : own, stream);
    stream->close();
    delete stream;
    delete own;
    return talvo_test::readFile("out.txt");
}

const std::string Declaration = "<?xml version=\"1.0\"?>\n";

typedef TalvoXMLPrinter P;
typedef TalvoStream S;

TalvoXMLTerm* node(const char* tag) { return new TalvoXMLTerm(TalvoXMLTerm::node, tag); }

// A derived layout: every slot the tree walk uses is called through the table.
class BracketPrinter : public TalvoXMLPrinter {
public:
    void printOpenTagOpening(const char* tag, TalvoStream* s) override { s->put("["); s->put(tag); }
    void printOpenTagClosing(TalvoStream* s) override { s->put("]"); incrementDepth(); }
    void printOpenTagEnding(TalvoStream* s) override { s->put("/]"); }
    void printCloseTag(const char* tag, TalvoStream* s) override { decrementDepth(); s->put("[/"); s->put(tag); s->put("]"); }
    void printAttribute(TalvoXMLAttribute* a, TalvoStream* s) override { s->put(" "); s->put(a->getName()); }
    void printText(TalvoXMLTerm* t, TalvoStream* s) override { s->put("'"); s->put(t->getText()); s->put("'"); }
};

}  // namespace

TEST(TalvoXMLPrinter, TagOperationsWriteTheirPiecesAndMoveTheDepth) {
    TalvoXMLPrinter* printer = new TalvoXMLPrinter();
    EXPECT_EQ(printed([](P* p, S* s) { p->printTag("a", s); }, printer), "<a />\n");
    EXPECT_EQ(printed([](P* p, S* s) { p->printOpenTag("a", s); }, printer), "<a >\n");
    EXPECT_EQ(printer->getDepth(), 1);
    EXPECT_EQ(printed([](P* p, S* s) { p->printTag("b", s); }, printer), "  <b />\n");
    auto opening = [](P* p, S* s) { p->printOpenTagOpening("c", s); };
    EXPECT_EQ(printed([&](P* p, S* s) { opening(p, s); p->printOpenTagClosing(s); }, printer), "  <c >\n");
    EXPECT_EQ(printer->getDepth(), 2);
    EXPECT_EQ(printed([](P* p, S* s) { p->printCloseTag("c", s); }, printer), "  </c>\n");
    EXPECT_EQ(printed([](P* p, S* s) { p->printCloseTag("a", s); }, printer), "</a>\n");  // back at 0, no indent
    EXPECT_EQ(printer->getDepth(), 0);
    printer->incrementDepth();  // the header puts the depth back to 0
    EXPECT_EQ(printed([](P* p, S* s) { p->printDocumentHeader("x", s); }, printer), Declaration + "<!DOCTYPE x>\n");
    EXPECT_EQ(printed([](P* p, S* s) { p->printDocumentHeader(nullptr, s); }, printer), Declaration);
    EXPECT_EQ(printer->getDepth(), 0);
    printer->incrementDepth();  // texts are never indented, comments are
    EXPECT_EQ(printed([](P* p, S* s) { p->printText("a\\tb", s); }, printer), "a\tb\n");
    EXPECT_EQ(printed([](P* p, S* s) { p->printComment("DOCTYPE x", s); }, printer), "  <!DOCTYPE x>\n");
    delete printer;
}

TEST(TalvoXMLPrinter, IndentationUnitAndNegativeDepth) {
    TalvoXMLPrinter* printer = new TalvoXMLPrinter();
    printer->setIndentation("\\t");  // written through put(char*): the escape becomes a tab
    printer->incrementDepth();
    printer->incrementDepth();
    EXPECT_EQ(printed([](P* p, S* s) { p->printTag("a", s); }, printer), "\t\t<a />\n");
    printer->setIndentation(1);
    for (int i = 0; i < 3; ++i) printer->decrementDepth();
    EXPECT_EQ(printer->getDepth(), -1);
    EXPECT_EQ(printed([](P* p, S* s) { p->printTag("a", s); }, printer), "<a />\n");
    printer->setIndentation(nullptr);
    delete printer;
    EXPECT_EQ(printed([](P* p, S* s) {  // null arguments print nothing
                  p->printTerm(nullptr, s);
                  p->printDocument(nullptr, s);
                  p->printAttribute(static_cast<TalvoXMLAttribute*>(nullptr), s);
                  p->printTag("a", nullptr);
              }),
              "");
}

TEST(TalvoXMLPrinter, AttributesOfEveryType) {
    EXPECT_EQ(printed([](P* p, S* s) { p->printAttribute("n", 1.0 / 3.0, s); }), " n=\"0.333333\"");
    EXPECT_EQ(printed([](P* p, S* s) { p->printAttribute("n", -7, s); }), " n=\"-7\"");
    EXPECT_EQ(printed([](P* p, S* s) { p->printAttribute("n", true, s); }), " n=\"true\"");
    EXPECT_EQ(printed([](P* p, S* s) { p->printAttribute("n", "a\\\\b", s); }), " n=\"a\\b\"");
    // a double follows the stream precision
    EXPECT_EQ(printed([](P* p, S* s) { s->setSignificantDigitNumber(3); p->printAttribute("pi", 3.14159, s); }), " pi=\"3.14\"");
}

TEST(TalvoXMLPrinter, ConstantAttributesPrintByType) {
    const std::pair<TalvoConstant*, const char*> cases[] = {
        {new TalvoConstant(), "nil"}, {new TalvoConstant(0.1), "0.1"}, {new TalvoConstant("text"), "text"},
        {new TalvoConstant(static_cast<void*>(new TalvoConstant(1)), TalvoConstant::free, 9), "nil"},
        {new TalvoConstant(false), "false"}, {new TalvoConstant(-12), "-12"},
    };
    for (const auto& c : cases) {
        TalvoConstant* constant = c.first;
        EXPECT_EQ(printed([constant](P* p, S* s) { p->printAttribute("c", constant, s); }), std::string(" c=\"") + c.second + "\"");
        delete constant;
    }
}

TEST(TalvoXMLPrinter, NestedNodesIndentButTextsDoNot) {
    TalvoXMLTerm *a = node("a"), *b = node("b"), *c = node("c");
    c->addAttribute("k", "v");
    b->addChild(c);
    b->addChild(new TalvoXMLTerm(TalvoXMLTerm::text, "deep"));
    b->addChild(new TalvoXMLTerm(TalvoXMLTerm::comment, "-- c --"));
    b->addChild(new TalvoXMLTerm(TalvoXMLTerm::CDATA, "[d"));
    a->addChild(b);
    a->addChild(node("e"));
    EXPECT_EQ(printed([a](P* p, S* s) { p->printNode(a, s); }),
              "<a >\n"
              "  <b >\n"
              "    <c k=\"v\" />\n"
              "deep\n"
              "    <!-- c -->\n"
              "<![CDATA\n[d]]>\n"
              "  </b>\n"
              "  <e />\n"
              "</a>\n");
    delete a;
}

TEST(TalvoXMLPrinter, TreeWalkCallsTheVirtualSlots) {
    TalvoXMLTerm *a = node("a"), *b = node("b");
    b->addAttribute("x", "1");
    b->addChild(new TalvoXMLTerm(TalvoXMLTerm::text, "t"));
    a->addChild(b);
    a->addChild(node("c"));
    BracketPrinter* printer = new BracketPrinter();
    EXPECT_EQ(printed([a](P* p, S* s) { p->printTerm(a, s); }, printer), "[a][b x]'t'[/b][c/][/a]");
    delete printer;
    delete a;
}
