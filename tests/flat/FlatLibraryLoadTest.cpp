// The built shared library answers by name: both entry points are found with dlsym and called through
// function pointers of the plain C types.

#include "FlatCall.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

namespace {

using ZetaFn = double (*)(double, double, double, double, std::uint16_t*);
using CallFn = std::int32_t (*)(double, double, double, double, double, double, double, double, const double*,
                                const double*, const std::int32_t*, const double*, std::int32_t*, double*);

TEST(FlatLibrary, BothEntryPointsLoadByName)
{
    void* handle = dlopen(STEELDESIGN_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(handle, nullptr) << dlerror();
    auto zeta = reinterpret_cast<ZetaFn>(dlsym(handle, "momentenbeiwert_drill_zeta"));
    auto call = reinterpret_cast<CallFn>(dlsym(handle, "CALL_STEEL_DESIGN"));
    ASSERT_NE(zeta, nullptr);
    ASSERT_NE(call, nullptr);

    std::uint16_t flag = 1;
    EXPECT_DOUBLE_EQ(zeta(100, 0, -100, 0, &flag), 2.54);
    EXPECT_EQ(flag, 1);

    FlatCall c;
    c.control[0] = 3;
    EXPECT_EQ(call(0, 60, 0, 0, 0, 0, 0, 0, c.dims.data(), c.props.data(), c.control.data(), c.values.data(),
                   c.status.data(), c.results.data()),
              1);
    EXPECT_NEAR(c.results[33], 89.646, 1e-3);
    c.control[10] = 0;
    EXPECT_EQ(call(0, 60, 0, 0, 0, 0, 0, 0, c.dims.data(), c.props.data(), c.control.data(), c.values.data(),
                   c.status.data(), c.results.data()),
              0);
    EXPECT_EQ(c.status[0], 2);
    dlclose(handle);
}

} // namespace
