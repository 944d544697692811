// Cross-section stage of the flat path (EN 1993-1-1 5.5 and 6.2).
//
// Classification (Table 5.2) from the stresses of the stress evaluation:
//   internal parts (webs of I sections, walls of rectangular hollow sections): sheet 1 with alpha of the
//     plastic distribution, alpha = 0.5 (1 + N_c / (n c t fy)) for n parallel parts, 1 when both ends are
//     compressed, and psi of the elastic distribution;
//   outstands (flanges of I and T sections, T stems, legs of angles in bending): sheet 2 with the limits of
//     uniform compression 9, 10, 14 epsilon, which lie on the safe side of every stress gradient;
//   angles in compression: sheet 3 (h / t <= 15 epsilon and (b + h) / (2 t) <= 11.5 epsilon, else class 4);
//   circular hollow sections: sheet 3 (d / t <= 50, 70, 90 epsilon^2).
//   A part without compression is not classified; a section without any compressed part has no class.
//
// Resistances (6.2.3 to 6.2.10): plastic for classes 1 and 2 (unless control[17] forbids it), elastic for
// classes 3 and 4 and on the alternative path, which has no classification. Class 4 is flagged by the
// caller's stage code 16: the gross section is used, no effective section is formed.
//
// Point checks: the elastic variant (mode 1) uses the comparison stress of 6.2.1(5); the alternative
// variant checks normal and shear stresses separately, with the yield strength of the shear area reduced
// by (1 - rho) of 6.2.8(3).

#include "FlatInternal.h"

#include <algorithm>
#include <cmath>

namespace SteelDesign::Flat {
namespace {

constexpr double kTiny = 1e-30;
constexpr double kMissingResistance = 1e9; // utilisation of an action without resistance
constexpr double kCompressed = -1e-6;      // N/mm^2

double ratio(double load, double resistance)
{
    if (std::fabs(load) <= kTiny) return 0.0;
    if (resistance <= kTiny) return kMissingResistance;
    return std::fabs(load) / resistance;
}

int classOutstand(double ct, double eps)
{
    if (ct <= 9 * eps) return 1;
    if (ct <= 10 * eps) return 2;
    if (ct <= 14 * eps) return 3;
    return 4;
}

int classInternal(double ct, double eps, double alpha, double psi)
{
    const double l1 = alpha > 0.5 ? 396 * eps / (13 * alpha - 1) : 36 * eps / alpha;
    const double l2 = alpha > 0.5 ? 456 * eps / (13 * alpha - 1) : 41.5 * eps / alpha;
    const double l3 = psi > -1 ? 42 * eps / (0.67 + 0.33 * psi) : 62 * eps * (1 - psi) * std::sqrt(-psi);
    if (ct <= l1) return 1;
    if (ct <= l2) return 2;
    if (ct <= l3) return 3;
    return 4;
}

} // namespace

bool checkCrossSection(SetupBlock& s, const ControlBlock&, int kind, const Actions& a)
{
    CrossSectionState& cs = s.cs;
    cs = CrossSectionState{};
    const double eps = s.eps;

    if (kind == 21) {
        // circular hollow section: compressed when the most compressed fibre is
        const double D = s.h, t = s.tw;
        const double sigmaMin = 1e-3 * (a.N / s.A - std::hypot(a.My, a.Mz) * (D / 2 * 1e-3) / std::max(s.Iy, kTiny));
        if (!(sigmaMin < kCompressed)) return false;
        const double dt = D / t, e2 = eps * eps;
        const int cl = dt <= 50 * e2 ? 1 : dt <= 70 * e2 ? 2 : dt <= 90 * e2 ? 3 : 4;
        cs.classified = true;
        cs.sectionClass = cs.webClass = cs.flangeClass = cl;
        cs.ctWeb = cs.ctFlange = dt;
        return true;
    }

    bool anyCompressed = false;
    for (int i = 0; i < s.plateCount; ++i) {
        const Plate& pl = s.plates[i];
        if (std::min(pl.sigma1, pl.sigma2) < kCompressed) anyCompressed = true;
    }
    if (!anyCompressed) return false;

    if (isAngleKind(kind) && a.N < 0.0) {
        const double t = s.tw;
        const bool class3 = s.h / t <= 15 * eps && (s.b1 + s.h) / (2 * t) <= 11.5 * eps;
        cs.classified = true;
        cs.sectionClass = cs.webClass = cs.flangeClass = class3 ? 3 : 4;
        cs.ctWeb = s.h / t;
        cs.ctFlange = (s.b1 + s.h) / (2 * t);
        return true;
    }

    for (int i = 0; i < s.plateCount; ++i) {
        const Plate& pl = s.plates[i];
        const double sMin = std::min(pl.sigma1, pl.sigma2), sMax = std::max(pl.sigma1, pl.sigma2);
        if (!(sMin < kCompressed) || pl.t <= 0.0) continue;
        const double ct = pl.c / pl.t;
        int cl = 1;
        if (pl.type == kOutstand) {
            cl = classOutstand(ct, eps);
        } else {
            const double psi = sMax / sMin; // compression negative: psi = 1 uniform, -1 pure bending
            double alpha = 1.0;
            if (sMax < kCompressed) {
                alpha = 1.0;
            } else {
                const double Nc = -a.N * 1e-3; // MN, compression positive
                alpha = 0.5 * (1.0 + Nc / (pl.parallel * pl.c * pl.t * 1e-6 * s.fy));
                alpha = std::clamp(alpha, 0.01, 1.0);
            }
            cl = classInternal(ct, eps, alpha, psi);
            if (pl.axisSwitch == 0 && cl >= cs.webClass) {
                cs.psiWeb = psi;
                cs.alphaWeb = alpha;
            }
        }
        if (pl.axisSwitch == 0) {
            cs.webClass = std::max(cs.webClass, cl);
            cs.ctWeb = std::max(cs.ctWeb, ct);
        } else {
            cs.flangeClass = std::max(cs.flangeClass, cl);
            cs.ctFlange = std::max(cs.ctFlange, ct);
        }
    }
    cs.classified = true;
    cs.sectionClass = std::max(cs.webClass, cs.flangeClass);
    return true;
}

void computeResistances(SetupBlock& s, const ControlBlock& control, int kind, const Actions& a)
{
    CrossSectionState& cs = s.cs;
    if (control.mode == 1)
        cs.classUsed = cs.classified ? cs.sectionClass : 1;
    else
        cs.classUsed = 3;
    if (control.elasticOnly) cs.classUsed = std::max(cs.classUsed, 3);
    const bool plastic = cs.classUsed <= 2;

    const double fyd = s.fyd;
    const double Wy = plastic ? s.Wply : s.Wely;
    const double Wz = plastic ? s.Wplz : s.Welz;
    cs.NplRd = s.A * fyd;
    cs.MyRd = Wy * fyd;
    cs.MzRd = Wz * fyd;
    cs.VzRd = s.Avz * fyd / std::sqrt(3.0);
    cs.VyRd = s.Avy * fyd / std::sqrt(3.0);

    const double N = a.N * 1e-3, My = a.My * 1e-3, Mz = a.Mz * 1e-3, Vz = a.Vz * 1e-3, Vy = a.Vy * 1e-3;
    auto rhoOf = [](double V, double VRd) {
        if (VRd <= kTiny) return 0.0;
        const double u = std::fabs(V) / VRd;
        return u > 0.5 ? (2 * u - 1) * (2 * u - 1) : 0.0;
    };
    cs.rhoZ = rhoOf(Vz, cs.VzRd);
    cs.rhoY = rhoOf(Vy, cs.VyRd);

    // 6.2.8: bending resistance with the yield strength of the shear area reduced by (1 - rho)
    double MyV = cs.MyRd;
    if (cs.rhoZ > 0.0) {
        double webModulus = -1.0; // m^3, the part of Wy that the webs provide
        if (isIKind(kind))
            webModulus = plastic ? s.tw * s.hw * s.hw / 4 : s.tw * s.hw * s.hw * s.hw / (6 * s.h);
        else if (kind == 20)
            webModulus = plastic ? 2 * s.tw * s.hw * s.hw / 4 : 2 * s.tw * s.hw * s.hw * s.hw / (6 * s.h);
        if (webModulus >= 0.0)
            MyV = (Wy - cs.rhoZ * webModulus * 1e-9) * fyd;
        else
            MyV = (1 - cs.rhoZ) * cs.MyRd;
        MyV = std::clamp(MyV, 0.0, cs.MyRd);
    }
    const double MzV = std::max((1 - cs.rhoY) * cs.MzRd, 0.0);
    cs.MyVRd = MyV;

    // 6.2.9: bending and axial force
    const double n = ratio(N, cs.NplRd);
    cs.MNyRd = MyV;
    cs.MNzRd = MzV;
    double expY = 1.0, expZ = 1.0;
    bool interaction = false;
    if (plastic && isIKind(kind)) {
        const double af = std::min((s.A - (s.b1 * s.tf1 + s.b2 * s.tf2) * 1e-6) / s.A, 0.5);
        cs.MNyRd = std::min(MyV * (1 - n) / (1 - 0.5 * af), MyV);
        cs.MNzRd = n <= af ? MzV : MzV * (1 - std::pow((n - af) / (1 - af), 2));
        expY = 2.0;
        expZ = std::max(5 * n, 1.0);
        interaction = true;
    } else if (plastic && kind == 20) {
        const double aw = std::min((s.A - 2 * s.b1 * s.tf1 * 1e-6) / s.A, 0.5);
        const double af = std::min((s.A - 2 * s.h * s.tw * 1e-6) / s.A, 0.5);
        cs.MNyRd = std::min(MyV * (1 - n) / (1 - 0.5 * aw), MyV);
        cs.MNzRd = std::min(MzV * (1 - n) / (1 - 0.5 * af), MzV);
        const double d = 1 - 1.13 * n * n;
        expY = expZ = d > 0.0 ? std::min(1.66 / d, 6.0) : 6.0;
        interaction = true;
    } else if (plastic && kind == 21) {
        cs.MNyRd = MyV * (1 - std::pow(std::min(n, 1.0), 1.7));
        cs.MNzRd = MzV * (1 - std::pow(std::min(n, 1.0), 1.7));
        expY = expZ = 2.0;
        interaction = true;
    }
    cs.MNyRd = std::max(cs.MNyRd, 0.0);
    cs.MNzRd = std::max(cs.MNzRd, 0.0);
    if (interaction) {
        const double uy = ratio(My, cs.MNyRd), uz = ratio(Mz, cs.MNzRd);
        cs.uNM = std::max(std::pow(uy, expY) + std::pow(uz, expZ), n);
    } else {
        cs.uNM = n + ratio(My, MyV) + ratio(Mz, MzV); // 6.2.1(7)
    }

    cs.uN = n;
    cs.uMy = ratio(My, cs.MyRd);
    cs.uMz = ratio(Mz, cs.MzRd);
    cs.uVz = ratio(Vz, cs.VzRd);
    cs.uVy = ratio(Vy, cs.VyRd);
}

void crossSectionByKindElastic(const SetupBlock& s, int kind, const StressPoint& p, const Actions& a, double* out)
{
    const double tauV = pointShearFromForces(s, p, a);
    const double tauT = pointShearFromTorsion(s, kind, p, a);
    const double tau = tauV + tauT;
    const double sigmaV = std::sqrt(p.sigma * p.sigma + 3 * tau * tau); // 6.2.1(5)
    out[3] = tauV;
    out[4] = tauT;
    out[5] = sigmaV;
    out[6] = ratio(p.sigma, s.fyd);
    out[7] = ratio(tau, s.fyd / std::sqrt(3.0));
    out[8] = ratio(sigmaV, s.fyd);
}

void crossSectionByKindAlternative(const SetupBlock& s, int kind, const StressPoint& p, const Actions& a, double* out)
{
    const double tauV = pointShearFromForces(s, p, a);
    const double tauT = pointShearFromTorsion(s, kind, p, a);
    const double tau = tauV + tauT;
    double rho = 0.0;
    if (p.part == kPartWeb)
        rho = s.cs.rhoZ;
    else if (p.part == kPartFlange)
        rho = s.cs.rhoY;
    else
        rho = std::max(s.cs.rhoZ, s.cs.rhoY);
    out[3] = tauV;
    out[4] = tauT;
    out[5] = rho;
    out[6] = ratio(p.sigma, (1 - rho) * s.fyd); // 6.2.8(3)
    out[7] = ratio(tau, s.fyd / std::sqrt(3.0));
    out[8] = std::max(out[6], out[7]);
}

} // namespace SteelDesign::Flat
