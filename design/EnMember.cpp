// The member checks of EN 1993-1-1 6.3 and EN 1993-1-5 5 with every rule EN's at once.
//
// The arithmetic fills a struct of values (Work) without allocating; the trace, when asked for, is
// written from that struct afterwards, so that it shows the very numbers the checks used.
//
// Choices where EN 1993-1-1 leaves room (each also said in the trace where it applies):
//  - 6.3.1.2(4) and 6.3.2.2(4) are applied to the checks of one action: memberCompression takes chi = 1
//    where lambda <= 0.2 or NEd / Ncr <= 0.04, memberBending ignores lateral-torsional buckling (Mb,Rd =
//    Mc,y,Rd) where lambdaLT <= lambdaLT,0 or MEd / Mcr <= lambdaLT,0^2. Both ratios compare one action
//    with its own critical value, which says nothing of the two acting together, so (6.61) and (6.62)
//    take chi_y, chi_z and chiLT of the curves (6.49), (6.56), (6.57)/(6.58) (1 on their plateaus
//    lambda <= 0.2 and lambdaLT <= lambdaLT,0), as the published worked examples do.
//  - Angles and Z sections: flexural buckling about the principal axes (u with Lcr,y, the minor axis v
//    with the larger of Lcr,y and Lcr,z); their interaction with moments about the leg axes is outside
//    our scope, and so is their lateral-torsional buckling unless a critical moment is given.
//  - Torsional and torsional-flexural buckling (6.3.1.4) of the open kinds: I sections (doubly symmetric:
//    Ncr = Ncr,T) and Z sections (point-symmetric: the same), I sections with unequal flanges and tees
//    (symmetric about z), channels U, WU and C (symmetric about y), equal angles (symmetric about u: the
//    exact equation with flexure about u), unequal angles (no symmetry: the lowest root of the cubic with
//    flexure about u and v); the shear centre from the plates' dimensions (ShearCentre.h); lT as given
//    (--lcr-t, the length between restraints against twist), else L_LT when
//    given, else L_cr,z, with fork conditions at the ends; the curve of the z axis; its Nb,T,Rd joins
//    memberCompression. "Not verified" where no torsional length is given; no torsional mode where the
//    request says the member is restrained against twist, and none for closed and solid sections
//    (6.3.1.4(1): open sections).
//  - Mcr: the host's, the numerical one, EnCriticalMoment's; where none is found the closed form of
//    uniform moment with C1 = 1 (a load on the top flange at C2 = 0.5) for sections symmetric about y,
//    "not verified" for angles, Z sections, tees and I sections with unequal flanges.
//  - kc of Table 6.6 is taken from a row only where the diagram is the row's (1.0 otherwise: f = 1).
//  - Shear buckling: hw is the clear web depth between the flanges (EN 1993-1-5 5.1), a the panel
//    length between the end posts, Lcr,y; the flange contribution for I sections only.

#include "EnMember.h"

#include "AngleBending.h"

#include "BucklingCurves.h"
#include "CriticalMoment.h"
#include "CriticalMomentSolver.h"
#include "EnCriticalMoment.h"
#include "EquivalentMomentFactor.h"
#include "InteractionFactors.h"
#include "ShearCentre.h"
#include "TraceSheet.h"

#include <KaMaterial.h>
#include <KaMath.h>
#include <SDBSection.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

namespace design {

namespace {

using SteelDesign::Axis;
using SteelDesign::BucklingCurve;
using SteelDesign::MomentDiagram;

// A force or moment below it counts as zero (the dispatcher's threshold).
constexpr double forceTolerance = 1e-6;
// Plate thickness limits of Table 6.2 are tested with this tolerance (m), as Table 3.1's.
constexpr double thicknessTolerance = 1e-9;
constexpr double pi = KaMath::Pi;
constexpr double sqrt3 = 1.7320508075688772;
// 6.3.2.3(1), recommended values.
constexpr double lambdaLT0 = 0.4;
constexpr double betaLT = 0.75;
// 3.2.6(1) when the steel gives none.
constexpr double defaultE = 210.0e6;
constexpr double defaultG = 81.0e6;

enum Slot : std::size_t { sCompression = 0, sBending = 1, sCompressionBending = 2, sShearBuckling = 3 };

using Kind = SectionKind;
Kind kindOf(const SDBSection& section) { return sectionKind(section); }

bool finite(double x) { return std::isfinite(x); }

// ---- flexural buckling -------------------------------------------------------------------------------

struct CurveChoice {
    BucklingCurve y = BucklingCurve::c, z = BucklingCurve::c;
    const char* why = "";
};

bool hotFinished(Kind kind, const SDBSection& section)
{
    if (kind == Kind::RH) {
        const auto* rh = dynamic_cast<const SDBSectionRH*>(&section);
        return rh && rh->isHotRolled();
    }
    const auto* o = dynamic_cast<const SDBSectionO*>(&section);
    return o && o->isHotRolled();
}

// Table 6.2 by the kind, the way it was made, h/b, tf and the grade (the S460 column).
CurveChoice flexuralCurves(Kind kind, const SDBSection& section, bool s460)
{
    using BC = BucklingCurve;
    switch (kind) {
    case Kind::I: {
        const double h = section.getHeight(), b = section.getWidth(), tf = section.getGoverningThickness();
        if (section.isRolled()) {
            if (h > 1.2 * b * (1.0 + 1e-12)) {
                if (tf <= 0.040 + thicknessTolerance)
                    return s460 ? CurveChoice{BC::a0, BC::a0, "rolled I, h/b > 1.2, tf <= 40 mm, S460"}
                                : CurveChoice{BC::a, BC::b, "rolled I, h/b > 1.2, tf <= 40 mm"};
                if (tf <= 0.100 + thicknessTolerance)
                    return s460 ? CurveChoice{BC::a, BC::a, "rolled I, h/b > 1.2, 40 < tf <= 100 mm, S460"}
                                : CurveChoice{BC::b, BC::c, "rolled I, h/b > 1.2, 40 < tf <= 100 mm"};
                return {BC::d, BC::d, "rolled I, h/b > 1.2, tf > 100 mm: no row of Table 6.2, curve d taken"};
            }
            if (tf <= 0.100 + thicknessTolerance)
                return s460 ? CurveChoice{BC::a, BC::a, "rolled I, h/b <= 1.2, tf <= 100 mm, S460"}
                            : CurveChoice{BC::b, BC::c, "rolled I, h/b <= 1.2, tf <= 100 mm"};
            return s460 ? CurveChoice{BC::c, BC::c, "rolled I, h/b <= 1.2, tf > 100 mm, S460"}
                        : CurveChoice{BC::d, BC::d, "rolled I, h/b <= 1.2, tf > 100 mm"};
        }
        if (tf <= 0.040 + thicknessTolerance) return {BC::b, BC::c, "welded I, tf <= 40 mm"};
        return {BC::c, BC::d, "welded I, tf > 40 mm"};
    }
    case Kind::RH:
    case Kind::O:
        if (hotFinished(kind, section))
            return s460 ? CurveChoice{BC::a0, BC::a0, "hot finished hollow section, S460"}
                        : CurveChoice{BC::a, BC::a, "hot finished hollow section"};
        return {BC::c, BC::c, "cold formed hollow section"};
    case Kind::L: return {BC::b, BC::b, "L section"};
    case Kind::U:
    case Kind::WU: return {BC::c, BC::c, "U section"};
    case Kind::T: return {BC::c, BC::c, "T section"};
    case Kind::R:
    case Kind::Circle: return {BC::c, BC::c, "solid section"};
    case Kind::C: return {BC::c, BC::c, "cold formed lipped channel (as a U section)"};
    case Kind::Z:
    case Kind::WZ: return {BC::d, BC::d, "Z section: no row of Table 6.2, curve d taken"};
    case Kind::Other: break;
    }
    return {BC::d, BC::d, "a kind without a row of Table 6.2: curve d taken"};
}

struct AxisWork {
    bool computed = false;
    const char* name = "y";  // y, z, or the principal axes u, v of angles and Z sections
    double L = 0.0, I = 0.0, Ncr = 0.0, lambda = 0.0, alpha = 0.0, phi = 0.0, chiCurve = 0.0, chi = 1.0, NbRd = 0.0;
    BucklingCurve curve = BucklingCurve::none;
    bool byLambda = false, byRatio = false;  // 6.3.1.2(4)
    double u = 0.0;                          // NEd / Nb,Rd under compression
};

// ---- torsional and torsional-flexural buckling -------------------------------------------------------

enum class TorsionState : unsigned char {
    NotAsked,    // a closed or solid section (6.3.1.4(1): open sections only), or a kind without a rule
    Restrained,  // the member is restrained against twist (asked for): no torsional mode
    NotChecked,  // an open section whose check is outside our scope or lacks an input (a flag says so)
    Computed,
};

struct TorsionWork {
    TorsionState state = TorsionState::NotAsked;
    const char* why = "";      // NotChecked, Restrained: the reason
    ShearCentre sc;
    bool lengthGiven = false;  // lT given (l_T of the request)
    bool lengthFromLT = false; // lT = L_LT (else L_cr,z)
    double lT = 0.0, iy2 = 0.0, iz2 = 0.0, i02 = 0.0, GIt = 0.0, warping = 0.0, NcrT = 0.0;
    bool coupled = false;      // symmetric about one axis only, or none: Ncr,TF
    bool cubic = false;        // no axis of symmetry (unequal angle): Ncr,TF of the cubic
    double u0 = 0.0, v0 = 0.0, NcrU = 0.0, NcrV = 0.0;  // angles: the shear centre in u, v; the cubic's Ncr
    bool flexureFree = false;  // the axis of symmetry has no flexural length: Ncr,s infinite, Ncr,TF = Ncr,T
    double NcrS = 0.0, ratio = 0.0, beta = 1.0, NcrTF = 0.0, Ncr = 0.0;
    double lambda = 0.0, alpha = 0.0, phi = 0.0, chiCurve = 0.0, chi = 1.0, NbRd = 0.0, u = 0.0;
    BucklingCurve curve = BucklingCurve::none;
    bool byLambda = false, byRatio = false;  // 6.3.1.2(4)
};

// ---- lateral-torsional buckling ----------------------------------------------------------------------

enum class LtbState { NotAsked, NoLtb, NotCovered, NoModulus, Computed };
enum class McrSource { None, Host, Numerical, Analytical, Fallback, EqualAngle };

struct KcChoice {
    double kc = 1.0;
    const char* row = "";
};

// Table 6.6 from the y diagram. A straight line takes 1 / (1.33 - 0.33 psi); a transverse load (the
// middle value off the line: a uniform load under a parabola, a point load at mid-span otherwise) takes
// the row whose diagram it is. A diagram that is no row's takes 1.0 (f = 1), on the safe side: a
// propped span whose end moment is at least the row's (kc falls towards the 0.75 of a triangle as the
// end moment grows) takes the row's value; a span with both ends fixed only when both end moments are
// the row's (with larger ones kc rises towards 1.0 of a uniform moment).
KcChoice correctionFactor(double M1, double Mm, double M2, MomentDiagram diagram)
{
    const double scale = std::max({std::fabs(M1), std::fabs(Mm), std::fabs(M2)});
    if (!(scale > 0.0)) return {1.0, "no moment diagram: kc = 1.0"};
    const double eps = 1e-6 * scale;
    const double d = Mm - 0.5 * (M1 + M2);
    if (std::fabs(d) <= eps) {
        const double Mh = std::fabs(M1) >= std::fabs(M2) ? M1 : M2;
        const double other = std::fabs(M1) >= std::fabs(M2) ? M2 : M1;
        const double psi = Mh != 0.0 ? std::clamp(other / Mh, -1.0, 1.0) : 1.0;
        return {1.0 / (1.33 - 0.33 * psi), "straight line: 1 / (1.33 - 0.33 psi)"};
    }
    const bool uniformLoad = diagram == MomentDiagram::Parabolic;
    const bool zero1 = std::fabs(M1) <= eps, zero2 = std::fabs(M2) <= eps;
    // An end moment "hogs" when it acts against the span moment of the load.
    const double r1 = -M1 / d, r2 = -M2 / d;
    if (zero1 && zero2)
        return uniformLoad ? KcChoice{0.94, "uniform load on a simple span"}
                           : KcChoice{0.86, "point load at mid-span of a simple span"};
    const double propped = uniformLoad ? 1.0 : 0.75;   // end moment / span moment of the load, one end fixed
    const double fixedBoth = uniformLoad ? 2.0 / 3.0 : 0.5;  // the same, both ends fixed
    if ((zero1 && r2 >= propped * (1.0 - 1e-2)) || (zero2 && r1 >= propped * (1.0 - 1e-2)))
        return uniformLoad ? KcChoice{0.91, "uniform load, one end fixed"}
                           : KcChoice{0.82, "point load at mid-span, one end fixed"};
    if (std::fabs(r1 - fixedBoth) <= 1e-2 * fixedBoth && std::fabs(r2 - fixedBoth) <= 1e-2 * fixedBoth)
        return uniformLoad ? KcChoice{0.90, "uniform load, both ends fixed"}
                           : KcChoice{0.77, "point load at mid-span, both ends fixed"};
    return {1.0, "no row of Table 6.6 for this diagram: kc = 1.0"};
}

struct LtbWork {
    LtbState state = LtbState::NotAsked;
    const char* noLtbWhy = "";
    McrSource source = McrSource::None;
    const char* method = "";
    bool numericalMissing = false;  // asked for, not given: the analytical Mcr was used
    double Mcr = 0.0, C1 = 0.0, kwt = 0.0, zg = 0.0;
    double W = 0.0, MyRk = 0.0, McRd = 0.0, MEd = 0.0, MEdMax = 0.0;
    double lambda = 0.0, alpha = 0.0, phi = 0.0, chiLT = 0.0, f = 1.0, chiLTmod = 0.0, chiCurve = 0.0;
    double chiBending = 0.0, chiInteraction = 1.0, MbRd = 0.0, u = 0.0;
    KcChoice kc;
    BucklingCurve curve = BucklingCurve::none;
    const char* curveWhy = "";
    bool rolled = false, rolledNotI = false, plateau = false, lowMoment = false;
};

// Table 6.4 (6.3.2.2) and Table 6.5 (6.3.2.3).
std::pair<BucklingCurve, const char*> lateralCurve(Kind kind, const SDBSection& section, bool rolledMethod)
{
    using BC = BucklingCurve;
    if (kind != Kind::I) return {BC::d, "other cross-sections (Table 6.4)"};
    const bool upTo2 = section.getHeight() <= 2.0 * section.getWidth() * (1.0 + 1e-12);
    if (rolledMethod) {
        if (section.isRolled()) return upTo2 ? std::pair{BC::b, "rolled I, h/b <= 2 (Table 6.5)"}
                                             : std::pair{BC::c, "rolled I, h/b > 2 (Table 6.5)"};
        return upTo2 ? std::pair{BC::c, "welded I, h/b <= 2 (Table 6.5)"}
                     : std::pair{BC::d, "welded I, h/b > 2 (Table 6.5)"};
    }
    if (section.isRolled()) return upTo2 ? std::pair{BC::a, "rolled I, h/b <= 2 (Table 6.4)"}
                                         : std::pair{BC::b, "rolled I, h/b > 2 (Table 6.4)"};
    return upTo2 ? std::pair{BC::c, "welded I, h/b <= 2 (Table 6.4)"}
                 : std::pair{BC::d, "welded I, h/b > 2 (Table 6.4)"};
}

// ---- interaction -------------------------------------------------------------------------------------

struct InteractionWork {
    bool run = false;
    bool blocked = false;  // asked for but outside our scope (a flag says why)
    InteractionInput in;
    InteractionResult r;
    double NRk = 0.0, MyRk = 0.0, MzRk = 0.0, dMy = 0.0, dMz = 0.0, chiY = 1.0, chiZ = 1.0, Cmy = 1.0, Cmz = 1.0,
           CmLT = 1.0;
    bool torsionInNz = false;  // chiZ is chi_T (torsional buckling governs)
    bool shiftLT = false;      // chiLT of the moment N eN,y alone (class 4, no moment about y)
};

// ---- shear buckling ----------------------------------------------------------------------------------

struct WebWork {
    bool present = false;   // the kind has webs in this direction
    bool required = false;  // 5.1(2): hw / t > 72 eps / eta
    const char* dir = "z";
    int webs = 1;
    double hw = 0.0, t = 0.0, fyw = 0.0, eps = 0.0, eta = 1.2, ratio = 0.0, limit = 0.0;
    double lambdaW = 0.0, chiW = 0.0, Vbw = 0.0;
    // Flange contribution (5.4), I sections.
    bool flanges = false;
    double bf = 0.0, tf = 0.0, fyf = 0.0, MfRd = 0.0, nFactor = 1.0, a = 0.0, c = 0.0, MEd = 0.0, Vbf = 0.0;
    const char* noFlangeWhy = "";
    double Vmax = 0.0, Vb = 0.0, V = 0.0, u = 0.0;
};

// ---- all of it ---------------------------------------------------------------------------------------

struct Work {
    const SDBSection* section = nullptr;
    Kind kind = Kind::Other;
    bool stop = false;              // nothing computed (bad inputs or no cross-section values)
    const char* stopWhy = "";
    double E = defaultE, G = defaultG, fy = 0.0, gammaM1 = 1.0, gammaM0 = 1.0;
    int cls = 0;
    double N = 0.0, My = 0.0, Mz = 0.0, Vy = 0.0, Vz = 0.0;
    bool compression = false, tension = false, bendY = false, bendZ = false;
    double A = 0.0, Aused = 0.0, Wy = 0.0, Wz = 0.0;
    bool principal = false;         // angles and Z: flexural buckling about u and v
    CurveChoice curves;
    AxisWork axes[2];
    TorsionWork torsion;
    bool compressionChecked = false;
    LtbWork ltb;
    InteractionWork inter;
    WebWork webs[2];
};

// The closed form of Mcr under uniform moment with fork supports (C1 = 1): pi² E Iz / L² (sqrt(Iw / Iz +
// L² G It / (pi² E Iz) + (0.5 zg)²) + 0.5 zg), zg the height of a load on the top flange (z down,
// destabilising) where the diagram implies a transverse load there, 0 otherwise (a load below the
// shear centre is left out, on the safe side).
double fallbackMcr(const MemberRequest& request, double E, double G, double& zg)
{
    const SDBSection& s = *request.section;
    const double L = request.lengths.lateralTorsional;
    const double Iz = s.getIz(), It = s.getIt(), Iw = s.getIw();
    const double NcrZ = pi * pi * E * Iz / (L * L);
    const SteelDesign::MomentDistribution& m = request.moments;
    const double M1 = m.getMomentWert(Axis::y, 0), Mm = m.getMomentWert(Axis::y, 1), M2 = m.getMomentWert(Axis::y, 2);
    const double scale = std::max({std::fabs(M1), std::fabs(Mm), std::fabs(M2)});
    const bool load = std::fabs(Mm - 0.5 * (M1 + M2)) > 1e-6 * scale;
    zg = 0.0;
    if (load && m.getApplicationPoint() == SteelDesign::ApplicationPoint::Top) zg = mcrSection(s).zTop;
    const double k = Iw / Iz + L * L * G * It / (pi * pi * E * Iz);
    return NcrZ * (std::sqrt(k + 0.25 * zg * zg) + 0.5 * zg);
}

void flexural(const MemberRequest& request, const EnCrossSection& cross, Work& w)
{
    const SDBSection& s = *w.section;
    const double Iy = s.getIy(), Iz = s.getIz();
    const double Ly = request.lengths.y > 0.0 ? request.lengths.y : 0.0;
    const double Lz = request.lengths.z > 0.0 ? request.lengths.z : 0.0;
    const PrincipalAxes principal = principalAxes(s);
    w.principal = (w.kind == Kind::L || w.kind == Kind::Z || w.kind == Kind::WZ) && principal.rotated;
    AxisWork& y = w.axes[0];
    AxisWork& z = w.axes[1];
    if (w.principal) {
        y.name = "u";
        y.I = principal.Iu;
        y.L = Ly;
        z.name = "v";
        z.I = principal.Iv;
        z.L = std::max(Ly, Lz);
    } else {
        y.I = Iy;
        y.L = Ly;
        z.name = "z";
        z.I = Iz;
        z.L = Lz;
    }
    const bool s460 = request.steel ? request.steel->getFyk(0.0) >= 460000.0 - 1e-6 : cross.fy >= 460000.0 - 1e-6;
    w.curves = flexuralCurves(w.kind, s, s460);
    y.curve = w.curves.y;
    z.curve = w.curves.z;
    const double NEd = std::fabs(w.N);
    for (AxisWork& a : w.axes) {
        if (!(a.L > 0.0)) continue;
        a.computed = true;
        a.Ncr = pi * pi * w.E * a.I / (a.L * a.L);
        a.lambda = std::sqrt(w.Aused * w.fy / a.Ncr);
        a.alpha = imperfectionFactor(a.curve);
        a.phi = 0.5 * (1.0 + a.alpha * (a.lambda - 0.2) + a.lambda * a.lambda);
        a.chiCurve = flexuralReduction(a.lambda, a.alpha);
        // 6.3.1.2(4): the buckling effects may be ignored.
        a.byLambda = a.lambda <= 0.2;
        a.byRatio = !a.byLambda && w.compression && NEd <= 0.04 * a.Ncr;
        a.chi = a.byLambda || a.byRatio || !w.compression ? 1.0 : a.chiCurve;
        a.NbRd = a.chi * w.Aused * w.fy / w.gammaM1;
        if (w.compression) a.u = NEd / a.NbRd;
    }
}

// 6.3.1.4 with Ncr,T and Ncr,TF of the classical theory of thin-walled members (EN 1993-1-3 6.2.3): the
// torsional mode about the shear centre and, for a section symmetric about one axis, its coupling with
// flexure about that axis (the smaller root of (Ncr,s - N)(Ncr,T - N) = N² (y0 / i0)², evaluated as
// 2 Ncr,s Ncr,T / (Ncr,s + Ncr,T + sqrt((Ncr,s - Ncr,T)² + 4 (y0 / i0)² Ncr,s Ncr,T)), the same number as
// the textbook form without its cancellation as beta tends to 0). lT: L_LT when given, else L_cr,z, with
// fork conditions at the ends (twist held, warping free). Gross properties for the critical forces; A_eff
// of class 4 in lambda_T (6.53).
// An angle's shear centre in its principal axes: u0 along u, v0 along v. An equal angle (v0 nil against
// u0) has u as its axis of symmetry: the shear centre lies on it at y0 = |u0|, and the exact equation of
// one axis of symmetry applies with flexure about u.
void angleAxes(const Work& w, TorsionWork& t)
{
    const PrincipalAxes axes = principalAxes(*w.section);
    t.u0 = axes.u(t.sc.ysc, t.sc.zsc);
    t.v0 = axes.v(t.sc.ysc, t.sc.zsc);
    if (std::fabs(t.v0) <= 1e-9 * t.sc.y0) {
        t.sc.axis = 'u';
        t.sc.y0 = std::fabs(t.u0);
    }
}

// The lowest root of (N - Ncr,u)(N - Ncr,v)(N - Ncr,T) - N² (N - Ncr,v) (u0 / i0)² - N² (N - Ncr,u) (v0 /
// i0)² = 0 (a section without an axis of symmetry, classical theory of thin-walled members), found by
// bisection of h(N) = pu pv (Ncr,T - N) - N² (pv (u0 / i0)² / Ncr,u + pu (v0 / i0)² / Ncr,v) with pu = 1 -
// N / Ncr,u, pv = 1 - N / Ncr,v (the cubic divided by -Ncr,u Ncr,v; an axis without a flexural length
// has Ncr infinite, pu = 1 and no term over it). h(0) = Ncr,T > 0 and h <= 0 at the smallest of the three
// critical forces, so the root lies between.
double lowestTorsionalFlexural(const AxisWork& u, const AxisWork& v, TorsionWork& t)
{
    t.NcrU = u.computed ? u.Ncr : std::numeric_limits<double>::infinity();
    t.NcrV = v.computed ? v.Ncr : std::numeric_limits<double>::infinity();
    const double ru = t.u0 * t.u0 / t.i02, rv = t.v0 * t.v0 / t.i02;
    const double invU = u.computed ? 1.0 / t.NcrU : 0.0, invV = v.computed ? 1.0 / t.NcrV : 0.0;
    auto h = [&](double N) {
        const double pu = 1.0 - N * invU, pv = 1.0 - N * invV;
        return pu * pv * (t.NcrT - N) - N * N * (pv * ru * invU + pu * rv * invV);
    };
    double lo = 0.0, hi = std::min({t.NcrU, t.NcrV, t.NcrT});
    for (int i = 0; i < 200 && hi - lo > 1e-13 * hi; ++i) {
        const double mid = 0.5 * (lo + hi);
        (h(mid) > 0.0 ? lo : hi) = mid;
    }
    return 0.5 * (lo + hi);
}

void torsional(const MemberRequest& request, Work& w)
{
    TorsionWork& t = w.torsion;
    switch (w.kind) {
    case Kind::I:
    case Kind::T:
    case Kind::U:
    case Kind::WU:
    case Kind::C:
    case Kind::L:
    case Kind::Z:
    case Kind::WZ: break;
    default: return;
    }
    if (request.twistRestrained) {
        t.state = TorsionState::Restrained;
        t.why = "the member is restrained against twist along its length (asked for): no torsional mode";
        return;
    }
    const SDBSection& s = *w.section;
    const double LLT = request.lengths.lateralTorsional, Lz = request.lengths.z;
    t.lengthGiven = request.lengthT > 0.0;
    t.lengthFromLT = !t.lengthGiven && LLT > 0.0;
    t.lT = t.lengthGiven ? request.lengthT : t.lengthFromLT ? LLT : Lz > 0.0 ? Lz : 0.0;
    if (!(t.lT > 0.0) || !finite(t.lT)) {
        t.state = TorsionState::NotChecked;
        t.why = "no torsional buckling length (neither L_LT nor L_cr,z): give one, or say that the member is "
                "restrained against twist";
        return;
    }
    t.sc = shearCentreOf(w.kind, s);
    if (!t.sc.known) {
        t.state = TorsionState::NotChecked;
        t.why = "the section has no dimensions to place its shear centre";
        return;
    }
    const double A = s.getA(), It = s.getIt(), Iw = s.getIw();
    if (!(A > 0.0) || !(It > 0.0 || Iw > 0.0)) {
        t.state = TorsionState::NotChecked;
        t.why = "the section has neither a torsion constant nor a warping constant";
        return;
    }
    t.state = TorsionState::Computed;
    t.iy2 = s.getIy() / A;
    t.iz2 = s.getIz() / A;
    t.i02 = t.iy2 + t.iz2 + t.sc.y0 * t.sc.y0;
    t.GIt = w.G * It;
    t.warping = pi * pi * w.E * Iw / (t.lT * t.lT);
    t.NcrT = (t.GIt + t.warping) / t.i02;
    t.Ncr = t.NcrT;
    if (t.sc.axis == 'p') angleAxes(w, t);
    if (t.sc.axis == 'p') {
        // No axis of symmetry (unequal angle): the lowest root of the cubic.
        t.coupled = true;
        t.cubic = true;
        t.NcrTF = lowestTorsionalFlexural(w.axes[0], w.axes[1], t);
        t.Ncr = std::min(t.NcrT, t.NcrTF);
    } else if (t.sc.axis != 0) {
        t.coupled = true;
        const AxisWork& sym = w.axes[t.sc.axis == 'y' || t.sc.axis == 'u' ? 0 : 1];
        t.ratio = t.sc.y0 * t.sc.y0 / t.i02;
        t.beta = 1.0 - t.ratio;
        t.flexureFree = !sym.computed;
        if (t.flexureFree) {
            t.NcrTF = t.NcrT;
        } else {
            t.NcrS = sym.Ncr;
            const double d = t.NcrS - t.NcrT;
            t.NcrTF = 2.0 * t.NcrS * t.NcrT / (t.NcrS + t.NcrT + std::sqrt(d * d + 4.0 * t.ratio * t.NcrS * t.NcrT));
        }
        t.Ncr = std::min(t.NcrT, t.NcrTF);
    }
    // 6.3.1.4(3): the curve of the z axis (Table 6.2).
    t.curve = w.curves.z;
    t.alpha = imperfectionFactor(t.curve);
    t.lambda = std::sqrt(w.Aused * w.fy / t.Ncr);
    t.phi = 0.5 * (1.0 + t.alpha * (t.lambda - 0.2) + t.lambda * t.lambda);
    t.chiCurve = flexuralReduction(t.lambda, t.alpha);
    const double NEd = std::fabs(w.N);
    t.byLambda = t.lambda <= 0.2;
    t.byRatio = !t.byLambda && w.compression && NEd <= 0.04 * t.Ncr;
    t.chi = t.byLambda || t.byRatio || !w.compression ? 1.0 : t.chiCurve;
    t.NbRd = t.chi * w.Aused * w.fy / w.gammaM1;
    if (w.compression) t.u = NEd / t.NbRd;
}

void lateralTorsional(const MemberRequest& request, double numericalMcr, Work& w, EnMember& out)
{
    LtbWork& t = w.ltb;
    const double LLT = request.lengths.lateralTorsional;
    if (!w.bendY || !(LLT > 0.0)) return;
    const SDBSection& s = *w.section;
    const SteelDesign::MomentDistribution& m = request.moments;
    t.MEd = std::fabs(w.My);
    t.MEdMax = std::max({t.MEd, std::fabs(m.getMomentWert(Axis::y, 0)), std::fabs(m.getMomentWert(Axis::y, 1)),
                         std::fabs(m.getMomentWert(Axis::y, 2))});
    t.W = w.Wy;
    t.MyRk = t.W * w.fy;
    t.McRd = t.W * w.fy / w.gammaM0;
    if (w.kind == Kind::O || w.kind == Kind::Circle) {
        t.state = LtbState::NoLtb;
        t.noLtbWhy = "a circular section does not buckle laterally-torsionally";
    } else if (w.kind != Kind::L && w.kind != Kind::Z && w.kind != Kind::WZ && s.getIz() >= s.getIy()) {
        t.state = LtbState::NoLtb;
        t.noLtbWhy = "I_z >= I_y: bending about the minor axis, no lateral-torsional buckling";
    }
    if (t.state == LtbState::NoLtb) {
        if (!(t.W > 0.0)) {
            t.state = LtbState::NoModulus;
            return;
        }
        t.chiBending = 1.0;
        t.chiInteraction = 1.0;
        t.MbRd = t.McRd;
        t.u = t.MEd / t.MbRd;
        return;
    }

    // Mcr: the host's, the numerical one, the analytical one of EnCriticalMoment, else the closed form.
    const double hostMcr = std::fabs(m.getMcr());
    if (hostMcr >= forceTolerance) {
        t.source = McrSource::Host;
        t.Mcr = hostMcr;
    } else if (numericalMcr > 0.0) {
        t.source = McrSource::Numerical;
        t.Mcr = numericalMcr;
    } else if (w.kind == Kind::L) {
        // An equal angle bent about u, its axis of symmetry: no Wagner term, the closed form with C1 = 1 (the
        // uniform moment, the lowest of the end-moment diagrams), the load at the shear centre (a load above
        // it is not covered). An unequal angle has a Wagner term about u: not covered.
        const double M1 = m.getMomentWert(Axis::y, 0), Mm = m.getMomentWert(Axis::y, 1), M2 = m.getMomentWert(Axis::y, 2);
        const double scale = std::max({std::fabs(M1), std::fabs(Mm), std::fabs(M2)});
        const bool load = std::fabs(Mm - 0.5 * (M1 + M2)) > 1e-6 * scale;
        const bool above = load && m.getApplicationPoint() == SteelDesign::ApplicationPoint::Top;
        const double Mcr = above ? 0.0 : equalAngleMcr(s, LLT, w.E, w.G);
        if (!(Mcr > 0.0) || !finite(Mcr)) {
            t.state = LtbState::NotCovered;
            out.limitations |= LateralTorsionalNotCovered;
            return;
        }
        t.source = McrSource::EqualAngle;
        t.Mcr = Mcr;
        t.C1 = 1.0;
    } else {
        t.numericalMissing = request.mcrMethod == McrMethod::Numerical;
        const EnCriticalMoment c = enCriticalMoment(request, w.E, w.G);
        if (c.ok && c.Mcr > 0.0 && finite(c.Mcr)) {
            t.source = McrSource::Analytical;
            t.Mcr = c.Mcr;
            t.C1 = c.C1;
            t.kwt = c.kwt;
            t.zg = c.zg;
            t.method = c.method ? c.method : "";
        } else if (w.kind == Kind::L || w.kind == Kind::Z || w.kind == Kind::WZ || monoSymmetric(w.kind, s)) {
            // Not principal axes (L, Z), or the Wagner term of a section symmetric about z only (T, I with
            // unequal flanges), which the closed form leaves out: it may overestimate Mcr.
            t.state = LtbState::NotCovered;
            out.limitations |= LateralTorsionalNotCovered;
            return;
        } else {
            t.source = McrSource::Fallback;
            t.C1 = 1.0;
            t.Mcr = fallbackMcr(request, w.E, w.G, t.zg);
        }
    }
    if (!(t.W > 0.0)) {
        t.state = LtbState::NoModulus;
        return;
    }
    t.state = LtbState::Computed;
    t.lambda = std::sqrt(t.MyRk / t.Mcr);
    t.rolledNotI = usesRolledMethod(request.method, s) && w.kind != Kind::I;
    t.rolled = usesRolledMethod(request.method, s) && w.kind == Kind::I;
    const auto [curve, why] = lateralCurve(w.kind, s, t.rolled);
    t.curve = curve;
    t.curveWhy = why;
    t.alpha = imperfectionFactor(curve);
    if (t.rolled)
        t.kc = correctionFactor(m.getMomentWert(Axis::y, 0), m.getMomentWert(Axis::y, 1), m.getMomentWert(Axis::y, 2),
                                m.getMomentDiagram(Axis::y));
    const LateralTorsionalReduction red =
        lateralTorsionalReduction(t.lambda, t.alpha, t.rolled, lambdaLT0, betaLT, t.kc.kc);
    t.phi = red.phi;
    t.chiLT = red.chiLT;
    t.f = std::min(red.f, 1.0);
    t.chiLTmod = red.chiLTmod;
    t.chiCurve = t.rolled ? red.chiLTmod : red.chiLT;
    // 6.3.2.2(4).
    t.plateau = t.lambda <= lambdaLT0;
    t.lowMoment = !t.plateau && t.MEdMax <= lambdaLT0 * lambdaLT0 * t.Mcr;
    t.chiBending = t.plateau || t.lowMoment ? 1.0 : t.chiCurve;
    t.chiInteraction = t.plateau ? 1.0 : t.chiCurve;
    t.MbRd = t.plateau || t.lowMoment ? t.McRd : t.chiBending * t.MyRk / w.gammaM1;
    t.u = t.MEd / t.MbRd;
}

void interactionCheck(const MemberRequest& request, const EnCrossSection& cross, Work& w, EnMember& out)
{
    InteractionWork& x = w.inter;
    const bool class4 = w.cls == 4;
    const bool shift = class4 && w.compression && (std::fabs(cross.eNy) > 0.0 || std::fabs(cross.eNz) > 0.0);
    const bool anyLength = w.axes[0].computed || w.axes[1].computed || request.lengths.lateralTorsional > 0.0;
    if (!anyLength) return;
    const bool asked = (w.compression && (w.bendY || w.bendZ || shift)) || (!w.compression && !w.tension && w.bendZ);
    if (!asked) return;
    // Angles: the interaction in the principal axes is outside our scope. Moments about the flanges of a Z
    // are not about principal axes.
    if (w.kind == Kind::L && (w.bendY || w.bendZ)) {
        // Bending alone: lateral-torsional buckling about u (6.3.2), none about v; the cross-section check
        // covers the rest.
        if (!w.compression) return;
        x.blocked = true;
        out.limitations |= AngleInteractionNotCovered;
        return;
    }
    if ((w.kind == Kind::Z || w.kind == Kind::WZ) && (w.bendY || w.bendZ)) {
        x.blocked = true;
        out.limitations |= LateralTorsionalNotCovered;
        return;
    }
    if (w.bendY && w.ltb.state == LtbState::NotCovered) {
        x.blocked = true;
        return;
    }
    const double NEd = w.compression ? std::fabs(w.N) : 0.0;
    x.dMy = class4 && w.compression ? NEd * std::fabs(cross.eNy) : 0.0;
    x.dMz = class4 && w.compression ? NEd * std::fabs(cross.eNz) : 0.0;
    // N eN,y bends a member free to buckle laterally about y (a class 4 section without a moment about y):
    // chiLT of that uniform moment, in the sense that gives the lower chiLT (the effective centroid's side
    // decides which flange or tip is compressed; both are tried, on the safe side).
    double shiftChiLT = -1.0;
    if (x.dMy > 0.0 && !w.bendY && request.lengths.lateralTorsional > 0.0) {
        const SteelDesign::Forces& f = request.forces;
        for (const double sense : {1.0, -1.0}) {
            const double M = sense * x.dMy;
            MemberRequest shifted = request;
            shifted.forces = SteelDesign::Forces(f.getN(), M, f.getMz(), f.getMt(), f.getVy(), f.getVz());
            const SteelDesign::MomentDistribution& m = request.moments;
            shifted.moments = makeMoments({M, M, M}, SteelDesign::MomentDiagram::Polygonal,
                                          {m.getMomentWert(Axis::z, 0), m.getMomentWert(Axis::z, 1),
                                           m.getMomentWert(Axis::z, 2)},
                                          m.getMomentDiagram(Axis::z), std::nullopt,
                                          SteelDesign::ApplicationPoint::Center, 0.0);
            Work scratch = w;
            scratch.My = M;
            scratch.bendY = true;
            scratch.ltb = LtbWork{};
            EnMember ignored;
            lateralTorsional(shifted, 0.0, scratch, ignored);
            const LtbWork& t = scratch.ltb;
            if (t.state != LtbState::Computed && t.state != LtbState::NoLtb) {
                x.blocked = true;
                out.limitations |= LateralTorsionalNotCovered;
                return;
            }
            shiftChiLT = shiftChiLT < 0.0 ? t.chiInteraction : std::min(shiftChiLT, t.chiInteraction);
        }
        x.shiftLT = true;
    }
    const double My = std::fabs(w.My) + x.dMy, Mz = std::fabs(w.Mz) + x.dMz;
    if ((My > 0.0 && !(w.Wy > 0.0)) || (Mz > 0.0 && !(w.Wz > 0.0))) {
        x.blocked = true;
        out.limitations |= Class4NotCovered;
        return;
    }
    x.run = true;
    x.NRk = w.Aused * w.fy;
    x.MyRk = w.Wy * w.fy;
    x.MzRk = w.Wz * w.fy;
    x.chiY = w.axes[0].computed ? w.axes[0].chiCurve : 1.0;
    x.chiZ = w.axes[1].computed ? w.axes[1].chiCurve : 1.0;
    // (6.62) takes chi_z; where torsional or torsional-flexural buckling governs, chi = min(chi_z, chi_T) in
    // n_z, as the SCI and ECCS design guides do (lambda_bar_z of the interaction factors stays the flexural
    // one, as Annex B writes them).
    if (w.torsion.state == TorsionState::Computed && w.torsion.chiCurve < x.chiZ) {
        x.chiZ = w.torsion.chiCurve;
        x.torsionInNz = true;
    }
    const SteelDesign::MomentDistribution& m = request.moments;
    auto cm = [&](Axis axis) {
        const double c = equivalentMomentFactor(m.getMomentWert(axis, 0), m.getMomentWert(axis, 1),
                                                m.getMomentWert(axis, 2), m.getMomentDiagram(axis));
        return request.cmFloor ? std::max(c, 0.9) : c;
    };
    x.Cmy = cm(Axis::y);
    x.Cmz = cm(Axis::z);
    x.CmLT = std::max(x.Cmy, 0.4);
    const double chiLT = shiftChiLT >= 0.0 ? shiftChiLT
                         : w.ltb.state == LtbState::Computed || w.ltb.state == LtbState::NoLtb ? w.ltb.chiInteraction
                                                                                               : 1.0;
    InteractionInput& in = x.in;
    in.ny = NEd / (x.chiY * x.NRk / w.gammaM1);
    in.nz = NEd / (x.chiZ * x.NRk / w.gammaM1);
    in.lambdaY = w.axes[0].computed ? w.axes[0].lambda : 0.0;
    in.lambdaZ = w.axes[1].computed ? w.axes[1].lambda : 0.0;
    in.Cmy = x.Cmy;
    in.Cmz = x.Cmz;
    in.CmLT = x.CmLT;
    in.My = My;
    in.Mz = Mz;
    in.MyRd61 = in.MyRd62 = chiLT * x.MyRk / w.gammaM1;
    in.MzRd = x.MzRk / w.gammaM1;
    in.plastic = w.cls <= 2;
    in.iSection = w.kind == Kind::I;
    const bool freeToTwist = w.ltb.state == LtbState::Computed || shiftChiLT >= 0.0 || request.torsionallyDeformable;
    in.torsionallyDeformable = freeToTwist && !request.twistRestrained;
    in.kzyZeroWithoutMz = false;
    in.signedMoments = false;
    in.kzzWithCmy = false;
    x.r = interaction(in);
    out.chiLTinteraction = chiLT;
}

// One direction of webs: Vbw,Rd of 5.2 with chi_w of Table 5.1 (non-rigid end post) and lambda_w of
// 5.3(3) (transverse stiffeners at the supports only).
void webResistance(WebWork& web, double fyw, double gammaM1)
{
    web.fyw = fyw;
    web.eps = std::sqrt(235000.0 / fyw);
    web.eta = KaMath::isFuzzyGreater(fyw, 460000.0, 1e-6) ? 1.0 : 1.2;
    web.ratio = web.hw / web.t;
    web.limit = 72.0 * web.eps / web.eta;
    web.required = web.ratio > web.limit;
    if (!web.required) return;
    web.lambdaW = web.hw / (86.4 * web.t * web.eps);
    web.chiW = web.lambdaW < 0.83 / web.eta ? web.eta : 0.83 / web.lambdaW;
    web.Vbw = web.webs * web.chiW * fyw * web.hw * web.t / (sqrt3 * gammaM1);
    web.Vmax = web.webs * web.eta * fyw * web.hw * web.t / (sqrt3 * gammaM1);
}

double plateFy(const MemberRequest& request, const EnCrossSection& cross, double t)
{
    return request.steel ? request.steel->getFyk(t) : cross.fy;
}

void shearBuckling(const MemberRequest& request, const EnCrossSection& cross, Work& w)
{
    const SDBSection& s = *w.section;
    WebWork& z = w.webs[0];
    WebWork& y = w.webs[1];
    z.dir = "z";
    y.dir = "y";
    const SDBSectionI* I = nullptr;
    switch (w.kind) {
    case Kind::I:
        I = dynamic_cast<const SDBSectionI*>(&s);
        if (!I) return;
        z.hw = I->getH() - I->getT() - I->getT2();
        z.t = I->getS();
        break;
    case Kind::U:
        if (const auto* u = dynamic_cast<const SDBSectionU*>(&s)) {
            z.hw = u->getH() - 2.0 * u->getT();
            z.t = u->getS();
        }
        break;
    case Kind::Z:
        if (const auto* zs = dynamic_cast<const SDBSectionZ*>(&s)) {
            z.hw = zs->getH() - 2.0 * zs->getT();
            z.t = zs->getS();
        }
        break;
    case Kind::WU:
    case Kind::WZ:
        if (const auto* ws = dynamic_cast<const SDBSectionW*>(&s)) {
            z.hw = ws->getH() - 2.0 * ws->getT();
            z.t = ws->getS();
        }
        break;
    case Kind::RH:
        if (const auto* rh = dynamic_cast<const SDBSectionRH*>(&s)) {
            z.hw = rh->getH() - 2.0 * rh->getT();
            z.t = rh->getS();
            z.webs = 2;
            y.hw = rh->getB() - 2.0 * rh->getS();
            y.t = rh->getT();
            y.webs = 2;
            y.present = y.hw > 0.0 && y.t > 0.0;
        }
        break;
    default: return;
    }
    z.present = z.hw > 0.0 && z.t > 0.0;
    for (WebWork* web : {&z, &y}) {
        if (!web->present) continue;
        webResistance(*web, plateFy(request, cross, web->t), w.gammaM1);
        web->V = std::fabs(web == &z ? w.Vz : w.Vy);
    }
    // 5.4: the flange contribution of an I section, the flange of the smaller axial resistance with bf
    // <= 15 eps tf on each side of the web; Mf,Rd of the flanges (5.4(2) reduced for NEd).
    if (z.present && z.required) {
        if (!I) {
            z.noFlangeWhy = "flanges on one side of the web or of a box: not counted, on the safe side";
        } else {
            const double t1 = I->getT(), t2 = I->getT2(), b1 = I->getB(), b2 = I->getB2();
            const double fy1 = plateFy(request, cross, t1), fy2 = plateFy(request, cross, t2);
            const double e1 = std::sqrt(235000.0 / fy1), e2 = std::sqrt(235000.0 / fy2);
            const double w1 = std::min(b1, z.t + 30.0 * e1 * t1), w2 = std::min(b2, z.t + 30.0 * e2 * t2);
            const bool first = w1 * t1 * fy1 <= w2 * t2 * fy2;
            z.bf = first ? w1 : w2;
            z.tf = first ? t1 : t2;
            z.fyf = first ? fy1 : fy2;
            // Mf,Rd with the whole flanges (the effective ones of a class 4 section are not known here:
            // the widths limited as above, on the safe side).
            const double Af1 = (w.cls == 4 ? w1 : b1) * t1, Af2 = (w.cls == 4 ? w2 : b2) * t2;
            const double lever = I->getH() - 0.5 * (t1 + t2);
            const double Nf = (Af1 * fy1 + Af2 * fy2) / w.gammaM0;
            z.nFactor = std::fabs(w.N) > 0.0 ? 1.0 - std::fabs(w.N) / Nf : 1.0;
            z.MfRd = std::min(Af1 * fy1, Af2 * fy2) * lever / w.gammaM0 * std::max(z.nFactor, 0.0);
            z.a = request.lengths.y > 0.0 ? request.lengths.y : 0.0;
            z.MEd = std::fabs(w.My);
            z.flanges = true;
            if (!(z.a > 0.0)) {
                z.noFlangeWhy = "no panel length (L_cr,y): V_bf,Rd = 0";
            } else if (!(z.MEd < z.MfRd)) {
                z.noFlangeWhy = "M_Ed >= M_f,Rd: V_bf,Rd = 0";
                z.c = z.a * (0.25 + 1.6 * z.bf * z.tf * z.tf * z.fyf / (z.t * z.hw * z.hw * z.fyw));
            } else {
                z.c = z.a * (0.25 + 1.6 * z.bf * z.tf * z.tf * z.fyf / (z.t * z.hw * z.hw * z.fyw));
                const double ratio = z.MEd / z.MfRd;
                z.Vbf = z.bf * z.tf * z.tf * z.fyf / (z.c * w.gammaM1) * (1.0 - ratio * ratio);
            }
        }
    }
    for (WebWork* web : {&z, &y}) {
        if (!web->present || !web->required) continue;
        web->Vb = std::min(web->Vbw + web->Vbf, web->Vmax);
        web->u = web->V / web->Vb;
    }
}

void setSlot(EnMember& out, Slot slot, double u)
{
    if (finite(u) && u >= 0.0) out.utilization[slot] = u;
    else out.limitations |= NonFiniteUtilization;
}

void compute(const MemberRequest& request, const EnCrossSection& cross, double numericalMcr, Work& w, EnMember& out)
{
    w.section = request.section;
    if (!w.section) {
        w.stop = true;
        w.stopWhy = "no section";
        return;
    }
    const SDBSection& s = *w.section;
    w.kind = kindOf(s);
    const SteelDesign::Forces& f = request.forces;
    w.N = f.getN();
    w.My = f.getMy();
    w.Mz = f.getMz();
    w.Vy = f.getVy();
    w.Vz = f.getVz();
    w.gammaM1 = request.gammaM1;
    w.gammaM0 = cross.gammaM0;
    if (!finite(w.N) || !finite(w.My) || !finite(w.Mz) || !finite(w.Vy) || !finite(w.Vz) || !(w.gammaM1 > 0.0) ||
        !finite(w.gammaM1) || !(w.gammaM0 > 0.0) || !finite(w.gammaM0)) {
        w.stop = true;
        w.stopWhy = "a force or a partial factor is not a finite number (gamma_M0, gamma_M1 > 0)";
        out.limitations |= NonFiniteUtilization;
        return;
    }
    w.compression = w.N < -forceTolerance;
    w.tension = w.N > forceTolerance;
    w.bendY = std::fabs(w.My) >= forceTolerance;
    w.bendZ = std::fabs(w.Mz) >= forceTolerance;
    if (request.steel) {
        const double E = request.steel->getEModul(), G = request.steel->getGModul();
        if (E > 0.0 && finite(E)) w.E = E;
        if (G > 0.0 && finite(G)) w.G = G;
    }
    w.cls = cross.sectionClass;
    w.fy = cross.fy;
    if (w.cls < 1 || w.cls > 4 || !(w.fy > 0.0) || !finite(w.fy)) {
        w.stop = true;
        w.stopWhy = "the cross-section check gave no class or yield strength";
        out.limitations |= CrossSectionIncomplete;
        return;
    }
    w.A = s.getA();
    const bool class4 = w.cls == 4;
    w.Aused = w.A;
    if (class4 && w.compression) {
        w.Aused = cross.Aeff;
        if (!(w.Aused > 0.0)) {
            // 6.3.1.1(3) needs Aeff.
            out.limitations |= Class4NotCovered;
            w.Aused = 0.0;
        }
    }
    w.Wy = w.cls <= 2 ? s.getWply() : w.cls == 3 ? s.getWy() : cross.Weffy;
    w.Wz = w.cls <= 2 ? s.getWplz() : w.cls == 3 ? s.getWz() : cross.Weffz;
    if (w.kind == Kind::L && w.cls <= 3) {  // elastic, about the principal axes u and v
        const AngleAxes a = design::angleAxes(s);
        if (a.valid) {
            w.Wy = a.Welu;
            w.Wz = a.Welv;
        }
    }
    if (class4 && ((w.bendY && !(w.Wy > 0.0)) || (w.bendZ && !(w.Wz > 0.0)))) out.limitations |= Class4NotCovered;

    if (!(class4 && w.compression && !(w.Aused > 0.0))) {
        flexural(request, cross, w);
        torsional(request, w);
        const TorsionWork& tor = w.torsion;
        const bool torsionComputed = tor.state == TorsionState::Computed;
        if (w.compression && (w.axes[0].computed || w.axes[1].computed || torsionComputed)) {
            w.compressionChecked = true;
            double u = 0.0;
            for (const AxisWork& a : w.axes)
                if (a.computed) u = std::max(u, a.u);
            if (torsionComputed) u = std::max(u, tor.u);
            if (!finite(w.axes[0].u) || !finite(w.axes[1].u) || !finite(tor.u))
                u = std::numeric_limits<double>::infinity();
            setSlot(out, sCompression, u);
        }
        out.NcrY = w.axes[0].Ncr;
        out.NcrZ = w.axes[1].Ncr;
        out.lambdaY = w.axes[0].lambda;
        out.lambdaZ = w.axes[1].lambda;
        out.chiY = w.axes[0].computed ? w.axes[0].chi : 0.0;
        out.chiZ = w.axes[1].computed ? w.axes[1].chi : 0.0;
        out.NbyRd = w.axes[0].NbRd;
        out.NbzRd = w.axes[1].NbRd;
        if (torsionComputed) {
            out.NcrT = tor.NcrT;
            out.NcrTF = tor.NcrTF;
            out.lambdaT = tor.lambda;
            out.chiT = tor.chi;
            out.NbTRd = tor.NbRd;
            out.lT = tor.lT;
            out.y0 = tor.sc.y0;
            out.u0 = tor.u0;
            out.v0 = tor.v0;
        }
        // 6.3.1.4: an open section whose torsional(-flexural) buckling is not computed is not verified.
        if (w.compressionChecked && tor.state == TorsionState::NotChecked) out.limitations |= TorsionalFlexuralNotChecked;
    }

    lateralTorsional(request, numericalMcr, w, out);
    const LtbWork& t = w.ltb;
    if (t.state == LtbState::NoModulus) out.limitations |= Class4NotCovered;
    if (t.state == LtbState::Computed || t.state == LtbState::NoLtb) {
        setSlot(out, sBending, t.u);
        out.Mcr = t.Mcr;
        out.C1 = t.C1;
        out.lambdaLT = t.lambda;
        out.chiLT = t.state == LtbState::Computed ? t.chiLT : 1.0;
        out.chiLTmod = t.state == LtbState::Computed ? (t.rolled ? t.chiLTmod : t.chiLT) : 1.0;
        out.MbRd = t.MbRd;
        out.rolledMethod = t.rolled;
        out.ltbNegligible = t.state == LtbState::NoLtb || t.plateau || t.lowMoment;
    }
    out.chiLTinteraction = 1.0;

    if (!(class4 && w.compression && !(w.Aused > 0.0))) {
        interactionCheck(request, cross, w, out);
        const InteractionWork& x = w.inter;
        if (x.run) {
            out.Cmy = x.Cmy;
            out.Cmz = x.Cmz;
            out.CmLT = x.CmLT;
            out.kyy = x.r.kyy;
            out.kyz = x.r.kyz;
            out.kzy = x.r.kzy;
            out.kzz = x.r.kzz;
            out.eq661 = x.r.eq661;
            out.eq662 = x.r.eq662;
            out.tableB2 = x.in.torsionallyDeformable;
            out.ny = x.in.ny;
            out.nz = x.in.nz;
            setSlot(out, sCompressionBending, x.r.governing());
        }
    }

    shearBuckling(request, cross, w);
    double uShear = -1.0;
    for (const WebWork& web : w.webs) {
        if (!web.present || !web.required) continue;
        if (!(web.u <= uShear)) {
            uShear = web.u;
            out.VbRd = web.Vb;
            out.VbwRd = web.Vbw;
            out.VbfRd = web.Vbf;
        }
    }
    if (uShear >= 0.0 || std::isnan(uShear)) setSlot(out, sShearBuckling, uShear);
}

// ---- trace -------------------------------------------------------------------------------------------

using namespace tracetext;

std::string modulusName(int cls, const char* axis)
{
    std::string n = cls <= 2 ? "W_pl," : cls == 3 ? "W_el," : "W_eff,";
    return n + axis;
}

std::string curveText(BucklingCurve curve) { return std::string("curve ") + curveName(curve); }

// The shear centre's formula and numbers by kind (shearCentreOf).
std::pair<std::string, std::string> shearCentreText(const Work& w)
{
    const ShearCentre& c = w.torsion.sc;
    std::string formula, numbers;
    switch (w.kind) {
    case Kind::I:
        formula = "on the web, h_s I_2 / (I_1 + I_2) below the top flange's mid-plane (I_i = t_i b_i³ / 12, h_s between "
                  "the flanges' mid-planes); y_0 = |z_s - z_c|";
        numbers = "z_s = " + mm(c.offset) + ", z_c = " + mm(c.centroid) + " below mid-height";
        break;
    case Kind::T:
        formula = "at the flange's mid-plane (t_f / 2 below the top of the flange); y_0 = z_c - t_f / 2";
        numbers = "z_c = " + mm(c.centroid) + " below the top, t_f / 2 = " + mm(c.offset);
        break;
    case Kind::C:
        formula = "e = b' t (3 a² b' + 6 c' a² - 8 c'³) / (12 I) beyond the web's centre line (a = h - t, b' = b - t, c' "
                  "the lip, I of the centre line); y_0 = e + y_c - t / 2";
        numbers = "shear centre " + mm(-c.offset) + " behind the back of the web, centroid y_c = " + mm(c.centroid) +
                  " in front of it";
        break;
    case Kind::L:
        formula = "where the legs' mid-lines meet (t / 2 inside the heel); u_0, v_0 in the principal axes at alpha = " +
                  fixed(principalAxes(*w.section).alpha * 180.0 / pi, 2) + "° from y";
        numbers = "y_s = " + mm(c.ysc) + ", z_s = " + mm(c.zsc) + " from the centroid: u_0 = " + mm(w.torsion.u0) +
                  ", v_0 = " + mm(w.torsion.v0);
        break;
    default:
        formula = "e = 3 b'² t_f / (6 b' t_f + h' t_w) beyond the web's centre line (b' = b - t_w / 2, h' = h - t_f); "
                  "y_0 = e + y_c - t_w / 2";
        numbers = "shear centre " + mm(-c.offset) + " behind the back of the web, centroid y_c = " + mm(c.centroid) +
                  " in front of it";
        break;
    }
    if (c.plateCentroid) numbers += " (the plates' centroid: the section's row gives none)";
    return {formula, numbers};
}

void traceTorsional(Sheet& sheet, const Work& w)
{
    const TorsionWork& t = w.torsion;
    if (t.state == TorsionState::Restrained) {
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.4(1)", "N_cr,T", "torsional and torsional-flexural buckling", t.why,
                    "no torsional mode", 0.0);
        return;
    }
    if (t.state != TorsionState::Computed) return;  // NotChecked: the limitation's line says why
    const SDBSection& s = *w.section;
    const bool class4 = w.cls == 4 && w.compression;
    const std::string areaName = class4 ? "A_eff" : "A";
    const char* clause = "EN 1993-1-1 6.3.1.4(1)";
    if (t.cubic) {
        const auto [formula, numbers] = shearCentreText(w);
        sheet.value(kFlexural, clause, "y_0", "shear centre off both principal axes: " + formula, numbers,
                    mm(t.sc.y0), t.sc.y0);
    } else if (t.coupled) {
        const auto [formula, numbers] = shearCentreText(w);
        sheet.value(kFlexural, clause, "y_0",
                    std::string("shear centre on the axis of symmetry ") + t.sc.axis + ": " + formula, numbers,
                    mm(t.sc.y0), t.sc.y0);
    } else {
        sheet.value(kFlexural, clause, "y_0",
                    w.kind == Kind::Z || w.kind == Kind::WZ ? "point-symmetric: the shear centre is the centroid"
                                                            : "doubly symmetric: the shear centre is the centroid",
                    "y_0 = 0", mm(0.0), 0.0);
    }
    sheet.value(kFlexural, clause, "l_T",
                t.lengthGiven    ? "the length between restraints against twist (given), fork conditions at its ends"
                : t.lengthFromLT ? "L_LT, fork conditions at the ends (twist held, warping free)"
                               : "L_cr,z (no L_LT given), fork conditions at the ends (twist held, warping free)",
                metres(t.lT), metres(t.lT), t.lT);
    sheet.value(kFlexural, clause, "i_0²", "i_y² + i_z² + y_0² (i_y² = I_y / A, i_z² = I_z / A)",
                cm2(t.iy2) + " + " + cm2(t.iz2) + " + (" + mm(t.sc.y0) + ")²", cm2(t.i02), t.i02);
    sheet.value(kFlexural, clause, "N_cr,T", "(G I_t + pi² E I_w / l_T²) / i_0²",
                "(" + stress(w.G) + " · " + cm4(s.getIt()) + " + pi² · " + stress(w.E) + " · " + cm6(s.getIw()) +
                    " / (" + metres(t.lT) + ")²) / " + cm2(t.i02),
                kN(t.NcrT), t.NcrT);
    if (t.cubic) {
        const char* tfClause = "EN 1993-1-1 6.3.1.4(2), classical theory of thin-walled members";
        const std::string U = t.NcrU < std::numeric_limits<double>::infinity() ? kN(t.NcrU) : "inf";
        const std::string V = t.NcrV < std::numeric_limits<double>::infinity() ? kN(t.NcrV) : "inf";
        sheet.value(kFlexural, tfClause, "N_cr,TF",
                    "the lowest root N of (N - N_cr,u)(N - N_cr,v)(N - N_cr,T) - N² (N - N_cr,v)(u_0 / i_0)² - N² (N - "
                    "N_cr,u)(v_0 / i_0)² = 0 (no axis of symmetry)",
                    "N_cr,u = " + U + ", N_cr,v = " + V + ", N_cr,T = " + kN(t.NcrT) + ", (u_0 / i_0)² = " +
                        factor(t.u0 * t.u0 / t.i02) + ", (v_0 / i_0)² = " + factor(t.v0 * t.v0 / t.i02),
                    kN(t.NcrTF), t.NcrTF);
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.4(2)", "N_cr", "min(N_cr,T, N_cr,TF)",
                    "min(" + kN(t.NcrT) + ", " + kN(t.NcrTF) + ")", kN(t.Ncr), t.Ncr);
    } else if (t.coupled) {
        const std::string a(1, t.sc.axis);
        const char* tfClause = "EN 1993-1-1 6.3.1.4(2), EN 1993-1-3 6.2.3(7) (6.35)";
        sheet.value(kFlexural, tfClause, "beta", "1 - (y_0 / i_0)²",
                    "1 - (" + mm(t.sc.y0) + ")² / " + cm2(t.i02), factor(t.beta), t.beta);
        if (t.flexureFree) {
            sheet.value(kFlexural, tfClause, "N_cr,TF", "N_cr,T where no flexural buckling about " + a + " is asked",
                        "no L_cr," + a + ": N_cr," + a + " unbounded, the coupled mode is the torsional one",
                        kN(t.NcrTF), t.NcrTF);
        } else {
            const std::string S = kN(t.NcrS), T = kN(t.NcrT), R = factor(t.ratio);
            sheet.value(kFlexural, tfClause, "N_cr,TF",
                        "N_cr," + a + " / (2 beta) (1 + N_cr,T / N_cr," + a + " - sqrt((1 - N_cr,T / N_cr," + a +
                            ")² + 4 (y_0 / i_0)² N_cr,T / N_cr," + a + ")), N_cr," + a +
                            " of flexure about the axis of symmetry",
                        S + " / (2 · " + factor(t.beta) + ") · (1 + " + T + " / " + S + " - sqrt((1 - " + T + " / " + S +
                            ")² + 4 · " + R + " · " + T + " / " + S + "))",
                        kN(t.NcrTF), t.NcrTF);
        }
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.4(2)", "N_cr", "min(N_cr,T, N_cr,TF)",
                    "min(" + kN(t.NcrT) + ", " + kN(t.NcrTF) + ")", kN(t.Ncr), t.Ncr);
    }
    sheet.value(kFlexural, class4 ? "EN 1993-1-1 6.3.1.4(2) (6.53)" : "EN 1993-1-1 6.3.1.4(2) (6.52)", "lambda_bar_T",
                "sqrt(" + areaName + " fy / N_cr)" + (t.coupled ? "" : ", N_cr = N_cr,T"),
                "sqrt(" + cm2(w.Aused) + " · " + stress(w.fy) + " / " + kN(t.Ncr) + ")", factor(t.lambda), t.lambda);
    sheet.value(kFlexural, "EN 1993-1-1 6.3.1.4(3), Table 6.2, Table 6.1", "alpha_T",
                std::string("the curve of the z axis: ") + w.curves.why, curveText(t.curve), factor(t.alpha), t.alpha);
    sheet.value(kFlexural, "EN 1993-1-1 6.3.1.2(1) (6.49)", "Phi_T", "0.5 (1 + alpha (lambda_bar_T - 0.2) + lambda_bar_T²)",
                "0.5 · (1 + " + factor(t.alpha) + " · (" + factor(t.lambda) + " - 0.2) + " + factor(t.lambda) + "²)",
                factor(t.phi), t.phi);
    std::string chiNumbers = "1 / (" + factor(t.phi) + " + sqrt(" + factor(t.phi) + "² - " + factor(t.lambda) +
                             "²)) = " + factor(t.chiCurve);
    const char* chiClause = "EN 1993-1-1 6.3.1.2(1) (6.49)";
    const double NEd = std::fabs(w.N);
    if (t.byLambda) {
        chiNumbers = "lambda_bar_T = " + factor(t.lambda) + " <= 0.2: buckling effects ignored";
        chiClause = "EN 1993-1-1 6.3.1.2(4)";
    } else if (t.byRatio) {
        chiNumbers = "N_Ed / N_cr = " + kN(NEd) + " / " + kN(t.Ncr) + " = " + factor(NEd / t.Ncr) +
                     " <= 0.04: buckling effects ignored ((6.62) takes the curve's chi_T = " + factor(t.chiCurve) + ")";
        chiClause = "EN 1993-1-1 6.3.1.2(4)";
    } else if (!w.compression) {
        chiNumbers = "no compression: chi = 1.0";
    }
    sheet.value(kFlexural, chiClause, "chi_T", "1 / (Phi_T + sqrt(Phi_T² - lambda_bar_T²)) <= 1.0", chiNumbers,
                factor(t.chi), t.chi);
    sheet.value(kFlexural, class4 ? "EN 1993-1-1 6.3.1.1(3) (6.48)" : "EN 1993-1-1 6.3.1.1(3) (6.47)", "N_b,T,Rd",
                "chi_T " + areaName + " fy / gamma_M1",
                factor(t.chi) + " · " + cm2(w.Aused) + " · " + stress(w.fy) + " / " + gamma(w.gammaM1), kN(t.NbRd),
                t.NbRd);
    if (w.compression)
        sheet.utilization(kFlexural, "EN 1993-1-1 6.3.1.1(1) (6.46), 6.3.1.4", "N_Ed / N_b,T,Rd", "|N_Ed| / N_b,T,Rd",
                          magnitude(kN(w.N)) + " / " + kN(t.NbRd), t.u, false);
}

void traceFlexural(Sheet& sheet, const MemberRequest& request, const Work& w, const EnMember& out)
{
    const bool class4 = w.cls == 4 && w.compression;
    const std::string areaName = class4 ? "A_eff" : "A";
    const double NEd = std::fabs(w.N);
    if (w.principal)
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.3", "axes",
                    "buckling about the principal axes u (L_cr,y) and v (the larger of L_cr,y and L_cr,z)",
                    "I_u = " + cm4(w.axes[0].I) + ", I_v = " + cm4(w.axes[1].I), "principal axes", 0.0);
    for (const AxisWork& a : w.axes) {
        if (!a.computed) continue;
        const std::string n = a.name;
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.3(1)", "N_cr," + n, "pi² E I_" + n + " / L_cr," + n + "²",
                    "pi² · " + stress(w.E) + " · " + cm4(a.I) + " / (" + metres(a.L) + ")²", kN(a.Ncr), a.Ncr);
        sheet.value(kFlexural, class4 ? "EN 1993-1-1 6.3.1.2(1) (6.51)" : "EN 1993-1-1 6.3.1.2(1) (6.50)",
                    "lambda_bar_" + n, "sqrt(" + areaName + " fy / N_cr," + n + ")",
                    "sqrt(" + cm2(w.Aused) + " · " + stress(w.fy) + " / " + kN(a.Ncr) + ")", factor(a.lambda),
                    a.lambda);
        sheet.value(kFlexural, "EN 1993-1-1 Table 6.2, Table 6.1", "alpha_" + n, std::string(w.curves.why),
                    curveText(a.curve), factor(a.alpha), a.alpha);
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.2(1) (6.49)", "Phi_" + n,
                    "0.5 (1 + alpha (lambda_bar - 0.2) + lambda_bar²)",
                    "0.5 · (1 + " + factor(a.alpha) + " · (" + factor(a.lambda) + " - 0.2) + " + factor(a.lambda) + "²)",
                    factor(a.phi), a.phi);
        std::string chiNumbers = "1 / (" + factor(a.phi) + " + sqrt(" + factor(a.phi) + "² - " + factor(a.lambda) +
                                 "²)) = " + factor(a.chiCurve);
        const char* chiClause = "EN 1993-1-1 6.3.1.2(1) (6.49)";
        if (a.byLambda) {
            chiNumbers = "lambda_bar_" + n + " = " + factor(a.lambda) + " <= 0.2: buckling effects ignored";
            chiClause = "EN 1993-1-1 6.3.1.2(4)";
        } else if (a.byRatio) {
            chiNumbers = "N_Ed / N_cr," + n + " = " + kN(NEd) + " / " + kN(a.Ncr) + " = " + factor(NEd / a.Ncr) +
                         " <= 0.04: buckling effects ignored ((6.61), (6.62) take the curve's chi_" + n + " = " +
                         factor(a.chiCurve) + ")";
            chiClause = "EN 1993-1-1 6.3.1.2(4)";
        } else if (!w.compression) {
            chiNumbers = "no compression: chi = 1.0";
        }
        sheet.value(kFlexural, chiClause, "chi_" + n, "1 / (Phi + sqrt(Phi² - lambda_bar²)) <= 1.0", chiNumbers,
                    factor(a.chi), a.chi);
        sheet.value(kFlexural, class4 ? "EN 1993-1-1 6.3.1.1(3) (6.48)" : "EN 1993-1-1 6.3.1.1(3) (6.47)",
                    "N_b," + n + ",Rd", "chi_" + n + " " + areaName + " fy / gamma_M1",
                    factor(a.chi) + " · " + cm2(w.Aused) + " · " + stress(w.fy) + " / " + gamma(w.gammaM1),
                    kN(a.NbRd), a.NbRd);
        if (w.compression)
            sheet.utilization(kFlexural, "EN 1993-1-1 6.3.1.1(1) (6.46)", "N_Ed / N_b," + n + ",Rd",
                              "|N_Ed| / N_b," + n + ",Rd", magnitude(kN(w.N)) + " / " + kN(a.NbRd), a.u, false);
    }
    traceTorsional(sheet, w);
    if (const kat::Nullable<double> u = out.utilization[sCompression]) {
        const bool torsion = w.torsion.state == TorsionState::Computed;
        std::string formula = std::string("max(N_Ed / N_b,") + w.axes[0].name + ",Rd, N_Ed / N_b," + w.axes[1].name + ",Rd";
        std::string numbers = "max(" + factor(w.axes[0].u) + ", " + factor(w.axes[1].u);
        if (torsion) {
            formula += ", N_Ed / N_b,T,Rd";
            numbers += ", " + factor(w.torsion.u);
        }
        sheet.utilization(kFlexural, torsion ? "EN 1993-1-1 6.3.1, 6.3.1.4" : "EN 1993-1-1 6.3.1", "flexural buckling",
                          formula + ")", numbers + ")", u.value(), false);
    }
    (void)request;
}

std::string mcrFormula(const Work& w)
{
    const LtbWork& t = w.ltb;
    switch (t.source) {
    case McrSource::Host: return "given with the moment distribution";
    case McrSource::Numerical: return "numerical (finite elements): fork supports, the moment diagram, the load at its level";
    case McrSource::Analytical:
        return std::string("for the moment diagram and the load level, fork supports: ") + (*t.method ? t.method : "analytical");
    case McrSource::Fallback:
        return "no critical moment for this diagram: the closed form of uniform moment, C1 = 1.0, on the safe side: "
               "pi² E I_z / L_LT² (sqrt(I_w / I_z + L_LT² G I_t / (pi² E I_z) + (0.5 z_g)²) + 0.5 z_g)";
    case McrSource::EqualAngle:
        return "equal angle bent about u (its axis of symmetry: no Wagner term), C1 = 1.0, fork supports, the load at the "
               "shear centre: pi² E I_v / L_LT² sqrt(I_w / I_v + L_LT² G I_t / (pi² E I_v))";
    case McrSource::None: break;
    }
    return "";
}

void traceLateralTorsional(Sheet& sheet, const MemberRequest& request, const Work& w, const EnMember& out)
{
    const LtbWork& t = w.ltb;
    if (t.state == LtbState::NotAsked) return;
    const std::string Wname = w.kind == Kind::L && w.cls <= 3 ? std::string("W_el,u") : modulusName(w.cls, "y");
    if (t.state == LtbState::NotCovered) {
        const bool legs = w.kind == Kind::Z || w.kind == Kind::WZ;
        sheet.notVerified(kLateralTorsional, "EN 1993-1-1 6.3.2.2(2)", "M_cr", "elastic critical moment",
                          w.kind == Kind::L
                              ? "no critical moment for an unequal angle bent about u (its Wagner term), or a load above "
                                "the shear centre: give M_cr"
                          : legs ? "no critical moment for bending about the flange axes of a Z section (not principal "
                                   "axes): give M_cr"
                               : "no critical moment for this section symmetric about z only (the closed form leaves "
                                 "out the Wagner term): give M_cr");
        return;
    }
    if (t.state == LtbState::NoModulus) {
        sheet.notVerified(kLateralTorsional, "EN 1993-1-1 6.3.2.1(3)", "W_eff,y", "effective section modulus",
                          "class 4 without the effective section modulus W_eff,y");
        return;
    }
    const std::string MEd = magnitude(kNm(w.My));
    if (w.tension)
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2", "N_Ed", "tension with bending",
                    "N_Ed = " + kN(w.N) + " > 0: lateral-torsional buckling under the moment alone, the tension's help "
                    "ignored; N_Ed with M_Ed is the cross-section check's",
                    kN(w.N), w.N);
    if (t.state == LtbState::NoLtb) {
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.1", "chi_LT", t.noLtbWhy, "chi_LT = 1.0", factor(1.0), 1.0);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.2.5 (6.13)-(6.15)", "M_b,Rd = M_c,y,Rd", Wname + " fy / gamma_M0",
                    cm3(t.W) + " · " + stress(w.fy) + " / " + gamma(w.gammaM0), kNm(t.MbRd), t.MbRd);
        sheet.utilization(kLateralTorsional, "EN 1993-1-1 6.3.2.1 (6.54)", "M_y,Ed / M_b,Rd", "|M_y,Ed| / M_b,Rd",
                          MEd + " / " + kNm(t.MbRd), t.u, false);
        return;
    }
    std::string mcrNumbers = "L_LT = " + metres(request.lengths.lateralTorsional);
    if (t.source == McrSource::Analytical)
        mcrNumbers += ", C1 = " + factor(t.C1) + ", k_wt = " + factor(t.kwt) + ", z_g = " + mm(t.zg);
    if (t.source == McrSource::Fallback)
        mcrNumbers += ", I_z = " + cm4(w.section->getIz()) + ", I_t = " + cm4(w.section->getIt()) +
                      ", I_w = " + cm6(w.section->getIw()) + ", z_g = " + mm(t.zg) + ", E = " + stress(w.E) +
                      ", G = " + stress(w.G);
    if (t.source == McrSource::EqualAngle)
        mcrNumbers += ", I_v = " + cm4(principalAxes(*w.section).Iv) + ", I_t = " + cm4(w.section->getIt()) +
                      ", I_w = " + cm6(w.section->getIw()) + ", E = " + stress(w.E) + ", G = " + stress(w.G);
    if (t.numericalMissing) mcrNumbers += " (the numerical M_cr was asked for but not given)";
    sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.2(2)", "M_cr", mcrFormula(w), mcrNumbers, kNm(t.Mcr), t.Mcr);
    sheet.value(kLateralTorsional, w.cls == 4 ? "EN 1993-1-1 6.3.2.2(1), 6.3.2.1(3)" : "EN 1993-1-1 6.3.2.2(1)",
                "lambda_bar_LT", "sqrt(" + Wname + " fy / M_cr)",
                "sqrt(" + cm3(t.W) + " · " + stress(w.fy) + " / " + kNm(t.Mcr) + ")", factor(t.lambda), t.lambda);
    std::string method = t.rolled ? "rolled and equivalent welded sections (6.3.2.3)" : "general case (6.3.2.2)";
    if (t.rolledNotI) method += ": 6.3.2.3 has curves for I sections only";
    sheet.value(kLateralTorsional, t.rolled ? "EN 1993-1-1 Table 6.5, Table 6.3" : "EN 1993-1-1 Table 6.4, Table 6.3",
                "alpha_LT", method + "; " + t.curveWhy, curveText(t.curve), factor(t.alpha), t.alpha);
    const double l2 = t.lambda * t.lambda;
    if (t.rolled) {
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(1)", "Phi_LT",
                    "0.5 (1 + alpha_LT (lambda_bar_LT - lambda_bar_LT,0) + beta lambda_bar_LT²), lambda_bar_LT,0 = 0.4, "
                    "beta = 0.75",
                    "0.5 · (1 + " + factor(t.alpha) + " · (" + factor(t.lambda) + " - 0.4) + 0.75 · " +
                        factor(t.lambda) + "²)",
                    factor(t.phi), t.phi);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(1) (6.57)", "chi_LT",
                    "1 / (Phi_LT + sqrt(Phi_LT² - beta lambda_bar_LT²)) <= min(1.0, 1 / lambda_bar_LT²)",
                    "1 / (" + factor(t.phi) + " + sqrt(" + factor(t.phi) + "² - 0.75 · " + factor(t.lambda) + "²))",
                    factor(t.chiLT), t.chiLT);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(2), Table 6.6", "k_c", t.kc.row,
                    "M_y: " + kNm(request.moments.getMomentWert(Axis::y, 0)) + ", " +
                        kNm(request.moments.getMomentWert(Axis::y, 1)) + ", " +
                        kNm(request.moments.getMomentWert(Axis::y, 2)),
                    factor(t.kc.kc), t.kc.kc);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(2) (6.58)", "f",
                    "1 - 0.5 (1 - k_c) (1 - 2.0 (lambda_bar_LT - 0.8)²) <= 1.0",
                    "1 - 0.5 · (1 - " + factor(t.kc.kc) + ") · (1 - 2.0 · (" + factor(t.lambda) + " - 0.8)²)",
                    factor(t.f), t.f);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(2) (6.58)", "chi_LT,mod",
                    "chi_LT / f <= min(1.0, 1 / lambda_bar_LT²)",
                    factor(t.chiLT) + " / " + factor(t.f) + (l2 > 1.0 ? ", 1 / lambda_bar_LT² = " + factor(1.0 / l2) : ""),
                    factor(t.chiLTmod), t.chiLTmod);
    } else {
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.2(1)", "Phi_LT",
                    "0.5 (1 + alpha_LT (lambda_bar_LT - 0.2) + lambda_bar_LT²)",
                    "0.5 · (1 + " + factor(t.alpha) + " · (" + factor(t.lambda) + " - 0.2) + " + factor(t.lambda) + "²)",
                    factor(t.phi), t.phi);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.2(1) (6.56)", "chi_LT",
                    "1 / (Phi_LT + sqrt(Phi_LT² - lambda_bar_LT²)) <= 1.0",
                    "1 / (" + factor(t.phi) + " + sqrt(" + factor(t.phi) + "² - " + factor(t.lambda) + "²))",
                    factor(t.chiLT), t.chiLT);
    }
    if (t.plateau || t.lowMoment) {
        const std::string why =
            t.plateau ? "lambda_bar_LT = " + factor(t.lambda) + " <= lambda_bar_LT,0 = 0.4"
                      : "M_Ed / M_cr = " + kNm(t.MEdMax) + " / " + kNm(t.Mcr) + " = " + factor(t.MEdMax / t.Mcr) +
                            " <= lambda_bar_LT,0² = 0.16";
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.2(4)", "M_b,Rd = M_c,y,Rd",
                    "lateral-torsional buckling may be ignored: only the cross-section resistance " + Wname +
                        " fy / gamma_M0",
                    why + "; " + cm3(t.W) + " · " + stress(w.fy) + " / " + gamma(w.gammaM0), kNm(t.MbRd), t.MbRd);
    } else {
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.1(3) (6.55)", "M_b,Rd",
                    std::string(t.rolled ? "chi_LT,mod " : "chi_LT ") + Wname + " fy / gamma_M1",
                    factor(t.chiBending) + " · " + cm3(t.W) + " · " + stress(w.fy) + " / " + gamma(w.gammaM1),
                    kNm(t.MbRd), t.MbRd);
    }
    sheet.utilization(kLateralTorsional, "EN 1993-1-1 6.3.2.1(1) (6.54)", "M_y,Ed / M_b,Rd", "|M_y,Ed| / M_b,Rd",
                      MEd + " / " + kNm(t.MbRd), t.u, false);
    (void)out;
}

std::string momentsText(const SteelDesign::MomentDistribution& m, Axis axis)
{
    return kNm(m.getMomentWert(axis, 0)) + ", " + kNm(m.getMomentWert(axis, 1)) + ", " + kNm(m.getMomentWert(axis, 2)) +
           (m.getMomentDiagram(axis) == MomentDiagram::Parabolic ? " (parabolic)" : " (polygonal)");
}

void traceInteraction(Sheet& sheet, const MemberRequest& request, const Work& w)
{
    const InteractionWork& x = w.inter;
    if (x.blocked) {
        if (w.kind == Kind::Z || w.kind == Kind::WZ)
            sheet.notVerified(kInteraction, "EN 1993-1-1 6.3.3(4)", "(6.61), (6.62)", "compression and bending",
                              "moments about axes that are not principal (Z section): outside our scope");
        else if (w.ltb.state == LtbState::NotCovered)
            sheet.notVerified(kInteraction, "EN 1993-1-1 6.3.3(4)", "(6.61), (6.62)", "compression and bending",
                              "no critical moment: chi_LT unknown");
        else if (w.cls == 4 && !w.bendY && request.lengths.lateralTorsional > 0.0)
            sheet.notVerified(kInteraction, "EN 1993-1-1 6.3.3(4), Table 6.7", "(6.61), (6.62)",
                              "compression and bending",
                              "the moment N_Ed e_N,y of the effective section needs chi_LT of its own critical "
                              "moment, not computed without a moment about y");
        else
            sheet.notVerified(kInteraction, "EN 1993-1-1 6.3.3(4)", "(6.61), (6.62)", "compression and bending",
                              "class 4 without the effective section moduli");
        return;
    }
    if (!x.run) return;
    const InteractionInput& in = x.in;
    const bool elastic = !in.plastic;
    const char* floorText = request.cmFloor ? ", at least 0.9 (asked for)" : "";
    sheet.value(kInteraction, "EN 1993-1-1 Annex B, Table B.3", "C_my",
                std::string("equivalent uniform moment factor, psi with its sign") + floorText,
                "M_y: " + momentsText(request.moments, Axis::y), factor(x.Cmy), x.Cmy);
    sheet.value(kInteraction, "EN 1993-1-1 Annex B, Table B.3", "C_mz",
                std::string("equivalent uniform moment factor, psi with its sign") + floorText,
                "M_z: " + momentsText(request.moments, Axis::z), factor(x.Cmz), x.Cmz);
    if (w.cls == 4 && (x.dMy > 0.0 || x.dMz > 0.0)) {
        sheet.value(kInteraction, "EN 1993-1-1 6.3.3(4), Table 6.7", "Delta M_y,Ed", "|N_Ed e_N,y|",
                    magnitude(kN(w.N)) + " · " + mm(x.dMy / std::max(std::fabs(w.N), 1e-300)), kNm(x.dMy), x.dMy);
        sheet.value(kInteraction, "EN 1993-1-1 6.3.3(4), Table 6.7", "Delta M_z,Ed", "|N_Ed e_N,z|",
                    magnitude(kN(w.N)) + " · " + mm(x.dMz / std::max(std::fabs(w.N), 1e-300)), kNm(x.dMz), x.dMz);
    }
    const std::string NY = factor(in.ny), NZ = factor(in.nz), LY = factor(in.lambdaY), LZ = factor(in.lambdaZ);
    const std::string Y = factor(in.Cmy), Z = factor(in.Cmz);
    sheet.value(kInteraction, "EN 1993-1-1 6.3.3(4)", "n_y", "N_Ed / (chi_y N_Rk / gamma_M1)",
                magnitude(kN(w.N)) + " / (" + factor(x.chiY) + " · " + kN(x.NRk) + " / " + gamma(w.gammaM1) + ")", NY,
                in.ny);
    sheet.value(kInteraction, "EN 1993-1-1 6.3.3(4)", "n_z",
                x.torsionInNz ? "N_Ed / (min(chi_z, chi_T) N_Rk / gamma_M1) (torsional buckling governs: chi_T)"
                              : "N_Ed / (chi_z N_Rk / gamma_M1)",
                magnitude(kN(w.N)) + " / (" + factor(x.chiZ) + " · " + kN(x.NRk) + " / " + gamma(w.gammaM1) + ")", NZ,
                in.nz);
    const std::string table1 =
        elastic ? "EN 1993-1-1 Annex B, Table B.1 (classes 3, 4)" : "EN 1993-1-1 Annex B, Table B.1 (classes 1, 2)";
    const std::string table = in.torsionallyDeformable ? (elastic ? "EN 1993-1-1 Annex B, Table B.2 (classes 3, 4)"
                                                                  : "EN 1993-1-1 Annex B, Table B.2 (classes 1, 2)")
                                                       : table1;
    std::string why = in.torsionallyDeformable
                          ? (w.ltb.state == LtbState::Computed ? "free to twist: lateral-torsional buckling is checked"
                                                               : "torsionally deformable (asked for)")
                          : request.twistRestrained ? "restrained against twist (asked for)"
                                                    : "not susceptible to torsional deformations";
    sheet.value(kInteraction, table, "table", "interaction factors of Annex B (method 2)", why,
                in.torsionallyDeformable ? "Table B.2" : "Table B.1", in.torsionallyDeformable ? 2.0 : 1.0);
    if (elastic) {
        sheet.value(kInteraction, table, "k_yy", "min(C_my (1 + 0.6 lambda_bar_y n_y), C_my (1 + 0.6 n_y))",
                    "min(" + Y + " · (1 + 0.6 · " + LY + " · " + NY + "), " + Y + " · (1 + 0.6 · " + NY + "))",
                    factor(x.r.kyy), x.r.kyy);
        sheet.value(kInteraction, table, "k_zz", "min(C_mz (1 + 0.6 lambda_bar_z n_z), C_mz (1 + 0.6 n_z))",
                    "min(" + Z + " · (1 + 0.6 · " + LZ + " · " + NZ + "), " + Z + " · (1 + 0.6 · " + NZ + "))",
                    factor(x.r.kzz), x.r.kzz);
        sheet.value(kInteraction, table, "k_yz", "k_zz", factor(x.r.kzz), factor(x.r.kyz), x.r.kyz);
    } else {
        sheet.value(kInteraction, table, "k_yy", "min(C_my (1 + (lambda_bar_y - 0.2) n_y), C_my (1 + 0.8 n_y))",
                    "min(" + Y + " · (1 + (" + LY + " - 0.2) · " + NY + "), " + Y + " · (1 + 0.8 · " + NY + "))",
                    factor(x.r.kyy), x.r.kyy);
        if (in.iSection)
            sheet.value(kInteraction, table, "k_zz", "I section: min(C_mz (1 + (2 lambda_bar_z - 0.6) n_z), C_mz (1 + 1.4 n_z))",
                        "min(" + Z + " · (1 + (2 · " + LZ + " - 0.6) · " + NZ + "), " + Z + " · (1 + 1.4 · " + NZ + "))",
                        factor(x.r.kzz), x.r.kzz);
        else
            sheet.value(kInteraction, table, "k_zz",
                        "hollow and other sections: min(C_mz (1 + (lambda_bar_z - 0.2) n_z), C_mz (1 + 0.8 n_z))",
                        "min(" + Z + " · (1 + (" + LZ + " - 0.2) · " + NZ + "), " + Z + " · (1 + 0.8 · " + NZ + "))",
                        factor(x.r.kzz), x.r.kzz);
        sheet.value(kInteraction, table, "k_yz", "0.6 k_zz", "0.6 · " + factor(x.r.kzz), factor(x.r.kyz), x.r.kyz);
    }
    if (in.torsionallyDeformable) {
        const std::string LT = factor(in.CmLT);
        sheet.value(kInteraction, table, "C_mLT", "Table B.3 of the M_y diagram, >= 0.4", "C_mLT = " + LT, LT, in.CmLT);
        const char* formula =
            elastic ? "max(1 - 0.05 lambda_bar_z n_z / (C_mLT - 0.25), 1 - 0.05 n_z / (C_mLT - 0.25))"
            : in.lambdaZ < 0.4
                ? "min(0.6 + lambda_bar_z, 1 - 0.1 lambda_bar_z n_z / (C_mLT - 0.25)) (lambda_bar_z < 0.4)"
                : "max(1 - 0.1 lambda_bar_z n_z / (C_mLT - 0.25), 1 - 0.1 n_z / (C_mLT - 0.25))";
        sheet.value(kInteraction, table, "k_zy", formula,
                    "lambda_bar_z = " + LZ + ", n_z = " + NZ + ", C_mLT = " + LT, factor(x.r.kzy), x.r.kzy);
    } else {
        sheet.value(kInteraction, table, "k_zy", elastic ? "0.8 k_yy" : "0.6 k_yy",
                    std::string(elastic ? "0.8 · " : "0.6 · ") + factor(x.r.kyy), factor(x.r.kzy), x.r.kzy);
    }
    const double chiLT = in.MyRd61 * w.gammaM1 / std::max(x.MyRk, 1e-300);
    std::string chiWhy;
    if (x.shiftLT)
        chiWhy = "chi_LT of the uniform moment N e_N,y alone, the lower of its two senses = " + factor(chiLT);
    else if (!w.bendY || w.ltb.state == LtbState::NotAsked)
        chiWhy = "chi_LT = 1.0 (lateral-torsional buckling not checked)";
    else if (w.ltb.state == LtbState::NoLtb) chiWhy = "chi_LT = 1.0 (no lateral-torsional buckling)";
    else if (w.ltb.plateau) chiWhy = "chi_LT = 1.0 (lambda_bar_LT <= 0.4)";
    else
        chiWhy = std::string(w.ltb.rolled ? "chi_LT,mod of 6.3.2.3" : "chi_LT of 6.3.2.2") + " = " + factor(chiLT) +
                 (w.ltb.lowMoment ? " (M_Ed / M_cr <= 0.16 is not taken under compression: M_cr is that of bending alone)"
                                  : "");
    const std::string MyText = kNm(in.My), MzText = kNm(in.Mz);
    sheet.value(kInteraction, "EN 1993-1-1 6.3.3(4)", "M_y,Rd", "chi_LT " + modulusName(w.cls, "y") + " fy / gamma_M1",
                chiWhy + "; " + factor(chiLT) + " · " + kNm(x.MyRk) + " / " + gamma(w.gammaM1), kNm(in.MyRd61),
                in.MyRd61);
    sheet.value(kInteraction, "EN 1993-1-1 6.3.3(4)", "M_z,Rd", modulusName(w.cls, "z") + " fy / gamma_M1",
                kNm(x.MzRk) + " / " + gamma(w.gammaM1), kNm(in.MzRd), in.MzRd);
    const std::string moments =
        w.cls == 4 ? "(|M_y,Ed| + Delta M_y,Ed), (|M_z,Ed| + Delta M_z,Ed)" : "|M_y,Ed|, |M_z,Ed|";
    sheet.utilization(kInteraction, "EN 1993-1-1 6.3.3(4) (6.61)", "(6.61)",
                      "n_y + k_yy M_y,Ed / M_y,Rd + k_yz M_z,Ed / M_z,Rd with " + moments,
                      NY + " + " + factor(x.r.kyy) + " · " + MyText + " / " + kNm(in.MyRd61) + " + " +
                          factor(x.r.kyz) + " · " + MzText + " / " + kNm(in.MzRd),
                      x.r.eq661, false);
    sheet.utilization(kInteraction, "EN 1993-1-1 6.3.3(4) (6.62)", "(6.62)",
                      "n_z + k_zy M_y,Ed / M_y,Rd + k_zz M_z,Ed / M_z,Rd with " + moments,
                      NZ + " + " + factor(x.r.kzy) + " · " + MyText + " / " + kNm(in.MyRd62) + " + " +
                          factor(x.r.kzz) + " · " + MzText + " / " + kNm(in.MzRd),
                      x.r.eq662, false);
    sheet.utilization(kInteraction, "EN 1993-1-1 6.3.3", "compression and bending", "max((6.61), (6.62))",
                      "max(" + factor(x.r.eq661) + ", " + factor(x.r.eq662) + ")", x.r.governing(), false);
}

void traceShearBuckling(Sheet& sheet, const Work& w)
{
    for (const WebWork& web : w.webs) {
        if (!web.present) continue;
        const std::string d = web.dir;
        const std::string t = web.webs > 1 ? std::to_string(web.webs) + " webs of " + mm(web.t) : mm(web.t);
        sheet.value(kShearBuckling, "EN 1993-1-5 5.1(2)", "h_w / t (V_" + d + ")",
                    web.required ? "h_w / t > 72 epsilon / eta: shear buckling is checked"
                                 : "h_w / t <= 72 epsilon / eta: no shear buckling check",
                    mm(web.hw) + " / " + mm(web.t) + " = " + fixed(web.ratio, 1) + (web.required ? " > " : " <= ") +
                        "72 · " + factor(web.eps) + " / " + fixed(web.eta, 1) + " = " + fixed(web.limit, 1),
                    web.required ? "required" : "not required", web.ratio);
        if (!web.required) continue;
        const std::string g1 = gamma(w.gammaM1);
        sheet.value(kShearBuckling, "EN 1993-1-5 5.3(3) (5.6)", "lambda_bar_w",
                    "h_w / (86.4 t epsilon) (transverse stiffeners at the supports only)",
                    mm(web.hw) + " / (86.4 · " + mm(web.t) + " · " + factor(web.eps) + ")", factor(web.lambdaW),
                    web.lambdaW);
        sheet.value(kShearBuckling, "EN 1993-1-5 5.3(1), Table 5.1", "chi_w",
                    "eta for lambda_bar_w < 0.83 / eta, else 0.83 / lambda_bar_w (non-rigid end post)",
                    "eta = " + fixed(web.eta, 1) + ", lambda_bar_w = " + factor(web.lambdaW), factor(web.chiW),
                    web.chiW);
        sheet.value(kShearBuckling, "EN 1993-1-5 5.2(1) (5.2)", "V_bw,Rd", "chi_w fyw h_w t / (sqrt(3) gamma_M1)",
                    factor(web.chiW) + " · " + stress(web.fyw) + " · " + mm(web.hw) + " · " + t + " / (sqrt(3) · " +
                        g1 + ")",
                    kN(web.Vbw), web.Vbw);
        if (web.flanges) {
            sheet.value(kShearBuckling, "EN 1993-1-5 5.4(2)", "M_f,Rd",
                        "plastic moment of the flanges alone (the smaller flange force times the lever arm) / gamma_M0"
                        ", times (1 - N_Ed / N_f,Rd) under N_Ed",
                        "factor for N_Ed: " + factor(web.nFactor), kNm(web.MfRd), web.MfRd);
            std::string numbers = "b_f = " + mm(web.bf) + " (<= 15 epsilon t_f each side of the web), t_f = " +
                                  mm(web.tf) + ", fyf = " + stress(web.fyf) + ", a = " + metres(web.a) + " (L_cr,y)" +
                                  ", M_Ed = " + kNm(web.MEd);
            if (web.c > 0.0) numbers += ", c = " + mm(web.c);
            if (*web.noFlangeWhy) numbers += ": " + std::string(web.noFlangeWhy);
            sheet.value(kShearBuckling, "EN 1993-1-5 5.4(1) (5.8)", "V_bf,Rd",
                        "b_f t_f² fyf (1 - (M_Ed / M_f,Rd)²) / (c gamma_M1), c = a (0.25 + 1.6 b_f t_f² fyf / (t h_w² "
                        "fyw))",
                        numbers, kN(web.Vbf), web.Vbf);
        } else {
            sheet.value(kShearBuckling, "EN 1993-1-5 5.4(1)", "V_bf,Rd", "flange contribution", web.noFlangeWhy,
                        kN(0.0), 0.0);
        }
        sheet.value(kShearBuckling, "EN 1993-1-5 5.2(1) (5.1)", "V_b,Rd",
                    "V_bw,Rd + V_bf,Rd <= eta fyw h_w t / (sqrt(3) gamma_M1)",
                    kN(web.Vbw) + " + " + kN(web.Vbf) + " <= " + kN(web.Vmax), kN(web.Vb), web.Vb);
        sheet.utilization(kShearBuckling, "EN 1993-1-5 5.5 (5.10)", "eta_3 (V_" + d + ")", "|V_" + d + ",Ed| / V_b,Rd",
                          magnitude(kN(web.V)) + " / " + kN(web.Vb), web.u, false);
    }
}

void traceLimitations(Sheet& sheet, const Work& w, std::uint32_t limitations)
{
    if (limitations & Class4NotCovered)
        sheet.notVerified(kFlexural, "EN 1993-1-1 6.3.1.1(3), 6.3.2.1(3)", "not verified", "class 4",
                          describe(Class4NotCovered));
    if (limitations & LateralTorsionalNotCovered)
        sheet.notVerified(kLateralTorsional, "EN 1993-1-1 6.3.2.2(2)", "not verified", "lateral-torsional buckling",
                          describe(LateralTorsionalNotCovered));
    if (limitations & AngleInteractionNotCovered)
        sheet.notVerified(kInteraction, "EN 1993-1-1 6.3.3", "not verified", "compression with bending",
                          describe(AngleInteractionNotCovered));
    if (limitations & TorsionalFlexuralNotChecked)
        sheet.notVerified(kFlexural, "EN 1993-1-1 6.3.1.4", "not verified", "torsional-flexural buckling",
                          *w.torsion.why ? w.torsion.why : describe(TorsionalFlexuralNotChecked));
    if (limitations & CrossSectionIncomplete)
        sheet.notVerified(kFlexural, "EN 1993-1-1 6.3", "not verified", "member checks", w.stopWhy);
    if (limitations & NonFiniteUtilization)
        sheet.notVerified(kInteraction, "EN 1993-1-1 6.3", "not verified", "member checks",
                          *w.stopWhy ? w.stopWhy : describe(NonFiniteUtilization));
}

void writeTrace(const MemberRequest& request, const Work& w, const EnMember& out, std::vector<TraceLine>& trace)
{
    Sheet sheet;
    if (!w.stop) {
        traceFlexural(sheet, request, w, out);
        traceLateralTorsional(sheet, request, w, out);
        traceInteraction(sheet, request, w);
        traceShearBuckling(sheet, w);
    }
    traceLimitations(sheet, w, out.limitations);
    for (TraceLine& line : sheet.lines) trace.push_back(std::move(line));
}

} // namespace

void evaluateEnMember(const MemberRequest& request, const EnCrossSection& cross, double numericalMcr, EnMember& out,
                      std::vector<TraceLine>* trace)
{
    out = EnMember{};
    out.sectionClass = cross.sectionClass;
    Work w;
    compute(request, cross, numericalMcr, w, out);
    if (trace) writeTrace(request, w, out, *trace);
}

} // namespace design
