#pragma once

#include "KaExport.h"

#include <limits>

// Numeric helpers of the host: constants, tolerances and fuzzy comparisons.
//
// All fuzzy tests use an absolute tolerance eps given by the caller:
//   isFuzzyZero(x, eps)             |x| <= eps
//   isFuzzyGreater(a, b, eps)        a - b >  eps   (a exceeds b by more than eps)
//   isFuzzyGreaterEqual(a, b, eps)   a - b >= -eps  (a is not below b by more than eps)
//   isFuzzySmallerEqual(a, b, eps)   a - b <= eps   (a does not exceed b by more than eps)
//   isFuzzySmaller(a, b, eps)        b - a >  eps
//   isFuzzyEqual(a, b, eps)          |a - b| <= eps
// NaN compares false everywhere, so a NaN is never fuzzy zero, greater or smaller-equal.
//
// The two host tolerances:
//   getEpsMin()  = 1e-15: "is this value usable as a divisor". It must stay far below the smallest
//                 genuine section property in SI units (the second moment of a 6 mm round bar is
//                 6.4e-11 m^4, the warping constant of a small angle is below 1e-12 m^6).
//   getEpsReal() = 1e-9: the tolerance of a verdict. A utilization of 1.0 + 1e-10 is fulfilled,
//                 1.0 + 1e-8 (or 1.01) is not. It absorbs rounding of a chain of double operations,
//                 never an engineering margin.
class KA_HOST_API KaMath {
public:
    static constexpr double Pi = 3.14159265358979323846;
    static constexpr double maxDouble = std::numeric_limits<double>::max();

    static constexpr double getEpsMin() { return 1e-15; }
    static constexpr double getEpsReal() { return 1e-9; }

    static constexpr double abs(double x) { return x < 0.0 ? -x : x; }

    static constexpr bool isFuzzyZero(double x, double eps) { return abs(x) <= eps; }
    static constexpr bool isFuzzyEqual(double a, double b, double eps) { return abs(a - b) <= eps; }
    static constexpr bool isFuzzyGreater(double a, double b, double eps) { return a - b > eps; }
    static constexpr bool isFuzzyGreaterEqual(double a, double b, double eps) { return a - b >= -eps; }
    static constexpr bool isFuzzySmaller(double a, double b, double eps) { return b - a > eps; }
    static constexpr bool isFuzzySmallerEqual(double a, double b, double eps) { return a - b <= eps; }
};
