#include "tests/sequence/SequenceFixture.h"

#include "midi/ConvertTempo.h"

// Tempos as realtime events.
namespace volvelle::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

class MIDISequenceTempoEventsTest : public SequenceTest {
protected:
    std::vector<std::shared_ptr<AUMIDIEventEx>> eventsOf(double bpm, double position = 0.0,
                                                         double samplerate = 48000.0)
    {
        sequence->create();
        MusicTrackNewExtendedTempoEvent(tempoTrack(), position, bpm);
        return sequence->getTempoEvents(tempoTrack(), samplerate);
    }

    Bytes bytesOf(double bpm)
    {
        const auto events = eventsOf(bpm);
        return events.size() == 1 ? events[0]->array() : Bytes{};
    }
};

using MIDISequenceTempoEventsDeathTest = MIDISequenceTempoEventsTest;

TEST_F(MIDISequenceTempoEventsTest, ATempoOf120IsNineBytes)
{
    EXPECT_EQ(ConvertTempo().tempoToBytes(120.0), (Bytes{3, 147, 135, 0}));
    EXPECT_EQ(bytesOf(120.0), (Bytes{0xFD, 0x51, 0x78, 0xFF, 0x51, 3, 3, 147, 135}));
    EXPECT_EQ(console.take(),
              join({{"MIDISequence::Info: Extended Tempo Event: 120.0, Position = 0.0"}, endOfTrack()}));
}

TEST_F(MIDISequenceTempoEventsTest, TheTempoByteIs120WhereTheTempoDoesNotFit)
{
    EXPECT_EQ(bytesOf(300.0).at(2), 120);
    EXPECT_EQ(bytesOf(120.7).at(2), 120);
    EXPECT_EQ(bytesOf(254.9).at(2), 254);
    EXPECT_EQ(bytesOf(255.0).at(2), 120);
    EXPECT_EQ(bytesOf(0.5).at(2), 0);
}

TEST_F(MIDISequenceTempoEventsTest, ATempoThatHasNoNumberGivesTheBytesOf120)
{
    EXPECT_EQ(bytesOf(8589.0), (Bytes{0xFD, 0x51, 120, 0xFF, 0x51, 3, 0xFF, 0xF8, 0xDE}));
    EXPECT_EQ(bytesOf(4294967296.0 / 500000.0), (Bytes{0xFD, 0x51, 120, 0xFF, 0x51, 3, 3, 147, 135}));
    EXPECT_EQ(bytesOf(8590.0), (Bytes{0xFD, 0x51, 120, 0xFF, 0x51, 3, 3, 147, 135}));
    EXPECT_EQ(bytesOf(1e300), (Bytes{0xFD, 0x51, 120, 0xFF, 0x51, 3, 3, 147, 135}));
}

TEST_F(MIDISequenceTempoEventsTest, ATempoSoundsAtItsPositionAt120BeatsPerMinute)
{
    const auto events = eventsOf(60.0, 4.0, 44100.0);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0]->event().eventSampleTime, 88200);
    EXPECT_EQ(events[0]->event().eventType, 8);
    EXPECT_EQ(events[0]->event().length, 9);
    EXPECT_EQ(eventsOf(60.0, 0.9999, 2.0).at(0)->event().eventSampleTime, 0);
}

TEST_F(MIDISequenceTempoEventsDeathTest, ATempoPositionThatNoSampleTimeHoldsStops)
{
    sequence->setTempo(60.0, 1e300);
    console.take();
    EXPECT_STOP(sequence->getTempoEvents(tempoTrack(), 48000.0), conversionMessage,
                {concat("MIDISequence::Info: Extended Tempo Event: 60.0, Position = ", 1e300)});
}

TEST_F(MIDISequenceTempoEventsTest, TheTracksOrderIsKeptAndOtherTypesAreReported)
{
    sequence->setTempo(60.0, 2.0);
    sequence->setTempo(70.0, 1.0);
    sequence->createMetaMarkerEvent(0.0, "A");
    MusicTrackMerge(sequence->getTrack(0), 0.0, 1.0, tempoTrack(), 1.5);
    console.take();
    const auto events = sequence->getTempoEvents(tempoTrack(), 48000.0);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0]->data()[2], 70);
    EXPECT_EQ(events[1]->data()[2], 60);
    EXPECT_EQ(console.take(),
              join({{"MIDISequence::Info: Extended Tempo Event: 70.0, Position = 1.0",
                     "MIDISequence::Warnung: Anderes MIDI Event auf der Tempospur vom Type 5 gefunden.",
                     "MIDISequence::Info: Extended Tempo Event: 60.0, Position = 2.0"},
                    endOfTrack()}));
}

TEST_F(MIDISequenceTempoEventsTest, AnEmptyTrackGivesNoEvents)
{
    EXPECT_TRUE(sequence->getTempoEvents(tempoTrack(), 48000.0).empty());
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Warnung: Die Spur enthält keine Daten."});
}

TEST_F(MIDISequenceTempoEventsTest, WithoutASequenceThereAreNoEvents)
{
    const MusicTrack track = tempoTrack();
    sequence->musicSequence = nullptr;
    EXPECT_TRUE(sequence->getTempoEvents(track, 48000.0).empty());
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: Die Sequenz ist undefiniert."});
}

TEST_F(MIDISequenceTempoEventsTest, EveryFailureOfTheWalkIsReported)
{
    sequence->setTempo(60.0, 0.0);
    sequence->setTempo(70.0, 1.0);
    console.take();
    const std::string first = "MIDISequence::Info: Extended Tempo Event: 60.0, Position = 0.0";
    const std::string second = "MIDISequence::Info: Extended Tempo Event: 70.0, Position = 1.0";
    const std::vector<std::tuple<Operation, std::size_t, Lines>> walks{
        {Operation::NewMusicEventIterator,
         0,
         {"MIDISequence::Fehler: -7. \nEs konnte kein Iterator erzeugt werden.",
          "MIDISequence::Fehler: -10854. \nEs konnte nicht festgestellt werden, ob sich Daten in der Spur "
          "befinden."}},
        {Operation::MusicEventIteratorHasCurrentEvent,
         0,
         {"MIDISequence::Fehler: -7. \nEs konnte nicht festgestellt werden, ob sich Daten in der Spur "
          "befinden."}},
        {Operation::MusicEventIteratorGetEventInfo, 1,
         join({{"MIDISequence::Warnung: -7. \nZum Event konnten keine Timestamp Informationen abgerufen "
                "werden.",
                second},
               endOfTrack()})},
        {Operation::MusicEventIteratorHasNextEvent, 1,
         join({{first},
               reported("MIDISequence::Warnung: -7. \nDas Folge Event konnte nicht ermittelt werden.")})},
        {Operation::MusicEventIteratorNextEvent, 1,
         join({{first},
               reported("MIDISequence::Warnung: -7. \nDas Folge Event konnte nicht abgerufen werden "
                        "(Ende der Spur?).")})}};
    for (const auto& [operation, count, lines] : walks) {
        fail(operation);
        EXPECT_EQ(sequence->getTempoEvents(tempoTrack(), 48000.0).size(), count);
        EXPECT_EQ(console.take(), lines);
    }
}

} // namespace
} // namespace volvelle::test
