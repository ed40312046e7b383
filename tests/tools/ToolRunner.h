// Runs the built talvo binary from the integration tests and collects what it
// printed on standard output and standard error, and its exit status.
#pragma once

#include <string>
#include <vector>

namespace talvo_tool_test {

struct ToolRun {
    std::string out;
    std::string err;
    int status;
};

// Runs the tool with `arguments` in the current (scratch) directory, feeding
// `input` on standard input.
ToolRun runTool(const std::vector<std::string>& arguments, const std::string& input = "");

// The path of a file of examples/data.
std::string sampleFile(const char* name);

// Parses `path` with the library's XML parser: 0 when it reads back, with the
// tag of the first root and the number of its node children.
struct XmlReadBack {
    int result;
    std::string rootTag;
    int nodeChildren;
};
XmlReadBack readXmlBack(const char* path);

}  // namespace talvo_tool_test
