#include "tests/sequence/SequenceFixture.h"

// The life cycle: construction, create, clear, the music sequence's holders, destruction.
namespace volvelle::test {
namespace {

class MIDISequenceTest : public SequenceTest {};

using MIDISequenceDeathTest = MIDISequenceTest;

TEST_F(MIDISequenceTest, AFreshSequenceHasOneTrackAndThePlainValues)
{
    EXPECT_EQ(MIDISequence::midiResolution, 480);
    EXPECT_EQ(sequence->maxTracks, 16);
    EXPECT_EQ(sequence->loadFlag, 1U);
    EXPECT_TRUE(sequence->delegate.expired());
    EXPECT_EQ(sequence->getNumberOfTracks(), 1);
    EXPECT_EQ(sequence->getSequenceNode()->tracks.size(), 1U);
    EXPECT_EQ(sequence->getTempo(), 120.0);
    EXPECT_EQ(sequence->getLength(), 0.0);
    for (std::uint8_t channel = 0; channel < 16; ++channel) {
        EXPECT_EQ(sequence->getPatchForChannel(channel), 0);
    }
    EXPECT_EQ(sequence->getChannelAssignment(0), 0);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceTest, AChannelAssignmentStartsAtZero)
{
    const MIDISequence::ChannelAssignment assignment;
    EXPECT_EQ(assignment.index, 0);
    EXPECT_EQ(assignment.channel, 0);
}

TEST_F(MIDISequenceTest, CreateReplacesSequenceAndTree)
{
    const MusicSequence oldSequence = sequence->musicSequence;
    const auto oldTree = sequence->sequenceNode;
    sequence->create(3);
    EXPECT_NE(sequence->musicSequence, oldSequence);
    EXPECT_NE(sequence->sequenceNode, oldTree);
    EXPECT_EQ(sequence->getNumberOfTracks(), 3);
    EXPECT_EQ(sequence->sequenceNode->tracks.size(), 3U);
    EXPECT_EQ(oldSequence.use_count(), 1);
    sequence->create();
    EXPECT_EQ(sequence->getNumberOfTracks(), 1);
}

TEST_F(MIDISequenceTest, AFailedNewSequenceLeavesTheOldTreeAndSaysOneLine)
{
    const auto oldTree = sequence->sequenceNode;
    fail(Operation::NewMusicSequence);
    sequence->create(3);
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: -7. \nEs konnte keine Sequenz erzeugt werden."});
    EXPECT_EQ(sequence->musicSequence, nullptr);
    EXPECT_EQ(sequence->sequenceNode, oldTree);
}

TEST_F(MIDISequenceTest, ASequenceThatCannotBeDisposedIsGivenUpAllTheSame)
{
    fail(Operation::DisposeMusicSequence);
    fail(Operation::NewMusicSequence);
    sequence->create(3);
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: -7. \nEs konnte keine Sequenz erzeugt werden."});
    EXPECT_EQ(sequence->musicSequence, nullptr);
}

TEST_F(MIDISequenceTest, AFailedNewTrackLeavesFewerTracksAndTheOldTree)
{
    const auto oldTree = sequence->sequenceNode;
    fail(Operation::MusicSequenceNewTrack, someStatus, 2);
    sequence->create(4);
    EXPECT_EQ(
        console.take(),
        reported("MIDISequence::Fehler: Die Spuren für die Aufnahme konnten nicht erzeugt werden. : -7"));
    EXPECT_EQ(sequence->getNumberOfTracks(), 2);
    EXPECT_EQ(sequence->sequenceNode, oldTree);
}

TEST_F(MIDISequenceDeathTest, ASequenceOfNoTracksStopsInItsTree)
{
    EXPECT_STOP(sequence->create(0), rangeMessage);
}

TEST_F(MIDISequenceTest, CreateTrackAppendsATrack)
{
    const MusicTrack track = sequence->createTrack();
    EXPECT_EQ(sequence->getNumberOfTracks(), 2);
    EXPECT_EQ(sequence->getTrackIndex(track), 1U);
}

TEST_F(MIDISequenceTest, AFailedCreateTrackGivesNone)
{
    fail(Operation::MusicSequenceNewTrack);
    EXPECT_EQ(sequence->createTrack(), nullptr);
    EXPECT_EQ(console.take(), reported("MIDISequence::Fehler: Die Spur konnte nicht erzeugt werden. : -7"));
}

TEST_F(MIDISequenceTest, DeleteTrackMovesTheTracksBehindItDown)
{
    sequence->create(3);
    const MusicTrack last = sequence->getTrack(2);
    sequence->deleteTrack(sequence->getTrack(0));
    EXPECT_EQ(sequence->getNumberOfTracks(), 2);
    EXPECT_EQ(sequence->getTrackIndex(last), 1U);
}

TEST_F(MIDISequenceTest, TheTempoTrackCannotBeDeleted)
{
    sequence->deleteTrack(tempoTrack());
    EXPECT_EQ(console.take(),
              reported("MIDISequence::Fehler: Die Spur konnte nicht gelöscht werden. : -10858", -10858,
                       "Spur wurde nicht gefunden."));
}

TEST_F(MIDISequenceTest, ClearEmptiesAllTracksButTheTempoTrack)
{
    sequence->create(2);
    sequence->createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    sequence->createNoteEvent(3.0, 1, 62, 100, 0, 1.0F);
    sequence->setTempo(90.0, 0.0);
    console.take();
    sequence->clear();
    EXPECT_EQ(contents(sequence->getTrack(0)), Lines{});
    EXPECT_EQ(contents(sequence->getTrack(1)), Lines{});
    EXPECT_EQ(tempoContents(sequence->musicSequence), Lines{"0.0 tempo 90.0"});
    EXPECT_EQ(sequence->getLength(), 0.0);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceTest, ClearLeavesATracksLengthAlone)
{
    sequence->createNoteEvent(4.0, 0, 60, 100, 0, 2.0F);
    sequence->clear(sequence->getTrack(0));
    EXPECT_EQ(contents(sequence->getTrack(0)), Lines{});
    EXPECT_EQ(sequence->getTrackLength(sequence->getTrack(0)), 6.0);
    EXPECT_EQ(sequence->getLength(), 4.0);
}

TEST_F(MIDISequenceTest, ClearLeavesTheEventsOfATrackOfNoLength)
{
    sequence->createControllerEvent(0.0, 0, 7, 99);
    sequence->clear();
    EXPECT_EQ(contents(sequence->getTrack(0)), Lines{"0.0 message 176 7 99"});
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceTest, ClearOfATrackOfNoLengthSaysNothing)
{
    sequence->clear(sequence->getTrack(0));
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceTest, ClearOfALongTrackWithoutEventsWarns)
{
    sequence->setTrackLength(sequence->getTrack(0), 4.0);
    sequence->clear(sequence->getTrack(0));
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Warnung: Die Spur ist leer."});
}

TEST_F(MIDISequenceTest, AFailedClearOfATrackWarnsAndKeepsItsEvents)
{
    sequence->createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    fail(Operation::MusicTrackClear);
    sequence->clear(sequence->getTrack(0));
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Warnung: Die Spur konnte nicht geleert werden oder hatte "
                                    "keine Events."});
    EXPECT_EQ(contents(sequence->getTrack(0)), Lines{"1.0 note 0 60 100 0 1.0"});
}

TEST_F(MIDISequenceDeathTest, ClearWithoutASequenceStops)
{
    sequence->musicSequence = nullptr;
    EXPECT_STOP(sequence->clear(), rangeMessage, {"MIDISequence::Fehler: Die Sequenz ist undefiniert."});
}

TEST_F(MIDISequenceDeathTest, ClearOfNoTrackStops)
{
    EXPECT_STOP(sequence->clear(MusicTrack()), nilMessage);
}

TEST_F(MIDISequenceTest, SetMusicSequenceDoesNotDisposeTheOldOne)
{
    const MusicSequence oldSequence = sequence->musicSequence;
    MusicSequence other;
    NewMusicSequence(other);
    sequence->setMusicSequence(other);
    EXPECT_EQ(sequence->getMusicSequence(), other);
    std::uint32_t count = 0;
    EXPECT_EQ(MusicSequenceGetTrackCount(oldSequence, count), noErr);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDISequenceTest, SetMusicSequenceTakesItsOwnSequenceToo)
{
    const MusicSequence own = sequence->musicSequence;
    sequence->setMusicSequence(sequence->musicSequence);
    EXPECT_EQ(sequence->musicSequence, own);
}

TEST_F(MIDISequenceTest, SetMusicSequenceToNoneWarns)
{
    sequence->setMusicSequence(nullptr);
    EXPECT_EQ(sequence->musicSequence, nullptr);
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Warnung: Die Sequenz wurde auf NULL gesetzt."});
}

TEST_F(MIDISequenceTest, DestructionLeavesASharedSequenceAsItIs)
{
    sequence->createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    const MusicSequence shared = sequence->musicSequence;
    sequence.reset();
    MusicTrack track;
    MusicSequenceGetIndTrack(shared, 0, track);
    EXPECT_EQ(contents(track), Lines{"1.0 note 0 60 100 0 1.0"});
}

TEST_F(MIDISequenceTest, DestructionByTheLastHolderClearsTheSequence)
{
    sequence->createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    fail(Operation::MusicTrackClear);
    sequence.reset();
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Warnung: Die Spur konnte nicht geleert werden oder hatte "
                                    "keine Events."});
}

TEST_F(MIDISequenceTest, DestructionWithoutASequenceSaysNothing)
{
    sequence->musicSequence = nullptr;
    sequence.reset();
    EXPECT_EQ(console.take(), Lines{});
}

} // namespace
} // namespace volvelle::test
