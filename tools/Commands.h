// The subcommands of the talvo tool. Each takes its parsed options and
// returns the process exit status (see ToolSupport.h).
#pragma once

#include <string>
#include <vector>

namespace talvo_tool {

struct StatsOptions {
    int quantiles = 4;
    int bins = 10;
    bool histogram = false;
    std::string svg;
    std::vector<std::string> files;
};
int runStats(const StatsOptions& options);

struct ChronoOptions {
    int points = 20;
    std::string svg;
    std::vector<std::string> files;
};
int runChrono(const ChronoOptions& options);

struct RandomOptions {
    int kind = 1;
    bool shuffled = false;
    bool seedGiven = false;
    int seed = 0;
    long count = 10;
    std::string distribution;
    std::vector<double> parameters;
};
// The distributions `talvo random` draws from.
extern const std::vector<std::string> RandomDistributions;
int runRandom(const RandomOptions& options);

}  // namespace talvo_tool

namespace talvo_tool {

struct XmlCheckOptions {
    std::vector<std::string> files;
};
int runXmlCheck(const XmlCheckOptions& options);

struct XmlFormatOptions {
    int indent = 2;
    std::string file;
};
int runXmlFormat(const XmlFormatOptions& options);

struct XmlGetOptions {
    std::string file;
    std::string path;
};
int runXmlGet(const XmlGetOptions& options);

struct GrepOptions {
    bool count = false;
    bool lineNumbers = false;
    bool onlyMatching = false;
    bool invert = false;
    std::string pattern;
    std::vector<std::string> files;
};
int runGrep(const GrepOptions& options);

struct SubOptions {
    bool global = false;
    std::string pattern;
    std::string replacement;
    std::vector<std::string> files;
};
int runSub(const SubOptions& options);

struct SplitOptions {
    std::string pattern;
    std::vector<std::string> files;
};
int runSplit(const SplitOptions& options);

}  // namespace talvo_tool
