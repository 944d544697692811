#include "CrossSectionCheck.h"

#include <SteelDesign/ErrorCode.h>
#include <SteelDesign/ResistanceVerifications.h>

#include <cmath>

namespace design {

using namespace SteelDesign;

CrossSectionOutcome evaluateCrossSection(const CrossSectionRequest& request, const SectionInitializer* classified)
{
    const VerificationControl control = request.elastic ? VerificationControl::Elastic : VerificationControl::Classify;
    CrossSectionOutcome outcome{classified ? *classified
                                           : SectionInitializer(request.section, request.steel, request.forces, control, false),
                                VerificationResults()};
    completeCrossSection(request, outcome);
    return outcome;
}

void completeCrossSection(const CrossSectionRequest& request, CrossSectionOutcome& outcome)
{
    const ResistanceVerifications verifier(outcome.results, request.section, outcome.initializer, request.gammaM0,
                                           request.forces);
    verifier.verifyAllResistance();
    outcome.gammaM0 = verifier.getGammaM0();
    outcome.allFulfilled = outcome.results.verifyAllUtilizations();

    std::uint32_t limitations = 0;
    if (outcome.initializer.getClass() == 4) limitations |= Class4;
    if (outcome.initializer.getErrorCode() == ErrorCode::NotSupported) limitations |= CrossSectionNotSupported;
    // Under torsion the shear check runs as the check of shear with torsion, which writes nothing in
    // class 3: the shear utilization is then 0 whatever the shear force.
    const SteelDesign::Forces& f = request.forces;
    const kat::Nullable<double> torsion = outcome.results.getUtilization(VerificationResults::Torsion);
    if (outcome.initializer.getClass() == 3 && torsion.hasValue() && outcome.results.isValid(torsion.value()) &&
        (f.getVy() != 0.0 || f.getVz() != 0.0))
        limitations |= ShearWithTorsionNotChecked;
    bool exceeded = false;
    for (const auto type : crossSectionSummary) {
        const kat::Nullable<double> u = outcome.results.getUtilization(type);
        if (!u.hasValue()) {
            limitations |= CrossSectionIncomplete;
        } else if (!std::isfinite(u.value())) {
            limitations |= NonFiniteUtilization;
        } else if (!outcome.results.isFulfilled(type)) {
            exceeded = true;
        }
    }
    // Error code 6 leaves utilizations uncomputed; it says why, so the generic reason is not repeated.
    if (limitations & CrossSectionNotSupported) limitations &= ~static_cast<std::uint32_t>(CrossSectionIncomplete);
    outcome.anyExceeded = exceeded;
    outcome.limitations = limitations;
    outcome.verdict = verdictOf(exceeded, limitations);
}

} // namespace design
