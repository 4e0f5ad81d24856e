#include "tests/sequence/patterns/GridFixture.h"

#include "sequence/patterns/SequenceChangedDelegate.h"

// The grid itself: sections and cells.
namespace volvelle::test {
namespace {

const std::string fewerSections = "Fehler: Die Anzahl der Sektionen ist kleiner als der Index.";
const std::string growing = "Warnung: Der Index ist größer als die Anzahl der verfügbaren Sektionen.";
const std::string noSection = "Fehler: Der Index ist größer als die Anzahl der verfügbaren Sektionen.";
const std::string noChannel = "Fehler: Der Index ist größer als die Anzahl der verfügbaren Kanäle.";

using MIDIPatternSequenceTest = GridFixture;
using MIDIPatternSequenceDeathTest = MIDIPatternSequenceTest;

TEST_F(MIDIPatternSequenceTest, ANewGridHasOneSectionOfSixteenCellsWithoutMusicAndTheirTracks)
{
    EXPECT_EQ(said(), Lines{});
    EXPECT_EQ(grid->maxTracks, 10000);
    EXPECT_EQ(grid->loadFlag, 0U);
    EXPECT_EQ(grid->getNumberOfTracks(), 16);
    EXPECT_EQ(grid->currentPattern, nullptr);
    EXPECT_EQ(grid->currentPatternIndex, 0);
    EXPECT_EQ(grid->currentChannelIndex, 0);
    ASSERT_EQ(grid->sections.size(), 1U);
    ASSERT_EQ(grid->sections[0]->patterns.size(), 16U);
    Lines metas;
    for (std::uint8_t i = 0; i < 16; ++i) {
        EXPECT_EQ(nodes(0, i), (Lines{concat("MetaChannelPrefixEvent 0.0 0: 32 1 [", i, "]"),
                                      "MetaSequenceNumberEvent 0.0 0: 0 2 [0, 0]"}));
        EXPECT_EQ(cell(0, i)->channel, i);
        EXPECT_EQ(cell(0, i)->offset, 0.0);
        EXPECT_EQ(grid->getTrackIndex(cell(0, i)->link), i);
        metas.push_back(concat("0.0 meta 32 [", i, "]"));
        metas.emplace_back("0.0 meta 0 [0, 0]");
    }
    EXPECT_EQ(track(0), metas);
    for (int i = 1; i < 16; ++i) {
        EXPECT_EQ(track(i), Lines{});
    }
}

TEST_F(MIDIPatternSequenceTest, ATrackOfTheBaseThatCannotBeDeletedStays)
{
    fail(Operation::MusicSequenceDisposeTrack);
    MIDIPatternSequence other;
    EXPECT_EQ(said(), reported("MIDISequence::Fehler: Die Spur konnte nicht gelöscht werden. : -7"));
    EXPECT_EQ(other.getNumberOfTracks(), 17);
    EXPECT_EQ(other.getTrackIndex(other.sections[0]->patterns[0]->link), 1U);
}

TEST_F(MIDIPatternSequenceDeathTest, AGridWithoutAMusicSequenceStops)
{
    fail(Operation::NewMusicSequence);
    EXPECT_STOP(MIDIPatternSequence(), rangeMessage,
                {"MIDISequence::Fehler: -7. \nEs konnte keine Sequenz erzeugt werden.",
                 "MIDISequence::Fehler: Die Sequenz ist undefiniert.",
                 "MIDISequence::Fehler: Die Sequenz ist undefiniert."});
}

TEST_F(MIDIPatternSequenceTest, ASectionHasSixteenCellsOfItsOwn)
{
    MIDIPatternSequence::Section section;
    ASSERT_EQ(section.patterns.size(), 16U);
    EXPECT_NE(section.patterns[0], section.patterns[15]);
    EXPECT_TRUE(section.patterns[7]->isEmpty());
    section.create();
    EXPECT_EQ(section.patterns.size(), 32U);
}

TEST_F(MIDIPatternSequenceTest, ANewSectionStandsAtTheEndAndTheDelegateHearsTheCount)
{
    const auto first = grid->sections[0];
    grid->createSection();
    grid->createSection();
    ASSERT_EQ(grid->sections.size(), 3U);
    EXPECT_EQ(grid->sections[0], first);
    EXPECT_TRUE(cell(2, 0)->isEmpty());
    EXPECT_EQ(sections->calls, (Lines{"created 2", "created 3"}));
    EXPECT_EQ(grid->getNumberOfTracks(), 16);
}

TEST_F(MIDIPatternSequenceTest, ADeletedSectionIsEmptiedAndTheDelegateHearsItsIndex)
{
    grid->createSection();
    const auto first = grid->sections[0];
    const auto second = grid->sections[1];
    grid->deleteSection(0);
    EXPECT_EQ(grid->sections, std::vector{second});
    EXPECT_TRUE(first->patterns[3]->isEmpty());
    EXPECT_EQ(sections->calls, (Lines{"created 2", "deleted 0"}));
    EXPECT_EQ(grid->getNumberOfTracks(), 16);
}

TEST_F(MIDIPatternSequenceTest, ASectionAboveTheCountIsReportedAndNotDeleted)
{
    grid->deleteSection(2);
    grid->deleteSection(65535);
    EXPECT_EQ(said(), (Lines{fewerSections, fewerSections}));
    EXPECT_EQ(grid->sections.size(), 1U);
    EXPECT_EQ(sections->calls, Lines{});
}

TEST_F(MIDIPatternSequenceTest, AClearedSectionLosesItsEventsAlone)
{
    grid->createSection();
    cell(1, 4)->addEvent(note(1.0, 4, 60));
    grid->clearSection(0);
    EXPECT_TRUE(cell(0, 0)->isEmpty());
    EXPECT_TRUE(cell(0, 15)->isEmpty());
    EXPECT_NE(cell(0, 0)->link, nullptr);
    EXPECT_FALSE(cell(1, 4)->isEmpty());
    EXPECT_EQ(said(), Lines{});
    grid->clearSection(3);
    EXPECT_EQ(said(), Lines{fewerSections});
    EXPECT_FALSE(cell(1, 4)->isEmpty());
}

TEST_F(MIDIPatternSequenceTest, ClearingThreeSectionsLeavesOneCleanOne)
{
    grid->createSection();
    grid->createSection();
    sections->calls.clear();
    grid->clearAllSections();
    ASSERT_EQ(grid->sections.size(), 1U);
    EXPECT_EQ(sections->calls, (Lines{"deleted 2", "deleted 1", "deleted 0", "created 1"}));
    for (std::size_t i = 0; i < 16; ++i) {
        EXPECT_TRUE(cell(0, i)->isEmpty());
        EXPECT_EQ(cell(0, i)->link, nullptr);
    }
    EXPECT_EQ(said(), Lines{});
}

TEST_F(MIDIPatternSequenceTest, AGridWithoutADelegateChangesAllTheSame)
{
    sections.reset();
    grid->createSection();
    grid->deleteSection(0);
    EXPECT_EQ(grid->sections.size(), 1U);
}

TEST_F(MIDIPatternSequenceTest, ADelegateThatListensToNothingIsCalledToo)
{
    const auto silent = std::make_shared<PatternSequenceDelegate>();
    grid->pattern_delegate = silent;
    grid->createSection();
    grid->deleteSection(0);
    EXPECT_EQ(grid->sections.size(), 1U);
}

TEST_F(MIDIPatternSequenceTest, ACellIsFoundByRowAndColumn)
{
    grid->createSection();
    EXPECT_EQ(grid->getPattern(0, 0), cell(0, 0));
    EXPECT_EQ(grid->getPattern(1, 15), cell(1, 15));
    EXPECT_EQ(said(), Lines{});
}

TEST_F(MIDIPatternSequenceTest, AskingForARowFarBehindMakesTheRowsUpToIt)
{
    const auto pattern = grid->getPattern(5, 0);
    EXPECT_EQ(said(), Lines{growing});
    ASSERT_EQ(grid->sections.size(), 6U);
    EXPECT_EQ(pattern, cell(5, 0));
    EXPECT_EQ(sections->calls, (Lines{"created 2", "created 3", "created 4", "created 5", "created 6"}));
}

TEST_F(MIDIPatternSequenceTest, AskingForAChannelAboveSixteenGivesNothing)
{
    EXPECT_EQ(grid->getPattern(0, 17), nullptr);
    EXPECT_EQ(grid->getPattern(0, 255), nullptr);
    EXPECT_EQ(said(), (Lines{noChannel, noChannel}));
    EXPECT_EQ(grid->getPattern(1, 17), nullptr);
    EXPECT_EQ(said(), Lines{noChannel});
    EXPECT_EQ(grid->getPattern(2, 17), nullptr);
    EXPECT_EQ(said(), (Lines{growing, noChannel}));
    EXPECT_EQ(grid->sections.size(), 3U);
}

TEST_F(MIDIPatternSequenceTest, APatternIsStoredInItsCell)
{
    const auto pattern = std::make_shared<PatternNode>();
    const auto before = cell(0, 2);
    grid->setPattern(pattern, 0, 3);
    EXPECT_EQ(cell(0, 3), pattern);
    EXPECT_EQ(cell(0, 2), before);
    EXPECT_EQ(said(), Lines{});
}

TEST_F(MIDIPatternSequenceTest, APatternThatHasNoCellLeavesTheGridAsItWas)
{
    const auto before = grid->sections[0]->patterns;
    const auto pattern = std::make_shared<PatternNode>();
    grid->setPattern(pattern, 2, 0);
    grid->setPattern(pattern, 0, 17);
    grid->setPattern(pattern, 2, 17);
    grid->setPattern(nullptr, 0, 0);
    grid->setPattern(nullptr, 1, 16);
    const std::string undefined = "Warnung: Das Pattern ist undefiniert.";
    EXPECT_EQ(said(), (Lines{noSection, noChannel, noSection, undefined, undefined}));
    EXPECT_EQ(grid->sections.size(), 1U);
    EXPECT_EQ(grid->sections[0]->patterns, before);
}

TEST_F(MIDIPatternSequenceTest, AClearedCellLosesItsEventsAlone)
{
    grid->clearPattern(0, 3);
    EXPECT_TRUE(cell(0, 3)->isEmpty());
    EXPECT_FALSE(cell(0, 2)->isEmpty());
    EXPECT_EQ(said(), Lines{});
    grid->clearPattern(2, 0);
    grid->clearPattern(0, 17);
    EXPECT_EQ(said(), (Lines{noSection, noChannel}));
    EXPECT_EQ(grid->sections.size(), 1U);
}

TEST_F(MIDIPatternSequenceDeathTest, AnIndexThatEqualsTheCountStops)
{
    const auto pattern = std::make_shared<PatternNode>();
    EXPECT_STOP(grid->clearSection(1), indexMessage);
    EXPECT_STOP(grid->deleteSection(1), indexMessage);
    EXPECT_STOP(grid->getPattern(1, 0), indexMessage);
    EXPECT_STOP(grid->setPattern(pattern, 1, 0), indexMessage);
    EXPECT_STOP(grid->clearPattern(1, 0), indexMessage);
    EXPECT_STOP(grid->updateSection(1), indexMessage);
}

TEST_F(MIDIPatternSequenceDeathTest, MoreSectionsThanAnIndexCountsStop)
{
    grid->sections.resize(65'534, grid->sections[0]);
    EXPECT_EXIT((showLog(), grid->getPattern(65'535, 0)), testing::KilledBySignal(SIGABRT),
                testing::Eq(growing + "\n" + stopped(conversionMessage)));
    grid->createSection();
    EXPECT_EQ(grid->sections.size(), 65'535U);
    EXPECT_STOP(grid->createSection(), conversionMessage);
}

TEST_F(MIDIPatternSequenceDeathTest, AChannelOfSixteenStops)
{
    const auto pattern = std::make_shared<PatternNode>();
    EXPECT_STOP(grid->getPattern(0, 16), indexMessage);
    EXPECT_STOP(grid->setPattern(pattern, 0, 16), indexMessage);
    EXPECT_STOP(grid->clearPattern(0, 16), indexMessage);
}

TEST_F(MIDIPatternSequenceDeathTest, AnAbsentCellOrSectionStops)
{
    grid->sections[0]->patterns[3] = nullptr;
    EXPECT_STOP(grid->clearSection(0), nilMessage);
    EXPECT_STOP(grid->clearPattern(0, 3), nilMessage);
    EXPECT_STOP(grid->updateTrack(3), nilMessage);
    grid->sections[0] = nullptr;
    EXPECT_STOP(grid->clearSection(0), nilMessage);
    EXPECT_STOP(grid->getPattern(0, 0), nilMessage);
    EXPECT_STOP(grid->updateSection(0), nilMessage);
}

TEST_F(MIDIPatternSequenceTest, TheOperationsThatDoNothingChangeNothing)
{
    const auto before = grid->sections[0]->patterns;
    const Lines metas = track(0);
    grid->musicTrackToPatterns();
    grid->patternsToMusicSequence();
    grid->moveSection(0, 9);
    grid->muteSection(9);
    grid->soloSection(9);
    grid->copyPattern(std::make_shared<PatternNode>(), 0, 0);
    grid->movePattern(0, 0, 0, 1);
    grid->soloPattern(0, 0, 0, 1);
    grid->mutePattern(0, 0, 0, 1);
    grid->muteTrack(0);
    grid->soloTrack(0);
    grid->updatePattern(0);
    EXPECT_EQ(grid->sections.size(), 1U);
    EXPECT_EQ(grid->sections[0]->patterns, before);
    EXPECT_EQ(nodes(0, 0).size(), 2U);
    EXPECT_EQ(track(0), metas);
    EXPECT_FALSE(grid->getTrackMuteStaus(grid->getTrack(0)));
    EXPECT_EQ(said(), Lines{});
    EXPECT_EQ(sections->calls, Lines{});
}

TEST_F(MIDIPatternSequenceTest, AListenerToChangesIsToldOfNothing)
{
    static_assert(std::has_virtual_destructor_v<SequenceChangedDelegate>);
    static_assert(sizeof(SequenceChangedDelegate) == sizeof(void*));
}

} // namespace
} // namespace volvelle::test
