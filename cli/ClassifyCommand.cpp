// `steeldesign classify NAME --steel GRADE [--N --My --Mz] [--elastic] [--json]`: the cross-section class
// under the given actions (EN 1993-1-1 Table 5.2), plate by plate, with fy, epsilon, the buckling curves
// and the web height.

#include "Commands.h"
#include "Options.h"

#include <design/EnCrossSection.h>
#include <design/EnEvaluation.h>
#include <design/PlateClassification.h>
#include <design/SectionNotation.h>
#include <report/ResultJson.h>
#include <report/ResultText.h>

#include <KaMaterial.h>
#include <SteelDesign/SectionInitializer.h>

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
#include <iostream>

namespace cli {

using namespace report;

namespace {

struct ClassifyOptions {
    std::string name;
    SteelOption steel;
    ForceOptions forces;
    bool elastic = false;
    bool json = false;
    RulesOption rules;
};

void run(const ClassifyOptions& o, CommandResult& result)
{
    using namespace SteelDesign;
    auto section = design::resolveSection(o.name);
    KaConstrSteel steel = o.steel.resolve();
    const Forces forces = o.forces.toForces(*section);
    const VerificationControl control = o.elastic ? VerificationControl::Elastic : VerificationControl::Classify;
    const SectionInitializer init(section.get(), &steel, forces, control, false);
    const double fy = init.getFy();
    const double epsilon = fy > 0.0 ? std::sqrt(235000.0 / fy) : 0.0;
    const design::Rules rules = o.rules.resolve();
    const auto rows = design::classifyPlates(*section, steel, forces, !o.elastic);
    // The class by EN 1993-1-1 Table 5.2 (plastic alpha for classes 1 and 2, elastic psi for class 3, no
    // 5.5.2(11)), with its plate lines from the EN evaluation's trace.
    design::EnCrossSection en;
    std::vector<design::TraceLine> enTrace;
    design::evaluateEnCrossSection({section.get(), &steel, forces, 0.0, o.elastic}, design::resolveGammaM0(0.0), en,
                                   &enTrace);
    std::erase_if(enTrace, [](const design::TraceLine& t) { return t.check != "classification"; });
    const int cls = rules == design::Rules::En ? en.sectionClass : init.getClass();

    if (o.json) {
        nlohmann::json parts = nlohmann::json::array();
        for (const design::PlateClass& r : rows) {
            parts.push_back({{"kind", r.kind},
                             {"c", r.c},
                             {"t", r.t},
                             {"alpha", r.alpha},
                             {"psi", r.psi ? nlohmann::json(r.psi.value()) : nlohmann::json(nullptr)},
                             {"class", r.cls ? nlohmann::json(r.cls.value()) : nlohmann::json(nullptr)}});
        }
        nlohmann::json out = {{"section", section->getName()},
                              {"steel", steel.getName()},
                              {"rules", design::toString(rules)},
                              {"class", cls},
                              {"enClass", en.sectionClass},
                              {"libraryClass", init.getClass()},
                              {"enClassification", traceJson(enTrace)},
                              {"fy", fy},
                              {"epsilon", epsilon},
                              {"curveY", curveJson(init.getCompressionBucklingCurveAxisY())},
                              {"curveZ", curveJson(init.getCompressionBucklingCurveAxisZ())},
                              {"curveLT", curveJson(init.getBendingBucklingCurve())},
                              {"hw", init.getHw()},
                              {"parts", parts}};
        std::cout << out.dump(2) << '\n';
    } else {
        std::cout << design::thicknessWarnings(init.getThicknessVector());
        std::cout << section->getName() << ", " << steel.getName() << "\n"
                  << "actions: " << describeForces(forces) << "\n"
                  << "fy = " << number(fy / 1000.0, 0) << " N/mm2, epsilon = " << number(epsilon, 3) << "\n\n";
        if (!rows.empty()) {
            std::cout << "plate        c [mm]   t [mm]     c/t   alpha     psi  class\n";
            for (const design::PlateClass& r : rows) {
                char line[160];
                std::snprintf(line, sizeof line, "%-9s %9.1f %8.1f %7.2f %7.3f %7s  %5s\n", r.kind, r.c * 1000.0, r.t * 1000.0,
                            r.t != 0.0 ? r.c / r.t : 0.0, r.alpha, r.psi ? number(r.psi.value(), 3).c_str() : "-",
                            r.cls ? std::to_string(r.cls.value()).c_str() : "-");
                std::cout << line;
            }
            std::cout << '\n';
        }
        std::cout << "the library's plates above; EN 1993-1-1 Table 5.2:" << traceText(enTrace) << '\n';
        std::cout << "section class: " << cls
                  << (o.elastic ? " (elastic verification: class 3 assumed, not classified)" : "");
        if (en.sectionClass != init.getClass())
            std::cout << (rules == design::Rules::En ? " (library: class " : " (EN 1993-1-1: class ")
                      << (rules == design::Rules::En ? init.getClass() : en.sectionClass) << ")";
        std::cout << (rules == design::Rules::En ? ", by EN 1993-1-1" : ", by the library's rules") << "\n"
                  << "buckling curves (Table 6.2 / 6.4): y-y " << curveText(init.getCompressionBucklingCurveAxisY())
                  << ", z-z " << curveText(init.getCompressionBucklingCurveAxisZ()) << ", lateral-torsional "
                  << curveText(init.getBendingBucklingCurve()) << "\n"
                  << "web height hw = " << number(init.getHw() * 1000.0, 1) << " mm\n";
    }
    result.exitCode = exitFulfilled;
}

} // namespace

void registerClassifyCommand(CLI::App& app, CommandResult& result)
{
    auto options = std::make_shared<ClassifyOptions>();
    CLI::App* sub = app.add_subcommand("classify", "cross-section class to EN 1993-1-1 Table 5.2, plate by plate");
    sub->add_option("NAME", options->name, "catalogue designation, e.g. \"IPE 300\"")->required();
    options->steel.addTo(*sub);
    options->forces.addTo(*sub);
    sub->add_flag("--elastic", options->elastic, "elastic verification: class 3 without classification");
    sub->add_flag("--json", options->json, "machine-readable output (SI units: m, kN/m2)");
    options->rules.addTo(*sub);
    sub->callback([options, &result] { run(*options, result); });
}

} // namespace cli
