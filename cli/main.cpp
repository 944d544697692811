// The steeldesign command: EN 1993-1-1 checks of steel members from the command line.

#include "Commands.h"
#include "Options.h"

#include <report/CommandLine.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>

#ifndef STEELDESIGN_VERSION
#define STEELDESIGN_VERSION "unknown"
#endif

namespace {

// Every byte the command prints reaches standard output, or the run fails: a full disk or a closed
// pipe is exit 2 with the reason, never a quiet 0.
int checkedOutput(int exitCode)
{
    std::cout.flush();
    if (std::cout && std::fflush(stdout) == 0 && !std::ferror(stdout)) return exitCode;
    const int error = errno;
    std::cerr << "steeldesign: cannot write the output: " << std::strerror(error) << '\n';
    return cli::exitInputError;
}

} // namespace

int main(int argc, char** argv)
{
    CLI::App app{"steeldesign " STEELDESIGN_VERSION
                 ": verification of steel members to EN 1993-1-1 (and EN 1993-1-5 for webs in shear).\n"
                 "Units: m, kN, kNm, kN/m2 in the library; mm, cm2, cm4, cm3 in the reports. "
                 "Compression is negative."};
    app.set_version_flag("--version", std::string("steeldesign ") + STEELDESIGN_VERSION);
    app.require_subcommand(0, 1);

    cli::CommandResult result;
    result.commandLine = "steeldesign";
    for (int i = 1; i < argc; ++i) result.commandLine += " " + report::shellQuoted(argv[i]);
    // Subcommands, one file each (see Commands.h).
    for (auto registrar : cli::registrars()) registrar(app, result);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        const int rc = app.exit(e);
        return rc == 0 ? 0 : cli::exitInputError;
    } catch (const cli::InputError& e) {
        std::cerr << "steeldesign: " << e.what() << '\n';
        return cli::exitInputError;
    }
    if (app.get_subcommands().empty()) {
        std::cout << app.help();
        return checkedOutput(0);
    }
    return checkedOutput(result.exitCode);
}
