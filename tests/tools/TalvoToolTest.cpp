// The talvo tool's command line: version, help, bad usage, and random draws.
#include "ToolRunner.h"
#include "support/TalvoTest.h"

#include <talvo/stats/TalvoRandomizer.h>

#include <cstdio>

using talvo_tool_test::runTool;
using talvo_tool_test::ToolRun;

namespace {

const std::string UsageHint = "Run 'talvo --help' or 'talvo COMMAND --help' for usage.\n";

}  // namespace

TEST(TalvoTool, VersionAndHelp_EveryCommandDescribesItselfAndExitsZero) {
    EXPECT_EQ(runTool({"--version"}), (ToolRun{"talvo " TALVO_VERSION "\n", "", 0}));
    for (std::vector<std::string> command : std::vector<std::vector<std::string>>{
             {"xml", "check"}, {"xml", "get"}, {"grep"}, {"stats"}, {"chrono"}, {"random"}}) {
        std::string usage = "Usage: talvo";
        for (const std::string& word : command) usage += " " + word;
        command.push_back("--help");
        ToolRun run = runTool(command);
        EXPECT_EQ(run.status, 0) << usage;
        EXPECT_NE(run.out.find(usage), std::string::npos) << run.out;
        EXPECT_EQ(run.err, "") << usage;
    }
}

TEST(TalvoTool, BadUsage_ExitsTwoWithOnePrefixedLine) {
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{}, "talvo: A subcommand is required\n" + UsageHint},
        {{"stats", "--bins", "0"}, "talvo: --bins: Value 0 not in range 1 to 10000\n" + UsageHint},
        {{"stats", "--frobnicate"}, "talvo: The following argument was not expected: --frobnicate\n" + UsageHint},
        {{"random", "uniform", "0", "1", "2"}, "talvo: too many parameters for uniform; usage: talvo random uniform [LOW [HIGH]]\n"},
        {{"frobnicate"}, "talvo: unknown command 'frobnicate'\nRun 'talvo --help' for the list of commands.\n"},
    };
    for (const auto& c : cases) EXPECT_EQ(runTool(c.first), (ToolRun{"", c.second, 2}));
}

TEST(TalvoToolRandom, Draws_AreTheLibraryGeneratorsOwn) {
    TalvoCongruentialRandomizer plain(2);
    plain.setSeed(99);
    char expected[128];
    double d0 = plain.normalDraw(10.0, 2.0), d1 = plain.normalDraw(10.0, 2.0), d2 = plain.normalDraw(10.0, 2.0);
    std::snprintf(expected, sizeof expected, "%.10g\n%.10g\n%.10g\n", d0, d1, d2);
    EXPECT_EQ(runTool({"random", "--kind", "2", "--seed", "99", "--count", "3", "normal", "10", "2"}),
              (ToolRun{expected, "", 0}));
}

TEST(TalvoToolRandom, BadDistribution_ExitsTwo) {
    ToolRun run = runTool({"random", "cauchy"});
    EXPECT_EQ(run.status, 2);
    EXPECT_EQ(run.err.rfind("talvo: DIST: cauchy not in", 0), 0u) << run.err;
}
