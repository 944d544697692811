#include "CriticalMomentOptions.h"

#include "BucklingLengths.h"
#include "NumberInput.h"
#include "TraceSheet.h"

#include <cmath>

namespace design {

namespace {

double parseNumber(const std::string& option, const std::string& text) { return numberOf(option, text); }

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
        throw InputError(option + ": position " + tracetext::printed(x, 3) + " m is outside the member (0 to " + tracetext::printed(length, 3) +
                         " m)");
}

} // namespace

CriticalMomentInput mcrInput(const McrOptions& o, const SDBSection& section)
{
    if (!(o.length > 0.0)) throw InputError("--length: must be positive, got " + shortestText(o.length));
    if (const char* problem = lengthProblem(o.length))
        throw InputError(std::string("--length: ") + problem + ", got " + shortestText(o.length));
    if (o.elements < 4 || o.elements > 400) throw InputError("--elements: 4 to 400, got " + std::to_string(o.elements));
    if (o.cTheta < 0.0) throw InputError("--c-theta: must not be negative, got " + tracetext::printed(o.cTheta, 4));
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

} // namespace design
