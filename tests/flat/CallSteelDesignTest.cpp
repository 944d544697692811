// CALL_STEEL_DESIGN: validation stages and their codes, the code-16 run, given values, and full runs of a
// rolled I beam in both design modes against hand calculations. Every call uses exactly-sized heap arrays
// (FlatCall.h).

#include "FlatCall.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

namespace {

struct StageCase {
    const char* name;
    std::function<void(FlatCall&)> change;
    int stage;
};

class ValidationStage : public ::testing::TestWithParam<StageCase> {};

TEST_P(ValidationStage, FailsWithItsCode)
{
    FlatCall call;
    call.control[0] = 7;
    call.values[11] = 3.0;
    call.My = 60;
    GetParam().change(call);
    EXPECT_EQ(call.run(), 0) << GetParam().name;
    EXPECT_EQ(call.status[0], GetParam().stage) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(
    Stages, ValidationStage,
    ::testing::Values(
        StageCase{"nothingRequested", [](FlatCall& c) { c.control[0] = 0; }, 1},
        StageCase{"onlyUnknownBits", [](FlatCall& c) { c.control[0] = 8; }, 1},
        StageCase{"noSegments", [](FlatCall& c) { c.control[10] = 0; }, 2},
        StageCase{"fourSegments", [](FlatCall& c) { c.control[10] = 4; }, 2},
        StageCase{"segmentStartBelowZero", [](FlatCall& c) { c.values[30] = -0.001; }, 2},
        StageCase{"segmentWithoutYieldStrength", [](FlatCall& c) { c.values[32] = 0.0; }, 2},
        StageCase{"segmentWithoutUpperThickness", [](FlatCall& c) { c.values[31] = 0.0001; }, 2},
        // the section stage has not begun: still code 2
        StageCase{"noGammaM0", [](FlatCall& c) { c.values[5] = 0.0; }, 2},
        StageCase{"kindZero", [](FlatCall& c) { c.control[5] = 0; }, 4},
        StageCase{"kindNegativeInLowHalf", [](FlatCall& c) { c.control[5] = 0x1FFFF; }, 4}, // low half -1
        StageCase{"kind4", [](FlatCall& c) { c.control[5] = 4; }, 4},
        StageCase{"kind12", [](FlatCall& c) { c.control[5] = 12; }, 4},
        StageCase{"kind22", [](FlatCall& c) { c.control[5] = 22; }, 4},
        StageCase{"noHeight", [](FlatCall& c) { c.dims[0] = 0.0; }, 4},
        StageCase{"noGoverningThickness", [](FlatCall& c) { c.dims[7] = 0.0; }, 4},
        StageCase{"noFlangeThickness", [](FlatCall& c) { c.dims[3] = 0.0; }, 4},
        StageCase{"noElasticModulus", [](FlatCall& c) { c.props[6] = 0.0; }, 4},
        StageCase{"noWarpingConstant", [](FlatCall& c) { c.props[11] = 0.0; }, 4},
        StageCase{"kind8WithoutSecondFlange", [](FlatCall& c) { c.control[5] = 8; c.dims[14] = 12; c.props[19] = 1.5; }, 4},
        StageCase{"kind11WithoutShearCentre", [](FlatCall& c) { c.control[5] = 11; }, 4},
        StageCase{"bimomentOnAngle", [](FlatCall& c) { c.control[5] = 15; c.B = 0.5; }, 4},
        StageCase{"warpingTorsionOnKind9", [](FlatCall& c) { c.control[5] = 9; c.dims[14] = 12; c.Mw = 1.0; }, 4},
        StageCase{"ltbWithoutLength", [](FlatCall& c) { c.values[10] = 0.0; }, 64},
        StageCase{"ltbWithoutShearModulus", [](FlatCall& c) { c.values[1] = 0.0; }, 64},
        StageCase{"bucklingWithoutLengths", [](FlatCall& c) { c.values[11] = 0.0; c.values[12] = 0.001; }, 128},
        StageCase{"bucklingWithoutModulus", [](FlatCall& c) { c.control[0] = 5; c.values[0] = 0.0; }, 128}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(CallSteelDesign, StageCodeEightIsOverwrittenAtOnce)
{
    FlatCall call;
    call.control[10] = 5;
    EXPECT_EQ(call.run(), 0);
    EXPECT_EQ(call.status[0], 2);
}

TEST(CallSteelDesign, AnglesNeedNoFourthDimension)
{
    // L 100 x 100 x 10 with dims[3] = 0: kinds 15 and 16 pass the dimension check
    for (int kind : {15, 16}) {
        FlatCall call;
        call.control[5] = kind;
        call.dims = std::vector<double>(20, 0.0);
        call.dims[0] = 100;
        call.dims[1] = kind == 15 ? 100 : 75;
        call.dims[2] = 10;
        call.dims[7] = 10;
        call.props = std::vector<double>(30, 0.0);
        call.props[1] = 19.2;
        call.props[2] = 177;
        call.props[3] = 177;
        call.props[6] = 24.6;
        call.props[7] = 44.0;
        call.N = -50;
        EXPECT_EQ(call.run(), 1) << kind;
        EXPECT_EQ(call.status[0], 0) << kind;
        // the dimension check of entry 3 does apply to every other kind
        call.control[5] = 20;
        call.dims[3] = 0;
        EXPECT_EQ(call.run(), 0);
        EXPECT_EQ(call.status[0], 4);
    }
}

TEST(CallSteelDesign, WarpingActionsAdmittedForKinds1To3And10)
{
    for (int kind : {1, 2, 3, 10}) {
        FlatCall call;
        call.control[5] = kind;
        call.dims[13] = 150;
        call.B = 0.2;
        call.Mw = 1.0;
        EXPECT_EQ(call.run(), 1) << kind;
    }
}

TEST(CallSteelDesign, ClassFourRunCompletesWithCode16)
{
    // welded I 1000 x 300, web 4 mm, flanges 20 mm, under N = -500 kN in mode 1:
    // web c / t = (1000 - 40) / 4 = 240 > 42 epsilon = 42: class 4
    FlatCall call;
    call.control[0] = 1;
    call.control[1] = 1;
    call.control[5] = 3;
    call.dims[0] = 1000;
    call.dims[1] = 300;
    call.dims[2] = 4;
    call.dims[3] = 20;
    call.dims[4] = 0;
    call.dims[7] = 20;
    call.props[1] = 158.4; // 2 * 300 * 20 + 960 * 4 = 15840 mm^2
    call.props[2] = 290000;
    call.props[3] = 9000;
    call.props[6] = 5800;
    call.props[7] = 6600;
    call.N = -500;
    EXPECT_EQ(call.run(), 1);
    EXPECT_EQ(call.status[0], 16);
    EXPECT_EQ(call.status[10], 4);
    EXPECT_EQ(call.status[11], 4);
    EXPECT_EQ(call.status[12], 1); // (300 - 4) / 2 / 20 = 7.4 <= 9
}

TEST(CallSteelDesign, NoClassWithoutCompressionOrOnTheAlternativePath)
{
    FlatCall call;
    call.control[1] = 1;
    call.N = 100; // tension only: nothing to classify
    EXPECT_EQ(call.run(), 1);
    EXPECT_EQ(call.status[10], 0);
    EXPECT_EQ(call.status[11], 0);
    EXPECT_EQ(call.status[12], 0);
    FlatCall alt;
    alt.N = -100;
    EXPECT_EQ(alt.run(), 1);
    EXPECT_EQ(alt.status[10], 0);
}

TEST(CallSteelDesign, GammaM1FallsBackToGammaM0)
{
    // Mb,Rd = 1000 chiLT W fy / gammaM1 with gammaM1 = gammaM0 = 1.0: 1000 * 0.574355 * 557.1e-6 * 235 = 75.194
    FlatCall call;
    call.control[0] = 3;
    call.values[6] = 0.0;
    call.My = 60;
    EXPECT_EQ(call.run(), 1);
    EXPECT_NEAR(call.results[80], 75.194, 1e-3);
}

// IPE 300, S235, L = 6 m, My = 60 kNm constant (no diagram given), load at the shear centre, mode 0.
//   Ncr,z = 1000 * pi^2 * 210000 * 603.8e-8 / 6^2 = 1000 * 9.8696 * 210000 * 6.038e-6 / 36 = 347.624 kN
//   c^2 = (124260e-12 + 0.039 * 36 * 19.75e-8) / 603.8e-8 = (1.2426e-7 + 2.7729e-7) / 6.038e-6 = 0.066504
//   zeta = 1.0 (constant moment), Mcr = 1.0 * 347.624 * sqrt(0.066504) = 347.624 * 0.257883 = 89.646 kNm
//   not classified on this path: W = Wel,y = 557.1e-6; kind 1 rolled method, h / b = 2.0: curve b, 0.34
//   lambdaLT = sqrt(557.1e-6 * 235 / 0.089646) = sqrt(1.46040) = 1.208465
//   Phi = 0.5 (1 + 0.34 (1.208465 - 0.4) + 0.75 * 1.460387) = 0.5 (1 + 0.274878 + 1.095290) = 1.185084
//   chiLT = 1 / (1.185084 + sqrt(1.404424 - 1.095290)) = 1 / (1.185084 + 0.555999) = 0.574355
//     (<= 1 and <= 1 / lambda^2 = 0.684750)
//   kc = 1.0 (constant), f = 1.0, chiLT,mod = 0.574355
//   Mb,Rd = 1000 * 0.574355 * 557.1e-6 * 235 / 1.1 = 68.358 kNm, utilisation = 60 / 68.358 = 0.87773
//   My / Mcr = 0.66930 > 0.16 and lambdaLT > 0.4: ignore code 0
TEST(CallSteelDesign, RolledBeamDesignMode0)
{
    FlatCall call;
    call.control[0] = 3;
    call.My = 60;
    ASSERT_EQ(call.run(), 1);
    EXPECT_EQ(call.status[0], 0);
    const auto& r = call.results;
    EXPECT_NEAR(r[30], 0.87773, 1e-5);
    EXPECT_NEAR(r[31], 0.574355, 1e-6);
    EXPECT_NEAR(r[32], 347.624, 1e-3);
    EXPECT_NEAR(r[33], 89.646, 1e-3);
    EXPECT_EQ(r[34], 0.0); // ky, kz belong to mode 1
    EXPECT_EQ(r[35], 0.0);
    EXPECT_NEAR(r[36], 0.574355, 1e-6);
    EXPECT_DOUBLE_EQ(r[37], 1.0);
    EXPECT_DOUBLE_EQ(r[78], 1.0);
    EXPECT_DOUBLE_EQ(r[79], 1.0);
    EXPECT_NEAR(r[80], 68.358, 1e-3);
    EXPECT_DOUBLE_EQ(r[81], 0.75);
    EXPECT_NEAR(r[82], 1.208465, 1e-6);
    EXPECT_DOUBLE_EQ(r[83], 0.4);
    EXPECT_DOUBLE_EQ(r[84], 0.34);
    EXPECT_NEAR(r[85], 1.185084, 1e-6);
    EXPECT_NEAR(r[86], 0.257883, 1e-6);
    EXPECT_DOUBLE_EQ(r[87], 0.0);
    EXPECT_EQ(call.status[9], 3);
    EXPECT_EQ(call.status[7], 0);
    // mode-1 entries stay untouched
    for (int i = 65; i <= 77; ++i) EXPECT_EQ(r[i], 0.0) << i;
}

TEST(CallSteelDesign, GivenValuesOfDesignMode0)
{
    FlatCall call;
    call.control[0] = 3;
    call.My = 60;
    call.results[36] = 0.8; // chiLT,mod given
    call.results[80] = 0.0;
    ASSERT_EQ(call.run(), 1);
    // Mb,Rd = 1000 * 0.8 * 557.1e-6 * 235 / 1.1 = 95.213
    EXPECT_DOUBLE_EQ(call.results[36], 0.8);
    EXPECT_NEAR(call.results[80], 95.213, 1e-3);
    FlatCall given;
    given.control[0] = 3;
    given.My = 60;
    given.results[80] = 120.0; // Mb,Rd given
    ASSERT_EQ(given.run(), 1);
    EXPECT_DOUBLE_EQ(given.results[80], 120.0);
    EXPECT_DOUBLE_EQ(given.results[30], 0.5);
}

// The same beam in design mode 1 with N = -200 kN, My = 60 kNm, Mz = 5 kNm, load on the top flange
// (control[2] = 1, zp = -h / 2 = -0.15 m).
//   Mcr = 347.624 * (sqrt(0.066504 + 0.25 * 0.0225) - 0.075) = 347.624 * (0.268689 - 0.075) = 67.289 kNm
//   fy,d = 235 / 1.1 = 213.636; Npl,d = 53.81e-4 * 213.636 = 1.149577 MN; Mpl,y,d = 628.4e-6 * 213.636
//     = 0.134249 MNm; Mpl,z,d = 125.2e-6 * 213.636 = 0.026747 MNm
//   lambdaM = sqrt(0.134249 / 0.067289) = 1.412485; n = 2.5 (rolled):
//     kappaM = (1 / (1 + 1.412485^5))^(1 / 2.5) = (1 / 6.6322)^0.4 = 0.469456
//   lambdaK = sqrt(1.149577 / 0.347624) = 1.818504; curve b about z (h / b = 2 > 1.2, tf <= 40):
//     Phi = 0.5 (1 + 0.34 * 1.618504 + 3.306957) = 2.428624, kappa = 1 / (2.428624 + sqrt(5.898215 - 3.306957))
//     = 1 / (2.428624 + 1.609739) = 0.247625
//   betaMy = 1.8 - 0.7 * 1 = 1.1 (constant diagram), betaMz = 1.1
//   N / (kappa Npl,d) = 0.2 / (0.247625 * 1.149577) = 0.702582
//   ay = 0.15 * 1.818504 * 1.1 - 0.15 = 0.150053, ky = 1 - 0.702582 * 0.150053 = 0.894575
//   az = 1.818504 * (2.2 - 4) + (125.2 / 80.5 - 1) = -3.273307 + 0.555280 = -2.718028,
//     kz = 1 - 0.702582 * (-2.718028) = 2.909653 -> 1.5
//   u = 0.702582 + 0.060 / (0.469456 * 0.134249) * 0.894575 + 0.005 / 0.026747 * 1.5
//     = 0.702582 + 0.851652 + 0.280402 = 1.834637
TEST(CallSteelDesign, RolledBeamDesignMode1)
{
    FlatCall call;
    call.control[0] = 3;
    call.control[1] = 1;
    call.control[2] = 1;
    call.N = -200;
    call.My = 60;
    call.Mz = 5;
    ASSERT_EQ(call.run(), 1);
    EXPECT_EQ(call.status[0], 0);
    // web alpha = 0.5 (1 + 0.2 / (248.6 * 7.1e-6 * 235)) = 0.74108, c / t = 35.01 <= 396 / (13 alpha - 1)
    // = 45.86; flanges (150 - 7.1 - 30) / 2 / 10.7 = 5.28 <= 9: class 1
    EXPECT_EQ(call.status[10], 1);
    const auto& r = call.results;
    EXPECT_NEAR(r[30], 1.834637, 1e-5);
    EXPECT_NEAR(r[31], 0.469456, 1e-6);
    EXPECT_NEAR(r[32], 347.624, 1e-3);
    EXPECT_NEAR(r[33], 67.289, 1e-3);
    EXPECT_NEAR(r[34], 0.894575, 1e-6);
    EXPECT_DOUBLE_EQ(r[35], 1.5);
    EXPECT_NEAR(r[65], 1.412485, 1e-6);
    EXPECT_NEAR(r[66], 1.818504, 1e-6);
    EXPECT_NEAR(r[67], 0.247625, 1e-6);
    EXPECT_NEAR(r[68], 1.149577, 1e-6);
    EXPECT_NEAR(r[69], 0.134249, 1e-6);
    EXPECT_NEAR(r[70], 0.026747, 1e-6);
    EXPECT_NEAR(r[71], 0.257883, 1e-6);
    EXPECT_DOUBLE_EQ(r[72], -0.15);
    EXPECT_DOUBLE_EQ(r[73], 2.5);
    EXPECT_DOUBLE_EQ(r[74], 1.1);
    EXPECT_DOUBLE_EQ(r[75], 1.1);
    EXPECT_NEAR(r[76], 0.150053, 1e-6);
    EXPECT_NEAR(r[77], -2.718028, 1e-6);
    EXPECT_EQ(call.status[9], 3); // curve b of the flexural buckling about z
    for (int i = 78; i <= 87; ++i) EXPECT_EQ(r[i], 0.0) << i;
}

TEST(CallSteelDesign, GivenPlasticResistancesOfDesignMode1)
{
    FlatCall call;
    call.control[0] = 3;
    call.control[1] = 1;
    call.My = 60;
    call.results[68] = 2.0;
    call.results[69] = 0.2;
    call.results[70] = 0.05;
    ASSERT_EQ(call.run(), 1);
    EXPECT_DOUBLE_EQ(call.results[68], 2.0);
    EXPECT_DOUBLE_EQ(call.results[69], 0.2);
    // N = 0: no axial term, ky = kz = 1; lambdaM = sqrt(0.2 / 0.0896464) = sqrt(2.231000) = 1.493649
    EXPECT_NEAR(call.results[65], 1.493649, 1e-6);
    EXPECT_EQ(call.status[9], 0); // no compression: curve cleared
}

TEST(CallSteelDesign, PointStressesAtLoadPoints)
{
    // two load points: top flange tip (75, -150) and centroid (0, 0), mode 1, N = -200, My = 60, Mz = 5
    // sigma(75, -150) = (-200 / 53.81e-4 + 60 * -0.15 / 8356e-8 - 5 * 0.075 / 603.8e-8) / 1000
    //                 = (-37167.8 - 107707.0 - 62106.7) / 1000 = -206.98 N/mm^2
    // sigma(0, 0) = -37.168 N/mm^2
    FlatCall call(1, 2);
    call.control[1] = 1;
    call.N = -200;
    call.My = 60;
    call.Mz = 5;
    call.Vz = 100;
    call.results[100] = 75;
    call.results[101] = -150;
    call.results[109] = 0;
    call.results[110] = 0;
    ASSERT_EQ(call.run(), 1);
    EXPECT_EQ(call.status[4], 9 + 2); // nine points of the I section and the two load points
    EXPECT_NEAR(call.results[102], -206.98, 0.01);
    EXPECT_NEAR(call.results[111], -37.168, 1e-3);
    // centroid in the web: tau = Vz / Avz, Avz = 53.81e2 - 2 * 150 * 10.7 + (7.1 + 30) * 10.7 = 2568.0 mm^2,
    // 100e3 / 2568.0 = 38.941 N/mm^2; sigma_v = sqrt(37.168^2 + 3 * 38.941^2) = sqrt(1381.46 + 4549.18)
    // = 77.011; / 235 = 0.32771
    EXPECT_NEAR(call.results[112], 38.941, 1e-3);
    EXPECT_NEAR(call.results[114], 77.011, 1e-3);
    EXPECT_NEAR(call.results[117], 0.32771, 1e-5);
    // the governing point is the most compressed flange tip: 206.98 / 235 = 0.88077
    EXPECT_NEAR(call.results[0], 0.88077, 1e-4);
    EXPECT_NEAR(call.results[2], -206.98, 0.01);
}

TEST(CallSteelDesign, AlternativePathLeavesPointStressSlotAndReducesForShear)
{
    FlatCall call(1, 1);
    call.N = -200;
    call.My = 60;
    call.Vz = 300; // Vpl,z,Rd = 2567.97e-6 * 235 / sqrt(3) = 0.348415 MN: 0.3 / 0.348415 = 0.861041 > 0.5
    call.results[100] = 0;
    call.results[101] = 120;
    call.results[102] = -1.0;
    ASSERT_EQ(call.run(), 1);
    EXPECT_EQ(call.results[102], -1.0);
    // rho = (2 * 0.861041 - 1)^2 = 0.722083^2 = 0.521404, at a web point
    EXPECT_NEAR(call.results[105], 0.521404, 1e-6);
    EXPECT_NEAR(call.results[18], 0.521404, 1e-6);
}

// Compression check, mode 0: Lcr,z = 3 m, N = -200 kN.
//   Ncr,z = pi^2 * 210000 * 603.8e4 / 3000^2 / 1000 = 1390.50 kN; NRk = 53.81e-4 * 235 * 1000 = 1264.535 kN
//   lambda = sqrt(1264.535 / 1390.50) = 0.953632; curve b: Phi = 0.5 (1 + 0.34 * 0.753632 + 0.909413)
//   = 1.082824; chi = 1 / (1.082824 + sqrt(1.172508 - 0.909413)) = 0.626664
//   Nb,z,Rd = 0.626664 * 1264.535 / 1.1 = 720.40 kN; utilisation 200 / 720.40 = 0.27762
TEST(CallSteelDesign, CompressionMemberCheck)
{
    FlatCall call;
    call.control[0] = 5;
    call.values[12] = 3.0;
    call.N = -200;
    ASSERT_EQ(call.run(), 1);
    EXPECT_EQ(call.status[20], 2);
    EXPECT_NEAR(call.results[20], 0.27762, 1e-5);
    EXPECT_NEAR(call.results[39], 0.953632, 1e-6);
    EXPECT_NEAR(call.results[41], 0.626664, 1e-6);
    EXPECT_NEAR(call.results[45], 720.40, 0.01);
    EXPECT_NEAR(call.results[58], 1390.50, 0.01);

    FlatCall tension;
    tension.control[0] = 5;
    tension.values[12] = 3.0;
    tension.N = 10;
    ASSERT_EQ(tension.run(), 1);
    EXPECT_EQ(tension.status[20], 16);
    EXPECT_EQ(tension.results[20], 0.0);
}

TEST(CallSteelDesign, CompressionWithBendingInteraction)
{
    // both axes, My = 30 kNm: interaction (6.61) and (6.62) run, code 1 | 2 | 4 = 7
    FlatCall call;
    call.control[0] = 5;
    call.values[11] = 6.0;
    call.values[12] = 3.0;
    call.N = -200;
    call.My = 30;
    ASSERT_EQ(call.run(), 1);
    EXPECT_EQ(call.status[20], 7);
    EXPECT_GT(call.results[54], call.results[52]); // bending adds to the axial term
    EXPECT_DOUBLE_EQ(call.results[25], 1.0);      // Cmy of a constant moment: 0.6 + 0.4 * 1
    // in mode 1 the interaction belongs to the lateral-torsional stage: flexural buckling only
    call.control[1] = 1;
    call.results = std::vector<double>(100, 0.0);
    ASSERT_EQ(call.run(), 1);
    EXPECT_EQ(call.status[20], 3);
}

} // namespace
