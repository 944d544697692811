// The calculation trace: every line is read from the results records of the checks. Where a line shows a
// value that the record does not keep (Phi of flexural buckling, the resistance to bending reduced for
// shear, the plastic torsion resistance), it is formed with the same expression, in the same order, from
// the same inputs as the check formed it, so that it is the very number the check used.
//
// Texts: symbols in ASCII words (chi_y, lambda_bar_LT, gamma_M0, Phi), units with superscripts (cm², kNm),
// "·" for a product in the numbers. Forces in kN and kNm with two decimals, section properties in cm
// units, fy and E in N/mm², factors and utilizations with three decimals.

#include "Trace.h"

#include "BucklingCurves.h"
#include "PlateClassification.h"
#include "TraceSheet.h"

#include <KaMath.h>
#include <KaStandard.h>
#include <SDBSection.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

namespace design {

namespace {

using namespace tracetext;
using R = SteelDesign::VerificationResults;
using B = SteelDesign::BucklingResults;
using U = B::UtilizationType;
using P = B::SectionParts;
using K = B::InteractionFactorkxx;
using Kind = SteelDesign::SectionInitializer::SectionKind;
using SteelDesign::Axis;

const double sqrt3 = std::sqrt(3.0);

// ---- cross-section ---------------------------------------------------------------------------------

// The groups and clauses of the limitations.
struct LimitationPlace {
    const char* check;
    const char* clause;
};

LimitationPlace placeOf(Limitation flag)
{
    switch (flag) {
    case Class4: return {kClassification, "EN 1993-1-5 4.3"};
    case CrossSectionNotSupported: return {kAxial, "EN 1993-1-1 6.2.4"};
    case CrossSectionIncomplete: return {kAxialShearBending, "EN 1993-1-1 6.2.1"};
    case TensionWithBending: return {kLateralTorsional, "EN 1993-1-1 6.3.2"};
    case BendingAboutZOnly: return {kLateralTorsional, "EN 1993-1-1 6.3.3"};
    case BiaxialBendingWithoutCompression: return {kLateralTorsional, "EN 1993-1-1 6.3.3"};
    case InteractionNeedsRolledMethod: return {kInteraction, "EN 1993-1-1 6.3.3(4) (6.61)"};
    case NonFiniteUtilization: return {kInteraction, "EN 1993-1-1 6.3"};
    case NumericalMcrNotFound: return {kLateralTorsional, "EN 1993-1-1 6.3.2.2(2)"};
    case ShearWithTorsionNotChecked: return {kShear, "EN 1993-1-1 6.2.7(9)"};
    case Class4NotCovered: return {kClassification, "EN 1993-1-5 4.3"};
    case LateralTorsionalNotCovered: return {kLateralTorsional, "EN 1993-1-1 6.3.2.2(2)"};
    case TorsionalFlexuralNotChecked: return {kFlexural, "EN 1993-1-1 6.3.1.4"};
    case NonPrincipalBending: return {kBending, "EN 1993-1-1 6.2.1(5), 6.2.5"};
    case AngleInteractionNotCovered: return {kInteraction, "EN 1993-1-1 6.3.3"};
    case NoLimitation: break;
    }
    return {kClassification, ""};
}

void addLimitations(Sheet& sheet, std::uint32_t limitations, bool crossSection)
{
    for (std::uint32_t bit = 0; bit < limitationCount; ++bit) {
        const auto flag = static_cast<Limitation>(1u << bit);
        if ((limitations & flag) == 0) continue;
        LimitationPlace place = placeOf(flag);
        if (flag == NonFiniteUtilization && crossSection) place = {kAxialShearBending, "EN 1993-1-1 6.2.1"};
        sheet.notVerified(place.check, place.clause, "not verified", place.check, describe(flag));
    }
}

// The check group of a summary utilization of the cross-section check.
const char* groupOf(R::UtilizationType type)
{
    switch (type) {
    case R::Axial: return kAxial;
    case R::Torsion: return kTorsion;
    case R::Bending: return kBending;
    case R::Shear: return kShear;
    case R::AxialBending: return kAxialBending;
    case R::ShearBending: return kShearBending;
    case R::AxialShearBending: return kAxialShearBending;
    default: return kAxialShearBending;
    }
}

struct CrossSectionContext {
    const CrossSectionRequest& request;
    const CrossSectionOutcome& outcome;
    const SDBSection& section;
    const SteelDesign::SectionInitializer& init;
    const R& r;
    double fy, gammaM0;
    int cls;
    bool plastic;
    bool unverifiedAll;    // class 4: every resistance is that of the gross section or zero
    bool unverifiedAxial;  // error code 6: the axial checks of this kind are not covered

    double utilizationOr0(R::UtilizationType type) const { return r.getUtilization(type).valueOr(0.0); }
    std::string fyText() const { return stress(fy); }
    std::string g0() const { return gamma(gammaM0); }
};

void traceClassification(Sheet& sheet, const CrossSectionContext& c)
{
    const bool classify = !c.request.elastic;
    if (c.request.section && c.request.steel) {
        for (const PlateClass& plate :
             classifyPlates(*c.request.section, *c.request.steel, c.request.forces, classify)) {
            std::string numbers = "c / t = " + mm(plate.c) + " / " + mm(plate.t) + " = " +
                                  fixed(plate.t != 0.0 ? plate.c / plate.t : 0.0, 2) + ", alpha = " + factor(plate.alpha) +
                                  ", psi = " + (plate.psi ? factor(plate.psi.value()) : std::string("-"));
            sheet.value(kClassification, "EN 1993-1-1 5.5.2, Table 5.2", std::string("c/t (") + plate.kind + ")",
                        "c / t with alpha, psi", std::move(numbers),
                        plate.cls ? classText(plate.cls.value()) : std::string("not classified"),
                        plate.cls ? static_cast<double>(plate.cls.value()) : 0.0);
        }
    }
    const double epsilon = c.fy > 0.0 ? std::sqrt(235000.0 / c.fy) : 0.0;
    sheet.value(kClassification, "EN 1993-1-1 5.5.2(6)", "class",
                classify ? "epsilon = sqrt(235 / fy); the largest plate class (class 3 web, class 1 or 2 flanges: 2, "
                           "5.5.2(11))"
                         : "elastic verification: class 3 without classification",
                "fy = " + c.fyText() + ", epsilon = sqrt(235 / " + fixed(c.fy / 1000.0, 0) + ") = " + factor(epsilon),
                classText(c.cls), c.cls);
}

void traceAxial(Sheet& sheet, const CrossSectionContext& c)
{
    const kat::Nullable<double> u = c.r.getUtilization(R::Axial);
    if (!u) return;
    const double N = c.request.forces.getN();
    const bool tension = N > 0.0;
    const double A = c.section.getA();
    const double NRdLimit = c.r.getNRdLimit().valueOr(0.0);
    const double NRd = c.r.getNRd().valueOr(0.0);
    const bool unverified = c.unverifiedAll || c.unverifiedAxial;
    const char* name = tension ? "N_pl,Rd" : "N_c,Rd";
    sheet.value(kAxial, tension ? "EN 1993-1-1 6.2.3 (6.6)" : "EN 1993-1-1 6.2.4 (6.10)", name, "A fy / gamma_M0",
                cm2(A) + " · " + c.fyText() + " / " + c.g0(), kN(NRdLimit), NRdLimit);
    std::string resistance = name;
    if (NRd != NRdLimit) {
        // 6.2.10(3): the shear areas reduced by (1 - rho) for the shear utilizations of 0.55 and more.
        const double rhoY = c.r.getShearReductionFactorY().valueOr(1.0);
        const double rhoZ = c.r.getShearReductionFactorZ().valueOr(1.0);
        const double Avz = c.section.getAvz();
        sheet.value(kAxial, "EN 1993-1-1 6.2.10(3)", "N_V,Rd",
                    "(A_v,z (1 - rho_z) + (A - A_v,z) (1 - rho_y)) fy / gamma_M0",
                    "(" + cm2(Avz) + " · " + factor(rhoZ) + " + (" + cm2(A) + " - " + cm2(Avz) + ") · " + factor(rhoY) +
                        ") · " + c.fyText() + " / " + c.g0(),
                    kN(NRd), NRd);
        resistance = "N_V,Rd";
    }
    sheet.utilization(kAxial, tension ? "EN 1993-1-1 6.2.3 (6.5)" : "EN 1993-1-1 6.2.4 (6.9)",
                      "N_Ed / " + resistance, "|N_Ed| / " + resistance,
                      magnitude(kN(N)) + " / " + kN(NRd), u.value(), unverified);
}

// Mc,Rd about one axis as the cross-section check forms it: W fy / gammaM0 with W of the class.
double momentResistance(const CrossSectionContext& c, Axis axis)
{
    return c.init.findW(axis) * c.init.getFy() / c.gammaM0;
}

std::string modulusName(int cls, Axis axis)
{
    const char* a = axis == Axis::y ? "y" : "z";
    if (cls == 1 || cls == 2) return std::string("W_pl,") + a;
    if (cls == 3) return std::string("W_el,") + a;
    return std::string("W_eff,") + a;
}

void traceBending(Sheet& sheet, const CrossSectionContext& c)
{
    const kat::Nullable<double> uy = c.r.getUtilization(R::BendingY);
    const kat::Nullable<double> uz = c.r.getUtilization(R::BendingZ);
    for (const Axis axis : {Axis::y, Axis::z}) {
        const kat::Nullable<double> u = axis == Axis::y ? uy : uz;
        if (!u) continue;
        const std::string a = axis == Axis::y ? "y" : "z";
        const double W = c.init.findW(axis);
        const double McRd = momentResistance(c, axis);
        const double M = axis == Axis::y ? c.request.forces.getMy() : c.request.forces.getMz();
        if (idle(M, u)) continue;
        const std::string W_ = modulusName(c.cls, axis);
        sheet.value(kBending, c.plastic ? "EN 1993-1-1 6.2.5 (6.13)" : c.cls == 3 ? "EN 1993-1-1 6.2.5 (6.14)" : "EN 1993-1-1 6.2.5 (6.15)", "M_c," + a + ",Rd",
                    W_ + " fy / gamma_M0",
                    c.cls == 4 ? "class 4: the library takes W = 0 (effective section properties needed)"
                               : cm3(W) + " · " + c.fyText() + " / " + c.g0(),
                    kNm(McRd), McRd);
        sheet.utilization(kBending, "EN 1993-1-1 6.2.5 (6.12)", "M_" + a + ",Ed / M_c," + a + ",Rd",
                          "|M_" + a + ",Ed| / M_c," + a + ",Rd",
                          valid(McRd) ? magnitude(kNm(M)) + " / " + kNm(McRd) : "M_c," + a + ",Rd = 0: not computed",
                          u.value(), c.unverifiedAll || !valid(McRd));
    }
    const kat::Nullable<double> u = c.r.getUtilization(R::Bending);
    if (!u) return;
    const double y = uy.valueOr(0.0), z = uz.valueOr(0.0);
    if (valid(y) && valid(z)) {
        // 6.2.9.1(6) with n = 0, the exponents of the kind as the check takes them.
        const Kind kind = c.init.getSectionKind();
        double alpha = 1.0, beta = 1.0;
        if (kind == Kind::I) alpha = 2.0;
        if (kind == Kind::O) alpha = beta = 2.0;
        if (kind == Kind::RH) alpha = beta = 1.66;
        sheet.utilization(kBending, "EN 1993-1-1 6.2.9.1(6) (6.41)", "biaxial bending",
                          "(M_y,Ed / M_c,y,Rd)^alpha + (M_z,Ed / M_c,z,Rd)^beta",
                          factor(y) + "^" + fixed(alpha, 2) + " + " + factor(z) + "^" + fixed(beta, 2), u.value(),
                          c.unverifiedAll);
    } else {
        sheet.utilization(kBending, "EN 1993-1-1 6.2.5", "bending", valid(y) || !valid(z) ? "M_y,Ed / M_c,y,Rd" : "M_z,Ed / M_c,z,Rd",
                          factor(valid(y) || !valid(z) ? y : z), u.value(), c.unverifiedAll);
    }
}

// The formula and numbers of the torsion-reduced shear resistance of 6.2.7(9) for the kind.
std::pair<std::string, std::string> torsionReducedShear(const CrossSectionContext& c, Kind kind, double VRd,
                                                        const std::string& name)
{
    switch (kind) {
    case Kind::I:
        return {"sqrt(|1 - tau_t,Ed / (1.25 fy / (sqrt(3) gamma_M0))|) " + name + " (6.26)", "(6.26)"};
    case Kind::U:
        return {"(sqrt(1 - tau_t,Ed / (1.25 fy / (sqrt(3) gamma_M0))) - tau_w,Ed / (fy / (sqrt(3) gamma_M0))) " + name +
                    ", tau_w,Ed = 0 (6.27)",
                "(6.27)"};
    case Kind::O:
    case Kind::RH: return {"(1 - tau_t,Ed / (fy / (sqrt(3) gamma_M0))) " + name + " (6.28)", "(6.28)"};
    default: break;
    }
    (void)c;
    (void)VRd;
    return {name + " (no reduction for this kind)", ""};
}

void traceShear(Sheet& sheet, const CrossSectionContext& c)
{
    const bool torsion = valid(c.utilizationOr0(R::Torsion));
    const Kind kind = c.init.getSectionKind();
    for (const Axis axis : {Axis::z, Axis::y}) {
        const R::UtilizationType type = axis == Axis::z ? R::ShearZ : R::ShearY;
        const kat::Nullable<double> u = c.r.getUtilization(type);
        if (!u) continue;
        const std::string a = axis == Axis::z ? "z" : "y";
        const double V = axis == Axis::z ? c.request.forces.getVz() : c.request.forces.getVy();
        if (idle(V, u)) continue;
        const double VRd = axis == Axis::z ? c.r.getResistanceVzRd() : c.r.getResistanceVyRd();
        const std::string name = c.plastic ? "V_pl," + a + ",Rd" : "V_c," + a + ",Rd";
        if (torsion && !c.plastic) {
            sheet.notVerified(kShear, "EN 1993-1-1 6.2.7(9)", "V_" + a + ",Ed / V_pl,T," + a + ",Rd",
                              "shear with torsion",
                              "shear with torsion is verified for classes 1 and 2 only; the library records " +
                                  factor(u.value()),
                              u.value());
            continue;
        }
        if (!valid(VRd)) {
            sheet.notVerified(kShear, "EN 1993-1-1 6.2.6", "V_" + a + ",Ed / " + name, "shear",
                              name + " = 0: no shear resistance was computed (class 4, or no shear area); the "
                                     "library records " + factor(u.value()),
                              u.value());
            continue;
        }
        if (c.plastic) {
            const double Av = axis == Axis::z ? c.section.getAvz() : c.section.getAvy();
            sheet.value(kShear, "EN 1993-1-1 6.2.6(2) (6.18)", name, "A_v," + a + " (fy / sqrt(3)) / gamma_M0",
                        cm2(Av) + " · (" + c.fyText() + " / sqrt(3)) / " + c.g0(), kN(VRd), VRd);
        } else {
            const double I = axis == Axis::z ? c.section.getIy() : c.section.getIz();
            const double S = axis == Axis::z ? c.section.getSys(0) : c.section.getSzs(0);
            const std::string b = axis == Axis::z ? "y" : "z";
            sheet.value(kShear, "EN 1993-1-1 6.2.6(4) (6.20)", name,
                        "I_" + b + " t (fy / sqrt(3)) / (gamma_M0 S_" + b + ")",
                        cm4(I) + " · " + mm(c.section.getGoverningThickness()) + " · (" + c.fyText() + " / sqrt(3)) / (" +
                            c.g0() + " · " + cm3(S) + ")",
                        kN(VRd), VRd);
        }
        std::string resistance = name;
        double R_ = VRd;
        if (torsion) {
            const double VTRd = axis == Axis::z ? c.r.getResistanceVzTRd() : c.r.getResistanceVyTRd();
            const double t = kind == Kind::I || kind == Kind::T ? c.section.getTorsionThickness()
                             : c.init.getThicknesses().empty() ? 0.0
                                                               : c.init.getThicknesses().front();
            const double It = c.section.getIt();
            const double tau = valid(It * t) ? c.request.forces.getMt() * t / It : 0.0;
            const auto [formula, clause] = torsionReducedShear(c, kind, VRd, name);
            resistance = "V_pl,T," + a + ",Rd";
            sheet.value(kShear, std::string("EN 1993-1-1 6.2.7(9) ") + clause, resistance, formula,
                        "tau_t,Ed = T_Ed t / I_t = " + kNm(c.request.forces.getMt()) + " · " + mm(t) + " / " + cm4(It) +
                            " = " + fixed(tau / 1000.0, 1) + " N/mm², " + name + " = " + kN(VRd),
                        kN(VTRd), VTRd);
            R_ = VTRd;
        }
        const bool signedZ = axis == Axis::z;  // the z utilization keeps the sign of Vz
        sheet.utilization(kShear, torsion ? "EN 1993-1-1 6.2.7(9) (6.25)" : "EN 1993-1-1 6.2.6 (6.17)",
                          "V_" + a + ",Ed / " + resistance,
                          signedZ || torsion ? "V_" + a + ",Ed / " + resistance : "|V_" + a + ",Ed| / " + resistance,
                          (signedZ || torsion ? kN(V) : magnitude(kN(V))) + " / " + kN(R_), u.value(), c.unverifiedAll);
    }
    if (const kat::Nullable<double> u = c.r.getUtilization(R::Shear)) {
        sheet.utilization(kShear, "EN 1993-1-1 6.2.6", "shear", "max(V_y,Ed / V_y,Rd, V_z,Ed / V_z,Rd)",
                          "max(" + factor(c.utilizationOr0(R::ShearY)) + ", " + factor(c.utilizationOr0(R::ShearZ)) + ")",
                          u.value(), c.unverifiedAll);
    }
}

void traceTorsion(Sheet& sheet, const CrossSectionContext& c)
{
    const kat::Nullable<double> u = c.r.getUtilization(R::Torsion);
    if (!u) return;
    // The plastic torsion resistance as the check forms it (its own rule: times sqrt(3)).
    const double It = c.section.getIt(), zMax = c.section.getZMax();
    const double TRd = It / zMax * (c.fy / c.gammaM0) * sqrt3;
    const double T = c.request.forces.getMt();
    if (idle(T, u)) {
        sheet.utilization(kTorsion, "EN 1993-1-1 6.2.7 (6.23)", "T_Ed / T_Rd", "|T_Ed| / T_Rd", "T_Ed = 0", u.value(),
                          c.unverifiedAll);
        return;
    }
    sheet.value(kTorsion, "EN 1993-1-1 6.2.7", "T_Rd", "I_t / z_max · (fy / gamma_M0) · sqrt(3)",
                cm4(It) + " / " + mm(zMax) + " · (" + c.fyText() + " / " + c.g0() + ") · sqrt(3)", kNm(TRd), TRd);
    sheet.utilization(kTorsion, "EN 1993-1-1 6.2.7 (6.23)", "T_Ed / T_Rd", "|T_Ed| / T_Rd",
                      magnitude(kNm(T)) + " / " + kNm(TRd), u.value(), c.unverifiedAll);
}

void traceShearBending(Sheet& sheet, const CrossSectionContext& c)
{
    R record = c.r;  // the shear-torsion getters are not const
    const bool torsion = valid(c.utilizationOr0(R::Torsion));
    const Kind kind = c.init.getSectionKind();
    for (const Axis axis : {Axis::y, Axis::z}) {
        // About y: My with Vz; about z: Mz with Vy.
        const R::UtilizationType type = axis == Axis::y ? R::ShearBendingZ : R::ShearBendingY;
        const kat::Nullable<double> u = c.r.getUtilization(type);
        if (!u) continue;
        const double M = axis == Axis::y ? c.request.forces.getMy() : c.request.forces.getMz();
        if (idle(M, u)) continue;
        const std::string a = axis == Axis::y ? "y" : "z";
        const std::string v = axis == Axis::y ? "z" : "y";
        const R::UtilizationType shear = axis == Axis::y ? R::ShearZ : R::ShearY;
        const bool shearTorsion = torsion && (axis == Axis::y ? record.getVerifiedShearTorsionAxisZ()
                                                              : record.getVerifiedShearTorsionAxisY());
        double uv = 0.0;
        if (shearTorsion)
            uv = axis == Axis::y ? record.getUtilizationShearTorsionAxisZ() : record.getUtilizationShearTorsionAxisY();
        else
            uv = c.r.isFulfilled(shear) ? c.utilizationOr0(shear) : 0.0;
        const double x = 2.0 * uv - 1.0;
        const double rho = uv >= 0.55 ? x * x : 0.0;
        const std::string rhoName = "rho_" + v;
        sheet.value(kShearBending, "EN 1993-1-1 6.2.8(3)", rhoName,
                    "(2 V_Ed / V_Rd - 1)² for V_Ed / V_Rd >= 0.55, else 0",
                    uv >= 0.55 ? "(2 · " + factor(uv) + " - 1)²"
                               : "V_" + v + ",Ed / V_" + v + ",Rd = " + factor(uv) +
                                     (c.r.isFulfilled(shear) ? " < 0.55" : " (shear not fulfilled: taken as 0)"),
                    factor(rho), rho);
        const std::string name = "M_" + a + ",V,Rd";
        if (axis == Axis::y && kind == Kind::I && !valid(c.utilizationOr0(R::BendingZ))) {
            // 6.2.8(5), (6.30): I sections bent about y, not above Mc,y,Rd; the check divides the signed My.
            const double tw = c.section.getWebThickness();
            if (valid(tw)) {
                const double Aw = c.section.getWebArea();
                const double Wply = c.section.getWply();
                const double MyVRd = (Wply - rho * Aw * Aw / (4.0 * tw)) * c.fy / c.gammaM0;
                const double McRd = Wply * c.fy / c.gammaM0;
                const double governing = MyVRd < McRd ? MyVRd : McRd;
                sheet.value(kShearBending, "EN 1993-1-1 6.2.8(5) (6.30)", name,
                            "(W_pl,y - rho A_w² / (4 t_w)) fy / gamma_M0 <= W_pl,y fy / gamma_M0",
                            "(" + cm3(Wply) + " - " + factor(rho) + " · (" + cm2(Aw) + ")² / (4 · " + mm(tw) + ")) · " +
                                c.fyText() + " / " + c.g0(),
                            kNm(governing), governing);
                sheet.utilization(kShearBending, "EN 1993-1-1 6.2.8 (6.12)", "M_y,Ed / " + name, "M_y,Ed / " + name,
                                  kNm(M) + " / " + kNm(governing), u.value(), c.unverifiedAll || !valid(MyVRd));
                continue;
            }
        }
        const double reduction = uv >= 0.55 ? 1.0 - x * x : 1.0;
        const double McRd = momentResistance(c, axis);
        const double MVRd = reduction * McRd;
        sheet.value(kShearBending, "EN 1993-1-1 6.2.8(3)", name, "(1 - " + rhoName + ") M_c," + a + ",Rd",
                    "(1 - " + factor(rho) + ") · " + kNm(McRd), kNm(MVRd), MVRd);
        sheet.utilization(kShearBending, "EN 1993-1-1 6.2.8 (6.12)", "M_" + a + ",Ed / " + name,
                          "|M_" + a + ",Ed| / " + name,
                          valid(MVRd) ? magnitude(kNm(M)) + " / " + kNm(MVRd) : name + " = 0: not computed", u.value(),
                          c.unverifiedAll || !valid(MVRd));
    }
    if (const kat::Nullable<double> u = c.r.getUtilization(R::ShearBending)) {
        sheet.utilization(kShearBending, "EN 1993-1-1 6.2.8", "bending and shear",
                          "max(M_y,Ed / M_y,V,Rd, M_z,Ed / M_z,V,Rd)",
                          "max(" + factor(c.utilizationOr0(R::ShearBendingZ)) + ", " +
                              factor(c.utilizationOr0(R::ShearBendingY)) + ")",
                          u.value(), c.unverifiedAll);
    }
}

void traceAxialBending(Sheet& sheet, const CrossSectionContext& c)
{
    const kat::Nullable<double> u = c.r.getUtilization(R::AxialBending);
    const bool unverified = c.unverifiedAll || c.unverifiedAxial;
    if (!u) return;
    const double n = c.utilizationOr0(R::Axial);
    const Kind kind = c.init.getSectionKind();
    const bool plasticPath = c.plastic && (kind == Kind::I || kind == Kind::O || kind == Kind::R || kind == Kind::RH);
    if (!plasticPath) {
        // 6.2.9.2 / 6.2.1(7): the linear sum of the utilizations.
        const double uy = c.utilizationOr0(R::BendingY), uz = c.utilizationOr0(R::BendingZ);
        sheet.utilization(kAxialBending, "EN 1993-1-1 6.2.1(7) (6.2)", "bending and axial force",
                          "N_Ed / N_Rd + M_y,Ed / M_y,Rd + M_z,Ed / M_z,Rd",
                          factor(n) + " + " + factor(uy) + " + " + factor(uz), u.value(), unverified);
        return;
    }
    // The reduced area of 6.2.10(3) and the ratio a of 6.2.9.1(5).
    const double rhoY = c.r.getShearReductionFactorY().valueOr(1.0);
    const double rhoZ = c.r.getShearReductionFactorZ().valueOr(1.0);
    const double A = c.section.getA(), Avz = c.section.getAvz();
    const double Ared = Avz * rhoZ + (A - Avz) * rhoY;
    const double t = c.section.getGoverningThickness();
    const double aI = valid(Ared) ? (Ared - 2.0 * c.section.getFlangeWidth1() * t) / Ared : 0.0;
    const std::string nText = "n = " + factor(n);
    // The web's share of the axial force as the check forms it (fy of the web reduced for shear).
    const double fyWeb = c.r.getShearReductionFactorZ().hasValue() ? c.fy * rhoZ : c.fy;
    const double Aw = c.section.getWebArea();
    const double webRatio = valid(Aw * fyWeb) ? std::fabs(c.request.forces.getN() / (Aw * fyWeb / c.gammaM0)) : 0.0;
    for (const Axis axis : {Axis::y, Axis::z}) {
        const std::string ax = axis == Axis::y ? "y" : "z";
        const R::UtilizationType type = axis == Axis::y ? R::AxialBendingY : R::AxialBendingZ;
        const double M = axis == Axis::y ? c.request.forces.getMy() : c.request.forces.getMz();
        if (idle(M, c.r.getUtilization(type))) continue;
        const double MNRd = c.r.getMRd(axis).value();
        const double MplRd = momentResistance(c, axis);
        std::string formula, clause = "EN 1993-1-1 6.2.9.1";
        std::string numbers;
        const std::string mpl = "M_pl," + ax + ",Rd";
        switch (kind) {
        case Kind::I:
            if (axis == Axis::y) {
                if (c.r.getRequiredAxialBending()) {
                    formula = mpl + " (1 - n) / (1 - 0.5 a), a = min((A - 2 b t_f) / A, 0.5)";
                    clause = "EN 1993-1-1 6.2.9.1(5) (6.36)";
                    numbers = kNm(MplRd) + " · (1 - " + factor(n) + ") / (1 - 0.5 · " +
                              factor(aI < 0.5 ? aI : 0.5) + ")";
                } else {
                    formula = mpl + ", reduced only if n > 0.25 and N_Ed > 0.5 h_w t_w fy / gamma_M0";
                    clause = "EN 1993-1-1 6.2.9.1(4) (6.33), (6.34)";
                    numbers = nText + ", N_Ed / (A_w fy / gamma_M0) = " + factor(webRatio);
                }
            } else {
                formula = mpl + " (1 - ((n - a) / (1 - a))²) if n > a and N_Ed > h_w t_w fy / gamma_M0";
                clause = "EN 1993-1-1 6.2.9.1(5) (6.37), (6.38)";
                numbers = nText + ", a = " + factor(aI) + ", N_Ed / (A_w fy / gamma_M0) = " + factor(webRatio) + ", " +
                          kNm(MplRd);
            }
            break;
        case Kind::R:
            formula = mpl + " (1 - n²)";
            numbers = kNm(MplRd) + " · (1 - " + factor(n) + "²)";
            break;
        case Kind::RH:
            formula = mpl + " (1 - n) / (1 - 0.5 a), a <= 0.5 (not limited to " + mpl + " by the library)";
            clause = "EN 1993-1-1 6.2.9.1(6) (6.39), (6.40)";
            numbers = nText + ", " + mpl + " = " + kNm(MplRd);
            break;
        case Kind::O:
            formula = mpl + " (1 - n^1.7)";
            numbers = kNm(MplRd) + " · (1 - " + factor(n) + "^1.7)";
            break;
        default: break;
        }
        sheet.value(kAxialBending, clause, "M_N," + ax + ",Rd", formula, numbers, kNm(MNRd), MNRd);
        if (const kat::Nullable<double> ua = c.r.getUtilization(type)) {
            sheet.utilization(kAxialBending, "EN 1993-1-1 6.2.9.1 (6.31)", "M_" + ax + ",Ed / M_N," + ax + ",Rd",
                              "|M_" + ax + ",Ed| / M_N," + ax + ",Rd",
                              valid(MNRd) ? magnitude(kNm(M)) + " / " + kNm(MNRd) : "M_N," + ax + ",Rd = 0: not computed",
                              ua.value(), unverified || !valid(MNRd));
        }
    }
    const double uy = c.utilizationOr0(R::AxialBendingY), uz = c.utilizationOr0(R::AxialBendingZ);
    if (valid(uy) && valid(uz)) {
        sheet.utilization(kAxialBending, "EN 1993-1-1 6.2.9.1(6) (6.41)", "bending and axial force",
                          "(M_y,Ed / M_N,y,Rd)^alpha + (M_z,Ed / M_N,z,Rd)^beta",
                          factor(uy) + "^" + fixed(c.r.getAlpha(), 2) + " + " + factor(uz) + "^" +
                              fixed(c.r.getBeta(), 2),
                          u.value(), unverified);
    } else {
        sheet.utilization(kAxialBending, "EN 1993-1-1 6.2.9.1", "bending and axial force",
                          valid(uy) || !valid(uz) ? "M_y,Ed / M_N,y,Rd" : "M_z,Ed / M_N,z,Rd",
                          factor(valid(uy) || !valid(uz) ? uy : uz), u.value(), unverified);
    }
}

void traceAxialShearBending(Sheet& sheet, const CrossSectionContext& c)
{
    const kat::Nullable<double> u = c.r.getUtilization(R::AxialShearBending);
    if (!u) return;
    const std::string formula = "6.2.9 with A_v and the moments reduced by (1 - rho)";
    if (!c.r.isFulfilled(R::AxialBending)) {
        // The check forms this utilization only when 6.2.9 is fulfilled; otherwise it records 0.
        sheet.notVerified(kAxialShearBending, "EN 1993-1-1 6.2.10", "bending, shear and axial force", formula,
                          c.r.getUtilization(R::AxialBending)
                              ? "not evaluated: bending and axial force (6.2.9) already exceed 1.0; the library records " +
                                    factor(u.value())
                              : "not evaluated: N_Ed exceeds N_Rd, so 6.2.9 did not run; the library records " +
                                    factor(u.value()),
                          u.value());
        return;
    }
    const double rhoY = c.r.getShearReductionFactorY().valueOr(1.0);
    const double rhoZ = c.r.getShearReductionFactorZ().valueOr(1.0);
    sheet.utilization(kAxialShearBending, "EN 1993-1-1 6.2.10 (6.2.8(3), 6.2.9)", "bending, shear and axial force",
                      formula,
                      "1 - rho_z = " + factor(rhoZ) + ", 1 - rho_y = " + factor(rhoY),
                      u.value(), c.unverifiedAll || c.unverifiedAxial);
}

// ---- member ----------------------------------------------------------------------------------------

struct MemberContext {
    const MemberRequest& request;
    const MemberOutcome& outcome;
    const SDBSection& section;
    const SteelDesign::SectionInitializer& init;
    const B& r;
    double fy, gammaM1;
    bool unverifiedAll;  // class 4
    bool unverifiedLT;   // lateral-torsional buckling and what uses it: not what was asked for
    bool unverified61;   // (6.61) needs chiLT,mod

    std::string fyText() const { return stress(fy); }
    std::string g1() const { return gamma(gammaM1); }
    double utilizationOr0(U type) const { return r.getUtilization(type).valueOr(0.0); }
};

void traceFlexural(Sheet& sheet, const MemberContext& c)
{
    if (!c.r.getChi(Axis::y).hasValue()) return;
    const double A = c.section.getA();
    const double E = c.init.getEs();
    const double N = c.request.forces.getN();
    sheet.value(kFlexural, "EN 1993-1-1 6.3.1.2", "N_Rk", "A fy", cm2(A) + " · " + c.fyText(), kN(c.r.getNRk()),
                c.r.getNRk());
    for (const Axis axis : {Axis::y, Axis::z}) {
        const std::string a = axis == Axis::y ? "y" : "z";
        const double I = axis == Axis::y ? c.section.getIy() : c.section.getIz();
        const double L = axis == Axis::y ? c.request.lengths.y : c.request.lengths.z;
        const double Ncr = c.r.getNcr(axis);
        const double lambda = c.r.getLambda(axis);
        const SteelDesign::BucklingCurve curve = c.r.getBucklingCurveCompression(axis).valueOr(SteelDesign::BucklingCurve::none);
        const double alpha = imperfection(curve);
        // (6.49) as the check forms it.
        const double phi = 0.5 * (1.0 + alpha * (lambda - 0.2) + lambda * lambda);
        const double chi = c.r.getChi(axis).valueOr(0.0);
        const U type = axis == Axis::y ? U::CompressionAxisY : U::CompressionAxisZ;
        const double NbRd = c.r.getBucklingResistance(type).valueOr(0.0);
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.2", "N_cr," + a, "pi² E I_" + a + " / L_cr," + a + "²",
                    "pi² · " + stress(E) + " · " + cm4(I) + " / (" + metres(L) + ")²", kN(Ncr), Ncr);
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.2 (6.50)", "lambda_bar_" + a, "sqrt(A fy / N_cr," + a + ")",
                    "sqrt(" + cm2(A) + " · " + c.fyText() + " / " + kN(Ncr) + ")", factor(lambda), lambda);
        sheet.value(kFlexural, "EN 1993-1-1 Table 6.2, Table 6.1", "alpha_" + a,
                    "imperfection factor of the buckling curve",
                    curve == SteelDesign::BucklingCurve::none ? "no curve for this section: the library takes 1.0"
                                                              : std::string("curve ") + curveName(curve),
                    factor(alpha), alpha);
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.2 (6.49)", "Phi_" + a,
                    "0.5 (1 + alpha (lambda_bar - 0.2) + lambda_bar²)",
                    "0.5 · (1 + " + factor(alpha) + " · (" + factor(lambda) + " - 0.2) + " + factor(lambda) + "²)",
                    factor(phi), phi);
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.2 (6.49)", "chi_" + a,
                    "1 / (Phi + sqrt(Phi² - lambda_bar²)) <= 1.0",
                    "1 / (" + factor(phi) + " + sqrt(" + factor(phi) + "² - " + factor(lambda) + "²))", factor(chi), chi);
        sheet.value(kFlexural, "EN 1993-1-1 6.3.1.1 (6.47)", "N_b," + a + ",Rd", "chi_" + a + " A fy / gamma_M1",
                    factor(chi) + " · " + cm2(A) + " · " + c.fyText() + " / " + c.g1(), kN(NbRd), NbRd);
        if (const kat::Nullable<double> u = c.r.getUtilization(type))
            sheet.utilization(kFlexural, "EN 1993-1-1 6.3.1.1 (6.46)", "N_Ed / N_b," + a + ",Rd",
                              "|N_Ed| / N_b," + a + ",Rd", magnitude(kN(N)) + " / " + kN(NbRd), u.value(), c.unverifiedAll);
    }
    if (const kat::Nullable<double> u = c.r.getUtilization(U::Compression))
        sheet.utilization(kFlexural, "EN 1993-1-1 6.3.1", "flexural buckling",
                          "max(N_Ed / N_b,y,Rd, N_Ed / N_b,z,Rd)",
                          "max(" + factor(c.utilizationOr0(U::CompressionAxisY)) + ", " +
                              factor(c.utilizationOr0(U::CompressionAxisZ)) + ")",
                          u.value(), c.unverifiedAll);
}

void traceLateralTorsional(Sheet& sheet, const MemberContext& c)
{
    const kat::Nullable<SteelDesign::BucklingCurve> curveLT = c.r.getBucklingCurveBending();
    if (!curveLT) return;
    const bool unverified = c.unverifiedAll || c.unverifiedLT;
    const double Mcr = c.r.getCriticalMoment();
    const double L = c.request.lengths.lateralTorsional;
    std::string formula;
    if (c.outcome.numericalMcr > 0.0)
        formula = "numerical (finite elements): fork supports, the moment diagram, the load at its level";
    else if (std::fabs(c.request.moments.getMcr()) >= 1e-6)
        formula = "given";
    else if (c.request.moments.getMomentDiagram(Axis::y) == SteelDesign::MomentDiagram::Parabolic ||
             std::fabs(c.request.cTheta) >= 1e-6 || std::fabs(c.request.shearPanel) >= 1e-6)
        formula = "N_cr,z = pi² E I_z / L_LT² with the library's moment coefficients for the diagram, the restraints "
                  "and the load level";
    else
        formula = "zeta pi² E I_z / L_LT² (sqrt((I_w + 0.039 L_LT² I_t) / I_z + 0.25 z_p²) + 0.5 z_p) (the "
                  "library's moment coefficients)";
    sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.2(2)", "M_cr", formula,
                "L_LT = " + metres(L) + ", z_p = " + mm(c.r.getZp()) + ", I_z = " + cm4(c.section.getIz()) +
                    ", I_t = " + cm4(c.section.getIt()) + ", I_w = " + cm6(c.init.getIw()),
                kNm(Mcr), Mcr);
    const double W = c.init.findW(Axis::y);
    const double lambdaLT = c.r.getLambdaLT();
    const std::string Wname = modulusName(c.r.getClass(), Axis::y);
    sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.2(1)", "lambda_bar_LT", "sqrt(" + Wname + " fy / M_cr)",
                "sqrt(" + cm3(W) + " · " + c.fyText() + " / " + kNm(Mcr) + ")", factor(lambdaLT), lambdaLT);
    const double alpha = imperfection(curveLT.value());
    const bool rolled = c.r.getChiLT().hasValue();
    sheet.value(kLateralTorsional, rolled ? "EN 1993-1-1 Table 6.5, Table 6.3" : "EN 1993-1-1 Table 6.4, Table 6.3",
                "alpha_LT", "imperfection factor of the lateral-torsional buckling curve",
                curveLT.value() == SteelDesign::BucklingCurve::none ? "no curve for this section: the library takes 1.0"
                                                                    : std::string("curve ") + curveName(curveLT.value()),
                factor(alpha), alpha);
    const double MbRd = c.r.getBucklingResistance(U::Bending).valueOr(0.0);
    const double lambda2 = lambdaLT * lambdaLT;
    std::string mbNumbers;
    if (rolled) {
        const double lambda0 = c.r.getLambdaLT0(), beta = c.r.getBeta();
        const double phi = c.r.getPhi().valueOr(0.0);
        const double chiLT = c.r.getChiLT().value();
        const double kc = c.r.getCorrectionFactor().valueOr(1.0);
        const double f = c.r.getReduceFactor().valueOr(1.0);
        const double chiMod = c.r.getChiLTmod().valueOr(0.0);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(1)", "lambda_bar_LT,0", "plateau length",
                    "lambda_bar_LT,0 = " + fixed(lambda0, 2), factor(lambda0), lambda0);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(1)", "beta", "correction of the curve",
                    "beta = " + fixed(beta, 2), factor(beta), beta);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(1)", "Phi_LT",
                    "0.5 (1 + alpha_LT (lambda_bar_LT - lambda_bar_LT,0) + beta lambda_bar_LT²)",
                    "0.5 · (1 + " + factor(alpha) + " · (" + factor(lambdaLT) + " - " + fixed(lambda0, 2) + ") + " +
                        fixed(beta, 2) + " · " + factor(lambdaLT) + "²)",
                    factor(phi), phi);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3 (6.57)", "chi_LT",
                    "1 / (Phi_LT + sqrt(Phi_LT² - beta lambda_bar_LT²)) <= min(1.0, 1 / lambda_bar_LT²)",
                    "1 / (" + factor(phi) + " + sqrt(" + factor(phi) + "² - " + fixed(beta, 2) + " · " +
                        factor(lambdaLT) + "²))",
                    factor(chiLT), chiLT);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(2), Table 6.6", "k_c", "correction factor of the moment diagram",
                    "k_c = " + factor(kc), factor(kc), kc);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(2) (6.58)", "f",
                    "1 - 0.5 (1 - k_c) (1 - 2.0 (lambda_bar_LT - 0.8)²) <= 1.0",
                    "1 - 0.5 · (1 - " + factor(kc) + ") · (1 - 2.0 · (" + factor(lambdaLT) + " - 0.8)²)", factor(f), f);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.3(2) (6.58)", "chi_LT,mod",
                    "chi_LT / f <= min(1.0, 1 / lambda_bar_LT²)",
                    factor(chiLT) + " / " + factor(f < 1.0 ? f : 1.0), factor(chiMod), chiMod);
        // Mb,Rd takes chiLT / f formed before the limits of (6.57) and (6.58), as the check does.
        const double D = phi + std::sqrt(phi * phi - beta * lambda2);
        const double chiRaw = valid(D) ? 1.0 / D : 0.0;
        const double used = chiRaw / (f < 1.0 ? f : 1.0);
        mbNumbers = factor(used) + " · " + cm3(W) + " · " + c.fyText() + " / " + c.g1();
        if (used != chiMod)
            mbNumbers += " (the library divides chi_LT by f before the limits: " + factor(chiRaw) + " / " +
                         factor(f < 1.0 ? f : 1.0) + " = " + factor(used) + ", not chi_LT,mod = " + factor(chiMod) + ")";
    } else {
        // 6.3.2.2, (6.56): the check keeps neither Phi_LT nor chi_LT; both as it forms them.
        const double phi = 0.5 * (1.0 + alpha * (lambdaLT - 0.2) + lambda2);
        const double D = phi + std::sqrt(phi * phi - lambda2);
        const double chiRaw = valid(D) ? 1.0 / D : 0.0;
        const double chi = chiRaw < 1.0 ? chiRaw : 1.0;
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.2 (6.56)", "Phi_LT",
                    "0.5 (1 + alpha_LT (lambda_bar_LT - 0.2) + lambda_bar_LT²)",
                    "0.5 · (1 + " + factor(alpha) + " · (" + factor(lambdaLT) + " - 0.2) + " + factor(lambdaLT) + "²)",
                    factor(phi), phi);
        sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.2 (6.56)", "chi_LT",
                    "1 / (Phi_LT + sqrt(Phi_LT² - lambda_bar_LT²)) <= 1.0",
                    "1 / (" + factor(phi) + " + sqrt(" + factor(phi) + "² - " + factor(lambdaLT) + "²))", factor(chi),
                    chi);
        mbNumbers = factor(chi) + " · " + cm3(W) + " · " + c.fyText() + " / " + c.g1();
    }
    sheet.value(kLateralTorsional, "EN 1993-1-1 6.3.2.1 (6.55)", "M_b,Rd",
                std::string(rolled ? "chi_LT,mod " : "chi_LT ") + Wname + " fy / gamma_M1", mbNumbers, kNm(MbRd), MbRd);
    if (const kat::Nullable<double> u = c.r.getUtilization(U::BendingAxisY))
        sheet.utilization(kLateralTorsional, "EN 1993-1-1 6.3.2.1 (6.54)", "M_y,Ed / M_b,Rd", "|M_y,Ed| / M_b,Rd",
                          magnitude(kNm(c.request.forces.getMy())) + " / " + kNm(MbRd), u.value(), unverified);
    if (const kat::Nullable<double> u = c.r.getUtilization(U::BendingAxisZ))
        sheet.utilization(kLateralTorsional, "EN 1993-1-1 6.3.2.1", "M_z,Ed / M_b,Rd", "|M_z,Ed| / M_b,Rd",
                          magnitude(kNm(c.request.forces.getMz())) + " / " + kNm(MbRd), u.value(), unverified);
    if (const kat::Nullable<double> u = c.r.getUtilization(U::Bending))
        sheet.utilization(kLateralTorsional, "EN 1993-1-1 6.3.2", "lateral-torsional buckling",
                          "max(M_y,Ed / M_b,Rd, M_z,Ed / M_b,Rd)",
                          "max(" + factor(c.utilizationOr0(U::BendingAxisY)) + ", " +
                              factor(c.utilizationOr0(U::BendingAxisZ)) + ")",
                          u.value(), unverified);
}

std::string momentsText(const SteelDesign::MomentDistribution& m, Axis axis)
{
    return kNm(m.getMomentWert(axis, 0)) + ", " + kNm(m.getMomentWert(axis, 1)) + ", " + kNm(m.getMomentWert(axis, 2)) +
           (m.getMomentDiagram(axis) == SteelDesign::MomentDiagram::Parabolic ? " (parabolic)" : " (polygonal)");
}

void traceInteraction(Sheet& sheet, const MemberContext& c)
{
    if (!c.r.getUtilization(U::CompressionBendingAxisY).hasValue()) return;
    const bool unverified = c.unverifiedAll || c.unverifiedLT;
    const double Cmy = c.r.getCm(Axis::y), Cmz = c.r.getCm(Axis::z);
    for (const Axis axis : {Axis::y, Axis::z}) {
        const std::string a = axis == Axis::y ? "y" : "z";
        const double Cm = axis == Axis::y ? Cmy : Cmz;
        sheet.value(kInteraction, "EN 1993-1-1 Annex B, Table B.3", "C_m" + a,
                    std::string("equivalent uniform moment factor of the diagram M1, Mm, M2") +
                        (c.request.cmFloor ? ", at least 0.9" : ""),
                    "M_" + a + ": " + momentsText(c.request.moments, axis), factor(Cm), Cm);
    }
    const double ny = c.utilizationOr0(U::CompressionAxisY), nz = c.utilizationOr0(U::CompressionAxisZ);
    const double ly = c.r.getLambda(Axis::y), lz = c.r.getLambda(Axis::z);
    const bool elastic = c.r.getClass() >= 3;
    const bool sectionI = c.init.getSectionKind() == Kind::I;
    const double kyy = c.r.getInteractionFactor(K::kyy), kzz = c.r.getInteractionFactor(K::kzz);
    const double kyz = c.r.getInteractionFactor(K::kyz), kzy = c.r.getInteractionFactor(K::kzy);
    const std::string table = elastic ? "EN 1993-1-1 Annex B, Table B.1 (classes 3, 4)" : "EN 1993-1-1 Annex B, Table B.1 (classes 1, 2)";
    const std::string table2 = c.request.torsionallyDeformable ? "EN 1993-1-1 Annex B, Table B.2" : table;
    const std::string Y = factor(Cmy), Z = factor(Cmz), NY = factor(ny), NZ = factor(nz), LY = factor(ly), LZ = factor(lz);
    if (elastic) {
        sheet.value(kInteraction, table, "k_yy", "min(C_my (1 + 0.6 lambda_bar_y n_y), C_my (1 + 0.6 n_y))",
                    "min(" + Y + " · (1 + 0.6 · " + LY + " · " + NY + "), " + Y + " · (1 + 0.6 · " + NY + "))",
                    factor(kyy), kyy);
        sheet.value(kInteraction, table, "k_zz", "min(C_mz (1 + 0.6 lambda_bar_z n_z), C_mz (1 + 0.6 n_z))",
                    "min(" + Z + " · (1 + 0.6 · " + LZ + " · " + NZ + "), " + Z + " · (1 + 0.6 · " + NZ + "))",
                    factor(kzz), kzz);
        sheet.value(kInteraction, table, "k_yz", "k_zz", factor(kzz), factor(kyz), kyz);
    } else {
        sheet.value(kInteraction, table, "k_yy", "min(C_my (1 + (lambda_bar_y - 0.2) n_y), C_my (1 + 0.8 n_y))",
                    "min(" + Y + " · (1 + (" + LY + " - 0.2) · " + NY + "), " + Y + " · (1 + 0.8 · " + NY + "))",
                    factor(kyy), kyy);
        if (sectionI)
            sheet.value(kInteraction, table, "k_zz",
                        "min(C_my (1 + (2 lambda_bar_z - 0.6) n_z), C_my (1 + 1.4 n_z)) (the library takes C_my)",
                        "min(" + Y + " · (1 + (2 · " + LZ + " - 0.6) · " + NZ + "), " + Y + " · (1 + 1.4 · " + NZ + "))",
                        factor(kzz), kzz);
        else
            sheet.value(kInteraction, table, "k_zz", "min(C_mz (1 + (lambda_bar_z - 0.2) n_z), C_mz (1 + 0.8 n_z))",
                        "min(" + Z + " · (1 + (" + LZ + " - 0.2) · " + NZ + "), " + Z + " · (1 + 0.8 · " + NZ + "))",
                        factor(kzz), kzz);
        sheet.value(kInteraction, table, "k_yz", "0.6 k_zz", "0.6 · " + factor(kzz), factor(kyz), kyz);
    }
    if (c.request.torsionallyDeformable) {
        sheet.value(kInteraction, table2, "k_zy",
                    elastic ? "max(1 - 0.05 lambda_bar_z n_z / (C_mLT - 0.25), 1 - 0.05 n_z / (C_mLT - 0.25)), C_mLT = C_my"
                            : "1 - 0.1 lambda_bar_z n_z / (C_mLT - 0.25) with the limits of Table B.2, C_mLT = C_my",
                    "lambda_bar_z = " + LZ + ", n_z = " + NZ + ", C_mLT = " + Y, factor(kzy), kzy);
    } else if (sectionI && std::fabs(c.request.forces.getMz()) < 1e-6) {
        sheet.value(kInteraction, table, "k_zy", "0 for an I section without M_z,Ed (the library's rule)", "0",
                    factor(kzy), kzy);
    } else {
        sheet.value(kInteraction, table, "k_zy", elastic ? "0.8 k_yy" : "0.6 k_yy",
                    std::string(elastic ? "0.8 · " : "0.6 · ") + factor(kyy), factor(kzy), kzy);
    }
    const double MyRk = c.r.getMRk(Axis::y), MzRk = c.r.getMRk(Axis::z);
    const double My = c.request.forces.getMy(), Mz = c.request.forces.getMz();
    if (!c.unverified61) {
        const double chiMod = c.r.getChiLTmod().valueOr(0.0);
        sheet.utilization(kInteraction, "EN 1993-1-1 6.3.3(4) (6.61)", "(6.61)",
                          "N_Ed / (chi_y N_Rk / gamma_M1) + k_yy M_y,Ed / (chi_LT,mod M_y,Rk / gamma_M1) + k_yz M_z,Ed / "
                          "(M_z,Rk / gamma_M1)",
                          NY + " + " + factor(kyy) + " · " + kNm(My) + " / (" + factor(chiMod) + " · " + kNm(MyRk) +
                              " / " + c.g1() + ") + " + factor(kyz) + " · " + kNm(Mz) + " / (" + kNm(MzRk) + " / " +
                              c.g1() + ")",
                          c.r.getUtilization(U::CompressionBendingAxisY).value(), unverified);
    }
    if (const kat::Nullable<double> u = c.r.getUtilization(U::CompressionBendingAxisZ))
        sheet.utilization(kInteraction, "EN 1993-1-1 6.3.3(4) (6.62)", "(6.62)",
                          "N_Ed / (chi_z N_Rk / gamma_M1) + k_zy M_y,Ed / M_b,Rd + k_zz M_z,Ed / (M_z,Rk / gamma_M1)",
                          NZ + " + " + factor(kzy) + " · " + factor(c.utilizationOr0(U::BendingAxisY)) + " + " +
                              factor(kzz) + " · " + kNm(Mz) + " / (" + kNm(MzRk) + " / " + c.g1() + ")",
                          u.value(), unverified);
    if (!c.unverified61) {
        if (const kat::Nullable<double> u = c.r.getUtilization(U::CompressionBending))
            sheet.utilization(kInteraction, "EN 1993-1-1 6.3.3", "compression and bending", "max((6.61), (6.62))",
                              "max(" + factor(c.utilizationOr0(U::CompressionBendingAxisY)) + ", " +
                                  factor(c.utilizationOr0(U::CompressionBendingAxisZ)) + ")",
                              u.value(), unverified);
    }
}

void traceShearBuckling(Sheet& sheet, const MemberContext& c)
{
    const double fy = c.fy;
    const std::span<const double> thicknesses = c.init.getThicknesses();
    const double tw = thicknesses.empty() ? 0.0 : thicknesses[0];
    const double tf = thicknesses.empty() ? 0.0 : thicknesses.size() > 1 ? thicknesses[1] : thicknesses.back();
    const double hw = c.init.getHw();
    const double eta = KaMath::isFuzzyGreater(fy, 460000.0, 1e-6) ? 1.0 : 1.2;
    const double eps = fy > 0.0 ? std::sqrt(235.0 / (fy / 1000.0)) : 0.0;
    if (c.r.getShearBucklingErrorCode() != SteelDesign::ErrorCode::NoError || !c.r.getLambdaW().hasValue()) {
        if (!valid(tw)) return;
        sheet.value(kShearBuckling, "EN 1993-1-5 5.1(2)", "h_w / t_w",
                    "h_w / t_w <= 72 epsilon / eta: no shear buckling check",
                    mm(hw) + " / " + mm(tw) + " = " + fixed(hw / tw, 1) + " <= 72 · " + factor(eps) + " / " +
                        fixed(eta, 1) + " = " + fixed(72.0 * eps / eta, 1),
                    "not required", hw / tw);
        return;
    }
    const double lambdaW = c.r.getLambdaW().value();
    const double chiW = c.r.getChiW().valueOr(0.0);
    const double Vbw = c.r.getVbRd(P::Web).valueOr(0.0);
    const double Vbf = c.r.getVbRd(P::Flange).valueOr(0.0);
    const double Vb = c.r.getVbRd(P::Total).valueOr(0.0);
    const double bf = 0.5 * (c.section.getFlangeWidth1() + c.section.getFlangeWidth2());
    sheet.value(kShearBuckling, "EN 1993-1-5 5.3(3) (5.6)", "lambda_bar_w", "h_w / (86.4 t_w epsilon)",
                mm(hw) + " / (86.4 · " + mm(tw) + " · " + factor(eps) + ")", factor(lambdaW), lambdaW);
    sheet.value(kShearBuckling, "EN 1993-1-5 5.3(1), Table 5.1", "chi_w",
                "eta for lambda_bar_w < 0.83 / eta, else 0.83 / lambda_bar_w (non-rigid end post)",
                "eta = " + fixed(eta, 1) + ", 0.83 / eta = " + factor(0.83 / eta) + ", lambda_bar_w = " + factor(lambdaW),
                factor(chiW), chiW);
    sheet.value(kShearBuckling, "EN 1993-1-5 5.2(1) (5.2)", "V_bw,Rd", "chi_w fyw h_w t_w / (sqrt(3) gamma_M1)",
                factor(chiW) + " · " + c.fyText() + " · " + mm(hw) + " · " + mm(tw) + " / (sqrt(3) · " + c.g1() + ")",
                kN(Vbw), Vbw);
    sheet.value(kShearBuckling, "EN 1993-1-5 5.4(1) (5.8)", "V_bf,Rd",
                "b_f t_f² fyf (1 - (M_Ed / M_f,Rd)²) / (c gamma_M1), c = a (0.25 + 1.6 b_f t_f² fyf / (t_w h_w² fyw))",
                "b_f = " + mm(bf) + ", t_f = " + mm(tf) + ", M_Ed = " + kNm(c.request.forces.getMy()), kN(Vbf), Vbf);
    sheet.value(kShearBuckling, "EN 1993-1-5 5.2(1) (5.1)", "V_b,Rd",
                "V_bw,Rd + V_bf,Rd <= eta fyw h_w t_w / (sqrt(3) gamma_M1)",
                kN(Vbw) + " + " + kN(Vbf) + " <= " + fixed(eta, 1) + " · " + c.fyText() + " · " + mm(hw) + " · " +
                    mm(tw) + " / (sqrt(3) · " + c.g1() + ")",
                kN(Vb), Vb);
    if (const kat::Nullable<double> u = c.r.getUtilizationShearBuckling()) {
        const double V = std::fmax(std::fabs(c.request.forces.getVz()), std::fabs(c.request.forces.getVy()));
        sheet.utilization(kShearBuckling, "EN 1993-1-5 5.5 (5.10)", "eta_3", "V_Ed / V_b,Rd, V_Ed = max(|V_z,Ed|, |V_y,Ed|)",
                          kN(V) + " / " + kN(Vb), u.value(), c.unverifiedAll);
    }
}

} // namespace

const char* toString(TraceStatus status)
{
    switch (status) {
    case TraceStatus::Value: return "value";
    case TraceStatus::Fulfilled: return "fulfilled";
    case TraceStatus::NotFulfilled: return "not fulfilled";
    case TraceStatus::NotVerified: return "not verified";
    }
    return "";
}

std::vector<TraceLine> traceCrossSection(const CrossSectionRequest& request, const CrossSectionOutcome& outcome)
{
    Sheet sheet;
    if (!request.section) return sheet.lines;
    const int cls = outcome.initializer.getClass();
    const CrossSectionContext c{request,
                                outcome,
                                *request.section,
                                outcome.initializer,
                                outcome.results,
                                outcome.initializer.getFy(),
                                outcome.gammaM0,
                                cls,
                                cls == 1 || cls == 2,
                                (outcome.limitations & Class4) != 0,
                                (outcome.limitations & CrossSectionNotSupported) != 0};
    traceClassification(sheet, c);
    traceAxial(sheet, c);
    traceBending(sheet, c);
    traceShear(sheet, c);
    traceTorsion(sheet, c);
    traceShearBending(sheet, c);
    traceAxialBending(sheet, c);
    traceAxialShearBending(sheet, c);
    // A summary utilization the check left without a value: said so in its own group.
    for (const R::UtilizationType type : crossSectionSummary) {
        if (outcome.results.getUtilization(type).hasValue()) continue;
        std::string reason = "not computed by the cross-section check";
        if (type == R::AxialBending && outcome.results.getUtilization(R::Axial).hasValue() &&
            !outcome.results.isFulfilled(R::Axial))
            reason = "not computed: N_Ed exceeds N_Rd, so bending with axial force (6.2.9) did not run";
        sheet.notVerified(groupOf(type), "EN 1993-1-1 6.2", R::nameOf(type), groupOf(type), reason);
    }
    addLimitations(sheet, outcome.limitations, true);
    return sheet.lines;
}

std::vector<TraceLine> traceMember(const MemberRequest& request, const MemberOutcome& outcome)
{
    Sheet sheet;
    if (!request.section) return sheet.lines;
    const std::uint32_t lim = outcome.limitations;
    const MemberContext c{request,
                          outcome,
                          *request.section,
                          outcome.initializer,
                          outcome.results,
                          outcome.initializer.getFy(),
                          request.gammaM1,
                          (lim & Class4) != 0,
                          (lim & (BiaxialBendingWithoutCompression | NumericalMcrNotFound)) != 0,
                          (lim & InteractionNeedsRolledMethod) != 0};
    traceFlexural(sheet, c);
    traceLateralTorsional(sheet, c);
    traceInteraction(sheet, c);
    traceShearBuckling(sheet, c);
    addLimitations(sheet, lim, false);
    return sheet.lines;
}

} // namespace design
