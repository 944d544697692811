#pragma once

// A member of a report as the command line that reproduces it: the batch row's columns as the options of
// `steeldesign member` (or `check` when the row has no buckling length), so that a filed sheet names its
// input whole and a checker can run it again.

#include <batch/BatchInput.h>

#include <design/Rules.h>

#include <string>

namespace report {

// An argument as a POSIX shell reads it back: bare when it holds only safe characters, else in single
// quotes.
std::string shellQuoted(const std::string& arg);

// The command of a batch row, under the standard mode, the design situation and the rules of the run
// (options left out where they are the defaults). Columns that the command has no option for are named
// after it, in parentheses.
std::string commandOfRow(const batch::MemberRow& row, const std::string& mode, const std::string& situation,
                         design::Rules rules);

} // namespace report
