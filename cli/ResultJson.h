#pragma once

// The JSON documents of `section`, `check` and `member`, shared by the command and the Python module so
// that both give the same values.

#include <design/CriticalMomentSolver.h>
#include <design/CrossSectionCheck.h>
#include <design/Departures.h>
#include <design/MemberCheck.h>
#include <design/Rules.h>

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

class SDBSection;
class KaConstrSteel;

namespace cli {

// Dimensions and properties of a section (m-based SI units).
nlohmann::json sectionJson(const SDBSection& section);

// The cross-section check of `check --json`, with its calculation trace.
nlohmann::json checkJson(const SDBSection& section, const KaConstrSteel& steel, const design::CrossSectionRequest& request,
                         const design::CrossSectionOutcome& outcome, const design::Departures& departures);

// The same under the rules, with the EN 1993-1-1 evaluation beside the library's (Report.h ruledJson).
nlohmann::json checkJson(const SDBSection& section, const KaConstrSteel& steel, const design::CrossSectionRequest& request,
                         const design::CrossSectionOutcome& outcome, const design::Departures& departures,
                         design::Rules rules);

// The member checks of `member --json` ("verdict": "not applicable" when nothing needed a member check),
// with their calculation trace.
nlohmann::json memberJson(const SDBSection& section, const KaConstrSteel& steel, const design::MemberRequest& request,
                          const design::MemberOutcome& outcome, const design::Departures& departures);

// The same under the rules, with the EN 1993-1-1 evaluation beside the library's.
nlohmann::json memberJson(const SDBSection& section, const KaConstrSteel& steel, const design::MemberRequest& request,
                          const design::MemberOutcome& outcome, const design::Departures& departures,
                          design::Rules rules);

// The options of `mcr`, in the command's own spelling (moments "M1,Mm,M2", stations "x:M,...", point
// loads "x:P", lateral restraints "x" or "x@top", load height center | top | bottom | mm).
struct McrOptions {
    std::string name;
    double length = 0.0;
    std::string momentsY, diagramY = "polygonal", stations;
    double q = 0.0;
    std::vector<std::string> pointLoads, lateralRestraints;
    std::vector<double> torsionalRestraints;
    std::string loadHeight = "center";
    std::string start = "fork", end = "fork";
    double cTheta = 0.0;
    int elements = 30;
};

// The elastic critical moment of `mcr --json` (InputError for bad options).
nlohmann::json mcrJson(const McrOptions& options);
nlohmann::json mcrJson(const SDBSection& section, double length, const design::CriticalMomentResult& result);

} // namespace cli
