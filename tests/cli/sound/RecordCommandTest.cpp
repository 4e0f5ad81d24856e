#include "cli/sound/RecordCommand.h"
#include "cli/sound/SavedTake.h"
#include "services/files/SafeFile.h"
#include "tests/cli/sound/FakePorts.h"
#include "tests/cli/sound/TakeLines.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace volvelle::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

const std::vector<FakePorts::Message> oneNote{{0.5, {0x90, 60, 100}}, {1.0, {0x80, 60, 64}}};
const Lines oneNoteLines{"1.0 note 0 60 100 64 1.0"};

class RecordCommandTest : public testing::Test {
protected:
    RecordCommandTest() { fs::create_directory(folder.path / "spare"); }

    // Records from the port "keys" to a name in the test's folder.
    int record(const std::string& name, std::optional<double> seconds = 4.0)
    {
        return run({"keys", folder.path / name, seconds});
    }

    int run(const RecordOptions& options)
    {
        CommandOutput commandOutput(isQuiet);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int status = runRecord(options, commandOutput, {ports, clock, spareFolders});
        output = testing::internal::GetCapturedStdout();
        errors = testing::internal::GetCapturedStderr();
        EXPECT_EQ(ports.closed, ports.opened);
        return status;
    }

    // One who sends signals until it is over.
    int runWithAnImpatientUser(const RecordOptions& options)
    {
        std::atomic<bool> isOver{false};
        std::thread user;
        ports.onOpen = [&] {
            user = std::thread([&isOver, recording = pthread_self()] {
                while (!isOver) {
                    pthread_kill(recording, SIGINT);
                    std::this_thread::yield();
                }
            });
        };
        const int status = run(options);
        isOver = true;
        user.join();
        return status;
    }

    std::string makePipe() const
    {
        const std::string pipe = folder.path / "pipe";
        EXPECT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        return pipe;
    }

    std::string inFolder(const std::string& name) const { return "'" + (folder.path / name).string() + "'"; }

    Lines linesOf(const std::string& name) const
    {
        std::vector<std::uint8_t> bytes;
        EXPECT_EQ(readFile(folder.path / name, bytes), noErr);
        return takeLines(bytes);
    }

    SteppingClock clock;
    FakePorts ports{clock};
    TemporaryFolder folder;
    std::vector<fs::path> spareFolders{folder.path / "spare"};
    bool isQuiet = false;
    std::string output;
    std::string errors;
};

TEST_F(RecordCommandTest, ThePortsThatCanBeHeardAreListed)
{
    EXPECT_EQ(run({"list", std::nullopt, std::nullopt}), 0);
    EXPECT_EQ(output, "A:one\nB:two\n");
    EXPECT_EQ(errors, "");
}

TEST_F(RecordCommandTest, WhatComesUntilItsTimeIsOverIsSaved)
{
    ports.messages = oneNote;
    ports.messages.push_back({4.0, {0xB0, 1, 1}});
    ports.messages.push_back({4.001, {0xB0, 1, 2}});
    EXPECT_EQ(record("a.mid"), 0);
    EXPECT_EQ(output, "Recorded 3 events (4.0 seconds) to " + inFolder("a.mid") + ".\n");
    EXPECT_EQ(errors, "");
    EXPECT_EQ(linesOf("a.mid"), (Lines{"1.0 note 0 60 100 64 1.0", "8.0 message 176 1 1"}));
}

TEST_F(RecordCommandTest, WhatComesWhileThePortIsClosedIsSaved)
{
    ports.messages = {{0.5, {0x90, 60, 100}}};
    ports.lastMessages = {{1.0, {0x80, 60, 64}}};
    EXPECT_EQ(record("a.mid"), 0);
    EXPECT_EQ(output, "Recorded 2 events (4.0 seconds) to " + inFolder("a.mid") + ".\n");
    EXPECT_EQ(linesOf("a.mid"), oneNoteLines);
}

TEST_F(RecordCommandTest, ANoteThatIsHeldEndsWithTheTime)
{
    ports.messages = {{0.5, {0x90, 60, 100}}};
    EXPECT_EQ(record("a.mid", 2.5), 0);
    EXPECT_EQ(output, "Recorded 1 events (2.5 seconds) to " + inFolder("a.mid") + ".\n");
    EXPECT_EQ(linesOf("a.mid"), Lines{"1.0 note 0 60 100 0 4.0"});
}

TEST_F(RecordCommandTest, ASignalEndsItAndItIsSaved)
{
    ports.messages = oneNote;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        ports.onOpen = [signal] { std::raise(signal); };
        EXPECT_EQ(record("a.mid", std::nullopt), 0);
        EXPECT_THAT(output, testing::StartsWith("Recorded 2 events ("));
        EXPECT_EQ(errors, "");
        EXPECT_EQ(linesOf("a.mid"), oneNoteLines);
    }
}

TEST_F(RecordCommandTest, ANameWithoutItsEndingGetsIt)
{
    ports.messages = oneNote;
    EXPECT_EQ(record("a"), 0);
    EXPECT_EQ(output, "Recorded 2 events (4.0 seconds) to " + inFolder("a.mid") + ".\n");
    EXPECT_THAT(folder.names(), ElementsAre("a.mid", "spare"));
}

TEST_F(RecordCommandTest, AQuietOneSaysNothing)
{
    isQuiet = true;
    ports.messages = oneNote;
    EXPECT_EQ(record("a.mid"), 0);
    EXPECT_EQ(output, "");
    EXPECT_EQ(linesOf("a.mid"), oneNoteLines);
}

TEST_F(RecordCommandTest, WhereNothingCameNothingIsWritten)
{
    folder.write("a.mid", "old");
    for (const bool hasGhost : {false, true}) {
        ports.messages = hasGhost ? std::vector<FakePorts::Message>{{0.5, {0x90, 0, 100, 0xF8}}}
                                  : std::vector<FakePorts::Message>{};
        EXPECT_EQ(record("a.mid"), 1);
        EXPECT_EQ(output, "");
        EXPECT_EQ(errors, "Nothing came from the MIDI port \"Fake:keys\": nothing is written.\n");
    }
    std::vector<std::uint8_t> bytes;
    EXPECT_EQ(readFile(folder.path / "a.mid", bytes), noErr);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "old");
    EXPECT_THAT(folder.names(), ElementsAre("a.mid", "spare"));
}

TEST_F(RecordCommandTest, AnExistingFileIsReplaced)
{
    folder.write("a.mid", "old");
    ports.messages = oneNote;
    EXPECT_EQ(record("a.mid"), 0);
    EXPECT_EQ(linesOf("a.mid"), oneNoteLines);
    EXPECT_THAT(folder.names(), ElementsAre("a.mid", "spare"));
}

TEST_F(RecordCommandTest, WhatCannotBeWrittenIsRefusedBeforeThePortIsOpened)
{
    folder.write("kept.mid", "old");
    fs::permissions(folder.path / "kept.mid", fs::perms::owner_read);
    const std::pair<std::string, std::string> cases[] = {{"kept.mid", "it is write-protected"},
                                                         {"spare", "it is a folder"},
                                                         {"no/a.mid", "its folder does not exist"}};
    for (const auto& [name, reason] : cases) {
        EXPECT_EQ(record(name), 1);
        EXPECT_EQ(errors, inFolder(name) + " could not be written: " + reason + ".\n");
        EXPECT_EQ(output, "");
    }
    EXPECT_EQ(run({"keys", "", 4.0}), 1);
    EXPECT_EQ(errors, "'' could not be written: its folder does not exist.\n");
    EXPECT_EQ(record("a.wav"), 2);
    EXPECT_EQ(errors,
              "An idea is a MIDI file and no .wav: name one that ends in .mid, and turn it into sound "
              "with the command 'render'.\n");
    EXPECT_EQ(ports.opened, 0);
    EXPECT_THAT(folder.names(), ElementsAre("kept.mid", "spare"));
}

TEST_F(RecordCommandTest, APortThatIsNotThereIsOneLine)
{
    EXPECT_EQ(run({"other", folder.path / "a.mid", 4.0}), 1);
    EXPECT_EQ(errors, "There is no such port.\n");
    EXPECT_EQ(output, "");
    EXPECT_THAT(folder.names(), ElementsAre("spare"));
}

TEST_F(RecordCommandTest, WhatCannotBeWrittenAtTheEndStandsElsewhere)
{
    spareFolders = {folder.path / "file/none", folder.path / "made/folder"};
    folder.write("file", "x");
    ports.messages = oneNote;
    ports.onOpen = [this] { fs::create_directory(folder.path / "a.mid"); };
    const std::string fault = inFolder("a.mid") + " could not be written: it is a folder.";
    const std::string spare = inFolder("made/folder/a.mid");
    EXPECT_EQ(record("a"), 1);
    EXPECT_EQ(errors, fault + " It stands in " + spare + ".\n");
    EXPECT_EQ(output, "Recorded 2 events (4.0 seconds) to " + spare + ".\n");
    EXPECT_EQ(linesOf("made/folder/a.mid"), oneNoteLines);
}

TEST_F(RecordCommandTest, WithoutANameOfAFileItIsARecordingElsewhere)
{
    for (const char* out : {"", ".", "..", "-", "no/"}) {
        IdeaFile wanted(folder.path / "no/a.mid", false);
        const SavedTake saved = saveTake(wanted, out, std::vector<std::uint8_t>{1}, spareFolders);
        EXPECT_EQ(saved.file, (folder.path / "spare/Recording.mid").string()) << out;
        fs::remove(folder.path / "spare/Recording.mid");
    }
}

TEST_F(RecordCommandTest, WhereThereIsNoNameThereIsNoFreeOne)
{
    for (const char* name : {"spare/", "spare/.", "spare/.."}) {
        IdeaFile file = IdeaFile::firstFree(folder.path / name);
        EXPECT_FALSE(file.write(std::vector<std::uint8_t>{1})) << name;
    }
}

TEST_F(RecordCommandTest, AFreeNameBesideAFolderHasItsEnding)
{
    IdeaFile file = IdeaFile::firstFree(folder.path / "spare");
    EXPECT_TRUE(file.write(std::vector<std::uint8_t>{1}));
    EXPECT_TRUE(fs::exists(folder.path / "spare.mid"));
}

TEST_F(RecordCommandTest, ElsewhereNoFileIsReplaced)
{
    ports.messages = oneNote;
    folder.write("spare/full.mid", "old");
    EXPECT_EQ(run({"keys", "/dev/full", 4.0}), 1);
    EXPECT_EQ(errors, "'/dev/full' could not be written: the device is full. It stands in " +
                          inFolder("spare/full 2.mid") + ".\n");
    EXPECT_EQ(linesOf("spare/full 2.mid"), oneNoteLines);
}

TEST_F(RecordCommandTest, ASignalEndsTheWaitForTheReaderOfAPipe)
{
    const std::string pipe = makePipe();
    ports.messages = oneNote;
    EXPECT_EQ(runWithAnImpatientUser({"keys", pipe, std::nullopt}), 1);
    EXPECT_EQ(errors, "'" + pipe + "' could not be written: it was ended before it was done. It stands in " +
                          inFolder("spare/pipe.mid") + ".\n");
    EXPECT_EQ(linesOf("spare/pipe.mid").size(), 1U);
}

TEST_F(RecordCommandTest, ASignalEndsTheWaitForAReaderThatDoesNotRead)
{
    const std::string pipe = makePipe();
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    ports.messages = {{0.5, {0xF0}}};
    ports.messages.front().bytes.resize(60'000, 1);
    ports.messages.front().bytes.push_back(0xF7);
    ports.messages.push_back(ports.messages.front());
    EXPECT_EQ(runWithAnImpatientUser({"keys", pipe, std::nullopt}), 1);
    close(reader);
    EXPECT_EQ(errors, "'" + pipe + "' could not be written: it was ended before it was done. It stands in " +
                          inFolder("spare/pipe.mid") + ".\n");
    EXPECT_EQ(linesOf("spare/pipe.mid").size(), 2U);
}

TEST_F(RecordCommandTest, TheWaitForTheReaderOfAPipeLastsNoLongerThanTheRecording)
{
    const std::string pipe = makePipe();
    ports.messages = oneNote;
    EXPECT_EQ(run({"keys", pipe, 1.5}), 1);
    EXPECT_EQ(errors, "'" + pipe + "' could not be written: nobody reads it. It stands in " +
                          inFolder("spare/pipe.mid") + ".\n");
    EXPECT_EQ(linesOf("spare/pipe.mid"), oneNoteLines);
}

TEST_F(RecordCommandTest, AReaderThatComesLateGetsAll)
{
    const std::string pipe = makePipe();
    ports.messages = oneNote;
    std::vector<std::uint8_t> bytes;
    std::thread reader([&] { EXPECT_EQ(readFile(pipe, bytes), noErr); });
    EXPECT_EQ(run({"keys", pipe, 4.0}), 0);
    reader.join();
    EXPECT_EQ(takeLines(bytes), oneNoteLines);
}

TEST_F(RecordCommandTest, WhereNoFolderTakesItOneLineSaysWhy)
{
    ports.messages = oneNote;
    ports.messages.push_back({1.0, {0xF0, 1, 0x90, 60, 1}});
    spareFolders = {};
    EXPECT_EQ(run({"keys", "/dev/full", 4.0}), 1);
    EXPECT_EQ(errors, "'/dev/full' could not be written: the device is full.\n");
    EXPECT_EQ(output, "");
}

TEST_F(RecordCommandTest, APortThatGoesAwayEndsItAndItIsSaved)
{
    ports.messages = {{0.5, {0x90, 60, 100}}};
    ports.isLost = true;
    EXPECT_EQ(record("a.mid", std::nullopt), 0);
    EXPECT_THAT(output, testing::MatchesRegex("The MIDI port \"Fake:keys\" went away: what came is saved\\.\n"
                                              "Recorded 1 events \\(2\\..* seconds\\) to '.*/a\\.mid'\\.\n"));
    EXPECT_EQ(errors, "");
    EXPECT_EQ(linesOf("a.mid").size(), 1U);
}

TEST_F(RecordCommandTest, APortThatGoesAwayBeforeAnythingCameIsOneLine)
{
    ports.isLost = true;
    EXPECT_EQ(record("a.mid", std::nullopt), 1);
    EXPECT_EQ(output, "");
    EXPECT_EQ(errors, "The MIDI port \"Fake:keys\" went away before anything came: nothing is written.\n");
    EXPECT_THAT(folder.names(), ElementsAre("spare"));
}

TEST_F(RecordCommandTest, WhatFoundNoRoomIsTold)
{
    ports.messages = oneNote;
    ports.messages.push_back({1.0, std::vector<std::uint8_t>(70'000, 0x11)});
    ports.messages.back().bytes.front() = 0xF0;
    ports.messages.back().bytes.back() = 0xF7;
    EXPECT_EQ(record("a.mid"), 0);
    EXPECT_EQ(output, "Messages that were broken off or found no room, and are left out: 1.\n"
                      "Recorded 2 events (4.0 seconds) to " +
                          inFolder("a.mid") + ".\n");
}

TEST_F(RecordCommandTest, AFloodIsRecordedAsFarAsThereIsRoomAndEachNoteEnds)
{
    for (int i = 0; i < 60'000; ++i) {
        ports.messages.push_back({0.5, {0x90, static_cast<std::uint8_t>(1 + i % 127), 1}});
    }
    EXPECT_EQ(record("a.mid", 1.0), 0);
    const std::size_t notes = linesOf("a.mid").size();
    EXPECT_GT(notes, 10'000U);
    EXPECT_EQ(output, "Messages that were broken off or found no room, and are left out: " +
                          std::to_string(60'000 - notes) + ".\nRecorded " + std::to_string(notes) +
                          " events (1.0 seconds) to " + inFolder("a.mid") + ".\n");
}

TEST_F(RecordCommandTest, StandardOutputGetsTheBytesAlone)
{
    ports.messages = oneNote;
    ports.messages.push_back({1.5, {0xF0, 1, 0x90, 60, 1}});
    EXPECT_EQ(run({"keys", "-", 4.0}), 0);
    EXPECT_EQ(takeLines({output.begin(), output.end()}),
              (Lines{"1.0 note 0 60 100 64 1.0", "3.0 note 0 60 1 0 5.0"}));
    EXPECT_EQ(errors, "Messages that were broken off or found no room, and are left out: 1.\n");
}

} // namespace
} // namespace volvelle::test
