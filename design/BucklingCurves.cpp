#include "BucklingCurves.h"

#include <algorithm>
#include <cmath>

namespace design {

double imperfectionFactor(SteelDesign::BucklingCurve curve)
{
    switch (curve) {
    case SteelDesign::BucklingCurve::a0: return 0.13;
    case SteelDesign::BucklingCurve::a: return 0.21;
    case SteelDesign::BucklingCurve::b: return 0.34;
    case SteelDesign::BucklingCurve::c: return 0.49;
    case SteelDesign::BucklingCurve::d: return 0.76;
    case SteelDesign::BucklingCurve::none: break;
    }
    return 0.0;
}

double reductionFactor(double alpha, double lambda)
{
    if (lambda <= 0.2) return 1.0;
    const double phi = 0.5 * (1.0 + alpha * (lambda - 0.2) + lambda * lambda);
    return std::min(1.0, 1.0 / (phi + std::sqrt(phi * phi - lambda * lambda)));
}

double reductionFactorLT(double alpha, double lambda, double lambda0, double beta)
{
    if (lambda <= lambda0) return 1.0;
    const double phi = 0.5 * (1.0 + alpha * (lambda - lambda0) + beta * lambda * lambda);
    const double chi = 1.0 / (phi + std::sqrt(phi * phi - beta * lambda * lambda));
    return std::min({1.0, chi, 1.0 / (lambda * lambda)});
}

} // namespace design
