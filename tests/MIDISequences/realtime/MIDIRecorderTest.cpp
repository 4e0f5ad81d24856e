#include "MIDISequences/realtime/MIDIRecorder.h"
#include "tests/sequence/SequenceTexts.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/Stops.h"

#include <gtest/gtest.h>

#include <limits>

namespace volvelle::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

const std::string halted = "Warnung: Der MIDI Recorder wurde angehalten, empfängt aber Ereignisse.";
const std::string unmatched = "Warnung: Eine OFF Note konnte nicht zugeordnet werden.";
const std::string noLength = "Warnung: MIDI Note mit der Länge 0 oder negativ wurde entfernt.";

std::string positionTold(std::string_view position)
{
    return "Info: Momentane Position ist: " + std::string(position);
}

class TurnedClock : public Clock {
public:
    double now() const override { return seconds; }

    double seconds = 1000.0;
};

class MIDIRecorderTest : public testing::Test {
protected:
    Lines track(int channel) { return contents(recorder->getTrack(channel)); }

    void add(const Bytes& bytes, std::int64_t time, std::uint8_t meta = 0x7F)
    {
        const auto event = std::make_shared<AUMIDIEventEx>(AURenderEventMIDI, bytes,
                                                           static_cast<std::uint32_t>(bytes.size()), time);
        event->meta = meta;
        recorder->addAUMIDIEvent(event);
    }

    TurnedClock clock;
    std::shared_ptr<MIDIRecorder> recorder = std::make_shared<MIDIRecorder>(clock);
    ConsoleCapture console;
};

using MIDIRecorderDeathTest = MIDIRecorderTest;

TEST_F(MIDIRecorderTest, StartsWithSixteenTracksAndHalted)
{
    EXPECT_EQ(recorder->maxTracks, 16);
    EXPECT_EQ(recorder->getNumberOfTracks(), 16);
    EXPECT_EQ(recorder->sequenceNode->tracks.size(), 16U);
    EXPECT_FALSE(recorder->isStarted);
    EXPECT_EQ(MIDIRecorder::samplesPerBeat, 24000.0);
    const MIDIRecorder::Note note;
    EXPECT_EQ(note.number + note.channel + note.velocity + note.release, 0);
    EXPECT_EQ(note.position + note.duration, 0.0);
    EXPECT_EQ(note.samplePosition + note.sampleDuration, 0);
}

TEST_F(MIDIRecorderTest, TakesTheTimeOfDayWhereNoClockIsGiven)
{
    MIDIRecorder ofTheDay;
    EXPECT_GT(ofTheDay.getCurrentPositionInBeats(), 2.0 * 1.6e9);
}

TEST_F(MIDIRecorderTest, ANoteIsWrittenWhenItEndsTwoBeatsToTheSecond)
{
    recorder->setBeatPosition(1.0);
    recorder->start();
    EXPECT_TRUE(recorder->isStarted);
    clock.seconds += 0.5;
    recorder->noteOn(3, 60, 100);
    EXPECT_EQ(track(3), Lines{});
    clock.seconds += 2.0;
    recorder->noteOff(3, 60, 20);
    EXPECT_EQ(track(3), Lines{"3.0 note 3 60 100 20 4.0"});
    EXPECT_EQ(console.take(), (Lines{positionTold("3.0"), positionTold("7.0")}));
}

TEST_F(MIDIRecorderTest, AnEndClosesEveryOpenNoteOfItsKeyAndChannel)
{
    recorder->start();
    recorder->noteOn(0, 60, 1);
    clock.seconds += 0.5;
    recorder->noteOn(0, 61, 2);
    recorder->noteOn(1, 60, 3);
    recorder->noteOn(0, 60, 4);
    clock.seconds += 0.5;
    console.take();
    recorder->noteOff(0, 60, 9);
    EXPECT_EQ(track(0), (Lines{"0.0 note 0 60 1 9 2.0", "1.0 note 0 60 4 9 1.0"}));
    EXPECT_EQ(console.take(), Lines{positionTold("2.0")});
    recorder->noteOff(0, 60, 9);
    EXPECT_EQ(console.take(), (Lines{positionTold("2.0"), unmatched}));
    recorder->noteOff(1, 60, 9);
    recorder->noteOff(0, 61, 9);
    EXPECT_EQ(track(1), Lines{"1.0 note 1 60 3 9 1.0"});
    EXPECT_EQ(track(0).size(), 3U);
}

TEST_F(MIDIRecorderTest, EveryHaltDropsOpenNotes)
{
    const auto halts = {&MIDIRecorder::start, &MIDIRecorder::pause, &MIDIRecorder::stop};
    for (const auto halt : halts) {
        recorder->start();
        recorder->noteOn(0, 60, 1);
        ((*recorder).*halt)();
        recorder->isStarted = true;
        console.take();
        recorder->noteOffAtSamplePosition(0, 60, 1, 100);
        EXPECT_EQ(
            console.take(),
            Lines{"Warnung: Eine OFF Note 60 auf Kanal 0 konnte nicht zugeordnet werden, an position 100."});
    }
    EXPECT_EQ(track(0), Lines{});
}

TEST_F(MIDIRecorderTest, StoppingForgetsWhereItBeganAndPausingDoesNot)
{
    recorder->setBeatPosition(3.0);
    recorder->start();
    recorder->pause();
    EXPECT_FALSE(recorder->isStarted);
    EXPECT_EQ(recorder->getCurrentPositionInBeats(), 6.0);
    recorder->stop();
    EXPECT_FALSE(recorder->isStarted);
    EXPECT_EQ(recorder->getCurrentPositionInBeats(), 2000.0);
}

TEST_F(MIDIRecorderTest, HaltedItTellsEachMessageAndDropsIt)
{
    recorder->noteOn(0, 1, 1);
    recorder->noteOff(0, 1, 1);
    recorder->noteOnAtSamplePosition(0, 1, 1, 0);
    recorder->noteOffAtSamplePosition(0, 1, 1, 0);
    recorder->controllerAtSamplePosition(0, 1, 1, 0);
    recorder->aftertouchAtSamplePosition(0, 1, 1, 0);
    recorder->pitchWheelAtSamplePosition(0, 1, 1, 0);
    recorder->polyPressureAtSamplePosition(0, 1, 1, 0);
    recorder->programChangeAtSamplePosition(0, 1, 1, 0);
    recorder->sysexAtSamplePosition(2, {0xF0, 0xF7}, 0);
    recorder->metaAtSamplePosition(4, {1, 2, 3, 4}, 0, 1);
    EXPECT_EQ(console.take(), Lines(11, halted));
    recorder->controller(0, 1, 1);
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(track(0), Lines{});
}

TEST_F(MIDIRecorderTest, ResetEmptiesTheTreeAlone)
{
    recorder->start();
    recorder->controllerAtSamplePosition(0, 7, 100, 0);
    EXPECT_EQ(recorder->sequenceNode->tracks[0]->events.size(), 1U);
    recorder->reset();
    EXPECT_EQ(recorder->sequenceNode->tracks[0]->events.size(), 0U);
    EXPECT_EQ(track(0).size(), 1U);
    recorder->sequenceNode = nullptr;
    recorder->reset();
}

TEST_F(MIDIRecorderTest, ATempoThatIsNotANumberChangesNothing)
{
    recorder->setRecordTempo(60.0);
    recorder->setRecordTempo(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(recorder->getTempo(), 60.0);
    EXPECT_EQ(recorder->samplesToBeats(24000), 2.0);
    recorder->setTempofactor(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(recorder->samplesToBeats(24000), 2.0);
}

TEST_F(MIDIRecorderTest, TheTempoIsLimitedButThatOfTheSequenceIsNot)
{
    EXPECT_EQ(recorder->samplesToBeats(12000), 0.5);
    recorder->setRecordTempo(60.0);
    EXPECT_EQ(recorder->samplesToBeats(12000), 1.0);
    recorder->setRecordTempo(2000.0);
    EXPECT_EQ(recorder->samplesToBeats(24000), 0.1);
    EXPECT_EQ(recorder->getTempo(), 2000.0);
    EXPECT_EQ(tempoContents(recorder->musicSequence), Lines{"0.0 tempo 2000.0"});
    recorder->setRecordTempo(1.0);
    EXPECT_EQ(recorder->samplesToBeats(24000), 10.0);
    recorder->setTempofactor(11.0);
    EXPECT_EQ(recorder->samplesToBeats(24000), 0.1);
    recorder->setTempofactor(0.01);
    EXPECT_EQ(recorder->samplesToBeats(24000), 10.0);
}

TEST_F(MIDIRecorderTest, SamplePositionsCountFromTheStartPosition)
{
    recorder->setStartPosition(24000);
    recorder->start();
    recorder->noteOnAtSamplePosition(2, 60, 100, 48000);
    recorder->noteOffAtSamplePosition(2, 60, 30, 60000);
    recorder->controllerAtSamplePosition(2, 7, 8, 24000);
    EXPECT_EQ(track(2), (Lines{"0.0 message 178 7 8", "1.0 note 2 60 100 30 0.5"}));
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDIRecorderTest, TheStartPositionOfSamplesIsTruncated)
{
    recorder->setBeatPosition(24000.9);
    recorder->start();
    recorder->controllerAtSamplePosition(0, 7, 8, 48000);
    EXPECT_EQ(track(0), Lines{"1.0 message 176 7 8"});
}

TEST_F(MIDIRecorderTest, AnEndAtASamplePositionClosesTheFirstNoteOnly)
{
    recorder->start();
    recorder->noteOnAtSamplePosition(0, 60, 1, 0);
    recorder->noteOnAtSamplePosition(0, 60, 2, 12000);
    recorder->noteOffAtSamplePosition(0, 60, 9, 24000);
    EXPECT_EQ(track(0), Lines{"0.0 note 0 60 1 9 1.0"});
    recorder->noteOffAtSamplePosition(0, 60, 9, 24000);
    EXPECT_EQ(track(0), (Lines{"0.0 note 0 60 1 9 1.0", "0.5 note 0 60 2 9 0.5"}));
    recorder->noteOffAtSamplePosition(0, 60, 9, -24000);
    EXPECT_EQ(
        console.take(),
        Lines{"Warnung: Eine OFF Note 60 auf Kanal 0 konnte nicht zugeordnet werden, an position -24000."});
}

TEST_F(MIDIRecorderTest, ANoteThatLastedNoSampleIsNotWritten)
{
    recorder->start();
    for (const std::int64_t end : {100, 99}) {
        recorder->noteOnAtSamplePosition(0, 60, 1, 100);
        recorder->noteOffAtSamplePosition(0, 60, 1, end);
        EXPECT_EQ(console.take(), Lines{noLength});
        recorder->noteOffAtSamplePosition(0, 60, 1, end);
        EXPECT_EQ(console.take().size(), 1U);
    }
    EXPECT_EQ(track(0), Lines{});
}

TEST_F(MIDIRecorderTest, ANoteThatEndsBeforeItBeginsInBeatsIsToldPutIntoTheTreeAndRefusedByTheService)
{
    recorder->start();
    recorder->noteOnAtSamplePosition(0, 60, 1, 24000);
    recorder->setTempofactor(2.0);
    recorder->noteOffAtSamplePosition(0, 60, 1, 36000);
    EXPECT_EQ(
        console.take(),
        join(
            {{"ERROR: Die Dauer der Note ist -0.25, von 1.0 bis 0.75."},
             reported("MIDISequence::Fehler: -10853. \nEs konnte keine neue Note für Kanal 0 erzeugt werden.",
                      -10853, "Ungültiger Event Typ.")}));
    EXPECT_EQ(recorder->sequenceNode->tracks[0]->events.size(), 1U);
    EXPECT_EQ(track(0), Lines{});
}

TEST_F(MIDIRecorderTest, ANoteThatIsTooShortForItsPositionIsToldAndWritten)
{
    constexpr std::int64_t late = std::int64_t{1} << 60;
    const std::string beats = text(static_cast<double>(late) / 24000.0);
    recorder->start();
    recorder->noteOnAtSamplePosition(0, 60, 1, late);
    recorder->noteOffAtSamplePosition(0, 60, 2, late + 1);
    EXPECT_EQ(console.take(),
              Lines{concat("ERROR: Die Dauer der Note ist 0.0, von ", beats, " bis ", beats, ".")});
    EXPECT_EQ(track(0), Lines{concat(beats, " note 0 60 1 2 0.0")});
}

TEST_F(MIDIRecorderTest, WritesEveryKindOfMessage)
{
    recorder->start();
    recorder->controllerAtSamplePosition(1, 7, 100, 0);
    recorder->aftertouchAtSamplePosition(1, 99, 50, 24000);
    recorder->pitchWheelAtSamplePosition(1, 10, 64, 48000);
    recorder->polyPressureAtSamplePosition(1, 60, 5, 72000);
    recorder->programChangeAtSamplePosition(1, 99, 12, 96000);
    recorder->sysexAtSamplePosition(3, {0xF0, 1, 0xF7}, 0);
    recorder->metaAtSamplePosition(4, {65, 66, 67, 68}, 24000, 1);
    recorder->metaAtSamplePosition(3, {65, 66, 67}, 48000, 1);
    EXPECT_EQ(track(1), (Lines{"0.0 message 177 7 100", "1.0 message 209 50 0", "2.0 message 225 10 64",
                               "3.0 message 161 60 5", "4.0 message 193 12 0"}));
    EXPECT_EQ(track(0), (Lines{"0.0 raw [240, 1, 247]", "1.0 meta 1 [65, 66, 67, 68]"}));
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDIRecorderTest, TakesRenderEventsByTheirStatus)
{
    recorder->start();
    add({0x92, 60, 100}, 0);
    add({0xA2, 60, 5}, 12000);
    add({0x82, 60, 30}, 24000);
    add({0xB2, 7, 8}, 24000);
    add({0xC2, 9}, 48000);
    add({0xD2, 10}, 48000);
    add({0xE2, 11, 12}, 48000);
    EXPECT_EQ(track(2), (Lines{"0.0 note 2 60 100 30 1.0", "0.5 message 162 60 5", "1.0 message 178 7 8",
                               "2.0 message 194 9 0", "2.0 message 210 10 0", "2.0 message 226 11 12"}));
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDIRecorderTest, ANoteOnWithVelocityZeroClosesANoteWithReleaseVelocity64)
{
    recorder->start();
    add({0x90, 60, 100}, 0);
    add({0x90, 60, 0}, 24000);
    EXPECT_EQ(track(0), Lines{"0.0 note 0 60 100 64 1.0"});
}

TEST_F(MIDIRecorderTest, AnExclusiveOfTwentyBytesGoesThroughWhole)
{
    recorder->start();
    Bytes bytes(20, 5);
    bytes.front() = 0xF0;
    bytes.back() = 0xF7;
    add(bytes, 24000);
    EXPECT_EQ(track(0), Lines{"1.0 raw " + text(bytes)});
}

TEST_F(MIDIRecorderTest, AMetaEventIsWrittenWithItsTypeAndAllItsBytes)
{
    recorder->start();
    add({0xFD, 0x01, 2, 65, 66}, 24000, 1);
    add({0xFD, 0x01, 2}, 48000, 1);
    EXPECT_EQ(track(0), Lines{"1.0 meta 1 [253, 1, 2, 65, 66]"});
}

TEST_F(MIDIRecorderTest, LeavesOutPacketsSingleBytesAndDataAndTellsOtherSystemMessages)
{
    recorder->start();
    add({0xF7, 1, 2}, 0);
    add({0xF8}, 0);
    add({0x90}, 0);
    add({0x7F, 1, 2}, 0);
    EXPECT_EQ(console.take(), Lines{});
    add({0xF2, 1, 2}, 0);
    add({0xFF, 1}, 0);
    EXPECT_EQ(console.take(), (Lines{"242", "255"}));
    EXPECT_EQ(track(0), Lines{});
}

TEST_F(MIDIRecorderTest, HaltedItTellsOfRenderEventsThatWouldBeWrittenAlone)
{
    add({0x90, 60, 1}, 0);
    add({0xF7, 1}, 0);
    add({0xF2, 1}, 0);
    EXPECT_EQ(console.take(), (Lines{halted, "242"}));
}

TEST_F(MIDIRecorderTest, TakesManyInTheirOrder)
{
    recorder->start();
    const auto on = std::make_shared<AUMIDIEventEx>(Bytes{0x90, 60, 1});
    const auto off = std::make_shared<AUMIDIEventEx>(Bytes{0x80, 60, 1});
    recorder->addAUMIDIEvents({off, on});
    EXPECT_EQ(console.take().size(), 1U);
    recorder->addAUMIDIEvents({on, off});
    EXPECT_EQ(console.take(), Lines{noLength});
}

TEST_F(MIDIRecorderDeathTest, NoEventAndPositionsThatDoNotFitAreFatalStops)
{
    recorder->start();
    EXPECT_STOP(recorder->addAUMIDIEvent(nullptr), nilMessage);
    recorder->setStartPosition(24000);
    EXPECT_STOP(recorder->noteOnAtSamplePosition(0, 60, 1, std::numeric_limits<std::int64_t>::min()),
                arithmeticMessage);
    recorder->stop();
    recorder->start();
    recorder->noteOnAtSamplePosition(0, 60, 1, std::numeric_limits<std::int64_t>::min());
    EXPECT_STOP(recorder->noteOffAtSamplePosition(0, 60, 1, 1), arithmeticMessage);
    recorder->setBeatPosition(1e30);
    EXPECT_STOP(recorder->controllerAtSamplePosition(0, 60, 1, 0), conversionMessage);
}

} // namespace
} // namespace volvelle::test
