#include "tests/sequence/SequenceFixture.h"

// Tracks, patterns and whole trees to the music sequence.
namespace volvelle::test {
namespace {

const std::string noTarget = "MIDISequence::Fehler: Die Ziel Sequenz ist undefiniert.";
const std::string noTargetTrack = "MIDISequence::Fehler: Die Ziel Spur ist undefiniert.";
const std::string noSource = "MIDISequence::Fehler: Die Quell Spur ist undefiniert.";
const std::string noPattern = "MIDISequence::Fehler: Das Quell Pattern ist undefiniert.";
const std::string noteInfo = "MIDISequence::Info: Eine Note wurde hinzugefügt.";
const std::string emptied = "MIDISequence::Warnung: Die Spur ist leer.";
const std::string removing = "MIDISequence::Warnung: Alle Tempo Events werden aus der Spur gelöscht.";
const std::string noData = "MIDISequence::Warnung: Die Spur enthält keine Daten.";

std::shared_ptr<MidiNoteEvent> noteAt(double position, std::uint8_t channel)
{
    return std::make_shared<MidiNoteEvent>(position, 1.0F, channel, std::uint8_t{60}, std::uint8_t{100},
                                           std::uint8_t{0});
}

class MIDISequenceTreeWalkTest : public SequenceTest {
protected:
    void SetUp() override
    {
        sequence->create(2);
        // An old note on each track, which a rewrite removes.
        for (const std::uint8_t channel : {std::uint8_t{0}, std::uint8_t{1}}) {
            sequence->createNoteMessage(noteAt(7.0, channel));
        }
        pattern->addEvent(noteAt(3.0, 1));
        pattern->addEvent(noteAt(4.0, 1));
        trackNode->channel = 1;
        trackNode->addEvent(noteAt(2.0, 1));
        trackNode->addPattern(pattern);
        console.take();
    }

    Lines stored(int index) { return contents(sequence->getTrack(index)); }

    const std::shared_ptr<PatternNode> pattern = std::make_shared<PatternNode>();
    const std::shared_ptr<TrackNode> trackNode = std::make_shared<TrackNode>();
    const Lines old0{"7.0 note 0 60 100 0 1.0"};
    const Lines old1{"7.0 note 1 60 100 0 1.0"};
    const Lines patternRecords{"3.0 note 1 60 100 0 1.0", "4.0 note 1 60 100 0 1.0"};
    const Lines trackRecords{"2.0 note 1 60 100 0 1.0", "3.0 note 1 60 100 0 1.0", "4.0 note 1 60 100 0 1.0"};
};

TEST_F(MIDISequenceTreeWalkTest, ATrackNodeReplacesItsTrackByItsEventsAndThoseOfItsPatterns)
{
    sequence->trackNodeToMusicTrack(trackNode, sequence->getTrack(1));
    EXPECT_EQ(stored(1), trackRecords);
    EXPECT_EQ(stored(0), old0);
    EXPECT_EQ(console.take(), (Lines{noteInfo, noteInfo, noteInfo}));
}

TEST_F(MIDISequenceTreeWalkTest, ATrackNodeToTheSequenceEmptiesAllTracksFirst)
{
    sequence->trackNodeToMusicSequence(trackNode);
    EXPECT_EQ(stored(0), Lines{});
    EXPECT_EQ(stored(1), trackRecords);
    EXPECT_EQ(sequence->getLength(), 4.0);
}

TEST_F(MIDISequenceTreeWalkTest, APatternNodeReplacesItsTrack)
{
    sequence->patternNodeToMusicTrack(pattern, sequence->getTrack(1));
    EXPECT_EQ(stored(1), patternRecords);
    EXPECT_EQ(stored(0), old0);
}

TEST_F(MIDISequenceTreeWalkTest, APatternNodeToTheSequenceEmptiesAllTracksFirst)
{
    sequence->patternNodeToMusicSequence(pattern);
    EXPECT_EQ(stored(0), Lines{});
    EXPECT_EQ(stored(1), patternRecords);
    EXPECT_EQ(console.take(), (Lines{noteInfo, noteInfo}));
}

TEST_F(MIDISequenceTreeWalkTest, MissingTargetsAndSourcesAreReported)
{
    const MusicTrack track = sequence->getTrack(1);
    sequence->trackNodeToMusicTrack(trackNode, nullptr);
    EXPECT_EQ(console.take(), Lines{noTargetTrack});
    sequence->trackNodeToMusicTrack(nullptr, track);
    EXPECT_EQ(console.take(), Lines{noSource});
    sequence->trackNodeToMusicSequence(nullptr);
    EXPECT_EQ(console.take(), Lines{noSource});
    sequence->patternNodeToMusicTrack(nullptr, track);
    EXPECT_EQ(console.take(), Lines{noPattern});
    sequence->patternNodeToMusicTrack(pattern, nullptr);
    EXPECT_EQ(console.take(), Lines{noTargetTrack});
    sequence->patternNodeToMusicSequence(nullptr);
    EXPECT_EQ(console.take(), Lines{noPattern});
    EXPECT_EQ(stored(0), old0);
    EXPECT_EQ(stored(1), old1);
}

TEST_F(MIDISequenceTreeWalkTest, WithoutASequenceEveryWayIsReported)
{
    const MusicTrack track = sequence->getTrack(1);
    sequence->musicSequence = nullptr;
    sequence->trackNodeToMusicTrack(trackNode, track);
    sequence->trackNodeToMusicSequence(trackNode);
    sequence->patternNodeToMusicTrack(pattern, track);
    sequence->patternNodeToMusicSequence(pattern);
    sequence->sequenceNodeToMusicSequence();
    EXPECT_EQ(console.take(), (Lines{noTarget, noTarget, noTarget, noTarget, noTarget}));
}

TEST_F(MIDISequenceTreeWalkTest, WithoutATreeNothingIsRewritten)
{
    sequence->sequenceNode = nullptr;
    sequence->sequenceNodeToMusicSequence();
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: Die Quell Sequenz ist undefiniert."});
    EXPECT_EQ(stored(0), old0);
}

using MIDISequenceTreeWalkDeathTest = MIDISequenceTreeWalkTest;

TEST_F(MIDISequenceTreeWalkDeathTest, ANullAmongTheNodesStopsEveryWay)
{
    const MusicTrack track = sequence->getTrack(1);
    trackNode->patterns.push_back(nullptr);
    EXPECT_STOP(sequence->trackNodeToMusicTrack(trackNode, track), nilMessage,
                (Lines{noteInfo, noteInfo, noteInfo}));
    pattern->events.insert(pattern->events.begin(), nullptr);
    EXPECT_STOP(sequence->patternNodeToMusicTrack(pattern, track), nilMessage, Lines{});
    EXPECT_STOP(sequence->patternNodeToMusicSequence(pattern), nilMessage, Lines{});
    EXPECT_STOP(sequence->trackNodeToMusicSequence(trackNode), nilMessage, (Lines{emptied, noteInfo}));
    trackNode->events.insert(trackNode->events.begin(), nullptr);
    EXPECT_STOP(sequence->trackNodeToMusicTrack(trackNode, track), nilMessage, Lines{});
    sequence->sequenceNode->tracks = {nullptr};
    EXPECT_STOP(sequence->sequenceNodeToMusicSequence(), nilMessage, (Lines{removing, noData}));
    sequence->sequenceNode->tempoTrack->events = {nullptr};
    EXPECT_STOP(sequence->sequenceNodeToMusicSequence(), nilMessage, (Lines{removing, noData}));
}

class MIDISequenceTreeWalkWholeTest : public MIDISequenceTreeWalkTest {
protected:
    void SetUp() override
    {
        MIDISequenceTreeWalkTest::SetUp();
        sequence->sequenceNode->tracks[0]->addEvent(noteAt(1.0, 0));
        sequence->sequenceNode->tracks[1] = trackNode;
        for (const double bpm : {90.0, 100.0}) {
            const auto tempo = std::make_shared<TempoEvent>();
            tempo->value = bpm;
            tempo->position = bpm / 10.0;
            sequence->sequenceNode->tempoTrack->addEvent(tempo);
        }
    }

    const Lines new0{"1.0 note 0 60 100 0 1.0"};
    const Lines tempos{"9.0 tempo 90.0", "10.0 tempo 100.0"};
    // Each track is cleared once more before it is written, and keeps its length.
    const Lines fourNotes{emptied, noteInfo, emptied, noteInfo, noteInfo, noteInfo};
};

TEST_F(MIDISequenceTreeWalkWholeTest, TheTreeReplacesTracksAndTempos)
{
    sequence->setTempo(70.0, 2.0);
    console.take();
    sequence->sequenceNodeToMusicSequence();
    EXPECT_EQ(stored(0), new0);
    EXPECT_EQ(stored(1), trackRecords);
    EXPECT_EQ(tempoContents(sequence->musicSequence), tempos);
    EXPECT_EQ(console.take(),
              join({{removing, "MIDISequence::Info: Lösche Extended Tempo Message: 70.0, Position = 2.0"},
                    fourNotes}));
}

TEST_F(MIDISequenceTreeWalkWholeTest, AFailedTempoTrackIsReportedAndTheTracksAreWritten)
{
    fail(Operation::MusicSequenceGetTempoTrack);
    sequence->sequenceNodeToMusicSequence();
    EXPECT_EQ(console.take(), join({{"MIDISequence::Fehler: Die Tempo Spur konnte nicht abgerufen werden.",
                                     "MIDISequence::Fehler: Die Tempo Spur ist undefiniert."},
                                    fourNotes}));
    EXPECT_EQ(stored(0), new0);
    EXPECT_EQ(tempoContents(sequence->musicSequence), Lines{});
}

TEST_F(MIDISequenceTreeWalkWholeTest, AMissingTempoTrackIsReported)
{
    fail(Operation::MusicSequenceGetTempoTrack, noErr);
    sequence->sequenceNodeToMusicSequence();
    EXPECT_EQ(console.take(), join({{"MIDISequence::Fehler: Die Tempo Spur ist undefiniert."}, fourNotes}));
}

TEST_F(MIDISequenceTreeWalkWholeTest, AFailedTempoEventIsReportedAndTheNextIsWritten)
{
    fail(Operation::MusicTrackNewExtendedTempoEvent);
    sequence->sequenceNodeToMusicSequence();
    EXPECT_EQ(console.take(), join({{removing, noData,
                                     "MIDISequence::Fehler: Das Tempo Event konnte nicht eingefügt werden."},
                                    fourNotes}));
    EXPECT_EQ(tempoContents(sequence->musicSequence), Lines{"10.0 tempo 100.0"});
}

TEST_F(MIDISequenceTreeWalkWholeTest, AnotherNodeOnTheTempoTrackIsNotAssigned)
{
    sequence->sequenceNode->tempoTrack->events = {noteAt(0.0, 0)};
    sequence->sequenceNodeToMusicSequence();
    EXPECT_EQ(console.take(),
              join({{removing, noData,
                     "MIDISequence::Warnung: Ein Element konnte der Sequenz nicht zugeordnet werden."},
                    fourNotes}));
    EXPECT_EQ(tempoContents(sequence->musicSequence), Lines{});
}

TEST_F(MIDISequenceTreeWalkWholeTest, ATrackNodeWithoutATrackIsReportedAndTheOthersAreWritten)
{
    sequence->sequenceNode->tempoTrack->clear();
    trackNode->channel = 5;
    sequence->sequenceNodeToMusicSequence();
    EXPECT_EQ(console.take(),
              (Lines{removing, noData, emptied, noteInfo,
                     "MIDISequence::Fehler: Eine Spur 5 konnte nicht abgerufen werden.",
                     "MIDISequence::Fehler: Die Zielspur für das Update konnte nicht ermittelt werden."}));
    EXPECT_EQ(stored(0), new0);
    EXPECT_EQ(stored(1), Lines{});
}

} // namespace
} // namespace volvelle::test
