// The data behind the report's charts: the N-My interaction curve that the cross-section check applies,
// the buckling curves of EN 1993-1-1 6.3, and the moment diagram through three values.

#include "TestSections.h"

#include <design/BucklingCurves.h>
#include <design/MemberCheck.h>
#include <design/InteractionCurve.h>
#include <design/MomentDiagram.h>
#include <design/SectionNotation.h>

#include <KaMaterial.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

using design::CrossSectionRequest;

struct Fixture {
    SDBSectionI section = ipe300();
    KaConstrSteel steel = *KaConstrSteel::fromName("S235");
    CrossSectionRequest request() { return {&section, &steel, SteelDesign::Forces(), 0.0, false}; }
};

// IPE 300, S235, table values: Npl,Rd = A fy = 53.81 cm2 * 235 N/mm2 = 1264.5 kN; Mpl,y,Rd = Wpl,y fy =
// 628.4 cm3 * 235 N/mm2 = 147.67 kNm. With n = 0.5 in class 1, (6.36): a = (A - 2 b tf) / A =
// (5381 - 2 * 150 * 10.7) / 5381 = 0.4035, MN,y,Rd = 147.67 * (1 - 0.5) / (1 - 0.5 * 0.4035) = 92.50 kNm.
TEST(InteractionCurve, Ipe300ReachesThePlasticResistancesAndReducedMomentOf636)
{
    Fixture f;
    const auto request = f.request();
    EXPECT_NEAR(design::interactionUtilization(request, 0.0, 147.67), 1.0, 1e-3);
    EXPECT_NEAR(design::interactionUtilization(request, -1264.5, 0.0), 1.0, 1e-3);
    EXPECT_NEAR(design::interactionUtilization(request, 1264.5, 0.0), 1.0, 1e-3);
    EXPECT_NEAR(design::interactionUtilization(request, -632.2, 92.50), 1.0, 2e-3);

    const auto curve = design::interactionCurveNMy(request, 32);
    ASSERT_EQ(curve.size(), 32u);
    for (const auto& p : curve) ASSERT_TRUE(p.valid);
    // Ray 0 is pure bending, ray 8 pure tension, ray 24 pure compression (the angle runs counter-clockwise
    // from +My towards +N).
    EXPECT_NEAR(curve[0].My, 147.67, 0.05);
    EXPECT_NEAR(curve[0].N, 0.0, 1e-9);
    EXPECT_NEAR(curve[8].N, 1264.5, 0.5);
    EXPECT_NEAR(curve[24].N, -1264.5, 0.5);
    EXPECT_NEAR(curve[16].My, -147.67, 0.05);
    // Every point lies on the boundary of the check: utilization 1 within the precision of the search.
    for (const auto& p : curve) EXPECT_NEAR(design::interactionUtilization(request, p.N, p.My), 1.0, 2e-4);
}

// The doubly symmetric I section gives a curve symmetric about both axes, for every IPE and HEB.
TEST(InteractionCurve, DoublySymmetricSectionsGiveSymmetricCurves)
{
    KaConstrSteel steel = *KaConstrSteel::fromName("S235");
    for (const char* name : {"IPE 200", "IPE 240", "HEB 160", "HEB 300", "HEA 500", "HEM 240"}) {
        auto section = design::makeSection(name);
        ASSERT_TRUE(section) << name;
        const auto curve = design::interactionCurveNMy({section.get(), &steel, {}, 0.0, false}, 16);
        ASSERT_EQ(curve.size(), 16u) << name;
        for (const auto& p : curve) EXPECT_TRUE(p.valid) << name;
        for (std::size_t i = 1; i < 8; ++i) {
            // Ray 8 - i mirrors ray i about the N axis (My -> -My), ray 16 - i about the My axis (N -> -N):
            // tension and compression have the same resistance Npl,Rd in classes 1 to 3.
            const double tolM = 1e-4 * std::fabs(curve[i].My) + 1e-6, tolN = 1e-4 * std::fabs(curve[i].N) + 1e-6;
            EXPECT_NEAR(curve[i].My, -curve[8 - i].My, tolM) << name << " ray " << i;
            EXPECT_NEAR(curve[i].N, curve[8 - i].N, tolN) << name << " ray " << i;
            EXPECT_NEAR(curve[i].My, curve[16 - i].My, tolM) << name << " ray " << i;
            EXPECT_NEAR(curve[i].N, -curve[16 - i].N, tolN) << name << " ray " << i;
        }
    }
}

// A hollow section under an axial force gives no cross-section verdict (error code 6, though the
// utilizations are computed): no curve rather than a curve that the check does not stand behind.
TEST(InteractionCurve, NoCurveWhereTheCheckGivesNoUtilization)
{
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    auto rhs = design::makeSection("RHS 200x100x8");
    ASSERT_TRUE(rhs);
    const auto curve = design::interactionCurveNMy({rhs.get(), &steel, {}, 0.0, false}, 16);
    ASSERT_EQ(curve.size(), 16u);
    // Only the rays of pure bending (0 and 8) are covered.
    for (std::size_t i = 0; i < curve.size(); ++i) EXPECT_EQ(curve[i].valid, i == 0 || i == 8) << "ray " << i;
}

// IPE 400 in S355: the web in pure compression has c/t = 331 / 8.6 = 38.5 > 42 eps = 34.2, class 4; in
// bending it is class 1. The curve has its points in bending and none near pure compression.
TEST(InteractionCurve, Class4RaysHaveNoPoint)
{
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    auto section = design::makeSection("IPE 400");
    const auto curve = design::interactionCurveNMy({section.get(), &steel, {}, 0.0, false}, 16);
    ASSERT_EQ(curve.size(), 16u);
    EXPECT_TRUE(curve[0].valid);
    EXPECT_TRUE(curve[8].valid);
    EXPECT_FALSE(curve[12].valid);  // pure compression
    EXPECT_TRUE(curve[4].valid);    // pure tension
}

// Table 6.1 and (6.49): curve b at lambda = 1.0: Phi = 0.5 (1 + 0.34 * 0.8 + 1) = 1.136,
// chi = 1 / (1.136 + sqrt(1.136² - 1)) = 0.5970. Curve c at 0.5: Phi = 0.5 (1 + 0.49 * 0.3 + 0.25) = 0.6985,
// chi = 1 / (0.6985 + sqrt(0.6985² - 0.25)) = 0.8430. Curve a0 at 2.0: Phi = 0.5 (1 + 0.13 * 1.8 + 4) = 2.617,
// chi = 1 / (2.617 + sqrt(2.617² - 4)) = 0.2323. Curve d at 1.5: Phi = 0.5 (1 + 0.76 * 1.3 + 2.25) = 2.119,
// chi = 1 / (2.119 + sqrt(2.119² - 2.25)) = 0.2766. (The tabulated values of the design aids: 0.597, 0.843,
// 0.232, 0.277.)
TEST(BucklingCurves, ReproduceTheTabulatedReductionFactors)
{
    using SteelDesign::BucklingCurve;
    EXPECT_NEAR(design::reductionFactor(design::imperfectionFactor(BucklingCurve::b), 1.0), 0.5970, 5e-5);
    EXPECT_NEAR(design::reductionFactor(design::imperfectionFactor(BucklingCurve::c), 0.5), 0.8430, 5e-5);
    EXPECT_NEAR(design::reductionFactor(design::imperfectionFactor(BucklingCurve::a0), 2.0), 0.2323, 5e-5);
    EXPECT_NEAR(design::reductionFactor(design::imperfectionFactor(BucklingCurve::d), 1.5), 0.2766, 5e-5);
    EXPECT_EQ(design::reductionFactor(0.34, 0.2), 1.0);
    // (6.57), curve c, lambdaLT,0 = 0.4, beta = 0.75 at lambdaLT = 1.0: Phi = 0.5 (1 + 0.49 * 0.6 + 0.75) =
    // 1.022, chiLT = 1 / (1.022 + sqrt(1.022² - 0.75)) = 1 / (1.022 + 0.5427) = 0.6391.
    EXPECT_NEAR(design::reductionFactorLT(0.49, 1.0, 0.4, 0.75), 0.6391, 5e-5);
    // The limit 1 / lambda² governs for large slenderness with beta < 1.
    EXPECT_LE(design::reductionFactorLT(0.21, 3.0, 0.4, 0.75), 1.0 / 9.0);
    // Each curve falls with the slenderness, and a curve of a larger alpha lies below.
    for (double lambda = 0.25; lambda < 3.0; lambda += 0.25) {
        EXPECT_LT(design::reductionFactor(0.34, lambda + 0.25), design::reductionFactor(0.34, lambda));
        EXPECT_LT(design::reductionFactor(0.49, lambda), design::reductionFactor(0.34, lambda));
    }
}

TEST(MomentDiagram, PassesThroughTheThreeValuesInEitherShape)
{
    using SteelDesign::MomentDiagram;
    const std::array<double, 3> values{-40.0, 25.0, -10.0};
    for (const auto shape : {MomentDiagram::Polygonal, MomentDiagram::Parabolic}) {
        EXPECT_DOUBLE_EQ(design::momentAt(values, shape, 0.0), -40.0);
        EXPECT_DOUBLE_EQ(design::momentAt(values, shape, 0.5), 25.0);
        EXPECT_DOUBLE_EQ(design::momentAt(values, shape, 1.0), -10.0);
    }
    // Polygonal: straight between the points, at 0.25 the mean of -40 and 25.
    EXPECT_DOUBLE_EQ(design::momentAt(values, MomentDiagram::Polygonal, 0.25), -7.5);
    // Parabolic, simply supported beam under q: M(x) = q L² / 8 * 4 xi (1 - xi); at 0.25: 0.75 * M mid.
    EXPECT_DOUBLE_EQ(design::momentAt({0.0, 100.0, 0.0}, MomentDiagram::Parabolic, 0.25), 75.0);
}

} // namespace

namespace {

// The report draws the member's reduction factors on the curves they come from: chi_y, chi_z on (6.49)
// with the curves of Table 6.2, chiLT on (6.57) with the curve of Table 6.5 and the member's lambdaLT,0 and
// beta. Every point must lie on its curve (to rounding) for compression with bending, where the flexural
// reduction factors are formed after the lateral-torsional one.
TEST(BucklingCurves, MemberPointsLieOnTheirCurves)
{
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    for (const char* name : {"IPE 240", "IPE 400", "HEA 200", "HEB 300", "HEM 240", "UB 457x191x67"}) {
        auto section = design::makeSection(name);
        ASSERT_TRUE(section) << name;
        design::MemberRequest request;
        request.section = section.get();
        request.steel = &steel;
        request.forces = SteelDesign::Forces(-150.0, 60.0, 0.0, 0.0, 0.0, 20.0);
        request.moments = design::makeMoments({0.0, 30.0, 60.0}, SteelDesign::MomentDiagram::Polygonal, {0.0, 0.0, 0.0},
                                              SteelDesign::MomentDiagram::Polygonal, std::nullopt,
                                              SteelDesign::ApplicationPoint::Center, 0.0);
        request.lengths = {5.0, 5.0, 5.0};
        const design::MemberOutcome outcome = design::evaluateMember(request);
        const auto& r = outcome.results;
        ASSERT_TRUE(outcome.rolledMethod) << name;
        ASSERT_TRUE(r.getChiLT().hasValue()) << name;
        for (const auto axis : {SteelDesign::Axis::y, SteelDesign::Axis::z}) {
            ASSERT_TRUE(r.getChi(axis).hasValue()) << name;
            const double alpha = design::imperfectionFactor(r.getBucklingCurveCompression(axis).value());
            EXPECT_NEAR(design::reductionFactor(alpha, r.getLambda(axis)), r.getChi(axis).value(), 1e-12) << name;
        }
        const double alphaLT = design::imperfectionFactor(r.getBucklingCurveBending().value());
        EXPECT_NEAR(design::reductionFactorLT(alphaLT, r.getLambdaLT(), r.getLambdaLT0(), r.getBeta()), r.getChiLT().value(),
                    1e-12)
            << name;
    }
}

} // namespace
