#include "services/files/SafeFile.h"
#include "tests/cli/sound/OtherProgram.h"
#include "tests/cli/sound/TakeLines.h"
#include "tests/cli/sound/TerminalRun.h"

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <unistd.h>
#include <utility>

namespace volvelle::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;

constexpr const char* heard = "AUMIDIRecorder::record() : Recorded MIDI event: AUMIDIEventEx";
constexpr const char* wentAway = "The MIDI port \"Speaker:keys\" went away: what came is saved.";

class RecordPort : public TerminalRun {
protected:
    // Another program plays a note, and holds it, to a recording that tells its log.
    std::unique_ptr<ChildProcess> beginToHearANote(const OtherProgram& other)
    {
        auto recording = begin("record --verbose --port speaker:keys --out take");
        EXPECT_TRUE(other.waitForHearer(servers)) << errors();
        other.send("90 3C 64\n");
        std::string line = recording->readLine();
        while (!line.empty() && line != heard) {
            line = recording->readLine(); // what the log tells of the empty sequence
        }
        EXPECT_EQ(line, heard) << errors();
        return recording;
    }

    // Reads its lines to the end, and gives those that are none of the log.
    static Lines restOf(ChildProcess& recording)
    {
        Lines lines;
        for (std::string line = recording.readLine(); !line.empty(); line = recording.readLine()) {
            if (line.starts_with("The ") || line.starts_with("Recorded ")) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    Lines linesOf(const std::string& name) const
    {
        std::vector<std::uint8_t> bytes;
        EXPECT_EQ(readFile(folder / "work" / name, bytes), noErr);
        return takeLines(bytes);
    }
};

TEST_F(RecordPort, WhatAnotherProgramPlaysThroughJACKIsSaved)
{
    START_SERVER("jack");
    const OtherProgram other(folder);
    const auto recording = begin("record --port speaker:KEYS --out take --seconds 3");
    ASSERT_TRUE(other.waitForHearer(servers)) << errors();
    other.send("90 3C 64\nF8\nFE\n90 40 64\npause 300\n80 3C 10\nF0 7E 7F 09 01 F7\nC1 05\n90 00 01\n");
    EXPECT_EQ(recording->readLine(), "Recorded 5 events (3.0 seconds) to 'take.mid'.");
    EXPECT_EQ(recording->readLine(), "");
    EXPECT_EQ(recording->waitForEnd(), 0);
    EXPECT_EQ(errors(), "");
    EXPECT_THAT(linesOf("take.mid"),
                testing::UnorderedElementsAre(MatchesRegex(".* note 0 60 100 16 .*"),
                                              MatchesRegex(".* note 0 64 100 0 .*"),
                                              MatchesRegex(".* raw \\[240, 126, 127, 9, 1, 247\\]"),
                                              MatchesRegex(".* message 193 5 0")));
}

TEST_F(RecordPort, WhateverEndsTheRecordingThroughJACKItIsSaved)
{
    START_SERVER("jack");
    const OtherProgram other(folder);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        const auto recording = beginToHearANote(other);
        recording->signal(signal);
        EXPECT_THAT(restOf(*recording),
                    ElementsAre(MatchesRegex("Recorded 1 events \\(.* seconds\\) to 'take\\.mid'\\.")));
        EXPECT_EQ(recording->waitForEnd(), 0) << signal;
        EXPECT_EQ(errors(), "");
        EXPECT_THAT(linesOf("take.mid"), ElementsAre(MatchesRegex(".* note 0 60 100 0 .*")));
        std::filesystem::remove(folder / "work/take.mid");
    }
}

TEST_F(RecordPort, WhereTheOtherProgramLeavesJACKWhatCameIsSaved)
{
    START_SERVER("jack");
    OtherProgram other(folder);
    const auto recording = beginToHearANote(other);
    other.end();
    EXPECT_THAT(restOf(*recording), ElementsAre(wentAway, StartsWith("Recorded 1 events (")));
    EXPECT_EQ(recording->waitForEnd(), 0);
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(linesOf("take.mid").size(), 1U);
}

TEST_F(RecordPort, WhereJACKIsKilledWhatCameIsSaved)
{
    START_SERVER("jack");
    const OtherProgram other(folder);
    const auto recording = beginToHearANote(other);
    servers.signal("jack", SIGKILL);
    EXPECT_THAT(restOf(*recording), ElementsAre(wentAway, StartsWith("Recorded 1 events (")));
    EXPECT_EQ(recording->waitForEnd(), 0);
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(linesOf("take.mid").size(), 1U);
}

TEST_F(RecordPort, WhereNothingComesThroughJACKNothingIsWritten)
{
    START_SERVER("jack");
    const OtherProgram other(folder);
    const ProgramResult result = volvelle("record --port keys --out take --seconds 0.2");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "Nothing came from the MIDI port \"Speaker:keys\": nothing is written.\n");
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(RecordPort, ThePortsThatCanBeHeardThroughJACKAreListed)
{
    START_SERVER("jack");
    const OtherProgram other(folder);
    const ProgramResult list = volvelle("record --port list");
    EXPECT_EQ(list.status, 0) << list.error;
    EXPECT_THAT("\n" + list.output, HasSubstr("\nSpeaker:keys\n"));
    const ProgramResult unknown = volvelle("record --port 'No Such Port' --out take");
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.error, "There is no MIDI port \"No Such Port\".\n");
}

TEST_F(RecordPort, WithoutMIDIOneLineSaysSo)
{
    if (std::filesystem::exists("/dev/snd/seq")) {
        GTEST_SKIP() << "this machine has a MIDI sequencer";
    }
    for (const char* arguments : {"record --port list", "record --port x --out take"}) {
        const ProgramResult result = volvelle(arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error,
                  "There are no MIDI ports: neither the system's MIDI sequencer nor JACK answers.\n");
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(RecordPort, OnATerminalALineShowsWhatComesThroughJACK)
{
    START_SERVER("jack");
    const OtherProgram other(folder);
    for (const char key : {'q', '\x03'}) {
        screen.clear();
        const auto recording = beginOnTerminal("record --port keys --out take");
        ASSERT_TRUE(waitFor(" seconds  0 events  -")) << errors();
        other.send("90 3C 64\n90 43 64\n");
        EXPECT_TRUE(waitFor(" seconds  2 events  C3 G3")) << errors();
        other.send("80 3C 00\n");
        EXPECT_TRUE(waitFor(" seconds  3 events  G3")) << errors();
        press(key);
        EXPECT_TRUE(waitFor("\x1B[K\r\nRecorded 3 events (")) << errors();
        EXPECT_EQ(recording->waitForEnd(), 0);
        EXPECT_EQ(errors(), "");
        EXPECT_EQ(linesOf("take.mid").size(), 2U);
    }
}

TEST_F(RecordPort, WhereItsTerminalClosesWhatCameThroughJACKIsSaved)
{
    START_SERVER("jack");
    const OtherProgram other(folder);
    const auto recording = beginOnTerminal("record --port keys --out take");
    ASSERT_TRUE(waitFor(" seconds  0 events  -")) << errors();
    other.send("90 3C 64\n");
    EXPECT_TRUE(waitFor(" seconds  1 events  C3")) << errors();
    close(std::exchange(terminal, -1));
    close(std::exchange(keyboard, -1));
    EXPECT_EQ(recording->waitForEnd(), 1); // nobody reads the line at its end
    EXPECT_THAT(linesOf("take.mid"), ElementsAre(MatchesRegex(".* note 0 60 100 0 .*")));
}

} // namespace
} // namespace volvelle::test
