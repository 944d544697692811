#pragma once

// Where the library's rules depart from EN 1993-1-1 (and EN 1993-1-5): one table, one entry per rule,
// and the detectors that say when a rule changed a result, with the EN value computed beside it.
//
// The library's values stay the verdict of record: a departure is shown, never substituted. Each entry
// names the rule, the clause, when it applies and how the EN value is computed; docs/departures.md
// gives a worked example of each and why the library keeps its rule.

#include "CrossSectionCheck.h"
#include "MemberCheck.h"

#include <SteelDesign/Nullable.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace design {

enum class DepartureRule : std::uint8_t {
    NoStressClass4,               // classification without normal stress gives class 4
    SignedShearZ,                 // Vz / Vz,Rd keeps the sign of Vz
    AxialBendingBothLimits,       // 6.2.9.1(4): the allowance for N needs both limits exceeded
    WebClassElasticAlpha,         // Table 5.2: web class 1 and 2 from the elastic compressed fraction
    Class3WebClass2,              // 5.5.2(11): class 3 web with class 1 or 2 flanges taken as class 2
    ShearBendingThreshold,        // 6.2.8(2): bending reduced from VEd >= 0.55 Vpl,Rd instead of 0.5
    TorsionResistance,            // 6.2.7: T,Rd = It / zmax * fy * sqrt(3)
    HollowSectionUnderN,          // 6.2.9.1(5), (6): no cross-section verdict for RHS / CHS under N
    Class4GrossSection,           // 6.2.2.5, 6.3.1.1(3), 6.3.2.1(3): class 4 with gross properties
    EquivalentMomentFactor,       // Annex B Table B.3
    SignedInteractionMoments,     // (6.61), (6.62): the moments enter with their signs
    KzzWithCmy,                   // Table B.1: kzz of I sections in classes 1 and 2 multiplies by Cmy
    InteractionGeneralMethod,     // (6.61) with chiLT of 6.3.2.2: infinite in the library
    StraightLineCriticalMoment,   // Mcr of a straight-line diagram: zeta 1.0 or 1.77 - 0.77 |psi|
    ChiLTmodUnlimited,            // (6.58): Mb,Rd with chiLT / f not limited by 1.0 and 1 / lambdaLT^2
    ShearBucklingFlanges,         // EN 1993-1-5 5.4(1): Vbf,Rd with the whole flange, negative above Mf,Rd
};

inline constexpr std::size_t departureRuleCount = 16;

struct DepartureInfo {
    DepartureRule rule;
    const char* name;    // short key, e.g. "axial-bending-both-limits"
    const char* clause;  // EN clause
    const char* when;    // when the library's rule changes the result
    const char* en;      // how the EN value is computed
};

// The table of departures, in the order of DepartureRule.
const std::array<DepartureInfo, departureRuleCount>& departureTable();
const DepartureInfo& infoOf(DepartureRule rule);

// One departure found in a result: the check it changes, the library's value and the EN value (both
// utilizations, or both section classes for the classification rules).
struct Departure {
    DepartureRule rule = DepartureRule::NoStressClass4;
    const char* check = "";  // "Shear", "AxialBending", "class", "memberCompressionBending", ...
    double library = 0.0;
    double en = 0.0;
};

// The departures of one member, held in place (no allocation), and the summary utilizations with the EN
// values in place of the library's where a departure applies (the columns of DesignSummary).
struct Departures {
    std::array<Departure, departureRuleCount> items{};
    std::size_t count = 0;
    std::array<kat::Nullable<double>, 11> en{};
    bool empty() const { return count == 0; }
    const Departure* begin() const { return items.data(); }
    const Departure* end() const { return items.data() + count; }
    // The largest EN summary utilization (absent when there is none).
    kat::Nullable<double> largestEn() const;
};

// The departures of a cross-section check and of the member checks of the same member, each when given.
// library holds the summary utilizations of the library (DesignSummary::crossSection then member), which
// start the EN columns.
Departures findDepartures(const CrossSectionRequest* cross, const CrossSectionOutcome* crossOutcome,
                          const MemberRequest* member, const MemberOutcome* memberOutcome,
                          const std::array<kat::Nullable<double>, 11>& library);

// The departures of a cross-section check alone, and of the member checks alone.
Departures findDepartures(const CrossSectionRequest& cross, const CrossSectionOutcome& crossOutcome);
Departures findDepartures(const MemberRequest& member, const MemberOutcome& memberOutcome);

} // namespace design
