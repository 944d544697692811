#include "MemberCheck.h"

#include <KaStandard.h>
#include <SteelDesign/BucklingResistance.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace design {

using namespace SteelDesign;

namespace {

// The dispatcher's threshold: a force or moment below it counts as zero.
constexpr double forceTolerance = 1e-6;

} // namespace

const char* toString(LateralTorsionalMethod method)
{
    switch (method) {
    case LateralTorsionalMethod::Automatic: return "automatic";
    case LateralTorsionalMethod::Rolled: return "rolled (6.3.2.3)";
    case LateralTorsionalMethod::General: return "general (6.3.2.2)";
    }
    return "automatic";
}

bool usesRolledMethod(LateralTorsionalMethod method, const SDBSection& section)
{
    switch (method) {
    case LateralTorsionalMethod::Rolled: return true;
    case LateralTorsionalMethod::General: return false;
    case LateralTorsionalMethod::Automatic: break;
    }
    const SDBSectionType* type = section.getType();
    return type && type->getKey() == SDBKey::I;
}

MomentDistribution makeMoments(const std::array<double, 3>& momentsY, MomentDiagram diagramY,
                               const std::array<double, 3>& momentsZ, MomentDiagram diagramZ,
                               std::optional<double> maxMoment, ApplicationPoint loadPoint, double mcr)
{
    double largest = 0.0;
    for (double m : momentsY) largest = std::max(largest, std::fabs(m));
    return MomentDistribution(std::vector<double>(momentsY.begin(), momentsY.end()), diagramY,
                              std::vector<double>(momentsZ.begin(), momentsZ.end()), diagramZ,
                              maxMoment.value_or(largest), loadPoint, mcr);
}

std::uint32_t memberScopeLimitations(const Forces& forces, int sectionClass, bool rolledMethod)
{
    const double N = forces.getN();
    const bool compression = N < -forceTolerance;
    const bool tension = N > forceTolerance;
    const bool bendingY = std::fabs(forces.getMy()) >= forceTolerance;
    const bool bendingZ = std::fabs(forces.getMz()) >= forceTolerance;
    std::uint32_t limitations = 0;
    if (sectionClass == 4) limitations |= Class4;
    if (tension && (bendingY || bendingZ)) limitations |= TensionWithBending;
    else if (bendingZ && !bendingY) limitations |= BendingAboutZOnly;
    else if (bendingZ && bendingY && !compression) limitations |= BiaxialBendingWithoutCompression;
    if (compression && bendingY && !rolledMethod) limitations |= InteractionNeedsRolledMethod;
    return limitations;
}

MemberOutcome evaluateMember(const MemberRequest& request)
{
    const VerificationControl control = request.elastic ? VerificationControl::Elastic : VerificationControl::Classify;
    const bool rolled = usesRolledMethod(request.method, *request.section);
    MemberOutcome outcome{SectionInitializer(request.section, request.steel, request.forces, control, rolled),
                          BucklingResults()};
    // The mode RolledLTB prescribes 6.3.2.3 whatever the initializer's option says.
    outcome.rolledMethod = rolled || KaStandard::get()->getMode() == Standard::Mode::RolledLTB;
    const BucklingResistance verifier(outcome.results, request.section, outcome.initializer, request.forces,
                                      request.moments, request.gammaM1, request.lengths, request.cTheta,
                                      request.shearPanel, request.torsionallyDeformable, request.cmFloor);
    verifier.verifyAllResistance();
    verifier.verifyShearBuckling();

    // The method for rolled sections may also come from the standard mode (RolledLTB): what counts is
    // whether chiLT,mod was computed.
    const bool interactionRan = outcome.results.getUtilization(BucklingResults::UtilizationType::CompressionBendingAxisY).hasValue();
    std::uint32_t limitations =
        memberScopeLimitations(request.forces, outcome.initializer.getClass(),
                               !interactionRan || outcome.results.getChiLTmod().hasValue());

    using UT = BucklingResults::UtilizationType;
    bool exceeded = false, any = false;
    auto consider = [&](double u, bool isOf61) {
        any = true;
        if (!std::isfinite(u)) {
            if (!(isOf61 && (limitations & InteractionNeedsRolledMethod))) limitations |= NonFiniteUtilization;
        } else if (!outcome.results.isVerified(u)) {
            exceeded = true;
        }
    };
    for (std::size_t t = 0; t < BucklingResults::utilizationTypeCount; ++t) {
        const auto type = static_cast<UT>(t);
        const kat::Nullable<double> u = outcome.results.getUtilization(type);
        if (u.hasValue())
            consider(u.value(), type == UT::CompressionBendingAxisY || type == UT::CompressionBending);
    }
    if (const kat::Nullable<double> shear = outcome.results.getUtilizationShearBuckling()) consider(shear.value(), false);

    outcome.anyComputed = any;
    outcome.anyExceeded = exceeded;
    outcome.limitations = limitations;
    outcome.verdict = verdictOf(exceeded, limitations);
    return outcome;
}

} // namespace design
