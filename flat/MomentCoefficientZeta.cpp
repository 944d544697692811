// Moment coefficient zeta of the elastic critical moment Mcr for a single span.
//
// Order of the tests (the first that applies decides):
//   1. all three moments below 0.1 in magnitude: 1.0, flag untouched, no clamping;
//   2. M0 = Mm - (M1 + M2) / 2, the span moment above the straight line between the end moments;
//   3. constant moment (no span load, all three moments equal within 0.1 and of one sign): 1.0, flag 1;
//   4. span load (share >= 0.1, M0 not small against the end moments): the simply supported span takes
//      1.35 (point load) .. 1.12 (uniform load), flag 1; otherwise the span-load table below, flag 0,
//      clamped to 0.01 .. 4.43 and returned at once;
//   5. every other diagram is linear: zeta = 1.77 - 0.77 psi, flag 1;
//   6. results with flag 1 are clamped to 1.0 .. 2.54 (the values of 1.77 - 0.77 psi at psi = 1 and -1).
//
// The clamps are written as "keep the value when it lies on the right side of the bound, else take the
// bound": a psi that is not a number (0 / 0 for two zero end moments) therefore becomes 1.0.

#include "FlatInternal.h"

#include <cmath>

namespace SteelDesign::Flat {
namespace {

// Span-load table: rows psi = 0, 0.5, 1.0 (ratio of the smaller to the larger end moment); columns 0..10
// M2/M0 = 0 .. -1.0, columns 10..20 M0/M2 = -1.0 .. 0.
constexpr double kSpanLoadTable[3][21] = {
    {1.12, 1.19, 1.26, 1.34, 1.43, 1.53, 1.64, 1.76, 1.91, 2.06, 2.24,
     2.42, 2.66, 2.78, 2.38, 1.80, 1.26, 0.82, 0.47, 0.20, 0.00},
    {1.12, 1.22, 1.34, 1.49, 1.67, 1.90, 2.19, 2.57, 3.09, 3.78, 4.43,
     4.19, 3.42, 2.63, 1.93, 1.35, 0.91, 0.58, 0.33, 0.14, 0.00},
    {1.12, 1.26, 1.44, 1.67, 2.00, 2.46, 3.17, 4.30, 5.61, 5.15, 4.10,
     3.12, 2.31, 1.68, 1.21, 0.87, 0.60, 0.40, 0.24, 0.11, 0.00},
};

constexpr double kTol = 0.1;

double atMost(double x, double bound) { return x < bound ? x : bound; }
double atLeast(double x, double bound) { return x > bound ? x : bound; }

} // namespace

double momentCoefficientZeta(double M1, double Mm, double M2, double spanLoadShare, std::uint16_t* formulaFlag)
{
    if (std::fabs(M1) < kTol && std::fabs(M2) < kTol && std::fabs(Mm) < kTol) return 1.0;

    double M0 = Mm - (M1 + M2) / 2.0;
    double zeta = 1.0;
    bool decided = false;

    if (spanLoadShare < kTol && M1 - Mm > -kTol && M1 - Mm < kTol && M1 - M2 > -kTol && M1 - M2 < kTol) {
        const bool allPositive = M1 > kTol && Mm > kTol && M2 > kTol;
        const bool allNegative = M1 < -kTol && Mm < -kTol && M2 < -kTol;
        if (allPositive || allNegative) {
            *formulaFlag = 1;
            zeta = 1.0;
            decided = true;
        }
    }

    if (!decided && spanLoadShare >= kTol && std::fabs(M0) >= kTol
        && std::fabs(M0) >= kTol * 2.5 * std::fabs(M1 + M2) / 2.0) {
        decided = true;
        if (std::fabs(M1) < kTol * std::fabs(Mm) && std::fabs(M2) < kTol * std::fabs(Mm) && std::fabs(Mm) > kTol) {
            // Simply supported span: 1.35 for a point load at mid-span, 1.12 for a uniform load.
            *formulaFlag = 1;
            if (spanLoadShare > 0.9)
                zeta = 1.12;
            else if (spanLoadShare >= 0.1)
                zeta = 1.35 + (1.12 - 1.35) * spanLoadShare;
            else
                zeta = 1.35;
        } else {
            zeta = 1.0;
            if (M0 < -0.01) {
                M0 = -M0;
                M1 = -M1;
                M2 = -M2;
            }
            if (std::fabs(M1) > std::fabs(M2)) {
                const double t = M1;
                M1 = M2;
                M2 = t;
            }
            if (std::fabs(M1) < 0.05) M1 = 0.0;

            int lowerRow = 0;
            double w = 0.0;
            if (std::fabs(M1) > 0.5 * std::fabs(M2)) {
                lowerRow = 1;
                w = (M1 - 0.5 * M2) / (0.5 * M2);
            } else {
                lowerRow = 0;
                w = M2 != 0.0 ? 2.0 * M1 / M2 : 0.0; // M2 = 0 forces M1 = 0 here: psi = 0
            }

            double r = M2 / M0;
            if (spanLoadShare > 0.1 && M1 * M2 >= -0.05 && r <= 0.1) {
                *formulaFlag = 0;
                if (r > 0.0) r = 0.0;
                int i = 0;
                double f = 0.0;
                if (r >= -1.0) {
                    i = 1 - static_cast<int>(std::trunc(10.0 * r - 0.01));
                    f = -r / 0.1 - (i - 1);
                } else {
                    const double rr = M0 / M2;
                    i = static_cast<int>(std::trunc(10.0 * rr - 0.01)) + 20;
                    f = rr / 0.1 + (21 - i);
                }
                const int k = i - 1; // 0..19 by the ranges of r above
                const double* lo = kSpanLoadTable[lowerRow];
                const double* up = kSpanLoadTable[lowerRow + 1];
                const double zLower = lo[k] + (lo[k + 1] - lo[k]) * f;
                const double zUpper = up[k] + (up[k + 1] - up[k]) * f;
                zeta = zLower + (zUpper - zLower) * w;
                zeta = atMost(zeta, 4.43);
                zeta = atLeast(zeta, 0.01);
                return zeta;
            }
            // No table value: zeta stays 1.0, flag untouched.
        }
    }

    if (!decided) {
        *formulaFlag = 1;
        double psi = std::fabs(M2) > std::fabs(M1) ? M1 / M2 : M2 / M1;
        psi = atMost(psi, 1.0);
        psi = atLeast(psi, -1.0);
        zeta = 1.77 - 0.77 * psi;
    }

    if (*formulaFlag != 0) {
        zeta = atMost(zeta, 2.54);
        zeta = atLeast(zeta, 1.0);
    }
    return zeta;
}

} // namespace SteelDesign::Flat

extern "C" STEELDESIGN_FLAT_API double momentenbeiwert_drill_zeta(double M1, double Mm, double M2, double spanLoadShare,
                                                                  uint16_t* formulaFlag)
{
    return SteelDesign::Flat::momentCoefficientZeta(M1, Mm, M2, spanLoadShare, formulaFlag);
}
