#pragma once

#include "Axis.h"
#include "Export.h"
#include "Forces.h"
#include "VerificationResults.h"

#include <KaMath.h>

#include <array>

class SDBSection;

namespace SteelDesign {

class SectionInitializer;
struct ResistanceVerificationsTestAccess;

// Verification of the resistance of a cross-section (EN 1993-1-1 6.2) to the design internal forces at
// one point: normal force (6.2.4), bending (6.2.5, biaxial by 6.2.9(6)), shear (6.2.6), torsion
// (6.2.7), and their interactions: bending with shear (6.2.8), with normal force (6.2.9) and with both,
// and shear with torsion (6.2.7(9)). Every result is written into the host's VerificationResults.
//
// Construction takes gammaM0 from the active standard (Standard::Coefficients::getGammaA) when the value
// given is at most 1e-6, and sets the initializer's error code: NotSupported (6) for a circular or
// rectangular hollow section under a normal force N != 0, NoError otherwise (so a class-4 code of the
// initializer does not survive). The checks do not consult the code; the host does.
//
// Rules of this library kept as they stand:
//  - the z shear utilization is Vz / VzRd with its sign (a negative Vz gives a negative ShearZ), the y one
//    |Vy / VyRd|; the shear-torsion utilizations are signed too;
//  - the plastic torsion resistance is TpRd = It / zmax * (fy / gammaM0) * sqrt(3);
//  - shear reduces bending when uv >= 0.55 (inclusive); the axial-shear-bending factor uses uv > 0.55
//    (strict); the area reduction for the normal force uses u >= 0.55;
//  - I sections: beta = max(5 n, 1) of the biaxial criterion; bending about y reduced for shear in the
//    web divides the signed My by min(MyV,Rd, Mc,Rd);
//  - the reduction factors for the normal force are not capped at 1.0.
//
// Section reads: A, Iy, Iz, It, Avy, Avz, the governing thickness t (shear and the ratio a of 6.2.9.1),
// getSys(0), getSzs(0), getZMax(), getWebArea(), getHeight(), getFlangeWidth1() (b), getWebThickness()
// (tw), getWply(), getTorsionThickness() (I and T under torsion).
class STEELDESIGN_API ResistanceVerifications {
public:
    ResistanceVerifications(VerificationResults& results, SDBSection* section, SectionInitializer& initializer,
                            double gammaM0, const Forces& forces);

    // Bending, shear, shear and bending, then axial force, shear and bending; the axial, torsion and
    // axial-bending checks run inside them.
    void verifyAllResistance() const;
    void verifyAxialResistance() const;
    void verifyBendingResistance() const;
    void verifyShearResistance() const;
    void verifyShearResistanceAxisY() const;
    void verifyShearResistanceAxisZ() const;
    void verifyTorsionResistance() const;
    void verifyAxialBendingResistance() const;
    void verifyShearBendingResistance() const;
    void verifyAxialShearBendingResistance() const;

    double getGammaM0() const { return gammaM0_; }

private:
    friend struct ResistanceVerificationsTestAccess;  // the tests reach the factors no check calls

    bool isValid(double x) const { return !KaMath::isFuzzyZero(x, KaMath::getEpsMin()); }
    bool checkSectionType() const;
    double calculateAxial(double area) const;
    double calculateMycRd(double factor, double W) const;
    double calculateMzcRd(double factor, double W) const;
    double calculateMyEd2MyRd(double factor) const;
    double calculateMzEd2MzRd(double factor) const;
    double calculateVcRd(Axis axis, double t) const;
    double calculateTpRd() const;
    double findAlpha(double n) const;
    double findBeta(double n) const;
    bool isBothAxesBending(double uy, double uz) const;
    void saveResultsPurBending(double uy, double uz) const;

    double calculateAxialBendingReductionFactorAxisY() const;
    double calculateAxialBendingReductionFactorAxisZ() const;
    void saveResultsAxialBending(double uy, double uz) const;
    double calculateShearBendingReductionFactor(double uv) const;
    double calculateAxialShearBendingReductionFactor(double uv) const;
    double calculateMyEd2MyVRd(double uv) const;
    double calculateShearBendingSecIMVRd(double uv) const;
    void verifyShearBendingResistanceAxisY() const;
    void verifyShearBendingResistanceAxisZ() const;
    void verifyShearTorsionResistanceAxisY() const;
    void verifyShearTorsionResistanceAxisZ() const;
    double calculateVTRd(double VcRd, double It, double t) const;

    // Values read back from the record, with their defaults.
    double utilizationOr0(VerificationResults::UtilizationType type) const;
    double reducedArea() const;      // Ared = Avz rhoZ + (A - Avz) rhoY
    double webAxialRatio() const;    // nw = |N / (Aw fy' / gammaM0)|
    bool isPlasticClass() const;     // class 1 or 2
    double shearTorsionThickness() const;
    double exponentRH(double n) const;

    // The shear resistance of one direction without and with torsion (6.2.7(9)). The checks of
    // verifyAllResistance ask for each direction up to six times with the same inputs, so during that
    // call the values are computed once and every later request writes the kept values into the record.
    struct ShearTorsion {
        bool known = false;
        double VRd = 0.0;   // Vc,Rd with the torsion thickness
        double VTRd = 0.0;  // Vpl,T,Rd
    };
    // index 0: shear force in y (VyRd), 1: shear force in z (VzRd).
    ShearTorsion shearTorsion(int index) const;

    SDBSection* section_;
    VerificationResults& results_;
    Forces forces_;
    SectionInitializer& initializer_;
    double gammaM0_;
    mutable std::array<ShearTorsion, 2> shearTorsion_{};
    mutable bool keepShearTorsion_ = false;  // inside verifyAllResistance
};

} // namespace SteelDesign
