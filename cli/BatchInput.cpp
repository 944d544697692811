#include "BatchInput.h"

#include "Options.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <functional>
#include <map>

namespace cli {

namespace {

const char* const requiredColumns[] = {"id", "section", "steel", "N", "My", "Mz", "Mt", "Vy", "Vz", "length"};
const char* const knownColumns[] = {"id",       "section",  "steel",      "N",          "My",
                                    "Mz",       "Mt",       "Vy",         "Vz",         "length",
                                    "MyStart",  "MyMid",    "MyEnd",      "diagramY",   "MzStart",
                                    "MzMid",    "MzEnd",    "diagramZ",   "loadPoint",  "maxMoment",
                                    "mcr",      "cTheta",   "shearPanel", "gammaM0",    "gammaM1",
                                    "rolledMethod", "torsionallyDeformable", "cmFloor", "elastic"};

std::string trim(std::string_view s)
{
    std::size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a]))) ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1]))) --b;
    return std::string(s.substr(a, b - a));
}

std::string lower(std::string s)
{
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
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

class RowReader {
public:
    RowReader(const Cells& cells, std::size_t line) : cells_(cells), line_(line) {}

    std::optional<std::string> text(const char* field) const
    {
        auto it = cells_.find(field);
        if (it == cells_.end() || !it->second || it->second->empty()) return std::nullopt;
        return it->second;
    }
    std::string requiredText(const char* field) const
    {
        auto value = text(field);
        if (!value) fail(field, "missing value");
        return *value;
    }
    std::optional<double> number(const char* field) const
    {
        auto value = text(field);
        if (!value) return std::nullopt;
        double x = 0.0;
        const char* begin = value->data();
        const char* end = begin + value->size();
        auto [ptr, ec] = std::from_chars(begin, end, x);
        if (ec != std::errc() || ptr != end) fail(field, "not a number: '" + *value + "'");
        if (!std::isfinite(x)) fail(field, "not a finite number: '" + *value + "'");
        return x;
    }
    double requiredNumber(const char* field) const
    {
        auto value = number(field);
        if (!value) fail(field, "missing value");
        return *value;
    }
    bool flag(const char* field) const
    {
        auto value = text(field);
        if (!value) return false;
        const std::string v = lower(*value);
        if (v == "true" || v == "yes" || v == "1") return true;
        if (v == "false" || v == "no" || v == "0") return false;
        fail(field, "not a boolean (true/false): '" + *value + "'");
    }
    std::string choice(const char* field, std::initializer_list<const char*> allowed, const char* fallback) const
    {
        auto value = text(field);
        if (!value) return fallback;
        const std::string v = lower(*value);
        for (const char* a : allowed)
            if (v == a) return v;
        std::string list;
        for (const char* a : allowed) list += (list.empty() ? "" : ", ") + std::string(a);
        fail(field, "'" + *value + "' is not one of " + list);
    }
    [[noreturn]] void fail(const char* field, const std::string& message) const
    {
        throw RowError{line_, cells_.count("id") && cells_.at("id") ? *cells_.at("id") : std::string(), field, message};
    }

private:
    const Cells& cells_;
    std::size_t line_;
};

BatchRow parseRow(const Cells& cells, std::size_t line)
{
    const RowReader r(cells, line);
    try {
        MemberRow row;
        row.line = line;
        row.id = r.requiredText("id");
        row.section = r.requiredText("section");
        row.steel = r.requiredText("steel");
        row.N = r.requiredNumber("N");
        row.My = r.requiredNumber("My");
        row.Mz = r.requiredNumber("Mz");
        row.Mt = r.requiredNumber("Mt");
        row.Vy = r.requiredNumber("Vy");
        row.Vz = r.requiredNumber("Vz");
        row.length = r.requiredNumber("length");
        if (row.length < 0.0) r.fail("length", "must not be negative");
        row.momentsY = {r.number("MyStart").value_or(row.My), r.number("MyMid").value_or(row.My),
                        r.number("MyEnd").value_or(row.My)};
        row.momentsZ = {r.number("MzStart").value_or(row.Mz), r.number("MzMid").value_or(row.Mz),
                        r.number("MzEnd").value_or(row.Mz)};
        row.diagramY = r.choice("diagramY", {"polygonal", "parabolic"}, "polygonal");
        row.diagramZ = r.choice("diagramZ", {"polygonal", "parabolic"}, "polygonal");
        row.loadPoint = r.choice("loadPoint", {"center", "top", "bottom"}, "center");
        row.maxMoment = r.number("maxMoment");
        row.mcr = r.number("mcr");
        row.cTheta = r.number("cTheta");
        row.shearPanel = r.number("shearPanel");
        row.gammaM0 = r.number("gammaM0");
        row.gammaM1 = r.number("gammaM1");
        for (const char* field : {"gammaM0", "gammaM1"})
            if (auto g = r.number(field); g && *g <= 0.0) r.fail(field, "must be positive");
        for (const char* field : {"mcr", "cTheta", "shearPanel"})
            if (auto v = r.number(field); v && *v < 0.0) r.fail(field, "must not be negative");
        row.rolledMethod = r.flag("rolledMethod");
        row.torsionallyDeformable = r.flag("torsionallyDeformable");
        row.cmFloor = r.flag("cmFloor");
        row.elastic = r.flag("elastic");
        return row;
    } catch (const RowError& e) {
        return e;
    }
}

bool isBlank(const std::string& line) { return trim(line).empty(); }

std::vector<BatchRow> readCsv(std::istream& in)
{
    std::string line;
    std::size_t lineNo = 0;
    std::vector<std::string> header;
    while (std::getline(in, line)) {
        ++lineNo;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!isBlank(line)) {
            header = splitCsv(line);
            break;
        }
    }
    if (header.empty()) throw InputError("batch: the file is empty (a CSV header row is expected)");
    for (const char* column : requiredColumns)
        if (std::find(header.begin(), header.end(), column) == header.end())
            throw InputError(std::string("batch: the header (line ") + std::to_string(lineNo) +
                             ") has no column '" + column + "'");
    for (const std::string& column : header)
        if (std::find(std::begin(knownColumns), std::end(knownColumns), column) == std::end(knownColumns))
            throw InputError("batch: unknown column '" + column + "' in the header (line " + std::to_string(lineNo) + ")");

    std::vector<BatchRow> rows;
    while (std::getline(in, line)) {
        ++lineNo;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (isBlank(line)) continue;
        const std::vector<std::string> fields = splitCsv(line);
        if (fields.size() != header.size()) {
            Cells idOnly;
            if (!fields.empty()) idOnly["id"] = fields[0];
            rows.emplace_back(RowError{lineNo, fields.empty() ? "" : fields[0], "",
                                       "expected " + std::to_string(header.size()) + " fields, found " +
                                           std::to_string(fields.size())});
            continue;
        }
        Cells cells;
        for (std::size_t i = 0; i < header.size(); ++i) cells[header[i]] = fields[i];
        rows.push_back(parseRow(cells, lineNo));
    }
    return rows;
}

std::vector<BatchRow> readJsonLines(std::istream& in)
{
    std::vector<BatchRow> rows;
    std::string line;
    std::size_t lineNo = 0;
    while (std::getline(in, line)) {
        ++lineNo;
        if (isBlank(line)) continue;
        nlohmann::json object;
        try {
            object = nlohmann::json::parse(line);
        } catch (const nlohmann::json::parse_error&) {
            rows.emplace_back(RowError{lineNo, "", "", "not a JSON object"});
            continue;
        }
        if (!object.is_object()) {
            rows.emplace_back(RowError{lineNo, "", "", "not a JSON object"});
            continue;
        }
        Cells cells;
        std::string unknown;
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (std::find(std::begin(knownColumns), std::end(knownColumns), it.key()) == std::end(knownColumns)) {
                unknown = it.key();
                break;
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
        if (!unknown.empty()) {
            rows.emplace_back(RowError{lineNo, object.value("id", std::string()), unknown, "unknown field"});
            continue;
        }
        rows.push_back(parseRow(cells, lineNo));
    }
    return rows;
}

} // namespace

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

std::vector<BatchRow> readBatch(std::istream& in, BatchFormat format)
{
    return format == BatchFormat::Csv ? readCsv(in) : readJsonLines(in);
}

} // namespace cli
