#include "Results.h"

#include "CallArguments.h"

#include <design/DesignBasis.h>
#include <design/Departures.h>
#include <report/CommandLine.h>

#include <type_traits>

namespace pyresult {

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

namespace {

template <class Request, class Outcome>
py::object documentOf(Result<Request, Outcome>& r, bool withTrace)
{
    design::applyStandard(r.mode, r.situation);
    const design::Departures departures = design::findDepartures(r.request, *r.outcome);
    if constexpr (std::is_same_v<Request, design::MemberRequest>)
        return toPython(report::memberJson(*r.section, r.steel, r.request, *r.outcome, departures, r.rules, withTrace));
    else
        return toPython(report::checkJson(*r.section, r.steel, r.request, *r.outcome, departures, r.rules, withTrace));
}

} // namespace

template <class Request, class Outcome>
py::object Result<Request, Outcome>::document()
{
    if (!documentMade) documentMade = documentOf(*this, true);
    return documentMade;
}

template <class Request, class Outcome>
py::object Result<Request, Outcome>::values()
{
    if (documentMade) return documentMade;
    if (!valuesMade) valuesMade = documentOf(*this, false);
    return valuesMade;
}

template <class Request, class Outcome>
std::string Result<Request, Outcome>::toHtml(const report::TitleBlock& block)
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

template struct Result<design::CrossSectionRequest, design::CrossSectionOutcome>;
template struct Result<design::MemberRequest, design::MemberOutcome>;

namespace {

struct ResultObject {
    PyObject_HEAD
    ResultCore* result;
};

PyTypeObject* checkType = nullptr;
PyTypeObject* memberType = nullptr;

ResultCore& resultOf(PyObject* self) { return *reinterpret_cast<ResultObject*>(self)->result; }

PyObject* textObject(std::string_view text)
{
    return PyUnicode_FromStringAndSize(text.data(), static_cast<Py_ssize_t>(text.size()));
}

PyObject* numberOrNone(const std::optional<double>& value)
{
    if (value) return PyFloat_FromDouble(*value);
    Py_RETURN_NONE;
}

template <class Text>
PyObject* textOrNone(const std::optional<Text>& value)
{
    if (value) return textObject(*value);
    Py_RETURN_NONE;
}

void dealloc(PyObject* self)
{
    PyTypeObject* type = Py_TYPE(self);
    delete reinterpret_cast<ResultObject*>(self)->result;
    type->tp_free(self);
    Py_DECREF(type);
}

// The value of the document under a key (a new reference), nullptr (no exception set) where it has none:
// from the values without the traces unless the key holds one.
PyObject* valueOf(ResultCore& result, PyObject* key)
{
    const bool traced = PyUnicode_Check(key) && (PyUnicode_CompareWithASCIIString(key, "trace") == 0 ||
                                                 PyUnicode_CompareWithASCIIString(key, "library") == 0 ||
                                                 PyUnicode_CompareWithASCIIString(key, "en") == 0);
    py::object document = traced ? result.document() : result.values();
    PyObject* value = PyDict_GetItemWithError(document.ptr(), key);
    if (!value && PyErr_Occurred()) throw py::error_already_set();
    Py_XINCREF(value);
    return value;
}

// Every value of the document is an attribute too (r.NRd); a name with two leading underscores never is.
PyObject* getattro(PyObject* self, PyObject* name)
{
    PyObject* found = PyObject_GenericGetAttr(self, name);
    if (found || !PyErr_ExceptionMatches(PyExc_AttributeError)) return found;
    if (PyUnicode_Check(name) && PyUnicode_GetLength(name) >= 2 && PyUnicode_READ_CHAR(name, 0) == '_' &&
        PyUnicode_READ_CHAR(name, 1) == '_')
        return nullptr;
    PyErr_Clear();
    return pycall::guarded([&]() -> PyObject* {
        PyObject* value = valueOf(resultOf(self), name);
        if (!value) PyErr_SetObject(PyExc_AttributeError, name);
        return value;
    });
}

// r["NRd"]: KeyError where the document has no such key.
PyObject* subscript(PyObject* self, PyObject* key)
{
    return pycall::guarded([&]() -> PyObject* {
        PyObject* value = valueOf(resultOf(self), key);
        if (!value) PyErr_SetObject(PyExc_KeyError, key);
        return value;
    });
}

PyObject* verdict(PyObject* self, void*) { return textObject(resultOf(self).summary.verdict); }
PyObject* governing(PyObject* self, void*) { return textOrNone(resultOf(self).summary.governing); }
PyObject* governingUtilization(PyObject* self, void*) { return numberOrNone(resultOf(self).summary.governingUtilization); }
PyObject* sectionClass(PyObject* self, void*) { return PyLong_FromLong(resultOf(self).summary.sectionClass); }
PyObject* notVerified(PyObject* self, void*) { return textOrNone(resultOf(self).summary.notVerified); }
PyObject* rulesName(PyObject* self, void*) { return textObject(design::toString(resultOf(self).rules)); }
PyObject* sectionName(PyObject* self, void*) { return textObject(resultOf(self).section->getName()); }
PyObject* steelName(PyObject* self, void*) { return textObject(resultOf(self).steel.getName()); }

PyObject* utilizations(PyObject* self, void*)
{
    PyObject* out = PyDict_New();
    if (!out) return nullptr;
    for (const auto& [name, value] : resultOf(self).summary.utilizations) {
        PyObject* key = textObject(name);
        PyObject* item = key ? numberOrNone(value) : nullptr;
        const bool stored = item && PyDict_SetItem(out, key, item) == 0;
        Py_XDECREF(key);
        Py_XDECREF(item);
        if (!stored) {
            Py_DECREF(out);
            return nullptr;
        }
    }
    return out;
}

PyObject* documentMethod(PyObject* self, PyObject*)
{
    return pycall::guarded([&] { return resultOf(self).document().release().ptr(); });
}

PyObject* toHtmlMethod(PyObject* self, PyObject* const* args, Py_ssize_t nargs, PyObject* kwnames)
{
    return pycall::guarded([&] {
        static const pycall::Signature s(
            "to_html", {"project", "element", "client", "prepared", "checked", "approved", "revision"}, 0, 0);
        pycall::Signature::Values v;
        s.bind(args, nargs, kwnames, v);
        report::TitleBlock block;
        std::string* fields[] = {&block.project,  &block.element,  &block.client,  &block.prepared,
                                 &block.checked, &block.approved, &block.revision};
        for (std::size_t i = 0; i < 7; ++i) *fields[i] = pycall::text(s.name(i), v[i], {});
        const std::string page = resultOf(self).toHtml(block);
        return textObject(page);
    });
}

PyGetSetDef getters[] = {
    {"verdict", verdict, nullptr, "fulfilled, not fulfilled, not verified (a member check: also not applicable)", nullptr},
    {"governing", governing, nullptr, "the check with the largest utilization under the rules (None: none)", nullptr},
    {"governing_utilization", governingUtilization, nullptr, "its utilization (None: none computed)", nullptr},
    {"utilizations", utilizations, nullptr, "the utilization of each check under the rules (None: not computed)", nullptr},
    {"section_class", sectionClass, nullptr, "the cross-section class under the rules (1 to 4)", nullptr},
    {"not_verified", notVerified, nullptr, "why something was not verified (None: everything was)", nullptr},
    {"rules", rulesName, nullptr, "the rules of the verdicts: en or library", nullptr},
    {"section_name", sectionName, nullptr, "the section's designation", nullptr},
    {"steel_name", steelName, nullptr, "the steel grade", nullptr},
    {nullptr, nullptr, nullptr, nullptr, nullptr},
};

PyMethodDef methods[] = {
    {"_document", documentMethod, METH_NOARGS, "the command's --json document (made on the first call, then kept)"},
    {"to_html", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&toHtmlMethod)), METH_FASTCALL | METH_KEYWORDS,
     "to_html($self, /, *, project='', element='', client='', prepared='', checked='', approved='', revision='')\n"
     "--\n\n"
     "The design report of the result (the page of `check --html` / `member --html`); the title block's\n"
     "fields not given are blank lines to fill in by hand."},
    {nullptr, nullptr, 0, nullptr},
};

PyTypeObject* makeType(const char* name, const char* doc)
{
    PyType_Slot slots[] = {
        {Py_tp_dealloc, reinterpret_cast<void*>(&dealloc)},
        {Py_tp_getattro, reinterpret_cast<void*>(&getattro)},
        {Py_mp_subscript, reinterpret_cast<void*>(&subscript)},
        {Py_tp_getset, getters},
        {Py_tp_methods, methods},
        {Py_tp_doc, const_cast<char*>(doc)},
        {0, nullptr},
    };
    PyType_Spec layout{name, static_cast<int>(sizeof(ResultObject)), 0,
                     Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
    PyObject* type = PyType_FromSpec(&layout);
    if (!type) throw py::error_already_set();
    return reinterpret_cast<PyTypeObject*>(type);
}

PyObject* wrap(PyTypeObject* type, ResultCore* result)
{
    ResultObject* self = PyObject_New(ResultObject, type);
    if (!self) {
        delete result;
        return nullptr;
    }
    self->result = result;
    return reinterpret_cast<PyObject*>(self);
}

} // namespace

void addResultTypes(py::module_& module)
{
    checkType = makeType("steeldesign._core.CheckResult", "The result of a cross-section check (EN 1993-1-1 6.2).");
    memberType = makeType("steeldesign._core.MemberResult", "The result of the member checks (EN 1993-1-1 6.3).");
    module.add_object("CheckResult", py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(checkType)));
    module.add_object("MemberResult", py::reinterpret_borrow<py::object>(reinterpret_cast<PyObject*>(memberType)));
}

PyObject* toPythonObject(std::unique_ptr<CheckResult> result) { return wrap(checkType, result.release()); }
PyObject* toPythonObject(std::unique_ptr<MemberResult> result) { return wrap(memberType, result.release()); }

} // namespace pyresult
