#include "EquivalentMomentFactor.h"

#include <algorithm>
#include <cmath>

namespace design {

bool isStraightLine(double M1, double Mm, double M2)
{
    const double scale = std::max({std::fabs(M1), std::fabs(Mm), std::fabs(M2), 1e-9});
    return std::fabs(Mm - 0.5 * (M1 + M2)) <= 1e-6 * scale;
}

double equivalentMomentFactor(double M1, double Mm, double M2, SteelDesign::MomentDiagram diagram)
{
    const bool uniformLoad = diagram == SteelDesign::MomentDiagram::Parabolic;
    // Mh: the end moment of the larger magnitude; psi: the other one over it (1 when both are zero).
    const double Mh = std::fabs(M1) >= std::fabs(M2) ? M1 : M2;
    const double other = std::fabs(M1) >= std::fabs(M2) ? M2 : M1;
    const double psi = Mh != 0.0 ? other / Mh : 1.0;

    if (!uniformLoad && isStraightLine(M1, Mm, M2)) {
        if (Mh == 0.0) return 1.0;  // no moment at all
        return std::max(0.4, 0.6 + 0.4 * psi);
    }
    const double Ms = Mm;
    if (std::fabs(Mh) >= std::fabs(Ms) && Mh != 0.0) {
        const double as = Ms / Mh;
        if (as >= 0.0) return std::max(0.4, 0.2 + 0.8 * as);
        if (psi >= 0.0) return std::max(0.4, uniformLoad ? 0.1 - 0.8 * as : -0.8 * as);
        return std::max(0.4, uniformLoad ? 0.1 * (1.0 - psi) - 0.8 * as : 0.2 * (-psi) - 0.8 * as);
    }
    const double ah = Ms != 0.0 ? Mh / Ms : 0.0;
    const double factor = ah >= 0.0 || psi >= 0.0 ? ah : ah * (1.0 + 2.0 * psi);
    return uniformLoad ? 0.95 + 0.05 * factor : 0.90 + 0.10 * factor;
}

} // namespace design
