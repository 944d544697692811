#pragma once

// Files the command reads and writes: an input must be a file that exists; an output never goes over the
// input and is never half-written. The text goes to a temporary file
// beside the target that is renamed when complete, so a failure leaves an existing file untouched.

#include <string>
#include <string_view>

namespace cli {

// InputError, named after the command, for an input that is a directory or does not exist ("-": standard
// input, nothing to check).
void checkInputFile(std::string_view command, const std::string& file);

// True when both names are the same existing file (device and inode; links followed).
bool sameFile(const std::string& a, const std::string& b);

// InputError naming the option when `path` is a directory or the same file as `input` ("" or "-": none).
void checkOutputPath(std::string_view option, const std::string& path, const std::string& input);

// Writes text to path through path + ".part" and a rename; InputError naming the option when it cannot.
void writeFileAtomically(std::string_view option, const std::string& path, std::string_view text);

} // namespace cli
