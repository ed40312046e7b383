// talvo xml check|format|get on fixtures.
#include "ToolRunner.h"
#include "support/TalvoTest.h"

using talvo_test::writeFile;
using talvo_tool_test::runTool;
using talvo_tool_test::sampleFile;
using talvo_tool_test::ToolRun;

namespace {

const char* const Config =
    "<?xml version=\"1.0\"?>\n"
    "<config>\n"
    "  <server name=\"front\" port=\"8080\">\n"
    "    <port>  8080  </port>\n"
    "  </server>\n"
    "  <server name=\"back\"><port>9090</port><tls on=\"yes\" /></server>\n"
    "</config>\n";

}  // namespace

TEST(TalvoToolXml, Check_GoodFilesPrintOk) {
    writeFile("config.xml", Config);
    ToolRun run = runTool({"xml", "check", "config.xml", sampleFile("server.xml")});
    EXPECT_EQ(run.out, "config.xml: ok\n" + sampleFile("server.xml") + ": ok\n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
}

TEST(TalvoToolXml, Check_MalformedFilePrintsTheParsersReportAndExitsOne) {
    writeFile("single.xml", "<?xml version=\"1.0\"?>\n<a>\n<b x='1'/>\n</a>\n");
    writeFile("open.xml", "<?xml version=\"1.0\"?>\n<a><b></b>\n");
    writeFile("config.xml", Config);
    ToolRun run = runTool({"xml", "check", "single.xml", "config.xml", "open.xml"});
    EXPECT_EQ(run.out, "config.xml: ok\n");
    EXPECT_EQ(run.err,
              "SYNTAX ERROR [single.xml, line 3]:\nA '\"' was expected\n\n"
              "SYNTAX ERROR [open.xml, line 3]:\nNon closed tag(s)\n\n");
    EXPECT_EQ(run.status, 1);
}

TEST(TalvoToolXml, Check_MissingFileExitsTwoNamingIt) {
    writeFile("config.xml", Config);
    ToolRun run = runTool({"xml", "check", "missing.xml", "config.xml"});
    EXPECT_EQ(run.out, "config.xml: ok\n");
    EXPECT_EQ(run.err, "talvo: missing.xml: No such file or directory\n");
    EXPECT_EQ(run.status, 2);
}

TEST(TalvoToolXml, Check_ReadsStandardInput) {
    ToolRun run = runTool({"xml", "check"}, Config);
    EXPECT_EQ(run.out, "(standard input): ok\n");
    run = runTool({"xml", "check", "-"}, "<a/>");
    EXPECT_EQ(run.err, "SYNTAX ERROR [(standard input), line 1]:\nIll formed header\n\n");
    EXPECT_EQ(run.status, 1);
}

TEST(TalvoToolXml, Format_PrintsWithTheLibrarysPrinter) {
    writeFile("small.xml", "<?xml version=\"1.0\"?><a x=\"1\"><b/>hello <!-- note --></a>");
    ToolRun run = runTool({"xml", "format", "--indent", "3", "small.xml"});
    EXPECT_EQ(run.out,
              "<?xml version=\"1.0\"?>\n"
              "<a x=\"1\" >\n"
              "   <b />\n"
              "hello \n"  // the text keeps one blank for the white space after it
              "   <!-- note -->\n"
              "</a>\n");
    EXPECT_EQ(run.status, 0);
    writeFile("bad.xml", "<?xml version=\"1.0\"?><a></b>");
    run = runTool({"xml", "format", "bad.xml"});
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "SYNTAX ERROR [bad.xml, line 1]:\nOpen and close tags do not correspond\n\n");
    EXPECT_EQ(run.status, 1);
}

TEST(TalvoToolXml, Get_SelectsTextsAndAttributes) {
    writeFile("config.xml", Config);
    struct Case {
        const char* path;
        const char* out;
        int status;
    };
    const Case cases[] = {
        {"server/port", "8080\n", 0},         // trailing blank of the text dropped
        {"config/server/port", "8080\n", 0},  // the root's tag may be named
        {"server@name", "front\n", 0},
        {"server@port", "8080\n", 0},
        {"server/tls@on", "yes\n", 0},        // the first server without tls is passed over
        {"@name", "", 1},                     // the root has no attribute
        {"server/host", "", 1},
        {"config/port", "", 1},
    };
    for (const Case& c : cases) {
        ToolRun run = runTool({"xml", "get", "config.xml", c.path});
        EXPECT_EQ(run.out, c.out) << c.path;
        EXPECT_EQ(run.err, "") << c.path;
        EXPECT_EQ(run.status, c.status) << c.path;
    }
}

TEST(TalvoToolXml, Get_BadPathOrMissingFile_ExitsTwo) {
    writeFile("config.xml", Config);
    ToolRun run = runTool({"xml", "get", "config.xml", "server@"});
    EXPECT_EQ(run.err, "talvo: server@: not a path like server/port or server@port\n");
    EXPECT_EQ(run.status, 2);
    run = runTool({"xml", "get", "none.xml", "a"});
    EXPECT_EQ(run.err, "talvo: none.xml: No such file or directory\n");
    EXPECT_EQ(run.status, 2);
}
