// BucklingResistance: construction, the dispatcher, the reduction factor and flexural buckling
// (EN 1993-1-1 6.3.1). Lateral-torsional buckling, the interaction and shear buckling live in
// BucklingResistanceLateralTorsional.cpp, BucklingResistanceInteraction.cpp and BucklingResistanceShear.cpp.

#include "BucklingResistance.h"

#include <KaMath.h>
#include <SDBSection.h>

#include <algorithm>
#include <cmath>

namespace SteelDesign {

namespace {

using U = BucklingResults::UtilizationType;

constexpr double forceTolerance = 1e-6;

} // namespace

BucklingResistance::BucklingResistance(BucklingResults& results, SDBSection* section,
                                       const SectionInitializer& initializer, const Forces& forces,
                                       const MomentDistribution& moments, double gammaM1, double columnLength,
                                       double C_theta, double S, bool torsionallyDeformable, bool cmFloor)
    : BucklingResistance(results, section, initializer, forces, moments, gammaM1,
                         BucklingLengths{columnLength, columnLength, columnLength}, C_theta, S, torsionallyDeformable,
                         cmFloor)
{
}

BucklingResistance::BucklingResistance(BucklingResults& results, SDBSection* section,
                                       const SectionInitializer& initializer, const Forces& forces,
                                       const MomentDistribution& moments, double gammaM1,
                                       const BucklingLengths& lengths, double C_theta, double S,
                                       bool torsionallyDeformable, bool cmFloor)
    : results_(&results), section_(section), forces_(forces), momentDistribution_(moments),
      sectionInitializer_(initializer), gammaM1_(gammaM1), columnLength_(lengths.y), lengthZ_(lengths.z),
      lengthLT_(lengths.lateralTorsional), C_theta_(C_theta), S_(S), cmFloor_(cmFloor),
      torsionallyDeformable_(torsionallyDeformable)
{
    using Kind = SectionInitializer::SectionKind;
    const Kind type = sectionInitializer_.getSectionKind();
    if (type == Kind::I || type == Kind::T)
        results_->setErrorCode(KaMath::isFuzzyZero(forces_.getMy(), forceTolerance) ? ErrorCode::NotSupported
                                                                                    : ErrorCode::NoError);
    else
        results_->setErrorCode(ErrorCode::NoError);
    results_->setClass(sectionInitializer_.getClass());
    thetaGiven_ = std::fabs(C_theta_) >= forceTolerance;
    shearPanelGiven_ = std::fabs(S_) >= forceTolerance;
}

bool BucklingResistance::isValid(double value) const { return !KaMath::isFuzzyZero(value, KaMath::getEpsMin()); }

// --- dispatcher -------------------------------------------------------------------------------------

void BucklingResistance::verifyAllResistance() const
{
    const double N = forces_.getN();
    const double My = forces_.getMy();
    const double Mz = forces_.getMz();
    const bool compression = N < -forceTolerance;
    auto utilizationOrZero = [this](U type) { return results_->getUtilization(type).valueOr(0.0); };

    if (compression && std::fabs(My) < forceTolerance && std::fabs(Mz) < forceTolerance) {
        calculateCompressionBucklingResistanceAxisY();
        calculateCompressionBucklingResistanceAxisZ();
        calculateNRk();
        results_->setUtilization(U::Compression, std::max(utilizationOrZero(U::CompressionAxisY),
                                                          utilizationOrZero(U::CompressionAxisZ)));
        return;
    }
    if (std::fabs(My) < forceTolerance) return;  // Mz alone, or compression with Mz only: no member check

    if (std::fabs(N) < forceTolerance) {
        calculateBendingBucklingResistanceAxisY();
        results_->setUtilization(U::Bending, utilizationOrZero(U::BendingAxisY));
    } else if (compression) {
        calculateCompressionBucklingResistanceAxisY();
        calculateCompressionBucklingResistanceAxisZ();
        calculateBendingBucklingResistanceAxisY();
        findEquivalentMomentFactor(Axis::y);
        findEquivalentMomentFactor(Axis::z);
        calculateInteractionFactors();
        calculateCompressionBendingBucklingResistanceAxisY();
        calculateCompressionBendingBucklingResistanceAxisZ();
        calculateNRk();
        results_->setUtilization(U::CompressionBending, std::max(utilizationOrZero(U::CompressionBendingAxisY),
                                                                 utilizationOrZero(U::CompressionBendingAxisZ)));
    }
    // Tension with bending: nothing is verified.
}

// --- reduction factor -------------------------------------------------------------------------------

double BucklingResistance::findAlpha(BucklingCurve curve) const
{
    double alpha = 1.0;
    switch (curve) {
    case BucklingCurve::a0: alpha = 0.13; break;
    case BucklingCurve::a: alpha = 0.21; break;
    case BucklingCurve::b: alpha = 0.34; break;
    case BucklingCurve::c: alpha = 0.49; break;
    case BucklingCurve::d: alpha = 0.76; break;
    case BucklingCurve::none: break;
    }
    results_->setAlpha(alpha);
    return alpha;
}

double BucklingResistance::calculateChi(double lambda, BucklingCurve curve, BucklingType type,
                                        bool forceLTBMethod) const
{
    const Standard::Mode mode = KaStandard::get()->getMode();
    const double lambda2 = lambda * lambda;

    if (type == BucklingType::Bending && (mode == Standard::Mode::RolledLTB || forceLTBMethod)) {
        // 6.3.2.3: rolled and equivalent welded sections.
        findbeta(mode);
        findLambdaLT0(mode);
        const double beta = results_->getBeta();
        const double lambdaLT0 = results_->getLambdaLT0();
        const double alpha = findAlpha(curve);
        const double phi = 0.5 * (1.0 + alpha * (lambda - lambdaLT0) + beta * lambda2);
        results_->setPhi(phi);
        const double D = phi + std::sqrt(phi * phi - beta * lambda2);
        const double chi = isValid(D) ? 1.0 / D : 0.0;
        // (6.57): chiLT <= 1.0 and <= 1 / lambdaLT^2.
        const double chiMax = lambda2 <= 1.0 ? 1.0 : 1.0 / lambda2;
        results_->setChiLT(std::min(chi, chiMax));
        const double kc = findCorrectionFactor();
        results_->setCorrectionFactor(kc);
        // (6.58): f = 1 - 0.5 (1 - kc) (1 - 2.0 (lambdaLT - 0.8)^2), at most 1.0; stored before the limit.
        const double lambdaOff = lambda - 0.8;
        double f = 1.0 - 0.5 * (1.0 - kc) * (1.0 - 2.0 * lambdaOff * lambdaOff);
        results_->setReduceFactor(f);
        f = std::min(f, 1.0);
        const double chiMod = chi / f;
        results_->setChiLTmod(std::min(chiMod, chiMax));
        return chiMod;  // deliberately not limited: see the class comment
    }

    // (6.49): flexural buckling, and lateral-torsional buckling by the general case (6.56).
    const double alpha = findAlpha(curve);
    const double phi = 0.5 * (1.0 + alpha * (lambda - 0.2) + lambda2);
    const double D = phi + std::sqrt(phi * phi - lambda2);
    const double chi = isValid(D) ? 1.0 / D : 0.0;
    return std::min(chi, 1.0);
}

// --- flexural buckling ------------------------------------------------------------------------------

double BucklingResistance::calculateBucklingLoad(double I) const
{
    return calculateBucklingLoad(I, calculateColumnLength());
}

double BucklingResistance::calculateBucklingLoad(double I, double L) const
{
    if (KaMath::isFuzzyZero(L, KaMath::getEpsReal())) return 0.0;
    return KaMath::Pi * KaMath::Pi * sectionInitializer_.getEs() * I / (L * L);
}

double BucklingResistance::calculateCompressionLambda(Axis axis) const
{
    const double I = axis == Axis::z ? section_->getIz() : section_->getIy();
    const double Ncr = calculateBucklingLoad(I, bucklingLengthOf(axis));
    results_->setNcr(axis, Ncr);
    const double lambda = isValid(Ncr) ? std::sqrt(section_->getA() * sectionInitializer_.getFy() / Ncr) : 0.0;
    results_->setLambda(axis, lambda);  // an axis outside y and z is not stored
    return lambda;
}

double BucklingResistance::calculateNbyRd() const
{
    const double lambda = calculateCompressionLambda(Axis::y);
    const BucklingCurve curve = sectionInitializer_.getCompressionBucklingCurveAxisY();
    results_->setBucklingCurveCompression(Axis::y, curve);
    const double chi = calculateChi(lambda, curve, BucklingType::Compression, false);
    results_->setChi(Axis::y, chi);
    const double NbRd = chi * section_->getA() * sectionInitializer_.getFy() / gammaM1_;
    results_->setBucklingResistance(U::CompressionAxisY, NbRd);
    return NbRd;
}

double BucklingResistance::calculateNbzRd() const
{
    const double lambda = calculateCompressionLambda(Axis::z);
    const BucklingCurve curve = sectionInitializer_.getCompressionBucklingCurveAxisZ();
    results_->setBucklingCurveCompression(Axis::z, curve);
    const double chi = calculateChi(lambda, curve, BucklingType::Compression, false);
    results_->setChi(Axis::z, chi);
    const double NbRd = chi * section_->getA() * sectionInitializer_.getFy() / gammaM1_;
    results_->setBucklingResistance(U::CompressionAxisZ, NbRd);
    return NbRd;
}

void BucklingResistance::calculateCompressionBucklingResistanceAxisY() const
{
    const double NbRd = calculateNbyRd();
    results_->setBucklingResistance(U::CompressionAxisY, NbRd);
    if (isValid(NbRd)) results_->setUtilization(U::CompressionAxisY, std::fabs(forces_.getN() / NbRd));
}

void BucklingResistance::calculateCompressionBucklingResistanceAxisZ() const
{
    const double NbRd = calculateNbzRd();
    if (isValid(NbRd)) results_->setUtilization(U::CompressionAxisZ, std::fabs(forces_.getN() / NbRd));
}

void BucklingResistance::verifyAllCompressionBuckling() const
{
    calculateCompressionBucklingResistanceAxisY();
    calculateCompressionBucklingResistanceAxisZ();
    const double uy = results_->getUtilization(U::CompressionAxisY).valueOr(0.0);
    const double uz = results_->getUtilization(U::CompressionAxisZ).valueOr(0.0);
    results_->setUtilization(U::Compression, uz > uy ? uz : uy);
}

double BucklingResistance::calculateNRk() const
{
    const double NRk = section_->getA() * sectionInitializer_.getFy();
    results_->setNRk(NRk);
    return NRk;
}

} // namespace SteelDesign
