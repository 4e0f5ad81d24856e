#include "tests/cli/sound/MonitorRecorder.h"
#include "tests/cli/sound/PlayRun.h"
#include "tests/rendering/NoteRow.h"
#include "tests/support/ProjectFolders.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <thread>

namespace volvelle::test {
namespace {

using std::chrono::steady_clock;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* lost = "The audio device was lost: the music plays on silently.";
constexpr const char* throughPulse = "Playing 'row.mid' through PulseAudio: ";
constexpr const char* installedBank = "/usr/share/sounds/sf2/TimGM6mb.sf2";

double secondsSince(steady_clock::time_point start)
{
    return std::chrono::duration<double>(steady_clock::now() - start).count();
}

class PlayFaults : public PlayRun {
protected:
    void writeRow(const NoteRow& row) const { write("row.mid", row.file()); }

    // Kills the server while music of some seconds plays, which must go on to its end in silence.
    void expectToEndWithout(const std::string& server, const std::string& firstLine)
    {
        const NoteRow row{20};
        writeRow(row);
        const auto start = steady_clock::now();
        const auto play = begin("play row.mid");
        EXPECT_THAT(play->readLine(), StartsWith(firstLine));
        servers.signal(server, SIGKILL);
        EXPECT_EQ(play->readLine(), lost);
        EXPECT_EQ(play->readLine(), "");
        EXPECT_EQ(play->waitForEnd(), 0);
        EXPECT_GE(secondsSince(start), row.seconds());
        EXPECT_EQ(errors(), "");
    }

    // Overwrites a bank in place while music plays that changes its sounds all the time.
    void expectToSoundWithout(const std::string& bank)
    {
        writeRow({32, 48, true});
        const auto play = begin("play row.mid --bank " + bank);
        EXPECT_THAT(play->readLine(), StartsWith(throughPulse)) << errors();
        EXPECT_TRUE(MonitorRecorder().waitForSound());
        write(bank, std::string(100'000, 'x'));
        for (int second = 0; second < 2; ++second) {
            EXPECT_TRUE(MonitorRecorder().waitForSound());
        }
        EXPECT_EQ(play->readLine(), "");
        EXPECT_EQ(play->waitForEnd(), 0);
        EXPECT_EQ(errors(), "");
        const ProgramResult again = volvelle("play row.mid --bank " + bank);
        EXPECT_EQ(again.status, 1);
        EXPECT_EQ(again.error, "The sound bank '" + bank + "' could not be loaded.\n");
        EXPECT_EQ(again.output, "");
    }
};

TEST_F(PlayFaults, WherePulseAudioIsKilledTheMusicRunsToItsEndInSilence)
{
    START_SERVER("pulse");
    expectToEndWithout("pulse", throughPulse);
}

TEST_F(PlayFaults, WhereJACKIsKilledTheMusicRunsToItsEndInSilence)
{
    START_SERVER("jack");
    expectToEndWithout("jack", "Playing 'row.mid' through JACK: ");
}

TEST_F(PlayFaults, WherePulseAudioComesBackTheMusicIsHeardAgain)
{
    START_SERVER("pulse");
    writeRow({480});
    const auto play = begin("play --verbose row.mid");
    std::string line = play->readLine();
    while (!line.empty() && !line.starts_with(throughPulse)) {
        line = play->readLine(); // what the log tells of the file
    }
    EXPECT_THAT(line, StartsWith(throughPulse)) << errors();
    EXPECT_TRUE(MonitorRecorder().waitForSound());
    servers.signal("pulse", SIGKILL);
    EXPECT_EQ(play->readLine(), lost);
    servers.start("pulse");
    line = play->readLine();
    EXPECT_THAT(line, StartsWith("Playing through PulseAudio: "));
    EXPECT_THAT(line, HasSubstr(" at 48000 Hz again."));
    EXPECT_TRUE(MonitorRecorder().waitForSound());
    play->signal(SIGINT);
    EXPECT_EQ(play->readLine(), "MIDISequencer::stop() : The sequencer was stopped.");
    EXPECT_EQ(play->readLine(), "");
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayFaults, AQuietPlayTellsNothingOfItsDevice)
{
    START_SERVER("pulse");
    const NoteRow row{12};
    writeRow(row);
    const auto play = begin("play --quiet row.mid");
    EXPECT_TRUE(MonitorRecorder().waitForSound());
    servers.signal("pulse", SIGKILL);
    EXPECT_EQ(play->readLine(), "");
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayFaults, AfterFiveSecondsOfSuspensionTheMusicIsHeardToItsEnd)
{
    START_SERVER("pulse");
    const NoteRow row{12};
    writeRow(row);
    const auto play = begin("play row.mid");
    EXPECT_THAT(play->readLine(), StartsWith(throughPulse)) << errors();
    EXPECT_TRUE(MonitorRecorder().waitForSound());
    play->signal(SIGSTOP);
    std::this_thread::sleep_for(std::chrono::seconds(5));
    play->signal(SIGCONT);
    const auto goesOn = steady_clock::now();
    EXPECT_TRUE(MonitorRecorder().waitForSound());
    EXPECT_EQ(play->readLine(), "");
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_LT(secondsSince(goesOn), row.seconds() + 20.0);
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayFaults, WhatWasSuspendedOnTheSilentClockIsNotCaughtUpWith)
{
    const NoteRow row{12};
    writeRow(row);
    const auto start = steady_clock::now();
    const auto play = begin("play row.mid");
    EXPECT_THAT(play->readLine(), StartsWith("Playing 'row.mid' through "));
    play->signal(SIGSTOP);
    std::this_thread::sleep_for(std::chrono::seconds(5));
    play->signal(SIGCONT);
    EXPECT_EQ(play->readLine(), "");
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_GE(secondsSince(start), row.seconds() + 4.5);
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayFaults, APipeThatClosesEndsThePlayInOrder)
{
    writeRow({480});
    const auto play = begin("play row.mid");
    EXPECT_THAT(play->readLine(), StartsWith("Playing 'row.mid' through "));
    const auto start = steady_clock::now();
    play->signal(SIGPIPE);
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_LT(secondsSince(start), 20.0);
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayFaults, WithoutAnySoundServerOneLineNamesTheSilentClock)
{
    if (std::filesystem::exists("/dev/snd")) {
        GTEST_SKIP() << "this machine has a sound card";
    }
    const NoteRow row{4};
    writeRow(row);
    const auto start = steady_clock::now();
    const auto play = begin("play row.mid");
    EXPECT_EQ(play->readLine(), "Playing 'row.mid' through Silent clock.");
    EXPECT_EQ(play->readLine(), "");
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_GE(secondsSince(start), row.seconds());
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayFaults, ASoundFontThatIsOverwrittenIsHeardToTheEndOfTheMusic)
{
    if (!std::filesystem::exists(installedBank)) {
        GTEST_SKIP() << "timgm6mb-soundfont is not installed";
    }
    START_SERVER("pulse");
    std::filesystem::copy_file(installedBank, folder / "work" / "bank.sf2");
    expectToSoundWithout("bank.sf2");
}

TEST_F(PlayFaults, ADLSBankThatIsOverwrittenIsHeardToTheEndOfTheMusic)
{
    START_SERVER("pulse");
    std::filesystem::copy_file(buildFolder() / "resources/gs_instruments.dls", folder / "work" / "bank.dls");
    expectToSoundWithout("bank.dls");
}

} // namespace
} // namespace volvelle::test
