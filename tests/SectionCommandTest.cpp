// The `section` and `sections` subcommands, run as the built binary.

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <string>
#include <sys/wait.h>

namespace {

struct CommandRun {
    int exitCode;
    std::string output;  // stdout and stderr
};

CommandRun run(const std::string& arguments)
{
    const std::string command = std::string(STEELDESIGN_CLI) + " " + arguments + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return {-1, ""};
    std::string out;
    char buffer[4096];
    std::size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) out.append(buffer, n);
    const int status = pclose(pipe);
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, out};
}

class SectionCommand : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (std::string(STEELDESIGN_CLI).empty()) GTEST_SKIP() << "the command is not built";
    }
};

} // namespace

// JSON in m-based SI units with the documented keys; IPE 300: A = 53.81 cm2 = 5.381e-3 m2,
// Iy = 8356 cm4 = 8.356e-5 m4, Wpl,y = 628.4 cm3, tf = 10.7 mm.
TEST_F(SectionCommand, JsonHasTheKeysInSIUnits)
{
    const CommandRun r = run("section \"ipe 300\" --json");
    ASSERT_EQ(r.exitCode, 0) << r.output;
    const auto j = nlohmann::json::parse(r.output);
    for (const char* key : {"name", "kind", "typeKey", "rolled", "h", "b", "tw", "tf", "r", "A", "Avy", "Avz", "Iy",
                            "Iz", "It", "Iw", "Wely", "Welz", "Wply", "Wplz"})
        EXPECT_TRUE(j.contains(key)) << key;
    EXPECT_EQ(j["name"], "IPE 300");
    EXPECT_EQ(j["typeKey"], "I");
    EXPECT_EQ(j["rolled"], true);
    EXPECT_NEAR(j["tf"].get<double>(), 0.0107, 1e-12);
    EXPECT_NEAR(j["A"].get<double>(), 5.381e-3, 0.005 * 5.381e-3);
    EXPECT_NEAR(j["Iy"].get<double>(), 8.356e-5, 0.005 * 8.356e-5);
    EXPECT_NEAR(j["Wply"].get<double>(), 628.4e-6, 0.005 * 628.4e-6);
}

TEST_F(SectionCommand, TextIsInEngineersUnits)
{
    const CommandRun r = run("section SHS100x100x5");
    ASSERT_EQ(r.exitCode, 0) << r.output;
    EXPECT_NE(r.output.find("SHS 100x100x5"), std::string::npos) << r.output;
    EXPECT_NE(r.output.find("hot-finished"), std::string::npos);
    EXPECT_NE(r.output.find("100.0 mm"), std::string::npos);
    for (const char* unit : {"cm2", "cm4", "cm3", "cm6"}) EXPECT_NE(r.output.find(unit), std::string::npos) << unit;
}

TEST_F(SectionCommand, UnknownNameFailsAndSuggestsTheNearest)
{
    const CommandRun r = run("section \"IPE 301\"");
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.output.find("unknown section 'IPE 301'"), std::string::npos) << r.output;
    EXPECT_NE(r.output.find("'IPE 300'"), std::string::npos) << r.output;
}

TEST_F(SectionCommand, ListsTheCatalogueByFamily)
{
    const CommandRun all = run("sections --json");
    ASSERT_EQ(all.exitCode, 0);
    const auto list = nlohmann::json::parse(all.output);
    EXPECT_GT(list.size(), 400u);

    const CommandRun heb = run("sections --family heb --json");
    ASSERT_EQ(heb.exitCode, 0) << heb.output;
    const auto hebList = nlohmann::json::parse(heb.output);
    ASSERT_EQ(hebList.size(), 24u);
    EXPECT_EQ(hebList.front()["name"], "HEB 100");
    for (const auto& entry : hebList) EXPECT_EQ(entry["family"], "HEB");

    const CommandRun text = run("sections --family UPE");
    ASSERT_EQ(text.exitCode, 0);
    EXPECT_NE(text.output.find("UPE 200"), std::string::npos);

    const CommandRun unknown = run("sections --family XYZ");
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_NE(unknown.output.find("unknown family 'XYZ'"), std::string::npos) << unknown.output;
}
