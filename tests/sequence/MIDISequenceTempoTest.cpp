#include "tests/sequence/SequenceFixture.h"

// Setting and removing tempos.
namespace volvelle::test {
namespace {

const std::string removing = "MIDISequence::Warnung: Alle Tempo Events werden aus der Spur gelöscht.";
const std::string noData = "MIDISequence::Warnung: Die Spur enthält keine Daten.";
const std::string noTempoTrack = "MIDISequence::Fehler: -7. \nDie Tempo Spur konnte nicht ermittelt werden.";

std::string deleting(double bpm, double position)
{
    return concat("MIDISequence::Info: Lösche Extended Tempo Message: ", bpm, ", Position = ", position);
}

class MIDISequenceTempoTest : public SequenceTest {
protected:
    void addTempos(const std::vector<double>& positions)
    {
        for (const double position : positions) {
            MusicTrackNewExtendedTempoEvent(tempoTrack(), position, 100.0 + position);
        }
    }

    Lines stored() const { return contents(tempoTrack()); }
};

using MIDISequenceTempoDeathTest = MIDISequenceTempoTest;

TEST_F(MIDISequenceTempoTest, ANewTempoReplacesAllOthers)
{
    addTempos({0.0, 4.0, 8.0});
    sequence->setTempo(90.0);
    EXPECT_EQ(stored(), Lines{"0.0 tempo 90.0"});
    EXPECT_EQ(sequence->getTempo(), 90.0);
    EXPECT_EQ(console.take(), (Lines{removing, deleting(100.0, 0.0), deleting(104.0, 4.0),
                                     deleting(108.0, 8.0), "Das Tempo der Sequenz wurde auf 90.0 gesetzt."}));
}

TEST_F(MIDISequenceTempoTest, ATempoAtAPositionIsAdded)
{
    sequence->setTempo(90.0);
    console.take();
    sequence->setTempo(140.0, 8.0);
    EXPECT_EQ(sequence->getTempo(), 90.0);
    EXPECT_EQ(stored(), (Lines{"0.0 tempo 90.0", "8.0 tempo 140.0"}));
    EXPECT_EQ(console.take(),
              Lines{"MIDISequence::Info: Ein neues Tempo '140.0' wurde in die Tempo Spur eingefügt."});
}

TEST_F(MIDISequenceTempoTest, WithoutASequenceNoTempoIsSet)
{
    sequence->musicSequence = nullptr;
    sequence->setTempo(90.0);
    EXPECT_EQ(console.take(),
              Lines{"MIDISequence::Fehler: Die Sequenz ist undefiniert. Tempo kann nicht gesetzt werden."});
    EXPECT_EQ(sequence->getTempo(), 120.0);
    sequence->setTempo(90.0, 1.0);
    sequence->removeTempoEvents(nullptr);
    EXPECT_EQ(console.take(), (Lines{"MIDISequence::Fehler: Die Sequenz ist undefiniert.",
                                     "MIDISequence::Fehler: Die Sequenz ist undefiniert."}));
}

TEST_F(MIDISequenceTempoTest, AFailedTempoTrackIsReported)
{
    fail(Operation::MusicSequenceGetTempoTrack, someStatus, 0, 3);
    EXPECT_EQ(sequence->getTempoTrack(), nullptr);
    EXPECT_EQ(console.take(), reported(noTempoTrack));
    sequence->setTempo(90.0);
    EXPECT_EQ(console.take(), reported(noTempoTrack));
    EXPECT_EQ(sequence->getTempo(), 90.0);
    sequence->setTempo(70.0, 1.0);
    EXPECT_EQ(console.take(), reported(noTempoTrack));
    EXPECT_EQ(stored(), Lines{});
}

TEST_F(MIDISequenceTempoTest, TheTempoTrackIsTheServicesOwn)
{
    EXPECT_EQ(sequence->getTempoTrack(), tempoTrack());
    EXPECT_NE(sequence->getTempoTrack(), nullptr);
}

TEST_F(MIDISequenceTempoDeathTest, TheTempoTrackOfNoSequenceStops)
{
    sequence->musicSequence = nullptr;
    EXPECT_STOP(sequence->getTempoTrack(), nilMessage);
}

TEST_F(MIDISequenceTempoTest, AFailedTempoEventIsReported)
{
    fail(Operation::MusicTrackNewExtendedTempoEvent, someStatus, 0, 2);
    sequence->setTempo(90.0);
    EXPECT_EQ(console.take(),
              join({{removing, noData},
                    reported("MIDISequence::Fehler: -7. \nDas Tempo für die Sequenz konnte nicht festgelegt "
                             "weren.")}));
    EXPECT_EQ(sequence->getTempo(), 90.0);
    sequence->setTempo(90.0, 1.0);
    EXPECT_EQ(
        console.take(),
        reported("MIDISequence::Fehler: -7. \nDas Tempo konnte nicht zur Tempo Spur hinzugefügt werden."));
    EXPECT_EQ(stored(), Lines{});
}

TEST_F(MIDISequenceTempoTest, RemovingFromAnEmptyTrackWarns)
{
    sequence->removeTempoEvents(tempoTrack());
    EXPECT_EQ(console.take(), (Lines{removing, noData}));
}

TEST_F(MIDISequenceTempoTest, RemovingLeavesEventsOfOtherTypes)
{
    addTempos({0.0, 2.0});
    sequence->createMetaMarkerEvent(0.0, "A");
    MusicTrackMerge(sequence->getTrack(0), 0.0, 1.0, tempoTrack(), 1.0);
    sequence->removeTempoEvents(tempoTrack());
    EXPECT_EQ(stored(), Lines{"1.0 meta 6 [65]"});
    EXPECT_EQ(console.take(),
              (Lines{removing, deleting(100.0, 0.0),
                     "MIDISequence::Warnung: Anderes MIDI Event auf der Tempospur vom Type 5 gefunden.",
                     deleting(102.0, 2.0)}));
}

TEST_F(MIDISequenceTempoTest, RemovingStepsPastTheLastEventOfAnotherType)
{
    sequence->createNoteEvent(0.0, 0, 60, 100, 0, 1.0F);
    sequence->removeTempoEvents(sequence->getTrack(0));
    EXPECT_EQ(
        console.take(),
        join({{removing, "MIDISequence::Warnung: Anderes MIDI Event auf der Tempospur vom Type 6 gefunden."},
              endOfTrack()}));
}

TEST_F(MIDISequenceTempoTest, AFailedDeletionIsReportedAndTheNextTempoIsDeleted)
{
    addTempos({0.0, 2.0});
    fail(Operation::MusicEventIteratorDeleteEvent);
    sequence->removeTempoEvents(tempoTrack());
    EXPECT_EQ(console.take(),
              join({{removing, deleting(100.0, 0.0)},
                    reported("MIDISequence::Warnung: -7. \nEin Tempo Event konnte nicht gelöscht werden."),
                    {deleting(102.0, 2.0)}}));
    EXPECT_EQ(stored(), Lines{"0.0 tempo 100.0"});
}

TEST_F(MIDISequenceTempoTest, AFailedReadingOfATempoSkipsIt)
{
    addTempos({0.0, 2.0});
    fail(Operation::MusicEventIteratorGetEventInfo);
    sequence->removeTempoEvents(tempoTrack());
    EXPECT_EQ(console.take(),
              (Lines{removing,
                     "MIDISequence::Warnung: -7. \nZum Event konnten keine Timestamp Informationen abgerufen "
                     "werden.",
                     deleting(102.0, 2.0)}));
    EXPECT_EQ(stored(), Lines{"0.0 tempo 100.0"});
}

TEST_F(MIDISequenceTempoTest, AWalkThatCannotBeginRemovesNothing)
{
    addTempos({0.0});
    fail(Operation::MusicEventIteratorHasCurrentEvent);
    sequence->removeTempoEvents(tempoTrack());
    EXPECT_EQ(console.take(), (Lines{removing, "MIDISequence::Fehler: -7. \nEs konnte nicht festgestellt "
                                               "werden, ob sich Daten in der Spur befinden."}));
    fail(Operation::NewMusicEventIterator);
    sequence->removeTempoEvents(tempoTrack());
    EXPECT_EQ(console.take(),
              (Lines{removing, "MIDISequence::Fehler: -7. \nEs konnte kein Iterator erzeugt werden.",
                     "MIDISequence::Fehler: -10854. \nEs konnte nicht festgestellt werden, ob sich Daten in "
                     "der Spur befinden."}));
    EXPECT_EQ(stored().size(), 1U);
}

TEST_F(MIDISequenceTempoTest, AFailedQuestionForTheNextEndsTheRemoval)
{
    sequence->createNoteEvent(0.0, 0, 60, 100, 0, 1.0F);
    fail(Operation::MusicEventIteratorHasNextEvent);
    sequence->removeTempoEvents(sequence->getTrack(0));
    EXPECT_EQ(
        console.take(),
        join({{removing, "MIDISequence::Warnung: Anderes MIDI Event auf der Tempospur vom Type 6 gefunden."},
              reported("MIDISequence::Warnung: -7. \nDas Folge Event konnte nicht ermittelt werden.")}));
}

} // namespace
} // namespace volvelle::test
