#include "CommandRunner.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

TEST(SelectCommand, LightestIpeForABendingMoment)
{
    // Cross-section only, My = 150 kNm in S355 (class 1): Wpl,y >= 150 / 355000 = 422.5 cm3.
    // IPE 240 has Wpl,y = 366.6 cm3 (utilization 1.15), IPE 270 has 484.0 cm3 (0.873): IPE 270.
    const CommandRun r = runSteeldesign("select --rules library --family IPE --steel S355 --My 150 --json", false);
    EXPECT_EQ(r.exitCode, 0);
    const auto j = nlohmann::json::parse(r.output);
    EXPECT_EQ(j["selected"]["name"], "IPE 270");
    EXPECT_NEAR(j["selected"]["utilizations"]["Bending"].get<double>(), 150 / (484.0e-6 * 355000), 0.005);
    EXPECT_TRUE(j["selected"]["fulfilled"]);
    EXPECT_EQ(j["nextLighter"]["name"], "IPE 240");
    EXPECT_NEAR(j["nextLighter"]["utilizations"]["Bending"].get<double>(), 150 / (366.6e-6 * 355000), 0.005);
    EXPECT_FALSE(j["nextLighter"]["fulfilled"]);
    EXPECT_LT(j["nextLighter"]["massPerMetre"].get<double>(), j["selected"]["massPerMetre"].get<double>());

    // The selected profile gives the same utilization through `check`.
    const auto check = nlohmann::json::parse(runSteeldesign("check --rules library \"IPE 270\" --steel S355 --My 150 --json", false).output);
    EXPECT_EQ(check["utilizations"]["Bending"], j["selected"]["utilizations"]["Bending"]);
}

TEST(SelectCommand, MemberChecksMakeTheSelectionHeavier)
{
    // With a 4 m unrestrained length lateral-torsional buckling governs: a heavier profile than IPE 270.
    const auto j = nlohmann::json::parse(
        runSteeldesign("select --rules library --family IPE --steel S355 --My 150 --length 4 --rolled-method --json", false).output);
    EXPECT_TRUE(j["memberChecked"]);
    EXPECT_GT(j["selected"]["massPerMetre"].get<double>(), 36.1);  // IPE 270: 36.1 kg/m
    EXPECT_EQ(j["selected"]["governing"], "memberBending");
    EXPECT_GT(j["nextLighter"]["utilizations"]["memberBending"].get<double>(), 1.0);
}

TEST(SelectCommand, NoneOrBadInput)
{
    const CommandRun none = runSteeldesign("select --rules library --family IPE --steel S235 --My 5000");
    EXPECT_EQ(none.exitCode, 1);
    EXPECT_NE(none.output.find("no profile"), std::string::npos) << none.output;
    const CommandRun family = runSteeldesign("select --rules library --family XYZ --My 10");
    EXPECT_EQ(family.exitCode, 2);
    EXPECT_NE(family.output.find("XYZ"), std::string::npos);
    EXPECT_EQ(runSteeldesign("select --rules library --family IPE --My 10 --length -1").exitCode, 2);
}
