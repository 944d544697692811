// Fuzz target: momentenbeiwert_drill_zeta for any moments and span-load share.
// Holds: nothing crashes; the flag stays 0 or 1; for finite moments zeta is a number.

#include <flat/steeldesign_flat.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    double v[4] = {0.0, 0.0, 0.0, 0.0};
    std::memcpy(v, data, size < sizeof v ? size : sizeof v);
    std::uint16_t flag = 1;
    const double zeta = momentenbeiwert_drill_zeta(v[0], v[1], v[2], v[3], &flag);
    if (flag > 1) std::abort();
    if (std::isfinite(v[0]) && std::isfinite(v[1]) && std::isfinite(v[2]) && std::isfinite(v[3]) &&
        std::fabs(v[0]) < 1e100 && std::fabs(v[1]) < 1e100 && std::fabs(v[2]) < 1e100 && std::isnan(zeta))
        std::abort();
    return 0;
}
