#include "RowRequests.h"

#include <design/AngleBending.h>

#include <array>
#include <cstring>

namespace batch {

namespace {

using SteelDesign::ApplicationPoint;
using SteelDesign::MomentDiagram;

// text spells word: a comparison of known length, which the compiler does inline (no call per word).
template <std::size_t N>
bool spells(const std::string& text, const char (&word)[N])
{
    return text.size() == N - 1 && std::memcmp(text.data(), word, N - 1) == 0;
}

MomentDiagram diagramOf(const std::string& text)
{
    return spells(text, "parabolic") ? MomentDiagram::Parabolic : MomentDiagram::Polygonal;
}

ApplicationPoint loadPointOf(const std::string& text)
{
    if (spells(text, "top")) return ApplicationPoint::Top;
    if (spells(text, "bottom")) return ApplicationPoint::Bottom;
    return ApplicationPoint::Center;
}

} // namespace

RowRequests rowRequests(const MemberRow& row, SDBSection* section, KaConstrSteel* steel)
{
    const SteelDesign::Forces given(row.N, row.My, row.Mz, row.Mt, row.Vy, row.Vz);
    const SteelDesign::Forces forces = row.legAxes ? design::legForcesToPrincipal(*section, given) : given;
    RowRequests requests{{section, steel, forces, row.gammaM0.value_or(0.0), row.elastic}, std::nullopt};
    const design::BucklingLengths lengths = design::resolveLengths(
        row.length > 0.0 ? std::optional<double>(row.length) : std::nullopt, row.lengthY, row.lengthZ, row.lengthLT);
    if (!design::anyLength(lengths)) return requests;
    design::MemberRequest& member = requests.member.emplace();
    member.section = section;
    member.steel = steel;
    member.forces = forces;
    std::array<double, 3> momentsY = row.momentsY, momentsZ = row.momentsZ;
    if (row.legAxes) design::legMomentsToPrincipal(*section, momentsY, momentsZ);
    member.moments = design::makeMoments(momentsY, diagramOf(row.diagramY), momentsZ, diagramOf(row.diagramZ),
                                         row.maxMoment, loadPointOf(row.loadPoint), row.mcr.value_or(0.0));
    member.lengths = lengths;
    member.gammaM1 = row.gammaM1.value_or(design::defaultGammaM1);
    member.cTheta = row.cTheta.value_or(0.0);
    member.shearPanel = row.shearPanel.value_or(0.0);
    member.method = !row.rolledMethod ? design::LateralTorsionalMethod::Automatic
                    : *row.rolledMethod ? design::LateralTorsionalMethod::Rolled
                                        : design::LateralTorsionalMethod::General;
    member.torsionallyDeformable = row.torsionallyDeformable;
    member.twistRestrained = row.twistRestrained;
    member.lengthT = row.lengthT.value_or(0.0);
    member.cmFloor = row.cmFloor;
    member.elastic = row.elastic;
    member.mcrMethod = spells(row.mcrMethod, "numerical") ? design::McrMethod::Numerical : design::McrMethod::Tables;
    return requests;
}

} // namespace batch
