#include "MemberInput.h"

#include "AngleBending.h"
#include "NumberInput.h"
#include "TraceSheet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace design {

namespace {

// "M1,Mm,M2": three finite numbers; empty text gives the uniform moment.
std::vector<double> parseMoments(const std::string& option, const std::string& text, double uniform)
{
    if (text.empty()) return {uniform, uniform, uniform};
    std::vector<double> values;
    std::size_t start = 0;
    while (true) {
        const std::size_t comma = text.find(',', start);
        const std::string item = text.substr(start, comma == std::string::npos ? std::string::npos : comma - start);
        double value = 0.0;
        if (readNumber(item, value) != NumberProblem::None)
            throw InputError(option + ": expected three numbers M1,Mm,M2 in kNm, got '" + text + "'");
        values.push_back(value);
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    if (values.size() != 3)
        throw InputError(option + ": expected three numbers M1,Mm,M2 in kNm, got '" + text + "'");
    return values;
}

SteelDesign::MomentDiagram parseDiagram(const std::string& option, const std::string& text)
{
    if (text == "polygonal") return SteelDesign::MomentDiagram::Polygonal;
    if (text == "parabolic") return SteelDesign::MomentDiagram::Parabolic;
    throw InputError(option + ": unknown moment diagram '" + text + "' (polygonal, parabolic)");
}

SteelDesign::ApplicationPoint parseLoadPoint(const std::string& text)
{
    if (text == "center") return SteelDesign::ApplicationPoint::Center;
    if (text == "top") return SteelDesign::ApplicationPoint::Top;
    if (text == "bottom") return SteelDesign::ApplicationPoint::Bottom;
    throw InputError("--load-point: unknown load application point '" + text + "' (center, top, bottom)");
}

void requireNonNegative(const char* option, double value)
{
    if (value < 0.0) throw InputError(std::string(option) + ": must not be negative, got " + shortestText(value));
}

void requireLength(const char* option, std::optional<double> value)
{
    if (const char* problem = value ? lengthProblem(*value) : nullptr)
        throw InputError(std::string(option) + ": " + problem + ", got " + shortestText(*value));
}

} // namespace

SteelDesign::Forces ForceInput::toForces(const SDBSection& section) const
{
    return legAxes ? legForcesToPrincipal(section, toForces()) : toForces();
}

BucklingLengths MemberInput::lengths() const
{
    return resolveLengths(length, lengthY, lengthZ, lengthLT);
}

MemberRequest MemberInput::toRequest(SDBSection* section, KaConstrSteel* steel) const
{
    standard.apply();
    requireLength("--length", length);
    requireLength("--lcr-y", lengthY);
    requireLength("--lcr-z", lengthZ);
    requireLength("--l-lt", lengthLT);
    requireLength("--lcr-t", lengthT);
    if (!(gammaM1 > 0.0)) throw InputError("--gamma-m1: must be positive, got " + shortestText(gammaM1));
    requireNonNegative("--mcr", mcr);
    requireNonNegative("--c-theta", cTheta);
    requireNonNegative("--shear-panel", shearPanel);
    const SteelDesign::Forces f = forces.toForces(*section);
    std::vector<double> valuesY = parseMoments("--moments-y", momentsY, forces.My);
    std::vector<double> valuesZ = parseMoments("--moments-z", momentsZ, forces.Mz);
    if (forces.legAxes) {
        // The diagrams about the legs turned into u and v point by point: the shapes must agree.
        const bool bothBent = std::any_of(valuesY.begin(), valuesY.end(), [](double m) { return m != 0.0; }) &&
                              std::any_of(valuesZ.begin(), valuesZ.end(), [](double m) { return m != 0.0; });
        if (bothBent && diagramY != diagramZ)
            throw InputError("--leg-axes: the moment diagrams about y and z must have the same shape to be turned into "
                             "the principal axes, got " + diagramY + " and " + diagramZ);
        if (maxMoment) throw InputError("--leg-axes: --max-moment is about the principal axis u; give the diagrams instead");
        std::array<double, 3> y{valuesY[0], valuesY[1], valuesY[2]}, z{valuesZ[0], valuesZ[1], valuesZ[2]};
        legMomentsToPrincipal(*section, y, z);
        valuesY.assign(y.begin(), y.end());
        valuesZ.assign(z.begin(), z.end());
    }
    MemberRequest request;
    request.section = section;
    request.steel = steel;
    request.forces = f;
    request.moments = makeMoments({valuesY[0], valuesY[1], valuesY[2]}, parseDiagram("--diagram-y", diagramY),
                                  {valuesZ[0], valuesZ[1], valuesZ[2]}, parseDiagram("--diagram-z", diagramZ),
                                  maxMoment, parseLoadPoint(loadPoint), mcr);
    request.lengths = lengths();
    if (mcrMethod != "tables" && mcrMethod != "numerical")
        throw InputError("--mcr-method: '" + mcrMethod + "' is not one of tables, numerical");
    if (mcrMethod == "numerical" && mcr != 0.0)
        throw InputError("--mcr-method: numerical computes Mcr; it cannot be combined with --mcr");
    request.mcrMethod = mcrMethod == "numerical" ? McrMethod::Numerical : McrMethod::Tables;
    request.gammaM1 = gammaM1;
    request.cTheta = cTheta;
    request.shearPanel = shearPanel;
    request.method = rolledMethod    ? LateralTorsionalMethod::Rolled
                     : generalMethod ? LateralTorsionalMethod::General
                                     : LateralTorsionalMethod::Automatic;
    request.torsionallyDeformable = torsionallyDeformable;
    request.twistRestrained = twistRestrained;
    request.lengthT = lengthT.value_or(0.0);
    request.cmFloor = cmFloor;
    return request;
}

} // namespace design
