#include "tests/sequence/SequenceFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace volvelle::test {
namespace {

class MIDISequenceFileTest : public SequenceTest {
protected:
    TemporaryFolder temporary;
    std::filesystem::path folder = temporary.path;
    std::filesystem::path file = folder / "a.mid";
};

TEST_F(MIDISequenceFileTest, ASavedSequenceLoadsWithAllItsEvents)
{
    sequence->create(2);
    sequence->createNoteEvent(1.0, 0, 60, 100, 10, 1.0F);
    sequence->createNoteEvent(2.0, 1, 62, 90, 11, 0.5F);
    sequence->setTempo(90.0);
    console.take();
    sequence->saveToFile(file);
    ObservedSequence other;
    other.loadFromFile(file);
    EXPECT_EQ(console.take(), Lines{});
    ASSERT_EQ(other.getNumberOfTracks(), 2);
    EXPECT_EQ(contents(other.getTrack(0)), Lines{"1.0 note 0 60 100 10 1.0"});
    EXPECT_EQ(contents(other.getTrack(1)), Lines{"2.0 note 1 62 90 11 0.5"});
    EXPECT_EQ(tempoContents(other.musicSequence).size(), 1U);
}

TEST_F(MIDISequenceFileTest, LoadingLeavesTheTreeAndDisposesTheOldSequence)
{
    sequence->saveToFile(file);
    const auto tree = sequence->sequenceNode;
    const MusicSequence old = sequence->musicSequence;
    sequence->loadFromFile(file);
    EXPECT_EQ(sequence->sequenceNode, tree);
    EXPECT_NE(sequence->musicSequence, old);
    EXPECT_EQ(old.use_count(), 1);
}

TEST_F(MIDISequenceFileTest, TheLoadFlagDecidesAboutTheTracks)
{
    sequence->create(2);
    sequence->createNoteEvent(0.0, 1, 60, 100, 0, 1.0F);
    sequence->saveToFile(file);
    sequence->loadFromFile(file);
    EXPECT_EQ(sequence->getNumberOfTracks(), 1);
    sequence->loadFlag = kMusicSequenceLoadSMF_PreserveTracks;
    sequence->loadFromFile(file);
    EXPECT_EQ(sequence->getNumberOfTracks(), 2);
}

TEST_F(MIDISequenceFileTest, AnExistingFileIsOverwritten)
{
    std::ofstream(file) << "old";
    sequence->saveToFile(file);
    EXPECT_EQ(console.take(), Lines{});
    std::ifstream stream(file);
    std::string head(4, ' ');
    stream.read(head.data(), 4);
    EXPECT_EQ(head, "MThd");
}

TEST_F(MIDISequenceFileTest, SavingWithoutASequenceIsReported)
{
    sequence->musicSequence = nullptr;
    sequence->saveToFile(file);
    EXPECT_EQ(console.take(),
              Lines{"MIDISequence::Fehler: MusicSequence konnte nicht initialisiert werden."});
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(MIDISequenceFileTest, AFailedSavingIsReported)
{
    fail(Operation::MusicSequenceFileCreate, -10852);
    sequence->saveToFile(file);
    EXPECT_EQ(console.take(),
              reported("MIDISequence::Fehler: Die MIDI Datei konnte nicht gespeichert werden. : -10852",
                       -10852, "Ungültiger Player Status."));
}

TEST_F(MIDISequenceFileTest, AFailedLoadingLeavesSixteenEmptyTracksAndATreeOfSixteen)
{
    sequence->loadFromFile(folder / "none.mid");
    EXPECT_EQ(console.take(),
              reported("MIDISequence::Fehler: -43. \nDie MIDI Datei konnte nicht geladen werden.", -43));
    EXPECT_EQ(sequence->getNumberOfTracks(), 16);
    EXPECT_EQ(sequence->sequenceNode->tracks.size(), 16U);
}

TEST_F(MIDISequenceFileTest, LoadingWithoutANewSequenceEndsWithOneLine)
{
    sequence->saveToFile(file);
    const auto tree = sequence->sequenceNode;
    fail(Operation::NewMusicSequence);
    sequence->loadFromFile(file);
    EXPECT_EQ(console.take(), Lines{"MIDISequence::Fehler: -7. \nEs konnte keine Sequenz erzeugt werden."});
    EXPECT_EQ(sequence->musicSequence, nullptr);
    EXPECT_EQ(sequence->sequenceNode, tree);
}

} // namespace
} // namespace volvelle::test
