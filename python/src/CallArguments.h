#pragma once

// The arguments of a call from Python read straight from the interpreter's vectorcall (positional
// arguments, then the values of the keywords named in a tuple), without pybind11's dispatch: a loop of
// checks spends its time in the check, not in matching sixteen keywords. The messages are Python's own
// ("check() got an unexpected keyword argument 'n'") or name the argument with the value given
// ("N=None: a number is needed").

#include <design/InputError.h>

#include <pybind11/pybind11.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace pycall {

// The parameters of a function: their names in order, how many may be given by position, how many must.
class Signature {
public:
    static constexpr std::size_t maxParameters = 40;

    Signature(const char* function, std::initializer_list<const char*> names, std::size_t positional,
              std::size_t required);

    // The value given for each parameter (borrowed; nullptr where none was given). Throws
    // pybind11::type_error as Python words it for too many positional arguments, a keyword not known, a
    // parameter given twice or a required one missing.
    using Values = std::array<PyObject*, maxParameters>;
    void bind(PyObject* const* args, Py_ssize_t nargs, PyObject* kwnames, Values& values) const;

    const char* name(std::size_t i) const { return names_[i]; }

private:
    const char* function_;
    std::array<const char*, maxParameters> names_{};
    std::array<PyObject*, maxParameters> interned_{};  // the names as interned Python texts (kept for good)
    std::size_t count_ = 0, positional_ = 0, required_ = 0;
};

// The Python exception for design::InputError (a ValueError), set by the module at its import.
extern PyObject* inputErrorType;

// The command's messages name its options ("--gamma-m1: ..."); here they name the argument ("gamma_m1: ...").
std::string argumentMessage(std::string message);

// The body of a function called by the interpreter: its result, or nullptr with the Python exception
// pybind11 would raise for the C++ exception thrown.
template <class Body>
PyObject* guarded(Body&& body) noexcept
{
    try {
        return body();
    } catch (pybind11::error_already_set& e) {
        e.restore();
    } catch (const pybind11::builtin_exception& e) {
        e.set_error();
    } catch (const design::InputError& e) {
        PyErr_SetString(inputErrorType, argumentMessage(e.what()).c_str());
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory();
    } catch (const std::exception& e) {
        PyErr_SetString(PyExc_RuntimeError, e.what());
    }
    return nullptr;
}

// The conversions of one argument, the parameter's name in every message. A value of the wrong kind is a
// TypeError showing it as given (name=repr); a number that is not finite a ValueError.
double number(const char* name, PyObject* value, double fallback);
std::optional<double> optionalNumber(const char* name, PyObject* value);  // None: empty
bool flag(const char* name, PyObject* value, bool fallback);               // True/False, numpy.bool_, int
std::optional<bool> optionalFlag(const char* name, PyObject* value);      // None: empty
std::string_view text(const char* name, PyObject* value, std::string_view fallback);
// Three numbers (a list, tuple or array of start, middle and end values); None: empty.
std::optional<std::array<double, 3>> threeNumbers(const char* name, PyObject* value);

} // namespace pycall
