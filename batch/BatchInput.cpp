#include "BatchInput.h"

#include "Parallel.h"

#include <design/BucklingLengths.h>
#include <design/NumberInput.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>
#include <iterator>
#include <map>
#include <string_view>

namespace batch {

namespace {

const char* const requiredColumns[] = {"id", "section", "steel", "N", "My", "Mz", "Mt", "Vy", "Vz", "length"};
const char* const knownColumns[] = {"id",       "section",  "steel",      "N",          "My",
                                    "Mz",       "Mt",       "Vy",         "Vz",         "length",
                                    "MyStart",  "MyMid",    "MyEnd",      "diagramY",   "MzStart",
                                    "MzMid",    "MzEnd",    "diagramZ",   "loadPoint",  "maxMoment",
                                    "mcr",      "cTheta",   "shearPanel", "gammaM0",    "gammaM1",
                                    "rolledMethod", "torsionallyDeformable", "cmFloor", "elastic",
                                    "lengthY",  "lengthZ",  "lengthLT", "mcrMethod", "twistRestrained",
                                    "lengthT",  "legAxes"};
constexpr std::size_t columnCount = std::size(knownColumns);

// The known columns by their index in knownColumns.
enum Column : std::size_t {
    cId, cSection, cSteel, cN, cMy, cMz, cMt, cVy, cVz, cLength, cMyStart, cMyMid, cMyEnd, cDiagramY, cMzStart,
    cMzMid, cMzEnd, cDiagramZ, cLoadPoint, cMaxMoment, cMcr, cCTheta, cShearPanel, cGammaM0, cGammaM1,
    cRolledMethod, cTorsionallyDeformable, cCmFloor, cElastic, cLengthY, cLengthZ, cLengthLT, cMcrMethod,
    cTwistRestrained, cLengthT, cLegAxes
};
static_assert(cLegAxes + 1 == columnCount);

// The index of a known column name, or columnCount. Every key of every JSON line comes here: the names
// are grouped by length, so that a name is compared only with the few of its own length.
std::size_t columnOf(std::string_view name)
{
    constexpr std::size_t longest = 24;
    struct ByLength {
        std::array<std::array<unsigned char, columnCount>, longest + 1> columns{};
        std::array<std::size_t, longest + 1> count{};
    };
    static const ByLength byLength = [] {
        ByLength b;
        for (std::size_t i = 0; i < columnCount; ++i) {
            const std::size_t n = std::char_traits<char>::length(knownColumns[i]);
            b.columns[n][b.count[n]++] = static_cast<unsigned char>(i);
        }
        return b;
    }();
    if (name.size() > longest) return columnCount;
    const std::size_t n = name.size();
    for (std::size_t k = 0; k < byLength.count[n]; ++k) {
        const std::size_t i = byLength.columns[n][k];
        if (std::memcmp(name.data(), knownColumns[i], n) == 0) return i;
    }
    return columnCount;
}

// The blanks of std::isspace in the "C" locale, without its call per character.
bool isBlankChar(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

char lowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// a equals the lower-case word b, ignoring the case of a.
bool equalsIgnoringCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) return false;
    if (a == b) return true;  // the usual spelling, at once
    for (std::size_t i = 0; i < a.size(); ++i)
        if (lowerAscii(a[i]) != b[i]) return false;
    return true;
}

[[gnu::always_inline]] inline std::string_view trimView(std::string_view s)
{
    if (s.empty() || (!isBlankChar(s.front()) && !isBlankChar(s.back()))) return s;  // the usual cell
    std::size_t a = 0, b = s.size();
    while (a < b && isBlankChar(s[a])) ++a;
    while (b > a && isBlankChar(s[b - 1])) --b;
    return s.substr(a, b - a);
}

std::string trim(std::string_view s) { return std::string(trimView(s)); }

std::string lower(std::string s)
{
    for (char& c : s) c = lowerAscii(c);
    return s;
}

// A plain decimal ("-300", "0.875"): at most 15 digits, so that the digits make an exact integer m and
// the value m / 10^k, one correctly rounded division of exact doubles, is the correctly rounded value
// that design::readNumber gives (Clinger's fast path). Anything else (exponents, more digits, "5.", ".5",
// "+5") is left to it: false.
[[gnu::always_inline]] inline bool parsePlainDecimal(std::string_view text, double& value)
{
    static constexpr double powers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const char* p = text.data();
    const char* const end = p + text.size();
    const bool negative = p != end && *p == '-';
    if (negative) ++p;
    std::uint64_t m = 0;
    int digits = 0, fraction = 0;
    const char* const wholeStart = p;
    for (; p != end && *p >= '0' && *p <= '9'; ++p, ++digits) m = m * 10 + static_cast<unsigned>(*p - '0');
    if (p == wholeStart) return false;
    if (p != end) {
        if (*p != '.') return false;
        ++p;
        const char* const fractionStart = p;
        for (; p != end && *p >= '0' && *p <= '9'; ++p, ++digits) m = m * 10 + static_cast<unsigned>(*p - '0');
        fraction = static_cast<int>(p - fractionStart);
        if (p != end || fraction == 0) return false;
    }
    if (digits > 15) return false;
    const double magnitude = static_cast<double>(m) / powers[fraction];
    value = negative ? -magnitude : magnitude;
    return true;
}

// One CSV record: fields separated by commas, a field may be quoted ("a,b" and "" for a quote).
std::vector<std::string> splitCsv(const std::string& line)
{
    std::vector<std::string> fields;
    std::string field;
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quoted) {
            if (c == '"' && i + 1 < line.size() && line[i + 1] == '"') {
                field += '"';
                ++i;
            } else if (c == '"') {
                quoted = false;
            } else {
                field += c;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            fields.push_back(trim(field));
            field.clear();
        } else {
            field += c;
        }
    }
    fields.push_back(trim(field));
    return fields;
}

// The cells of one row by column name; a cell is absent (nullopt) when empty or null.
using Cells = std::map<std::string, std::optional<std::string>, std::less<>>;

// The cells of one row by column index, viewing text owned by the caller (the CSV line or the JSON
// row's Cells); absent when the row has no such column or a null.
using CellViews = std::array<std::optional<std::string_view>, columnCount>;

// Cells given as numbers by a caller that holds its columns in memory, by column index.
struct NumberCells {
    std::array<double, columnCount> value{};
    std::array<bool, columnCount> given{};
};

class RowReader {
public:
    RowReader(const CellViews& cells, std::size_t line, const NumberCells* numbers = nullptr)
        : cells_(cells), line_(line), numbers_(numbers)
    {
    }

    // The cell's text, or an empty view when the cell is absent or empty.
    std::string_view view(Column field) const
    {
        const std::optional<std::string_view>& cell = cells_[field];
        return cell ? *cell : std::string_view();
    }
    // The cell's text into out (whose memory is reused from row to row).
    void requiredText(Column field, std::string& out) const
    {
        const std::string_view value = view(field);
        if (value.empty()) fail(field, "missing value");
        if (out != value) out.assign(value);  // neighbouring rows mostly name the same section and steel
    }
    // A plain decimal is read here, inline; any other text (and an error) by the slower path.
    [[gnu::always_inline]] std::optional<double> number(Column field) const
    {
        if (numbers_ && numbers_->given[field]) return numbers_->value[field];
        const std::string_view cell = view(field);
        if (cell.empty()) return std::nullopt;
        double x = 0.0;
        if (parsePlainDecimal(cell, x)) return x;
        return otherNumber(field, cell);
    }
    [[gnu::noinline]] double otherNumber(Column field, std::string_view cell) const
    {
        double x = 0.0;
        const design::NumberProblem problem = design::readNumber(cell, x);
        if (problem != design::NumberProblem::None) fail(field, design::numberProblemText(problem, cell));
        return x;
    }
    [[gnu::always_inline]] double requiredNumber(Column field) const
    {
        auto value = number(field);
        if (!value) fail(field, "missing value");
        return *value;
    }
    bool flag(Column field) const { return optionalFlag(field).value_or(false); }
    std::optional<bool> optionalFlag(Column field) const
    {
        const std::string_view value = view(field);
        if (value.empty()) return std::nullopt;
        using namespace std::string_view_literals;
        for (const std::string_view yes : {"true"sv, "yes"sv, "1"sv})
            if (equalsIgnoringCase(value, yes)) return true;
        for (const std::string_view no : {"false"sv, "no"sv, "0"sv})
            if (equalsIgnoringCase(value, no)) return false;
        fail(field, "not a boolean (true/false): '" + std::string(value) + "'");
    }
    // The allowed word the cell spells (in any case), the fallback when the cell is empty.
    std::string_view choice(Column field, std::initializer_list<std::string_view> allowed,
                            std::string_view fallback) const
    {
        const std::string_view value = view(field);
        if (value.empty()) return fallback;
        for (const std::string_view a : allowed)
            if (equalsIgnoringCase(value, a)) return a;
        std::string list;
        for (const std::string_view a : allowed) {
            if (!list.empty()) list += ", ";
            list += a;
        }
        fail(field, "'" + std::string(value) + "' is not one of " + list);
    }
    // A word of choice into text, which mostly holds it already (the row parsed before in this slot).
    static void assign(std::string& text, std::string_view word)
    {
        if (text != word) text.assign(word);
    }
    [[noreturn, gnu::noinline, gnu::cold]] void fail(Column field, const std::string& message) const
    {
        const std::optional<std::string_view>& id = cells_[cId];
        throw RowError{line_, id ? std::string(*id) : std::string(), knownColumns[field], message};
    }

private:
    const CellViews& cells_;
    std::size_t line_;
    const NumberCells* numbers_;
};

// The row of the cells into out. A MemberRow already there is parsed over in place, so that its texts keep
// their memory from chunk to chunk: every field is assigned.
void parseRow(const CellViews& cells, std::size_t line, BatchRow& out, const NumberCells* numbers = nullptr)
{
    const RowReader r(cells, line, numbers);
    if (!std::holds_alternative<MemberRow>(out)) out.emplace<MemberRow>();
    MemberRow& row = std::get<MemberRow>(out);
    try {
        row.line = line;
        r.requiredText(cId, row.id);
        r.requiredText(cSection, row.section);
        r.requiredText(cSteel, row.steel);
        row.N = r.requiredNumber(cN);
        row.My = r.requiredNumber(cMy);
        row.Mz = r.requiredNumber(cMz);
        row.Mt = r.requiredNumber(cMt);
        row.Vy = r.requiredNumber(cVy);
        row.Vz = r.requiredNumber(cVz);
        row.length = r.requiredNumber(cLength);
        if (const char* problem = design::lengthProblem(row.length)) r.fail(cLength, problem);
        row.lengthY = r.number(cLengthY);
        row.lengthZ = r.number(cLengthZ);
        row.lengthLT = r.number(cLengthLT);
        // Each value is read once and then checked, in the order of the columns above.
        if (const char* problem = row.lengthY ? design::lengthProblem(*row.lengthY) : nullptr) r.fail(cLengthY, problem);
        if (const char* problem = row.lengthZ ? design::lengthProblem(*row.lengthZ) : nullptr) r.fail(cLengthZ, problem);
        if (const char* problem = row.lengthLT ? design::lengthProblem(*row.lengthLT) : nullptr) r.fail(cLengthLT, problem);
        row.lengthT = r.number(cLengthT);
        if (const char* problem = row.lengthT ? design::lengthProblem(*row.lengthT) : nullptr) r.fail(cLengthT, problem);
        row.momentsY = {r.number(cMyStart).value_or(row.My), r.number(cMyMid).value_or(row.My),
                        r.number(cMyEnd).value_or(row.My)};
        row.momentsZ = {r.number(cMzStart).value_or(row.Mz), r.number(cMzMid).value_or(row.Mz),
                        r.number(cMzEnd).value_or(row.Mz)};
        RowReader::assign(row.diagramY, r.choice(cDiagramY, {"polygonal", "parabolic"}, "polygonal"));
        RowReader::assign(row.diagramZ, r.choice(cDiagramZ, {"polygonal", "parabolic"}, "polygonal"));
        RowReader::assign(row.loadPoint, r.choice(cLoadPoint, {"center", "top", "bottom"}, "center"));
        row.maxMoment = r.number(cMaxMoment);
        row.mcr = r.number(cMcr);
        row.cTheta = r.number(cCTheta);
        row.shearPanel = r.number(cShearPanel);
        row.gammaM0 = r.number(cGammaM0);
        row.gammaM1 = r.number(cGammaM1);
        if (row.gammaM0 && *row.gammaM0 <= 0.0) r.fail(cGammaM0, "must be positive");
        if (row.gammaM1 && *row.gammaM1 <= 0.0) r.fail(cGammaM1, "must be positive");
        if (row.mcr && *row.mcr < 0.0) r.fail(cMcr, "must not be negative");
        if (row.cTheta && *row.cTheta < 0.0) r.fail(cCTheta, "must not be negative");
        if (row.shearPanel && *row.shearPanel < 0.0) r.fail(cShearPanel, "must not be negative");
        row.rolledMethod = r.optionalFlag(cRolledMethod);
        RowReader::assign(row.mcrMethod, r.choice(cMcrMethod, {"tables", "numerical"}, "tables"));
        if (row.mcr && *row.mcr != 0.0 && row.mcrMethod == "numerical")
            r.fail(cMcrMethod, "numerical computes Mcr; it cannot be combined with a given mcr");
        row.torsionallyDeformable = r.flag(cTorsionallyDeformable);
        row.twistRestrained = r.flag(cTwistRestrained);
        row.cmFloor = r.flag(cCmFloor);
        row.elastic = r.flag(cElastic);
        row.legAxes = r.flag(cLegAxes);
        if (row.legAxes) {
            const auto bent = [](const std::array<double, 3>& m) { return m[0] != 0.0 || m[1] != 0.0 || m[2] != 0.0; };
            if (bent(row.momentsY) && bent(row.momentsZ) && row.diagramY != row.diagramZ)
                r.fail(cLegAxes, "the moment diagrams about y and z must have the same shape to be turned into the "
                                 "principal axes");
            if (row.maxMoment) r.fail(cLegAxes, "maxMoment is about the principal axis u; give the diagrams instead");
        }
    } catch (RowError& e) {
        out = std::move(e);
    }
}

BatchRow parseRow(const CellViews& cells, std::size_t line)
{
    BatchRow row;
    parseRow(cells, line, row);
    return row;
}

// A row given by column name (JSON Lines); every name is a known column.
BatchRow parseRow(const Cells& cells, std::size_t line)
{
    CellViews views;
    for (const auto& [name, value] : cells)
        if (const std::size_t column = columnOf(name); column < columnCount)
            views[column] = value ? std::optional<std::string_view>(*value) : std::nullopt;
    return parseRow(views, line);
}

bool isBlank(std::string_view line) { return trimView(line).empty(); }

// The CSV header: the position of each known column; InputError for a missing required or an unknown
// column.
struct CsvHeader {
    std::size_t fields = 0;
    std::array<std::size_t, columnCount> position{};
    // The column of each field (every column is named once).
    std::vector<std::size_t> columnOfField;
};

// The header of the column names (trimmed) given on line lineNo.
CsvHeader headerOf(const std::vector<std::string>& header, std::size_t lineNo)
{
    for (const char* column : requiredColumns)
        if (std::find(header.begin(), header.end(), column) == header.end())
            throw InputError(std::string("batch: the header (line ") + std::to_string(lineNo) +
                             ") has no column '" + column + "'");
    for (const std::string& column : header)
        if (std::find(std::begin(knownColumns), std::end(knownColumns), column) == std::end(knownColumns))
            throw InputError("batch: unknown column '" + column + "' in the header (line " + std::to_string(lineNo) + ")");
    for (std::size_t i = 0; i < header.size(); ++i)
        if (std::find(header.begin(), header.begin() + static_cast<std::ptrdiff_t>(i), header[i]) !=
            header.begin() + static_cast<std::ptrdiff_t>(i))
            throw InputError("batch: the header (line " + std::to_string(lineNo) + ") names the column '" +
                             header[i] + "' twice");
    CsvHeader h;
    h.fields = header.size();
    h.position.fill(header.size());
    for (std::size_t i = 0; i < header.size(); ++i) h.position[columnOf(header[i])] = i;
    h.columnOfField.assign(header.size(), columnCount);
    for (std::size_t c = 0; c < columnCount; ++c)
        if (h.position[c] < h.fields) h.columnOfField[h.position[c]] = c;
    return h;
}

CsvHeader parseHeader(std::string_view line, std::size_t lineNo) { return headerOf(splitCsv(std::string(line)), lineNo); }

// The cells of a CSV record without quotes, trimmed, straight into their columns; the number of fields
// and the first one. False when the line holds a quote (splitCsv then takes it apart).
bool splitPlainCsvCells(std::string_view line, const CsvHeader& header, CellViews& cells, std::size_t& fields,
                        std::string_view& first)
{
    if (line.find('"') != std::string_view::npos) return false;
    const std::size_t known = header.columnOfField.size();
    std::size_t field = 0, start = 0;
    const std::size_t n = line.size();
    for (std::size_t i = 0;; ++i) {
        if (i < n && line[i] != ',') continue;
        const std::string_view cell = trimView(line.substr(start, i - start));
        if (field == 0) first = cell;
        if (field < known && header.columnOfField[field] < columnCount) cells[header.columnOfField[field]] = cell;
        ++field;
        if (i >= n) break;
        start = i + 1;
    }
    fields = field;
    return true;
}

void parseCsvLine(std::string_view line, std::size_t number, const CsvHeader& header,
                  std::vector<std::string_view>& fields, std::vector<std::string>& quotedFields, BatchRow& out)
{
    CellViews cells;
    std::size_t count = 0;
    std::string_view first;
    if (!splitPlainCsvCells(line, header, cells, count, first)) {
        quotedFields = splitCsv(std::string(line));
        fields.assign(quotedFields.begin(), quotedFields.end());
        count = fields.size();
        first = fields.empty() ? std::string_view() : fields[0];
        if (count == header.fields)
            for (std::size_t c = 0; c < columnCount; ++c)
                if (header.position[c] < header.fields) cells[c] = fields[header.position[c]];
    }
    if (count != header.fields) {
        out = RowError{number, std::string(first), "",
                       "expected " + std::to_string(header.fields) + " fields, found " + std::to_string(count)};
        return;
    }
    parseRow(cells, number, out);
}

// The columns whose JSON numbers are read as numbers (the others take a number's text).
bool isNumberColumn(std::size_t column)
{
    switch (column) {
    case cId: case cSection: case cSteel: case cDiagramY: case cDiagramZ: case cLoadPoint: case cRolledMethod:
    case cTorsionallyDeformable: case cCmFloor: case cElastic: case cMcrMethod: case cTwistRestrained: case cLegAxes:
        return false;
    default:
        return true;
    }
}

// The common row of JSON Lines read without building a document: one flat object whose keys are known
// columns, each once; values that are strings of printable ASCII without escapes, plain decimals of at
// most 15 digits in number columns (not "-0"), true, false or null. Such a row gives the cells that the
// document would give (a number's text converts to the same double), so it is parsed directly; any other
// line (escapes, other characters, exponents, nested values, unknown or repeated keys, errors) returns
// false and goes through the document, which decides what it means.
bool parsePlainJsonObject(std::string_view line, CellViews& cells)
{
    std::size_t i = 0;
    const std::size_t n = line.size();
    auto blanks = [&] {
        while (i < n && (line[i] == ' ' || line[i] == '\t' || line[i] == '\n' || line[i] == '\r')) ++i;
    };
    // A string without escapes and of printable ASCII, as a view without its quotes.
    auto string = [&](std::string_view& out) {
        if (i >= n || line[i] != '"') return false;
        const std::size_t start = ++i;
        while (i < n && line[i] != '"') {
            const auto c = static_cast<unsigned char>(line[i]);
            if (c < 0x20 || c >= 0x7f || c == '\\') return false;
            ++i;
        }
        if (i >= n) return false;
        out = line.substr(start, i - start);
        ++i;
        return true;
    };
    auto literal = [&](std::string_view word) {
        if (line.substr(i, word.size()) != word) return false;
        i += word.size();
        return true;
    };
    std::array<bool, columnCount> seen{};
    blanks();
    if (i >= n || line[i] != '{') return false;
    ++i;
    blanks();
    for (;;) {
        std::string_view key;
        if (!string(key)) return false;
        const std::size_t column = columnOf(key);
        if (column == columnCount || seen[column]) return false;
        seen[column] = true;
        blanks();
        if (i >= n || line[i] != ':') return false;
        ++i;
        blanks();
        if (i >= n) return false;
        const char c = line[i];
        if (c == '"') {
            std::string_view text;
            if (!string(text)) return false;
            cells[column] = text;
        } else if (c == 't' || c == 'f') {
            if (!literal(c == 't' ? "true" : "false")) return false;
            cells[column] = c == 't' ? std::string_view("true") : std::string_view("false");
        } else if (c == 'n') {
            if (!literal("null")) return false;
            cells[column] = std::nullopt;
        } else if (c == '-' || (c >= '0' && c <= '9')) {
            if (!isNumberColumn(column)) return false;
            const std::size_t start = i;
            if (line[i] == '-') ++i;
            const std::size_t wholeStart = i;
            while (i < n && line[i] >= '0' && line[i] <= '9') ++i;
            const std::size_t whole = i - wholeStart;
            if (whole == 0 || (whole > 1 && line[wholeStart] == '0')) return false;
            std::size_t digits = whole;
            bool fraction = false;
            if (i < n && line[i] == '.') {
                fraction = true;
                const std::size_t fractionStart = ++i;
                while (i < n && line[i] >= '0' && line[i] <= '9') ++i;
                if (i == fractionStart) return false;
                digits += i - fractionStart;
            }
            if (digits > 15 || (i < n && (line[i] == 'e' || line[i] == 'E'))) return false;
            const std::string_view number = line.substr(start, i - start);
            if (!fraction && number == "-0") return false;  // the document reads it as the integer 0
            cells[column] = number;
        } else {
            return false;
        }
        blanks();
        if (i >= n) return false;
        if (line[i] == ',') {
            ++i;
            blanks();
            continue;
        }
        if (line[i] != '}') return false;
        ++i;
        blanks();
        return i == n;
    }
}

BatchRow parseJsonDocument(const std::string& line, std::size_t lineNo);

void parseJsonLine(const std::string& line, std::size_t lineNo, BatchRow& out)
{
    CellViews plain;
    if (parsePlainJsonObject(line, plain)) return parseRow(plain, lineNo, out);
    out = parseJsonDocument(line, lineNo);
}

// A line that is not the common plain object: through the document.
BatchRow parseJsonDocument(const std::string& line, std::size_t lineNo)
{
    nlohmann::json object;
    // The keys of the row's object (depth 1), to find one given twice: the document would keep only the
    // last of them.
    std::vector<std::string> keys;
    std::string twice;
    const auto watchKeys = [&](int depth, nlohmann::json::parse_event_t event, nlohmann::json& parsed) {
        if (event == nlohmann::json::parse_event_t::key && depth == 1 && twice.empty()) {
            const std::string& key = parsed.get_ref<const std::string&>();
            if (std::find(keys.begin(), keys.end(), key) != keys.end()) twice = key;
            else keys.push_back(key);
        }
        return true;
    };
    try {
        object = nlohmann::json::parse(line, watchKeys);
        if (!twice.empty()) {
            const auto id = object.is_object() ? object.find("id") : object.end();
            RowError e{lineNo, id != object.end() && id->is_string() ? id->get<std::string>() : std::string(), twice,
                       "the key '" + twice + "' is given twice"};
            e.fatal = true;
            return e;
        }
    } catch (const nlohmann::json::parse_error&) {
        return RowError{lineNo, "", "", "not a JSON object"};
    } catch (const nlohmann::json::out_of_range&) {  // 1e400
        return RowError{lineNo, "", "", "a number outside the range of a double"};
    }
    if (!object.is_object()) return RowError{lineNo, "", "", "not a JSON object"};
    Cells cells;
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (std::find(std::begin(knownColumns), std::end(knownColumns), it.key()) == std::end(knownColumns)) {
            const auto id = object.find("id");
            return RowError{lineNo, id != object.end() && id->is_string() ? id->get<std::string>() : std::string(),
                            it.key(), "unknown field"};
        }
        const nlohmann::json& v = it.value();
        if (v.is_null())
            cells[it.key()] = std::nullopt;
        else if (v.is_string())
            cells[it.key()] = v.get<std::string>();
        else if (v.is_boolean())
            cells[it.key()] = v.get<bool>() ? "true" : "false";
        else if (v.is_number())
            cells[it.key()] = v.dump();  // exact round trip of the number
        else
            cells[it.key()] = "<" + std::string(v.type_name()) + ">";
    }
    return parseRow(cells, lineNo);
}

} // namespace

void stopOnFatal(const BatchRow& row)
{
    const auto* e = std::get_if<RowError>(&row);
    if (e && e->fatal) throw InputError("batch: line " + std::to_string(e->line) + ": " + e->message);
}

ColumnLayout::ColumnLayout(const std::vector<std::string>& names)
{
    std::vector<std::string> trimmed;
    trimmed.reserve(names.size());
    for (const std::string& name : names) trimmed.push_back(trim(name));
    columnOfField_ = headerOf(trimmed, 1).columnOfField;
}

ColumnLayout::~ColumnLayout() = default;

std::size_t ColumnLayout::size() const { return columnOfField_.size(); }

bool ColumnLayout::isNumber(std::size_t i) const { return isNumberColumn(columnOfField_[i]); }

void ColumnLayout::parse(const InputCell* cells, std::size_t row, BatchRow& out) const
{
    CellViews views;
    NumberCells numbers;
    for (std::size_t i = 0; i < columnOfField_.size(); ++i) {
        const std::size_t column = columnOfField_[i];
        const InputCell& cell = cells[i];
        if (cell.kind == InputCell::Kind::Text) {
            views[column] = trimView(cell.text);
        } else if (cell.kind == InputCell::Kind::Number && isNumberColumn(column)) {
            numbers.value[column] = cell.number;
            numbers.given[column] = true;
        }
    }
    parseRow(views, row + 2, out, &numbers);
}

BatchFormat formatOf(const std::string& fileName)
{
    const std::string name = lower(fileName);
    for (const char* ext : {".jsonl", ".json", ".ndjson"}) {
        const std::string e(ext);
        if (name.size() >= e.size() && name.compare(name.size() - e.size(), e.size(), e) == 0)
            return BatchFormat::JsonLines;
    }
    return BatchFormat::Csv;
}

struct BatchReader::Impl {
    std::istream& in;
    BatchFormat format = BatchFormat::Csv;
    unsigned jobs = 0;
    std::size_t lineNo = 0;
    CsvHeader header;
    bool first = true;          // the next line read is the input's first: a byte-order mark is dropped
    std::string pending;        // a data line read ahead (the first JSON line), with its number
    std::size_t pendingLine = 0;
    Lines lines;  // the chunk's data lines, reused

    Impl(std::istream& stream, unsigned threads) : in(stream), jobs(threads) {}

    // The next line into line, without its end; false at the end of the input. A line longer than
    // maxLineBytes is InputError naming it, read no further: memory stays bounded whatever the input (an
    // endless line, /dev/zero).
    bool readLine(std::string& line)
    {
        line.clear();
        bool any = false;
        char buffer[4096];
        for (;;) {
            in.getline(buffer, sizeof buffer);
            const std::streamsize got = in.gcount();
            any = any || got > 0;
            if (!in.fail()) {  // the whole rest of the line, its end extracted (and counted in got)
                line.append(buffer, static_cast<std::size_t>(got > 0 && !in.eof() ? got - 1 : got));
                break;
            }
            if (in.eof()) {  // the last line, without an end
                line.append(buffer, static_cast<std::size_t>(got));
                break;
            }
            // The buffer filled before the line's end: go on reading the same line.
            line.append(buffer, static_cast<std::size_t>(got));
            in.clear();
            if (line.size() > maxLineBytes) break;
        }
        if (line.size() > maxLineBytes)
            throw InputError("batch: line " + std::to_string(lineNo + 1) + " is longer than " +
                             std::to_string(maxLineBytes) + " bytes (1 MiB), the most a row may hold");
        if (!any) return false;
        ++lineNo;
        if (first) {
            first = false;
            if (line.size() >= 3 && line.compare(0, 3, "\xEF\xBB\xBF") == 0) line.erase(0, 3);
        }
        if (!line.empty() && line.back() == '\r') line.pop_back();
        return true;
    }
};

BatchReader::BatchReader(std::istream& in, std::optional<BatchFormat> format, unsigned jobs)
    : impl_(std::make_unique<Impl>(in, jobs))
{
    std::string line;
    while (impl_->readLine(line))
        if (!isBlank(line)) break;
    const bool empty = isBlank(line);
    const bool json = !empty && trimView(line).front() == '{';
    impl_->format = format ? *format : (json ? BatchFormat::JsonLines : BatchFormat::Csv);
    if (impl_->format == BatchFormat::Csv) {
        if (empty) throw InputError("batch: the file is empty (a CSV header row is expected)");
        impl_->header = parseHeader(line, impl_->lineNo);
    } else if (!empty) {
        impl_->pending = line;
        impl_->pendingLine = impl_->lineNo;
    }
}

BatchReader::~BatchReader() = default;

BatchFormat BatchReader::format() const { return impl_->format; }

bool BatchReader::readLines(Lines& lines, std::size_t maxRows, std::size_t maxBytes)
{
    Impl& r = *impl_;
    std::size_t count = 0;
    if (lines.text.size() < maxRows) lines.text.resize(maxRows);
    if (lines.numbers.size() < maxRows) lines.numbers.resize(maxRows);
    if (!r.pending.empty() && count < maxRows) {
        lines.text[count].swap(r.pending);
        r.pending.clear();
        lines.numbers[count++] = r.pendingLine;
    }
    std::size_t bytes = count > 0 ? lines.text[0].size() : 0;
    for (;;) {
        if (count == maxRows || bytes >= maxBytes) break;
        std::string& slot = lines.text[count];
        // A slot that held a long line gives its memory back, so that long lines of earlier chunks do not
        // pile up across the slots.
        if (slot.capacity() > 65536) std::string().swap(slot);
        if (!r.readLine(slot)) break;
        if (isBlank(slot)) continue;
        bytes += slot.size();
        lines.numbers[count++] = r.lineNo;
    }
    lines.count = count;
    lines.bytes = bytes;
    return count > 0;
}

void BatchReader::parseLine(const Lines& lines, std::size_t i, BatchRow& row) const
{
    const Impl& r = *impl_;
    if (r.format == BatchFormat::Csv) {
        // The fields of a line, kept per thread from line to line.
        thread_local std::vector<std::string_view> fields;
        thread_local std::vector<std::string> quotedFields;
        parseCsvLine(lines.text[i], lines.numbers[i], r.header, fields, quotedFields, row);
    } else {
        parseJsonLine(lines.text[i], lines.numbers[i], row);
    }
}

bool BatchReader::next(std::vector<BatchRow>& rows, std::size_t maxRows)
{
    Impl& r = *impl_;
    const bool any = readLines(r.lines, maxRows);
    const std::size_t count = r.lines.count;
    rows.resize(count);
    if (!any) return false;
    // The chunk's rows are parsed on every core, each into its own slot.
    forEachChunk(count, 2048, r.jobs, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) parseLine(r.lines, i, rows[i]);
    });
    for (const BatchRow& row : rows) stopOnFatal(row);
    return true;
}

std::vector<BatchRow> readBatch(std::istream& in, BatchFormat format)
{
    BatchReader reader(in, format);
    std::vector<BatchRow> all, chunk;
    while (reader.next(chunk, 65536)) std::move(chunk.begin(), chunk.end(), std::back_inserter(all));
    return all;
}

} // namespace batch
