// talvo random: reproducible draws from the library's generators.
#include "Commands.h"
#include "ToolSupport.h"

#include <talvo/stats/TalvoRandomizer.h>

#include <cstdio>
#include <memory>

namespace talvo_tool {

const std::vector<std::string> RandomDistributions = {"uniform", "normal", "lognormal",
                                                      "exponential", "gamma", "beta"};

namespace {

// Each distribution with the defaults of its parameters, in order.
struct Distribution {
    const char* name;
    std::vector<double> defaults;
    const char* usage;
};

const Distribution Distributions[] = {
    {"uniform", {0.0, 1.0}, "uniform [LOW [HIGH]]"},
    {"normal", {0.0, 1.0}, "normal [MEAN [DEVIATION]]"},
    {"lognormal", {1.0, 2.0, 0.95}, "lognormal [MEAN [FACTOR [PROBABILITY]]]"},
    {"exponential", {1.0}, "exponential [MEAN]"},
    {"gamma", {1.0, 1.0}, "gamma [SHAPE [SCALE]]"},
    {"beta", {1.0, 1.0}, "beta [A [B]]"},
};

const Distribution* findDistribution(const std::string& name) {
    for (const Distribution& d : Distributions)
        if (name == d.name)
            return &d;
    return nullptr;
}

double drawOne(TalvoRandomizer& r, const std::string& name, const std::vector<double>& p) {
    if (name == "uniform")
        return r.uniformDraw(p[0], p[1]);
    if (name == "normal")
        return r.normalDraw(p[0], p[1]);
    if (name == "lognormal")
        return r.lognormalDraw(p[0], p[1], p[2]);
    if (name == "exponential")
        return p[0] * r.exponentialDraw();
    if (name == "gamma")
        return r.gammaDraw(p[0], p[1]);
    return r.betaDraw(p[0], p[1]);
}

}  // namespace

int runRandom(const RandomOptions& options) {
    const Distribution* distribution = findDistribution(options.distribution);
    if (!distribution) {
        reportProblem("unknown distribution '%s'", options.distribution.c_str());
        return ExitTrouble;
    }
    if (options.parameters.size() > distribution->defaults.size()) {
        reportProblem("too many parameters for %s; usage: talvo random %s", distribution->name,
                      distribution->usage);
        return ExitTrouble;
    }
    std::vector<double> parameters = distribution->defaults;
    for (std::size_t i = 0; i < options.parameters.size(); ++i)
        parameters[i] = options.parameters[i];

    std::unique_ptr<TalvoRandomizer> generator;
    if (options.shuffled)
        generator.reset(new TalvoShuffledCongruentialRandomizer(options.kind));
    else
        generator.reset(new TalvoCongruentialRandomizer(options.kind));
    if (options.seedGiven)
        generator->setSeed(options.seed);
    for (long i = 0; i < options.count; ++i)
        std::printf("%.10g\n", drawOne(*generator, options.distribution, parameters));
    return ExitSuccess;
}

}  // namespace talvo_tool
