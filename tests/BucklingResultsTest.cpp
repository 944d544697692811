#include <SteelDesign/BucklingResults.h>

#include <gtest/gtest.h>

#include <limits>

using namespace SteelDesign;
using U = BucklingResults::UtilizationType;
using P = BucklingResults::SectionParts;
using K = BucklingResults::InteractionFactorkxx;

TEST(BucklingResults, FreshAndResetRecordsAreEmptyWithShearBucklingNotPerformed)
{
    BucklingResults r;
    auto expectEmpty = [](const BucklingResults& x) {
        EXPECT_EQ(x.getErrorCode(), ErrorCode::NoError);
        EXPECT_EQ(x.getShearBucklingErrorCode(), ErrorCode::ShearBucklingNotRequired);
        for (int i = 0; i < 9; ++i) {
            EXPECT_FALSE(x.getUtilization(static_cast<U>(i)).hasValue()) << i;
            EXPECT_FALSE(x.getBucklingResistance(static_cast<U>(i)).hasValue()) << i;
        }
        for (Axis a : {Axis::y, Axis::z}) {
            EXPECT_FALSE(x.getChi(a).hasValue());
            EXPECT_FALSE(x.getBucklingCurveCompression(a).hasValue());
            EXPECT_EQ(x.getLambda(a), 0.0);
            EXPECT_EQ(x.getNcr(a), 0.0);
            EXPECT_EQ(x.getMRk(a), 0.0);
            EXPECT_EQ(x.getCm(a), 0.0);
        }
        for (int k = 0; k < 4; ++k) EXPECT_EQ(x.getInteractionFactor(static_cast<K>(k)), 0.0);
        for (int p = 0; p < 3; ++p) EXPECT_FALSE(x.getVbRd(static_cast<P>(p)).hasValue());
        EXPECT_FALSE(x.getChiLT().hasValue());
        EXPECT_FALSE(x.getChiLTmod().hasValue());
        EXPECT_FALSE(x.getUtilizationShearBuckling().hasValue());
        EXPECT_FALSE(x.getBucklingCurveBending().hasValue());
        EXPECT_EQ(x.getNRk(), 0.0);
        EXPECT_EQ(x.getClass(), 0);
    };
    expectEmpty(r);

    r.setUtilization(U::Bending, 0.5);
    r.setChi(Axis::z, 0.7);
    r.setLambda(Axis::y, 1.1);
    r.setInteractionFactor(K::kzy, 0.6);
    r.setVbRd(P::Flange, 12.0);
    r.setChiLTmod(0.9);
    r.setNRk(100.0);
    r.setClass(2);
    r.setErrorCode(ErrorCode::NotSupported);
    r.setShearBucklingErrorCode(ErrorCode::NoError);
    EXPECT_EQ(r.getUtilization(U::Bending).value(), 0.5);
    EXPECT_EQ(r.getChi(Axis::z).value(), 0.7);
    EXPECT_EQ(r.getLambda(Axis::y), 1.1);
    EXPECT_EQ(r.getInteractionFactor(K::kzy), 0.6);
    EXPECT_EQ(r.getVbRd(P::Flange).value(), 12.0);
    r.reset();
    expectEmpty(r);
}

TEST(BucklingResults, KeysOutsideTheirEnumerationAreNeitherStoredNorRead)
{
    BucklingResults r;
    r.setLambda(static_cast<Axis>(2), 3.0);
    r.setUtilization(static_cast<U>(9), 0.5);
    r.setUtilization(static_cast<U>(-1), 0.5);
    EXPECT_EQ(r.getLambda(static_cast<Axis>(2)), 0.0);
    EXPECT_FALSE(r.getUtilization(static_cast<U>(9)).hasValue());
    EXPECT_EQ(r.getLambda(Axis::y), 0.0);
    EXPECT_EQ(r.getLambda(Axis::z), 0.0);
}

TEST(BucklingResults, VerdictUsesTheRealNumberTolerance)
{
    BucklingResults r;
    EXPECT_TRUE(r.isVerified(1.0));
    EXPECT_TRUE(r.isVerified(1.0 + 1e-10));
    EXPECT_FALSE(r.isVerified(1.0 + 1e-8));
    EXPECT_FALSE(r.isVerified(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(r.isVerified(std::numeric_limits<double>::quiet_NaN()));

    EXPECT_FALSE(r.isFulfilled(U::Compression));  // absent
    r.setUtilization(U::Compression, 0.99);
    EXPECT_TRUE(r.isFulfilled(U::Compression));
    r.setUtilization(U::Compression, 1.01);
    EXPECT_FALSE(r.isFulfilled(U::Compression));
}

TEST(BucklingResults, AllUtilizationsNeedsAllNinePresent)
{
    BucklingResults r;
    // The record of a pure compression check: 0 to 2 only.
    for (U t : {U::CompressionAxisY, U::CompressionAxisZ, U::Compression}) r.setUtilization(t, 0.4);
    EXPECT_TRUE(r.isFulfilled(U::Compression));
    EXPECT_FALSE(r.verifyAllUtilizations());
    for (int i = 3; i < 9; ++i) r.setUtilization(static_cast<U>(i), 0.4);
    EXPECT_TRUE(r.verifyAllUtilizations());
    r.setUtilization(U::CompressionBendingAxisZ, 1.2);
    EXPECT_FALSE(r.verifyAllUtilizations());
}

TEST(BucklingResults, EnumerationNames)
{
    EXPECT_STREQ(toString(U::CompressionAxisY), "CompressionAxisY");
    EXPECT_STREQ(toString(U::CompressionBending), "CompressionBending");
    EXPECT_STREQ(toString(static_cast<U>(9)), "");
    EXPECT_STREQ(toString(P::Total), "Total");
    EXPECT_STREQ(toString(K::kyz), "kyz");
}
