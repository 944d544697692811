// Classification of every IPE, HEA, HEB and SHS of the catalogue against EN 1993-1-1 Table 5.2, computed
// here independently from the dimensions.

#include <KaMaterial.h>
#include <SectionCatalogue.h>
#include <SteelDesign/SectionInitializer.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

using namespace SteelDesign;

namespace {

// Table 5.2 class of a plate from its c/t and three limits; 4 above the last.
int byLimits(double ratio, double l1, double l2, double l3)
{
    if (ratio <= l1) return 1;
    if (ratio <= l2) return 2;
    if (ratio <= l3) return 3;
    return 4;
}

// Plates within 0.5 % of a limit are skipped: the library compares with a tolerance of its own and the
// outstand limit 21 eps sqrt(0.43) = 13.77 eps stands for the 14 eps of the table.
bool nearLimit(double ratio, std::initializer_list<double> limits)
{
    for (double l : limits)
        if (std::fabs(ratio - l) <= 0.005 * l) return true;
    return false;
}

// The section class from the plates, with this library's rule that a class-3 web with class-1 or
// class-2 flanges gives class 2.
int sectionClass(int web, int flange)
{
    if (web == 3 && (flange == 1 || flange == 2)) return 2;
    return std::max(web, flange);
}

struct Sweep {
    int checked = 0;
    int skipped = 0;
};

int classified(SDBSection& section, const char* grade, const Forces& forces)
{
    KaConstrSteel steel = *KaConstrSteel::fromName(grade);
    return SectionInitializer(&section, &steel, forces, VerificationControl::Classify, false).getClass();
}

} // namespace

TEST(ClassificationSweep, RolledISectionsUnderCompressionAndBending)
{
    Sweep sweep;
    for (const char* family : {"IPE", "HEA", "HEB"}) {
        for (const std::string& name : SDBCatalogue::names(family)) {
            auto section = SDBCatalogue::get(name);
            auto* i = dynamic_cast<SDBSectionI*>(section.get());
            ASSERT_NE(i, nullptr) << name;
            for (const char* grade : {"S235", "S355"}) {
                const double fy = KaConstrSteel::fromName(grade)->getFyk(std::max(i->getS(), i->getT()));
                const double fyWeb = KaConstrSteel::fromName(grade)->getFyk(i->getS());
                const double eps = std::sqrt(235000.0 / fy), epsWeb = std::sqrt(235000.0 / fyWeb);
                const double web = (i->getH() - 2 * i->getT() - 2 * i->getR1()) / i->getS();
                const double flange = (i->getB() - i->getS() - 2 * i->getR1()) / 2 / i->getT();

                // N alone: web 33 / 38 / 42 eps, outstands 9 / 10 / 14 eps.
                const int webN = byLimits(web, 33 * epsWeb, 38 * epsWeb, 42 * epsWeb);
                const int flangeN = byLimits(flange, 9 * eps, 10 * eps, 14 * eps);
                const int expectedN = sectionClass(webN, flangeN);
                if (nearLimit(web, {33 * epsWeb, 38 * epsWeb, 42 * epsWeb}) ||
                    nearLimit(flange, {9 * eps, 10 * eps, 14 * eps, 13.77 * eps}) || expectedN == 4) {
                    ++sweep.skipped;  // near a limit, or class 4 where the re-test may lift it to 3
                } else {
                    EXPECT_EQ(classified(*section, grade, Forces(-100, 0, 0, 0, 0, 0)), expectedN) << name << ' ' << grade;
                    ++sweep.checked;
                }

                // My alone: web 72 / 83 / 124 eps in bending, the compressed flange as above.
                const int webM = byLimits(web, 72 * epsWeb, 83 * epsWeb, 124 * epsWeb);
                const int expectedM = sectionClass(webM, flangeN);
                if (nearLimit(web, {72 * epsWeb, 83 * epsWeb, 124 * epsWeb}) ||
                    nearLimit(flange, {9 * eps, 10 * eps, 14 * eps, 13.77 * eps}) || expectedM == 4) {
                    ++sweep.skipped;
                } else {
                    EXPECT_EQ(classified(*section, grade, Forces(0, 100, 0, 0, 0, 0)), expectedM) << name << ' ' << grade;
                    ++sweep.checked;
                }
            }
        }
    }
    EXPECT_GT(sweep.checked, 150);
}

TEST(ClassificationSweep, SquareHollowSectionsWithTheFullWallWidth)
{
    // This library takes c = b (the outer width) for every wall of a rectangular hollow section, where
    // Table 5.2 would take b - 3 t; the expected class uses the library's width.
    int checked = 0;
    for (const std::string& name : SDBCatalogue::names("SHS")) {
        auto section = SDBCatalogue::get(name);
        auto* rh = dynamic_cast<SDBSectionRH*>(section.get());
        ASSERT_NE(rh, nullptr) << name;
        for (const char* grade : {"S235", "S355"}) {
            const double eps = std::sqrt(235000.0 / KaConstrSteel::fromName(grade)->getFyk(rh->getT()));
            const double ratio = rh->getB() / rh->getT();
            // N alone: all four walls internal plates in compression.
            const int expectedN = byLimits(ratio, 33 * eps, 38 * eps, 42 * eps);
            if (!nearLimit(ratio, {33 * eps, 38 * eps, 42 * eps}) && expectedN != 4) {
                EXPECT_EQ(classified(*section, grade, Forces(-100, 0, 0, 0, 0, 0)), expectedN) << name << ' ' << grade;
                ++checked;
            }
            // My alone: the top wall in compression (33 / 38 / 42), the sides in bending (72 / 83 / 124).
            const int top = byLimits(ratio, 33 * eps, 38 * eps, 42 * eps);
            const int side = byLimits(ratio, 72 * eps, 83 * eps, 124 * eps);
            const int expectedM = std::max(top, side);
            if (!nearLimit(ratio, {33 * eps, 38 * eps, 42 * eps, 72 * eps}) && expectedM != 4) {
                EXPECT_EQ(classified(*section, grade, Forces(0, 10, 0, 0, 0, 0)), expectedM) << name << ' ' << grade;
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 50);
}

TEST(BucklingCurveSweep, RolledISectionsFollowTable62And64)
{
    for (const char* family : {"IPE", "HEA", "HEB", "HEM"}) {
        for (const std::string& name : SDBCatalogue::names(family)) {
            auto section = SDBCatalogue::get(name);
            auto* i = dynamic_cast<SDBSectionI*>(section.get());
            KaConstrSteel steel = *KaConstrSteel::fromName("S355");
            const SectionInitializer init(section.get(), &steel, Forces(0, 10, 0, 0, 0, 0), VerificationControl::Classify, false);
            const double r = i->getH() / i->getB(), tf = i->getT();
            BucklingCurve y, z;
            if (r > 1.2) {
                if (tf <= 0.04) {
                    y = BucklingCurve::a;
                    z = BucklingCurve::b;
                } else {
                    y = BucklingCurve::b;
                    z = BucklingCurve::c;
                }
            } else if (tf <= 0.1) {
                y = BucklingCurve::b;
                z = BucklingCurve::c;
            } else {
                y = z = BucklingCurve::d;
            }
            EXPECT_EQ(init.getCompressionBucklingCurveAxisY(), y) << name;
            EXPECT_EQ(init.getCompressionBucklingCurveAxisZ(), z) << name;
            // Table 6.4, rolled I: a up to h/b = 2, b above.
            EXPECT_EQ(init.getBendingBucklingCurve(), r <= 2.0 + 1e-6 ? BucklingCurve::a : BucklingCurve::b) << name;
        }
    }
}
