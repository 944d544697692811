#pragma once

// Options shared by the subcommands: forces, steel grade, standard mode and design situation, rules, and
// the exit codes. The values are turned into sections, steels and requests by the design layer; bad
// input is its InputError (printed by main, exit code 2).

#include <CLI/CLI.hpp>

#include <KaMaterial.h>

#include <design/DesignBasis.h>
#include <design/InputError.h>
#include <design/MemberInput.h>
#include <design/NumberInput.h>
#include <design/Rules.h>

#include <report/HtmlReport.h>

#include <optional>
#include <string>
#include <vector>

namespace cli {

using design::InputError;

// Exit codes of every subcommand.
constexpr int exitFulfilled = 0;
constexpr int exitNotFulfilled = 1;
constexpr int exitInputError = 2;
constexpr int exitNotVerified = 3;

// --N --My --Mz --Mt --Vy --Vz in kN and kNm (compression negative). Values must be finite.
void addForceOptions(CLI::App& app, design::ForceInput& forces);
struct ForceOptions : design::ForceInput {
    void addTo(CLI::App& app) { addForceOptions(app, *this); }
};

// --steel GRADE (default S355).
struct SteelOption {
    std::string grade = "S355";
    void addTo(CLI::App& app);
    // The steel, or InputError naming the grade and listing the known ones.
    KaConstrSteel resolve() const { return design::steelByName(grade); }
};

// --mode N|EN|UK|RolledLTB and --situation persistent|transient|accidental|seismic.
void addStandardOptions(CLI::App& app, design::StandardInput& standard);
struct StandardOptions : design::StandardInput {
    void addTo(CLI::App& app) { addStandardOptions(app, *this); }
};

// The title block of a report (--project, --element, --client, --prepared, --checked, --approved,
// --revision); a field not given is a blank line on the page.
struct TitleBlockOptions : report::TitleBlock {
    std::string file;  // --title-block FILE: the fields from a file, the options above it
    void addTo(CLI::App& app);
    // The fields of the file (when given) with the options' over them; InputError naming the file.
    report::TitleBlock resolve() const;
};

// The header of the report of one command (`check` / `member --html`): the command line as typed names
// the input.
report::ReportHeader reportHeaderOf(const std::string& commandLine, const report::TitleBlock& block,
                                    const design::StandardInput& standard, design::Rules rules);

// --rules en|library: the rules the verdict, the exit code and the governing check are decided by
// (default en: EN 1993-1-1; library: the library's own rules, with the EN values shown beside).
struct RulesOption {
    std::string name = "en";
    void addTo(CLI::App& app);
    // The rules, or InputError naming the option and the allowed values.
    design::Rules resolve() const { return design::rulesByName(name); }
};

// A number option, read as the batch and the section notations read numbers (design::readNumber: the
// same text is the same double everywhere; hexadecimal, "inf", "nan" and units refused with the option
// named). The type shown in --help is NUMBER.
CLI::Option* addNumber(CLI::App& app, const std::string& name, double& target, const std::string& help);
CLI::Option* addNumber(CLI::App& app, const std::string& name, std::optional<double>& target, const std::string& help);
CLI::Option* addNumber(CLI::App& app, const std::string& name, std::vector<double>& target, const std::string& help);

} // namespace cli
