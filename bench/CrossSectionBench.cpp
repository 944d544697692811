// The section initializer and the whole cross-section check of a catalogue IPE 300.

#include <KaMaterial.h>
#include <SectionCatalogue.h>
#include <SteelDesign/ResistanceVerifications.h>
#include <SteelDesign/SectionInitializer.h>

#include <benchmark/benchmark.h>

using namespace SteelDesign;

namespace {

void initializerWithClassification(benchmark::State& state)
{
    auto section = SDBCatalogue::get("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const Forces forces(-300, 80, 5, 0, 10, 100);
    for (auto _ : state) {
        SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, false);
        benchmark::DoNotOptimize(init.getClass());
    }
}
BENCHMARK(initializerWithClassification);

void crossSectionCheck(benchmark::State& state, Forces forces)
{
    auto section = SDBCatalogue::get("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    for (auto _ : state) {
        SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, false);
        VerificationResults results;
        const ResistanceVerifications verifier(results, section.get(), init, 1.0, forces);
        verifier.verifyAllResistance();
        benchmark::DoNotOptimize(results.verifyAllUtilizations());
    }
}
BENCHMARK_CAPTURE(crossSectionCheck, N_My_Vz, Forces(-300, 80, 0, 0, 0, 100));
BENCHMARK_CAPTURE(crossSectionCheck, all_six_forces, Forces(-300, 80, 5, 0.2, 10, 100));

} // namespace
