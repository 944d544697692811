// The rules switch of the tools: under `--rules library` the command gives the library's verdicts and
// values exactly as before the EN 1993-1-1 evaluation existed (pinned by the batch output of the example
// model and of 2,000 random rows over every catalogue family, written by the build before it:
// tests/data/*.library.*), and a bad value of the option is an input error naming it.

#include "CommandRunner.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace {

std::string readFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string source(const std::string& relative) { return std::string(STEELDESIGN_SOURCE_DIR) + "/" + relative; }

std::string scratch(const std::string& name)
{
    const auto dir = std::filesystem::temp_directory_path() / "steeldesign-rules-switch";
    std::filesystem::create_directories(dir);
    return (dir / name).string();
}

struct PinnedOutput {
    const char* input;
    const char* format;
    const char* expected;
};

class LibraryRulesKeepTheOutput : public ::testing::TestWithParam<PinnedOutput> {};

TEST_P(LibraryRulesKeepTheOutput, ByteForByte)
{
    const PinnedOutput& p = GetParam();
    const std::string out = scratch(std::string(p.expected).substr(std::string(p.expected).rfind('/') + 1));
    for (const char* jobs : {"1", "2"}) {
        const CommandRun run = runSteeldesign("batch " + source(p.input) + " --rules library --jobs " + jobs +
                                              " --format " + p.format + " --out " + out);
        ASSERT_LE(run.exitCode, 3) << run.output;
        EXPECT_EQ(readFile(out), readFile(source(p.expected))) << p.input << " with " << jobs << " jobs";
    }
}

INSTANTIATE_TEST_SUITE_P(
    ExampleAndRandomRows, LibraryRulesKeepTheOutput,
    ::testing::Values(PinnedOutput{"examples/frames.csv", "csv", "tests/data/frames.library.csv"},
                      PinnedOutput{"examples/frames.csv", "jsonl", "tests/data/frames.library.jsonl"},
                      PinnedOutput{"tests/data/random-rows.csv", "csv", "tests/data/random-rows.library.csv"}));

TEST(RulesOption, BadValueIsAnInputErrorNamingTheOptionOnEveryCommand)
{
    const std::string model = source("examples/frames.csv");
    const std::string commands[] = {"check \"IPE 300\" --My 50",    "member \"IPE 300\" --length 4 --My 50",
                                    "classify \"IPE 300\" --My 50", "select --family IPE --My 50",
                                    "batch " + model,                "report " + model + " --out " + scratch("r.html")};
    for (const std::string& command : commands) {
        for (const char* bad : {"EN", "lib", "\"\"", "en,library"}) {
            const CommandRun run = runSteeldesign(command + " --rules " + bad);
            EXPECT_EQ(run.exitCode, 2) << command << " --rules " << bad << "\n" << run.output;
            EXPECT_NE(run.output.find("--rules"), std::string::npos) << run.output;
            EXPECT_NE(run.output.find("en, library"), std::string::npos) << run.output;
        }
    }
    EXPECT_FALSE(std::filesystem::exists(scratch("r.html")));
}

TEST(RulesOption, JsonNamesTheRulesTheVerdictAndTheGoverningCheckUnderBoth)
{
    for (const std::string rules : {"en", "library"}) {
        for (const std::string command : std::initializer_list<const char*>{"check \"IPE 300\" --steel S355 --N -250 --My 90 --Vz 60",
                                          "member \"IPE 300\" --steel S355 --length 4 --N -250 --My 90"}) {
            const CommandRun run = runSteeldesign(command + " --json --rules " + rules, false);
            ASSERT_LE(run.exitCode, 3) << run.output;
            const nlohmann::json j = nlohmann::json::parse(run.output);
            EXPECT_EQ(j.at("rules"), rules == "en" ? "EN 1993-1-1" : "library") << command;
            for (const char* key : {"verdict", "governing", "governingUtilization", "departures", "checks", "class"})
                EXPECT_TRUE(j.contains(key)) << command << " --rules " << rules << ": no " << key;
            // The other rules' document stays beside it.
            EXPECT_TRUE(j.contains(rules == "en" ? "library" : "en")) << command;
            // The governing check is the largest of the checks of the rules in force.
            double largest = 0.0;
            for (const auto& c : j.at("checks")) {
                const auto& v = c.at(rules == "en" ? "en" : "library");
                if (v.is_number()) largest = std::max(largest, v.get<double>());
            }
            EXPECT_DOUBLE_EQ(j.at("governingUtilization").get<double>(), largest) << command;
        }
    }
}

} // namespace
