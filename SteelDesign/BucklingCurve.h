#pragma once

#include "Export.h"

namespace SteelDesign {

// Buckling curves of EN 1993-1-1 Table 6.1 (flexural) and Table 6.3 (lateral-torsional).
// Imperfection factors: a0 0.13, a 0.21, b 0.34, c 0.49, d 0.76; none (not set) takes 1.0.
enum class BucklingCurve : int {
    none = 0,
    a0 = 1,
    a = 2,
    b = 3,
    c = 4,
    d = 5,
};

// "a0", "a", "b", "c", "d", or "" for none and any value outside 1..5.
STEELDESIGN_API const char* toString(BucklingCurve curve);

} // namespace SteelDesign
