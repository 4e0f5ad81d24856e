#include "phrases/MIDIClipGenerator.h"

#include "base/Paths.h"
#include "tests/phrases/DrawScript.h"
#include "tests/phrases/PhraseFiles.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/support/ConsoleCapture.h"

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;
using Numbers = std::vector<int>;

// An arrangement of the filled library: the transposition, then the files of the five folders.
DrawScript arrangementScript(int transposition, const std::vector<int>& files)
{
    DrawScript script;
    script.newMixer().draw(transposition, -6, 6);
    for (const int file : files) {
        script.draw(file, 1, 2);
    }
    return script.rhythms().metricCycle();
}

class MIDIClipGeneratorTest : public testing::Test {
protected:
    void SetUp() override { library.fill(); }

    void make(int transposition, const std::vector<int>& files)
    {
        const DrawScript script = arrangementScript(transposition, files);
        ScriptedRandomSource source(script.numbers);
        sequence = generator.makeArrangement();
        EXPECT_EQ(source.ranges, script.ranges);
    }

    // The lines of one choice of a file.
    void addChoice(Lines& lines, const std::string& folder, const std::string& file,
                   const std::string& length) const
    {
        const std::string path = library.at(folder);
        lines.push_back("MIDIClipGenerator::loadRandomFileAt() Loading '" + path + "'...");
        lines.push_back("There were 2 MIDI files found at '" + path + "'.");
        lines.push_back("MIDIClipGenerator::loadRandomFileAt() Loading '" + path + file + "'");
        lines.push_back("MIDIPhrase: Sequence length is: " + length);
    }

    PhraseLibrary library;
    ConsoleCapture console;
    MIDIClipGenerator generator;
    std::shared_ptr<MIDISequence16> sequence;
};

TEST_F(MIDIClipGeneratorTest, ANewGeneratorHasNoMixer)
{
    EXPECT_EQ(generator.phraseMixer, nullptr);
}

TEST_F(MIDIClipGeneratorTest, TheDrawsComeInTheirOrderAndChooseTheFiles)
{
    make(0, {1, 2, 1, 2, 1});
    const MIDIPhraseMixer& mixer = *generator.phraseMixer;
    EXPECT_EQ(mixer.chordTrack->currentURL, library.at(chordPatterns) + "001.mid");
    EXPECT_EQ(mixer.phraseTrack0->currentURL, library.at(chordPhrases) + "002.mid");
    EXPECT_EQ(mixer.leadTrack0->currentURL, library.at(leads) + "001.mid");
    EXPECT_EQ(mixer.bassTrack0->currentURL, library.at(basses) + "002.mid");
    EXPECT_EQ(mixer.drumTrack0->currentURL, library.at(drums) + "001.mid");
}

TEST_F(MIDIClipGeneratorTest, EachTrackHasItsChannel)
{
    make(0, {1, 1, 1, 1, 1});
    const MIDIPhraseMixer& mixer = *generator.phraseMixer;
    EXPECT_EQ(mixer.chordTrack->channel, 0);
    EXPECT_EQ(mixer.phraseTrack0->channel, 1);
    EXPECT_EQ(mixer.leadTrack0->channel, 2);
    EXPECT_EQ(mixer.bassTrack0->channel, 8);
    EXPECT_EQ(mixer.drumTrack0->channel, 9);
    EXPECT_EQ(mixer.polyRhythm0->channel, 10);
    EXPECT_EQ(mixer.polyMeter0->channel, 14);
}

TEST_F(MIDIClipGeneratorTest, FollowersStandOnTheChordsAndTheOthersDoNot)
{
    make(0, {1, 1, 1, 1, 1});
    const MIDIPhraseMixer& mixer = *generator.phraseMixer;
    EXPECT_EQ(shortNamesOf(*mixer.chordTrack), (std::vector<std::string>{"CM", "FM"}));
    EXPECT_EQ(numbersOf(mixer.chordTrack->generatedEvents), (Numbers{60, 64, 67, 65, 69, 60}));
    EXPECT_EQ(numbersOf(mixer.phraseTrack0->generatedEvents), (Numbers{64, 65}));
    EXPECT_EQ(numbersOf(mixer.leadTrack0->generatedEvents), (Numbers{52, 53}));
    EXPECT_EQ(numbersOf(mixer.bassTrack0->generatedEvents), (Numbers{40, 41}));
    EXPECT_EQ(numbersOf(mixer.drumTrack0->loadedEvents), (Numbers{36, 38}));
    EXPECT_TRUE(mixer.polyRhythm0->loadedEvents.empty());
    EXPECT_EQ(mixer.polyMeter0->generatedEvents.size(), 64U);
    EXPECT_EQ(listOf(mixer.polyMeter0->generatedEvents, &PhraseEvent::number), Numbers(64, 60));
    EXPECT_EQ(listOf(mixer.polyMeter0->generatedEvents, &PhraseEvent::channel), Numbers(64, 14));
}

TEST_F(MIDIClipGeneratorTest, TheTranspositionMovesTheChordsAndNotTheDrums)
{
    for (const auto& [transposition, name] :
         std::vector<std::pair<int, std::string>>{{-6, "D#m"}, {6, "D#m"}, {3, "Cm"}}) {
        make(transposition, {2, 1, 1, 1, 1});
        EXPECT_EQ(shortNamesOf(*generator.phraseMixer->chordTrack), std::vector<std::string>{name});
        EXPECT_EQ(numbersOf(generator.phraseMixer->drumTrack0->loadedEvents), (Numbers{36, 38}));
        EXPECT_EQ(generator.phraseMixer->leadTrack0->loadedEvents[0]->number, 49);
    }
}

TEST_F(MIDIClipGeneratorTest, TheResultIsTheMixersSequenceOfTheWholeMix)
{
    make(0, {1, 1, 1, 1, 1});
    EXPECT_EQ(sequence, generator.phraseMixer->sequence);
    EXPECT_EQ(generator.phraseMixer->mixedEvents.size(), 6U + 2 + 2 + 2 + 2 + 64);
    EXPECT_EQ(notesOf(*sequence).size(), 78U);
    EXPECT_EQ(sequence->getTrackEvents(10).size(), 0U);
    EXPECT_EQ(sequence->getTrackEvents(9).size(), 2U);
}

TEST_F(MIDIClipGeneratorTest, TheConsoleTellsEachStep)
{
    make(0, {1, 2, 1, 2, 1});
    const std::string notYet =
        "MIDIChordPhrase: Warning: No exact chord match yet (possibly precalculation).";
    Lines lines{"MIDIClipGenerator::makeArrangement()"};
    addChoice(lines, chordPatterns, "001.mid", "4.0");
    lines.push_back("Following chord rule was detected: C (8) Base Key at 0.0.");
    lines.push_back(notYet);
    lines.push_back("Following chord rule was detected: C Major at 0.0.");
    lines.push_back("Following chord rule was detected: F (8) Base Key at 4.0.");
    lines.push_back(notYet);
    lines.push_back("Following chord rule was detected: F Major at 4.0.");
    addChoice(lines, chordPhrases, "002.mid", "2.0");
    addChoice(lines, leads, "001.mid", "5.0");
    addChoice(lines, basses, "002.mid", "2.0");
    addChoice(lines, drums, "001.mid", "3.5");
    EXPECT_EQ(withoutTrackEnds(console.take()), lines);
}

TEST_F(MIDIClipGeneratorTest, EachOneHasAMixerOfItsOwn)
{
    make(0, {1, 1, 1, 1, 1});
    const auto first = generator.phraseMixer;
    first->activeState[2] = false;
    make(0, {1, 1, 1, 1, 1});
    EXPECT_NE(generator.phraseMixer, first);
    EXPECT_TRUE(generator.phraseMixer->activeState[2]);
    generator.makeArrangement(true);
    EXPECT_TRUE(generator.phraseMixer->mixedEvents.empty());
    EXPECT_TRUE(generator.phraseMixer->chordTrack->chords.empty());
}

TEST_F(MIDIClipGeneratorTest, AnEmptyOneNeedsNoLibraryAndDrawsItsGeneratorsStepsOnly)
{
    setResourcesFolder(std::nullopt);
    const DrawScript script = DrawScript().newMixer();
    ScriptedRandomSource source(script.numbers);
    sequence = generator.makeArrangement(true);
    EXPECT_EQ(source.ranges, script.ranges);
    EXPECT_EQ(sequence, generator.phraseMixer->sequence);
    EXPECT_EQ(sequence->getNumberOfTracks(), 16);
    EXPECT_TRUE(notesOf(*sequence).empty());
    EXPECT_EQ(generator.phraseMixer->drumTrack0->channel, 0);
    EXPECT_EQ(console.take(), (Lines{"MIDIClipGenerator::makeArrangement()",
                                     "Arranger::makeSequence() : There are no events for mixing."}));
}

TEST_F(MIDIClipGeneratorTest, AnEmptyOneReadsBackAsSixteenEmptyTracks)
{
    std::vector<std::uint8_t> bytes;
    sequence = generator.makeArrangement(true);
    ASSERT_EQ(
        MusicSequenceFileCreateData(sequence->musicSequence, kMusicSequenceFile_MIDIType, 1, 480, bytes),
        noErr);
    const std::vector<std::uint8_t> header{'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, 0, 17, 1, 0xE0};
    ASSERT_GT(bytes.size(), header.size());
    EXPECT_EQ(std::vector<std::uint8_t>(bytes.begin(), bytes.begin() + 14), header);
    MIDISequence16 read;
    ASSERT_EQ(MusicSequenceFileLoadData(read.musicSequence, bytes, kMusicSequenceFile_MIDIType,
                                        kMusicSequenceLoadSMF_PreserveTracks),
              noErr);
    ASSERT_EQ(read.getNumberOfTracks(), 16);
    for (int track = 0; track < 16; ++track) {
        EXPECT_TRUE(read.getTrackEvents(track).empty());
    }
}

} // namespace
} // namespace volvelle
