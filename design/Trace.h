#pragma once

// The calculation trace of a design: each step of the cross-section and member checks as the engineer
// writes it down on a calculation sheet (the clause, the formula in symbols, the formula with the
// numbers put in, the result) and, for a utilization, whether it is fulfilled. The trace is read from the
// results records after the checks ran: it never computes a result of its own, so what it shows is what
// the checks used. The command, the report and the Python module print it; nothing on a hot path makes it.

#include "CrossSectionCheck.h"
#include "MemberCheck.h"

#include <string>
#include <vector>

namespace design {

// The state of one trace line.
enum class TraceStatus {
    Value,         // an intermediate value (a resistance, a slenderness, a factor): no verdict of its own
    Fulfilled,     // a utilization at most 1.0
    NotFulfilled,  // a utilization above 1.0 (or not finite)
    NotVerified,   // a check that could not be verified; `numbers` says why
};

// "value", "fulfilled", "not fulfilled", "not verified".
const char* toString(TraceStatus status);

struct TraceLine {
    std::string check;    // the group the line belongs to: "classification", "axial force", "bending", ...
    std::string clause;   // "EN 1993-1-1 6.2.4 (6.10)"
    std::string symbol;   // the quantity: "Nc,Rd", "chi_z", "N_Ed / N_b,z,Rd"
    std::string formula;  // the formula in symbols: "A fy / gamma_M0"
    std::string numbers;  // the formula with the numbers: "53.81 cm² · 355 N/mm² / 1.00"
    std::string result;   // the value with its unit: "1910.3 kN", "0.742"
    double value = 0.0;   // the value in the units of the class interface (kN, kNm, m, or none)
    TraceStatus status = TraceStatus::Value;
};

// The steps of the cross-section check (6.2): classification, then every resistance and utilization the
// check computed, in the order of the checks.
std::vector<TraceLine> traceCrossSection(const CrossSectionRequest& request, const CrossSectionOutcome& outcome);

// The steps of the member checks (6.3, EN 1993-1-5 5): flexural buckling about y and z, lateral-torsional
// buckling, the interaction (6.61) and (6.62), shear buckling; only what the checks computed, and a
// "not verified" line for each part they left out (Limitation flags of the outcome).
std::vector<TraceLine> traceMember(const MemberRequest& request, const MemberOutcome& outcome);

} // namespace design
