// The EN calculators of the design layer against the library and against EN 1993-1-1 tables:
// - InteractionFactors with the library's rules switched on reproduces the library's kij, (6.61) and
//   (6.62) on every catalogue I section and many load cases, so that an EN value differs from the
//   library's only by the rule that departs;
// - Cm of Table B.3 and C1 at their tabulated points;
// - chiLT of 6.3.2.2 and 6.3.2.3 reproduces the library's stored chiLT and chiLT,mod.

#include <design/CriticalMoment.h>
#include <design/EquivalentMomentFactor.h>
#include <design/InteractionFactors.h>
#include <design/MemberCheck.h>

#include <KaMaterial.h>
#include <SectionCatalogue.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using namespace design;
using namespace SteelDesign;
using U = BucklingResults::UtilizationType;
using K = BucklingResults::InteractionFactorkxx;

TEST(AnnexBInteraction, LibraryRulesReproduceTheLibrary)
{
    int compared = 0;
    for (const char* family : {"IPE", "HEA", "HEB"}) {
        for (const std::string& name : SDBCatalogue::names(family)) {
            auto section = SDBCatalogue::find(name);
            for (const char* grade : {"S235", "S355"}) {
                KaConstrSteel steel = *KaConstrSteel::fromName(grade);
                const double NplRd = section->getA() * steel.getFyk(0.01);
                const double MplRd = section->getWply() * steel.getFyk(0.01);
                for (const auto& [n, m, mz, diagram] :
                     {std::tuple{0.2, 0.5, 0.0, MomentDiagram::Polygonal}, std::tuple{0.4, -0.3, 0.05, MomentDiagram::Parabolic},
                      std::tuple{0.1, 0.6, -0.1, MomentDiagram::Polygonal}}) {
                    for (bool deformable : {false, true}) {
                        const Forces f(-n * NplRd, m * MplRd, mz * MplRd, 0, 0, 0);
                        MemberRequest request;
                        request.section = section.get();
                        request.steel = &steel;
                        request.forces = f;
                        request.moments = makeMoments({f.getMy(), 0.5 * f.getMy(), 0.0}, diagram,
                                                      {f.getMz(), f.getMz(), f.getMz()}, MomentDiagram::Polygonal,
                                                      std::nullopt, ApplicationPoint::Center, 0.0);
                        request.lengths = uniformLengths(3.0);
                        request.method = LateralTorsionalMethod::Rolled;
                        request.torsionallyDeformable = deformable;
                        const MemberOutcome o = evaluateMember(request);
                        const BucklingResults& r = o.results;
                        if (o.initializer.getClass() > 3 || !r.getChiLTmod().hasValue()) continue;
                        const double W = o.initializer.findW(Axis::y) * o.initializer.getFy();
                        InteractionInput in;
                        in.ny = r.getUtilization(U::CompressionAxisY).value();
                        in.nz = r.getUtilization(U::CompressionAxisZ).value();
                        in.lambdaY = r.getLambda(Axis::y);
                        in.lambdaZ = r.getLambda(Axis::z);
                        in.Cmy = r.getCm(Axis::y);
                        in.Cmz = r.getCm(Axis::z);
                        in.CmLT = in.Cmy;
                        in.My = f.getMy();
                        in.Mz = f.getMz();
                        in.MyRd61 = r.getChiLTmod().value() * W;
                        in.MyRd62 = r.getBucklingResistance(U::Bending).value();
                        in.MzRd = o.initializer.findW(Axis::z) * o.initializer.getFy();
                        in.plastic = o.initializer.getClass() < 3;
                        in.torsionallyDeformable = deformable;
                        in.signedMoments = true;
                        in.kzzWithCmy = true;
                        const InteractionResult x = interaction(in);
                        const std::string what = name + " " + grade;
                        EXPECT_NEAR(x.kyy, r.getInteractionFactor(K::kyy), 1e-12) << what;
                        EXPECT_NEAR(x.kzz, r.getInteractionFactor(K::kzz), 1e-12) << what;
                        EXPECT_NEAR(x.kyz, r.getInteractionFactor(K::kyz), 1e-12) << what;
                        EXPECT_NEAR(x.kzy, r.getInteractionFactor(K::kzy), 1e-12) << what;
                        EXPECT_NEAR(x.eq661, r.getUtilization(U::CompressionBendingAxisY).value(), 1e-12) << what;
                        EXPECT_NEAR(x.eq662, r.getUtilization(U::CompressionBendingAxisZ).value(), 1e-12) << what;
                        ++compared;
                    }
                }
            }
        }
    }
    EXPECT_GT(compared, 400);
}

// EN 1993-1-1 Table B.3 at its defining points.
TEST(AnnexBInteraction, EquivalentMomentFactorOfTableB3)
{
    const auto P = MomentDiagram::Polygonal, Q = MomentDiagram::Parabolic;
    struct Case {
        double M1, Mm, M2;
        MomentDiagram d;
        double Cm;
    };
    const Case cases[] = {
        {100, 100, 100, P, 1.0},    // uniform: psi = 1, 0.6 + 0.4
        {100, 50, 0, P, 0.6},       // psi = 0
        {100, 0, -100, P, 0.4},     // psi = -1: 0.6 - 0.4 = 0.2, at least 0.4
        {100, 25, -50, P, 0.4},     // psi = -0.5: 0.4
        {0, 100, 0, Q, 0.95},       // simply supported, uniform load: alpha_h = 0
        {0, 100, 0, P, 0.90},       // concentrated load
        {-100, 50, -100, Q, 0.5},   // alpha_s = -0.5, psi = 1: 0.1 + 0.8 * 0.5
        {-100, 0, -100, Q, 0.4},    // alpha_s = 0: 0.2, at least 0.4
        {-50, 100, -50, Q, 0.95 - 0.05 * 0.5},      // alpha_h = -0.5, psi = 1: 0.925
        {-50, 100, 50, Q, 0.95 + 0.05 * -0.5 * (1 - 2)},  // alpha_h = -0.5, psi = -1: 0.975
    };
    for (const Case& c : cases)
        EXPECT_NEAR(equivalentMomentFactor(c.M1, c.Mm, c.M2, c.d), c.Cm, 1e-12)
            << c.M1 << " " << c.Mm << " " << c.M2;
    EXPECT_TRUE(isStraightLine(100, 50, 0));
    EXPECT_FALSE(isStraightLine(100, 60, 0));
}

// C1 of a straight line (ECCS / SCI): 1.00 at psi = 1, 1.88 at psi = 0, 2.70 (the cap) at psi = -1.
TEST(AnnexBInteraction, C1OfStraightLines)
{
    EXPECT_NEAR(c1StraightLine(1.0), 1.00, 1e-12);
    EXPECT_NEAR(c1StraightLine(0.0), 1.88, 1e-12);
    EXPECT_NEAR(c1StraightLine(0.5), 1.88 - 0.70 + 0.13, 1e-12);
    EXPECT_NEAR(c1StraightLine(-1.0), 2.70, 1e-12);
}

// chiLT of the design layer with the library's own lambdaLT reproduces the library's stored values.
TEST(AnnexBInteraction, LateralTorsionalReductionReproducesTheLibrary)
{
    for (const char* name : {"IPE 200", "IPE 400", "HEA 300", "HEB 500"}) {
        auto section = SDBCatalogue::find(name);
        KaConstrSteel steel = *KaConstrSteel::fromName("S355");
        for (double L : {1.0, 3.0, 6.0, 10.0}) {
            for (auto method : {LateralTorsionalMethod::Rolled, LateralTorsionalMethod::General}) {
                const Forces f(0, 100, 0, 0, 0, 0);
                MemberRequest request;
                request.section = section.get();
                request.steel = &steel;
                request.forces = f;
                request.moments = makeMoments({100, 50, 0}, MomentDiagram::Polygonal, {0, 0, 0}, MomentDiagram::Polygonal,
                                              std::nullopt, ApplicationPoint::Center, 0.0);
                request.lengths = uniformLengths(L);
                request.method = method;
                const MemberOutcome o = evaluateMember(request);
                const BucklingResults& r = o.results;
                const double alpha = r.getAlpha();
                const bool rolled = method == LateralTorsionalMethod::Rolled;
                const LateralTorsionalReduction red = lateralTorsionalReduction(
                    r.getLambdaLT(), alpha, rolled, r.getLambdaLT0(), r.getBeta(), r.getCorrectionFactor().valueOr(1.0));
                const double W = o.initializer.findW(Axis::y) * o.initializer.getFy();
                if (rolled) {
                    EXPECT_NEAR(red.chiLT, r.getChiLT().value(), 1e-12) << name << " " << L;
                    EXPECT_NEAR(red.chiLTmod, r.getChiLTmod().value(), 1e-12) << name << " " << L;
                } else {
                    EXPECT_NEAR(red.chiLT * W, r.getBucklingResistance(U::Bending).value(), 1e-9) << name << " " << L;
                }
            }
        }
    }
}
