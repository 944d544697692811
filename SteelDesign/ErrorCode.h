#pragma once

#include "Export.h"

namespace SteelDesign {

// Error codes stored by the checks. Values 1, 2, 4 and 5 are reserved and never produced.
enum class ErrorCode : int {
    NoError = 0,
    CrossSectionClass4 = 3,        // classification gave class 4: no effective-section resistances
    NotSupported = 6,              // the check does not cover this section under these actions
    ShearBucklingNotRequired = 7,  // hw / tw <= 72 eps / eta: no shear buckling resistance computed
};

// A sentence that explains the code to an engineer.
STEELDESIGN_API const char* describe(ErrorCode code);

} // namespace SteelDesign
