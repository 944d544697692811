#include "Options.h"

#include <cmath>
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

void addForceOptions(CLI::App& app, design::ForceInput& forces)
{
    app.add_option("--N", forces.N, "normal force N in kN (compression negative)")->check(finiteNumber());
    app.add_option("--My", forces.My, "bending moment My in kNm (positive: tension at the bottom, z > 0)")
        ->check(finiteNumber());
    app.add_option("--Mz", forces.Mz, "bending moment Mz in kNm")->check(finiteNumber());
    app.add_option("--Mt", forces.Mt, "torsional moment Mt in kNm")->check(finiteNumber());
    app.add_option("--Vy", forces.Vy, "shear force Vy in kN")->check(finiteNumber());
    app.add_option("--Vz", forces.Vz, "shear force Vz in kN")->check(finiteNumber());
}

void SteelOption::addTo(CLI::App& app)
{
    app.add_option("--steel", grade, "steel grade: S235, S275, S355, S420, S450, S460")->capture_default_str();
}

void addStandardOptions(CLI::App& app, design::StandardInput& standard)
{
    app.add_option("--mode", standard.mode,
                   "standard mode: EN (recommended values), UK (7), RolledLTB (8) or a mode number")
        ->capture_default_str();
    app.add_option("--situation", standard.situation, "design situation: persistent, transient, accidental, seismic")
        ->capture_default_str();
}

void RulesOption::addTo(CLI::App& app)
{
    app.add_option("--rules", name,
                   "rules of the verdict: en (EN 1993-1-1, the library's values shown beside where a rule departs) or "
                   "library (the library's own rules)")
        ->capture_default_str();
}

} // namespace cli
