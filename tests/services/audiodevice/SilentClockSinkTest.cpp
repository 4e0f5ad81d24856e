#include "services/audiodevice/SilentClockSink.h"

#include "tests/services/audiodevice/CountingSource.h"
#include "tests/services/audiodevice/HandWaitableClock.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

class SilentClockSinkTest : public testing::Test {
protected:
    std::shared_ptr<HandWaitableClock> clock = std::make_shared<HandWaitableClock>();
    CountingSource source;
    SilentClockSink sink{clock};
};

} // namespace

TEST_F(SilentClockSinkTest, PullsABlockWheneverItsTimeHasPassed)
{
    ASSERT_EQ(sink.open(source).error(), "");
    clock->settle(1);
    EXPECT_EQ(source.frames, 0);
    clock->advance(HandWaitableClock::block - std::chrono::microseconds(1), 1);
    EXPECT_EQ(source.frames, 0);
    clock->advance(std::chrono::microseconds(1), 1);
    EXPECT_EQ(source.frames, 512);
    clock->advanceBlocks(99, 1);
    EXPECT_EQ(source.frames, 51'200);
    EXPECT_FALSE(sink.isAudible());
    EXPECT_EQ(sink.description(), "Silent clock");
}

TEST_F(SilentClockSinkTest, CatchesUpAfterAShortDelay)
{
    ASSERT_EQ(sink.open(source).error(), "");
    clock->settle(1);
    clock->advance(10 * HandWaitableClock::block, 1);
    EXPECT_EQ(source.frames, 5120);
}

TEST_F(SilentClockSinkTest, CatchesUpWithAQuarterOfASecondAndNotWithMore)
{
    constexpr WaitableClock::Time twoBlocks{21'333'333}; // nanoseconds
    for (const int more : {0, 1}) {
        ASSERT_EQ(sink.open(source).error(), "");
        clock->settle(1);
        const int before = source.frames;
        clock->advance(twoBlocks + SilentClockSink::longestDelay + WaitableClock::Time(more), 1);
        EXPECT_EQ(source.frames - before, more == 0 ? 25 * 512 : 512);
        sink.close();
    }
}

TEST_F(SilentClockSinkTest, TakesUpThePaceAnewAfterALongDelay)
{
    ASSERT_EQ(sink.open(source).error(), "");
    clock->settle(1);
    clock->advance(std::chrono::hours(8), 1);
    EXPECT_EQ(source.frames, 512);
    clock->advanceBlocks(1, 1);
    EXPECT_EQ(source.frames, 1024);
}

TEST_F(SilentClockSinkTest, PullsNoMoreOnceClosed)
{
    ASSERT_EQ(sink.open(source).error(), "");
    clock->settle(1);
    sink.close();
    sink.close();
    clock->advanceBlocks(3, 0);
    EXPECT_EQ(source.frames, 0);
}

TEST_F(SilentClockSinkTest, OpensAgainAfterItWasClosed)
{
    ASSERT_EQ(sink.open(source).error(), "");
    sink.close();
    ASSERT_EQ(sink.open(source).error(), "");
    clock->settle(1);
    clock->advanceBlocks(2, 1);
    EXPECT_EQ(source.frames, 1024);
}

} // namespace volvelle::test
