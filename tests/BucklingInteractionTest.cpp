#include "BucklingTestAccess.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace SteelDesign;
using namespace buckling_test;
using Access = BucklingResistanceTestAccess;
using U = BucklingResults::UtilizationType;
using K = BucklingResults::InteractionFactorkxx;

namespace {

struct CmCase {
    double M1, Mm, M2;
    MomentDiagram diagram;
    double cm, cmWithFloor;
};

class EquivalentMomentFactor : public ::testing::TestWithParam<CmCase> {};

} // namespace

TEST_P(EquivalentMomentFactor, TableB3AsRequired)
{
    const CmCase c = GetParam();
    auto section = ipe300();
    for (bool floor : {false, true}) {
        // The same moments about y and about z.
        const MomentDistribution moments({c.M1, c.Mm, c.M2}, c.diagram, {c.M1, c.Mm, c.M2}, c.diagram, 0.0,
                                         ApplicationPoint::Center, 0.0);
        Member m(section, "S235", Forces(-100, 50, 0, 0, 0, 0), 4.0, moments, true, VerificationControl::Classify, 1.0,
                 0.0, 0.0, false, floor);
        Access::equivalentMomentFactor(m.resistance, Axis::y);
        Access::equivalentMomentFactor(m.resistance, Axis::z);
        const double expected = floor ? c.cmWithFloor : c.cm;
        EXPECT_NEAR(m.results.getCm(Axis::y), expected, 1e-12) << c.M1 << " " << c.Mm << " " << c.M2 << " " << floor;
        EXPECT_NEAR(m.results.getCm(Axis::z), expected, 1e-12);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, EquivalentMomentFactor,
    ::testing::Values(
        // Constant sagging moment on a polygonal diagram: the middle value lies on the mean of positive end
        // values, so the straight-line case is skipped and the sagging case gives 0.9 - 0.1 * 1 = 0.8.
        CmCase{10, 10, 10, MomentDiagram::Polygonal, 0.8, 0.9},
        // Constant hogging moment: the mean is negative, straight line with psi = 1: 1.0.
        CmCase{-10, -10, -10, MomentDiagram::Polygonal, 1.0, 1.0},
        // Straight lines with a non-positive mean: 0.6 + 0.4 psi, at least 0.4.
        CmCase{-100, -75, -50, MomentDiagram::Polygonal, 0.8, 0.9},
        CmCase{100, 0, -100, MomentDiagram::Polygonal, 0.4, 0.9},
        CmCase{-100, -25, 50, MomentDiagram::Polygonal, 0.4, 0.9},
        // A point load off the line of positive end moments: 0.6 + 0.4 * 0 (psi = M2 / M1 = 0).
        CmCase{100, 80, 0, MomentDiagram::Polygonal, 0.6, 0.9},
        // A straight line of positive mean (60, 30, 0): not the straight-line case; the sagging case with
        // alpha_h = 60 / 30 = 2 finds no row: 1.0.
        CmCase{60, 30, 0, MomentDiagram::Polygonal, 1.0, 1.0},
        // Distributed load on a simple span: alpha_h = 0, 0.95; end moment above the span moment: 1.0.
        CmCase{0, 20, 0, MomentDiagram::Parabolic, 0.95, 0.95}, CmCase{30, 20, 0, MomentDiagram::Parabolic, 1.0, 1.0},
        // alpha_h = 10 / 20 = 0.5: Cd = 0.95 - 0.025 = 0.925.
        CmCase{10, 20, 0, MomentDiagram::Parabolic, 0.925, 0.925},
        // Hogging ends: Mm = 0 gives alpha_s = 0, 0.2 -> 0.4; -100, 40, -50: alpha_s = -0.4, psi = 0.5,
        // Cd = max(0.4, 0.1 + 0.32) = 0.42.
        CmCase{-100, 0, -100, MomentDiagram::Parabolic, 0.4, 0.9}, CmCase{-100, 40, -50, MomentDiagram::Parabolic, 0.42, 0.9},
        // Span moment above the larger end moment (alpha_s < -1): 1.0.
        CmCase{-100, 150, -50, MomentDiagram::Parabolic, 1.0, 1.0},
        // End moments of opposite signs on a parabolic diagram: no case applies.
        CmCase{30, 5, -20, MomentDiagram::Parabolic, 1.0, 1.0},
        // A diagram value other than 0 or 1 keeps 1.0.
        CmCase{-100, -75, -50, static_cast<MomentDiagram>(3), 1.0, 1.0}));

// The interaction factors from a record set by hand: Cmy = 0.8, Cmz = 0.6, lambda_y = 0.5, lambda_z = 1.2,
// ny = 0.3, nz = 0.5 (CmLT = Cmy, CmLT - 0.25 = 0.55).
struct FactorCase {
    const char* name;
    VerificationControl control;  // Classify: IPE 300 class 1; Elastic: class 3
    bool torsionallyDeformable;
    double Mz, lambdaZ;
    double kyy, kzz, kyz, kzy;
};

class InteractionFactors : public ::testing::TestWithParam<FactorCase> {};

TEST_P(InteractionFactors, TablesB1AndB2ByHand)
{
    const FactorCase c = GetParam();
    auto section = ipe300();
    Member m(section, "S235", Forces(-100, 50, c.Mz, 0, 0, 0), 4.0, momentsY(50, 50, 50), true, c.control, 1.0, 0.0,
             0.0, c.torsionallyDeformable);
    ASSERT_EQ(m.results.getClass(), c.control == VerificationControl::Classify ? 1 : 3);
    m.results.setCm(Axis::y, 0.8);
    m.results.setCm(Axis::z, 0.6);
    m.results.setLambda(Axis::y, 0.5);
    m.results.setLambda(Axis::z, c.lambdaZ);
    m.results.setUtilization(U::CompressionAxisY, 0.3);
    m.results.setUtilization(U::CompressionAxisZ, 0.5);
    Access::interactionFactors(m.resistance);
    EXPECT_NEAR(m.results.getInteractionFactor(K::kyy), c.kyy, 1e-6) << c.name;
    EXPECT_NEAR(m.results.getInteractionFactor(K::kzz), c.kzz, 1e-6) << c.name;
    EXPECT_NEAR(m.results.getInteractionFactor(K::kyz), c.kyz, 1e-6) << c.name;
    EXPECT_NEAR(m.results.getInteractionFactor(K::kzy), c.kzy, 1e-6) << c.name;
}

INSTANTIATE_TEST_SUITE_P(
    ByHand, InteractionFactors,
    ::testing::Values(
        // Class 1 I section:
        //   kyy = min(0.8 (1 + (0.5 - 0.2) 0.3), 0.8 (1 + 0.8 * 0.3)) = min(0.872, 0.992) = 0.872
        //   kzz = min(Cmy (1 + (2.4 - 0.6) 0.5), Cmy (1 + 1.4 * 0.5)) = min(1.52, 1.36) = 1.36 (by Cmy, not Cmz:
        //         with Cmz it would be 1.02); kyz = 0.6 * 1.36 = 0.816
        //   kzy, not torsionally deformable, Mz = 0: 0; with Mz: 0.6 * 0.872 = 0.5232
        //   kzy, torsionally deformable, lambda_z >= 0.4: max(1 - 0.1 * 1.2 * 0.5 / 0.55, 1 - 0.1 * 0.5 / 0.55)
        //         = max(0.890909, 0.909091) = 0.909091
        FactorCase{"class 1", VerificationControl::Classify, false, 0.0, 1.2, 0.872, 1.36, 0.816, 0.0},
        FactorCase{"class 1 with Mz", VerificationControl::Classify, false, 5.0, 1.2, 0.872, 1.36, 0.816, 0.5232},
        FactorCase{"class 1 TD", VerificationControl::Classify, true, 0.0, 1.2, 0.872, 1.36, 0.816, 0.909091},
        //   lambda_z = 0.3 < 0.4: kzz = min(0.8 (1 + 0 * 0.5), 0.8 * 1.7) = 0.8, kyz = 0.48,
        //   kzy = min(1 - 0.1 * 0.3 * 0.5 / 0.55, 0.6 + 0.3) = min(0.972727, 0.9) = 0.9
        FactorCase{"class 1 TD stocky", VerificationControl::Classify, true, 0.0, 0.3, 0.872, 0.8, 0.48, 0.9},
        // Class 3:
        //   kyy = min(0.8 (1 + 0.6 * 0.5 * 0.3), 0.8 (1 + 0.6 * 0.3)) = min(0.872, 0.944) = 0.872
        //   kzz = min(0.6 (1 + 0.6 * 1.2 * 0.5), 0.6 (1 + 0.6 * 0.5)) = min(0.816, 0.78) = 0.78 = kyz
        //   kzy not TD: Mz = 0 on an I section: 0; with Mz: 0.8 * 0.872 = 0.6976
        //   kzy TD: max(1 - 0.05 * 1.2 * 0.5 / 0.55, 1 - 0.05 * 0.5 / 0.55) = max(0.945455, 0.954545)
        FactorCase{"class 3", VerificationControl::Elastic, false, 0.0, 1.2, 0.872, 0.78, 0.78, 0.0},
        FactorCase{"class 3 with Mz", VerificationControl::Elastic, false, 5.0, 1.2, 0.872, 0.78, 0.78, 0.6976},
        FactorCase{"class 3 TD", VerificationControl::Elastic, true, 0.0, 1.2, 0.872, 0.78, 0.78, 0.954545}));

TEST(InteractionFactorsOtherSections, ClassOneHollowSectionUsesCmz)
{
    // A stocky RHS (class 1): kzz = min(0.6 (1 + (1.2 - 0.2) 0.5), 0.6 (1 + 0.8 * 0.5)) = min(0.9, 0.84) = 0.84;
    // not an I section, so kzy = 0.6 kyy = 0.5232 even without Mz.
    SDBSectionRH rh(0.2, 0.1, 0.010, 0.010, 0.015, true);
    Member m(rh, "S235", Forces(-100, 20, 0, 0, 0, 0), 4.0, momentsY(20, 20, 20), true);
    ASSERT_EQ(m.results.getClass(), 1);
    m.results.setCm(Axis::y, 0.8);
    m.results.setCm(Axis::z, 0.6);
    m.results.setLambda(Axis::y, 0.5);
    m.results.setLambda(Axis::z, 1.2);
    m.results.setUtilization(U::CompressionAxisY, 0.3);
    m.results.setUtilization(U::CompressionAxisZ, 0.5);
    Access::interactionFactors(m.resistance);
    EXPECT_NEAR(m.results.getInteractionFactor(K::kzz), 0.84, 1e-12);
    EXPECT_NEAR(m.results.getInteractionFactor(K::kyz), 0.504, 1e-12);
    EXPECT_NEAR(m.results.getInteractionFactor(K::kzy), 0.5232, 1e-12);
}

// IPE 300, S235, L = 4 m, N = -200 kN, My = 60 kNm, moments about y 60, 30, 0 (polygonal), class 1,
// the method for rolled sections (initializer option), gammaM1 = 1.0.
//   NRk = 53.81e-4 * 235000 = 1264.535 kN
//   y, curve a: Ncr = pi^2 E 8356e-8 / 16 = 10824.24, lam = sqrt(1264.535 / 10824.24) = 0.341796,
//     Phi = 0.5 (1 + 0.21 * 0.141796 + 0.116825) = 0.573301, chi = 0.967519, ny = 200 / (0.967519 * 1264.535) = 0.163471
//   z, curve b: Ncr = 782.154, lam = 1.271509, Phi = 1.490524, chi = 0.440860, nz = 0.358755
//   Mcr: the diagram is a straight line of positive mean, so zeta = 1: Mcr = Ncr,z sqrt(c2),
//     c2 = (1.263368e-7 + 0.039 * 16 * 20.12e-8) / 603.8e-8 = 0.0417167, Mcr = 159.7524 kNm
//   lambdaLT = sqrt(628.4e-6 * 235000 / 159.7524) = 0.961454; curve b, beta = 0.75, lambdaLT0 = 0.4
//     Phi = 0.5 (1 + 0.34 * 0.561454 + 0.75 * 0.924394) = 0.942095, chiLT = 0.723155
//   kc: r = M2 / M1 = 0, straight line: 1 / 1.33 = 0.751880
//   f = 1 - 0.5 * 0.248120 (1 - 2 * 0.161454^2) = 0.882408; chiLT / f = 0.819525 (below 1 / lambdaLT^2 = 1.0818)
//   Mb,Rd = 0.819525 * 147.674 = 121.0225 kNm, |My| / Mb,Rd = 0.495776
//   Cmy = 1.0 (sagging case, alpha_h = 2: no row), Cmz = 0.6 (no z moments: straight line, psi = 0)
//   kyy = min(1 + (0.341796 - 0.2) 0.163471, 1 + 0.8 * 0.163471) = 1.023179
//   kzz = min(Cmy (1 + (2 * 1.271509 - 0.6) 0.358755), Cmy (1 + 1.4 * 0.358755)) = 1.502258, kyz = 0.901355
//   kzy = 0 (I section, Mz = 0)
//   (6.61): 0.163471 + 1.023179 * 60 / (0.819525 * 147.674) = 0.670738
//   (6.62): 0.358755 + 0 = 0.358755
TEST(CompressionAndBending, WorkedBeamColumn)
{
    auto section = ipe300();
    Member m(section, "S235", Forces(-200, 60, 0, 0, 0, 0), 4.0, momentsY(60, 30, 0, MomentDiagram::Polygonal, 60),
             true);
    m.resistance.verifyAllResistance();
    const BucklingResults& r = m.results;
    ASSERT_EQ(r.getClass(), 1);
    EXPECT_EQ(r.getErrorCode(), ErrorCode::NoError);
    EXPECT_NEAR(r.getNRk(), 1264.535, 1e-9);
    EXPECT_NEAR(r.getLambda(Axis::y), 0.341796, 1e-6);
    EXPECT_NEAR(r.getChi(Axis::y).value(), 0.967519, 1e-6);
    EXPECT_NEAR(r.getUtilization(U::CompressionAxisY).value(), 0.163471, 1e-6);
    EXPECT_NEAR(r.getNcr(Axis::z), 782.154, 1e-3);
    EXPECT_NEAR(r.getLambda(Axis::z), 1.271509, 1e-6);
    EXPECT_NEAR(r.getChi(Axis::z).value(), 0.440860, 1e-6);
    EXPECT_NEAR(r.getUtilization(U::CompressionAxisZ).value(), 0.358755, 1e-6);
    EXPECT_NEAR(r.getCriticalMoment(), 159.7524, 1e-4);
    EXPECT_NEAR(r.getLambdaLT(), 0.961454, 1e-6);
    EXPECT_EQ(r.getBucklingCurveBending().value(), BucklingCurve::b);
    EXPECT_NEAR(r.getPhi().value(), 0.942095, 1e-6);
    EXPECT_NEAR(r.getChiLT().value(), 0.723155, 1e-6);
    EXPECT_NEAR(r.getCorrectionFactor().value(), 0.751880, 1e-6);
    EXPECT_NEAR(r.getReduceFactor().value(), 0.882408, 1e-6);
    EXPECT_NEAR(r.getChiLTmod().value(), 0.819525, 1e-6);
    EXPECT_NEAR(r.getBucklingResistance(U::Bending).value(), 121.0225, 1e-4);
    EXPECT_NEAR(r.getUtilization(U::BendingAxisY).value(), 0.495776, 1e-6);
    EXPECT_EQ(r.getCm(Axis::y), 1.0);
    EXPECT_EQ(r.getCm(Axis::z), 0.6);
    EXPECT_NEAR(r.getInteractionFactor(K::kyy), 1.023179, 1e-6);
    EXPECT_NEAR(r.getInteractionFactor(K::kzz), 1.502258, 1e-6);
    EXPECT_NEAR(r.getInteractionFactor(K::kyz), 0.901355, 1e-6);
    EXPECT_EQ(r.getInteractionFactor(K::kzy), 0.0);
    EXPECT_NEAR(r.getUtilization(U::CompressionBendingAxisY).value(), 0.670738, 1e-6);
    // With Mz = 0 on an I section (6.62) reduces to nz.
    EXPECT_DOUBLE_EQ(r.getUtilization(U::CompressionBendingAxisZ).value(), r.getUtilization(U::CompressionAxisZ).value());
    EXPECT_NEAR(r.getUtilization(U::CompressionBending).value(), 0.670738, 1e-6);
    EXPECT_NEAR(r.getMRk(Axis::y), 147.674, 1e-9);
    // The dispatcher leaves the summaries of the single checks empty.
    EXPECT_FALSE(r.getUtilization(U::Compression).hasValue());
    EXPECT_FALSE(r.getUtilization(U::Bending).hasValue());

    // Torsionally deformable: kzy = max(1 - 0.1 * 1.271509 * 0.358755 / 0.75, 1 - 0.1 * 0.358755 / 0.75) = 0.952166,
    // (6.62) = 0.358755 + 0.952166 * 0.495776 = 0.830816.
    Member td(section, "S235", Forces(-200, 60, 0, 0, 0, 0), 4.0, momentsY(60, 30, 0, MomentDiagram::Polygonal, 60),
              true, VerificationControl::Classify, 1.0, 0.0, 0.0, true);
    td.resistance.verifyAllResistance();
    EXPECT_NEAR(td.results.getInteractionFactor(K::kzy), 0.952166, 1e-6);
    EXPECT_NEAR(td.results.getUtilization(U::CompressionBendingAxisZ).value(), 0.830816, 1e-6);
}

TEST(CompressionAndBending, MomentsEnterWithTheirSigns)
{
    auto section = ipe300();
    const auto moments = momentsY(60, 30, 0, MomentDiagram::Polygonal, 60);
    Member pos(section, "S235", Forces(-200, 60, 5, 0, 0, 0), 4.0, moments, true);
    Member neg(section, "S235", Forces(-200, -60, -5, 0, 0, 0), 4.0, moments, true);
    pos.resistance.verifyAllResistance();
    neg.resistance.verifyAllResistance();
    const double ny = pos.results.getUtilization(U::CompressionAxisY).value();
    const double up = pos.results.getUtilization(U::CompressionBendingAxisY).value();
    const double un = neg.results.getUtilization(U::CompressionBendingAxisY).value();
    // The moment terms change sign: (up - ny) = -(un - ny).
    EXPECT_NEAR(up - ny, -(un - ny), 1e-9);
    EXPECT_LT(un, ny);
    // (6.62): the lateral-torsional term is |My| / Mb,Rd, the Mz term is signed.
    const double nz = pos.results.getUtilization(U::CompressionAxisZ).value();
    const double kzzTerm = pos.results.getInteractionFactor(K::kzz) * 5.0 / (125.2e-6 * 235000.0);
    const double kzyTerm = pos.results.getInteractionFactor(K::kzy) * pos.results.getUtilization(U::BendingAxisY).value();
    EXPECT_NEAR(pos.results.getUtilization(U::CompressionBendingAxisZ).value(), nz + kzyTerm + kzzTerm, 1e-12);
    EXPECT_NEAR(neg.results.getUtilization(U::CompressionBendingAxisZ).value(), nz + kzyTerm - kzzTerm, 1e-12);
}

TEST(CompressionAndBending, GeneralCaseLeavesEquation661Infinite)
{
    // Without the method for rolled sections no ChiLTmod is stored: MyRd = 0 and (6.61) is infinite.
    auto section = ipe300();
    Member m(section, "S235", Forces(-200, 60, 0, 0, 0, 0), 4.0, momentsY(60, 30, 0, MomentDiagram::Polygonal, 60));
    m.resistance.verifyAllResistance();
    EXPECT_FALSE(m.results.getChiLTmod().hasValue());
    EXPECT_TRUE(std::isinf(m.results.getUtilization(U::CompressionBendingAxisY).value()));
    EXPECT_TRUE(std::isinf(m.results.getUtilization(U::CompressionBending).value()));
    EXPECT_FALSE(m.results.isFulfilled(U::CompressionBending));
    // In mode RolledLTB the method is taken without the option.
    ModeScope mode(Standard::Mode::RolledLTB);
    BucklingResults fresh;
    BucklingResistance again(fresh, &section, m.initializer, m.forces, momentsY(60, 30, 0, MomentDiagram::Polygonal, 60),
                             1.0, 4.0, 0.0, 0.0, false, false);
    again.verifyAllResistance();
    EXPECT_TRUE(fresh.getChiLTmod().hasValue());
    EXPECT_TRUE(fresh.isFulfilled(U::CompressionBending));
}

TEST(CompressionAndBending, NormalStressAtAPoint)
{
    // sigma = N / A + My / Iy z - Mz / Iz y at (y, z) = (0.05, 0.1).
    auto section = ipe300();
    Member m(section, "S235", Forces(-200, 60, 5, 0, 0, 0), 4.0, momentsY(60, 60, 60));
    const double expected = -200 / 53.81e-4 + 60 / 8356e-8 * 0.1 - 5 / 603.8e-8 * 0.05;
    EXPECT_NEAR(Access::normalStress(m.resistance, KaVector3D(0, 0.05, 0.1)), expected, 1e-6);
    auto empty = withRow(SDBSectionI(0.3, 0.15, 0.0071, 0.0107, 0.015), {0.0, 8356e-8, 603.8e-8});
    Member z(empty, "S235", Forces(-200, 60, 5, 0, 0, 0), 4.0, momentsY(60, 60, 60));
    EXPECT_EQ(Access::normalStress(z.resistance, KaVector3D(0, 0.05, 0.1)), 0.0);
}
