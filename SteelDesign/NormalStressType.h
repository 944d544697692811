#pragma once

namespace SteelDesign {

// Whether a point of a section is in tension or in compression. Undefined (0) is never returned by
// the stress utilities; it is the value of a type that was not determined.
enum class NormalStressType : int {
    Undefined = 0,
    Tension = 1,      // normal stress greater than 1e-6 kN/m^2
    Compression = 2,  // normal stress of at most 1e-6 (a zero stress counts as compression)
};

} // namespace SteelDesign
