#include "tests/sequence/FlatTexts.h"

#include <limits>

// The tree as flat lists: channel events, order, time.
namespace volvelle::test {
namespace {

using MIDISequenceFlatteningTest = FlatteningTest;
using MIDISequenceFlatteningDeathTest = FlatteningTest;

TEST_F(MIDISequenceFlatteningTest, AnEmptyTreeAndAnEmptyTempoTrackGiveAnEmptyList)
{
    EXPECT_TRUE(owned().empty());
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Warnung: Die Spur enthält keine Daten."});
    EXPECT_TRUE(plain().empty());
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceFlatteningTest, WithoutATreeBothListsAreEmptyWithoutAMessage)
{
    sequence->setTempo(90.0);
    console.take();
    sequence->sequenceNode = nullptr;
    EXPECT_TRUE(owned().empty());
    EXPECT_TRUE(plain().empty());
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceFlatteningDeathTest, WithoutATempoTrackTheOwnedListStops)
{
    fail(Operation::MusicSequenceGetTempoTrack);
    EXPECT_STOP(owned(), nilMessage,
                reported("MIDISequence::Fehler: -7. \nDie Tempo Spur konnte nicht ermittelt werden."));
}

TEST_F(MIDISequenceFlatteningDeathTest, ANullAmongTheNodesStopsBothLists)
{
    const Lines empty{"MIDISequence::Warnung: Die Spur enthält keine Daten."};
    sequence->sequenceNode->tracks.at(0)->events = {nullptr};
    EXPECT_STOP(owned(), nilMessage, empty);
    EXPECT_STOP(plain(), nilMessage, Lines{});
    sequence->sequenceNode->tracks = {nullptr};
    EXPECT_STOP(owned(), nilMessage, empty);
    EXPECT_STOP(plain(), nilMessage, Lines{});
}

TEST_F(MIDISequenceFlatteningTest, ANoteIsOnAndOffAt120BeatsPerMinuteWhateverTheTempo)
{
    addNote(1.0, 0.5F, 60, 3);
    const Lines note{"24000 [147, 60, 100]", "36000 [131, 60, 10]"};
    EXPECT_EQ(flatTexts(owned()), note);
    EXPECT_EQ(flatTexts(plain()), note);
    sequence->setTempo(60.0);
    EXPECT_EQ(flatTexts(owned()), join({{"0 [253, 81, 60, 255, 81, 3, 1, 201, 195]"}, note}));
    EXPECT_EQ(flatTexts(plain()), note);
}

TEST_F(MIDISequenceFlatteningTest, AnOwnedEventHasIdBeatsDurationMetaAndCable)
{
    addNote(1.0, 0.5F, 60);
    add(std::make_shared<MidiControllerEvent>(0.25, 0, 7, 99));
    const auto events = sequence->nodesToAUMIDIEvent(48000.0, 5);
    ASSERT_EQ(events.size(), 3U);
    const std::vector<double> beats{0.25, 1.0, 1.5};
    const std::vector<double> durations{0.0, 0.5, 0.0};
    for (std::size_t i = 0; i < events.size(); ++i) {
        EXPECT_EQ(events[i]->id, static_cast<int>(i));
        EXPECT_EQ(events[i]->beats, beats[i]);
        EXPECT_EQ(events[i]->duration, durations[i]);
        EXPECT_EQ(events[i]->meta, 0x7F);
        EXPECT_EQ(events[i]->event().cable, 5);
        EXPECT_EQ(events[i]->event().eventType, 8);
        EXPECT_EQ(events[i]->event().length, 3);
    }
}

TEST_F(MIDISequenceFlatteningTest, APlainRecordIsAMIDIEventWithoutLinkAndCable)
{
    addNote(1.0, 0.5F, 60);
    for (const AUMIDIEvent& record : plain()) {
        EXPECT_EQ(record.next, nullptr);
        EXPECT_EQ(record.eventType, 8);
        EXPECT_EQ(record.reserved, 0);
        EXPECT_EQ(record.cable, 0);
        EXPECT_EQ(record.length, 3);
    }
}

TEST_F(MIDISequenceFlatteningTest, EveryChannelEventHasItsBytes)
{
    add(std::make_shared<MidiProgramChangeEvent>(0.0, std::uint8_t{2}, std::uint8_t{40}));
    add(std::make_shared<MidiControllerEvent>(1.0, std::uint8_t{2}, std::uint8_t{7}, std::uint8_t{99}));
    add(std::make_shared<MidiPitchBendEvent>(2.0, std::uint8_t{2}, PitchBend{64, 5}));
    add(std::make_shared<MidiChannelPressureEvent>(3.0, std::uint8_t{2}, std::uint8_t{41}));
    add(std::make_shared<MidiPolyPressureEvent>(4.0, std::uint8_t{2}, std::uint8_t{60}, std::uint8_t{42}));
    const Lines all{"0 [194, 40]", "24000 [178, 7, 99]", "48000 [226, 64, 5]", "72000 [210, 41]",
                    "96000 [162, 60, 42]"};
    EXPECT_EQ(flatTexts(owned()), all);
    EXPECT_EQ(flatTexts(plain()), all);
}

TEST_F(MIDISequenceFlatteningTest, TheListIsAscendingOverAllTracks)
{
    sequence->create(2);
    sequence->setTempo(60.0, 1.5);
    add(std::make_shared<MidiControllerEvent>(2.0, std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{1}), 0);
    add(std::make_shared<MidiControllerEvent>(1.0, std::uint8_t{1}, std::uint8_t{2}, std::uint8_t{2}), 1);
    EXPECT_EQ(flatTexts(owned()), (Lines{"24000 [177, 2, 2]", "36000 [253, 81, 60, 255, 81, 3, 1, 201, 195]",
                                         "48000 [176, 1, 1]"}));
    EXPECT_EQ(flatTexts(plain()), (Lines{"24000 [177, 2, 2]", "48000 [176, 1, 1]"}));
}

TEST_F(MIDISequenceFlatteningTest, ANoteOffStandsBeforeAllElseOfItsSample)
{
    sequence->setTempo(60.0, 1.0);
    addNote(1.0, 1.0F, 61);
    add(std::make_shared<MidiControllerEvent>(1.0, std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{1}));
    addNote(0.0, 1.0F, 60);
    EXPECT_EQ(
        flatTexts(owned()),
        (Lines{"0 [144, 60, 100]", "24000 [128, 60, 10]", "24000 [253, 81, 60, 255, 81, 3, 1, 201, 195]",
               "24000 [144, 61, 100]", "24000 [176, 1, 1]", "48000 [128, 61, 10]"}));
    EXPECT_EQ(flatTexts(plain()), (Lines{"0 [144, 60, 100]", "24000 [128, 60, 10]", "24000 [144, 61, 100]",
                                         "24000 [176, 1, 1]", "48000 [128, 61, 10]"}));
}

TEST_F(MIDISequenceFlatteningTest, TheOffOfANoteOfNoSampleStandsDirectlyBehindItsOn)
{
    addNote(0.0, 0.0F, 60);
    addNote(0.0, 0.00001F, 61);
    addNote(0.0, 1.0F, 62);
    EXPECT_EQ(flatTexts(plain()), (Lines{"0 [144, 60, 100]", "0 [128, 60, 10]", "0 [144, 61, 100]",
                                         "0 [128, 61, 10]", "0 [144, 62, 100]", "24000 [128, 62, 10]"}));
    EXPECT_EQ(flatTexts(plain()), flatTexts(owned()));
}

TEST_F(MIDISequenceFlatteningTest, SampleTimesAreTruncatedAndDurationsMultipliedAsFloats)
{
    addNote(0.99999, 0.7F, 60); // 0.7F * 24000.0 is 16799.9997
    const Lines note{"23999 [144, 60, 100]", "40799 [128, 60, 10]"};
    EXPECT_EQ(flatTexts(plain()), note);
    EXPECT_EQ(flatTexts(owned()), note);
    EXPECT_EQ(sequence->nodesToAUMIDIEvent(44100.0).at(0).eventSampleTime, 22049);
}

TEST_F(MIDISequenceFlatteningTest, EventsOfPatternsAreNotInTheList)
{
    const auto pattern = std::make_shared<PatternNode>();
    pattern->addEvent(std::make_shared<MidiNoteEvent>());
    sequence->sequenceNode->tracks[0]->addPattern(pattern);
    EXPECT_TRUE(owned().empty());
    EXPECT_TRUE(plain().empty());
}

TEST_F(MIDISequenceFlatteningDeathTest, APositionThatNoSampleTimeHoldsStops)
{
    for (const double position :
         {1e300, -1e300, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        sequence->sequenceNode->tracks[0]->clear();
        add(std::make_shared<SystemStopEvent>(position));
        EXPECT_STOP(plain(), conversionMessage);
        EXPECT_STOP(owned(), conversionMessage, {"MIDISequence::Warnung: Die Spur enthält keine Daten."});
    }
}

TEST_F(MIDISequenceFlatteningDeathTest, ADurationThatNoSampleTimeHoldsStops)
{
    addNote(0.0, std::numeric_limits<float>::infinity(), 60);
    EXPECT_STOP(plain(), conversionMessage);
    sequence->sequenceNode->tracks[0]->clear();
    addNote(3e14, 3e14F, 60);
    EXPECT_STOP(plain(), arithmeticMessage);
}

TEST_F(MIDISequenceFlatteningDeathTest, AChannelThatTheStatusByteCannotHoldStops)
{
    addNote(0.0, 1.0F, 60, 200);
    EXPECT_STOP(plain(), arithmeticMessage);
}

} // namespace
} // namespace volvelle::test
