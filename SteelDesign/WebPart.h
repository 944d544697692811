#pragma once

#include "PlatePart.h"

namespace SteelDesign {

// An internal plate (both edges supported).
class STEELDESIGN_API WebPart : public PlatePart {
public:
    using PlatePart::PlatePart;
};

} // namespace SteelDesign
