#pragma once

// The checks behind the subcommands, in one place so that `check`, `member`, `batch` and `select` give
// the same numbers for the same input.

#include <KaMaterial.h>
#include <SDBSection.h>
#include <SteelDesign/BucklingResults.h>
#include <SteelDesign/ErrorCode.h>
#include <SteelDesign/Forces.h>
#include <SteelDesign/MomentDistribution.h>
#include <SteelDesign/SectionInitializer.h>
#include <SteelDesign/VerificationResults.h>

#include <array>
#include <optional>

namespace cli {

struct CrossSectionRequest {
    SDBSection* section = nullptr;
    KaConstrSteel* steel = nullptr;
    SteelDesign::Forces forces;
    double gammaM0 = 0.0;  // <= 1e-6: from the active standard
    bool elastic = false;  // class 3 without classification
};

struct CrossSectionOutcome {
    SteelDesign::SectionInitializer initializer;
    SteelDesign::VerificationResults results;
    double gammaM0 = 0.0;
    bool allFulfilled = false;  // VerificationResults::verifyAllUtilizations
    bool verdict = false;       // allFulfilled and no error code
};

// Section initializer, then ResistanceVerifications::verifyAllResistance.
CrossSectionOutcome evaluateCrossSection(const CrossSectionRequest& request);

// gamma_M1 when none is given: the value recommended by EN 1993-1-1 6.1(1).
constexpr double defaultGammaM1 = 1.0;

// The moment distribution of a member from the moments at its start, middle and end per axis. The largest
// moment defaults to the largest magnitude of the three values about y.
SteelDesign::MomentDistribution makeMoments(const std::array<double, 3>& momentsY, SteelDesign::MomentDiagram diagramY,
                                            const std::array<double, 3>& momentsZ, SteelDesign::MomentDiagram diagramZ,
                                            std::optional<double> maxMoment, SteelDesign::ApplicationPoint loadPoint,
                                            double mcr);

// The member checks of one member: BucklingResistance::verifyAllResistance and verifyShearBuckling.
struct MemberRequest {
    SDBSection* section = nullptr;
    KaConstrSteel* steel = nullptr;
    SteelDesign::Forces forces;
    SteelDesign::MomentDistribution moments;
    double length = 0.0;        // buckling length (m), also the lateral-torsional one
    double gammaM1 = 1.0;       // EN 1993-1-1 6.1(1) recommended value
    double cTheta = 0.0;        // rotational restraint (kNm/m per m), 0 = none
    double shearPanel = 0.0;    // shear-panel stiffness S (kN), 0 = none
    bool rolledMethod = false;  // 6.3.2.3 with Table 6.5 (the initializer's last argument)
    bool torsionallyDeformable = false;
    bool cmFloor = false;
    bool elastic = false;
};

struct MemberOutcome {
    SteelDesign::SectionInitializer initializer;
    SteelDesign::BucklingResults results;
    // Every member utilization that was computed (per axis and summary, and the shear buckling
    // utilization) is fulfilled; a utilization that is not a number is not.
    bool verdict = true;
};

MemberOutcome evaluateMember(const MemberRequest& request);

} // namespace cli
