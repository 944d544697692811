// Sections by dimension notation (design::makeSection): each family builds its kind with its dimensions
// and name, the properties of welded sections agree with the formulas of plates without fillets, a
// catalogue designation wins, every bad input is rejected with the dimension and its value named, and
// the commands take the notation.

#include "CommandRunner.h"

#include <design/SectionNotation.h>

#include <SDBSection.h>
#include <SectionCatalogue.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>

using design::makeSection;
using design::SectionNameError;

namespace {

std::string lower(std::string s)
{
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return s;
}

// The message of the SectionNameError of a name ("" when none is thrown).
std::string errorOf(const std::string& name)
{
    try {
        makeSection(name);
    } catch (const SectionNameError& e) {
        return e.what();
    }
    return "";
}

} // namespace

// --- kinds, dimensions and names ------------------------------------------------------------------------

TEST(SectionNotationKinds, WeldedIIsAnUnrolledIWithItsDimensions)
{
    const auto s = makeSection("wi 1200 x 300 x 8 x 20");
    const auto* i = dynamic_cast<const SDBSectionI*>(s.get());
    ASSERT_NE(i, nullptr);
    EXPECT_EQ(s->getName(), "WI 1200x300x8x20");
    EXPECT_EQ(s->getType()->getKey(), SDBKey::I);
    EXPECT_FALSE(s->isRolled());
    EXPECT_DOUBLE_EQ(i->getH(), 1.2);
    EXPECT_DOUBLE_EQ(i->getB(), 0.3);
    EXPECT_DOUBLE_EQ(i->getS(), 0.008);
    EXPECT_DOUBLE_EQ(i->getT(), 0.020);
    EXPECT_EQ(i->getR1(), 0.0);  // welded: no root radius
}

TEST(SectionNotationKinds, WeldedIWithADifferentBottomFlange)
{
    const auto s = makeSection("WI 900x300x10x25/250x20");
    const auto* i = dynamic_cast<const SDBSectionI*>(s.get());
    ASSERT_NE(i, nullptr);
    EXPECT_EQ(s->getName(), "WI 900x300x10x25/250x20");
    EXPECT_FALSE(s->isRolled());
    EXPECT_DOUBLE_EQ(i->getB(), 0.300);
    EXPECT_DOUBLE_EQ(i->getT(), 0.025);
    EXPECT_DOUBLE_EQ(i->getB2(), 0.250);
    EXPECT_DOUBLE_EQ(i->getT2(), 0.020);
    // The larger top flange lifts the centroid above mid-height: ez < 0.
    EXPECT_LT(s->getEz(), 0.0);
}

TEST(SectionNotationKinds, EachFamilyBuildsItsKind)
{
    struct Case {
        const char* input;
        const char* name;
        const std::string& key;
        bool rolled;
        double h, b;  // m
    };
    const Case cases[] = {
        {"WT 300x200x10x15", "WT 300x200x10x15", SDBKey::T, false, 0.300, 0.200},
        {"WBOX 400x300x12x16", "WBOX 400x300x12x16", SDBKey::RH, false, 0.400, 0.300},
        {"RHS 250x150x7", "RHS 250x150x7", SDBKey::RH, true, 0.250, 0.150},
        {"SHS 150x7", "SHS 150x7", SDBKey::RH, true, 0.150, 0.150},
        {"SHS 150x150x7", "SHS 150x150x7", SDBKey::RH, true, 0.150, 0.150},
        {"CHS 250x9", "CHS 250x9", SDBKey::O, true, 0.250, 0.250},
        {"CFRHS 250x150x7", "CFRHS 250x150x7", SDBKey::RH, false, 0.250, 0.150},
        {"CFSHS 150x7", "CFSHS 150x7", SDBKey::RH, false, 0.150, 0.150},
        {"cfchs 250 x 9", "CFCHS 250x9", SDBKey::O, false, 0.250, 0.250},
        {"PLATE 200x20", "PLATE 200x20", SDBKey::R, true, 0.200, 0.020},
    };
    for (const Case& c : cases) {
        ASSERT_TRUE(design::isDimensionNotation(c.input)) << c.input;
        const auto s = makeSection(c.input);
        ASSERT_NE(s->getType(), nullptr) << c.input;
        EXPECT_EQ(s->getName(), c.name);
        EXPECT_EQ(s->getType()->getKey(), c.key) << c.input;
        EXPECT_EQ(s->isRolled(), c.rolled) << c.input;
        EXPECT_DOUBLE_EQ(s->getHeight(), c.h) << c.input;
        EXPECT_DOUBLE_EQ(s->getWidth(), c.b) << c.input;
    }
    // RHS 250x150x7 is not a catalogue size (the catalogue has 6.3 and 8): built hot-finished, r = 1.5 t.
    ASSERT_FALSE(SDBCatalogue::find("RHS 250x150x7"));
    const auto rhs = makeSection("RHS 250x150x7");
    const auto* rh = dynamic_cast<const SDBSectionRH*>(rhs.get());
    ASSERT_NE(rh, nullptr);
    EXPECT_TRUE(rh->isHotRolled());
    EXPECT_DOUBLE_EQ(rh->getR1(), 0.0105);
    // The welded box: two webs tw, two flanges tf, sharp corners, not hot-rolled.
    const auto box = makeSection("WBOX 400x300x12x16");
    const auto* bx = dynamic_cast<const SDBSectionRH*>(box.get());
    ASSERT_NE(bx, nullptr);
    EXPECT_FALSE(bx->isHotRolled());
    EXPECT_DOUBLE_EQ(bx->getS(), 0.012);
    EXPECT_DOUBLE_EQ(bx->getT(), 0.016);
    EXPECT_EQ(bx->getR1(), 0.0);
    // Square forms agree; hot and cold circular hollow sections differ only in the flags.
    EXPECT_EQ(makeSection("SHS 150x7")->getA(), makeSection("SHS 150x150x7")->getA());
    const auto hot = makeSection("CHS 250x9"), cold = makeSection("CFCHS 250x9");
    EXPECT_TRUE(dynamic_cast<const SDBSectionO*>(hot.get())->isHotRolled());
    EXPECT_FALSE(dynamic_cast<const SDBSectionO*>(cold.get())->isHotRolled());
    EXPECT_DOUBLE_EQ(hot->getA(), cold->getA());
    // Cold-formed corners are larger (2.5 t for 6 < t <= 10 mm, EN 10219-2) than hot-finished (1.5 t).
    EXPECT_LT(makeSection("CFRHS 250x150x7")->getA(), rhs->getA());
}

// --- properties by hand (plates, no fillets) -------------------------------------------------------------

// WI 1200x300x8x20: hw = 1200 - 2 * 20 = 1160 mm, flange centres at +-(600 - 10) = +-590 mm.
//   A  = 2 * 300 * 20 + 1160 * 8 = 12000 + 9280 = 21280 mm2
//   Iy = 8 * 1160^3 / 12 + 2 (300 * 20^3 / 12 + 300 * 20 * 590^2)
//      = 1,040,597,333 + 2 (200,000 + 2,088,600,000) = 5,218,197,333 mm4
//   Iz = 2 * 20 * 300^3 / 12 + 1160 * 8^3 / 12 = 90,000,000 + 49,493 = 90,049,493 mm4
// WBOX 400x300x12x16: flanges 300 x 16 over the full width, webs 12 x 368 between them (centres at
// +-(150 - 6) = +-144 mm), flange centres at +-(200 - 8) = +-192 mm.
//   A  = 2 * 300 * 16 + 2 * 368 * 12 = 9600 + 8832 = 18432 mm2
//   Iy = 2 (300 * 16^3 / 12 + 4800 * 192^2) + 2 * 12 * 368^3 / 12 = 354,099,200 + 99,672,064 = 453,771,264 mm4
//   Iz = 2 * 16 * 300^3 / 12 + 2 (368 * 12^3 / 12 + 4416 * 144^2) = 72,000,000 + 183,246,336 = 255,246,336 mm4
// WI 900x300x10x25/250x20: hw = 855 mm; from the top: 7500 mm2 at 12.5, 8550 mm2 at 452.5, 5000 mm2 at 890.
//   A  = 7500 + 8550 + 5000 = 21050 mm2, centroid 8,412,625 / 21050 = 399.650 mm below the top
//   Iy = 1,562,500 + 2,271,521,250 + 3,960,666,667 - 21050 * 399.650^2 = 2,871,647,833 mm4
TEST(SectionNotationByHand, WeldedPlatesMatchTheFormulas)
{
    struct Case {
        const char* name;
        double A, Iy, Iz;  // mm2, mm4 (Iz 0: not computed by hand)
    };
    const Case cases[] = {
        {"WI 1200x300x8x20", 21280.0, 5218197333.3, 90049493.3},
        {"WBOX 400x300x12x16", 18432.0, 453771264.0, 255246336.0},
        {"WI 900x300x10x25/250x20", 21050.0, 2871647832.8, 0.0},
    };
    for (const Case& c : cases) {
        const auto s = makeSection(c.name);
        EXPECT_NEAR(s->getA() * 1e6, c.A, c.A * 1e-9) << c.name;
        EXPECT_NEAR(s->getIy() * 1e12, c.Iy, c.Iy * 1e-9) << c.name;
        if (c.Iz > 0.0) {
            EXPECT_NEAR(s->getIz() * 1e12, c.Iz, c.Iz * 1e-9) << c.name;
        }
    }
    const auto mono = makeSection("WI 900x300x10x25/250x20");
    EXPECT_NEAR(mono->getEz() * 1e3, 399.6496437 - 450.0, 1e-6);  // centroid 50.35 mm above mid-height
}

// --- the catalogue wins ------------------------------------------------------------------------------------

TEST(SectionNotationCatalogue, ADesignationOfTheCatalogueWins)
{
    for (const char* name : {"IPE 300", "ipe300", "HEB 200", "RHS 250x150x8", "SHS 100x100x5", "CHS 219.1x8"}) {
        const auto made = makeSection(name);
        const auto row = SDBCatalogue::find(name);
        ASSERT_TRUE(row) << name;
        EXPECT_EQ(made->getName(), row->getName()) << name;
        EXPECT_EQ(made->isRolled(), row->isRolled()) << name;
        EXPECT_EQ(made->getType()->getKey(), row->getType()->getKey()) << name;
        const SDBProperties& a = made->getProperties();
        const SDBProperties& b = row->getProperties();
        for (auto [x, y] : {std::pair{a.A, b.A}, {a.Iy, b.Iy}, {a.Iz, b.Iz}, {a.It, b.It}, {a.Iw, b.Iw},
                            {a.Wply, b.Wply}, {a.Wplz, b.Wplz}, {a.Avz, b.Avz}})
            EXPECT_EQ(x, y) << name;
    }
    EXPECT_EQ(makeSection("ipe300")->getName(), "IPE 300");
    // The catalogue's RHS keeps its own corner radius (a row, not the notation).
    EXPECT_EQ(makeSection("RHS 250x150x8")->getName(), "RHS 250x150x8");
}

// --- bad input ------------------------------------------------------------------------------------------------

struct BadName {
    const char* input;
    const char* fragments[3];  // every one must appear in the message (case ignored)
};

class SectionNotationErrors : public ::testing::TestWithParam<BadName> {};

TEST_P(SectionNotationErrors, NameTheDimensionAndItsValue)
{
    const BadName& c = GetParam();
    const std::string message = errorOf(c.input);
    ASSERT_FALSE(message.empty()) << c.input << " was accepted";
    for (const char* fragment : c.fragments)
        if (fragment) {
            EXPECT_NE(lower(message).find(lower(fragment)), std::string::npos) << c.input << ": " << message;
        }
    // The overload without exceptions: null and the same message.
    std::string error;
    EXPECT_EQ(makeSection(c.input, error), nullptr) << c.input;
    EXPECT_EQ(error, message);
}

INSTANTIATE_TEST_SUITE_P(
    EveryBadInput, SectionNotationErrors,
    ::testing::Values(
        BadName{"WI 1200x300x0x20", {"WI 1200x300x0x20", "web thickness tw = 0 mm", "positive"}},
        BadName{"WI 1200x300x-8x20", {"web thickness tw = -8 mm", "positive", nullptr}},
        BadName{"WI 1200x0x8x20", {"flange width b = 0 mm", nullptr, nullptr}},
        BadName{"WI 1200x300x8x0", {"flange thickness tf = 0 mm", nullptr, nullptr}},
        BadName{"WI 1200x300x300x20", {"web thickness tw = 300 mm", "flange width b = 300 mm", nullptr}},
        BadName{"WI 1200x300x320x20", {"tw = 320 mm", "less than", nullptr}},
        BadName{"WI 40x300x8x20", {"40 mm", "depth h = 40 mm", nullptr}},
        BadName{"WI 900x300x10x25/250x0", {"bottom flange thickness t2 = 0 mm", nullptr, nullptr}},
        BadName{"WI 900x300x10x25/8x20", {"web thickness tw = 10 mm", "bottom flange width b2 = 8 mm", nullptr}},
        BadName{"WI 900x300x10x25/250", {"expected", "got 1 number", nullptr}},
        BadName{"WI 1200x300x8", {"h x b x tw x tf", "got 3 numbers", nullptr}},
        BadName{"WI 1200x300x8x20x5", {"got 5 numbers", nullptr, nullptr}},
        BadName{"WI", {"expected h x b x tw x tf", nullptr, nullptr}},
        BadName{"WI 1e999x300x8x20", {"'1e999'", "out of range", nullptr}},
        BadName{"WI 1200xabcx8x20", {"'abc'", "not a number", nullptr}},
        BadName{"WI 1200x300x8x20mm", {"'20mm'", "not a number", nullptr}},
        BadName{"WI 1200xx8x20", {"empty dimension", nullptr, nullptr}},
        BadName{"WI 12000x300x8x20", {"depth h = 12000 mm", "larger than 10000 mm", nullptr}},
        BadName{"WT 300x200x10x300", {"flange thickness tf = 300 mm", "depth h = 300 mm", nullptr}},
        BadName{"WBOX 400x300x12x200", {"2 tf = 400 mm", "depth h = 400 mm", nullptr}},
        BadName{"WBOX 400x300x150x16", {"2 tw = 300 mm", "width b = 300 mm", nullptr}},
        BadName{"RHS 200x100x8/100x5", {"'/'", "welded I", nullptr}},
        BadName{"RHS 200x100x0", {"wall thickness t = 0 mm", nullptr, nullptr}},
        BadName{"SHS 200x150x8", {"equal sides", "200 x 150", nullptr}},
        BadName{"CHS 100x50", {"2 t = 100 mm", "diameter d = 100 mm", nullptr}},
        BadName{"CFCHS 0x5", {"diameter d = 0 mm", nullptr, nullptr}},
        BadName{"CHS 100", {"d x t", "got 1 number", nullptr}},
        BadName{"PLATE 200x0", {"thickness t = 0 mm", nullptr, nullptr}},
        BadName{"PLATE 20000x10", {"depth h = 20000 mm", "10000 mm", nullptr}},
        BadName{"XYZ 100", {"unknown section 'XYZ 100'", "did you mean", "IPE 100"}},
        BadName{"IPE 301", {"IPE 300", nullptr, nullptr}}));

// A number first in place of a dimension makes the letters part of the family: an unknown section.
TEST(SectionNotationErrorsLeadingLetters, AreRejected)
{
    const std::string message = errorOf("WI abcx300x8x20");
    EXPECT_NE(message.find("WI abcx300x8x20"), std::string::npos) << message;
    std::string error;
    EXPECT_EQ(makeSection("", error), nullptr);
    EXPECT_FALSE(error.empty());
}

// --- through the commands -------------------------------------------------------------------------------------

TEST(SectionNotationCommand, CheckRejectsABadDimension)
{
    const CommandRun r = runSteeldesign("check --rules library \"WI 1200x300x0x20\" --steel S355 --N -100");
    EXPECT_EQ(r.exitCode, 2) << r.output;
    EXPECT_NE(r.output.find("web thickness"), std::string::npos) << r.output;
    EXPECT_NE(r.output.find("tw = 0 mm"), std::string::npos) << r.output;
}

TEST(SectionNotationCommand, SectionPrintsTheProperties)
{
    const CommandRun text = runSteeldesign("section \"WBOX 400x300x12x16\"");
    EXPECT_EQ(text.exitCode, 0) << text.output;
    EXPECT_NE(text.output.find("WBOX 400x300x12x16"), std::string::npos) << text.output;
    EXPECT_NE(text.output.find("184.3 cm2"), std::string::npos) << text.output;  // A = 18432 mm2 (by hand above)
    const CommandRun json = runSteeldesign("section \"WBOX 400x300x12x16\" --json", false);
    ASSERT_EQ(json.exitCode, 0) << json.output;
    const auto j = nlohmann::json::parse(json.output);
    EXPECT_EQ(j["typeKey"], "RH");
    EXPECT_EQ(j["rolled"], false);
    EXPECT_EQ(j["hotRolled"], false);
    EXPECT_NEAR(j["A"].get<double>(), 18432e-6, 1e-12);
    EXPECT_NEAR(j["Iy"].get<double>(), 453771264e-12, 1e-12);
}

// WI 1500x400x10x25 in S355, a = min(3 hw, L) = min(4.35, 6) = 4.35 m, Vz = 1500 kN (EN 1993-1-5 5.2-5.4):
//   hw = 1500 - 2 * 25 = 1450 mm, eps = sqrt(235 / 355) = 0.81362
//   lambdaW = hw / (86.4 t eps) = 1450 / (86.4 * 10 * 0.81362) = 2.0627 (5.3(3)); chiW = 0.83 / 2.0627 = 0.40238
//   Vbw,Rd = chiW fy hw t / sqrt(3) = 0.40238 * 355000 * 1.45 * 0.010 / 1.73205 = 1195.86 kN
//   c = 4.35 (0.25 + 1.6 * 0.4 * 0.025^2 / (0.010 * 1.45^2)) = 4.35 * 0.269025 = 1.17026 m
//   Vbf,Rd = 0.4 * 0.025^2 * 355000 / 1.17026 = 75.84 kN; Vb,Rd = 1271.70 kN; 1500 / 1271.70 = 1.1795
TEST(SectionNotationCommand, PlateGirderReachesShearBuckling)
{
    const CommandRun r = runSteeldesign("member --rules library \"WI 1500x400x10x25\" --steel S355 --length 6 --Vz 1500 --json", false);
    EXPECT_EQ(r.exitCode, 1) << r.output;  // 1.18 > 1: not fulfilled
    const auto j = nlohmann::json::parse(r.output);
    EXPECT_EQ(j["section"], "WI 1500x400x10x25");
    EXPECT_EQ(j["shearBucklingErrorCode"], 0);
    ASSERT_FALSE(j["VbRd"]["Total"].is_null());
    EXPECT_NEAR(j["lambdaW"].get<double>(), 2.0627, 1e-4);
    EXPECT_NEAR(j["VbRd"]["Web"].get<double>(), 1195.86, 0.05);
    EXPECT_NEAR(j["VbRd"]["Flange"].get<double>(), 75.84, 0.01);
    EXPECT_NEAR(j["VbRd"]["Total"].get<double>(), 1271.70, 0.05);
    EXPECT_NEAR(j["utilizationShearBuckling"].get<double>(), 1500.0 / j["VbRd"]["Total"].get<double>(), 1e-12);
    EXPECT_EQ(j["verdict"], "not fulfilled");
}
