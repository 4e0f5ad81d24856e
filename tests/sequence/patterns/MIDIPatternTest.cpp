#include "tests/sequence/patterns/PatternFixture.h"

#include "sequence/patterns/MIDIPattern.h"

// What a pattern is, and its ways to and from its one track. The edits have a file of their own.
namespace volvelle::test {
namespace {

const std::string noSequence = "Fehler: Die Ziel Sequenz ist undefiniert.";
const std::string noTrack = "Fehler: Die Ziel Spur ist undefiniert.";

class MIDIPatternTest : public PatternFixture {
protected:
    const std::shared_ptr<MIDIPattern> pattern = std::make_shared<MIDIPattern>();
};

using MIDIPatternDeathTest = MIDIPatternTest;

TEST_F(MIDIPatternTest, ANewPatternHasOneTrackAndATreeOfOne)
{
    EXPECT_EQ(MIDIPattern::trackCount, 1);
    EXPECT_EQ(pattern->maxTracks, 1);
    EXPECT_EQ(pattern->loadFlag, 0U);
    EXPECT_EQ(pattern->getNumberOfTracks(), 1);
    EXPECT_EQ(pattern->getTrackIndex(pattern->musicTrack), 0U);
    EXPECT_EQ(pattern->sequenceNode->tracks.size(), 1U);
    EXPECT_EQ(pattern->getLength(), 0.0);
    EXPECT_EQ(said(), Lines{});
}

TEST_F(MIDIPatternTest, EveryIndexIsTheOneTrack)
{
    for (const int index : {-1, 0, 1, 99}) {
        EXPECT_EQ(pattern->getTrack(index), pattern->musicTrack);
    }
}

TEST_F(MIDIPatternTest, CreateMakesANewSequenceOfOneTrackWhateverTheNumber)
{
    const MusicSequence before = pattern->musicSequence;
    const MusicTrack track = pattern->musicTrack;
    const auto tree = pattern->sequenceNode;
    pattern->create(5);
    EXPECT_NE(pattern->musicSequence, before);
    EXPECT_NE(pattern->musicTrack, track);
    EXPECT_EQ(pattern->getNumberOfTracks(), 1);
    EXPECT_EQ(pattern->sequenceNode, tree);
    EXPECT_EQ(before.use_count(), 1);
}

TEST_F(MIDIPatternTest, ASequenceThatCannotBeMadeIsReported)
{
    fail(Operation::NewMusicSequence);
    pattern->create();
    EXPECT_EQ(said(), Lines{"{line} Fehler: -7. \nEs konnte keine Sequenz erzeugt werden."});
    EXPECT_EQ(pattern->musicSequence, nullptr);
    EXPECT_EQ(pattern->musicTrack, nullptr);
}

TEST_F(MIDIPatternTest, ASequenceThatCannotBeGivenUpIsGoneAllTheSame)
{
    fail(Operation::DisposeMusicSequence);
    fail(Operation::NewMusicSequence);
    pattern->create();
    EXPECT_EQ(pattern->musicSequence, nullptr);
}

TEST_F(MIDIPatternTest, ATrackThatCannotBeMadeIsReported)
{
    fail(Operation::MusicSequenceNewTrack);
    pattern->create();
    EXPECT_EQ(said(), Lines{"Fehler: Die interne Spur konnte nicht erzeugt werden. : -7"});
    EXPECT_NE(pattern->musicSequence, nullptr);
    EXPECT_EQ(pattern->musicTrack, nullptr);
}

TEST_F(MIDIPatternTest, ANewPatternReportsTheFailuresOfItsConstruction)
{
    fail(Operation::NewMusicSequence, someStatus, 1);
    const MIDIPattern first;
    EXPECT_EQ(said(), Lines{"{line} Fehler: -7. \nEs konnte keine Sequenz erzeugt werden."});
    fail(Operation::MusicSequenceNewTrack, someStatus, 1);
    const MIDIPattern second;
    EXPECT_EQ(said(), Lines{"Fehler: Die interne Spur konnte nicht erzeugt werden. : -7"});
}

TEST_F(MIDIPatternTest, TheLengthIsThatOfTheTrackAndNotOfTheSong)
{
    pattern->createNoteEvent(3.0, 0, 60, 100, 0, 8.0F);
    EXPECT_EQ(pattern->getLength(), 11.0);
    pattern->setTrackLength(pattern->musicTrack, 4.0);
    EXPECT_EQ(pattern->getLength(), 4.0);
    EXPECT_EQ(pattern->sequenceLength, 3.0);
}

TEST_F(MIDIPatternTest, ALengthThatCannotBeReadIsReportedAndIsNone)
{
    pattern->setTrackLength(pattern->musicTrack, 4.0);
    fail(Operation::MusicTrackGetProperty);
    EXPECT_EQ(pattern->getLength(), 0.0);
    EXPECT_EQ(said(), Lines{"{line} Fehler: -7. \nDie Länge der Spur konnte nicht ermittelt werden."});
}

TEST_F(MIDIPatternDeathTest, AnAbsentTrackStopsTheLengthAndTheLookUp)
{
    pattern->musicTrack = nullptr;
    EXPECT_STOP(pattern->getLength(), nilMessage);
    EXPECT_STOP(pattern->getTrack(0), nilMessage);
}

TEST_F(MIDIPatternTest, EventsOfEveryChannelGoToTheOneTrack)
{
    pattern->createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    pattern->createControllerMessage(std::make_shared<MidiControllerEvent>(2.0, 9, 7, 99));
    EXPECT_EQ(contents(pattern->musicTrack), (Lines{"1.0 note 0 60 100 0 1.0", "2.0 message 185 7 99"}));
}

TEST_F(MIDIPatternTest, TheTreesFirstTrackReplacesTheMusic)
{
    pattern->createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    pattern->setTempo(90.0);
    pattern->sequenceNode->tempoTrack->addEvent(std::make_shared<TempoEvent>());
    pattern->sequenceNode->addTrack();
    pattern->sequenceNode->tracks[1]->addEvent(std::make_shared<MidiNoteEvent>(5.0, 1.0F, 0, 61, 100, 0));
    pattern->sequenceNode->tracks[0]->events[0]->position = 2.0;
    const auto inner = std::make_shared<PatternNode>();
    inner->addEvent(std::make_shared<MidiNoteEvent>(4.0, 1.0F, 12, 62, 100, 0));
    pattern->sequenceNode->tracks[0]->addPattern(inner);
    pattern->sequenceNodeToMusicSequence();
    EXPECT_EQ(contents(pattern->musicTrack), (Lines{"2.0 note 0 60 100 0 1.0", "4.0 note 12 62 100 0 1.0"}));
    EXPECT_EQ(tempoContents(pattern->musicSequence), Lines{"0.0 tempo 90.0"});
}

TEST_F(MIDIPatternTest, WithoutATreeTheTrackIsOnlyCleared)
{
    pattern->createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    pattern->sequenceNode = nullptr;
    pattern->sequenceNodeToMusicSequence();
    EXPECT_EQ(contents(pattern->musicTrack), Lines{});
    EXPECT_EQ(said(), Lines{});
}

TEST_F(MIDIPatternDeathTest, WithoutASequenceTheTreeIsNotWritten)
{
    pattern->musicSequence = nullptr;
    EXPECT_STOP(pattern->sequenceNodeToMusicSequence(), rangeMessage,
                {"MIDISequence::Fehler: Die Sequenz ist undefiniert."});
}

TEST_F(MIDIPatternTest, ATrackNodeReplacesWhatStandsOnATrack)
{
    pattern->createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    const auto node = std::make_shared<TrackNode>();
    node->addEvent(std::make_shared<MidiNoteEvent>(3.0, 1.0F, 4, 61, 100, 0));
    pattern->trackNodeToMusicTrack(node, pattern->musicTrack);
    EXPECT_EQ(contents(pattern->musicTrack), Lines{"3.0 note 4 61 100 0 1.0"});
    node->channel = 4;
    pattern->trackNodeToMusicSequence(node);
    EXPECT_EQ(contents(pattern->musicTrack), Lines{"3.0 note 4 61 100 0 1.0"});
}

TEST_F(MIDIPatternTest, APatternNodeReplacesWhatStandsOnATrack)
{
    pattern->createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    const auto node = std::make_shared<PatternNode>();
    node->addEvent(std::make_shared<MidiNoteEvent>(3.0, 1.0F, 4, 61, 100, 0));
    pattern->patternNodeToMusicTrack(node, pattern->musicTrack);
    EXPECT_EQ(contents(pattern->musicTrack), Lines{"3.0 note 4 61 100 0 1.0"});
    node->events[0]->position = 2.0;
    pattern->patternNodeToMusicSequence(node);
    EXPECT_EQ(contents(pattern->musicTrack), Lines{"2.0 note 4 61 100 0 1.0"});
}

TEST_F(MIDIPatternTest, AConversionNeedsASequenceATrackAndANode)
{
    const MusicTrack track = pattern->musicTrack;
    const auto node = std::make_shared<TrackNode>();
    pattern->trackNodeToMusicTrack(node, nullptr);
    pattern->patternNodeToMusicTrack(node, nullptr);
    EXPECT_EQ(said(), (Lines{noTrack, noTrack}));
    pattern->trackNodeToMusicTrack(nullptr, track);
    EXPECT_EQ(said(), Lines{"MIDISequence::Fehler: Die Quell Spur ist undefiniert."});
    pattern->patternNodeToMusicTrack(nullptr, track);
    EXPECT_EQ(said(), Lines{"MIDISequence::Fehler: Das Quell Pattern ist undefiniert."});
    pattern->musicSequence = nullptr;
    pattern->trackNodeToMusicTrack(nullptr, nullptr);
    pattern->patternNodeToMusicTrack(nullptr, nullptr);
    EXPECT_EQ(said(), (Lines{noSequence, noSequence}));
}

TEST_F(MIDIPatternTest, ASavedPatternComesBack)
{
    const TemporaryFolder folder;
    pattern->createNoteEvent(1.0, 3, 60, 100, 64, 1.0F);
    const Lines before = contents(pattern->musicTrack);
    pattern->saveToFile(folder.path / "pattern.mid");
    MIDIPattern other;
    const MusicTrack old = other.musicTrack;
    other.loadFromFile(folder.path / "pattern.mid");
    EXPECT_NE(other.musicTrack, old);
    EXPECT_EQ(contents(other.musicTrack), before);
    other.musicSequenceToSequenceNode();
    EXPECT_EQ(describe(*other.sequenceNode->tracks[0]), Lines{"MidiNoteEvent 1.0 3: 60 100 64 1.0"});
}

TEST_F(MIDIPatternTest, OfAFileWithSeveralTracksTheFirstIsThePattern)
{
    const TemporaryFolder folder;
    MIDISequence song;
    song.create(3);
    song.createNoteEvent(1.0, 0, 60, 100, 64, 1.0F);
    song.createNoteEvent(1.0, 1, 61, 100, 64, 1.0F);
    song.saveToFile(folder.path / "song.mid");
    pattern->loadFromFile(folder.path / "song.mid");
    EXPECT_EQ(pattern->getNumberOfTracks(), 3);
    EXPECT_EQ(pattern->getTrackIndex(pattern->musicTrack), 0U);
    EXPECT_EQ(contents(pattern->musicTrack), Lines{"1.0 note 0 60 100 64 1.0"});
}

TEST_F(MIDIPatternTest, AFileThatCannotBeReadLeavesOneEmptyTrack)
{
    const auto tree = pattern->sequenceNode;
    pattern->createNoteEvent(1.0, 0, 60, 100, 0, 1.0F);
    fail(Operation::MusicSequenceFileLoad);
    pattern->loadFromFile("none.mid");
    EXPECT_EQ(said(), reported("MIDISequence::Fehler: -7. \nDie MIDI Datei konnte nicht geladen werden."));
    EXPECT_EQ(pattern->getNumberOfTracks(), 1);
    EXPECT_EQ(pattern->getTrackIndex(pattern->musicTrack), 0U);
    EXPECT_EQ(contents(pattern->musicTrack), Lines{});
    EXPECT_EQ(pattern->sequenceNode, tree);
}

TEST_F(MIDIPatternTest, WithoutASequenceToLoadIntoThereIsNoTrack)
{
    fail(Operation::NewMusicSequence);
    pattern->loadFromFile("none.mid");
    EXPECT_EQ(said(), Lines{"MIDISequence::Fehler: -7. \nEs konnte keine Sequenz erzeugt werden."});
    EXPECT_EQ(pattern->musicTrack, nullptr);
}

TEST_F(MIDIPatternTest, AnotherSequenceLeavesTheTrackAsItWas)
{
    const MusicTrack track = pattern->musicTrack;
    const MIDISequence other;
    pattern->setMusicSequence(other.musicSequence);
    EXPECT_EQ(pattern->musicTrack, track);
    EXPECT_EQ(pattern->getTrack(0), track);
}

} // namespace
} // namespace volvelle::test
