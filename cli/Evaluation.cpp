#include "Evaluation.h"

#include <SteelDesign/BucklingResistance.h>
#include <SteelDesign/MomentDistribution.h>
#include <SteelDesign/ResistanceVerifications.h>

#include <algorithm>
#include <cmath>

namespace cli {

using namespace SteelDesign;

CrossSectionOutcome evaluateCrossSection(const CrossSectionRequest& request)
{
    const VerificationControl control = request.elastic ? VerificationControl::Elastic : VerificationControl::Classify;
    CrossSectionOutcome outcome{SectionInitializer(request.section, request.steel, request.forces, control, false),
                                VerificationResults(), 0.0, false, false};
    const ResistanceVerifications verifier(outcome.results, request.section, outcome.initializer, request.gammaM0,
                                           request.forces);
    verifier.verifyAllResistance();
    outcome.gammaM0 = verifier.getGammaM0();
    outcome.allFulfilled = outcome.results.verifyAllUtilizations();
    outcome.verdict = outcome.allFulfilled && outcome.initializer.getErrorCode() == ErrorCode::NoError;
    return outcome;
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

MemberOutcome evaluateMember(const MemberRequest& request)
{
    const VerificationControl control = request.elastic ? VerificationControl::Elastic : VerificationControl::Classify;
    MemberOutcome outcome{
        SectionInitializer(request.section, request.steel, request.forces, control, request.rolledMethod),
        BucklingResults(), true};
    const BucklingResistance verifier(outcome.results, request.section, outcome.initializer, request.forces,
                                      request.moments, request.gammaM1, request.length, request.cTheta,
                                      request.shearPanel, request.torsionallyDeformable, request.cmFloor);
    verifier.verifyAllResistance();
    verifier.verifyShearBuckling();
    using UT = BucklingResults::UtilizationType;
    for (std::size_t t = 0; t < BucklingResults::utilizationTypeCount; ++t) {
        const auto type = static_cast<UT>(t);
        if (outcome.results.getUtilization(type).hasValue() && !outcome.results.isFulfilled(type))
            outcome.verdict = false;
    }
    const kat::Nullable<double> shear = outcome.results.getUtilizationShearBuckling();
    if (shear.hasValue() && !outcome.results.isVerified(shear.value())) outcome.verdict = false;
    return outcome;
}

} // namespace cli
