#include "DesignBasis.h"

#include <KaStandard.h>

#include <cstdio>
#include <string_view>

namespace design {

KaConstrSteel steelByName(const std::string& grade)
{
    if (auto steel = KaConstrSteel::fromName(grade)) return *steel;
    std::string known;
    for (std::string_view name : KaConstrSteel::gradeNames()) {
        if (!known.empty()) known += ", ";
        known += name;
    }
    throw InputError("--steel: unknown steel grade '" + grade + "' (known: " + known + ")");
}

void applyStandard(const std::string& mode, const std::string& situation)
{
    auto parsedMode = Standard::parseMode(mode);
    if (!parsedMode) throw InputError("--mode: unknown standard mode '" + mode + "' (EN, UK, RolledLTB or a number)");
    auto parsedSituation = Standard::parseDesignSituation(situation);
    if (!parsedSituation)
        throw InputError("--situation: unknown design situation '" + situation +
                         "' (persistent, transient, accidental, seismic)");
    KaStandard::get()->setMode(*parsedMode);
    KaStandard::get()->setSituation(*parsedSituation);
}

std::string thicknessWarnings(const std::vector<double>& thicknesses)
{
    std::string out;
    for (double t : thicknesses) {
        if (!KaConstrSteel::isThicknessCovered(t)) {
            char line[160];
            std::snprintf(line, sizeof line,
                          "warning: plate thickness %.1f mm is beyond EN 1993-1-1 Table 3.1 (80 mm); fy of the "
                          "40-80 mm row used, check the product standard\n",
                          t * 1000.0);
            out += line;
        }
    }
    return out;
}

} // namespace design
