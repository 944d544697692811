#include "BucklingTestAccess.h"

#include <KaMath.h>

#include <gtest/gtest.h>

#include <cmath>

using namespace SteelDesign;
using namespace buckling_test;
using Access = BucklingResistanceTestAccess;
using U = BucklingResults::UtilizationType;
using MDC = MomentDiagramCases;

namespace {

constexpr double pi2 = KaMath::Pi * KaMath::Pi;

// IPE 300 (table row), S235, L = 6 m. The initializer recomputes Iw = Iz (h - tf)^2 / 4 because the host's
// value is below 1e-6: Iw = 603.8e-8 * 0.2893^2 / 4 = 1.263368e-7 m6.
//   Ncr,z = pi^2 E Iz / L^2 = 9.8696 * 210e6 * 603.8e-8 / 36 = 347.6239 kN
//   c2    = (Iw + 0.039 L^2 It) / Iz = (1.263368e-7 + 0.039 * 36 * 20.12e-8) / 603.8e-8 = 0.0677081
//   Mcr0  = Ncr,z sqrt(c2) = 90.4545 kNm (load at the shear centre)
constexpr double Iz = 603.8e-8, It = 20.12e-8, L = 6.0;
const double Iw = Iz * 0.2893 * 0.2893 / 4.0;
const double Ncrz = pi2 * 210e6 * Iz / (L * L);
const double c2 = (Iw + 0.039 * L * L * It) / Iz;
const double Mcr0 = Ncrz * std::sqrt(c2);

double mcrFor(const MomentDistribution& moments, double cTheta = 0.0, double shearPanel = 0.0)
{
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 50, 0, 0, 0, 0), L, moments, false, VerificationControl::Classify, 1.0,
             cTheta, shearPanel);
    return m.resistance.calculateElasticCriticalMoment();
}

} // namespace

TEST(CriticalMoment, UniformMomentEqualsTheClosedForm)
{
    const double mcr = mcrFor(momentsY(50, 50, 50, MomentDiagram::Polygonal, 50));
    EXPECT_NEAR(Ncrz, 347.6239, 1e-4);
    EXPECT_NEAR(mcr, 90.4545, 1e-4);
    EXPECT_NEAR(mcr, Mcr0, 1e-9);
    // The closed form (pi^2 E Iz / L^2) sqrt(Iw / Iz + L^2 G It / (pi^2 E Iz)) with G = 81000 N/mm2 gives
    // 90.5194 kNm: the difference is that of 0.039 against G / (pi^2 E) = 0.0390797.
    const double exact = Ncrz * std::sqrt(Iw / Iz + L * L * 81e6 * It / (pi2 * 210e6 * Iz));
    EXPECT_NEAR(mcr, exact, exact * (1.0 - 0.039 / (81e6 / (pi2 * 210e6))));
    EXPECT_LT(mcr, exact);
}

TEST(CriticalMoment, LoadApplicationHeight)
{
    // Top flange: zp = zMin = -0.15 m; Mcr = Ncr,z (sqrt(c2 + 0.25 zp^2) + 0.5 zp) = 68.0651 kNm.
    // Uniform moment, general branch, zeta = 1.
    auto section = ipe300();
    Member top(section, "S235", Forces(0, 50, 0, 0, 0, 0), L,
               momentsY(50, 50, 50, MomentDiagram::Polygonal, 50, ApplicationPoint::Top));
    EXPECT_NEAR(top.resistance.calculateElasticCriticalMoment(), 68.0651, 1e-4);
    EXPECT_NEAR(top.results.getZp(), -0.15, 1e-12);
    Member bottom(section, "S235", Forces(0, 50, 0, 0, 0, 0), L,
                  momentsY(50, 50, 50, MomentDiagram::Polygonal, 50, ApplicationPoint::Bottom));
    EXPECT_NEAR(bottom.resistance.calculateElasticCriticalMoment(),
                Ncrz * (std::sqrt(c2 + 0.25 * 0.0225) + 0.075), 1e-9);
    EXPECT_NEAR(bottom.results.getZp(), 0.15, 1e-12);
    Member other(section, "S235", Forces(0, 50, 0, 0, 0, 0), L,
                 momentsY(50, 50, 50, MomentDiagram::Polygonal, 50, static_cast<ApplicationPoint>(7)));
    EXPECT_NEAR(other.resistance.calculateElasticCriticalMoment(), Mcr0, 1e-9);
    EXPECT_EQ(other.results.getZp(), 0.0);
}

TEST(CriticalMoment, GeneralBranchStraightLineQuirk)
{
    // Concentrated load: 100, 60, 0 has d = 10 off the line, psi = |0 / 100| = 0: zeta = 1.77.
    EXPECT_NEAR(mcrFor(momentsY(100, 60, 0)), 1.77 * Mcr0, 1e-9);
    // A true straight line with a positive mean (100, 25, -50: d = 0) does not take 1.77 - 0.77 psi: zeta = 1.
    EXPECT_NEAR(mcrFor(momentsY(100, 25, -50)), Mcr0, 1e-9);
    // With a negative mean it does, psi as a magnitude: -100, -75, -50 gives psi = 0.5, zeta = 1.385.
    EXPECT_NEAR(mcrFor(momentsY(-100, -75, -50)), 1.385 * Mcr0, 1e-9);
    // Double curvature counts like single: -100, -25, 50 gives psi = 0.5 too.
    EXPECT_NEAR(mcrFor(momentsY(-100, -25, 50)), 1.385 * Mcr0, 1e-9);
    // A point load between free ends (0, 100, 0): the mean is 0, so the straight-line formula runs with psi = 0
    // (zeta = 1.77); the transverse test behind it keeps its bound Mm <= 1e-6 and is not reached.
    EXPECT_NEAR(mcrFor(momentsY(0, 100, 0, MomentDiagram::Polygonal, 100)), 1.77 * Mcr0, 1e-9);
}

TEST(CriticalMoment, SaggingDistributedLoadAddsReciprocalShares)
{
    // 20, 60, 0 parabolic, Mmax = 60: Mmin = 0, Mdiff = 20, avg = 10, Mpar = 60 - 0 - 10 = 50, zetaPar = 1.12
    // X = (0 / 1.0 + 20 / 1.77 + 50 / 1.12) / Mcr0 = 55.942292 / Mcr0; Mcr = 60 Mcr0 / 55.942292.
    EXPECT_NEAR(mcrFor(momentsY(20, 60, 0, MomentDiagram::Parabolic, 60)), 60.0 / 55.942292 * Mcr0, 1e-6);
    // Span moment below the mean of the end moments: no parabolic share. 40, 30, 40: Mmin = 40, Mdiff = 0,
    // X = 40 / Mcr0, Mcr = (Mmax = 40) / X = Mcr0.
    EXPECT_NEAR(mcrFor(momentsY(40, 30, 40, MomentDiagram::Parabolic, 40)), Mcr0, 1e-9);
}

TEST(CriticalMoment, HoggingDistributedLoad)
{
    // Simply supported span, M1 = M2 = 0, Mm = 100 (the hogging branch takes end moments below 1e-6):
    // D = 100, Emax = 0, table A row 0 column 1: zeta0 = 1.12; zp = 0: Mcr = |1.12 Ncr,z sqrt(c2) / 100 * 100|.
    EXPECT_NEAR(mcrFor(momentsY(0, 100, 0, MomentDiagram::Parabolic, 100)), 1.12 * Mcr0, 1e-9);
    // Nearly no span share (|d| = 0.2 < 0.5): -50, -49.8, -50 reads table B at r = 0.2 / 50 = 0.004, column 3:
    // 1.00 + 0.04 (0.11 - 1.00) = 0.9644, Mcr = 0.9644 Mcr0 without scaling.
    EXPECT_NEAR(mcrFor(momentsY(-50, -49.8, -50, MomentDiagram::Parabolic, 50)), 0.9644 * Mcr0, 1e-6);
}

TEST(CriticalMoment, RotationalRestraintAndShearPanel)
{
    // k = 1 + pi^2 E Iw / (L^2 G It) = 1 + 261.85 / 586.70 = 1.4463: band 3. 0, 100, 0 parabolic: r = 0.
    const double k = 1.0 + pi2 * 210e6 * Iw / (L * L * 81e6 * It);
    EXPECT_NEAR(k, 1.4463, 1e-4);
    // C_theta = 100: It,eff = It + 100 * 36 / (pi^2 * 81e6) = 4.70443e-6; zeta0,theta = 1.12 (band 3, row 0).
    const double itEff = It + 100.0 * 36.0 / (pi2 * 81e6);
    const double c2Theta = (Iw + 0.039 * 36.0 * itEff) / Iz;
    EXPECT_NEAR(mcrFor(momentsY(0, 100, 0, MomentDiagram::Parabolic, 100), 100.0), 1.12 * Ncrz * std::sqrt(c2Theta),
                1e-9);

    // Shear panel S: Slim = 10.2 * 2 fy Q / h with Q the first moment of the half section; MS = 0.576 Seff h.
    auto section = ipe300();
    const double Q = section.getSy(KaVector3D(0, 0, 0));
    const double Slim = 10.2 * 2.0 * 235000.0 * Q / 0.3;
    for (double S : {1000.0, 1e7}) {
        Member m(section, "S235", Forces(0, 50, 0, 0, 0, 0), L, momentsY(0, 100, 0, MomentDiagram::Parabolic, 100),
                 false, VerificationControl::Classify, 1.0, 0.0, S);
        const double mcr = m.resistance.calculateElasticCriticalMoment();
        const double Seff = std::min(S, Slim);
        EXPECT_NEAR(m.results.getShearFieldStiffness().value(), Seff, 1e-9);
        EXPECT_NEAR(mcr, 0.576 * Seff * 0.3, 1e-9);
    }
}

TEST(CriticalMoment, GivenMcrIsUsedAsItIs)
{
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 50, 0, 0, 0, 0), L,
             momentsY(50, 50, 50, MomentDiagram::Polygonal, 50, ApplicationPoint::Center, 150.0));
    m.resistance.calculateBendingBucklingResistanceAxisY();
    EXPECT_EQ(m.results.getCriticalMoment(), 150.0);
    // lambdaLT = sqrt(Wpl,y fy / Mcr) = sqrt(628.4e-6 * 235000 / 150) = sqrt(0.984493) = 0.992216
    EXPECT_NEAR(m.results.getLambdaLT(), 0.992216, 1e-6);
    // Below 1e-6 counts as not given.
    Member n(section, "S235", Forces(0, 50, 0, 0, 0, 0), L,
             momentsY(50, 50, 50, MomentDiagram::Polygonal, 50, ApplicationPoint::Center, 5e-7));
    n.resistance.calculateBendingBucklingResistanceAxisY();
    EXPECT_NEAR(n.results.getCriticalMoment(), Mcr0, 1e-9);
}

TEST(MomentCoefficient, ZetaCases)
{
    auto section = ipe300();
    Member poly(section, "S235", Forces(0, 50, 0, 0, 0, 0), L, momentsY(1, 1, 1, MomentDiagram::Polygonal));
    Member para(section, "S235", Forces(0, 50, 0, 0, 0, 0), L, momentsY(1, 1, 1, MomentDiagram::Parabolic));
    Member other(section, "S235", Forces(0, 50, 0, 0, 0, 0), L, momentsY(1, 1, 1, static_cast<MomentDiagram>(4)));
    EXPECT_NEAR(Access::zeta(poly.resistance, MDC::Linear, 0.5), 1.385, 1e-12);
    EXPECT_NEAR(Access::zeta(poly.resistance, MDC::Linear, 1.0), 1.0, 1e-12);
    EXPECT_EQ(Access::zeta(poly.resistance, MDC::Transverse, 0.5), 1.35);
    EXPECT_EQ(Access::zeta(para.resistance, MDC::Transverse, 0.5), 1.12);
    EXPECT_EQ(Access::zeta(other.resistance, MDC::Transverse, 0.5), 1.0);
    EXPECT_EQ(Access::zeta(poly.resistance, static_cast<MDC>(2), 0.5), 1.0);
}

// zeta0 of the hogging branch: (M1, Mm, M2) -> expected. D = |Mm - (M1 + M2) / 2|, Emin / Emax of the ends.
struct Zeta0Case {
    double M1, Mm, M2, zeta;
};

class Zeta0Table : public ::testing::TestWithParam<Zeta0Case> {};

TEST_P(Zeta0Table, RowsColumnsAndInterpolation)
{
    const Zeta0Case c = GetParam();
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 50, 0, 0, 0, 0), L, momentsY(c.M1, c.Mm, c.M2, MomentDiagram::Parabolic));
    EXPECT_NEAR(Access::zeta0(m.resistance), c.zeta, 1e-9) << c.M1 << " " << c.Mm << " " << c.M2;
}

INSTANTIATE_TEST_SUITE_P(
    TablesAB, Zeta0Table,
    ::testing::Values(
        // Table A, r = Emax / D = 0.4 (D = 100): Emin = 0 -> col 1, Emax / 2 -> col 2, Emax -> col 3.
        Zeta0Case{0, 80, -40, 1.43}, Zeta0Case{-20, 70, -40, 1.67}, Zeta0Case{-40, 60, -40, 2.00},
        // Between columns: Emin = 10 -> 1.43 + 0.5 (1.67 - 1.43); Emin = 30 -> 1.67 + 0.5 (2.00 - 1.67).
        Zeta0Case{-10, 75, -40, 1.55}, Zeta0Case{-30, 65, -40, 1.835},
        // Between rows r = 0.45: column 3 (2.00 + 2.46) / 2, column 2 (1.67 + 1.90) / 2.
        Zeta0Case{-45, 55, -45, 2.23}, Zeta0Case{-22.5, 66.25, -45, 1.785},
        // Rows at both ends of table A: r = 0 and r close to 1 (0.9 row, col 3).
        Zeta0Case{0, 100, 0, 1.12}, Zeta0Case{-90, 10, -90, 5.15},
        // Table B, r = D / Emax: -100, -70, -100 gives r = 0.3, column 3: 0.40.
        Zeta0Case{-100, -70, -100, 0.40}, Zeta0Case{-100, -75, -100, 0.32}, Zeta0Case{-100, -95, -100, 0.555},
        // Table B row 0 (no span share): -100, -75, -50, Emin = Emax / 2: 1.32; row 1.0 never (D < Emax).
        Zeta0Case{-100, -75, -50, 1.32}, Zeta0Case{-100, -80, -50, 1.32 + 0.5 * (0.14 - 1.32)},
        // D equal to Emax: no table applies.
        Zeta0Case{-50, 0, -50, 1.0}));

struct RestrainedCase {
    double k, M1, Mm, M2, zetaS, zetaTheta;
};

class RestrainedZetaTables : public ::testing::TestWithParam<RestrainedCase> {};

TEST_P(RestrainedZetaTables, BandsRowsAndColumns)
{
    const RestrainedCase c = GetParam();
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 50, 0, 0, 0, 0), L, momentsY(c.M1, c.Mm, c.M2, MomentDiagram::Parabolic));
    EXPECT_NEAR(Access::zeta0S(m.resistance, c.k), c.zetaS, 1e-9) << c.k;
    EXPECT_NEAR(Access::zeta0Theta(m.resistance, c.k), c.zetaTheta, 1e-9) << c.k;
}

INSTANTIATE_TEST_SUITE_P(
    Bands, RestrainedZetaTables,
    ::testing::Values(
        // r = 0.4 (D = 100, Emax = 40): column 1, 2, 3 in bands 1, 2, 3.
        RestrainedCase{1.1, 0, 80, -40, 0.315, 1.39}, RestrainedCase{1.2, -20, 70, -40, 0.429, 1.63},
        RestrainedCase{1.5, -40, 60, -40, 0.417, 1.96},
        // Band bounds less 1e-6: 1.15 - 1e-6 is band 2, 1.02 - 1e-6 band 1, 1.3 - 1e-6 band 3.
        RestrainedCase{1.15 - 1e-6, -40, 60, -40, 0.35, 1.93}, RestrainedCase{1.02 - 1e-6, -40, 60, -40, 0.223, 1.89},
        RestrainedCase{1.3 - 1e-6, -40, 60, -40, 0.417, 1.96},
        // Below the first band: no table.
        RestrainedCase{1.01, -40, 60, -40, 1.0, 1.0},
        // r = 0.7, column 3: 0.071 / 2.85, 0.098 / 4.13, 0.13 / 4.23.
        RestrainedCase{1.1, -70, 30, -70, 0.071, 2.85}, RestrainedCase{1.2, -70, 30, -70, 0.098, 4.13},
        RestrainedCase{2.0, -70, 30, -70, 0.13, 4.23},
        // Between rows (r = 0.45) and between columns (Emin = Emax / 4) in band 3:
        // row 0.4: 0.523 + 0.5 (0.49 - 0.523) = 0.5065; row 0.5: 0.483 + 0.5 (0.425 - 0.483) = 0.454 -> 0.48025
        // theta: row 0.4: 1.41 + 0.5 (1.65 - 1.41) = 1.53; row 0.5: 1.5 + 0.5 (1.86 - 1.5) = 1.68 -> 1.605
        RestrainedCase{1.5, -11.25, 71.875, -45, 0.48025, 1.605},
        // Only table A applies: with D < Emax both are 1.0.
        RestrainedCase{1.5, -100, -70, -100, 1.0, 1.0}));

TEST(LateralTorsional, LambdaLT0AndBetaByMode)
{
    auto rolled = ipe300();
    auto welded = withRow(SDBSectionI(0.3, 0.15, 0.0071, 0.0107, 0.0, false),
                          {53.81e-4, 8356e-8, 603.8e-8, 557.1e-6, 80.5e-6, 628.4e-6, 125.2e-6, 20.12e-8});
    Member r(rolled, "S235", Forces(0, 50, 0, 0, 0, 0), L, momentsY(50, 50, 50));
    Member w(welded, "S235", Forces(0, 50, 0, 0, 0, 0), L, momentsY(50, 50, 50));
    const std::tuple<Standard::Mode, Member*, double, double> cases[] = {
        {Standard::Mode::UK, &w, 0.2, 1.0},         {Standard::Mode::UK, &r, 0.4, 0.75},
        {Standard::Mode::RolledLTB, &w, 0.4, 0.75}, {Standard::Mode::EN, &w, 0.4, 0.75}};
    for (auto [mode, member, lambda0, beta] : cases) {
        Access::lambdaLT0AndBeta(member->resistance, mode);
        EXPECT_EQ(member->results.getLambdaLT0(), lambda0);
        EXPECT_EQ(member->results.getBeta(), beta);
    }
}

// kc of Table 6.6 from the y moments.
struct KcCase {
    double M1, Mm, M2;
    MomentDiagram diagram;
    double kc;
};

class CorrectionFactor : public ::testing::TestWithParam<KcCase> {};

TEST_P(CorrectionFactor, FromTheMomentDiagram)
{
    const KcCase c = GetParam();
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 50, 0, 0, 0, 0), L, momentsY(c.M1, c.Mm, c.M2, c.diagram));
    EXPECT_NEAR(Access::correctionFactor(m.resistance), c.kc, 1e-9) << c.M1 << " " << c.Mm << " " << c.M2;
}

INSTANTIATE_TEST_SUITE_P(
    Table66, CorrectionFactor,
    ::testing::Values(
        // Straight line, larger moment at the end: r = M1 / M2 = 0.5, kc = 1 / (1.33 - 0.165) = 0.858369.
        // (Reading the closing "otherwise" as the inner alternative would give r = 0 and 1 / 1.33.)
        KcCase{50, 75, 100, MomentDiagram::Polygonal, 1.0 / 1.165},
        KcCase{100, 75, 50, MomentDiagram::Polygonal, 1.0 / 1.165},
        KcCase{100, 25, -50, MomentDiagram::Polygonal, 1.0 / 1.495},
        KcCase{-50, 25, 100, MomentDiagram::Polygonal, 1.0 / 1.495},
        // One end moment zero: r = 0, kc = 1 / 1.33.
        KcCase{100, 50, 0, MomentDiagram::Polygonal, 1.0 / 1.33},
        // End moments with a transverse load.
        KcCase{50, 100, 100, MomentDiagram::Polygonal, 0.77}, KcCase{-50, 40, -100, MomentDiagram::Parabolic, 0.90},
        KcCase{100, 80, 0, MomentDiagram::Polygonal, 0.82}, KcCase{0, 80, 100, MomentDiagram::Parabolic, 0.91},
        // Transverse load between free ends.
        KcCase{0, 100, 0, MomentDiagram::Polygonal, 0.86}, KcCase{0, 100, 0, MomentDiagram::Parabolic, 0.94},
        // Uniform moment, and nothing at all.
        KcCase{70, 70, 70, MomentDiagram::Parabolic, 1.0}, KcCase{0, 0, 0, MomentDiagram::Polygonal, 1.0}));

// IPE 300, S235, L = 6 m, uniform My = 50 kNm, class 1 (W = Wpl,y = 628.4e-6):
//   Mcr = 90.4545 kNm; lambdaLT = sqrt(628.4e-6 * 235000 / 90.4545) = sqrt(1.632579) = 1.277724
// Curve a (general case, rolled h/b = 2 <= 2): Phi = 0.5 (1 + 0.21 * 1.077724 + 1.632579) = 1.429450,
//   chiLT = 1 / (Phi + sqrt(Phi^2 - lambdaLT^2)), Mb,Rd = chiLT * Wpl,y fy = chiLT * 147.674 kNm
TEST(LateralTorsional, WorkedBeamGeneralAndRolledMethod)
{
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 50, 10, 0, 0, 0), L, momentsY(50, 50, 50, MomentDiagram::Polygonal, 50));
    m.resistance.verifyAllBendingBuckling();
    const BucklingResults& r = m.results;
    const double lambdaLT = std::sqrt(628.4e-6 * 235000.0 / Mcr0);
    EXPECT_NEAR(lambdaLT, 1.277724, 1e-6);
    EXPECT_NEAR(r.getLambdaLT(), lambdaLT, 1e-9);
    EXPECT_EQ(r.getBucklingCurveBending().value(), BucklingCurve::a);
    const double phi = 0.5 * (1.0 + 0.21 * (lambdaLT - 0.2) + lambdaLT * lambdaLT);
    const double chi = 1.0 / (phi + std::sqrt(phi * phi - lambdaLT * lambdaLT));
    EXPECT_NEAR(phi, 1.429450, 1e-6);
    const double MbRd = chi * 628.4e-6 * 235000.0;
    EXPECT_NEAR(r.getBucklingResistance(U::Bending).value(), MbRd, 1e-9);
    EXPECT_NEAR(r.getUtilization(U::BendingAxisY).value(), 50.0 / MbRd, 1e-12);
    // The z entry divides |Mz| by the same major-axis Mb,Rd.
    EXPECT_NEAR(r.getUtilization(U::BendingAxisZ).value(), 10.0 / MbRd, 1e-12);
    EXPECT_NEAR(r.getBucklingResistance(U::BendingAxisZ).value(), MbRd, 1e-9);
    EXPECT_NEAR(r.getUtilization(U::Bending).value(), 50.0 / MbRd, 1e-12);
    EXPECT_FALSE(r.getChiLTmod().hasValue());

    // The method for rolled sections (initializer option): curve b, lambdaLT0 = 0.4, beta = 0.75, kc = 1.
    Member rm(section, "S235", Forces(0, 50, 0, 0, 0, 0), L, momentsY(50, 50, 50, MomentDiagram::Polygonal, 50), true);
    const double MbRdRolled = rm.resistance.calculateMbRd();
    const double phiR = 0.5 * (1.0 + 0.34 * (lambdaLT - 0.4) + 0.75 * lambdaLT * lambdaLT);
    const double chiR = 1.0 / (phiR + std::sqrt(phiR * phiR - 0.75 * lambdaLT * lambdaLT));
    EXPECT_EQ(rm.results.getBucklingCurveBending().value(), BucklingCurve::b);
    EXPECT_NEAR(rm.results.getChiLTmod().value(), chiR, 1e-12);
    EXPECT_NEAR(MbRdRolled, chiR * 628.4e-6 * 235000.0, 1e-9);
    EXPECT_NEAR(rm.resistance.calculateMyRk(), 628.4e-6 * 235000.0, 1e-9);
    EXPECT_NEAR(rm.resistance.calculateMzRk(), 125.2e-6 * 235000.0, 1e-9);
    EXPECT_NEAR(rm.results.getMRk(Axis::z), 125.2e-6 * 235000.0, 1e-9);
}

TEST(LateralTorsional, ZeroLengthGivesNoReduction)
{
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 50, 0, 0, 0, 0), 0.0, momentsY(50, 50, 50, MomentDiagram::Polygonal, 50));
    m.resistance.calculateBendingBucklingResistanceAxisY();
    EXPECT_EQ(m.results.getCriticalMoment(), 0.0);
    EXPECT_EQ(m.results.getLambdaLT(), 0.0);
    EXPECT_NEAR(m.results.getBucklingResistance(U::Bending).value(), 628.4e-6 * 235000.0, 1e-9);
}
