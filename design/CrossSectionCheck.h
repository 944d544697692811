#pragma once

// The cross-section check of EN 1993-1-1 6.2 at one point of a member: classification, the section
// initializer and ResistanceVerifications::verifyAllResistance, with the verdict and what kept it from
// being verified.

#include "Verdict.h"

#include <KaMaterial.h>
#include <SDBSection.h>
#include <SteelDesign/Forces.h>
#include <SteelDesign/SectionInitializer.h>
#include <SteelDesign/VerificationResults.h>

#include <cstdint>

namespace design {

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
    bool allFulfilled = false;        // VerificationResults::verifyAllUtilizations
    bool anyExceeded = false;         // a computed summary utilization exceeds 1.0
    std::uint32_t limitations = 0;    // Limitation flags
    Verdict verdict = Verdict::NotVerified;
};

// classified: the section already classified under the request's section, steel, forces and control (the
// option of the method for rolled sections is free: the cross-section checks read only the class, fy and
// the kind), or null to classify here.
CrossSectionOutcome evaluateCrossSection(const CrossSectionRequest& request,
                                         const SteelDesign::SectionInitializer* classified = nullptr);

// The same on an outcome made by the caller, its initializer set (the results fresh): the batch builds the
// outcome in place instead of copying a classified initializer into it.
void completeCrossSection(const CrossSectionRequest& request, CrossSectionOutcome& outcome);

// The seven summary utilizations of the cross-section check, in the order of the batch columns:
// Axial, Torsion, Bending, Shear, AxialBending, ShearBending, AxialShearBending.
inline constexpr SteelDesign::VerificationResults::UtilizationType crossSectionSummary[7] = {
    SteelDesign::VerificationResults::Axial,        SteelDesign::VerificationResults::Torsion,
    SteelDesign::VerificationResults::Bending,      SteelDesign::VerificationResults::Shear,
    SteelDesign::VerificationResults::AxialBending, SteelDesign::VerificationResults::ShearBending,
    SteelDesign::VerificationResults::AxialShearBending};

} // namespace design
