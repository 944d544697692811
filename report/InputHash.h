#pragma once

// The SHA-256 of a report's input (FIPS 180-4), printed on every page so that a filed calculation names
// the exact file it was made from: `sha256sum model.csv` gives the same hex digits.

#include <istream>
#include <optional>
#include <string>
#include <string_view>

namespace report {

// The hex digest of the bytes.
std::string sha256Hex(std::string_view bytes);

// The hex digest of a stream's bytes to its end; nullopt when it cannot be read.
std::optional<std::string> sha256Hex(std::istream& in);

// The hex digest of a file's bytes; nullopt when it cannot be read.
std::optional<std::string> fileSha256Hex(const std::string& path);

} // namespace report
