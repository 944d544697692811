#pragma once

// The design report: one self-contained HTML page (inline CSS, inline SVG, a small inline script for
// sorting and filtering the table; no network, nothing external) that an engineer prints to A4, signs and
// files. A cover with the model, the date, the counts and the governing members; an overview chart of
// every member's governing utilization; a table of the members; and per member its inputs, the
// classification plate by plate, every check as a line of the calculation trace (clause, formula,
// formula with numbers, result, verdict), the departures from EN 1993-1-1, and three charts: the N-My
// interaction curve of the cross-section with the design point, the buckling curves with the member's
// reduction factors, and the moment diagram with the values used.
//
// Every number in the tables is the batch's own text of it (the same cells as `steeldesign batch
// --format csv`); the trace and the charts read the results records of the same checks.

#include <batch/BatchRun.h>

#include <design/CrossSectionCheck.h>
#include <design/MemberCheck.h>
#include <design/Rules.h>

#include <KaMaterial.h>
#include <SDBSection.h>

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace report {

using batch::BatchRow;
using batch::RowResult;

// One member and load case of the report: a batch row, or the member of `check` / `member`.
struct ReportMember {
    std::size_t line = 0;
    std::string id;
    RowResult result;  // the batch's result of the row (rejected rows: the field and the message)
    // The section and steel the requests point to (kept alive with the member); null for a rejected row.
    std::shared_ptr<SDBSection> section;
    std::shared_ptr<KaConstrSteel> steel;
    design::CrossSectionRequest cross;
    std::optional<design::MemberRequest> member;  // when buckling lengths were given
    // The input as given: the batch row, or the command line of `check` / `member` (printed on the member's
    // page as the command that reproduces it).
    std::optional<batch::MemberRow> row;
    std::string command;
};

// A member from its requests (the section and steel already resolved): evaluated as a batch row is.
ReportMember reportMember(std::size_t line, std::string id, std::shared_ptr<SDBSection> section,
                          std::shared_ptr<KaConstrSteel> steel, const design::CrossSectionRequest& cross,
                          const std::optional<design::MemberRequest>& member,
                          design::Rules rules = design::Rules::Library);

// The batch row as a report member (a row the batch rejects stays rejected, with its reason).
ReportMember reportMember(const BatchRow& row, design::Rules rules = design::Rules::Library);

// The fields of a calculation sheet's title block, as given (on the command line); an empty one prints
// as a blank line to fill in by hand, never an invented value.
struct TitleBlock {
    std::string project, element, client, prepared, checked, approved, revision;
};

struct ReportHeader {
    std::string title = "Steel member design to EN 1993-1-1";
    std::string model;  // the input file, or the command
    std::string date;   // "2026-11-24" or "2026-11-24 14:05 +0100"
    design::Rules rules = design::Rules::Library;  // the rules the members were evaluated under
    TitleBlock block;
    std::string inputHash;  // SHA-256 of the input file (hex); empty when not known (standard input)
    std::string mode = "EN", situation = "persistent";  // the standard the members were evaluated under
};

// The whole page; the member sections are rendered on `jobs` threads (0: every core), in input order.
void writeReport(std::ostream& out, const ReportHeader& header, const std::vector<ReportMember>& members,
                 unsigned jobs = 0);

// The report of one member written to `path` (the `--html` of `check` and `member`): the header's model
// names the command, its date is filled in when empty; InputError naming the option when the file
// cannot be written.
void writeMemberReport(std::string_view option, const std::string& path, ReportHeader header,
                       std::unique_ptr<SDBSection> section, const KaConstrSteel& steel,
                       const design::CrossSectionRequest& cross, const std::optional<design::MemberRequest>& member);

// The same page as a text (Python's Result.to_html).
std::string memberReportHtml(ReportHeader header, std::shared_ptr<SDBSection> section, const KaConstrSteel& steel,
                             const design::CrossSectionRequest& cross, const std::optional<design::MemberRequest>& member);

// The date and time now as "yyyy-mm-dd hh:mm +zzzz" (local time and its offset from UTC).
std::string nowText();

} // namespace report
