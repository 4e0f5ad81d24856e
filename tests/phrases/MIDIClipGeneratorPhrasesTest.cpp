#include "phrases/MIDIClipGenerator.h"

#include "tests/phrases/DrawScript.h"
#include "tests/phrases/PhraseFiles.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/support/ConsoleCapture.h"

namespace volvelle {
namespace {

using namespace test;
using Numbers = std::vector<int>;
using Ranges = std::vector<std::pair<int, int>>;

const std::vector<int> allChannels{0, 1, 2, 8, 9, 10, 14};

class MIDIClipGeneratorPhrasesTest : public testing::Test {
protected:
    void SetUp() override
    {
        library.fill();
        DrawScript script;
        script.newMixer().draw(0, -6, 6);
        for (int folder = 0; folder < 5; ++folder) {
            script.draw(1, 1, 2);
        }
        script.rhythms().metricCycle();
        const ScriptedRandomSource source(script.numbers);
        generator.makeArrangement();
        console.take();
    }

    // Makes the phrase of a channel, and expects that those of all others and the mix stay as they are.
    void makeAlone(int channel, const DrawScript& script)
    {
        std::map<int, PhraseEvents> before;
        for (const int other : allChannels) {
            before[other] = generator.getPhrase(other);
        }
        const auto mix = generator.getPhrase(-1);
        const auto sequence = generator.phraseMixer->sequence;
        ScriptedRandomSource source(script.numbers);
        generator.makePhrase(channel, 5);
        EXPECT_EQ(source.ranges, script.ranges);
        for (const int other : allChannels) {
            EXPECT_EQ(generator.getPhrase(other) == before[other], other != channel) << other;
        }
        EXPECT_EQ(generator.getPhrase(-1), mix);
        EXPECT_EQ(generator.phraseMixer->sequence, sequence);
    }

    PhraseLibrary library;
    ConsoleCapture console;
    MIDIClipGenerator generator;
};

TEST_F(MIDIClipGeneratorPhrasesTest, EveryChannelHasItsName)
{
    for (const auto& [channel, name] : std::vector<std::pair<int, std::string>>{{-1, "CHORDS"},
                                                                                {0, "CHORDS"},
                                                                                {1, "CHORD PHRASE"},
                                                                                {2, "MELODY PHRASE"},
                                                                                {3, "CHANNEL 3"},
                                                                                {4, "CHANNEL 4"},
                                                                                {5, "CHANNEL 5"},
                                                                                {6, "CHANNEL 6"},
                                                                                {7, "CHANNEL 7"},
                                                                                {8, "BASS PHRASE"},
                                                                                {9, "BASE DRUMS"},
                                                                                {10, "POLYRHYTHM GENERATOR"},
                                                                                {11, "CHANNEL 11"},
                                                                                {12, "CHANNEL 12"},
                                                                                {13, "CHANNEL 13"},
                                                                                {14, "POLYMETRIC GENERATOR"},
                                                                                {15, "CHANNEL 15"},
                                                                                {16, "CHANNEL 16"},
                                                                                {-2, "CHANNEL -2"}}) {
        EXPECT_EQ(generator.getName(channel), name);
        EXPECT_EQ(MIDIClipGenerator().getName(channel), name);
    }
}

TEST_F(MIDIClipGeneratorPhrasesTest, EveryChannelHasItsList)
{
    const MIDIPhraseMixer& mixer = *generator.phraseMixer;
    mixer.polyRhythm0->loadedEvents = {noteAt(0.0, 50)};
    EXPECT_EQ(generator.getPhrase(-1), mixer.mixedEvents);
    EXPECT_EQ(generator.getPhrase(0), mixer.chordTrack->generatedEvents);
    EXPECT_EQ(generator.getPhrase(1), mixer.phraseTrack0->generatedEvents);
    EXPECT_EQ(generator.getPhrase(2), mixer.leadTrack0->generatedEvents);
    EXPECT_EQ(generator.getPhrase(8), mixer.bassTrack0->generatedEvents);
    EXPECT_EQ(generator.getPhrase(9), mixer.drumTrack0->loadedEvents);
    EXPECT_EQ(generator.getPhrase(10), mixer.polyRhythm0->loadedEvents);
    EXPECT_EQ(generator.getPhrase(14), mixer.polyMeter0->generatedEvents);
    for (const int channel : allChannels) {
        EXPECT_FALSE(generator.getPhrase(channel).empty()) << channel;
    }
    for (const int channel : {-2, 3, 4, 5, 6, 7, 11, 12, 13, 15, 16}) {
        EXPECT_TRUE(generator.getPhrase(channel).empty()) << channel;
    }
}

TEST_F(MIDIClipGeneratorPhrasesTest, AListIsACopyOfTheTracksOwnEvents)
{
    auto list = generator.getPhrase(1);
    list[0]->value = 7;
    list.clear();
    EXPECT_EQ(generator.getPhrase(1).size(), 2U);
    EXPECT_EQ(generator.phraseMixer->phraseTrack0->generatedEvents[0]->value, 7);
}

TEST_F(MIDIClipGeneratorPhrasesTest, TheChordsAreThoseOfTheChordTrack)
{
    EXPECT_EQ(generator.getChords(), generator.phraseMixer->chordTrack->chords);
    EXPECT_EQ(generator.getChords().size(), 2U);
}

TEST_F(MIDIClipGeneratorPhrasesTest, AFollowersNewPhraseFollowsTheChordsOfBefore)
{
    makeAlone(1, DrawScript().draw(2, 1, 2));
    EXPECT_EQ(numbersOf(generator.getPhrase(1)), Numbers{64});
    makeAlone(2, DrawScript().draw(2, 1, 2));
    EXPECT_EQ(numbersOf(generator.getPhrase(2)), Numbers{52});
    makeAlone(8, DrawScript().draw(2, 1, 2));
    EXPECT_EQ(numbersOf(generator.getPhrase(8)), Numbers{40});
    EXPECT_EQ(listOf(generator.getPhrase(8), &PhraseEvent::channel), Numbers{8});
}

TEST_F(MIDIClipGeneratorPhrasesTest, NewDrumsFollowNothing)
{
    makeAlone(9, DrawScript().draw(2, 1, 2));
    EXPECT_EQ(numbersOf(generator.getPhrase(9)), Numbers{42});
}

TEST_F(MIDIClipGeneratorPhrasesTest, ANewPolyRhythmDrawsAllInstances)
{
    DrawScript script;
    script.draw(1, 1, 16).draw(50, 36, 60).draw(0, 0, 3).draw(99, 20, 120);
    for (int instance = 1; instance < 8; ++instance) {
        script.silentInstance();
    }
    makeAlone(10, script);
    EXPECT_EQ(numbersOf(generator.getPhrase(10)), Numbers(4, 50));
}

TEST_F(MIDIClipGeneratorPhrasesTest, ANewPolyMeterIsDrawnAndFollows)
{
    DrawScript script;
    script.draw(1, 1, 16).draw(3, 0, 5).draw(1, -12, 12).draw(99, 20, 120).draw(0, -1, 1);
    makeAlone(14, script);
    Numbers expected(16, 64);
    expected.resize(64, 65);
    EXPECT_EQ(numbersOf(generator.getPhrase(14)), expected);
    EXPECT_EQ(listOf(generator.getPhrase(14), &PhraseEvent::channel), Numbers(64, 14));
}

TEST_F(MIDIClipGeneratorPhrasesTest, NewChordsAreFollowedAndMixed)
{
    const auto drumming = generator.getPhrase(9);
    const auto sequence = generator.phraseMixer->sequence;
    ScriptedRandomSource source({3, 2});
    generator.makePhrase(0, 0);
    EXPECT_EQ(source.ranges, (Ranges{{-6, 6}, {1, 2}}));
    EXPECT_EQ(shortNamesOf(*generator.phraseMixer->chordTrack), std::vector<std::string>{"Cm"});
    EXPECT_EQ(numbersOf(generator.getPhrase(0)), (Numbers{60, 63, 67}));
    EXPECT_EQ(numbersOf(generator.getPhrase(1)), (Numbers{63, 63}));
    EXPECT_EQ(numbersOf(generator.getPhrase(2)), (Numbers{51, 51}));
    EXPECT_EQ(numbersOf(generator.getPhrase(8)), (Numbers{39, 39}));
    EXPECT_EQ(numbersOf(generator.getPhrase(14)), Numbers(64, 60));
    EXPECT_EQ(generator.getPhrase(9), drumming);
    EXPECT_EQ(generator.getPhrase(-1).size(), 3U + 2 + 2 + 2 + 2 + 64);
    EXPECT_NE(generator.phraseMixer->sequence, sequence);
}

TEST_F(MIDIClipGeneratorPhrasesTest, NewAndEditedChordsLeaveDrumsAndPolyRhythmUntouched)
{
    const auto drumTrack = generator.phraseMixer->drumTrack0;
    const auto rhythm = generator.phraseMixer->polyRhythm0;
    const auto step = std::make_shared<PolyRhythmStepEvent>();
    step->velocity = 90;
    step->note = 40;
    rhythm->polyRhythmicStepGenerator->instances.at(2)->steps = {step};
    rhythm->updateEvents_PolyRhythm();
    rhythm->generateEvents();
    const auto lists = [&] {
        return std::vector{drumTrack->loadedEvents, drumTrack->generatedEvents, rhythm->loadedEvents,
                           rhythm->generatedEvents};
    };
    const auto numbers = [&] {
        std::vector<Numbers> result;
        for (const PhraseEvents& list : lists()) {
            EXPECT_FALSE(list.empty());
            result.push_back(numbersOf(list));
        }
        return result;
    };
    const auto before = lists();
    const auto numbersBefore = numbers();
    ScriptedRandomSource source({3, 2});
    generator.makePhrase(0, 0);
    EXPECT_EQ(lists(), before);
    EXPECT_EQ(numbers(), numbersBefore);
    generator.getChords()[0]->notes[2]->number = 69;
    generator.changeChords();
    EXPECT_EQ(lists(), before);
    EXPECT_EQ(numbers(), numbersBefore);
}

TEST_F(MIDIClipGeneratorPhrasesTest, MinusOneMakesAWholeNewArrangement)
{
    const auto mixer = generator.phraseMixer;
    generator.makePhrase(-1, 0);
    EXPECT_NE(generator.phraseMixer, mixer);
    EXPECT_FALSE(generator.getPhrase(-1).empty());
    MIDIClipGenerator fresh;
    fresh.makePhrase(-1, 0);
    EXPECT_FALSE(fresh.getPhrase(-1).empty());
}

TEST_F(MIDIClipGeneratorPhrasesTest, OtherChannelsChangeNothing)
{
    MIDIClipGenerator fresh;
    for (const int channel : {3, 4, 5, 6, 7, 11, 12, 13, 15, 16, 100, -2}) {
        makeAlone(channel, {});
        fresh.makePhrase(channel, 0);
        EXPECT_EQ(fresh.phraseMixer, nullptr);
    }
    EXPECT_TRUE(console.take().empty());
}

TEST_F(MIDIClipGeneratorPhrasesTest, EditedChordsAreFollowedAndMixed)
{
    const auto drumming = generator.getPhrase(9);
    const auto rhythm = generator.getPhrase(10);
    const auto sequence = generator.phraseMixer->sequence;
    generator.phraseMixer->phraseTrack0->loadedEvents[0]->number = 66;
    generator.getChords()[0]->notes[2]->number = 69;
    ScriptedRandomSource source({});
    generator.changeChords();
    EXPECT_EQ(shortNamesOf(*generator.phraseMixer->chordTrack), (std::vector<std::string>{"Am", "FM"}));
    EXPECT_EQ(numbersOf(generator.getPhrase(0)), (Numbers{60, 64, 69, 65, 69, 60}));
    EXPECT_EQ(numbersOf(generator.getPhrase(1)), (Numbers{69, 65}));
    EXPECT_EQ(numbersOf(generator.getPhrase(2)), (Numbers{52, 53}));
    EXPECT_EQ(generator.getPhrase(9), drumming);
    EXPECT_EQ(generator.getPhrase(10), rhythm);
    EXPECT_NE(generator.phraseMixer->sequence, sequence);
    EXPECT_EQ(generator.getPhrase(-1).size(), 78U);
    EXPECT_TRUE(source.ranges.empty());
}

TEST_F(MIDIClipGeneratorPhrasesTest, AllFollowersFollowEditedChords)
{
    for (const auto& chord : generator.getChords()) {
        chord->notes = {noteAt(chord->position, 61, 1.0)};
    }
    generator.changeChords();
    for (const int channel : {1, 2, 8, 14}) {
        for (const auto& event : generator.getPhrase(channel)) {
            ASSERT_EQ(event->number % 12, 1) << channel;
        }
    }
}

} // namespace
} // namespace volvelle
