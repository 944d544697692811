// Batch throughput end to end: the example model (examples/frames.csv) repeated to 100,000 rows as CSV
// text in memory, parsed, evaluated on two threads and written as CSV, as `steeldesign batch` does.

#include <cli/BatchInput.h>
#include <cli/BatchRun.h>

#include <benchmark/benchmark.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

constexpr std::size_t batchRows = 100000;

// The header of the example model and its rows repeated until there are batchRows of them.
std::string repeatedModel()
{
    std::ifstream file(STEELDESIGN_SOURCE_DIR "/examples/frames.csv");
    std::string header, line;
    std::getline(file, header);
    std::vector<std::string> rows;
    while (std::getline(file, line))
        if (!line.empty()) rows.push_back(line);
    std::string text = header + '\n';
    for (std::size_t i = 0; i < batchRows && !rows.empty(); ++i) text += rows[i % rows.size()] + '\n';
    return text;
}

void batchThroughput(benchmark::State& state)
{
    const std::string model = repeatedModel();
    std::size_t written = 0;
    for (auto _ : state) {
        std::istringstream in(model);
        const std::vector<cli::BatchRow> rows = cli::readBatch(in, cli::BatchFormat::Csv);
        const std::vector<cli::RowResult> results = cli::runBatch(rows, 2, false);
        std::ostringstream out;
        cli::writeResults(out, results, cli::OutputFormat::Csv);
        written = out.str().size();
        benchmark::DoNotOptimize(written);
        if (results.size() != batchRows) state.SkipWithError("rows lost");
    }
    state.counters["rows_per_second"] =
        benchmark::Counter(static_cast<double>(batchRows), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(batchThroughput)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

} // namespace
