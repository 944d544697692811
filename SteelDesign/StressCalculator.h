#pragma once

#include "Axis.h"
#include "Export.h"
#include "Forces.h"

#include <KaVector3D.h>

class SDBSection;

namespace SteelDesign {

// Elastic normal and shear stress at one point of a section. Holds the section and the forces by
// reference (both owned by the caller and alive while the calculator is used); cheap to build on the
// stack for one evaluation. No unit factor: forces in kN and kNm with a section in m give kN/m^2.
//
// Normal stress: sigma = N / A + My / Iy * z - Mz / Iz * y (z downwards, tension positive); 0.0 when A,
// Iy or Iz is not usable as a divisor.
// Shear stress: tau = V S / (I t) + Mt / It * t, with (S, I, V) = (Sz, Iz, Vy) for a shear force in y and
// (Sy, Iy, Vz) for Axis::z (the axis names the direction of the shear force). The torsional part is
// added with the same sign for both directions. t must not be 0.
class STEELDESIGN_API StressCalculator {
public:
    StressCalculator(SDBSection* section, const Forces& forces) : section_(section), forces_(forces) {}

    double calculateNormalStress(const KaVector3D& point) const;
    double calculateShearStress(Axis axis, const KaVector3D& point, double thickness) const;
    double calculateMt(double thickness) const;
    bool isValid(double value) const;

private:
    SDBSection* section_;
    const Forces& forces_;
};

} // namespace SteelDesign
