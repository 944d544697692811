#include <SteelDesign/VerificationResults.h>

#include <gtest/gtest.h>

using namespace SteelDesign;
using R = VerificationResults;

TEST(VerificationResults, FreshRecordHasNoUtilizationAndIsNotVerified)
{
    const R r;
    EXPECT_FALSE(r.getUtilization(R::Axial).hasValue());
    EXPECT_TRUE(r.hasUtilizationEntry(R::Axial));
    EXPECT_FALSE(r.getUtilization(R::BendingY).hasValue());
    EXPECT_FALSE(r.hasUtilizationEntry(R::BendingY));
    EXPECT_FALSE(r.isFulfilled(R::Axial));
    EXPECT_FALSE(r.isFulfilled(R::BendingY));
    EXPECT_FALSE(r.verifyAllUtilizations());
    // Keys after reset: 0, 1, 4..10, 13..16; absent: 2, 3, 11, 12.
    for (int t = 0; t < R::utilizationTypeCount; ++t) {
        const bool absent = t == 2 || t == 3 || t == 11 || t == 12;
        EXPECT_EQ(r.hasUtilizationEntry(static_cast<R::UtilizationType>(t)), !absent) << t;
    }
    EXPECT_STREQ(R::nameOf(R::AxialShearBending), "AxialShearBending");
}

TEST(VerificationResults, MomentTablesAlwaysAnswerWithAPresentValue)
{
    R r;
    EXPECT_TRUE(r.getMRd(Axis::y).hasValue());
    EXPECT_EQ(r.getMRd(Axis::z).value(), 0.0);
    EXPECT_TRUE(r.getMRdLimit(Axis::y).hasValue());
    EXPECT_EQ(r.getMRdLimit(Axis::y).value(), 0.0);
    r.setMRd(Axis::z, 12.5);
    r.setMRdLimit(Axis::y, 30.0);
    EXPECT_EQ(r.getMRd(Axis::z).value(), 12.5);
    EXPECT_EQ(r.getMRdLimit(Axis::y).value(), 30.0);
    EXPECT_FALSE(r.getNRd().hasValue());
    EXPECT_FALSE(r.getShearReductionFactorY().hasValue());
}

TEST(VerificationResults, VerdictToleranceIsTheHostsRealEpsilon)
{
    const R r;
    EXPECT_TRUE(r.isVerified(1.0));
    EXPECT_TRUE(r.isVerified(1.0 + 1e-10));
    EXPECT_FALSE(r.isVerified(1.01));
    EXPECT_TRUE(r.isVerified(-3.0));  // a signed utilization below zero is fulfilled
}

TEST(VerificationResults, ResetClearsResultsButKeepsAreaLimitsAndReductionFactors)
{
    R r;
    r.setUtilization(R::Shear, 0.3);
    r.setUtilization(R::BendingY, 0.4);
    r.setA(0.01);
    r.setMRd(Axis::y, 100.0);
    r.setMRdLimit(Axis::y, 120.0);
    r.setNRd(900.0);
    r.setNRdLimit(1000.0);
    r.setShearReductionFactorY(0.9);
    r.setShearReductionFactorZ(0.8);
    r.setRequiredShearBending(true);
    r.setAlpha(2.0);
    r.setClass(2);
    r.setBiaxialBending(true);
    r.setResistanceVzRd(300.0);
    r.setVerifiedShearTorsionAxisY(true);

    r.reset();
    EXPECT_TRUE(r.hasUtilizationEntry(R::Shear));  // key kept, value emptied
    EXPECT_FALSE(r.getUtilization(R::Shear).hasValue());
    EXPECT_FALSE(r.hasUtilizationEntry(R::BendingY));
    EXPECT_EQ(r.getMRd(Axis::y).value(), 0.0);
    EXPECT_FALSE(r.getRequiredShearBending());
    EXPECT_EQ(r.getAlpha(), 0.0);
    EXPECT_EQ(r.getClass(), 0);
    EXPECT_FALSE(r.getBiaxialBending());
    EXPECT_EQ(r.getResistanceVzRd(), 0.0);
    EXPECT_FALSE(r.getVerifiedShearTorsionAxisY());
    // Survivors of reset.
    EXPECT_EQ(r.getA(), 0.01);
    EXPECT_EQ(r.getMRdLimit(Axis::y).value(), 120.0);
    EXPECT_EQ(r.getNRd().value(), 900.0);
    EXPECT_EQ(r.getNRdLimit().value(), 1000.0);
    EXPECT_EQ(r.getShearReductionFactorY().value(), 0.9);
    EXPECT_EQ(r.getShearReductionFactorZ().value(), 0.8);
}

TEST(VerificationResults, AllUtilizationsNeedsTheSevenSummaryValues)
{
    R r;
    const R::UtilizationType seven[] = {R::Axial, R::Torsion, R::Bending, R::Shear, R::AxialBending,
                                        R::ShearBending, R::AxialShearBending};
    for (auto t : seven) r.setUtilization(t, 0.5);
    EXPECT_TRUE(r.verifyAllUtilizations());
    // Per-axis values are not consulted.
    r.setUtilization(R::BendingY, 7.0);
    EXPECT_TRUE(r.verifyAllUtilizations());
    for (auto t : seven) {
        R copy = r;
        copy.setUtilization(t, 1.01);
        EXPECT_FALSE(copy.verifyAllUtilizations()) << R::nameOf(t);
        R missing;
        for (auto u : seven)
            if (u != t) missing.setUtilization(u, 0.5);
        EXPECT_FALSE(missing.verifyAllUtilizations()) << R::nameOf(t);
    }
}
