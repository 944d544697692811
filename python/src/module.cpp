// The compiled part of the Python module: sections, the cross-section and member checks as the command's
// JSON documents (converted to Python objects), and whole frames of batch rows evaluated by the batch's
// own code with the GIL released.

#include <batch/BatchInput.h>
#include <batch/BatchRun.h>
#include <batch/Parallel.h>
#include <report/CommandLine.h>
#include <report/HtmlReport.h>
#include <report/ResultJson.h>

#include <design/DesignBasis.h>
#include <design/InputError.h>
#include <design/NumberInput.h>
#include <design/MemberInput.h>
#include <design/Rules.h>
#include <design/SectionNotation.h>

#include <design/CrossSectionCheck.h>
#include <design/Departures.h>
#include <design/MemberCheck.h>

#include <KaMaterial.h>
#include <SDBSection.h>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <deque>
#include <cmath>
#include <memory>
#include <optional>
#include <type_traits>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace py = pybind11;

namespace {

// A JSON document as Python objects: objects as dicts (in the document's key order), arrays as lists.
py::object toPython(const nlohmann::json& j)
{
    switch (j.type()) {
    case nlohmann::json::value_t::null: return py::none();
    case nlohmann::json::value_t::boolean: return py::bool_(j.get<bool>());
    case nlohmann::json::value_t::number_integer: return py::int_(j.get<std::int64_t>());
    case nlohmann::json::value_t::number_unsigned: return py::int_(j.get<std::uint64_t>());
    case nlohmann::json::value_t::number_float: return py::float_(j.get<double>());
    case nlohmann::json::value_t::string: return py::str(j.get_ref<const std::string&>());
    case nlohmann::json::value_t::array: {
        py::list list;
        for (const auto& item : j) list.append(toPython(item));
        return list;
    }
    case nlohmann::json::value_t::object: {
        py::dict dict;
        for (auto it = j.begin(); it != j.end(); ++it) dict[py::str(it.key())] = toPython(it.value());
        return dict;
    }
    default: return py::none();
    }
}

// A number given by the caller must be finite; ValueError naming the argument otherwise.
double finite(const char* name, double value)
{
    if (!std::isfinite(value)) throw py::value_error(std::string(name) + ": not a finite number: " + std::to_string(value));
    return value;
}

std::optional<double> finite(const char* name, const std::optional<double>& value)
{
    if (value) finite(name, *value);
    return value;
}

design::ForceInput forcesOf(double N, double My, double Mz, double Mt, double Vy, double Vz)
{
    design::ForceInput f;
    f.N = finite("N", N);
    f.My = finite("My", My);
    f.Mz = finite("Mz", Mz);
    f.Mt = finite("Mt", Mt);
    f.Vy = finite("Vy", Vy);
    f.Vz = finite("Vz", Vz);
    return f;
}

py::object section(const std::string& name) { return toPython(report::sectionJson(*design::resolveSection(name))); }

// A section by the name the caller gave, kept per thread for the few names met last: a loop of checks
// names the same handful (a section is never changed by a check).
std::shared_ptr<SDBSection> sectionNamed(const std::string& name)
{
    thread_local std::deque<std::pair<std::string, std::shared_ptr<SDBSection>>> recent;
    for (const auto& [known, section] : recent)
        if (known == name) return section;
    std::shared_ptr<SDBSection> section = design::resolveSection(name);
    if (recent.size() >= 16) recent.pop_back();
    recent.emplace_front(name, section);
    return section;
}

// What a check or member result shares: its section, steel, standard and rules, the headline read on
// demand (report::ResultSummary) and the JSON document made once, when asked.
struct ResultCore {
    ResultCore(std::shared_ptr<SDBSection> s, KaConstrSteel grade, std::string m, std::string sit, design::Rules r)
        : section(std::move(s)), steel(std::move(grade)), mode(std::move(m)), situation(std::move(sit)), rules(r)
    {
    }
    std::shared_ptr<SDBSection> section;
    KaConstrSteel steel;
    std::string mode, situation;
    design::Rules rules;
    report::ResultSummary summary;
    py::object document;
    batch::MemberRow row;  // the call as a batch row: the command that reproduces it on the report

    py::object optionalNumber(const std::optional<double>& v) const { return v ? py::object(py::float_(*v)) : py::none(); }
    py::object optionalText(const std::optional<std::string>& v) const { return v ? py::object(py::str(*v)) : py::none(); }
    py::dict utilizations() const
    {
        py::dict out;
        for (const auto& [name, value] : summary.utilizations) out[py::str(name)] = optionalNumber(value);
        return out;
    }
};

// A check's result (Request, Outcome: the cross-section's or the member's); the document of its --json
// (json: report::checkJson or memberJson) made on the first to_dict(), under the result's own standard.
template <class Request, class Outcome, auto json>
struct Result : ResultCore {
    using ResultCore::ResultCore;
    Request request{};
    std::optional<Outcome> outcome;

    // The design report of this result, as `check --html` / `member --html` write it.
    std::string toHtml(const report::TitleBlock& block)
    {
        design::applyStandard(mode, situation);
        report::ReportHeader header;
        header.rules = rules;
        header.block = block;
        header.mode = mode;
        header.situation = situation;
        header.model = report::commandOfRow(row, mode, situation, rules);
        if constexpr (std::is_same_v<Request, design::MemberRequest>) {
            const design::CrossSectionRequest cross{nullptr, nullptr, request.forces, 0.0, request.elastic};
            return report::memberReportHtml(header, section, steel, cross, request);
        } else {
            return report::memberReportHtml(header, section, steel, request, std::nullopt);
        }
    }

    py::object toDict()
    {
        if (!document) {
            design::applyStandard(mode, situation);
            document = toPython(json(*section, steel, request, *outcome, design::findDepartures(request, *outcome), rules));
        }
        return document;
    }
};

nlohmann::json checkDocument(const SDBSection& s, const KaConstrSteel& steel, const design::CrossSectionRequest& r,
                             const design::CrossSectionOutcome& o, const design::Departures& d, design::Rules rules)
{
    return report::checkJson(s, steel, r, o, d, rules);
}

nlohmann::json memberDocument(const SDBSection& s, const KaConstrSteel& steel, const design::MemberRequest& r,
                              const design::MemberOutcome& o, const design::Departures& d, design::Rules rules)
{
    return report::memberJson(s, steel, r, o, d, rules);
}

using CheckResult = Result<design::CrossSectionRequest, design::CrossSectionOutcome, checkDocument>;
using MemberResult = Result<design::MemberRequest, design::MemberOutcome, memberDocument>;

std::unique_ptr<CheckResult> check(const std::string& name, const std::string& steelGrade, double N, double My,
                                   double Mz, double Mt, double Vy, double Vz, bool legAxes, std::optional<double> gammaM0,
                                   bool elastic, const std::string& mode, const std::string& situation,
                                   const std::string& rulesName)
{
    auto r = std::make_unique<CheckResult>(sectionNamed(name), design::steelByName(steelGrade), mode, situation,
                                           design::rulesByName(rulesName));
    design::applyStandard(mode, situation);
    if (gammaM0 && !(finite("gamma_m0", *gammaM0) > 0.0))
        throw py::value_error("gamma_m0: must be positive, got " + design::shortestText(*gammaM0));
    design::ForceInput forces = forcesOf(N, My, Mz, Mt, Vy, Vz);
    forces.legAxes = legAxes;
    r->request = design::CrossSectionRequest{r->section.get(), &r->steel, forces.toForces(*r->section),
                                             gammaM0.value_or(0.0), elastic};
    r->row.section = name;
    r->row.steel = steelGrade;
    r->row.N = N, r->row.My = My, r->row.Mz = Mz, r->row.Mt = Mt, r->row.Vy = Vy, r->row.Vz = Vz;
    r->row.legAxes = legAxes;
    r->row.gammaM0 = gammaM0;
    r->row.elastic = elastic;
    r->outcome.emplace(design::evaluateCrossSection(r->request));
    r->summary = report::checkSummary(r->request, *r->outcome, r->rules);
    return r;
}

std::string momentsText(const char* name, const std::optional<std::vector<double>>& values)
{
    if (!values) return {};
    if (values->size() != 3)
        throw py::value_error(std::string(name) + ": three moments (start, middle, end) in kNm are needed, got " +
                              std::to_string(values->size()));
    std::string text;
    for (double v : *values) {
        if (!text.empty()) text += ',';
        text += design::shortestText(finite(name, v));
    }
    return text;
}

std::unique_ptr<MemberResult> member(const std::string& name, const std::string& steelGrade, double N, double My, double Mz, double Mt,
                  double Vy, double Vz, bool legAxes, std::optional<double> length, std::optional<double> lcrY,
                  std::optional<double> lcrZ, std::optional<double> lLT, std::optional<double> lcrT, double gammaM1,
                  const std::optional<std::vector<double>>& momentsY, const std::string& diagramY,
                  const std::optional<std::vector<double>>& momentsZ, const std::string& diagramZ,
                  std::optional<double> maxMoment, const std::string& loadPoint, double mcr, double cTheta,
                  double shearPanel, std::optional<bool> rolledMethod, const std::string& mcrMethod,
                  bool torsionallyDeformable, bool twistRestrained, bool cmFloor, const std::string& mode,
                  const std::string& situation, const std::string& rulesName)
{
    auto r = std::make_unique<MemberResult>(sectionNamed(name), design::steelByName(steelGrade), mode, situation,
                                            design::rulesByName(rulesName));
    design::MemberInput o;
    o.forces = forcesOf(N, My, Mz, Mt, Vy, Vz);
    o.forces.legAxes = legAxes;
    o.standard = design::StandardInput{mode, situation};
    o.length = finite("length", length);
    o.lengthY = finite("lcr_y", lcrY);
    o.lengthZ = finite("lcr_z", lcrZ);
    o.lengthLT = finite("l_lt", lLT);
    o.lengthT = finite("lcr_t", lcrT);
    if (o.lengthT && *o.lengthT < 0.0) throw py::value_error("lcr_t: must not be negative, got " + design::shortestText(*o.lengthT));
    o.gammaM1 = finite("gamma_m1", gammaM1);
    o.momentsY = momentsText("moments_y", momentsY);
    o.momentsZ = momentsText("moments_z", momentsZ);
    o.diagramY = diagramY;
    o.diagramZ = diagramZ;
    o.maxMoment = finite("max_moment", maxMoment);
    o.loadPoint = loadPoint;
    o.mcr = finite("mcr", mcr);
    o.cTheta = finite("c_theta", cTheta);
    o.shearPanel = finite("shear_panel", shearPanel);
    o.rolledMethod = rolledMethod.value_or(false);
    o.generalMethod = rolledMethod.has_value() && !*rolledMethod;
    o.mcrMethod = mcrMethod;
    o.torsionallyDeformable = torsionallyDeformable;
    o.twistRestrained = twistRestrained;
    o.cmFloor = cmFloor;
    if (!o.memberChecked())
        throw py::value_error("length: a positive buckling length is needed (length, or lcr_y / lcr_z / l_lt)");
    r->request = o.toRequest(r->section.get(), &r->steel);
    batch::MemberRow& row = r->row;
    row.section = name;
    row.steel = steelGrade;
    row.N = N, row.My = My, row.Mz = Mz, row.Mt = Mt, row.Vy = Vy, row.Vz = Vz;
    row.legAxes = legAxes;
    row.length = length.value_or(0.0);
    row.lengthY = lcrY, row.lengthZ = lcrZ, row.lengthLT = lLT, row.lengthT = lcrT;
    row.momentsY = momentsY ? std::array<double, 3>{(*momentsY)[0], (*momentsY)[1], (*momentsY)[2]}
                            : std::array<double, 3>{My, My, My};
    row.momentsZ = momentsZ ? std::array<double, 3>{(*momentsZ)[0], (*momentsZ)[1], (*momentsZ)[2]}
                            : std::array<double, 3>{Mz, Mz, Mz};
    row.diagramY = diagramY, row.diagramZ = diagramZ, row.loadPoint = loadPoint;
    row.maxMoment = maxMoment;
    if (mcr != 0.0) row.mcr = mcr;
    if (cTheta != 0.0) row.cTheta = cTheta;
    if (shearPanel != 0.0) row.shearPanel = shearPanel;
    row.gammaM1 = gammaM1;
    row.rolledMethod = rolledMethod;
    row.mcrMethod = mcrMethod;
    row.torsionallyDeformable = torsionallyDeformable, row.twistRestrained = twistRestrained, row.cmFloor = cmFloor;
    r->outcome.emplace(design::evaluateMember(r->request));
    r->summary = report::memberSummary(r->request, *r->outcome, r->rules);
    return r;
}

// Pairs (x, value) as "x:value,x:value" (or one pair per item of the list).
std::string pairsText(const char* name, const std::vector<std::pair<double, double>>& pairs)
{
    std::string text;
    for (const auto& [x, v] : pairs) {
        if (!text.empty()) text += ',';
        text += design::shortestText(finite(name, x));
        text += ':';
        text += design::shortestText(finite(name, v));
    }
    return text;
}

py::object mcr(const std::string& name, double length, const std::optional<std::vector<double>>& momentsY,
               const std::string& diagramY, const std::vector<std::pair<double, double>>& stations, double uniformLoad,
               const std::vector<std::pair<double, double>>& pointLoads, const std::vector<std::string>& lateralRestraints,
               const std::vector<double>& torsionalRestraints, const py::object& loadHeight, const std::string& start,
               const std::string& end, double cTheta, int elements)
{
    design::McrOptions o;
    o.name = name;
    o.length = finite("length", length);
    o.momentsY = momentsText("moments_y", momentsY);
    o.diagramY = diagramY;
    o.stations = pairsText("stations", stations);
    o.q = finite("uniform_load", uniformLoad);
    for (const auto& load : pointLoads) o.pointLoads.push_back(pairsText("point_loads", {load}));
    o.lateralRestraints = lateralRestraints;
    for (double x : torsionalRestraints) o.torsionalRestraints.push_back(finite("torsional_restraints", x));
    o.loadHeight = py::isinstance<py::str>(loadHeight) ? loadHeight.cast<std::string>()
                                                       : design::shortestText(finite("load_height", loadHeight.cast<double>()));
    o.start = start;
    o.end = end;
    o.cTheta = finite("c_theta", cTheta);
    o.elements = elements;
    return toPython(report::mcrJson(o));
}

// One column read in C++ from its NumPy array, each cell handed to the batch's row parser as the cell of
// the CSV holding it: numbers as numbers where the column reads numbers, else as their shortest text
// (NaN: empty), booleans as true/false, objects by their kind (None and NaN: empty).
class Column {
public:
    Column(std::string name, const py::handle& values, std::size_t rows) : name_(std::move(name))
    {
        const py::array array = py::array::ensure(values);
        if (!array) throw py::value_error(name_ + ": not a column of values");
        if (static_cast<std::size_t>(array.size()) != rows || array.ndim() != 1)
            throw py::value_error(name_ + ": expected " + std::to_string(rows) + " values");
        const char kind = array.dtype().kind();
        if (kind == 'f' || kind == 'i' || kind == 'u') {
            kind_ = Kind_::Numbers;
            numbers_ = py::array_t<double, py::array::c_style | py::array::forcecast>::ensure(array);
            numberData_ = numbers_.data();
        } else if (kind == 'b') {
            kind_ = Kind_::Flags;
            flags_ = py::array_t<bool, py::array::c_style | py::array::forcecast>::ensure(array);
            flagData_ = flags_.data();
        } else {
            objects_ = py::array::ensure(array.attr("astype")("O"), py::array::c_style);
            // Python objects are read with the GIL: their text is taken here, once.
            texts_.resize(rows);
            present_.assign(rows, 0);
            auto* const* items = static_cast<PyObject* const*>(objects_.data());
            for (std::size_t i = 0; i < rows; ++i) {
                py::handle item(items[i]);
                if (item.is_none() || isMissing(item)) continue;
                if (py::isinstance<py::bool_>(item)) {
                    texts_[i] = item.cast<bool>() ? "true" : "false";
                } else if (py::isinstance<py::float_>(item) || py::isinstance<py::int_>(item)) {
                    const double v = item.cast<double>();
                    if (std::isnan(v)) continue;
                    // The text lives as long as the column: a view of a temporary would dangle.
                    owned_.push_back(design::shortestText(v));
                    texts_[i] = owned_.back();
                } else if (py::isinstance<py::str>(item)) {
                    Py_ssize_t length = 0;
                    const char* utf8 = PyUnicode_AsUTF8AndSize(item.ptr(), &length);
                    if (!utf8) throw py::error_already_set();
                    texts_[i] = std::string_view(utf8, static_cast<std::size_t>(length));
                } else {
                    owned_.push_back(py::str(item).cast<std::string>());
                    texts_[i] = owned_.back();
                }
                present_[i] = 1;
            }
        }
    }
    // texts_ views strings that the column owns (owned_) or keeps alive (objects_): a copy would view the
    // original's, so a column is only moved (a deque's move keeps its elements where they are).
    Column(const Column&) = delete;
    Column& operator=(const Column&) = delete;
    Column(Column&&) = default;
    Column& operator=(Column&&) = default;

    const std::string& name() const { return name_; }
    // The cell of a row; scratch holds the text of a number given as text. Reads no Python object: runs
    // without the GIL.
    void cell(std::size_t row, bool asNumber, batch::InputCell& out, std::string& scratch) const
    {
        using Kind = batch::InputCell::Kind;
        out.kind = Kind::Absent;
        if (kind_ == Kind_::Numbers) {
            const double v = numberData_[row];
            if (std::isnan(v)) return;
            // A normal value (or zero) is the number its shortest text reads back as; the others go as
            // that text, whose reading refuses them with the batch's message.
            if (asNumber && (v == 0.0 || std::isnormal(v))) {
                out.kind = Kind::Number;
                out.number = v;
                return;
            }
            scratch = design::shortestText(v);
            out.kind = Kind::Text;
            out.text = scratch;
        } else if (kind_ == Kind_::Flags) {
            out.kind = Kind::Text;
            out.text = flagData_[row] ? "true" : "false";
        } else if (present_[row]) {
            out.kind = Kind::Text;
            out.text = texts_[row];
        }
    }

private:
    // pandas' missing values of nullable and datetime columns (pd.NA, pd.NaT): an empty cell, as None.
    static bool isMissing(const py::handle& item)
    {
        const std::string_view type = Py_TYPE(item.ptr())->tp_name;
        return type.ends_with("NAType") || type.ends_with("NaTType");
    }

    enum class Kind_ { Numbers, Flags, Objects };
    std::string name_;
    Kind_ kind_ = Kind_::Objects;
    const double* numberData_ = nullptr;
    const bool* flagData_ = nullptr;
    py::array_t<double, py::array::c_style | py::array::forcecast> numbers_;
    py::array_t<bool, py::array::c_style | py::array::forcecast> flags_;
    py::array objects_;                 // keeps the strings whose UTF-8 texts_ views
    std::vector<std::string_view> texts_;
    std::vector<std::uint8_t> present_;
    std::deque<std::string> owned_;     // texts of other objects
};

// The columns of a frame, read once with the GIL.
std::vector<Column> readColumns(const py::dict& columns, std::size_t rows)
{
    std::vector<Column> read;
    read.reserve(columns.size());
    for (const auto& [key, values] : columns) read.emplace_back(py::str(key).cast<std::string>(), values, rows);
    return read;
}

// Rows [first, first + rows.size()) of the columns parsed into rows as the batch parses its rows, on every
// core. Needs no GIL.
void parseColumns(const std::vector<Column>& read, const batch::ColumnLayout& layout, std::size_t first,
                  unsigned jobs, std::vector<batch::BatchRow>& rows)
{
    std::vector<bool> asNumber(read.size());
    for (std::size_t c = 0; c < read.size(); ++c) asNumber[c] = layout.isNumber(c);
    batch::forEachChunk(rows.size(), 1024, jobs, [&](std::size_t begin, std::size_t end) {
        std::vector<batch::InputCell> cells(read.size());
        std::vector<std::string> scratch(read.size());
        for (std::size_t k = begin; k < end; ++k) {
            for (std::size_t c = 0; c < read.size(); ++c) read[c].cell(first + k, asNumber[c], cells[c], scratch[c]);
            layout.parse(cells.data(), first + k, rows[k]);
        }
    });
}

// Runs the rows of the columns through the batch's row parser and evaluator, chunk by chunk, handing
// each chunk's results (and the index of its first row) to `take`. Needs no GIL.
template <typename Take>
void runColumns(const std::vector<Column>& read, const batch::ColumnLayout& layout, std::size_t rows,
                unsigned jobs, design::Rules rules, Take take)
{
    design::StandardInput{}.apply();  // the batch's standard: EN, persistent situation
    batch::BatchEvaluator evaluator(jobs, rules);
    constexpr std::size_t chunkRows = 8192;
    std::vector<batch::BatchRow> chunk;
    std::vector<batch::RowResult> results;
    for (std::size_t first = 0; first < rows; first += chunkRows) {
        chunk.resize(std::min(chunkRows, rows - first));
        parseColumns(read, layout, first, jobs, chunk);
        evaluator.run(chunk, results);
        take(results, first);
    }
}

// The result columns of the batch (without `line`) as NumPy arrays, the values exactly as the batch's
// JSON Lines hold them (full double precision): utilizations float64 (NaN where none), the class and the
// error codes int64 with a mask of the missing, `fulfilled` bool with its mask, texts as objects (str, or
// pd.NA where empty), for pandas' nullable dtypes (Int64, boolean, string) without conversion of values.
// The last number column is the other rules' governing utilization: enUtilization under the library's
// rules, libraryUtilization under EN rules.
py::dict evaluateColumnsToArrays(const py::dict& columns, std::size_t rows, unsigned jobs, const std::string& rulesName)
{
    const design::Rules rules = design::rulesByName(rulesName);
    static const char* const codeNames[] = {"class", "errorCode", "memberErrorCode", "shearBucklingErrorCode"};
    static const char* const numberNames[] = {
        "Axial", "Torsion", "Bending", "Shear", "AxialBending", "ShearBending", "AxialShearBending",
        "memberCompression", "memberBending", "memberCompressionBending", "memberShearBuckling",
        "governingUtilization", "enUtilization"};
    static const char* const textNames[] = {"id", "status", "section", "steel", "governing", "verdict", "reason",
                                            "departures", "field", "message"};
    constexpr std::size_t codeCount = std::size(codeNames), numberCount = std::size(numberNames),
                          textCount = std::size(textNames);
    const std::vector<Column> read = readColumns(columns, rows);
    std::vector<std::string> names;
    for (const Column& c : read) names.push_back(c.name());
    const batch::ColumnLayout layout(names);

    // The result arrays, made before the run and written in place (no copy afterwards).
    const auto n = static_cast<py::ssize_t>(rows);
    py::dict out;
    std::int64_t* codes[codeCount];
    for (std::size_t c = 0; c < codeCount; ++c) {
        py::array_t<std::int64_t> a(n);
        codes[c] = a.mutable_data();
        std::fill_n(codes[c], rows, std::int64_t{0});
        out[codeNames[c]] = a;
    }
    double* numbers[numberCount];
    for (std::size_t c = 0; c < numberCount; ++c) {
        py::array_t<double> a(n);
        numbers[c] = a.mutable_data();
        std::fill_n(numbers[c], rows, std::nan(""));
        const char* name = c == numberCount - 1 && rules == design::Rules::En ? "libraryUtilization" : numberNames[c];
        out[name] = a;
    }
    py::array_t<bool> codesMissingArray(n), fulfilledArray(n);
    bool* const codesMissing = codesMissingArray.mutable_data();  // the same rows for every code: the rejected ones
    bool* const fulfilled = fulfilledArray.mutable_data();
    std::fill_n(codesMissing, rows, true);
    std::fill_n(fulfilled, rows, false);
    // Texts as indices into a table of distinct strings (0: empty), made into Python strings once.
    std::vector<std::vector<std::uint32_t>> texts(textCount, std::vector<std::uint32_t>(rows, 0));
    std::vector<std::string> table{""};
    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
    };
    std::unordered_map<std::string, std::uint32_t, TextHash, std::equal_to<>> indexOf{{"", 0}};
    std::unordered_map<std::uint64_t, std::uint32_t> reasonIndex, departuresIndex;
    std::vector<std::string> ids(rows);
    {
        py::gil_scoped_release release;
        auto intern = [&](std::string_view s) {
            auto it = indexOf.find(s);
            if (it != indexOf.end()) return it->second;
            const auto index = static_cast<std::uint32_t>(table.size());
            table.emplace_back(s);
            indexOf.emplace(table.back(), index);
            return index;
        };
        // The texts of a bit set, made once for each set met.
        auto internSet = [&](std::unordered_map<std::uint64_t, std::uint32_t>& cache, std::uint64_t bits, auto describe) {
            auto it = cache.find(bits);
            if (it != cache.end()) return it->second;
            const std::uint32_t index = intern(describe(bits));
            cache.emplace(bits, index);
            return index;
        };
        const std::uint32_t checked = intern("checked"), rejected = intern("rejected");
        runColumns(read, layout, rows, jobs, rules, [&](const std::vector<batch::RowResult>& results, std::size_t first) {
            // Numbers, codes and ids row by row on every core; the texts' table on this thread.
            batch::forEachChunk(results.size(), 1024, jobs, [&](std::size_t begin, std::size_t end) {
                for (std::size_t k = begin; k < end; ++k) {
                    const batch::RowResult& r = results[k];
                    const std::size_t i = first + k;
                    ids[i] = r.id;  // mostly distinct: kept apart from the table of repeated texts
                    if (r.rejected) continue;
                    const int values[] = {r.sectionClass, r.errorCode, r.memberErrorCode, r.shearBucklingErrorCode};
                    for (std::size_t c = 0; c < codeCount; ++c) codes[c][i] = values[c];
                    codesMissing[i] = false;
                    for (std::size_t c = 0; c < 7; ++c)
                        if (r.crossSection[c]) numbers[c][i] = r.crossSection[c].value();
                    for (std::size_t c = 0; c < 4; ++c)
                        if (r.member[c]) numbers[7 + c][i] = r.member[c].value();
                    if (!r.governing.empty()) numbers[11][i] = r.governingUtilization;
                    const kat::Nullable<double>& other = rules == design::Rules::En ? r.libraryGoverning : r.enGoverning;
                    if (other) numbers[12][i] = other.value();
                    fulfilled[i] = r.fulfilled;
                }
            });
            for (std::size_t k = 0; k < results.size(); ++k) {
                const batch::RowResult& r = results[k];
                const std::size_t i = first + k;
                texts[1][i] = r.rejected ? rejected : checked;
                if (r.rejected) {
                    texts[8][i] = intern(r.errorField);
                    texts[9][i] = intern(r.errorMessage);
                    continue;
                }
                texts[2][i] = intern(r.section);
                texts[3][i] = intern(r.steel);
                texts[4][i] = intern(r.governing);
                texts[5][i] = intern(design::toString(r.verdict));
                if (r.limitations != 0)
                    texts[6][i] = internSet(reasonIndex, r.limitations, [](std::uint64_t b) {
                        return design::describeAll(static_cast<decltype(r.limitations)>(b));
                    });
                if (r.departures != 0)
                    texts[7][i] = internSet(departuresIndex, r.departures, [](std::uint64_t b) {
                        return design::departureNames(static_cast<decltype(r.departures)>(b));
                    });
            }
        });
    }
    std::vector<py::object> strings;
    strings.reserve(table.size());
    const py::object na = py::module_::import("pandas").attr("NA");
    for (const std::string& s : table) strings.push_back(s.empty() ? na : py::str(s));
    for (std::size_t c = 0; c < textCount; ++c) {
        py::array column(py::dtype("O"), std::vector<py::ssize_t>{n});
        auto* cells = static_cast<PyObject**>(column.mutable_data());
        for (std::size_t i = 0; i < rows; ++i) {
            PyObject* item = nullptr;
            if (c == 0 && !ids[i].empty()) {
                item = PyUnicode_DecodeUTF8(ids[i].data(), static_cast<Py_ssize_t>(ids[i].size()), "replace");
                if (!item) throw py::error_already_set();
            } else {
                item = strings[c == 0 ? 0 : texts[c][i]].ptr();
                Py_INCREF(item);
            }
            Py_XDECREF(cells[i]);
            cells[i] = item;
        }
        out[textNames[c]] = column;
    }
    out["codesMissing"] = codesMissingArray;
    out["fulfilled"] = fulfilledArray;
    out["fulfilledMissing"] = py::array_t<bool>(n, codesMissing);  // a mask of its own
    return out;
}

// The design report of the rows of a frame's columns: the page of `steeldesign report` for the same
// rows (the batch's standard: EN, persistent), its title block from the fields given.
std::string reportOfColumns(const py::dict& columns, std::size_t rows, unsigned jobs, const std::string& rulesName,
                            const std::string& title, const report::TitleBlock& block)
{
    const design::Rules rules = design::rulesByName(rulesName);
    constexpr std::size_t maxReportMembers = 10000;
    if (rows > maxReportMembers)
        throw py::value_error("df: " + std::to_string(rows) + " rows; a report is for up to " +
                              std::to_string(maxReportMembers) + " members (member_frame serves more)");
    const std::vector<Column> read = readColumns(columns, rows);
    std::vector<std::string> names;
    for (const Column& c : read) names.push_back(c.name());
    const batch::ColumnLayout layout(names);
    report::ReportHeader header;
    if (!title.empty()) header.title = title;
    header.model = "pandas DataFrame, " + std::to_string(rows) + " rows";
    header.date = report::nowText();
    header.rules = rules;
    header.block = block;
    std::string page;
    {
        py::gil_scoped_release release;
        design::StandardInput{}.apply();
        std::vector<report::ReportMember> members(rows);
        std::vector<batch::BatchRow> parsed(rows);
        parseColumns(read, layout, 0, jobs, parsed);
        batch::forEachChunk(rows, 16, jobs, [&](std::size_t begin, std::size_t end) {
            for (std::size_t r = begin; r < end; ++r) members[r] = report::reportMember(parsed[r], rules);
        });
        std::ostringstream out;
        report::writeReport(out, header, members, jobs);
        page = out.str();
    }
    return page;
}

} // namespace

PYBIND11_MODULE(_core, m)
{
    m.doc() = "steeldesign: steel members to EN 1993-1-1 and EN 1993-1-5 (compiled part)";
    static py::exception<design::InputError> inputError(m, "InputError", PyExc_ValueError);
    // The command's messages name its options ("--gamma-m1: ..."); here they name the argument.
    py::register_exception_translator([](std::exception_ptr p) {
        try {
            if (p) std::rethrow_exception(p);
        } catch (const design::InputError& e) {
            std::string message = e.what();
            if (message.rfind("--", 0) == 0) {
                message.erase(0, 2);
                for (std::size_t i = 0; i < message.size() && message[i] != ':'; ++i)
                    if (message[i] == '-') message[i] = '_';
            }
            inputError(message.c_str());
        }
    });

    auto headline = [](auto& cls) {
        using T = typename std::remove_reference_t<decltype(cls)>::type;
        cls.def_property_readonly("verdict", [](const T& r) { return r.summary.verdict; },
                                  "fulfilled, not fulfilled, not verified (or not applicable: no member check)")
            .def_property_readonly("governing", [](const T& r) { return r.optionalText(r.summary.governing); },
                                   "the check with the largest utilization under the rules (None: none)")
            .def_property_readonly("governing_utilization",
                                   [](const T& r) { return r.optionalNumber(r.summary.governingUtilization); },
                                   "its utilization (None: none computed)")
            .def_property_readonly("utilizations", [](const T& r) { return r.utilizations(); },
                                   "utilization of each check under the rules (None: not computed)")
            .def_property_readonly("section_class", [](const T& r) { return r.summary.sectionClass; },
                                   "cross-section class under the rules (1 to 4)")
            .def_property_readonly("not_verified", [](const T& r) { return r.optionalText(r.summary.notVerified); },
                                   "why something was not verified (None: everything was)")
            .def_property_readonly("rules", [](const T& r) { return std::string(design::toString(r.rules)); })
            .def_property_readonly("section_name", [](const T& r) { return r.section->getName(); })
            .def_property_readonly("steel_name", [](const T& r) { return std::string(r.steel.getName()); })
            .def("to_dict", &T::toDict, "every value of the command's --json document (made on the first call)")
            .def(
                "to_html",
                [](T& r, const std::string& project, const std::string& element, const std::string& client,
                   const std::string& prepared, const std::string& checked, const std::string& approved,
                   const std::string& revision) {
                    return r.toHtml({project, element, client, prepared, checked, approved, revision});
                },
                py::kw_only(), py::arg("project") = "", py::arg("element") = "", py::arg("client") = "",
                py::arg("prepared") = "", py::arg("checked") = "", py::arg("approved") = "", py::arg("revision") = "",
                "the design report of the result (the page of `check --html` / `member --html`); the title block's "
                "fields not given are blank lines");
    };
    py::class_<CheckResult> checkResult(m, "CheckResult", "The result of a cross-section check (EN 1993-1-1 6.2).");
    headline(checkResult);
    py::class_<MemberResult> memberResult(m, "MemberResult", "The result of the member checks (EN 1993-1-1 6.3).");
    headline(memberResult);

    m.def("section", &section, py::arg("name"), "Dimensions and properties of a section (m, m2, m4, m6).");
    m.def("check", &check, py::arg("section"), py::arg("steel") = "S355", py::kw_only(), py::arg("N") = 0.0,
          py::arg("My") = 0.0, py::arg("Mz") = 0.0, py::arg("Mt") = 0.0, py::arg("Vy") = 0.0, py::arg("Vz") = 0.0,
          py::arg("leg_axes") = false, py::arg("gamma_m0") = py::none(), py::arg("elastic") = false, py::arg("mode") = "EN",
          py::arg("situation") = "persistent", py::arg("rules") = "en",
          "The cross-section check, as `steeldesign check --json`.");
    m.def("member", &member, py::arg("section"), py::arg("steel") = "S355", py::kw_only(), py::arg("N") = 0.0,
          py::arg("My") = 0.0, py::arg("Mz") = 0.0, py::arg("Mt") = 0.0, py::arg("Vy") = 0.0, py::arg("Vz") = 0.0,
          py::arg("leg_axes") = false, py::arg("length") = py::none(), py::arg("lcr_y") = py::none(), py::arg("lcr_z") = py::none(),
          py::arg("l_lt") = py::none(), py::arg("lcr_t") = py::none(), py::arg("gamma_m1") = 1.0, py::arg("moments_y") = py::none(),
          py::arg("diagram_y") = "polygonal", py::arg("moments_z") = py::none(), py::arg("diagram_z") = "polygonal",
          py::arg("max_moment") = py::none(), py::arg("load_point") = "center", py::arg("mcr") = 0.0,
          py::arg("c_theta") = 0.0, py::arg("shear_panel") = 0.0, py::arg("rolled_method") = py::none(),
          py::arg("mcr_method") = "tables", py::arg("torsionally_deformable") = false,
          py::arg("twist_restrained") = false, py::arg("cm_floor") = false, py::arg("mode") = "EN",
          py::arg("situation") = "persistent", py::arg("rules") = "en",
          "The member checks, as `steeldesign member --json`.");
    m.def("mcr", &mcr, py::arg("section"), py::kw_only(), py::arg("length"), py::arg("moments_y") = py::none(),
          py::arg("diagram_y") = "polygonal", py::arg("stations") = std::vector<std::pair<double, double>>{},
          py::arg("uniform_load") = 0.0, py::arg("point_loads") = std::vector<std::pair<double, double>>{},
          py::arg("lateral_restraints") = std::vector<std::string>{},
          py::arg("torsional_restraints") = std::vector<double>{}, py::arg("load_height") = "center",
          py::arg("start") = "fork", py::arg("end") = "fork", py::arg("c_theta") = 0.0, py::arg("elements") = 30,
          "The elastic critical moment by finite elements, as `steeldesign mcr --json`.");
    m.def(
        "report_of_columns",
        [](const py::dict& columns, std::size_t rows, unsigned jobs, const std::string& rules, const std::string& title,
           const std::string& project, const std::string& element, const std::string& client,
           const std::string& prepared, const std::string& checked, const std::string& approved,
           const std::string& revision) {
            return reportOfColumns(columns, rows, jobs, rules, title,
                                   {project, element, client, prepared, checked, approved, revision});
        },
        py::arg("columns"), py::arg("rows"), py::arg("jobs"), py::arg("rules"), py::arg("title"), py::arg("project"),
        py::arg("element"), py::arg("client"), py::arg("prepared"), py::arg("checked"), py::arg("approved"),
        py::arg("revision"));
    m.def("evaluate_columns_to_arrays", &evaluateColumnsToArrays, py::arg("columns"), py::arg("rows"),
          py::arg("jobs") = 0, py::arg("rules") = "en", "The batch's result columns for a dict of columns of batch rows, as NumPy arrays.");
}
