#pragma once

// Running the rows of a batch: evaluation of each row (in parallel), the result records, their output
// as JSON Lines or CSV, and the summary.

#include "BatchInput.h"
#include <design/MemberDesign.h>

#include <SteelDesign/Nullable.h>

#include <nlohmann/json.hpp>

#include <array>
#include <functional>
#include <iosfwd>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace batch {

// The result of one row: the design of its member (design::DesignSummary), or why it was rejected.
struct RowResult : design::DesignSummary {
    std::size_t line = 0;
    std::string id;
    bool rejected = false;
    std::string errorField, errorMessage;  // of a rejected row
};

using design::utilizationNames;

// The cross-section check and, when a member request is given, the member checks of one member (line
// and id left empty).
// Under the rules given (the library's by default; the tools pass their --rules).
RowResult evaluateChecks(const design::CrossSectionRequest& cross, const design::MemberRequest* member,
                         design::Rules rules = design::Rules::Library);

// The JSON object of one result, as `batch` writes it.
nlohmann::json resultJson(const RowResult& result);

// Evaluates one parsed row (a RowError gives a rejected result). Sections and steels are looked up here.
RowResult evaluateRow(const BatchRow& row, design::Rules rules = design::Rules::Library);

// A request to stop the running batch (from a signal handler: async-signal-safe), its reset and its state.
void requestBatchStop();
void resetBatchStop();
bool batchStopRequested();

// Evaluates the rows of a batch chunk by chunk, on `jobs` threads (0: every core); the sections looked up
// are kept for the whole run.
class BatchEvaluator {
public:
    explicit BatchEvaluator(unsigned jobs, design::Rules rules = design::Rules::Library);
    ~BatchEvaluator();
    BatchEvaluator(const BatchEvaluator&) = delete;
    BatchEvaluator& operator=(const BatchEvaluator&) = delete;
    // The results of the rows, in input order, into results (resized). With progress, a bar on stderr.
    void run(const std::vector<BatchRow>& rows, std::vector<RowResult>& results, bool progress = false);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// Every row, on `jobs` threads (0: every core), results in input order. With progress, a bar on stderr.
// A stop request ends the run early (the results are then incomplete). A row whose evaluation throws
// becomes a rejected row: one row never stops the batch.
std::vector<RowResult> runBatch(const std::vector<BatchRow>& rows, unsigned jobs, bool progress,
                                design::Rules rules = design::Rules::Library);

enum class OutputFormat { JsonLines, Csv };
class BatchSummary;
// The CSV header line (nothing for JSON Lines), then the rows; writeResults writes both.
// The header names the other rules' governing utilization: enUtilization under the library's rules,
// libraryUtilization under EN rules.
void writeHeader(std::ostream& out, OutputFormat format, design::Rules rules = design::Rules::Library);
void writeRows(std::ostream& out, const std::vector<RowResult>& results, OutputFormat format, unsigned jobs);
void writeResults(std::ostream& out, const std::vector<RowResult>& results, OutputFormat format,
                  design::Rules rules = design::Rules::Library);

// The summary of a batch, kept incrementally chunk by chunk in bounded memory: rows, fulfilled, not
// fulfilled, not verified, rejected; the five highest utilizations with their member ids; the first five
// rows not verified with their reasons; the rejected rows with line and field (the first 1,000 listed).
class BatchSummary {
public:
    static constexpr std::size_t listedRows = 1000;
    void add(const std::vector<RowResult>& results);
    void add(std::span<const RowResult> results);
    std::string text() const;
    // 2 when a row was rejected, else 1 when a row is not fulfilled, else 3 when a row is not verified,
    // else 0.
    int exitCode() const;

private:
    struct Top {
        double rank, utilization;
        std::size_t line;
        std::string id, governing, section;
    };
    std::size_t rows_ = 0, fulfilled_ = 0, notFulfilled_ = 0, notVerified_ = 0, rejected_ = 0;
    std::vector<Top> top_;
    std::vector<std::string> notVerifiedLines_, rejectedLines_;
};

// A whole batch from reader to out (the rows only, no header) as `steeldesign batch` runs it, with the
// summary, in bounded memory: at most chunkRows rows are in flight, in a ring of slices (of up to 128 rows).
// The stages overlap: a reader thread reads slices of lines, `jobs` threads (0: every core) parse, evaluate
// and format them, each slice into a text of its own, and a writer thread writes the texts in input order
// and adds their results to the summary. The same rows and bytes as next, BatchEvaluator::run and
// writeRows. A stop request ends the run early (the output is then incomplete); an exception of the
// input stream ends it with that exception. onChunk, when given, is called on the writer's thread with
// the rows written so far, about every chunkRows rows and at the end.
void runPipeline(BatchReader& reader, std::ostream& out, OutputFormat format, unsigned jobs, std::size_t chunkRows,
                 BatchSummary& summary, const std::function<void(std::size_t rowsDone)>& onChunk = {},
                 design::Rules rules = design::Rules::Library);

// The summary and the exit code of a whole batch at once.
std::string summarize(const std::vector<RowResult>& results);
int exitCodeOf(const std::vector<RowResult>& results);

// JSON Lines when the first non-blank character is '{', CSV otherwise; the stream is rewound.
BatchFormat sniffFormat(std::istream& in);

} // namespace batch
