#include "Rules.h"

#include "InputError.h"

namespace design {

const char* toString(Rules rules) { return rules == Rules::Library ? "library" : "EN 1993-1-1"; }

std::optional<Rules> rulesFromName(std::string_view name)
{
    if (name == "en") return Rules::En;
    if (name == "library") return Rules::Library;
    return std::nullopt;
}

Rules rulesByName(const std::string& name)
{
    const auto rules = rulesFromName(name);
    if (!rules) throw InputError("--rules: unknown rules '" + name + "' (allowed: " + rulesNames + ")");
    return *rules;
}

} // namespace design
