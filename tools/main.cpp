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

void addXml(CLI::App& app, XmlCheckOptions& check, XmlFormatOptions& format, XmlGetOptions& get, Runner& run) {
    CLI::App* xml = app.add_subcommand("xml", "Check, format or query XML files");
    xml->require_subcommand(1);
    CLI::App* c = xml->add_subcommand("check", "Parse each file; print the parser's report for a bad one (exit 1)");
    c->add_option("FILE", check.files, InputsHelp);
    c->callback([&check, &run] { run = [&check] { return runXmlCheck(check); }; });

    CLI::App* f = xml->add_subcommand("format", "Parse a file and print it with the library's printer");
    f->add_option("--indent", format.indent, "Blanks per nesting level")
        ->check(CLI::Range(0, 64))
        ->capture_default_str();
    f->add_option("FILE", format.file, "Input file, \"-\" for standard input")->required();
    f->callback([&format, &run] { run = [&format] { return runXmlFormat(format); }; });

    CLI::App* g = xml->add_subcommand("get", "Print what a path selects: server/port (the text of the first "
                                             "matching node) or server@port (an attribute value); exit 1 "
                                             "when nothing matches");
    g->add_option("FILE", get.file, "Input file, \"-\" for standard input")->required();
    g->add_option("PATH", get.path, "Tags from the top separated by '/', optionally ending in @attribute; "
                                    "the root element's tag may be left out")
        ->required();
    g->callback([&get, &run] { run = [&get] { return runXmlGet(get); }; });
}

const char* const PatternHelp =
    "Pattern: . [..] [^..] ( ) | * + ? ^ $, \\N back reference, escapes \\t \\n \\r and a backslash "
    "before ( ) [ ] $ ^ . | * + \\";

void addGrep(CLI::App& app, GrepOptions& o, Runner& run) {
    CLI::App* c = app.add_subcommand("grep", "Print the lines where the pattern matches (exit 1 when none)");
    c->add_flag("-c,--count", o.count, "Print the number of selected lines");
    c->add_flag("-n,--line-number", o.lineNumbers, "Prefix lines with their number");
    c->add_flag("-o,--only-matching", o.onlyMatching, "Print each matched text on its own line");
    c->add_flag("-v,--invert-match", o.invert, "Select the lines that do not match");
    c->add_option("PATTERN", o.pattern, "Regular expression")->required();
    c->add_option("FILE", o.files, InputsHelp);
    c->footer(PatternHelp);
    c->callback([&o, &run] { run = [&o] { return runGrep(o); }; });
}

void addSub(CLI::App& app, SubOptions& o, Runner& run) {
    CLI::App* c = app.add_subcommand("sub", "Replace the first match of each line (every match with -g)");
    c->add_flag("-g,--global", o.global, "Replace every match");
    c->add_option("PATTERN", o.pattern, "Regular expression")->required();
    c->add_option("REPLACEMENT", o.replacement, "Replacement text; \\N inserts what group N captured")
        ->required();
    c->add_option("FILE", o.files, InputsHelp);
    c->footer(PatternHelp);
    c->callback([&o, &run] { run = [&o] { return runSub(o); }; });
}

void addSplit(CLI::App& app, SplitOptions& o, Runner& run) {
    CLI::App* c = app.add_subcommand("split", "Print the pieces of each line between matches, one per line");
    c->add_option("PATTERN", o.pattern, "Regular expression of the separator")->required();
    c->add_option("FILE", o.files, InputsHelp);
    c->footer(PatternHelp);
    c->callback([&o, &run] { run = [&o] { return runSplit(o); }; });
}

bool isCommand(CLI::App& app, const std::string& name) {
    for (const CLI::App* command : app.get_subcommands({}))
        if (command->get_name() == name)
            return true;
    return false;
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
    XmlCheckOptions xmlCheck;
    XmlFormatOptions xmlFormat;
    XmlGetOptions xmlGet;
    GrepOptions grep;
    SubOptions sub;
    SplitOptions split;
    StatsOptions stats;
    ChronoOptions chrono;
    RandomOptions random;
    addXml(app, xmlCheck, xmlFormat, xmlGet, run);
    addGrep(app, grep, run);
    addSub(app, sub, run);
    addSplit(app, split, run);
    addStats(app, stats, run);
    addChrono(app, chrono, run);
    addRandom(app, random, run);
    app.footer("Exit status: 0 success, 1 failed check or no match, 2 bad usage or unreadable input.");

    // Left alone, CLI11 would answer "A subcommand is required" to a misspelt one.
    if (argc > 1 && argv[1][0] != '-' && !isCommand(app, argv[1])) {
        reportProblem("unknown command '%s'", argv[1]);
        std::fprintf(stderr, "Run 'talvo --help' for the list of commands.\n");
        return ExitTrouble;
    }
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
