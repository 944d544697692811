// The EN 1993-1-1 cross-section check (6.2) with every rule EN 1993-1-1's. The arithmetic runs into a
// record of values (Work) first; the trace is written from that record afterwards, so that the hot path
// (no trace) forms no text and allocates nothing, except for the effective properties of class 4.
//
// Choices where EN 1993-1-1 leaves one open (docs and the report list them too):
//  - fy: the smallest over the plates (Table 3.1 by each plate's thickness); a solid bar by its smaller side.
//  - classification: EnClassification.h (Table 5.2, alpha of the plastic distribution for classes 1 and 2,
//    psi of the elastic one for class 3; 5.5.2(9) and 5.5.2(11) are not applied).
//  - shear (6.18) in every class with the database's Avz / Avy and |V|; solid bars and circular hollow
//    sections take the resultant of Vy and Vz against their one Av (Avy = Avz).
//  - torsion: Mt is taken as St. Venant torsion (the warping part of an open section is not known from the
//    section's forces, so tau_w,Ed = 0 in (6.27) and no warping normal stress is added). tau_t: open
//    sections T t / It (t of the part: the web for Vz, the flange for Vy, the thickest plate for T,Rd), RHS
//    Bredt T / (2 Am t), CHS and round bars T (d / 2) / It, solid rectangles T t_min / It (above the exact
//    St. Venant stress for every aspect ratio). Shear with torsion: (6.26) for I sections, (6.27) with
//    tau_w,Ed = 0 for channels and the other open kinds (T, L, Z, C), (6.28) for hollow sections and, on the
//    safe side (no plastic redistribution), for solid bars.
//  - bending with shear and with shear and axial force: (1 - rho) fy on the shear areas (6.2.8(3),
//    6.2.10(3)), the shear area of Vz being the webs (walls along z, the stem, the leg along z) and that of
//    Vy the flanges; the plastic resistances from the rectangles of the section model (for a doubly
//    symmetric I this is (6.30) exactly), the elastic ones (class 3) with the stress at the shear area's
//    extreme fibre limited to (1 - rho) fy; CHS: the sectors of the shear area (2 A / pi, half-angle 1 rad
//    about the axis across the shear) removed from Mpl; solid bars: the whole section; class 4: the whole
//    section's fy reduced, on the safe side.
//  - N and M, classes 1 and 2: doubly symmetric I (6.36) to (6.38) with the allowance when either limit of
//    6.2.9.1(4) is exceeded, biaxial (6.41) alpha = 2, beta = 5 n >= 1; RHS and boxes (6.39), (6.40),
//    (6.41) with alpha = beta = 1.66 / (1 - 1.13 n²) <= 6; CHS Mpl (1 - n^1.7) with the resultant moment;
//    every other kind (mono-symmetric I too) the linear sum of 6.2.1(7). The utilization is never below n.
//  - angles (classes 1 to 3): My and Mz about the principal axes u and v, the elastic stress (6.1) at the five
//    corners of the outline (AngleBending.h), no plastic reserve; with shear (1 - rho) fy over the section.
//  - class 3: (6.42) as the linear sum at the extreme fibre; class 4: (6.44) with Aeff, Weff and the moments
//    N eN by magnitude.

#include "EnCrossSection.h"

#include "AngleBending.h"

#include "EffectiveSection.h"
#include "EnClassification.h"
#include "TraceSheet.h"

#include <SDBSection.h>

#include <algorithm>
#include <initializer_list>
#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <utility>

namespace design {

namespace {

using SteelDesign::Forces;
using namespace tracetext;

constexpr double sqrt3 = 1.7320508075688772;
constexpr double inf = std::numeric_limits<double>::infinity();

enum Slot : int { sAxial = 0, sTorsion, sBending, sShear, sAxialBending, sShearBending, sAxialShearBending };

// x / R for a resistance R: 0 without action, infinite when the action meets no resistance.
double ratio(double x, double R)
{
    x = std::fabs(x);
    if (x == 0.0) return 0.0;
    return R > 0.0 ? x / R : inf;
}

bool isOpen(EnKind k)
{
    return k == EnKind::I || k == EnKind::U || k == EnKind::Z || k == EnKind::T || k == EnKind::L || k == EnKind::C;
}
bool isSolidOrTube(EnKind k) { return k == EnKind::O || k == EnKind::R || k == EnKind::Circle; }

// How a combination of N and the moments is checked.
enum class Form : unsigned char { None, I, RH, CHS, Linear, Elastic, Class4, Angle };

// One evaluation of N and M, with the resistances reduced for shear. No default values: combine() clears
// the record it writes (the four records of Work are not all needed on every call).
struct Combined {
    Form form;
    double rhoY, rhoZ;
    double NRd;           // N_pl,Rd (or N_V,Rd), A fy or Aeff fy (classes 3, 4)
    double MyRd, MzRd;    // Mpl (or M_V) / Mel / Weff fy, before the N reduction
    double MNyRd, MNzRd;  // after it (classes 1 and 2)
    double n, uy, uz;
    double a, af;         // I: a; RH: aw and af
    double webLimit;      // I: hw tw (1 - rho_z) fy / gammaM0
    bool allowY, allowZ;
    double alpha, beta;
    double dMy, dMz;      // class 4: |N eN|
    double uWebArea, uFlangeArea;  // class 3 with shear: the shear areas' fibres
    double sigma;         // angles: the largest |sigma| of the corners (kN/m²), at corner
    int corner;
    double uOwn;  // the check's own value
    double u;     // the slot's: with shear at least the value without (see run)
};

// The area and plastic moduli with (1 - rho) fy on the shear areas (the gross ones without shear).
struct Reduced {
    double A = 0.0, Wply = 0.0, Wplz = 0.0;
};

struct Work {
    const CrossSectionRequest* request = nullptr;
    const SDBSection* section = nullptr;
    double fy = 0.0, fyd = 0.0, gammaM0 = 1.0;
    int cls = 0;
    bool normalCovered = true;  // false: class 4 of a kind without effective properties here
    // Shear and torsion.
    double tauRd = 0.0, tauMax = 0.0, tauZ = 0.0, tauY = 0.0, tmax = 0.0;
    bool resultantShear = false;  // solid bars and CHS: sqrt(Vy² + Vz²) against one Av
    double uShearZ = 0.0, uShearY = 0.0, uShear = 0.0;
    double chsFraction = 0.0;     // CHS: the share of Mpl in the shear area
    // Class 4.
    std::optional<EffectiveProperties> compression, bendingY, bendingZ;
    // The four combinations: bending, bending and shear, bending and N, bending, shear and N; those that
    // coincide (no N, no reduction for shear) point to the same record.
    Combined store[4];
    Combined* bending = &store[0];
    Combined* shearBending = &store[0];
    Combined* axialBending = &store[0];
    Combined* axialShearBending = &store[0];
    bool shearReduces = false;
    Reduced reduced;  // with the rho of the shear forces (formed once)
    AngleAxes angle;  // angles: the principal axes and the corners
    // Last: their arrays are filled up to their counts, never zeroed.
    EnSectionModel model;
    EnClassification classification;
};

// ---- resistances reduced for shear (6.2.8(3), 6.2.10(3)) ------------------------------------------------

Reduced reducedForShear(const Work& w, double rhoY, double rhoZ)
{
    const SDBProperties& p = w.section->getProperties();
    Reduced r{p.A, p.Wply, p.Wplz};
    if (rhoY <= 0.0 && rhoZ <= 0.0) return r;
    const EnSectionModel& m = w.model;
    if (m.kind == EnKind::I && m.doublySymmetricI) {
        // The rectangles' result in closed form (the plastic neutral axes stay on the axes of symmetry): the web
        // hw tw loses rho_z of its share, tw hw² / 4 about y ((6.30): rho Aw² / (4 tw)) and hw tw² / 4 about z;
        // the flanges lose rho_y of b tf (h - tf) about y and 2 tf b² / 4 about z.
        const double hw = m.hw, tw = m.tw, b = m.b, tf = m.tf;
        r.A -= rhoZ * hw * tw + rhoY * 2.0 * b * tf;
        r.Wply -= rhoZ * tw * hw * hw / 4.0 + rhoY * b * tf * (m.h - tf);
        r.Wplz -= rhoZ * hw * tw * tw / 4.0 + rhoY * tf * b * b / 2.0;
        return r;
    }
    if (m.kind == EnKind::O) {
        const double rho = std::max(rhoY, rhoZ);
        r.A = p.A - rho * p.Avz;
        r.Wply = p.Wply * (1.0 - rho * w.chsFraction);
        r.Wplz = p.Wplz * (1.0 - rho * w.chsFraction);
        return r;
    }
    if (m.kind == EnKind::Circle) {
        const double rho = std::max(rhoY, rhoZ);
        r.A = p.A * (1.0 - rho);
        r.Wply = p.Wply * (1.0 - rho);
        r.Wplz = p.Wplz * (1.0 - rho);
        return r;
    }
    double factor[enMaxRects];
    double dA = 0.0;
    for (int i = 0; i < m.rectCount; ++i) {
        const EnRect& q = m.rects[static_cast<std::size_t>(i)];
        double rho = 0.0;
        if (q.shearArea == ShearAreaBoth)
            rho = std::max(rhoY, rhoZ);
        else if (q.shearArea == ShearAreaZ)
            rho = rhoZ;
        else if (q.shearArea == ShearAreaY)
            rho = rhoY;
        factor[i] = 1.0 - rho;
        dA += rho * (q.y1 - q.y0) * (q.z1 - q.z0);
    }
    EnProfile gross, reduced;
    for (const bool aboutY : {true, false}) {
        enProfile(m, aboutY, nullptr, gross);
        enProfile(m, aboutY, factor, reduced);
        const double dW = enPlasticModulus(gross) - enPlasticModulus(reduced);
        (aboutY ? r.Wply : r.Wplz) -= dW;
    }
    r.A -= dA;
    return r;
}

// The largest |z| and |y| of the rectangles of one shear area (the elastic check of its extreme fibre).
void shearAreaExtent(const EnSectionModel& m, std::uint8_t area, double& zMax, double& yMax)
{
    zMax = yMax = 0.0;
    for (int i = 0; i < m.rectCount; ++i) {
        const EnRect& q = m.rects[static_cast<std::size_t>(i)];
        if ((q.shearArea & area) == 0) continue;
        zMax = std::max({zMax, std::fabs(q.z0), std::fabs(q.z1)});
        yMax = std::max({yMax, std::fabs(q.y0), std::fabs(q.y1)});
    }
}

// ---- N and M ------------------------------------------------------------------------------------------

void combinePlastic(const Work& w, double N, double My, double Mz, double rhoY, double rhoZ, Combined& c)
{
    c.rhoY = rhoY;
    c.rhoZ = rhoZ;
    const EnSectionModel& m = w.model;
    const SDBProperties& p = w.section->getProperties();
    const Reduced red = rhoY > 0.0 || rhoZ > 0.0 ? w.reduced : Reduced{p.A, p.Wply, p.Wplz};
    c.NRd = red.A * w.fyd;
    c.MyRd = red.Wply * w.fyd;
    c.MzRd = red.Wplz * w.fyd;
    c.n = ratio(N, c.NRd);
    const double n = c.n;
    const bool both = My != 0.0 && Mz != 0.0;
    auto reduce = [&](double MplRd, double k) { return n >= 1.0 ? 0.0 : std::min(MplRd * k, MplRd); };
    if (m.kind == EnKind::I && m.doublySymmetricI) {
        c.form = Form::I;
        const double webArea = m.hw * m.tw * (1.0 - rhoZ);
        const double flanges = (m.b * m.tf + m.b2 * m.tf2) * (1.0 - rhoY);
        c.webLimit = webArea * w.fyd;
        c.a = red.A > 0.0 ? std::min((red.A - flanges) / red.A, 0.5) : 0.5;
        const double NEd = std::fabs(N);
        // 6.2.9.1(4): the allowance for N about y when either n > 0.25 or N > 0.5 hw tw fy / gammaM0;
        // about z when N > hw tw fy / gammaM0.
        c.allowY = N != 0.0 && (n > 0.25 || NEd > 0.5 * c.webLimit);
        c.allowZ = N != 0.0 && NEd > c.webLimit;
        c.MNyRd = c.allowY ? reduce(c.MyRd, (1.0 - n) / (1.0 - 0.5 * c.a)) : c.MyRd;          // (6.36)
        if (!c.allowZ || n <= c.a) {
            c.MNzRd = c.MzRd;                                                                // (6.37)
        } else {
            const double x = (n - c.a) / (1.0 - c.a);
            c.MNzRd = n >= 1.0 ? 0.0 : c.MzRd * (1.0 - x * x);                              // (6.38)
        }
        c.alpha = 2.0;
        c.beta = std::max(5.0 * n, 1.0);
    } else if (m.kind == EnKind::RH) {
        c.form = Form::RH;
        c.a = red.A > 0.0 ? std::min((red.A - 2.0 * m.b * m.tf * (1.0 - rhoY)) / red.A, 0.5) : 0.5;  // aw
        c.af = red.A > 0.0 ? std::min((red.A - 2.0 * m.h * m.tw * (1.0 - rhoZ)) / red.A, 0.5) : 0.5;
        c.allowY = c.allowZ = N != 0.0;
        c.MNyRd = reduce(c.MyRd, (1.0 - n) / (1.0 - 0.5 * c.a));   // (6.39)
        c.MNzRd = reduce(c.MzRd, (1.0 - n) / (1.0 - 0.5 * c.af));  // (6.40)
        const double den = 1.0 - 1.13 * n * n;
        c.alpha = c.beta = den > 0.0 ? std::min(1.66 / den, 6.0) : 6.0;
    } else if (m.kind == EnKind::O) {
        c.form = Form::CHS;
        c.allowY = c.allowZ = N != 0.0;
        const double k = n >= 1.0 ? 0.0 : 1.0 - std::pow(n, 1.7);
        c.MNyRd = c.MyRd * k;
        c.MNzRd = c.MzRd * k;
    } else {
        c.form = Form::Linear;
        c.MNyRd = c.MyRd;
        c.MNzRd = c.MzRd;
    }
    c.uy = ratio(My, c.MNyRd);
    c.uz = ratio(Mz, c.MNzRd);
    switch (c.form) {
    case Form::I:
    case Form::RH:
        c.u = both ? std::pow(c.uy, c.alpha) + std::pow(c.uz, c.beta) : c.uy + c.uz;  // (6.41)
        c.u = std::max(c.u, n);
        break;
    case Form::CHS:
        c.u = std::max(ratio(std::hypot(My, Mz), c.MNyRd), n);
        break;
    default:
        c.u = n + c.uy + c.uz;  // 6.2.1(7)
        break;
    }
}

void combineElastic(const Work& w, double N, double My, double Mz, double rhoY, double rhoZ, Combined& c)
{
    c.form = Form::Elastic;
    c.rhoY = rhoY;
    c.rhoZ = rhoZ;
    const SDBProperties& p = w.section->getProperties();
    c.NRd = p.A * w.fyd;
    c.MyRd = c.MNyRd = p.Wely * w.fyd;
    c.MzRd = c.MNzRd = p.Welz * w.fyd;
    c.n = ratio(N, c.NRd);
    c.uy = ratio(My, c.MyRd);
    c.uz = ratio(Mz, c.MzRd);
    c.u = c.n + c.uy + c.uz;  // (6.42) at the extreme fibre
    if (rhoY <= 0.0 && rhoZ <= 0.0) return;
    auto reducedCheck = [&](double stressRatio, double rho) {
        if (stressRatio == 0.0) return 0.0;
        return rho < 1.0 ? stressRatio / (1.0 - rho) : inf;
    };
    if (isSolidOrTube(w.model.kind)) {
        c.u = reducedCheck(c.u, std::max(rhoY, rhoZ));  // the shear area is (nearly) the whole section
        c.uWebArea = c.u;
        return;
    }
    auto atShearArea = [&](std::uint8_t area) {
        double zMax = 0.0, yMax = 0.0;
        shearAreaExtent(w.model, area, zMax, yMax);
        return c.n + std::fabs(My) * zMax / (p.Iy * w.fyd) + std::fabs(Mz) * yMax / (p.Iz * w.fyd);
    };
    if (rhoZ > 0.0) c.uWebArea = reducedCheck(atShearArea(ShearAreaZ), rhoZ);
    if (rhoY > 0.0) c.uFlangeArea = reducedCheck(atShearArea(ShearAreaY), rhoY);
    c.u = std::max({c.u, c.uWebArea, c.uFlangeArea});
}

void combineClass4(const Work& w, double N, double My, double Mz, double rhoY, double rhoZ, Combined& c)
{
    c.form = Form::Class4;
    c.rhoY = rhoY;
    c.rhoZ = rhoZ;
    const SDBProperties& p = w.section->getProperties();
    const bool compressed = N < 0.0 && w.compression.has_value();
    c.NRd = (compressed ? w.compression->Aeff : p.A) * w.fyd;
    c.n = ratio(N, c.NRd);
    if (compressed) {
        c.dMy = std::fabs(N * w.compression->eNy);
        c.dMz = std::fabs(N * w.compression->eNz);
    }
    c.MyRd = c.MNyRd = w.bendingY ? w.bendingY->Weffy * w.fyd : 0.0;
    c.MzRd = c.MNzRd = w.bendingZ ? w.bendingZ->Weffz * w.fyd : 0.0;
    c.uy = ratio(std::fabs(My) + c.dMy, c.MyRd);
    c.uz = ratio(std::fabs(Mz) + c.dMz, c.MzRd);
    c.u = c.n + c.uy + c.uz;  // (6.44)
    const double rho = std::max(rhoY, rhoZ);
    if (rho > 0.0 && c.u > 0.0) c.u = rho < 1.0 ? c.u / (1.0 - rho) : inf;
}

// Angles (classes 1 to 3): My and Mz are about the principal axes u and v. The elastic stress at the
// outline's corners, 6.2.1(5) (6.1), sigma = N / A + Mu v / Iu - Mv u / Iv, against fy / gamma_M0 (no
// plastic reserve taken: the plastic moduli of an angle about u and v are not the database's); with
// shear, on the safe side, fy (1 - rho) over the whole section.
void combineAngle(const Work& w, double N, double My, double Mz, double rhoY, double rhoZ, Combined& c)
{
    c.form = Form::Angle;
    c.rhoY = rhoY;
    c.rhoZ = rhoZ;
    const AngleAxes& a = w.angle;
    c.NRd = a.A * w.fyd;
    c.MyRd = c.MNyRd = a.Welu * w.fyd;
    c.MzRd = c.MNzRd = a.Welv * w.fyd;
    c.n = ratio(N, c.NRd);
    c.uy = ratio(My, c.MyRd);
    c.uz = ratio(Mz, c.MzRd);
    c.sigma = angleStressMax(a, N, My, Mz, &c.corner);
    c.u = c.sigma / w.fyd;
    const double rho = std::max(rhoY, rhoZ);
    if (rho > 0.0 && c.u > 0.0) c.u = rho < 1.0 ? c.u / (1.0 - rho) : inf;
}

void combine(const Work& w, double N, double My, double Mz, double rhoY, double rhoZ, Combined& c)
{
    c = Combined{};
    c.alpha = c.beta = 1.0;
    if (w.angle.valid && w.cls <= 3)
        combineAngle(w, N, My, Mz, rhoY, rhoZ, c);
    else if (w.cls == 1 || w.cls == 2)
        combinePlastic(w, N, My, Mz, rhoY, rhoZ, c);
    else if (w.cls == 3)
        combineElastic(w, N, My, Mz, rhoY, rhoZ, c);
    else
        combineClass4(w, N, My, Mz, rhoY, rhoZ, c);
    c.uOwn = c.u;
}

// ---- torsion and shear (6.2.6, 6.2.7) ------------------------------------------------------------------

void shearAndTorsion(Work& w, const Forces& f, EnCrossSection& out)
{
    const EnSectionModel& m = w.model;
    const SDBProperties& p = w.section->getProperties();
    w.tauRd = w.fy / (sqrt3 * w.gammaM0);
    out.VplzRd = p.Avz * w.tauRd;
    out.VplyRd = p.Avy * w.tauRd;
    const double T = std::fabs(f.getMt());
    const double It = p.It;
    // St. Venant shear stresses: in the parts that carry Vz and Vy, and the largest (T,Rd).
    double tz = 0.0, ty = 0.0;
    if (isOpen(m.kind)) {
        tz = m.kind == EnKind::L || m.kind == EnKind::C ? m.t : m.tw;
        ty = m.kind == EnKind::L || m.kind == EnKind::C ? m.t : std::max(m.tf, m.tf2);
        w.tmax = std::max(tz, ty);
        const double k = It > 0.0 ? T / It : inf;
        w.tauZ = T == 0.0 ? 0.0 : k * tz;
        w.tauY = T == 0.0 ? 0.0 : k * ty;
        w.tauMax = T == 0.0 ? 0.0 : k * w.tmax;
        out.TRd = w.tmax > 0.0 ? It / w.tmax * w.tauRd : 0.0;
    } else if (m.kind == EnKind::RH) {
        w.tmax = std::min(m.tw, m.tf);
        const double k = m.Am > 0.0 ? T / (2.0 * m.Am) : inf;
        w.tauZ = T == 0.0 ? 0.0 : k / m.tw;
        w.tauY = T == 0.0 ? 0.0 : k / m.tf;
        w.tauMax = T == 0.0 ? 0.0 : k / w.tmax;
        out.TRd = 2.0 * m.Am * w.tmax * w.tauRd;
    } else {
        // CHS and round bars: T r / Ip, r the outer radius; solid rectangles T t_min / It.
        w.tmax = m.kind == EnKind::R ? std::min(m.h, m.b) : m.d / 2.0;
        const double k = It > 0.0 ? T / It : inf;
        w.tauZ = w.tauY = w.tauMax = T == 0.0 ? 0.0 : k * w.tmax;
        out.TRd = w.tmax > 0.0 ? It / w.tmax * w.tauRd : 0.0;
    }
    out.utilization[sTorsion] = T == 0.0 ? 0.0 : (w.tauRd > 0.0 ? w.tauMax / w.tauRd : inf);

    auto reduceFor = [&](double tau, double Vpl) {
        if (tau == 0.0) return Vpl;
        if (isOpen(m.kind)) return std::sqrt(std::max(0.0, 1.0 - tau / (1.25 * w.tauRd))) * Vpl;  // (6.26), (6.27)
        return std::max(0.0, 1.0 - tau / w.tauRd) * Vpl;                                          // (6.28)
    };
    out.VplTzRd = reduceFor(w.tauZ, out.VplzRd);
    out.VplTyRd = reduceFor(w.tauY, out.VplyRd);
    const double Vy = f.getVy(), Vz = f.getVz();
    auto rhoOf = [](double u) {
        if (!(u > 0.5)) return 0.0;
        const double x = 2.0 * u - 1.0;
        return std::min(x * x, 1.0);
    };
    if (isSolidOrTube(m.kind)) {
        w.resultantShear = true;
        w.uShear = ratio(std::hypot(Vy, Vz), out.VplTzRd);
        w.uShearZ = ratio(Vz, out.VplTzRd);
        w.uShearY = ratio(Vy, out.VplTyRd);
        out.rhoY = out.rhoZ = rhoOf(w.uShear);
    } else {
        w.uShearZ = ratio(Vz, out.VplTzRd);
        w.uShearY = ratio(Vy, out.VplTyRd);
        w.uShear = std::max(w.uShearZ, w.uShearY);
        out.rhoZ = rhoOf(w.uShearZ);
        out.rhoY = rhoOf(w.uShearY);
    }
    out.utilization[sShear] = w.uShear;
    w.shearReduces = out.rhoY > 0.0 || out.rhoZ > 0.0;
    if (m.kind == EnKind::O) {
        // The shear area 2 A / pi: the two sectors of half-angle 1 rad about the axis across the shear force.
        // Their share of Mpl about the moment's axis, at the angle delta to that axis (thin wall):
        // (1/2) integral over [delta - 1, delta + 1] of |sin|.
        const double M = std::hypot(f.getMy(), f.getMz()), V = std::hypot(Vy, Vz);
        double delta = 0.0;
        if (M > 0.0 && V > 0.0) delta = std::acos(std::min(1.0, std::fabs(f.getMy() * Vz - f.getMz() * Vy) / (M * V)));
        w.chsFraction = delta < 1.0 ? 0.5 * ((1.0 - std::cos(delta - 1.0)) + (1.0 - std::cos(delta + 1.0)))
                                    : 0.5 * (std::cos(delta - 1.0) - std::cos(delta + 1.0));
    }
}

// ---- class 4: effective properties (EN 1993-1-5 4.3) -------------------------------------------------------

bool effectiveProperties(Work& w, const Forces& f, EnCrossSection& out)
{
    const EnKind k = w.model.kind;
    // EffectiveSection.h covers I sections, channels, RHS and boxes, and tees (cut and welded); CHS, angles,
    // Z and C sections stay not verified.
    if (k != EnKind::I && k != EnKind::U && k != EnKind::RH && k != EnKind::T) return false;
    const SDBSection& s = *w.section;
    if (f.getN() < 0.0) {
        w.compression = effectiveUnderCompression(s, w.fy);
        if (!w.compression) return false;
        out.Aeff = w.compression->Aeff;
        out.eNy = w.compression->eNy;
        out.eNz = w.compression->eNz;
    }
    // Weff about each axis bent, or whose shift eN gives a moment (then the smaller of the two senses).
    for (const Axis axis : {Axis::y, Axis::z}) {
        const double M = axis == Axis::y ? f.getMy() : f.getMz();
        const double e = axis == Axis::y ? out.eNy : out.eNz;
        std::optional<EffectiveProperties>& slot = axis == Axis::y ? w.bendingY : w.bendingZ;
        if (M != 0.0) {
            slot = effectiveUnderBending(s, w.fy, axis, M > 0.0);
        } else if (e != 0.0) {
            auto positive = effectiveUnderBending(s, w.fy, axis, true);
            auto negative = effectiveUnderBending(s, w.fy, axis, false);
            if (!positive || !negative) return false;
            const double wp = axis == Axis::y ? positive->Weffy : positive->Weffz;
            const double wn = axis == Axis::y ? negative->Weffy : negative->Weffz;
            slot = wp <= wn ? std::move(positive) : std::move(negative);
        } else {
            continue;
        }
        if (!slot) return false;
        (axis == Axis::y ? out.Weffy : out.Weffz) = axis == Axis::y ? slot->Weffy : slot->Weffz;
    }
    return true;
}

// ---- trace ----------------------------------------------------------------------------------------------

std::string ratioText(double v) { return fixed(v, 2); }

void traceClassification(Sheet& sheet, const Work& w)
{
    const EnSectionModel& m = w.model;
    const EnClassification& c = w.classification;
    std::string thicknesses;
    for (int i = 0; i < m.thicknessCount; ++i) {
        if (i) thicknesses += ", ";
        thicknesses += mm(m.thicknesses[static_cast<std::size_t>(i)]);
    }
    sheet.value(kClassification, "EN 1993-1-1 3.2.1, Table 3.1", "fy", "the smallest fy over the plates",
                "t = " + thicknesses + ": fy = " + stress(w.fy) + ", epsilon = sqrt(235 / " + fixed(w.fy / 1000.0, 0) +
                    ") = " + factor(std::sqrt(235000.0 / w.fy)),
                stress(w.fy), w.fy);
    if (c.elastic) {
        sheet.value(kClassification, "EN 1993-1-1 5.5.2", "class", "elastic verification: class 3 without classification",
                    "elastic verification asked for", classText(3), 3.0);
        return;
    }
    if (c.noNormalStress) {
        sheet.value(kClassification, "EN 1993-1-1 5.5.2", "class", "no normal stress: no part in compression",
                    "N = My = Mz = 0", classText(1), 1.0);
        return;
    }
    if (m.kind == EnKind::R || m.kind == EnKind::Circle) {
        sheet.value(kClassification, "EN 1993-1-1 5.5.2", "class",
                    "solid bar: no plate supported by another, no local buckling", "solid section", classText(1), 1.0);
        return;
    }
    if (c.tube) {
        const double e2 = c.tubeEpsilon * c.tubeEpsilon;
        sheet.value(kClassification, "EN 1993-1-1 Table 5.2 (sheet 3)", "d/t", "d / t <= 50, 70, 90 eps²",
                    "d / t = " + mm(m.d) + " / " + mm(m.t) + " = " + ratioText(c.tubeDt) + "; limits " +
                        ratioText(50.0 * e2) + ", " + ratioText(70.0 * e2) + ", " + ratioText(90.0 * e2),
                    classText(c.tubeClass), c.tubeClass);
    }
    if (c.angleCompression) {
        const double e = c.angleEpsilon;
        sheet.value(kClassification, "EN 1993-1-1 Table 5.2 (sheet 3)", "h/t, (b+h)/2t",
                    "angle in compression or bending: h / t <= 15 eps and (b + h) / (2 t) <= 11.5 eps for class 3",
                    "h / t = " + ratioText(c.angleHt) + " (" + ratioText(15.0 * e) + "), (b + h) / (2 t) = " +
                        ratioText(c.angleBht) + " (" + ratioText(11.5 * e) + ")",
                    classText(c.angleClass), c.angleClass);
    }
    for (int i = 0; i < c.plateCount; ++i) {
        const EnPlate& pl = m.plates[static_cast<std::size_t>(i)];
        const EnPlateClass& pc = c.plates[static_cast<std::size_t>(i)];
        const double r = pl.c / pl.t;
        std::string numbers = "c / t = " + mm(pl.c) + " / " + mm(pl.t) + " = " + ratioText(r) + ", eps = " +
                              factor(pc.epsilon) + "; sigma = " + stress(pc.sigma1) + ", " + stress(pc.sigma2) +
                              " (compression > 0); alpha = " + factor(pc.alpha);
        std::string formula;
        if (!(pc.alpha > 0.0)) {
            numbers += ": no part in compression";
            formula = "no compression in the plastic distribution";
        } else {
            if (pl.internal) {
                formula = pc.alpha > 0.5 ? "c/t <= 396 eps / (13 alpha - 1), 456 eps / (13 alpha - 1)"
                                         : "c/t <= 36 eps / alpha, 41.5 eps / alpha";
            } else {
                formula = pc.freeEdgeCompressed || pc.alpha >= 1.0 ? "c/t <= 9 eps / alpha, 10 eps / alpha"
                                                                   : "c/t <= 9 eps / (alpha sqrt(alpha)), 10 eps / "
                                                                     "(alpha sqrt(alpha))";
            }
            numbers += ": class 1 <= " + ratioText(pc.limit1) + ", class 2 <= " + ratioText(pc.limit2);
            if (pc.limit3 > 0.0) {
                formula += pl.internal ? (pc.psi > -1.0 ? "; class 3: 42 eps / (0.67 + 0.33 psi)"
                                                        : "; class 3: 62 eps (1 - psi) sqrt(-psi)")
                                       : (pc.psi >= 1.0 - 1e-9 ? "; class 3: 14 eps" : "; class 3: 21 eps sqrt(k_sigma)");
                numbers += ", psi = " + factor(pc.psi) + (pl.internal ? "" : ", k_sigma = " + factor(pc.kSigma)) +
                           ": class 3 <= " + ratioText(pc.limit3);
            } else if (pc.cls == 3) {
                numbers += "; no compression in the elastic distribution";
            }
        }
        sheet.value(kClassification,
                    pl.internal ? "EN 1993-1-1 Table 5.2 (sheet 1)" : "EN 1993-1-1 Table 5.2 (sheet 2)",
                    std::string("c/t (") + pl.name + ")", formula, std::move(numbers), classText(pc.cls), pc.cls);
    }
    sheet.value(kClassification, "EN 1993-1-1 5.5.2(6)", "class",
                "the largest class of the parts in compression (5.5.2(9) and (11) not applied)",
                std::string("section kind ") + toString(m.kind), classText(w.cls), w.cls);
}

void traceEffective(Sheet& sheet, const Work& w, const EnCrossSection& out)
{
    auto plates = [&](const EffectiveProperties& e, const char* load) {
        for (const EffectivePlate& p : e.plates) {
            if (!(p.rho < 1.0)) continue;
            sheet.value(kClassification, "EN 1993-1-5 4.4 (4.2), (4.3)", "rho (" + p.element + ", " + load + ")",
                        "lambda_p = (c / t) / (28.4 eps sqrt(k_sigma)); rho",
                        "c / t = " + mm(p.c) + " / " + mm(p.t) + ", psi = " + factor(p.psi) + ", k_sigma = " +
                            factor(p.kSigma) + ", lambda_p = " + factor(p.lambdaP) + ", b_eff = " + mm(p.bEff),
                        factor(p.rho), p.rho);
        }
    };
    if (w.compression) {
        plates(*w.compression, "compression");
        sheet.value(kClassification, "EN 1993-1-1 6.2.2.5, EN 1993-1-5 4.3", "A_eff",
                    "the gross area less the ineffective strips (uniform compression)",
                    "A = " + cm2(w.compression->A) + ", e_N,y = " + mm(out.eNy) + ", e_N,z = " + mm(out.eNz),
                    cm2(out.Aeff), out.Aeff);
    }
    if (w.bendingY) {
        plates(*w.bendingY, "bending about y");
        sheet.value(kClassification, "EN 1993-1-1 6.2.2.5, EN 1993-1-5 4.3", "W_eff,y",
                    "I_eff,y / the distance to the extreme fibre (bending about y alone)",
                    "I_eff,y = " + cm4(w.bendingY->Ieffy), cm3(out.Weffy), out.Weffy);
    }
    if (w.bendingZ) {
        plates(*w.bendingZ, "bending about z");
        sheet.value(kClassification, "EN 1993-1-1 6.2.2.5, EN 1993-1-5 4.3", "W_eff,z",
                    "I_eff,z / the distance to the extreme fibre (bending about z alone)",
                    "I_eff,z = " + cm4(w.bendingZ->Ieffz), cm3(out.Weffz), out.Weffz);
    }
}

std::string modulusName(int cls, const char* axis)
{
    return std::string(cls <= 2 ? "W_pl," : cls == 3 ? "W_el," : "W_eff,") + axis;
}

const char* momentClause(int cls)
{
    return cls <= 2 ? "EN 1993-1-1 6.2.5 (6.13)" : cls == 3 ? "EN 1993-1-1 6.2.5 (6.14)" : "EN 1993-1-1 6.2.5 (6.15)";
}

// "a / b + c / d": the terms of a sum whose action is not zero ("0" when none is).
std::string sumOf(std::initializer_list<std::pair<std::string, bool>> terms)
{
    std::string out;
    for (const auto& [text, present] : terms) {
        if (!present) continue;
        if (!out.empty()) out += " + ";
        out += text;
    }
    return out.empty() ? std::string("0") : out;
}

// The lines of one combination under its group: the reduced resistances and the check.
void traceCombined(Sheet& sheet, const Work& w, const char* group, const Combined& c, double N, double My, double Mz,
                   bool withN)
{
    const SDBProperties& p = w.section->getProperties();
    const std::string g0 = gamma(w.gammaM0), fyText = stress(w.fy);
    const bool shear = c.rhoY > 0.0 || c.rhoZ > 0.0;
    if (shear) {
        if (w.resultantShear)
            sheet.value(group, "EN 1993-1-1 6.2.8(3), (4)", "rho", "(2 V_Ed / V_pl,(T,)Rd - 1)²",
                        "(2 · " + factor(w.uShear) + " - 1)²", factor(c.rhoZ), c.rhoZ);
        if (!w.resultantShear && c.rhoZ > 0.0)
            sheet.value(group, "EN 1993-1-1 6.2.8(3), (4)", "rho_z", "(2 V_z,Ed / V_pl,(T,)z,Rd - 1)²",
                        "(2 · " + factor(w.uShearZ) + " - 1)²", factor(c.rhoZ), c.rhoZ);
        if (!w.resultantShear && c.rhoY > 0.0)
            sheet.value(group, "EN 1993-1-1 6.2.8(3), (4)", "rho_y", "(2 V_y,Ed / V_pl,(T,)y,Rd - 1)²",
                        "(2 · " + factor(w.uShearY) + " - 1)²", factor(c.rhoY), c.rhoY);
    }
    switch (c.form) {
    case Form::I:
    case Form::RH:
    case Form::CHS:
    case Form::Linear: {
        if (shear) {
            const char* how = w.model.kind == EnKind::O
                                  ? "(1 - rho) fy on the shear area 2 A / pi (sectors of 1 rad about the axis across V)"
                                  : w.model.kind == EnKind::I && w.model.doublySymmetricI
                                      ? "(W_pl - rho_z A_w² / (4 t_w) - rho_y (flanges' share)) fy / gamma_M0"
                                      : "(1 - rho) fy on the shear areas (webs for V_z, flanges for V_y)";
            const Reduced& r = w.reduced;
            if (withN)
                sheet.value(group, "EN 1993-1-1 6.2.10(3)", "N_V,Rd",
                            w.model.kind == EnKind::I && w.model.doublySymmetricI
                                ? "(A - rho_z h_w t_w - rho_y 2 b t_f) fy / gamma_M0"
                                : how,
                            "(" + cm2(p.A) + " - " + cm2(p.A - r.A) + ") · " + fyText + " / " + g0, kN(c.NRd), c.NRd);
            if (My != 0.0)
                sheet.value(group, w.model.kind == EnKind::I ? "EN 1993-1-1 6.2.8(5) (6.30)" : "EN 1993-1-1 6.2.8(3)",
                            "M_y,V,Rd", how,
                            "(" + cm3(p.Wply) + " - " + cm3(p.Wply - r.Wply) + ") · " + fyText + " / " + g0,
                            kNm(c.MyRd), c.MyRd);
            if (Mz != 0.0)
                sheet.value(group, "EN 1993-1-1 6.2.8(3)", "M_z,V,Rd", how,
                            "(" + cm3(p.Wplz) + " - " + cm3(p.Wplz - r.Wplz) + ") · " + fyText + " / " + g0,
                            kNm(c.MzRd), c.MzRd);
        }
        if (withN && N != 0.0) {
            const std::string NRd = shear ? "N_V,Rd" : "N_pl,Rd";
            sheet.value(group, "EN 1993-1-1 6.2.9.1", "n", "|N_Ed| / " + NRd, magnitude(kN(N)) + " / " + kN(c.NRd),
                        factor(c.n), c.n);
            if (c.form == Form::I) {
                sheet.value(group, "EN 1993-1-1 6.2.9.1(4)", "allowance for N",
                            "about y when n > 0.25 or N_Ed > 0.5 h_w t_w fy / gamma_M0; about z when N_Ed > h_w t_w fy / "
                            "gamma_M0",
                            "n = " + factor(c.n) + ", h_w t_w fy / gamma_M0 = " + kN(c.webLimit) + ", a = " + factor(c.a),
                            std::string(c.allowY ? "y" : "-") + ", " + (c.allowZ ? "z" : "-"), 0.0);
                if (My != 0.0)
                    sheet.value(group, "EN 1993-1-1 6.2.9.1(5) (6.36)", "M_N,y,Rd",
                                c.allowY ? "M_pl,y,Rd (1 - n) / (1 - 0.5 a) <= M_pl,y,Rd" : "M_pl,y,Rd (no allowance)",
                                c.allowY ? kNm(c.MyRd) + " · (1 - " + factor(c.n) + ") / (1 - 0.5 · " + factor(c.a) + ")"
                                         : kNm(c.MyRd),
                                kNm(c.MNyRd), c.MNyRd);
                if (Mz != 0.0)
                    sheet.value(group, "EN 1993-1-1 6.2.9.1(5) (6.37), (6.38)", "M_N,z,Rd",
                                !c.allowZ     ? "M_pl,z,Rd (no allowance)"
                                : c.n <= c.a ? "M_pl,z,Rd for n <= a"
                                              : "M_pl,z,Rd (1 - ((n - a) / (1 - a))²)",
                                kNm(c.MzRd) + ", n = " + factor(c.n) + ", a = " + factor(c.a), kNm(c.MNzRd), c.MNzRd);
            } else if (c.form == Form::RH) {
                if (My != 0.0)
                    sheet.value(group, "EN 1993-1-1 6.2.9.1(6) (6.39)", "M_N,y,Rd",
                                "M_pl,y,Rd (1 - n) / (1 - 0.5 a_w) <= M_pl,y,Rd",
                                kNm(c.MyRd) + " · (1 - " + factor(c.n) + ") / (1 - 0.5 · " + factor(c.a) + ")",
                                kNm(c.MNyRd), c.MNyRd);
                if (Mz != 0.0)
                    sheet.value(group, "EN 1993-1-1 6.2.9.1(6) (6.40)", "M_N,z,Rd",
                                "M_pl,z,Rd (1 - n) / (1 - 0.5 a_f) <= M_pl,z,Rd",
                                kNm(c.MzRd) + " · (1 - " + factor(c.n) + ") / (1 - 0.5 · " + factor(c.af) + ")",
                                kNm(c.MNzRd), c.MNzRd);
            } else if (c.form == Form::CHS) {
                sheet.value(group, "EN 1993-1-1 6.2.9.1", "M_N,Rd", "M_pl,Rd (1 - n^1.7)",
                            kNm(c.MyRd) + " · (1 - " + factor(c.n) + "^1.7)", kNm(c.MNyRd), c.MNyRd);
            }
        }
        const bool both = My != 0.0 && Mz != 0.0;
        const bool reducedForN = withN && c.form != Form::Linear;
        const std::string My_ = reducedForN ? "M_N,y,Rd" : shear ? "M_y,V,Rd" : "M_c,y,Rd";
        const std::string Mz_ = reducedForN ? "M_N,z,Rd" : shear ? "M_z,V,Rd" : "M_c,z,Rd";
        if (c.form == Form::CHS) {
            sheet.utilization(group, "EN 1993-1-1 6.2.9.1(6) (6.41)", "M_Ed / " + My_,
                              "max(sqrt(M_y,Ed² + M_z,Ed²) / " + My_ + (withN ? ", n)" : ")"),
                              kNm(std::hypot(My, Mz)) + " / " + kNm(c.MNyRd), c.uOwn, false);
        } else if ((c.form == Form::I || c.form == Form::RH) && both) {
            sheet.utilization(group, "EN 1993-1-1 6.2.9.1(6) (6.41)", "biaxial bending",
                              "(M_y,Ed / " + My_ + ")^alpha + (M_z,Ed / " + Mz_ + ")^beta" + (withN ? ", at least n" : ""),
                              factor(c.uy) + "^" + fixed(c.alpha, 2) + " + " + factor(c.uz) + "^" + fixed(c.beta, 2),
                              c.uOwn, false);
        } else if (c.form == Form::Linear) {
            sheet.utilization(group, "EN 1993-1-1 6.2.1(7) (6.2)", "linear sum",
                              (withN ? std::string(shear ? "N_Ed / N_V,Rd + M_y,Ed / " : "N_Ed / N_pl,Rd + M_y,Ed / ")
                                     : std::string("M_y,Ed / ")) +
                                  My_ + " + M_z,Ed / " + Mz_,
                              sumOf({{magnitude(kN(N)) + " / " + kN(c.NRd), N != 0.0},
                                     {magnitude(kNm(My)) + " / " + kNm(c.MNyRd), My != 0.0},
                                     {magnitude(kNm(Mz)) + " / " + kNm(c.MNzRd), Mz != 0.0}}),
                              c.uOwn, false);
        } else {
            const bool y = My != 0.0 || Mz == 0.0;
            const std::string n = withN ? ", n)" : ")";
            sheet.utilization(group, "EN 1993-1-1 6.2.9.1 (6.31)", y ? "M_y,Ed / " + My_ : "M_z,Ed / " + Mz_,
                              y ? "max(|M_y,Ed| / " + My_ + n : "max(|M_z,Ed| / " + Mz_ + n,
                              y ? magnitude(kNm(My)) + " / " + kNm(c.MNyRd) : magnitude(kNm(Mz)) + " / " + kNm(c.MNzRd),
                              c.uOwn, false);
        }
        break;
    }
    case Form::Elastic:
        sheet.utilization(group, "EN 1993-1-1 6.2.9.2 (6.42)", "sigma_x,Ed / (fy / gamma_M0)",
                          "N_Ed / (A fy / gamma_M0) + M_y,Ed / (W_el,y fy / gamma_M0) + M_z,Ed / (W_el,z fy / gamma_M0)",
                          sumOf({{magnitude(kN(N)) + " / " + kN(c.NRd), N != 0.0},
                                 {magnitude(kNm(My)) + " / " + kNm(c.MyRd), My != 0.0},
                                 {magnitude(kNm(Mz)) + " / " + kNm(c.MzRd), Mz != 0.0}}),
                          c.n + c.uy + c.uz, false);
        if (shear)
            sheet.utilization(group, "EN 1993-1-1 6.2.8(3), 6.2.10(3)", "shear areas",
                              "max(the above, sigma at the shear area's extreme fibre / ((1 - rho) fy / gamma_M0))",
                              "webs: " + factor(c.uWebArea) + ", flanges: " + factor(c.uFlangeArea), c.uOwn, false);
        break;
    case Form::Class4:
        sheet.utilization(group, "EN 1993-1-1 6.2.9.3 (6.44)", "class 4",
                          "N_Ed / (A_eff fy / gamma_M0) + (M_y,Ed + |N_Ed e_N,y|) / (W_eff,y fy / gamma_M0) + (M_z,Ed + "
                          "|N_Ed e_N,z|) / (W_eff,z fy / gamma_M0)" +
                              std::string(shear ? ", all over (1 - rho)" : ""),
                          sumOf({{magnitude(kN(N)) + " / " + kN(c.NRd), N != 0.0},
                                 {"(" + magnitude(kNm(My)) + " + " + kNm(c.dMy) + ") / " + kNm(c.MyRd),
                                  My != 0.0 || c.dMy != 0.0},
                                 {"(" + magnitude(kNm(Mz)) + " + " + kNm(c.dMz) + ") / " + kNm(c.MzRd),
                                  Mz != 0.0 || c.dMz != 0.0}}),
                          c.uOwn, false);
        break;
    case Form::Angle: {
        const AngleAxes& a = w.angle;
        const AngleCorner& k = a.corners[static_cast<std::size_t>(c.corner)];
        static const char* const cornerNames[] = {"the heel", "the tip of the leg along z", "the inner tip of the leg along z",
                                                  "the tip of the leg along y", "the inner tip of the leg along y"};
        if (group == std::string_view(kBending))
            sheet.value(group, "EN 1993-1-1 6.2.5 (6.14)", "W_el,u, W_el,v",
                        "I_u / v_max, I_v / u_max (v_max, u_max: the farthest corners)",
                        cm4(a.principal.Iu) + " / " + mm(a.vMax) + ", " + cm4(a.principal.Iv) + " / " + mm(a.uMax),
                        cm3(a.Welu) + ", " + cm3(a.Welv), a.Welu);
        sheet.utilization(group, "EN 1993-1-1 6.2.1(5) (6.1)", "sigma_x,Ed / (fy / gamma_M0)",
                          std::string("|N_Ed / A + M_u,Ed v / I_u - M_v,Ed u / I_v| at ") +
                              cornerNames[c.corner] + " (u = " + mm(k.u) + ", v = " + mm(k.v) + "), the largest corner" +
                              (shear ? ", over (1 - rho)" : ""),
                          stress(c.sigma) + " / (" + fyText + " / " + g0 + ")", c.uOwn, false);
        break;
    }
    case Form::None: break;
    }
    if (c.u > c.uOwn)
        sheet.utilization(group, "EN 1993-1-1 6.2.8(3), 6.2.10(3)", "at least without shear",
                          "the resistances reduced for shear are not above those without it",
                          "max(" + factor(c.uOwn) + ", " + factor(c.u) + ")", c.u, false);
}

void traceResistances(Sheet& sheet, const Work& w, const EnCrossSection& out)
{
    const CrossSectionRequest& r = *w.request;
    const Forces& f = r.forces;
    const SDBProperties& p = w.section->getProperties();
    const std::string g0 = gamma(w.gammaM0), fyText = stress(w.fy);
    const double N = f.getN(), My = f.getMy(), Mz = f.getMz();

    // Axial force.
    if (const auto& u = out.utilization[sAxial]; u && N != 0.0) {
        const bool tension = N > 0.0;
        sheet.value(kAxial, "EN 1993-1-1 6.2.3 (6.6)", "N_pl,Rd", "A fy / gamma_M0", cm2(p.A) + " · " + fyText + " / " + g0,
                    kN(out.NplRd), out.NplRd);
        if (!tension && w.cls == 4)
            sheet.value(kAxial, "EN 1993-1-1 6.2.4 (6.11)", "N_c,Rd", "A_eff fy / gamma_M0",
                        cm2(out.Aeff) + " · " + fyText + " / " + g0, kN(out.NcRd), out.NcRd);
        const double R = tension || w.cls != 4 ? out.NplRd : out.NcRd;
        sheet.utilization(kAxial, tension ? "EN 1993-1-1 6.2.3 (6.5)" : "EN 1993-1-1 6.2.4 (6.9)",
                          tension ? "N_Ed / N_t,Rd" : "N_Ed / N_c,Rd", tension ? "|N_Ed| / N_pl,Rd" : "|N_Ed| / N_c,Rd",
                          magnitude(kN(N)) + " / " + kN(R), u.value(), false);
    }
    // Torsion.
    if (const auto& u = out.utilization[sTorsion]; u && f.getMt() != 0.0) {
        const EnKind k = w.model.kind;
        std::string formula, numbers;
        if (isOpen(k) || k == EnKind::R) {
            formula = "tau_Rd I_t / t_max, tau_Rd = fy / (sqrt(3) gamma_M0)";
            numbers = fixed(w.tauRd / 1000.0, 1) + " N/mm² · " + cm4(p.It) + " / " + mm(w.tmax);
        } else if (k == EnKind::RH) {
            formula = "tau_Rd 2 A_m t_min (Bredt)";
            numbers = fixed(w.tauRd / 1000.0, 1) + " N/mm² · 2 · " + cm2(w.model.Am) + " · " + mm(w.tmax);
        } else {
            formula = "tau_Rd I_p / r";
            numbers = fixed(w.tauRd / 1000.0, 1) + " N/mm² · " + cm4(p.It) + " / " + mm(w.tmax);
        }
        sheet.value(kTorsion, "EN 1993-1-1 6.2.7(7)", "T_Rd", formula, numbers, kNm(out.TRd), out.TRd);
        sheet.utilization(kTorsion, "EN 1993-1-1 6.2.7 (6.23)", "T_Ed / T_Rd",
                          "|T_Ed| / T_Rd (St. Venant torsion; no warping stress known)",
                          magnitude(kNm(f.getMt())) + " / " + kNm(out.TRd), u.value(), false);
    }
    // Bending.
    if (const auto& u = out.utilization[sBending]; u && (My != 0.0 || Mz != 0.0)) {
        const Combined& c = *w.bending;
        for (const bool y : {true, false}) {
            const double M = y ? My : Mz;
            if (M == 0.0) continue;
            const double McRd = y ? out.McyRd : out.MczRd;
            if (c.form == Form::Angle) {  // about u and v, elastic
                const char* a = y ? "u" : "v";
                sheet.value(kBending, "EN 1993-1-1 6.2.5 (6.14)", std::string("M_c,") + a + ",Rd",
                            std::string("W_el,") + a + " fy / gamma_M0",
                            cm3(y ? w.angle.Welu : w.angle.Welv) + " · " + fyText + " / " + g0, kNm(McRd), McRd);
                continue;
            }
            const char* a = y ? "y" : "z";
            const double W = w.cls <= 2 ? (y ? p.Wply : p.Wplz) : w.cls == 3 ? (y ? p.Wely : p.Welz) : (y ? out.Weffy : out.Weffz);
            sheet.value(kBending, momentClause(w.cls), std::string("M_c,") + a + ",Rd", modulusName(w.cls, a) + " fy / gamma_M0",
                        cm3(W) + " · " + fyText + " / " + g0, kNm(McRd), McRd);
        }
        traceCombined(sheet, w, kBending, c, 0.0, My, Mz, false);
        (void)u;
    }
    // Shear.
    if (const auto& u = out.utilization[sShear]; u && (f.getVy() != 0.0 || f.getVz() != 0.0)) {
        for (const bool z : {true, false}) {
            const double V = z ? f.getVz() : f.getVy();
            if (V == 0.0 && !w.resultantShear) continue;
            if (w.resultantShear && !z) continue;
            const char* a = z ? "z" : "y";
            const double Av = z ? p.Avz : p.Avy, Vpl = z ? out.VplzRd : out.VplyRd, VT = z ? out.VplTzRd : out.VplTyRd;
            sheet.value(kShear, "EN 1993-1-1 6.2.6(2) (6.18)", std::string("V_pl,") + a + ",Rd",
                        std::string("A_v,") + a + " (fy / sqrt(3)) / gamma_M0",
                        cm2(Av) + " · (" + fyText + " / sqrt(3)) / " + g0, kN(Vpl), Vpl);
            std::string R = std::string("V_pl,") + a + ",Rd";
            if (f.getMt() != 0.0) {
                const double tau = z ? w.tauZ : w.tauY;
                const EnKind k = w.model.kind;
                const char* clause = k == EnKind::I ? "EN 1993-1-1 6.2.7(9) (6.26)"
                                     : isOpen(k)    ? "EN 1993-1-1 6.2.7(9) (6.27), tau_w,Ed = 0"
                                                    : "EN 1993-1-1 6.2.7(9) (6.28)";
                const char* formula = isOpen(k) ? "sqrt(1 - tau_t,Ed / (1.25 tau_Rd)) V_pl,Rd" : "(1 - tau_t,Ed / tau_Rd) V_pl,Rd";
                R = std::string("V_pl,T,") + a + ",Rd";
                sheet.value(kShear, clause, R, formula,
                            "tau_t,Ed = " + fixed(tau / 1000.0, 1) + " N/mm², tau_Rd = " + fixed(w.tauRd / 1000.0, 1) +
                                " N/mm²",
                            kN(VT), VT);
            }
            if (w.resultantShear)
                sheet.utilization(kShear, "EN 1993-1-1 6.2.6 (6.17)", "V_Ed / " + R, "sqrt(V_y,Ed² + V_z,Ed²) / " + R,
                                  kN(std::hypot(f.getVy(), f.getVz())) + " / " + kN(VT), w.uShear, false);
            else
                sheet.utilization(kShear, "EN 1993-1-1 6.2.6 (6.17)", std::string("V_") + a + ",Ed / " + R,
                                  std::string("|V_") + a + ",Ed| / " + R, magnitude(kN(V)) + " / " + kN(VT),
                                  z ? w.uShearZ : w.uShearY, false);
        }
        (void)u;
    }
    // Bending with shear.
    if (const auto& u = out.utilization[sShearBending]; u && (My != 0.0 || Mz != 0.0)) {
        if (!w.shearReduces)
            sheet.value(kShearBending, "EN 1993-1-1 6.2.8(2)", "rho", "V_Ed <= 0.5 V_pl,Rd: no reduction",
                        "V_z,Ed / V_pl,z,Rd = " + factor(w.uShearZ) + ", V_y,Ed / V_pl,y,Rd = " + factor(w.uShearY), "0", 0.0);
        traceCombined(sheet, w, kShearBending, *w.shearBending, 0.0, My, Mz, false);
        (void)u;
    }
    // Bending and axial force.
    if (const auto& u = out.utilization[sAxialBending]; u && (N != 0.0 || My != 0.0 || Mz != 0.0)) {
        traceCombined(sheet, w, kAxialBending, *w.axialBending, N, My, Mz, true);
        (void)u;
    }
    if (const auto& u = out.utilization[sAxialShearBending]; u && (N != 0.0 || My != 0.0 || Mz != 0.0)) {
        if (!w.shearReduces)
            sheet.value(kAxialShearBending, "EN 1993-1-1 6.2.10(2)", "rho", "V_Ed <= 0.5 V_pl,Rd: no reduction",
                        "as bending and axial force", "0", 0.0);
        traceCombined(sheet, w, kAxialShearBending, *w.axialShearBending, N, My, Mz, true);
        (void)u;
    }
}

void traceLimitations(Sheet& sheet, std::uint32_t limitations)
{
    if (limitations & Class4NotCovered)
        sheet.notVerified(kClassification, "EN 1993-1-5 4.3", "not verified", "class 4", describe(Class4NotCovered));
    if (limitations & CrossSectionIncomplete)
        sheet.notVerified(kAxialShearBending, "EN 1993-1-1 6.2.1", "not verified", "cross-section",
                          describe(CrossSectionIncomplete));
    if (limitations & NonFiniteUtilization)
        sheet.notVerified(kAxialShearBending, "EN 1993-1-1 6.2.1", "not verified", "cross-section",
                          describe(NonFiniteUtilization));
}

void writeTrace(const Work& w, const EnCrossSection& out, std::vector<TraceLine>& trace)
{
    Sheet sheet;
    if (w.model.kind != EnKind::None && w.fy > 0.0) {
        traceClassification(sheet, w);
        traceEffective(sheet, w, out);
        traceResistances(sheet, w, out);
    }
    traceLimitations(sheet, out.limitations);
    for (TraceLine& line : sheet.lines) trace.push_back(std::move(line));
}

bool finite(const Forces& f)
{
    return std::isfinite(f.getN()) && std::isfinite(f.getMy()) && std::isfinite(f.getMz()) &&
           std::isfinite(f.getMt()) && std::isfinite(f.getVy()) && std::isfinite(f.getVz());
}

void run(const CrossSectionRequest& request, double gammaM0, EnCrossSection& out, Work& w)
{
    out.~EnCrossSection();
    ::new (static_cast<void*>(&out)) EnCrossSection();  // its defaults, built in place (no temporary to copy)
    out.gammaM0 = gammaM0;
    w.request = &request;
    w.gammaM0 = gammaM0;
    if (!request.section || !request.steel || !(gammaM0 > 0.0) || !std::isfinite(gammaM0)) {
        out.limitations |= CrossSectionIncomplete;
        return;
    }
    if (!finite(request.forces)) {
        out.limitations |= NonFiniteUtilization;
        return;
    }
    SDBSection& section = *request.section;
    w.section = &section;
    buildEnSectionModel(section, w.model);
    const EnSectionModel& m = w.model;
    if (m.kind == EnKind::None) {
        out.limitations |= CrossSectionIncomplete;
        return;
    }
    // fy: the smallest over the plates (Table 3.1).
    double fy = std::numeric_limits<double>::max();
    for (int i = 0; i < m.thicknessCount; ++i) fy = std::min(fy, request.steel->getFyk(m.thicknesses[static_cast<std::size_t>(i)]));
    if (!(fy > 0.0) || !std::isfinite(fy)) {
        out.limitations |= CrossSectionIncomplete;
        return;
    }
    w.fy = out.fy = fy;
    out.epsilon = std::sqrt(235000.0 / fy);
    w.fyd = fy / gammaM0;

    const Forces& f = request.forces;
    classifyEn(m, section, *request.steel, fy, f, request.elastic, w.classification);
    w.cls = out.sectionClass = w.classification.sectionClass;

    const SDBProperties& p = section.getProperties();
    const double N = f.getN(), My = f.getMy(), Mz = f.getMz();
    out.NplRd = p.A * w.fyd;
    shearAndTorsion(w, f, out);
    if (m.kind == EnKind::L) w.angle = angleAxes(section);

    if (w.cls == 4) {
        if (m.kind == EnKind::O) {
            w.normalCovered = false;  // EN 1993-1-6
        } else if (!effectiveProperties(w, f, out)) {
            w.normalCovered = false;
        }
    }
    if (!w.normalCovered) {
        out.limitations |= Class4NotCovered;
        w.compression.reset();
        w.bendingY.reset();
        w.bendingZ.reset();
        out.Aeff = out.Weffy = out.Weffz = out.eNy = out.eNz = 0.0;
        // What does not need the effective section: tension, shear and torsion.
        if (N >= 0.0) out.utilization[sAxial] = ratio(N, out.NplRd);
        if (My == 0.0 && Mz == 0.0) {
            out.utilization[sBending] = 0.0;
            out.utilization[sShearBending] = 0.0;
        }
        return;
    }

    // Resistances of the class.
    if (w.cls <= 2) {
        out.NcRd = out.NplRd;
        out.McyRd = p.Wply * w.fyd;
        out.MczRd = p.Wplz * w.fyd;
    } else if (w.cls == 3) {
        out.NcRd = out.NplRd;
        out.McyRd = p.Wely * w.fyd;
        out.MczRd = p.Welz * w.fyd;
    } else {
        out.NcRd = w.compression ? out.Aeff * w.fyd : 0.0;
        out.McyRd = out.Weffy * w.fyd;
        out.MczRd = out.Weffz * w.fyd;
    }
    if (w.angle.valid && w.cls <= 3) {  // about the principal axes u, v, elastic
        out.McyRd = w.angle.Welu * w.fyd;
        out.MczRd = w.angle.Welv * w.fyd;
    }
    out.utilization[sAxial] = ratio(N, N > 0.0 || w.cls != 4 ? out.NplRd : out.NcRd);

    combine(w, 0.0, My, Mz, 0.0, 0.0, *w.bending);
    if (N != 0.0) {
        w.axialBending = w.axialShearBending = &w.store[1];
        combine(w, N, My, Mz, 0.0, 0.0, *w.axialBending);
    }
    if (w.shearReduces) {
        if (w.cls <= 2) w.reduced = reducedForShear(w, out.rhoY, out.rhoZ);
        w.shearBending = &w.store[2];
        combine(w, 0.0, My, Mz, out.rhoY, out.rhoZ, *w.shearBending);
        w.axialShearBending = w.shearBending;
        if (N != 0.0) {
            w.axialShearBending = &w.store[3];
            combine(w, N, My, Mz, out.rhoY, out.rhoZ, *w.axialShearBending);
        }
        // The resistances reduced for shear are never above those without it; (6.41) can say otherwise, its
        // exponent beta = 5 n growing with the n of the reduced N_V,Rd: the check with shear is at least the
        // one without.
        w.shearBending->u = std::max(w.shearBending->u, w.bending->u);
        w.axialShearBending->u = std::max(w.axialShearBending->u, w.axialBending->u);
    }
    out.MNyRd = w.axialBending->MNyRd;
    out.MNzRd = w.axialBending->MNzRd;
    out.utilization[sBending] = w.bending->u;
    out.utilization[sShearBending] = w.shearBending->u;
    out.utilization[sAxialBending] = w.axialBending->u;
    out.utilization[sAxialShearBending] = w.axialShearBending->u;
}

} // namespace

void evaluateEnCrossSection(const CrossSectionRequest& request, double gammaM0, EnCrossSection& out,
                            std::vector<TraceLine>* trace)
{
    Work w;
    run(request, gammaM0, out, w);
    if (trace) writeTrace(w, out, *trace);
}

} // namespace design
