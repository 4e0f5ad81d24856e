#include "tests/sequence/SequenceFixture.h"

// What a sequence answers about itself and its tracks, and how it reports a status.
namespace volvelle::test {
namespace {

class MIDISequenceAccessTest : public SequenceTest {};

using MIDISequenceAccessDeathTest = MIDISequenceAccessTest;

const std::string undefinedSequence = "MIDISequence::Fehler: Die Sequenz ist undefiniert.";
const std::string noIterator = "MIDISequence::Fehler: -7. \nEs konnte kein Iterator erzeugt werden.";
const std::string noAnswer =
    "MIDISequence::Fehler: -7. \nEs konnte nicht festgestellt werden, ob sich Daten in der Spur befinden.";

TEST_F(MIDISequenceAccessTest, AFailedTrackIndexIsZero)
{
    sequence->create(2);
    const MusicTrack second = sequence->getTrack(1);
    EXPECT_EQ(sequence->getTrackIndex(second), 1U);
    fail(Operation::MusicSequenceGetTrackIndex);
    EXPECT_EQ(sequence->getTrackIndex(second), 0U);
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: Der Spur Index konnte nicht ermittelt werden."});
}

TEST_F(MIDISequenceAccessDeathTest, AMissingSequenceOrTreeStopsItsGetter)
{
    sequence->musicSequence = nullptr;
    sequence->sequenceNode = nullptr;
    EXPECT_STOP(sequence->getMusicSequence(), nilMessage);
    EXPECT_STOP(sequence->getSequenceNode(), nilMessage);
}

TEST_F(MIDISequenceAccessTest, TheGettersGiveTheFields)
{
    sequence->sequenceLength = 12.5;
    EXPECT_EQ(sequence->getMusicSequence(), sequence->musicSequence);
    EXPECT_EQ(sequence->getSequenceNode(), sequence->sequenceNode);
    EXPECT_EQ(sequence->getLength(), 12.5);
}

TEST_F(MIDISequenceAccessTest, WithoutASequenceThereAreMinusOneTracks)
{
    sequence->musicSequence = nullptr;
    EXPECT_EQ(sequence->getNumberOfTracks(), -1);
    EXPECT_EQ(console.take(), Lines{undefinedSequence});
}

TEST_F(MIDISequenceAccessTest, AFailedTrackCountIsZero)
{
    fail(Operation::MusicSequenceGetTrackCount);
    EXPECT_EQ(sequence->getNumberOfTracks(), 0);
    EXPECT_EQ(console.take(),
              reported("MIDISequence::Fehler: -7. \nDie Anzahl der Spuren konnte nicht ermittelt werden."));
}

TEST_F(MIDISequenceAccessDeathTest, GetTrackWithoutASequenceStops)
{
    sequence->musicSequence = nullptr;
    EXPECT_STOP(sequence->getTrack(0), nilMessage, {undefinedSequence});
}

TEST_F(MIDISequenceAccessDeathTest, GetTrackOfAnIndexOutOfRangeStops)
{
    EXPECT_STOP(sequence->getTrack(1), nilMessage,
                reported("MIDISequence::Fehler: -10859. \nFür den Index konnte keine Spur gefunden werden.",
                         -10859, "Falscher Spur Index."));
    EXPECT_STOP(sequence->getTrack(-1), conversionMessage);
}

TEST_F(MIDISequenceAccessDeathTest, GetTrackStopsWhereTheServiceGivesNone)
{
    fail(Operation::MusicSequenceGetIndTrack, noErr);
    EXPECT_STOP(sequence->getTrack(0), nilMessage);
}

TEST_F(MIDISequenceAccessTest, PatchesAndAssignmentsBehindTheEndAreZero)
{
    EXPECT_EQ(sequence->getPatchForChannel(16), 0);
    EXPECT_EQ(sequence->getPatchForChannel(255), 0);
    EXPECT_EQ(sequence->getChannelAssignment(0), 0);
    EXPECT_EQ(sequence->getChannelAssignment(255), 0);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceAccessTest, ATrackIsEmptyUntilItHoldsAnEvent)
{
    EXPECT_TRUE(sequence->isEmpty(sequence->getTrack(0)));
    EXPECT_EQ(sequence->diagnoses, Lines{"Diagnose: Die Spur enthält keine Daten."});
    sequence->createNoteEvent(0.0, 0, 60, 100, 0, 1.0F);
    EXPECT_FALSE(sequence->isEmpty(sequence->getTrack(0)));
    EXPECT_EQ(sequence->diagnoses.size(), 1U);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceAccessTest, NoTrackIsEmpty)
{
    EXPECT_TRUE(sequence->isEmpty(nullptr));
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: Die Spur ist undefiniert."});
}

TEST_F(MIDISequenceAccessTest, ATrackThatCannotBeAskedIsEmpty)
{
    sequence->createNoteEvent(0.0, 0, 60, 100, 0, 1.0F);
    fail(Operation::MusicEventIteratorHasCurrentEvent);
    EXPECT_TRUE(sequence->isEmpty(sequence->getTrack(0)));
    EXPECT_EQ(console.take(), Lines{noAnswer});
    EXPECT_EQ(sequence->diagnoses, Lines{"Diagnose: Die Spur enthält keine Daten."});
}

TEST_F(MIDISequenceAccessDeathTest, IsEmptyWithoutAnIteratorStops)
{
    fail(Operation::NewMusicEventIterator);
    EXPECT_STOP(sequence->isEmpty(sequence->getTrack(0)), nilMessage, {noIterator});
}

TEST_F(MIDISequenceAccessTest, DiagnosticsPrintTheSequence)
{
    sequence->createNoteEvent(1.0, 0, 60, 100, 0, 2.0F);
    sequence->diagnostics();
    const Lines lines = console.take();
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[0], "MusicSequence: 1 tracks");
    sequence->musicSequence = nullptr;
    sequence->diagnostics();
    EXPECT_EQ(console.take(), Lines{undefinedSequence});
}

TEST_F(MIDISequenceAccessTest, ALineOfDiagnosisIsDropped)
{
    MIDISequence plain;
    plain.diagnose("Diagnose: x");
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceAccessTest, EveryStatusHasItsLines)
{
    const std::vector<std::pair<OSStatus, std::string_view>> texts{
        {-10846, "Ungültiger Sequenztyp."},
        {-10859, "Falscher Spur Index."},
        {-10858, "Spur wurde nicht gefunden."},
        {-10857, "Ende der Spur."},
        {-10856, "Anfang der Spur."},
        {-10855, "Ungültiges Spurenziel."},
        {-10854, "Keine Sequenz."},
        {-10853, "Ungültiger Event Typ."},
        {-10852, "Ungültiger Player Status."},
        {-10863, "Aktion im momentanen Kontext nicht möglich."},
        {-1, "Etwas ist fehlgeschlagen."},
        {0, "Etwas ist fehlgeschlagen."},
    };
    for (const auto& [status, text] : texts) {
        sequence->checkStatus(status);
        EXPECT_EQ(console.take(),
                  (Lines{concat("Fehler: ", status),
                         concat("The operation could not be completed (status ", status, ")."),
                         std::string(text)}));
    }
}

} // namespace
} // namespace volvelle::test
