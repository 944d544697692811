#pragma once

// Effective cross-section properties of class 4 sections, EN 1993-1-5 4.3 and 4.4, for showing the
// EN 1993-1-1 resistances of class 4 sections (6.2.2.5, (6.44), 6.3.1.1(3), 6.3.2.1(3)) beside the
// library's values, which use the gross section.
//
// Units and axes are the library's (host/SDBSection.h): m, m^2, m^3, m^4, fy in kN/m^2; y and z through
// the gross centroid, z downwards. A compressive stress is taken positive in this file.
//
// Method (the rules where EN 1993-1-5 leaves a choice are listed in docs/effective-section.md):
//  - the section is cut into plates (flange outstands, a tee's stem as an outstand with its free edge at
//    the tip, and internal webs or walls) with the flat widths c of EN 1993-1-1 Table 5.2 / EN 1993-1-5
//    4.4(2);
//  - each compressed plate gets rho from EN 1993-1-5 4.4(2) (Table 4.1 internal, Table 4.2 outstand)
//    with lambda_p at fy (no reduction for sigma_com,Ed < fy, 4.4(4) is not used), and its ineffective
//    strip placed as Tables 4.1 / 4.2 show; an outstand takes the upper row of Table 4.2 when its free
//    edge is the more compressed one (ineffective part at the tip), the lower row otherwise (b_eff from
//    the supported edge, the rest of the compressed zone b_c ineffective);
//  - the ineffective strips are removed from the gross section (its A, centroid, Iy, Iz as the library
//    computed them, fillets and corners included and kept fully effective) as negative rectangles;
//  - under bending, EN 1993-1-5 4.4(3): the plates across which the stress is uniform (flanges under My,
//    webs, walls and a tee's stem under Mz) first, from the gross section; then the plates along which
//    the stress varies (webs and a tee's stem under My, flanges under Mz), with psi from the section
//    with those effective plates and the other plates gross. One pass, no iteration. A tee under a
//    negative My (stem tip compressed) has its flange in tension: the stem's psi is that of the gross
//    section, its largest compression at the free edge.

#include <SDBSection.h>
#include <SteelDesign/Axis.h>

#include <optional>
#include <string>
#include <vector>

namespace design {

using SteelDesign::Axis;

// One plate's reduction, for the report's trace.
struct EffectivePlate {
    enum class Kind { Internal, Outstand };
    Kind kind = Kind::Internal;
    std::string element;   // e.g. "web", "top flange, outstand y > 0", "left wall"
    double c = 0.0;        // flat width b_bar, m
    double t = 0.0;        // thickness, m
    double psi = 1.0;      // stress ratio of EN 1993-1-5 Tables 4.1 / 4.2
    double kSigma = 0.0;   // buckling factor
    double lambdaP = 0.0;  // plate slenderness (4.2) of EN 1993-1-5 4.4(2)
    double lambdaLimit = 0.0;  // above it rho < 1: 0.5 + sqrt(0.085 - 0.055 psi) internal, 0.748 outstand
    double rho = 1.0;      // reduction factor
    double bEff = 0.0;     // effective width, m (rho c, or rho b_c when psi < 0)
};

struct EffectiveProperties {
    double A = 0.0, Aeff = 0.0;  // gross and effective area, m^2
    // Under bending about y (z): Weff,y (Weff,z), the smaller of Ieff / (distance from the effective
    // section's centroid to its extreme fibre) over the two extreme fibres, at most the gross Wel; 0 for
    // the other axis and under compression.
    double Weffy = 0.0, Weffz = 0.0;  // m^3
    // Second moments of the effective section about its own centroidal axes, m^4.
    double Ieffy = 0.0, Ieffz = 0.0;
    // Coordinates of the effective section's centroid in the gross centroidal axes: eNy along z (the
    // eccentricity that gives the moment about y, EN 1993-1-1 6.2.9.3), eNz along y. Under compression
    // the shift e_N of EN 1993-1-1 6.2.2.5(4); under bending the shift of the neutral axis.
    double eNy = 0.0, eNz = 0.0;  // m
    bool reduced = false;         // some plate has rho < 1
    std::vector<EffectivePlate> plates;  // every compressed plate checked, with rho = 1 when not reduced
};

// Aeff and e_N under uniform compression (every plate at psi = 1, stress fy in kN/m^2).
// Handled kinds: SDBSectionI (rolled and welded, mono-symmetric too), SDBSectionU and SDBSectionWU
// (channels), SDBSectionRH (hot-finished and cold-formed RHS/SHS, welded boxes), SDBSectionT (cut and
// welded tees, flange on top). Any other kind, a non-positive or non-finite fy or a section without
// area: std::nullopt.
std::optional<EffectiveProperties> effectiveUnderCompression(const SDBSection& section, double fy);

// Weff about y or z under a moment alone. positiveMoment follows the library's stress formula
// sigma = N/A + My z / Iy - Mz y / Iz (tension positive): a positive My compresses the top (z < 0), a
// positive Mz the side y > 0. Same kinds and std::nullopt cases as effectiveUnderCompression.
std::optional<EffectiveProperties> effectiveUnderBending(const SDBSection& section, double fy, Axis axis,
                                                         bool positiveMoment);

// EN 1993-1-5 4.4(2), exposed for the trace and the tests.
// k_sigma of an internal element, Table 4.1 (psi >= -3; below -3 the -3 > psi > -1 formula is kept).
double kSigmaInternal(double psi);
// k_sigma of an outstand, Table 4.2: maxAtFreeEdge for the upper row (largest compression at the free
// edge), otherwise the lower row (largest compression at the supported edge). psi = sigma2 / sigma1,
// sigma1 the largest compression. Beyond the tabulated ranges the value at the end of the range: psi = -3
// for the upper row, psi = -1 for the lower one.
double kSigmaOutstand(double psi, bool maxAtFreeEdge);
// rho of an internal element (4.2) and of an outstand (4.3), at most 1.
double rhoInternal(double lambdaP, double psi);
double rhoOutstand(double lambdaP);

} // namespace design
