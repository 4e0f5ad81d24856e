#include "services/audiodevice/AudioOutput.h"

#include "services/audiodevice/RenderGate.h"
#include "tests/services/audiodevice/CountingSource.h"
#include "tests/services/audiodevice/FakeDevices.h"
#include "tests/services/audiodevice/HandWaitableClock.h"
#include "tests/support/ConsoleCapture.h"

#include <atomic>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace volvelle::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Answer = FakeDevices::Answer;

constexpr const char* noDevice = "There is no audio device: the music plays silently.";
constexpr const char* lostDevice = "The audio device was lost: the music plays on silently.";
constexpr int clockAlone = 1; // of the output's threads wait for the clock
constexpr int bothThreads = 2;
constexpr int warmUp = RenderGate::warmUpFrames + 480;

class AudioOutputTest : public testing::Test {
protected:
    void start(int waiters)
    {
        ASSERT_EQ(output.open(source).error(), "");
        clock->settle(waiters);
    }

    void startWithDevice()
    {
        start(bothThreads);
        devices.waitForOpen(1);
        devices.pull(warmUp);
        ASSERT_TRUE(output.isAudible());
    }

    void loseDevice()
    {
        devices.lose();
        clock->advance(std::chrono::milliseconds(50), bothThreads);
        devices.waitForClosed(1);
    }

    // Stops while a device hangs: the clock has to be turned meanwhile.
    void stopWithPatience()
    {
        std::atomic<bool> stopped{false};
        std::thread stopping([&] {
            output.close();
            stopped = true;
        });
        while (!stopped) {
            clock->advance(std::chrono::seconds(2), 0);
            std::this_thread::yield();
        }
        stopping.join();
    }

    AudioOutput::Options options() const
    {
        AudioOutput::Options result;
        result.makeDevice = devices.factory();
        result.clock = clock;
        return result;
    }

    ConsoleCapture lines;
    std::shared_ptr<HandWaitableClock> clock = std::make_shared<HandWaitableClock>();
    FakeDevices devices;
    CountingSource source;
    AudioOutput output{options()};
};

} // namespace

TEST_F(AudioOutputTest, PlaysOnTheSilentClockWhileADeviceHangs)
{
    devices.answerOpen(Answer::hangs);
    start(clockAlone);
    clock->advanceBlocks(3, clockAlone);
    EXPECT_EQ(source.frames, 1536);
    EXPECT_EQ(output.description(), "Silent clock");
    EXPECT_FALSE(output.isAudible());
    devices.release();
}

TEST_F(AudioOutputTest, MovesToTheDeviceWithoutLosingOrRepeatingAFrame)
{
    start(bothThreads);
    devices.waitForOpen(1);
    clock->advanceBlocks(3, bothThreads);
    EXPECT_EQ(source.frames, 1536);
    devices.pull(RenderGate::warmUpFrames);
    clock->advanceBlocks(1, bothThreads);
    EXPECT_EQ(source.frames, 2048);
    const std::vector<float> heard = devices.pull(960);
    EXPECT_EQ(heard.front(), 2049.0F);
    EXPECT_EQ(heard.back(), 3008.0F);
    clock->advanceBlocks(5, bothThreads);
    EXPECT_EQ(source.frames, 3008);
    EXPECT_EQ(output.description(), "Fake: Speakers at 44100 Hz");
    EXPECT_EQ(output.problem(), "");
    EXPECT_FALSE(source.overlapped);
    EXPECT_THAT(lines.take(), IsEmpty());
}

TEST_F(AudioOutputTest, GivesTheFirstFrameToADeviceThatItWaitsFor)
{
    AudioOutput::Options waiting = options();
    waiting.firstWait = std::chrono::seconds(1);
    AudioOutput patient(waiting);
    ASSERT_EQ(patient.open(source).error(), "");
    clock->settle(bothThreads);
    devices.waitForOpen(1);
    clock->advanceBlocks(3, bothThreads);
    EXPECT_EQ(source.frames, 0);
    EXPECT_EQ(patient.description(), "");
    EXPECT_EQ(devices.pull(480).front(), 1.0F);
    EXPECT_NE(patient.description(), "");
    EXPECT_EQ(patient.description(), "Fake: Speakers at 44100 Hz");
}

TEST_F(AudioOutputTest, BeginsAtOnceWhereTheDeviceThatItWaitsForFailsAndTellsNothingToThoseWhoTellThemselves)
{
    devices.answerOpen(Answer::fails);
    AudioOutput::Options waiting = options();
    waiting.firstWait = std::chrono::hours(1);
    waiting.logs = false;
    AudioOutput patient(waiting);
    ASSERT_EQ(patient.open(source).error(), "");
    devices.waitForAttempts(1);
    clock->settle(bothThreads);
    EXPECT_NE(patient.description(), "");
    EXPECT_EQ(patient.description(), "Silent clock");
    clock->advanceBlocks(1, bothThreads);
    EXPECT_EQ(source.frames, 512);
    EXPECT_THAT(lines.take(), IsEmpty());
}

TEST_F(AudioOutputTest, SaysOnceThatThereIsNoDeviceAndLooksAgain)
{
    devices.answerOpen(Answer::fails);
    start(bothThreads);
    devices.waitForAttempts(1);
    EXPECT_EQ(output.problem(), "Fake: refused");
    for (int i = 2; i < 5; ++i) {
        clock->advance(std::chrono::seconds(3), bothThreads);
        devices.waitForAttempts(i);
    }
    EXPECT_THAT(lines.take(), ElementsAre(noDevice));
    devices.answerOpen(Answer::opens);
    clock->advance(std::chrono::seconds(3), bothThreads);
    devices.waitForOpen(1);
    clock->settle(bothThreads);
    devices.pull(warmUp);
    EXPECT_TRUE(output.isAudible());
    EXPECT_THAT(lines.take(), IsEmpty());
}

TEST_F(AudioOutputTest, GoesBackToTheClockWhereTheDeviceIsLost)
{
    startWithDevice();
    const int before = source.frames;
    loseDevice();
    EXPECT_FALSE(output.isAudible());
    clock->advanceBlocks(2, bothThreads);
    EXPECT_GE(source.frames, before + 1024);
    EXPECT_FALSE(source.overlapped);
    EXPECT_THAT(lines.take(), ElementsAre(lostDevice));
}

TEST_F(AudioOutputTest, FindsALostDeviceAgain)
{
    startWithDevice();
    loseDevice();
    devices.answerOpen(Answer::fails);
    clock->advance(std::chrono::seconds(3), bothThreads);
    devices.waitForAttempts(2);
    devices.answerOpen(Answer::opens);
    clock->settle(bothThreads);
    clock->advance(std::chrono::seconds(3), bothThreads);
    devices.waitForOpen(2);
    clock->settle(bothThreads);
    const int before = source.frames;
    const std::vector<float> heard = devices.pull(warmUp);
    EXPECT_EQ(heard.back(), static_cast<float>(before + 480));
    EXPECT_TRUE(output.isAudible());
    EXPECT_THAT(lines.take(), ElementsAre(lostDevice));
}

TEST_F(AudioOutputTest, GoesBackToTheClockWhereTheDeviceStandsStill)
{
    startWithDevice();
    const int before = source.frames;
    clock->advanceBlocks(RenderGate::stallFrames / 512, bothThreads);
    EXPECT_EQ(source.frames, before);
    clock->advanceBlocks(2, bothThreads);
    EXPECT_GT(source.frames, before);
    EXPECT_FALSE(output.isAudible());
    devices.pull(warmUp);
    EXPECT_TRUE(output.isAudible());
}

TEST_F(AudioOutputTest, StopsPullingAndClosesTheDevice)
{
    startWithDevice();
    const int before = source.frames;
    output.close();
    output.close();
    devices.waitForClosed(1);
    EXPECT_FALSE(output.isRunning());
    EXPECT_EQ(output.description(), "");
    clock->advanceBlocks(3, 0);
    EXPECT_EQ(source.frames, before);
    EXPECT_THAT(lines.take(), IsEmpty());
}

TEST_F(AudioOutputTest, StopsWhileADeviceOpens)
{
    devices.answerOpen(Answer::hangs);
    start(clockAlone);
    devices.waitForAttempts(1);
    std::thread stopping([this] { output.close(); });
    devices.answerOpen(Answer::opens);
    stopping.join();
    devices.waitForClosed(1);
    EXPECT_EQ(source.frames, 0);
    EXPECT_THAT(lines.take(), IsEmpty());
}

TEST_F(AudioOutputTest, LeavesADeviceThatHangsInItsOpeningToItself)
{
    devices.answerOpen(Answer::hangs);
    start(clockAlone);
    devices.waitForAttempts(1);
    stopWithPatience();
    const int before = source.frames;
    devices.release();
    devices.waitForClosed(1);
    devices.pull(9600);
    EXPECT_EQ(source.frames, before);
    EXPECT_THAT(lines.take(), IsEmpty());
}

TEST_F(AudioOutputTest, LeavesADeviceThatHangsInItsClosingToItself)
{
    startWithDevice();
    devices.answerClose(Answer::hangs);
    stopWithPatience();
    EXPECT_FALSE(output.isRunning());
    devices.release();
    devices.waitForClosed(1);
}

TEST_F(AudioOutputTest, PlaysOnWhereALostDeviceHangsInItsClosing)
{
    startWithDevice();
    devices.answerClose(Answer::hangs);
    devices.lose();
    clock->advance(std::chrono::milliseconds(50), clockAlone);
    devices.waitForClosings(1);
    const int before = source.frames;
    clock->advanceBlocks(10, clockAlone);
    EXPECT_EQ(source.frames, before + 10 * 512);
    devices.release();
}

TEST_F(AudioOutputTest, StartsAgain)
{
    startWithDevice();
    output.close();
    const int before = source.frames;
    ASSERT_EQ(output.open(source).error(), "");
    clock->settle(bothThreads);
    devices.waitForOpen(2);
    clock->advanceBlocks(1, bothThreads);
    EXPECT_EQ(source.frames, before + 512);
    const std::vector<float> heard = devices.pull(warmUp);
    EXPECT_EQ(heard.back(), static_cast<float>(before + 512 + 480));
}

TEST_F(AudioOutputTest, StartsAnewWhereItRuns)
{
    startWithDevice();
    CountingSource other;
    ASSERT_EQ(output.open(other).error(), "");
    clock->settle(bothThreads);
    const int before = source.frames;
    devices.pull(warmUp);
    EXPECT_EQ(other.frames, 480);
    EXPECT_EQ(source.frames, before);
    output.close();
}

TEST_F(AudioOutputTest, TellsAtOnceThatThereIsNoDeviceToWaitFor)
{
    EXPECT_FALSE(output.waitForDevice(std::chrono::hours(1)));
    devices.answerOpen(Answer::fails);
    start(bothThreads);
    devices.waitForAttempts(1);
    EXPECT_FALSE(output.waitForDevice(std::chrono::hours(1)));
}

TEST_F(AudioOutputTest, WaitsForADeviceThatOpens)
{
    startWithDevice();
    EXPECT_TRUE(output.waitForDevice(std::chrono::hours(1)));
}

TEST_F(AudioOutputTest, WaitsNoLongerForADeviceThanAllowed)
{
    devices.answerOpen(Answer::hangs);
    start(clockAlone);
    bool found = true;
    std::thread waiting([&] { found = output.waitForDevice(std::chrono::milliseconds(7)); });
    clock->settle(2);
    clock->advance(std::chrono::milliseconds(5), 2);
    clock->advance(std::chrono::milliseconds(2), 1);
    waiting.join();
    EXPECT_FALSE(found);
    devices.release();
}

TEST_F(AudioOutputTest, TakesAnAbsentDeviceForNone)
{
    AudioOutput::Options without = options();
    without.makeDevice = [] { return nullptr; };
    AudioOutput silent(without);
    ASSERT_EQ(silent.open(source).error(), "");
    clock->settle(bothThreads);
    EXPECT_EQ(silent.problem(), "No audio device could be looked for.");
    EXPECT_THAT(lines.take(), ElementsAre(noDevice));
}

} // namespace volvelle::test
