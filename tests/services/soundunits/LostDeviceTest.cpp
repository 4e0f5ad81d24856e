#include "services/audiodevice/AudioOutput.h"
#include "services/audiodevice/RenderGate.h"
#include "tests/services/audiodevice/FakeDevices.h"
#include "tests/services/audiodevice/HandWaitableClock.h"
#include "tests/services/soundunits/SynthStudio.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

constexpr int bothThreads = 2; // of the output wait for the clock
constexpr int warmUp = RenderGate::warmUpFrames + 480;
constexpr float audible = 1.0e-3F;
constexpr int tenthOfSecond = 4800; // frames

// An organ through a device that can be lost; the silent clock renders meanwhile.
class LostDevice : public testing::TestWithParam<int> {
protected:
    // The pedal goes down while a short note sounds, and up at that beat.
    void play(double lift)
    {
        studio.load(Song()
                        .message(0.0, 0xC0, 19)
                        .note(0.0, 0, 60, 100, 0.25)
                        .message(0.125, 0xB0, GetParam(), 127)
                        .message(lift, 0xB0, GetParam(), 0)
                        .length(lift + 1.0));
        studio.start();
        ASSERT_EQ(output.open(*studio.engine).error(), "");
        clock->settle(bothThreads);
        devices.waitForOpen(1);
        devices.pull(warmUp);
        ASSERT_TRUE(output.isAudible());
        ASSERT_GT(heard(2.0), audible);
    }

    void lose()
    {
        devices.lose();
        clock->advance(std::chrono::milliseconds(50), bothThreads);
        devices.waitForClosed(1);
        ASSERT_FALSE(output.isAudible());
    }

    void comeBack()
    {
        clock->advance(std::chrono::seconds(3), bothThreads);
        devices.waitForOpen(2);
        clock->settle(bothThreads);
        devices.pull(warmUp);
        ASSERT_TRUE(output.isAudible());
    }

    // The loudest of the last tenth of so many seconds from the device.
    float heard(double seconds)
    {
        const std::vector<float> sound = devices.pull(static_cast<int>(seconds * 48'000.0));
        return loudest({sound.end() - tenthOfSecond, sound.end()});
    }

    AudioOutput::Options options() const
    {
        AudioOutput::Options result;
        result.makeDevice = devices.factory();
        result.clock = clock;
        result.logs = false;
        return result;
    }

    SynthStudio studio;
    std::shared_ptr<HandWaitableClock> clock = std::make_shared<HandWaitableClock>();
    FakeDevices devices;
    AudioOutput output{options()};
};

// The synthesizer does not know the second hold pedal (69).
INSTANTIATE_TEST_SUITE_P(Pedals, LostDevice, testing::Values(64, 66));

TEST_P(LostDevice, WhatAPedalHoldsEndsWhereItIsLiftedMeanwhile)
{
    play(8.0);
    lose();
    clock->advanceBlocks(250, bothThreads);
    comeBack();
    EXPECT_LT(heard(0.2), audible);
}

TEST_P(LostDevice, WhatAPedalHoldsGoesOnUntilItIsLifted)
{
    play(64.0);
    lose();
    comeBack();
    EXPECT_GT(heard(0.2), audible);
    EXPECT_LT(heard(33.0), audible);
}

TEST_P(LostDevice, WhatAPedalHoldsEndsWhereTheMusicIsStoppedMeanwhile)
{
    play(64.0);
    lose();
    studio.sequencer->stop();
    clock->advanceBlocks(50, bothThreads);
    comeBack();
    EXPECT_LT(heard(0.2), audible);
}

} // namespace

} // namespace volvelle::test
