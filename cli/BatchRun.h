#pragma once

// Running the rows of a batch: evaluation of each row (in parallel), the result records, their output
// as JSON Lines or CSV, and the summary.

#include "BatchInput.h"
#include <design/MemberDesign.h>

#include <SteelDesign/Nullable.h>

#include <nlohmann/json.hpp>

#include <array>
#include <iosfwd>
#include <string>
#include <vector>

namespace cli {

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
RowResult evaluateChecks(const design::CrossSectionRequest& cross, const design::MemberRequest* member);

// The JSON object of one result, as `batch` writes it.
nlohmann::json resultJson(const RowResult& result);

// Evaluates one parsed row (a RowError gives a rejected result). Sections and steels are looked up here.
RowResult evaluateRow(const BatchRow& row);

// A request to stop the running batch (from a signal handler: async-signal-safe), its reset and its state.
void requestBatchStop();
void resetBatchStop();
bool batchStopRequested();

// Every row, on `jobs` threads (0: every core), results in input order. With progress, a bar on stderr.
// A stop request ends the run early (the results are then incomplete). A row whose evaluation throws
// becomes a rejected row: one row never stops the batch.
std::vector<RowResult> runBatch(const std::vector<BatchRow>& rows, unsigned jobs, bool progress);

enum class OutputFormat { JsonLines, Csv };
void writeResults(std::ostream& out, const std::vector<RowResult>& results, OutputFormat format);

// Rows, fulfilled, not fulfilled, rejected, and the five highest utilizations with their member ids.
std::string summarize(const std::vector<RowResult>& results);

// 2 when a row was rejected, else 1 when a row is not fulfilled, else 3 when a row is not verified, else 0.
int exitCodeOf(const std::vector<RowResult>& results);

// JSON Lines when the first non-blank character is '{', CSV otherwise; the stream is rewound.
BatchFormat sniffFormat(std::istream& in);

} // namespace cli
