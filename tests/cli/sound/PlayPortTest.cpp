#include "tests/cli/sound/PlayRun.h"
#include "tests/rendering/NoteRow.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <sstream>
#include <thread>

namespace volvelle::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

// One message as the listener writes it.
struct PortMessage {
    explicit PortMessage(const std::string& line)
    {
        std::istringstream words(line);
        words >> milliseconds >> std::hex;
        for (int byte = 0; words >> byte;) {
            bytes.push_back(byte);
        }
        bytes.resize(std::max<std::size_t>(bytes.size(), 3));
    }

    bool isOn() const { return bytes[0] == 0x90 && bytes[2] > 0; }

    bool isOff() const { return bytes[0] == 0x80 || (bytes[0] == 0x90 && bytes[2] == 0); }

    // Ends each note of the first channel, or that of `key`.
    bool ends(int key) const
    {
        const bool isAllOff = bytes[0] == 0xB0 && (bytes[1] == 123 || bytes[1] == 120);
        return isAllOff || (isOff() && bytes[1] == key);
    }

    double milliseconds = 0.0; // since the message before
    std::vector<int> bytes;    // at least three
};

class PlayPort : public PlayRun {
protected:
    void listen()
    {
        listener = std::make_unique<ChildProcess>(
            std::vector<std::string>{VOLVELLE_MIDI_LISTENER, "100000", "120", "times"});
        ASSERT_EQ(listener->readLine(), "ready");
    }

    // Reads to the next start of a note, and gives its key, 0 where there is none.
    int waitForNote()
    {
        for (std::string line = listener->readLine(); !line.empty(); line = listener->readLine()) {
            elapsed += PortMessage(line).milliseconds;
            if (PortMessage(line).isOn()) {
                return PortMessage(line).bytes[1];
            }
        }
        return 0;
    }

    // Reads to the end of that note; false where another note or nothing comes before.
    bool waitForEndOf(int key)
    {
        for (std::string line = listener->readLine(); !line.empty(); line = listener->readLine()) {
            elapsed += PortMessage(line).milliseconds;
            if (PortMessage(line).isOn()) {
                return false;
            }
            if (PortMessage(line).ends(key)) {
                return true;
            }
        }
        return false;
    }

    void expectNotes(const NoteRow& row, int from)
    {
        for (int i = from; i < row.count; ++i) {
            ASSERT_EQ(waitForNote(), NoteRow::key(i)) << "note " << i;
            ASSERT_TRUE(waitForEndOf(NoteRow::key(i))) << "note " << i;
        }
    }

    std::unique_ptr<ChildProcess> listener;
    double elapsed = 0.0; // milliseconds between the messages that were read
};

TEST_F(PlayPort, AllNotesArriveInOrderAndEachEnds)
{
    START_SERVER("jack");
    listen();
    const NoteRow row{24, 12};
    write("row.mid", row.file());
    const auto play = begin("play row.mid --port listener:notes");
    EXPECT_EQ(play->readLine(), "Playing 'row.mid' through listener:notes.") << errors();
    expectNotes(row, 0);
    EXPECT_EQ(play->readLine(), "");
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayPort, NoNoteHangsWhateverEndsThePlay)
{
    START_SERVER("jack");
    listen();
    write("row.mid", NoteRow{1, 60 * NoteRow::ticksPerSecond}.file());
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGXCPU}) {
        const auto play = begin("play row.mid --port listener:notes");
        ASSERT_EQ(waitForNote(), NoteRow::key(0)) << errors();
        const auto start = std::chrono::steady_clock::now();
        play->signal(signal);
        EXPECT_TRUE(waitForEndOf(NoteRow::key(0))) << signal;
        EXPECT_EQ(play->waitForEnd(), 0) << signal;
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
        EXPECT_EQ(errors(), "");
    }
}

TEST_F(PlayPort, TheSequencerInsideTheEnginePlaysToAPortAsWell)
{
    START_SERVER("jack");
    listen();
    const NoteRow row{24, 12};
    write("row.mid", row.file());
    const auto play = begin("play row.mid --port listener:notes --engine render");
    EXPECT_EQ(play->readLine(), "Playing 'row.mid' through listener:notes.") << errors();
    expectNotes(row, 0);
    EXPECT_EQ(play->waitForEnd(), 0);
    write("row.mid", NoteRow{1, 60 * NoteRow::ticksPerSecond}.file());
    const auto ended = begin("play row.mid --port listener:notes --engine render");
    ASSERT_EQ(waitForNote(), NoteRow::key(0)) << errors();
    ended->signal(SIGINT);
    EXPECT_TRUE(waitForEndOf(NoteRow::key(0)));
    EXPECT_EQ(ended->waitForEnd(), 0);
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayPort, APlayThatOutlivesItsTerminalGoesOnAtTheSignal)
{
    START_SERVER("jack");
    listen();
    const NoteRow row{8};
    write("row.mid", row.file());
    const auto play = begin("play row.mid --port listener:notes", "trap '' HUP; ");
    ASSERT_EQ(waitForNote(), NoteRow::key(0)) << errors();
    play->signal(SIGHUP);
    ASSERT_TRUE(waitForEndOf(NoteRow::key(0)));
    expectNotes(row, 1);
    EXPECT_EQ(play->waitForEnd(), 0);
}

TEST_F(PlayPort, ExclusivesArriveWhole)
{
    using namespace std::string_literals;
    START_SERVER("jack");
    listen();
    write("reset.mid", "MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\x14\0\xF0\5\x7E\x7F\x09\1\xF7"
                       "\0\x90\x3C\x64\x60\x80\x3C\0\0\xFF\x2F\0"s);
    const auto play = begin("play reset.mid --port listener:notes");
    std::string line = listener->readLine();
    while (!line.empty() && line.find(" F0 ") == std::string::npos) {
        line = listener->readLine();
    }
    EXPECT_THAT(line, testing::EndsWith(" F0 7E 7F 09 01 F7"));
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayPort, AfterFiveSecondsOfSuspensionTheMusicGoesOnAtItsPace)
{
    START_SERVER("jack");
    listen();
    const NoteRow row{24};
    write("row.mid", row.file());
    const auto play = begin("play row.mid --port listener:notes");
    ASSERT_EQ(waitForNote(), NoteRow::key(0)) << errors();
    play->signal(SIGSTOP);
    std::this_thread::sleep_for(std::chrono::seconds(5));
    play->signal(SIGCONT);
    ASSERT_TRUE(waitForEndOf(NoteRow::key(0)));
    ASSERT_EQ(waitForNote(), NoteRow::key(1));
    elapsed = 0.0;
    ASSERT_TRUE(waitForEndOf(NoteRow::key(1)));
    expectNotes(row, 2);
    EXPECT_GT(elapsed, 1000.0 * (row.seconds() - 0.25) * 0.9 - 250.0);
    EXPECT_THAT(play->readLine(), StartsWith("Playing 'row.mid' through "));
    EXPECT_EQ(play->readLine(), "");
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayPort, WhereJACKIsKilledThePlayEndsInOrder)
{
    START_SERVER("jack");
    listen();
    write("row.mid", NoteRow{1, 60 * NoteRow::ticksPerSecond}.file());
    const auto play = begin("play row.mid --port listener:notes");
    ASSERT_EQ(waitForNote(), NoteRow::key(0)) << errors();
    servers.signal("jack", SIGKILL);
    listener = nullptr;
    play->signal(SIGINT);
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayPort, ThePortsOfOtherProgramsAreListed)
{
    START_SERVER("jack");
    listen();
    const ProgramResult list = volvelle("play --port list");
    EXPECT_EQ(list.status, 0) << list.error;
    EXPECT_THAT("\n" + list.output, HasSubstr("\nListener:notes\n"));
}

TEST_F(PlayPort, WithoutMIDIOneLineSaysSo)
{
    if (std::filesystem::exists("/dev/snd/seq")) {
        GTEST_SKIP() << "this machine has a MIDI sequencer";
    }
    write("row.mid", NoteRow{4}.file());
    for (const char* arguments : {"play --port list", "play row.mid --port x"}) {
        const ProgramResult result = volvelle(arguments);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error,
                  "There are no MIDI ports: neither the system's MIDI sequencer nor JACK answers.\n");
        EXPECT_EQ(result.output, "");
    }
}

TEST_F(PlayPort, AnUnknownPortIsOneLine)
{
    START_SERVER("jack");
    write("row.mid", NoteRow{4}.file());
    const ProgramResult result = volvelle("play row.mid --port 'No Such Port'");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "There is no MIDI port \"No Such Port\".\n");
    EXPECT_EQ(result.output, "");
}

} // namespace
} // namespace volvelle::test
