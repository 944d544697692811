#pragma once

// The results of check() and member() as Python objects: the C++ result (request, outcome, headline)
// owned by an object of a small type of the interpreter's own (CheckResult, MemberResult), whose
// attributes read the headline at once and whose document (the command's JSON as dicts and lists) is
// made on the first _document(). A loop of checks creates and drops one such object per call: no type
// lookup, no holder, a plain slot read per attribute.

#include <batch/BatchInput.h>
#include <design/CrossSectionCheck.h>
#include <design/MemberCheck.h>
#include <design/Rules.h>
#include <report/HtmlReport.h>
#include <report/ResultJson.h>

#include <KaMaterial.h>
#include <SDBSection.h>

#include <pybind11/pybind11.h>

#include <memory>
#include <optional>
#include <string>

namespace pyresult {

namespace py = pybind11;

// A JSON document as Python objects: objects as dicts (in the document's key order), arrays as lists.
py::object toPython(const nlohmann::json& j);

// What a check or member result shares: its section, steel, standard and rules, the headline
// (report::ResultSummary) and the JSON document made once, when asked.
struct ResultCore {
    ResultCore(std::shared_ptr<SDBSection> s, const KaConstrSteel& grade, std::string m, std::string sit, design::Rules r)
        : section(std::move(s)), steel(grade), mode(std::move(m)), situation(std::move(sit)), rules(r)
    {
    }
    virtual ~ResultCore() = default;
    // The document of `check --json` / `member --json`, made on the first call under the result's own
    // standard; values(): the same without its traces (every key but `trace`, `library` and `en` alike),
    // what reading one value (r.NRd) needs.
    virtual py::object document() = 0;
    virtual py::object values() = 0;
    virtual std::string toHtml(const report::TitleBlock& block) = 0;

    std::shared_ptr<SDBSection> section;
    KaConstrSteel steel;
    std::string mode, situation;
    design::Rules rules;
    report::ResultSummary summary;
    py::object documentMade, valuesMade;
    batch::MemberRow row;  // the call as a batch row: the command that reproduces it on the report
};

// A check's result (Request, Outcome: the cross-section's or the member's).
template <class Request, class Outcome>
struct Result final : ResultCore {
    using ResultCore::ResultCore;
    Request request{};
    std::optional<Outcome> outcome;

    py::object document() override;
    py::object values() override;
    // The design report of this result, as `check --html` / `member --html` write it.
    std::string toHtml(const report::TitleBlock& block) override;
};

using CheckResult = Result<design::CrossSectionRequest, design::CrossSectionOutcome>;
using MemberResult = Result<design::MemberRequest, design::MemberOutcome>;

// The types CheckResult and MemberResult, added to the module (once, at its import).
void addResultTypes(py::module_& module);

// A new Python object owning the result (a new reference).
PyObject* toPythonObject(std::unique_ptr<CheckResult> result);
PyObject* toPythonObject(std::unique_ptr<MemberResult> result);

} // namespace pyresult
