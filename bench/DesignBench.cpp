// The design layer per member: the cross-section check, the member checks with separate buckling
// lengths, the verdict and the departures from EN 1993-1-1, as one batch row does; under the library's
// rules (rules:1) and under EN rules (rules:0), where the EN 1993-1-1 evaluation runs beside the library's.

#include <design/EnEvaluation.h>
#include <design/MemberDesign.h>
#include <design/SectionNotation.h>

#include <KaMaterial.h>

#include <benchmark/benchmark.h>

namespace {

using namespace design;
using namespace SteelDesign;

// The member of the benchmarks: moments 0 / 40 / 80 kNm, Lcr,y = 6 m, Lcr,z = LLT = 3 m.
MemberRequest benchMember(SDBSection* section, KaConstrSteel* steel, const Forces& forces)
{
    MemberRequest member;
    member.section = section;
    member.steel = steel;
    member.forces = forces;
    member.moments = makeMoments({0, 40, 80}, MomentDiagram::Polygonal, {0, 0, 0}, MomentDiagram::Polygonal,
                                 std::nullopt, ApplicationPoint::Center, 0.0);
    member.lengths = BucklingLengths{6.0, 3.0, 3.0};
    return member;
}

void designOfOneMember(benchmark::State& state)
{
    auto section = makeSection("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const Forces forces(-200, 80, 0, 0, 0, 40);
    const CrossSectionRequest cross{section.get(), &steel, forces, 0.0, false};
    const MemberRequest member = benchMember(section.get(), &steel, forces);
    const Rules rules = state.range(0) == 0 ? Rules::En : Rules::Library;
    DesignSummary summary;
    for (auto _ : state) {
        designMember(cross, &member, summary, nullptr, rules);
        benchmark::DoNotOptimize(summary.governingUtilization);
    }
}
BENCHMARK(designOfOneMember)->ArgName("rules")->Arg(0)->Arg(1);

// The cross-section check alone (`check`), under both rules.
void checkOfOneSection(benchmark::State& state)
{
    auto section = makeSection("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const CrossSectionRequest cross{section.get(), &steel, Forces(-250, 90, 0, 0, 0, 60), 0.0, false};
    const Rules rules = state.range(0) == 0 ? Rules::En : Rules::Library;
    DesignSummary summary;
    for (auto _ : state) {
        designMember(cross, nullptr, summary, nullptr, rules);
        benchmark::DoNotOptimize(summary.governingUtilization);
    }
}
BENCHMARK(checkOfOneSection)->ArgName("rules")->Arg(0)->Arg(1);

// The EN 1993-1-1 evaluation alone of the member above.
void enEvaluationOfOneMember(benchmark::State& state)
{
    auto section = makeSection("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const Forces forces(-200, 80, 0, 0, 0, 40);
    const CrossSectionRequest cross{section.get(), &steel, forces, 1.0, false};
    const MemberRequest member = benchMember(section.get(), &steel, forces);
    EnEvaluation en;
    for (auto _ : state) {
        evaluateEn(cross, 1.0, &member, 0.0, en);
        benchmark::DoNotOptimize(en.governingUtilization);
    }
}
BENCHMARK(enEvaluationOfOneMember);

} // namespace
