#include "base/WallClock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace volvelle {
namespace {

TEST(WallClock, CountsSecondsSince1970)
{
    const WallClock clock;
    const double before = static_cast<double>(std::time(nullptr));
    const double now = clock.now();
    EXPECT_GE(now, before - 1.0);
    EXPECT_LE(now, static_cast<double>(std::time(nullptr)) + 1.0);
}

} // namespace
} // namespace volvelle
