// talvo stats and talvo chrono on fixtures, and their SVG pictures read back.
#include "ToolRunner.h"
#include "support/TalvoTest.h"

using talvo_test::writeFile;
using talvo_tool_test::readXmlBack;
using talvo_tool_test::runTool;
using talvo_tool_test::sampleFile;
using talvo_tool_test::ToolRun;

TEST(TalvoToolStats, Summary_OfBlankAndLineSeparatedNumbers) {
    EXPECT_EQ(runTool({"stats", "--quantiles", "2"}, "1 2\n\n3\t4 # four\n# comment 5\n"),
              (ToolRun{"count     4\n"
                       "mean      2.5\n"
                       "stddev    1.290994449\n"
                       "slack95   1.26517456\n"
                       "minimum   1\n"
                       "maximum   4\n"
                       "q0.5      2\n"
                       "q1        4\n",
                       "", 0}));
}

TEST(TalvoToolStats, MalformedNumbers_AreReportedWithTheirLineAndSkipped) {
    ToolRun run = runTool({"stats", "--quantiles", "1"}, "1\n2x 3\nnan inf +4 -\n1e999 .5\n");
    EXPECT_EQ(run.out.substr(0, 22), "count     4\nmean      ");
    EXPECT_EQ(run.err,
              "talvo: (standard input):2: malformed number '2x', skipped\n"
              "talvo: (standard input):3: malformed number 'nan', skipped\n"
              "talvo: (standard input):3: malformed number 'inf', skipped\n"
              "talvo: (standard input):3: malformed number '-', skipped\n"
              "talvo: (standard input):4: malformed number '1e999', skipped\n");
    EXPECT_NE(run.out.find("mean      2.125\n"), std::string::npos) << run.out;
    EXPECT_EQ(run.status, 0);
}

TEST(TalvoToolStats, ManyMalformedNumbers_AreCountedAfterTheFirstTen) {
    std::string input;
    for (int i = 0; i < 25; ++i)
        input += "x\n";
    writeFile("data.txt", input + "7\n");
    ToolRun run = runTool({"stats", "data.txt"});
    EXPECT_EQ(run.out.substr(0, 12), "count     1\n");
    EXPECT_NE(run.err.find("talvo: data.txt:10: malformed number 'x', skipped\n"
                           "talvo: data.txt: further problems are only counted\n"
                           "talvo: data.txt: 25 lines or numbers skipped in all\n"),
              std::string::npos)
        << run.err;
}

TEST(TalvoToolStats, QuantilesAndExtremes_OfFewAndNegativeValues) {
    ToolRun run = runTool({"stats", "--quantiles", "3"}, "5\n");
    EXPECT_NE(run.out.find("q0.333333 5\nq0.666667 5\nq1        5\n"), std::string::npos) << run.out;
    // Negative data has its true maximum.
    run = runTool({"stats", "--quantiles", "4"}, "-2 -1\n");
    EXPECT_NE(run.out.find("minimum   -2\nmaximum   -1\nq0.25     -2\nq0.5      -2\nq0.75     -1\nq1        -1\n"),
              std::string::npos)
        << run.out;
}

TEST(TalvoToolStats, NoNumbers_CountZeroAndNothingToDraw) {
    EXPECT_EQ(runTool({"stats"}, "# nothing\n"), (ToolRun{"count     0\n", "", 0}));
    EXPECT_EQ(runTool({"stats", "--svg", "h.svg"}, ""), (ToolRun{"count     0\n", "talvo: no numbers to draw\n", 1}));
    EXPECT_EQ(talvo_test::readFile("h.svg"), "<missing>");
}

TEST(TalvoToolStats, MissingFile_ExitsTwoAfterTheOthers) {
    writeFile("a.txt", "5\n");
    EXPECT_EQ(runTool({"stats", "--quantiles", "1", "a.txt", "b.txt"}),
              (ToolRun{"count     1\nmean      5\nstddev    0\nslack95   0\nminimum   5\nmaximum   5\nq1        5\n",
                       "talvo: b.txt: No such file or directory\n", 2}));
}

TEST(TalvoToolStats, Histogram_BinsOfEqualWeightAsBars) {
    ToolRun run = runTool({"stats", "--quantiles", "1", "--histogram", "--bins", "2"}, "1 2 3 4\n");
    EXPECT_NE(run.out.find("# histogram: bins of equal weight, bar length proportional to density\n"
                           "#         from           to     weight\n"
                           "             1          2.5          2  "
                           "##################################################\n"
                           "           2.5            4          2  "
                           "##################################################\n"),
              std::string::npos)
        << run.out;
}

TEST(TalvoToolStats, Svg_ReadsBackWithTheLibrarysParser) {
    ToolRun run = runTool({"stats", "--bins", "5", "--svg", "latencies.svg", sampleFile("latencies.txt")});
    EXPECT_EQ(run.status, 0);
    talvo_tool_test::XmlReadBack back = readXmlBack("latencies.svg");
    EXPECT_EQ(back.result, 0);
    EXPECT_EQ(back.rootTag, "svg");
    EXPECT_EQ(back.nodeChildren, 1 + 5 + 1 + 3);  // background, bars, axis, labels
    run = runTool({"stats", "--svg", "no/such/dir/h.svg"}, "1\n");
    EXPECT_EQ(run.err, "talvo: no/such/dir/h.svg: No such file or directory\n");
    EXPECT_EQ(run.status, 2);
}

TEST(TalvoToolChrono, Points_OneLinePerPointWhenUnderTheLimit) {
    EXPECT_EQ(runTool({"chrono"}, "# t v\n1 10\n2 20\n4 40\n"),
              (ToolRun{"# x width count mean minimum maximum\n1 1 1 10 10 10\n2 1 1 20 20 20\n4 2 1 40 40 40\n",
                       "", 0}));
}

TEST(TalvoToolChrono, Reduction_KeepsAtMostTheRequestedPointsAndTheTotalWidth) {
    ToolRun run = runTool({"chrono", "--points", "4", sampleFile("temperature.txt")});
    EXPECT_EQ(run.status, 0);
    int lines = 0;
    double lastX = 0, widths = 0;
    std::size_t start = run.out.find('\n') + 1;
    while (start < run.out.size()) {
        double x = 0, width = 0;
        ASSERT_EQ(std::sscanf(run.out.c_str() + start, "%lf %lf", &x, &width), 2);
        widths += width;
        lastX = x;
        ++lines;
        start = run.out.find('\n', start) + 1;
    }
    EXPECT_GE(lines, 1);
    EXPECT_LE(lines, 4);
    EXPECT_EQ(lastX, 168);
    EXPECT_DOUBLE_EQ(widths, 168);
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

TEST(TalvoToolChrono, Svg_ReadsBackWithTheLibrarysParser) {
    ToolRun run = runTool({"chrono", "--points", "6", "--svg", "history.svg", sampleFile("temperature.txt")});
    EXPECT_EQ(run.status, 0);
    talvo_tool_test::XmlReadBack back = readXmlBack("history.svg");
    EXPECT_EQ(back.result, 0);
    EXPECT_EQ(back.rootTag, "svg");
    EXPECT_EQ(back.nodeChildren, 1 + 2 + 2 + 5);  // background, band and means, axes, labels
    EXPECT_EQ(runTool({"chrono", "--svg", "empty.svg"}, ""),
              (ToolRun{"# x width count mean minimum maximum\n", "talvo: no points to draw\n", 1}));
}
