// The finite-element elastic critical moment (design/CriticalMomentSolver.h): one Mcr of a 30-element
// member, with and without the uniform-moment reference that gives C1.

#include "design/CriticalMomentSolver.h"

#include <SectionCatalogue.h>

#include <benchmark/benchmark.h>

namespace {

// IPE 300, L = 6 m, forks, uniform load of 10 kN/m on the top flange (diagram derived from the load).
design::CriticalMomentInput ipe300UniformLoadTopFlange()
{
    design::CriticalMomentInput in;
    in.section = design::mcrSection(*SDBCatalogue::get("IPE 300"));
    in.length = 6.0;
    in.elements = 30;
    in.q = 10.0;
    in.qLevel = {design::McrHeight::TopFlange, 0.0};
    in.withShape = false;
    return in;
}

void criticalMomentFE(benchmark::State& state)
{
    design::CriticalMomentInput in = ipe300UniformLoadTopFlange();
    in.withC1 = false;
    for (auto _ : state) {
        const design::CriticalMomentResult r = design::criticalMoment(in);
        benchmark::DoNotOptimize(r.mcr);
    }
    if (!design::criticalMoment(in).ok) state.SkipWithError("no Mcr");
}
BENCHMARK(criticalMomentFE);

// The same with the uniform-moment reference (a second eigenvalue solve on the same factorised K) and
// the buckled shape.
void criticalMomentFEWithC1AndShape(benchmark::State& state)
{
    design::CriticalMomentInput in = ipe300UniformLoadTopFlange();
    in.withShape = true;
    for (auto _ : state) {
        const design::CriticalMomentResult r = design::criticalMoment(in);
        benchmark::DoNotOptimize(r.c1);
    }
}
BENCHMARK(criticalMomentFEWithC1AndShape);

// The dense generalized eigensolver on the same member, for comparison.
void criticalMomentFEDense(benchmark::State& state)
{
    design::CriticalMomentInput in = ipe300UniformLoadTopFlange();
    in.withC1 = false;
    in.solver = design::McrEigenSolver::Dense;
    for (auto _ : state) {
        const design::CriticalMomentResult r = design::criticalMoment(in);
        benchmark::DoNotOptimize(r.mcr);
    }
}
BENCHMARK(criticalMomentFEDense);

} // namespace
