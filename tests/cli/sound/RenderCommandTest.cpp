#include "services/files/SafeFile.h"
#include "tests/cli/ProgramRun.h"
#include "tests/rendering/SmallMusic.h"
#include "tests/support/ChildProcess.h"

#include <gmock/gmock.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <thread>

namespace volvelle::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class RenderCommandTest : public ProgramRun {
protected:
    RenderCommandTest() { write("small.mid", smallMusic()); }

    // The samples of a WAV file of 24 bits, both channels after one another.
    std::vector<double> samples(const std::string& name) const
    {
        const std::string bytes = read(name);
        const auto data = bytes.find("data");
        std::vector<double> result;
        for (std::size_t i = data + 8; data != std::string::npos && i + 2 < bytes.size(); i += 3) {
            const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(bytes[at]); };
            const auto value = static_cast<std::int32_t>(static_cast<std::uint32_t>(byte(i)) << 8U |
                                                         static_cast<std::uint32_t>(byte(i + 1)) << 16U |
                                                         static_cast<std::uint32_t>(byte(i + 2)) << 24U);
            result.push_back(value / 2147483648.0);
        }
        return result;
    }
};

TEST_F(RenderCommandTest, AWaveFileHoldsTheMusicAndItsTail)
{
    const auto result = volvelle("render small.mid --out small.wav");
    ASSERT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.output, StartsWith("Wrote 'small.wav': "));
    EXPECT_THAT(read("small.wav"), StartsWith("RIFF"));
    const auto audio = samples("small.wav");
    double peak = 0.0;
    for (const double sample : audio) {
        peak = std::max(peak, std::fabs(sample));
    }
    EXPECT_GT(peak, 0.01);
    EXPECT_LE(peak, 1.0);
    ASSERT_GT(audio.size(), 2U * 12000U);
    double end = 0.0;
    for (std::size_t i = audio.size() - 2000; i < audio.size(); ++i) {
        end = std::max(end, std::fabs(audio[i]));
    }
    EXPECT_LT(end, 1.0e-4);
}

TEST_F(RenderCommandTest, TheEndingTellsTheForm)
{
    EXPECT_EQ(volvelle("render small.mid --out small.flac").status, 0);
    EXPECT_THAT(read("small.flac"), StartsWith("fLaC"));
    EXPECT_EQ(volvelle("render small.mid --out small.ogg").status, 0);
    EXPECT_THAT(read("small.ogg"), StartsWith("OggS"));
    EXPECT_THAT(names(), ElementsAre("small.flac", "small.mid", "small.ogg"));
}

// The synthesizer renders the first 64 frames of some notes a little otherwise, by what its voices played
// before.
TEST_F(RenderCommandTest, OneCoreAndTwoGiveTheSameSound)
{
    write("long.mid", longMusic());
    ASSERT_EQ(volvelle("render long.mid --cores 1 --out one.wav").status, 0);
    ASSERT_EQ(volvelle("render long.mid --cores 2 --out two.wav").status, 0);
    const auto one = samples("one.wav");
    const auto two = samples("two.wav");
    EXPECT_NEAR(static_cast<double>(one.size()), static_cast<double>(two.size()), 2048.0);
    double level = 0.0;
    double difference = 0.0;
    for (std::size_t i = 0; i < std::min(one.size(), two.size()); ++i) {
        level += one[i] * one[i];
        difference += (one[i] - two[i]) * (one[i] - two[i]);
    }
    EXPECT_GT(level / static_cast<double>(one.size()), 1.0e-4);
    EXPECT_LT(difference, 1.0e-3 * level);
}

TEST_F(RenderCommandTest, TheSequencerInsideTheEngineGivesTheSameMusicABlockLater)
{
    write("long.mid", longMusic());
    ASSERT_EQ(volvelle("render long.mid --cores 1 --out one.wav").status, 0);
    const auto result = volvelle("render long.mid --engine render --cores 2 --out two.wav");
    ASSERT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.output, StartsWith("Wrote 'two.wav': "));
    const auto one = samples("one.wav");
    auto two = samples("two.wav");
    two.erase(two.begin(), two.begin() + 2 * 512);
    double level = 0.0;
    double other = 0.0;
    double product = 0.0;
    for (std::size_t i = 0; i < std::min(one.size(), two.size()); ++i) {
        level += one[i] * one[i];
        other += two[i] * two[i];
        product += one[i] * two[i];
    }
    EXPECT_GT(level / static_cast<double>(one.size()), 1.0e-4);
    EXPECT_GT(product / std::sqrt(level * other), 0.9);
    EXPECT_EQ(volvelle("render long.mid --engine render --cores 1 --out three.wav").status, 0);
    EXPECT_NEAR(static_cast<double>(samples("three.wav").size()), static_cast<double>(two.size()), 2048.0);
}

TEST_F(RenderCommandTest, ARateIsConverted)
{
    ASSERT_EQ(volvelle("render small.mid --out low.wav --rate 24000").status, 0);
    ASSERT_EQ(volvelle("render small.mid --out full.wav").status, 0);
    EXPECT_GT(samples("full.wav").size(), 2U * 12000U);
    EXPECT_NEAR(static_cast<double>(samples("low.wav").size()) * 2.0,
                static_cast<double>(samples("full.wav").size()), 100.0);
}

TEST_F(RenderCommandTest, FailuresAreOneLineAndLeaveNothing)
{
    write("old.wav", "old");
    const auto gone = volvelle("render gone.mid --out old.wav");
    EXPECT_EQ(gone.status, 1);
    EXPECT_EQ(gone.error, "There is no file 'gone.mid'.\n");
    write("rubbish.mid", "rubbish");
    EXPECT_EQ(volvelle("render rubbish.mid --out old.wav").error,
              "'rubbish.mid' is no Standard MIDI File.\n");
    const auto bank = volvelle("render small.mid --bank nobank.sf2 --out old.wav");
    EXPECT_EQ(bank.status, 1);
    EXPECT_EQ(bank.error, "The sound bank 'nobank.sf2' could not be loaded.\n");
    const auto folder = volvelle("render small.mid --out nowhere/x.wav");
    EXPECT_EQ(folder.status, 1);
    EXPECT_EQ(folder.error, "'nowhere/x.wav' could not be written: its folder does not exist.\n");
    EXPECT_EQ(read("old.wav"), "old");
    EXPECT_THAT(names(), ElementsAre("old.wav", "rubbish.mid", "small.mid"));
}

TEST_F(RenderCommandTest, AnInterruptionLeavesWhatStoodThereAndNothingElse)
{
    write("long.mid", longMusic(1600));
    write("old.wav", "old");
    const std::string command = "cd '" + (folder / "work").string() +
                                "' && exec '" VOLVELLE_PROGRAM
                                "' render long.mid --out old.wav >/dev/null 2>&1";
    ChildProcess render({"sh", "-c", command});
    const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (names().size() < 4 && std::chrono::steady_clock::now() < latest) {
        std::this_thread::yield();
    }
    ASSERT_EQ(names().size(), 4U); // the new file grows
    render.signal(SIGINT);
    EXPECT_EQ(render.waitForEnd(), 128 + SIGINT);
    EXPECT_EQ(read("old.wav"), "old");
    EXPECT_THAT(names(), ElementsAre("long.mid", "old.wav", "small.mid"));
}

TEST_F(RenderCommandTest, APipeGetsWhatAFileWouldGet)
{
    ASSERT_EQ(volvelle("render small.mid --out file.wav").status, 0);
    const auto named =
        shell("mkfifo pipe.wav && cat pipe.wav >got.wav & while ! test -p pipe.wav; do :; done; "
              "\"$VOLVELLE\" render small.mid --out pipe.wav && wait");
    EXPECT_EQ(named.status, 0) << named.error;
    EXPECT_TRUE(read("got.wav") == read("file.wav"));
    const auto piped = shell("\"$VOLVELLE\" render small.mid --out - --verbose | cat");
    EXPECT_TRUE(piped.output == read("file.wav"));
    EXPECT_EQ(piped.error, "");
    const auto unnamed = shell("\"$VOLVELLE\" render small.mid --quiet --out /dev/stdout | cat");
    EXPECT_TRUE(unnamed.output == read("file.wav"));
    EXPECT_EQ(volvelle("render small.mid --out /dev/null").status, 0);
    EXPECT_EQ(shell("TMPDIR=/gone exec \"$VOLVELLE\" render small.mid --out - | cat").output,
              read("file.wav"));
    const auto aside =
        shell("ulimit -f 1; TMPDIR=/dev/shm exec \"$VOLVELLE\" render small.mid --out /dev/null");
    EXPECT_EQ(aside.status, 1);
    EXPECT_EQ(aside.error, "'/dev/shm' could not be written: it would be larger than allowed.\n");
    write("more.wav", "begin");
    shell("exec \"$VOLVELLE\" render small.mid --out - >>more.wav");
    EXPECT_TRUE(read("more.wav") == "begin" + read("file.wav"));
    shell("exec \"$VOLVELLE\" render small.mid --out /dev/stdout >>more.wav");
    EXPECT_TRUE(read("more.wav") == "begin" + read("file.wav") + read("file.wav"));
    const auto full = shell("exec \"$VOLVELLE\" render small.mid --out - >/dev/full");
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.error, "'standard output' could not be written: the device is full.\n");
}

TEST_F(RenderCommandTest, AFileWithoutAnyTrackIsOnePlainLine)
{
    using namespace std::string_literals;
    write("none.mid", "MThd\0\0\0\6\0\1\0\0\0\x60"s);
    for (const char* arguments : {"render none.mid --out none.wav", "play none.mid"}) {
        const auto result = volvelle(arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, "'none.mid' holds no track.\n");
    }
    EXPECT_THAT(names(), ElementsAre("none.mid", "small.mid"));
}

TEST_F(RenderCommandTest, AFileThatLastsLongerThanADayIsOnePlainLine)
{
    using namespace std::string_literals;
    write("long.mid",
          "MThd\0\0\0\6\0\1\0\1\0\1MTrk\0\0\0\x0F\0\x90\x3C\x40\xFF\xFF\xFF\x7F\x3C\0\0\xFF\x2F\0\0"s);
    const auto result = volvelle("render long.mid --out long.wav");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "'long.mid' is too long: at most 24 hours are rendered.\n");
    EXPECT_THAT(names(), ElementsAre("long.mid", "small.mid"));
}

TEST_F(RenderCommandTest, UsageIsStatusTwo)
{
    EXPECT_EQ(volvelle("render small.mid").status, 2);
    EXPECT_EQ(volvelle("render small.mid --out x.wav --rate 5").status, 2);
    const auto other = volvelle("render gone.mid --out x.mp3");
    EXPECT_EQ(other.status, 2);
    EXPECT_EQ(other.error,
              "Audio files cannot be written as .mp3: the name must end in .wav, .flac or .ogg.\n");
    EXPECT_EQ(volvelle("render small.mid --out x").status, 2);
    EXPECT_THAT(names(), ElementsAre("small.mid"));
}

} // namespace
} // namespace volvelle::test
