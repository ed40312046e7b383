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
