#include "tests/sequence/SequenceFixture.h"

#include "base/Checked.h"

// The walk over a whole sequence and over one track; the arms have a file of their own.
namespace volvelle::test {
namespace {

class MIDISequenceReadingTest : public SequenceTest {
protected:
    void note(int track, double time, std::uint8_t channel)
    {
        MusicTrackNewMIDINoteEvent(sequence->getTrack(track), time, {channel, 60, 100, 0, 4.0F});
    }

    void controller(int track, double time, std::uint8_t status)
    {
        MusicTrackNewMIDIChannelEvent(sequence->getTrack(track), time, {status, 7, 100, 0});
    }

    Lines nodes(std::size_t track) const { return describe(*sequence->sequenceNode->tracks.at(track)); }
};

using MIDISequenceReadingDeathTest = MIDISequenceReadingTest;

TEST_F(MIDISequenceReadingTest, AssignmentsTellTheChannelOfEachTrackInTheirOrder)
{
    sequence->create(3);
    note(0, 0.0, 3);
    controller(1, 0.0, 0xB9);
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(sequence->getChannelAssignment(0), 3);
    EXPECT_EQ(sequence->getChannelAssignment(1), 9);
    EXPECT_EQ(sequence->getChannelAssignment(2), 0);
    EXPECT_EQ(console.take(), join({endOfTrack(), endOfTrack()}));
    sequence->deleteTrack(sequence->getTrack(0));
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(sequence->getChannelAssignment(0), 9);
    EXPECT_EQ(sequence->getChannelAssignment(1), 0);
}

TEST_F(MIDISequenceReadingTest, AProgramChangeIsThePatchOfItsChannelUntilTheNextRead)
{
    MusicTrackNewMIDIChannelEvent(sequence->getTrack(0), 1.0, {0xC5, 40, 0, 0});
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(sequence->getPatchForChannel(5), 40);
    sequence->clear();
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(sequence->getPatchForChannel(5), 0);
}

TEST_F(MIDISequenceReadingTest, TheSongIsAsLongAsItsLatestEventStartsTheTempoTrackIncluded)
{
    sequence->sequenceLength = 99.0;
    note(0, 5.0, 0);
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(sequence->getLength(), 5.0);
    sequence->setTempo(100.0, 7.0);
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(sequence->getLength(), 7.0);
    const ExtendedNoteOnEvent extended;
    MusicTrackNewExtendedNoteEvent(sequence->getTrack(0), 8.0, extended);
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(sequence->getLength(), 8.0);
}

TEST_F(MIDISequenceReadingTest, TracksBehindTheMaximumAreNotRead)
{
    sequence->create(3);
    sequence->maxTracks = 2;
    for (const int track : {0, 1, 2}) {
        note(track, 1.0 + track, 0);
    }
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(console.take(), join({endOfTrack(),
                                    endOfTrack(),
                                    {"MIDISequence::Warnung: Die Anzahl der Spuren (3) in der Sequenz ist "
                                     "größer als das Maximum: 2"}}));
    EXPECT_EQ(nodes(0).size(), 1U);
    EXPECT_EQ(nodes(1).size(), 1U);
    EXPECT_EQ(nodes(2), Lines{});
    EXPECT_EQ(sequence->getLength(), 2.0);
}

TEST_F(MIDISequenceReadingTest, TracksFromSixteenOnGetNoAssignment)
{
    sequence->create(18);
    sequence->maxTracks = 18;
    note(15, 0.0, 7);
    note(16, 0.0, 8);
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(sequence->getChannelAssignment(15), 7);
    EXPECT_EQ(sequence->getChannelAssignment(16), 0);
    EXPECT_EQ(nodes(16), Lines{"MidiNoteEvent 0.0 8: 60 100 0 4.0"});
}

TEST_F(MIDISequenceReadingTest, AReadReplacesTheTreesContentAndReadsTheTempoTrackFirst)
{
    note(0, 1.0, 0);
    sequence->setTempo(90.0, 2.0);
    sequence->musicSequenceToSequenceNode();
    sequence->delegate = listener;
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(nodes(0), Lines{"MidiNoteEvent 1.0 0: 60 100 0 4.0"});
    EXPECT_EQ(describe(*sequence->sequenceNode->tempoTrack), Lines{"TempoEvent 2.0 255: 90.0"});
    EXPECT_EQ(listener->names(), (std::vector<std::string>{"foundTempoEvent", "foundNoteEvent"}));
}

TEST_F(MIDISequenceReadingTest, TheListenerIsCalledBeforeTheNextEventIsRead)
{
    class CountingDelegate : public SequenceFoundDelegate {
    public:
        void foundNoteEvent(const std::shared_ptr<MidiNoteEvent>& event) override
        {
            counts.push_back(required(event->track.get()).getEventCount());
        }

        std::vector<int> counts;
    };

    const auto counting = std::make_shared<CountingDelegate>();
    sequence->delegate = counting;
    note(0, 0.0, 0);
    note(0, 1.0, 0);
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(counting->counts, (std::vector<int>{1, 2}));
}

// Gives up the sequence that tells it of a note.
class LettingGo : public SequenceFoundDelegate {
public:
    explicit LettingGo(std::shared_ptr<ObservedSequence>& sequence) : holder(sequence), watched(sequence) {}

    void foundNoteEvent(const std::shared_ptr<MidiNoteEvent>& event) override
    {
        positions.push_back(event->position);
        holder.reset();
        EXPECT_FALSE(watched.expired());
    }

    std::shared_ptr<ObservedSequence>& holder;
    std::weak_ptr<ObservedSequence> watched;
    std::vector<double> positions;
};

TEST_F(MIDISequenceReadingTest, ATrackWhoseSequenceItsListenerGivesUpIsReadToItsEnd)
{
    const auto lettingGo = std::make_shared<LettingGo>(sequence);
    sequence->delegate = lettingGo;
    note(0, 0.0, 0);
    note(0, 1.0, 0);
    sequence->iterateEvents(sequence->getTrack(0), 0);
    EXPECT_EQ(lettingGo->positions, (std::vector<double>{0.0, 1.0}));
    EXPECT_TRUE(lettingGo->watched.expired());
}

TEST_F(MIDISequenceReadingTest, ASequenceThatItsListenerGivesUpIsReadToItsEnd)
{
    const auto lettingGo = std::make_shared<LettingGo>(sequence);
    sequence->delegate = lettingGo;
    sequence->create(2);
    note(0, 0.0, 0);
    note(0, 1.0, 0);
    note(1, 2.0, 0);
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(lettingGo->positions, (std::vector<double>{0.0, 1.0, 2.0}));
    EXPECT_EQ(sequence, nullptr);
}

TEST_F(MIDISequenceReadingTest, ADiagnosisFramesTheRead)
{
    sequence->setTrackLength(sequence->getTrack(0), 4.0);
    sequence->musicSequenceToSequenceNode();
    const std::string rule = "--------------------------------- MIDI Sequence ";
    EXPECT_EQ(sequence->diagnoses,
              (Lines{"\nDiagnose:", rule + "------------------------------------START",
                     "Diagnose: Spur Länge: 0.0", "Diagnose: Loop Dauer: 0.0, Loop Anzahl: 0",
                     "Diagnose: Zeitauflösung der Spur: 480", "Diagnose: Die Spur enthält keine Daten.",
                     "Diagnose: Es wurden 1 Spuren in der MIDI Datei gefunden.", "Diagnose: Spur Länge: 4.0",
                     "Diagnose: Loop Dauer: 0.0, Loop Anzahl: 0", "Diagnose: Zeitversatz: 0.0",
                     "Diagnose: Stumm Schaltung: false", "Diagnose: Solo Schaltung: false",
                     "Diagnose: Automations Spur: false", "Diagnose: Die Spur enthält keine Daten.",
                     "\nDiagnose:", rule + "-------------------------------------STOP\n"}));
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceReadingTest, AReadWithoutASequenceIsReported)
{
    note(0, 1.0, 0);
    sequence->musicSequenceToSequenceNode();
    console.take();
    sequence->musicSequence = nullptr;
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: Die Sequenz ist undefiniert."});
    EXPECT_EQ(nodes(0).size(), 1U);
}

TEST_F(MIDISequenceReadingDeathTest, AReadWithoutATreeStops)
{
    sequence->sequenceNode = nullptr;
    EXPECT_STOP(sequence->musicSequenceToSequenceNode(), nilMessage);
}

TEST_F(MIDISequenceReadingDeathTest, AnEventWhoseTrackTheTreeDoesNotHaveStops)
{
    note(0, 0.0, 0);
    EXPECT_STOP(sequence->iterateEvents(sequence->getTrack(0), -1), conversionMessage);
    sequence->sequenceNode->tracks.clear();
    EXPECT_STOP(sequence->iterateEvents(sequence->getTrack(0), 0), indexMessage);
    sequence->sequenceNode->tempoTrack = nullptr;
    MusicTrackNewExtendedTempoEvent(tempoTrack(), 0.0, 90.0);
    EXPECT_STOP(sequence->iterateEvents(tempoTrack(), -1), nilMessage);
}

TEST_F(MIDISequenceReadingTest, AFailedTempoTrackIsReportedAndTheTracksAreRead)
{
    note(0, 0.0, 0);
    fail(Operation::MusicSequenceGetTempoTrack);
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(console.take(),
              join({reported("MIDISequence::Fehler: -7. \nDie Tempo Spur konnte nicht ermittelt werden."),
                    endOfTrack()}));
    EXPECT_EQ(nodes(0).size(), 1U);
}

TEST_F(MIDISequenceReadingTest, AFailedTrackCountIsReportedAndCountsAsNone)
{
    note(0, 0.0, 0);
    fail(Operation::MusicSequenceGetTrackCount);
    sequence->musicSequenceToSequenceNode();
    EXPECT_EQ(console.take(),
              reported("MIDISequence::Fehler: -7. \nDie Anzahl der Spuren konnte nicht ermittelt werden."));
    EXPECT_EQ(nodes(0), Lines{});
}

TEST_F(MIDISequenceReadingTest, ATrackThatTheServiceDoesNotGiveIsUndefined)
{
    fail(Operation::MusicSequenceGetIndTrack);
    sequence->musicSequenceToSequenceNode();
    const Lines lines = console.take();
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[0], "MIDISequence::Fehler: -10854. \nDie Länge der Spur konnte nicht ermittelt werden.");
    EXPECT_EQ(lines[6], "Fehler: Die Spur ist undefiniert.");
}

TEST_F(MIDISequenceReadingTest, AWalkOverNoTrackStillTakesAnAssignment)
{
    sequence->iterateEvents(nullptr, 0);
    EXPECT_EQ(console.take(), Lines{"Fehler: Die Spur ist undefiniert."});
    note(0, 0.0, 6);
    sequence->iterateEvents(sequence->getTrack(0), 0);
    EXPECT_EQ(sequence->getChannelAssignment(0), 0);
    EXPECT_EQ(sequence->getChannelAssignment(1), 6);
}

TEST_F(MIDISequenceReadingTest, AWalkWithoutAnIteratorEndsWithTwoLines)
{
    note(0, 0.0, 0);
    fail(Operation::NewMusicEventIterator);
    sequence->iterateEvents(sequence->getTrack(0), 0);
    EXPECT_EQ(console.take(),
              (Lines{"MIDISequence::Fehler: -7. \nEs konnte kein Iterator erzeugt werden.",
                     "MIDISequence::Fehler: -10854. \nEs konnte nicht festgestellt werden, ob sich Daten in "
                     "der Spur befinden."}));
    EXPECT_EQ(nodes(0), Lines{});
}

TEST_F(MIDISequenceReadingTest, AFailedQuestionForAnEventEndsTheWalk)
{
    note(0, 0.0, 0);
    fail(Operation::MusicEventIteratorHasCurrentEvent);
    sequence->iterateEvents(sequence->getTrack(0), 0);
    EXPECT_EQ(console.take(),
              Lines{"MIDISequence::Fehler: -7. \nEs konnte nicht festgestellt werden, ob sich "
                    "Daten in der Spur befinden."});
    EXPECT_EQ(nodes(0), Lines{});
}

TEST_F(MIDISequenceReadingTest, AnEventThatCannotBeReadIsSkipped)
{
    note(0, 0.0, 0);
    note(0, 1.0, 0);
    fail(Operation::MusicEventIteratorGetEventInfo);
    sequence->iterateEvents(sequence->getTrack(0), 0);
    EXPECT_EQ(console.take(),
              join({{"MIDISequence::Fehler: -7. \nZum Event konnten keine Informationen abgerufen werden."},
                    endOfTrack()}));
    EXPECT_EQ(nodes(0), Lines{"MidiNoteEvent 1.0 0: 60 100 0 4.0"});
}

TEST_F(MIDISequenceReadingTest, AFailedQuestionOrStepEndsTheWalkBehindItsLines)
{
    note(0, 0.0, 0);
    note(0, 1.0, 0);
    fail(Operation::MusicEventIteratorHasNextEvent);
    sequence->iterateEvents(sequence->getTrack(0), 0);
    EXPECT_EQ(console.take(),
              reported("MIDISequence::Warnung: -7. \nDas Folge Event konnte nicht ermittelt werden."));
    fail(Operation::MusicEventIteratorNextEvent);
    sequence->iterateEvents(sequence->getTrack(0), 0);
    EXPECT_EQ(console.take(), reported("MIDISequence::Warnung: -7. \nDas Folge Event konnte nicht abgerufen "
                                       "werden (Ende der Spur?)."));
    EXPECT_EQ(nodes(0).size(), 2U);
}

} // namespace
} // namespace volvelle::test
