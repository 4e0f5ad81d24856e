#include "tests/sequence/SequenceFixture.h"

#include "midi/MIDIRawDataExtension.h"
#include "sequence/MIDISequence16.h"

#include <set>

namespace volvelle::test {
namespace {

class MIDISequence16Test : public testing::Test {
protected:
    using Operation = MusicSequenceOperation;

    void TearDown() override { clearFaults(); }

    static void fail(Operation operation, OSStatus status = someStatus, int after = 0)
    {
        setFault(operation, {status, after, 1});
    }

    void placeTracks(int count)
    {
        MusicSequence other;
        NewMusicSequence(other);
        for (int i = 0; i < count; ++i) {
            MusicTrack added;
            MusicSequenceNewTrack(other, added);
        }
        sequence->setMusicSequence(other);
    }

    // The lines since the last call; the number of a source line that one begins with becomes "{line}" and
    // goes to `places`.
    Lines said()
    {
        Lines lines = console.take();
        for (std::string& line : lines) {
            const std::size_t digits = line.find_first_not_of("0123456789");
            if (digits != std::string::npos && digits > 0) {
                places.push_back(std::stoi(line));
                line.replace(0, digits, "{line}");
            }
        }
        return lines;
    }

    const std::shared_ptr<MIDISequence16> sequence = std::make_shared<MIDISequence16>();
    MusicTrack track = sequence->getTrack(4);
    std::vector<int> places;
    ConsoleCapture console;
    const Lines end =
        reported("{line} Warnung: -10857. \nDas Folge Event konnte nicht abgerufen werden (Ende "
                 "der Spur?).",
                 -10857, "Ende der Spur.");
};

TEST_F(MIDISequence16Test, ANewSequenceHasSixteenTracks)
{
    EXPECT_EQ(MIDISequence16::trackCount, 16);
    EXPECT_EQ(sequence->maxTracks, 16);
    EXPECT_EQ(sequence->getNumberOfTracks(), 16);
    ASSERT_EQ(sequence->sequenceNode->tracks.size(), 16U);
    for (std::uint8_t i = 0; i < 16; ++i) {
        EXPECT_EQ(sequence->sequenceNode->tracks[i]->channel, i);
    }
    EXPECT_TRUE(sequence->checkTracks());
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequence16Test, ASequenceOfEightTracksIsNotCompatible)
{
    placeTracks(8);
    EXPECT_FALSE(sequence->checkTracks());
    EXPECT_EQ(console.take(),
              reported("Warnung: Die Sequenz ist nicht kompatibel. Es müssen 16 Spuren für 16 MIDI Kanäle "
                       "vorhanden sein. : -10859",
                       -10859, "Falscher Spur Index."));
}

TEST_F(MIDISequence16Test, ASequenceOfSeventeenTracksPasses)
{
    placeTracks(17);
    EXPECT_TRUE(sequence->checkTracks());
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequence16Test, WithoutASequenceTheCheckAndPlayingSaySo)
{
    sequence->musicSequence = nullptr;
    EXPECT_FALSE(sequence->checkTracks());
    EXPECT_EQ(console.take(), Lines{"Fehler: Die Sequenz ist undefiniert."});
    sequence->play();
    EXPECT_EQ(console.take(), Lines{"Fehler: Die Sequenz ist undefiniert."});
}

TEST_F(MIDISequence16Test, ATimedEventStartsWithoutARecord)
{
    const MIDISequence16::TimedMIDIEvent event;
    EXPECT_EQ(event.eventType, 0U);
    EXPECT_EQ(event.eventTimeStamp, 0.0);
    EXPECT_TRUE(std::holds_alternative<std::monostate>(event.event));
    const MIDISequence16::TimedMIDIEvent tempo{3, 2.0, ExtendedTempoEvent{90.0}};
    EXPECT_EQ(tempo.eventTimeStamp, 2.0);
    EXPECT_EQ(std::get<ExtendedTempoEvent>(tempo.event).bpm, 90.0);
}

TEST_F(MIDISequence16Test, AnEmptyTrackHasNoEventsAndIsNotSteppedThrough)
{
    EXPECT_TRUE(sequence->getTrackEvents(4).empty());
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequence16Test, ASingleNoteIsOneRecordAndOneWarning)
{
    sequence->createNoteEvent(3.5, 4, 60, 100, 10, 2.0F);
    const auto events = sequence->getTrackEvents(4);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].eventType, 6U);
    EXPECT_EQ(events[0].eventTimeStamp, 3.5);
    const auto& note = std::get<MIDINoteMessage>(events[0].event);
    EXPECT_EQ(note.note, 60);
    EXPECT_EQ(note.duration, 2.0F);
    EXPECT_EQ(said(), end);
}

TEST_F(MIDISequence16Test, EveryKindOfRecordIsCopiedInTheTracksOrder)
{
    MusicTrackNewExtendedNoteEvent(track, 1.0, {17, 18, 1.0F, {}});
    MusicTrackNewUserEvent(track, 4.0, MyMusicEventUserData({5, 6}).ptr);
    MyMIDIMetaEvent meta({65});
    meta.ptr->metaEventType = 3;
    MusicTrackNewMetaEvent(track, 5.0, meta.ptr);
    MusicTrackNewMIDIChannelEvent(track, 7.0, {0xB4, 7, 99, 0});
    MusicTrackNewMIDIRawDataEvent(track, 8.0, MyMIDIRawData({0xF0, 0xF7}).ptr);
    MusicTrackNewParameterEvent(track, 9.0, {19, 0, 0, 0.5F});
    const auto events = sequence->getTrackEvents(track);
    ASSERT_EQ(events.size(), 6U);
    for (const auto& event : events) {
        EXPECT_EQ(event.eventTimeStamp, event.eventType);
    }
    EXPECT_EQ(std::get<ExtendedNoteOnEvent>(events[0].event).instrumentID, 17U);
    EXPECT_EQ(std::get<MusicEventUserData>(events[1].event).data[0], 5);
    EXPECT_EQ(std::get<MIDIMetaEvent>(events[2].event).metaEventType, 3);
    EXPECT_EQ(std::get<MIDIChannelMessage>(events[3].event).data2, 99);
    EXPECT_EQ(std::get<MIDIRawData>(events[4].event).length, 2U);
    EXPECT_EQ(std::get<ParameterEvent>(events[5].event).parameterID, 19U);
}

TEST_F(MIDISequence16Test, TheTempoTrackHasItsTempos)
{
    MusicTrack tempoTrack = sequence->getTempoTrack();
    MusicTrackNewExtendedTempoEvent(tempoTrack, 2.0, 90.0);
    const auto events = sequence->getTrackEvents(tempoTrack);
    ASSERT_EQ(events.size(), 1U);
    EXPECT_EQ(events[0].eventType, 3U);
    EXPECT_EQ(std::get<ExtendedTempoEvent>(events[0].event).bpm, 90.0);
}

TEST_F(MIDISequence16Test, APresetIsReportedAndLeftOut)
{
    sequence->createNoteEvent(0.0, 4, 60, 100, 0, 1.0F);
    MusicTrackNewAUPresetEvent(track, 1.0, {1});
    sequence->createNoteEvent(2.0, 4, 62, 100, 0, 1.0F);
    const auto events = sequence->getTrackEvents(track);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[0].eventTimeStamp, 0.0);
    EXPECT_EQ(events[1].eventTimeStamp, 2.0);
    EXPECT_EQ(said(), join({{"Something or other 10"}, end}));
}

TEST_F(MIDISequence16Test, EveryFailureOfAWalkIsReported)
{
    sequence->createNoteEvent(0.0, 4, 60, 100, 0, 1.0F);
    sequence->createNoteEvent(1.0, 4, 62, 100, 0, 1.0F);
    const std::string noAnswer = ". \nEs konnte kein Event gefunden werden.";
    const std::vector<std::tuple<Operation, std::size_t, Lines>> walks{
        {Operation::NewMusicEventIterator, 0,
         join({reported("{line} Fehler: -7. \nEs konnte kein Iterator erzeugt werden."),
               reported("{line} Fehler: -10854" + noAnswer, -10854, "Keine Sequenz.")})},
        {Operation::MusicEventIteratorHasCurrentEvent, 0, reported("{line} Fehler: -7" + noAnswer)},
        {Operation::MusicEventIteratorGetEventInfo, 1,
         join({reported("{line} Fehler: -7. \nEs konnten keine Event Information abgerufen werden."), end})},
        {Operation::MusicEventIteratorHasNextEvent, 1,
         reported("{line} Warnung: -7. \nEs konnte keine Folge Event ermittelt weren..")},
        {Operation::MusicEventIteratorNextEvent, 1,
         reported("{line} Warnung: -7. \nDas Folge Event konnte nicht abgerufen werden (Ende der Spur?).")}};
    for (const auto& [operation, count, lines] : walks) {
        fail(operation);
        EXPECT_EQ(sequence->getTrackEvents(track).size(), count);
        EXPECT_EQ(said(), lines);
    }
}

TEST_F(MIDISequence16Test, EachFailureTellsTheLineOfItsOwnPlace)
{
    sequence->createNoteEvent(0.0, 4, 60, 100, 0, 1.0F);
    for (const Operation operation :
         {Operation::NewMusicEventIterator, Operation::MusicEventIteratorGetEventInfo,
          Operation::MusicEventIteratorHasNextEvent, Operation::NewMusicPlayer,
          Operation::MusicPlayerSetSequence}) {
        fail(operation);
        sequence->getTrackEvents(track);
        sequence->play();
        clearFaults();
        said();
    }
    // makeIterator and askCurrent, readEvent and step, askNext and step, a player's first and the others
    const std::set<int> different(places.begin(), places.end());
    EXPECT_EQ(different.size(), 9U) << testing::PrintToString(places);
    EXPECT_GT(*different.begin(), 0);
}

TEST_F(MIDISequence16Test, PlayingSaysNothingWhereNothingFails)
{
    sequence->play();
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequence16Test, EveryFailureOfPlayingIsReportedAndTheNextStepIsTaken)
{
    fail(Operation::NewMusicPlayer);
    sequence->play();
    EXPECT_EQ(said(), reported("{line} Fehler: -7. \nDer Player konnte nicht erzeugt werden."));
    fail(Operation::MusicPlayerPreroll);
    fail(Operation::MusicPlayerStart);
    sequence->play();
    EXPECT_EQ(said(), join({reported("{line} Fehler: -7. \nDie Sequenz konnte nicht vorbereitet werden."),
                            reported("{line} Fehler: -7. \nDie Sequenz konnte nicht gestartet werden.")}));
    fail(Operation::MusicPlayerSetSequence);
    sequence->play();
    EXPECT_EQ(said(),
              join({reported("{line} Fehler: -7. \nDie Sequenz konnte nicht dem Player zugeordnet werden."),
                    reported("{line} Fehler: -10854. \nDie Sequenz konnte nicht vorbereitet werden.", -10854,
                             "Keine Sequenz."),
                    reported("{line} Fehler: -10854. \nDie Sequenz konnte nicht gestartet werden.", -10854,
                             "Keine Sequenz.")}));
}

} // namespace
} // namespace volvelle::test
