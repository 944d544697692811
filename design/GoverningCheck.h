#pragma once

// The governing check of a result under the rules in force: each summary check carries its EN 1993-1-1
// value and the library's, and the one that governs is the largest value of the rules' side.

#include "CrossSectionCheck.h"
#include "Departures.h"
#include "MemberCheck.h"
#include "Rules.h"
#include "Trace.h"
#include "Verdict.h"

#include <SteelDesign/Nullable.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace design {

// One summary check of a result under both rules: its name (a column of the batch: one of
// utilizationNames(), which outlive every result), the EN 1993-1-1 value and the library's (empty where
// not computed).
struct CheckPair {
    std::string_view name;
    kat::Nullable<double> en, library;
};

// The governing check of the pairs under the rules: the largest value (not a number ranks highest), its
// index, or -1 when none is computed.
int governingOf(const std::vector<CheckPair>& checks, Rules rules);

// The departures with the EN value of each check taken from the EN evaluation (the value with every rule
// EN's at once) where the check is one of the pairs or the class.
Departures withEnValues(Departures departures, const std::vector<CheckPair>& checks, int enClass);

// A result under the rules with the EN 1993-1-1 evaluation beside the library's: the summary checks with
// both values, the EN class, verdict and limitations, and the EN trace.
struct RuledResult {
    Rules rules = Rules::En;
    std::vector<CheckPair> checks;
    int enClass = 0;
    Verdict enVerdict = Verdict::NotVerified;
    std::uint32_t enLimitations = 0;
    std::vector<TraceLine> enTrace;
};

// The EN 1993-1-1 evaluation of the cross-section beside the library's check (the trace only when asked).
RuledResult crossSectionRuled(const CrossSectionRequest& request, const CrossSectionOutcome& outcome, Rules rules,
                              bool withTrace);

// The EN 1993-1-1 evaluation of the member checks beside the library's.
struct MemberRuled {
    RuledResult ruled;
    bool notApplicable = false;  // under EN rules: no member check applies to these actions
};
MemberRuled memberRuled(const MemberRequest& request, const MemberOutcome& outcome, Rules rules, bool withTrace);

} // namespace design
