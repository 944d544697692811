// `steeldesign check NAME --steel GRADE [forces] [--gamma-m0 X] [--elastic] [--mode N] [--situation S]
// [--json]`: the cross-section resistance check of EN 1993-1-1 6.2 at one point.
// Exit code 0 when every check is fulfilled, 1 when one is not, 2 for bad input, 3 when the check could
// not be verified (class 4, or not supported for the section under these actions: error code 6).

#include "Commands.h"
#include "Options.h"

#include <batch/OutputFile.h>
#include <design/CrossSectionCheck.h>
#include <design/Departures.h>
#include <design/EnEvaluation.h>
#include <design/MemberDesign.h>
#include <design/SectionNotation.h>
#include <report/HtmlReport.h>
#include <report/ResultJson.h>
#include <report/ResultText.h>

#include <KaMaterial.h>

#include <nlohmann/json.hpp>

#include <iostream>

namespace cli {

using namespace batch;
using namespace report;

namespace {

using R = SteelDesign::VerificationResults;

struct CheckOptions {
    std::string name;
    SteelOption steel;
    ForceOptions forces;
    StandardOptions standard;
    RulesOption rules;
    std::optional<double> gammaM0;  // empty: from the standard mode
    bool elastic = false;
    bool json = false;
    std::string html;
    TitleBlockOptions block;
    bool trace = false;
};

const R::UtilizationType reported[] = {R::Axial,         R::Torsion,       R::BendingY,      R::BendingZ,
                                       R::Bending,       R::ShearY,        R::ShearZ,        R::Shear,
                                       R::ShearBendingY, R::ShearBendingZ, R::ShearBending,  R::AxialBendingY,
                                       R::AxialBendingZ, R::AxialBending,  R::AxialShearBending};

const char* describe(R::UtilizationType type)
{
    switch (type) {
    case R::Axial: return "axial force, 6.2.4";
    case R::Torsion: return "torsion, 6.2.7";
    case R::BendingY: return "bending about y, 6.2.5";
    case R::BendingZ: return "bending about z, 6.2.5";
    case R::Bending: return "bending, 6.2.5 / 6.2.9(6)";
    case R::ShearY: return "shear Vy, 6.2.6";
    case R::ShearZ: return "shear Vz, 6.2.6";
    case R::Shear: return "shear, governing";
    case R::ShearBendingY: return "bending about z with Vy, 6.2.8";
    case R::ShearBendingZ: return "bending about y with Vz, 6.2.8";
    case R::ShearBending: return "bending and shear, governing";
    case R::AxialBendingY: return "bending about y with N, 6.2.9";
    case R::AxialBendingZ: return "bending about z with N, 6.2.9";
    case R::AxialBending: return "bending and axial force, 6.2.9";
    case R::AxialShearBending: return "bending, shear and axial force";
    default: return "";
    }
}

} // namespace

namespace {

std::string yesNo(bool b) { return b ? "yes" : "no"; }

void run(const CheckOptions& o, CommandResult& result)
{
    using namespace SteelDesign;
    auto section = design::resolveSection(o.name);
    KaConstrSteel steel = o.steel.resolve();
    o.standard.apply();
    if (!o.html.empty()) checkOutputPath("--html", o.html, "");
    if (!o.html.empty()) (void)o.block.resolve();  // a bad title-block file stops the run before any output
    if (o.gammaM0 && !(*o.gammaM0 > 0.0)) throw InputError("--gamma-m0: must be positive, got " + design::shortestText(*o.gammaM0));
    const Forces forces = o.forces.toForces(*section);
    const design::CrossSectionRequest request{section.get(), &steel, forces, o.gammaM0.value_or(0.0), o.elastic};
    const design::CrossSectionOutcome outcome = design::evaluateCrossSection(request);
    const SectionInitializer& init = outcome.initializer;
    const R& results = outcome.results;
    const ErrorCode error = init.getErrorCode();
    const design::Verdict verdict = outcome.verdict;
    const design::Departures departures = design::findDepartures(request, outcome);
    const design::Rules rules = o.rules.resolve();
    // The EN evaluation, before the section is handed on to the report below.
    const design::RuledResult ruled = design::crossSectionRuled(request, outcome, rules, o.trace);

    if (o.json) {
        std::cout << checkJson(*section, steel, request, outcome, departures, rules).dump(2) << '\n';
    } else {
        std::cout << design::thicknessWarnings(init.getThicknessVector());
        std::cout << "Cross-section check to EN 1993-1-1 6.2\n"
                  << "section " << section->getName() << ", steel " << steel.getName() << ", fy = "
                  << number(init.getFy() / 1000.0, 0) << " N/mm2, gammaM0 = " << number(outcome.gammaM0, 2)
                  << "\n"
                  << "actions: " << describeForces(forces) << "\n"
                  << "cross-section class: " << init.getClass() << (o.elastic ? " (elastic verification)" : "")
                  << "\n\nresistances\n";
        auto line = [](const char* name, double value, const char* unit) {
            std::cout << "  " << name << std::string(10 - std::string(name).size(), ' ') << number(value, 2) << ' '
                      << unit << '\n';
        };
        line("NRd", results.getNRd().valueOr(0.0), "kN");
        line("My,Rd", results.getMRd(Axis::y).value(), "kNm");
        line("Mz,Rd", results.getMRd(Axis::z).value(), "kNm");
        line("Mpl,y,Rd", results.getMRdLimit(Axis::y).value(), "kNm");
        line("Mpl,z,Rd", results.getMRdLimit(Axis::z).value(), "kNm");
        line("Vy,Rd", results.getResistanceVyRd(), "kN");
        line("Vz,Rd", results.getResistanceVzRd(), "kN");
        if (forces.getMt() != 0.0) {  // reduced for torsion, 6.2.7(9)
            line("Vy,T,Rd", results.getResistanceVyTRd(), "kN");
            line("Vz,T,Rd", results.getResistanceVzTRd(), "kN");
        }

        std::cout << "\nutilizations\n";
        for (R::UtilizationType type : reported) {
            const auto u = results.getUtilization(type);
            char buffer[128];
            std::snprintf(buffer, sizeof buffer, "  %-18s %8s  %-13s %s\n", R::nameOf(type),
                          u ? number(u.value(), 3).c_str() : "-",
                          u ? (results.isFulfilled(type) ? "fulfilled" : "NOT FULFILLED") : "", describe(type));
            std::cout << buffer;
        }
        std::cout << "\ninteraction: shear reduces bending " << yesNo(results.getRequiredShearBending())
                  << ", axial force reduces bending " << yesNo(results.getRequiredAxialBending())
                  << ", biaxial bending " << yesNo(results.getBiaxialBending()) << "\n";
        if (error != ErrorCode::NoError)
            std::cout << "error code " << static_cast<int>(error) << ": " << SteelDesign::describe(error) << "\n";
        std::cout << rulesBlock(rules, ruled.checks, ruled.enClass, init.getClass());
        std::cout << departuresBlock(withEnValues(departures, ruled.checks, ruled.enClass), rules);
        if (o.trace && rules == design::Rules::En)
            std::cout << traceText(ruled.enTrace) << "\nthe library's calculation" << traceText(design::traceCrossSection(request, outcome)) << '\n';
        else if (o.trace)
            std::cout << traceText(design::traceCrossSection(request, outcome)) << "\nthe EN 1993-1-1 evaluation" << traceText(ruled.enTrace) << '\n';
        if (rules == design::Rules::En) std::cout << verdictLine(ruled.enVerdict, ruled.enLimitations);
        else std::cout << verdictLine(verdict, outcome.limitations);
    }
    if (!o.html.empty())
        writeMemberReport("--html", o.html, reportHeaderOf(result.commandLine, o.block.resolve(), o.standard, rules),
                          std::move(section), steel, {nullptr, nullptr, forces, o.gammaM0.value_or(0.0), o.elastic},
                          std::nullopt);
    result.exitCode = design::exitCodeOf(rules == design::Rules::En ? ruled.enVerdict : verdict);
}

} // namespace

void registerCheckCommand(CLI::App& app, CommandResult& result)
{
    auto options = std::make_shared<CheckOptions>();
    CLI::App* sub = app.add_subcommand("check", "cross-section resistance to EN 1993-1-1 6.2 (exit 0 fulfilled, 1 not, 3 not verified)");
    sub->add_option("NAME", options->name, "catalogue designation or dimensions, e.g. \"IPE 300\", \"WI 1200x300x8x20\"")->required();
    options->steel.addTo(*sub);
    options->forces.addTo(*sub);
    addNumber(*sub, "--gamma-m0", options->gammaM0, "partial factor gammaM0 (default: from the standard mode)");
    options->standard.addTo(*sub);
    options->rules.addTo(*sub);
    sub->add_flag("--elastic", options->elastic, "elastic verification: class 3 without classification");
    sub->add_flag("--json", options->json, "machine-readable output (SI units: m, kN, kNm, kN/m2)");
    sub->add_option("--html", options->html, "also write the design report of the check to this HTML file");
    options->block.addTo(*sub);
    sub->add_flag("--trace", options->trace, "print the calculation: each step with its clause, formula and numbers");
    sub->callback([options, &result] { run(*options, result); });
}

} // namespace cli
