#pragma once

// The options of the member checks shared by `member` and `select`: forces, standard mode, buckling
// length, partial factor gammaM1, moment diagram, load point and the lateral-torsional options.

#include "Evaluation.h"
#include "Options.h"

#include <optional>
#include <string>

namespace cli {

struct MemberOptions {
    ForceOptions forces;
    StandardOptions standard;
    double length = 0.0;
    double gammaM1 = defaultGammaM1;
    std::string momentsY, momentsZ;
    std::string diagramY = "polygonal", diagramZ = "polygonal";
    std::optional<double> maxMoment;
    std::string loadPoint = "center";
    double mcr = 0.0;
    double cTheta = 0.0;
    double shearPanel = 0.0;
    bool rolledMethod = false;
    bool torsionallyDeformable = false;
    bool cmFloor = false;

    // --length (required or optional), the forces, --gamma-m1, --moments-y ... --cm-floor, --mode, --situation.
    void addTo(CLI::App& app, bool lengthRequired);
    // Validates every option (InputError naming it), sets the host standard and builds the request.
    MemberRequest toRequest(SDBSection* section, KaConstrSteel* steel) const;
};

} // namespace cli
