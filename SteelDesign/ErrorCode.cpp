#include "ErrorCode.h"

namespace SteelDesign {

const char* describe(ErrorCode code)
{
    switch (code) {
    case ErrorCode::NoError: return "no error";
    case ErrorCode::CrossSectionClass4:
        return "cross-section class 4: effective section properties (EN 1993-1-5) are not covered";
    case ErrorCode::NotSupported: return "this check is not supported for the section under these actions";
    case ErrorCode::ShearBucklingNotRequired:
        return "shear buckling verification not required (hw/tw <= 72 eps/eta, EN 1993-1-5 5.1(2))";
    }
    return "unknown error code";
}

} // namespace SteelDesign
