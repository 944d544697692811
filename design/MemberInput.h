#pragma once

// The inputs of a member check as a tool takes them (the command's options, Python's arguments): forces,
// standard mode, buckling lengths, gammaM1, the moment diagrams as text ("M1,Mm,M2"), the load point and
// the lateral-torsional options. toRequest validates each (InputError naming the option and the value)
// and builds the member request.

#include "DesignBasis.h"
#include "InputError.h"
#include "MemberCheck.h"

#include <SteelDesign/Forces.h>

#include <optional>
#include <string>

namespace design {

// N My Mz Mt Vy Vz in kN and kNm (compression negative).
// legAxes: My, Mz, Vy, Vz are about the section's own axes y and z (an angle's legs) and are turned into
// the principal axes u and v that the checks take (AngleBending.h); otherwise they are about u and v.
struct ForceInput {
    double N = 0.0, My = 0.0, Mz = 0.0, Mt = 0.0, Vy = 0.0, Vz = 0.0;
    bool legAxes = false;
    SteelDesign::Forces toForces() const { return SteelDesign::Forces(N, My, Mz, Mt, Vy, Vz); }
    // The forces for this section: turned into its principal axes under legAxes.
    SteelDesign::Forces toForces(const SDBSection& section) const;
};

// The standard mode (EN, UK, RolledLTB or a number) and the design situation.
struct StandardInput {
    std::string mode = "EN";
    std::string situation = "persistent";
    // Sets the host standard; InputError on an unknown value.
    void apply() const { applyStandard(mode, situation); }
};

struct MemberInput {
    ForceInput forces;
    StandardInput standard;
    std::optional<double> length, lengthY, lengthZ, lengthLT;
    std::optional<double> lengthT;  // l_T of torsional buckling (6.3.1.4); empty: L_LT, else Lcr,z
    double gammaM1 = defaultGammaM1;
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

    // Lcr,y, Lcr,z and LLT: each its own value, else length; without length, Lcr,z takes Lcr,y and LLT
    // takes Lcr,z. All zero when no length is given.
    BucklingLengths lengths() const;
    // True when some buckling length is given and positive: the member checks run.
    bool memberChecked() const { return anyLength(lengths()); }
    // Validates every input (InputError naming its option), sets the host standard and builds the request.
    MemberRequest toRequest(SDBSection* section, KaConstrSteel* steel) const;
};

} // namespace design
