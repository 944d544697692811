#pragma once

#include "Export.h"
#include "Forces.h"
#include "Nullable.h"
#include "NormalStressType.h"

#include <KaVector3D.h>

class SDBSection;

namespace SteelDesign {

// The linear normal-stress distribution along one straight plate of a section, as classification
// (EN 1993-1-1 Table 5.2) needs it: the compressed fraction alpha, the end-stress ratio psi, the
// largest compressive stress, and the tension / compression state of a point. Stresses come from
// StressCalculator over the section and a copy of the forces; the tolerance between tension, zero and
// compression is the absolute 1e-6 kN/m^2.
class STEELDESIGN_API StressUtil {
public:
    StressUtil(SDBSection* section, const Forces& forces) : section_(section), forces_(forces) {}
    ~StressUtil() {}
    StressUtil(const StressUtil&) = default;
    StressUtil& operator=(const StressUtil&) = default;

    // Compressed fraction of the plate from p1 to p2. 1.0 when both ends are compressed (or unstressed);
    // -1.0, the marker of a plate nowhere in compression, when p2 is in tension and p1 is not compressed.
    // With p2 compressed and p1 in tension the fraction is measured from p2, with p1 compressed and p2 in
    // tension from p1. The thresholds are asymmetric on purpose: in the first case a point counts as
    // compressed below +1e-6, in the second as not compressed from -1e-6 upwards.
    double calculateAlfa(const KaVector3D& p1, const KaVector3D& p2) const;
    // Compressed fraction of a web under the normal force alone: 0.5 (1 - N / (a b c 10^6)) for a web of
    // length a (m), thickness b (m) and strength c; 1.0 when the product a b c is below 1e-6.
    double calculateAlfaWeb(double a, double b, double c) const;
    // The smaller end stress when it is below -1e-6, else absent.
    kat::Nullable<double> calculateMaxCompressive(const KaVector3D& p1, const KaVector3D& p2) const;
    // The normal stress at the point of the circumference of a circular hollow section of diameter D
    // where the resultant moment sqrt(My^2 + Mz^2) compresses most.
    double calculateMaxCompressiveStressSectionO(double diameter) const;
    // psi = s2 / s1; undefined (division by zero) when s1 is exactly 0: callers must not ask then.
    double calculatePsiWeb(const KaVector3D& p1, const KaVector3D& p2) const;
    NormalStressType findNormalStressType(const KaVector3D& p) const;

    // The same rules from the normal stresses s1 at p1 and s2 at p2, for callers that have the stresses
    // already (the methods above evaluate them and use these).
    static double alfaOf(double s1, double s2);
    static kat::Nullable<double> maxCompressiveOf(double s1, double s2);
    static NormalStressType normalStressTypeOf(double s);

private:
    double stressAt(const KaVector3D& p) const;

    SDBSection* section_;
    Forces forces_;
};

} // namespace SteelDesign
