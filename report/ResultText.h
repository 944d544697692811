#pragma once

// The results as text, as the command prints them: numbers, actions, verdicts, departures, the two
// evaluations side by side and the calculation trace.

#include <SteelDesign/BucklingCurve.h>
#include <SteelDesign/Forces.h>

#include <design/Departures.h>
#include <design/GoverningCheck.h>
#include <design/Rules.h>
#include <design/Trace.h>
#include <design/Verdict.h>

#include <cstdint>
#include <string>
#include <vector>

namespace report {

// value with the given number of decimals.
std::string number(double value, int decimals);
// "N = -300 kN, My = 80 kNm, ..." (only the non-zero ones; "none" when all are zero).
std::string describeForces(const SteelDesign::Forces& forces);
// The curve letter, or "not set".
std::string curveText(SteelDesign::BucklingCurve curve);
// "verdict: FULFILLED", "verdict: NOT FULFILLED" or "verdict: NOT VERIFIED", with a line "  not verified:
// <reason>" for each limitation, each line ending in a line break.
std::string verdictLine(design::Verdict verdict, std::uint32_t limitations);
// The block "Departures from EN 1993-1-1" (a line per departure: rule, clause, check, the library's
// value and the EN value), or "" when there is none.
std::string departuresBlock(const design::Departures& departures, design::Rules rules = design::Rules::Library);
// A value of a departure as the reports show it: a class as an integer, a utilization with three
// decimals, "not computed" when it is not finite.
std::string departureValue(const design::Departure& departure, double value);

// The block that puts the two evaluations side by side: a line per check with the EN value, the
// library's where it differs, and the verdict of the value in force; the classes when they differ.
std::string rulesBlock(design::Rules rules, const std::vector<design::CheckPair>& checks, int enClass, int libraryClass);

// The calculation trace as text, a line per step under a heading per check:
// "  6.2.4 (6.10)  N_c,Rd = A fy / gamma_M0 = 53.81 cm² · 355 N/mm² / 1.00 = 1910.26 kN".
std::string traceText(const std::vector<design::TraceLine>& lines);

} // namespace report
