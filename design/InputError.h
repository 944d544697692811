#pragma once

// Bad input from outside (a command option, a batch row or header, a Python argument): the message names
// the field and the value. Thrown where text becomes a section, a steel, a standard or a request; the
// command prints it with exit code 2, the batch rejects the row, Python raises ValueError.

#include <stdexcept>

namespace design {

class InputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace design
