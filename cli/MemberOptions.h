#pragma once

// The options of the member checks shared by `member` and `select`: forces, standard mode, buckling
// lengths, partial factor gammaM1, moment diagram, load point and the lateral-torsional options.

#include "Options.h"

#include <design/MemberCheck.h>

#include <optional>
#include <string>

namespace cli {

struct MemberOptions {
    ForceOptions forces;
    StandardOptions standard;
    std::optional<double> length, lengthY, lengthZ, lengthLT;
    double gammaM1 = design::defaultGammaM1;
    std::string momentsY, momentsZ;
    std::string diagramY = "polygonal", diagramZ = "polygonal";
    std::optional<double> maxMoment;
    std::string loadPoint = "center";
    double mcr = 0.0;
    double cTheta = 0.0;
    double shearPanel = 0.0;
    bool rolledMethod = false;
    bool generalMethod = false;
    std::string mcrMethod = "tables";
    bool torsionallyDeformable = false;
    bool twistRestrained = false;
    bool cmFloor = false;
    RulesOption rules;

    // --length, --lcr-y, --lcr-z, --l-lt, the forces, --gamma-m1, --moments-y ... --cm-floor, --mode,
    // --situation, --twist-restrained, --rules.
    void addTo(CLI::App& app);
    // Lcr,y, Lcr,z and LLT: each its own option, else --length; without --length, Lcr,z takes Lcr,y and
    // LLT takes Lcr,z. All zero when no length is given.
    design::BucklingLengths lengths() const;
    // True when some buckling length is given and positive: the member checks run.
    bool memberChecked() const { return design::anyLength(lengths()); }
    // Validates every option (InputError naming it), sets the host standard and builds the request.
    design::MemberRequest toRequest(SDBSection* section, KaConstrSteel* steel) const;
};

} // namespace cli
