#pragma once

// Runs the built steeldesign command as a user would and captures what it prints.

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>

struct CommandRun {
    int exitCode;
    std::string output;  // stdout, and stderr too unless separated
};

// arguments are passed to the shell as written; stderr is merged into output unless mergeStderr is false.
inline CommandRun runSteeldesign(const std::string& arguments, bool mergeStderr = true)
{
    const std::string command =
        std::string(STEELDESIGN_CLI) + " " + arguments + (mergeStderr ? " 2>&1" : " 2>/dev/null");
    CommandRun result{-1, {}};
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return result;
    std::array<char, 4096> buffer{};
    std::size_t n;
    while ((n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) result.output.append(buffer.data(), n);
    const int status = pclose(pipe);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}
