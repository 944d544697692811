#include "PlateClassification.h"

#include <SteelDesign/Classification.h>
#include <SteelDesign/CrossSectionCutter.h>
#include <SteelDesign/StressCalculator.h>
#include <SteelDesign/StressUtil.h>

#include <cmath>

namespace design {

std::vector<PlateClass> classifyPlates(SDBSection& section, KaConstrSteel& steel, const SteelDesign::Forces& forces,
                                       bool classify)
{
    using namespace SteelDesign;
    CrossSectionCutter cutter;
    section.accept(&cutter);
    Classification classification(&steel, forces, false);
    classification.classify(&section);
    const StressUtil util(&section, forces);
    const StressCalculator calc(&section, forces);
    const bool isAngle = dynamic_cast<SDBSectionL*>(&section) != nullptr;
    const bool axialOnly = std::fabs(forces.getMy()) < 1e-6 && std::fabs(forces.getMz()) < 1e-6;

    auto row = [&](const PlatePart& part, const char* kind, int cls) {
        PlateClass r{kind, part.getC(), part.getT(), util.calculateAlfa(part.getFirstPoint(), part.getSecondPoint()),
                     {}, {}};
        if (calc.calculateNormalStress(part.getFirstPoint()) != 0.0)
            r.psi = util.calculatePsiWeb(part.getFirstPoint(), part.getSecondPoint());
        if (classify) r.cls = cls;
        return r;
    };
    std::vector<PlateClass> rows;
    for (const auto& web : cutter.getWebParts()) rows.push_back(row(*web, "web", classification.classifyWebPart(*web)));
    for (const auto& flange : cutter.getFlangeParts()) {
        // An angle under an axial force alone: both legs together, Table 5.2 (sheet 3).
        const int cls = isAngle && axialOnly ? classification.classifyAngleLeg(*flange)
                                             : classification.classifyFlangePart(*flange);
        rows.push_back(row(*flange, isAngle ? "leg" : "outstand", cls));
    }
    return rows;
}

} // namespace design
