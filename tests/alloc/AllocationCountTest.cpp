// Counts the heap allocations of one whole check and pins the number, so that an allocation that creeps
// onto a hot path shows up as a failing test. Every form of the global operator new is replaced; the
// count is taken only inside a counting scope, so gtest's own allocations do not disturb it.
// Under AddressSanitizer (the sanitizer build) the replacement in this executable takes precedence over
// the sanitizer's own operator new and forwards to its malloc, so the counts hold there as well.

#include <KaMaterial.h>
#include <SectionCatalogue.h>
#include <SteelDesign/BucklingResistance.h>
#include <SteelDesign/ResistanceVerifications.h>
#include <SteelDesign/SectionInitializer.h>
#include <steeldesign_flat.h>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<bool> counting{false};
std::atomic<long> allocations{0};

void* allocate(std::size_t size)
{
    if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}

void* allocateAligned(std::size_t size, std::align_val_t alignment)
{
    if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1, std::memory_order_relaxed);
    const std::size_t a = static_cast<std::size_t>(alignment);
    const std::size_t rounded = (size + a - 1) / a * a;
    if (void* p = std::aligned_alloc(a, rounded == 0 ? a : rounded)) return p;
    throw std::bad_alloc();
}

// The allocations made while the object lives.
class AllocationCount {
public:
    AllocationCount()
    {
        allocations = 0;
        counting = true;
    }
    ~AllocationCount() { counting = false; }
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;
    long value() const { return allocations.load(); }
};

} // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return allocate(size);
    } catch (...) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    try {
        return allocate(size);
    } catch (...) {
        return nullptr;
    }
}
void* operator new(std::size_t size, std::align_val_t alignment) { return allocateAligned(size, alignment); }
void* operator new[](std::size_t size, std::align_val_t alignment) { return allocateAligned(size, alignment); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }

using namespace SteelDesign;

TEST(AllocationCount, CountsTheAllocationsOfTheScope)
{
    // The counter itself: a plain new inside the scope counts, one outside does not.
    long inside = 0;
    {
        AllocationCount count;
        delete new int(1);
        auto* array = new double[3];
        delete[] array;
        inside = count.value();
    }
    delete new int(2);
    EXPECT_EQ(inside, 2);
}

// One whole cross-section check of an IPE 300 under all six forces: the initializer (with the
// classification), ResistanceVerifications::verifyAllResistance and verifyAllUtilizations.
TEST(AllocationCount, CrossSectionCheckOfAnIpe300)
{
    auto section = SDBCatalogue::get("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const Forces forces(-300, 80, 5, 0.2, 10, 100);
    long n = 0;
    bool fulfilled = false;
    {
        AllocationCount count;
        SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, false);
        VerificationResults results;
        const ResistanceVerifications verifier(results, section.get(), init, 1.0, forces);
        verifier.verifyAllResistance();
        fulfilled = results.verifyAllUtilizations();
        n = count.value();
    }
    EXPECT_TRUE(fulfilled);
    // 7 allocations, all of the classification's CrossSectionCutter: the web vector (1) and the flange
    // vector (1), each reserved once for its plates, and the five plate parts, each owned through a
    // std::unique_ptr (1 web, 4 flange outstands). The initializer keeps its plate thicknesses and the
    // type key ("I") in place, the results record and the verifier allocate nothing.
    EXPECT_EQ(n, 7);
}

// The member check with lateral-torsional buckling and the interaction, the initializer included as a
// host builds it; the moment distribution is the host's and built outside the count.
TEST(AllocationCount, MemberCheckOfAnIpe300)
{
    auto section = SDBCatalogue::get("IPE 300");
    KaConstrSteel steel = *KaConstrSteel::fromName("S355");
    const Forces forces(-200, 80, 0, 0, 0, 0);
    const MomentDistribution moments({0.0, 40.0, 80.0}, MomentDiagram::Polygonal, {0.0, 0.0, 0.0},
                                     MomentDiagram::Polygonal, 80.0, ApplicationPoint::Center, 0.0);
    long n = 0;
    kat::Nullable<double> u;
    {
        AllocationCount count;
        SectionInitializer init(section.get(), &steel, forces, VerificationControl::Classify, true);
        BucklingResults results;
        const BucklingResistance verifier(results, section.get(), init, forces, moments, 1.0, 4.0, 0.0, 0.0, false,
                                          false);
        verifier.verifyAllResistance();
        verifier.verifyShearBuckling();
        u = results.getUtilization(BucklingResults::UtilizationType::CompressionBending);
        n = count.value();
    }
    ASSERT_TRUE(u.hasValue());
    EXPECT_LT(u.value(), 1.0);
    // 7 allocations, the classification's cutter as above. The verifier's copies of the initializer and
    // of the moment distribution are held in place.
    EXPECT_EQ(n, 7);
}

// CALL_STEEL_DESIGN with the cross-section check and lateral-torsional buckling of an IPE 300 (the
// arrays of the flat interface's tests): the flat path allocates nothing.
TEST(AllocationCount, FlatCallOfAnIpe300)
{
    std::array<double, STEELDESIGN_FLAT_SECTION_DIMS_SIZE> dims{300, 150, 7.1, 10.7, 15, 0, 0, 10.7};
    std::array<double, STEELDESIGN_FLAT_SECTION_VALUES_SIZE> props{};
    props[1] = 53.81;
    props[2] = 8356;
    props[3] = 603.8;
    props[4] = 19.75;
    props[6] = 557.1;
    props[7] = 628.4;
    props[8] = 80.5;
    props[9] = 125.2;
    props[11] = 124260;
    std::array<std::int32_t, STEELDESIGN_FLAT_CONTROL_SIZE> control{};
    control[0] = 1 | 2;
    control[5] = 1;
    control[10] = 1;
    std::array<double, STEELDESIGN_FLAT_VALUES_SIZE(1)> values{};
    values[0] = 210000;
    values[1] = 81000;
    values[5] = 1.0;
    values[6] = 1.1;
    values[10] = 6.0;
    values[31] = 40.0;
    values[32] = 235.0;
    values[33] = 360.0;
    std::array<std::int32_t, STEELDESIGN_FLAT_STATUS_SIZE> status{};
    std::array<double, STEELDESIGN_FLAT_RESULTS_SIZE(0)> results{};
    long n = 0;
    std::int32_t ok = 0;
    {
        AllocationCount count;
        ok = CALL_STEEL_DESIGN(-100, 60, 40, 0, 0, 0, 0, 0, dims.data(), props.data(), control.data(), values.data(),
                               status.data(), results.data());
        n = count.value();
    }
    EXPECT_EQ(ok, 1);
    EXPECT_EQ(status[0], STEELDESIGN_FLAT_STAGE_DONE);
    EXPECT_EQ(n, 0);
}
