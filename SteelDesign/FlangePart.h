#pragma once

#include "PlatePart.h"

namespace SteelDesign {

// An outstand plate (one edge supported, one free): the first point is the supported edge, the second
// point the free edge.
class STEELDESIGN_API FlangePart : public PlatePart {
public:
    using PlatePart::PlatePart;
};

} // namespace SteelDesign
