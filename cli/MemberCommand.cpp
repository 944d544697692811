// `steeldesign member NAME --steel GRADE --length L | --lcr-y LY --lcr-z LZ --l-lt LLT [forces]
// [--gamma-m1 X] [moment diagram options] [--general-method] [--mode N] [--situation S] [--json]`: the
// member checks of EN 1993-1-1 6.3 (flexural buckling, lateral-torsional buckling, compression with
// bending) and shear buckling of the web (EN 1993-1-5 5).
//
// Verdict: fulfilled when every utilization the checks produced is at most 1.0 and nothing was left
// unverified; not fulfilled when one exceeds 1.0; not verified when the member check does not cover the
// actions (tension with bending, Mz without My, Mz with My but no compression), the section is class 4,
// or (6.61) lacks chiLT,mod because the general method was chosen. With no action that needs a member
// check (tension alone, shear alone) the command says so and exits 0 (JSON "verdict": "not applicable").
// The error code of an I or T section without My (6) is reported but does not fail the verdict: the
// flexural checks run regardless of it.
// Exit code 0 fulfilled (or nothing to verify), 1 not fulfilled, 2 bad input, 3 not verified.

#include "Commands.h"
#include "MemberOptions.h"
#include "Options.h"

#include <batch/OutputFile.h>
#include <design/Departures.h>
#include <design/EnEvaluation.h>
#include <design/MemberDesign.h>
#include <design/SectionNotation.h>
#include <report/HtmlReport.h>
#include <report/ResultJson.h>
#include <report/ResultText.h>

#include <KaMaterial.h>
#include <KaMath.h>
#include <SDBSection.h>
#include <SteelDesign/BucklingResistance.h>

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cli {

using namespace batch;
using namespace report;

namespace {

using namespace SteelDesign;
using U = BucklingResults::UtilizationType;
using P = BucklingResults::SectionParts;
using K = BucklingResults::InteractionFactorkxx;

struct MemberCommandOptions {
    std::string name;
    SteelOption steel;
    MemberOptions member;
    bool json = false;
    std::string html;
    TitleBlockOptions block;
    bool trace = false;
};

std::string valueText(const kat::Nullable<double>& v, int decimals)
{
    if (!v.hasValue()) return "-";
    if (std::isinf(v.value())) return v.value() > 0 ? "inf" : "-inf";
    if (std::isnan(v.value())) return "nan";
    return number(v.value(), decimals);
}

const char* describe(U type)
{
    switch (type) {
    case U::CompressionAxisY: return "flexural buckling about y, 6.3.1";
    case U::CompressionAxisZ: return "flexural buckling about z, 6.3.1";
    case U::Compression: return "flexural buckling, governing";
    case U::BendingAxisY: return "lateral-torsional buckling, 6.3.2";
    case U::BendingAxisZ: return "Mz over the major-axis Mb,Rd";
    case U::Bending: return "lateral-torsional buckling, governing";
    case U::CompressionBendingAxisY: return "compression and bending, (6.61)";
    case U::CompressionBendingAxisZ: return "compression and bending, (6.62)";
    case U::CompressionBending: return "compression and bending, governing";
    }
    return "";
}

} // namespace

namespace {

void run(const MemberCommandOptions& options, CommandResult& result)
{
    // Everything from outside is validated before anything is computed or printed.
    auto section = design::resolveSection(options.name);
    KaConstrSteel steel = options.steel.resolve();
    const MemberOptions& o = options.member;
    if (!o.memberChecked())
        throw InputError("--length: a positive buckling length is needed (--length, or --lcr-y / --lcr-z / --l-lt)");
    if (!options.html.empty()) checkOutputPath("--html", options.html, "");
    if (!options.html.empty()) (void)options.block.resolve();  // a bad title-block file stops the run before any output
    const design::MemberRequest request = o.toRequest(section.get(), &steel);
    const Forces& forces = request.forces;
    const design::MemberOutcome outcome = design::evaluateMember(request);  // the same evaluation as `batch`
    const SectionInitializer& init = outcome.initializer;
    const BucklingResults& r = outcome.results;
    const design::BucklingLengths& lengths = request.lengths;
    const design::Departures departures = design::findDepartures(request, outcome);
    const MemberShown shown(outcome);
    const bool notApplicable = shown.notApplicable, unverified61 = shown.unverified61, flexural = shown.flexural;
    const bool lateralTorsional = shown.lateralTorsional, interaction = shown.interaction;
    auto shownUtilization = [&](U type) { return shown.utilization(type); };
    const bool shearChecked = r.getShearBucklingErrorCode() == ErrorCode::NoError;
    const double fy = init.getFy();
    const double tw = init.getThicknessVector().empty() ? 0.0 : init.getThicknessVector()[0];
    const double hwtw = tw > 0.0 ? init.getHw() / tw : 0.0;
    const double eta = KaMath::isFuzzyGreater(fy, 460000.0, 1e-6) ? 1.0 : 1.2;
    const double limit = fy > 0.0 ? 72.0 * std::sqrt(235.0 / (fy / 1000.0)) / eta : 0.0;

    const design::Rules rules = o.rules.resolve();
    const design::MemberRuled m = design::memberRuled(request, outcome, rules, options.trace);
    const design::RuledResult& ruled = m.ruled;

    if (options.json) {
        std::cout << memberJson(*section, steel, request, outcome, departures, rules).dump(2) << '\n';
    } else {
        auto line = [](const std::string& name, const std::string& value, const char* unit) {
            std::cout << "  " << name << std::string(name.size() < 12 ? 12 - name.size() : 1, ' ') << value
                      << (*unit ? " " : "") << unit << '\n';
        };
        std::cout << design::thicknessWarnings(init.getThicknessVector());
        std::cout << "Member check to EN 1993-1-1 6.3 and EN 1993-1-5 5\n"
                  << "section " << section->getName() << ", steel " << steel.getName() << ", fy = "
                  << number(fy / 1000.0, 0) << " N/mm2, gammaM1 = " << number(o.gammaM1, 2)
                  << "\n"
                  << "buckling lengths: Lcr,y = " << number(lengths.y, 3) << " m, Lcr,z = " << number(lengths.z, 3)
                  << " m, LLT = " << number(lengths.lateralTorsional, 3) << " m\n"
                  << "actions: " << describeForces(forces) << "\n"
                  << "cross-section class: " << r.getClass() << "\n";
        if (flexural) {
            std::cout << "\nflexural buckling (6.3.1)\n";
            line("NRk", number(r.getNRk(), 2), "kN");
            for (Axis a : {Axis::y, Axis::z}) {
                const std::string s = a == Axis::y ? "y" : "z";
                const U type = a == Axis::y ? U::CompressionAxisY : U::CompressionAxisZ;
                std::cout << "  about " << s << ": Ncr = " << number(r.getNcr(a), 2)
                          << " kN, lambda = " << number(r.getLambda(a), 4)
                          << ", curve " << curveText(r.getBucklingCurveCompression(a).value())
                          << ", chi = " << valueText(r.getChi(a), 4)
                          << ", Nb,Rd = " << valueText(r.getBucklingResistance(type), 2)
                          << " kN, utilization " << valueText(r.getUtilization(type), 3) << "\n";
            }
        }
        if (lateralTorsional) {
            std::cout << "\nlateral-torsional buckling (6.3.2)\n";
            line("Mcr", number(r.getCriticalMoment(), 2),
                 outcome.numericalMcr > 0.0 ? "kNm (finite elements)"
                 : std::fabs(request.moments.getMcr()) >= 1e-6 ? "kNm (given)"
                                                                : "kNm (the library's moment coefficients)");
            line("zp", number(r.getZp() * 1000.0, 1), "mm");
            line("lambdaLT", number(r.getLambdaLT(), 4), "");
            line("curve", curveText(r.getBucklingCurveBending().value()), "");
            if (r.getChiLT().hasValue()) {
                line("lambdaLT,0", number(r.getLambdaLT0(), 2), "");
                line("beta", number(r.getBeta(), 2), "");
                line("chiLT", valueText(r.getChiLT(), 4), "");
                line("kc", valueText(r.getCorrectionFactor(), 4), "");
                line("f", valueText(r.getReduceFactor(), 4), "");
                line("chiLT,mod", valueText(r.getChiLTmod(), 4), "");
            } else {
                line("chiLT", "general case (6.56), not stored", "");
            }
            line("Mb,Rd", valueText(r.getBucklingResistance(U::Bending), 2), "kNm");
        }
        if (interaction) {
            std::cout << "\ncompression and bending ((6.61), (6.62), Annex B)\n";
            line("Cm,y", number(r.getCm(Axis::y), 3), "");
            line("Cm,z", number(r.getCm(Axis::z), 3), "");
            line("kyy", number(r.getInteractionFactor(K::kyy), 4), "");
            line("kyz", number(r.getInteractionFactor(K::kyz), 4), "");
            line("kzy", number(r.getInteractionFactor(K::kzy), 4), "");
            line("kzz", number(r.getInteractionFactor(K::kzz), 4), "");
            if (unverified61)
                line("(6.61)", "not verified: needs chiLT,mod of 6.3.2.3 (the general method was chosen)", "");
            else
                line("(6.61)", valueText(r.getUtilization(U::CompressionBendingAxisY), 3), "");
            line("(6.62)", valueText(r.getUtilization(U::CompressionBendingAxisZ), 3), "");
        }
        std::cout << "\nshear buckling of the web (EN 1993-1-5 5)\n";
        line("hw/tw", number(hwtw, 1) + " against 72 eps / eta = " + number(limit, 1), "");
        if (!shearChecked) {
            std::cout << "  not required\n";
        } else {
            line("lambdaW", valueText(r.getLambdaW(), 4), "");
            line("chiW", valueText(r.getChiW(), 4), "");
            line("Vbw,Rd", valueText(r.getVbRd(P::Web), 2), "kN");
            line("Vbf,Rd", valueText(r.getVbRd(P::Flange), 2), "kN");
            line("Vb,Rd", valueText(r.getVbRd(P::Total), 2), "kN");
            line("utilization", valueText(r.getUtilizationShearBuckling(), 3), "");
        }

        std::cout << "\nutilizations\n";
        for (U type : memberUtilizationTypes()) {
            const auto u = shownUtilization(type);
            if (!u.hasValue()) continue;
            char buffer[160];
            std::snprintf(buffer, sizeof buffer, "  %-24s %8s  %-13s %s\n", toString(type), valueText(u, 3).c_str(),
                          r.isFulfilled(type) ? "fulfilled" : "NOT FULFILLED", describe(type));
            std::cout << buffer;
        }
        if (r.getErrorCode() != ErrorCode::NoError)
            std::cout << "error code " << static_cast<int>(r.getErrorCode()) << ": "
                      << SteelDesign::describe(r.getErrorCode()) << " (the flexural checks run regardless)\n";
        std::cout << rulesBlock(rules, ruled.checks, ruled.enClass, r.getClass());
        std::cout << departuresBlock(withEnValues(departures, ruled.checks, ruled.enClass), rules);
        if (options.trace && rules == design::Rules::En)
            std::cout << traceText(ruled.enTrace) << "\nthe library's calculation" << traceText(design::traceMember(request, outcome)) << '\n';
        else if (options.trace)
            std::cout << traceText(design::traceMember(request, outcome)) << "\nthe EN 1993-1-1 evaluation" << traceText(ruled.enTrace) << '\n';
        const bool none = rules == design::Rules::En ? m.notApplicable : notApplicable;
        if (none)
            std::cout << "verdict: no member check applies to these actions (the member check covers compression, "
                         "bending and both together; tension alone is a cross-section check)\n";
        else if (rules == design::Rules::En)
            std::cout << verdictLine(ruled.enVerdict, ruled.enLimitations);
        else
            std::cout << verdictLine(outcome.verdict, outcome.limitations);
    }
    // The report of the member is that of a batch row with the same inputs: the member checks and the
    // cross-section check at the same point.
    if (!options.html.empty())
        writeMemberReport("--html", options.html,
                          reportHeaderOf(result.commandLine, options.block.resolve(), options.member.standard, rules),
                          std::move(section), steel, {nullptr, nullptr, forces, 0.0, request.elastic}, request);
    if (rules == design::Rules::En)
        result.exitCode = m.notApplicable ? exitFulfilled : design::exitCodeOf(ruled.enVerdict);
    else
        result.exitCode = notApplicable ? exitFulfilled : design::exitCodeOf(outcome.verdict);
}

} // namespace

void registerMemberCommand(CLI::App& app, CommandResult& result)
{
    auto options = std::make_shared<MemberCommandOptions>();
    CLI::App* sub = app.add_subcommand(
        "member", "member buckling to EN 1993-1-1 6.3 and shear buckling to EN 1993-1-5 (exit 0 fulfilled, 1 not, 3 not "
        "verified)");
    sub->add_option("NAME", options->name, "catalogue designation or dimensions, e.g. \"HEB 200\", \"WI 1500x400x10x25\"")
        ->required();
    options->steel.addTo(*sub);
    options->member.addTo(*sub);
    sub->add_flag("--json", options->json, "machine-readable output (SI units: m, kN, kNm, kN/m2)");
    sub->add_option("--html", options->html,
                    "also write the design report (member and cross-section checks) to this HTML file");
    options->block.addTo(*sub);
    sub->add_flag("--trace", options->trace, "print the calculation: each step with its clause, formula and numbers");
    sub->callback([options, &result] { run(*options, result); });
}

} // namespace cli
