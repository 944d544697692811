#pragma once

// Angles in bending, in their principal axes u (major) and v (minor): the outline's corners, the elastic
// moduli about u and v, the stress at each corner under N, Mu and Mv (EN 1993-1-1 6.2.1(5), (6.1)), the
// forces given about the legs resolved into u and v, and the elastic critical moment of an equal angle
// bent about u. Moments follow the right-hand rule of the section's axes: My > 0 puts z > 0 in tension,
// Mz > 0 puts y < 0 in tension; about u and v alike (Mu > 0: v > 0 in tension; Mv > 0: u < 0).

#include "ShearCentre.h"

#include <SDBSection.h>
#include <SteelDesign/Forces.h>

#include <array>

namespace design {

struct AngleCorner {
    double y = 0.0, z = 0.0;  // m from the centroid, the section's axes
    double u = 0.0, v = 0.0;  // the same in the principal axes
};

struct AngleAxes {
    bool valid = false;
    bool equal = false;           // equal legs: symmetric about u
    PrincipalAxes principal;
    double A = 0.0;
    std::array<AngleCorner, 5> corners{};  // heel, the tips of the leg along z (outer, inner), of the leg along y
    double uMax = 0.0, vMax = 0.0;         // the largest |u| and |v| of the corners
    double Welu = 0.0, Welv = 0.0;         // Iu / vMax, Iv / uMax
};

// The principal data of an angle (valid = false for another kind or a section without dimensions).
AngleAxes angleAxes(const SDBSection& section);

// sigma = N / A + Mu v / Iu - Mv u / Iv at a corner (kN/m² from kN, kNm, m).
double angleStress(const AngleAxes& a, const AngleCorner& c, double N, double Mu, double Mv);

// The largest |sigma| of the corners, and which corner it is.
double angleStressMax(const AngleAxes& a, double N, double Mu, double Mv, int* corner = nullptr);

// Forces whose moments and shear forces are about the legs (y, z) turned into the principal axes:
// Mu = My cos(alpha) + Mz sin(alpha), Mv = -My sin(alpha) + Mz cos(alpha), and the shears likewise.
SteelDesign::Forces legForcesToPrincipal(const SDBSection& section, const SteelDesign::Forces& legForces);

// Moment diagrams given about the legs (start, middle, end; the same shape about both) turned into u and v
// point by point, as the forces.
void legMomentsToPrincipal(const SDBSection& section, std::array<double, 3>& y, std::array<double, 3>& z);

// The elastic critical moment of an equal angle bent about u under a uniform moment with fork supports:
// symmetric about u, so no Wagner term (beta_v = 0): Mcr = pi² E Iv / L² sqrt(Iw / Iv + L² G It /
// (pi² E Iv)). 0 where it does not apply.
double equalAngleMcr(const SDBSection& section, double L, double E, double G);

} // namespace design
