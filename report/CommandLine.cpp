#include "CommandLine.h"

#include <design/MemberCheck.h>
#include <design/NumberInput.h>

namespace report {

std::string shellQuoted(const std::string& arg)
{
    const bool bare = !arg.empty() && arg.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                            "0123456789-_.,/=:+@%") == std::string::npos;
    if (bare) return arg;
    std::string out = "'";
    for (const char c : arg) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

std::string commandOfRow(const batch::MemberRow& row, const std::string& mode, const std::string& situation,
                         design::Rules rules)
{
    const bool member = row.length > 0.0 || (row.lengthY && *row.lengthY > 0.0) || (row.lengthZ && *row.lengthZ > 0.0) ||
                        (row.lengthLT && *row.lengthLT > 0.0);
    std::string out = std::string("steeldesign ") + (member ? "member " : "check ") + shellQuoted(row.section) +
                      " --steel " + shellQuoted(row.steel);
    std::string missing;  // columns without an option of the command
    auto number = [&](const char* option, double v) { out += std::string(" ") + option + ' ' + design::shortestText(v); };
    auto optional = [&](const char* option, const std::optional<double>& v) {
        if (v) number(option, *v);
    };
    auto flag = [&](const char* option, bool on) {
        if (on) out += std::string(" ") + option;
    };
    auto notOption = [&](const std::string& what) { missing += (missing.empty() ? "" : ", ") + what; };
    const double forces[] = {row.N, row.My, row.Mz, row.Mt, row.Vy, row.Vz};
    const char* forceOptions[] = {"--N", "--My", "--Mz", "--Mt", "--Vy", "--Vz"};
    for (std::size_t i = 0; i < 6; ++i)
        if (forces[i] != 0.0) number(forceOptions[i], forces[i]);
    flag("--leg-axes", row.legAxes);
    if (member) {
        if (row.length > 0.0) number("--length", row.length);
        optional("--lcr-y", row.lengthY);
        optional("--lcr-z", row.lengthZ);
        optional("--l-lt", row.lengthLT);
        optional("--lcr-t", row.lengthT);
        auto moments = [&](const char* option, const std::array<double, 3>& m, double uniform) {
            if (m[0] == uniform && m[1] == uniform && m[2] == uniform) return;
            out += std::string(" ") + option + ' ' + design::shortestText(m[0]) + ',' + design::shortestText(m[1]) +
                   ',' + design::shortestText(m[2]);
        };
        moments("--moments-y", row.momentsY, row.My);
        if (row.diagramY != "polygonal") out += " --diagram-y " + row.diagramY;
        moments("--moments-z", row.momentsZ, row.Mz);
        if (row.diagramZ != "polygonal") out += " --diagram-z " + row.diagramZ;
        optional("--max-moment", row.maxMoment);
        if (row.loadPoint != "center") out += " --load-point " + row.loadPoint;
        if (row.mcr && *row.mcr != 0.0) number("--mcr", *row.mcr);
        if (row.mcrMethod != "tables") out += " --mcr-method " + row.mcrMethod;
        if (row.cTheta && *row.cTheta != 0.0) number("--c-theta", *row.cTheta);
        if (row.shearPanel && *row.shearPanel != 0.0) number("--shear-panel", *row.shearPanel);
        if (row.gammaM1 && *row.gammaM1 != design::defaultGammaM1) number("--gamma-m1", *row.gammaM1);
        if (row.rolledMethod) out += *row.rolledMethod ? " --rolled-method" : " --general-method";
        flag("--torsionally-deformable", row.torsionallyDeformable);
        flag("--twist-restrained", row.twistRestrained);
        flag("--cm-floor", row.cmFloor);
        if (row.gammaM0) notOption("gammaM0 = " + design::shortestText(*row.gammaM0));
        if (row.elastic) notOption("elastic = true");
    } else {
        optional("--gamma-m0", row.gammaM0);
        flag("--elastic", row.elastic);
    }
    if (mode != "EN") out += " --mode " + shellQuoted(mode);
    if (situation != "persistent") out += " --situation " + shellQuoted(situation);
    if (rules == design::Rules::Library) out += " --rules library";
    if (!missing.empty()) out += "  (batch columns without an option: " + missing + ")";
    return out;
}

} // namespace report
