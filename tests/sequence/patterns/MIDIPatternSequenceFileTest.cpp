#include "tests/sequence/patterns/GridReadingFixture.h"

// The grid and files.
namespace volvelle::test {
namespace {

using MIDIPatternSequenceFileTest = GridReadingFixture;

TEST_F(MIDIPatternSequenceFileTest, OfASavedGridOfOneSectionAllNotesComeBackInTheLastCell)
{
    const TemporaryFolder folder;
    MIDIPatternSequence saved;
    saved.sections[0]->patterns[0]->addEvent(note(1.0, 0, 60));
    saved.sections[0]->patterns[5]->addEvent(note(2.0, 5, 61));
    saved.updateSequence();
    saved.saveToFile(folder.path / "grid.mid");
    grid->loadFromFile(folder.path / "grid.mid");
    EXPECT_EQ(grid->getNumberOfTracks(), 16);
    EXPECT_EQ(track(5), Lines{"2.0 note 5 61 100 64 1.0"});
    EXPECT_EQ(notes(), Lines{});
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(notes(), Lines{"0 15: 60 1.0, 61 2.0, "});
}

TEST_F(MIDIPatternSequenceFileTest, OfASavedGridOfTwoSectionsTheNotesComeBackTwiceAndInOtherCells)
{
    const TemporaryFolder folder;
    MIDIPatternSequence saved;
    saved.createSection();
    saved.sections[0]->patterns[0]->addEvent(note(1.0, 0, 60));
    saved.sections[1]->patterns[5]->addEvent(note(1.0, 5, 61));
    saved.updateSequence();
    saved.saveToFile(folder.path / "grid.mid");
    grid->loadFromFile(folder.path / "grid.mid");
    EXPECT_EQ(grid->getNumberOfTracks(), 32);
    EXPECT_EQ(track(5), (Lines{"5.0 note 5 61 100 64 1.0", "9.0 note 5 61 100 64 1.0"}));
    grid->musicSequenceToSequenceNode();
    EXPECT_EQ(grid->sections.size(), 2U);
    EXPECT_EQ(notes(), (Lines{"0 15: 60 1.0, 60 1.0, ", "1 15: 61 5.0, 61 9.0, "}));
}

TEST_F(MIDIPatternSequenceFileTest, AFileThatCannotBeReadLeavesSixteenTracksAndTheCells)
{
    const auto before = grid->sections[0]->patterns;
    fail(Operation::MusicSequenceFileLoad);
    grid->loadFromFile("none.mid");
    EXPECT_EQ(said(), reported("MIDISequence::Fehler: -7. \nDie MIDI Datei konnte nicht geladen werden."));
    EXPECT_EQ(grid->getNumberOfTracks(), 16);
    EXPECT_EQ(grid->sections[0]->patterns, before);
}

TEST_F(MIDIPatternSequenceFileTest, AFileThatCannotBeWrittenIsReported)
{
    fail(Operation::MusicSequenceFileCreate);
    grid->saveToFile("none.mid");
    EXPECT_EQ(said(), reported("MIDISequence::Fehler: Die MIDI Datei konnte nicht gespeichert werden. : -7"));
}

TEST_F(MIDIPatternSequenceFileTest, SavingAndLoadingPassThroughTheOperationsThatDoNothing)
{
    class Passing : public MIDIPatternSequence {
    public:
        void patternsToMusicSequence() override { createTrack(); }

        void musicTrackToPatterns() override { seen = getNumberOfTracks(); }

        int seen = 0;
    };

    const TemporaryFolder folder;
    Passing passing;
    passing.saveToFile(folder.path / "grid.mid");
    EXPECT_EQ(passing.getNumberOfTracks(), 17);
    passing.loadFromFile(folder.path / "grid.mid");
    EXPECT_EQ(passing.seen, 17);
}

} // namespace
} // namespace volvelle::test
