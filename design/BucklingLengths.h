#pragma once

// Buckling lengths of a member: Lcr,y for flexural buckling about y, Lcr,z about z and LLT, the length
// between lateral restraints of the compression flange, for lateral-torsional buckling (EN 1993-1-1
// 6.3.1.3, 6.3.2.2). Lengths in m.

#include <SteelDesign/BucklingResistance.h>

#include <algorithm>
#include <optional>

namespace design {

using BucklingLengths = SteelDesign::BucklingResistance::BucklingLengths;

// One length for all three.
inline BucklingLengths uniformLengths(double length) { return BucklingLengths{length, length, length}; }

// The lengths from a member length and per-axis overrides. Each of Lcr,y, Lcr,z and LLT takes its own
// value when given, else the member length; without a member length, Lcr,z defaults to Lcr,y and LLT to
// Lcr,z (a member braced about z is usually braced laterally at the same points).
inline BucklingLengths resolveLengths(std::optional<double> length, std::optional<double> y, std::optional<double> z,
                                      std::optional<double> lateralTorsional)
{
    BucklingLengths l;
    l.y = y.value_or(length.value_or(0.0));
    l.z = z.value_or(length.value_or(l.y));
    l.lateralTorsional = lateralTorsional.value_or(length.value_or(l.z));
    return l;
}

// The longest buckling or member length taken (m): beyond it a length is a typing error (mm for m), not a
// member, and the slenderness would overflow the buckling curves' range of meaning.
constexpr double maxMemberLength = 1000.0;

// Why a length given by a user cannot be taken ("must not be negative", "must be at most 1000 m"), or null.
inline const char* lengthProblem(double length)
{
    if (length < 0.0) return "must not be negative";
    if (length > maxMemberLength) return "must be at most 1000 m";
    return nullptr;
}

// True when the member is checked at all: some buckling length is positive.
inline bool anyLength(const BucklingLengths& l) { return std::max({l.y, l.z, l.lateralTorsional}) > 0.0; }

} // namespace design
