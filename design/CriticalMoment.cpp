#include "CriticalMoment.h"

#include <algorithm>
#include <cmath>

namespace design {

double c1StraightLine(double psi)
{
    const double p = std::clamp(psi, -1.0, 1.0);
    return std::min(1.88 - 1.40 * p + 0.52 * p * p, 2.70);
}

LateralTorsionalReduction lateralTorsionalReduction(double lambdaLT, double alphaLT, bool rolled, double lambdaLT0,
                                                    double beta, double kc)
{
    LateralTorsionalReduction r;
    const double l2 = lambdaLT * lambdaLT;
    if (!rolled) {
        r.phi = 0.5 * (1.0 + alphaLT * (lambdaLT - 0.2) + l2);
        const double D = r.phi + std::sqrt(r.phi * r.phi - l2);
        r.chiLT = D > 0.0 ? std::min(1.0 / D, 1.0) : 0.0;
        r.chiLTmod = r.chiLT;
        return r;
    }
    r.phi = 0.5 * (1.0 + alphaLT * (lambdaLT - lambdaLT0) + beta * l2);
    const double D = r.phi + std::sqrt(r.phi * r.phi - beta * l2);
    const double limit = l2 > 1.0 ? 1.0 / l2 : 1.0;
    r.chiLT = D > 0.0 ? std::min(1.0 / D, limit) : 0.0;
    const double x = lambdaLT - 0.8;
    r.f = std::min(1.0 - 0.5 * (1.0 - kc) * (1.0 - 2.0 * x * x), 1.0);
    r.chiLTmod = r.f > 0.0 ? std::min(r.chiLT / r.f, limit) : r.chiLT;
    return r;
}

double flexuralReduction(double lambda, double alpha)
{
    const double phi = 0.5 * (1.0 + alpha * (lambda - 0.2) + lambda * lambda);
    const double D = phi + std::sqrt(phi * phi - lambda * lambda);
    return D > 0.0 ? std::min(1.0 / D, 1.0) : 0.0;
}

} // namespace design
