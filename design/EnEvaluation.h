#pragma once

// The EN 1993-1-1 evaluation of a whole member at one point under one load case: the cross-section
// check (EnCrossSection.h) and, with buckling lengths, the member checks (EnMember.h), every rule
// EN 1993-1-1's at once, with the summary utilizations in the slots of the library's summary, the
// governing one and one verdict. It is what the tools decide by under EN rules; the library's checks
// run beside it and their values are shown where they differ.

#include "CrossSectionCheck.h"
#include "EnCrossSection.h"
#include "EnMember.h"
#include "MemberCheck.h"
#include "Trace.h"
#include "Verdict.h"

#include <SteelDesign/Nullable.h>

#include <array>
#include <cstdint>
#include <vector>

namespace design {

struct EnEvaluation {
    EnCrossSection cross;             // under the cross-section request's forces
    bool memberChecked = false;       // a member request was given
    EnMember member;
    // Axial .. AxialShearBending (7), memberCompression .. memberShearBuckling (4): the order of
    // utilizationNames() (MemberDesign.h).
    std::array<kat::Nullable<double>, 11> utilizations{};
    int sectionClass = 0;             // of the cross-section check
    std::uint32_t limitations = 0;    // Limitation flags of both checks
    bool anyExceeded = false;
    Verdict verdict = Verdict::NotVerified;
    int governing = -1;               // index of the governing utilization, -1 when none
    double governingUtilization = 0.0;
};

// Traces of the EN evaluation, when asked for.
struct EnTraces {
    std::vector<TraceLine> crossSection, member;
};

// gammaM0: the resolved partial factor of the cross-section check. numericalMcr: the member's critical
// moment of the finite-element analysis when the request asks for it (MemberOutcome::numericalMcr), 0
// otherwise. out is set in full; nothing is allocated without traces (except for class 4 sections).
void evaluateEn(const CrossSectionRequest& cross, double gammaM0, const MemberRequest* member, double numericalMcr,
                EnEvaluation& out, EnTraces* traces = nullptr);

// The partial factor gammaM0: the requested one, or the active standard's when it is at most 1e-6 (as the
// library's cross-section check takes it).
double resolveGammaM0(double requested);

// The verdict of the member checks alone (the member command's): from the member slots and limitations.
Verdict memberVerdict(const EnMember& member);

// The verdict of one utilization: fulfilled when it does not exceed 1.0 by more than 1e-9.
inline bool enExceeds(double u) { return u > 1.0 + 1e-9; }

} // namespace design
