// talvo grep|sub|split on fixtures.
#include "ToolRunner.h"
#include "support/TalvoTest.h"

using talvo_test::writeFile;
using talvo_tool_test::runTool;
using talvo_tool_test::ToolRun;

namespace {

const char* const Log =
    "GET /a 200\n"
    "POST /b 500\n"
    "\n"
    "GET /c 500 500\n";

struct Case { std::vector<std::string> arguments; const char* out; int status; };

void expectCases(const std::vector<Case>& cases, const char* input) {
    for (const Case& c : cases)
        EXPECT_EQ(runTool(c.arguments, input), (ToolRun{c.out, "", c.status})) << c.arguments.back();
}

}  // namespace

TEST(TalvoToolGrep, Options_SelectCountNumberAndInvert) {
    expectCases({
                    {{"grep", "-n", "GET|POST"}, "1:GET /a 200\n2:POST /b 500\n4:GET /c 500 500\n", 0},
                    {{"grep", "-c", "x*"}, "3\n", 0},  // an empty text never matches
                    {{"grep", "-v", "-n", "GET"}, "2:POST /b 500\n3:\n", 0},
                    {{"grep", "-o", "50+"}, "500\n500\n500\n", 0},
                },
                Log);
}

TEST(TalvoToolGrep, SeveralFiles_PrefixTheirNamesAndKeepGoingPastAMissingOne) {
    writeFile("one.log", "alpha\nbeta\n");
    writeFile("two.log", "gamma\nalphabet\n");
    EXPECT_EQ(runTool({"grep", "-n", "alpha", "one.log", "none.log", "two.log"}),
              (ToolRun{"one.log:1:alpha\ntwo.log:2:alphabet\n", "talvo: none.log: No such file or directory\n", 2}));
}

TEST(TalvoToolGrep, InvalidPatternExitsTwoAndLongLinesAreReadWhole) {
    EXPECT_EQ(runTool({"grep", "[abc"}, Log), (ToolRun{"", "talvo: invalid pattern '[abc'\n", 2}));
    EXPECT_EQ(runTool({"sub", "(", "x"}, Log), (ToolRun{"", "talvo: invalid pattern '('\n", 2}));
    // Long lines and a missing final newline are read whole.
    EXPECT_EQ(runTool({"grep", "-o", "yx*$"}, "short\n" + std::string(99990, 'x') + "yxxxxxxxxx"),
              (ToolRun{"yxxxxxxxxx\n", "", 0}));
}

TEST(TalvoToolSub, FirstOrEveryMatchWithBackReferences) {
    expectCases({
                    {{"sub", "0", "1"}, "GET /a 210\nPOST /b 510\n\nGET /c 510 500\n", 0},
                    {{"sub", "-g", "0", "1"}, "GET /a 211\nPOST /b 511\n\nGET /c 511 511\n", 0},
                    // A back reference, and a backslash before anything but a digit is kept.
                    {{"sub", "(/)", "\\1\\x"}, "GET /\\xa 200\nPOST /\\xb 500\n\nGET /\\xc 500 500\n", 0},
                },
                Log);
}

TEST(TalvoToolSplit, PiecesOneALineWithoutTrailingEmptyPiece) {
    expectCases({
                    {{"split", ", *"}, "\na\n\nb\n", 0},
                    // An empty match cuts before the byte it stands on, then moves on one byte.
                    {{"split", "x*"}, "\n,\na\n,\n,\nb\n,\n", 0},
                },
                ",a,,b,\n");
}
