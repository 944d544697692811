#include "Options.h"

#include <report/TitleBlock.h>

#include <fstream>

#include <design/NumberInput.h>

namespace cli {

namespace {

double numberOption(const std::string& name, const std::string& text)
{
    double value = 0.0;
    const design::NumberProblem problem = design::readNumber(text, value);
    if (problem != design::NumberProblem::None)
        throw CLI::ValidationError(name, design::numberProblemText(problem, text));
    return value;
}

}

CLI::Option* addNumber(CLI::App& app, const std::string& name, double& target, const std::string& help)
{
    return app
        .add_option_function<std::string>(
            name, [&target, name](const std::string& text) { target = numberOption(name, text); }, help)
        ->type_name("NUMBER");
}

CLI::Option* addNumber(CLI::App& app, const std::string& name, std::optional<double>& target, const std::string& help)
{
    return app
        .add_option_function<std::string>(
            name, [&target, name](const std::string& text) { target = numberOption(name, text); }, help)
        ->type_name("NUMBER");
}

CLI::Option* addNumber(CLI::App& app, const std::string& name, std::vector<double>& target, const std::string& help)
{
    return app
        .add_option_function<std::vector<std::string>>(
            name,
            [&target, name](const std::vector<std::string>& texts) {
                target.clear();
                for (const std::string& text : texts) target.push_back(numberOption(name, text));
            },
            help)
        ->type_name("NUMBER");
}

void addForceOptions(CLI::App& app, design::ForceInput& forces)
{
    addNumber(app, "--N", forces.N, "normal force N in kN (compression negative)");
    addNumber(app, "--My", forces.My, "bending moment My in kNm (positive: tension at the bottom, z > 0)");
    addNumber(app, "--Mz", forces.Mz, "bending moment Mz in kNm");
    addNumber(app, "--Mt", forces.Mt, "torsional moment Mt in kNm");
    addNumber(app, "--Vy", forces.Vy, "shear force Vy in kN");
    addNumber(app, "--Vz", forces.Vz, "shear force Vz in kN");
    app.add_flag("--leg-axes", forces.legAxes,
                 "My, Mz, Vy, Vz are about the legs of an angle (y, z), turned into its principal axes u, v "
                 "(default: they are about u and v)");
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

void TitleBlockOptions::addTo(CLI::App& app)
{
    app.add_option("--project", project, "title block: the project or job")->group("Title block");
    app.add_option("--element", element, "title block: the element or structure checked")->group("Title block");
    app.add_option("--client", client, "title block: the client")->group("Title block");
    app.add_option("--prepared", prepared, "title block: prepared by")->group("Title block");
    app.add_option("--checked", checked, "title block: checked by")->group("Title block");
    app.add_option("--approved", approved, "title block: approved by")->group("Title block");
    app.add_option("--revision", revision, "title block: the revision")->group("Title block");
    app.add_option("--title-block", file,
                   "title block: a file of 'field: value' lines (project, element, client, prepared, checked, "
                   "approved, revision); the options above take precedence")
        ->group("Title block");
}

report::TitleBlock TitleBlockOptions::resolve() const
{
    const report::TitleBlock& given = *this;
    if (file.empty()) return given;
    std::ifstream in(file);
    if (!in) throw InputError("--title-block: cannot read the file '" + file + "'");
    return report::overlaid(report::readTitleBlock(in, "--title-block: " + file), given);
}

report::ReportHeader reportHeaderOf(const std::string& commandLine, const report::TitleBlock& block,
                                    const design::StandardInput& standard, design::Rules rules)
{
    report::ReportHeader header;
    header.model = commandLine;
    header.date = report::nowText();
    header.rules = rules;
    header.block = block;
    header.mode = standard.mode;
    header.situation = standard.situation;
    return header;
}

void RulesOption::addTo(CLI::App& app)
{
    app.add_option("--rules", name,
                   "rules of the verdict: en (EN 1993-1-1, the library's values shown beside where a rule departs) or "
                   "library (the library's own rules)")
        ->capture_default_str();
}

} // namespace cli
