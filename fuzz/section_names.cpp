// Fuzz target: a section by its name, from the catalogue or from dimensions ("WI 1200x300x8x20").
// Holds: nothing crashes; a name gives a section or a message; a section's properties are finite and
// its area positive.

#include <design/SectionNotation.h>

#include <SDBSection.h>
#include <SectionCatalogue.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string name(reinterpret_cast<const char*>(data), size);
    std::string error;
    const auto section = design::makeSection(name, error);
    if (!section) {
        if (error.empty()) std::abort();
        return 0;
    }
    const SDBProperties& p = section->getProperties();
    for (double v : {p.A, p.Avy, p.Avz, p.Iy, p.Iz, p.It, p.Iw, p.Wely, p.Welz, p.Wply, p.Wplz, p.ey, p.ez})
        if (!std::isfinite(v)) std::abort();
    if (!(p.A > 0.0)) std::abort();
    SDBCatalogue::normalise(name);
    return 0;
}
