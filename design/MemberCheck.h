#pragma once

// The member checks of EN 1993-1-1 6.3 and EN 1993-1-5 5 for one member: flexural buckling about y and z
// with their own buckling lengths, lateral-torsional buckling, the interaction of compression and
// bending, and shear buckling of the web (BucklingResistance::verifyAllResistance and
// verifyShearBuckling), with the verdict and what the member check does not cover for these actions.

#include "BucklingLengths.h"
#include "CriticalMomentSolver.h"
#include "Verdict.h"

#include <KaMaterial.h>
#include <SDBSection.h>
#include <SteelDesign/BucklingResults.h>
#include <SteelDesign/Forces.h>
#include <SteelDesign/MomentDistribution.h>
#include <SteelDesign/SectionInitializer.h>

#include <array>
#include <cstdint>
#include <optional>

namespace design {

// gamma_M1 when none is given: the value recommended by EN 1993-1-1 6.1(1).
constexpr double defaultGammaM1 = 1.0;

// The reduction factor chiLT of lateral-torsional buckling.
enum class LateralTorsionalMethod {
    // 6.3.2.3 for I sections (rolled, and welded ones as their equivalent), 6.3.2.2 for every other kind.
    Automatic,
    // 6.3.2.3, the method for rolled sections or equivalent welded sections, with f of (6.58).
    Rolled,
    // 6.3.2.2, the general case.
    General,
};

// "automatic", "rolled (6.3.2.3)", "general (6.3.2.2)".
const char* toString(LateralTorsionalMethod method);

// True when the method for rolled and equivalent welded sections applies to the section.
bool usesRolledMethod(LateralTorsionalMethod method, const SDBSection& section);

// The moment distribution from the moments at the start, middle and end per axis. The largest moment
// defaults to the largest magnitude of the three values about y.
SteelDesign::MomentDistribution makeMoments(const std::array<double, 3>& momentsY, SteelDesign::MomentDiagram diagramY,
                                            const std::array<double, 3>& momentsZ, SteelDesign::MomentDiagram diagramZ,
                                            std::optional<double> maxMoment, SteelDesign::ApplicationPoint loadPoint,
                                            double mcr);

// The elastic critical moment Mcr of lateral-torsional buckling.
enum class McrMethod {
    Tables,     // the library's own, from its moment coefficients
    Numerical,  // a finite-element eigenvalue analysis (CriticalMomentSolver.h) given to the library
};

// "tables", "numerical".
const char* toString(McrMethod method);

struct MemberRequest {
    SDBSection* section = nullptr;
    KaConstrSteel* steel = nullptr;
    SteelDesign::Forces forces;
    SteelDesign::MomentDistribution moments;
    BucklingLengths lengths;            // Lcr,y, Lcr,z, LLT (m)
    double gammaM1 = defaultGammaM1;
    double cTheta = 0.0;                // rotational restraint (kNm/m per m), 0 = none
    double shearPanel = 0.0;            // shear-panel stiffness S (kN), 0 = none
    LateralTorsionalMethod method = LateralTorsionalMethod::Automatic;
    McrMethod mcrMethod = McrMethod::Tables;
    bool torsionallyDeformable = false;
    // The member is restrained against twist along its length: the EN evaluation takes the interaction
    // factors of Annex B Table B.1 (otherwise Table B.2 wherever lateral-torsional buckling is checked).
    // The library's checks do not read it.
    bool twistRestrained = false;
    // l_T of torsional and torsional-flexural buckling (6.3.1.4), the length between restraints against
    // twist, in m; 0: L_LT, else L_cr,z. The library's checks do not read it.
    double lengthT = 0.0;
    bool cmFloor = false;
    bool elastic = false;
};

struct MemberOutcome {
    SteelDesign::SectionInitializer initializer;
    SteelDesign::BucklingResults results;
    bool rolledMethod = false;       // 6.3.2.3 was used (the initializer's last argument)
    // The numerical critical moment given to the library (McrMethod::Numerical), 0 when none.
    double numericalMcr = 0.0;
    bool anyComputed = false;        // some member utilization was computed
    bool anyExceeded = false;        // a finite computed utilization exceeds 1.0
    std::uint32_t limitations = 0;   // Limitation flags
    Verdict verdict = Verdict::NotVerified;
};

// classified: the section already classified with the request's section, steel, forces, control and
// the option usesRolledMethod gives, or null to classify here.
MemberOutcome evaluateMember(const MemberRequest& request, const SteelDesign::SectionInitializer* classified = nullptr);

// The same on an outcome made by the caller, its initializer set (the results fresh).
void completeMember(const MemberRequest& request, MemberOutcome& outcome);

// The critical moment of the member by the finite-element analysis: fork supports at both ends, the
// length LLT, the moment diagram of the request (its three values and shape), the load at the request's
// application point (the transverse load that the diagram implies), the rotational restraint C_theta as a
// continuous torsional restraint. 0 when none is found or the member has no bending about y.
double numericalCriticalMoment(const MemberRequest& request, const SteelDesign::SectionInitializer& initializer);

// The input of that analysis for the request: the section's properties of the analysis (mcrSection), E
// and G (kN/m²); the length, the diagram, the transverse load and the restraint as above.
CriticalMomentInput criticalMomentInput(const MemberRequest& request, const McrSection& section, double E, double G);

// The Limitation flags of the member check for these actions and this section class, before anything is
// computed: what the dispatcher of BucklingResistance leaves out on purpose.
std::uint32_t memberScopeLimitations(const SteelDesign::Forces& forces, int sectionClass, bool rolledMethod);

} // namespace design
