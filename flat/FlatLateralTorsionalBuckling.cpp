// Lateral-torsional buckling check of the flat path (EN 1993-1-1 6.3.2) and, in design mode 1, the
// interaction of compression and biaxial bending with the reduction factor kappaM of the moment.
//
// Units: E, G, fy in N/mm^2 = MN/m^2; A m^2, I m^4, Iw m^6, W m^3; L m; h, b mm; actions kN, kNm.
// Hence Ncr,z = 1000 pi^2 E Iz / L^2 in kN, Mcr in kNm, W fy in MNm (compared with 0.001 Mcr),
// Mb,Rd = 1000 chiLT,mod W fy / gammaM1 in kNm, Npl,d and Mpl,d in MN and MNm.

#include "FlatInternal.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace SteelDesign::Flat {
namespace {

void setCurve(MemberBlock& m, const char* letter)
{
    std::memset(m.curve, 0, sizeof m.curve);
    std::strncpy(m.curve, letter, sizeof m.curve - 1);
}

// Curve of lateral-torsional buckling: Table 6.4 (general method, code 10) and Table 6.5 (rolled and
// equivalent welded sections, code 11).
const char* ltbCurve(int kind, int method, double hOverB)
{
    const bool slender = hOverB > 2.0;
    if (kind == 1 || kind == 2) {
        if (method == 10) return slender ? "b" : "a";
        return slender ? "c" : "b";
    }
    if (kind == 3) return slender ? "d" : "c";
    return "d";
}

double ltbAlpha(const char* letter)
{
    if (std::strcmp(letter, "a") == 0) return 0.21;
    if (std::strcmp(letter, "b") == 0) return 0.34;
    if (std::strcmp(letter, "c") == 0) return 0.49;
    return 0.76;
}

void criticalMoment(MemberBlock& m)
{
    const double pi = 4.0 * std::atan(1.0);
    m.NcrZ = 1000.0 * pi * pi * m.E * m.Iz / (m.L * m.L);
    if (std::fabs(m.McrGiven) >= 0.001) {
        m.Mcr = m.McrGiven;
        m.zeta = 0.0;
        return;
    }
    if (m.loadPosition == 0)
        m.zp = 0.0;
    else if (m.loadPosition == 1)
        m.zp = 0.001 * (-m.h / 2);
    else
        m.zp = 0.001 * (m.h / 2);
    const double ItStar = m.It + 0.001 * m.cTheta * m.L * m.L / (pi * pi * m.G);
    const double c2 = (m.Iw + 0.039 * m.L * m.L * ItStar) / m.Iz;
    m.c = std::sqrt(c2);

    m.formulaFlag = 1;
    double zeta = m.zetaGiven;
    if (m.zetaGiven < 0.001) {
        zeta = momentCoefficientZeta(m.M1, m.Mm, m.M2, m.spanLoadShare, &m.formulaFlag);
        m.zeta = zeta;
    } else {
        m.zeta = zeta;
    }
    const double zp = m.zp;
    if (m.formulaFlag == 1) {
        m.Mcr = zeta * m.NcrZ * (std::sqrt(c2 + 0.25 * zp * zp) + 0.5 * zp);
    } else {
        const double a = 0.4 * zeta * zp;
        const double Mcr0 = zeta * m.NcrZ * (a + std::sqrt(a * a + c2));
        const double M0 = m.Mm - (m.M1 + m.M2) / 2.0;
        const double ratio = std::fabs(M0) > 0.001 ? Mcr0 / M0 : 1.0;
        m.Mcr = ratio * std::max({std::fabs(m.M1), std::fabs(m.M2), std::fabs(m.act.My)});
    }
}

void reductionByChiLT(MemberBlock& m)
{
    const double W = (m.classComputed && m.sectionClass < 3) ? m.Wply : m.Wely;
    const int method = (m.kind >= 1 && m.kind <= 3) ? 11 : 10;
    setCurve(m, ltbCurve(m.kind, method, m.h / m.b));
    m.alphaLT = ltbAlpha(m.curve);
    m.lambdaLT = std::sqrt(W * m.fy / std::fabs(0.001 * m.Mcr));
    m.lambdaLT0 = 0.4;
    const double lam = m.lambdaLT;
    double chi = 0.0;
    if (method == 10) {
        m.beta = 0.0;
        m.Phi = 0.5 * (1 + m.alphaLT * (lam - 0.2) + lam * lam);
        chi = std::min(1.0 / (m.Phi + std::sqrt(m.Phi * m.Phi - lam * lam)), 1.0);
    } else {
        m.beta = 0.75;
        m.Phi = 0.5 * (1 + m.alphaLT * (lam - 0.4) + 0.75 * lam * lam);
        chi = 1.0 / (m.Phi + std::sqrt(m.Phi * m.Phi - 0.75 * lam * lam));
        chi = std::min({chi, 1.0, 1.0 / (lam * lam)});
    }

    m.kc = m.kcGiven < 0.001 ? correctionFactorKc(m.M1, m.Mm, m.M2, m.spanLoadShare) : m.kcGiven;
    const double d = lam - 0.8;
    m.f = std::min(1 - 0.5 * (1 - m.kc) * (1 - 2.0 * d * d), 1.0);
    m.chiLTmod = m.chiLTmodGiven >= 0.0001 ? m.chiLTmodGiven : chi / m.f;
    m.MbRd = std::fabs(m.MbRdGiven) >= 0.0001 ? m.MbRdGiven : 1000.0 * m.chiLTmod * W * m.fy / m.gammaM1;
    if (m.chiLT <= 0.001) m.chiLT = chi;
    m.utilisation = std::fabs(m.act.My) / m.MbRd;

    // 6.3.2.2(4): lateral-torsional buckling may be ignored
    const bool stocky = lam <= 0.4;
    const bool lowMoment = std::fabs(m.act.My) / std::fabs(m.Mcr) <= 0.4 * 0.4;
    m.ignoreCode = static_cast<std::uint16_t>((stocky ? 1 : 0) | (lowMoment ? 2 : 0));
}

// Ncr of flexural-torsional buckling (MN) for sections whose shear centre lies zM off the centroid on the
// axis of symmetry; doubly symmetric sections (zM = 0) give min(Ncr,z, Ncr,T).
double flexuralTorsionalNcr(const MemberBlock& m)
{
    const double pi = 4.0 * std::atan(1.0);
    const double NcrZ = 0.001 * m.NcrZ;
    const double i02 = (m.Iy + m.Iz) / m.A + m.zM * m.zM;
    const double NcrT = (m.G * m.It + pi * pi * m.E * m.Iw / (m.LT * m.LT)) / i02;
    const double beta = 1.0 - m.zM * m.zM / i02;
    if (beta <= 1e-9) return std::min(NcrZ, NcrT);
    const double s = NcrZ + NcrT;
    return (s - std::sqrt(std::max(s * s - 4 * beta * NcrZ * NcrT, 0.0))) / (2 * beta);
}

void interactionMode1(MemberBlock& m)
{
    const double fyd = m.fy / m.gammaM1;
    m.Npld = std::fabs(m.NpldGiven) >= 0.0001 ? m.NpldGiven : m.A * fyd;
    m.Mplyd = std::fabs(m.MplydGiven) >= 0.0001 ? m.MplydGiven : m.Wply * fyd;
    m.Mplzd = std::fabs(m.MplzdGiven) >= 0.0001 ? m.MplzdGiven : m.Wplz * fyd;

    double kappaTorsional = 0.0;
    const char* torsionalLetter = "c";
    if (m.kind > 3) {
        double alpha = 0.49;
        if (m.kind == 20 || m.kind == 21) {
            alpha = m.manufacturing == 1 ? 0.21 : 0.34;
            torsionalLetter = m.manufacturing == 1 ? "a" : "b";
        }
        const double lambda = std::sqrt(m.A * m.fy / flexuralTorsionalNcr(m));
        kappaTorsional = reductionFactorChi(lambda, alpha);
        if (std::fabs(m.MplydGiven) < 0.0001) m.Mplyd = m.Wply * m.fy;
    }

    m.lambdaM = std::sqrt(m.Mplyd / std::fabs(0.001 * m.Mcr));
    if (m.lambdaM > 0.4) {
        const double n = m.nSystem;
        m.kappaM = std::pow(1.0 / (1.0 + std::pow(m.lambdaM, 2 * n)), 1.0 / n);
    } else {
        m.kappaM = 1.0;
    }

    double nTerm = 0.0;
    if (m.act.N < 0.0) {
        const double absN = std::fabs(m.act.N);
        m.lambdaK = std::sqrt(m.Npld / (0.001 * m.NcrZ));
        if (m.kind > 3) {
            m.kappa = kappaTorsional;
            setCurve(m, torsionalLetter);
        } else {
            const char* letter = flexuralCurve(m.kind, 1, m.h, m.b, m.tf, m.highStrength, m.manufacturing);
            m.kappa = reductionFactorChi(m.lambdaK, imperfectionFactor(letter));
            setCurve(m, letter);
        }
        const double nk = 0.001 * absN / (m.kappa * m.Npld);
        m.ay = std::min(0.15 * m.lambdaK * m.betaMy - 0.15, 0.9);
        m.ky = std::min(1 - nk * m.ay, 1.0);
        if (std::fabs(m.act.Mz) > 0.00001) {
            const double alphaPl = m.Welz > 0.0 ? m.Wplz / m.Welz : 1.0;
            m.az = std::min(m.lambdaK * (2 * m.betaMz - 4) + (alphaPl - 1), 0.8);
            m.kz = std::min(1 - nk * m.az, 1.5);
        } else {
            m.kz = 0.0;
        }
        nTerm = nk;
    } else {
        setCurve(m, "");
        m.ky = 1.0;
        m.kz = 1.0;
    }
    m.utilisation = nTerm + 0.001 * std::fabs(m.act.My) / (m.kappaM * m.Mplyd) * m.ky
                    + 0.001 * std::fabs(m.act.Mz) / m.Mplzd * m.kz;
}

} // namespace

double correctionFactorKc(double M1, double Mm, double M2, double share)
{
    const double tol = 0.001;
    auto byShare = [&](double full, double base, double slope) {
        if (share > 1 - tol) return full;
        if (share >= tol) return base + slope * share;
        return base;
    };
    double kc = 1.0;
    const bool noSpanLoad = share < tol;
    if (noSpanLoad && std::fabs(M1 - Mm) < tol && std::fabs(M1 - M2) < tol
        && ((M1 > tol && Mm > tol && M2 > tol) || (M1 < -tol && Mm < -tol && M2 < -tol))) {
        kc = 1.0; // constant moment
    } else if (noSpanLoad && (std::fabs(M1) > tol || std::fabs(M2) > tol) && std::fabs((M1 + M2) / 2 - Mm) < 1.0) {
        double psi = std::fabs(M2) > std::fabs(M1) ? M1 / M2 : M2 / M1;
        psi = std::clamp(psi, -1.0, 1.0);
        kc = 1.0 / (1.33 - 0.33 * psi);
    } else if (std::fabs(M1) < tol && std::fabs(M2) < tol && std::fabs(Mm) > tol) {
        kc = byShare(0.94, 0.86, 0.08); // simply supported span
    } else if ((M1 > tol && M2 > tol && (Mm < M1 || Mm < M2)) || (M1 < -tol && M2 < -tol && (Mm > M1 || Mm > M2))) {
        kc = byShare(0.90, 0.77, 0.13); // both ends restrained
    } else if ((std::fabs(M1) < tol && ((Mm > M1 && Mm > M2) || (Mm < M1 && Mm < M2)))
               || (std::fabs(M2) < tol && ((Mm > M1 && Mm > M2) || (Mm < M1 && Mm < M2)))) {
        kc = byShare(0.91, 0.82, 0.09); // one end free of moment
    }
    kc = std::min(kc, 1.0);
    kc = std::max(kc, 0.6);
    return kc;
}

void flatLateralTorsionalBuckling(MemberBlock& m)
{
    criticalMoment(m);
    if (m.mode == 1)
        interactionMode1(m);
    else
        reductionByChiLT(m);
    m.ltbDone = true;
}

} // namespace SteelDesign::Flat
