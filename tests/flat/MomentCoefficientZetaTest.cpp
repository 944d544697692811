// momentenbeiwert_drill_zeta: order of the tests, the span-load table, both pairs of clamps and the flag.
//
// Span-load table used in the hand calculations (rows psi = 0, 0.5, 1.0):
//   col:    0    1    2    3    4    5    6    7    8    9    10   11   12   13   14   15   16   17   18   19   20
//   psi 0  1.12 1.19 1.26 1.34 1.43 1.53 1.64 1.76 1.91 2.06 2.24 2.42 2.66 2.78 2.38 1.80 1.26 0.82 0.47 0.20 0.00
//   psi .5 1.12 1.22 1.34 1.49 1.67 1.90 2.19 2.57 3.09 3.78 4.43 4.19 3.42 2.63 1.93 1.35 0.91 0.58 0.33 0.14 0.00
//   psi 1  1.12 1.26 1.44 1.67 2.00 2.46 3.17 4.30 5.61 5.15 4.10 3.12 2.31 1.68 1.21 0.87 0.60 0.40 0.24 0.11 0.00

#include "steeldesign_flat.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

namespace {

struct ZetaCase {
    const char* name;
    double M1, Mm, M2, share;
    double zeta;
    int flag; // expected flag when the caller passes 7 (7: left unchanged)
};

class ZetaTable : public ::testing::TestWithParam<ZetaCase> {};

TEST_P(ZetaTable, MatchesHandCalculation)
{
    const ZetaCase& c = GetParam();
    std::uint16_t flag = 7;
    EXPECT_NEAR(momentenbeiwert_drill_zeta(c.M1, c.Mm, c.M2, c.share, &flag), c.zeta, 1e-9) << c.name;
    EXPECT_EQ(flag, c.flag) << c.name;
}

// Left half of the table (M2/M0 = r = 0 .. -1): M1 = 0 (psi = 0, weight w = 2 M1 / M2 = 0, row 0 alone),
// M0 = Mm - M2 / 2 = 100, M2 = 100 r, so Mm = 100 + M2 / 2. Column i - 1 with i = 1 - trunc(10 r - 0.01),
// fraction f = -r / 0.1 - (i - 1); e.g. r = -0.3: i = 1 - trunc(-3.01) = 4, f = 3 - 3 = 0, column 3.
// Right half (r < -1): r' = M0 / M2, i = trunc(10 r' - 0.01) + 20, f = r' / 0.1 + 21 - i; e.g. r' = -0.5
// (M2 = -200, Mm = 0): i = trunc(-5.01) + 20 = 15, f = -5 + 6 = 1, so T[14] + (T[15] - T[14]) * 1 = T[15].
INSTANTIATE_TEST_SUITE_P(
    Row0EveryColumn, ZetaTable,
    ::testing::Values(
        // r = -0.098 (M2 = -9.8, Mm = 95.1; a smaller |M2| < 0.1 |Mm| would be the simply supported span):
        // i = 1 - trunc(-0.99) = 1, f = 0.98: 1.12 + (1.19 - 1.12) * 0.98 = 1.1886 (columns 0 and 1)
        ZetaCase{"col0", 0, 95.1, -9.8, 1.0, 1.1886, 0}, ZetaCase{"col1", 0, 95, -10, 1.0, 1.19, 0},
        ZetaCase{"col2", 0, 90, -20, 1.0, 1.26, 0}, ZetaCase{"col3", 0, 85, -30, 1.0, 1.34, 0},
        ZetaCase{"col4", 0, 80, -40, 1.0, 1.43, 0}, ZetaCase{"col5", 0, 75, -50, 1.0, 1.53, 0},
        ZetaCase{"col6", 0, 70, -60, 1.0, 1.64, 0}, ZetaCase{"col7", 0, 65, -70, 1.0, 1.76, 0},
        ZetaCase{"col8", 0, 60, -80, 1.0, 1.91, 0}, ZetaCase{"col9", 0, 55, -90, 1.0, 2.06, 0},
        ZetaCase{"col10", 0, 50, -100, 1.0, 2.24, 0},
        // r' = -0.9: M2 = 100 / -0.9 = -111.11, Mm = 100 - 55.56 = 44.44: column 11 -> 2.42
        ZetaCase{"col11", 0, 100 - 50 / 0.9, -100 / 0.9, 1.0, 2.42, 0},
        ZetaCase{"col12", 0, 100 - 50 / 0.8, -100 / 0.8, 1.0, 2.66, 0},
        ZetaCase{"col13", 0, 100 - 50 / 0.7, -100 / 0.7, 1.0, 2.78, 0},
        ZetaCase{"col14", 0, 100 - 50 / 0.6, -100 / 0.6, 1.0, 2.38, 0},
        ZetaCase{"col15", 0, 0, -200, 1.0, 1.80, 0},
        ZetaCase{"col16", 0, 100 - 50 / 0.4, -100 / 0.4, 1.0, 1.26, 0},
        ZetaCase{"col17", 0, 100 - 50 / 0.3, -100 / 0.3, 1.0, 0.82, 0},
        ZetaCase{"col18", 0, 100 - 50 / 0.2, -100 / 0.2, 1.0, 0.47, 0},
        // r' = -0.125 (M2 = -800, Mm = -300) is the last diagram that still enters the span-load branch:
        // |M0| = 100 >= 0.125 |M1 + M2| = 100. i = trunc(-1.26) + 20 = 19, f = -1.25 + 2 = 0.75:
        // 0.47 + (0.20 - 0.47) * 0.75 = 0.2675 (columns 18 and 19). Column 20 (M0/M2 = 0) is never
        // reached: |M0| >= 0.125 |M1 + M2| with M1 M2 >= -0.05 keeps |M0 / M2| at or above 0.1.
        ZetaCase{"col19", 0, -300, -800, 1.0, 0.2675, 0}));

INSTANTIATE_TEST_SUITE_P(
    RowsAndInterpolation, ZetaTable,
    ::testing::Values(
        // M1 = M2 = -40, M0 = 100 (Mm = 60): |M1| > 0.5 |M2|, rows psi 0.5 / 1.0 with
        // w = (M1 - 0.5 M2) / (0.5 M2) = (-40 + 20) / -20 = 1; r = -0.4, column 4: 2.00 (row psi = 1.0)
        ZetaCase{"row2", -40, 60, -40, 1.0, 2.00, 0},
        // M1 = -20, M2 = -40 (Mm = 70): |M1| = 0.5 |M2| is not greater, rows 0 / 0.5 with w = 2 M1 / M2 = 1:
        // 1.67 (row psi = 0.5)
        ZetaCase{"row1", -20, 70, -40, 1.0, 1.67, 0},
        // between rows 0 and 0.5: M1 = -10, M2 = -40 (Mm = 75): w = 0.5, 1.43 + (1.67 - 1.43) * 0.5 = 1.55
        ZetaCase{"rows01", -10, 75, -40, 1.0, 1.55, 0},
        // between rows 0.5 and 1.0: M1 = -30, M2 = -40 (Mm = 65): w = (-30 + 20) / -20 = 0.5,
        // 1.67 + (2.00 - 1.67) * 0.5 = 1.835
        ZetaCase{"rows12", -30, 65, -40, 1.0, 1.835, 0},
        // between columns: M1 = 0, M2 = -45 (Mm = 77.5), r = -0.45: i = 1 - trunc(-4.51) = 5, f = 0.5:
        // 1.43 + (1.53 - 1.43) * 0.5 = 1.48
        ZetaCase{"cols45", 0, 77.5, -45, 1.0, 1.48, 0},
        // between rows and columns: M1 = -33.75, M2 = -45 (Mm = 60.625): w = (-33.75 + 22.5) / -22.5 = 0.5;
        // row 0.5: 1.67 + 0.23 * 0.5 = 1.785, row 1.0: 2.00 + 0.46 * 0.5 = 2.23; 1.785 + 0.445 * 0.5 = 2.0075
        ZetaCase{"rowsAndCols", -33.75, 60.625, -45, 1.0, 2.0075, 0},
        // the diagram given: Mm = 100, end moments -50 and 0: M0 = 125, swapped so that M2 = -50,
        // r = -0.4, column 4, fraction 0, w = 0: 1.43
        ZetaCase{"givenExample", -50, 100, 0, 1.0, 1.43, 0},
        // entirely negative: the mirror of "cols45" gives the same zeta
        ZetaCase{"mirrored", 0, -77.5, 45, 1.0, 1.48, 0},
        // right half between columns, M1 = 0: r' = -0.55 -> M2 = -181.82, Mm = 9.09;
        // i = trunc(-5.51) + 20 = 15, f = -5.5 + 6 = 0.5: 2.38 + (1.80 - 2.38) * 0.5 = 2.09
        ZetaCase{"cols1415", 0, 100 - 50 / 0.55, -100 / 0.55, 1.0, 2.09, 0}));

INSTANTIATE_TEST_SUITE_P(
    ClampsAndSpecialCases, ZetaTable,
    ::testing::Values(
        // table clamp: M1 = M2 = -80, M0 = 100 (Mm = 20), r = -0.8, row 1.0 (w = 1): 5.61 > 4.43 -> 4.43
        ZetaCase{"tableUpperClamp", -80, 20, -80, 1.0, 4.43, 0},
        // negligible moments: 1.0 with the flag as the caller left it
        ZetaCase{"negligible", 0.05, 0.05, 0.05, 0.0, 1.0, 7},
        // constant moment: 1.0, flag 1
        ZetaCase{"constant", 100, 100, 100, 0.0, 1.0, 1},
        ZetaCase{"constantNegative", -100, -100, -100, 0.0, 1.0, 1},
        // end moments 100 and -100: psi = -1, 1.77 + 0.77 = 2.54 (the upper bound of the final clamp)
        ZetaCase{"psiMinus1", 100, 0, -100, 0.0, 2.54, 1},
        // linear, psi = 0.5: 1.77 - 0.385 = 1.385
        ZetaCase{"psiHalf", 50, 75, 100, 0.0, 1.385, 1},
        // simply supported span: uniform load 1.12; half and half 1.35 - 0.23 * 0.5 = 1.235;
        // share 0.1: 1.35 - 0.023 = 1.327
        ZetaCase{"simpleUniform", 0, 100, 0, 1.0, 1.12, 1}, ZetaCase{"simpleHalf", 0, 100, 0, 0.5, 1.235, 1},
        ZetaCase{"simpleTenth", 0, 100, 0, 0.1, 1.327, 1},
        // end moments both zero without span-load share: psi = 0 / 0 is not a number, the first psi clamp
        // takes 1.0 for it: zeta = 1.77 - 0.77 = 1.0, flag 1
        ZetaCase{"psiNotANumber", 0, 5, 0, 0.0, 1.0, 1},
        // span-load branch with a share of exactly 0.1: no table value, zeta 1.0, flag untouched
        ZetaCase{"shareExactlyTenth", 0, 77.5, -45, 0.1, 1.0, 7},
        // r > 0.1 (M2 = 20, M0 = 100): no table value either
        ZetaCase{"positiveEndMoment", 0, 110, 20, 1.0, 1.0, 7}));

TEST(ZetaFlag, FinalClampOnlyWithNonZeroFlag)
{
    // no table value and a caller flag of 0: zeta 1.0 is returned without the final clamp, flag stays 0
    std::uint16_t flag = 0;
    EXPECT_EQ(momentenbeiwert_drill_zeta(0, 77.5, -45, 0.1, &flag), 1.0);
    EXPECT_EQ(flag, 0);
    // the same negligible diagram leaves a flag of 1 untouched
    flag = 1;
    EXPECT_EQ(momentenbeiwert_drill_zeta(0.01, -0.02, 0.09, 1.0, &flag), 1.0);
    EXPECT_EQ(flag, 1);
}

} // namespace
