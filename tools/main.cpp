// talvo: the command-line tool. Parses the command line with CLI11 and hands
// the chosen subcommand its options.
#include "Commands.h"
#include "ToolSupport.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <functional>

using namespace talvo_tool;

namespace {

using Runner = std::function<int()>;

const char* const InputsHelp = "Input files; standard input when none or \"-\"";

void addStats(CLI::App& app, StatsOptions& o, Runner& run) {
    CLI::App* c = app.add_subcommand(
        "stats", "Count, mean, standard deviation, 95 % confidence slack, extremes and estimated "
                 "quantiles of blank- or line-separated numbers, in bounded memory");
    c->add_option("--quantiles", o.quantiles, "Number of equally spaced quantiles to print")
        ->check(CLI::Range(1, 1000000))
        ->capture_default_str();
    c->add_option("--bins", o.bins, "Number of histogram bins")->check(CLI::Range(1, 10000))->capture_default_str();
    c->add_flag("--histogram", o.histogram, "Draw the bins (of equal weight) as text bars");
    c->add_option("--svg", o.svg, "Write the histogram as an SVG picture to this file");
    c->add_option("FILE", o.files, InputsHelp);
    c->footer("A '#' starts a comment. Malformed numbers are reported with their line number and skipped.");
    c->callback([&o, &run] { run = [&o] { return runStats(o); }; });
}

void addChrono(CLI::App& app, ChronoOptions& o, Runner& run) {
    CLI::App* c = app.add_subcommand(
        "chrono", "Reduce a history of \"x y\" lines (x not decreasing) to N points and print, per point, "
                  "x, width, count, mean, minimum and maximum");
    c->add_option("--points", o.points, "Number of points to keep")
        ->check(CLI::Range(1, 1000000))
        ->capture_default_str();
    c->add_option("--svg", o.svg, "Draw the mean with a minimum-maximum band as an SVG picture");
    c->add_option("FILE", o.files, InputsHelp);
    c->footer("A '#' starts a comment. Malformed lines are reported with their line number and skipped.");
    c->callback([&o, &run] { run = [&o] { return runChrono(o); }; });
}

void addRandom(CLI::App& app, RandomOptions& o, Runner& run) {
    CLI::App* c = app.add_subcommand("random", "Print draws of a distribution");
    c->add_option("--kind", o.kind, "Multiplier of the generator: 1 (16807), 2 (48271) or 3 (69621)")
        ->check(CLI::Range(1, 3))
        ->capture_default_str();
    c->add_flag("--shuffled", o.shuffled, "Use the shuffled generator");
    CLI::Option* seed = c->add_option("--seed", o.seed, "Seed (default 12345)");
    c->add_option("--count", o.count, "Number of draws")->check(CLI::Range(0L, 1000000000L))->capture_default_str();
    c->add_option("DIST", o.distribution, "uniform [LOW HIGH], normal [MEAN DEVIATION], "
                                          "lognormal [MEAN FACTOR PROBABILITY], exponential [MEAN], "
                                          "gamma [SHAPE SCALE] or beta [A B]")
        ->required()
        ->check(CLI::IsMember(RandomDistributions));
    c->add_option("PARAMS", o.parameters, "Parameters of the distribution (defaults 0 1, 0 1, 1 2 0.95, 1, 1 1, 1 1)");
    c->callback([&o, &run, seed] {
        o.seedGiven = seed->count() > 0;
        run = [&o] { return runRandom(o); };
    });
}

// CLI11 reports help and version requests as exceptions too; everything
// else is bad usage: one "talvo: " line and status 2.
int reportParseError(CLI::App& app, const CLI::ParseError& e) {
    if (e.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
        return app.exit(e);
    reportProblem("%s", e.what());
    std::fprintf(stderr, "Run 'talvo --help' or 'talvo COMMAND --help' for usage.\n");
    return ExitTrouble;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"talvo: statistics, XML and regular expressions of the talvo library on files "
                 "and standard input",
                 "talvo"};
    app.set_version_flag("--version", "talvo " TALVO_VERSION);
    app.require_subcommand(1);

    Runner run;
    StatsOptions stats;
    ChronoOptions chrono;
    RandomOptions random;
    addStats(app, stats, run);
    addChrono(app, chrono, run);
    addRandom(app, random, run);
    app.footer("Exit status: 0 success, 1 failed check or no match, 2 bad usage or unreadable input.");

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        return reportParseError(app, e);
    }
    int status = run ? run() : ExitTrouble;
    if (std::fflush(stdout) != 0 && status == ExitSuccess) {
        reportProblem("cannot write the results");
        status = ExitTrouble;
    }
    return status;
}
