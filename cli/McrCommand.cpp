// `steeldesign mcr NAME --length L [moment diagram] [transverse loads] [supports] [restraints] [--json]`:
// the elastic critical moment Mcr of lateral-torsional buckling by a finite-element eigenvalue analysis
// of the member (design/CriticalMomentSolver.h, docs/mcr.md), with the equivalent C1 (Mcr over Mcr of
// a uniform moment on the same member) and the buckled shape.
// Exit code 0 when Mcr was found, 2 for bad input, 3 when the analysis found none (a mechanism, or no
// moment that buckles the member).

#include "Commands.h"
#include "Options.h"

#include <design/CriticalMomentSolver.h>
#include <design/SectionNotation.h>
#include <report/ResultJson.h>
#include <report/ResultText.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace cli {

using namespace report;

namespace {

using namespace design;


// The buckled shape as text: the lateral displacement v and the twist phi along the member, each a row of
// bars scaled to its largest magnitude.
std::string shapePlot(const CriticalMomentResult& r)
{
    if (r.x.empty()) return "";
    constexpr int columns = 41;
    auto row = [&](const std::vector<double>& values, const char* label) {
        double largest = 0.0;
        for (double v : values) largest = std::max(largest, std::fabs(v));
        std::string line = std::string("  ") + label + " ";
        const char* levels = " .:-=+*#%@";
        for (int c = 0; c < columns; ++c) {
            const double x = r.x.front() + (r.x.back() - r.x.front()) * c / (columns - 1);
            std::size_t i = 1;
            while (i + 1 < r.x.size() && r.x[i] < x) ++i;
            const double t = r.x[i] > r.x[i - 1] ? (x - r.x[i - 1]) / (r.x[i] - r.x[i - 1]) : 0.0;
            const double v = values[i - 1] + t * (values[i] - values[i - 1]);
            const int level = largest > 0.0 ? static_cast<int>(std::lround(9.0 * std::fabs(v) / largest)) : 0;
            line += levels[std::clamp(level, 0, 9)];
        }
        return line + "\n";
    };
    return "buckled shape (magnitude along the member, start to end):\n" + row(r.v, "v  ") + row(r.phi, "phi");
}

} // namespace

namespace {

struct McrCommandOptions : design::McrOptions {
    bool json = false;
};

void run(const McrCommandOptions& o, CommandResult& result)
{
    const auto section = design::resolveSection(o.name);
    const CriticalMomentInput input = design::mcrInput(o, *section);
    const CriticalMomentResult r = criticalMoment(input);
    if (o.json) {
        std::cout << mcrJson(*section, o.length, r).dump(2) << '\n';
    } else {
        std::cout << "Elastic critical moment by finite elements (thin-walled beam, v, v', phi, phi')\n"
                  << "section " << section->getName() << ", length L = " << number(o.length, 3) << " m, "
                  << r.elements << " elements, ends: " << o.start << " / " << o.end << "\n";
        if (!r.ok) {
            std::cout << "no critical moment: " << r.reason << "\n";
        } else {
            std::cout << "  Mmax        " << number(r.mMax, 2) << " kNm (the largest moment of the diagram)\n"
                      << "  lambda      " << number(r.lambda, 4) << "\n"
                      << "  Mcr         " << number(r.mcr, 2) << " kNm\n";
            if (r.c1 > 0.0)
                std::cout << "  C1          " << number(r.c1, 3) << " (Mcr / Mcr of uniform moment = "
                          << number(r.mcrUniform, 2) << " kNm)\n";
            std::cout << shapePlot(r);
        }
    }
    result.exitCode = r.ok ? exitFulfilled : exitNotVerified;
}

} // namespace

void registerMcrCommand(CLI::App& app, CommandResult& result)
{
    auto o = std::make_shared<McrCommandOptions>();
    CLI::App* sub = app.add_subcommand(
        "mcr", "elastic critical moment by a finite-element eigenvalue analysis (exit 0 found, 2 bad input, 3 none)");
    sub->add_option("NAME", o->name, "catalogue designation or dimensions, e.g. \"IPE 300\"")->required();
    addNumber(*sub, "--length", o->length, "member length L in m")->required();
    sub->add_option("--moments-y", o->momentsY, "moments about y at start, middle, end, \"M1,Mm,M2\" in kNm");
    sub->add_option("--diagram-y", o->diagramY, "shape through the three moments: polygonal or parabolic")
        ->capture_default_str();
    sub->add_option("--stations", o->stations, "moment diagram as \"x:M,x:M,...\" (m, kNm) from 0 to L");
    addNumber(*sub, "--uniform-load", o->q, "uniform transverse load q in kN/m (positive downwards)");
    sub->add_option("--point-load", o->pointLoads, "point load \"x:P\" (m, kN, positive downwards); repeatable");
    sub->add_option("--load-height", o->loadHeight,
                    "where the transverse loads act: center (shear centre), top, bottom, or mm from the shear "
                    "centre (negative above)")
        ->capture_default_str();
    sub->add_option("--start", o->start, "start support: fork, warping-fixed, lateral-fixed, fixed, free")
        ->capture_default_str();
    sub->add_option("--end", o->end, "end support: fork, warping-fixed, lateral-fixed, fixed, free")->capture_default_str();
    sub->add_option("--lateral-restraint", o->lateralRestraints, "lateral restraint at x (m), \"x\" or \"x@top\"; repeatable");
    addNumber(*sub, "--torsional-restraint", o->torsionalRestraints, "torsional restraint at x (m); repeatable");
    addNumber(*sub, "--c-theta", o->cTheta, "continuous torsional restraint in kNm/m per m");
    sub->add_option("--elements", o->elements, "finite elements over the length")->capture_default_str();
    sub->add_flag("--json", o->json, "machine-readable output (SI units)");
    sub->callback([o, &result] { run(*o, result); });
}

} // namespace cli
