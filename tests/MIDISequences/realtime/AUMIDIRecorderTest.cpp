#include "MIDISequences/realtime/AUMIDIRecorder.h"
#include "tests/sequence/SequenceTexts.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/Stops.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <limits>
#include <thread>

namespace volvelle::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

const std::string recorded = "AUMIDIRecorder::record() : Recorded MIDI event: AUMIDIEventEx";

class AUMIDIRecorderTest : public testing::Test {
protected:
    void SetUp() override { console.take(); }

    void record(const Bytes& bytes, std::int64_t time, AURenderEventType type = AURenderEventMIDI)
    {
        recorder.record(AUMIDIEventEx(type, bytes, static_cast<std::uint32_t>(bytes.size()), time));
    }

    // The tracks of the file that it saves, those that hold something.
    std::vector<Lines> saved()
    {
        const std::filesystem::path file = folder.path / "take.mid";
        recorder.save(file);
        MIDISequence sequence;
        sequence.loadFromFile(file);
        std::vector<Lines> tracks;
        for (int i = 0; i < sequence.getNumberOfTracks(); ++i) {
            if (Lines lines = contents(sequence.getTrack(i)); !lines.empty()) {
                tracks.push_back(std::move(lines));
            }
        }
        return tracks;
    }

    TemporaryFolder folder;
    ConsoleCapture console;
    AUMIDIRecorder recorder;
};

TEST_F(AUMIDIRecorderTest, StartsHaltedAndEmpty)
{
    EXPECT_FALSE(recorder.autoClear);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_EQ(recorder.getStartTime(), 0);
    EXPECT_EQ(recorder.getPosition(), 0);
    EXPECT_EQ(recorder.getCount(), 0);
    EXPECT_EQ(tempoContents(recorder.recorder->musicSequence), Lines{"0.0 tempo 120.0"});
    recorder.setSamplerate(44100.0);
    EXPECT_EQ(recorder.getCount(), 0);
}

TEST_F(AUMIDIRecorderTest, RecordsBetweenStartAndStopFromItsStartTimeOn)
{
    record({0x90, 60, 1}, 5);
    EXPECT_EQ(recorder.getCount(), 0);
    recorder.start(100);
    EXPECT_TRUE(recorder.isRecording());
    EXPECT_EQ(recorder.getStartTime(), 100);
    record({0xB0, 7, 1}, 340);
    EXPECT_EQ(recorder.getPosition(), 240);
    EXPECT_EQ(recorder.getCount(), 1);
    EXPECT_EQ(recorder.getEvents()[0]->event().eventSampleTime, 240);
    EXPECT_EQ(console.take(), Lines{recorded});
    recorder.stop();
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_EQ(recorder.getStartTime(), 0);
    EXPECT_EQ(recorder.getPosition(), 0);
    record({0xB0, 7, 1}, 500);
    EXPECT_EQ(recorder.getCount(), 1);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(AUMIDIRecorderTest, PausingIsStoppingAndStartingForgets)
{
    recorder.start(100);
    record({0xB0, 7, 1}, 340);
    recorder.pause();
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_EQ(recorder.getStartTime(), 0);
    EXPECT_EQ(recorder.getCount(), 1);
    recorder.start(0);
    EXPECT_EQ(recorder.getCount(), 0);
}

TEST_F(AUMIDIRecorderTest, ResetForgetsAll)
{
    recorder.start(100);
    record({0x90, 60, 1}, 340);
    recorder.reset();
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_EQ(recorder.getStartTime(), 0);
    EXPECT_EQ(recorder.getPosition(), 0);
    EXPECT_EQ(recorder.getCount(), 0);
    EXPECT_EQ(recorder.getRunningNotesCount(), 0);
}

TEST_F(AUMIDIRecorderTest, NotesWithKeyZeroAreNotRecorded)
{
    recorder.start(0);
    record({0x90, 0, 1}, 1);
    record({0x8F, 0, 1}, 2);
    EXPECT_EQ(recorder.getCount(), 0);
    EXPECT_EQ(recorder.getPosition(), 0);
    record({0xA0, 0, 1}, 3);
    record({0xB0, 0, 1}, 4);
    record({0x90, 1, 1}, 5);
    EXPECT_EQ(recorder.getCount(), 3);
}

TEST_F(AUMIDIRecorderTest, TheListIsNeverCut)
{
    recorder.start(0);
    for (int i = 0; i < 600; ++i) {
        record({0xB0, 7, 1}, i);
    }
    EXPECT_EQ(recorder.getCount(), 600);
}

TEST_F(AUMIDIRecorderTest, NothingIsSavedOfNothing)
{
    const std::filesystem::path file = folder.path / "take.mid";
    recorder.save(file);
    EXPECT_EQ(console.take(), Lines{"AUMIDIRecorder::save() : ERROR: The recorder list is empty."});
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(AUMIDIRecorderTest, SavesWhatItRecordedInTheOrderOfTime)
{
    recorder.start(1000);
    record({0x91, 60, 100}, 25000);
    record({0xB1, 7, 8}, 1000);
    Bytes exclusive(20, 5);
    exclusive.front() = 0xF0;
    exclusive.back() = 0xF7;
    record(exclusive, 49000, AURenderEventMIDISysEx);
    record({0x91, 60, 0}, 37000);
    const std::shared_ptr<MIDIRecorder> before = recorder.recorder;
    EXPECT_EQ(saved(), (std::vector<Lines>{{"0.0 message 177 7 8", "1.0 note 1 60 100 64 0.5"},
                                           {"2.0 raw " + text(exclusive)}}));
    EXPECT_NE(recorder.recorder, before);
    EXPECT_FALSE(recorder.recorder->isStarted);
    EXPECT_EQ(recorder.getCount(), 4);
    EXPECT_EQ(saved().size(), 2U);
}

TEST_F(AUMIDIRecorderTest, WritesDownWhatItRecordedWithoutAFile)
{
    recorder.start(0);
    EXPECT_FALSE(recorder.writeDown());
    EXPECT_EQ(console.take(), Lines{"AUMIDIRecorder::save() : ERROR: The recorder list is empty."});
    record({0x80, 60, 2}, 24000);
    record({0x90, 60, 1}, 0);
    EXPECT_TRUE(recorder.writeDown());
    EXPECT_EQ(contents(recorder.recorder->getTrack(0)), Lines{"0.0 note 0 60 1 2 1.0"});
    EXPECT_EQ(recorder.getCount(), 2);
    EXPECT_TRUE(recorder.isRecording());
}

TEST_F(AUMIDIRecorderTest, AMetaEventLosesItsType)
{
    recorder.start(0);
    AUMIDIEventEx meta(Bytes{0xFD, 1, 2, 65, 66});
    meta.meta = 1;
    recorder.record(meta);
    EXPECT_EQ(saved(), (std::vector<Lines>{{"0.0 meta 127 [253, 1, 2, 65, 66]"}}));
}

TEST_F(AUMIDIRecorderTest, ATimeTooFarFromTheStartIsAFatalStop)
{
    recorder.start(std::numeric_limits<std::int64_t>::max());
    EXPECT_STOP(record({0xB0, 7, 1}, -2), arithmeticMessage);
}

TEST_F(AUMIDIRecorderTest, AnotherThreadAsksWhileItRecords)
{
    recorder.start(0);
    std::thread rendering([this] {
        for (int i = 1; i <= 2000; ++i) {
            record({0xB0, 7, 1}, i);
        }
    });
    while (recorder.getPosition() < 2000) {
        recorder.getCount();
        recorder.getStartTime();
        recorder.isRecording();
    }
    rendering.join();
    EXPECT_EQ(recorder.getCount(), 2000);
}

} // namespace
} // namespace volvelle::test
