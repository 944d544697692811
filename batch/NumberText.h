#pragma once

// Numbers as text for the batch output, fast and exact.

#include <cstddef>
#include <string>

namespace batch {

// Appends value as printf's "%.6g" writes it ("0.873912", "1.2e-07", "100000", "1e+06", "inf", "-nan").
void appendGeneral6(std::string& out, double value);

// The most characters writeGeneral6 writes ("-0.0000999999", "-9.99999e+14", "-1.79769e+308").
inline constexpr std::size_t general6Length = 16;

// The same text at out, which has room for general6Length characters (the bytes after the text may be
// written too); returns the end of the text.
char* writeGeneral6(char* out, double value);

} // namespace batch
