#include "services/audiodevice/AudioOutput.h"
#include "services/audiodevice/RtAudioSink.h"
#include "services/audiodevice/SoundServers.h"
#include "tests/services/audiodevice/SineSource.h"
#include "tests/services/audiodevice/SoundServersFolder.h"
#include "tests/services/audiodevice/ToneMeasure.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ConsoleCapture.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Kind = SoundServersFolder::Kind;

constexpr const char* lostDevice = "The audio device was lost: the music plays on silently.";

double secondsSince(steady_clock::time_point start)
{
    return std::chrono::duration<double>(steady_clock::now() - start).count();
}

// Seconds that two seconds of the source take, after half a second of settling.
double paceOf(SineSource& source)
{
    EXPECT_TRUE(source.waitFor(24'000));
    const auto start = steady_clock::now();
    EXPECT_TRUE(source.waitFor(96'000));
    return secondsSince(start);
}

class RtAudioSinkServersTest : public testing::Test {
protected:
    RtAudioSinkServersTest() { RtAudioSink::prepare(); }

    // Waits until the output sounds or is silent, by the frames that go by, for ten seconds at most.
    void waitUntilAudible(const AudioOutput& output, bool audible)
    {
        const auto start = steady_clock::now();
        while (output.isAudible() != audible && secondsSince(start) < 10.0) {
            ASSERT_TRUE(source.waitFor(1));
        }
        EXPECT_EQ(output.isAudible(), audible);
    }

    // Plays to a server of its own, kills that, and expects the silent clock to take over quietly.
    void expectFallback(SoundServersFolder& servers, const std::string& server, AudioOutput& output)
    {
        ASSERT_EQ(output.open(source).error(), "");
        ASSERT_TRUE(output.waitForDevice(seconds(10))) << output.problem();
        ASSERT_TRUE(source.waitFor(24'000));
        servers.signal(server, SIGKILL);
        waitUntilAudible(output, false);
        const std::clock_t before = std::clock();
        EXPECT_NEAR(paceOf(source), 2.0, 0.1);
        const double load = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
        EXPECT_LT(load, 0.75) << "processor seconds in two and a half";
    }

    ConsoleCapture lines;
    SineSource source;
};

} // namespace

TEST_F(RtAudioSinkServersTest, PlaysATruthfulSineThroughPulseAudio)
{
    const SoundServersFolder servers(Kind::shared);
    USE_SERVER(servers, "pulse");
    const std::filesystem::path recording = servers.path / "recording.raw";
    ChildProcess recorder({"parec", "-d", "null0.monitor", "--format=float32le", "--rate=48000",
                           "--channels=2", "--latency-msec=20"},
                          recording.string());
    RtAudioSink sink;
    ASSERT_EQ(sink.open(source).error(), "");
    EXPECT_THAT(sink.description(), StartsWith("PulseAudio: "));
    EXPECT_THAT(sink.description(), HasSubstr(" at 48000 Hz"));
    ToneMeasure measure;
    for (int second = 0; second < 8 && measure.frames < 48'000; ++second) {
        ASSERT_TRUE(source.waitFor(48'000));
        measure = ToneMeasure::of(recording);
    }
    EXPECT_TRUE(sink.isAudible());
    sink.close();
    recorder.terminate();
    EXPECT_EQ(measure.frames, 48'000);
    EXPECT_NEAR(measure.frequency, 440.0, 0.44);
    EXPECT_NEAR(measure.amplitude, 0.5, 0.001);
    EXPECT_LT(measure.discontinuity, 0.001);
}

TEST_F(RtAudioSinkServersTest, IsPulledByJACKAtItsPace)
{
    const SoundServersFolder servers(Kind::shared);
    USE_SERVER(servers, "jack");
    RtAudioSink sink;
    ASSERT_EQ(sink.open(source).error(), "");
    EXPECT_THAT(sink.description(), StartsWith("JACK: "));
    EXPECT_NEAR(paceOf(source), 2.0, 0.1);
    EXPECT_TRUE(sink.isAudible());
    sink.close();
    const std::int64_t before = source.frames();
    sink.close();
    EXPECT_EQ(source.frames(), before);
    EXPECT_FALSE(sink.isAudible());
}

TEST_F(RtAudioSinkServersTest, ASoundCardIsNotFreeWhereJACKRuns)
{
    const SoundServersFolder servers(Kind::shared);
    EXPECT_TRUE(isSoundCardFree());
    USE_SERVER(servers, "jack");
    EXPECT_FALSE(isSoundCardFree());
}

TEST_F(RtAudioSinkServersTest, ConvertsForAServerOfAnotherRate)
{
    SoundServersFolder servers(Kind::own);
    setenv("JACK_RATE", "44100", 1);
    servers.start("jack");
    USE_SERVER(servers, "jack");
    RtAudioSink sink;
    ASSERT_EQ(sink.open(source).error(), "");
    EXPECT_THAT(sink.description(), HasSubstr(" at 44100 Hz"));
    EXPECT_NEAR(paceOf(source), 2.0, 0.1);
}

TEST_F(RtAudioSinkServersTest, PlaysOnWherePulseAudioDiesAndFindsItAgain)
{
    SoundServersFolder servers(Kind::own);
    servers.start("pulse");
    USE_SERVER(servers, "pulse");
    AudioOutput::Options options;
    options.lookAgain = std::chrono::milliseconds(500);
    AudioOutput output(options);
    expectFallback(servers, "pulse", output);
    EXPECT_THAT(lines.take(), ElementsAre(lostDevice));
    servers.start("pulse");
    waitUntilAudible(output, true);
    EXPECT_THAT(output.description(), StartsWith("PulseAudio: ")) << output.problem();
    output.close();
    EXPECT_THAT(lines.take(), IsEmpty());
}

TEST_F(RtAudioSinkServersTest, PlaysOnWhereJACKDies)
{
    SoundServersFolder servers(Kind::own);
    servers.start("jack");
    USE_SERVER(servers, "jack");
    AudioOutput output;
    expectFallback(servers, "jack", output);
    EXPECT_THAT(lines.take(), ElementsAre(lostDevice));
}

TEST_F(RtAudioSinkServersTest, StopsInBoundedTimeWherePulseAudioHangs)
{
    SoundServersFolder servers(Kind::own);
    servers.start("pulse");
    USE_SERVER(servers, "pulse");
    AudioOutput output;
    ASSERT_EQ(output.open(source).error(), "");
    ASSERT_TRUE(output.waitForDevice(seconds(10))) << output.problem();
    servers.signal("pulse", SIGSTOP);
    waitUntilAudible(output, false);
    EXPECT_TRUE(source.waitFor(4800));
    const auto start = steady_clock::now();
    output.close();
    EXPECT_LT(secondsSince(start), 3.0);
    servers.signal("pulse", SIGKILL);
}

TEST_F(RtAudioSinkServersTest, FindsNoDeviceWhereThereIsNone)
{
    const SoundServersFolder servers(Kind::own);
    if (std::filesystem::exists("/dev/snd")) {
        GTEST_SKIP() << "this machine has a sound card";
    }
    RtAudioSink sink;
    EXPECT_EQ(sink.open(source).error(), "No sound server and no sound card was found.");
    EXPECT_EQ(source.frames(), 0);
    EXPECT_FALSE(sink.isAudible());
}

} // namespace volvelle::test
