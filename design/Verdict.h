#pragma once

// The verdict of a design check, and why a check could not be verified.
//
// A check is "fulfilled" only when every check it consists of ran and none exceeds 1.0; "not fulfilled"
// when a check that ran exceeds 1.0; "not verified" when no check failed but a part of the verification
// did not run or cannot be trusted (the Limitation flags say which part and why). A verdict never reads
// "fulfilled" for a check that did not run.

#include <cstdint>
#include <string>

namespace design {

enum class Verdict { Fulfilled, NotFulfilled, NotVerified };

// "fulfilled", "not fulfilled", "not verified".
const char* toString(Verdict verdict);

// Exit code of the command for a verdict: 0 fulfilled, 1 not fulfilled, 3 not verified.
int exitCodeOf(Verdict verdict);

// What kept a check from being verified, as bit flags (a result holds no text, so a check allocates
// nothing for them).
enum Limitation : std::uint32_t {
    NoLimitation = 0,
    // Classification gave class 4: the resistances need effective section properties (EN 1993-1-5 4.3).
    Class4 = 1u << 0,
    // The cross-section check reported error code 6: it does not cover the section kind under these
    // actions (hollow sections under an axial force).
    CrossSectionNotSupported = 1u << 1,
    // The cross-section check left one of its summary utilizations uncomputed.
    CrossSectionIncomplete = 1u << 2,
    // The member check does not cover tension with bending.
    TensionWithBending = 1u << 3,
    // The member check does not cover bending about z without bending about y.
    BendingAboutZOnly = 1u << 4,
    // Bending about y and z without compression: the member check covers the y part only.
    BiaxialBendingWithoutCompression = 1u << 5,
    // Compression and bending with lateral-torsional buckling by the general case (6.3.2.2): (6.61)
    // needs chiLT,mod of the method for rolled and equivalent welded sections (6.3.2.3).
    InteractionNeedsRolledMethod = 1u << 6,
    // A utilization that is not a number or infinite for another reason.
    NonFiniteUtilization = 1u << 7,
    // The numerical critical moment was asked for but not found; the library's tables were used.
    NumericalMcrNotFound = 1u << 8,
    // Shear with torsion in class 3: the cross-section check verifies shear with torsion (6.2.7(9)) for
    // classes 1 and 2 only and records the shear utilization as 0.
    ShearWithTorsionNotChecked = 1u << 9,
    // EN 1993-1-1 evaluation: class 4 of a section kind whose effective section is outside our scope
    // (circular hollow sections need EN 1993-1-6; solid and cold-formed kinds without plates).
    Class4NotCovered = 1u << 10,
    // EN 1993-1-1 evaluation: lateral-torsional buckling whose critical moment is outside our scope
    // (an unequal angle bent about u, or with its load above the shear centre; Z sections: bending about
    // axes that are not principal; a tee or an unequal-flange I whose critical moment is not found).
    LateralTorsionalNotCovered = 1u << 11,
    // EN 1993-1-1 evaluation: torsional and torsional-flexural buckling (6.3.1.4) of a member in
    // compression is not checked: the member has no torsional buckling length.
    TorsionalFlexuralNotChecked = 1u << 12,
    // EN 1993-1-1 evaluation: bending of a Z section, whose y and z are not its principal axes: the
    // stresses and resistances in bending need the principal axes.
    NonPrincipalBending = 1u << 13,
    // EN 1993-1-1 evaluation: compression with bending of an angle: the interaction (6.61), (6.62) in the
    // principal axes is outside our scope.
    AngleInteractionNotCovered = 1u << 14,
};

inline constexpr std::uint32_t limitationCount = 15;

// "not verified: class 4 needs effective section properties" without the prefix: the reason of one flag.
const char* describe(Limitation limitation);

// The reasons of every flag set, joined with "; ", or "".
std::string describeAll(std::uint32_t limitations);

// The verdict from whether a check that ran failed and the limitations left.
inline Verdict verdictOf(bool anyExceeded, std::uint32_t limitations)
{
    if (anyExceeded) return Verdict::NotFulfilled;
    return limitations != NoLimitation ? Verdict::NotVerified : Verdict::Fulfilled;
}

} // namespace design
