/// @file
/// TalvoMath: mathematical constants and the gamma-function helpers.
#pragma once

#include <talvo/foundation/TalvoExport.h>

/// Mathematical constants and gamma-function helpers, all static.
class TALVO_API TalvoMath {
public:
    static double _PI;      ///< 3.141592653589793
    static double _E;       ///< 2.718281828459045
    static double _DEGREE;  ///< pi / 180, radians per degree

    /// Assigns nothing: the class has no instance state.
    TalvoMath& operator=(const TalvoMath&) { return *this; }

    /// The current value of _PI.
    static double pi();
    /// The current value of _E.
    static double e();
    /// The current value of _DEGREE: radians per degree.
    static double degree();

    /// Stirling-style approximation of ln(gamma(x)):
    /// 0.5 * (ln(2 pi) - ln x) + x * (ln(x + 1 / (12x + 1/(10x))) - 1).
    /// The inner term adds 1/(10x) on purpose, so gammaln(1) is about -0.00165.
    /// No argument checking.
    static double gammaln(double x);
    /// exp(gammaln(x)). No argument checking.
    static double gamma(double x);
    /// Density of the gamma distribution with the given shape and scale at x:
    /// x^(shape-1) e^(-x/scale) / (scale^shape gamma(shape)). No argument checking.
    static double gammaDensity(double x, double shape, double scale);
};
