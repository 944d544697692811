#pragma once

#include "Axis.h"
#include "BucklingCurve.h"
#include "BucklingResults.h"
#include "BucklingType.h"
#include "Export.h"
#include "Forces.h"
#include "MomentDiagramCases.h"
#include "MomentDistribution.h"
#include "SectionInitializer.h"

#include <KaStandard.h>
#include <KaVector3D.h>

#include <array>
#include <cstddef>

class SDBSection;
struct BucklingResistanceTestAccess;  // the tests' window on the private steps

namespace SteelDesign {

// The member verifier: flexural buckling (EN 1993-1-1 6.3.1), lateral-torsional buckling (6.3.2), the
// interaction of compression and bending ((6.61), (6.62) with Annex B) and shear buckling of webs
// (EN 1993-1-5 5). It writes every intermediate and final value into a BucklingResults record owned by
// the caller; all operations are const and change only that record.
//
// The section and the record are borrowed (the caller keeps them alive while the verifier is used);
// the initializer, the forces and the moment distribution are copied. gammaM1 divides every design
// resistance (Nb,Rd, Mb,Rd, Vb,Rd and its parts) and must be positive. columnLength is the buckling
// length about y, about z and for lateral-torsional buckling (a second constructor takes three lengths). C_theta (rotational restraint) and S
// (shear-panel stiffness) enter the critical moment only; a magnitude below 1e-6 means none.
//
// Error codes: at construction, an I or T section with My fuzzy zero (1e-6) gets NotSupported (6) in
// the record, every other case NoError; the flexural checks run regardless. Shear buckling keeps a
// code of its own (ShearBucklingNotRequired (7) until verifyShearBuckling has found the web slender).
//
// verifyAllResistance dispatches on the forces (a force counts as zero below 1e-6 in magnitude):
//   N < 0, My = Mz = 0     flexural buckling about y and z, NRk; Compression = the larger utilization;
//   My != 0, N = 0         lateral-torsional buckling; Bending = BendingAxisY;
//   My != 0, N < 0         flexural buckling, lateral-torsional buckling, Cm about y and z, the
//                          interaction factors, (6.61), (6.62), NRk; CompressionBending = the larger;
//   anything else          nothing: tension with bending, Mz without My, compression with Mz only.
//                          These are outside the member check on purpose.
//
// Rules kept as they stand (each pinned by a test):
//  - calculateChi, method for rolled sections (6.3.2.3): the stored ChiLT and ChiLTmod are limited by
//    1.0 and 1 / lambdaLT^2, but the returned factor chiLT / f is not; the factor f is stored before it
//    is limited to 1.0.
//  - Lateral-torsional buckling by the general case (6.3.2.2) stores no ChiLT and no ChiLTmod, so (6.61)
//    divides by a zero MyRd and its utilization is infinite (not a number when My = 0): the interaction
//    check is meant for the method for rolled sections.
//  - The ratio psi of the critical moment is taken as a magnitude; a straight-line diagram whose middle
//    value lies on the mean of positive end moments does not take zeta = 1.77 - 0.77 psi (nor the
//    straight-line Cm of Table B.3).
//  - The z entry of lateral-torsional buckling divides |Mz| by the major-axis Mb,Rd.
//  - Class 1 and 2 I sections: kzz multiplies by Cmy, not Cmz.
//  - Shear buckling: Vbf,Rd uses the unlimited mean flange width and turns negative when |My| > Mf,Rd.
//
// Decisions of this implementation where the rules say nothing:
//  - The moment values are read through MomentDistribution::getMomentWert, so a distribution with
//    fewer than three values per axis reads the missing ones as 0 instead of reading out of range.
//  - A division whose divisor is exactly zero and whose result the rules keep (the MyRd of (6.61), a
//    class-4 MzRd, CmLT = 0.25) gives +-infinity, or NaN for 0 / 0, without a floating-point trap.
//  - Shear buckling: a section with one plate thickness (hollow sections, angles) takes it for the
//    flanges too, a section with none (an unhandled kind) reads 0.
//  - Shear buckling: a web thickness that is fuzzy zero makes the check "not required" (code 7); an
//    Mf,Rd or a length c of EN 1993-1-5 (5.8) that is fuzzy zero gives Vbf,Rd = 0 (the flanges'
//    contribution neglected, EN 1993-1-5 5.4(1)).
//  - The torsion parameter k of the restrained critical moment is taken as very large (the third band
//    of the tables) when L^2 G IT is fuzzy zero.
class STEELDESIGN_API BucklingResistance {
public:
    BucklingResistance(BucklingResults& results, SDBSection* section, const SectionInitializer& initializer,
                       const Forces& forces, const MomentDistribution& moments, double gammaM1,
                       double columnLength, double C_theta, double S, bool torsionallyDeformable, bool cmFloor);

    // Separate buckling lengths: Lcr,y for flexural buckling about y, Lcr,z about z, and LLT, the length
    // between lateral restraints of the compression flange, for the elastic critical moment (its Ncr,z,
    // its torsion term and its rotational restraint). The web panel length of shear buckling,
    // a = min(3 hw, L), takes Lcr,y, the length of the member in its plane of bending.
    // BucklingLengths{L, L, L} gives, value for value, the results of the constructor above with L.
    struct BucklingLengths {
        double y = 0.0;
        double z = 0.0;
        double lateralTorsional = 0.0;
    };
    BucklingResistance(BucklingResults& results, SDBSection* section, const SectionInitializer& initializer,
                       const Forces& forces, const MomentDistribution& moments, double gammaM1,
                       const BucklingLengths& lengths, double C_theta, double S, bool torsionallyDeformable,
                       bool cmFloor);

    // --- dispatcher and flexural buckling (6.3.1) ---------------------------------------------------
    void verifyAllResistance() const;
    void verifyAllCompressionBuckling() const;
    void calculateCompressionBucklingResistanceAxisY() const;
    void calculateCompressionBucklingResistanceAxisZ() const;
    // NRk = A fy, stored.
    double calculateNRk() const;

    // --- lateral-torsional buckling (6.3.2) ---------------------------------------------------------
    double calculateElasticCriticalMoment() const;
    void calculateBendingBucklingResistanceAxisY() const;
    void calculateBendingBucklingResistanceAxisZ() const;
    void verifyAllBendingBuckling() const;
    double calculateMbRd() const;
    double calculateMyRk() const;
    double calculateMzRk() const;

    // --- compression and bending ((6.61), (6.62)) ---------------------------------------------------
    void calculateCompressionBendingBucklingResistanceAxisY() const;
    void calculateCompressionBendingBucklingResistanceAxisZ() const;

    // --- shear buckling (EN 1993-1-5 5.2, 5.3, 5.4) -------------------------------------------------
    void verifyShearBuckling() const;
    double calculateVbRd() const;
    double calculateVbwRd() const;
    double calculateVbfRd() const;

private:
    friend struct ::BucklingResistanceTestAccess;

    // Flexural buckling.
    double calculateNbyRd() const;
    double calculateNbzRd() const;
    double calculateCompressionLambda(Axis axis) const;
    // Ncr = pi^2 E I / L^2 with the length L of the constructor taking one length.
    double calculateBucklingLoad(double I) const;
    // The same with a given length: Lcr,y, Lcr,z or LLT.
    double calculateBucklingLoad(double I, double L) const;
    double calculateColumnLength() const { return columnLength_; }
    // The buckling length about an axis: Lcr,z for z, Lcr,y for any other value (as the second moment).
    double bucklingLengthOf(Axis axis) const { return axis == Axis::z ? lengthZ_ : columnLength_; }
    // The reduction factor: (6.49) for flexural buckling and the general case of lateral-torsional
    // buckling, (6.57) with (6.58) when type is Bending and the mode is RolledLTB or forceLTBMethod is set.
    double calculateChi(double lambda, BucklingCurve curve, BucklingType type, bool forceLTBMethod) const;
    // alpha of Tables 6.1 and 6.3 (1.0 for a curve outside a0..d), stored.
    double findAlpha(BucklingCurve curve) const;
    bool isValid(double value) const;

    // Lateral-torsional buckling.
    double calculateBendingLambda() const;
    double findApplicationPointZ() const;
    double calculateZeta(MomentDiagramCases diagramCase, double psi) const;
    double calculateZeta0() const;
    double calculateZeta0S(double k) const;
    double calculateZeta0Theta(double k) const;
    void findLambdaLT0(Standard::Mode mode) const;
    void findbeta(Standard::Mode mode) const;
    double findCorrectionFactor() const;

    // Interaction.
    void findEquivalentMomentFactor(Axis axis) const;
    void calculateInteractionFactors() const;
    double calculateNormalStress(const KaVector3D& point) const;

    // Shear buckling.
    // The initializer's plate thickness of the index (0 the web, 1 the flanges); beyond the last
    // thickness the last one (hollow sections and angles have one), 0 when there is none.
    double thicknessAt(std::size_t index) const;
    double calculateLambdaW() const;
    double calculateChiW() const;
    // eps = sqrt(235 / fy[N/mm2]) and eta of EN 1993-1-5 5.1(2) (1.2 up to fy = 460 N/mm2, 1.0 above).
    static double calculateEpsilon(double fy);
    static double calculateEta(double fy);
    // chiW of EN 1993-1-5 Table 5.1, non-rigid end post.
    static double chiWFor(double lambdaW, double eta);

    // The copy of the moment distribution that the checks read: the start, middle and end values per
    // axis (a value missing in the distribution reads 0, as through MomentDistribution::getMomentWert)
    // with the diagrams, the application point, the largest moment and Mcr, held in place so that
    // building a verifier allocates nothing.
    class MomentValues {
    public:
        MomentValues() = default;
        explicit MomentValues(const MomentDistribution& moments)
            : diagramY_(moments.getMomentDiagram(Axis::y)), diagramZ_(moments.getMomentDiagram(Axis::z)),
              applicationPoint_(moments.getApplicationPoint()), maxMomentValue_(moments.getMaxMomentValue()),
              mcr_(moments.getMcr())
        {
            for (std::size_t i = 0; i < 3; ++i) {
                y_[i] = moments.getMomentWert(Axis::y, i);
                z_[i] = moments.getMomentWert(Axis::z, i);
            }
        }
        // index 0 start, 1 middle, 2 end; y for Axis::y, z for any other value.
        double getMomentWert(Axis axis, std::size_t index) const { return axis == Axis::y ? y_[index] : z_[index]; }
        MomentDiagram getMomentDiagram(Axis axis) const { return axis == Axis::y ? diagramY_ : diagramZ_; }
        ApplicationPoint getApplicationPoint() const { return applicationPoint_; }
        double getMaxMomentValue() const { return maxMomentValue_; }
        double getMcr() const { return mcr_; }

    private:
        std::array<double, 3> y_{};
        std::array<double, 3> z_{};
        MomentDiagram diagramY_ = MomentDiagram::Polygonal;
        MomentDiagram diagramZ_ = MomentDiagram::Polygonal;
        ApplicationPoint applicationPoint_ = ApplicationPoint::Center;
        double maxMomentValue_ = 0.0;
        double mcr_ = 0.0;
    };

    BucklingResults* results_;  // borrowed; a pointer so that the verifier stays assignable
    SDBSection* section_;
    Forces forces_;
    MomentValues momentDistribution_;
    SectionInitializer sectionInitializer_;
    double gammaM1_;
    double columnLength_;  // Lcr,y, and the web panel length of shear buckling
    double lengthZ_;       // Lcr,z
    double lengthLT_;      // LLT
    double C_theta_;
    double S_;
    bool cmFloor_;
    bool torsionallyDeformable_;
    bool thetaGiven_ = false;
    bool shearPanelGiven_ = false;
};

} // namespace SteelDesign
