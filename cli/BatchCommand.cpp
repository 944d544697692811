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

#include "BatchInput.h"
#include "BatchRun.h"
#include "Commands.h"
#include "Options.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <sys/stat.h>
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

constexpr int exitInterrupted = 130;

void onSignal(int) { requestBatchStop(); }

// SIGINT and SIGTERM ask the batch to stop; the previous handlers come back when the run ends.
class SignalGuard {
public:
    SignalGuard()
    {
        struct sigaction action {};
        action.sa_handler = onSignal;
        sigemptyset(&action.sa_mask);
        sigaction(SIGINT, &action, &oldInt_);
        sigaction(SIGTERM, &action, &oldTerm_);
    }
    ~SignalGuard()
    {
        sigaction(SIGINT, &oldInt_, nullptr);
        sigaction(SIGTERM, &oldTerm_, nullptr);
    }
    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;

private:
    struct sigaction oldInt_ {};
    struct sigaction oldTerm_ {};
};

// The whole input as text, without a UTF-8 byte-order mark; InputError for a directory or a file that
// cannot be read.
std::string readInput(const std::string& file)
{
    std::string text;
    if (file == "-") {
        text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
    } else {
        std::error_code ec;
        const auto status = std::filesystem::status(file, ec);
        if (std::filesystem::is_directory(status))
            throw InputError("batch: '" + file + "' is a directory; give a CSV or JSON Lines file");
        if (ec || !std::filesystem::exists(status)) throw InputError("batch: the file '" + file + "' does not exist");
        std::ifstream in(file, std::ios::binary);
        if (!in) throw InputError("batch: cannot read the file '" + file + "'");
        text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        if (in.bad()) throw InputError("batch: cannot read the file '" + file + "'");
    }
    if (text.size() >= 3 && text.compare(0, 3, "\xEF\xBB\xBF") == 0) text.erase(0, 3);
    return text;
}

// True when both names are the same existing file (device and inode; links followed).
bool sameFile(const std::string& a, const std::string& b)
{
    struct stat sa {}, sb {};
    if (stat(a.c_str(), &sa) != 0 || stat(b.c_str(), &sb) != 0) return false;
    return sa.st_dev == sb.st_dev && sa.st_ino == sb.st_ino;
}

void run(const BatchOptions& o, CommandResult& result)
{
    const SignalGuard signals;  // from the start: a signal while the input is read stops the run too
    resetBatchStop();
    o.standard.apply();
    const bool toFile = !o.out.empty() && o.out != "-";
    if (toFile && o.file != "-" && sameFile(o.file, o.out))
        throw InputError("--out: '" + o.out + "' is the input file; the results would overwrite the model");
    if (toFile && std::filesystem::is_directory(o.out))
        throw InputError("--out: '" + o.out + "' is a directory");
    const std::string text = readInput(o.file);
    std::istringstream in(text);
    const std::vector<BatchRow> rows = readBatch(in, sniffFormat(in));
    const OutputFormat format = o.format == "csv" ? OutputFormat::Csv : OutputFormat::JsonLines;

    const bool progress = isatty(STDERR_FILENO) != 0;
    const std::vector<RowResult> results = runBatch(rows, o.jobs, progress);
    if (batchStopRequested()) {
        std::cerr << "steeldesign: batch interrupted; nothing written\n";
        result.exitCode = exitInterrupted;
        return;
    }

    std::ostringstream output;
    writeResults(output, results, format);
    const std::string& textOut = output.str();
    if (!toFile) {
        std::cout << textOut;
        std::cout.flush();
        std::cerr << summarize(results);
    } else {
        // Written whole to a temporary file, then renamed: a failed run leaves no half-written output.
        const std::string temporary = o.out + ".part";
        {
            std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
            if (!file) throw InputError("--out: cannot write '" + o.out + "'");
            file << textOut;
            if (!file.flush()) {
                file.close();
                std::error_code ignored;
                std::filesystem::remove(temporary, ignored);
                throw InputError("--out: cannot write '" + o.out + "'");
            }
        }
        if (batchStopRequested()) {  // a signal while writing: the previous --out stays as it was
            std::error_code ignored;
            std::filesystem::remove(temporary, ignored);
            std::cerr << "steeldesign: batch interrupted; nothing written\n";
            result.exitCode = exitInterrupted;
            return;
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
    sub->callback([options, &result] { run(*options, result); });
}

} // namespace cli
