// Angles in bending (EN 1993-1-1 6.2.1(5), 6.3.2): the elastic stress at the outline's corners in the
// principal axes by hand, the moduli about u and v, the critical moment of an equal angle bent about its
// axis of symmetry u by hand and against Trahair's form without warping, moments given about the legs
// (--leg-axes, the batch's legAxes, Python's leg_axes) turned into u and v, and invariants over every
// angle of the catalogue.

#include "CommandRunner.h"
#include "EnMemberTestSupport.h"

#include <design/AngleBending.h>
#include <design/EnCrossSection.h>
#include <design/EnMember.h>
#include <design/SectionNotation.h>

#include <KaMaterial.h>
#include <SectionCatalogue.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

using namespace design;
using SteelDesign::ApplicationPoint;
using SteelDesign::Forces;
using SteelDesign::MomentDiagram;

namespace {

constexpr double pi = 3.14159265358979323846;

EnCrossSection crossSection(SDBSection& s, const char* grade, const Forces& f)
{
    KaConstrSteel steel = *KaConstrSteel::fromName(grade);
    const CrossSectionRequest request{&s, &steel, f, 1.0, false};
    EnCrossSection out;
    evaluateEnCrossSection(request, 1.0, out);
    return out;
}

// L 80x80x8 (catalogue: A = 12.27 cm², ey = ez = -22.55 mm; EN 10056-1: Iu = 115 cm⁴, Iv = 29.9 cm⁴), S235,
// Mu = 3 kNm, Mv = 1 kNm. alpha = 45°, the heel at (22.55, 22.55) mm, the legs towards -y and -z.
// The inner tip of the leg along y, (22.55 - 80, 22.55 - 8) = (-57.45, 14.55) mm:
//   u = (-57.45 + 14.55) cos 45° = -30.33 mm, v = (57.45 + 14.55) sin 45° = 50.91 mm
//   sigma = Mu v / Iu - Mv u / Iv = 3 · 0.05091 / 114.6e-8 + 1 · 0.03033 / 29.88e-8
//         = 133.3 + 101.5 = 234.8 N/mm²  ->  234.8 / 235 = 0.999 (the largest of the five corners)
// W_el,u = 114.6 / 5.657 = 20.26 cm³ (v_max at the tips), W_el,v = 29.88 / 3.189 = 9.37 cm³ (u_max at the heel).
TEST(AngleBendingByHand, EqualAngleL80x80x8CornerStresses)
{
    auto s = SDBCatalogue::get("L 80x80x8");
    const AngleAxes a = angleAxes(*s);
    ASSERT_TRUE(a.valid);
    EXPECT_TRUE(a.equal);
    EXPECT_NEAR(a.principal.alpha, pi / 4, 1e-9);
    EXPECT_NEAR(a.principal.Iu * 1e8, 115.0, 0.01 * 115.0);  // EN 10056-1
    EXPECT_NEAR(a.principal.Iv * 1e8, 29.9, 0.01 * 29.9);
    EXPECT_NEAR(a.vMax * 1e3, 56.57, 0.01);
    EXPECT_NEAR(a.uMax * 1e3, 31.89, 0.01);
    EXPECT_NEAR(a.Welu * 1e6, 20.26, 0.01);
    EXPECT_NEAR(a.Welv * 1e6, 9.37, 0.01);
    const EnCrossSection c = crossSection(*s, "S235", Forces(0, 3, 1, 0, 0, 0));
    EXPECT_EQ(c.sectionClass, 3);  // h / t = 10 <= 15, (b + h) / 2t = 10 <= 11.5
    EXPECT_NEAR(c.utilization[2].value(), 0.999, 0.002);
    const double u = (-57.45 + 14.55) * std::cos(pi / 4) * 1e-3 + 0.0, v = (57.45 + 14.55) * std::sin(pi / 4) * 1e-3;
    const double sigma = 3.0 * v / a.principal.Iu - 1.0 * u / a.principal.Iv;
    EXPECT_NEAR(c.utilization[2].value(), sigma / 235000.0, 2e-4);
    // N adds N / A at every corner: tension 50 kN, 40.7 N/mm² more at the corner in tension.
    const EnCrossSection n = crossSection(*s, "S235", Forces(50, 3, 1, 0, 0, 0));
    EXPECT_NEAR(n.utilization[4].value(), (sigma + 50.0 / s->getProperties().A) / 235000.0, 2e-4);
    EXPECT_EQ(n.utilization[2].value(), c.utilization[2].value());
}

// L 120x120x12 (catalogue), S235, L_LT = 2 m, My = 3 kNm about u: symmetric about u, so beta_v = 0 and
//   N_cr,v = pi² · 210000 · 151.6e4 / 2000² = 785.6 kN
//   Mcr = N_cr,v sqrt(I_w / I_v + L² G I_t / (pi² E I_v))
//       = 785.6 · sqrt(142.2e-12 / 151.6e-8 + 4 · 81e6 · 14.21e-8 / (pi² · 210e6 · 151.6e-8))
//       = 785.6 · sqrt(0.0000938 + 0.014652) = 785.6 · 0.12143 = 95.40 kNm
// Without warping, Trahair's equal angle (Flexural-torsional buckling of structures, 1993, 6.7):
// Mcr = (pi / L) sqrt(E Iv G It) = (pi / 2) sqrt(318.4 · 11.51) = 95.08 kNm, 0.3 % below.
// lambda_LT = sqrt(68.79e-6 · 235000 / 95.40) = 0.412, curve d (general case): chi_LT = 0.842; M_Ed / Mcr =
// 0.031 <= 0.4² so 6.3.2.2(4) lets lateral-torsional buckling be ignored: 3 / 16.17 = 0.186.
TEST(AngleBendingByHand, EqualAngleL120x120x12CriticalMoment)
{
    auto s = SDBCatalogue::get("L 120x120x12");
    const double Mcr = equalAngleMcr(*s, 2.0, 210e6, 81e6);
    EXPECT_NEAR(Mcr, 95.40, 0.05);
    const double trahair = pi / 2.0 * std::sqrt(210e6 * principalAxes(*s).Iv * 81e6 * s->getIt());
    EXPECT_NEAR(Mcr / trahair, 1.003, 0.002);
    EXPECT_EQ(equalAngleMcr(*SDBCatalogue::get("L 150x90x10"), 2.0, 210e6, 81e6), 0.0) << "unequal: Wagner term";

    KaConstrSteel steel = *KaConstrSteel::fromName("S235");
    MemberRequest r;
    r.section = s.get();
    r.steel = &steel;
    r.forces = Forces(0, 3, 0, 0, 0, 0);
    r.moments = makeMoments({3, 3, 3}, MomentDiagram::Polygonal, {0, 0, 0}, MomentDiagram::Polygonal, std::nullopt,
                            ApplicationPoint::Center, 0.0);
    r.lengths = BucklingLengths{2.0, 2.0, 2.0};
    EnMember m;
    evaluateEnMember(r, crossOf(3, 235000), 0.0, m);
    EXPECT_EQ(m.limitations, 0u);
    EXPECT_NEAR(m.Mcr, 95.40, 0.05);
    EXPECT_NEAR(m.utilization[1].value(), 3.0 / (angleAxes(*s).Welu * 235000.0), 1e-9);
    // A long span: L = 12 m, Mcr = 12.6 kNm, lambda_LT = 1.13, chi_LT = 0.44 by curve d.
    r.lengths = BucklingLengths{12.0, 12.0, 12.0};
    evaluateEnMember(r, crossOf(3, 235000), 0.0, m);
    const double M12 = equalAngleMcr(*s, 12.0, 210e6, 81e6);
    const double lambda = std::sqrt(angleAxes(*s).Welu * 235000.0 / M12);
    const double phi = 0.5 * (1 + 0.76 * (lambda - 0.2) + lambda * lambda);
    const double chi = 1.0 / (phi + std::sqrt(phi * phi - lambda * lambda));
    EXPECT_NEAR(m.utilization[1].value(), 3.0 / (chi * angleAxes(*s).Welu * 235000.0), 1e-9);
}

std::string json(const std::string& arguments)
{
    const CommandRun r = runSteeldesign(arguments + " --json", false);
    EXPECT_LE(r.exitCode, 3) << arguments << r.output;
    return r.output;
}

// Moments about the legs (--leg-axes) give what their components about u and v give: Mu = My cos(alpha) +
// Mz sin(alpha), Mv = -My sin(alpha) + Mz cos(alpha), for equal and unequal angles, check and member; the
// batch's legAxes column and Python's leg_axes read the same.
TEST(AngleBendingLegAxes, ResolvedIntoThePrincipalAxesEverywhere)
{
    const struct {
        const char* name;
        double My, Mz, Vz;
    } cases[] = {{"L 80x80x8", 3.0, 0.0, 10.0}, {"L 100x65x10", 2.0, -1.5, 0.0}, {"L 120x120x12", -4.0, 2.5, 5.0}};
    const std::string dir = ::testing::TempDir() + "/steeldesign_legs_" + std::to_string(getpid());
    std::filesystem::create_directories(dir);
    std::ofstream rows(dir + "/rows.csv");
    rows << "id,section,steel,N,My,Mz,Mt,Vy,Vz,length,legAxes\n";
    std::vector<double> governing;
    for (const auto& c : cases) {
        auto s = resolveSection(c.name);
        const double al = principalAxes(*s).alpha;
        const double Mu = c.My * std::cos(al) + c.Mz * std::sin(al), Mv = -c.My * std::sin(al) + c.Mz * std::cos(al);
        const double Vu = c.Vz * std::sin(al), Vv = c.Vz * std::cos(al);
        char given[256], resolved[256];
        std::snprintf(given, sizeof given, "\"%s\" --steel S355 --My %.17g --Mz %.17g --Vz %.17g --leg-axes", c.name, c.My,
                      c.Mz, c.Vz);
        std::snprintf(resolved, sizeof resolved, "\"%s\" --steel S355 --My %.17g --Mz %.17g --Vy %.17g --Vz %.17g", c.name,
                      Mu, Mv, Vu, Vv);
        const auto a = nlohmann::json::parse(json(std::string("check ") + given));
        const auto b = nlohmann::json::parse(json(std::string("check ") + resolved));
        for (const char* key : {"AxialBending", "Bending", "ShearBending"}) {
            const auto& x = a["utilizations"][key];
            const auto& y = b["utilizations"][key];
            ASSERT_EQ(x.is_null(), y.is_null()) << c.name << key;  // null in class 4 (not verified) alike
            if (!x.is_null()) {
                EXPECT_NEAR(x.get<double>(), y.get<double>(), 1e-12) << c.name << key;
            }
        }
        EXPECT_EQ(a["verdict"], b["verdict"]) << c.name;
        const auto am = nlohmann::json::parse(json(std::string("member ") + given + " --length 1.5"));
        const auto bm = nlohmann::json::parse(json(std::string("member ") + resolved + " --length 1.5"));
        EXPECT_EQ(am["verdict"], bm["verdict"]) << c.name;
        if (!am["governingUtilization"].is_null()) {
            EXPECT_NEAR(am["governingUtilization"].get<double>(), bm["governingUtilization"].get<double>(), 1e-12);
        }
        rows << c.name << ",\"" << c.name << "\",S355,0," << c.My << "," << c.Mz << ",0,0," << c.Vz << ",1.5,true\n";
        governing.push_back(am["governingUtilization"].is_null() ? -1.0 : am["governingUtilization"].get<double>());
    }
    rows.close();
    const CommandRun batch = runSteeldesign("batch " + dir + "/rows.csv --format jsonl", false);
    std::istringstream lines(batch.output);
    std::string line;
    for (std::size_t i = 0; std::getline(lines, line); ++i) {
        const auto row = nlohmann::json::parse(line);
        ASSERT_EQ(row["status"], "checked") << line;
        ASSERT_LT(i, governing.size());
        // The batch's governing check spans the cross-section too: never below the member's.
        EXPECT_GE(row["governingUtilization"].get<double>(), governing[i] - 1e-12) << line;
    }
    std::filesystem::remove_all(dir);
    // A diagram of another shape about z than about y cannot be turned point by point.
    const CommandRun bad = runSteeldesign("member \"L 80x80x8\" --length 2 --My 2 --Mz 1 --leg-axes --diagram-y parabolic "
                                          "--moments-y 0,2,0 --moments-z 1,1,1");
    EXPECT_EQ(bad.exitCode, 2);
    EXPECT_NE(bad.output.find("--leg-axes: the moment diagrams about y and z must have the same shape"), std::string::npos)
        << bad.output;
}

// Every angle of the catalogue, S235 and S355, moments about u and v of either sign: the elastic moduli
// are I / (farthest corner); the bending check of one moment is |M| / (W_el fy), of both at most the sum
// (they may relieve each other at a corner); N adds N / A; the bending check is symmetric under (Mu, Mv) -> (-Mu, -Mv);
// never "not verified" in class 3; N moves the check by at most |N| / (A fy).
TEST(AngleBendingCatalogue, CornerStressesOverEveryAngle)
{
    int checked = 0;
    for (const std::string& name : SDBCatalogue::names("L")) {
        auto s = SDBCatalogue::get(name);
        const AngleAxes a = angleAxes(*s);
        ASSERT_TRUE(a.valid) << name;
        EXPECT_NEAR(a.Welu * a.vMax, a.principal.Iu, 1e-12 * a.principal.Iu);
        EXPECT_NEAR(a.Welv * a.uMax, a.principal.Iv, 1e-12 * a.principal.Iv);
        for (const char* grade : {"S235", "S355"}) {
            for (const auto& [Mu, Mv] : {std::pair{1.0, 0.0}, {0.0, 1.0}, {0.7, -0.4}, {-0.3, 0.9}}) {
                const EnCrossSection c = crossSection(*s, grade, Forces(0, Mu, Mv, 0, 0, 0));
                SCOPED_TRACE(name + " " + grade);
                if (c.sectionClass == 4) {
                    EXPECT_FALSE(c.utilization[2].hasValue());
                    continue;
                }
                ASSERT_TRUE(c.utilization[2].hasValue());
                const double u = c.utilization[2].value(), fy = c.fy;
                if (Mv == 0.0) {
                    EXPECT_NEAR(u, std::fabs(Mu) / (a.Welu * fy), 1e-12);
                } else if (Mu == 0.0) {
                    EXPECT_NEAR(u, std::fabs(Mv) / (a.Welv * fy), 1e-12);
                } else {  // the two can relieve each other at a corner, never add up to more than the sum
                    EXPECT_LE(u, (std::fabs(Mu) / a.Welu + std::fabs(Mv) / a.Welv) / fy * (1 + 1e-12));
                }
                const EnCrossSection minus = crossSection(*s, grade, Forces(0, -Mu, -Mv, 0, 0, 0));
                EXPECT_NEAR(minus.utilization[2].value(), u, 1e-12);
                const EnCrossSection n = crossSection(*s, grade, Forces(-10, Mu, Mv, 0, 0, 0));
                if (n.sectionClass <= 3) {
                    EXPECT_LE(std::fabs(n.utilization[4].value() - u), 10.0 / (a.A * fy) + 1e-12);
                }
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 300);
}

} // namespace
