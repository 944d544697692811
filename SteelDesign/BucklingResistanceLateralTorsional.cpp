// BucklingResistance: lateral-torsional buckling of a member bent about y (EN 1993-1-1 6.3.2): the
// elastic critical moment with its moment coefficients, the slenderness, Mb,Rd and the utilizations.

#include "BucklingResistance.h"

#include <KaMath.h>
#include <SDBSection.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace SteelDesign {

namespace {

using U = BucklingResults::UtilizationType;

constexpr double tol = 1e-6;

// The y moments and the shares derived from them.
struct MomentsY {
    double M1, Mm, M2;
    double avg;  // (M1 + M2) / 2
    double d;    // Mm - avg: what a transverse load adds at mid-span to the line between the end moments
};

template <class Distribution>
MomentsY momentsY(const Distribution& distribution)
{
    MomentsY m{distribution.getMomentWert(Axis::y, 0), distribution.getMomentWert(Axis::y, 1),
               distribution.getMomentWert(Axis::y, 2), 0.0, 0.0};
    m.avg = (m.M1 + m.M2) / 2.0;
    m.d = m.Mm - m.avg;
    return m;
}

// The end moment ratio of the critical moment, as a magnitude (double curvature counts as single).
double psiMagnitude(const MomentsY& m)
{
    const double a1 = std::fabs(m.M1), a2 = std::fabs(m.M2);
    if (a1 < a2 - tol && a2 >= tol) return std::fabs(m.M1 / m.M2);
    if (a2 + tol < a1 && a1 >= tol) return std::fabs(m.M2 / m.M1);
    if (std::fabs(m.M1 - m.M2) < tol && std::fabs(m.M1 - m.Mm) < tol) return 1.0;
    return 0.0;
}

// One row of a moment coefficient table: the key r and the columns for Emin = 0, Emax / 2, Emax.
struct ZetaRow {
    double r, c1, c2, c3;
};

double interpolate(double x, double xa, double ya, double xb, double yb)
{
    if (xa == xb) return 0.0;
    return ya + (x - xa) * (yb - ya) / (xb - xa);
}

// The value of one row for the smaller end moment Emin (columns by Emin / Emax = 0, 0.5, 1).
double rowValue(const ZetaRow& row, double Emin, double Emax)
{
    const double half = Emax / 2.0;
    if (std::fabs(Emin) < tol) return row.c1;
    if (std::fabs(Emin - half) < tol) return row.c2;
    if (std::fabs(Emin - Emax) < tol) return row.c3;
    if (Emin >= 0.0 && Emin < half + tol) return interpolate(Emin, 0.0, row.c1, half, row.c2);
    if (Emin >= half - tol && Emin < Emax + tol) return interpolate(Emin, half, row.c2, Emax, row.c3);
    return 1.0;
}

// A row whose key matches r is read directly; otherwise the two rows that bracket r are interpolated.
// The keys may run up or down. 1.0 when r lies outside the table.
template <std::size_t N>
double lookup(const ZetaRow (&table)[N], double r, double Emin, double Emax)
{
    for (const ZetaRow& row : table)
        if (std::fabs(row.r - r) < tol) return rowValue(row, Emin, Emax);
    for (std::size_t i = 0; i + 1 < N; ++i) {
        const ZetaRow& a = table[i];
        const ZetaRow& b = table[i + 1];
        if ((a.r < r && r < b.r) || (b.r < r && r < a.r))
            return interpolate(r, a.r, rowValue(a, Emin, Emax), b.r, rowValue(b, Emin, Emax));
    }
    return 1.0;
}

// Hogging end moments under a distributed load, free member. Key Emax / D.
constexpr ZetaRow zeta0TableA[] = {
    {0.0, 1.12, 1.12, 1.12}, {0.1, 1.19, 1.22, 1.26}, {0.2, 1.26, 1.34, 1.44}, {0.3, 1.34, 1.49, 1.67},
    {0.4, 1.43, 1.67, 2.00}, {0.5, 1.53, 1.90, 2.46}, {0.6, 1.64, 2.19, 3.17}, {0.7, 1.76, 2.57, 4.30},
    {0.8, 1.91, 3.09, 5.61}, {0.9, 2.06, 3.78, 5.15}, {1.0, 2.24, 4.43, 4.10},
};
// Key D / Emax, stored from 1.0 down to 0.0.
constexpr ZetaRow zeta0TableB[] = {
    {1.0, 2.24, 4.43, 4.10}, {0.9, 2.42, 4.16, 3.12}, {0.8, 2.66, 3.42, 2.31}, {0.7, 2.78, 2.63, 1.68},
    {0.6, 2.38, 1.93, 1.21}, {0.5, 1.80, 1.35, 0.87}, {0.4, 1.26, 0.91, 0.60}, {0.3, 0.82, 0.58, 0.40},
    {0.2, 0.47, 0.33, 0.24}, {0.1, 0.20, 0.14, 0.11}, {0.0, 1.77, 1.32, 1.00},
};

// Member held by a shear panel, three bands of the torsion parameter k. Key Emax / D.
constexpr ZetaRow zeta0SBand1[] = {
    {0.0, 0.528, 0.528, 0.528}, {0.1, 0.509, 0.5, 0.488},   {0.2, 0.467, 0.447, 0.41},  {0.3, 0.4, 0.368, 0.31},
    {0.4, 0.315, 0.282, 0.223}, {0.5, 0.24, 0.211, 0.158}, {0.6, 0.185, 0.158, 0.11}, {0.7, 0.145, 0.119, 0.071},
    {0.8, 0.115, 0.088, 0.038}, {0.9, 0.093, 0.062, 0.013}, {1.0, 0.075, 0.041, 0.005},
};
constexpr ZetaRow zeta0SBand2[] = {
    {0.0, 0.558, 0.558, 0.558}, {0.1, 0.553, 0.531, 0.545}, {0.2, 0.539, 0.528, 0.509}, {0.3, 0.513, 0.489, 0.442},
    {0.4, 0.471, 0.429, 0.35},  {0.5, 0.415, 0.354, 0.253}, {0.6, 0.35, 0.276, 0.167},  {0.7, 0.285, 0.206, 0.098},
    {0.8, 0.228, 0.146, 0.038}, {0.9, 0.181, 0.097, 0.013}, {1.0, 0.142, 0.058, 0.005},
};
constexpr ZetaRow zeta0SBand3[] = {
    {0.0, 0.576, 0.576, 0.576}, {0.1, 0.575, 0.574, 0.572}, {0.2, 0.567, 0.562, 0.549}, {0.3, 0.55, 0.535, 0.498},
    {0.4, 0.523, 0.49, 0.417},  {0.5, 0.483, 0.425, 0.315}, {0.6, 0.43, 0.347, 0.215},  {0.7, 0.369, 0.268, 0.13},
    {0.8, 0.307, 0.195, 0.038}, {0.9, 0.25, 0.138, 0.013},  {1.0, 0.199, 0.085, 0.005},
};

// Member with a rotational restraint, three bands of k. Key Emax / D.
constexpr ZetaRow zeta0ThetaBand1[] = {
    {0.0, 1.12, 1.12, 1.12}, {0.1, 1.18, 1.21, 1.25}, {0.2, 1.24, 1.32, 1.41}, {0.3, 1.31, 1.45, 1.61},
    {0.4, 1.39, 1.61, 1.89}, {0.5, 1.47, 1.8, 2.28},  {0.6, 1.56, 2.04, 2.87}, {0.7, 1.66, 2.36, 2.85},
    {0.8, 1.77, 2.46, 2.34}, {0.9, 1.89, 2.08, 1.98}, {1.0, 1.89, 1.8, 1.71},
};
constexpr ZetaRow zeta0ThetaBand2[] = {
    {0.0, 1.12, 1.12, 1.12}, {0.1, 1.18, 1.22, 1.25}, {0.2, 1.25, 1.33, 1.42}, {0.3, 1.32, 1.47, 1.64},
    {0.4, 1.4, 1.63, 1.93},  {0.5, 1.49, 1.84, 2.36}, {0.6, 1.58, 2.1, 3.01},  {0.7, 1.69, 2.45, 4.13},
    {0.8, 1.8, 2.93, 4.0},   {0.9, 1.93, 3.57, 3.18}, {1.0, 2.07, 2.95, 2.61},
};
constexpr ZetaRow zeta0ThetaBand3[] = {
    {0.0, 1.12, 1.12, 1.12}, {0.1, 1.18, 1.22, 1.26}, {0.2, 1.25, 1.34, 1.43}, {0.3, 1.33, 1.48, 1.66},
    {0.4, 1.41, 1.65, 1.96}, {0.5, 1.5, 1.86, 2.41},  {0.6, 1.6, 2.14, 3.09},  {0.7, 1.71, 2.5, 4.23},
    {0.8, 1.83, 3.0, 5.1},   {0.9, 1.96, 3.71, 4.03}, {1.0, 2.11, 3.76, 3.22},
};

// D = |Mm - avg|, Emin and Emax of the end moment magnitudes.
struct HoggingShares {
    double D, Emin, Emax;
};

HoggingShares hoggingShares(const MomentsY& m)
{
    return {std::fabs(m.Mm - m.avg), std::min(std::fabs(m.M1), std::fabs(m.M2)),
            std::max(std::fabs(m.M1), std::fabs(m.M2))};
}

// The table of the three k bands (1.02, 1.15, 1.3, each less the tolerance), or 0 below the first.
int kBand(double k)
{
    if (k >= 1.3 - tol) return 3;
    if (k >= 1.15 - tol) return 2;
    if (k >= 1.02 - tol) return 1;
    return 0;
}

template <std::size_t N>
double restrainedZeta(const MomentsY& m, double k, const ZetaRow (&band1)[N], const ZetaRow (&band2)[N],
                      const ZetaRow (&band3)[N])
{
    const HoggingShares s = hoggingShares(m);
    if (!(s.Emax < s.D - tol && s.D != 0.0)) return 1.0;
    const double r = std::fabs(s.Emax / s.D);
    switch (kBand(k)) {
    case 1: return lookup(band1, r, s.Emin, s.Emax);
    case 2: return lookup(band2, r, s.Emin, s.Emax);
    case 3: return lookup(band3, r, s.Emin, s.Emax);
    default: return 1.0;
    }
}

} // namespace

// --- moment coefficients ----------------------------------------------------------------------------

double BucklingResistance::calculateZeta(MomentDiagramCases diagramCase, double psi) const
{
    switch (diagramCase) {
    case MomentDiagramCases::Linear: return 1.77 - 0.77 * psi;
    case MomentDiagramCases::Transverse:
        switch (momentDistribution_.getMomentDiagram(Axis::y)) {
        case MomentDiagram::Polygonal: return 1.35;
        case MomentDiagram::Parabolic: return 1.12;
        }
        return 1.0;
    }
    return 1.0;
}

double BucklingResistance::calculateZeta0() const
{
    const HoggingShares s = hoggingShares(momentsY(momentDistribution_));
    if (s.Emax < s.D - tol && s.D != 0.0) return lookup(zeta0TableA, std::fabs(s.Emax / s.D), s.Emin, s.Emax);
    if (s.D < s.Emax - tol) return lookup(zeta0TableB, std::fabs(s.D / s.Emax), s.Emin, s.Emax);
    return 1.0;
}

double BucklingResistance::calculateZeta0S(double k) const
{
    return restrainedZeta(momentsY(momentDistribution_), k, zeta0SBand1, zeta0SBand2, zeta0SBand3);
}

double BucklingResistance::calculateZeta0Theta(double k) const
{
    return restrainedZeta(momentsY(momentDistribution_), k, zeta0ThetaBand1, zeta0ThetaBand2, zeta0ThetaBand3);
}

// --- critical moment --------------------------------------------------------------------------------

double BucklingResistance::findApplicationPointZ() const
{
    double zp = 0.0;
    switch (momentDistribution_.getApplicationPoint()) {
    case ApplicationPoint::Center: zp = 0.0; break;
    case ApplicationPoint::Top: zp = section_->getZMin(); break;
    case ApplicationPoint::Bottom: zp = section_->getZMax(); break;
    }
    results_->setZp(zp);
    return zp;
}

double BucklingResistance::calculateElasticCriticalMoment() const
{
    const MomentsY m = momentsY(momentDistribution_);
    const MomentDiagram diagram = momentDistribution_.getMomentDiagram(Axis::y);
    const double psi = psiMagnitude(m);
    const double zp = findApplicationPointZ();
    const double L = lengthLT_;
    const double E = sectionInitializer_.getEs();
    const double G = sectionInitializer_.getG();
    const double Iw = sectionInitializer_.getIw();
    const double Iz = section_->getIz();
    const double IT = section_->getIt();
    const double pi2 = KaMath::Pi * KaMath::Pi;

    // A rotational restraint acts as an additional torsion constant C_theta L^2 / (pi^2 G).
    const double ITeff = thetaGiven_ && isValid(G) ? IT + C_theta_ * L * L / (pi2 * G) : IT;
    // G / (pi^2 E) = 0.039 for steel.
    const double c2 = isValid(Iz) ? (Iw + 0.039 * L * L * ITeff) / Iz : 0.0;
    const double Ncrz = calculateBucklingLoad(Iz, L);
    const double Mcr0 = Ncrz * (std::sqrt(c2 + 0.25 * zp * zp) + 0.5 * zp);
    const double Mmax = momentDistribution_.getMaxMomentValue();

    if (diagram == MomentDiagram::Parabolic && m.M1 < tol && m.M2 < tol) {
        // Hogging end moments under a distributed load.
        if (std::fabs(m.d) < 0.5) return calculateZeta0() * Ncrz * (std::sqrt(c2 + 0.25 * zp * zp) + 0.5 * zp);
        if (!thetaGiven_ && !shearPanelGiven_) {
            const double z0 = calculateZeta0();
            const double a = 0.4 * z0 * zp;
            const double M = z0 * Ncrz * (std::sqrt(c2 + a * a) + a);
            return std::fabs(M / m.d * Mmax);
        }
        const double kDenominator = L * L * G * IT;
        const double k = isValid(kDenominator) ? 1.0 + pi2 * E * Iw / kDenominator : KaMath::maxDouble;
        double Mtheta = 0.0;
        double MS = 0.0;
        if (thetaGiven_) {
            const double zt = calculateZeta0Theta(k);
            const double a = 0.4 * zt * zp;
            Mtheta = zt * Ncrz * (std::sqrt(c2 + a * a) + a);
        }
        if (shearPanelGiven_) {
            const double h = section_->getHeight();
            // 2 fy Q is the plastic moment; the panel stiffness counts up to 10.2 Mpl / h.
            const double Q = section_->getSy(KaVector3D(0.0, 0.0, 0.0));
            const double Slim = isValid(h) ? 10.2 * 2.0 * sectionInitializer_.getFy() * Q / h : 0.0;
            double Seff = S_;
            if (Slim < S_) Seff = Slim;
            results_->setShearFieldStiffness(Seff);
            MS = calculateZeta0S(k) * Seff * h;
        }
        return std::fabs((MS + Mtheta) / m.d * Mmax);
    }

    if (diagram == MomentDiagram::Parabolic && m.M1 >= -tol && m.M2 >= -tol && m.Mm > tol) {
        // Sagging moments under a distributed load: the uniform, linear and parabolic shares combined by
        // adding their reciprocal critical moments (zeta 1.0, 1.77 and that of a transverse load).
        const double Mmin = std::min(m.M1, m.M2);
        const double Mdiff = std::max(m.M1, m.M2) - Mmin;
        double Mpar = 0.0;
        double zetaPar = 1.0;
        if (m.Mm >= m.avg - tol) {
            Mpar = (m.Mm - Mmin) - 0.5 * Mdiff;
            zetaPar = calculateZeta(MomentDiagramCases::Transverse, psi);
        }
        if (!isValid(Mcr0)) return 0.0;
        const double X = (Mmin / 1.0 + Mdiff / 1.77 + Mpar / zetaPar) / Mcr0;
        return std::fabs(X) >= tol ? (1.0 / X) * Mmax : 0.0;
    }

    double zeta = 1.0;
    if (diagram == MomentDiagram::Polygonal && !(std::fabs(m.d) < 1e-4 * m.avg))
        zeta = calculateZeta(MomentDiagramCases::Linear, psi);
    else if (std::fabs(m.M1) < 1e-4 * m.Mm && std::fabs(m.M2) < 1e-4 * m.Mm && m.Mm <= tol)
        zeta = calculateZeta(MomentDiagramCases::Transverse, psi);  // bound on Mm kept as it stands
    return zeta * Mcr0;
}

// --- slenderness and reduction ----------------------------------------------------------------------

double BucklingResistance::calculateBendingLambda() const
{
    const double W = sectionInitializer_.findW(Axis::y);
    findApplicationPointZ();
    double Mcr = momentDistribution_.getMcr();
    if (std::fabs(Mcr) < tol) Mcr = calculateElasticCriticalMoment();
    results_->setCriticalMoment(Mcr);
    const double lambdaLT = isValid(Mcr) ? std::sqrt(W * sectionInitializer_.getFy() / Mcr) : 0.0;
    results_->setLambdaLT(lambdaLT);
    return lambdaLT;
}

void BucklingResistance::findLambdaLT0(Standard::Mode mode) const
{
    results_->setLambdaLT0(mode == Standard::Mode::UK && !section_->isRolled() ? 0.2 : 0.4);
}

void BucklingResistance::findbeta(Standard::Mode mode) const
{
    results_->setBeta(mode == Standard::Mode::UK && !section_->isRolled() ? 1.0 : 0.75);
}

double BucklingResistance::findCorrectionFactor() const
{
    // kc of Table 6.6 from the y moments.
    const MomentsY m = momentsY(momentDistribution_);
    const MomentDiagram diagram = momentDistribution_.getMomentDiagram(Axis::y);
    const double a1 = std::fabs(m.M1), a2 = std::fabs(m.M2), ad = std::fabs(m.d);

    // r: the signed ratio of the smaller to the larger end moment. "Otherwise r = M1 / M2" is the
    // alternative of the outer test, so it applies whenever |M2| + 1e-6 > |M1| and |M2| >= 1e-6.
    double r = 0.0;
    if (a2 + tol <= a1 || a2 < tol) {
        if (a2 + tol < a1 && a1 >= tol) r = m.M2 / m.M1;
    } else {
        r = m.M1 / m.M2;
    }
    const double ar = std::fabs(r);

    double kc = 1.0;
    if (diagram == MomentDiagram::Polygonal && ad < tol) kc = 1.0 / (1.33 - 0.33 * r);
    if (ar >= tol && ar < 1.000001 && ad >= tol) {
        if (diagram == MomentDiagram::Polygonal) kc = 0.77;
        else if (diagram == MomentDiagram::Parabolic) kc = 0.90;
    } else if (ar < tol && (a1 >= tol || a2 >= tol)) {
        if (ad >= tol) {
            if (diagram == MomentDiagram::Polygonal) kc = 0.82;
            else if (diagram == MomentDiagram::Parabolic) kc = 0.91;
        } else {
            kc = 1.0 / 1.33;
        }
    }
    if (a1 < tol && a2 < tol && std::fabs(m.Mm) >= tol) {
        if (diagram == MomentDiagram::Polygonal) kc = 0.86;
        else if (diagram == MomentDiagram::Parabolic) kc = 0.94;
    }
    if (std::fabs(m.M1 - m.Mm) < tol && std::fabs(m.M2 - m.Mm) < tol && std::fabs(m.M1 - m.M2) < tol) kc = 1.0;
    return kc;
}

// --- resistance -------------------------------------------------------------------------------------

double BucklingResistance::calculateMbRd() const
{
    const double lambdaLT = calculateBendingLambda();
    const BucklingCurve curve = sectionInitializer_.getBendingBucklingCurve();
    results_->setBucklingCurveBending(curve);
    const double chiLT =
        calculateChi(lambdaLT, curve, BucklingType::Bending, sectionInitializer_.getUseRolledSectionMethod());
    const double MbRd = chiLT * sectionInitializer_.findW(Axis::y) * sectionInitializer_.getFy() / gammaM1_;
    results_->setBucklingResistance(U::Bending, MbRd);
    return MbRd;
}

void BucklingResistance::calculateBendingBucklingResistanceAxisY() const
{
    const double MbRd = calculateMbRd();
    if (isValid(MbRd)) results_->setUtilization(U::BendingAxisY, std::fabs(forces_.getMy() / MbRd));
}

void BucklingResistance::calculateBendingBucklingResistanceAxisZ() const
{
    const double MbRd = calculateMbRd();  // the major-axis resistance, as required
    results_->setBucklingResistance(U::BendingAxisZ, MbRd);
    if (isValid(MbRd)) results_->setUtilization(U::BendingAxisZ, std::fabs(forces_.getMz() / MbRd));
}

void BucklingResistance::verifyAllBendingBuckling() const
{
    calculateBendingBucklingResistanceAxisY();
    calculateBendingBucklingResistanceAxisZ();
    results_->setUtilization(U::Bending, std::max(results_->getUtilization(U::BendingAxisY).valueOr(0.0),
                                                  results_->getUtilization(U::BendingAxisZ).valueOr(0.0)));
}

double BucklingResistance::calculateMyRk() const
{
    const double MyRk = sectionInitializer_.findW(Axis::y) * sectionInitializer_.getFy();
    results_->setMRk(Axis::y, MyRk);
    return MyRk;
}

double BucklingResistance::calculateMzRk() const
{
    const double MzRk = sectionInitializer_.findW(Axis::z) * sectionInitializer_.getFy();
    results_->setMRk(Axis::z, MzRk);
    return MzRk;
}

} // namespace SteelDesign
