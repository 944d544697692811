#include "BucklingCurve.h"

namespace SteelDesign {

const char* toString(BucklingCurve curve)
{
    switch (curve) {
    case BucklingCurve::a0: return "a0";
    case BucklingCurve::a: return "a";
    case BucklingCurve::b: return "b";
    case BucklingCurve::c: return "c";
    case BucklingCurve::d: return "d";
    case BucklingCurve::none: break;
    }
    return "";
}

} // namespace SteelDesign
