#pragma once

// The SHA-256 of a report's input (FIPS 180-4), printed on every page so that a filed calculation names
// the exact file it was made from: `sha256sum model.csv` gives the same hex digits.

#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace report {

// The hex digest of the bytes.
std::string sha256Hex(std::string_view bytes);

// The hex digest of a stream's bytes to its end; nullopt when it cannot be read.
std::optional<std::string> sha256Hex(std::istream& in);

// A stream over another that hashes every byte read through it: the digest of exactly the bytes a reader
// took (a file that changes meanwhile, a pipe, standard input), once it has read to the end.
class HashedInput {
public:
    explicit HashedInput(std::istream& source);
    ~HashedInput();
    HashedInput(const HashedInput&) = delete;
    HashedInput& operator=(const HashedInput&) = delete;
    std::istream& stream();
    // The digest of the bytes read so far.
    std::string hex() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace report
