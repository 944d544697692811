#include "InteractionCurve.h"

#include <SteelDesign/ErrorCode.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace design {

using SteelDesign::VerificationResults;

double interactionUtilization(const CrossSectionRequest& request, double N, double My)
{
    CrossSectionRequest probe = request;
    probe.forces = SteelDesign::Forces(N, My, 0.0, 0.0, 0.0, 0.0);
    const CrossSectionOutcome outcome = evaluateCrossSection(probe);
    if (outcome.initializer.getClass() == 4 || outcome.initializer.getErrorCode() == SteelDesign::ErrorCode::NotSupported)
        return -1.0;
    double largest = -1.0;
    for (const auto type : {VerificationResults::Axial, VerificationResults::Bending, VerificationResults::AxialBending}) {
        const kat::Nullable<double> u = outcome.results.getUtilization(type);
        if (!u.hasValue()) continue;
        if (!std::isfinite(u.value())) return -1.0;
        largest = std::max(largest, u.value());
    }
    return largest;
}

std::vector<InteractionPoint> interactionCurveNMy(const CrossSectionRequest& request, int rays)
{
    std::vector<InteractionPoint> curve;
    if (!request.section || !request.steel) return curve;
    rays = std::max(rays, 8);
    // The rays are spread evenly in the plane scaled by the plastic resistances, so that the points
    // lie evenly along the curve whatever the proportions of the section.
    SteelDesign::SectionInitializer init(request.section, request.steel, request.forces,
                                         SteelDesign::VerificationControl::Elastic, false);
    const double fy = init.getFy();
    const double nScale = request.section->getA() * fy;
    const double mScale = std::max(request.section->getWply(), request.section->getWy()) * fy;
    if (!(nScale > 0.0) || !(mScale > 0.0)) return curve;
    curve.reserve(static_cast<std::size_t>(rays));
    for (int i = 0; i < rays; ++i) {
        const double angle = 2.0 * std::numbers::pi * i / rays;
        // The rays along the axes carry exactly no N or no My (sin(pi) is 1.2e-16, not 0).
        auto exact = [](double v) { return std::fabs(v) < 1e-12 ? 0.0 : v; };
        const double dn = nScale * exact(std::sin(angle)), dm = mScale * exact(std::cos(angle));
        auto u = [&](double s) { return interactionUtilization(request, s * dn, s * dm); };
        // A bracket [lo, hi] with u(lo) <= 1 < u(hi), from the scale 1 (the plastic resistances).
        double lo = 0.0, hi = 1.0;
        InteractionPoint& point = curve.emplace_back();
        double uHi = u(hi);
        for (int k = 0; k < 40 && uHi >= 0.0 && uHi <= 1.0; ++k) {
            lo = hi;
            hi *= 2.0;
            uHi = u(hi);
        }
        if (!(uHi > 1.0)) continue;
        bool valid = true;
        while (valid && hi - lo > 2e-5 * hi) {
            const double mid = 0.5 * (lo + hi);
            const double uMid = u(mid);
            valid = uMid >= 0.0;
            (uMid > 1.0 ? hi : lo) = mid;
        }
        if (!valid) continue;
        const double s = 0.5 * (lo + hi);
        point = {s * dn, s * dm, true};
    }
    return curve;
}

} // namespace design
