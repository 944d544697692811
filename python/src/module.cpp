// The compiled part of the Python module: sections; check() and member(), which read the interpreter's
// call themselves (CallArguments.h) and return result objects over the C++ results (Results.h); the
// elastic critical moment; and whole frames of batch rows evaluated by the batch's own code with the GIL
// released.

#include <batch/BatchInput.h>
#include <batch/BatchRun.h>
#include <batch/Parallel.h>
#include <report/CommandLine.h>
#include <report/HtmlReport.h>
#include <report/ResultJson.h>

#include "CallArguments.h"
#include "Results.h"

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
using pyresult::CheckResult;
using pyresult::MemberResult;
using pyresult::toPython;

namespace {

// A number given by the caller must be finite; ValueError naming the argument otherwise.
double finite(const char* name, double value)
{
    if (!std::isfinite(value)) throw py::value_error(std::string(name) + ": not a finite number: " + std::to_string(value));
    return value;
}

py::object section(const std::string& name) { return toPython(report::sectionJson(*design::resolveSection(name))); }

// A section by the name the caller gave, kept per thread for the few names met last: a loop of checks
// names the same handful (a section is never changed by a check).
std::shared_ptr<SDBSection> sectionNamed(std::string_view name)
{
    thread_local std::deque<std::pair<std::string, std::shared_ptr<SDBSection>>> recent;
    for (const auto& [known, section] : recent)
        if (known == name) return section;
    std::shared_ptr<SDBSection> section = design::resolveSection(name);
    if (recent.size() >= 16) recent.pop_back();
    recent.emplace_front(std::string(name), section);
    return section;
}

// The standard, steel and rules of a call (ValueError or InputError naming the argument).
design::Rules rulesOf(std::string_view name) { return design::rulesByName(std::string(name)); }

// The steel grade by name, the last one met kept per thread.
const KaConstrSteel& steelNamed(std::string_view name)
{
    thread_local std::string known;
    thread_local std::optional<KaConstrSteel> steel;
    if (!steel || known != name) {
        steel.emplace(design::steelByName(std::string(name)));
        known = name;
    }
    return *steel;
}

std::unique_ptr<CheckResult> check(std::string_view name, std::string_view steelGrade, const design::ForceInput& forces,
                                   std::optional<double> gammaM0, bool elastic, std::string_view mode,
                                   std::string_view situation, std::string_view rulesName)
{
    auto r = std::make_unique<CheckResult>(sectionNamed(name), steelNamed(steelGrade), std::string(mode),
                                           std::string(situation), rulesOf(rulesName));
    design::applyStandard(r->mode, r->situation);
    if (gammaM0 && !(*gammaM0 > 0.0))
        throw py::value_error("gamma_m0: must be positive, got " + design::shortestText(*gammaM0));
    r->request = design::CrossSectionRequest{r->section.get(), &r->steel, forces.toForces(*r->section),
                                             gammaM0.value_or(0.0), elastic};
    batch::MemberRow& row = r->row;
    row.section = name;
    row.steel = steelGrade;
    row.N = forces.N, row.My = forces.My, row.Mz = forces.Mz, row.Mt = forces.Mt, row.Vy = forces.Vy, row.Vz = forces.Vz;
    row.legAxes = forces.legAxes;
    row.gammaM0 = gammaM0;
    row.elastic = elastic;
    r->outcome.emplace(design::evaluateCrossSection(r->request));
    r->summary = report::checkSummary(r->request, *r->outcome, r->rules);
    return r;
}

// Start, middle and end moments as the command's option takes them ("60,30,0").
std::string momentsText(const std::optional<std::array<double, 3>>& values)
{
    if (!values) return {};
    std::string text;
    for (double v : *values) {
        if (!text.empty()) text += ',';
        text += design::shortestText(v);
    }
    return text;
}

// What a member check takes besides its section, steel, forces and standard (as the command's options).
struct MemberOptions {
    std::optional<double> length, lcrY, lcrZ, lLT, lcrT;
    double gammaM1 = 1.0;
    std::optional<std::array<double, 3>> momentsY, momentsZ;
    std::string_view diagramY = "polygonal", diagramZ = "polygonal";
    std::optional<double> maxMoment;
    std::string_view loadPoint = "center";
    double mcr = 0.0, cTheta = 0.0, shearPanel = 0.0;
    std::optional<bool> rolledMethod;
    std::string_view mcrMethod = "tables";
    bool torsionallyDeformable = false, twistRestrained = false, cmFloor = false;
};

std::unique_ptr<MemberResult> member(std::string_view name, std::string_view steelGrade, const design::ForceInput& forces,
                                     const MemberOptions& m, std::string_view mode, std::string_view situation,
                                     std::string_view rulesName)
{
    auto r = std::make_unique<MemberResult>(sectionNamed(name), steelNamed(steelGrade), std::string(mode),
                                            std::string(situation), rulesOf(rulesName));
    design::MemberInput o;
    o.forces = forces;
    o.standard = design::StandardInput{r->mode, r->situation};
    o.length = m.length;
    o.lengthY = m.lcrY;
    o.lengthZ = m.lcrZ;
    o.lengthLT = m.lLT;
    o.lengthT = m.lcrT;
    if (o.lengthT && *o.lengthT < 0.0) throw py::value_error("lcr_t: must not be negative, got " + design::shortestText(*o.lengthT));
    o.gammaM1 = m.gammaM1;
    o.momentsY = momentsText(m.momentsY);
    o.momentsZ = momentsText(m.momentsZ);
    o.diagramY = m.diagramY;
    o.diagramZ = m.diagramZ;
    o.maxMoment = m.maxMoment;
    o.loadPoint = m.loadPoint;
    o.mcr = m.mcr;
    o.cTheta = m.cTheta;
    o.shearPanel = m.shearPanel;
    o.rolledMethod = m.rolledMethod.value_or(false);
    o.generalMethod = m.rolledMethod.has_value() && !*m.rolledMethod;
    o.mcrMethod = m.mcrMethod;
    o.torsionallyDeformable = m.torsionallyDeformable;
    o.twistRestrained = m.twistRestrained;
    o.cmFloor = m.cmFloor;
    if (!o.memberChecked())
        throw py::value_error("length: a positive buckling length is needed (length, or lcr_y / lcr_z / l_lt)");
    r->request = o.toRequest(r->section.get(), &r->steel);
    batch::MemberRow& row = r->row;
    row.section = name;
    row.steel = steelGrade;
    row.N = forces.N, row.My = forces.My, row.Mz = forces.Mz, row.Mt = forces.Mt, row.Vy = forces.Vy, row.Vz = forces.Vz;
    row.legAxes = forces.legAxes;
    row.length = m.length.value_or(0.0);
    row.lengthY = m.lcrY, row.lengthZ = m.lcrZ, row.lengthLT = m.lLT, row.lengthT = m.lcrT;
    row.momentsY = m.momentsY.value_or(std::array<double, 3>{forces.My, forces.My, forces.My});
    row.momentsZ = m.momentsZ.value_or(std::array<double, 3>{forces.Mz, forces.Mz, forces.Mz});
    row.diagramY = m.diagramY, row.diagramZ = m.diagramZ, row.loadPoint = m.loadPoint;
    row.maxMoment = m.maxMoment;
    if (m.mcr != 0.0) row.mcr = m.mcr;
    if (m.cTheta != 0.0) row.cTheta = m.cTheta;
    if (m.shearPanel != 0.0) row.shearPanel = m.shearPanel;
    row.gammaM1 = m.gammaM1;
    row.rolledMethod = m.rolledMethod;
    row.mcrMethod = m.mcrMethod;
    row.torsionallyDeformable = m.torsionallyDeformable, row.twistRestrained = m.twistRestrained, row.cmFloor = m.cmFloor;
    r->outcome.emplace(design::evaluateMember(r->request));
    r->summary = report::memberSummary(r->request, *r->outcome, r->rules);
    return r;
}

// The entry points of check() and member(), called by the interpreter with the arguments as given
// (vectorcall).

// The forces (kN, kNm) of the arguments from index first on: N, My, Mz, Mt, Vy, Vz, leg_axes.
design::ForceInput forcesOf(const pycall::Signature& s, const pycall::Signature::Values& v, std::size_t first)
{
    design::ForceInput f;
    f.N = pycall::number(s.name(first), v[first], 0.0);
    f.My = pycall::number(s.name(first + 1), v[first + 1], 0.0);
    f.Mz = pycall::number(s.name(first + 2), v[first + 2], 0.0);
    f.Mt = pycall::number(s.name(first + 3), v[first + 3], 0.0);
    f.Vy = pycall::number(s.name(first + 4), v[first + 4], 0.0);
    f.Vz = pycall::number(s.name(first + 5), v[first + 5], 0.0);
    f.legAxes = pycall::flag(s.name(first + 6), v[first + 6], false);
    return f;
}

PyObject* checkCall(PyObject*, PyObject* const* args, Py_ssize_t nargs, PyObject* kwnames) noexcept
{
    return pycall::guarded([&] {
        static const pycall::Signature s("check",
                                         {"section", "steel", "N", "My", "Mz", "Mt", "Vy", "Vz", "leg_axes",
                                          "gamma_m0", "elastic", "mode", "situation", "rules"},
                                         2, 1);
        pycall::Signature::Values v;
        s.bind(args, nargs, kwnames, v);
        auto r = check(pycall::text(s.name(0), v[0], {}), pycall::text(s.name(1), v[1], "S355"), forcesOf(s, v, 2),
                       pycall::optionalNumber(s.name(9), v[9]), pycall::flag(s.name(10), v[10], false),
                       pycall::text(s.name(11), v[11], "EN"), pycall::text(s.name(12), v[12], "persistent"),
                       pycall::text(s.name(13), v[13], "en"));
        return pyresult::toPythonObject(std::move(r));
    });
}

PyObject* memberCall(PyObject*, PyObject* const* args, Py_ssize_t nargs, PyObject* kwnames) noexcept
{
    return pycall::guarded([&] {
        static const pycall::Signature s(
            "member",
            {"section", "steel", "N", "My", "Mz", "Mt", "Vy", "Vz", "leg_axes", "length", "lcr_y", "lcr_z", "l_lt",
             "lcr_t", "gamma_m1", "moments_y", "diagram_y", "moments_z", "diagram_z", "max_moment", "load_point", "mcr",
             "c_theta", "shear_panel", "rolled_method", "mcr_method", "torsionally_deformable", "twist_restrained",
             "cm_floor", "mode", "situation", "rules"},
            2, 1);
        pycall::Signature::Values v;
        s.bind(args, nargs, kwnames, v);
        MemberOptions m;
        m.length = pycall::optionalNumber(s.name(9), v[9]);
        m.lcrY = pycall::optionalNumber(s.name(10), v[10]);
        m.lcrZ = pycall::optionalNumber(s.name(11), v[11]);
        m.lLT = pycall::optionalNumber(s.name(12), v[12]);
        m.lcrT = pycall::optionalNumber(s.name(13), v[13]);
        m.gammaM1 = pycall::number(s.name(14), v[14], 1.0);
        m.momentsY = pycall::threeNumbers(s.name(15), v[15]);
        m.diagramY = pycall::text(s.name(16), v[16], m.diagramY);
        m.momentsZ = pycall::threeNumbers(s.name(17), v[17]);
        m.diagramZ = pycall::text(s.name(18), v[18], m.diagramZ);
        m.maxMoment = pycall::optionalNumber(s.name(19), v[19]);
        m.loadPoint = pycall::text(s.name(20), v[20], m.loadPoint);
        m.mcr = pycall::number(s.name(21), v[21], 0.0);
        m.cTheta = pycall::number(s.name(22), v[22], 0.0);
        m.shearPanel = pycall::number(s.name(23), v[23], 0.0);
        m.rolledMethod = pycall::optionalFlag(s.name(24), v[24]);
        m.mcrMethod = pycall::text(s.name(25), v[25], m.mcrMethod);
        m.torsionallyDeformable = pycall::flag(s.name(26), v[26], false);
        m.twistRestrained = pycall::flag(s.name(27), v[27], false);
        m.cmFloor = pycall::flag(s.name(28), v[28], false);
        auto r = member(pycall::text(s.name(0), v[0], {}), pycall::text(s.name(1), v[1], "S355"), forcesOf(s, v, 2), m,
                        pycall::text(s.name(29), v[29], "EN"), pycall::text(s.name(30), v[30], "persistent"),
                        pycall::text(s.name(31), v[31], "en"));
        return pyresult::toPythonObject(std::move(r));
    });
}

std::string momentsText(const char* name, const std::optional<std::vector<double>>& values)
{
    if (!values) return {};
    if (values->size() != 3)
        throw py::value_error(std::string(name) + ": three moments (start, middle, end) in kNm are needed, got " +
                              std::to_string(values->size()));
    for (double v : *values) finite(name, v);
    return momentsText(std::array<double, 3>{(*values)[0], (*values)[1], (*values)[2]});
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
            inputError(pycall::argumentMessage(e.what()).c_str());
        }
    });

    pyresult::addResultTypes(m);

    m.def("section", &section, py::arg("name"), "Dimensions and properties of a section (m, m2, m4, m6).");
    // check() and member() read their arguments themselves (CallArguments.h); the first lines of their
    // texts are the signatures that help() and inspect.signature() show.
    pycall::inputErrorType = inputError.ptr();
    static PyMethodDef calls[] = {
        {"check", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&checkCall)), METH_FASTCALL | METH_KEYWORDS,
         "check(section, steel='S355', *, N=0.0, My=0.0, Mz=0.0, Mt=0.0, Vy=0.0, Vz=0.0, leg_axes=False, "
         "gamma_m0=None, elastic=False, mode='EN', situation='persistent', rules='en')\n--\n\n"
         "The cross-section check of EN 1993-1-1 6.2 of a section (a catalogue designation or dimensions, as\n"
         "\"WI 1200x300x8x20\") in a steel grade, as `steeldesign check --json`.\n\n"
         "N, Vy, Vz: kN (compression negative); My, Mz, Mt: kNm. An angle's My, Mz, Vy, Vz are about its\n"
         "principal axes u, v, or about its legs with leg_axes=True. gamma_m0: None for the standard's value.\n"
         "elastic: elastic resistances only. mode: EN, UK, RolledLTB or a mode number. situation: persistent,\n"
         "transient, accidental, seismic. rules: \"en\" (verdicts by EN 1993-1-1) or \"library\".\n\n"
         "A result: verdict, governing, governing_utilization, utilizations, section_class, not_verified at\n"
         "once; to_dict() for every value of the command's JSON (made when first asked). A bad value raises\n"
         "ValueError naming the argument, a value of the wrong kind TypeError."},
        {"member", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&memberCall)), METH_FASTCALL | METH_KEYWORDS,
         "member(section, steel='S355', *, N=0.0, My=0.0, Mz=0.0, Mt=0.0, Vy=0.0, Vz=0.0, leg_axes=False, "
         "length=None, lcr_y=None, lcr_z=None, l_lt=None, lcr_t=None, gamma_m1=1.0, moments_y=None, "
         "diagram_y='polygonal', moments_z=None, diagram_z='polygonal', max_moment=None, load_point='center', "
         "mcr=0.0, c_theta=0.0, shear_panel=0.0, rolled_method=None, mcr_method='tables', "
         "torsionally_deformable=False, twist_restrained=False, cm_floor=False, mode='EN', situation='persistent', "
         "rules='en')\n--\n\n"
         "The member checks of EN 1993-1-1 6.3 and EN 1993-1-5 5, as `steeldesign member --json`.\n\n"
         "The forces as for check (kN, kNm). length, or lcr_y / lcr_z / l_lt: m, flexural buckling about y\n"
         "and z, lateral-torsional buckling; lcr_t: m, torsional buckling (default l_lt, else lcr_z).\n"
         "moments_y / moments_z: kNm at start, middle, end, with diagram_y / diagram_z (polygonal,\n"
         "parabolic); max_moment: kNm; load_point: center, top, bottom; mcr: kNm (0: computed) with\n"
         "mcr_method (tables, numerical); c_theta: rotational restraint C_theta, shear_panel: shear-panel\n"
         "stiffness S (0: none); rolled_method: True for 6.3.2.3, False for 6.3.2.2, None for the mode's\n"
         "choice; mode, situation, rules as for check."},
    };
    for (PyMethodDef& def : calls) {
        PyObject* function = PyCFunction_NewEx(&def, nullptr, m.attr("__name__").ptr());
        if (!function) throw py::error_already_set();
        m.add_object(def.ml_name, py::reinterpret_steal<py::object>(function));
    }
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
