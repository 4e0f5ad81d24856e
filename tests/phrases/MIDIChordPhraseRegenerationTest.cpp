#include "base/Checked.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/phrases/Probes.h"
#include "tests/support/ConsoleCapture.h"

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;
using Numbers = std::vector<int>;

class MIDIChordPhraseRegenerationTest : public testing::Test {
protected:
    std::shared_ptr<MIDIChordPhrase> masterOf(const std::vector<std::pair<double, std::string>>& chords)
    {
        auto phrase = chordTrackOf(chords);
        phrase->isMasterTrack = true;
        return phrase;
    }

    ConsoleCapture console;
};

using MIDIChordPhraseRegenerationDeathTest = MIDIChordPhraseRegenerationTest;

TEST_F(MIDIChordPhraseRegenerationTest, AMasterPlaysBlockChordsUpToTheNext)
{
    const auto phrase = masterOf({{0.0, "CM"}, {4.0, "GM"}});
    phrase->chords[0]->notes = {noteAt(0.0, 1)};
    phrase->generatedEvents = {noteAt(0.0, 1)};
    phrase->channel = 6;
    phrase->regenerateEvents();
    const auto& events = phrase->generatedEvents;
    EXPECT_EQ(numbersOf(events), (Numbers{60, 64, 67, 67, 71, 62}));
    EXPECT_EQ(positionsOf(events), (std::vector<double>{0.0, 0.0, 0.0, 4.0, 4.0, 4.0}));
    EXPECT_EQ(listOf(events, &PhraseEvent::id), (Numbers{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(listOf(events, &PhraseEvent::type), Numbers(6, 1));
    EXPECT_EQ(listOf(events, &PhraseEvent::channel), Numbers(6, 6));
    EXPECT_EQ(listOf(events, &PhraseEvent::value), Numbers(6, 100));
    EXPECT_EQ(listOf(events, &PhraseEvent::value2), Numbers(6, 0));
    for (std::size_t i = 0; i < events.size(); ++i) {
        EXPECT_DOUBLE_EQ(events[i]->duration, i < 3 ? 3.9999 : 11.9999);
    }
    EXPECT_EQ(phrase->chords[0]->notes, PhraseEvents(events.begin(), events.begin() + 3));
    EXPECT_EQ(phrase->chords[1]->notes, PhraseEvents(events.begin() + 3, events.end()));
    EXPECT_EQ(phrase->chords[0]->duration, 0.0);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDIChordPhraseRegenerationTest, TheFoldKeepsChordsWithinAnOctaveAboveTheReference)
{
    const auto phrase = masterOf({{0.0, "Am"}});
    phrase->regenerateEvents();
    EXPECT_EQ(numbersOf(phrase->generatedEvents), (Numbers{69, 60, 64}));
    phrase->baseC = 48;
    phrase->regenerateEvents();
    EXPECT_EQ(numbersOf(phrase->generatedEvents), (Numbers{57, 48, 52}));
}

TEST_F(MIDIChordPhraseRegenerationTest, ASumAboveTheKeysFoldsByAHundredAndTwentySeven)
{
    const auto phrase = MIDIChordPhrase::make();
    phrase->chords = {chordAt(0.0, ruleOf({70, 67, 68, 195}))};
    phrase->regenerateEvents();
    EXPECT_EQ(numbersOf(phrase->generatedEvents), (Numbers{3, 127, 1, 128}));
}

TEST_F(MIDIChordPhraseRegenerationTest, AChordTooShortIsToldForEachToneAndDoesNotSound)
{
    const auto phrase = masterOf({{1.0, "CM"}, {1.03, "FM"}});
    phrase->chords[0]->notes = {noteAt(1.0, 60)};
    phrase->regenerateEvents();
    EXPECT_EQ(numbersOf(phrase->generatedEvents), (Numbers{65, 69, 60}));
    EXPECT_EQ(listOf(phrase->generatedEvents, &PhraseEvent::id), (Numbers{3, 4, 5}));
    EXPECT_TRUE(phrase->chords[0]->notes.empty());
    const std::string line = "Warning: A chord event is too short 0.029900000000000027 and filtered out.";
    EXPECT_EQ(console.take(), (Lines{line, line, line}));
}

TEST_F(MIDIChordPhraseRegenerationTest, TheShortestChordIsKept)
{
    const auto phrase = masterOf({{0.0, "CM"}, {0.03135, "FM"}});
    phrase->regenerateEvents();
    ASSERT_EQ(phrase->generatedEvents.size(), 6U);
    EXPECT_EQ(phrase->generatedEvents[0]->duration, 0.03125);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDIChordPhraseRegenerationTest, AChordWithoutASpanIsDroppedWithoutAWord)
{
    const auto phrase = masterOf({{4.0, "CM"}, {4.0, "FM"}, {2.0, "GM"}, {16.0, "Am"}});
    phrase->regenerateEvents();
    EXPECT_EQ(numbersOf(phrase->generatedEvents), (Numbers{67, 71, 62}));
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDIChordPhraseRegenerationTest, ElsewhereTheChordsNotesGiveTheDurations)
{
    const auto phrase = chordTrackOf({{0.0, "CM"}, {4.0, "FM"}, {8.0, "GM"}});
    phrase->chords[0]->notes = {noteAt(0.0, 60, 2.0)};
    phrase->chords[2]->notes = {noteAt(0.0, 60, 1.0), noteAt(0.0, 64, 3.0), noteAt(0.0, 67, 5.0),
                                noteAt(0.0, 9, 7.0)};
    phrase->regenerateEvents();
    EXPECT_EQ(listOf(phrase->generatedEvents, &PhraseEvent::duration),
              (std::vector<double>{2.0, 2.0, 2.0, 0.25, 0.25, 0.25, 1.0, 3.0, 5.0}));
    EXPECT_EQ(phrase->chords[0]->notes.size(), 1U);
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDIChordPhraseRegenerationTest, APlaceBehindThePositionsIsAWarning)
{
    const auto phrase = masterOf({{0.0, "CM"}});
    MIDIChordPhraseProbe::keepChordNoteOf(*phrase, *phrase->chords[0], noteAt(0.0, 60), 0, {0.0});
    EXPECT_EQ(console.take(), Lines{"Warning: The position is out of index."});
    EXPECT_TRUE(phrase->generatedEvents.empty());
}

TEST_F(MIDIChordPhraseRegenerationTest, EditedNotesGiveNewRulesAndStandInAllLists)
{
    const auto phrase = masterOf({{0.0, "CM"}, {4.0, "FM"}});
    phrase->regenerateEvents();
    console.take();
    phrase->chords[0]->notes[2]->number = 69;
    phrase->loadedEvents = {noteAt(9.0, 9)};
    phrase->updateChordEvents();
    EXPECT_EQ(shortNamesOf(*phrase), (std::vector<std::string>{"Am", "FM"}));
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (Numbers{60, 64, 69, 65, 69, 60}));
    EXPECT_EQ(phrase->loadedEvents, phrase->generatedEvents);
    EXPECT_EQ(phrase->chords[0]->notes[2], phrase->loadedEvents[2]);
    EXPECT_EQ(phrase->chords[1]->position, 4.0);
    EXPECT_EQ(
        console.take(),
        (Lines{"MIDIChordPhrase::findChordRule() : Following chord rule was detected: A Minor at 0.0.",
               "MIDIChordPhrase::findChordRule() : Following chord rule was detected: F Major at 4.0."}));
}

TEST_F(MIDIChordPhraseRegenerationTest, AChordThatWasTooShortEndsAsNoChord)
{
    const auto phrase = masterOf({{1.0, "CM"}, {1.03, "FM"}});
    phrase->regenerateEvents();
    phrase->updateChordEvents();
    EXPECT_EQ(phrase->chords[0]->nrule->longName, "NO CHORD");
    EXPECT_TRUE(phrase->chords[0]->nrule->rule.empty());
    EXPECT_EQ(shortNamesOf(*phrase), (std::vector<std::string>{"???", "FM"}));
    EXPECT_EQ(phrase->generatedEvents.size(), 3U);
}

TEST_F(MIDIChordPhraseRegenerationTest, WithoutChordsAnUpdateEmptiesBothLists)
{
    const auto phrase = MIDIChordPhrase::make();
    phrase->loadedEvents = {noteAt(0.0, 60)};
    phrase->generatedEvents = {noteAt(0.0, 60)};
    phrase->updateChordEvents();
    EXPECT_TRUE(phrase->loadedEvents.empty());
    EXPECT_TRUE(phrase->generatedEvents.empty());
}

TEST_F(MIDIChordPhraseRegenerationDeathTest, AChordWithoutARuleStops)
{
    const auto phrase = MIDIChordPhrase::make();
    phrase->chords = {chordAt(0.0, nullptr)};
    EXPECT_DEATH(phrase->regenerateEvents(), onlyLine(nilMessage));
}

TEST_F(MIDIChordPhraseRegenerationDeathTest, ATonePlusTheReferenceThatIsNoByteStops)
{
    const auto phrase = MIDIChordPhrase::make();
    phrase->chords = {chordAt(0.0, ruleOf({196}))};
    EXPECT_DEATH(phrase->regenerateEvents(), onlyLine(arithmeticMessage));
    for (const int tone : {-1, 256}) {
        phrase->chords = {chordAt(0.0, ruleOf({tone}))};
        EXPECT_DEATH(phrase->regenerateEvents(), onlyLine(conversionMessage));
    }
}

TEST_F(MIDIChordPhraseRegenerationDeathTest, AChannelThatIsNoByteStops)
{
    const auto phrase = chordTrackOf({{0.0, "CM"}});
    for (const int channel : {-1, 256}) {
        phrase->channel = channel;
        EXPECT_DEATH(phrase->regenerateEvents(), onlyLine(conversionMessage));
    }
}

} // namespace
} // namespace volvelle
