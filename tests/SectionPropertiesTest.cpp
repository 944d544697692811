// Section properties computed from dimensions, checked by hand (arithmetic in the comments, mm),
// the placement of the plate end points, and the validation of dimensions.

#include <SDBSection.h>

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double mm = 1e-3, mm2 = 1e-6, mm3 = 1e-9, mm4 = 1e-12, mm6 = 1e-18;

// Relative closeness for properties whose exact value is known (the polygon engine is exact for
// sharp-cornered outlines).
void expectRel(double actual, double expected, double rel = 1e-9)
{
    EXPECT_NEAR(actual, expected, std::fabs(expected) * rel);
}

} // namespace

// Angle 100 x 100 x 10 without radii. Horizontal leg 100 x 10 (1000 mm2, centroid 5 above the heel),
// vertical leg above it 10 x 90 (900 mm2, centroid 55 above the heel): A = 1900;
// e = (1000 * 5 + 900 * 55) / 1900 = 28.684 mm from the heel, in both directions.
// Iy = 100 * 10^3 / 12 + 1000 (e - 5)^2 + 10 * 90^3 / 12 + 900 (55 - e)^2 = 1.80005e6 mm4 = Iz.
// Iyz = 1000 (-(50 - e))(e - 5) + 900 (e - 5)(-(55 - e)) (legs on opposite sides) < 0.
// Wel = Iy / (100 - e). It = (100 + 90) 10^3 / 3 = 63333 mm4 (no root radius: no junction term).
TEST(SectionPropertiesByHand, Angle)
{
    const SDBSectionL L(0.1, 0.1, 0.01, 0.0);
    const double e = (1000.0 * 5 + 900.0 * 55) / 1900.0;
    const double I = 100.0 * 1000 / 12 + 1000 * (e - 5) * (e - 5) + 10.0 * 90 * 90 * 90 / 12 + 900 * (55 - e) * (55 - e);
    const double Iyz = 1000.0 * (-(50 - e)) * (e - 5) + 900.0 * (e - 5) * (-(55 - e));
    expectRel(L.getA(), 1900 * mm2);
    expectRel(L.getEy(), -e * mm);  // heel to centroid: legs point to -y and -z
    expectRel(L.getEz(), -e * mm);
    expectRel(L.getIy(), I * mm4);
    expectRel(L.getIz(), I * mm4);
    expectRel(L.getProperties().Iyz, Iyz * mm4);
    expectRel(L.getWy(), I / (100 - e) * mm3);
    expectRel(L.getIt(), 190.0 * 1000 / 3 * mm4);
    expectRel(L.getZMin(), -(100 - e) * mm);
    expectRel(L.getZMax(), e * mm);
    // Plastic: the equal-area axis lies in the horizontal leg, 9.5 mm above the heel:
    // Wpl = 100 * 9.5^2 / 2 + 100 * 0.5^2 / 2 + 900 * (0.5 + 45) = 45475 mm3.
    expectRel(L.getWply(), 45475 * mm3);
    expectRel(L.getAvz(), 100.0 * 10 * mm2);
    expectRel(L.getWebArea(), 90.0 * 10 * mm2);
    expectRel(L.getIw(), 1000.0 * (95.0 * 95 * 95 * 2) / 36 * mm6);
}

// Channel 200 x 80 x 6 x 11 without radius (a welded channel WU and the same U built not rolled):
// A = 2 * 80 * 11 + 178 * 6 = 2828 mm2; Iy = 80 * 200^3 / 12 - 74 * 178^3 / 12 = 18554862.67 mm4;
// web back to centroid: (1760 * 40 + 1068 * 3) / 2828 = 26.027 mm, ey = -26.027 mm;
// Iz = 2 (11 * 80^3 / 12 + 880 (40 - e)^2) + 178 * 6^3 / 12 + 1068 (e - 3)^2.
// Avz = (200 - 22) 6 = 1068 mm2 (6.2.6(3)(d)), Avy = A - Avz = 1760 mm2.
// Iw (b' = 77, h' = 189): 11 * 77^3 * 189^2 / 12 * (3 * 77 * 11 + 2 * 189 * 6) / (6 * 77 * 11 + 189 * 6).
TEST(SectionPropertiesByHand, Channel)
{
    const SDBSectionWU wu(0.2, 0.08, 0.006, 0.011);
    const SDBSectionU u(0.2, 0.08, 0.006, 0.011, 0.0, false);
    const double e = (1760.0 * 40 + 1068.0 * 3) / 2828.0;
    const double Iz = 2 * (11.0 * 80 * 80 * 80 / 12 + 880 * (40 - e) * (40 - e)) + 178.0 * 216 / 12 + 1068 * (e - 3) * (e - 3);
    const double Iw = 11.0 * 77 * 77 * 77 * 189 * 189 / 12 * (3.0 * 77 * 11 + 2.0 * 189 * 6) / (6.0 * 77 * 11 + 189.0 * 6);
    for (const SDBSection* s : {static_cast<const SDBSection*>(&wu), static_cast<const SDBSection*>(&u)}) {
        expectRel(s->getA(), 2828 * mm2);
        expectRel(s->getIy(), (80.0 * 8e6 / 12 - 74.0 * 178 * 178 * 178 / 12) * mm4);
        expectRel(s->getEy(), -e * mm);
        EXPECT_EQ(s->getEz(), 0.0);
        expectRel(s->getIz(), Iz * mm4);
        expectRel(s->getAvz(), 1068 * mm2);
        expectRel(s->getAvy(), 1760 * mm2);
        expectRel(s->getIw(), Iw * mm6);
        // Plastic about y: symmetric, Wpl = 2 (880 * 94.5 + 6 * 89^2 / 2) = 213846 mm3.
        expectRel(s->getWply(), 2 * (880 * 94.5 + 6.0 * 89 * 89 / 2) * mm3);
    }
    EXPECT_EQ(wu.getType()->getKey(), "WU");
    EXPECT_EQ(wu.getFlangeWidth(), 0.08);
}

// T 100 x 100 x 10 x 10 without radius, welded: the angle's areas mirrored, so A = 1900 and the
// centroid 28.684 mm below the top; Iy = 1.80005e6 mm4; Iz = 10 * 100^3 / 12 + 90 * 10^3 / 12 = 840833;
// Wpl,y = 45475 mm3 (equal-area axis 9.5 mm below the top); Avz = s (h - t/2) = 950 mm2
// (6.2.6(3)(c), welded); It = (100 + 90) 10^3 / 3; Iw = 100^3 10^3 / 144 + 10^3 95^3 / 36.
TEST(SectionPropertiesByHand, Tee)
{
    const SDBSectionT T(0.1, 0.1, 0.01, 0.01, 0.0, false);
    const double e = (1000.0 * 5 + 900.0 * 55) / 1900.0;
    expectRel(T.getA(), 1900 * mm2);
    expectRel(T.getEz(), e * mm);  // top of the flange to the centroid
    EXPECT_EQ(T.getEy(), 0.0);
    expectRel(T.getIy(), (100.0 * 1000 / 12 + 1000 * (e - 5) * (e - 5) + 10.0 * 729000 / 12 + 900 * (55 - e) * (55 - e)) * mm4);
    expectRel(T.getIz(), 840833.3333333 * mm4);
    expectRel(T.getWply(), 45475 * mm3);
    expectRel(T.getAvz(), 950 * mm2);
    expectRel(T.getIt(), 63333.333333333 * mm4);
    expectRel(T.getIw(), (1e6 * 1e3 / 144 + 1e3 * 95.0 * 95 * 95 / 36) * mm6);
    expectRel(T.getZMin(), -e * mm);
    EXPECT_EQ(T.getFlangeWidth2(), 0.0);
}

// Z 200 x 80 x 6 x 11 without radius (b from the web back to the tip, overall width 154 mm):
// A = 2828 mm2 and Iy as the channel; flanges centred at y = +-37 (from -3 to 77):
// Iz = 2 (11 * 80^3 / 12 + 880 * 37^2) + 178 * 6^3 / 12 = 3351310.67 mm4;
// Iyz = 2 * 880 * 37 * (-94.5) (top flange: y > 0, z < 0) = -6153840 mm4.
TEST(SectionPropertiesByHand, ZSection)
{
    const SDBSectionZ Z(0.2, 0.08, 0.006, 0.011, 0.0, false);
    expectRel(Z.getA(), 2828 * mm2);
    EXPECT_EQ(Z.getEy(), 0.0);
    EXPECT_EQ(Z.getEz(), 0.0);
    expectRel(Z.getWidth(), 0.154);
    expectRel(Z.getIy(), 18554862.666667 * mm4);
    expectRel(Z.getIz(), 3351310.666667 * mm4);
    expectRel(Z.getProperties().Iyz, -6153840 * mm4);
    expectRel(Z.getWz(), 3351310.666667 / 77 * mm3);
    // Iw = t b'^3 h'^2 / 12 (b' t + 2 h' s) / (2 b' t + h' s), b' = 77, h' = 189.
    expectRel(Z.getIw(), 11.0 * 77 * 77 * 77 * 189 * 189 / 12 * (77.0 * 11 + 2.0 * 189 * 6) / (2.0 * 77 * 11 + 189.0 * 6) * mm6);
    const SDBSectionWZ wz(0.2, 0.08, 0.006, 0.011);
    expectRel(wz.getIz(), Z.getIz());
    expectRel(wz.getWidth(), 0.154);
}

// CHS 219.1 x 8: d = 203.1; A = pi/4 (219.1^2 - 203.1^2) = 5305.5 mm2; I = pi/64 (219.1^4 - 203.1^4);
// Wpl = (219.1^3 - 203.1^3) / 6; Av = 2 A / pi (6.2.6(3)(g)); It = 2 I.
// Sy beyond z = 100 mm: 2/3 (109.55^2 - 100^2)^1.5 - 2/3 (101.55^2 - 100^2)^1.5.
TEST(SectionPropertiesByHand, CircularHollowSection)
{
    const SDBSectionO O(0.2191, 0.008, true);
    const double D = 219.1, d = 203.1;
    const double A = pi / 4 * (D * D - d * d), I = pi / 64 * (D * D * D * D - d * d * d * d);
    expectRel(O.getA(), A * mm2);
    expectRel(O.getIy(), I * mm4);
    expectRel(O.getIz(), I * mm4);
    expectRel(O.getIt(), 2 * I * mm4);
    expectRel(O.getWy(), I / (D / 2) * mm3);
    expectRel(O.getWply(), (D * D * D - d * d * d) / 6 * mm3);
    expectRel(O.getAvz(), 2 * A / pi * mm2);
    expectRel(O.getAvy(), 2 * A / pi * mm2);
    const double S = 2.0 / 3 * (std::pow(109.55 * 109.55 - 1e4, 1.5) - std::pow(101.55 * 101.55 - 1e4, 1.5));
    expectRel(O.getSy(KaVector3D(0, 0, 0.1)), S * mm3);
    expectRel(O.getSz(KaVector3D(0, -0.1, 0)), S * mm3);
    expectRel(O.getSys(0), O.getWply() / 2);
    EXPECT_EQ(O.getSy(KaVector3D(0, 0, 0.11)), 0.0);
}

// Solid bar D = 50: A = pi 50^2 / 4 = 1963.50 mm2; I = pi 50^4 / 64 = 306796 mm4; It = 2 I;
// Wel = pi 50^3 / 32 = 12271.8 mm3; Wpl = 50^3 / 6 = 20833.3 mm3; S at the centre = 50^3 / 12.
TEST(SectionPropertiesByHand, SolidBar)
{
    const SDBSectionCircle c(0.05);
    expectRel(c.getA(), pi * 2500 / 4 * mm2);
    expectRel(c.getIy(), pi * 6250000 / 64 * mm4);
    expectRel(c.getIt(), pi * 6250000 / 32 * mm4);
    expectRel(c.getWy(), pi * 125000 / 32 * mm3);
    expectRel(c.getWply(), 125000.0 / 6 * mm3);
    expectRel(c.getSy(KaVector3D(0, 0, 0)), 125000.0 / 12 * mm3);
    expectRel(c.getSy(KaVector3D(0, 0, -0.015)), 2.0 / 3 * std::pow(625.0 - 225.0, 1.5) * mm3);
    EXPECT_EQ(c.getSz(KaVector3D(0, 0.025, 0)), 0.0);
}

// Solid rectangle 200 x 100: A = 20000 mm2; Iy = 100 * 200^3 / 12 = 66.667e6 mm4;
// Iz = 200 * 100^3 / 12 = 16.667e6; Wpl,y = 100 * 200^2 / 4 = 1e6 mm3;
// Sy beyond z = 50: 100 (100^2 - 50^2) / 2 = 375000 mm3; It (Roark) = 200 * 100^3 (1/3 - 0.21 * 0.5
// (1 - 0.5^4 / 12)) = 45.8e6 mm4.
TEST(SectionPropertiesByHand, SolidRectangle)
{
    const SDBSectionR r(0.2, 0.1);
    expectRel(r.getA(), 20000 * mm2);
    expectRel(r.getIy(), 100.0 * 8e6 / 12 * mm4);
    expectRel(r.getIz(), 200.0 * 1e6 / 12 * mm4);
    expectRel(r.getWply(), 1e6 * mm3);
    expectRel(r.getSy(KaVector3D(0, 0, 0.05)), 375000 * mm3);
    expectRel(r.getSy(KaVector3D(0, 0, -0.05)), 375000 * mm3);
    expectRel(r.getIt(), 200.0 * 1e6 * (1.0 / 3 - 0.21 * 0.5 * (1 - 0.0625 / 12)) * mm4);
}

// Lipped channel 200 x 70 x 2, lip ends 160 apart (lips 20 deep). Wall outline with sharp corners:
// web 200 x 2 = 400, flanges 2 * 68 * 2 = 272, lips 2 * 18 * 2 = 72: A = 744 mm2.
// Iy = 2 * 200^3 / 12 + 2 (68 * 2^3 / 12 + 136 * 99^2) + 2 (2 * 18^3 / 12 + 36 * 89^2) = 4571552 mm4.
// Centre line 2 (20 - 1) + 2 (70 - 2) + (200 - 2) = 372 mm: It = 372 * 2^3 / 3 = 992 mm4.
// Web back to centroid: (400 * 1 + 272 * 36 + 72 * 69) / 744 = 20.3441 mm.
TEST(SectionPropertiesByHand, LippedChannel)
{
    const SDBSectionC C(0.2, 0.07, 0.002, 0.16);
    expectRel(C.getA(), 744 * mm2);
    expectRel(C.getIy(), 4571552 * mm4);
    expectRel(C.getIt(), 992 * mm4);
    expectRel(C.getEy(), -(400.0 * 1 + 272.0 * 36 + 72.0 * 69) / 744 * mm);
    expectRel(C.getAvz(), 196.0 * 2 * mm2);
    EXPECT_EQ(C.getQ(), 0.0);
    // Lips as deep as the flange is thick leave 1 mm stubs on the centre line, which is then within
    // 0.1 % of a plain channel: channel formula with b' = 69, h' = 198, t = s = 2.
    const SDBSectionC plain(0.2, 0.07, 0.002, 0.196 * (1 - 1e-12));
    const double channel = 2.0 * 69 * 69 * 69 * 198 * 198 / 12 * (3.0 * 69 + 2.0 * 198) / (6.0 * 69 + 198.0);
    EXPECT_NEAR(plain.getIw(), channel * mm6, channel * mm6 * 1e-3);
    // Lips stiffen the section against warping.
    EXPECT_GT(C.getIw(), 1.5 * plain.getIw());
}

// Welded mono-symmetric I: h = 500, top flange 300 x 20, bottom flange 150 x 15, web 465 x 10.
// A = 6000 + 2250 + 4650 = 12900 mm2; centroid below the top:
// (6000 * 10 + 2250 * 492.5 + 4650 * 252.5) / 12900 = 181.57 mm, so ez = 181.57 - 250 = -68.43 mm.
// Iy = sum(b t^3 / 12 + A d^2); Iw = hs^2 I1 I2 / (I1 + I2) with hs = 482.5, I1 = 20 * 300^3 / 12 = 45e6,
// I2 = 15 * 150^3 / 12 = 4.21875e6: Iw = 8.9797e11 mm6. Avz = 465 * 10 (6.2.6(3)(d)), Avy = 8250.
TEST(SectionPropertiesByHand, WeldedMonoSymmetricI)
{
    const SDBSectionI I(0.5, 0.3, 0.01, 0.02, 0.0, 0.15, 0.015);
    const double zc = (6000.0 * 10 + 2250.0 * 492.5 + 4650.0 * 252.5) / 12900;
    const double Iy = 300.0 * 8000 / 12 + 6000 * (zc - 10) * (zc - 10) + 150.0 * 3375 / 12 + 2250 * (492.5 - zc) * (492.5 - zc) +
                      10.0 * 465 * 465 * 465 / 12 + 4650 * (252.5 - zc) * (252.5 - zc);
    expectRel(I.getA(), 12900 * mm2);
    expectRel(I.getEz(), (zc - 250) * mm);
    expectRel(I.getIy(), Iy * mm4);
    expectRel(I.getWy(), Iy / (500 - zc) * mm3);
    expectRel(I.getZMin(), -zc * mm);
    expectRel(I.getZMax(), (500 - zc) * mm);
    expectRel(I.getIw(), 482.5 * 482.5 * 45e6 * 4.21875e6 / 49.21875e6 * mm6);
    expectRel(I.getAvz(), 4650 * mm2);
    expectRel(I.getAvy(), 8250 * mm2);
    expectRel(I.getIt(), (300.0 * 8000 + 150.0 * 3375 + 465.0 * 1000) / 3 * mm4);
    EXPECT_FALSE(I.isRolled());
    EXPECT_DOUBLE_EQ(I.getFlangeWidth1(), 0.3);
    EXPECT_DOUBLE_EQ(I.getFlangeWidth2(), 0.15);
    // Sy at the top flange-web junction (z = 20 mm below the top): the top flange,
    // 6000 * (zc - 10) mm3; Sy at the centroid: the part above it.
    expectRel(I.getSy(KaVector3D(0, 0, (20 - zc) * mm)), 6000 * (zc - 10) * mm3);
    expectRel(I.getSys(0), (6000 * (zc - 10) + 10 * (zc - 20) * (zc - 20) / 2) * mm3);
}

// The offsets put the plate end points that the classification derives from them on the real plates:
// each kind's reference point, moved by -(ey, ez), lands on the outline's extreme fibres.
TEST(SectionOffsets, PlateEndPointsLandOnThePlates)
{
    const SDBSectionI I(0.3, 0.15, 0.0071, 0.0107, 0.015);
    EXPECT_NEAR(-(0.15 + I.getEz()), I.getZMin(), 1e-12);  // top flange at -zs
    const SDBSectionI mono(0.5, 0.3, 0.01, 0.02, 0.0, 0.15, 0.015);
    EXPECT_NEAR(-(0.25 + mono.getEz()), mono.getZMin(), 1e-12);
    const SDBSectionT T(0.1, 0.1, 0.01, 0.01, 0.008);
    EXPECT_NEAR(-T.getEz(), T.getZMin(), 1e-12);      // flange at -zt
    EXPECT_NEAR(0.1 - T.getEz(), T.getZMax(), 1e-12); // stem end at h - zt
    const SDBSectionU U(0.2, 0.08, 0.006, 0.011, 0.013);
    const SDBProperties& u = U.getProperties();
    EXPECT_NEAR(-U.getEy(), u.yMax, 1e-12);           // web back at e
    EXPECT_NEAR(-(0.08 + U.getEy()), u.yMin, 1e-12);  // flange tips at -(b - e)
    const SDBSectionL L(0.1, 0.08, 0.01, 0.012, 0.006, true);
    const SDBProperties& l = L.getProperties();
    EXPECT_NEAR(-L.getEy(), l.yMax, 1e-12);           // heel at (e, f)
    EXPECT_NEAR(-L.getEz(), l.zMax, 1e-12);
    EXPECT_NEAR(-(0.1 + L.getEz()), l.zMin, 1e-12);   // leg along z ends at -(h - f)
    EXPECT_NEAR(-(0.08 + L.getEy()), l.yMin, 1e-12);  // leg along y ends at -(b - e)
    const SDBSectionZ Z(0.2, 0.08, 0.006, 0.011, 0.013);
    EXPECT_NEAR(0.08 - 0.003, Z.getProperties().yMax, 1e-12);  // top flange tip at b - s/2
    const SDBSectionC C(0.2, 0.07, 0.002, 0.16);
    EXPECT_NEAR(-C.getEy(), C.getProperties().yMax, 1e-12);
    EXPECT_NEAR(-(0.07 + C.getEy()), C.getProperties().yMin, 1e-12);
}

// A rolled I from dimensions: the fillets add 4 r^2 (1 - pi/4) to the plates (IPE 300:
// 2 * 150 * 10.7 + 278.6 * 7.1 + 4 * 225 * 0.214602 = 5381.2 mm2); the 24 chords per fillet add
// 4 * 225 * 5.6e-4 = 0.5 mm2 (0.01 %).
TEST(SectionPropertiesByHand, RolledIFillets)
{
    const SDBSectionI I(0.3, 0.15, 0.0071, 0.0107, 0.015);
    EXPECT_NEAR(I.getA(), (3210 + 278.6 * 7.1 + 900 * (1 - pi / 4) + 0.5) * mm2, 0.05 * mm2);
    // Av,z by 6.2.6(3)(a): A - 2 b tf + (tw + 2 r) tf.
    expectRel(I.getAvz(), I.getA() - 2 * 0.15 * 0.0107 + (0.0071 + 0.03) * 0.0107);
    EXPECT_DOUBLE_EQ(I.getWebArea(), (0.3 - 2 * 0.0107) * 0.0071);
    EXPECT_DOUBLE_EQ(I.getGoverningThickness(), 0.0107);
    EXPECT_DOUBLE_EQ(I.getTorsionThickness(), 0.0107);
    EXPECT_DOUBLE_EQ(I.getWebThickness(), 0.0071);
}

struct BadDimensions {
    const char* label;
    std::function<void()> build;
    const char* message;  // expected text of the message
};

class InvalidDimensions : public ::testing::TestWithParam<BadDimensions> {};

INSTANTIATE_TEST_SUITE_P(
    Kinds, InvalidDimensions,
    ::testing::Values(
        BadDimensions{"IFlangeTooThick", [] { SDBSectionI(0.3, 0.15, 0.0071, 0.2, 0.015); },
                      "I section: flange thickness t = 0.2 m must be less than h/2 = 0.15 m"},
        BadDimensions{"INegativeWeb", [] { SDBSectionI(0.3, 0.15, -0.007, 0.01, 0.015); },
                      "I section: web thickness s = -0.007 m must be positive"},
        BadDimensions{"INaNDepth", [] { SDBSectionI(std::nan(""), 0.15, 0.007, 0.01, 0.0); },
                      "I section: depth h = nan must be a finite number"},
        BadDimensions{"IWebWiderThanFlange", [] { SDBSectionI(0.3, 0.15, 0.16, 0.01, 0.0); },
                      "I section: web thickness s = 0.16 m must be less than flange width b = 0.15 m"},
        BadDimensions{"IRootRadiusTooLarge", [] { SDBSectionI(0.3, 0.15, 0.0071, 0.0107, 0.08); },
                      "I section: root radius r1 = 0.08 m must not exceed (min(b, b2) - s)/2 = 0.07145 m"},
        BadDimensions{"IMonoFlangesTooThick", [] { SDBSectionI(0.1, 0.1, 0.01, 0.06, 0.0, 0.1, 0.05); },
                      "I section: flange thicknesses t + t2 = 0.11 m must be less than h = 0.1 m"},
        BadDimensions{"UNegativeRadius", [] { SDBSectionU(0.2, 0.08, 0.006, 0.011, -0.001); },
                      "U section: root radius r1 = -0.001 m must not be negative"},
        BadDimensions{"LThickerThanLeg", [] { SDBSectionL(0.05, 0.05, 0.05, 0.0); },
                      "L section: thickness s = 0.05 m must be less than leg length h = 0.05 m"},
        BadDimensions{"LToeRadius", [] { SDBSectionL(0.1, 0.1, 0.01, 0.012, 0.02, true); },
                      "L section: toe radius r2 = 0.02 m must not exceed thickness s = 0.01 m"},
        BadDimensions{"THugeFlange", [] { SDBSectionT(0.1, 0.1, 0.01, 0.1, 0.0); },
                      "T section: flange thickness t = 0.1 m must be less than depth h = 0.1 m"},
        BadDimensions{"RHWall", [] { SDBSectionRH(0.1, 0.05, 0.005, 0.06, 0.0, true); },
                      "RH section: flange wall thickness t = 0.06 m must be less than h/2 = 0.05 m"},
        BadDimensions{"RHCorner", [] { SDBSectionRH(0.1, 0.05, 0.005, 0.005, 0.03, true); },
                      "RH section: outer corner radius r1 = 0.03 m must not exceed min(h, b)/2 = 0.025 m"},
        BadDimensions{"OWall", [] { SDBSectionO(0.1, 0.05, true); },
                      "O section: wall thickness t = 0.05 m must be less than d/2 = 0.05 m"},
        BadDimensions{"CircleZero", [] { SDBSectionCircle(0.0); }, "Circle section: diameter d = 0 m must be positive"},
        BadDimensions{"RInfinite", [] { SDBSectionR(INFINITY, 0.1); }, "R section: depth h = inf must be a finite number"},
        BadDimensions{"CLips", [] { SDBSectionC(0.2, 0.07, 0.002, 0.199); },
                      "C section: clear distance between the lips c = 0.199 m must be less than h - 2 t = 0.196 m"},
        BadDimensions{"ZWeb", [] { SDBSectionZ(0.2, 0.005, 0.006, 0.011, 0.0); },
                      "Z section: web thickness s = 0.006 m must be less than flange width b = 0.005 m"},
        BadDimensions{"WUFlange", [] { SDBSectionWU(0.2, 0.08, 0.006, 0.1); },
                      "WU section: flange thickness t = 0.1 m must be less than h/2 = 0.1 m"}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_P(InvalidDimensions, ThrowAnErrorNamingTheDimensionAndItsValue)
{
    const BadDimensions c = GetParam();
    try {
        c.build();
        FAIL() << "no exception";
    } catch (const SDBDimensionError& e) {
        EXPECT_STREQ(e.what(), c.message);
    }
    EXPECT_THROW(c.build(), std::invalid_argument);
}

// Exact fits are valid: a fillet that fills the whole outstand, a flange of h/2 minus a hair.
TEST(InvalidDimensionsBoundary, ExactFitsAreAccepted)
{
    EXPECT_NO_THROW(SDBSectionI(0.3, 0.15, 0.01, 0.01, 0.07));
    EXPECT_NO_THROW(SDBSectionO(0.1, 0.0499, true));
    EXPECT_NO_THROW(SDBSectionL(0.1, 0.1, 0.01, 0.08, 0.01, true));
}
