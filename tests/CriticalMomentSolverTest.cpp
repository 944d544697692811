// The finite-element critical moment (design/CriticalMomentSolver.h) against closed forms and
// published values; every reference names its source.

#include "design/CriticalMomentSolver.h"
#include "design/SectionNotation.h"

#include <SDBSection.h>
#include <SectionCatalogue.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <ostream>
#include <string>
#include <vector>

using namespace design;

namespace {

constexpr double E = 210e6, G = 81e6;
constexpr double pi = std::numbers::pi;

McrSection ipe300()
{
    static const McrSection s = mcrSection(*SDBCatalogue::find("IPE 300"));
    return s;
}

// IPE 300 without warping stiffness: the torsion parameter kappa_wt = (pi / L) sqrt(E Iw / (G It)) is 0,
// the column of the published tables computed for St. Venant torsion alone.
McrSection ipe300NoWarping()
{
    McrSection s = ipe300();
    s.Iw = 0.0;
    return s;
}

CriticalMomentInput member(const McrSection& s, double L, int elements = 30)
{
    CriticalMomentInput in;
    in.E = E;
    in.G = G;
    in.section = s;
    in.length = L;
    in.elements = elements;
    return in;
}

double mcrOf(const CriticalMomentInput& in)
{
    const CriticalMomentResult r = criticalMoment(in);
    EXPECT_TRUE(r.ok) << r.reason;
    return r.mcr;
}

// Mcr of uniform moment on forks with effective length factors k (lateral bending) and kw (warping):
// EN 1993-1-1:1992 Annex F (F.2) with C1 = 1, zg = zj = 0; exact for k = kw.
double mcrUniformClosedForm(const McrSection& s, double L, double k = 1.0, double kw = 1.0)
{
    const double kL = k * L;
    return pi * pi * E * s.Iz / (kL * kL) *
           std::sqrt((k / kw) * (k / kw) * s.Iw / s.Iz + kL * kL * G * s.It / (pi * pi * E * s.Iz));
}

// The three-factor formula of EN 1993-1-1:1992 Annex F (F.2), k = kw = 1, with zg and zj positive
// upwards (the Annex's sign: towards the compression flange), so a load on the top flange has zg > 0.
double mcrThreeFactor(const McrSection& s, double L, double C1, double C2, double zgUp, double C3 = 0.0,
                      double zjUp = 0.0)
{
    const double Pz = pi * pi * E * s.Iz / (L * L);
    const double a = C2 * zgUp - C3 * zjUp;
    return C1 * Pz * (std::sqrt(s.Iw / s.Iz + L * L * G * s.It / (pi * pi * E * s.Iz) + a * a) - a);
}

double relDiff(double a, double b) { return std::fabs(a - b) / std::fabs(b); }

} // namespace

// ---------------------------------------------------------------------------------------------------
// Uniform moment on forks: the closed form (Timoshenko and Gere, Theory of Elastic Stability, 2nd ed.,
// 6.2; EN 1993-1-1:1992 Annex F with C1 = 1) within 0.1 %, with both eigenvalue solvers.

class CriticalMomentSolverUniformMoment : public ::testing::TestWithParam<double> {};

TEST_P(CriticalMomentSolverUniformMoment, ReproducesTimoshenkoClosedForm)
{
    const double L = GetParam();
    CriticalMomentInput in = member(ipe300(), L);
    in.moments = McrMomentDiagram::uniform(L, 100.0);
    const double reference = mcrUniformClosedForm(ipe300(), L);
    for (McrEigenSolver solver : {McrEigenSolver::Lanczos, McrEigenSolver::Dense}) {
        in.solver = solver;
        const CriticalMomentResult r = criticalMoment(in);
        ASSERT_TRUE(r.ok) << r.reason;
        EXPECT_LT(relDiff(r.mcr, reference), 1e-3) << "L = " << L << ", computed " << r.mcr << ", closed form " << reference;
        EXPECT_NEAR(r.c1, 1.0, 1e-9);
        EXPECT_NEAR(r.lambda * 100.0, r.mcr, 1e-9 * r.mcr);
    }
}

INSTANTIATE_TEST_SUITE_P(Ipe300, CriticalMomentSolverUniformMoment, ::testing::Values(2.0, 3.0, 6.0, 10.0, 15.0));

// ---------------------------------------------------------------------------------------------------
// C1 for kappa_wt = 0 (St. Venant torsion only): NCCI SN003a-EN-EU (Access Steel), Table 3.1 (end
// moments, psi) and Table 3.2 (uniform load 1.127, central point load 1.348, load at the shear centre).
// The last two are also Timoshenko and Gere's exact values for a narrow rectangle, (qL)cr L^2 =
// 28.3 sqrt(EIz GIt) and Pcr L^2 = 16.94 sqrt(EIz GIt): C1 = 28.3 / (8 pi) and 16.94 / (4 pi).

struct C1Case {
    std::string name;
    double psi;   // end moment ratio (used when q = P = 0)
    double q, P;  // transverse loads at the shear centre
    double c1;    // published
    friend void PrintTo(const C1Case& c, std::ostream* os) { *os << c.name; }
};

class CriticalMomentSolverSn003 : public ::testing::TestWithParam<C1Case> {};

TEST_P(CriticalMomentSolverSn003, ReproducesTableC1AtKappaZero)
{
    const C1Case& c = GetParam();
    const double L = 6.0;
    CriticalMomentInput in = member(ipe300NoWarping(), L);
    if (c.q != 0.0 || c.P != 0.0) {
        in.q = c.q;
        if (c.P != 0.0) in.pointLoads = {{L / 2.0, c.P, {}}};
    } else {
        in.moments = McrMomentDiagram::linear(L, 100.0, 100.0 * c.psi);
    }
    const CriticalMomentResult r = criticalMoment(in);
    ASSERT_TRUE(r.ok) << r.reason;
    EXPECT_LT(relDiff(r.c1, c.c1), 0.01) << "computed C1 = " << r.c1 << ", NCCI SN003 " << c.c1;
}

INSTANTIATE_TEST_SUITE_P(
    Tables31And32, CriticalMomentSolverSn003,
    ::testing::Values(C1Case{"psi_p075", 0.75, 0, 0, 1.14}, C1Case{"psi_p050", 0.5, 0, 0, 1.31},
                      C1Case{"psi_p025", 0.25, 0, 0, 1.52}, C1Case{"psi_0", 0.0, 0, 0, 1.77},
                      C1Case{"psi_m025", -0.25, 0, 0, 2.05}, C1Case{"psi_m050", -0.5, 0, 0, 2.33},
                      C1Case{"psi_m075", -0.75, 0, 0, 2.57}, C1Case{"psi_m100", -1.0, 0, 0, 2.55},
                      C1Case{"uniformLoad", 0, 10.0, 0, 1.127}, C1Case{"centralPointLoad", 0, 0, 50.0, 1.348}),
    [](const auto& info) { return info.param.name; });

// ---------------------------------------------------------------------------------------------------
// IPE 300, L = 6 m (kappa_wt = 0.67): C1 and C2 of EN 1993-1-1:1992 Annex F, Table F.1.2 (k = 1):
// uniform load C1 = 1.132, C2 = 0.459; central point load C1 = 1.365, C2 = 0.553, in the three-factor
// formula (F.2). Loads at the shear centre, on the top flange (destabilising) and on the bottom flange.

struct LoadHeightCase {
    std::string name;
    bool pointLoad;
    McrHeight at;
    friend void PrintTo(const LoadHeightCase& c, std::ostream* os) { *os << c.name; }
};

class CriticalMomentSolverAnnexF : public ::testing::TestWithParam<LoadHeightCase> {};

TEST_P(CriticalMomentSolverAnnexF, ReproducesThreeFactorFormulaWithC1C2)
{
    const LoadHeightCase& c = GetParam();
    const double L = 6.0;
    const McrSection s = ipe300();
    CriticalMomentInput in = member(s, L);
    if (c.pointLoad) {
        in.pointLoads = {{L / 2.0, 50.0, {c.at, 0.0}}};
    } else {
        in.q = 10.0;
        in.qLevel = {c.at, 0.0};
    }
    const double zgUp = c.at == McrHeight::TopFlange ? -s.zTop : c.at == McrHeight::BottomFlange ? -s.zBottom : 0.0;
    const double reference =
        c.pointLoad ? mcrThreeFactor(s, L, 1.365, 0.553, zgUp) : mcrThreeFactor(s, L, 1.132, 0.459, zgUp);
    const double computed = mcrOf(in);
    // The three-factor formula is itself an approximation: for the point load on the top flange it lies
    // 1.2 % above the eigenvalue solution here (0.9 % at L = 3 m, 1.5 % at 10 m); 1 % elsewhere.
    const double tolerance = c.pointLoad && c.at == McrHeight::TopFlange ? 0.015 : 0.01;
    EXPECT_LT(relDiff(computed, reference), tolerance) << "computed " << computed << ", Annex F " << reference;
}

INSTANTIATE_TEST_SUITE_P(Ipe300L6, CriticalMomentSolverAnnexF,
                         ::testing::Values(LoadHeightCase{"uniformShearCentre", false, McrHeight::ShearCentre},
                                           LoadHeightCase{"uniformTopFlange", false, McrHeight::TopFlange},
                                           LoadHeightCase{"uniformBottomFlange", false, McrHeight::BottomFlange},
                                           LoadHeightCase{"pointShearCentre", true, McrHeight::ShearCentre},
                                           LoadHeightCase{"pointTopFlange", true, McrHeight::TopFlange},
                                           LoadHeightCase{"pointBottomFlange", true, McrHeight::BottomFlange}),
                         [](const auto& info) { return info.param.name; });

// ---------------------------------------------------------------------------------------------------
// Cantilever built in at x = 0, free at x = L, without warping stiffness: Timoshenko and Gere, Theory of
// Elastic Stability, 2nd ed., 6.4 (lateral buckling of cantilever beams of narrow rectangular section):
// end point load at the centroid Pcr = 4.013 sqrt(EIz GIt) / L^2, so Mcr = Pcr L = 4.013 sqrt(EIz GIt) / L;
// uniform load (qL)cr = 12.85 sqrt(EIz GIt) / L^2, so Mcr = qcr L^2 / 2 = 6.425 sqrt(EIz GIt) / L.

TEST(CriticalMomentSolverCantilever, ReproducesTimoshenkoGereNarrowRectangle)
{
    const McrSection s = ipe300NoWarping();
    const double L = 4.0;
    const double root = std::sqrt(E * s.Iz * G * s.It) / L;
    // Built in: v = v' = phi = 0; phi' is left free since a section without warping stiffness does not
    // resist it (holding it would add a boundary layer that only vanishes with the mesh).
    const McrEnd builtIn{true, true, true, false};
    {
        CriticalMomentInput in = member(s, L);
        in.start = builtIn;
        in.end = McrEnd::free();
        in.pointLoads = {{L, 10.0, {}}};
        in.moments = cantileverMoments(L, 0.0, in.pointLoads);
        EXPECT_LT(relDiff(mcrOf(in), 4.013 * root), 0.01);
    }
    {
        CriticalMomentInput in = member(s, L);
        in.start = builtIn;
        in.end = McrEnd::free();
        in.q = 5.0;
        in.moments = cantileverMoments(L, 5.0, {});
        EXPECT_LT(relDiff(mcrOf(in), 12.85 / 2.0 * root), 0.01);
    }
}

// A top-flange load on a cantilever is destabilising and a bottom-flange load stabilising, and the
// built-in I section (warping held) is stiffer than one free to warp at the root.
TEST(CriticalMomentSolverCantilever, LoadHeightAndWarpingOrderTheResults)
{
    const McrSection s = ipe300();
    const double L = 3.0;
    const auto tip = [&](McrHeight at, McrEnd root) {
        CriticalMomentInput in = member(s, L);
        in.start = root;
        in.end = McrEnd::free();
        in.pointLoads = {{L, 10.0, {at, 0.0}}};
        in.moments = cantileverMoments(L, 0.0, in.pointLoads);
        return mcrOf(in);
    };
    const double top = tip(McrHeight::TopFlange, McrEnd::fixed());
    const double centre = tip(McrHeight::ShearCentre, McrEnd::fixed());
    const double bottom = tip(McrHeight::BottomFlange, McrEnd::fixed());
    EXPECT_LT(top, centre);
    EXPECT_LT(centre, bottom);
    EXPECT_LT(tip(McrHeight::ShearCentre, McrEnd{true, true, true, false}), centre);
}

// ---------------------------------------------------------------------------------------------------
// End conditions, uniform moment: lateral bending and warping fixed at both ends (k = kw = 0.5) is the
// fork solution over L / 2, exact in the closed form (EN 1993-1-1:1992 Annex F (F.2) with k = kw = 0.5).
// Warping fixed alone (k = 1, kw = 0.5): Annex F's formula, (k / kw)^2 Iw / Iz in the root, assumes the
// twist has the lateral displacement's shape and is a lower bound, 12 to 13 % below the eigenvalue
// solution for IPE 300 at 4 and 8 m. The one-term Rayleigh-Ritz solution with v = sin(pi x / L),
// phi = (1 - cos(2 pi x / L)) / 2 (Timoshenko and Gere's energy method, 6.3) is an upper bound:
// Mcr = (3 pi / 8) sqrt(Pz (G It + 4 E Iw pi^2 / L^2)).

TEST(CriticalMomentSolverEndConditions, ReproducesAnnexFEffectiveLengthFactors)
{
    const McrSection s = ipe300();
    for (double L : {4.0, 8.0}) {
        CriticalMomentInput in = member(s, L);
        in.moments = McrMomentDiagram::uniform(L, 100.0);
        in.start = in.end = McrEnd::fixed();
        EXPECT_LT(relDiff(mcrOf(in), mcrUniformClosedForm(s, L, 0.5, 0.5)), 1e-3) << "L = " << L;

        in.start = in.end = McrEnd::forkWarpingFixed();
        const double kw = mcrOf(in);
        const double lower = mcrUniformClosedForm(s, L, 1.0, 0.5);
        const double Pz = pi * pi * E * s.Iz / (L * L);
        const double upper = 3.0 * pi / 8.0 * std::sqrt(Pz * (G * s.It + 4.0 * E * s.Iw * pi * pi / (L * L)));
        EXPECT_GT(kw, lower) << "L = " << L;
        EXPECT_LT(kw, upper) << "L = " << L;
        EXPECT_LT(relDiff(kw, lower), 0.14) << "L = " << L << ", computed " << kw << ", Annex F " << lower;

        // Lateral bending fixed alone lies between the fork and the fully fixed member too.
        in.start = in.end = McrEnd::forkLateralBendingFixed();
        const double kz = mcrOf(in);
        EXPECT_GT(kz, mcrUniformClosedForm(s, L));
        EXPECT_LT(kz, mcrUniformClosedForm(s, L, 0.5, 0.5));
    }
}

// ---------------------------------------------------------------------------------------------------
// Monosymmetric welded I 900 x 300 x 10 x 25 / 250 x 20 (top flange larger).

TEST(CriticalMomentSolverMonosymmetric, BetaYAgreesWithKitipornchaiTrahairApproximation)
{
    auto section = makeSection("WI 900x300x10x25/250x20");
    const McrSection s = mcrSection(*section);
    // Kitipornchai and Trahair (1980), as quoted by Trahair, Flexural-Torsional Buckling of Structures
    // (1993): beta_y ~ 0.9 hs (2 rho - 1) (1 - (Iz / Iy)^2), rho = Iz,top / Iz.
    const double hs = 0.9 - 0.025 / 2 - 0.020 / 2;
    const double I1 = 0.025 * std::pow(0.300, 3) / 12, I2 = 0.020 * std::pow(0.250, 3) / 12;
    const double rho = I1 / (I1 + I2);
    const double approx = 0.9 * hs * (2 * rho - 1) * (1 - std::pow(section->getIz() / section->getIy(), 2));
    EXPECT_GT(s.betaY, 0.0);
    EXPECT_LT(relDiff(s.betaY, approx), 0.05) << "beta_y = " << s.betaY << ", approximation " << approx;
    // The shear centre lies between the centroid and the larger (top) flange.
    EXPECT_LT(s.zs, 0.0);
    EXPECT_NEAR(s.zBottom - s.zTop, 0.9, 1e-12);
}

// Uniform moment on forks: the exact solution of the monosymmetric beam (Trahair 1993; EN 1993-1-1:1992
// Annex F with C1 = C3 = 1 and zj = beta_y / 2): Mcr = Pz (zj + sqrt(zj^2 + Iw/Iz + GIt/Pz)), with the
// larger flange in compression (sagging) and, with -beta_y, in tension (hogging).
TEST(CriticalMomentSolverMonosymmetric, ReproducesAnnexFWithC3UnderUniformMoment)
{
    auto section = makeSection("WI 900x300x10x25/250x20");
    const McrSection s = mcrSection(*section);
    for (double L : {6.0, 12.0}) {
        const double Pz = pi * pi * E * s.Iz / (L * L);
        for (double sign : {1.0, -1.0}) {
            const double zj = sign * s.betaY / 2.0;
            const double reference = Pz * (zj + std::sqrt(zj * zj + s.Iw / s.Iz + G * s.It / Pz));
            CriticalMomentInput in = member(s, L);
            in.moments = McrMomentDiagram::uniform(L, sign * 500.0);
            EXPECT_LT(relDiff(mcrOf(in), reference), 1e-3) << "L = " << L << ", sign " << sign;
        }
        // With the Annex F approximation zj = 0.8 (2 beta_f - 1) hs / 2 (F.1.2(7)) the result differs by
        // the approximation of zj only (zj 9 % below beta_y / 2 here): Mcr 4.4 % (6 m) and 3.5 % (12 m) lower.
        const double hs = 0.9 - 0.025 / 2 - 0.020 / 2;
        const double I1 = 0.025 * std::pow(0.300, 3) / 12, I2 = 0.020 * std::pow(0.250, 3) / 12;
        const double zjAnnex = 0.8 * (2.0 * I1 / (I1 + I2) - 1.0) * hs / 2.0;
        CriticalMomentInput in = member(s, L);
        in.moments = McrMomentDiagram::uniform(L, 500.0);
        EXPECT_LT(relDiff(mcrOf(in), mcrThreeFactor(s, L, 1.0, 0.0, 0.0, 1.0, zjAnnex)), 0.05);
        EXPECT_GT(mcrOf(in), mcrThreeFactor(s, L, 1.0, 0.0, 0.0, 1.0, zjAnnex));
    }
}

// ---------------------------------------------------------------------------------------------------
// Convergence: 20 and 40 elements agree within 0.1 % for every kind of case above.

TEST(CriticalMomentSolverConvergence, TwentyAndFortyElementsAgreeWithinPointOnePercent)
{
    const McrSection ipe = ipe300();
    const McrSection mono = mcrSection(*makeSection("WI 900x300x10x25/250x20"));
    std::vector<std::pair<std::string, CriticalMomentInput>> cases;
    const auto add = [&](const std::string& name, CriticalMomentInput in) { cases.emplace_back(name, in); };
    {
        CriticalMomentInput in = member(ipe, 6.0);
        in.moments = McrMomentDiagram::uniform(6.0, 1.0);
        add("uniform moment", in);
        in.moments = McrMomentDiagram::linear(6.0, 1.0, -1.0);
        add("psi = -1", in);
        in.moments = McrMomentDiagram::linear(6.0, 1.0, 0.0);
        add("psi = 0", in);
        in.moments = {};
        in.q = 10.0;
        in.qLevel = {McrHeight::TopFlange, 0.0};
        add("uniform load, top flange", in);
        in.q = 0.0;
        in.pointLoads = {{3.0, 10.0, {McrHeight::TopFlange, 0.0}}};
        add("point load, top flange", in);
        in.pointLoads = {};
        in.moments = McrMomentDiagram::uniform(6.0, 1.0);
        in.start = in.end = McrEnd::forkWarpingFixed();
        add("warping fixed", in);
    }
    {
        CriticalMomentInput in = member(ipe, 3.0);
        in.start = McrEnd::fixed();
        in.end = McrEnd::free();
        in.pointLoads = {{3.0, 10.0, {McrHeight::TopFlange, 0.0}}};
        in.moments = cantileverMoments(3.0, 0.0, in.pointLoads);
        add("cantilever, tip load on top flange", in);
    }
    {
        CriticalMomentInput in = member(mono, 10.0);
        in.q = 20.0;
        add("monosymmetric, uniform load", in);
    }
    for (auto& [name, in] : cases) {
        in.elements = 20;
        const double coarse = mcrOf(in);
        in.elements = 40;
        const double fine = mcrOf(in);
        EXPECT_LT(relDiff(coarse, fine), 1e-3) << name << ": 20 elements " << coarse << ", 40 elements " << fine;
    }
}

// ---------------------------------------------------------------------------------------------------
// Invariants

TEST(CriticalMomentSolverInvariants, MirroredAndScaledDiagramsGiveTheSameMcr)
{
    const double L = 7.0;
    CriticalMomentInput in = member(ipe300(), L);
    for (double psi : {0.5, 0.0, -0.6}) {
        in.moments = McrMomentDiagram::linear(L, 80.0, 80.0 * psi);
        const double forward = mcrOf(in);
        in.moments = McrMomentDiagram::linear(L, 80.0 * psi, 80.0);
        EXPECT_NEAR(mcrOf(in), forward, 1e-6 * forward) << "psi = " << psi;
        in.moments = McrMomentDiagram::linear(L, -3.7 * 80.0, -3.7 * 80.0 * psi);
        EXPECT_NEAR(mcrOf(in), forward, 1e-6 * forward) << "psi = " << psi << " scaled by -3.7";
    }
    // A point load at a and at L - a, on the top flange (the mesh differs, the answer does not).
    in.moments = {};
    in.pointLoads = {{2.0, 40.0, {McrHeight::TopFlange, 0.0}}};
    const double left = mcrOf(in);
    in.pointLoads = {{L - 2.0, 40.0, {McrHeight::TopFlange, 0.0}}};
    EXPECT_NEAR(mcrOf(in), left, 1e-4 * left);
    // Scaling the loads scales lambda, not Mcr.
    in.pointLoads = {{L - 2.0, 400.0, {McrHeight::TopFlange, 0.0}}};
    const CriticalMomentResult r = criticalMoment(in);
    EXPECT_NEAR(r.mcr, left, 1e-4 * left);
}

TEST(CriticalMomentSolverInvariants, MoreRestraintNeverLowersMcr)
{
    const double L = 8.0;
    CriticalMomentInput in = member(ipe300(), L);
    in.q = 10.0;
    in.qLevel = {McrHeight::TopFlange, 0.0};
    const double free = mcrOf(in);

    CriticalMomentInput bottom = in;
    bottom.lateralRestraints = {{L / 2.0, {McrHeight::BottomFlange, 0.0}}};
    CriticalMomentInput centre = in;
    centre.lateralRestraints = {{L / 2.0, {}}};
    CriticalMomentInput top = in;
    top.lateralRestraints = {{L / 2.0, {McrHeight::TopFlange, 0.0}}};
    CriticalMomentInput full = centre;
    full.torsionalRestraints = {L / 2.0};
    CriticalMomentInput spring = in;
    spring.cTheta = 20.0;
    CriticalMomentInput warping = in;
    warping.start = warping.end = McrEnd::forkWarpingFixed();

    const double mBottom = mcrOf(bottom), mCentre = mcrOf(centre), mTop = mcrOf(top), mFull = mcrOf(full);
    // Under sagging the top flange is compressed: a restraint there is the most effective one.
    EXPECT_GE(mBottom, free);
    EXPECT_GT(mCentre, mBottom);
    EXPECT_GT(mTop, mCentre);
    EXPECT_GE(mFull, mTop * (1 - 1e-9));
    EXPECT_GT(mcrOf(spring), free);
    EXPECT_GT(mcrOf(warping), free);
    // A full lateral and torsional restraint at midspan halves the buckling length: Mcr more than doubles.
    EXPECT_GT(mFull, 2.0 * free);
}

// The two eigenvalue solvers agree, and the buckled shape of a symmetric case is symmetric.
TEST(CriticalMomentSolverInvariants, LanczosAgreesWithDenseAndShapeIsSymmetric)
{
    const double L = 6.0;
    CriticalMomentInput in = member(mcrSection(*makeSection("WI 900x300x10x25/250x20")), L);
    in.q = 30.0;
    in.qLevel = {McrHeight::TopFlange, 0.0};
    in.lateralRestraints = {{L / 3.0, {McrHeight::BottomFlange, 0.0}}, {2.0 * L / 3.0, {McrHeight::BottomFlange, 0.0}}};
    const CriticalMomentResult lanczos = criticalMoment(in);
    in.solver = McrEigenSolver::Dense;
    const CriticalMomentResult dense = criticalMoment(in);
    ASSERT_TRUE(lanczos.ok && dense.ok);
    EXPECT_NEAR(lanczos.mcr, dense.mcr, 1e-8 * dense.mcr);

    const std::size_t n = lanczos.x.size();
    ASSERT_EQ(lanczos.v.size(), n);
    double vmax = 0.0;
    for (std::size_t k = 0; k < n; ++k) {
        vmax = std::max(vmax, std::fabs(lanczos.v[k]));
        EXPECT_NEAR(lanczos.x[k] + lanczos.x[n - 1 - k], L, 1e-9);
        EXPECT_NEAR(lanczos.v[k], lanczos.v[n - 1 - k], 1e-6);
        EXPECT_NEAR(lanczos.phi[k], lanczos.phi[n - 1 - k], 1e-6);
    }
    EXPECT_NEAR(vmax, 1.0, 1e-12);
    EXPECT_NEAR(lanczos.v.front(), 0.0, 1e-12);
    EXPECT_NEAR(lanczos.phi.back(), 0.0, 1e-12);
}

// ---------------------------------------------------------------------------------------------------
// Moment diagrams built from loads

TEST(CriticalMomentSolverDiagram, SimplySupportedAndCantileverDiagramsMatchStatics)
{
    const double L = 6.0;
    const McrMomentDiagram ss = simplySupportedMoments(L, 10.0, -20.0, 4.0, {{2.0, 30.0, {}}});
    // q L^2 / 8 + P a (L - a) / L at its point, end moments linear
    EXPECT_NEAR(ss.at(0.0), 10.0, 1e-12);
    EXPECT_NEAR(ss.at(L), -20.0, 1e-12);
    EXPECT_NEAR(ss.at(2.0), 10.0 - 30.0 * 2.0 / L + 4.0 * 2.0 * 4.0 / 2.0 + 30.0 * 2.0 * 4.0 / L, 1e-12);
    EXPECT_NEAR(ss.at(4.5), 10.0 - 30.0 * 4.5 / L + 4.0 * 4.5 * 1.5 / 2.0 + 30.0 * 2.0 * 1.5 / L, 1e-12);
    const McrMomentDiagram para = McrMomentDiagram::threeValues(L, 0.0, 45.0, 0.0, McrMomentDiagram::Shape::Parabolic);
    EXPECT_NEAR(para.maxAbs(), 45.0, 1e-12);
    EXPECT_NEAR(para.at(1.5), 45.0 * 0.75, 1e-12);
    const McrMomentDiagram cant = cantileverMoments(L, 2.0, {{L, 5.0, {}}});
    EXPECT_NEAR(cant.at(0.0), -(2.0 * L * L / 2.0 + 5.0 * L), 1e-12);
    EXPECT_NEAR(cant.at(2.0), -(2.0 * 16.0 / 2.0 + 5.0 * 4.0), 1e-12);
    EXPECT_NEAR(cant.extreme(), -(2.0 * L * L / 2.0 + 5.0 * L), 1e-12);

    // A diagram derived from the loads equals the same diagram given explicitly.
    CriticalMomentInput in = member(ipe300(), L);
    in.q = 10.0;
    const double derived = mcrOf(in);
    in.moments = McrMomentDiagram::threeValues(L, 0.0, 45.0, 0.0, McrMomentDiagram::Shape::Parabolic);
    EXPECT_NEAR(mcrOf(in), derived, 1e-9 * derived);
}

// ---------------------------------------------------------------------------------------------------
// Bad input: a result with a reason, never an exception.

TEST(CriticalMomentSolverInput, InvalidInputIsReportedNotThrown)
{
    const auto bad = [](const std::string& what, CriticalMomentInput in) {
        CriticalMomentResult r;
        EXPECT_NO_THROW(r = criticalMoment(in)) << what;
        EXPECT_FALSE(r.ok) << what;
        EXPECT_FALSE(r.reason.empty()) << what;
        EXPECT_EQ(r.mcr, 0.0) << what;
    };
    CriticalMomentInput ok = member(ipe300(), 6.0);
    ok.moments = McrMomentDiagram::uniform(6.0, 1.0);
    ASSERT_TRUE(criticalMoment(ok).ok);

    CriticalMomentInput in = ok;
    in.length = 0.0;
    bad("zero length", in);
    in.length = -3.0;
    bad("negative length", in);
    in = ok;
    in.elements = 0;
    bad("no elements", in);
    in.elements = -5;
    bad("negative elements", in);
    in = ok;
    in.section.Iz = 0.0;
    bad("Iz missing", in);
    in = ok;
    in.section.It = 0.0;
    in.section.Iw = 0.0;
    bad("It and Iw missing", in);
    in = ok;
    in.E = std::nan("");
    bad("E not a number", in);
    in = ok;
    in.moments = {};
    bad("no diagram and no load", in);
    in.moments = McrMomentDiagram::uniform(6.0, 0.0);
    bad("zero diagram", in);
    in.moments = McrMomentDiagram::uniform(5.0, 1.0);
    bad("diagram shorter than the member", in);
    in = ok;
    in.pointLoads = {{7.0, 10.0, {}}};
    bad("point load beyond the member", in);
    in = ok;
    in.start = in.end = McrEnd::free();
    bad("no supports (mechanism)", in);
    in = ok;
    in.section.zTop = in.section.zBottom = 0.0;
    in.q = 1.0;
    in.qLevel = {McrHeight::TopFlange, 0.0};
    bad("flange load without the section's heights", in);
}
