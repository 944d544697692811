// The lateral-torsional stage of the flat path on its member block: critical moment by either formula,
// kc of EN 1993-1-1 Table 6.6, the modification f, the ignore code and design mode 1 without compression.

#include "FlatInternal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

using namespace SteelDesign::Flat;

namespace {

// IPE 300, L = 6 m, E 210000, G 81000, fy 235, gammaM1 1.1 (see FlatCall.h):
//   Ncr,z = 1000 pi^2 * 210000 * 603.8e-8 / 36 = 347.624 kN
//   c^2 = (1.2426e-7 + 0.039 * 36 * 19.75e-8) / 603.8e-8 = 4.0155e-7 / 6.038e-6 = 0.066504 m^2, c = 0.25788 m
MemberBlock ipe300(double My)
{
    MemberBlock m;
    m.kind = 1;
    m.E = 210000;
    m.G = 81000;
    m.gammaM1 = 1.1;
    m.fy = 235;
    m.A = 53.81e-4;
    m.Iy = 8356e-8;
    m.Iz = 603.8e-8;
    m.It = 19.75e-8;
    m.Iw = 124260e-12;
    m.Wely = 557.1e-6;
    m.Wply = 628.4e-6;
    m.Welz = 80.5e-6;
    m.Wplz = 125.2e-6;
    m.h = 300;
    m.b = 150;
    m.tf = 10.7;
    m.L = 6.0;
    m.LT = 6.0;
    m.act.My = My;
    m.M1 = m.Mm = m.M2 = My;
    m.nSystem = 2.5;
    m.betaMy = m.betaMz = 1.1;
    return m;
}

TEST(FlatLtb, UniformMomentGivesZetaOneKcOneAndNoModification)
{
    MemberBlock m = ipe300(60);
    flatLateralTorsionalBuckling(m);
    EXPECT_DOUBLE_EQ(m.zeta, 1.0);
    EXPECT_EQ(m.formulaFlag, 1);
    EXPECT_DOUBLE_EQ(m.kc, 1.0);
    // f = 1 - 0.5 (1 - 1) (...) = 1, so chiLT,mod = chiLT
    EXPECT_DOUBLE_EQ(m.f, 1.0);
    EXPECT_DOUBLE_EQ(m.chiLTmod, m.chiLT);
    EXPECT_NEAR(m.NcrZ, 347.624, 1e-3);
    EXPECT_NEAR(m.c, 0.25788, 1e-5);
    EXPECT_NEAR(m.Mcr, 347.624 * 0.25788, 1e-2);
}

TEST(FlatLtb, GivenCriticalMomentIsUsedAndZetaStoredAsZero)
{
    MemberBlock m = ipe300(60);
    m.McrGiven = 120.0;
    m.zetaGiven = 1.3; // ignored together with the rest of the critical-moment steps
    flatLateralTorsionalBuckling(m);
    EXPECT_DOUBLE_EQ(m.Mcr, 120.0);
    EXPECT_DOUBLE_EQ(m.zeta, 0.0);
    EXPECT_DOUBLE_EQ(m.c, 0.0);
    // lambdaLT = sqrt(557.1e-6 * 235 / 0.120) = sqrt(1.09098) = 1.04450
    EXPECT_NEAR(m.lambdaLT, 1.04450, 1e-5);
}

TEST(FlatLtb, GivenZetaReplacesTheComputedOne)
{
    MemberBlock m = ipe300(60);
    m.zetaGiven = 1.5;
    m.loadPosition = 0;
    flatLateralTorsionalBuckling(m);
    EXPECT_DOUBLE_EQ(m.zeta, 1.5);
    // Mcr = 1.5 * 347.624 * 0.25788 = 134.47 kNm
    EXPECT_NEAR(m.Mcr, 134.47, 0.01);
}

TEST(FlatLtb, SpanMomentFormulaForTableZeta)
{
    // M1 = 0, Mm = 77.5, M2 = -45, uniform load: zeta = 1.48 with flag 0 (see the zeta tests).
    // Load on the side that raises Mcr (loadPosition 2): zp = +0.15 m, 0.4 zeta zp = 0.0888;
    // Mcr0 = 1.48 * 347.624 * (0.0888 + sqrt(0.0888^2 + 0.066504)) = 514.48 * 0.36155 = 186.01 kNm;
    // M0 = 77.5 - (0 - 45) / 2 = 100; Mcr = 186.01 / 100 * max(0, 45, 77.5) = 144.16 kNm
    MemberBlock m = ipe300(77.5);
    m.M1 = 0;
    m.Mm = 77.5;
    m.M2 = -45;
    m.spanLoadShare = 1.0;
    m.loadPosition = 2;
    flatLateralTorsionalBuckling(m);
    EXPECT_EQ(m.formulaFlag, 0);
    EXPECT_NEAR(m.zeta, 1.48, 1e-9);
    EXPECT_NEAR(m.zp, 0.15, 1e-12);
    EXPECT_NEAR(m.Mcr, 144.16, 0.01);
}

TEST(FlatLtb, IgnoreCodeFromSlendernessAndMomentRatio)
{
    // Mcr given 1000 kNm, W fy = 0.09 MNm: lambdaLT = sqrt(0.09 / 1.0) = 0.3 <= 0.4
    struct Case {
        double W, My;
        int code;
    };
    for (const Case c : {Case{0.09 / 235, 100, 3},  // 0.3 and My / Mcr = 0.1 <= 0.16
                         Case{0.09 / 235, 500, 1},  // 0.3, but 0.5 > 0.16
                         Case{0.36 / 235, 100, 2},  // lambdaLT = 0.6 > 0.4, 0.1 <= 0.16
                         Case{0.36 / 235, 500, 0}}) {
        MemberBlock m = ipe300(c.My);
        m.Wely = c.W;
        m.McrGiven = 1000.0;
        flatLateralTorsionalBuckling(m);
        EXPECT_EQ(m.ignoreCode, c.code) << "W " << c.W << " My " << c.My;
    }
}

TEST(FlatLtb, CurveLetterByKindAndMethod)
{
    struct Case {
        int kind;
        double h, b;
        const char* letter;
        double alpha, beta;
    };
    for (const Case c : {Case{1, 300, 150, "b", 0.34, 0.75},  // rolled, h/b = 2.0
                         Case{2, 400, 150, "c", 0.49, 0.75},  // rolled, h/b = 2.67
                         Case{3, 300, 150, "c", 0.49, 0.75},  // welded
                         Case{3, 600, 200, "d", 0.76, 0.75},
                         Case{20, 300, 150, "d", 0.76, 0.0}, // general method
                         Case{8, 300, 150, "d", 0.76, 0.0}}) {
        MemberBlock m = ipe300(60);
        m.kind = c.kind;
        m.h = c.h;
        m.b = c.b;
        flatLateralTorsionalBuckling(m);
        EXPECT_STREQ(m.curve, c.letter) << c.kind;
        EXPECT_DOUBLE_EQ(m.alphaLT, c.alpha);
        EXPECT_DOUBLE_EQ(m.beta, c.beta);
        EXPECT_DOUBLE_EQ(m.lambdaLT0, 0.4);
    }
}

TEST(FlatLtb, GeneralMethodPhiAndChi)
{
    // kind 20, curve d: lambdaLT = 1.20846 (as for the IPE 300 at L = 6 m)
    // Phi = 0.5 (1 + 0.76 (1.20846 - 0.2) + 1.20846^2) = 0.5 (1 + 0.76643 + 1.46038) = 1.61341
    // chiLT = 1 / (1.61341 + sqrt(2.60309 - 1.46038)) = 1 / (1.61341 + 1.06898) = 0.37280
    MemberBlock m = ipe300(60);
    m.kind = 20;
    flatLateralTorsionalBuckling(m);
    EXPECT_NEAR(m.lambdaLT, 1.20846, 1e-5);
    EXPECT_NEAR(m.Phi, 1.61341, 1e-5);
    EXPECT_NEAR(m.chiLT, 0.37280, 1e-5);
}

TEST(FlatLtb, ModeOneWithoutCompressionSumsTheBendingTerms)
{
    // N = 0: ky = kz = 1, no axial term. Mpl,y,d = 628.4e-6 * 235 / 1.1 = 0.134249 MNm,
    // Mpl,z,d = 125.2e-6 * 213.636 = 0.026747 MNm; Mcr = 89.646 kNm,
    // lambdaM = sqrt(0.134249 / 0.089646) = 1.22374, 1.22374^5 = 2.74441,
    // kappaM = (1 / 3.74441)^(1 / 2.5) = exp(0.4 ln 0.267065) = exp(-0.528086) = 0.58972
    // u = 0.060 / (0.58972 * 0.134249) + 0.005 / 0.026747 = 0.75787 + 0.18693 = 0.94480
    MemberBlock m = ipe300(60);
    m.mode = 1;
    m.act.Mz = 5;
    flatLateralTorsionalBuckling(m);
    EXPECT_DOUBLE_EQ(m.ky, 1.0);
    EXPECT_DOUBLE_EQ(m.kz, 1.0);
    EXPECT_STREQ(m.curve, "");
    EXPECT_NEAR(m.lambdaM, 1.22374, 1e-5);
    EXPECT_NEAR(m.kappaM, 0.58972, 1e-5);
    const double bending = 0.060 / (m.kappaM * m.Mplyd) + 0.005 / m.Mplzd;
    EXPECT_DOUBLE_EQ(m.utilisation, bending);
    EXPECT_NEAR(m.utilisation, 0.94480, 1e-4);
}

TEST(FlatLtb, ModeOneStockyMemberKeepsFullMomentResistance)
{
    // lambdaM <= 0.4 (Mcr given 1000 kNm: sqrt(0.134249 / 1.0) = 0.3664): kappaM = 1
    MemberBlock m = ipe300(60);
    m.mode = 1;
    m.McrGiven = 1000;
    flatLateralTorsionalBuckling(m);
    EXPECT_DOUBLE_EQ(m.kappaM, 1.0);
}

TEST(FlatLtb, ModeOneHollowSectionTakesCurveOfItsManufacture)
{
    MemberBlock m = ipe300(20);
    m.mode = 1;
    m.kind = 20;
    m.act.N = -100;
    m.manufacturing = 1;
    flatLateralTorsionalBuckling(m);
    EXPECT_STREQ(m.curve, "a");
    // Mpl,y,d of kinds above 3 is Wpl,y fy without the partial factor
    EXPECT_NEAR(m.Mplyd, 628.4e-6 * 235, 1e-12);
    m.manufacturing = 0;
    flatLateralTorsionalBuckling(m);
    EXPECT_STREQ(m.curve, "b");
}

struct KcCase {
    const char* name;
    double M1, Mm, M2, share, kc;
};
class Kc : public ::testing::TestWithParam<KcCase> {};

TEST_P(Kc, Table66)
{
    const KcCase& c = GetParam();
    EXPECT_NEAR(correctionFactorKc(c.M1, c.Mm, c.M2, c.share), c.kc, 1e-9) << c.name;
}

INSTANTIATE_TEST_SUITE_P(
    CorrectionFactor, Kc,
    ::testing::Values(KcCase{"constant", 50, 50, 50, 0, 1.0},
                      KcCase{"linearPsi0", 0, 50, 100, 0, 1 / 1.33},           // 0.75188
                      KcCase{"linearPsiMinus1", 100, 0, -100, 0, 1 / 1.66},   // 0.60241
                      KcCase{"linearPsiHalf", 50, 75, 100, 0, 1 / (1.33 - 0.165)},
                      KcCase{"simpleUniform", 0, 100, 0, 1.0, 0.94},
                      KcCase{"simpleHalf", 0, 100, 0, 0.5, 0.86 + 0.04},
                      KcCase{"simplePoint", 0, 100, 0, 0.0, 0.86},
                      KcCase{"restrainedUniform", 50, -30, 50, 1.0, 0.90},
                      KcCase{"restrainedHalf", -50, 30, -50, 0.5, 0.77 + 0.065},
                      KcCase{"restrainedPoint", 50, -30, 60, 0.0, 0.77},
                      KcCase{"oneEndFree", 0, 40, -50, 1.0, 0.91},
                      KcCase{"oneEndFreeHalf", -50, -60, 0, 0.5, 0.82 + 0.045},
                      KcCase{"oneEndFreePoint", 0, 40, -50, 0.0, 0.82},
                      KcCase{"otherwise", 20, 10, -30, 1.0, 1.0}));

TEST(FlatCurves, FlexuralCurvesOfTable62)
{
    EXPECT_STREQ(flexuralCurve(1, 0, 300, 150, 10.7, 0, 0), "a");
    EXPECT_STREQ(flexuralCurve(1, 1, 300, 150, 10.7, 0, 0), "b");
    EXPECT_STREQ(flexuralCurve(1, 0, 300, 150, 10.7, 1, 0), "a0");
    EXPECT_STREQ(flexuralCurve(1, 1, 300, 300, 19, 0, 0), "c");
    EXPECT_STREQ(flexuralCurve(1, 1, 300, 300, 19, 1, 0), "a");
    EXPECT_STREQ(flexuralCurve(3, 1, 300, 300, 50, 0, 0), "d");
    EXPECT_STREQ(flexuralCurve(20, 0, 200, 100, 8, 0, 1), "a");
    EXPECT_EQ(curveCode("a0"), 1);
    EXPECT_EQ(curveCode("d"), 5);
    EXPECT_EQ(curveCode(""), 0);
    EXPECT_EQ(curveCode("e"), 0);
    // chi of curve b at lambda 0.95363 (see the compression check): 0.62666
    EXPECT_NEAR(reductionFactorChi(0.953632, 0.34), 0.62666, 1e-5);
    EXPECT_DOUBLE_EQ(reductionFactorChi(0.1, 0.34), 1.0);
}

} // namespace
