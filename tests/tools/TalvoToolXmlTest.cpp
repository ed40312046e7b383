// talvo xml check|format|get on fixtures.
#include "ToolRunner.h"
#include "support/TalvoTest.h"

using talvo_test::writeFile;
using talvo_tool_test::runTool;
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

// A malformed file gets the parser's report (exit 1), a missing one a message (exit 2).
TEST(TalvoToolXml, Check_ReportsEachFileAndExitsWithTheWorstStatus) {
    writeFile("single.xml", "<?xml version=\"1.0\"?>\n<a>\n<b x='1'/>\n</a>\n");
    writeFile("config.xml", Config);
    EXPECT_EQ(runTool({"xml", "check", "single.xml", "config.xml"}),
              (ToolRun{"config.xml: ok\n", "SYNTAX ERROR [single.xml, line 3]:\nA '\"' was expected\n\n", 1}));
    EXPECT_EQ(runTool({"xml", "check", "missing.xml", "config.xml"}),
              (ToolRun{"config.xml: ok\n", "talvo: missing.xml: No such file or directory\n", 2}));
    EXPECT_EQ(runTool({"xml", "check", "-"}, "<a/>"),
              (ToolRun{"", "SYNTAX ERROR [(standard input), line 1]:\nIll formed header\n\n", 1}));
}

TEST(TalvoToolXml, Format_PrintsWithTheLibrarysPrinter) {
    writeFile("small.xml", "<?xml version=\"1.0\"?><a x=\"1\"><b/>hello <!-- note --></a>");
    EXPECT_EQ(runTool({"xml", "format", "--indent", "3", "small.xml"}),
              (ToolRun{"<?xml version=\"1.0\"?>\n<a x=\"1\" >\n   <b />\n"
                       "hello \n"  // the text keeps one blank for the white space after it
                       "   <!-- note -->\n</a>\n",
                       "", 0}));
}

TEST(TalvoToolXml, Get_SelectsTextsAndAttributes) {
    writeFile("config.xml", Config);
    const ToolRun found{"8080\n", "", 0};
    const std::pair<const char*, ToolRun> cases[] = {
        {"server/port", found},         // trailing blank of the text dropped
        {"server@name", {"front\n", "", 0}},
        {"server/tls@on", {"yes\n", "", 0}},  // the first server without tls is passed over
        {"@name", {"", "", 1}},               // the root has no attribute
        {"server@", {"", "talvo: server@: not a path like server/port or server@port\n", 2}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(runTool({"xml", "get", "config.xml", c.first}), c.second) << c.first;
}
