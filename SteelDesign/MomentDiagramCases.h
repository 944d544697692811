#pragma once

namespace SteelDesign {

// Selects the moment coefficient zeta of the elastic critical moment (BucklingResistance::calculateZeta).
enum class MomentDiagramCases : int {
    Linear = 0,      // end moments only: zeta = 1.77 - 0.77 psi
    Transverse = 1,  // a transverse load: 1.35 on a polygonal diagram, 1.12 on a parabolic one
};

} // namespace SteelDesign
