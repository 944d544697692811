#include "CallArguments.h"

#include <pybind11/pybind11.h>

#include <cmath>
#include <cstring>
#include <string>

namespace py = pybind11;

namespace pycall {

PyObject* inputErrorType = PyExc_ValueError;

std::string argumentMessage(std::string message)
{
    if (message.rfind("--", 0) == 0) {
        message.erase(0, 2);
        for (std::size_t i = 0; i < message.size() && message[i] != ':'; ++i)
            if (message[i] == '-') message[i] = '_';
    }
    return message;
}

namespace {

// "name=repr(value)", the argument as the caller gave it (its first 80 characters).
std::string shown(const char* name, PyObject* value)
{
    std::string out = std::string(name) + "=";
    PyObject* text = PyObject_Repr(value);
    if (!text) {
        PyErr_Clear();
        return out + "<" + Py_TYPE(value)->tp_name + ">";
    }
    Py_ssize_t size = 0;
    const char* data = PyUnicode_AsUTF8AndSize(text, &size);
    if (data) {
        const std::string_view whole(data, static_cast<std::size_t>(size));
        out += whole.size() > 80 ? std::string(whole.substr(0, 77)) + "..." : std::string(whole);
    } else {
        PyErr_Clear();
    }
    Py_DECREF(text);
    return out;
}

// needed: "a number is needed".
[[noreturn]] void wrongKind(const char* name, PyObject* value, const char* needed)
{
    throw py::type_error(shown(name, value) + ": " + needed + ", got " + Py_TYPE(value)->tp_name);
}

bool isNumpyBool(PyObject* value)
{
    const char* type = Py_TYPE(value)->tp_name;
    return std::strcmp(type, "numpy.bool_") == 0 || std::strcmp(type, "numpy.bool") == 0;
}

} // namespace

Signature::Signature(const char* function, std::initializer_list<const char*> names, std::size_t positional,
                     std::size_t required)
    : function_(function), positional_(positional), required_(required)
{
    for (const char* n : names) {
        names_[count_] = n;
        interned_[count_] = PyUnicode_InternFromString(n);
        if (!interned_[count_]) throw py::error_already_set();
        ++count_;
    }
}

void Signature::bind(PyObject* const* args, Py_ssize_t nargs, PyObject* kwnames, Values& values) const
{
    values.fill(nullptr);
    const std::size_t given = static_cast<std::size_t>(nargs);
    if (given > positional_)
        throw py::type_error(std::string(function_) + "() takes " +
                             (positional_ == 0 ? std::string("no positional arguments")
                                               : "at most " + std::to_string(positional_) + " positional arguments") +
                             " (" + std::to_string(given) + " given)");
    for (std::size_t i = 0; i < given; ++i) values[i] = args[i];
    const Py_ssize_t keywords = kwnames ? PyTuple_GET_SIZE(kwnames) : 0;
    for (Py_ssize_t k = 0; k < keywords; ++k) {
        PyObject* key = PyTuple_GET_ITEM(kwnames, k);
        std::size_t found = count_;
        // The interpreter interns the keywords of a call written in the source: the same object.
        for (std::size_t i = 0; i < count_ && found == count_; ++i)
            if (key == interned_[i]) found = i;
        for (std::size_t i = 0; i < count_ && found == count_; ++i)
            if (PyUnicode_Compare(key, interned_[i]) == 0) found = i;
        if (found == count_) {
            if (PyErr_Occurred()) PyErr_Clear();
            throw py::type_error(std::string(function_) + "() got an unexpected keyword argument " +
                                 py::repr(key).cast<std::string>());
        }
        if (values[found])
            throw py::type_error(std::string(function_) + "() got multiple values for argument '" + names_[found] + "'");
        values[found] = args[nargs + k];
    }
    for (std::size_t i = 0; i < required_; ++i)
        if (!values[i])
            throw py::type_error(std::string(function_) + "() missing required argument '" + names_[i] + "'");
}

double number(const char* name, PyObject* value, double fallback)
{
    if (!value) return fallback;
    double v = 0.0;
    if (PyFloat_CheckExact(value)) {
        v = PyFloat_AS_DOUBLE(value);
    } else {
        // int, bool, NumPy's scalars and whatever else Python's float() takes without parsing text.
        if (PyUnicode_Check(value) || PyBytes_Check(value) || value == Py_None) wrongKind(name, value, "a number is needed");
        v = PyFloat_AsDouble(value);
        if (v == -1.0 && PyErr_Occurred()) {
            const bool tooLarge = PyErr_ExceptionMatches(PyExc_OverflowError);
            PyErr_Clear();
            if (tooLarge) throw py::value_error(std::string(name) + ": not a finite number: too large for a float");
            wrongKind(name, value, "a number is needed");
        }
    }
    if (!std::isfinite(v)) throw py::value_error(std::string(name) + ": not a finite number: " + std::to_string(v));
    return v;
}

std::optional<double> optionalNumber(const char* name, PyObject* value)
{
    if (!value || value == Py_None) return std::nullopt;
    return number(name, value, 0.0);
}

bool flag(const char* name, PyObject* value, bool fallback)
{
    if (!value) return fallback;
    if (value == Py_True) return true;
    if (value == Py_False) return false;
    if (isNumpyBool(value) || PyLong_Check(value)) {
        const int truth = PyObject_IsTrue(value);
        if (truth < 0) throw py::error_already_set();
        return truth != 0;
    }
    wrongKind(name, value, "True or False is needed");
}

std::optional<bool> optionalFlag(const char* name, PyObject* value)
{
    if (!value || value == Py_None) return std::nullopt;
    return flag(name, value, false);
}

std::string_view text(const char* name, PyObject* value, std::string_view fallback)
{
    if (!value) return fallback;
    if (!PyUnicode_Check(value)) wrongKind(name, value, "a text is needed");
    Py_ssize_t size = 0;
    const char* data = PyUnicode_AsUTF8AndSize(value, &size);
    if (!data) throw py::error_already_set();
    return {data, static_cast<std::size_t>(size)};
}

std::optional<std::array<double, 3>> threeNumbers(const char* name, PyObject* value)
{
    if (!value || value == Py_None) return std::nullopt;
    if (PyUnicode_Check(value) || PyBytes_Check(value) || !PySequence_Check(value))
        wrongKind(name, value, "three numbers (start, middle, end) are needed");
    PyObject* items = PySequence_Fast(value, "");
    if (!items) {
        PyErr_Clear();
        wrongKind(name, value, "three numbers (start, middle, end) are needed");
    }
    const Py_ssize_t size = PySequence_Fast_GET_SIZE(items);
    if (size != 3) {
        Py_DECREF(items);
        throw py::value_error(std::string(name) + ": three values (start, middle, end) are needed, got " +
                              std::to_string(size));
    }
    std::array<double, 3> out{};
    try {
        for (Py_ssize_t i = 0; i < 3; ++i) out[static_cast<std::size_t>(i)] = number(name, PySequence_Fast_GET_ITEM(items, i), 0.0);
    } catch (...) {
        Py_DECREF(items);
        throw;
    }
    Py_DECREF(items);
    return out;
}

} // namespace pycall
