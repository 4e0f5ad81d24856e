#include "base/Checked.h"
#include "base/Paths.h"
#include "phrases/MIDIClipGenerator.h"
#include "tests/phrases/PhraseFiles.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/support/ConsoleCapture.h"

namespace volvelle {
namespace {

using namespace test;

class MIDIClipGeneratorDeathTest : public testing::Test {
protected:
    PhraseLibrary library;
    ConsoleCapture console;
    MIDIClipGenerator generator;
};

TEST_F(MIDIClipGeneratorDeathTest, WithoutAMixerThePhrasesAreOutOfReach)
{
    library.fill();
    for (const int channel : {0, 1, 2, 8, 9, 10, 14}) {
        EXPECT_DEATH(generator.makePhrase(channel, 0), onlyLine(implicitNilMessage)) << channel;
    }
    for (const int channel : {-1, 0, 5, 14}) {
        EXPECT_DEATH(generator.getPhrase(channel), onlyLine(implicitNilMessage)) << channel;
    }
    EXPECT_DEATH(generator.changeChords(), onlyLine(implicitNilMessage));
    EXPECT_DEATH(generator.getChords(), onlyLine(implicitNilMessage));
}

TEST_F(MIDIClipGeneratorDeathTest, WithoutAMixerTheStepsAreOutOfReach)
{
    for (const int channel : {10, 14}) {
        EXPECT_DEATH(generator.getPolyMeterSteps(channel), onlyLine(implicitNilMessage));
        EXPECT_DEATH(generator.adjustPolyMeterSteps(channel, 4), onlyLine(implicitNilMessage));
        EXPECT_DEATH(generator.getPolyMeterStep(channel, 0), onlyLine(implicitNilMessage));
        EXPECT_DEATH(generator.setPolyMeterStep(nullptr, channel, 0), onlyLine(implicitNilMessage));
        EXPECT_DEATH(generator.getPolyRhythmSteps(channel, 0), onlyLine(implicitNilMessage));
        EXPECT_DEATH(generator.adjustPolyRhythmSteps(channel, 0, 4), onlyLine(implicitNilMessage));
        EXPECT_DEATH(generator.getPolyRhythmStep(channel, 0, 0), onlyLine(implicitNilMessage));
        EXPECT_DEATH(generator.setPolyRhythmStep(nullptr, channel, 0, 0), onlyLine(implicitNilMessage));
        EXPECT_DEATH(generator.getRandomSteps(channel), onlyLine(implicitNilMessage));
    }
}

TEST_F(MIDIClipGeneratorDeathTest, WithoutResourcesNoFileCanBeChosen)
{
    generator.makeArrangement(true);
    setResourcesFolder(std::nullopt);
    EXPECT_DEATH(generator.makeArrangement(false), onlyLine(implicitNilMessage));
    EXPECT_DEATH(generator.makeArrangementLong(1), onlyLine(implicitNilMessage));
    for (const int channel : {-1, 0, 1, 2, 8, 9}) {
        EXPECT_DEATH(generator.makePhrase(channel, 0), onlyLine(implicitNilMessage)) << channel;
    }
}

TEST_F(MIDIClipGeneratorDeathTest, ABrokenLibraryStopsAtItsFirstFault)
{
    EXPECT_DEATH(generator.makeArrangement(),
                 onlyLine("No files found in '" + library.at(chordPatterns) + "'"));
    for (const char* folder : {chordPatterns, chordPhrases, leads, basses}) {
        library.add(folder, {});
    }
    std::filesystem::remove(library.at(drums));
    EXPECT_DEATH(generator.makeArrangement(),
                 onlyLine("Getting contents of '" + library.at(drums) + "' failed."));
}

} // namespace
} // namespace volvelle
