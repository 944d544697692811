// The critical moment of the EN evaluation (design/EnCriticalMoment.h), a Rayleigh-Ritz sine series on
// fork supports, against closed forms (hand arithmetic in the comments), the published C1 tables and the
// finite-element analysis of the same request (numericalCriticalMoment, design/CriticalMomentSolver.h),
// which it must reproduce within 2 % for any diagram the request can describe.

#include <design/BucklingLengths.h>
#include <design/CriticalMomentSolver.h>
#include <design/EnCriticalMoment.h>
#include <design/MemberCheck.h>

#include <KaMaterial.h>
#include <SectionCatalogue.h>
#include <SteelDesign/SectionInitializer.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

using namespace design;
using SteelDesign::ApplicationPoint;
using SteelDesign::Forces;
using SteelDesign::MomentDiagram;

namespace {

constexpr double E = 210e6, G = 81e6;
constexpr double pi = std::numbers::pi;

MemberRequest request(SDBSection& section, double L, const std::array<double, 3>& m,
                      MomentDiagram diagram = MomentDiagram::Polygonal, ApplicationPoint point = ApplicationPoint::Center,
                      double cTheta = 0.0)
{
    MemberRequest r;
    r.section = &section;
    r.lengths = uniformLengths(L);
    r.moments = makeMoments(m, diagram, {0.0, 0.0, 0.0}, MomentDiagram::Polygonal, std::nullopt, point, 0.0);
    r.cTheta = cTheta;
    return r;
}

EnCriticalMoment mcrOf(const MemberRequest& r)
{
    const EnCriticalMoment c = enCriticalMoment(r, E, G);
    EXPECT_TRUE(c.ok);
    return c;
}

// The reference: the finite-element analysis that the member check runs for McrMethod::Numerical, with E
// and G of the section's initializer.
class FiniteElements {
public:
    explicit FiniteElements(SDBSection& section)
        : steel_(*KaConstrSteel::fromName("S355")),
          init_(&section, &steel_, Forces(0, 100, 0, 0, 0, 0), SteelDesign::VerificationControl::Classify, false)
    {
    }
    double mcr(const MemberRequest& r) const { return numericalCriticalMoment(r, init_); }
    double E() const { return init_.getEs(); }
    double G() const { return init_.getG(); }

private:
    KaConstrSteel steel_;
    SteelDesign::SectionInitializer init_;
};

// Mcr of uniform moment on forks (Timoshenko and Gere, Theory of Elastic Stability, 6.2; with the Wagner
// term zj = beta_y / 2 of a mono-symmetric section, sign s of the moment):
// Pz (sqrt((beta_y/2)^2 + Iw/Iz + G It / Pz) + s beta_y / 2), Pz = pi^2 E Iz / L^2.
double uniformClosedForm(const McrSection& s, double L, double sign = 1.0)
{
    const double Pz = pi * pi * E * s.Iz / (L * L);
    const double a = 0.5 * s.betaY;
    return Pz * (std::sqrt(a * a + s.Iw / s.Iz + G * s.It / Pz) + sign * a);
}

std::unique_ptr<SDBSection> withoutWarping(const char* name)
{
    std::unique_ptr<SDBSection> s = SDBCatalogue::get(name);
    SDBProperties p = s->getProperties();
    p.Iw = 0.0;
    s->setProperties(p);
    return s;
}

// WI 900x300x10x25/250x20: the mono-symmetric section of docs/mcr.md (top flange the larger one).
std::unique_ptr<SDBSection> monoSymmetricI() { return SDBCatalogue::weldedI(0.9, 0.3, 0.010, 0.025, 0.25, 0.020); }

double relDiff(double a, double b) { return std::fabs(a - b) / std::fabs(b); }

} // namespace

// ---------------------------------------------------------------------------------------------------
// Uniform moment: one sine term is exact, so the closed form is taken without the series.

TEST(EnCriticalMomentUniformMoment, ReproducesTimoshenkoClosedForm)
{
    // IPE 300 of the catalogue: Iz = 603.78 cm4, It = 19.919 cm4, Iw = 125.93e3 cm6. At L = 6 m:
    // E Iz = 1267.95 kNm2, G It = 16.134 kNm2, E Iw = 26.446 kNm4; sqrt(E Iz G It) = 143.03;
    // pi^2 E Iw / (L^2 G It) = 261.01 / 580.83 = 0.44938; Mcr = (pi / 6) 143.03 sqrt(1.44938) = 90.16 kNm;
    // kwt = (pi / 6) sqrt(26.446 / 16.134) = 0.5236 * 1.2803 = 0.6704.
    auto ipe = SDBCatalogue::get("IPE 300");
    const EnCriticalMoment c = mcrOf(request(*ipe, 6.0, {100, 100, 100}));
    EXPECT_NEAR(c.Mcr, 90.16, 0.01);
    EXPECT_NEAR(c.kwt, 0.6704, 1e-4);
    EXPECT_NEAR(c.C1, 1.0, 1e-9);
    EXPECT_EQ(c.zg, 0.0);
    EXPECT_EQ(c.terms, 1);
    EXPECT_STREQ(c.method, "closed form of uniform moment");
    for (double L : {2.0, 3.0, 10.0, 15.0})
        for (double M : {100.0, -40.0}) {
            const EnCriticalMoment u = mcrOf(request(*ipe, L, {M, M, M}));
            EXPECT_LT(relDiff(u.Mcr, uniformClosedForm(mcrSection(*ipe), L)), 1e-7) << "L = " << L << ", M = " << M;
            EXPECT_NEAR(u.C1, 1.0, 1e-9);
        }
}

// The mono-symmetric section of docs/mcr.md under uniform moment, larger flange compressed (sagging) and
// in tension (hogging): the exact values there, 2990.36 / 888.79 and 1574.25 / 534.76 kNm at L = 6 / 12 m.
TEST(EnCriticalMomentUniformMoment, MonoSymmetricWagnerTermBothSigns)
{
    auto wi = monoSymmetricI();
    const McrSection s = mcrSection(*wi);
    const struct {
        double L, M, published;
    } cases[] = {{6.0, 100.0, 2990.36}, {12.0, 100.0, 888.79}, {6.0, -100.0, 1574.25}, {12.0, -100.0, 534.76}};
    for (const auto& k : cases) {
        const EnCriticalMoment c = mcrOf(request(*wi, k.L, {k.M, k.M, k.M}));
        EXPECT_NEAR(c.Mcr, k.published, 0.01) << "L = " << k.L << ", M = " << k.M;
        EXPECT_LT(relDiff(c.Mcr, uniformClosedForm(s, k.L, k.M > 0 ? 1.0 : -1.0)), 1e-7);
        EXPECT_NEAR(c.C1, 1.0, 1e-9);
    }
}

// ---------------------------------------------------------------------------------------------------
// C1 at kwt = 0 (the section's Iw set to 0): NCCI SN003a-EN-EU (Access Steel) Table 3.1 for end moments
// (psi = M2 / M1) and Table 3.2 for a uniform load (1.127) and a central point load (1.348) at the shear
// centre.

TEST(EnCriticalMomentC1, ReproducesNcciSn003TablesAtKwtZero)
{
    auto ipe = withoutWarping("IPE 300");
    const struct {
        double psi, c1;
    } table31[] = {{1.0, 1.00}, {0.75, 1.14}, {0.5, 1.31},  {0.25, 1.52}, {0.0, 1.77},
                   {-0.25, 2.05}, {-0.5, 2.33}, {-0.75, 2.57}, {-1.0, 2.55}};
    for (double L : {3.0, 8.0}) {
        for (const auto& row : table31) {
            // Two straight lines through the end values and their mean: one straight line.
            const EnCriticalMoment c = mcrOf(request(*ipe, L, {100.0, 50.0 * (1.0 + row.psi), 100.0 * row.psi}));
            EXPECT_EQ(c.kwt, 0.0);
            EXPECT_NEAR(c.C1, row.c1, 0.006) << "psi = " << row.psi;
        }
        EXPECT_NEAR(mcrOf(request(*ipe, L, {0, 100, 0}, MomentDiagram::Parabolic)).C1, 1.127, 0.002);
        EXPECT_NEAR(mcrOf(request(*ipe, L, {0, 100, 0}, MomentDiagram::Polygonal)).C1, 1.348, 0.002);
    }
}

// C1 grows with kwt: over kwt = 0.27 to 2.0 (IPE 300, L = 15 to 2 m) it stays within 1.77 to 1.88 for
// psi = 0 and 2.55 to 2.75 for psi = -1, the ranges the C1 tables against kwt span (their kwt = 0 ends
// are the NCCI SN003a values above); for loads at the shear centre 1.13 (uniform) and 1.35 (central
// point load) hold within a few per cent, as EN 1993-1-1:1992 Annex F Table F.1.2 gives them (1.132 and
// 1.365 for k = 1).
TEST(EnCriticalMomentC1, GrowsWithKwtWithinTheTabulatedRanges)
{
    auto ipe = SDBCatalogue::get("IPE 300");
    double previous[4] = {0.0, 0.0, 0.0, 0.0};
    for (double L : {15.0, 10.0, 6.0, 4.0, 3.0, 2.0}) { // kwt increasing
        const double c0 = mcrOf(request(*ipe, L, {100, 50, 0})).C1;
        const double cm1 = mcrOf(request(*ipe, L, {100, 0, -100})).C1;
        const double cq = mcrOf(request(*ipe, L, {0, 100, 0}, MomentDiagram::Parabolic)).C1;
        const double cp = mcrOf(request(*ipe, L, {0, 100, 0}, MomentDiagram::Polygonal)).C1;
        EXPECT_GE(c0, 1.77);
        EXPECT_LE(c0, 1.88);
        EXPECT_GE(cm1, 2.55);
        EXPECT_LE(cm1, 2.75);
        EXPECT_NEAR(cq, 1.13, 0.03 * 1.13);
        EXPECT_NEAR(cp, 1.35, 0.03 * 1.35);
        const double now[4] = {c0, cm1, cq, cp};
        for (int k = 0; k < 4; ++k) {
            EXPECT_GT(now[k], previous[k]) << "L = " << L << ", case " << k;
            previous[k] = now[k];
        }
    }
}

// Loads off the shear centre, IPE 300, L = 6 m, against EN 1993-1-1:1992 Annex F (F.2) with Table F.1.2
// (k = 1): uniform load C1 = 1.132, C2 = 0.459 -> 102.06 / 78.50 / 132.69 kNm at the shear centre / top /
// bottom flange; central point load C1 = 1.365, C2 = 0.553 -> 123.07 / 89.85 / 168.56 kNm (the values of
// docs/mcr.md). The three-factor formula itself is approximate (about 1 % for a point load on the top
// flange), so 1.5 %.
TEST(EnCriticalMomentLoadHeight, ReproducesAnnexFThreeFactorFormula)
{
    auto ipe = SDBCatalogue::get("IPE 300");
    const struct {
        MomentDiagram diagram;
        ApplicationPoint point;
        double published, zg;
    } cases[] = {{MomentDiagram::Parabolic, ApplicationPoint::Center, 102.06, 0.0},
                 {MomentDiagram::Parabolic, ApplicationPoint::Top, 78.50, -0.15},
                 {MomentDiagram::Parabolic, ApplicationPoint::Bottom, 132.69, 0.15},
                 {MomentDiagram::Polygonal, ApplicationPoint::Center, 123.07, 0.0},
                 {MomentDiagram::Polygonal, ApplicationPoint::Top, 89.85, -0.15},
                 {MomentDiagram::Polygonal, ApplicationPoint::Bottom, 168.56, 0.15}};
    for (const auto& k : cases) {
        const EnCriticalMoment c = mcrOf(request(*ipe, 6.0, {0, 100, 0}, k.diagram, k.point));
        EXPECT_LT(relDiff(c.Mcr, k.published), 0.015) << c.Mcr << " vs " << k.published;
        EXPECT_DOUBLE_EQ(c.zg, k.zg);
    }
}

// ---------------------------------------------------------------------------------------------------
// The finite-element analysis of the same request: the sections, lengths, diagrams and load heights of
// the member checks, every one within 2 % (the largest difference found is about 0.3 %; the series and
// the 30 elements both converge from above).

TEST(EnCriticalMomentAgainstFiniteElements, RolledWeldedAndChannelSectionsWithin2Percent)
{
    struct Diagram {
        std::array<double, 3> m;
        MomentDiagram shape;
    };
    std::vector<Diagram> diagrams;
    for (double psi = -1.0; psi <= 1.0001; psi += 0.25) // straight lines
        diagrams.push_back({{100.0, 50.0 * (1.0 + psi), 100.0 * psi}, MomentDiagram::Polygonal});
    for (const std::array<double, 3>& m : std::vector<std::array<double, 3>>{
             {0, 100, 0}, {-100, 100, -100}, {-50, 100, 0}, {-100, 30, -60}, {60, 100, 20}, {100, -40, 70}}) {
        diagrams.push_back({m, MomentDiagram::Parabolic}); // uniform load with and without end moments
        diagrams.push_back({m, MomentDiagram::Polygonal}); // central point load with and without end moments
    }
    std::vector<std::pair<std::string, std::unique_ptr<SDBSection>>> sections;
    for (const char* name : {"IPE 200", "IPE 300", "IPE 600", "HEA 300", "HEB 500", "UPN 200"})
        sections.emplace_back(name, SDBCatalogue::get(name));
    sections.emplace_back("WI 900x300x10x25/250x20", monoSymmetricI());

    int cases = 0;
    double worst = 0.0;
    for (auto& [name, section] : sections) {
        const FiniteElements fe(*section);
        ASSERT_EQ(fe.E(), E);
        ASSERT_EQ(fe.G(), G);
        for (double L : {2.0, 3.0, 4.5, 6.0, 8.0, 10.0, 15.0})
            for (const Diagram& d : diagrams)
                for (double sign : {1.0, -1.0}) // the reversed diagram matters for the mono-symmetric section
                    for (ApplicationPoint point : {ApplicationPoint::Top, ApplicationPoint::Center, ApplicationPoint::Bottom}) {
                        const std::array<double, 3> m{sign * d.m[0], sign * d.m[1], sign * d.m[2]};
                        const MemberRequest r = request(*section, L, m, d.shape, point);
                        const EnCriticalMoment c = mcrOf(r);
                        const double reference = fe.mcr(r);
                        ASSERT_GT(reference, 0.0);
                        const double diff = relDiff(c.Mcr, reference);
                        worst = std::max(worst, diff);
                        EXPECT_LT(diff, 0.02) << name << " L = " << L << " M = " << m[0] << ", " << m[1] << ", "
                                              << m[2] << (d.shape == MomentDiagram::Parabolic ? " parabolic" : " polygonal")
                                              << " point " << static_cast<int>(point) << ": " << c.Mcr << " vs "
                                              << reference;
                        ++cases;
                    }
    }
    EXPECT_GT(cases, 5000);
    EXPECT_LT(worst, 0.005); // what the series gives today; 2 % is the requirement
}

// Tees (shear centre at the flange, beta_y of the tee), hollow sections (Iw = 0), parallel-flange
// channels, and the continuous restraint C_theta: within 2 % as well, whichever way the series ends
// (8, 16 or 32 terms, or the finite elements where no series resolves a short mode).
TEST(EnCriticalMomentAgainstFiniteElements, TeesHollowSectionsAndRotationalRestraintWithin2Percent)
{
    std::vector<std::pair<std::string, std::unique_ptr<SDBSection>>> sections;
    for (const char* name : {"TIPE 300", "THEB 300", "RHS 200x100x8", "PFC 300x100x46", "IPE 200", "HEB 500"})
        sections.emplace_back(name, SDBCatalogue::get(name));
    sections.emplace_back("WI 600x120x8x12/300x20", SDBCatalogue::weldedI(0.6, 0.12, 0.008, 0.012, 0.3, 0.02));
    int byTerms[33] = {};
    for (auto& [name, section] : sections) {
        const FiniteElements fe(*section);
        for (double L : {2.0, 6.0, 15.0})
            for (double cTheta : {0.0, 2.0, 20.0})
                for (const std::array<double, 3>& m : std::vector<std::array<double, 3>>{
                         {100, 100, 100}, {100, 0, -100}, {0, 100, 0}, {-75, 100, -75}, {-100, -30, 50}})
                    for (MomentDiagram shape : {MomentDiagram::Polygonal, MomentDiagram::Parabolic})
                        for (ApplicationPoint point : {ApplicationPoint::Top, ApplicationPoint::Center, ApplicationPoint::Bottom}) {
                            const MemberRequest r = request(*section, L, m, shape, point, cTheta);
                            const EnCriticalMoment c = mcrOf(r);
                            const double reference = fe.mcr(r);
                            ASSERT_GT(reference, 0.0);
                            EXPECT_LT(relDiff(c.Mcr, reference), 0.02)
                                << name << " L = " << L << " C_theta = " << cTheta << " M = " << m[0] << ", " << m[1]
                                << ", " << m[2] << " " << c.method << ": " << c.Mcr << " vs " << reference;
                            ++byTerms[c.terms];
                        }
    }
    // Every way of ending is exercised.
    EXPECT_GT(byTerms[8], 0);
    EXPECT_GT(byTerms[16], 0);
    EXPECT_GT(byTerms[32], 0);
    EXPECT_GT(byTerms[0], 0);
}

// ---------------------------------------------------------------------------------------------------
// Convergence of the series (Mcr in kNm; the finite elements with 240 elements as the converged value):
//
//   case                                          4 terms   8 terms   16 terms  32 terms  converged
//   IPE 300, L = 6 m, psi = -1                    244.018   243.979   243.979   243.979   243.979
//     central point load, top flange              88.913    88.811    88.799    88.798    88.798
//     uniform load, top flange                    78.488    78.488    78.488    78.488    78.488
//   THEB 300, L = 15 m, (-75, 100, -75), central  413.48    411.50    408.57    406.93    405.96
//     point load at the tip of the stem
//   TIPE 300, L = 6 m, (-100, 50, -100), uniform  78.21     74.06     72.61     72.36     72.35
//     load at the shear centre
//
// Double curvature and point loads on an I section converge by 8 terms (the drop from 4 to 8 terms,
// 0.02 % and 0.11 %, is the check). A point load far from the shear centre of a tee is a concentrated
// torque with a warping length of 6 cm against a half-wave of L / 32 = 47 cm: a kink that sines approach
// slowly (and not steadily: 0.5 %, 0.7 %, 0.4 % per doubling), so the series does not accept it; the
// hogging tee buckles in short waves where its stem is compressed (the Wagner term), which the check on
// mode n + 1 catches. Both go to the finite elements.

TEST(EnCriticalMomentSeries, ConvergesForDoubleCurvatureAndPointLoadsWithEightTerms)
{
    auto ipe = SDBCatalogue::get("IPE 300");
    const FiniteElements fe(*ipe);
    const struct {
        std::array<double, 3> m;
        MomentDiagram shape;
        ApplicationPoint point;
        double converged, change;
    } cases[] = {{{100, 0, -100}, MomentDiagram::Polygonal, ApplicationPoint::Center, 243.979, 0.000159},
                 {{0, 100, 0}, MomentDiagram::Polygonal, ApplicationPoint::Top, 88.798, 0.001140},
                 {{0, 100, 0}, MomentDiagram::Parabolic, ApplicationPoint::Top, 78.488, 0.0}};
    for (const auto& k : cases) {
        const MemberRequest r = request(*ipe, 6.0, k.m, k.shape, k.point);
        const EnCriticalMoment c = mcrOf(r);
        EXPECT_EQ(c.terms, 8);
        EXPECT_NEAR(c.seriesChange, k.change, 2e-5);
        EXPECT_LT(relDiff(c.Mcr, k.converged), 0.0002);
        EXPECT_LT(relDiff(c.Mcr, fe.mcr(r)), 0.0002);
    }
}

TEST(EnCriticalMomentSeries, ShortModesAndSharpTorqueKinksGoToTheFiniteElements)
{
    auto theb = SDBCatalogue::get("THEB 300");
    const MemberRequest kink = request(*theb, 15.0, {-75, 100, -75}, MomentDiagram::Polygonal, ApplicationPoint::Bottom);
    const EnCriticalMoment a = mcrOf(kink);
    EXPECT_EQ(a.terms, 0);
    EXPECT_STREQ(a.method, "finite elements (the sine series does not resolve the mode)");
    EXPECT_NEAR(a.Mcr, FiniteElements(*theb).mcr(kink), 1e-9 * a.Mcr);

    auto tipe = SDBCatalogue::get("TIPE 300");
    const MemberRequest hogging = request(*tipe, 6.0, {-100, 50, -100}, MomentDiagram::Parabolic);
    const EnCriticalMoment b = mcrOf(hogging);
    EXPECT_EQ(b.terms, 0);
    EXPECT_NEAR(b.Mcr, FiniteElements(*tipe).mcr(hogging), 1e-9 * b.Mcr);

    // A stiff continuous restraint flattens the spectrum of an I section: more terms, still converged.
    auto ipe = SDBCatalogue::get("IPE 200");
    const MemberRequest restrained = request(*ipe, 10.0, {100, 0, -100}, MomentDiagram::Polygonal,
                                             ApplicationPoint::Center, 2.0);
    const EnCriticalMoment c = mcrOf(restrained);
    EXPECT_EQ(c.terms, 16);
    EXPECT_LT(c.seriesChange, 0.005);
    EXPECT_LT(relDiff(c.Mcr, FiniteElements(*ipe).mcr(restrained)), 0.002);
}

// ---------------------------------------------------------------------------------------------------
// Invariants: mirrored and scaled diagrams, the reversed diagram of a doubly symmetric section, the
// order of load heights, the restraint, and the Wagner term of a mono-symmetric section.

TEST(EnCriticalMomentInvariants, MirrorScaleSignHeightRestraintAndWagner)
{
    auto ipe = SDBCatalogue::get("HEA 300");
    for (double L : {3.0, 9.0})
        for (MomentDiagram shape : {MomentDiagram::Polygonal, MomentDiagram::Parabolic}) {
            const double base = mcrOf(request(*ipe, L, {80, 100, -20}, shape)).Mcr;
            EXPECT_NEAR(mcrOf(request(*ipe, L, {-20, 100, 80}, shape)).Mcr, base, 1e-6 * base);  // mirrored
            EXPECT_NEAR(mcrOf(request(*ipe, L, {240, 300, -60}, shape)).Mcr, base, 1e-6 * base); // scaled
            EXPECT_NEAR(mcrOf(request(*ipe, L, {-80, -100, 20}, shape)).Mcr, base, 1e-6 * base); // reversed
            // A downward load: on the top flange destabilising, on the bottom flange stabilising.
            const double top = mcrOf(request(*ipe, L, {0, 100, 0}, shape, ApplicationPoint::Top)).Mcr;
            const double centre = mcrOf(request(*ipe, L, {0, 100, 0}, shape, ApplicationPoint::Center)).Mcr;
            const double bottom = mcrOf(request(*ipe, L, {0, 100, 0}, shape, ApplicationPoint::Bottom)).Mcr;
            EXPECT_LT(top, centre);
            EXPECT_LT(centre, bottom);
            // An upward load (hogging rise) on the top flange is the stabilising one.
            EXPECT_GT(mcrOf(request(*ipe, L, {0, -100, 0}, shape, ApplicationPoint::Top)).Mcr, centre);
            EXPECT_GT(mcrOf(request(*ipe, L, {0, 100, 0}, shape, ApplicationPoint::Center, 5.0)).Mcr, centre);
        }
    // The larger flange compressed buckles later, for a gradient too.
    auto wi = monoSymmetricI();
    for (double L : {4.0, 10.0})
        EXPECT_GT(mcrOf(request(*wi, L, {100, 50, 0})).Mcr, mcrOf(request(*wi, L, {-100, -50, 0})).Mcr);
}

// ---------------------------------------------------------------------------------------------------
// The tee of mcrSection: the shear centre at the flange's mid-thickness and beta_y of its plates.
// Tee 200 x 200, flange 20, stem 10 (welded, no root radius), z down from the top of the flange:
//   flange A1 = 0.004 m2 at z = 0.01, stem A2 = 0.0018 m2 at z = 0.11: centroid zc = 2.38e-4 / 0.0058 = 0.041034;
//   Iy = 1.3333e-7 + 0.004 * 0.031034^2 + 4.86e-6 + 0.0018 * 0.068966^2 = 3.9859e-6 + 1.34214e-5 = 1.74073e-5;
//   int z (y^2 + z^2) dA about the centroid: flange (z from -0.041034 to -0.021034)
//     b^3/12 (c^2 - a^2)/2 + b (c^4 - a^4)/4 = 6.6667e-4 * (-6.2068e-4) + 0.05 * (-2.63941e-6) = -5.4576e-7,
//   stem (z from -0.021034 to 0.158966) 8.3333e-8 * 0.0124139 + 0.0025 * 6.38387e-4 = 1.59700e-6; sum 1.05124e-6;
//   zs = 0.01 - 0.041034 = -0.031034; beta_y = 1.05124e-6 / 1.74073e-5 + 2 * 0.031034 = 0.060391 + 0.062069 = 0.12246 m.
TEST(McrSectionTee, ShearCentreAtTheFlangeAndBetaYByHand)
{
    const SDBSectionT tee(0.2, 0.2, 0.01, 0.02, 0.0, false);
    const McrSection s = mcrSection(tee);
    EXPECT_NEAR(s.betaY, 0.12246, 2e-5);
    EXPECT_NEAR(s.zs, -0.031034, 1e-6);
    EXPECT_DOUBLE_EQ(s.zTop, -0.01);
    EXPECT_DOUBLE_EQ(s.zBottom, 0.19);
    EXPECT_EQ(s.Iz, tee.getIz());
    EXPECT_EQ(s.It, tee.getIt());
    EXPECT_EQ(s.Iw, tee.getIw());
    // Uniform moment: the closed form with zj = beta_y / 2; the stem compressed (hogging) buckles first.
    SDBSectionT section = tee;
    for (double L : {3.0, 8.0}) {
        const EnCriticalMoment sag = mcrOf(request(section, L, {50, 50, 50}));
        const EnCriticalMoment hog = mcrOf(request(section, L, {-50, -50, -50}));
        EXPECT_LT(relDiff(sag.Mcr, uniformClosedForm(s, L, 1.0)), 1e-7);
        EXPECT_LT(relDiff(hog.Mcr, uniformClosedForm(s, L, -1.0)), 1e-7);
        EXPECT_LT(hog.Mcr, sag.Mcr);
    }
}

// ---------------------------------------------------------------------------------------------------
// No Mcr: sections bent about non-principal axes (angles, Z), circular ones, missing or bad inputs.

TEST(EnCriticalMomentScope, UncoveredKindsAndBadInputsGiveNoMcr)
{
    for (const char* name : {"L 100x100x10", "CHS 219.1x8"}) {
        auto s = SDBCatalogue::get(name);
        EXPECT_FALSE(enCriticalMoment(request(*s, 4.0, {10, 10, 10}), E, G).ok) << name;
    }
    SDBSectionZ z(0.2, 0.08, 0.006, 0.01, 0.0);
    EXPECT_FALSE(enCriticalMoment(request(z, 4.0, {10, 10, 10}), E, G).ok);
    SDBSectionCircle bar(0.05);
    EXPECT_FALSE(enCriticalMoment(request(bar, 4.0, {1, 1, 1}), E, G).ok);

    auto ipe = SDBCatalogue::get("IPE 300");
    const double nan = std::numeric_limits<double>::quiet_NaN(), inf = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(enCriticalMoment(request(*ipe, 6.0, {0, 0, 0}), E, G).ok); // no bending about y
    EXPECT_FALSE(enCriticalMoment(request(*ipe, 0.0, {10, 10, 10}), E, G).ok);
    EXPECT_FALSE(enCriticalMoment(request(*ipe, -3.0, {10, 10, 10}), E, G).ok);
    EXPECT_FALSE(enCriticalMoment(request(*ipe, nan, {10, 10, 10}), E, G).ok);
    EXPECT_FALSE(enCriticalMoment(request(*ipe, inf, {10, 10, 10}), E, G).ok);
    EXPECT_FALSE(enCriticalMoment(request(*ipe, 6.0, {10, nan, 10}), E, G).ok);
    EXPECT_FALSE(enCriticalMoment(request(*ipe, 6.0, {10, 10, inf}), E, G).ok);
    EXPECT_FALSE(enCriticalMoment(request(*ipe, 6.0, {10, 10, 10}, MomentDiagram::Polygonal, ApplicationPoint::Center, -1.0), E, G).ok);
    EXPECT_FALSE(enCriticalMoment(request(*ipe, 6.0, {10, 10, 10}, MomentDiagram::Polygonal, ApplicationPoint::Center, nan), E, G).ok);
    EXPECT_FALSE(enCriticalMoment(request(*ipe, 6.0, {10, 10, 10}), 0.0, G).ok);
    EXPECT_FALSE(enCriticalMoment(request(*ipe, 6.0, {10, 10, 10}), E, nan).ok);
    MemberRequest none = request(*ipe, 6.0, {10, 10, 10});
    none.section = nullptr;
    EXPECT_FALSE(enCriticalMoment(none, E, G).ok);

    // Missing section properties: no Iz, no St. Venant stiffness, NaN warping constant.
    for (int k = 0; k < 3; ++k) {
        auto s = SDBCatalogue::get("IPE 300");
        SDBProperties p = s->getProperties();
        (k == 0 ? p.Iz : k == 1 ? p.It : p.Iw) = k == 2 ? nan : 0.0;
        s->setProperties(p);
        EXPECT_FALSE(enCriticalMoment(request(*s, 6.0, {10, 10, 10}), E, G).ok) << k;
    }
    // A load on a flange of a section without heights.
    auto flat = SDBCatalogue::get("IPE 300");
    SDBProperties p = flat->getProperties();
    p.zMin = p.zMax = 0.0;
    flat->setProperties(p);
    EXPECT_FALSE(enCriticalMoment(request(*flat, 6.0, {0, 10, 0}, MomentDiagram::Parabolic, ApplicationPoint::Top), E, G).ok);
    EXPECT_TRUE(enCriticalMoment(request(*flat, 6.0, {0, 10, 0}, MomentDiagram::Parabolic, ApplicationPoint::Center), E, G).ok);
}

namespace {

// The critical moments found are kept per thread and matched on every input: a member met again, or the
// same diagram scaled (Mcr depends on the ratios of the moments only), gives the very same result, and a
// different member in between changes nothing.
TEST(EnCriticalMomentCache, RepeatedAndScaledDiagramsGiveTheSameResult)
{
    auto ipe = SDBCatalogue::get("IPE 300");
    auto heb = SDBCatalogue::get("HEB 300");
    const EnCriticalMoment first = mcrOf(request(*ipe, 6.0, {100, 20, -40}));
    ASSERT_TRUE(first.ok);
    const EnCriticalMoment other = mcrOf(request(*heb, 6.0, {100, 20, -40}));
    EXPECT_NE(other.Mcr, first.Mcr);
    for (double scale : {1.0, 2.5, 0.01}) {
        const EnCriticalMoment again = mcrOf(request(*ipe, 6.0, {100 * scale, 20 * scale, -40 * scale}));
        EXPECT_DOUBLE_EQ(again.Mcr, first.Mcr) << scale;
        EXPECT_DOUBLE_EQ(again.C1, first.C1) << scale;
    }
    // A different length is a different member.
    EXPECT_NE(mcrOf(request(*ipe, 6.5, {100, 20, -40})).Mcr, first.Mcr);
}

} // namespace
