// Fuzz target: the batch's reader (CSV and JSON Lines) and the evaluation of every row it gives.
// Holds, under the library's rules and EN rules: nothing crashes; a bad header is an InputError; a rejected
// row says why; a checked row with a utilization that is not finite gives its reason and is not fulfilled; a
// fulfilled row has no limitation; under EN rules no utilization is negative.

#include <batch/BatchInput.h>
#include <batch/BatchRun.h>
#include <design/InputError.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace {

void require(bool condition)
{
    if (!condition) std::abort();
}

bool finite(const kat::Nullable<double>& u) { return !u.hasValue() || std::isfinite(u.value()); }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    // The first byte chooses the format: even CSV, odd JSON Lines.
    const auto format = data[0] % 2 == 0 ? batch::BatchFormat::Csv : batch::BatchFormat::JsonLines;
    std::istringstream in(std::string(reinterpret_cast<const char*>(data + 1), size - 1));
    try {
        batch::BatchReader reader(in, format, 1);
        std::vector<batch::BatchRow> rows;
        while (reader.next(rows, 64)) {
            for (const batch::BatchRow& row : rows) {
                // Under the library's rules and under EN rules (the EN 1993-1-1 evaluation of the row).
                for (const design::Rules rules : {design::Rules::Library, design::Rules::En}) {
                    const batch::RowResult r = batch::evaluateRow(row, rules);
                    if (r.rejected) {
                        require(!r.errorMessage.empty());
                        continue;
                    }
                    bool allFinite = std::isfinite(r.governingUtilization) || r.governing.empty();
                    for (const auto& u : r.crossSection) allFinite = allFinite && finite(u);
                    for (const auto& u : r.member) allFinite = allFinite && finite(u);
                    // A utilization that is not finite is never fulfilled: under the library's rules it is
                    // reported (a reason); under EN rules +inf (a resistance used up) is not fulfilled and a
                    // value that is not a number has its reason.
                    if (!allFinite) require(r.verdict != design::Verdict::Fulfilled);
                    if (!allFinite && rules == design::Rules::Library) require(r.limitations != 0);
                    if (r.verdict == design::Verdict::Fulfilled) require(r.limitations == 0 && allFinite);
                    // Under EN rules no utilization is negative.
                    if (rules == design::Rules::En) {
                        for (const auto& u : r.crossSection) require(!u.hasValue() || !(u.value() < 0.0));
                        for (const auto& u : r.member) require(!u.hasValue() || !(u.value() < 0.0));
                    }
                }
            }
        }
    } catch (const design::InputError&) {
        // A header without a required column, with an unknown one, or an empty file.
    }
    return 0;
}
