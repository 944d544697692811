// BucklingResistance: shear buckling of the web (EN 1993-1-5 5.2 to 5.4), a web without intermediate
// transverse stiffeners and with non-rigid end posts.

#include "BucklingResistance.h"

#include <KaMath.h>
#include <KaStandard.h>
#include <SDBSection.h>

#include <algorithm>
#include <cmath>

namespace SteelDesign {

namespace {
using P = BucklingResults::SectionParts;
const double sqrt3 = std::sqrt(3.0);
} // namespace

// Element 0 is the web thickness, element 1 the flange thickness. A section with one plate thickness
// (hollow sections, angles) has flanges of that same thickness; a section without any (a kind the
// initializer does not handle) reads 0, so that its web counts as not slender.
double BucklingResistance::thicknessAt(std::size_t index) const
{
    const std::span<const double> thicknesses = sectionInitializer_.getThicknesses();
    if (thicknesses.empty()) return 0.0;
    return index < thicknesses.size() ? thicknesses[index] : thicknesses.back();
}

double BucklingResistance::calculateEpsilon(double fy) { return std::sqrt(235.0 / (fy / 1000.0)); }

double BucklingResistance::calculateEta(double fy) { return KaMath::isFuzzyGreater(fy, 460000.0, 1e-6) ? 1.0 : 1.2; }

double BucklingResistance::chiWFor(double lambdaW, double eta)
{
    // Table 5.1, non-rigid end post: eta for lambdaW < 0.83 / eta, 0.83 / lambdaW from there on.
    return lambdaW >= 0.83 / eta - 1e-6 ? 0.83 / lambdaW : eta;
}

void BucklingResistance::verifyShearBuckling() const
{
    const double fy = sectionInitializer_.getFy();
    const double tw = thicknessAt(0);
    const double hw = sectionInitializer_.getHw();
    const double eta = calculateEta(fy);
    const double eps = calculateEpsilon(fy);

    // 5.1(2): an unstiffened web needs the check only when hw / tw > 72 eps / eta.
    if (!isValid(tw) || !KaMath::isFuzzyGreater(hw / tw, 72.0 * eps / eta, 1e-6)) {
        results_->setShearBucklingErrorCode(ErrorCode::ShearBucklingNotRequired);
        return;
    }
    results_->setShearBucklingErrorCode(ErrorCode::NoError);
    const double VbRd = calculateVbRd();
    if (isValid(VbRd))
        results_->setUtilizationShearBuckling(std::max(std::fabs(forces_.getVz()), std::fabs(forces_.getVy())) / VbRd);
}

double BucklingResistance::calculateLambdaW() const
{
    // 5.3(3), transverse stiffeners at the supports only: lambdaW = hw / (86.4 t eps).
    const double tw = thicknessAt(0);
    const double eps = calculateEpsilon(sectionInitializer_.getFy());
    const double lambdaW = isValid(tw * eps) ? sectionInitializer_.getHw() / (86.4 * tw * eps) : 0.0;
    results_->setLambdaW(lambdaW);
    return lambdaW;
}

double BucklingResistance::calculateChiW() const
{
    const double chiW = chiWFor(calculateLambdaW(), calculateEta(sectionInitializer_.getFy()));
    results_->setChiW(chiW);
    return chiW;
}

double BucklingResistance::calculateVbwRd() const
{
    // (5.2): Vbw,Rd = chiW fyw hw t / (sqrt(3) gammaM1).
    const double chiW = calculateChiW();
    const double tw = thicknessAt(0);
    const double VbwRd = chiW * sectionInitializer_.getFy() * sectionInitializer_.getHw() * tw / (sqrt3 * gammaM1_);
    results_->setVbRd(P::Web, VbwRd);
    return VbwRd;
}

double BucklingResistance::calculateVbfRd() const
{
    // 5.4(1): Vbf,Rd = bf tf^2 fyf (1 - (MEd / Mf,Rd)^2) / (c gammaM1),
    // c = a (0.25 + 1.6 bf tf^2 fyf / (t hw^2 fyw)), with a = min(3 hw, L) (no intermediate stiffeners).
    const double tw = thicknessAt(0);
    const double tf = thicknessAt(1);
    const double fy = sectionInitializer_.getFy();
    const double hw = sectionInitializer_.getHw();
    const double bf = 0.5 * (section_->getFlangeWidth1() + section_->getFlangeWidth2());
    const double a = std::min(3.0 * hw, columnLength_);

    const Standard::Mode mode = KaStandard::get()->getMode();
    const double gammaA = Standard::Coefficients::get()->getGammaA(mode, KaStandard::get()->getSituation());
    // Mf,Rd: the plastic moment of the flanges alone, 2 fy Q with Q the first moment of the part beyond
    // the web edge z = -hw / 2.
    const double MfRd = 2.0 * fy * section_->getSy(KaVector3D(0.0, 0.0, -hw / 2.0)) / gammaA;
    const double c = a * (0.25 + 1.6 * bf * tf * tf * fy / (tw * hw * hw * fy));

    double VbfRd = 0.0;
    if (isValid(MfRd) && isValid(c)) {
        const double ratio = forces_.getMy() / MfRd;
        VbfRd = bf * tf * tf * fy * (1.0 - ratio * ratio) / (c * gammaM1_);
    }
    results_->setVbRd(P::Flange, VbfRd);
    return VbfRd;
}

double BucklingResistance::calculateVbRd() const
{
    // (5.1): Vb,Rd = Vbw,Rd + Vbf,Rd <= eta fyw hw t / (sqrt(3) gammaM1).
    const double sum = calculateVbwRd() + calculateVbfRd();
    const double fy = sectionInitializer_.getFy();
    const double tw = thicknessAt(0);
    const double limit = calculateEta(fy) * fy * sectionInitializer_.getHw() * tw / (sqrt3 * gammaM1_);
    const double VbRd = sum > limit ? limit : sum;
    results_->setVbRd(P::Total, VbRd);
    return VbRd;
}

} // namespace SteelDesign
