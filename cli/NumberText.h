#pragma once

// Numbers as text for the batch output, fast and exact.

#include <string>

namespace cli {

// Appends value as printf's "%.6g" writes it ("0.873912", "1.2e-07", "100000", "1e+06", "inf", "-nan").
void appendGeneral6(std::string& out, double value);

} // namespace cli
