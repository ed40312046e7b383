#include "ToolRunner.h"
#include "support/TalvoTest.h"

#include <cstdlib>
#include <sys/wait.h>

namespace talvo_tool_test {

static std::string quoted(const std::string& argument) {
    std::string text = "'";
    for (char c : argument) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

ToolRun runTool(const std::vector<std::string>& arguments, const std::string& input) {
    talvo_test::writeFile("tool.in", input);
    std::string command = quoted(TALVO_TOOL_PATH);
    for (const std::string& argument : arguments)
        command += " " + quoted(argument);
    command += " <tool.in >tool.out 2>tool.err";
    int raw = std::system(command.c_str());
    return {talvo_test::readFile("tool.out"), talvo_test::readFile("tool.err"), WIFEXITED(raw) ? WEXITSTATUS(raw) : -1};
}

std::string sampleFile(const char* name) { return std::string(TALVO_SOURCE_DIR) + "/examples/data/" + name; }

}  // namespace talvo_tool_test
