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
    // False where the check gives no verified utilization along the ray (class 4, or a section kind the
    // check does not cover under these actions, such as a hollow section under N): no point there.
    bool valid = false;
};

// The curve through `rays` points (at least 8), in the order of the angle of the ray from +My towards
// +N; shear forces and torsion of the request are left out (the curve is that of N and My alone). Each
// valid point is where the largest of the utilizations Axial, Bending and AxialBending reaches 1.0, to a
// relative precision of 2e-5 on the distance from the origin. Empty without a section or steel.
std::vector<InteractionPoint> interactionCurveNMy(const CrossSectionRequest& request, int rays = 32);

// The largest of the utilizations Axial, Bending and AxialBending of the library's cross-section check
// under (N, My) alone (those the check computed), or a negative number when it computed none of them or
// one that is not finite, or the section is in class 4, or the check does not cover the section under
// these actions (error code 6: hollow sections under a normal force).
double interactionUtilization(const CrossSectionRequest& request, double N, double My);

} // namespace design
