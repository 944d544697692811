// `steeldesign mcr NAME --length L [moment diagram] [transverse loads] [supports] [restraints] [--json]`:
// the elastic critical moment Mcr of lateral-torsional buckling by a finite-element eigenvalue analysis
// of the member (design/CriticalMomentSolver.h, docs/mcr.md), with the equivalent C1 (Mcr over Mcr of
// a uniform moment on the same member) and the buckled shape.
// Exit code 0 when Mcr was found, 2 for bad input, 3 when the analysis found none (a mechanism, or no
// moment that buckles the member).

#include "Commands.h"
#include "Options.h"
#include "Report.h"
#include "ResultJson.h"

#include <design/CriticalMomentSolver.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace cli {

namespace {

using namespace design;


double parseNumber(const std::string& option, const std::string& text)
{
    char* stop = nullptr;
    const double v = std::strtod(text.c_str(), &stop);
    if (text.empty() || stop == text.c_str() || *stop != '\0' || !std::isfinite(v))
        throw InputError(option + ": '" + text + "' is not a number");
    return v;
}

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t at = text.find(separator, start);
        parts.push_back(text.substr(start, at == std::string::npos ? std::string::npos : at - start));
        if (at == std::string::npos) return parts;
        start = at + 1;
    }
}

// center, top, bottom, or a distance in mm from the shear centre (z down: negative above it).
McrLevel parseLevel(const std::string& option, const std::string& text)
{
    if (text == "center" || text == "shear-centre" || text == "shear-center") return {McrHeight::ShearCentre, 0.0};
    if (text == "top") return {McrHeight::TopFlange, 0.0};
    if (text == "bottom") return {McrHeight::BottomFlange, 0.0};
    return {McrHeight::Distance, parseNumber(option, text) / 1000.0};
}

McrEnd parseEnd(const std::string& option, const std::string& text)
{
    if (text == "fork") return McrEnd::fork();
    if (text == "warping-fixed") return McrEnd::forkWarpingFixed();
    if (text == "lateral-fixed") return McrEnd::forkLateralBendingFixed();
    if (text == "fixed") return McrEnd::fixed();
    if (text == "free") return McrEnd::free();
    throw InputError(option + ": unknown end condition '" + text + "' (fork, warping-fixed, lateral-fixed, fixed, free)");
}

void requirePosition(const std::string& option, double x, double length)
{
    if (x < 0.0 || x > length)
        throw InputError(option + ": position " + number(x, 3) + " m is outside the member (0 to " + number(length, 3) +
                         " m)");
}

CriticalMomentInput buildInput(const McrOptions& o, const SDBSection& section)
{
    if (!(o.length > 0.0)) throw InputError("--length: must be positive, got " + number(o.length, 4));
    if (o.elements < 4 || o.elements > 400) throw InputError("--elements: 4 to 400, got " + std::to_string(o.elements));
    if (o.cTheta < 0.0) throw InputError("--c-theta: must not be negative, got " + number(o.cTheta, 4));
    CriticalMomentInput in;
    in.section = mcrSection(section);
    if (!(in.section.Iz > 0.0) || !(in.section.It > 0.0))
        throw InputError("section: '" + section.getName() + "' has no Iz or It for lateral-torsional buckling");
    in.length = o.length;
    in.elements = o.elements;
    in.start = parseEnd("--start", o.start);
    in.end = parseEnd("--end", o.end);
    in.cTheta = o.cTheta;
    const McrLevel level = parseLevel("--load-height", o.loadHeight);
    in.q = o.q;
    in.qLevel = level;
    for (const std::string& text : o.pointLoads) {
        const auto parts = split(text, ':');
        if (parts.size() != 2) throw InputError("--point-load: expected x:P (m, kN), got '" + text + "'");
        McrPointLoad p{parseNumber("--point-load", parts[0]), parseNumber("--point-load", parts[1]), level};
        requirePosition("--point-load", p.x, o.length);
        in.pointLoads.push_back(p);
    }
    for (const std::string& text : o.lateralRestraints) {
        const auto parts = split(text, '@');
        if (parts.size() > 2) throw InputError("--lateral-restraint: expected x or x@height, got '" + text + "'");
        McrLateralRestraint r{parseNumber("--lateral-restraint", parts[0]),
                              parts.size() == 2 ? parseLevel("--lateral-restraint", parts[1]) : McrLevel{}};
        requirePosition("--lateral-restraint", r.x, o.length);
        in.lateralRestraints.push_back(r);
    }
    for (double x : o.torsionalRestraints) requirePosition("--torsional-restraint", x, o.length);
    in.torsionalRestraints = o.torsionalRestraints;

    const bool given = !o.momentsY.empty() || !o.stations.empty();
    if (!o.momentsY.empty() && !o.stations.empty())
        throw InputError("--stations: give either --moments-y or --stations, not both");
    if (!o.momentsY.empty()) {
        const auto parts = split(o.momentsY, ',');
        if (parts.size() != 3) throw InputError("--moments-y: expected three numbers M1,Mm,M2 in kNm, got '" + o.momentsY + "'");
        if (o.diagramY != "polygonal" && o.diagramY != "parabolic")
            throw InputError("--diagram-y: unknown moment diagram '" + o.diagramY + "' (polygonal, parabolic)");
        in.moments = McrMomentDiagram::threeValues(
            o.length, parseNumber("--moments-y", parts[0]), parseNumber("--moments-y", parts[1]),
            parseNumber("--moments-y", parts[2]),
            o.diagramY == "parabolic" ? McrMomentDiagram::Shape::Parabolic : McrMomentDiagram::Shape::Polygonal);
    } else if (!o.stations.empty()) {
        double last = -1.0;
        for (const std::string& text : split(o.stations, ',')) {
            const auto parts = split(text, ':');
            if (parts.size() != 2) throw InputError("--stations: expected x:M pairs (m, kNm), got '" + text + "'");
            McrStation s{parseNumber("--stations", parts[0]), parseNumber("--stations", parts[1])};
            requirePosition("--stations", s.x, o.length);
            if (s.x <= last) throw InputError("--stations: positions must increase, got '" + o.stations + "'");
            last = s.x;
            in.moments.stations.push_back(s);
        }
        if (in.moments.stations.front().x != 0.0 || in.moments.stations.back().x != o.length)
            throw InputError("--stations: the stations must start at 0 and end at the length");
    } else if (in.q == 0.0 && in.pointLoads.empty()) {
        throw InputError("--moments-y: give a moment diagram (--moments-y or --stations) or transverse loads "
                         "(--uniform-load, --point-load)");
    } else if (o.start == "fixed" && o.end == "free") {
        in.moments = cantileverMoments(o.length, in.q, in.pointLoads);
    }
    (void)given;
    return in;
}

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

nlohmann::json mcrJson(const SDBSection& section, double length, const design::CriticalMomentResult& r)
{
    nlohmann::json shape = nlohmann::json::array();
    for (std::size_t i = 0; i < r.x.size(); ++i) shape.push_back({{"x", r.x[i]}, {"v", r.v[i]}, {"phi", r.phi[i]}});
    nlohmann::json out = {{"section", section.getName()},
                                {"length", length},
                                {"ok", r.ok},
                                {"reason", r.ok ? nlohmann::json(nullptr) : nlohmann::json(r.reason)},
                                {"Mcr", r.ok ? nlohmann::json(r.mcr) : nlohmann::json(nullptr)},
                                {"lambda", r.ok ? nlohmann::json(r.lambda) : nlohmann::json(nullptr)},
                                {"Mmax", r.mMax},
                                {"C1", r.ok && r.c1 > 0.0 ? nlohmann::json(r.c1) : nlohmann::json(nullptr)},
                                {"McrUniform", r.mcrUniform > 0.0 ? nlohmann::json(r.mcrUniform) : nlohmann::json(nullptr)},
                                {"elements", r.elements},
                                {"shape", shape}};
    return out;
}

nlohmann::json mcrJson(const McrOptions& options)
{
    const auto section = lookupSection(options.name);
    return mcrJson(*section, options.length, criticalMoment(buildInput(options, *section)));
}

namespace {

struct McrCommandOptions : McrOptions {
    bool json = false;
};

void run(const McrCommandOptions& o, CommandResult& result)
{
    const auto section = lookupSection(o.name);
    const CriticalMomentInput input = buildInput(o, *section);
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
    sub->add_option("--length", o->length, "member length L in m")->required()->check(finiteNumber());
    sub->add_option("--moments-y", o->momentsY, "moments about y at start, middle, end, \"M1,Mm,M2\" in kNm");
    sub->add_option("--diagram-y", o->diagramY, "shape through the three moments: polygonal or parabolic")
        ->capture_default_str();
    sub->add_option("--stations", o->stations, "moment diagram as \"x:M,x:M,...\" (m, kNm) from 0 to L");
    sub->add_option("--uniform-load", o->q, "uniform transverse load q in kN/m (positive downwards)")
        ->check(finiteNumber());
    sub->add_option("--point-load", o->pointLoads, "point load \"x:P\" (m, kN, positive downwards); repeatable");
    sub->add_option("--load-height", o->loadHeight,
                    "where the transverse loads act: center (shear centre), top, bottom, or mm from the shear "
                    "centre (negative above)")
        ->capture_default_str();
    sub->add_option("--start", o->start, "start support: fork, warping-fixed, lateral-fixed, fixed, free")
        ->capture_default_str();
    sub->add_option("--end", o->end, "end support: fork, warping-fixed, lateral-fixed, fixed, free")->capture_default_str();
    sub->add_option("--lateral-restraint", o->lateralRestraints, "lateral restraint at x (m), \"x\" or \"x@top\"; repeatable");
    sub->add_option("--torsional-restraint", o->torsionalRestraints, "torsional restraint at x (m); repeatable")
        ->check(finiteNumber());
    sub->add_option("--c-theta", o->cTheta, "continuous torsional restraint in kNm/m per m")->check(finiteNumber());
    sub->add_option("--elements", o->elements, "finite elements over the length")->capture_default_str();
    sub->add_flag("--json", o->json, "machine-readable output (SI units)");
    sub->callback([o, &result] { run(*o, result); });
}

} // namespace cli
