// Numbers typed by a user read alike everywhere: the forms accepted and refused with their reason, the
// correctly rounded value where a long double rounds twice, and the same double from a command option, a
// batch cell and a section notation's dimension.

#include "CommandRunner.h"

#include <design/InputError.h>
#include <design/NumberInput.h>
#include <design/SectionNotation.h>

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <unistd.h>

using design::NumberProblem;
using design::readNumber;

namespace {

struct Accepted {
    const char* text;
    double value;
};

class NumberInputAccepted : public ::testing::TestWithParam<Accepted> {};

TEST_P(NumberInputAccepted, ReadsTheDecimalForms)
{
    double value = -12345.0;
    ASSERT_EQ(readNumber(GetParam().text, value), NumberProblem::None) << GetParam().text;
    EXPECT_EQ(value, GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Forms, NumberInputAccepted,
                         ::testing::Values(Accepted{"-300", -300.0}, Accepted{"0", 0.0}, Accepted{"+5", 5.0},
                                           Accepted{".5", 0.5}, Accepted{"5.", 5.0}, Accepted{"-.25", -0.25},
                                           Accepted{"1.5e3", 1500.0}, Accepted{"1E-3", 0.001},
                                           Accepted{"+2.5e+2", 250.0}, Accepted{"  7 ", 7.0},
                                           Accepted{"\t-1\t", -1.0}, Accepted{"0.1", 0.1},
                                           Accepted{"1.7976931348623157e308", 1.7976931348623157e308},
                                           Accepted{"4.9406564584124654e-324", 4.9406564584124654e-324}));

struct Refused {
    const char* text;
    NumberProblem problem;
    const char* message;
};

class NumberInputRefused : public ::testing::TestWithParam<Refused> {};

TEST_P(NumberInputRefused, NamesTheReasonAndTheTextAsTyped)
{
    double value = 42.0;
    EXPECT_EQ(readNumber(GetParam().text, value), GetParam().problem) << GetParam().text;
    EXPECT_EQ(value, 42.0) << "a refused text leaves the value alone";
    EXPECT_EQ(design::numberProblemText(GetParam().problem, GetParam().text), GetParam().message);
    try {
        design::numberOf("--N", GetParam().text);
        ADD_FAILURE() << GetParam().text << " was read";
    } catch (const design::InputError& e) {
        EXPECT_EQ(std::string(e.what()), std::string("--N: ") + GetParam().message);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Forms, NumberInputRefused,
    ::testing::Values(Refused{"0x10", NumberProblem::NotANumber, "not a number: '0x10'"},
                      Refused{"5kN", NumberProblem::NotANumber, "not a number: '5kN'"},
                      Refused{"1,5", NumberProblem::NotANumber, "not a number: '1,5'"},
                      Refused{"1 000", NumberProblem::NotANumber, "not a number: '1 000'"},
                      Refused{"", NumberProblem::NotANumber, "not a number: ''"},
                      Refused{"-", NumberProblem::NotANumber, "not a number: '-'"},
                      Refused{"+-5", NumberProblem::NotANumber, "not a number: '+-5'"},
                      Refused{"e5", NumberProblem::NotANumber, "not a number: 'e5'"},
                      Refused{"1e", NumberProblem::NotANumber, "not a number: '1e'"},
                      Refused{"five", NumberProblem::NotANumber, "not a number: 'five'"},
                      Refused{"inf", NumberProblem::NotFinite, "not a finite number: 'inf'"},
                      Refused{"-Infinity", NumberProblem::NotFinite, "not a finite number: '-Infinity'"},
                      Refused{"nan", NumberProblem::NotFinite, "not a finite number: 'nan'"},
                      Refused{"1e400", NumberProblem::OutOfRange, "outside the range of a double: '1e400'"},
                      Refused{"-1e-400", NumberProblem::OutOfRange, "outside the range of a double: '-1e-400'"}));

// 1 + 2^-53 is the midpoint between 1 and the next double 1 + 2^-52; the text below lies 1e-55 above it,
// so the correctly rounded double is 1 + 2^-52. Read as a long double first (64-bit mantissa) it becomes
// the midpoint itself, which then rounds to even: 1.0, one unit in the last place off.
constexpr const char* aboveTheMidpoint = "1.000000000000000111022302462515654042363166809082031251";

TEST(NumberInput, CorrectlyRoundedWhereALongDoubleRoundsTwice)
{
    double value = 0.0;
    ASSERT_EQ(readNumber(aboveTheMidpoint, value), NumberProblem::None);
    EXPECT_EQ(value, std::nextafter(1.0, 2.0));
    double midpoint = 0.0;
    ASSERT_EQ(readNumber("1.00000000000000011102230246251565404236316680908203125", midpoint), NumberProblem::None);
    EXPECT_EQ(midpoint, 1.0) << "an exact midpoint rounds to even";
}

// The governing utilization of a 3 m IPE 300 member in S355 under N, from the command's JSON.
std::string governingOfMember(const std::string& n)
{
    const CommandRun r =
        runSteeldesign("member \"IPE 300\" --steel S355 --length 3 --json --N '" + n + "'", false);
    EXPECT_LE(r.exitCode, 1) << n;
    return nlohmann::json::parse(r.output).at("governingUtilization").dump();
}

// The same text given to the command (--N) and to the batch (a cell of N): the same double, so the same
// governing utilization to the last bit; a refused text gets the same reason in both.
TEST(NumberInput, CommandAndBatchReadTheSameDouble)
{
    const std::string dir = ::testing::TempDir() + "/steeldesign_numbers_" + std::to_string(getpid());
    std::filesystem::create_directories(dir);
    const std::string file = dir + "/rows.csv";
    const std::string minus = std::string("-") + aboveTheMidpoint;
    const std::vector<std::string> texts = {minus, "-2.5e+2", "-.5e2", "-250",
                                            "-1.00000000000000011102230246251565404236316680908203125"};
    {
        std::ofstream out(file);
        out << "id,section,steel,N,My,Mz,Mt,Vy,Vz,length\n";
        for (std::size_t i = 0; i < texts.size(); ++i) out << i << ",IPE 300,S355," << texts[i] << ",0,0,0,0,0,3\n";
        out << "bad,IPE 300,S355,0x10,0,0,0,0,0,3\n";
    }
    const CommandRun batch = runSteeldesign("batch " + file + " --format jsonl", false);
    ASSERT_EQ(batch.exitCode, 2) << batch.output;  // the hexadecimal row is rejected
    std::istringstream lines(batch.output);
    std::string line;
    std::size_t i = 0;
    while (std::getline(lines, line)) {
        const auto row = nlohmann::json::parse(line);
        if (i < texts.size()) {
            EXPECT_EQ(row.at("governingUtilization").dump(), governingOfMember(texts[i])) << texts[i];
        } else {
            EXPECT_EQ(row.at("message"), "not a number: '0x10'");
            const CommandRun cli = runSteeldesign("check \"IPE 300\" --N 0x10");
            EXPECT_EQ(cli.exitCode, 2);
            EXPECT_NE(cli.output.find("--N: not a number: '0x10'"), std::string::npos) << cli.output;
        }
        ++i;
    }
    EXPECT_EQ(i, texts.size() + 1);
    EXPECT_NE(governingOfMember(texts[0]), governingOfMember(texts[4])) << "one bit apart, and told apart";
    std::filesystem::remove_all(dir);
}

// Dimensions of a notation go through the same reading: exponents and signs as anywhere, units refused.
TEST(NumberInput, SectionNotationDimensions)
{
    EXPECT_EQ(design::resolveSection("CHS 1.143e2x6.3")->getProperties().A,
              design::resolveSection("CHS 114.3x6.3")->getProperties().A);
    for (const char* bad : {"CHS 0x72x6", "CHS 114.3mmx6.3", "CHS 1e400x6"}) {
        EXPECT_THROW(design::resolveSection(bad), design::InputError) << bad;
    }
}

// A partial factor of 0 is refused as in the batch ("must be positive"), never taken as "the default".
TEST(NumberInput, PartialFactorsMustBePositive)
{
    for (const char* option : {"--gamma-m0 0", "--gamma-m0 -1"}) {
        const CommandRun r = runSteeldesign(std::string("check \"IPE 300\" --N -100 ") + option);
        EXPECT_EQ(r.exitCode, 2) << option;
        EXPECT_NE(r.output.find("--gamma-m0: must be positive"), std::string::npos) << r.output;
    }
    const CommandRun m = runSteeldesign("member \"IPE 300\" --length 3 --N -100 --gamma-m1 0");
    EXPECT_EQ(m.exitCode, 2);
    EXPECT_NE(m.output.find("--gamma-m1: must be positive"), std::string::npos) << m.output;
    const CommandRun given = runSteeldesign("check \"IPE 300\" --N -100 --gamma-m0 1.1");
    EXPECT_EQ(given.exitCode, 0);
    EXPECT_NE(given.output.find("gammaM0 = 1.10"), std::string::npos) << given.output;
}

} // namespace

namespace {

// A length beyond 1000 m is a typing error (mm for m): refused with the limit in the message by the member
// command, the critical-moment command and a batch row, never checked (1e18 m made lambda overflow).
TEST(NumberInput, LengthsBeyondOneKilometreAreRefusedWithTheLimit)
{
    for (const char* arguments : {"member \"IPE 300\" --length 1e18 --My 10", "member \"IPE 300\" --lcr-z 3000 --length 3 --N -10",
                                  "mcr \"IPE 300\" --length 2000 --moments-y 1,1,1"}) {
        const CommandRun r = runSteeldesign(arguments);
        EXPECT_EQ(r.exitCode, 2) << arguments;
        EXPECT_NE(r.output.find("must be at most 1000 m, got"), std::string::npos) << r.output;
    }
    EXPECT_EQ(runSteeldesign("member \"IPE 300\" --length 1000 --N -1").exitCode, 1) << "1000 m itself is a length";
    const std::string dir = ::testing::TempDir() + "/steeldesign_lengths_" + std::to_string(getpid());
    std::filesystem::create_directories(dir);
    {
        std::ofstream(dir + "/rows.csv") << "id,section,steel,N,My,Mz,Mt,Vy,Vz,length,lengthT\n"
                                            "a,IPE 300,S355,-10,0,0,0,0,0,3000,\n"
                                            "b,IPE 300,S355,-10,0,0,0,0,0,3,1e9\n";
    }
    const CommandRun b = runSteeldesign("batch " + dir + "/rows.csv --format csv");
    EXPECT_EQ(b.exitCode, 2);
    EXPECT_NE(b.output.find("field length: must be at most 1000 m"), std::string::npos) << b.output;
    EXPECT_NE(b.output.find("field lengthT: must be at most 1000 m"), std::string::npos) << b.output;
    std::filesystem::remove_all(dir);
}

} // namespace
