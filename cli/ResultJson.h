#pragma once

// The JSON documents of `section`, `check` and `member`, shared by the command and the Python module so
// that both give the same values.

#include <design/CrossSectionCheck.h>
#include <design/Departures.h>
#include <design/MemberCheck.h>

#include <nlohmann/json.hpp>

class SDBSection;
class KaConstrSteel;

namespace cli {

// Dimensions and properties of a section (m-based SI units).
nlohmann::json sectionJson(const SDBSection& section);

// The cross-section check of `check --json`.
nlohmann::json checkJson(const SDBSection& section, const KaConstrSteel& steel,
                         const design::CrossSectionOutcome& outcome, const design::Departures& departures);

// The member checks of `member --json` ("verdict": "not applicable" when nothing needed a member check).
nlohmann::json memberJson(const SDBSection& section, const KaConstrSteel& steel, const design::MemberRequest& request,
                          const design::MemberOutcome& outcome, const design::Departures& departures);

} // namespace cli
