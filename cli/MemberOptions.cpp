#include "MemberOptions.h"

#include "Report.h"

#include <cmath>
#include <cstdlib>
#include <vector>

namespace cli {

using namespace SteelDesign;

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
        char* end = nullptr;
        const double value = std::strtod(item.c_str(), &end);
        if (item.empty() || end == item.c_str() || *end != '\0' || !std::isfinite(value))
            throw InputError(option + ": expected three numbers M1,Mm,M2 in kNm, got '" + text + "'");
        values.push_back(value);
        if (comma == std::string::npos) break;
        start = comma + 1;
    }
    if (values.size() != 3)
        throw InputError(option + ": expected three numbers M1,Mm,M2 in kNm, got '" + text + "'");
    return values;
}

MomentDiagram parseDiagram(const std::string& option, const std::string& text)
{
    if (text == "polygonal") return MomentDiagram::Polygonal;
    if (text == "parabolic") return MomentDiagram::Parabolic;
    throw InputError(option + ": unknown moment diagram '" + text + "' (polygonal, parabolic)");
}

ApplicationPoint parseLoadPoint(const std::string& text)
{
    if (text == "center") return ApplicationPoint::Center;
    if (text == "top") return ApplicationPoint::Top;
    if (text == "bottom") return ApplicationPoint::Bottom;
    throw InputError("--load-point: unknown load application point '" + text + "' (center, top, bottom)");
}

void requireNonNegative(const char* option, double value)
{
    if (value < 0.0) throw InputError(std::string(option) + ": must not be negative, got " + number(value, 4));
}

} // namespace

void MemberOptions::addTo(CLI::App& app)
{
    app.add_option("--length", length, "buckling length L in m (about y, about z and lateral-torsional)")
        ->check(finiteNumber());
    app.add_option("--lcr-y", lengthY, "buckling length Lcr,y about y in m (default: --length)")->check(finiteNumber());
    app.add_option("--lcr-z", lengthZ, "buckling length Lcr,z about z in m (default: --length, else Lcr,y)")
        ->check(finiteNumber());
    app.add_option("--l-lt", lengthLT,
                   "lateral-torsional buckling length LLT in m, between lateral restraints (default: --length, "
                   "else Lcr,z)")
        ->check(finiteNumber());
    forces.addTo(app);
    app.add_option("--gamma-m1", gammaM1, "partial factor gammaM1")->capture_default_str()->check(finiteNumber());
    app.add_option("--moments-y", momentsY,
                   "moments about y at start, middle and end, \"M1,Mm,M2\" in kNm (default: My all along)");
    app.add_option("--diagram-y", diagramY, "shape of the y diagram: polygonal or parabolic")->capture_default_str();
    app.add_option("--moments-z", momentsZ, "moments about z, \"M1,Mm,M2\" in kNm (default: Mz all along)");
    app.add_option("--diagram-z", diagramZ, "shape of the z diagram: polygonal or parabolic")->capture_default_str();
    app.add_option("--max-moment", maxMoment,
                   "largest moment along the member in kNm (default: the largest of the y moments)")
        ->check(finiteNumber());
    app.add_option("--load-point", loadPoint, "load application point: center, top or bottom")->capture_default_str();
    app.add_option("--mcr", mcr, "elastic critical moment Mcr in kNm (default: computed)")->check(finiteNumber());
    app.add_option("--mcr-method", mcrMethod,
                   "how Mcr is computed: tables (the library's moment coefficients) or numerical (finite elements)")
        ->capture_default_str();
    app.add_option("--c-theta", cTheta, "rotational restraint C_theta (default: none)")->check(finiteNumber());
    app.add_option("--shear-panel", shearPanel, "shear-panel stiffness S (default: none)")->check(finiteNumber());
    auto* rolled = app.add_flag("--rolled-method", rolledMethod,
                                "lateral-torsional buckling by 6.3.2.3 for any section (default for I sections)");
    app.add_flag("--general-method", generalMethod, "lateral-torsional buckling by the general case 6.3.2.2")
        ->excludes(rolled);
    app.add_flag("--torsionally-deformable", torsionallyDeformable,
                 "interaction factors of Table B.2 (members susceptible to torsional deformations)");
    app.add_flag("--twist-restrained", twistRestrained,
                 "the member is restrained against twist: interaction factors of Table B.1 under EN rules (Table B.2 "
                 "wherever lateral-torsional buckling is checked otherwise)");
    app.add_flag("--cm-floor", cmFloor, "equivalent moment factors Cm of at least 0.9");
    standard.addTo(app);
    rules.addTo(app);
}

design::BucklingLengths MemberOptions::lengths() const
{
    return design::resolveLengths(length, lengthY, lengthZ, lengthLT);
}

design::MemberRequest MemberOptions::toRequest(SDBSection* section, KaConstrSteel* steel) const
{
    standard.apply();
    requireNonNegative("--length", length.value_or(0.0));
    requireNonNegative("--lcr-y", lengthY.value_or(0.0));
    requireNonNegative("--lcr-z", lengthZ.value_or(0.0));
    requireNonNegative("--l-lt", lengthLT.value_or(0.0));
    if (!(gammaM1 > 0.0)) throw InputError("--gamma-m1: must be positive, got " + number(gammaM1, 4));
    requireNonNegative("--mcr", mcr);
    requireNonNegative("--c-theta", cTheta);
    requireNonNegative("--shear-panel", shearPanel);
    const Forces f = forces.toForces();
    const std::vector<double> valuesY = parseMoments("--moments-y", momentsY, f.getMy());
    const std::vector<double> valuesZ = parseMoments("--moments-z", momentsZ, f.getMz());
    design::MemberRequest request;
    request.section = section;
    request.steel = steel;
    request.forces = f;
    request.moments = design::makeMoments({valuesY[0], valuesY[1], valuesY[2]}, parseDiagram("--diagram-y", diagramY),
                                  {valuesZ[0], valuesZ[1], valuesZ[2]}, parseDiagram("--diagram-z", diagramZ),
                                  maxMoment, parseLoadPoint(loadPoint), mcr);
    request.lengths = lengths();
    if (mcrMethod != "tables" && mcrMethod != "numerical")
        throw InputError("--mcr-method: '" + mcrMethod + "' is not one of tables, numerical");
    if (mcrMethod == "numerical" && mcr != 0.0)
        throw InputError("--mcr-method: numerical computes Mcr; it cannot be combined with --mcr");
    request.mcrMethod = mcrMethod == "numerical" ? design::McrMethod::Numerical : design::McrMethod::Tables;
    request.gammaM1 = gammaM1;
    request.cTheta = cTheta;
    request.shearPanel = shearPanel;
    request.method = rolledMethod    ? design::LateralTorsionalMethod::Rolled
                     : generalMethod ? design::LateralTorsionalMethod::General
                                     : design::LateralTorsionalMethod::Automatic;
    request.torsionallyDeformable = torsionallyDeformable;
    request.twistRestrained = twistRestrained;
    request.cmFloor = cmFloor;
    return request;
}

} // namespace cli
