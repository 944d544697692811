#pragma once

// Running the rows of a batch: evaluation of each row (in parallel), the result records, their output
// as JSON Lines or CSV, and the summary.

#include "BatchInput.h"
#include "Evaluation.h"

#include <SteelDesign/Nullable.h>

#include <nlohmann/json.hpp>

#include <array>
#include <iosfwd>
#include <string>
#include <vector>

namespace cli {

// The result of one row. Utilizations are absent when the check did not run or computed none.
struct RowResult {
    std::size_t line = 0;
    std::string id, section, steel;
    bool rejected = false;
    std::string errorField, errorMessage;  // of a rejected row
    bool memberChecked = false;            // length > 0
    int sectionClass = 0;
    int errorCode = 0;                     // cross-section check
    int memberErrorCode = 0;               // member checks
    int shearBucklingErrorCode = 0;
    // Axial, Torsion, Bending, Shear, AxialBending, ShearBending, AxialShearBending.
    std::array<kat::Nullable<double>, 7> crossSection;
    // member.Compression, member.Bending, member.CompressionBending, member.ShearBuckling.
    std::array<kat::Nullable<double>, 4> member;
    std::string governing;  // name of the largest utilization, "" when none
    double governingUtilization = 0.0;
    bool fulfilled = false;
};

// The names of the utilization columns, in the order of RowResult::crossSection then member.
const std::vector<std::string>& utilizationNames();

// The cross-section check and, when a member request is given, the member checks of one member: the
// utilizations, the governing one and the verdict (line and id left empty).
RowResult evaluateChecks(const CrossSectionRequest& cross, const MemberRequest* member);

// The JSON object of one result, as `batch` writes it.
nlohmann::json resultJson(const RowResult& result);

// Evaluates one parsed row (a RowError gives a rejected result). Sections and steels are looked up here.
RowResult evaluateRow(const BatchRow& row);

// Every row, on `jobs` threads (0: every core), results in input order. With progress, a bar on stderr.
std::vector<RowResult> runBatch(const std::vector<BatchRow>& rows, unsigned jobs, bool progress);

enum class OutputFormat { JsonLines, Csv };
void writeResults(std::ostream& out, const std::vector<RowResult>& results, OutputFormat format);

// Rows, fulfilled, not fulfilled, rejected, and the five highest utilizations with their member ids.
std::string summarize(const std::vector<RowResult>& results);

// 2 when a row was rejected, else 1 when a row is not fulfilled, else 0.
int exitCodeOf(const std::vector<RowResult>& results);

// JSON Lines when the first non-blank character is '{', CSV otherwise; the stream is rewound.
BatchFormat sniffFormat(std::istream& in);

} // namespace cli
