// talvo stats and talvo chrono on fixtures, and their SVG pictures.
#include "ToolRunner.h"
#include "support/TalvoTest.h"

#include <algorithm>

using talvo_test::writeFile;
using talvo_tool_test::runTool;
using talvo_tool_test::sampleFile;
using talvo_tool_test::ToolRun;

TEST(TalvoToolStats, Summary_OfBlankAndLineSeparatedNumbers) {
    EXPECT_EQ(runTool({"stats", "--quantiles", "2"}, "1 2\n\n3\t4 # four\n# comment 5\n"),
              (ToolRun{"count     4\nmean      2.5\nstddev    1.290994449\nslack95   1.26517456\n"
                       "minimum   1\nmaximum   4\nq0.5      2\nq1        4\n",
                       "", 0}));
}

TEST(TalvoToolStats, MalformedNumbers_AreReportedWithTheirLineAndSkipped) {
    ToolRun run = runTool({"stats", "--quantiles", "1"}, "1\n2x 3\nnan +4\n1e999 .5\n");
    EXPECT_EQ(run.out.substr(0, 34), "count     4\nmean      2.125\nstddev");
    EXPECT_EQ(run.err,
              "talvo: (standard input):2: malformed number '2x', skipped\n"
              "talvo: (standard input):3: malformed number 'nan', skipped\n"
              "talvo: (standard input):4: malformed number '1e999', skipped\n");
    EXPECT_EQ(run.status, 0);
    // After ten problems a file's are only counted; a missing file exits two after the others.
    std::string input;
    for (int i = 0; i < 25; ++i) input += "x\n";
    writeFile("data.txt", input + "7\n");
    run = runTool({"stats", "data.txt", "b.txt"});
    EXPECT_EQ(run.out.substr(0, 12), "count     1\n");
    EXPECT_NE(run.err.find("talvo: data.txt:10: malformed number 'x', skipped\n"
                           "talvo: data.txt: further problems are only counted\n"
                           "talvo: data.txt: 25 lines or numbers skipped in all\n"
                           "talvo: b.txt: No such file or directory\n"),
              std::string::npos)
        << run.err;
    EXPECT_EQ(run.status, 2);
}

TEST(TalvoToolStats, NoNumbers_CountZeroAndNothingToDraw) {
    EXPECT_EQ(runTool({"stats", "--svg", "h.svg"}, ""), (ToolRun{"count     0\n", "talvo: no numbers to draw\n", 1}));
    EXPECT_EQ(talvo_test::readFile("h.svg"), "<missing>");
    EXPECT_EQ(runTool({"chrono", "--svg", "empty.svg"}, ""),
              (ToolRun{"# x width count mean minimum maximum\n", "talvo: no points to draw\n", 1}));
}

TEST(TalvoToolStats, HistogramAndSvg_BinsOfEqualWeightAsBars) {
    const std::string bar(50, '#');
    ToolRun run = runTool({"stats", "--quantiles", "1", "--histogram", "--bins", "2"}, "1 2 3 4\n");
    EXPECT_NE(run.out.find("# histogram: bins of equal weight, bar length proportional to density\n"
                           "#         from           to     weight\n"
                           "             1          2.5          2  " + bar + "\n"
                           "           2.5            4          2  " + bar + "\n"),
              std::string::npos)
        << run.out;
    // The picture draws one bar per bin.
    EXPECT_EQ(runTool({"stats", "--bins", "5", "--svg", "l.svg", sampleFile("latencies.txt")}).status, 0);
    std::string svg = talvo_test::readFile("l.svg");
    EXPECT_EQ(svg.rfind("<?xml version=\"1.0\"?>\n<svg ", 0), 0u) << svg;
    EXPECT_EQ(std::count(svg.begin(), svg.end(), '\n'), 2 + 1 + 5 + 1 + 3 + 1);  // background, bars, axis, labels
    EXPECT_EQ(runTool({"stats", "--svg", "no/such/dir/h.svg"}, "1\n").err,
              "talvo: no/such/dir/h.svg: No such file or directory\n");
}

TEST(TalvoToolChrono, MalformedLines_AreReportedWithTheirLineAndSkipped) {
    EXPECT_EQ(runTool({"chrono"}, "1 10\n2 y\n3\n4 1 2\n0 5\n5 50\n"),
              (ToolRun{"# x width count mean minimum maximum\n1 1 1 10 10 10\n5 4 1 50 50 50\n",
                       "talvo: (standard input):2: malformed number 'y', skipped\n"
                       "talvo: (standard input):3: expected two numbers \"x y\" in '3', skipped\n"
                       "talvo: (standard input):4: expected two numbers \"x y\" in '4 1 2', skipped\n"
                       "talvo: (standard input):5: x goes back in '0 5', skipped\n",
                       0}));
}
