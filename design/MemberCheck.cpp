#include "MemberCheck.h"

#include "CriticalMomentSolver.h"

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

const char* toString(McrMethod method) { return method == McrMethod::Numerical ? "numerical" : "tables"; }

double numericalCriticalMoment(const MemberRequest& request, const SectionInitializer& initializer)
{
    const MomentDistribution& m = request.moments;
    const double L = request.lengths.lateralTorsional;
    const double M1 = m.getMomentWert(Axis::y, 0), Mm = m.getMomentWert(Axis::y, 1), M2 = m.getMomentWert(Axis::y, 2);
    if (!(L > 0.0) || (M1 == 0.0 && Mm == 0.0 && M2 == 0.0)) return 0.0;
    const CriticalMomentResult r =
        criticalMoment(criticalMomentInput(request, mcrSection(*request.section), initializer.getEs(), initializer.getG()));
    return r.ok ? r.mcr : 0.0;
}

CriticalMomentInput criticalMomentInput(const MemberRequest& request, const McrSection& section, double E, double G)
{
    const MomentDistribution& m = request.moments;
    const double L = request.lengths.lateralTorsional;
    const double M1 = m.getMomentWert(Axis::y, 0), Mm = m.getMomentWert(Axis::y, 1), M2 = m.getMomentWert(Axis::y, 2);
    CriticalMomentInput in;
    in.E = E;
    in.G = G;
    in.section = section;
    in.length = L;
    const bool parabolic = m.getMomentDiagram(Axis::y) == MomentDiagram::Parabolic;
    in.moments = McrMomentDiagram::threeValues(
        L, M1, Mm, M2, parabolic ? McrMomentDiagram::Shape::Parabolic : McrMomentDiagram::Shape::Polygonal);
    // The transverse load that the diagram implies, at the application point: a uniform load under a
    // parabola, a point load at mid-length under two straight lines.
    const ApplicationPoint point = m.getApplicationPoint();
    if (point == ApplicationPoint::Top || point == ApplicationPoint::Bottom) {
        const McrLevel level{point == ApplicationPoint::Top ? McrHeight::TopFlange : McrHeight::BottomFlange, 0.0};
        const double d = Mm - 0.5 * (M1 + M2);
        if (parabolic) {
            in.q = 8.0 * d / (L * L);
            in.qLevel = level;
        } else if (d != 0.0) {
            in.pointLoads.push_back({0.5 * L, 4.0 * d / L, level});
        }
    }
    in.cTheta = request.cTheta;
    in.withC1 = false;
    in.withShape = false;
    return in;
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

MemberOutcome evaluateMember(const MemberRequest& request, const SectionInitializer* classified)
{
    const VerificationControl control = request.elastic ? VerificationControl::Elastic : VerificationControl::Classify;
    const bool rolled = usesRolledMethod(request.method, *request.section);
    MemberOutcome outcome{classified ? *classified
                                     : SectionInitializer(request.section, request.steel, request.forces, control, rolled),
                          BucklingResults()};
    completeMember(request, outcome);
    return outcome;
}

void completeMember(const MemberRequest& request, MemberOutcome& outcome)
{
    const bool rolled = usesRolledMethod(request.method, *request.section);
    // The mode RolledLTB prescribes 6.3.2.3 whatever the initializer's option says.
    outcome.rolledMethod = rolled || KaStandard::get()->getMode() == Standard::Mode::RolledLTB;
    // The numerical critical moment enters the library as a given Mcr, so every later step is the library's.
    bool mcrNotFound = false;
    const MomentDistribution* moments = &request.moments;
    MomentDistribution withMcr;
    if (request.mcrMethod == McrMethod::Numerical && std::fabs(request.moments.getMcr()) < forceTolerance &&
        std::fabs(request.forces.getMy()) >= forceTolerance) {
        outcome.numericalMcr = numericalCriticalMoment(request, outcome.initializer);
        if (outcome.numericalMcr > 0.0) {
            const MomentDistribution& m = request.moments;
            withMcr = MomentDistribution(m.getMomentWerte(Axis::y), m.getMomentDiagram(Axis::y), m.getMomentWerte(Axis::z),
                                         m.getMomentDiagram(Axis::z), m.getMaxMomentValue(), m.getApplicationPoint(),
                                         outcome.numericalMcr);
            moments = &withMcr;
        } else {
            mcrNotFound = true;
        }
    }
    const BucklingResistance verifier(outcome.results, request.section, outcome.initializer, request.forces,
                                      *moments, request.gammaM1, request.lengths, request.cTheta,
                                      request.shearPanel, request.torsionallyDeformable, request.cmFloor);
    verifier.verifyAllResistance();
    verifier.verifyShearBuckling();

    // The method for rolled sections may also come from the standard mode (RolledLTB): what counts is
    // whether chiLT,mod was computed.
    const bool interactionRan = outcome.results.getUtilization(BucklingResults::UtilizationType::CompressionBendingAxisY).hasValue();
    std::uint32_t limitations =
        memberScopeLimitations(request.forces, outcome.initializer.getClass(),
                               !interactionRan || outcome.results.getChiLTmod().hasValue());

    if (mcrNotFound) limitations |= NumericalMcrNotFound;
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
}

} // namespace design
