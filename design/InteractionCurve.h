#pragma once

// The interaction curve of normal force and bending about y of a cross-section (EN 1993-1-1 6.2.9): the
// boundary of the pairs (N, My) that the cross-section check of the library verifies. Each point is
// found by asking the library's own check along a ray from the origin, so the curve is the one the
// check applies (its class under each pair of forces, its reduced moment resistance MN,y,Rd, its
// linear sum for class 3), not a textbook curve beside it.

#include "CrossSectionCheck.h"

#include <vector>

namespace design {

struct InteractionPoint {
    double N = 0.0;   // kN, compression negative
    double My = 0.0;  // kNm
};

// The curve through `rays` points (at least 8), in the order of the angle of the ray; shear forces and
// torsion of the request are left out (the curve is that of N and My alone). Empty when the check does
// not give a utilization under N and My (class 4, an error code such as a hollow section under N).
// Each point is where the largest of the utilizations Axial, Bending and AxialBending reaches 1.0, to a
// relative precision of 1e-4.
std::vector<InteractionPoint> interactionCurveNMy(const CrossSectionRequest& request, int rays = 32);

// The largest of the utilizations Axial, Bending and AxialBending of the library's cross-section check
// under (N, My) alone, or a negative number when one of them is not computed or not finite.
double interactionUtilization(const CrossSectionRequest& request, double N, double My);

} // namespace design
