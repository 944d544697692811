// The design layer per member: the cross-section check, the member checks with separate buckling
// lengths, the verdict and the departures from EN 1993-1-1, as one batch row does.

#include <design/MemberDesign.h>
#include <design/SectionNotation.h>

#include <KaMaterial.h>

#include <benchmark/benchmark.h>

namespace {

using namespace design;
using namespace SteelDesign;

void designOfOneMember(benchmark::State& state)
{
    auto section = makeSection("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const Forces forces(-200, 80, 0, 0, 0, 40);
    const CrossSectionRequest cross{section.get(), &steel, forces, 0.0, false};
    MemberRequest member;
    member.section = section.get();
    member.steel = &steel;
    member.forces = forces;
    member.moments = makeMoments({0, 40, 80}, MomentDiagram::Polygonal, {0, 0, 0}, MomentDiagram::Polygonal,
                                 std::nullopt, ApplicationPoint::Center, 0.0);
    member.lengths = BucklingLengths{6.0, 3.0, 3.0};
    for (auto _ : state) {
        DesignSummary summary = designMember(cross, &member);
        benchmark::DoNotOptimize(summary.governingUtilization);
    }
}
BENCHMARK(designOfOneMember);

} // namespace
