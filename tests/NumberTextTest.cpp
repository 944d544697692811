// The batch's fast "%.6g": the same bytes as printf for every kind of value.

#include <batch/NumberText.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

std::string printfG6(double value)
{
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.6g", value);
    return buffer;
}

std::string fastG6(double value)
{
    std::string out;
    batch::appendGeneral6(out, value);
    return out;
}

TEST(NumberText, ValuesAtTheEdgesOfTheFormatEqualPrintf)
{
    const double values[] = {0.0, -0.0, 1.0, -1.0, 0.5, 0.873912, 0.8739125, 1.359, 999999.4, 999999.5,
                             999999.6, 9999995.0, 0.00001, 0.0001, 0.00012345678, 100000.0, 123456.5,
                             1234567.0, 1e-7, 1.2e-7, 9.999995e-5, 1e100, 1.5e-300, 5e-324, 1.7976931348623157e308,
                             0.1, 0.2, 0.3, 2.5, 0.15, 0.125, 1.0000005, 1.0000015, 0.30000000000000004,
                             std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                             std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::quiet_NaN()};
    for (double v : values) EXPECT_EQ(fastG6(v), printfG6(v)) << v;
}

// Values of every magnitude, values with few digits, and decimal ties (x.xxxxx5 in seven digits, where
// the exact binary value decides), a million of them.
TEST(NumberText, AMillionRandomValuesEqualPrintf)
{
    std::mt19937_64 random(20261123);
    std::uniform_real_distribution<double> mantissa(1.0, 10.0);
    std::uniform_int_distribution<int> exponent(-12, 12);
    std::uniform_int_distribution<long> sevenDigits(1000000, 9999999);
    for (int i = 0; i < 1000000; ++i) {
        double v = 0.0;
        switch (i % 4) {
        case 0: v = mantissa(random) * std::pow(10.0, exponent(random)); break;
        case 1: v = static_cast<double>(sevenDigits(random)) * std::pow(10.0, exponent(random) - 6); break;
        case 2: v = static_cast<double>(sevenDigits(random) / 10 * 10 + 5) * std::pow(10.0, exponent(random) - 6); break;
        default: v = std::bit_cast<double>(random() & 0x7fefffffffffffffULL); break;
        }
        if (i % 8 >= 4) v = -v;
        ASSERT_EQ(fastG6(v), printfG6(v)) << v;
    }
}

// writeGeneral6 writes the text of appendGeneral6 and stays in its room of general6Length characters
// (the bytes past the text may be written, none past the room): the row writers place the numbers of a
// row one after the other in a room made once.
TEST(NumberText, WriteGeneral6StaysInItsRoom)
{
    std::mt19937_64 random(16);
    std::uniform_real_distribution<double> mantissa(1.0, 10.0);
    std::uniform_int_distribution<int> exponent(-8, 16);
    std::vector<double> values = {0.0, -0.0, 1.0, 0.5, 100000.0, 999999.5, 1e15, 1e-5, 9.9999e-6, 1e-300,
                                  -1.23456789e-305, 5e-324, std::numeric_limits<double>::infinity(),
                                  -std::numeric_limits<double>::quiet_NaN()};
    for (int i = 0; i < 100000; ++i) values.push_back((i % 2 ? -1.0 : 1.0) * mantissa(random) * std::pow(10.0, exponent(random)));
    for (const double v : values) {
        char room[batch::general6Length + 8];
        std::fill(std::begin(room), std::end(room), '#');
        const char* const end = batch::writeGeneral6(room, v);
        ASSERT_LE(end - room, static_cast<std::ptrdiff_t>(batch::general6Length)) << v;
        EXPECT_EQ(std::string(static_cast<const char*>(room), end), printfG6(v)) << v;
        for (std::size_t k = batch::general6Length; k < sizeof room; ++k) ASSERT_EQ(room[k], '#') << v;
    }
}

} // namespace
