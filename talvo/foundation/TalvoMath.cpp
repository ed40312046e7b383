#include <talvo/foundation/TalvoMath.h>

#include <cmath>

double TalvoMath::_PI = 3.141592653589793;
double TalvoMath::_E = 2.718281828459045;
double TalvoMath::_DEGREE = 0.017453292519943295;

double TalvoMath::pi() { return _PI; }
double TalvoMath::e() { return _E; }
double TalvoMath::degree() { return _DEGREE; }

double TalvoMath::gammaln(double x) {
    // Evaluated in this order so that results are bit-identical everywhere.
    double t = std::log(x + 1.0 / (1.0 / (10.0 * x) + 12.0 * x));
    double r = (t - 1.0) * x;
    return (std::log(2.0 * _PI) - std::log(x)) * 0.5 + r;
}

double TalvoMath::gamma(double x) {
    return std::exp(gammaln(x));
}

double TalvoMath::gammaDensity(double x, double shape, double scale) {
    return std::pow(x, shape - 1.0) * std::exp(-x / scale) /
           (std::pow(scale, shape) * std::exp(gammaln(shape)));
}
