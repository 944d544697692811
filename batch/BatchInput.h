#pragma once

// The input of `steeldesign batch`: one member and load case per row, from CSV with a header row or
// from JSON Lines. The column names of the CSV and the keys of the JSON objects are the same:
//
//   id, section, steel                         required text
//   N, My, Mz, Mt, Vy, Vz                      required numbers (kN, kNm; compression negative)
//   length                                     required number (m): buckling length, 0 = no member check
//   lengthY, lengthZ, lengthLT                 optional numbers (m): Lcr,y, Lcr,z and LLT when they differ
//                                              from length (a member is checked when one of them is > 0)
//   MyStart, MyMid, MyEnd, diagramY            moment diagram about y (kNm; polygonal | parabolic)
//   MzStart, MzMid, MzEnd, diagramZ            the same about z
//   loadPoint                                  center | top | bottom
//   maxMoment, mcr, cTheta, shearPanel         optional numbers (kNm, kNm, kNm/m, kN)
//   gammaM0, gammaM1                           optional partial factors (default: the standard's)
//   rolledMethod                               optional boolean: true 6.3.2.3, false 6.3.2.2, empty: 6.3.2.3
//                                              for I sections, 6.3.2.2 for the other kinds
//   torsionallyDeformable, cmFloor, elastic    optional booleans (true/false, yes/no, 1/0)
//   twistRestrained                         optional boolean: restrained against twist (Table B.1 under EN rules)
//   lengthT                                    optional number (m): l_T of torsional buckling (6.3.1.4), the
//                                              length between restraints against twist (default LLT, else Lcr,z)
//   mcrMethod                                  tables | numerical (default tables)
//   legAxes                                    optional boolean: My, Mz, Vy, Vz and the diagrams are about the
//                                              legs of an angle, turned into its principal axes u, v
//
// An empty cell (or a JSON null) of an optional column takes its default; of a required one it rejects
// the row. The moment values default to the row's My (Mz) at all three points.

#include <design/InputError.h>

#include <array>
#include <cstddef>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace batch {

using design::InputError;

struct MemberRow {
    std::size_t line = 0;  // 1-based line of the input file
    std::string id, section, steel;
    double N = 0.0, My = 0.0, Mz = 0.0, Mt = 0.0, Vy = 0.0, Vz = 0.0;
    double length = 0.0;
    std::optional<double> lengthY, lengthZ, lengthLT;
    std::optional<double> lengthT;  // l_T of torsional buckling; empty: L_LT, else Lcr,z
    std::array<double, 3> momentsY{}, momentsZ{};
    std::string diagramY = "polygonal", diagramZ = "polygonal", loadPoint = "center";
    std::optional<double> maxMoment, mcr, cTheta, shearPanel, gammaM0, gammaM1;
    std::optional<bool> rolledMethod;  // empty: chosen by the section kind
    std::string mcrMethod = "tables";
    bool torsionallyDeformable = false, twistRestrained = false, cmFloor = false, elastic = false;
    bool legAxes = false;  // My, Mz, Vy, Vz and the diagrams about an angle's legs, not its principal axes
};

// A row that cannot be checked: its line, its id when known, the field and what is wrong.
// fatal: the input itself is malformed (a key given twice in a JSON row): the run stops with InputError
// (exit 2) at this row instead of rejecting it, as for a CSV header naming a column twice.
struct RowError {
    std::size_t line = 0;
    std::string id;
    std::string field;
    std::string message;
    bool fatal = false;
};

using BatchRow = std::variant<MemberRow, RowError>;

// InputError for a fatal RowError ("batch: line 7: ..."); nothing for any other row.
void stopOnFatal(const BatchRow& row);

enum class BatchFormat { Csv, JsonLines };

// The longest line a batch may hold (its end not counted): a longer one stops the run with InputError
// naming its number. A row of a model is a few hundred bytes.
constexpr std::size_t maxLineBytes = std::size_t{1} << 20;

// The most bytes of lines read ahead in one chunk (besides the row count asked for), so that a chunk of
// long lines stays within memory too.
constexpr std::size_t maxChunkBytes = std::size_t{32} << 20;

// The format from the file name (.jsonl / .json / .ndjson: JSON Lines, anything else CSV).
BatchFormat formatOf(const std::string& fileName);

// Reads a batch in chunks, so that memory stays bounded whatever the size of the input. The format is
// given, or found from the first non-blank line ('{': JSON Lines, else CSV). A UTF-8 byte-order mark
// and CRLF line ends are accepted. A CSV header without a required column, with an unknown one or one
// named twice, or missing altogether throws InputError from the constructor; so does a line longer
// than maxLineBytes wherever it is read, and next() a JSON row that gives a key twice. jobs bounds the parsing threads (0: every
// core).
class BatchReader {
public:
    explicit BatchReader(std::istream& in, std::optional<BatchFormat> format = std::nullopt, unsigned jobs = 0);
    ~BatchReader();
    BatchReader(const BatchReader&) = delete;
    BatchReader& operator=(const BatchReader&) = delete;
    BatchFormat format() const;
    // The next up to maxRows rows (every non-blank line after the CSV header is one row, checked or
    // rejected), in input order; false at the end of the input.
    bool next(std::vector<BatchRow>& rows, std::size_t maxRows);

    // The same in two steps, for a pipeline that reads the next chunk while the rows of the last one are
    // parsed and evaluated: readLines takes the next up to maxRows data lines (not parsed; false at the
    // end of the input), parseLine parses line i of them into row. parseLine may run on any thread,
    // also beside readLines into other Lines.
    struct Lines {
        std::vector<std::string> text;     // reused from chunk to chunk
        std::vector<std::size_t> numbers;  // 1-based line numbers
        std::size_t count = 0;
        std::size_t bytes = 0;  // of the count lines
    };
    // At most maxBytes of lines are read (at least one line, and a line is at most maxLineBytes).
    bool readLines(Lines& lines, std::size_t maxRows, std::size_t maxBytes = maxChunkBytes);
    void parseLine(const Lines& lines, std::size_t i, BatchRow& row) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// Rows whose cells a caller holds in memory, column by column (the columns of a Python frame), read as
// the CSV rows holding the same cells are read, without their text: a number column may take its cells
// as numbers. The line of a row is the one it would have in that CSV (row 0: line 2).
struct InputCell {
    enum class Kind : unsigned char { Absent, Text, Number };
    Kind kind = Kind::Absent;
    std::string_view text;  // Kind::Text: the cell as typed (trimmed here; empty: absent)
    double number = 0.0;    // Kind::Number: a finite value (a NaN, an infinity or a subnormal is given as text)
};

class ColumnLayout {
public:
    // The column names, checked as a CSV header is: a required column missing, an unknown one or one
    // named twice throws InputError.
    explicit ColumnLayout(const std::vector<std::string>& names);
    ~ColumnLayout();
    ColumnLayout(const ColumnLayout&) = delete;
    ColumnLayout& operator=(const ColumnLayout&) = delete;
    std::size_t size() const;
    // Whether the cells of column i are read as numbers (those may be given as Kind::Number).
    bool isNumber(std::size_t i) const;
    // cells[i] is the cell of column i; a MemberRow already in out is parsed over in place.
    void parse(const InputCell* cells, std::size_t row, BatchRow& out) const;

private:
    std::vector<std::size_t> columnOfField_;
};

// Every row of the input at once.
std::vector<BatchRow> readBatch(std::istream& in, BatchFormat format);

} // namespace batch
