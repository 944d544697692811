#pragma once

#include "Export.h"

#include <KaVector3D.h>

namespace SteelDesign {

// The stresses at one point of a section (kN/m^2): normal stress (tension positive), the shear
// stresses from Vy and from Vz, and the torsional part contained in them.
class STEELDESIGN_API StressTable {
public:
    StressTable(const KaVector3D& point, double normalStress, double shearStressY, double shearStressZ,
                double torsion)
        : point_(point), normalStress_(normalStress), shearStressY_(shearStressY), shearStressZ_(shearStressZ),
          torsion_(torsion)
    {
    }

    const KaVector3D& getPoint() const { return point_; }
    double getNormalStress() const { return normalStress_; }
    double getShearStressY() const { return shearStressY_; }
    double getShearStressZ() const { return shearStressZ_; }
    double getTorsion() const { return torsion_; }

private:
    KaVector3D point_;
    double normalStress_;
    double shearStressY_;
    double shearStressZ_;
    double torsion_;
};

} // namespace SteelDesign
