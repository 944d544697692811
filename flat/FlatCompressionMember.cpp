// Compression-member check of the flat path: flexural buckling (EN 1993-1-1 6.3.1) about each axis with a
// buckling length, and the interaction with bending (6.3.3, interaction factors of Annex B).
//
// Buckling lengths arrive in mm. Resistances are in kN and kNm.
//   Ncr = pi^2 E I / Lcr^2 (E N/mm^2, I m^4 -> mm^4, Lcr mm) in N, / 1000 for kN
//   lambda = sqrt(A fy / Ncr), chi by Table 6.2 / 6.1, Nb,Rd = chi A fy / gammaM1
// Interaction (6.61), (6.62) with kyy, kzz of Table B.1; kzy of Table B.2 when the member is not restrained
// against lateral-torsional buckling (the lateral-torsional stage ran for an open section), otherwise of
// Table B.1. Resistances plastic for classes 1 and 2, elastic otherwise (and when no class is known).
// Equivalent uniform moment factors (Table B.3): Cm = 0.6 + 0.4 psi >= 0.4 for a linear diagram, 1.0 with
// span load or without a diagram (on the safe side), unless given.

#include "FlatInternal.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace SteelDesign::Flat {
namespace {

constexpr double kPi = 3.14159265358979323846;

double equivalentMomentFactor(double M1, double Mm, double M2)
{
    const double tol = 0.001;
    if (std::fabs(M1) < tol && std::fabs(M2) < tol && std::fabs(Mm) < tol) return 1.0;
    const double M0 = Mm - (M1 + M2) / 2;
    if (std::fabs(M0) > std::max(tol, 0.01 * std::max(std::fabs(M1), std::fabs(M2)))) return 1.0;
    double psi = std::fabs(M2) > std::fabs(M1) ? M1 / M2 : M2 / M1;
    psi = std::clamp(psi, -1.0, 1.0);
    return std::max(0.6 + 0.4 * psi, 0.4);
}

} // namespace

const char* flexuralCurve(int kind, int axis, double h, double b, double tf, int highStrength, int manufacturing)
{
    const bool y = axis == 0;
    if (kind == 1 || kind == 2) {
        if (h / b > 1.2) {
            if (tf <= 40) return highStrength ? "a0" : (y ? "a" : "b");
            return highStrength ? "a" : (y ? "b" : "c");
        }
        if (tf <= 100) return highStrength ? "a" : (y ? "b" : "c");
        return highStrength ? "c" : "d";
    }
    if (isIKind(kind)) {
        if (tf <= 40) return y ? "b" : "c";
        return y ? "c" : "d";
    }
    if (kind == 20 || kind == 21) {
        if (manufacturing == 1) return highStrength ? "a0" : "a";
        return "b";
    }
    if (isAngleKind(kind)) return "b";
    return "c"; // T sections and any other kind
}

double imperfectionFactor(const char* letter)
{
    if (std::strcmp(letter, "a0") == 0) return 0.13;
    if (std::strcmp(letter, "a") == 0) return 0.21;
    if (std::strcmp(letter, "b") == 0) return 0.34;
    if (std::strcmp(letter, "c") == 0) return 0.49;
    if (std::strcmp(letter, "d") == 0) return 0.76;
    return 1.0;
}

int curveCode(const char* letter)
{
    static const char* const kLetters[] = {"a0", "a", "b", "c", "d"};
    for (int i = 0; i < 5; ++i)
        if (std::strcmp(letter, kLetters[i]) == 0) return i + 1;
    return 0;
}

double reductionFactorChi(double lambda, double alpha)
{
    const double Phi = 0.5 * (1 + alpha * (lambda - 0.2) + lambda * lambda);
    return std::min(1.0 / (Phi + std::sqrt(Phi * Phi - lambda * lambda)), 1.0);
}

void compressionMemberCheck(const MemberBlock& m, const CompressionInput& in, double chiLT, CompressionResult& r)
{
    r = CompressionResult{};
    const double N = m.act.N;
    if (N > 0.0001) {
        r.code = kTensionSkipped;
        return;
    }
    const bool plastic = m.classComputed && m.sectionClass <= 2;
    r.NRk = 1000.0 * m.A * m.fy; // kN
    const double MyRk = 1000.0 * (plastic ? m.Wply : m.Wely) * m.fy;
    const double MzRk = 1000.0 * (plastic ? m.Wplz : m.Welz) * m.fy;
    const double NRk = in.NpldGiven >= 0.0001 ? in.NpldGiven * m.gammaM1 : r.NRk;
    r.NRk = NRk;
    const double absN = std::fabs(N);

    auto axisCheck = [&](int axis, double Lcr, double I, double given, double& Ncr, double& lambda, double& alpha,
                         double& Phi, double& chi) {
        Ncr = given >= 0.0001 ? given : kPi * kPi * m.E * I * 1e12 / (Lcr * Lcr) / 1000.0;
        lambda = std::sqrt(NRk / Ncr);
        alpha = imperfectionFactor(flexuralCurve(m.kind, axis, m.h, m.b, m.tf, m.highStrength, m.manufacturing));
        Phi = 0.5 * (1 + alpha * (lambda - 0.2) + lambda * lambda);
        chi = reductionFactorChi(lambda, alpha);
    };
    if (in.Lcry > 0.001 * 1000.0) {
        axisCheck(0, in.Lcry, m.Iy, in.NcryGiven, r.NcrY, r.lambdaY, r.alphaY, r.PhiY, r.chiY);
        r.NbyRd = r.chiY * NRk / m.gammaM1;
        r.uY = absN / r.NbyRd;
        r.code |= kBucklingY;
    }
    if (in.Lcrz > 0.001 * 1000.0) {
        axisCheck(1, in.Lcrz, m.Iz, in.NcrzGiven, r.NcrZ, r.lambdaZ, r.alphaZ, r.PhiZ, r.chiZ);
        r.NbzRd = r.chiZ * NRk / m.gammaM1;
        r.uZ = absN / r.NbzRd;
        r.code |= kBucklingZ;
    }
    const double NbMin = std::min(r.chiY, r.chiZ) * NRk / m.gammaM1;
    r.NbRd = in.NbRdGiven >= 0.0001 ? in.NbRdGiven : NbMin;
    r.utilisation = in.NbRdGiven >= 0.0001 ? absN / r.NbRd : std::max(r.uY, r.uZ);

    if (in.momentY || in.momentZ) {
        r.Cmy = in.CmyGiven >= 0.0001 ? in.CmyGiven : equivalentMomentFactor(m.M1, m.Mm, m.M2);
        r.Cmz = in.CmzGiven >= 0.0001 ? in.CmzGiven : 1.0;
        const double ny = absN / (r.chiY * NRk / m.gammaM1);
        const double nz = absN / (r.chiZ * NRk / m.gammaM1);
        const double ly = r.lambdaY, lz = r.lambdaZ;
        const bool hollow = isHollowKind(m.kind);
        if (plastic) {
            r.kyy = r.Cmy * std::min(1 + (ly - 0.2) * ny, 1 + 0.8 * ny);
            r.kzz = hollow ? r.Cmz * std::min(1 + (lz - 0.2) * nz, 1 + 0.8 * nz)
                           : r.Cmz * std::min(1 + (2 * lz - 0.6) * nz, 1 + 1.4 * nz);
            r.kyz = 0.6 * r.kzz;
            r.kzy = 0.6 * r.kyy;
        } else {
            r.kyy = r.Cmy * std::min(1 + 0.6 * ly * ny, 1 + 0.6 * ny);
            r.kzz = r.Cmz * std::min(1 + 0.6 * lz * nz, 1 + 0.6 * nz);
            r.kyz = r.kzz;
            r.kzy = 0.8 * r.kyy;
        }
        if (m.ltbDone && !hollow) {
            // Table B.2: member susceptible to torsional deformations, CmLT taken as Cmy
            const double cmLT = std::max(r.Cmy, 0.4);
            const double f = plastic ? 0.1 : 0.05;
            r.kzy = std::max(1 - f * lz * nz / (cmLT - 0.25), 1 - f * nz / (cmLT - 0.25));
            if (plastic && lz < 0.4) r.kzy = std::min(0.6 + lz, 1 - f * lz * nz / (cmLT - 0.25));
        }
        const double chiLTUsed = chiLT > 0.0 ? std::min(chiLT, 1.0) : 1.0;
        const double my = in.momentY ? std::fabs(m.act.My) / (chiLTUsed * MyRk / m.gammaM1) : 0.0;
        const double mz = in.momentZ ? std::fabs(m.act.Mz) / (MzRk / m.gammaM1) : 0.0;
        r.u661 = ny + r.kyy * my + r.kyz * mz;
        r.u662 = nz + r.kzy * my + r.kzz * mz;
        r.utilisation = std::max({r.utilisation, r.u661, r.u662});
        if (in.momentY) r.code |= kInteractionMy;
        if (in.momentZ) r.code |= kInteractionMz;
    }
    if (r.utilisation > 1.0 + 1e-6) r.code |= kExceeded;
}

} // namespace SteelDesign::Flat
