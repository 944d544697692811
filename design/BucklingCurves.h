#pragma once

// The buckling curves of EN 1993-1-1 as functions of the non-dimensional slenderness, for drawing a
// member's reduction factors against the curves they come from: chi of flexural buckling (6.49) with the
// imperfection factors of Table 6.1, and chiLT of the method for rolled or equivalent welded sections
// (6.57) with lambdaLT,0 and beta. The member's own chi values are always the library's; these curves
// are what the standard draws.

#include <SteelDesign/BucklingCurve.h>

namespace design {

// alpha of Table 6.1 / 6.3: a0 0.13, a 0.21, b 0.34, c 0.49, d 0.76; 0 for none.
double imperfectionFactor(SteelDesign::BucklingCurve curve);

// (6.49): chi = 1 / (Phi + sqrt(Phi² - lambda²)), Phi = 0.5 (1 + alpha (lambda - 0.2) + lambda²),
// chi <= 1.0. Also chiLT of the general case 6.3.2.2 (6.56), with the alpha of Table 6.3.
double reductionFactor(double alpha, double lambda);

// (6.57): chiLT = 1 / (Phi + sqrt(Phi² - beta lambda²)), Phi = 0.5 (1 + alpha (lambda - lambda0) +
// beta lambda²), chiLT <= 1.0 and <= 1 / lambda².
double reductionFactorLT(double alpha, double lambda, double lambda0, double beta);

} // namespace design
