#include "Departures.h"

#include "CriticalMoment.h"
#include "EffectiveSection.h"
#include "EquivalentMomentFactor.h"
#include "InteractionFactors.h"

#include <KaMath.h>
#include <KaStandard.h>
#include <SDBSection.h>
#include <SteelDesign/BucklingResistance.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace design {

using namespace SteelDesign;

namespace {

constexpr double tol = 1e-6;
constexpr double sqrt3 = 1.7320508075688772;

using DR = DepartureRule;
using VR = VerificationResults;
using BU = BucklingResults::UtilizationType;

// Columns of the summary utilizations (DesignSummary order).
enum Slot : int {
    sAxial = 0, sTorsion, sBending, sShear, sAxialBending, sShearBending, sAxialShearBending,
    sMemberCompression, sMemberBending, sMemberCompressionBending, sMemberShearBuckling, sNone = -1
};

const std::array<DepartureInfo, departureRuleCount> table = {{
    {DR::NoStressClass4, "no-stress-class-4", "EN 1993-1-1 5.5.2, 6.2.6",
     "a section without normal stress (shear or torsion alone) is class 4, and class 4 has no shear resistance",
     "no part is in compression, so the section is class 1; Vpl,Rd = Av fy / (sqrt(3) gammaM0) (6.18)"},
    {DR::SignedShearZ, "signed-shear-z", "EN 1993-1-1 6.2.6(1)",
     "a negative Vz gives a negative shear utilization, which is always fulfilled",
     "|VEd| / Vc,Rd (6.17)"},
    {DR::AxialBendingBothLimits, "axial-bending-both-limits", "EN 1993-1-1 6.2.9.1(4)",
     "I section in class 1 or 2: Mpl,y is reduced for N only when n > 0.25 and N > 0.5 hw tw fy / gammaM0 both hold",
     "the allowance is made when either limit is exceeded: MN,y,Rd = Mpl,y,Rd (1 - n) / (1 - 0.5 a) <= Mpl,y,Rd "
     "(6.36)"},
    {DR::WebClassElasticAlpha, "web-class-elastic-alpha", "EN 1993-1-1 Table 5.2",
     "the compressed fraction alpha of a web under N and M is taken from the elastic stress distribution",
     "classes 1 and 2 with alpha of the plastic distribution: alpha = (1 + N / (c tw fy)) / 2; class 3 with psi of "
     "the elastic one"},
    {DR::Class3WebClass2, "class-3-web-class-2", "EN 1993-1-1 5.5.2(11), 6.2.2.4",
     "a class 3 web with class 1 or 2 flanges makes the section class 2 with its whole web",
     "class 3 (elastic resistances); class 2 is allowed only with the effective web of 6.2.2.4"},
    {DR::ShearBendingThreshold, "shear-bending-threshold", "EN 1993-1-1 6.2.8(2)",
     "the bending resistance is reduced for shear from VEd >= 0.55 Vpl,Rd",
     "from VEd > 0.5 Vpl,Rd: rho = (2 VEd / Vpl,Rd - 1)^2, My,V,Rd of (6.30) for I sections"},
    {DR::TorsionResistance, "torsion-resistance", "EN 1993-1-1 6.2.7",
     "T,Rd = It / zmax fy / gammaM0 sqrt(3): the distance to the extreme fibre and sqrt(3) as a factor",
     "St. Venant torsion: T,Rd = It / tmax fy / (sqrt(3) gammaM0) for open sections, 2 Am t fy / (sqrt(3) "
     "gammaM0) for hollow sections (Bredt)"},
    {DR::HollowSectionUnderN, "hollow-section-under-n", "EN 1993-1-1 6.2.9.1(5), (6), 6.2.9.2",
     "a rectangular or circular hollow section under a normal force gets error code 6 and no cross-section verdict",
     "n = NEd / Npl,Rd; RHS: MN,Rd = Mpl,Rd (1 - n) / (1 - 0.5 aw) <= Mpl,Rd (6.39), (6.40), CHS: Mpl,Rd (1 - "
     "n^1.7); biaxial (6.41) with alpha = beta = 1.66 / (1 - 1.13 n^2) <= 6 (RHS) or 2 (CHS); class 3: (6.42)"},
    {DR::Class4GrossSection, "class-4-gross-section", "EN 1993-1-1 6.2.2.5, 6.3.1.1(3), 6.3.2.1(3)",
     "class 4 sections are checked with gross properties (shear with none)",
     "effective properties Aeff, Weff, eN of EN 1993-1-5 4.3 in (6.44), Nb,Rd and Mb,Rd"},
    {DR::EquivalentMomentFactor, "equivalent-moment-factor", "EN 1993-1-1 Annex B, Table B.3",
     "Cm from magnitudes: a constant moment on a polygonal diagram gives 0.8, end moments larger than the span "
     "moment 1.0",
     "Table B.3 with signed psi, alpha_s = Ms / Mh and alpha_h = Mh / Ms"},
    {DR::SignedInteractionMoments, "signed-interaction-moments", "EN 1993-1-1 6.3.3(4)",
     "(6.61) and (6.62) add My / My,Rd and Mz / Mz,Rd with their signs: a negative moment lowers the sum",
     "the magnitudes of My,Ed and Mz,Ed"},
    {DR::KzzWithCmy, "kzz-with-cmy", "EN 1993-1-1 Annex B, Table B.1",
     "kzz of I sections in classes 1 and 2 multiplies by Cmy", "kzz = Cmz (1 + (2 lambda_z - 0.6) nz) <= Cmz (1 + "
                                                                "1.4 nz)"},
    {DR::InteractionGeneralMethod, "interaction-general-method", "EN 1993-1-1 6.3.3(4), 6.3.2.2",
     "with lateral-torsional buckling by the general case no chiLT,mod is stored and (6.61) divides by zero",
     "(6.61) with chiLT of 6.3.2.2 (Mb,Rd gammaM1 / My,Rk)"},
    {DR::StraightLineCriticalMoment, "straight-line-critical-moment", "EN 1993-1-1 6.3.2.2(2)",
     "Mcr of a straight-line moment diagram takes zeta = 1.0 when the mean is positive and 1.77 - 0.77 |psi| "
     "otherwise: the sign of psi is lost",
     "Mcr = C1 Mcr(uniform moment) with C1 = 1.88 - 1.40 psi + 0.52 psi^2 <= 2.70, psi signed"},
    {DR::ChiLTmodUnlimited, "chiltmod-unlimited", "EN 1993-1-1 6.3.2.3(2), (6.58)",
     "Mb,Rd takes chiLT / f without the limits 1.0 and 1 / lambdaLT^2", "chiLT,mod <= 1.0 and <= 1 / lambdaLT^2"},
    {DR::ShearBucklingFlanges, "shear-buckling-flanges", "EN 1993-1-5 5.4(1)",
     "Vbf,Rd takes the whole flange width and turns negative when MEd > Mf,Rd",
     "bf <= 15 eps tf on each side of the web; Vbf,Rd = 0 when MEd >= Mf,Rd"},
}};

double alphaOfCurve(BucklingCurve curve)
{
    switch (curve) {
    case BucklingCurve::a0: return 0.13;
    case BucklingCurve::a: return 0.21;
    case BucklingCurve::b: return 0.34;
    case BucklingCurve::c: return 0.49;
    case BucklingCurve::d: return 0.76;
    default: return 1.0;
    }
}

// The effective properties a class 4 check needs under these forces: Aeff and eN under compression,
// Weff about each axis bent (the gross elastic modulus where an axis carries no moment), and the
// additional moments N eN.
struct Effective {
    bool valid = false;
    double Aeff = 0.0, Weffy = 0.0, Weffz = 0.0, dMy = 0.0, dMz = 0.0;
};

Effective effective(const SDBSection& section, double fy, const Forces& f)
{
    Effective e;
    // The departures keep the effective sections of the kinds they were first written for (I, channels,
    // RHS and boxes): the values shown under the library's rules stay as they are. The EN evaluation takes
    // tees too.
    if (const SDBSectionType* type = section.getType(); type && type->getKey() == SDBKey::T) return e;
    e.Aeff = section.getA();
    e.Weffy = section.getWy();
    e.Weffz = section.getWz();
    if (f.getN() < 0.0) {
        const auto c = effectiveUnderCompression(section, fy);
        if (!c) return e;
        e.Aeff = c->Aeff;
        e.dMy = std::fabs(f.getN() * c->eNy);
        e.dMz = std::fabs(f.getN() * c->eNz);
    }
    if (std::fabs(f.getMy()) >= tol) {
        const auto b = effectiveUnderBending(section, fy, Axis::y, f.getMy() > 0.0);
        if (!b) return e;
        e.Weffy = b->Weffy;
    }
    if (std::fabs(f.getMz()) >= tol) {
        const auto b = effectiveUnderBending(section, fy, Axis::z, f.getMz() > 0.0);
        if (!b) return e;
        e.Weffz = b->Weffz;
    }
    e.valid = e.Aeff > 0.0;
    return e;
}

bool differs(double a, double b) { return std::fabs(a - b) > 1e-9 * std::max({1.0, std::fabs(a), std::fabs(b)}); }

class Finder {
public:
    // The departures go into out (fresh), which the caller returns: no copy of the whole table.
    Finder(const CrossSectionRequest* cross, const CrossSectionOutcome* crossOutcome, const MemberRequest* member,
           const MemberOutcome* memberOutcome, const std::array<kat::Nullable<double>, 11>& library, Departures& out)
        : cross_(*cross), cs_(*crossOutcome), member_(member), mo_(memberOutcome), crossGiven_(true), out_(out)
    {
        out_.en = library;
    }
    Finder(const MemberRequest* member, const MemberOutcome* memberOutcome,
           const std::array<kat::Nullable<double>, 11>& library, Departures& out)
        : cross_(dummyRequest()), cs_(dummyOutcome()), member_(member), mo_(memberOutcome), crossGiven_(false),
          out_(out)
    {
        out_.en = library;
    }

    void run()
    {
        if (crossGiven_) crossSection();
        if (member_ && mo_) memberChecks();
    }

private:
    void add(DR rule, const char* check, double library, double en, int slot)
    {
        if (out_.count >= out_.items.size()) return;
        out_.items[out_.count++] = Departure{rule, check, library, en};
        if (slot != sNone) out_.en[static_cast<std::size_t>(slot)] = en;
    }
    double util(VR::UtilizationType type) const { return cs_.results.getUtilization(type).valueOr(0.0); }
    bool has(VR::UtilizationType type) const { return cs_.results.getUtilization(type).hasValue(); }
    const SDBSection& section() const { return *cross_.section; }
    bool isKey(const std::string& key) const
    {
        const SDBSectionType* type = section().getType();
        return type && type->getKey() == key;
    }
    double fy() const { return cs_.initializer.getFy(); }
    double gammaM0() const { return cs_.gammaM0; }
    int sectionClass() const { return cs_.initializer.getClass(); }

    // --- cross-section ------------------------------------------------------------------------------
    void crossSection()
    {
        const Forces& f = cross_.forces;
        const bool noNormalStress =
            std::fabs(f.getN()) < tol && std::fabs(f.getMy()) < tol && std::fabs(f.getMz()) < tol;
        if (sectionClass() == 4 && noNormalStress && !cross_.elastic) noStressClass4();
        signedShearZ();
        axialBendingBothLimits();
        webClass();
        shearBendingThreshold();
        torsion();
        hollowUnderN();
        if (sectionClass() == 4 && !noNormalStress && !cross_.elastic) class4CrossSection();
    }

    // Class 4: (6.44) with Aeff, Weff and the shifts eN (their moments N eN added by magnitude, on the safe
    // side), and the plastic shear resistance (6.18), which does not depend on the class.
    void class4CrossSection()
    {
        const Forces& f = cross_.forces;
        const Effective e = effective(section(), fy(), f);
        if (!e.valid) return;
        const double k = fy() / gammaM0();
        const double N = std::fabs(f.getN());
        const double uN = N / ((f.getN() < 0.0 ? e.Aeff : section().getA()) * k);
        const double uMy = e.Weffy > 0.0 ? (std::fabs(f.getMy()) + e.dMy) / (e.Weffy * k) : 0.0;
        const double uMz = e.Weffz > 0.0 ? (std::fabs(f.getMz()) + e.dMz) / (e.Weffz * k) : 0.0;
        const double en = uN + uMy + uMz;
        add(DR::Class4GrossSection, "AxialBending", util(VR::AxialBending), en, sAxialBending);
        out_.en[sAxial] = uN;
        out_.en[sBending] = uMy + uMz;
        out_.en[sShear] = plasticShearUtilization();
        out_.en[sShearBending] = uMy + uMz;
        out_.en[sAxialShearBending] = en;
    }

    double plasticShearUtilization() const
    {
        const Forces& f = cross_.forces;
        const double k = fy() / (sqrt3 * gammaM0());
        const double Vz = section().getAvz() * k, Vy = section().getAvy() * k;
        const double uz = Vz > 0.0 ? std::fabs(f.getVz()) / Vz : 0.0;
        const double uy = Vy > 0.0 ? std::fabs(f.getVy()) / Vy : 0.0;
        return std::max(uz, uy);
    }

    void noStressClass4()
    {
        if (std::fabs(cross_.forces.getVz()) < tol && std::fabs(cross_.forces.getVy()) < tol) return;
        add(DR::NoStressClass4, "Shear", util(VR::Shear), plasticShearUtilization(), sShear);
    }

    void signedShearZ()
    {
        if (!has(VR::ShearZ) || util(VR::ShearZ) >= 0.0) return;
        const double en = std::max(std::fabs(util(VR::ShearZ)), std::fabs(util(VR::ShearY)));
        if (!differs(en, util(VR::Shear))) return;
        add(DR::SignedShearZ, "Shear", util(VR::Shear), en, sShear);
    }

    void axialBendingBothLimits()
    {
        if (!isKey(SDBKey::I) || (sectionClass() != 1 && sectionClass() != 2)) return;
        if (std::fabs(cross_.forces.getN()) < tol || std::fabs(cross_.forces.getMy()) < tol) return;
        if (cs_.results.getRequiredAxialBending() || !has(VR::AxialBendingY)) return;
        const VR& r = cs_.results;
        const double n = util(VR::Axial);
        const double rhoY = r.getShearReductionFactorY().valueOr(1.0), rhoZ = r.getShearReductionFactorZ().valueOr(1.0);
        const double A = section().getA(), Avz = section().getAvz();
        const double Ared = Avz * rhoZ + (A - Avz) * rhoY;
        const double fyReduced = r.getShearReductionFactorZ().hasValue() ? fy() * rhoZ : fy();
        const double Aw = section().getWebArea();
        const double nw = Aw * fyReduced > 0.0 ? std::fabs(cross_.forces.getN()) / (Aw * fyReduced / gammaM0()) : 0.0;
        if (!(n > 0.25 + tol || nw > 0.5 + tol)) return;
        const double a = std::min((Ared - 2.0 * section().getFlangeWidth1() * section().getGoverningThickness()) / Ared,
                                  0.5);
        const double k = std::min(1.0, (1.0 - n) / (1.0 - 0.5 * a));
        const double MplRd = r.getMRdLimit(Axis::y).valueOr(0.0);
        if (!(MplRd > 0.0) || !(k > 0.0)) return;
        const double uy = std::fabs(cross_.forces.getMy()) / (k * MplRd);
        const double uz = util(VR::AxialBendingZ);
        const double en = uz > 0.0 && uy > 0.0 ? std::pow(uy, r.getAlpha()) + std::pow(uz, r.getBeta()) : uy;
        add(DR::AxialBendingBothLimits, "AxialBending", util(VR::AxialBending), en, sAxialBending);
        if (has(VR::AxialShearBending)) out_.en[sAxialShearBending] = std::max(en, util(VR::AxialShearBending));
    }

    // Web and flange classes of a doubly symmetric I section under N and My (Table 5.2).
    void webClass()
    {
        const auto* I = dynamic_cast<const SDBSectionI*>(&section());
        if (!I || cross_.elastic || sectionClass() < 1 || sectionClass() > 3) return;
        if (std::fabs(I->getB2() - I->getB()) > 1e-12 || std::fabs(I->getT2() - I->getT()) > 1e-12) return;
        const Forces& f = cross_.forces;
        if (std::fabs(f.getMz()) >= tol) return;  // N and My only
        const double h = I->getH(), b = I->getB(), tw = I->getS(), tf = I->getT(), r = I->getR1();
        const double c = h - 2.0 * tf - 2.0 * r, cf = (b - tw - 2.0 * r) / 2.0;
        const double fyw = cross_.steel->getFyk(tw), fyf = cross_.steel->getFyk(tf);
        if (!(c > 0.0) || !(fyw > 0.0) || !(fyf > 0.0)) return;
        const double ew = std::sqrt(235000.0 / fyw), ef = std::sqrt(235000.0 / fyf);
        const double N = f.getN(), My = f.getMy();
        // Elastic stresses at the web ends (compression negative).
        const double A = section().getA(), Iy = section().getIy();
        const double s1 = N / A - std::fabs(My) / Iy * (c / 2.0);  // the edge that bending compresses
        const double s2 = N / A + std::fabs(My) / Iy * (c / 2.0);
        if (s1 >= 0.0 && s2 >= 0.0) return;  // web in tension
        const double sc = std::min(s1, s2), so = std::max(s1, s2);
        const double psi = so / sc;
        const double alphaElastic = so >= 0.0 ? -sc / (so - sc) : 1.0;
        const double alphaPlastic = std::clamp(0.5 * (1.0 - N / (c * tw * fyw)), 1e-9, 1.0);
        const double ratio = c / tw;
        auto plasticWebClass = [&](double alpha) {
            if (alpha > 0.5) {
                if (ratio <= 396.0 * ew / (13.0 * alpha - 1.0)) return 1;
                if (ratio <= 456.0 * ew / (13.0 * alpha - 1.0)) return 2;
            } else {
                if (ratio <= 36.0 * ew / alpha) return 1;
                if (ratio <= 41.5 * ew / alpha) return 2;
            }
            const double limit3 = psi > -1.0 ? 42.0 * ew / (0.67 + 0.33 * psi) : 62.0 * ew * (1.0 - psi) * std::sqrt(-psi);
            return ratio <= limit3 ? 3 : 4;
        };
        const int webElastic = plasticWebClass(alphaElastic);
        const int webPlastic = plasticWebClass(alphaPlastic);
        // Compressed flange: outstand in uniform compression when the flange is compressed.
        const double sFlange = N / A - std::fabs(My) / Iy * (h / 2.0 - tf / 2.0);
        int flange = 1;
        if (sFlange < 0.0) {
            const double rf = cf / tf;
            flange = rf <= 9.0 * ef ? 1 : rf <= 10.0 * ef ? 2 : rf <= 14.0 * ef ? 3 : 4;
        }
        const int enClass = std::max(flange, webPlastic);
        const int libraryLike = webElastic == 3 && flange <= 2 ? 2 : std::max(flange, webElastic);
        if (libraryLike != sectionClass() || enClass == 4) return;  // another rule decided the class
        const int withElasticAlpha = std::max(flange, webElastic);
        if (webElastic != webPlastic && std::max(flange, webPlastic) != withElasticAlpha)
            add(DR::WebClassElasticAlpha, "class", withElasticAlpha, std::max(flange, webPlastic), sNone);
        if (enClass == 3 && sectionClass() <= 2) {
            if (webPlastic == 3 && webElastic == 3)
                add(DR::Class3WebClass2, "class", sectionClass(), 3, sNone);
            // The resistances of class 3: the library's own checks with the elastic verification.
            CrossSectionRequest elastic = cross_;
            elastic.elastic = true;
            const CrossSectionOutcome e = evaluateCrossSection(elastic);
            const DR rule = webPlastic == 3 && webElastic == 3 ? DR::Class3WebClass2 : DR::WebClassElasticAlpha;
            add(rule, "AxialBending", util(VR::AxialBending),
                e.results.getUtilization(VR::AxialBending).valueOr(0.0), sAxialBending);
            out_.en[sBending] = e.results.getUtilization(VR::Bending);
            out_.en[sAxialShearBending] = e.results.getUtilization(VR::AxialShearBending);
            out_.en[sShearBending] = e.results.getUtilization(VR::ShearBending);
        }
    }

    void shearBendingThreshold()
    {
        const double uv = util(VR::ShearZ);
        if (!(uv > 0.5 && uv < 0.55) || std::fabs(cross_.forces.getMy()) < tol || !has(VR::ShearBendingZ)) return;
        if (sectionClass() != 1 && sectionClass() != 2) return;
        const double rho = (2.0 * uv - 1.0) * (2.0 * uv - 1.0);
        const double MplRd = section().getWply() * fy() / gammaM0();
        double MRd = MplRd * (1.0 - rho);
        if (isKey(SDBKey::I) && std::fabs(cross_.forces.getMz()) < tol) {
            const double Aw = section().getWebArea(), tw = section().getWebThickness();
            if (tw > 0.0) MRd = std::min((section().getWply() - rho * Aw * Aw / (4.0 * tw)) * fy() / gammaM0(), MplRd);
        }
        if (!(MRd > 0.0)) return;
        const double en = std::fabs(cross_.forces.getMy()) / MRd;
        add(DR::ShearBendingThreshold, "ShearBending", util(VR::ShearBending), std::max(en, util(VR::ShearBendingY)),
            sShearBending);
    }

    void torsion()
    {
        const double Mt = cross_.forces.getMt();
        if (std::fabs(Mt) < tol || !has(VR::Torsion)) return;
        const double tauRd = fy() / (sqrt3 * gammaM0());
        double TRd = 0.0;
        if (const auto* rh = dynamic_cast<const SDBSectionRH*>(&section())) {
            const double t = std::min(rh->getS(), rh->getT());
            TRd = 2.0 * (rh->getH() - rh->getT()) * (rh->getB() - rh->getS()) * t * tauRd;
        } else if (const auto* o = dynamic_cast<const SDBSectionO*>(&section())) {
            const double rm = (o->getD() - o->getT()) / 2.0;
            TRd = 2.0 * KaMath::Pi * rm * rm * o->getT() * tauRd;
        } else if (const auto* circle = dynamic_cast<const SDBSectionCircle*>(&section())) {
            TRd = section().getIt() / (circle->getD() / 2.0) * tauRd;
        } else if (dynamic_cast<const SDBSectionR*>(&section())) {
            return;  // a solid rectangle: no thin-walled formula
        } else if (section().getTorsionThickness() > 0.0) {
            TRd = section().getIt() / section().getTorsionThickness() * tauRd;
        }
        if (!(TRd > 0.0)) return;
        add(DR::TorsionResistance, "Torsion", util(VR::Torsion), std::fabs(Mt) / TRd, sTorsion);
    }

    void hollowUnderN()
    {
        const Forces& f = cross_.forces;
        if (cs_.initializer.getErrorCode() != ErrorCode::NotSupported) return;
        const auto* rh = dynamic_cast<const SDBSectionRH*>(&section());
        const auto* o = dynamic_cast<const SDBSectionO*>(&section());
        if (!rh && !o) return;
        const double A = section().getA();
        const double n = std::fabs(f.getN()) / (A * fy() / gammaM0());
        const double My = std::fabs(f.getMy()), Mz = std::fabs(f.getMz());
        double en = n;
        if (sectionClass() == 1 || sectionClass() == 2) {
            const double Mply = section().getWply() * fy() / gammaM0(), Mplz = section().getWplz() * fy() / gammaM0();
            double MNy = 0.0, MNz = 0.0, exponent = 2.0;
            if (rh) {
                const double aw = std::min((A - 2.0 * rh->getB() * rh->getT()) / A, 0.5);
                const double af = std::min((A - 2.0 * rh->getH() * rh->getS()) / A, 0.5);
                MNy = std::min(Mply * (1.0 - n) / (1.0 - 0.5 * aw), Mply);
                MNz = std::min(Mplz * (1.0 - n) / (1.0 - 0.5 * af), Mplz);
                exponent = std::min(1.66 / (1.0 - 1.13 * n * n), 6.0);
                if (!(exponent > 0.0)) exponent = 6.0;
            } else {
                MNy = Mply * (1.0 - std::pow(std::min(n, 1.0), 1.7));
                MNz = Mplz * (1.0 - std::pow(std::min(n, 1.0), 1.7));
            }
            if (n >= 1.0 || !(MNy > 0.0) || !(MNz > 0.0)) {
                en = std::max(n, 1.0 + n);  // no moment resistance left
            } else if (My > 0.0 && Mz > 0.0) {
                en = std::max(n, std::pow(My / MNy, exponent) + std::pow(Mz / MNz, exponent));
            } else if (My > 0.0 || Mz > 0.0) {
                en = std::max(n, My > 0.0 ? My / MNy : Mz / MNz);
            }
        } else if (sectionClass() == 3) {
            const double Mely = section().getWy() * fy() / gammaM0(), Melz = section().getWz() * fy() / gammaM0();
            en = n + (Mely > 0.0 ? My / Mely : 0.0) + (Melz > 0.0 ? Mz / Melz : 0.0);
        } else {
            return;  // class 4: the effective section
        }
        add(DR::HollowSectionUnderN, "AxialBending", util(VR::AxialBending), en, sAxialBending);
        out_.en[sAxial] = n;
        out_.en[sAxialShearBending] = std::max(en, util(VR::AxialShearBending));
    }

    // --- member -------------------------------------------------------------------------------------
    void memberChecks()
    {
        if (mo_->initializer.getClass() == 4 && !member_->elastic) {
            class4Member();
            shearBuckling();
            return;
        }
        const BucklingResults& r = mo_->results;
        const MomentDistribution& m = member_->moments;
        const double My = member_->forces.getMy();
        const double gammaM1 = member_->gammaM1;
        const SectionInitializer& init = mo_->initializer;
        const double W = init.findW(Axis::y) * init.getFy();  // My,Rk

        // Lateral-torsional buckling first: its EN chiLT enters the EN interaction.
        double chiLTen = -1.0;  // the EN chiLT,mod where a departure changed it
        double MbRdEn = -1.0;
        const bool ltbRan = r.getBucklingCurveBending().hasValue();
        const bool rolled = r.getChiLTmod().hasValue();
        const double MbRd = r.getBucklingResistance(BU::Bending).valueOr(0.0);
        if (ltbRan && rolled && W > 0.0) {
            const double limited = r.getChiLTmod().value() * W / gammaM1;
            if (differs(MbRd, limited) && MbRd > limited) {
                MbRdEn = limited;
                chiLTen = r.getChiLTmod().value();
                add(DR::ChiLTmodUnlimited, "memberBending", r.getUtilization(BU::BendingAxisY).valueOr(0.0),
                    std::fabs(My) / limited, sMemberBending);
            }
        }
        if (ltbRan && std::fabs(m.getMcr()) < tol && mo_->numericalMcr <= 0.0 &&
            m.getMomentDiagram(Axis::y) == MomentDiagram::Polygonal && W > 0.0) {
            const double M1 = m.getMomentWert(Axis::y, 0), Mm = m.getMomentWert(Axis::y, 1), M2 = m.getMomentWert(Axis::y, 2);
            if (isStraightLine(M1, Mm, M2) && (M1 != 0.0 || M2 != 0.0)) {
                const double Mh = std::fabs(M1) >= std::fabs(M2) ? M1 : M2;
                const double psi = (std::fabs(M1) >= std::fabs(M2) ? M2 : M1) / Mh;
                const double Mcr0 = uniformCriticalMoment();
                const double McrLib = r.getCriticalMoment();
                const double C1 = c1StraightLine(psi);
                if (Mcr0 > 0.0 && differs(McrLib, C1 * Mcr0)) {
                    const double lambdaLT = std::sqrt(W / (C1 * Mcr0));
                    const double alpha = alphaOfCurve(r.getBucklingCurveBending().value());
                    const LateralTorsionalReduction red = lateralTorsionalReduction(
                        lambdaLT, alpha, rolled, r.getLambdaLT0(), r.getBeta(), r.getCorrectionFactor().valueOr(1.0));
                    MbRdEn = red.chiLTmod * W / gammaM1;
                    chiLTen = red.chiLTmod;
                    add(DR::StraightLineCriticalMoment, "memberBending",
                        r.getUtilization(BU::BendingAxisY).valueOr(0.0), std::fabs(My) / MbRdEn, sMemberBending);
                }
            }
        }
        (void)MbRdEn;

        interactionChecks(chiLTen);
        shearBuckling();
    }

    // Class 4 members: 6.3.1.1(3) Nb,Rd = chi Aeff fy / gammaM1 with lambda = sqrt(Aeff fy / Ncr);
    // 6.3.2.1(3) Mb,Rd = chiLT Weff,y fy / gammaM1 with lambdaLT = sqrt(Weff,y fy / Mcr); (6.61) and (6.62)
    // with the class 3 and 4 columns of Annex B, Weff and the moments N eN.
    void class4Member()
    {
        const BucklingResults& r = mo_->results;
        const Forces& f = member_->forces;
        const SectionInitializer& init = mo_->initializer;
        const double fyv = init.getFy(), gammaM1 = member_->gammaM1;
        const Effective e = effective(*member_->section, fyv, f);
        if (!e.valid) return;
        const double N = std::fabs(f.getN());
        double ny = 0.0, nz = 0.0, chiY = 1.0, chiZ = 1.0;
        const bool flexural = r.getChi(Axis::y).hasValue();
        if (flexural && f.getN() < 0.0) {
            auto chiOf = [&](Axis axis) {
                const double Ncr = r.getNcr(axis);
                const double lambda = Ncr > 0.0 ? std::sqrt(e.Aeff * fyv / Ncr) : 0.0;
                const auto curve = r.getBucklingCurveCompression(axis);
                return flexuralReduction(lambda, alphaOfCurve(curve.hasValue() ? curve.value() : BucklingCurve{}));
            };
            chiY = chiOf(Axis::y);
            chiZ = chiOf(Axis::z);
            ny = N / (chiY * e.Aeff * fyv / gammaM1);
            nz = N / (chiZ * e.Aeff * fyv / gammaM1);
            const double lib = r.getUtilization(BU::Compression).valueOr(0.0);
            add(DR::Class4GrossSection, "memberCompression", lib, std::max(ny, nz), sMemberCompression);
        }
        const double My = std::fabs(f.getMy());
        if (My < tol || !r.getBucklingCurveBending().hasValue() || !(e.Weffy > 0.0)) return;
        const double Mcr = r.getCriticalMoment();
        const double MyRk = e.Weffy * fyv;
        const double lambdaLT = Mcr > 0.0 ? std::sqrt(MyRk / Mcr) : 0.0;
        const bool rolled = mo_->rolledMethod;
        const double lambdaLT0 = rolled ? r.getLambdaLT0() : 0.2, beta = rolled ? r.getBeta() : 1.0;
        const LateralTorsionalReduction red =
            lateralTorsionalReduction(lambdaLT, alphaOfCurve(r.getBucklingCurveBending().value()), rolled,
                                      lambdaLT0 > 0.0 ? lambdaLT0 : 0.4, beta > 0.0 ? beta : 0.75,
                                      r.getCorrectionFactor().valueOr(1.0));
        const double MbRd = red.chiLTmod * MyRk / gammaM1;
        if (!(MbRd > 0.0)) return;
        add(DR::Class4GrossSection, "memberBending", r.getUtilization(BU::BendingAxisY).valueOr(0.0), My / MbRd,
            sMemberBending);
        if (!(f.getN() < 0.0) || !flexural) return;
        InteractionInput in;
        in.ny = ny;
        in.nz = nz;
        in.lambdaY = r.getNcr(Axis::y) > 0.0 ? std::sqrt(e.Aeff * fyv / r.getNcr(Axis::y)) : 0.0;
        in.lambdaZ = r.getNcr(Axis::z) > 0.0 ? std::sqrt(e.Aeff * fyv / r.getNcr(Axis::z)) : 0.0;
        const MomentDistribution& m = member_->moments;
        auto cm = [&](Axis axis) {
            const double c = equivalentMomentFactor(m.getMomentWert(axis, 0), m.getMomentWert(axis, 1),
                                                    m.getMomentWert(axis, 2), m.getMomentDiagram(axis));
            return member_->cmFloor ? std::max(c, 0.9) : c;
        };
        in.Cmy = cm(Axis::y);
        in.Cmz = cm(Axis::z);
        in.CmLT = in.Cmy;
        in.My = My + e.dMy;
        in.Mz = std::fabs(f.getMz()) + e.dMz;
        in.MyRd61 = in.MyRd62 = MbRd;
        in.MzRd = e.Weffz * fyv / gammaM1;
        in.plastic = false;
        const SDBSectionType* type = member_->section->getType();
        in.iSection = type && type->getKey() == SDBKey::I;
        in.torsionallyDeformable = member_->torsionallyDeformable;
        const double lib = r.getUtilization(BU::CompressionBending).valueOr(0.0);
        add(DR::Class4GrossSection, "memberCompressionBending", lib, interaction(in).governing(),
            sMemberCompressionBending);
    }

    // Mcr of the same member under uniform moment (zeta = 1): the library's own formula.
    double uniformCriticalMoment() const
    {
        const double M = member_->forces.getMy() != 0.0 ? member_->forces.getMy() : 1.0;
        const MomentDistribution& m = member_->moments;
        const MomentDistribution uniform({M, M, M}, MomentDiagram::Polygonal, {0.0, 0.0, 0.0}, MomentDiagram::Polygonal,
                                         std::fabs(M), m.getApplicationPoint(), 0.0);
        BucklingResults scratch;
        const BucklingResistance verifier(scratch, member_->section, mo_->initializer, member_->forces, uniform,
                                          member_->gammaM1, member_->lengths, member_->cTheta, member_->shearPanel,
                                          member_->torsionallyDeformable, member_->cmFloor);
        return verifier.calculateElasticCriticalMoment();
    }

    void interactionChecks(double chiLTen)
    {
        const BucklingResults& r = mo_->results;
        if (!r.getUtilization(BU::CompressionBendingAxisY).hasValue()) return;
        const MomentDistribution& m = member_->moments;
        const SectionInitializer& init = mo_->initializer;
        const double gammaM1 = member_->gammaM1;
        const double MyRk = init.findW(Axis::y) * init.getFy(), MzRk = init.findW(Axis::z) * init.getFy();
        const bool rolled = r.getChiLTmod().hasValue();
        const double MbRd = r.getBucklingResistance(BU::Bending).valueOr(0.0);

        // The library's own inputs: with its rules this reproduces its (6.61) and (6.62).
        InteractionInput lib;
        lib.ny = r.getUtilization(BU::CompressionAxisY).valueOr(0.0);
        lib.nz = r.getUtilization(BU::CompressionAxisZ).valueOr(0.0);
        lib.lambdaY = r.getLambda(Axis::y);
        lib.lambdaZ = r.getLambda(Axis::z);
        lib.Cmy = r.getCm(Axis::y);
        lib.Cmz = r.getCm(Axis::z);
        lib.CmLT = lib.Cmy;
        lib.My = member_->forces.getMy();
        lib.Mz = member_->forces.getMz();
        lib.MyRd61 = rolled ? r.getChiLTmod().value() * MyRk / gammaM1 : 0.0;
        lib.MyRd62 = MbRd;
        lib.MzRd = MzRk / gammaM1;
        lib.plastic = init.getClass() < 3;
        const SDBSectionType* type = member_->section->getType();
        lib.iSection = type && type->getKey() == SDBKey::I;
        lib.torsionallyDeformable = member_->torsionallyDeformable;
        lib.signedMoments = true;
        lib.kzzWithCmy = true;
        const double lib61 = r.getUtilization(BU::CompressionBendingAxisY).value();
        const double lib62 = r.getUtilization(BU::CompressionBendingAxisZ).valueOr(0.0);
        const double libGoverning = std::max(lib61, lib62);
        auto governing = [](const InteractionInput& in) { return interaction(in).governing(); };

        InteractionInput en = lib;
        bool any = false;
        // Cm of Table B.3 (a floor of 0.9 asked for by the user stays).
        auto cm = [&](Axis axis) {
            double c = equivalentMomentFactor(m.getMomentWert(axis, 0), m.getMomentWert(axis, 1),
                                              m.getMomentWert(axis, 2), m.getMomentDiagram(axis));
            return member_->cmFloor ? std::max(c, 0.9) : c;
        };
        const double CmyEn = cm(Axis::y), CmzEn = cm(Axis::z);
        if (differs(CmyEn, lib.Cmy) || differs(CmzEn, lib.Cmz)) {
            InteractionInput x = lib;
            x.Cmy = CmyEn;
            x.Cmz = CmzEn;
            x.CmLT = CmyEn;
            if (rolled) {
                const double g = governing(x);
                if (differs(g, libGoverning)) {
                    add(DR::EquivalentMomentFactor, "memberCompressionBending", libGoverning, g, sNone);
                    any = true;
                }
            }
            en.Cmy = CmyEn;
            en.Cmz = CmzEn;
            en.CmLT = CmyEn;
        }
        if (lib.My < 0.0 || lib.Mz < 0.0) {
            InteractionInput x = lib;
            x.signedMoments = false;
            if (rolled) {
                const double g = governing(x);
                if (differs(g, libGoverning)) {
                    add(DR::SignedInteractionMoments, "memberCompressionBending", libGoverning, g, sNone);
                    any = true;
                }
            }
            en.signedMoments = false;
        }
        if (lib.plastic && lib.iSection && std::fabs(lib.Mz) >= tol && differs(lib.Cmy, lib.Cmz)) {
            InteractionInput x = lib;
            x.kzzWithCmy = false;
            if (rolled) {
                const double g = governing(x);
                if (differs(g, libGoverning)) {
                    add(DR::KzzWithCmy, "memberCompressionBending", libGoverning, g, sNone);
                    any = true;
                }
            }
            en.kzzWithCmy = false;
        }
        if (chiLTen >= 0.0) {
            en.MyRd61 = en.MyRd62 = chiLTen * MyRk / gammaM1;
            any = true;
        } else if (rolled) {
            en.MyRd61 = en.MyRd62 = r.getChiLTmod().value() * MyRk / gammaM1;
        }
        if (!rolled && MyRk > 0.0) {
            // The general case: chiLT = Mb,Rd gammaM1 / My,Rk.
            if (chiLTen < 0.0) en.MyRd61 = en.MyRd62 = MbRd;
            const double g = governing(en);
            add(DR::InteractionGeneralMethod, "memberCompressionBending", lib61, g, sNone);
            out_.en[sMemberCompressionBending] = g;  // en is final here
            return;
        }
        if (any) out_.en[sMemberCompressionBending] = governing(en);
    }

    void shearBuckling()
    {
        const BucklingResults& r = mo_->results;
        if (r.getShearBucklingErrorCode() != ErrorCode::NoError || !r.getUtilizationShearBuckling().hasValue()) return;
        const auto* I = dynamic_cast<const SDBSectionI*>(member_->section);
        if (!I) return;
        const SectionInitializer& init = mo_->initializer;
        const double fy = init.getFy(), hw = init.getHw();
        const double tw = I->getS();
        const double eps = std::sqrt(235.0 / (fy / 1000.0));
        const double eta = KaMath::isFuzzyGreater(fy, 460000.0, 1e-6) ? 1.0 : 1.2;
        const double gammaM1 = member_->gammaM1;
        const KaStandard* standard = KaStandard::get();
        const double gammaM0 = Standard::Coefficients::get()->getGammaA(standard->getMode(), standard->getSituation());
        const double limitWidth = [&] {
            return std::min(I->getB(), tw + 30.0 * eps * I->getT());
        }();
        const double limitWidth2 = std::min(I->getB2(), tw + 30.0 * eps * I->getT2());
        const bool widthLimited = limitWidth < I->getB() - 1e-12 || limitWidth2 < I->getB2() - 1e-12;
        const double VbfLib = r.getVbRd(BucklingResults::SectionParts::Flange).valueOr(0.0);
        if (!widthLimited && VbfLib >= 0.0) return;
        // The flange of the smaller axial resistance, with its effective width.
        const bool first = limitWidth * I->getT() <= limitWidth2 * I->getT2();
        const double bf = first ? limitWidth : limitWidth2, tf = first ? I->getT() : I->getT2();
        const double lever = I->getH() - 0.5 * (I->getT() + I->getT2());
        const double MfRd = bf * tf * fy * lever / gammaM0;
        const double a = std::min(3.0 * hw, member_->lengths.y);
        const double MEd = std::fabs(member_->forces.getMy());
        double Vbf = 0.0;
        if (MEd < MfRd && a > 0.0) {
            const double c = a * (0.25 + 1.6 * bf * tf * tf * fy / (tw * hw * hw * fy));
            Vbf = bf * tf * tf * fy / (c * gammaM1) * (1.0 - (MEd / MfRd) * (MEd / MfRd));
        }
        const double Vbw = r.getVbRd(BucklingResults::SectionParts::Web).valueOr(0.0);
        const double Vb = std::min(Vbw + Vbf, eta * fy * hw * tw / (sqrt3 * gammaM1));
        if (!(Vb > 0.0)) return;
        const double V = std::max(std::fabs(member_->forces.getVz()), std::fabs(member_->forces.getVy()));
        const double en = V / Vb;
        const double lib = r.getUtilizationShearBuckling().value();
        if (!differs(en, lib)) return;
        add(DR::ShearBucklingFlanges, "memberShearBuckling", lib, en, sMemberShearBuckling);
    }

    static const CrossSectionRequest& dummyRequest()
    {
        static const CrossSectionRequest request;
        return request;
    }
    static const CrossSectionOutcome& dummyOutcome();

    const CrossSectionRequest& cross_;
    const CrossSectionOutcome& cs_;
    const MemberRequest* member_;
    const MemberOutcome* mo_;
    bool crossGiven_;
    Departures& out_;
};

// Never read: the member-only finder does not run the cross-section detectors.
const CrossSectionOutcome& Finder::dummyOutcome()
{
    static KaConstrSteel steel = *KaConstrSteel::fromName("S235");
    static SDBSectionR bar(0.1, 0.1);
    static const CrossSectionOutcome outcome{
        SectionInitializer(&bar, &steel, Forces(), VerificationControl::Elastic, false), VerificationResults()};
    return outcome;
}

} // namespace

const std::array<DepartureInfo, departureRuleCount>& departureTable() { return table; }

const DepartureInfo& infoOf(DepartureRule rule) { return table[static_cast<std::size_t>(rule)]; }

kat::Nullable<double> Departures::largestEn() const
{
    kat::Nullable<double> largest;
    for (const auto& u : en)
        if (u.hasValue() && (!largest.hasValue() || !(u.value() <= largest.value()))) largest = u.value();
    return largest;
}

Departures findDepartures(const CrossSectionRequest* cross, const CrossSectionOutcome* crossOutcome,
                          const MemberRequest* member, const MemberOutcome* memberOutcome,
                          const std::array<kat::Nullable<double>, 11>& library)
{
    Departures out;
    if (cross && crossOutcome) Finder(cross, crossOutcome, member, memberOutcome, library, out).run();
    else Finder(member, memberOutcome, library, out).run();
    return out;
}

Departures findDepartures(const CrossSectionRequest& cross, const CrossSectionOutcome& crossOutcome)
{
    std::array<kat::Nullable<double>, 11> library{};
    for (std::size_t i = 0; i < 7; ++i) library[i] = crossOutcome.results.getUtilization(crossSectionSummary[i]);
    return findDepartures(&cross, &crossOutcome, nullptr, nullptr, library);
}

Departures findDepartures(const MemberRequest& member, const MemberOutcome& memberOutcome)
{
    using U = BucklingResults::UtilizationType;
    const BucklingResults& r = memberOutcome.results;
    auto largest = [&](std::initializer_list<U> types) {
        kat::Nullable<double> out;
        for (U t : types) {
            const auto u = r.getUtilization(t);
            if (u.hasValue() && std::isfinite(u.value()) && (!out.hasValue() || u.value() > out.value())) out = u.value();
        }
        return out;
    };
    std::array<kat::Nullable<double>, 11> library{};
    library[sMemberCompression] = largest({U::CompressionAxisY, U::CompressionAxisZ, U::Compression});
    library[sMemberBending] = largest({U::BendingAxisY, U::BendingAxisZ, U::Bending});
    library[sMemberCompressionBending] =
        largest({U::CompressionBendingAxisY, U::CompressionBendingAxisZ, U::CompressionBending});
    library[sMemberShearBuckling] = r.getUtilizationShearBuckling();
    return findDepartures(nullptr, nullptr, &member, &memberOutcome, library);
}

} // namespace design
