// `steeldesign batch FILE [--out FILE] [--format jsonl|csv] [--jobs N]`: the cross-section check and the
// member checks of every row of a CSV or JSON Lines file (see BatchInput.h for the columns), in parallel,
// with the results in input order. Exit code 0 when every row is fulfilled, 1 when a row is not,
// 2 when a row or the file is rejected.

#include "BatchInput.h"
#include "BatchRun.h"
#include "Commands.h"
#include "Options.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <unistd.h>

namespace cli {

namespace {

struct BatchOptions {
    std::string file;
    std::string out;
    std::string format = "jsonl";
    unsigned jobs = 0;
    StandardOptions standard;
};

void run(const BatchOptions& o, CommandResult& result)
{
    o.standard.apply();
    std::ifstream in(o.file, std::ios::binary);
    if (!in) throw InputError("batch: cannot read the file '" + o.file + "'");
    const std::vector<BatchRow> rows = readBatch(in, sniffFormat(in));
    const OutputFormat format = o.format == "csv" ? OutputFormat::Csv : OutputFormat::JsonLines;

    const bool progress = isatty(STDERR_FILENO) != 0;
    const std::vector<RowResult> results = runBatch(rows, o.jobs, progress);

    std::ostringstream text;
    writeResults(text, results, format);
    if (o.out.empty()) {
        std::cout << text.str();
        std::cout.flush();
        std::cerr << summarize(results);
    } else {
        // Written whole to a temporary file, then renamed: a failed run leaves no half-written output.
        const std::string temporary = o.out + ".part";
        {
            std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
            if (!file) throw InputError("--out: cannot write '" + o.out + "'");
            file << text.str();
            if (!file.flush()) throw InputError("--out: cannot write '" + o.out + "'");
        }
        std::error_code ec;
        std::filesystem::rename(temporary, o.out, ec);
        if (ec) {
            std::filesystem::remove(temporary, ec);
            throw InputError("--out: cannot write '" + o.out + "'");
        }
        std::cout << summarize(results);
    }
    result.exitCode = exitCodeOf(results);
}

} // namespace

void registerBatchCommand(CLI::App& app, CommandResult& result)
{
    auto options = std::make_shared<BatchOptions>();
    CLI::App* sub = app.add_subcommand(
        "batch", "check every member of a CSV or JSON Lines file (exit 0 all fulfilled, 1 some not, 2 input errors)");
    sub->add_option("FILE", options->file, "input: CSV with a header row, or JSON Lines (one object per line)")
        ->required();
    sub->add_option("--out", options->out, "write the results to this file instead of standard output");
    sub->add_option("--format", options->format, "output format")
        ->check(CLI::IsMember({"jsonl", "csv"}))
        ->capture_default_str();
    sub->add_option("--jobs", options->jobs, "worker threads (default: every core)")->check(CLI::Range(1u, 256u));
    options->standard.addTo(*sub);
    sub->callback([options, &result] { run(*options, result); });
}

} // namespace cli
