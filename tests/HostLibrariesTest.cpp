#include <KaMaterial.h>
#include <KaMath.h>
#include <KaStandard.h>

#include <gtest/gtest.h>

#include <string>

TEST(KaMath, FuzzyTestsAtTheirBoundaries)
{
    const double eps = 1e-6;
    EXPECT_TRUE(KaMath::isFuzzyZero(1e-6, eps));
    EXPECT_TRUE(KaMath::isFuzzyZero(-1e-6, eps));
    EXPECT_FALSE(KaMath::isFuzzyZero(1.1e-6, eps));

    EXPECT_FALSE(KaMath::isFuzzyGreater(1.0 + 0.5e-6, 1.0, eps));
    EXPECT_TRUE(KaMath::isFuzzyGreater(1.0 + 2e-6, 1.0, eps));

    EXPECT_TRUE(KaMath::isFuzzyGreaterEqual(1.0 - 0.5e-6, 1.0, eps));
    EXPECT_FALSE(KaMath::isFuzzyGreaterEqual(1.0 - 2e-6, 1.0, eps));

    EXPECT_TRUE(KaMath::isFuzzySmallerEqual(1.0 + 0.5e-6, 1.0, eps));
    EXPECT_FALSE(KaMath::isFuzzySmallerEqual(1.0 + 2e-6, 1.0, eps));
}

TEST(KaMath, UtilizationVerdictTolerance)
{
    // A utilization of 1.0 + 1e-10 is fulfilled, 1.01 and 1.0 + 1e-8 are not.
    EXPECT_TRUE(KaMath::isFuzzySmallerEqual(1.0 + 1e-10, 1.0, KaMath::getEpsReal()));
    EXPECT_FALSE(KaMath::isFuzzySmallerEqual(1.01, 1.0, KaMath::getEpsReal()));
    EXPECT_FALSE(KaMath::isFuzzySmallerEqual(1.0 + 1e-8, 1.0, KaMath::getEpsReal()));
}

TEST(KaMath, DivisorToleranceIsFarBelowRealSectionProperties)
{
    // Iz of a 6 mm round bar: pi d^4 / 64 = 6.36e-11 m^4 must stay a usable divisor.
    EXPECT_FALSE(KaMath::isFuzzyZero(KaMath::Pi * 0.006 * 0.006 * 0.006 * 0.006 / 64.0, KaMath::getEpsMin()));
    EXPECT_TRUE(KaMath::isFuzzyZero(1e-16, KaMath::getEpsMin()));
    EXPECT_GT(KaMath::maxDouble, 1e300);
}

struct GradeCase {
    const char* name;
    double fy40;  // N/mm2, t <= 40 mm
    double fy80;  // N/mm2, 40 < t <= 80 mm
};

class SteelGrade : public ::testing::TestWithParam<GradeCase> {};

// EN 1993-1-1 Table 3.1.
INSTANTIATE_TEST_SUITE_P(Table31, SteelGrade,
                         ::testing::Values(GradeCase{"S235", 235, 215}, GradeCase{"S275", 275, 255},
                                           GradeCase{"S355", 355, 335}, GradeCase{"S420", 420, 390},
                                           GradeCase{"S450", 440, 410}, GradeCase{"S460", 460, 430}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_P(SteelGrade, YieldStrengthAt40mmAndJustAbove)
{
    const GradeCase c = GetParam();
    const auto steel = KaConstrSteel::fromName(c.name);
    ASSERT_TRUE(steel.has_value());
    EXPECT_EQ(steel->getFyk(0.010), c.fy40 * 1000.0);
    EXPECT_EQ(steel->getFyk(0.040), c.fy40 * 1000.0);
    EXPECT_EQ(steel->getFyk(0.0401), c.fy80 * 1000.0);
    EXPECT_EQ(steel->getFyk(0.080), c.fy80 * 1000.0);
    // Above 80 mm Table 3.1 ends: the 40-80 mm value is kept and the thickness is reported as uncovered.
    EXPECT_EQ(steel->getFyk(0.100), c.fy80 * 1000.0);
    EXPECT_TRUE(KaConstrSteel::isThicknessCovered(0.080));
    EXPECT_FALSE(KaConstrSteel::isThicknessCovered(0.0801));
    EXPECT_EQ(steel->getEModul(), 210.0e6);
    EXPECT_EQ(steel->getGModul(), 81.0e6);
}

TEST(SteelGradeLookup, IgnoresCaseAndBlanksAndRejectsUnknownNames)
{
    ASSERT_TRUE(KaConstrSteel::fromName(" s355 ").has_value());
    EXPECT_EQ(KaConstrSteel::fromName("s355")->getName(), "S355");
    EXPECT_FALSE(KaConstrSteel::fromName("S356").has_value());
    EXPECT_FALSE(KaConstrSteel::fromName("").has_value());
}

TEST(KaStandard, ModeAndSituationAreSetByTheHostAndReadByTheChecks)
{
    KaStandard* standard = KaStandard::get();
    EXPECT_EQ(standard, KaStandard::get());
    const auto oldMode = standard->getMode();
    standard->setMode(Standard::Mode::UK);
    EXPECT_EQ(static_cast<int>(standard->getMode()), 7);
    standard->setMode(Standard::Mode::RolledLTB);
    EXPECT_EQ(static_cast<int>(standard->getMode()), 8);
    standard->setMode(oldMode);

    EXPECT_EQ(Standard::parseMode("uk"), Standard::Mode::UK);
    EXPECT_EQ(Standard::parseMode("8"), Standard::Mode::RolledLTB);
    EXPECT_FALSE(Standard::parseMode("7x").has_value());
    EXPECT_EQ(Standard::parseDesignSituation("Accidental"), Standard::DesignSituation::Accidental);
    EXPECT_FALSE(Standard::parseDesignSituation("fire").has_value());
}

TEST(StandardCoefficients, GammaM0IsTheRecommendedOneAndOverridable)
{
    auto* coefficients = Standard::Coefficients::get();
    for (auto mode : {Standard::Mode::EN, Standard::Mode::UK, Standard::Mode::RolledLTB, Standard::Mode{3}})
        for (int s = 0; s < Standard::designSituationCount; ++s)
            EXPECT_EQ(coefficients->getGammaA(mode, static_cast<Standard::DesignSituation>(s)), 1.00);

    coefficients->setGammaA(Standard::Mode::UK, Standard::DesignSituation::Persistent, 1.05);
    EXPECT_EQ(coefficients->getGammaA(Standard::Mode::UK, Standard::DesignSituation::Persistent), 1.05);
    EXPECT_EQ(coefficients->getGammaA(Standard::Mode::EN, Standard::DesignSituation::Persistent), 1.00);
    coefficients->setGammaA(Standard::Mode::UK, Standard::DesignSituation::Persistent, -1.0);  // ignored
    EXPECT_EQ(coefficients->getGammaA(Standard::Mode::UK, Standard::DesignSituation::Persistent), 1.05);
    coefficients->resetToDefaults();
    EXPECT_EQ(coefficients->getGammaA(Standard::Mode::UK, Standard::DesignSituation::Persistent), 1.00);
}
