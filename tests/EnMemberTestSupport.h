#pragma once

// Shared by the tests of the EN member checks: the EN cross-section input built by hand, and chi of
// EN 1993-1-1 (6.49) computed independently of the library.

#include <design/EnCrossSection.h>

#include <algorithm>
#include <cmath>

// The EN cross-section result the member checks read: class, fy, epsilon and gammaM0.
inline design::EnCrossSection crossOf(int cls, double fy, double gammaM0 = 1.0)
{
    design::EnCrossSection c;
    c.sectionClass = cls;
    c.fy = fy;
    c.epsilon = std::sqrt(235000.0 / fy);
    c.gammaM0 = gammaM0;
    return c;
}

// chi of (6.49) for the relative slenderness and the imperfection factor.
inline double chiOf(double lambda, double alpha)
{
    const double phi = 0.5 * (1 + alpha * (lambda - 0.2) + lambda * lambda);
    return std::min(1.0, 1 / (phi + std::sqrt(phi * phi - lambda * lambda)));
}
