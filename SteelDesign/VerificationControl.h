#pragma once

namespace SteelDesign {

// How the section class is found. Only Classify (1) classifies; every other value, Elastic included,
// treats the section as class 3 (elastic resistances) without classification.
enum class VerificationControl : int {
    Elastic = 0,
    Classify = 1,
};

} // namespace SteelDesign
