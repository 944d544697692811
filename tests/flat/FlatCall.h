#pragma once

// Exactly-sized heap arrays for one CALL_STEEL_DESIGN call, preset to an IPE 300 in S235 (kind 1), so
// that AddressSanitizer reports any read or write beyond the sizes of the interface.
//
// IPE 300 (EN 10365): h 300, b 150, tw 7.1, tf 10.7, r 15 mm; A 53.81 cm^2, Iy 8356 cm^4, Iz 603.8 cm^4,
// It 19.75 cm^4, Iw 124260 cm^6, Wel,y 557.1 cm^3, Wpl,y 628.4 cm^3, Wel,z 80.5 cm^3, Wpl,z 125.2 cm^3.
// E 210000, G 81000 N/mm^2, gammaM0 1.0, gammaM1 1.1, fy 235 for t <= 40 mm, L 6 m.

#include "steeldesign_flat.h"

#include <cstdint>
#include <vector>

struct FlatCall {
    std::vector<double> dims = std::vector<double>(STEELDESIGN_FLAT_SECTION_DIMS_SIZE, 0.0);
    std::vector<double> props = std::vector<double>(STEELDESIGN_FLAT_SECTION_VALUES_SIZE, 0.0);
    std::vector<std::int32_t> control = std::vector<std::int32_t>(STEELDESIGN_FLAT_CONTROL_SIZE, 0);
    std::vector<double> values;
    std::vector<std::int32_t> status = std::vector<std::int32_t>(STEELDESIGN_FLAT_STATUS_SIZE, 0);
    std::vector<double> results;

    double N = 0, My = 0, Vz = 0, Mz = 0, Vy = 0, Mt = 0, Mw = 0, B = 0;

    explicit FlatCall(int segments = 1, int loadPoints = 0)
        : values(STEELDESIGN_FLAT_VALUES_SIZE(segments), 0.0), results(STEELDESIGN_FLAT_RESULTS_SIZE(loadPoints), 0.0)
    {
        dims[0] = 300;
        dims[1] = 150;
        dims[2] = 7.1;
        dims[3] = 10.7;
        dims[4] = 15;
        dims[7] = 10.7;
        props[1] = 53.81;
        props[2] = 8356;
        props[3] = 603.8;
        props[4] = 19.75;
        props[6] = 557.1;
        props[7] = 628.4;
        props[8] = 80.5;
        props[9] = 125.2;
        props[11] = 124260;
        control[0] = 1;
        control[5] = 1;
        control[10] = segments;
        values[0] = 210000;
        values[1] = 81000;
        values[5] = 1.0;
        values[6] = 1.1;
        values[10] = 6.0;
        for (int j = 0; j < segments; ++j) {
            values[30 + 4 * j] = 40.0 * j;
            values[31 + 4 * j] = 40.0 * (j + 1);
            values[32 + 4 * j] = 235.0 - 10.0 * j;
            values[33 + 4 * j] = 360.0;
        }
        status[3] = loadPoints;
    }

    int run()
    {
        return CALL_STEEL_DESIGN(N, My, Vz, Mz, Vy, Mt, Mw, B, dims.data(), props.data(), control.data(), values.data(),
                                 status.data(), results.data());
    }
};
