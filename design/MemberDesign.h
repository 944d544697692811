#pragma once

// The design of one member at one point under one load case: the cross-section check and, with
// buckling lengths, the member checks; the summary utilizations, the governing one and one verdict for
// all. The command, the batch and the select search all read their numbers from here.

#include "CrossSectionCheck.h"
#include "Departures.h"
#include "EnEvaluation.h"
#include "MemberCheck.h"
#include "Rules.h"
#include "Verdict.h"

#include <SteelDesign/Nullable.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace design {

// The summary of a member's design under the rules in force. Under EN rules (the tools' default) the
// class, the utilizations, the limitations, the verdict and the governing utilization are those of the
// EN 1993-1-1 evaluation, and libraryGoverning / libraryVerdict hold the library's; under the library's
// rules they are the library's, exactly as its checks give them, and enGoverning holds the largest
// utilization with the EN value of each departure in place.
struct DesignSummary {
    Rules rules = Rules::Library;
    std::string section, steel;
    bool memberChecked = false;  // a member request was given
    bool rolledMethod = false;   // lateral-torsional buckling by 6.3.2.3
    int sectionClass = 0;
    int errorCode = 0;           // cross-section check
    int memberErrorCode = 0;     // member checks
    int shearBucklingErrorCode = 0;
    // Axial, Torsion, Bending, Shear, AxialBending, ShearBending, AxialShearBending.
    std::array<kat::Nullable<double>, 7> crossSection;
    // member.Compression, member.Bending, member.CompressionBending, member.ShearBuckling. A utilization
    // that the member check could not verify ((6.61) by the general method) is left out.
    std::array<kat::Nullable<double>, 4> member;
    std::string governing;  // name of the largest utilization, "" when none
    double governingUtilization = 0.0;
    std::uint32_t limitations = 0;  // Limitation flags of both checks
    Verdict verdict = Verdict::NotVerified;
    bool fulfilled = false;  // verdict == Fulfilled
    // Departures from EN 1993-1-1 that changed a result: one bit per DepartureRule, and the largest
    // summary utilization with the EN values in place of the library's (the library's governing one when
    // no departure applies).
    std::uint32_t departures = 0;
    kat::Nullable<double> enGoverning;
    // Under EN rules: the library's governing utilization and verdict.
    kat::Nullable<double> libraryGoverning;
    Verdict libraryVerdict = Verdict::NotVerified;
};

// The names of the departures of a mask, joined with ";", or "".
std::string departureNames(std::uint32_t departures);

// The library's member utilizations of a member outcome, in the order of DesignSummary::member (the
// largest flexural buckling, lateral-torsional buckling, interaction; (6.62) alone when (6.61) could not
// be verified; shear buckling).
std::array<kat::Nullable<double>, 4> memberSummary(const MemberOutcome& member);

// The names of the utilization columns, in the order of DesignSummary::crossSection then member.
const std::vector<std::string>& utilizationNames();

// A utilization column as an engineer names the check, and its clause of EN 1993-1-1 (EN 1993-1-5 for
// shear buckling): "Bending and axial force", "6.2.9". An unknown name is given back as it is.
struct CheckTitle {
    std::string_view title, clause;
};
CheckTitle checkTitle(std::string_view name);

// The cross-section check and, when a member request is given, the member checks. With details, the
// departures found are copied there too.
DesignSummary designMember(const CrossSectionRequest& cross, const MemberRequest* member,
                           Departures* details = nullptr, Rules rules = Rules::Library);

// The same into r, whose texts keep their memory (the batch reuses one summary per row slot): every field
// of r is set.
void designMember(const CrossSectionRequest& cross, const MemberRequest* member, DesignSummary& r,
                  Departures* details = nullptr, Rules rules = Rules::Library);

// Under EN rules: the summary's verdict fields from the EN evaluation, the library's kept in
// libraryGoverning and libraryVerdict (r holds the library's summary when called).
void applyEnRules(const EnEvaluation& en, DesignSummary& r);

} // namespace design
