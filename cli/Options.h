#pragma once

// Options shared by the subcommands: forces, steel grade, standard mode and design situation, and the
// error that a subcommand throws for bad input (printed by main, exit code 2).

#include <CLI/CLI.hpp>

#include <KaMaterial.h>
#include <KaStandard.h>
#include <SteelDesign/Forces.h>

#include <SDBSection.h>
#include <design/Rules.h>

#include <memory>
#include <stdexcept>
#include <vector>
#include <string>

namespace cli {

// Bad input from the command line or a file: the message names the field and the value.
class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Exit codes of every subcommand.
constexpr int exitFulfilled = 0;
constexpr int exitNotFulfilled = 1;
constexpr int exitInputError = 2;
constexpr int exitNotVerified = 3;

// --N --My --Mz --Mt --Vy --Vz in kN and kNm (compression negative). Values must be finite.
struct ForceOptions {
    double N = 0.0, My = 0.0, Mz = 0.0, Mt = 0.0, Vy = 0.0, Vz = 0.0;
    void addTo(CLI::App& app);
    SteelDesign::Forces toForces() const { return SteelDesign::Forces(N, My, Mz, Mt, Vy, Vz); }
};

// --steel GRADE (default S355).
struct SteelOption {
    std::string grade = "S355";
    void addTo(CLI::App& app);
    // The steel, or InputError naming the grade and listing the known ones.
    KaConstrSteel resolve() const;
};

// --mode N|EN|UK|RolledLTB and --situation persistent|transient|accidental|seismic.
struct StandardOptions {
    std::string mode = "EN";
    std::string situation = "persistent";
    void addTo(CLI::App& app);
    // Sets the host standard; InputError on an unknown value.
    void apply() const;
};

// --rules en|library: the rules the verdict, the exit code and the governing check are decided by
// (default en: EN 1993-1-1; library: the library's own rules, with the EN values shown beside).
struct RulesOption {
    std::string name = "en";
    void addTo(CLI::App& app);
    // The rules, or InputError naming the option and the allowed values.
    design::Rules resolve() const;
};

// The section of a catalogue designation ("IPE 300") or of a dimension notation ("WI 1200x300x8x20");
// InputError naming it and the nearest designations or the bad dimension.
std::unique_ptr<SDBSection> lookupSection(const std::string& name);

// A warning line for each plate thickness outside EN 1993-1-1 Table 3.1 (above 80 mm), or "".
std::string thicknessWarnings(const std::vector<double>& thicknesses);

// A CLI11 validator that rejects non-finite numbers ("nan", "inf").
const CLI::Validator& finiteNumber();

} // namespace cli
