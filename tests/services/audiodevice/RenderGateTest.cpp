#include "services/audiodevice/RenderGate.h"

#include "tests/services/audiodevice/CountingSource.h"
#include "tests/services/audiodevice/RecordingSink.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <iterator>
#include <thread>
#include <vector>

namespace volvelle::test {

namespace {

class RenderGateTest : public testing::Test {
protected:
    RenderGateTest()
    {
        EXPECT_TRUE(clock.open(gate.clockEntry()));
        EXPECT_TRUE(device.open(gate.deviceEntry()));
    }

    void warmUp()
    {
        gate.admitDevice();
        device.pull(RenderGate::warmUpFrames + 1, 480);
    }

    static std::vector<float> framesOf(const RecordingSink& side)
    {
        std::vector<float> numbers;
        std::copy_if(side.left.begin(), side.left.end(), std::back_inserter(numbers),
                     [](float number) { return number != 0.0F; });
        EXPECT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
        return numbers;
    }

    // All frames that came through to either side, by their numbers.
    std::vector<float> heard() const
    {
        const std::vector<float> first = framesOf(clock);
        const std::vector<float> second = framesOf(device);
        std::vector<float> numbers;
        std::merge(first.begin(), first.end(), second.begin(), second.end(), std::back_inserter(numbers));
        return numbers;
    }

    void expectEachFrameOnce() const
    {
        const std::vector<float> numbers = heard();
        ASSERT_EQ(numbers.size(), static_cast<std::size_t>(source.frames));
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            ASSERT_EQ(numbers[i], static_cast<float>(i + 1));
        }
        EXPECT_FALSE(source.overlapped);
    }

    CountingSource source;
    RenderGate gate{source};
    RecordingSink clock;
    RecordingSink device;
};

} // namespace

TEST_F(RenderGateTest, GivesADeviceThatWasNotAdmittedSilence)
{
    device.pull(48'000);
    clock.pull(100);
    EXPECT_EQ(source.frames, 100);
    EXPECT_EQ(std::count(device.left.begin(), device.left.end(), 0.0F), 48'000);
}

TEST_F(RenderGateTest, LetsTheDeviceTakeOverOnceItHasPulledSteadily)
{
    gate.admitDevice();
    clock.pull(512);
    device.pull(RenderGate::warmUpFrames, 480);
    EXPECT_FALSE(gate.isDevicePlaying());
    EXPECT_EQ(source.frames, 512);
    clock.pull(512);
    device.pull(37, 37);
    EXPECT_TRUE(gate.isDevicePlaying());
    EXPECT_EQ(device.left.back(), 1024.0F + 37.0F);
    EXPECT_EQ(device.right.back(), -1024.0F - 37.0F);
    clock.pull(512);
    EXPECT_EQ(clock.left.back(), 0.0F);
    EXPECT_EQ(clock.right.back(), 0.0F);
    expectEachFrameOnce();
}

TEST_F(RenderGateTest, HoldsTheMusicUntilTheDeviceThatIsAwaitedPulls)
{
    gate.awaitDevice(48'000);
    clock.pull(47'999);
    EXPECT_EQ(source.frames, 0);
    EXPECT_TRUE(gate.isAwaitingDevice());
    device.pull(512);
    EXPECT_FALSE(gate.isAwaitingDevice());
    EXPECT_TRUE(gate.isDevicePlaying());
    EXPECT_EQ(device.left.front(), 1.0F);
    EXPECT_EQ(device.left.back(), 512.0F);
    gate.admitDevice();
    clock.pull(512);
    device.pull(512);
    EXPECT_EQ(source.frames, 1024);
    expectEachFrameOnce();
}

TEST_F(RenderGateTest, GivesADeviceThatHasOnlyFilledItsBufferTimeToWakeUp)
{
    gate.awaitDevice(48'000);
    device.pull(1536);
    clock.pull(RenderGate::wakeFrames);
    EXPECT_TRUE(gate.isDevicePlaying());
    device.pull(512);
    EXPECT_EQ(device.left.back(), 2048.0F);
    clock.pull(RenderGate::wakeFrames + 1);
    EXPECT_FALSE(gate.isDevicePlaying());
    device.pull(RenderGate::warmUpFrames + 1, 480);
    EXPECT_TRUE(gate.isDevicePlaying());
    clock.pull(RenderGate::stallFrames + 1);
    EXPECT_FALSE(gate.isDevicePlaying());
    expectEachFrameOnce();
}

TEST_F(RenderGateTest, BeginsOnTheClockWhereTheDeviceThatIsAwaitedDoesNotCome)
{
    gate.awaitDevice(4800);
    clock.pull(4800, 480);
    EXPECT_FALSE(gate.isAwaitingDevice());
    EXPECT_EQ(source.frames, 480);
    device.pull(RenderGate::warmUpFrames, 480);
    EXPECT_FALSE(gate.isDevicePlaying());
    device.pull(480);
    EXPECT_TRUE(gate.isDevicePlaying());
    expectEachFrameOnce();
}

TEST_F(RenderGateTest, BeginsOnTheClockAtOnceWhereTheDeviceThatIsAwaitedIsDismissed)
{
    gate.awaitDevice(48'000);
    gate.dismissDevice();
    clock.pull(512);
    EXPECT_FALSE(gate.isAwaitingDevice());
    EXPECT_EQ(source.frames, 512);
}

TEST_F(RenderGateTest, GoesBackToTheClockWhereTheDeviceIsDismissed)
{
    warmUp();
    device.pull(1000);
    gate.dismissDevice();
    device.pull(1000);
    clock.pull(1000);
    EXPECT_EQ(device.left.back(), 0.0F);
    EXPECT_EQ(clock.left.back(), static_cast<float>(source.frames));
    expectEachFrameOnce();
}

TEST_F(RenderGateTest, WarmsUpAnewForEachDevice)
{
    gate.admitDevice();
    device.pull(RenderGate::warmUpFrames);
    gate.dismissDevice();
    gate.admitDevice();
    device.pull(RenderGate::warmUpFrames);
    EXPECT_FALSE(gate.isDevicePlaying());
}

TEST_F(RenderGateTest, GoesBackToTheClockWhereTheDeviceStandsStill)
{
    warmUp();
    const int before = source.frames;
    clock.pull(RenderGate::stallFrames, 512);
    EXPECT_EQ(source.frames, before);
    clock.pull(512);
    EXPECT_EQ(source.frames, before + 512);
    device.pull(RenderGate::warmUpFrames + 1, 480);
    EXPECT_TRUE(gate.isDevicePlaying());
    expectEachFrameOnce();
}

TEST_F(RenderGateTest, DoesNotTakeAPullingDeviceForOneThatStandsStill)
{
    warmUp();
    for (int i = 0; i < 300; ++i) {
        clock.pull(1024);
        device.pull(1);
    }
    EXPECT_TRUE(gate.isDevicePlaying());
}

TEST_F(RenderGateTest, LetsNobodyThroughOnceShut)
{
    warmUp();
    const int before = source.frames;
    gate.shut();
    gate.admitDevice();
    gate.dismissDevice();
    gate.admitDevice();
    device.pull(48'000);
    clock.pull(200'000);
    EXPECT_EQ(source.frames, before);
}

TEST_F(RenderGateTest, RendersEachFrameOnceWhileThreadsPullBesideEachOther)
{
    constexpr int pulls = 4000;
    std::thread clockThread([this] {
        for (int i = 0; i < pulls; ++i) {
            clock.pull(1 + i % 64);
        }
    });
    std::thread deviceThread([this] {
        for (int i = 0; i < pulls; ++i) {
            device.pull(480 + i % 37);
        }
    });
    for (int i = 0; i < pulls; ++i) {
        gate.admitDevice();
        std::this_thread::yield();
        gate.dismissDevice();
    }
    gate.admitDevice();
    clockThread.join();
    deviceThread.join();
    gate.shut();
    expectEachFrameOnce();
}

} // namespace volvelle::test
