// The families of the catalogue beyond IPE, HE, UPE, equal angles and hot-finished tubes (HE AA, HD, HL,
// UB, UC, PFC, unequal angles, cold-formed RHS, SHS and CHS) against the producers' published properties
// (tests/data/published-families.csv: A in cm2, Iy and Iz in cm4, Wpl,y in cm3, It in cm4, as the
// producers' tables give them, from the public steel-section dataset of the open-source steelsnakes
// project; EN 10365, BS 4-1, EN 10056-1, EN 10219-2).
//
// Tolerances, measured over every row:
// - parallel flanges: A, Iy, Iz and Wpl,y within 2 % (the largest deviation is 1.55 %, UC 305x305x97 and
//   UB 610x229x101, whose published root radius does not give their published area; every other row is
//   within 0.6 %); It within 5 % (the producers' torsion constants of parallel flange channels take junction
//   terms of their own: PFC 200x75x23 +4.5 %; every other family within 0.5 %);
// - tapered flanges (IPN, UPN; the IPN table is the producer's catalogue as the open-source xc project
//   holds it): A, Iy and Wpl,y within 2.5 % (largest 2.2 %, UPN 65), Iz within 3 % (2.8 %, IPN 600); It
//   within 12 %: It takes the formula of parallel flanges of the mean thickness t, 11 % below the
//   producers' value for IPN 380 (on the safe side for the critical moment), 4.9 % above for UPN 300;
// - tees cut at mid-depth from IPE and HE (TIPE, THEA, THEB, THEM; the reference is the cut-tee table of the
//   open-source eurocodepy project): A, Iy, Iz and Wpl,y within 0.5 % (largest 0.26 %); It is not compared,
//   the reference's torsion constant being that of the bare plates without the root fillet junction.

#include <SectionCatalogue.h>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct Published {
    std::string family, name;
    double A, Iy, Iz, Wply, It;  // cm units; NaN where the table gives none
};

std::vector<Published> readPublished()
{
    std::ifstream in(std::string(STEELDESIGN_SOURCE_DIR) + "/tests/data/published-families.csv");
    std::vector<Published> rows;
    std::string line;
    std::getline(in, line);  // header
    while (std::getline(in, line)) {
        std::vector<std::string> cells;
        std::stringstream ss(line);
        for (std::string cell; std::getline(ss, cell, ',');) cells.push_back(cell);
        cells.resize(7);
        auto value = [](const std::string& text) { return text.empty() ? NAN : std::stod(text); };
        rows.push_back({cells[0], cells[1], value(cells[2]), value(cells[3]), value(cells[4]), value(cells[5]),
                        value(cells[6])});
    }
    return rows;
}

const std::vector<Published>& published()
{
    static const std::vector<Published> rows = readPublished();
    return rows;
}

struct Tolerances {
    double area, majorAxis, minorAxis, plastic, torsion;
};

Tolerances tolerancesOf(const std::string& family)
{
    if (family == "IPN" || family == "UPN") return {0.025, 0.025, 0.03, 0.025, 0.12};
    if (family.front() == 'T') return {0.005, 0.005, 0.005, 0.005, NAN};
    return {0.02, 0.02, 0.02, 0.02, 0.05};
}

class FamilyAgainstPublishedTables : public ::testing::TestWithParam<const char*> {};

} // namespace

TEST_P(FamilyAgainstPublishedTables, EveryRowWithinTheTolerances)
{
    const std::string family = GetParam();
    std::size_t compared = 0;
    for (const Published& p : published()) {
        if (p.family != family) continue;
        const auto section = SDBCatalogue::find(p.name);
        ASSERT_TRUE(section) << p.name;
        EXPECT_EQ(section->getName(), p.name);
        auto within = [&](double actual, double expected, double tolerance, const char* what) {
            if (std::isnan(expected) || std::isnan(tolerance)) return;
            EXPECT_NEAR(actual, expected, std::fabs(expected) * tolerance) << p.name << " " << what;
        };
        const Tolerances tol = tolerancesOf(family);
        within(section->getA() * 1e4, p.A, tol.area, "A");
        within(section->getIy() * 1e8, p.Iy, tol.majorAxis, "Iy");
        within(section->getIz() * 1e8, p.Iz, tol.minorAxis, "Iz");
        within(section->getWply() * 1e6, p.Wply, tol.plastic, "Wpl,y");
        within(section->getIt() * 1e8, p.It, tol.torsion, "It");
        ++compared;
    }
    EXPECT_GT(compared, 10u) << family;
    // Every published row is in the catalogue and the family lists nothing else (angles: the equal ones
    // too; tees: also those of HE 650 to HE 1000, which the reference's table does not reach).
    const std::vector<std::string> names = SDBCatalogue::names(family);
    if (family != "L" && family.front() != 'T') {
        EXPECT_EQ(names.size(), compared) << family;
    } else {
        EXPECT_GE(names.size(), compared) << family;
    }
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()).size(), names.size()) << "duplicate names in " << family;
}

INSTANTIATE_TEST_SUITE_P(Producers, FamilyAgainstPublishedTables,
                         ::testing::Values("HEAA", "HD", "HL", "UB", "UC", "PFC", "L", "CFRHS", "CFSHS", "CFCHS", "IPN",
                                           "UPN", "TIPE", "THEA", "THEB", "THEM"));

// A tapered flange by hand: an IPN-like section without fillets, h = 200, b = 100, s = 10 mm, t = 10 mm
// halfway along each 45 mm outstand, slope 0.14: each outstand is a trapezoid from 6.85 mm at the tip to
// 13.15 mm at the web face, of the area of a 45 mm x 10 mm strip. So A = 4 outstands of 45 x 10 plus the
// web, 10 mm wide over the whole depth: 1800 + 2000 = 3800 mm2.
TEST(SectionFamilies, TaperedFlangeAreaByHand)
{
    const auto s = SDBSectionI::tapered(0.2, 0.1, 0.01, 0.01, 0.0, 0.0, 0.14);
    EXPECT_NEAR(s->getA(), 3800e-6, 1e-12);
    // The same I with parallel flanges has the same area; its minor-axis moment is larger (the taper
    // puts the flange material nearer the web).
    const SDBSectionI parallel(0.2, 0.1, 0.01, 0.01, 0.0, true);
    EXPECT_NEAR(parallel.getA(), 3800e-6, 1e-12);
    EXPECT_LT(s->getIz(), parallel.getIz());
    EXPECT_THROW(SDBSectionI::tapered(0.2, 0.1, 0.01, 0.01, 0.0, 0.0, 0.6), SDBDimensionError);  // tip < 0
}

// The kinds and flags of each family, and invariants over every row: the major axis is y, the plastic
// modulus exceeds the elastic one, cold-formed tubes are neither rolled nor hot-finished.
TEST(SectionFamilies, KindsFlagsAndInvariants)
{
    const std::map<std::string, std::string> keys{{"HEAA", "I"}, {"HD", "I"},  {"HL", "I"},     {"UB", "I"},
                                                  {"UC", "I"},   {"PFC", "U"}, {"CFRHS", "RH"}, {"CFSHS", "RH"},
                                                  {"CFCHS", "O"}, {"IPN", "I"},  {"UPN", "U"},
                                                  {"TIPE", "T"},  {"THEA", "T"}, {"THEB", "T"},    {"THEM", "T"}};
    for (const auto& [family, key] : keys) {
        for (const std::string& name : SDBCatalogue::names(family)) {
            const auto s = SDBCatalogue::get(name);
            ASSERT_TRUE(s->getType());
            EXPECT_EQ(s->getType()->getKey(), key) << name;
            if (key != "T") {  // a wide tee is stiffer about its stem than about its flange
                EXPECT_GE(s->getIy(), s->getIz() * (1.0 - 1e-12)) << name;
            }
            EXPECT_GT(s->getWply(), s->getWy()) << name;
            EXPECT_GT(s->getA(), 0.0) << name;
            const bool cold = family.rfind("CF", 0) == 0;
            EXPECT_EQ(s->isRolled(), !cold) << name;
            if (const auto* rh = dynamic_cast<const SDBSectionRH*>(s.get())) {
                EXPECT_EQ(rh->isHotRolled(), !cold) << name;
            }
            if (const auto* o = dynamic_cast<const SDBSectionO*>(s.get())) {
                EXPECT_EQ(o->isHotRolled(), !cold) << name;
            }
        }
    }
    // An unequal angle: the longer leg along z (h), the shorter along y (b).
    const auto angle = SDBCatalogue::get("L 200x100x10");
    const auto* L = dynamic_cast<const SDBSectionL*>(angle.get());
    ASSERT_NE(L, nullptr);
    EXPECT_DOUBLE_EQ(L->getH(), 0.2);
    EXPECT_DOUBLE_EQ(L->getB(), 0.1);
    // Lookup ignores case and blanks: "hl1100r" is HL 1100 R.
    EXPECT_EQ(SDBCatalogue::get("hl1100r")->getName(), "HL 1100 R");
    EXPECT_EQ(SDBCatalogue::get("heaa 300")->getName(), "HEAA 300");
}
