// The flat interface: the moment coefficient zeta and a whole CALL_STEEL_DESIGN of a rolled I beam with
// the cross-section check and lateral-torsional buckling (request bits 1 and 2).

#include <flat/steeldesign_flat.h>

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>

namespace {

void momentCoefficientZeta(benchmark::State& state)
{
    // A linear diagram, a span load and a hogging span: the three branches in turn.
    const double cases[3][4] = {{-40.0, 20.0, 80.0, 0.0}, {0.0, 60.0, 0.0, 1.0}, {-80.0, 30.0, -60.0, 1.0}};
    std::size_t i = 0;
    for (auto _ : state) {
        const double* c = cases[i];
        i = i == 2 ? 0 : i + 1;
        std::uint16_t flag = 1;
        benchmark::DoNotOptimize(momentenbeiwert_drill_zeta(c[0], c[1], c[2], c[3], &flag));
        benchmark::DoNotOptimize(flag);
    }
}
BENCHMARK(momentCoefficientZeta);

// IPE 300 (kind 1), S235, gammaM0 1.0, gammaM1 1.1, L = 6 m, N = -100 kN, My = 60 kNm, Vz = 40 kN with
// the diagram 0 / 30 / 60 kNm, design mode 0.
void callSteelDesign(benchmark::State& state)
{
    std::array<double, STEELDESIGN_FLAT_SECTION_DIMS_SIZE> dims{};
    std::array<double, STEELDESIGN_FLAT_SECTION_VALUES_SIZE> props{};
    std::array<std::int32_t, STEELDESIGN_FLAT_CONTROL_SIZE> control{};
    std::array<double, STEELDESIGN_FLAT_VALUES_SIZE(1)> values{};
    std::array<std::int32_t, STEELDESIGN_FLAT_STATUS_SIZE> status{};
    std::array<double, STEELDESIGN_FLAT_RESULTS_SIZE(0)> results{};
    dims[0] = 300;
    dims[1] = 150;
    dims[2] = 7.1;
    dims[3] = 10.7;
    dims[4] = 15;
    dims[7] = 10.7;
    props[1] = 53.81;
    props[2] = 8356;
    props[3] = 603.8;
    props[4] = 19.75;
    props[6] = 557.1;
    props[7] = 628.4;
    props[8] = 80.5;
    props[9] = 125.2;
    props[11] = 124260;
    control[0] = 1 | 2;
    control[5] = 1;
    control[10] = 1;
    values[0] = 210000;
    values[1] = 81000;
    values[5] = 1.0;
    values[6] = 1.1;
    values[10] = 6.0;
    values[17] = 0.0;
    values[18] = 30.0;
    values[19] = 60.0;
    values[30] = 0.0;
    values[31] = 40.0;
    values[32] = 235.0;
    values[33] = 360.0;
    for (auto _ : state) {
        results.fill(0.0);
        status[3] = 0;
        const std::int32_t ok = CALL_STEEL_DESIGN(-100, 60, 40, 0, 0, 0, 0, 0, dims.data(), props.data(),
                                                  control.data(), values.data(), status.data(), results.data());
        benchmark::DoNotOptimize(ok);
        benchmark::DoNotOptimize(results.data());
    }
    if (status[0] != STEELDESIGN_FLAT_STAGE_DONE) state.SkipWithError("CALL_STEEL_DESIGN stopped at a stage");
}
BENCHMARK(callSteelDesign);

} // namespace
