#pragma once

// The rules a verdict is decided by. EN 1993-1-1 is the verdict of record: the command, the batch, the
// report and the Python module decide by the EN evaluation of the whole member (EnEvaluation.h) and show
// the library's value beside it where a rule departs; the library's rules give the verdicts of the
// class interface exactly as it computes them.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace design {

enum class Rules : std::uint8_t { En, Library };

// "EN 1993-1-1", "library": the name the JSON output and the report give.
const char* toString(Rules rules);

// "en" or "library" (the option's values), std::nullopt for anything else.
std::optional<Rules> rulesFromName(std::string_view name);

// The option's values for messages: "en, library".
inline constexpr const char* rulesNames = "en, library";

// The rules of an option's value; InputError "--rules: unknown rules 'x' (allowed: en, library)".
Rules rulesByName(const std::string& name);

} // namespace design
