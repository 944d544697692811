#include "Verdict.h"

namespace design {

const char* toString(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Fulfilled: return "fulfilled";
    case Verdict::NotFulfilled: return "not fulfilled";
    case Verdict::NotVerified: return "not verified";
    }
    return "not verified";
}

int exitCodeOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Fulfilled: return 0;
    case Verdict::NotFulfilled: return 1;
    case Verdict::NotVerified: return 3;
    }
    return 3;
}

const char* describe(Limitation limitation)
{
    switch (limitation) {
    case NoLimitation: return "";
    case Class4:
        return "class 4 needs effective section properties (EN 1993-1-5 4.3), the library's resistances are "
               "those of the gross section (the EN values with effective properties are among the departures)";
    case CrossSectionNotSupported:
        return "the cross-section check does not cover this section kind under an axial force (error code 6)";
    case CrossSectionIncomplete:
        return "the cross-section check computed no utilization for some of its checks";
    case TensionWithBending:
        return "tension with bending is not covered by the member check (check lateral-torsional buckling "
               "under the moment alone)";
    case BendingAboutZOnly:
        return "bending about z without bending about y is not covered by the member check";
    case BiaxialBendingWithoutCompression:
        return "bending about y and z without compression: the member check covers lateral-torsional "
               "buckling about y only, not the interaction with Mz";
    case InteractionNeedsRolledMethod:
        return "(6.61) needs chiLT,mod of the method for rolled and equivalent welded sections (6.3.2.3), but the "
               "general method (6.3.2.2) was chosen";
    case NonFiniteUtilization: return "a utilization is not a finite number";
    case NumericalMcrNotFound:
        return "the numerical critical moment was not found (a mechanism, or no moment that buckles the member), "
               "so the library's own Mcr was used";
    case ShearWithTorsionNotChecked:
        return "shear with torsion (6.2.7(9)) is checked for classes 1 and 2 only: in class 3 the shear "
               "utilization reads 0 without a check";
    case Class4NotCovered:
        return "class 4: the effective section of this section kind is not computed (EN 1993-1-5 4.3 is applied to I "
               "sections, channels, tees, hollow sections and boxes, and a circular hollow section needs EN 1993-1-6)";
    case LateralTorsionalNotCovered:
        return "lateral-torsional buckling is not computed for this member: an unequal angle bent about u (its Wagner "
               "term) or loaded above its shear centre, or a Z section, needs its critical moment given, and a tee or an "
               "I section with unequal flanges whose critical moment is not found cannot take the closed form (it "
               "leaves out the Wagner term)";
    case TorsionalFlexuralNotChecked:
        return "torsional and torsional-flexural buckling (6.3.1.4) is not checked: the member has no torsional "
               "buckling length (LLT or Lcr,z)";
    case NonPrincipalBending:
        return "bending of a Z section about axes parallel to its flanges, which are not its principal axes: the "
               "checks in bending need the principal axes, which they do not use";
    case AngleInteractionNotCovered:
        return "compression with bending of an angle: the interaction (6.61), (6.62) about the principal axes u and v "
               "is not computed";
    }
    return "";
}

std::string describeAll(std::uint32_t limitations)
{
    std::string out;
    for (std::uint32_t bit = 0; bit < limitationCount; ++bit) {
        const auto flag = static_cast<Limitation>(1u << bit);
        if ((limitations & flag) == 0) continue;
        if (!out.empty()) out += "; ";
        out += describe(flag);
    }
    return out;
}

} // namespace design
