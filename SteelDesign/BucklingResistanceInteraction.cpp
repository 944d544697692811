// BucklingResistance: members in compression and bending (EN 1993-1-1 6.3.3, (6.61) and (6.62)) with
// the interaction factors of Annex B (Method 2): Cm of Table B.3, kij of Tables B.1 and B.2.

#include "BucklingResistance.h"

#include <KaMath.h>
#include <SDBSection.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace SteelDesign {

namespace {

using U = BucklingResults::UtilizationType;
using K = BucklingResults::InteractionFactorkxx;

constexpr double tol = 1e-6;

// a / b; for b == 0 the IEEE result (+-infinity, NaN for 0 / 0) without dividing by zero.
double divide(double a, double b)
{
    if (b != 0.0) return a / b;
    if (a == 0.0 || std::isnan(a)) return std::numeric_limits<double>::quiet_NaN();
    return a > 0.0 ? std::numeric_limits<double>::infinity() : -std::numeric_limits<double>::infinity();
}

} // namespace

void BucklingResistance::findEquivalentMomentFactor(Axis axis) const
{
    const double M1 = momentDistribution_.getMomentWert(axis, 0);
    const double Mm = momentDistribution_.getMomentWert(axis, 1);
    const double M2 = momentDistribution_.getMomentWert(axis, 2);
    const MomentDiagram diagram = momentDistribution_.getMomentDiagram(axis);
    const double avg = (M1 + M2) / 2.0;
    const double d = Mm - avg;
    const double a1 = std::fabs(M1), a2 = std::fabs(M2);

    // psi keeps its sign here (Table B.3: -1 <= psi <= 1).
    double psi = 0.0;
    if (a2 + tol > a1 && a2 >= tol) psi = M1 / M2;
    else if (a1 > a2 + tol && a1 >= tol) psi = M2 / M1;
    else if (std::fabs(M1 - M2) < tol && std::fabs(M1 - Mm) >= tol) psi = 1.0;

    double Cc = 1.0;  // column of Table B.3 for a concentrated load
    double Cd = 1.0;  // column for a distributed load
    if (diagram == MomentDiagram::Polygonal && !(0.0001 * avg > std::fabs(d))) {
        // Straight line, taken in exactly this sense (see the class comment).
        Cc = std::max(0.4, 0.6 + 0.4 * psi);
    } else if (M1 < tol && M2 < tol && !(a1 < tol && a2 < tol)) {
        // Hogging end moments: alpha_s = Ms / Mh with Mh the (negative) larger end moment.
        const double Mh = std::max(a1, a2);
        const double alphaS = std::fabs(Mm) / (-Mh);
        if (alphaS >= -tol && alphaS < 1.0 + tol) {
            Cc = Cd = std::max(0.4, 0.2 + 0.8 * alphaS);
        } else if (alphaS >= -1.0 - tol && alphaS < -tol && psi >= -tol && psi < 1.0 + tol) {
            Cc = std::max(0.4, -0.8 * alphaS);
            Cd = std::max(0.4, 0.1 - 0.8 * alphaS);
        } else if (alphaS >= -1.0 - tol && alphaS < -tol && psi >= -1.0 - tol && psi < -tol) {
            Cc = std::max(0.4, 0.2 * (-psi) - 0.8 * alphaS);
            Cd = std::max(0.4, 0.1 * (1.0 - psi) - 0.8 * alphaS);
        }
    } else if (M1 >= -tol && M2 >= -tol && Mm > tol) {
        // Sagging span: alpha_h = Mh / Ms from magnitudes, never negative.
        const double alphaH = std::max(a1, a2) / std::fabs(Mm);
        if (alphaH >= -tol && alphaH < 1.0 + tol) {
            Cc = 0.9 - 0.1 * alphaH;
            Cd = 0.95 - 0.05 * alphaH;
        } else if (alphaH >= -1.0 - tol && alphaH < -tol) {
            // The rows of Table B.3 for a negative alpha_h: kept, but not reachable.
            if (psi >= 0.0 && psi <= 1.0) {
                Cc = 0.9 - 0.1 * alphaH;
                Cd = 0.95 - 0.05 * alphaH;
            } else if (psi >= -1.0 && psi < 0.0) {
                Cc = 0.9 - 0.1 * alphaH * (1.0 + 2.0 * psi);
                Cd = 0.95 - 0.05 * alphaH * (1.0 + 2.0 * psi);
            }
        }
    }

    double Cm = 1.0;
    if (diagram == MomentDiagram::Polygonal) Cm = Cc;
    else if (diagram == MomentDiagram::Parabolic) Cm = Cd;
    if (cmFloor_) Cm = std::max(Cm, 0.9);
    results_->setCm(axis, Cm);
}

void BucklingResistance::calculateInteractionFactors() const
{
    const BucklingResults& r = *results_;
    const double Cmy = r.getCm(Axis::y);
    const double Cmz = r.getCm(Axis::z);
    const double CmLT = Cmy;
    const double lambdaY = r.getLambda(Axis::y);
    const double lambdaZ = r.getLambda(Axis::z);
    const double ny = r.getUtilization(U::CompressionAxisY).valueOr(0.0);
    const double nz = r.getUtilization(U::CompressionAxisZ).valueOr(0.0);
    const bool sectionI = sectionInitializer_.getSectionKind() == SectionInitializer::SectionKind::I;
    const bool noMz = std::fabs(forces_.getMz()) < tol;
    const bool elastic = sectionInitializer_.getClass() >= 3;

    double kyy = 1.0, kzz = 1.0, kyz = 1.0, kzy = 1.0;
    if (elastic) {
        // Tables B.1 and B.2, classes 3 and 4.
        kyy = std::min(Cmy * (1.0 + 0.6 * lambdaY * ny), Cmy * (1.0 + 0.6 * ny));
        kzz = std::min(Cmz * (1.0 + 0.6 * lambdaZ * nz), Cmz * (1.0 + 0.6 * nz));
        kyz = kzz;
        if (torsionallyDeformable_)
            kzy = std::max(1.0 - divide(0.05 * lambdaZ * nz, CmLT - 0.25), 1.0 - divide(0.05 * nz, CmLT - 0.25));
        else
            kzy = sectionI && noMz ? 0.0 : 0.8 * kyy;
    } else {
        // Classes 1 and 2. The I-section kzz multiplies by Cmy, as required.
        kyy = std::min(Cmy * (1.0 + (lambdaY - 0.2) * ny), Cmy * (1.0 + 0.8 * ny));
        if (sectionI)
            kzz = std::min(Cmy * (1.0 + (2.0 * lambdaZ - 0.6) * nz), Cmy * (1.0 + 1.4 * nz));
        else
            kzz = std::min(Cmz * (1.0 + (lambdaZ - 0.2) * nz), Cmz * (1.0 + 0.8 * nz));
        kyz = 0.6 * kzz;
        if (torsionallyDeformable_) {
            if (lambdaZ < 0.4 - tol)
                kzy = std::min(1.0 - divide(0.1 * lambdaZ * nz, CmLT - 0.25), 0.6 + lambdaZ);
            else
                kzy = std::max(1.0 - divide(0.1 * lambdaZ * nz, CmLT - 0.25), 1.0 - divide(0.1 * nz, CmLT - 0.25));
        } else {
            kzy = sectionI && noMz ? 0.0 : 0.6 * kyy;
        }
    }
    results_->setInteractionFactor(K::kyy, kyy);
    results_->setInteractionFactor(K::kzz, kzz);
    results_->setInteractionFactor(K::kzy, kzy);
    results_->setInteractionFactor(K::kyz, kyz);
}

void BucklingResistance::calculateCompressionBendingBucklingResistanceAxisY() const
{
    // (6.61) with signed moments.
    const double ny = results_->getUtilization(U::CompressionAxisY).valueOr(0.0);
    const double chiLTmod = results_->getChiLTmod().valueOr(0.0);
    const double MzRd = calculateMzRk() / gammaM1_;
    const double MyRd = chiLTmod * calculateMyRk() / gammaM1_;
    const double u = ny + results_->getInteractionFactor(K::kyy) * divide(forces_.getMy(), MyRd) +
                     results_->getInteractionFactor(K::kyz) * divide(forces_.getMz(), MzRd);
    results_->setUtilization(U::CompressionBendingAxisY, u);
}

void BucklingResistance::calculateCompressionBendingBucklingResistanceAxisZ() const
{
    // (6.62); the lateral-torsional term is |My| / Mb,Rd, the utilization BendingAxisY.
    const double nz = results_->getUtilization(U::CompressionAxisZ).valueOr(0.0);
    const double uLT = results_->getUtilization(U::BendingAxisY).valueOr(0.0);
    const double MzRd = calculateMzRk() / gammaM1_;
    const double u = nz + results_->getInteractionFactor(K::kzy) * uLT +
                     results_->getInteractionFactor(K::kzz) * divide(forces_.getMz(), MzRd);
    results_->setUtilization(U::CompressionBendingAxisZ, u);
}

double BucklingResistance::calculateNormalStress(const KaVector3D& point) const
{
    const double A = section_->getA(), Iy = section_->getIy(), Iz = section_->getIz();
    if (!isValid(A) || !isValid(Iy) || !isValid(Iz)) return 0.0;
    return forces_.getN() / A + forces_.getMy() / Iy * point.getZ() - forces_.getMz() / Iz * point.getY();
}

} // namespace SteelDesign
