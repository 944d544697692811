// `steeldesign batch FILE [--out FILE] [--format jsonl|csv] [--jobs N]`: the cross-section check and the
// member checks of every row of a CSV or JSON Lines file (see BatchInput.h for the columns), in parallel,
// with the results in input order. FILE "-" reads standard input, --out "-" (or none) writes standard
// output. Exit code 0 when every row is fulfilled, 1 when a row is not, 3 when a row is not verified,
// 2 when a row or the file is rejected, 130 when interrupted (SIGINT, SIGTERM).
//
// Safety: the input must be a readable file, not a directory; an --out that is the input file (the same
// device and inode, also through a link) is refused; the results go to a temporary file beside --out that
// is renamed when complete, so an interrupted or failed run leaves an existing --out untouched. A UTF-8
// byte-order mark and CRLF line ends are accepted.

#include "Commands.h"
#include "Options.h"

#include <batch/BatchInput.h>
#include <batch/BatchRun.h>
#include <batch/OutputFile.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>
#include <unistd.h>

namespace cli {

using namespace batch;

namespace {

struct BatchOptions {
    std::string file;
    std::string out;
    std::string format = "jsonl";
    unsigned jobs = 0;
    StandardOptions standard;
    RulesOption rules;
};

constexpr int exitInterrupted = 130;

void onSignal(int) { requestBatchStop(); }

// SIGINT, SIGTERM, SIGHUP, SIGQUIT and SIGPIPE (standard output closed) ask the batch to stop: the
// temporary of --out is removed and the file left as it was. The previous handlers come back when the
// run ends.
class SignalGuard {
public:
    SignalGuard()
    {
        struct sigaction action {};
        action.sa_handler = onSignal;
        sigemptyset(&action.sa_mask);
        for (std::size_t i = 0; i < std::size(signals); ++i) sigaction(signals[i], &action, &old_[i]);
    }
    ~SignalGuard()
    {
        for (std::size_t i = 0; i < std::size(signals); ++i) sigaction(signals[i], &old_[i], nullptr);
    }
    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;

private:
    static constexpr int signals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE};
    struct sigaction old_[std::size(signals)] {};
};

// Rows per chunk of the pipeline: the memory of a run is that of a chunk, whatever the input's size.
constexpr std::size_t chunkRows = 8192;

void run(const BatchOptions& o, CommandResult& result)
{
    const SignalGuard signals;  // from the start: a signal while the input is read stops the run too
    resetBatchStop();
    o.standard.apply();
    const design::Rules rules = o.rules.resolve();
    const bool toFile = !o.out.empty() && o.out != "-";
    if (toFile && o.file != "-" && sameFile(o.file, o.out))
        throw InputError("--out: '" + o.out + "' is the input file; the results would overwrite the model");
    if (toFile) checkOutputPath("--out", o.out, o.file);
    checkInputFile("batch", o.file);
    std::ifstream file;
    if (o.file != "-") {
        file.open(o.file, std::ios::binary);
        if (!file) throw InputError("batch: cannot read the file '" + o.file + "'");
    }
    std::istream& in = o.file == "-" ? std::cin : file;
    BatchReader reader(in, std::nullopt, o.jobs);  // a bad header throws here, before anything is written
    const OutputFormat format = o.format == "csv" ? OutputFormat::Csv : OutputFormat::JsonLines;

    // The results go to a temporary file beside --out, renamed when complete.
    std::optional<StreamedOutputFile> outFile;
    if (toFile) outFile.emplace("--out", o.out);
    std::ostream& out = toFile ? outFile->stream() : std::cout;

    const bool progress = isatty(STDERR_FILENO) != 0;
    BatchSummary summary;
    writeHeader(out, format, rules);
    runPipeline(
        reader, out, format, o.jobs, chunkRows, summary,
        [&](std::size_t done) {
            if (progress) std::fprintf(stderr, "\r%zu rows", done);
            if (outFile) outFile->written();
        },
        rules);
    if (progress) std::fprintf(stderr, "\r%*s\r", 30, "");
    if (batchStopRequested()) {
        if (outFile) outFile->discard();
        std::cout.flush();
        std::cerr << "steeldesign: batch interrupted; " << (toFile ? "nothing written" : "output incomplete") << "\n";
        result.exitCode = exitInterrupted;
        return;
    }
    if (toFile) {
        outFile->commit();
        std::cout << summary.text();
    } else {
        out.flush();
        if (!out) throw InputError("batch: cannot write the output");
        std::cerr << summary.text();
    }
    result.exitCode = summary.exitCode();
}

} // namespace

void registerBatchCommand(CLI::App& app, CommandResult& result)
{
    auto options = std::make_shared<BatchOptions>();
    CLI::App* sub = app.add_subcommand(
        "batch",
        "check every member of a CSV or JSON Lines file (exit 0 all fulfilled, 1 some not, 2 input errors, 3 not "
        "verified, 130 interrupted)");
    sub->add_option("FILE", options->file,
                    "input: CSV with a header row, or JSON Lines (one object per line); - for standard input")
        ->required();
    sub->add_option("--out", options->out,
                    "write the results to this file instead of standard output (never the input file)");
    sub->add_option("--format", options->format, "output format")
        ->check(CLI::IsMember({"jsonl", "csv"}))
        ->capture_default_str();
    sub->add_option("--jobs", options->jobs, "worker threads (default: every core)")->check(CLI::Range(1u, 256u));
    options->standard.addTo(*sub);
    options->rules.addTo(*sub);
    sub->callback([options, &result] { run(*options, result); });
}

} // namespace cli
