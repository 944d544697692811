#include "ResistanceVerifications.h"

#include "SectionInitializer.h"

#include <KaMath.h>
#include <KaStandard.h>
#include <SDBSection.h>

#include <algorithm>
#include <cmath>

namespace SteelDesign {

namespace {
const double sqrt3 = std::sqrt(3.0);
using UT = VerificationResults::UtilizationType;
using Kind = SectionInitializer::SectionKind;

// std::pow(x, e), without the call for e = 1 (the exponent of every kind but I, O and RH, and the beta of
// an I section for n <= 0.2), where std::pow returns x itself.
double power(double x, double e) { return e == 1.0 ? x : std::pow(x, e); }
} // namespace

ResistanceVerifications::ResistanceVerifications(VerificationResults& results, SDBSection* section,
                                                 SectionInitializer& initializer, double gammaM0,
                                                 const Forces& forces)
    : section_(section), results_(results), forces_(forces), initializer_(initializer), gammaM0_(gammaM0)
{
    if (gammaM0 <= 1e-6) {
        const KaStandard* standard = KaStandard::get();
        gammaM0_ = Standard::Coefficients::get()->getGammaA(standard->getMode(), standard->getSituation());
    }
    const Kind type = initializer_.getSectionKind();
    if ((type == Kind::O || type == Kind::RH) && forces_.getN() != 0.0)
        initializer_.setErrorCode(ErrorCode::NotSupported);
    else
        initializer_.setErrorCode(ErrorCode::NoError);
}

bool ResistanceVerifications::checkSectionType() const
{
    const Kind type = initializer_.getSectionKind();
    return type == Kind::I || type == Kind::O || type == Kind::R || type == Kind::RH;
}

bool ResistanceVerifications::isPlasticClass() const
{
    const int cls = initializer_.getClass();
    return cls == 1 || cls == 2;
}

double ResistanceVerifications::utilizationOr0(UT type) const { return results_.getUtilization(type).valueOr(0.0); }

// ---- normal force, EN 1993-1-1 6.2.4 --------------------------------------------------------------

double ResistanceVerifications::reducedArea() const
{
    const double rhoY = results_.getShearReductionFactorY().valueOr(1.0);
    const double rhoZ = results_.getShearReductionFactorZ().valueOr(1.0);
    const double A = section_->getA();
    const double Avz = section_->getAvz();
    return Avz * rhoZ + (A - Avz) * rhoY;
}

double ResistanceVerifications::calculateAxial(double area) const
{
    const double fy = initializer_.getFy();
    const double NRd = area * fy / gammaM0_;
    const double NRdLimit = section_->getA() * fy / gammaM0_;
    results_.setNRdLimit(NRdLimit);
    results_.setNRd(NRd);
    return NRd;
}

void ResistanceVerifications::verifyAxialResistance() const
{
    const double NRd = calculateAxial(reducedArea());
    if (isValid(NRd)) results_.setUtilization(UT::Axial, std::fabs(forces_.getN() / NRd));
}

// ---- bending, EN 1993-1-1 6.2.5 and 6.2.9(6) ----------------------------------------------------------

double ResistanceVerifications::calculateMycRd(double factor, double W) const
{
    const double MRdLimit = W * initializer_.getFy() / gammaM0_;
    results_.setMRdLimit(Axis::y, MRdLimit);
    const double MRd = factor * MRdLimit;
    results_.setMRd(Axis::y, MRd);
    return MRd;
}

double ResistanceVerifications::calculateMzcRd(double factor, double W) const
{
    const double MRdLimit = W * initializer_.getFy() / gammaM0_;
    results_.setMRdLimit(Axis::z, MRdLimit);
    const double MRd = factor * MRdLimit;
    results_.setMRd(Axis::z, MRd);
    return MRd;
}

double ResistanceVerifications::calculateMyEd2MyRd(double factor) const
{
    const double MRd = calculateMycRd(factor, initializer_.findW(Axis::y));
    return isValid(MRd) ? std::fabs(forces_.getMy() / MRd) : 0.0;
}

double ResistanceVerifications::calculateMzEd2MzRd(double factor) const
{
    const double MRd = calculateMzcRd(factor, initializer_.findW(Axis::z));
    return isValid(MRd) ? std::fabs(forces_.getMz() / MRd) : 0.0;
}

bool ResistanceVerifications::isBothAxesBending(double uy, double uz) const
{
    if (isValid(uy) && isValid(uz)) {
        results_.setBiaxialBending(true);
        return true;
    }
    return false;
}

void ResistanceVerifications::saveResultsPurBending(double uy, double uz) const
{
    results_.setUtilization(UT::BendingY, uy);
    results_.setUtilization(UT::BendingZ, uz);
}

// 1.66 / (1 - 1.13 n^2), at most 6; 1.0 when the denominator is fuzzy zero.
double ResistanceVerifications::exponentRH(double n) const
{
    const double denominator = 1.0 - 1.13 * n * n;
    if (!isValid(denominator)) return 1.0;
    return std::min(1.66 / denominator, 6.0);
}

double ResistanceVerifications::findAlpha(double n) const
{
    const Kind type = initializer_.getSectionKind();
    double alpha = 1.0;
    if (type == Kind::I || type == Kind::O)
        alpha = 2.0;
    else if (type == Kind::RH)
        alpha = exponentRH(n);
    results_.setAlpha(alpha);
    return alpha;
}

double ResistanceVerifications::findBeta(double n) const
{
    const Kind type = initializer_.getSectionKind();
    double beta = 1.0;
    if (type == Kind::I)
        beta = std::max(5.0 * n, 1.0);
    else if (type == Kind::O)
        beta = 2.0;
    else if (type == Kind::RH)
        beta = exponentRH(n);
    results_.setBeta(beta);
    return beta;
}

void ResistanceVerifications::verifyBendingResistance() const
{
    const double uy = calculateMyEd2MyRd(1.0);
    const double uz = calculateMzEd2MzRd(1.0);
    saveResultsPurBending(uy, uz);
    if (isBothAxesBending(uy, uz)) {
        const double alpha = findAlpha(0.0);
        const double beta = findBeta(0.0);
        results_.setUtilization(UT::Bending, power(uy, alpha) + power(uz, beta));
    } else {
        results_.setUtilization(UT::Bending, isValid(uy) ? uy : uz);
    }
}

// ---- shear, EN 1993-1-1 6.2.6 -------------------------------------------------------------------------

double ResistanceVerifications::calculateVcRd(Axis axis, double t) const
{
    const double fy = initializer_.getFy();
    if (isPlasticClass()) {
        const double Av = axis == Axis::y ? section_->getAvz() : section_->getAvy();
        return Av * (fy / sqrt3) / gammaM0_;
    }
    if (initializer_.getClass() == 3) {
        const double I = axis == Axis::y ? section_->getIy() : section_->getIz();
        const double S = axis == Axis::y ? section_->getSys(0) : section_->getSzs(0);
        return isValid(S) ? I * t * (fy / sqrt3) / (gammaM0_ * S) : 0.0;
    }
    return 0.0;
}

void ResistanceVerifications::verifyShearResistanceAxisY() const
{
    verifyTorsionResistance();
    const double ut = utilizationOr0(UT::Torsion);
    double u = 0.0;
    if (!isValid(ut)) {
        const double VyRd = calculateVcRd(Axis::z, section_->getGoverningThickness());
        if (isValid(VyRd)) {
            u = std::fabs(forces_.getVy() / VyRd);
            results_.setResistanceVyRd(VyRd);
        }
    } else {
        verifyShearTorsionResistanceAxisY();
        u = results_.getUtilizationShearTorsionAxisY();
    }
    results_.setUtilization(UT::ShearY, u);
}

void ResistanceVerifications::verifyShearResistanceAxisZ() const
{
    verifyTorsionResistance();
    const double ut = utilizationOr0(UT::Torsion);
    double u = 0.0;
    if (!isValid(ut)) {
        const double VzRd = calculateVcRd(Axis::y, section_->getGoverningThickness());
        if (isValid(VzRd)) {
            u = forces_.getVz() / VzRd;  // signed, as this library has it
            results_.setResistanceVzRd(VzRd);
        }
    } else {
        verifyShearTorsionResistanceAxisZ();
        u = results_.getUtilizationShearTorsionAxisZ();
    }
    results_.setUtilization(UT::ShearZ, u);
}

void ResistanceVerifications::verifyShearResistance() const
{
    verifyShearResistanceAxisZ();
    verifyShearResistanceAxisY();
    results_.setUtilization(UT::Shear, std::max(utilizationOr0(UT::ShearY), utilizationOr0(UT::ShearZ)));
}

// ---- torsion, EN 1993-1-1 6.2.7 -----------------------------------------------------------------------

double ResistanceVerifications::calculateTpRd() const
{
    return section_->getIt() / section_->getZMax() * (initializer_.getFy() / gammaM0_) * sqrt3;
}

void ResistanceVerifications::verifyTorsionResistance() const
{
    const double TpRd = calculateTpRd();
    if (isValid(TpRd)) results_.setUtilization(UT::Torsion, std::fabs(forces_.getMt() / TpRd));
}

void ResistanceVerifications::verifyAllResistance() const
{
    // The shear resistances with torsion are kept for the length of this call only: a single check
    // called later reads the section anew.
    struct KeepShearTorsion {
        const ResistanceVerifications& v;
        explicit KeepShearTorsion(const ResistanceVerifications& verifier) : v(verifier)
        {
            v.shearTorsion_ = {};
            v.keepShearTorsion_ = true;
        }
        ~KeepShearTorsion() { v.keepShearTorsion_ = false; }
        KeepShearTorsion(const KeepShearTorsion&) = delete;
        KeepShearTorsion& operator=(const KeepShearTorsion&) = delete;
    } keep(*this);

    verifyBendingResistance();
    verifyShearResistance();
    verifyShearBendingResistance();
    verifyAxialShearBendingResistance();
}

} // namespace SteelDesign
