// The member checks: lateral-torsional buckling with the interaction of compression and bending, and
// shear buckling of a slender welded web. Each iteration builds the initializer as a host does.

#include <KaMaterial.h>
#include <SectionCatalogue.h>
#include <SteelDesign/BucklingResistance.h>
#include <SteelDesign/SectionInitializer.h>

#include <benchmark/benchmark.h>

using namespace SteelDesign;

namespace {

// IPE 300, S355, N = -200 kN, My = 80 kNm, L = 4 m, moments 0 / 40 / 80 kNm (straight line), method for
// rolled sections (6.3.2.3), so that (6.61) and (6.62) are finite.
void memberCheckLtbInteraction(benchmark::State& state)
{
    auto section = SDBCatalogue::get("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const Forces forces(-200, 80, 0, 0, 0, 0);
    const MomentDistribution moments({0.0, 40.0, 80.0}, MomentDiagram::Polygonal, {0.0, 0.0, 0.0},
                                     MomentDiagram::Polygonal, 80.0, ApplicationPoint::Center, 0.0);
    for (auto _ : state) {
        SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, true);
        BucklingResults results;
        const BucklingResistance verifier(results, section.get(), init, forces, moments, 1.0, 4.0, 0.0, 0.0, false,
                                          false);
        verifier.verifyAllResistance();
        benchmark::DoNotOptimize(results.getUtilization(BucklingResults::UtilizationType::CompressionBending));
    }
}
BENCHMARK(memberCheckLtbInteraction);

// Welded I 1200 x 300, web 8 mm, flanges 20 mm, S355, Vz = 600 kN: hw / tw = 145 > 72 eps / eta, so the
// check runs (EN 1993-1-5 5.2 to 5.4).
void shearBuckling(benchmark::State& state)
{
    auto section = SDBCatalogue::weldedI(1.2, 0.3, 0.008, 0.02);
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const Forces forces(0, 500, 0, 0, 0, 600);
    const MomentDistribution moments({500.0, 500.0, 500.0}, MomentDiagram::Polygonal, {0.0, 0.0, 0.0},
                                     MomentDiagram::Polygonal, 500.0, ApplicationPoint::Center, 0.0);
    for (auto _ : state) {
        SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, false);
        BucklingResults results;
        const BucklingResistance verifier(results, section.get(), init, forces, moments, 1.0, 6.0, 0.0, 0.0, false,
                                          false);
        verifier.verifyShearBuckling();
        benchmark::DoNotOptimize(results.getUtilizationShearBuckling());
    }
    // The check must have run, not stopped at "not required".
    auto init = SectionInitializer(section.get(), &steel, forces, VerificationControl::Classify, false);
    BucklingResults results;
    BucklingResistance(results, section.get(), init, forces, moments, 1.0, 6.0, 0.0, 0.0, false, false)
        .verifyShearBuckling();
    if (!results.getUtilizationShearBuckling().hasValue()) state.SkipWithError("shear buckling check did not run");
}
BENCHMARK(shearBuckling);

} // namespace
