#pragma once

namespace SteelDesign {

// Selects the quantities about y (My, Iy, Wy, Wpl,y) or about z.
enum class Axis : int {
    y = 0,
    z = 1,
};

} // namespace SteelDesign
