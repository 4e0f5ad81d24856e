#include "services/audiodevice/RunawayGuard.h"

#include <gtest/gtest.h>

namespace volvelle::test {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

TEST(RunawayGuard, ADeviceMayTakeFourSecondsOfAudioWithinAQuarterOfASecondAndNotAFrameMore)
{
    RunawayGuard guard(8000.0);
    EXPECT_TRUE(guard.allow(31'999, milliseconds(0)));
    EXPECT_TRUE(guard.allow(1, milliseconds(250)));
    EXPECT_FALSE(guard.allow(1, milliseconds(250)));
}

TEST(RunawayGuard, BehindAQuarterOfASecondItCountsAnew)
{
    RunawayGuard guard(8000.0);
    EXPECT_TRUE(guard.allow(32'000, milliseconds(250)));
    EXPECT_TRUE(guard.allow(32'000, milliseconds(250) + nanoseconds(1)));
    EXPECT_TRUE(guard.allow(32'000, milliseconds(500) + nanoseconds(2)));
    EXPECT_FALSE(guard.allow(1, milliseconds(750) + nanoseconds(2)));
}

TEST(RunawayGuard, ADeviceThatRanAwayStaysSo)
{
    RunawayGuard guard(8000.0);
    EXPECT_FALSE(guard.allow(32'001, milliseconds(0)));
    EXPECT_FALSE(guard.allow(1, milliseconds(9000)));
}

} // namespace volvelle::test
