#pragma once

namespace SteelDesign {

// Selects the branch of the buckling reduction factor (BucklingResistance::calculateChi).
enum class BucklingType : int {
    Compression = 0,  // flexural buckling of a compressed member (6.3.1.2)
    Bending = 1,      // lateral-torsional buckling of a member in bending (6.3.2.2 or 6.3.2.3)
};

} // namespace SteelDesign
