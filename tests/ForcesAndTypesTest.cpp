#include <SteelDesign/BucklingCurve.h>
#include <SteelDesign/ErrorCode.h>
#include <SteelDesign/Forces.h>
#include <SteelDesign/Nullable.h>
#include <SteelDesign/VerificationControl.h>

#include <gtest/gtest.h>

using namespace SteelDesign;

TEST(Forces, ConstructorTakesNMyMzMtVyVzInThisOrder)
{
    const Forces f(1, 2, 3, 4, 5, 6);
    EXPECT_EQ(f.getN(), 1.0);
    EXPECT_EQ(f.getMy(), 2.0);
    EXPECT_EQ(f.getMz(), 3.0);
    EXPECT_EQ(f.getMt(), 4.0);
    EXPECT_EQ(f.getVy(), 5.0);
    EXPECT_EQ(f.getVz(), 6.0);
}

TEST(Forces, DefaultIsZeroAndCopiesAreIndependent)
{
    Forces f;
    for (double v : {f.getN(), f.getMy(), f.getMz(), f.getMt(), f.getVy(), f.getVz()}) EXPECT_EQ(v, 0.0);
    const Forces g(-10, 0, 0, 0, 0, 7);
    f = g;
    EXPECT_EQ(f.getN(), -10.0);
    EXPECT_EQ(f.getVz(), 7.0);
}

TEST(SharedEnumerations, KeepTheirNumericValues)
{
    EXPECT_EQ(static_cast<int>(BucklingCurve::none), 0);
    EXPECT_EQ(static_cast<int>(BucklingCurve::a0), 1);
    EXPECT_EQ(static_cast<int>(BucklingCurve::d), 5);
    EXPECT_EQ(static_cast<int>(ErrorCode::NoError), 0);
    EXPECT_EQ(static_cast<int>(ErrorCode::CrossSectionClass4), 3);
    EXPECT_EQ(static_cast<int>(ErrorCode::NotSupported), 6);
    EXPECT_EQ(static_cast<int>(ErrorCode::ShearBucklingNotRequired), 7);
    EXPECT_EQ(static_cast<int>(VerificationControl::Classify), 1);
    EXPECT_STREQ(toString(BucklingCurve::a0), "a0");
    EXPECT_STREQ(toString(static_cast<BucklingCurve>(9)), "");
}

TEST(Nullable, EmptyUntilAssignedAndResettable)
{
    kat::Nullable<double> n;
    EXPECT_FALSE(n.hasValue());
    EXPECT_EQ(n.valueOr(-1.0), -1.0);
    n = 2.5;
    EXPECT_TRUE(n.hasValue());
    EXPECT_EQ(n.value(), 2.5);
    n.reset();
    EXPECT_FALSE(n);
    const kat::Nullable<BucklingCurve> c(BucklingCurve::b);
    EXPECT_EQ(c.value(), BucklingCurve::b);
}
