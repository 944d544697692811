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

#include <design/Departures.h>
#include <design/EnEvaluation.h>
#include <design/MemberDesign.h>
#include "Options.h"
#include "Report.h"
#include "HtmlReport.h"
#include "OutputFile.h"
#include "ResultJson.h"

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
    bool trace = false;
};

nlohmann::json finiteOrNull(double value) { return std::isfinite(value) ? nlohmann::json(value) : nlohmann::json(nullptr); }

std::string valueText(const kat::Nullable<double>& v, int decimals)
{
    if (!v.hasValue()) return "-";
    if (std::isinf(v.value())) return v.value() > 0 ? "inf" : "-inf";
    if (std::isnan(v.value())) return "nan";
    return number(v.value(), decimals);
}

constexpr U allTypes[] = {U::CompressionAxisY,        U::CompressionAxisZ,        U::Compression,
                          U::BendingAxisY,            U::BendingAxisZ,            U::Bending,
                          U::CompressionBendingAxisY, U::CompressionBendingAxisZ, U::CompressionBending};

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

// What the member checks ran and what they show, for the JSON and the text alike.
struct Shown {
    const BucklingResults& r;
    bool notApplicable, unverified61, flexural, lateralTorsional, interaction;
    explicit Shown(const design::MemberOutcome& outcome)
        : r(outcome.results),
          // Nothing to verify: no utilization and nothing left out.
          notApplicable(!outcome.anyComputed && outcome.limitations == 0),
          unverified61((outcome.limitations & design::InteractionNeedsRolledMethod) != 0),
          flexural(r.getChi(Axis::y).hasValue()),
          lateralTorsional(r.getBucklingCurveBending().hasValue()),
          interaction(r.getUtilization(U::CompressionBendingAxisY).hasValue())
    {
    }
    // A utilization as shown: (6.61) is left out when it could not be verified.
    kat::Nullable<double> utilization(U type) const
    {
        if (unverified61 && (type == U::CompressionBendingAxisY || type == U::CompressionBending)) return {};
        return r.getUtilization(type);
    }
};

} // namespace

nlohmann::json memberJson(const SDBSection& section, const KaConstrSteel& steel, const design::MemberRequest& request,
                          const design::MemberOutcome& outcome, const design::Departures& departures)
{
    const Shown shown(outcome);
    const BucklingResults& r = outcome.results;
    const design::BucklingLengths& lengths = request.lengths;
    const double fy = outcome.initializer.getFy();
    const bool notApplicable = shown.notApplicable, flexural = shown.flexural;
    const bool lateralTorsional = shown.lateralTorsional, interaction = shown.interaction;
    auto axes = [](double y, double z) { return nlohmann::json{{"y", finiteOrNull(y)}, {"z", finiteOrNull(z)}}; };
    auto nullAxes = nlohmann::json{{"y", nullptr}, {"z", nullptr}};
    auto opt = [](const kat::Nullable<double>& v) {
        return v.hasValue() ? finiteOrNull(v.value()) : nlohmann::json(nullptr);
    };
    nlohmann::json utilizations = nlohmann::json::object();
    for (U type : allTypes) utilizations[toString(type)] = opt(shown.utilization(type));
    nlohmann::json out = {
        {"section", section.getName()},
        {"steel", steel.getName()},
        {"fy", fy},
        {"length",
         {{"y", lengths.y}, {"z", lengths.z}, {"LT", lengths.lateralTorsional}}},
        {"lateralTorsionalMethod", outcome.rolledMethod ? "6.3.2.3" : "6.3.2.2"},
        {"mcrMethod", design::toString(request.mcrMethod)},
        {"gammaM1", request.gammaM1},
        {"class", r.getClass()},
        {"errorCode", static_cast<int>(r.getErrorCode())},
        {"shearBucklingErrorCode", static_cast<int>(r.getShearBucklingErrorCode())},
        {"utilizations", utilizations},
        {"fulfilled", notApplicable ? nlohmann::json(nullptr)
                                    : nlohmann::json(outcome.verdict == design::Verdict::Fulfilled)},
        {"verdict", notApplicable ? "not applicable" : design::toString(outcome.verdict)},
        {"notVerified", outcome.limitations ? nlohmann::json(design::describeAll(outcome.limitations))
                                            : nlohmann::json(nullptr)},
        {"departures", departuresJson(departures)},
        {"trace", traceJson(design::traceMember(request, outcome))},
        {"Ncr", flexural ? axes(r.getNcr(Axis::y), r.getNcr(Axis::z)) : nullAxes},
        {"lambda", flexural ? axes(r.getLambda(Axis::y), r.getLambda(Axis::z)) : nullAxes},
        {"chi", {{"y", opt(r.getChi(Axis::y))}, {"z", opt(r.getChi(Axis::z))}}},
        {"curve",
         {{"y", flexural ? curveJson(r.getBucklingCurveCompression(Axis::y).value()) : nlohmann::json(nullptr)},
          {"z", flexural ? curveJson(r.getBucklingCurveCompression(Axis::z).value()) : nlohmann::json(nullptr)}}},
        {"NRk", flexural ? finiteOrNull(r.getNRk()) : nlohmann::json(nullptr)},
        {"NbRd",
         {{"y", opt(r.getBucklingResistance(U::CompressionAxisY))},
          {"z", opt(r.getBucklingResistance(U::CompressionAxisZ))}}},
        {"lambdaW", opt(r.getLambdaW())},
        {"chiW", opt(r.getChiW())},
        {"VbRd", {{"Web", opt(r.getVbRd(P::Web))}, {"Flange", opt(r.getVbRd(P::Flange))}, {"Total", opt(r.getVbRd(P::Total))}}},
        {"utilizationShearBuckling", opt(r.getUtilizationShearBuckling())},
        {"Mcr", lateralTorsional ? finiteOrNull(r.getCriticalMoment()) : nlohmann::json(nullptr)},
        {"zp", lateralTorsional ? finiteOrNull(r.getZp()) : nlohmann::json(nullptr)},
        {"lambdaLT", lateralTorsional ? finiteOrNull(r.getLambdaLT()) : nlohmann::json(nullptr)},
        {"lambdaLT0", r.getChiLT().hasValue() ? finiteOrNull(r.getLambdaLT0()) : nlohmann::json(nullptr)},
        {"beta", r.getChiLT().hasValue() ? finiteOrNull(r.getBeta()) : nlohmann::json(nullptr)},
        {"curveLT", lateralTorsional ? curveJson(r.getBucklingCurveBending().value()) : nlohmann::json(nullptr)},
        {"chiLT", opt(r.getChiLT())},
        {"chiLTmod", opt(r.getChiLTmod())},
        {"correctionFactor", opt(r.getCorrectionFactor())},
        {"reduceFactor", opt(r.getReduceFactor())},
        {"MbRd", opt(r.getBucklingResistance(U::Bending))},
        {"Cm", interaction ? axes(r.getCm(Axis::y), r.getCm(Axis::z)) : nullAxes},
        {"k",
         interaction ? nlohmann::json{{"kyy", r.getInteractionFactor(K::kyy)},
                                      {"kzz", r.getInteractionFactor(K::kzz)},
                                      {"kyz", r.getInteractionFactor(K::kyz)},
                                      {"kzy", r.getInteractionFactor(K::kzy)}}
                     : nlohmann::json{{"kyy", nullptr}, {"kzz", nullptr}, {"kyz", nullptr}, {"kzy", nullptr}}},
    };
    return out;
}

namespace {

// The EN 1993-1-1 evaluation of the member checks beside the library's.
struct MemberRuled {
    RuledResult ruled;
    bool notApplicable = false;  // under EN rules: no member check applies to these actions
};

MemberRuled memberRuled(const design::MemberRequest& request, const design::MemberOutcome& outcome,
                        design::Rules rules, bool withTrace)
{
    const design::CrossSectionRequest cross{request.section, request.steel, request.forces, 0.0, request.elastic};
    design::EnEvaluation en;
    design::EnTraces traces;
    design::evaluateEn(cross, design::resolveGammaM0(0.0), &request, outcome.numericalMcr, en,
                       withTrace ? &traces : nullptr);
    MemberRuled m;
    RuledResult& r = m.ruled;
    r.rules = rules;
    r.enClass = en.member.sectionClass;
    r.enVerdict = design::memberVerdict(en.member);
    r.enLimitations = en.member.limitations;
    r.enTrace = std::move(traces.member);
    const auto& names = design::utilizationNames();
    const auto library = design::memberSummary(outcome);
    bool any = false;
    for (std::size_t i = 0; i < 4; ++i) {
        r.checks.push_back({names[7 + i], en.member.utilization[i], library[i]});
        any = any || en.member.utilization[i].hasValue();
    }
    m.notApplicable = !any && en.member.limitations == 0;
    return m;
}

} // namespace

nlohmann::json memberJson(const SDBSection& section, const KaConstrSteel& steel, const design::MemberRequest& request,
                          const design::MemberOutcome& outcome, const design::Departures& departures,
                          design::Rules rules)
{
    const MemberRuled m = memberRuled(request, outcome, rules, true);
    nlohmann::json out = ruledJson(memberJson(section, steel, request, outcome, departures), m.ruled, departures);
    if (rules == design::Rules::En && m.notApplicable) {
        out["verdict"] = "not applicable";
        out["fulfilled"] = nullptr;
    }
    return out;
}

namespace {

void run(const MemberCommandOptions& options, CommandResult& result)
{
    // Everything from outside is validated before anything is computed or printed.
    auto section = lookupSection(options.name);
    KaConstrSteel steel = options.steel.resolve();
    const MemberOptions& o = options.member;
    if (!o.memberChecked())
        throw InputError("--length: a positive buckling length is needed (--length, or --lcr-y / --lcr-z / --l-lt)");
    if (!options.html.empty()) checkOutputPath("--html", options.html, "");
    const design::MemberRequest request = o.toRequest(section.get(), &steel);
    const Forces& forces = request.forces;
    const design::MemberOutcome outcome = design::evaluateMember(request);  // the same evaluation as `batch`
    const SectionInitializer& init = outcome.initializer;
    const BucklingResults& r = outcome.results;
    const design::BucklingLengths& lengths = request.lengths;
    const design::Departures departures = design::findDepartures(request, outcome);
    const Shown shown(outcome);
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
    const MemberRuled m = memberRuled(request, outcome, rules, options.trace);
    const RuledResult& ruled = m.ruled;

    if (options.json) {
        std::cout << memberJson(*section, steel, request, outcome, departures, rules).dump(2) << '\n';
    } else {
        auto line = [](const std::string& name, const std::string& value, const char* unit) {
            std::cout << "  " << name << std::string(name.size() < 12 ? 12 - name.size() : 1, ' ') << value
                      << (*unit ? " " : "") << unit << '\n';
        };
        std::cout << thicknessWarnings(init.getThicknessVector());
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
        for (U type : allTypes) {
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
                          "steeldesign member " + options.name + " --steel " + steel.getName() + " (" +
                              describeForces(forces) + "): member checks and the cross-section check at the same point",
                          std::move(section), steel, {nullptr, nullptr, forces, 0.0, request.elastic}, request, rules);
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
    sub->add_flag("--trace", options->trace, "print the calculation: each step with its clause, formula and numbers");
    sub->callback([options, &result] { run(*options, result); });
}

} // namespace cli
