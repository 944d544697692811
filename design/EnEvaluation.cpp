#include "EnEvaluation.h"

#include <KaStandard.h>
#include <SDBSection.h>

#include <cmath>

namespace design {

namespace {

bool sameForces(const SteelDesign::Forces& a, const SteelDesign::Forces& b)
{
    return a.getN() == b.getN() && a.getMy() == b.getMy() && a.getMz() == b.getMz() && a.getMt() == b.getMt() &&
           a.getVy() == b.getVy() && a.getVz() == b.getVz();
}

bool bentAboutNonPrincipalAxes(const CrossSectionRequest& request)
{
    if (!request.section) return false;
    const SDBSectionType* type = request.section->getType();
    if (!type) return false;
    const std::string& key = type->getKey();
    // Angles are checked in their principal axes (the moments are about u and v); Z sections are not.
    const bool nonPrincipal = key == SDBKey::Z || key == SDBKey::WZ;
    return nonPrincipal && (request.forces.getMy() != 0.0 || request.forces.getMz() != 0.0);
}

} // namespace

double resolveGammaM0(double requested)
{
    if (requested > 1e-6) return requested;
    const KaStandard* standard = KaStandard::get();
    return Standard::Coefficients::get()->getGammaA(standard->getMode(), standard->getSituation());
}

Verdict memberVerdict(const EnMember& member)
{
    bool exceeded = false;
    std::uint32_t limitations = member.limitations;
    for (const kat::Nullable<double>& u : member.utilization) {
        if (!u.hasValue()) continue;
        if (std::isnan(u.value()) || u.value() < 0.0) limitations |= NonFiniteUtilization;
        else if (enExceeds(u.value())) exceeded = true;
    }
    return verdictOf(exceeded, limitations);
}

void evaluateEn(const CrossSectionRequest& cross, double gammaM0, const MemberRequest* member, double numericalMcr,
                EnEvaluation& out, EnTraces* traces)
{
    evaluateEnCrossSection(cross, gammaM0, out.cross, traces ? &traces->crossSection : nullptr);
    out.sectionClass = out.cross.sectionClass;
    for (std::size_t i = 0; i < 7; ++i) out.utilizations[i] = out.cross.utilization[i];
    std::uint32_t limitations = out.cross.limitations;
    // A Z section bent about the database's axes (parallel to its flanges): those are not principal axes,
    // so no value in bending is given.
    if (bentAboutNonPrincipalAxes(cross)) {
        limitations |= NonPrincipalBending;
        for (std::size_t i : {2u, 4u, 5u, 6u}) out.utilizations[i] = kat::Nullable<double>();
    }
    // Every cross-section slot is computed or has a reason: a slot left empty without one is never
    // taken as fulfilled.
    if (limitations == 0)
        for (std::size_t i = 0; i < 7; ++i)
            if (!out.utilizations[i].hasValue()) limitations |= CrossSectionIncomplete;
    out.memberChecked = member != nullptr;
    if (member) {
        // The member checks take the class and the effective properties under the member's own forces.
        if (member->section == cross.section && member->steel == cross.steel && member->elastic == cross.elastic &&
            sameForces(member->forces, cross.forces)) {
            evaluateEnMember(*member, out.cross, numericalMcr, out.member, traces ? &traces->member : nullptr);
        } else {
            CrossSectionRequest own;
            own.section = member->section;
            own.steel = member->steel;
            own.forces = member->forces;
            own.gammaM0 = cross.gammaM0;
            own.elastic = member->elastic;
            EnCrossSection memberCross;
            evaluateEnCrossSection(own, gammaM0, memberCross);
            evaluateEnMember(*member, memberCross, numericalMcr, out.member, traces ? &traces->member : nullptr);
        }
        for (std::size_t i = 0; i < 4; ++i) out.utilizations[7 + i] = out.member.utilization[i];
        limitations |= out.member.limitations;
    } else {
        out.member = EnMember{};
        for (std::size_t i = 7; i < 11; ++i) out.utilizations[i] = kat::Nullable<double>();
    }

    bool exceeded = false;
    out.governing = -1;
    out.governingUtilization = 0.0;
    for (std::size_t i = 0; i < out.utilizations.size(); ++i) {
        const kat::Nullable<double>& u = out.utilizations[i];
        if (!u.hasValue()) continue;
        const double v = u.value();
        // +inf: the resistance is used up by another action (the shear area by torsion, the section by N
        // under shear): the check fails. A value that is not a number says nothing: not verified.
        if (std::isnan(v) || v < 0.0) {
            limitations |= NonFiniteUtilization;
            continue;
        }
        if (enExceeds(v)) exceeded = true;
        if (out.governing < 0 || v > out.governingUtilization) {
            out.governing = static_cast<int>(i);
            out.governingUtilization = v;
        }
    }
    out.limitations = limitations;
    out.anyExceeded = exceeded;
    out.verdict = verdictOf(exceeded, limitations);
}

} // namespace design
