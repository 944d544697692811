#include "BucklingTestAccess.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace SteelDesign;
using namespace buckling_test;
using Access = BucklingResistanceTestAccess;
using U = BucklingResults::UtilizationType;
using BC = BucklingCurve;

namespace {

struct ChiCase {
    BC curve;
    double lambda;
    double chi;  // EN 1993-1-1 Figure 6.4 (the tabulated values of (6.49), four places)
};

class ChiOnEachCurve : public ::testing::TestWithParam<ChiCase> {};

} // namespace

TEST_P(ChiOnEachCurve, MatchesThePublishedValue)
{
    auto section = heb200();
    Member m(section, "S235", Forces(-100, 0, 0, 0, 0, 0), 4.0);
    const ChiCase c = GetParam();
    EXPECT_NEAR(Access::chi(m.resistance, c.lambda, c.curve, BucklingType::Compression, false), c.chi, 5e-5);
    // The general case of lateral-torsional buckling takes the same curve and stores no Phi.
    EXPECT_NEAR(Access::chi(m.resistance, c.lambda, c.curve, BucklingType::Bending, false), c.chi, 5e-5);
    EXPECT_FALSE(m.results.getPhi().hasValue());
    EXPECT_FALSE(m.results.getChiLT().hasValue());
}

INSTANTIATE_TEST_SUITE_P(
    Figure64, ChiOnEachCurve,
    ::testing::Values(
        // lambda <= 0.2: the limit 1.0 does the plateau.
        ChiCase{BC::a0, 0.0, 1.0}, ChiCase{BC::a, 0.1, 1.0}, ChiCase{BC::b, 0.2, 1.0}, ChiCase{BC::c, 0.15, 1.0},
        ChiCase{BC::d, 0.2, 1.0},
        // lambda = 1.0, curve b: Phi = 0.5 (1 + 0.34 * 0.8 + 1) = 1.136, chi = 1 / (1.136 + sqrt(1.136^2 - 1)).
        ChiCase{BC::b, 1.0, 0.5970}, ChiCase{BC::a0, 1.0, 0.7253}, ChiCase{BC::a, 1.0, 0.6656},
        ChiCase{BC::c, 1.0, 0.5399}, ChiCase{BC::d, 1.0, 0.4671}, ChiCase{BC::a0, 0.5, 0.9513},
        ChiCase{BC::a, 0.5, 0.9243}, ChiCase{BC::b, 0.5, 0.8842}, ChiCase{BC::c, 0.5, 0.8430},
        ChiCase{BC::d, 0.5, 0.7793}, ChiCase{BC::b, 1.5, 0.3422}, ChiCase{BC::c, 1.5, 0.3145},
        ChiCase{BC::a, 2.0, 0.2229}, ChiCase{BC::d, 2.0, 0.1766},
        // A curve outside 1..5 takes alpha = 1.0: Phi = 0.5 (1 + 0.8 + 1) = 1.4, chi = 1 / (1.4 + sqrt(0.96)).
        ChiCase{BC::none, 1.0, 0.4202}, ChiCase{static_cast<BC>(9), 1.0, 0.4202}));

TEST(FlexuralBuckling, AlphaIsStoredPerCurve)
{
    auto section = heb200();
    Member m(section, "S235", Forces(-100, 0, 0, 0, 0, 0), 4.0);
    const std::pair<BC, double> alphas[] = {{BC::a0, 0.13}, {BC::a, 0.21}, {BC::b, 0.34}, {BC::c, 0.49},
                                            {BC::d, 0.76}, {BC::none, 1.0}, {static_cast<BC>(-3), 1.0}};
    for (auto [curve, alpha] : alphas) {
        Access::chi(m.resistance, 1.0, curve, BucklingType::Compression, false);
        EXPECT_EQ(m.results.getAlpha(), alpha);
    }
}

// HEB 200, S235, L = 4 m about both axes, N = -500 kN, gammaM1 = 1.0.
// Rolled, h/b = 1.0 <= 1.2, tf = 15 mm: curve b about y, c about z (Table 6.2).
//   NRk    = A fy = 78.08e-4 * 235000 = 1834.88 kN
//   Ncr,z  = pi^2 E Iz / L^2 = 9.8696 * 210e6 * 2003e-8 / 16 = 2594.66 kN
//   lam_z  = sqrt(1834.88 / 2594.66) = sqrt(0.70718) = 0.84094
//   Phi_z  = 0.5 (1 + 0.49 (0.84094 - 0.2) + 0.70718) = 1.01062
//   chi_z  = 1 / (1.01062 + sqrt(1.01062^2 - 0.70718)) = 1 / (1.01062 + 0.56051) = 0.63649
//   Nb,z,Rd = 0.63649 * 1834.88 = 1167.87 kN; utilization 500 / 1167.87 = 0.42813
//   Ncr,y  = 9.8696 * 210e6 * 5696e-8 / 16 = 7378.52 kN; lam_y = sqrt(1834.88 / 7378.52) = 0.49868
//   Phi_y  = 0.5 (1 + 0.34 * 0.29868 + 0.24868) = 0.67511; chi_y = 1 / (0.67511 + 0.45508) = 0.88480
//   Nb,y,Rd = 1623.50 kN; utilization 500 / 1623.50 = 0.30798
TEST(FlexuralBuckling, WorkedColumnHeb200)
{
    auto section = heb200();
    Member m(section, "S235", Forces(-500, 0, 0, 0, 0, 0), 4.0);
    m.resistance.verifyAllResistance();
    const BucklingResults& r = m.results;

    EXPECT_EQ(r.getClass(), 1);
    // An I section without My: code 6 at construction, the flexural checks run regardless.
    EXPECT_EQ(r.getErrorCode(), ErrorCode::NotSupported);
    EXPECT_NEAR(r.getNRk(), 1834.88, 1e-9);
    EXPECT_EQ(r.getBucklingCurveCompression(Axis::y).value(), BC::b);
    EXPECT_EQ(r.getBucklingCurveCompression(Axis::z).value(), BC::c);

    EXPECT_NEAR(r.getNcr(Axis::z), 2594.66, 0.01);
    EXPECT_NEAR(r.getLambda(Axis::z), 0.84094, 1e-5);
    EXPECT_NEAR(r.getChi(Axis::z).value(), 0.63649, 1e-5);
    EXPECT_NEAR(r.getBucklingResistance(U::CompressionAxisZ).value(), 1167.87, 0.01);
    EXPECT_NEAR(r.getUtilization(U::CompressionAxisZ).value(), 0.42813, 1e-5);

    EXPECT_NEAR(r.getNcr(Axis::y), 7378.52, 0.01);
    EXPECT_NEAR(r.getLambda(Axis::y), 0.49868, 1e-5);
    EXPECT_NEAR(r.getChi(Axis::y).value(), 0.88480, 1e-5);
    EXPECT_NEAR(r.getBucklingResistance(U::CompressionAxisY).value(), 1623.50, 0.01);
    EXPECT_NEAR(r.getUtilization(U::CompressionAxisY).value(), 0.30798, 1e-5);

    // The governing axis, and nothing of the bending checks.
    EXPECT_DOUBLE_EQ(r.getUtilization(U::Compression).value(), r.getUtilization(U::CompressionAxisZ).value());
    EXPECT_TRUE(r.isFulfilled(U::Compression));
    EXPECT_FALSE(r.verifyAllUtilizations());
    for (U t : {U::BendingAxisY, U::Bending, U::CompressionBending}) EXPECT_FALSE(r.getUtilization(t).hasValue());
    // The same length about both axes: the Euler loads differ only by Iy / Iz.
    EXPECT_NEAR(r.getNcr(Axis::y) / r.getNcr(Axis::z), 5696.0 / 2003.0, 1e-12);
}

TEST(FlexuralBuckling, GammaM1DividesTheResistance)
{
    auto section = heb200();
    Member a(section, "S235", Forces(-500, 0, 0, 0, 0, 0), 4.0);
    Member b(section, "S235", Forces(-500, 0, 0, 0, 0, 0), 4.0, {}, false, VerificationControl::Classify, 1.1);
    a.resistance.verifyAllCompressionBuckling();
    b.resistance.verifyAllCompressionBuckling();
    EXPECT_NEAR(b.results.getBucklingResistance(U::CompressionAxisZ).value() * 1.1,
                a.results.getBucklingResistance(U::CompressionAxisZ).value(), 1e-9);
    EXPECT_NEAR(b.results.getUtilization(U::Compression).value(), a.results.getUtilization(U::Compression).value() * 1.1,
                1e-12);
}

TEST(FlexuralBuckling, ZeroLengthFallsBackToTheCrossSection)
{
    auto section = heb200();
    Member m(section, "S235", Forces(-500, 0, 0, 0, 0, 0), 0.0);
    m.resistance.verifyAllResistance();
    for (Axis a : {Axis::y, Axis::z}) {
        EXPECT_EQ(m.results.getNcr(a), 0.0);
        EXPECT_EQ(m.results.getLambda(a), 0.0);
        EXPECT_EQ(m.results.getChi(a).value(), 1.0);
    }
    EXPECT_NEAR(m.results.getBucklingResistance(U::CompressionAxisY).value(), 1834.88, 1e-9);
}

TEST(FlexuralBuckling, ZeroResistanceLeavesTheUtilizationAbsent)
{
    // A section without area: Nb,Rd = 0, so no utilization is stored; Compression reads the absent ones as 0.
    auto section = withRow(SDBSectionI(0.2, 0.2, 0.009, 0.015, 0.018), {0.0, 5696e-8, 2003e-8});
    Member m(section, "S235", Forces(-500, 0, 0, 0, 0, 0), 4.0);
    m.resistance.verifyAllResistance();
    EXPECT_FALSE(m.results.getUtilization(U::CompressionAxisY).hasValue());
    EXPECT_FALSE(m.results.getUtilization(U::CompressionAxisZ).hasValue());
    EXPECT_EQ(m.results.getUtilization(U::Compression).value(), 0.0);
}

TEST(FlexuralBuckling, ErrorCodeAtConstruction)
{
    auto i = heb200();
    Member noMoment(i, "S235", Forces(-500, 1e-7, 0, 0, 0, 0), 4.0);
    EXPECT_EQ(noMoment.results.getErrorCode(), ErrorCode::NotSupported);
    Member withMoment(i, "S235", Forces(-500, 10, 0, 0, 0, 0), 4.0);
    EXPECT_EQ(withMoment.results.getErrorCode(), ErrorCode::NoError);
    // Any other section type: no error, with or without My.
    SDBSectionRH rh(0.2, 0.1, 0.008, 0.008, 0.012, true);
    Member tube(rh, "S355", Forces(-500, 0, 0, 0, 0, 0), 4.0);
    EXPECT_EQ(tube.results.getErrorCode(), ErrorCode::NoError);
}

// Which checks the dispatcher runs for which forces.
struct DispatchCase {
    const char* name;
    Forces forces;
    bool compression, bending, interaction;
};

class Dispatcher : public ::testing::TestWithParam<DispatchCase> {};

TEST_P(Dispatcher, RunsOnlyTheChecksOfItsForces)
{
    const DispatchCase c = GetParam();
    auto section = ipe300();
    Member m(section, "S235", c.forces, 4.0, momentsY(50, 50, 50, MomentDiagram::Polygonal, 50), true);
    m.resistance.verifyAllResistance();
    const BucklingResults& r = m.results;
    EXPECT_EQ(r.getUtilization(U::Compression).hasValue(), c.compression) << c.name;
    EXPECT_EQ(r.getUtilization(U::Bending).hasValue(), c.bending) << c.name;
    EXPECT_EQ(r.getUtilization(U::CompressionBending).hasValue(), c.interaction) << c.name;
    if (!c.compression && !c.bending && !c.interaction) {
        for (int i = 0; i < 9; ++i) EXPECT_FALSE(r.getUtilization(static_cast<U>(i)).hasValue()) << c.name << i;
    }
    if (c.interaction) {
        EXPECT_TRUE(r.getUtilization(U::CompressionAxisZ).hasValue());
        EXPECT_TRUE(r.getUtilization(U::BendingAxisY).hasValue());
        EXPECT_GT(r.getNRk(), 0.0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Forces, Dispatcher,
    ::testing::Values(DispatchCase{"pure compression", Forces(-100, 0, 0, 0, 0, 0), true, false, false},
                      DispatchCase{"pure bending", Forces(0, 50, 0, 0, 0, 0), false, true, false},
                      DispatchCase{"compression and bending", Forces(-100, 50, 0, 0, 0, 0), false, false, true},
                      // Deliberate scope: tension with bending, Mz alone and compression with Mz only.
                      DispatchCase{"tension with bending", Forces(100, 50, 5, 0, 0, 0), false, false, false},
                      DispatchCase{"Mz alone", Forces(0, 0, 20, 0, 0, 0), false, false, false},
                      DispatchCase{"compression with Mz", Forces(-100, 0, 20, 0, 0, 0), false, false, false},
                      DispatchCase{"tension alone", Forces(100, 0, 0, 0, 0, 0), false, false, false},
                      DispatchCase{"moments below 1e-6", Forces(0, 5e-7, 5e-7, 0, 0, 0), false, false, false}));

TEST(FlexuralBuckling, PureBendingTakesTheLateralTorsionalUtilization)
{
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 50, 0, 0, 0, 0), 4.0, momentsY(50, 50, 50, MomentDiagram::Polygonal, 50));
    m.resistance.verifyAllResistance();
    EXPECT_EQ(m.results.getUtilization(U::Bending).value(), m.results.getUtilization(U::BendingAxisY).value());
    EXPECT_FALSE(m.results.getUtilization(U::BendingAxisZ).hasValue());
}

// The method for rolled sections (6.3.2.3), branch of the reduction factor for Bending.
// Moments 0, 100, 0 on a polygonal diagram (a concentrated load between free ends): kc = 0.86.
TEST(FlexuralBuckling, RolledMethodLimitsTheStoredFactorsOnly)
{
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 100, 0, 0, 0, 0), 4.0, momentsY(0, 100, 0, MomentDiagram::Polygonal, 100));
    const BucklingResults& r = m.results;

    // lambda = 0.3, curve b, beta = 0.75, lambdaLT0 = 0.4:
    //   Phi = 0.5 (1 + 0.34 (0.3 - 0.4) + 0.75 * 0.09) = 0.51675
    //   chi = 1 / (0.51675 + sqrt(0.51675^2 - 0.0675)) = 1 / 0.963438 = 1.037949, stored limited: 1.0
    //   f   = 1 - 0.5 (1 - 0.86) (1 - 2 (0.3 - 0.8)^2) = 0.965
    //   chi / f = 1.075595: returned as it is, stored limited to 1.0.
    const double returned = Access::chi(m.resistance, 0.3, BC::b, BucklingType::Bending, true);
    EXPECT_NEAR(r.getPhi().value(), 0.51675, 1e-12);
    EXPECT_EQ(r.getBeta(), 0.75);
    EXPECT_EQ(r.getLambdaLT0(), 0.4);
    EXPECT_EQ(r.getChiLT().value(), 1.0);
    EXPECT_NEAR(r.getCorrectionFactor().value(), 0.86, 1e-12);
    EXPECT_NEAR(r.getReduceFactor().value(), 0.965, 1e-12);
    EXPECT_EQ(r.getChiLTmod().value(), 1.0);
    EXPECT_NEAR(returned, 1.075595, 1e-6);

    // lambda = 1.6: 1 - 2 (1.6 - 0.8)^2 = -0.28, f = 1 + 0.07 * 0.28 = 1.0196 is stored, 1.0 is used.
    //   Phi = 0.5 (1 + 0.34 * 1.2 + 0.75 * 2.56) = 1.664; chi = 1 / (1.664 + sqrt(2.768896 - 1.92)) = 0.386794
    //   (below 1 / 1.6^2 = 0.390625, so ChiLT = ChiLTmod = chi).
    const double slender = Access::chi(m.resistance, 1.6, BC::b, BucklingType::Bending, true);
    EXPECT_NEAR(r.getReduceFactor().value(), 1.0196, 1e-12);
    EXPECT_NEAR(slender, 0.386794, 1e-6);
    EXPECT_NEAR(r.getChiLT().value(), 0.386794, 1e-6);
    EXPECT_NEAR(r.getChiLTmod().value(), 0.386794, 1e-6);

    // lambda = 0.8: f = 1 - 0.5 (1 - kc) = 0.93.
    Access::chi(m.resistance, 0.8, BC::b, BucklingType::Bending, true);
    EXPECT_NEAR(r.getReduceFactor().value(), 0.93, 1e-12);
}

TEST(FlexuralBuckling, RolledMethodWithUniformMomentHasNoCorrection)
{
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 50, 0, 0, 0, 0), 4.0, momentsY(50, 50, 50, MomentDiagram::Polygonal, 50));
    for (double lambda : {0.3, 0.8, 1.3}) {
        const double chi = Access::chi(m.resistance, lambda, BC::c, BucklingType::Bending, true);
        EXPECT_EQ(m.results.getCorrectionFactor().value(), 1.0);
        EXPECT_EQ(m.results.getReduceFactor().value(), 1.0);
        EXPECT_EQ(m.results.getChiLTmod().value(), m.results.getChiLT().value());
        EXPECT_EQ(m.results.getAlpha(), 0.49);
        if (lambda > 0.5) {
            EXPECT_EQ(chi, m.results.getChiLT().value());
        }
    }
}

TEST(FlexuralBuckling, RolledMethodIsTakenInModeRolledLTBOrWhenForced)
{
    auto section = ipe300();
    Member m(section, "S235", Forces(0, 50, 0, 0, 0, 0), 4.0, momentsY(50, 50, 50, MomentDiagram::Polygonal, 50));
    // Mode EN, not forced: the general case (6.56) stores no ChiLT.
    Access::chi(m.resistance, 1.0, BC::b, BucklingType::Bending, false);
    EXPECT_FALSE(m.results.getChiLT().hasValue());
    // Compression never takes it, even when forced.
    Access::chi(m.resistance, 1.0, BC::b, BucklingType::Compression, true);
    EXPECT_FALSE(m.results.getChiLT().hasValue());
    {
        ModeScope mode(Standard::Mode::RolledLTB);
        // (6.57) at lambda 1.0, curve b: Phi = 0.5 (1 + 0.34 * 0.6 + 0.75) = 0.977,
        // chi = 1 / (0.977 + sqrt(0.977^2 - 0.75)) = 1 / 1.429249 = 0.699668.
        const double chi = Access::chi(m.resistance, 1.0, BC::b, BucklingType::Bending, false);
        EXPECT_NEAR(chi, 0.699668, 1e-6);
        EXPECT_NEAR(m.results.getPhi().value(), 0.977, 1e-12);
    }
}
