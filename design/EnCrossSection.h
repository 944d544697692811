#pragma once

// The cross-section check of EN 1993-1-1 6.2 with every rule EN 1993-1-1's at once: classification by
// Table 5.2 (plastic compressed fraction alpha for classes 1 and 2, elastic psi for class 3; 5.5.2(6);
// a section with no normal stress is class 1), resistances 6.2.3 to 6.2.10 with effective properties of
// EN 1993-1-5 4.3 in class 4 (6.2.2.5, (6.44)), hollow sections under N and M ((6.39) to (6.41), CHS
// Mpl (1 - n^1.7), class 3 (6.42)), shear (6.17)/(6.18) with |V|, torsion by St. Venant (6.23) with
// shear with torsion (6.26) to (6.28) or 6.2.7(9), bending with shear from VEd > 0.5 Vpl,Rd (6.2.8).
// It never reads a result of the library's checks: it is what the verdict of record is decided by, and
// the library's values are shown beside it where they differ.
//
// Units are the class interface's: m, kN, kNm, kN/m². Compression negative.

#include "CrossSectionCheck.h"
#include "Trace.h"

#include <SteelDesign/Nullable.h>

#include <array>
#include <cstdint>
#include <vector>

namespace design {

struct EnCrossSection {
    int sectionClass = 0;  // Table 5.2, 5.5.2(6); 3 when the request asks for an elastic verification
    double fy = 0.0;       // kN/m², EN 1993-1-1 Table 3.1 by the thickest plate (the smallest fy of the plates)
    double epsilon = 0.0;  // sqrt(235 / fy[N/mm²])
    double gammaM0 = 1.0;
    // Resistances (kN, kNm) of the section under these actions; 0 where not computed.
    double NplRd = 0.0;            // A fy / gammaM0 (6.6)
    double NcRd = 0.0;             // (6.10) classes 1 to 3, Aeff fy / gammaM0 (6.11) class 4
    double McyRd = 0.0, MczRd = 0.0;  // (6.13) to (6.15): Wpl, Wel or Weff fy / gammaM0
    double VplzRd = 0.0, VplyRd = 0.0;  // (6.18): Av fy / (sqrt(3) gammaM0)
    // Torsion by St. Venant (6.23), tau_Rd = fy / (sqrt(3) gammaM0): T,Rd = tau_Rd It / t_max (open sections,
    // solid rectangles), 2 Am t_min tau_Rd (RHS, Bredt), tau_Rd Ip / r (CHS, round bars); the shear
    // resistances reduced for the torsion acting, (6.26) to (6.28) (equal to Vpl,Rd without torsion).
    double TRd = 0.0, VplTzRd = 0.0, VplTyRd = 0.0;
    // 6.2.8(3), (4): rho = (2 VEd / Vpl,(T,)Rd - 1)^2 of the shear in z and in y (0 up to 0.5 Vpl,Rd).
    double rhoZ = 0.0, rhoY = 0.0;
    // 6.2.9: the moment resistances reduced for N (classes 1 and 2; Mc,Rd otherwise), without shear.
    double MNyRd = 0.0, MNzRd = 0.0;
    // Class 4: the effective properties of EN 1993-1-5 4.3 (under compression Aeff and the shifts eNy
    // (along z, the moment N eNy about y) and eNz; under bending Weff about each axis bent); 0 otherwise.
    double Aeff = 0.0, Weffy = 0.0, Weffz = 0.0, eNy = 0.0, eNz = 0.0;
    // Axial, Torsion, Bending, Shear, AxialBending, ShearBending, AxialShearBending: the slots and meaning
    // of the library's summary utilizations (DesignSummary::crossSection). Every slot is set (0 where its
    // action is absent) unless EN 1993-1-1 gives no rule in our scope for it: then it is empty and a flag
    // in limitations says why. No utilization is negative.
    std::array<kat::Nullable<double>, 7> utilization{};
    std::uint32_t limitations = 0;  // Limitation flags (Verdict.h)
};

// The EN 1993-1-1 cross-section check of the request. gammaM0 is the resolved partial factor (the
// request's, or the active standard's). With trace, its steps are appended (classification plate by
// plate, each resistance and utilization: clause, formula, numbers, result); nothing is allocated
// without it, except for class 4 sections.
void evaluateEnCrossSection(const CrossSectionRequest& request, double gammaM0, EnCrossSection& out,
                            std::vector<TraceLine>* trace = nullptr);

} // namespace design
