// Batch throughput end to end: the example model (examples/frames.csv) repeated to 100,000 rows as CSV
// text in memory, streamed in a ring of 8,192 rows through the pipeline of `steeldesign batch` (batch::runPipeline: the
// reader, two threads parsing, evaluating and formatting, the writer); CSV and JSON Lines out.

#include <batch/BatchInput.h>
#include <batch/BatchRun.h>

#include <benchmark/benchmark.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

constexpr std::size_t batchRows = 100000;

// An output that counts what it is given and keeps nothing: the figures are those of the batch, not of
// a growing string stream copying its text.
class CountingBuffer : public std::streambuf {
public:
    std::size_t bytes = 0;

protected:
    std::streamsize xsputn(const char*, std::streamsize n) override
    {
        bytes += static_cast<std::size_t>(n);
        return n;
    }
    int_type overflow(int_type c) override
    {
        ++bytes;
        return traits_type::not_eof(c);
    }
};

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
    const auto format = state.range(0) == 0 ? batch::OutputFormat::Csv : batch::OutputFormat::JsonLines;
    const auto rules = state.range(1) == 0 ? design::Rules::En : design::Rules::Library;
    std::size_t rowsDone = 0;
    for (auto _ : state) {
        std::istringstream in(model);
        CountingBuffer counted;
        std::ostream out(&counted);
        batch::BatchReader reader(in, batch::BatchFormat::Csv, 2);
        batch::BatchSummary summary;
        batch::writeHeader(out, format, rules);
        static std::size_t done = 0;
        batch::runPipeline(reader, out, format, 2, 8192, summary, [](std::size_t rows) { done = rows; }, rules);
        rowsDone = done;
        benchmark::DoNotOptimize(counted.bytes);
        if (rowsDone != batchRows) state.SkipWithError("rows lost");
    }
    state.counters["rows_per_second"] =
        benchmark::Counter(static_cast<double>(batchRows), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(batchThroughput)->ArgNames({"json", "rules"})->Args({0, 0})->Args({1, 0})->Args({0, 1})->Args({1, 1})->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

} // namespace

namespace {

// The parts of a batch row apart: parsing CSV into rows, and formatting results as CSV, one thread.
void batchParseOnly(benchmark::State& state)
{
    const std::string model = repeatedModel();
    for (auto _ : state) {
        std::istringstream in(model);
        batch::BatchReader reader(in, batch::BatchFormat::Csv, 1);
        std::vector<batch::BatchRow> rows;
        std::size_t n = 0;
        while (reader.next(rows, 8192)) n += rows.size();
        benchmark::DoNotOptimize(n);
    }
    state.counters["rows_per_second"] =
        benchmark::Counter(static_cast<double>(batchRows), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(batchParseOnly)->Unit(benchmark::kMillisecond)->UseRealTime();

void batchEvaluateAndFormat(benchmark::State& state)
{
    const std::string model = repeatedModel();
    std::istringstream in(model);
    batch::BatchReader reader(in, batch::BatchFormat::Csv, 1);
    std::vector<batch::BatchRow> rows, all;
    while (reader.next(rows, 8192)) all.insert(all.end(), rows.begin(), rows.end());
    batch::BatchEvaluator evaluator(1);
    std::vector<batch::RowResult> results;
    evaluator.run(all, results);
    const bool format = state.range(0) == 1;
    for (auto _ : state) {
        if (format) {
            CountingBuffer counted;
            std::ostream out(&counted);
            batch::writeRows(out, results, batch::OutputFormat::Csv, 1);
            benchmark::DoNotOptimize(counted.bytes);
        } else {
            evaluator.run(all, results);
            benchmark::DoNotOptimize(results.data());
        }
    }
    state.counters["rows_per_second"] =
        benchmark::Counter(static_cast<double>(all.size()), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(batchEvaluateAndFormat)->ArgName("format")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
