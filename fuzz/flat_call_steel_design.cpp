// Fuzz target: CALL_STEEL_DESIGN with arrays of exactly the documented sizes, each in a heap block of
// its own so that AddressSanitizer sees any access outside it, filled from the fuzz input.
// Holds: nothing crashes and nothing is read or written outside the arrays.

#include <flat/steeldesign_flat.h>

#include <cstdint>
#include <cstring>
#include <memory>

namespace {

// The input read in order; zeros when it runs out.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    template <typename T>
    T next()
    {
        T value{};
        const std::size_t n = size_ - offset_ < sizeof(T) ? size_ - offset_ : sizeof(T);
        std::memcpy(&value, data_ + offset_, n);
        offset_ += n;
        return value;
    }

private:
    const std::uint8_t* data_;
    std::size_t size_, offset_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input in(data, size);
    const double N = in.next<double>(), My = in.next<double>(), Vz = in.next<double>(), Mz = in.next<double>();
    const double Vy = in.next<double>(), Mt = in.next<double>(), Mw = in.next<double>(), B = in.next<double>();
    auto dims = std::make_unique<double[]>(STEELDESIGN_FLAT_SECTION_DIMS_SIZE);
    auto sectionValues = std::make_unique<double[]>(STEELDESIGN_FLAT_SECTION_VALUES_SIZE);
    auto control = std::make_unique<std::int32_t[]>(STEELDESIGN_FLAT_CONTROL_SIZE);
    for (int i = 0; i < STEELDESIGN_FLAT_SECTION_DIMS_SIZE; ++i) dims[i] = in.next<double>();
    for (int i = 0; i < STEELDESIGN_FLAT_SECTION_VALUES_SIZE; ++i) sectionValues[i] = in.next<double>();
    for (int i = 0; i < STEELDESIGN_FLAT_CONTROL_SIZE; ++i) control[i] = in.next<std::int32_t>();
    // The segment count is control[10] (1..3); values holds 30 + 4 per segment. A count outside 1..3 must
    // be refused before any segment is read, so the array then has the fixed part only.
    const int segments = control[10] >= 1 && control[10] <= 3 ? control[10] : 0;
    const int valuesSize = STEELDESIGN_FLAT_VALUES_SIZE(segments);
    auto values = std::make_unique<double[]>(static_cast<std::size_t>(valuesSize));
    for (int i = 0; i < valuesSize; ++i) values[i] = in.next<double>();
    auto status = std::make_unique<std::int32_t[]>(STEELDESIGN_FLAT_STATUS_SIZE);
    for (int i = 0; i < STEELDESIGN_FLAT_STATUS_SIZE; ++i) status[i] = in.next<std::int32_t>();
    const int loadPoints = static_cast<int>(in.next<std::uint8_t>() % 9);
    status[3] = loadPoints;
    const int resultsSize = STEELDESIGN_FLAT_RESULTS_SIZE(loadPoints);
    auto results = std::make_unique<double[]>(static_cast<std::size_t>(resultsSize));
    for (int i = 0; i < resultsSize; ++i) results[i] = in.next<double>();
    CALL_STEEL_DESIGN(N, My, Vz, Mz, Vy, Mt, Mw, B, dims.get(), sectionValues.get(), control.get(), values.get(),
                      status.get(), results.get());
    return 0;
}
