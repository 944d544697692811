#pragma once

// Each subcommand lives in a file of its own and registers itself here. A registrar adds the
// subcommand to the application and sets its callback; the callback stores its exit code in exitCode.

#include <CLI/CLI.hpp>

#include <span>
#include <string>

namespace cli {

struct CommandResult {
    int exitCode = 0;
    std::string commandLine;  // the command as typed (quoted for a POSIX shell), for the reports it writes
};

using Registrar = void (*)(CLI::App& app, CommandResult& result);

// `section NAME [--json]` and `sections [--family F] [--json]` (SectionCommands.cpp).
void registerSectionCommand(CLI::App& app, CommandResult& result);
void registerSectionsCommand(CLI::App& app, CommandResult& result);

// `classify NAME ...` (ClassifyCommand.cpp) and `check NAME ...` (CheckCommand.cpp).
void registerClassifyCommand(CLI::App& app, CommandResult& result);
void registerCheckCommand(CLI::App& app, CommandResult& result);

// `member NAME --length L ...`: member buckling and shear buckling (MemberCommand.cpp).
void registerMemberCommand(CLI::App& app, CommandResult& result);

// `batch FILE ...` (BatchCommand.cpp).
void registerBatchCommand(CLI::App& app, CommandResult& result);

// `report FILE --out report.html`: the HTML design report of a batch file (ReportCommand.cpp).
void registerReportCommand(CLI::App& app, CommandResult& result);
// `mcr NAME --length L ...`: the critical moment by finite elements (McrCommand.cpp).
void registerMcrCommand(CLI::App& app, CommandResult& result);

// `select --family F ...` (SelectCommand.cpp).
void registerSelectCommand(CLI::App& app, CommandResult& result);

// The subcommands in the order of the help text.
std::span<const Registrar> registrars();

} // namespace cli
