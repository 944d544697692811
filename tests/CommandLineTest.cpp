#include "CommandRunner.h"

#include <gtest/gtest.h>

TEST(CommandLine, VersionAndHelp)
{
    const CommandRun version = runSteeldesign("--version");
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_NE(version.output.find("steeldesign 0."), std::string::npos) << version.output;

    const CommandRun help = runSteeldesign("--help");
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_NE(help.output.find("EN 1993-1-1"), std::string::npos) << help.output;
}

TEST(CommandLine, UnknownOptionIsRejectedByName)
{
    const CommandRun bad = runSteeldesign("--no-such-option");
    EXPECT_NE(bad.exitCode, 0);
    EXPECT_NE(bad.output.find("--no-such-option"), std::string::npos) << bad.output;
}
