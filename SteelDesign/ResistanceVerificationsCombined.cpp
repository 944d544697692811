// Combined actions of ResistanceVerifications: bending with normal force (EN 1993-1-1 6.2.9), bending
// with shear (6.2.8), bending with shear and normal force, and shear with torsion (6.2.7(9)).

#include "ResistanceVerifications.h"

#include "SectionInitializer.h"

#include <SDBSection.h>

#include <algorithm>
#include <cmath>

namespace SteelDesign {

namespace {
const double sqrt3 = std::sqrt(3.0);
using UT = VerificationResults::UtilizationType;
using Kind = SectionInitializer::SectionKind;

// std::pow(x, e), without the call for e = 1, where std::pow returns x itself.
double power(double x, double e) { return e == 1.0 ? x : std::pow(x, e); }
} // namespace

double ResistanceVerifications::webAxialRatio() const
{
    const kat::Nullable<double> rhoZ = results_.getShearReductionFactorZ();
    const double fy = rhoZ.hasValue() ? initializer_.getFy() * rhoZ.value() : initializer_.getFy();
    const double Aw = section_->getWebArea();
    if (!isValid(Aw * fy)) return 0.0;
    return std::fabs(forces_.getN() / (Aw * fy / gammaM0_));
}

// 6.2.9.1(5) for I sections (with the thresholds of 6.2.9.1(4)), 6.2.9.1(6) for hollow sections, and the
// solid and circular sections' own expressions.
double ResistanceVerifications::calculateAxialBendingReductionFactorAxisY() const
{
    const double Ared = reducedArea();
    if (!isValid(Ared) || !isPlasticClass()) return 1.0;
    const double n = utilizationOr0(UT::Axial);
    const double a = (Ared - 2.0 * section_->getFlangeWidth1() * section_->getGoverningThickness()) / Ared;
    const double aLimited = std::min(a, 0.5);
    const Kind type = initializer_.getSectionKind();
    if (type == Kind::I) {
        if (n > 0.25 + 1e-6 && webAxialRatio() > 0.5 + 1e-6) {
            results_.setRequiredAxialBending(true);
            return (1.0 - n) / (1.0 - 0.5 * aLimited);
        }
        return 1.0;
    }
    if (type == Kind::R) return 1.0 - n * n;
    if (type == Kind::RH) return (1.0 - n) / (1.0 - 0.5 * aLimited);
    if (type == Kind::O) return 1.0 - std::pow(n, 1.7);
    return 1.0;
}

double ResistanceVerifications::calculateAxialBendingReductionFactorAxisZ() const
{
    const double Ared = reducedArea();
    if (!isValid(Ared) || !isPlasticClass()) return 1.0;
    const double n = utilizationOr0(UT::Axial);
    const double t = section_->getGoverningThickness();
    const Kind type = initializer_.getSectionKind();
    if (type == Kind::R) return 1.0 - n * n;
    if (type == Kind::RH) {
        const double af = (Ared - 2.0 * section_->getHeight() * t) / Ared;
        return (1.0 - n) / (1.0 - 0.5 * std::min(af, 0.5));
    }
    if (type == Kind::O) return 1.0 - std::pow(n, 1.7);
    if (type == Kind::Circle) return 1.0;
    if (type == Kind::I) {
        const double a = (Ared - 2.0 * section_->getFlangeWidth1() * t) / Ared;
        if (webAxialRatio() > 1.0 + 1e-6 && n > a + 1e-6) {
            const double aLimited = std::min(a, 0.5);
            const double x = (n - aLimited) / (1.0 - aLimited);
            return 1.0 - x * x;
        }
        return 1.0;
    }
    return 1.0;
}

void ResistanceVerifications::saveResultsAxialBending(double uy, double uz) const
{
    results_.setUtilization(UT::AxialBendingY, uy);
    results_.setUtilization(UT::AxialBendingZ, uz);
}

void ResistanceVerifications::verifyAxialBendingResistance() const
{
    verifyAxialResistance();
    if (!results_.isFulfilled(UT::Axial)) return;
    const double n = utilizationOr0(UT::Axial);
    if (isPlasticClass() && checkSectionType()) {
        const double ky = calculateAxialBendingReductionFactorAxisY();
        const double kz = calculateAxialBendingReductionFactorAxisZ();
        const double uy = calculateMyEd2MyRd(ky);
        const double uz = calculateMzEd2MzRd(kz);
        saveResultsAxialBending(uy, uz);
        if (isBothAxesBending(uy, uz)) {
            const double alpha = findAlpha(n);
            const double beta = findBeta(n);
            results_.setUtilization(UT::AxialBending, power(uy, alpha) + power(uz, beta));
        } else {
            results_.setUtilization(UT::AxialBending, isValid(uy) ? uy : uz);
        }
    } else {
        verifyBendingResistance();
        results_.setUtilization(UT::AxialBending, n + utilizationOr0(UT::BendingY) + utilizationOr0(UT::BendingZ));
    }
}

// 6.2.8(3): rho = (2 VEd / Vpl,Rd - 1)^2, applied from a shear utilization of 0.55 on (inclusive).
double ResistanceVerifications::calculateShearBendingReductionFactor(double uv) const
{
    if (uv >= 0.55) {
        results_.setRequiredShearBending(true);
        const double x = 2.0 * uv - 1.0;
        return 1.0 - x * x;
    }
    return 1.0;
}

// The same factor for bending with shear and normal force, from a utilization above 0.55 (strict).
double ResistanceVerifications::calculateAxialShearBendingReductionFactor(double uv) const
{
    if (uv > 0.55) {
        results_.setRequiredAxialShearBending(true);
        const double x = 2.0 * uv - 1.0;
        return 1.0 - x * x;
    }
    return 1.0;
}

// 6.2.8(5), I sections bent about y: My,V,Rd = (Wpl,y - rho Aw^2 / (4 tw)) fy / gammaM0, not above Mc,Rd.
double ResistanceVerifications::calculateShearBendingSecIMVRd(double uv) const
{
    const double rho = uv >= 0.55 ? (2.0 * uv - 1.0) * (2.0 * uv - 1.0) : 0.0;
    const double tw = section_->getWebThickness();
    double MyVRd = 0.0;
    double McRd = 0.0;
    if (isValid(tw)) {
        const double Aw = section_->getWebArea();
        const double Wply = section_->getWply();
        MyVRd = (Wply - rho * Aw * Aw / (4.0 * tw)) * initializer_.getFy() / gammaM0_;
        McRd = calculateMycRd(1.0, Wply);
    }
    if (!isValid(MyVRd)) return 0.0;
    return forces_.getMy() / std::min(MyVRd, McRd);  // signed My, as this library has it
}

double ResistanceVerifications::calculateMyEd2MyVRd(double uv) const
{
    if (initializer_.getSectionKind() == Kind::I && !isValid(utilizationOr0(UT::BendingZ)))
        return calculateShearBendingSecIMVRd(uv);
    return calculateMyEd2MyRd(calculateShearBendingReductionFactor(uv));
}

void ResistanceVerifications::verifyShearBendingResistanceAxisY() const
{
    verifyShearResistanceAxisY();
    verifyShearTorsionResistanceAxisY();
    const double ut = utilizationOr0(UT::Torsion);
    double uv;
    if (isValid(ut) && results_.getVerifiedShearTorsionAxisY())
        uv = results_.getUtilizationShearTorsionAxisY();
    else
        uv = results_.isFulfilled(UT::ShearY) ? utilizationOr0(UT::ShearY) : 0.0;
    // Shear in y reduces the resistance to bending about z.
    results_.setUtilization(UT::ShearBendingY, calculateMzEd2MzRd(calculateShearBendingReductionFactor(uv)));
}

void ResistanceVerifications::verifyShearBendingResistanceAxisZ() const
{
    verifyShearResistanceAxisZ();
    verifyShearTorsionResistanceAxisZ();
    const double ut = utilizationOr0(UT::Torsion);
    double uv;
    if (isValid(ut) && results_.getVerifiedShearTorsionAxisZ())
        uv = results_.getUtilizationShearTorsionAxisZ();
    else
        uv = results_.isFulfilled(UT::ShearZ) ? utilizationOr0(UT::ShearZ) : 0.0;
    results_.setUtilization(UT::ShearBendingZ, calculateMyEd2MyVRd(uv));
}

void ResistanceVerifications::verifyShearBendingResistance() const
{
    verifyShearBendingResistanceAxisZ();
    verifyShearBendingResistanceAxisY();
    results_.setUtilization(UT::ShearBending,
                            std::max(utilizationOr0(UT::ShearBendingY), utilizationOr0(UT::ShearBendingZ)));
}

void ResistanceVerifications::verifyAxialShearBendingResistance() const
{
    verifyBendingResistance();

    verifyShearResistanceAxisZ();
    if (results_.isFulfilled(UT::ShearZ)) {
        const double u = utilizationOr0(UT::ShearZ);
        if (u >= 0.55) results_.setShearReductionFactorZ(1.0 - (2.0 * u - 1.0) * (2.0 * u - 1.0));
    }
    verifyShearResistanceAxisY();
    if (results_.isFulfilled(UT::ShearY)) {
        const double u = utilizationOr0(UT::ShearY);
        if (u >= 0.55) results_.setShearReductionFactorY(1.0 - (2.0 * u - 1.0) * (2.0 * u - 1.0));
    }

    verifyShearBendingResistanceAxisZ();
    verifyShearBendingResistanceAxisY();
    verifyAxialBendingResistance();

    double uy = 0.0, uz = 0.0, ub = 0.0;
    if (results_.isFulfilled(UT::AxialBending)) {
        uy = utilizationOr0(UT::AxialBendingY);
        uz = utilizationOr0(UT::AxialBendingZ);
        ub = utilizationOr0(UT::AxialBending);
    }
    if (isBothAxesBending(uy, uz))
        results_.setUtilization(UT::AxialShearBending, ub);
    else
        results_.setUtilization(UT::AxialShearBending, isValid(uy) ? uy : uz);
}

// ---- shear with torsion, EN 1993-1-1 6.2.7(9) ----------------------------------------------------------

// 6.2.7(9): I sections (6.23, with the absolute value taken before the root), channels (6.24 with no
// warping shear stress), hollow sections (6.25); any other kind is not reduced.
double ResistanceVerifications::calculateVTRd(double VcRd, double It, double t) const
{
    const double tauT = isValid(It * t) ? forces_.getMt() * t / It : 0.0;
    const double tauRd = initializer_.getFy() / sqrt3 / gammaM0_;
    const Kind type = initializer_.getSectionKind();
    if (type == Kind::I) return std::sqrt(std::fabs(1.0 - tauT / (1.25 * tauRd))) * VcRd;
    if (type == Kind::U) return (std::sqrt(1.0 - tauT / (1.25 * tauRd)) - 0.0 / tauRd) * VcRd;
    if (type == Kind::O || type == Kind::RH) return (1.0 - tauT / tauRd) * VcRd;
    return VcRd;
}

double ResistanceVerifications::shearTorsionThickness() const
{
    const Kind type = initializer_.getSectionKind();
    if (type == Kind::I || type == Kind::T) return section_->getTorsionThickness();
    if (type == Kind::O || type == Kind::RH) {
        const std::span<const double> thicknesses = initializer_.getThicknesses();
        return thicknesses.empty() ? 0.0 : thicknesses.front();
    }
    return 0.0;
}

ResistanceVerifications::ShearTorsion ResistanceVerifications::shearTorsion(int index) const
{
    ShearTorsion& kept = shearTorsion_[index];
    if (keepShearTorsion_ && kept.known) return kept;
    ShearTorsion v;
    const double t = shearTorsionThickness();
    // calculateVcRd names the bending axis: Axis::z for a shear force in y, Axis::y for one in z.
    v.VRd = calculateVcRd(index == 0 ? Axis::z : Axis::y, t);
    v.VTRd = calculateVTRd(v.VRd, section_->getIt(), t);
    v.known = true;
    if (keepShearTorsion_) kept = v;
    return v;
}

void ResistanceVerifications::verifyShearTorsionResistanceAxisY() const
{
    if (!isPlasticClass()) return;
    const ShearTorsion v = shearTorsion(0);
    results_.setResistanceVyRd(v.VRd);
    if (isValid(v.VRd)) {
        results_.setResistanceVyTRd(v.VTRd);
        results_.setUtilizationShearTorsionAxisY(forces_.getVy() / v.VTRd);
    }
}

void ResistanceVerifications::verifyShearTorsionResistanceAxisZ() const
{
    if (!isPlasticClass()) return;
    const ShearTorsion v = shearTorsion(1);
    results_.setResistanceVzRd(v.VRd);
    if (isValid(v.VRd)) {
        results_.setResistanceVzTRd(v.VTRd);
        results_.setUtilizationShearTorsionAxisZ(forces_.getVz() / v.VTRd);
    }
}

} // namespace SteelDesign
