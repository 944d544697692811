#pragma once

// The results as JSON documents: `section`, `check`, `member` and `mcr` of the command, the Python
// module's results and the report's data, so that every tool gives the same values.

#include <SteelDesign/BucklingCurve.h>
#include <SteelDesign/BucklingResults.h>
#include <SteelDesign/Nullable.h>

#include <design/CriticalMomentOptions.h>
#include <design/CriticalMomentSolver.h>
#include <design/CrossSectionCheck.h>
#include <design/Departures.h>
#include <design/GoverningCheck.h>
#include <design/MemberCheck.h>
#include <design/Rules.h>
#include <design/Trace.h>

#include <nlohmann/json.hpp>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

class SDBSection;
class KaConstrSteel;

namespace report {

// The curve letter, or null when not set.
nlohmann::json curveJson(SteelDesign::BucklingCurve curve);
// A present value, or null.
nlohmann::json nullableJson(const kat::Nullable<double>& value);
// The JSON list of departures: {rule, clause, check, library, en}.
nlohmann::json departuresJson(const design::Departures& departures);
// The calculation trace as JSON: a list of {check, clause, symbol, formula, numbers, result, value, status}.
nlohmann::json traceJson(const std::vector<design::TraceLine>& lines);

// The JSON of a check or member result under the rules: under EN rules the top-level `class`,
// `utilizations`, `verdict`, `fulfilled`, `notVerified` and `trace` are the EN evaluation's and the
// library's whole document is kept under `library`; under library rules the library's document as it
// was, with the EN evaluation under `en`. Both carry `rules`, `governing`, `governingUtilization`,
// `checks` ({check, en, library}) and `departures`. Without the trace (withTrace false) the document has
// no key `trace` at any level: the values alone, made in a fraction of the time.
nlohmann::json ruledJson(nlohmann::json library, const design::RuledResult& result, const design::Departures& departures,
                         bool withTrace = true);

// The dimensions of a section under the JSON keys h, b, tw, tf, r (m).
struct SectionDimensions {
    double h = 0.0, b = 0.0, tw = 0.0, tf = 0.0, r = 0.0;
    bool hotRolled = false;
    bool hasHotRolled = false;
    double b2 = 0.0, t2 = 0.0;  // bottom flange of a mono-symmetric I
    bool hasSecondFlange = false;
};
SectionDimensions sectionDimensions(const SDBSection& section);
// The key of the section's type ("I", "RH", ...), "" when it has none.
std::string sectionTypeKey(const SDBSection& section);

// Dimensions and properties of a section (m-based SI units).
nlohmann::json sectionJson(const SDBSection& section);

// The cross-section check of `check --json`, with its calculation trace (unless withTrace is false).
nlohmann::json checkJson(const SDBSection& section, const KaConstrSteel& steel, const design::CrossSectionRequest& request,
                         const design::CrossSectionOutcome& outcome, const design::Departures& departures,
                         bool withTrace = true);

// The same under the rules, with the EN 1993-1-1 evaluation beside the library's (ruledJson).
nlohmann::json checkJson(const SDBSection& section, const KaConstrSteel& steel, const design::CrossSectionRequest& request,
                         const design::CrossSectionOutcome& outcome, const design::Departures& departures,
                         design::Rules rules, bool withTrace = true);

// The member utilizations in the order the results show them.
std::span<const SteelDesign::BucklingResults::UtilizationType> memberUtilizationTypes();

// What the member checks ran and what they show, for the JSON and the text alike.
struct MemberShown {
    const SteelDesign::BucklingResults& r;
    bool notApplicable, unverified61, flexural, lateralTorsional, interaction;
    explicit MemberShown(const design::MemberOutcome& outcome);
    // A utilization as shown: (6.61) is left out when it could not be verified.
    kat::Nullable<double> utilization(SteelDesign::BucklingResults::UtilizationType type) const;
};

// The member checks of `member --json` ("verdict": "not applicable" when nothing needed a member check),
// with their calculation trace (unless withTrace is false).
nlohmann::json memberJson(const SDBSection& section, const KaConstrSteel& steel, const design::MemberRequest& request,
                          const design::MemberOutcome& outcome, const design::Departures& departures,
                          bool withTrace = true);

// The same under the rules, with the EN 1993-1-1 evaluation beside the library's.
nlohmann::json memberJson(const SDBSection& section, const KaConstrSteel& steel, const design::MemberRequest& request,
                          const design::MemberOutcome& outcome, const design::Departures& departures,
                          design::Rules rules, bool withTrace = true);

// The headline of a check or member result under the rules, the values its JSON document holds under the
// same keys ("verdict", "governing", "governingUtilization", "class", "notVerified", "utilizations"),
// without the document or the trace: what a caller reads first, cheaply. An empty optional is the JSON's
// null; a utilization may be non-finite where the document holds it so.
// The names are static texts (the verdicts' and the checks' names), so that a summary costs no text
// copies.
struct ResultSummary {
    std::string_view verdict;
    std::optional<std::string_view> governing;
    std::optional<double> governingUtilization;
    int sectionClass = 0;
    std::optional<std::string> notVerified;
    std::vector<std::pair<std::string_view, std::optional<double>>> utilizations;
};
ResultSummary checkSummary(const design::CrossSectionRequest& request, const design::CrossSectionOutcome& outcome,
                           design::Rules rules);
ResultSummary memberSummary(const design::MemberRequest& request, const design::MemberOutcome& outcome,
                            design::Rules rules);

// The elastic critical moment of `mcr --json` (InputError for bad options).
nlohmann::json mcrJson(const design::McrOptions& options);
nlohmann::json mcrJson(const SDBSection& section, double length, const design::CriticalMomentResult& result);

} // namespace report
