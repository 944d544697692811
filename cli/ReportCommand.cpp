// `steeldesign report FILE --out report.html [--jobs N] [--title TEXT] [--mode M] [--situation S]
// [--project P --element E --client C --prepared A --checked B --approved D --revision R]`: the
// design report of every member of a batch file (CSV or JSON Lines, the columns of `batch`) as one
// self-contained HTML page. The exit code is that of `batch` for the same file: 0 every member
// fulfilled, 1 one not, 3 one not verified, 2 a row or the file rejected (the report is still written and
// lists the rejected rows with their reasons).

#include "Commands.h"
#include "Options.h"

#include <batch/BatchInput.h>
#include <batch/BatchRun.h>
#include <batch/OutputFile.h>
#include <report/HtmlReport.h>
#include <report/InputHash.h>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>

namespace cli {

using namespace batch;
using namespace report;

namespace {

// A report is read by people: beyond this many members, a table of results (`batch`) serves better.
constexpr std::size_t maxReportMembers = 10000;

struct ReportOptions {
    std::string file, out, title;
    unsigned jobs = 0;
    StandardOptions standard;
    RulesOption rules;
    TitleBlockOptions block;
};

void run(const ReportOptions& o, CommandResult& result)
{
    o.standard.apply();
    const design::Rules rules = o.rules.resolve();
    checkOutputPath("--out", o.out, o.file);
    checkInputFile("report", o.file);
    std::ifstream file;
    if (o.file != "-") {
        file.open(o.file, std::ios::binary);
        if (!file) throw InputError("report: cannot read the file '" + o.file + "'");
    }
    // The input's SHA-256 is that of the bytes read (a file changed meanwhile, a pipe, standard input).
    HashedInput hashed(o.file == "-" ? std::cin : file);
    BatchReader reader(hashed.stream(), std::nullopt, o.jobs);
    std::vector<BatchRow> rows, chunk;
    while (reader.next(chunk, 4096)) {
        rows.insert(rows.end(), std::make_move_iterator(chunk.begin()), std::make_move_iterator(chunk.end()));
        if (rows.size() > maxReportMembers)
            throw InputError("report: '" + o.file + "' has more than " + std::to_string(maxReportMembers) +
                             " rows; a report is for up to that many members (use `steeldesign batch` for more)");
    }
    std::vector<ReportMember> members(rows.size());
    std::vector<RowResult> results(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        members[i] = reportMember(rows[i], rules);
        results[i] = members[i].result;
    }
    ReportHeader header;
    if (!o.title.empty()) header.title = o.title;
    header.model = o.file == "-" ? std::string("standard input") : std::filesystem::path(o.file).filename().string();
    header.date = nowText();
    header.rules = rules;
    header.block = o.block.resolve();
    header.mode = o.standard.mode;
    header.situation = o.standard.situation;
    header.inputHash = hashed.hex();
    std::ostringstream page;
    writeReport(page, header, members, o.jobs);
    if (o.out == "-") {
        std::cout << page.str();
    } else {
        writeFileAtomically("--out", o.out, page.str());
        std::cout << "report: " << o.out << " (" << members.size() << " members)\n";
    }
    result.exitCode = exitCodeOf(results);
}

} // namespace

void registerReportCommand(CLI::App& app, CommandResult& result)
{
    auto options = std::make_shared<ReportOptions>();
    CLI::App* sub = app.add_subcommand(
        "report", "the design report of a batch file as one self-contained HTML page (exit codes as batch)");
    sub->add_option("FILE", options->file, "input: CSV with a header row, or JSON Lines, as for batch; - for standard input")
        ->required();
    sub->add_option("--out", options->out, "the HTML file to write (never the input file); - for standard output")
        ->required();
    sub->add_option("--title", options->title, "the title of the report");
    sub->add_option("--jobs", options->jobs, "worker threads (default: every core)")->check(CLI::Range(1u, 256u));
    options->standard.addTo(*sub);
    options->rules.addTo(*sub);
    options->block.addTo(*sub);
    sub->callback([options, &result] { run(*options, result); });
}

} // namespace cli
