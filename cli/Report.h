#pragma once

// Formatting shared by the reports of the subcommands.

#include <SteelDesign/BucklingCurve.h>
#include <SteelDesign/Forces.h>
#include <SteelDesign/Nullable.h>

#include <design/Departures.h>
#include <design/Rules.h>
#include <design/Trace.h>
#include <design/Verdict.h>

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace cli {

// value with the given number of decimals.
std::string number(double value, int decimals);
// "N = -300 kN, My = 80 kNm, ..." (only the non-zero ones; "none" when all are zero).
std::string describeForces(const SteelDesign::Forces& forces);
// The curve letter, or "not set".
std::string curveText(SteelDesign::BucklingCurve curve);
// The curve letter, or null when not set.
nlohmann::json curveJson(SteelDesign::BucklingCurve curve);
// A present value, or null.
nlohmann::json nullableJson(const kat::Nullable<double>& value);
// "verdict: FULFILLED", "verdict: NOT FULFILLED" or "verdict: NOT VERIFIED", with a line "  not verified:
// <reason>" for each limitation, each line ending in a line break.
std::string verdictLine(design::Verdict verdict, std::uint32_t limitations);
// The block "Departures from EN 1993-1-1" (a line per departure: rule, clause, check, the library's
// value and the EN value), or "" when there is none.
std::string departuresBlock(const design::Departures& departures, design::Rules rules = design::Rules::Library);
// A value of a departure as the reports show it: a class as an integer, a utilization with three
// decimals, "not computed" when it is not finite.
std::string departureValue(const design::Departure& departure, double value);
// The JSON list of departures: {rule, clause, check, library, en}.
nlohmann::json departuresJson(const design::Departures& departures);

// One summary check of a result under both rules: its name (a column of the batch), the EN 1993-1-1
// value and the library's (empty where not computed).
struct CheckPair {
    std::string name;
    kat::Nullable<double> en, library;
};

// The governing check of the pairs under the rules: the largest value (not a number ranks highest), its
// index, or -1 when none is computed.
int governingOf(const std::vector<CheckPair>& checks, design::Rules rules);

// The departures with the EN value of each check taken from the EN evaluation (the value with every rule
// EN's at once) where the check is one of the pairs or the class.
design::Departures withEnValues(design::Departures departures, const std::vector<CheckPair>& checks, int enClass);

// The block that puts the two evaluations side by side: a line per check with the EN value, the
// library's where it differs, and the verdict of the value in force; the classes when they differ.
std::string rulesBlock(design::Rules rules, const std::vector<CheckPair>& checks, int enClass, int libraryClass);

// The JSON of a check or member result under the rules: under EN rules the top-level `class`,
// `utilizations`, `verdict`, `fulfilled`, `notVerified` and `trace` are the EN evaluation's and the
// library's whole document is kept under `library`; under library rules the library's document as it
// was, with the EN evaluation under `en`. Both carry `rules`, `governing`, `governingUtilization`,
// `checks` ({check, en, library}) and `departures`.
struct RuledResult {
    design::Rules rules = design::Rules::En;
    std::vector<CheckPair> checks;
    int enClass = 0;
    design::Verdict enVerdict = design::Verdict::NotVerified;
    std::uint32_t enLimitations = 0;
    std::vector<design::TraceLine> enTrace;
};
nlohmann::json ruledJson(nlohmann::json library, const RuledResult& result, const design::Departures& departures);

// The calculation trace as text, a line per step under a heading per check:
// "  6.2.4 (6.10)  N_c,Rd = A fy / gamma_M0 = 53.81 cm² · 355 N/mm² / 1.00 = 1910.26 kN".
std::string traceText(const std::vector<design::TraceLine>& lines);
// The trace as JSON: a list of {check, clause, symbol, formula, numbers, result, value, status}.
nlohmann::json traceJson(const std::vector<design::TraceLine>& lines);

} // namespace cli
