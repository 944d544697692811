// The mcr command and the numerical critical moment of member and batch, run as a user would.

#include "CommandRunner.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

nlohmann::json runJson(const std::string& arguments, int expectedExit = 0)
{
    const CommandRun r = runSteeldesign(arguments, false);
    EXPECT_EQ(r.exitCode, expectedExit) << arguments << "\n" << r.output;
    return nlohmann::json::parse(r.output);
}

} // namespace

// Uniform moment on fork supports: Mcr = pi^2 E Iz / L^2 sqrt(Iw / Iz + L^2 G It / (pi^2 E Iz)), C1 = 1.
// A moment falling to zero (psi = 0): C1 between 1.77 and 1.88 (the published range of the tables).
TEST(McrCommand, UniformAndLinearMomentsOnForkSupports)
{
    const auto section = runJson("section \"IPE 300\" --json");
    const double E = 210e6, G = 81e6, L = 6.0, pi2 = M_PI * M_PI;
    const double Iz = section["Iz"].get<double>(), It = section["It"].get<double>(), Iw = section["Iw"].get<double>();
    const double closed = pi2 * E * Iz / (L * L) * std::sqrt(Iw / Iz + L * L * G * It / (pi2 * E * Iz));
    const auto uniform = runJson("mcr \"IPE 300\" --length 6 --moments-y 100,100,100 --json");
    EXPECT_NEAR(uniform["Mcr"].get<double>(), closed, closed * 0.001);
    EXPECT_NEAR(uniform["C1"].get<double>(), 1.0, 1e-6);
    EXPECT_EQ(uniform["shape"].size(), 31u);
    const auto linear = runJson("mcr \"IPE 300\" --length 6 --moments-y 100,50,0 --json");
    EXPECT_GT(linear["C1"].get<double>(), 1.75);
    EXPECT_LT(linear["C1"].get<double>(), 1.89);
    // The diagram's sign does not matter for a doubly symmetric section.
    const auto mirrored = runJson("mcr \"IPE 300\" --length 6 --moments-y -100,-50,0 --json");
    EXPECT_NEAR(mirrored["Mcr"].get<double>(), linear["Mcr"].get<double>(), linear["Mcr"].get<double>() * 1e-6);
}

// A load on the top flange lowers Mcr, on the bottom flange raises it; a lateral restraint at mid-span
// raises it.
TEST(McrCommand, LoadHeightAndRestraints)
{
    const double centre = runJson("mcr \"IPE 300\" --length 6 --uniform-load 20 --json")["Mcr"].get<double>();
    const double top = runJson("mcr \"IPE 300\" --length 6 --uniform-load 20 --load-height top --json")["Mcr"].get<double>();
    const double bottom =
        runJson("mcr \"IPE 300\" --length 6 --uniform-load 20 --load-height bottom --json")["Mcr"].get<double>();
    EXPECT_LT(top, centre);
    EXPECT_GT(bottom, centre);
    const double braced =
        runJson("mcr \"IPE 300\" --length 6 --uniform-load 20 --lateral-restraint 3@top --torsional-restraint 3 --json")
            ["Mcr"]
                .get<double>();
    EXPECT_GT(braced, 2.0 * centre);
    const auto text = runSteeldesign("mcr \"IPE 300\" --length 6 --uniform-load 20");
    EXPECT_EQ(text.exitCode, 0);
    EXPECT_NE(text.output.find("C1"), std::string::npos);
    EXPECT_NE(text.output.find("buckled shape"), std::string::npos);
}

TEST(McrCommand, BadInputNamesTheOption)
{
    const char* cases[][2] = {
        {"mcr \"IPE 300\" --length 0 --moments-y 1,1,1", "--length"},
        {"mcr \"IPE 300\" --length 6", "--moments-y"},
        {"mcr \"IPE 300\" --length 6 --moments-y 1,2", "--moments-y"},
        {"mcr \"IPE 300\" --length 6 --stations 0:1,3:2", "--stations"},
        {"mcr \"IPE 300\" --length 6 --point-load 7:10", "--point-load"},
        {"mcr \"IPE 300\" --length 6 --uniform-load 10 --start hinge", "--start"},
        {"mcr \"IPE 300\" --length 6 --uniform-load 10 --elements 2", "--elements"},
        {"mcr \"IPE 300\" --length 6 --uniform-load 10 --load-height middle", "--load-height"},
        {"mcr \"IPE 999\" --length 6 --uniform-load 10", "IPE 999"},
    };
    for (const auto& c : cases) {
        const CommandRun r = runSteeldesign(c[0]);
        EXPECT_EQ(r.exitCode, 2) << c[0] << "\n" << r.output;
        EXPECT_NE(r.output.find(c[1]), std::string::npos) << c[0] << "\n" << r.output;
    }
    // A mechanism: a member free at both ends finds no critical moment (exit 3, the reason printed).
    const CommandRun free = runSteeldesign("mcr \"IPE 300\" --length 6 --moments-y 10,10,10 --start free --end free");
    EXPECT_EQ(free.exitCode, 3) << free.output;
    EXPECT_NE(free.output.find("no critical moment"), std::string::npos) << free.output;
}

// --mcr-method numerical gives the library the finite-element Mcr as its given critical moment: the
// member's Mcr equals the mcr command's, and the lateral-torsional checks follow from it.
TEST(McrCommand, MemberTakesTheNumericalCriticalMoment)
{
    const auto mcr = runJson("mcr \"IPE 300\" --length 6 --moments-y 60,30,0 --json");
    const auto numerical =
        runJson("member --rules library \"IPE 300\" --steel S355 --length 6 --My 60 --moments-y 60,30,0 --mcr-method numerical --json");
    EXPECT_NEAR(numerical["Mcr"].get<double>(), mcr["Mcr"].get<double>() * 60.0 / mcr["Mmax"].get<double>(), 1e-6);
    EXPECT_EQ(numerical["mcrMethod"], "numerical");
    const auto given = runJson("member --rules library \"IPE 300\" --steel S355 --length 6 --My 60 --moments-y 60,30,0 --mcr " +
                               std::to_string(numerical["Mcr"].get<double>()) + " --json");
    EXPECT_NEAR(given["utilizations"]["BendingAxisY"].get<double>(),
                numerical["utilizations"]["BendingAxisY"].get<double>(), 1e-6);
    const auto tables = runJson("member --rules library \"IPE 300\" --steel S355 --length 6 --My 60 --moments-y 60,30,0 --json");
    EXPECT_EQ(tables["mcrMethod"], "tables");
    EXPECT_LT(numerical["utilizations"]["BendingAxisY"].get<double>(),
              tables["utilizations"]["BendingAxisY"].get<double>());
    EXPECT_EQ(runSteeldesign("member --rules library \"IPE 300\" --length 6 --My 60 --mcr-method exact").exitCode, 2);
    EXPECT_EQ(runSteeldesign("member --rules library \"IPE 300\" --length 6 --My 60 --mcr 100 --mcr-method numerical").exitCode, 2);
}

TEST(McrCommand, BatchColumnEqualsTheMemberCommand)
{
    const std::string path = ::testing::TempDir() + "mcr_batch_" + std::to_string(getpid()) + ".csv";
    std::ofstream(path) << "id,section,steel,N,My,Mz,Mt,Vy,Vz,length,MyStart,MyMid,MyEnd,diagramY,loadPoint,mcrMethod\n"
                           "a,IPE 300,S355,0,60,0,0,0,20,6,0,60,0,parabolic,top,numerical\n"
                           "b,IPE 300,S355,0,60,0,0,0,20,6,0,60,0,parabolic,top,tables\n";
    const CommandRun batch = runSteeldesign("batch --rules library " + path, false);
    std::remove(path.c_str());
    std::vector<nlohmann::json> rows;
    for (std::size_t start = 0; start < batch.output.size();) {
        const std::size_t end = batch.output.find('\n', start);
        rows.push_back(nlohmann::json::parse(batch.output.substr(start, end - start)));
        start = end + 1;
    }
    ASSERT_EQ(rows.size(), 2u);
    const auto member = runJson("member --rules library \"IPE 300\" --steel S355 --length 6 --My 60 --Vz 20 --moments-y 0,60,0 "
                                "--diagram-y parabolic --load-point top --mcr-method numerical --json");
    EXPECT_EQ(rows[0]["utilizations"]["memberBending"], member["utilizations"]["Bending"]);
    EXPECT_NE(rows[0]["utilizations"]["memberBending"], rows[1]["utilizations"]["memberBending"]);
}
