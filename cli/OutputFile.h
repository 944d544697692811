#pragma once

// Files the command writes: never over the input, never half-written. The text goes to a temporary file
// beside the target that is renamed when complete, so a failure leaves an existing file untouched.

#include <string>
#include <string_view>

namespace cli {

// True when both names are the same existing file (device and inode; links followed).
bool sameFile(const std::string& a, const std::string& b);

// InputError naming the option when `path` is a directory or the same file as `input` ("" or "-": none).
void checkOutputPath(std::string_view option, const std::string& path, const std::string& input);

// Writes text to path through path + ".part" and a rename; InputError naming the option when it cannot.
void writeFileAtomically(std::string_view option, const std::string& path, std::string_view text);

} // namespace cli
