/* A plain C host of the flat interface: includes the public header, links against libsteeldesign and
 * checks a few answers. Exit code 0 when all hold. */
#include "flat/steeldesign_flat.h"

#include <math.h>
#include <stdio.h>
#include <stdlib.h>

static int failures = 0;

static void expectNear(const char* what, double actual, double expected, double tol)
{
    if (!(fabs(actual - expected) <= tol)) {
        fprintf(stderr, "%s: got %.6f, expected %.6f\n", what, actual, expected);
        ++failures;
    }
}

int main(void)
{
    /* simply supported span under a uniform load: zeta = 1.12 with the end-moment formula */
    uint16_t flag = 1;
    expectNear("zeta", momentenbeiwert_drill_zeta(0.0, 100.0, 0.0, 1.0, &flag), 1.12, 1e-12);
    expectNear("flag", flag, 1.0, 0.0);

    /* IPE 300, S235, My = 60 kNm constant over L = 6 m: Mcr = Ncr,z c = 347.62 * 0.25788 = 89.65 kNm */
    double dims[STEELDESIGN_FLAT_SECTION_DIMS_SIZE] = {300, 150, 7.1, 10.7, 15, 0, 0, 10.7};
    double props[STEELDESIGN_FLAT_SECTION_VALUES_SIZE] = {0};
    int32_t control[STEELDESIGN_FLAT_CONTROL_SIZE] = {0};
    double* values = calloc(STEELDESIGN_FLAT_VALUES_SIZE(1), sizeof(double));
    int32_t status[STEELDESIGN_FLAT_STATUS_SIZE] = {0};
    double* results = calloc(STEELDESIGN_FLAT_RESULTS_SIZE(0), sizeof(double));
    if (!values || !results) return 2;
    props[1] = 53.81;
    props[2] = 8356;
    props[3] = 603.8;
    props[4] = 19.75;
    props[6] = 557.1;
    props[7] = 628.4;
    props[8] = 80.5;
    props[9] = 125.2;
    props[11] = 124260;
    control[0] = 3;
    control[5] = 1;
    control[10] = 1;
    values[0] = 210000;
    values[1] = 81000;
    values[5] = 1.0;
    values[6] = 1.1;
    values[10] = 6.0;
    values[31] = 40;
    values[32] = 235;
    values[33] = 360;

    int32_t ok = CALL_STEEL_DESIGN(0, 60, 0, 0, 0, 0, 0, 0, dims, props, control, values, status, results);
    expectNear("return", ok, 1, 0);
    expectNear("stage", status[0], 0, 0);
    expectNear("Mcr", results[33], 89.646, 0.01);
    expectNear("curve b", status[9], 3, 0);

    control[0] = 0;
    ok = CALL_STEEL_DESIGN(0, 60, 0, 0, 0, 0, 0, 0, dims, props, control, values, status, results);
    expectNear("nothing requested", ok, 0, 0);
    expectNear("stage 1", status[0], 1, 0);

    free(values);
    free(results);
    if (failures == 0) printf("flat C client: all checks passed\n");
    return failures == 0 ? 0 : 1;
}
