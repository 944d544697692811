#pragma once

#include "Export.h"

#include <KaVector3D.h>

namespace SteelDesign {

// A straight plate of a section as cut by CrossSectionCutter: its two end points in the section plane,
// the width c used for the c/t ratio and the thickness t (m). FlangePart and WebPart are its two kinds.
class STEELDESIGN_API PlatePart {
public:
    PlatePart(const KaVector3D& first, const KaVector3D& second, double c, double t)
        : first_(first), second_(second), c_(c), t_(t)
    {
    }

    const KaVector3D& getFirstPoint() const { return first_; }
    const KaVector3D& getSecondPoint() const { return second_; }
    double getC() const { return c_; }
    double getT() const { return t_; }

private:
    KaVector3D first_;
    KaVector3D second_;
    double c_;
    double t_;
};

} // namespace SteelDesign
