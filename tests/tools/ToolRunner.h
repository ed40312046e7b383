// Runs the built talvo binary from the integration tests and collects what it
// printed on standard output and standard error, and its exit status.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace talvo_tool_test {

struct ToolRun { std::string out; std::string err; int status; };

inline bool operator==(const ToolRun& a, const ToolRun& b) {
    return a.out == b.out && a.err == b.err && a.status == b.status;
}
inline std::ostream& operator<<(std::ostream& os, const ToolRun& run) {
    return os << "{out: \"" << run.out << "\", err: \"" << run.err << "\", status: " << run.status << "}";
}

// Runs the tool in the current directory, feeding `input` on standard input.
ToolRun runTool(const std::vector<std::string>& arguments, const std::string& input = "");

std::string sampleFile(const char* name);

}  // namespace talvo_tool_test
