#include "TestSections.h"

#include <SteelDesign/CrossSectionCutter.h>

#include <gtest/gtest.h>

using namespace SteelDesign;

namespace {

void expectPoint(const KaVector3D& p, double y, double z)
{
    EXPECT_DOUBLE_EQ(p.getX(), 0.0);
    EXPECT_NEAR(p.getY(), y, 1e-12);
    EXPECT_NEAR(p.getZ(), z, 1e-12);
}

} // namespace

TEST(CrossSectionCutter, RolledIGivesAWebAndFourEqualOutstands)
{
    auto section = ipe300();  // h 300, b 150, s 7.1, t 10.7, r 15 (mm); ez = 0
    CrossSectionCutter cutter;
    EXPECT_EQ(section.accept(&cutter), 1);
    ASSERT_EQ(cutter.getWebParts().size(), 1u);
    ASSERT_EQ(cutter.getFlangeParts().size(), 4u);

    const WebPart& web = *cutter.getWebParts()[0];
    // c = h - 2 t - 2 r = 300 - 21.4 - 30 = 248.6 mm; from z = -150 + 10.7 + 15 to +124.3 mm.
    EXPECT_NEAR(web.getC(), 0.2486, 1e-12);
    EXPECT_EQ(web.getT(), 0.0071);
    expectPoint(web.getFirstPoint(), 0.0, -0.1243);
    expectPoint(web.getSecondPoint(), 0.0, 0.1243);

    // c = (b - s - 2 r) / 2 = (150 - 7.1 - 30) / 2 = 56.45 mm for every outstand.
    const double ySupported[] = {0.01855, -0.01855, 0.01855, -0.01855};
    const double yFree[] = {0.075, -0.075, 0.075, -0.075};
    const double z[] = {-0.15, -0.15, 0.15, 0.15};
    for (std::size_t i = 0; i < 4; ++i) {
        const FlangePart& f = *cutter.getFlangeParts()[i];
        EXPECT_NEAR(f.getC(), 0.05645, 1e-12) << i;
        EXPECT_EQ(f.getT(), 0.0107) << i;
        expectPoint(f.getFirstPoint(), ySupported[i], z[i]);  // supported edge first
        expectPoint(f.getSecondPoint(), yFree[i], z[i]);
    }
}

TEST(CrossSectionCutter, MonoSymmetricIUsesBothFlangesAndTheOffset)
{
    // Welded I: h 500, top flange 300 x 20, bottom flange 200 x 15, web 10 (mm), no radius; ez = -0.05 m.
    SDBSectionI section(0.5, 0.3, 0.01, 0.02, 0.0, 0.2, 0.015);
    SDBProperties p = section.getProperties();
    p.ez = -0.05;
    section.setProperties(p);
    CrossSectionCutter cutter;
    section.accept(&cutter);
    // zs = h/2 + ez = 0.2: both flanges are placed at -zs and +zs as the rule has it.
    const WebPart& web = *cutter.getWebParts()[0];
    EXPECT_NEAR(web.getC(), 0.5 - 0.02 - 0.015, 1e-12);
    expectPoint(web.getFirstPoint(), 0.0, -0.2 + 0.02);
    expectPoint(web.getSecondPoint(), 0.0, 0.2 - 0.015);
    EXPECT_NEAR(cutter.getFlangeParts()[0]->getC(), (0.3 - 0.01) / 2, 1e-12);
    EXPECT_EQ(cutter.getFlangeParts()[0]->getT(), 0.02);
    EXPECT_NEAR(cutter.getFlangeParts()[2]->getC(), (0.2 - 0.01) / 2, 1e-12);
    EXPECT_EQ(cutter.getFlangeParts()[2]->getT(), 0.015);
    expectPoint(cutter.getFlangeParts()[3]->getSecondPoint(), -0.1, 0.2);
}

TEST(CrossSectionCutter, TeeGivesThreeOutstandsAndNoWeb)
{
    SDBSectionT section(0.1, 0.1, 0.011, 0.011, 0.011);
    SDBProperties p = section.getProperties();
    p.ez = 0.0274;  // centroid 27.4 mm below the top
    section.setProperties(p);
    CrossSectionCutter cutter;
    EXPECT_EQ(section.accept(&cutter), 1);
    EXPECT_TRUE(cutter.getWebParts().empty());
    ASSERT_EQ(cutter.getFlangeParts().size(), 3u);
    const FlangePart& stem = *cutter.getFlangeParts()[2];
    // Stem: c = h - t - r = 78 mm, from z = -(27.4 - 22) = -5.4 mm to h - zt = 72.6 mm, thickness s.
    EXPECT_NEAR(stem.getC(), 0.078, 1e-12);
    EXPECT_EQ(stem.getT(), 0.011);
    expectPoint(stem.getFirstPoint(), 0.0, -0.0054);
    expectPoint(stem.getSecondPoint(), 0.0, 0.0726);
    expectPoint(cutter.getFlangeParts()[0]->getFirstPoint(), 0.0165, -0.0274);
}

TEST(CrossSectionCutter, AngleGivesTwoLegsOfThicknessS)
{
    SDBSectionL section(0.1, 0.1, 0.01, 0.012);
    SDBProperties p = section.getProperties();
    p.ey = -0.0282;
    p.ez = -0.0282;
    section.setProperties(p);
    CrossSectionCutter cutter;
    section.accept(&cutter);
    EXPECT_TRUE(cutter.getWebParts().empty());
    ASSERT_EQ(cutter.getFlangeParts().size(), 2u);
    for (const auto& leg : cutter.getFlangeParts()) {
        EXPECT_EQ(leg->getT(), 0.01);
        EXPECT_NEAR(leg->getC(), 0.1 - 0.01 - 0.012, 1e-12);
    }
    // Heel at (e, f) = (0.0282, 0.0282); the leg along z ends at z = -(h - f) = -0.0718.
    expectPoint(cutter.getFlangeParts()[0]->getFirstPoint(), 0.0282, 0.0282 - 0.022);
    expectPoint(cutter.getFlangeParts()[0]->getSecondPoint(), 0.0282, -0.0718);
    expectPoint(cutter.getFlangeParts()[1]->getSecondPoint(), -0.0718, 0.0282);
}

TEST(CrossSectionCutter, RectangularHollowWallsKeepTheirOddPointsAndWidths)
{
    SDBSectionRH section(0.2, 0.1, 0.008, 0.008, 0.012, true);
    CrossSectionCutter cutter;
    section.accept(&cutter);
    ASSERT_EQ(cutter.getWebParts().size(), 4u);
    EXPECT_TRUE(cutter.getFlangeParts().empty());
    const auto& walls = cutter.getWebParts();
    // Widths are the full outer dimensions: b for top and bottom, h for the sides.
    EXPECT_EQ(walls[0]->getC(), 0.1);
    EXPECT_EQ(walls[1]->getC(), 0.1);
    EXPECT_EQ(walls[2]->getC(), 0.2);
    EXPECT_EQ(walls[3]->getC(), 0.2);
    // The bottom wall's two points coincide; w = b/2 - t - r = 0.03.
    EXPECT_EQ(walls[1]->getFirstPoint(), walls[1]->getSecondPoint());
    expectPoint(walls[1]->getFirstPoint(), 0.03, 0.096);
    // The left wall runs diagonally from the right side to the left side.
    expectPoint(walls[3]->getFirstPoint(), 0.046, -0.08);
    expectPoint(walls[3]->getSecondPoint(), -0.046, 0.08);
}

TEST(CrossSectionCutter, LippedChannelSwapsFlangeAndWebWidths)
{
    SDBSectionC section(0.2, 0.07, 0.002, 0.1);
    SDBProperties p = section.getProperties();
    p.ey = -0.02;  // web back 20 mm from the centroid
    section.setProperties(p);
    CrossSectionCutter cutter;
    section.accept(&cutter);
    ASSERT_EQ(cutter.getWebParts().size(), 3u);
    ASSERT_EQ(cutter.getFlangeParts().size(), 2u);
    EXPECT_NEAR(cutter.getWebParts()[0]->getC(), 0.07 - 0.004, 1e-12);  // top flange: b - 2t
    EXPECT_NEAR(cutter.getWebParts()[1]->getC(), 0.2 - 0.004, 1e-12);   // bottom flange: h - 2t
    EXPECT_NEAR(cutter.getWebParts()[2]->getC(), 0.07 - 0.004, 1e-12);  // web: b - 2t
    EXPECT_NEAR(cutter.getFlangeParts()[0]->getC(), (0.2 - 0.1) / 2 - 0.002, 1e-12);
    expectPoint(cutter.getFlangeParts()[1]->getSecondPoint(), -(0.07 - 0.02), 0.05);
    expectPoint(cutter.getWebParts()[2]->getFirstPoint(), 0.02, -0.1 + 0.002);
}

TEST(CrossSectionCutter, UAndZSections)
{
    SDBSectionU u(0.2, 0.075, 0.0085, 0.0115, 0.0115);
    SDBProperties p = u.getProperties();
    p.ey = -0.0201;
    u.setProperties(p);
    CrossSectionCutter uCut;
    u.accept(&uCut);
    ASSERT_EQ(uCut.getWebParts().size(), 1u);
    ASSERT_EQ(uCut.getFlangeParts().size(), 2u);
    EXPECT_NEAR(uCut.getWebParts()[0]->getC(), 0.2 - 2 * (0.0115 + 0.0115), 1e-12);
    expectPoint(uCut.getFlangeParts()[0]->getFirstPoint(), 0.0201 - 0.0085 - 0.0115, -0.1);
    expectPoint(uCut.getFlangeParts()[0]->getSecondPoint(), -(0.075 - 0.0201), -0.1);

    SDBSectionZ z(0.2, 0.08, 0.006, 0.01, 0.008);
    CrossSectionCutter zCut;
    z.accept(&zCut);
    ASSERT_EQ(zCut.getFlangeParts().size(), 2u);
    expectPoint(zCut.getFlangeParts()[0]->getSecondPoint(), 0.08 - 0.003, -0.1);
    expectPoint(zCut.getFlangeParts()[1]->getSecondPoint(), -0.08 + 0.003, 0.1);
    EXPECT_NEAR(zCut.getFlangeParts()[1]->getC(), 0.08 - 0.006 - 0.008, 1e-12);
}

TEST(CrossSectionCutter, OtherKindsAreNotCut)
{
    SDBSectionCircle circle(0.05);
    SDBSectionO tube(0.1143, 0.005, true);
    SDBSectionR bar(0.1, 0.05);
    SDBSectionWU wu(0.3, 0.1, 0.006, 0.01);
    SDBSectionPolygon polygon;
    for (SDBSection* s : std::initializer_list<SDBSection*>{&circle, &tube, &bar, &wu, &polygon}) {
        CrossSectionCutter cutter;
        EXPECT_EQ(s->accept(&cutter), 0);
        EXPECT_TRUE(cutter.getFlangeParts().empty());
        EXPECT_TRUE(cutter.getWebParts().empty());
    }
}
