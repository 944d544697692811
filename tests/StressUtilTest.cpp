#include "TestSections.h"

#include <KaMath.h>
#include <SteelDesign/StressUtil.h>

#include <gtest/gtest.h>

#include <cmath>

using namespace SteelDesign;

namespace {

// With the unit section and My = 1 the stress at a point is its z coordinate, so a point (0, 0, s) has
// the stress s.
KaVector3D at(double stress) { return KaVector3D(0.0, 0.0, stress); }

struct AlfaCase {
    double s1, s2, alpha;
};

class CompressedFraction : public ::testing::TestWithParam<AlfaCase> {};

INSTANTIATE_TEST_SUITE_P(
    EndStresses, CompressedFraction,
    ::testing::Values(AlfaCase{-5, -3, 1.0},       // both compressed
                      AlfaCase{5, 3, -1.0},        // both in tension: the marker -1
                      AlfaCase{10, -10, 0.5},      // s2 / (s2 - s1) = -10 / -20
                      AlfaCase{-30, 10, 0.75},     // s1 / (s1 - s2) = -30 / -40
                      AlfaCase{0, 5, -1.0},        // zero at p1 is not compression when p2 is in tension
                      AlfaCase{5, 0, 0.0},         // s2 / (s2 - s1) = 0 / -5
                      AlfaCase{-5e-7, 5, -1.0},    // down to -1e-6 counts as not compressed
                      AlfaCase{5e-7, -5, 1.0},     // below +1e-6 counts as compressed
                      AlfaCase{1e-6, 5e-7, 1.0},   // sign change within 1e-6: stays 1.0
                      AlfaCase{-2e-6, -1.5e-6 + 2e-6, 1.0}));

} // namespace

TEST_P(CompressedFraction, FollowsTheEndStresses)
{
    auto section = unitSection();
    const StressUtil util(&section, Forces(0, 1, 0, 0, 0, 0));
    EXPECT_NEAR(util.calculateAlfa(at(GetParam().s1), at(GetParam().s2)), GetParam().alpha, 1e-12);
}

TEST(StressUtil, MaxCompressiveIsTheSmallerEndStressBelowMinusTolerance)
{
    auto section = unitSection();
    const StressUtil util(&section, Forces(0, 1, 0, 0, 0, 0));
    EXPECT_FALSE(util.calculateMaxCompressive(at(-5e-7), at(3)).hasValue());
    EXPECT_FALSE(util.calculateMaxCompressive(at(2), at(3)).hasValue());
    EXPECT_EQ(util.calculateMaxCompressive(at(-4), at(-2)).value(), -4.0);
    EXPECT_EQ(util.calculateMaxCompressive(at(1), at(-2)).value(), -2.0);
}

TEST(StressUtil, PsiAndStressType)
{
    auto section = unitSection();
    const StressUtil util(&section, Forces(0, 1, 0, 0, 0, 0));
    EXPECT_DOUBLE_EQ(util.calculatePsiWeb(at(-10), at(5)), -0.5);
    EXPECT_EQ(util.findNormalStressType(at(1e-6)), NormalStressType::Compression);
    EXPECT_EQ(util.findNormalStressType(at(0)), NormalStressType::Compression);
    EXPECT_EQ(util.findNormalStressType(at(2e-6)), NormalStressType::Tension);
}

TEST(StressUtil, WebFractionFromTheNormalForce)
{
    auto section = unitSection();
    // a = 0.2 m, b = 0.01 m, c = 0.235: a b c 10^6 = 470; N = -100: 0.5 (1 + 100 / 470) = 0.606383.
    const StressUtil compressed(&section, Forces(-100, 0, 0, 0, 0, 0));
    EXPECT_NEAR(compressed.calculateAlfaWeb(0.2, 0.01, 0.235), 0.5 * (1.0 + 100.0 / 470.0), 1e-12);
    const StressUtil tension(&section, Forces(100, 0, 0, 0, 0, 0));
    EXPECT_NEAR(tension.calculateAlfaWeb(0.2, 0.01, 0.235), 0.5 * (1.0 - 100.0 / 470.0), 1e-12);
    EXPECT_EQ(compressed.calculateAlfaWeb(0.0, 0.01, 0.235), 1.0);
}

TEST(StressUtil, CircularHollowSectionMostCompressedPoint)
{
    auto section = unitSection();  // stress = N + My z - Mz y
    const double D = 0.2;
    // My > 0, Mz = 0: theta = 0, point (0, -D/2): stress = -0.1 My.
    EXPECT_NEAR(StressUtil(&section, Forces(0, 1, 0, 0, 0, 0)).calculateMaxCompressiveStressSectionO(D), -0.1, 1e-12);
    // Mz = 1 > 1e-6: theta = 2 pi - pi/2, point (y, z) = (D/2, 0): stress = -Mz y = -0.1.
    EXPECT_NEAR(StressUtil(&section, Forces(0, 0, 1, 0, 0, 0)).calculateMaxCompressiveStressSectionO(D), -0.1, 1e-12);
    // Mz = -1: not mirrored, theta = pi/2, point (-D/2, 0): stress = -(-1)(-0.1) = -0.1.
    EXPECT_NEAR(StressUtil(&section, Forces(0, 0, -1, 0, 0, 0)).calculateMaxCompressiveStressSectionO(D), -0.1, 1e-12);
    // My = 3, Mz = 4: M = 5, theta = 2 pi - acos(0.6); y = -sin(theta) D/2 = 0.08, z = -cos(theta) D/2 = -0.06;
    // stress = 3 (-0.06) - 4 (0.08) = -0.5 = -M D / 2.
    EXPECT_NEAR(StressUtil(&section, Forces(0, 3, 4, 0, 0, 0)).calculateMaxCompressiveStressSectionO(D), -0.5, 1e-12);
    // No bending: N / A at (0, -D/2).
    EXPECT_NEAR(StressUtil(&section, Forces(-7, 0, 0, 0, 0, 0)).calculateMaxCompressiveStressSectionO(D), -7.0, 1e-12);
}
