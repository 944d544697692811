#include "Options.h"

#include <design/SectionNotation.h>

#include <SectionCatalogue.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace cli {

const CLI::Validator& finiteNumber()
{
    static const CLI::Validator validator(
        [](std::string& text) -> std::string {
            char* end = nullptr;
            const double value = std::strtod(text.c_str(), &end);
            if (end == text.c_str() || *end != '\0') return "not a number: " + text;
            if (!std::isfinite(value)) return "not a finite number: " + text;
            return {};
        },
        "FINITE");
    return validator;
}

void ForceOptions::addTo(CLI::App& app)
{
    app.add_option("--N", N, "normal force N in kN (compression negative)")->check(finiteNumber());
    app.add_option("--My", My, "bending moment My in kNm (positive: tension at the bottom, z > 0)")
        ->check(finiteNumber());
    app.add_option("--Mz", Mz, "bending moment Mz in kNm")->check(finiteNumber());
    app.add_option("--Mt", Mt, "torsional moment Mt in kNm")->check(finiteNumber());
    app.add_option("--Vy", Vy, "shear force Vy in kN")->check(finiteNumber());
    app.add_option("--Vz", Vz, "shear force Vz in kN")->check(finiteNumber());
}

void SteelOption::addTo(CLI::App& app)
{
    app.add_option("--steel", grade, "steel grade: S235, S275, S355, S420, S450, S460")->capture_default_str();
}

KaConstrSteel SteelOption::resolve() const
{
    if (auto steel = KaConstrSteel::fromName(grade)) return *steel;
    std::string known;
    for (std::string_view name : KaConstrSteel::gradeNames()) {
        if (!known.empty()) known += ", ";
        known += name;
    }
    throw InputError("--steel: unknown steel grade '" + grade + "' (known: " + known + ")");
}

void StandardOptions::addTo(CLI::App& app)
{
    app.add_option("--mode", mode,
                   "standard mode: EN (recommended values), UK (7), RolledLTB (8) or a mode number")
        ->capture_default_str();
    app.add_option("--situation", situation, "design situation: persistent, transient, accidental, seismic")
        ->capture_default_str();
}

void StandardOptions::apply() const
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

void RulesOption::addTo(CLI::App& app)
{
    app.add_option("--rules", name,
                   "rules of the verdict: en (EN 1993-1-1, the library's values shown beside where a rule departs) or "
                   "library (the library's own rules)")
        ->capture_default_str();
}

design::Rules RulesOption::resolve() const
{
    const auto rules = design::rulesFromName(name);
    if (!rules) throw InputError("--rules: unknown rules '" + name + "' (allowed: " + design::rulesNames + ")");
    return *rules;
}

std::unique_ptr<SDBSection> lookupSection(const std::string& name)
{
    try {
        return design::makeSection(name);
    } catch (const std::exception& e) {
        throw InputError(std::string("section: ") + e.what());
    }
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

} // namespace cli
