#include <SDBSection.h>
#include <SteelDesign/StressCalculator.h>
#include <SteelDesign/StressTable.h>

#include <gtest/gtest.h>

using namespace SteelDesign;

namespace {

// Solid rectangle h = 0.2 m, b = 0.1 m:
// A = 0.02 m2, Iy = 0.1 * 0.2^3 / 12 = 6.6667e-5 m4, Iz = 0.2 * 0.1^3 / 12 = 1.6667e-5 m4.
SDBSectionR rectangle() { return SDBSectionR(0.2, 0.1); }

// A rectangle whose database row is replaced, for properties that do not follow from its dimensions.
SDBSectionR withProperties(const SDBProperties& p)
{
    SDBSectionR r(0.2, 0.1);
    r.setProperties(p);
    return r;
}

} // namespace

TEST(NormalStress, AxialForceAloneIsUniform)
{
    auto r = rectangle();
    const Forces f(-100, 0, 0, 0, 0, 0);
    const StressCalculator calc(&r, f);
    // -100 kN / 0.02 m2 = -5000 kN/m2 everywhere.
    for (auto p : {KaVector3D(0, 0, 0), KaVector3D(0, 0.05, -0.1), KaVector3D(0, -0.05, 0.1)})
        EXPECT_DOUBLE_EQ(calc.calculateNormalStress(p), -5000.0);
}

TEST(NormalStress, PositiveMyIsTensionBelowTheAxis)
{
    auto r = rectangle();
    const Forces f(0, 10, 0, 0, 0, 0);
    const StressCalculator calc(&r, f);
    // My / Iy * z = 10 / 6.6667e-5 * 0.1 = 15000 kN/m2 at the bottom fibre (z = +0.1).
    EXPECT_NEAR(calc.calculateNormalStress(KaVector3D(0, 0, 0.1)), 15000.0, 1e-6);
    EXPECT_NEAR(calc.calculateNormalStress(KaVector3D(0, 0, -0.1)), -15000.0, 1e-6);
}

TEST(NormalStress, PositiveMzIsCompressionAtPositiveY)
{
    auto r = rectangle();
    const Forces f(0, 0, 2, 0, 0, 0);
    const StressCalculator calc(&r, f);
    // -Mz / Iz * y = -2 / 1.6667e-5 * 0.05 = -6000 kN/m2 at y = +0.05.
    EXPECT_NEAR(calc.calculateNormalStress(KaVector3D(0, 0.05, 0)), -6000.0, 1e-6);
    EXPECT_NEAR(calc.calculateNormalStress(KaVector3D(0, -0.05, 0)), 6000.0, 1e-6);
}

TEST(NormalStress, CombinedActionsSuperpose)
{
    auto r = rectangle();
    const Forces f(-100, 10, 2, 0, 0, 0);
    const StressCalculator calc(&r, f);
    // Corner y = 0.05, z = 0.1: -5000 + 15000 - 6000 = 4000 kN/m2.
    EXPECT_NEAR(calc.calculateNormalStress(KaVector3D(0, 0.05, 0.1)), 4000.0, 1e-6);
}

TEST(NormalStress, FuzzyZeroPropertyGivesZeroEverywhere)
{
    for (int which = 0; which < 3; ++which) {
        SDBProperties p = rectangle().getProperties();
        (which == 0 ? p.A : which == 1 ? p.Iy : p.Iz) = 1e-16;  // below KaMath::getEpsMin()
        auto r = withProperties(p);
        const Forces f(-100, 10, 2, 0, 0, 0);
        const StressCalculator calc(&r, f);
        EXPECT_EQ(calc.calculateNormalStress(KaVector3D(0, 0.05, 0.1)), 0.0) << "property " << which;
        EXPECT_EQ(calc.calculateNormalStress(KaVector3D(0, 0, 0)), 0.0) << "property " << which;
        EXPECT_FALSE(calc.isValid(1e-16));
        EXPECT_TRUE(calc.isValid(1e-12));
    }
}

TEST(ShearStress, AxisSelectsShearForceFirstMomentAndSecondMoment)
{
    auto r = rectangle();
    const Forces f(0, 0, 0, 0, 30, 60);  // Vy = 30 kN, Vz = 60 kN
    const StressCalculator calc(&r, f);
    const KaVector3D centre(0, 0, 0);
    // Vz: Sy(0) = b h^2 / 8 = 0.1 * 0.04 / 8 = 5e-4 m3; tau = 60 * 5e-4 / (6.6667e-5 * 0.1) = 4500 kN/m2
    // (= 1.5 V / A = 1.5 * 60 / 0.02).
    EXPECT_NEAR(calc.calculateShearStress(Axis::z, centre, 0.1), 4500.0, 1e-6);
    // Vy: Sz(0) = h b^2 / 8 = 2.5e-4 m3; tau = 30 * 2.5e-4 / (1.6667e-5 * 0.2) = 2250 kN/m2 (1.5 * 30 / 0.02).
    EXPECT_NEAR(calc.calculateShearStress(Axis::y, centre, 0.2), 2250.0, 1e-6);
    // At the extreme fibre the first moment vanishes.
    EXPECT_NEAR(calc.calculateShearStress(Axis::z, KaVector3D(0, 0, 0.1), 0.1), 0.0, 1e-9);
    // Any axis value other than z means a shear force in y.
    EXPECT_NEAR(calc.calculateShearStress(static_cast<Axis>(7), centre, 0.2), 2250.0, 1e-6);
}

TEST(ShearStress, TorsionTermIsAddedWithTheSameSignForBothAxes)
{
    auto r = rectangle();
    const double It = r.getIt();
    const Forces f(0, 0, 0, 3, 30, 60);
    const StressCalculator calc(&r, f);
    const KaVector3D centre(0, 0, 0);
    const double torsion = 3.0 / It * 0.1;  // Mt / It * t
    EXPECT_NEAR(calc.calculateMt(0.1), torsion, 1e-9);
    EXPECT_NEAR(calc.calculateShearStress(Axis::z, centre, 0.1), 60 * 5e-4 / (r.getIy() * 0.1) + torsion, 1e-6);
    EXPECT_NEAR(calc.calculateShearStress(Axis::y, centre, 0.1), 30 * 2.5e-4 / (r.getIz() * 0.1) + torsion, 1e-6);
    // Torsion alone at an edge where S = 0: only the torsional part remains.
    const Forces mtOnly(0, 0, 0, 3, 0, 0);
    const StressCalculator torsionCalc(&r, mtOnly);
    EXPECT_NEAR(torsionCalc.calculateShearStress(Axis::y, KaVector3D(0, 0.05, 0), 0.1), torsion, 1e-9);
}

TEST(StressTable, HoldsThePointAndTheFourStresses)
{
    StressTable t(KaVector3D(0, 0.1, -0.2), -5, 1, 2, 0.5);
    StressTable copy = t;
    EXPECT_EQ(copy.getPoint(), KaVector3D(0, 0.1, -0.2));
    EXPECT_EQ(copy.getNormalStress(), -5);
    EXPECT_EQ(copy.getShearStressY(), 1);
    EXPECT_EQ(copy.getShearStressZ(), 2);
    EXPECT_EQ(copy.getTorsion(), 0.5);
}
