#include "base/Checked.h"
#include "phrases/MIDIClipGenerator.h"
#include "tests/phrases/DrawScript.h"
#include "tests/phrases/PhraseFiles.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/support/ConsoleCapture.h"

#include <algorithm>

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;

class MIDIClipGeneratorLongTest : public testing::Test {
protected:
    PhraseLibrary library;
    ConsoleCapture console;
    MIDIClipGenerator generator;
};

using MIDIClipGeneratorLongDeathTest = MIDIClipGeneratorLongTest;

TEST_F(MIDIClipGeneratorLongTest, BlocksOfSixteenBeatsStandOneBehindTheOther)
{
    library.fill();
    Lines expected;
    std::vector<double> lastBlock;
    {
        SeededRandomSource source(5);
        for (int block = 0; block < 3; ++block) {
            const auto notes = notesOf(*generator.makeArrangement(), block * 16.0);
            expected.insert(expected.end(), notes.begin(), notes.end());
        }
        lastBlock = positionsOf(generator.phraseMixer->mixedEvents);
    }
    SeededRandomSource source(5);
    const auto sequence = generator.makeArrangementLong(3);
    Lines notes = notesOf(*sequence);
    std::ranges::sort(notes);
    std::ranges::sort(expected);
    EXPECT_EQ(notes, expected);
    EXPECT_EQ(sequence, generator.phraseMixer->sequence);
    EXPECT_EQ(positionsOf(generator.phraseMixer->mixedEvents), lastBlock);
}

TEST_F(MIDIClipGeneratorLongTest, AnEventOfTheSecondPassLandsSixteenBeatsLater)
{
    library.add(chordPatterns, {});
    for (const char* folder : {chordPhrases, leads, basses}) {
        library.add(folder, {});
    }
    library.add(drums, {{{3.5, 38, 1.0}, {16.0, 40, 1.0}}, {}, {}});
    const auto sequence = generator.makeArrangementLong(2);
    EXPECT_EQ(notesOf(*sequence), (Lines{"3.5 9 38 100 0 0.99", "16.0 9 40 100 0 0.99",
                                         "19.5 9 38 100 0 0.99", "32.0 9 40 100 0 0.99"}));
}

TEST_F(MIDIClipGeneratorLongTest, ABlockWithoutEventsIsTold)
{
    for (const char* folder : {chordPatterns, chordPhrases, leads, basses, drums}) {
        library.add(folder, {});
    }
    EXPECT_TRUE(notesOf(*generator.makeArrangementLong(2)).empty());
    Lines lines = console.take();
    std::erase_if(lines, [](const std::string& line) { return !line.starts_with("Arranger"); });
    EXPECT_EQ(
        lines,
        (Lines{"Arranger::makeSequence() : There are no events for mixing.",
               "Arranger::makeSequence() : WARNING: There are no events at 0.0 for mixing together.",
               "Arranger::makeSequence() : There are no events for mixing.",
               "Arranger::makeSequence() : WARNING: There are no events at 16.0 for mixing together."}));
}

TEST_F(MIDIClipGeneratorLongTest, NoneAtAllGivesAnEmptySequenceToTheMixerOfBefore)
{
    generator.makeArrangement(true);
    const auto mixer = generator.phraseMixer;
    const auto before = mixer->sequence;
    const auto sequence = generator.makeArrangementLong(0);
    EXPECT_EQ(generator.phraseMixer, mixer);
    EXPECT_EQ(mixer->sequence, sequence);
    EXPECT_NE(sequence, before);
    EXPECT_TRUE(notesOf(*sequence).empty());
    EXPECT_EQ(sequence->getNumberOfTracks(), 16);
}

TEST_F(MIDIClipGeneratorLongDeathTest, NoneAtAllWithoutAMixerStops)
{
    EXPECT_DEATH(generator.makeArrangementLong(0), onlyLine(implicitNilMessage));
}

TEST_F(MIDIClipGeneratorLongDeathTest, ANegativeCountStops)
{
    EXPECT_DEATH(generator.makeArrangementLong(-1), onlyLine(rangeMessage));
    generator.makeArrangement(true);
    EXPECT_DEATH(generator.makeArrangementLong(-1), onlyLine(rangeMessage));
}

} // namespace
} // namespace volvelle
