#include "support/TalvoTest.h"

#include <talvo/xml/TalvoXMLDocument.h>
#include <talvo/xml/TalvoXMLTerm.h>

#include <cstdio>

using talvo_test::readFile;
using talvo_test::writeFile;

TEST(TalvoXMLDocument, RootsKeepOrderAndFindMatchesAnyType) {
    TalvoXMLDocument* document = new TalvoXMLDocument();
    document->addRoot(new TalvoXMLTerm(TalvoXMLTerm::comment, "a"));
    document->addRoot(new TalvoXMLTerm(TalvoXMLTerm::node, "a"));
    document->addRoot(nullptr);
    EXPECT_TRUE(document->findRoot("a")->isComment());
    EXPECT_EQ(document->findRoot("b"), nullptr);
    TalvoXMLDocument::free(document);
    TalvoXMLDocument::free(nullptr);
    // Loading replaces the roots; print takes the file over.
    writeFile("in.xml", "<?xml version=\"1.0\"?>\n<a x=\"1\">\n  <b/>\n</a>\n");
    document = new TalvoXMLDocument();
    document->addRoot(new TalvoXMLTerm(TalvoXMLTerm::node, "old"));
    document->setDocType("cfg");
    FILE* in = std::fopen("in.xml", "rb");
    document->load(in);
    std::fclose(in);
    EXPECT_EQ(document->findRoot("old"), nullptr);
    FILE* out = std::fopen("out.xml", "wb");
    document->print(out, 4);  // closes `out`
    EXPECT_EQ(readFile("out.xml"), "<?xml version=\"1.0\"?>\n<!DOCTYPE cfg>\n<a x=\"1\" >\n    <b />\n</a>\n");
    document->print(static_cast<FILE*>(nullptr), 2);
    document->load(nullptr);
    delete document;
}
