#include "base/Checked.h"
#include "tests/phrases/PhraseFiles.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/phrases/Probes.h"
#include "tests/support/ConsoleCapture.h"

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;
using Names = std::vector<std::string>;
using Probe = MIDIChordPhraseProbe;

const std::string notYet = "MIDIChordPhrase: Warning: No exact chord match yet (possibly precalculation).";
const std::string noChord = "MIDIChordPhrase: Warning: No chord detected.";

class MIDIChordPhraseTest : public testing::Test {
protected:
    void build(const PhraseEvents& events)
    {
        phrase->loadedEvents = events;
        phrase->buildChords();
    }

    std::vector<double> chordPositions() const
    {
        std::vector<double> positions;
        for (const auto& chord : phrase->chords) {
            positions.push_back(chord->position);
        }
        return positions;
    }

    ConsoleCapture console;
    std::shared_ptr<MIDIChordPhrase> phrase = MIDIChordPhrase::make();
};

using MIDIChordPhraseDeathTest = MIDIChordPhraseTest;

TEST_F(MIDIChordPhraseTest, ANewOneIsNoMasterAndHasNoChords)
{
    EXPECT_FALSE(phrase->isMasterTrack);
    EXPECT_TRUE(phrase->chords.empty());
    EXPECT_EQ(MIDIChordPhrase::DONOTOVERLAPP, 0.0001);
    EXPECT_EQ(MIDIChordPhrase::MINDURATION, 0.03125);
    EXPECT_EQ(phrase->channel, 0);
    EXPECT_EQ(phrase->baseC, 60);
}

TEST_F(MIDIChordPhraseTest, AllShareOneCatalogue)
{
    EXPECT_EQ(&MIDIChordPhrase::chordRules(), &MIDIChordPhrase::chordRules());
    EXPECT_EQ(MIDIChordPhrase::chordRules().rules.at(0)->shortName, "C8");
}

TEST_F(MIDIChordPhraseTest, ATriadIsFoundAtItsThirdNote)
{
    build({noteAt(0.0, 60), noteAt(0.0, 64), noteAt(0.0, 67)});
    EXPECT_EQ(console.take(), (Lines{"Following chord rule was detected: C (8) Base Key at 0.0.", notYet,
                                     "Following chord rule was detected: C Major at 0.0."}));
    EXPECT_EQ(shortNamesOf(*phrase), Names{"CM"});
    EXPECT_EQ(numbersOf(phrase->chords[0]->notes), (std::vector<int>{67, 60}));
}

TEST_F(MIDIChordPhraseTest, AFoundRuleIsACopyOfTheCatalogues)
{
    build({noteAt(0.0, 60)});
    const auto& own = *phrase->chords.at(0)->nrule;
    const auto& source = *MIDIChordPhrase::chordRules().rules.at(0);
    EXPECT_NE(&own, &source);
    EXPECT_EQ(own.index, source.index);
    EXPECT_EQ(own.inversion, source.inversion);
    EXPECT_EQ(own.shortName, source.shortName);
    EXPECT_EQ(own.longName, source.longName);
    EXPECT_EQ(own.rule, source.rule);
}

TEST_F(MIDIChordPhraseTest, SingleNotesGiveAChordEach)
{
    const PhraseEvents notes = played({{0.0, 64}, {1.0, 64}, {2.0, 67}, {3.0, 76}, {4.0, 64}});
    build(notes);
    EXPECT_EQ(shortNamesOf(*phrase), (Names{"E8", "E8", "G8", "E8", "E8"}));
    phrase->isMasterTrack = true;
    build(notes);
    EXPECT_EQ(shortNamesOf(*phrase), (Names{"E8", "G8", "E8"}));
    EXPECT_EQ(chordPositions(), (std::vector<double>{0.0, 2.0, 3.0}));
}

TEST_F(MIDIChordPhraseTest, AFifthAndAFourthAreChords)
{
    build({noteAt(0.0, 60), noteAt(1.0, 67)});
    EXPECT_EQ(shortNamesOf(*phrase), (Names{"C8", "C5"}));
    build({noteAt(0.0, 60), noteAt(1.0, 65)});
    EXPECT_EQ(shortNamesOf(*phrase), (Names{"C8", "F5"}));
}

TEST_F(MIDIChordPhraseTest, OtherPairsAreNone)
{
    for (const auto& [number, line] : std::vector<std::pair<int, std::string>>{{61, noChord},
                                                                               {62, notYet},
                                                                               {63, notYet},
                                                                               {64, notYet},
                                                                               {66, noChord},
                                                                               {68, notYet},
                                                                               {69, notYet}}) {
        build({noteAt(0.0, 60), noteAt(1.0, number)});
        EXPECT_EQ(console.take(), (Lines{"Following chord rule was detected: C (8) Base Key at 0.0.", line}))
            << number;
        EXPECT_EQ(shortNamesOf(*phrase), Names{"C8"});
    }
}

TEST_F(MIDIChordPhraseTest, FiveOrMoreDifferentPitchClassesAreNone)
{
    const PhraseEvents four{noteAt(0.0, 57), noteAt(0.0, 60), noteAt(0.0, 64), noteAt(0.0, 67)};
    build(four);
    EXPECT_EQ(shortNamesOf(*phrase), Names{"Am7"});
    const Lines lines = console.take();
    for (const std::vector<int>& more : std::vector<std::vector<int>>{{62}, {62, 65}, {62, 65, 71}}) {
        PhraseEvents notes = four;
        Lines expected = lines;
        for (const int number : more) {
            notes.push_back(noteAt(1.0, number));
            expected.push_back(noChord);
        }
        build(notes);
        EXPECT_EQ(shortNamesOf(*phrase), Names{"Am7"});
        EXPECT_EQ(console.take(), expected);
    }
}

TEST_F(MIDIChordPhraseTest, ANoteOfAPitchClassThatSoundsKeepsTheChord)
{
    build({noteAt(0.0, 57), noteAt(0.0, 60), noteAt(0.0, 64), noteAt(0.0, 67), noteAt(1.0, 69)});
    EXPECT_EQ(shortNamesOf(*phrase), (Names{"Am7", "Am7"}));
}

TEST_F(MIDIChordPhraseTest, AHeldNoteCountsUntilItsEnd)
{
    build({noteAt(0.0, 60), noteAt(4.0, 64), noteAt(4.0, 67), eventOf(2, 5.0, 60), eventOf(2, 5.0, 64),
           noteAt(5.0, 74)});
    EXPECT_EQ(shortNamesOf(*phrase), (Names{"C8", "CM", "G5"}));
    EXPECT_EQ(chordPositions(), (std::vector<double>{0.0, 4.0, 5.0}));
}

TEST_F(MIDIChordPhraseTest, AnEndTakesTheFirstEqualNumberAway)
{
    build({noteAt(0.0, 60), noteAt(0.0, 60), eventOf(2, 1.0, 60), eventOf(2, 1.0, 99), eventOf(3, 1.0, 60),
           noteAt(2.0, 67)});
    EXPECT_EQ(shortNamesOf(*phrase), (Names{"C8", "C5"}));
}

TEST_F(MIDIChordPhraseTest, ChordsStandOnTheGridUnlessItIsOff)
{
    const PhraseEvents notes{noteAt(0.9, 60), eventOf(2, 1.0, 60), noteAt(2.1, 67), eventOf(2, 3.0, 67),
                             noteAt(3.125, 62)};
    build(notes);
    EXPECT_EQ(chordPositions(), (std::vector<double>{1.0, 2.0, 3.25}));
    EXPECT_EQ(notes[0]->position, 0.9);
    phrase->quantizePrecision = 1.0;
    build(notes);
    EXPECT_EQ(chordPositions(), (std::vector<double>{1.0, 2.0, 3.0}));
    phrase->quantizesEvents = false;
    build(notes);
    EXPECT_EQ(chordPositions(), (std::vector<double>{0.9, 2.1, 3.125}));
}

TEST_F(MIDIChordPhraseTest, PositionsOneTenthBesideABeatMeetOnIt)
{
    build({noteAt(0.9, 60), eventOf(2, 1.0, 60), noteAt(1.1, 67)});
    EXPECT_EQ(chordPositions(), std::vector<double>{1.0});
    EXPECT_EQ(shortNamesOf(*phrase), Names{"C8"});
    EXPECT_EQ(console.take(), (Lines{"Following chord rule was detected: C (8) Base Key at 1.0.",
                                     "Following chord rule was detected: G (8) Base Key at 1.0.",
                                     "Warning: Multiple chords at position 1.0 were filtered out."}));
}

TEST_F(MIDIChordPhraseTest, OfTwoChordsAtOnePositionTheLargerStays)
{
    const auto small = chordAt(2.0, ruleNamed("C5"));
    const auto large = chordAt(2.0, ruleNamed("CM"));
    small->notes = {noteAt(2.0, 60)};
    large->notes = {noteAt(2.0, 67)};
    Probe::addChordOf(*phrase, small);
    Probe::addChordOf(*phrase, large);
    EXPECT_EQ(shortNamesOf(*phrase), Names{"CM"});
    EXPECT_EQ(numbersOf(large->notes), (std::vector<int>{67, 60}));
    Probe::addChordOf(*phrase, small);
    EXPECT_EQ(shortNamesOf(*phrase), Names{"CM"});
    EXPECT_EQ(numbersOf(large->notes), (std::vector<int>{67, 60}));
    EXPECT_EQ(numbersOf(small->notes), (std::vector<int>{60, 67, 60}));
    EXPECT_EQ(console.take(), Lines{"Warning: Multiple chords at position 2.0 were filtered out."});
}

TEST_F(MIDIChordPhraseTest, ChordsWithoutRulesAtOnePositionAreTold)
{
    Probe::addChordOf(*phrase, chordAt(0.0, ruleNamed("CM")));
    Probe::addChordOf(*phrase, chordAt(0.0, nullptr));
    EXPECT_EQ(console.take(), (Lines{"MIDIChordPhrase: Warning: A chord without a rule.",
                                     "Warning: Multiple chords at position 0.0 were filtered out."}));
    Probe::addChordOf(*phrase, chordAt(4.0, nullptr));
    EXPECT_EQ(console.take(), Lines{});
    Probe::addChordOf(*phrase, chordAt(4.0, ruleNamed("CM")));
    EXPECT_EQ(console.take(), (Lines{"MIDIChordPhrase: Warning: A chord without a rule in chords array.",
                                     "Warning: Multiple chords at position 4.0 were filtered out."}));
    EXPECT_EQ(shortNamesOf(*phrase), (Names{"CM", "none"}));
}

TEST_F(MIDIChordPhraseTest, AReplacedChordNeedNotBeTheLast)
{
    phrase->chords = {chordAt(0.0, ruleNamed("C8")), chordAt(4.0, ruleNamed("F8"))};
    Probe::addChordOf(*phrase, chordAt(0.0, ruleNamed("CM")));
    EXPECT_EQ(shortNamesOf(*phrase), (Names{"F8", "CM"}));
    EXPECT_EQ(console.take(), Lines{});
}

TEST_F(MIDIChordPhraseTest, RepetitionsAreTakenOutUntilAnotherChordLiesBetween)
{
    const auto repeated = chordAt(1.0, ruleNamed("CM"));
    phrase->chords = {chordAt(0.0, ruleNamed("CM")), repeated, chordAt(2.0, ruleNamed("FM")),
                      chordAt(3.0, ruleNamed("CM"))};
    Probe::reduceChordsOf(*phrase);
    EXPECT_EQ(shortNamesOf(*phrase), (Names{"CM", "FM", "CM"}));
    EXPECT_EQ(chordPositions(), (std::vector<double>{0.0, 2.0, 3.0}));
    EXPECT_EQ(repeated->nrule, nullptr);
}

TEST_F(MIDIChordPhraseTest, AFirstChordOutsideTheCatalogueIsTakenOutToo)
{
    phrase->chords = {chordAt(0.0, ruleOf({0, 4, 7})), chordAt(2.0, ruleNamed("FM"))};
    Probe::reduceChordsOf(*phrase);
    EXPECT_EQ(shortNamesOf(*phrase), Names{"FM"});
}

TEST_F(MIDIChordPhraseTest, PositionsAreClosedByTheEndAndSetTheDurations)
{
    EXPECT_EQ(phrase->getChordPositions(), std::vector<double>{16.0});
    for (const double position : {0.0, 4.0, 8.0}) {
        phrase->chords.push_back(chordAt(position, ruleNamed("CM")));
    }
    EXPECT_EQ(phrase->getChordPositions(), (std::vector<double>{0.0, 4.0, 8.0, 16.0}));
    EXPECT_EQ(phrase->chords[0]->duration, 4.0);
    EXPECT_EQ(phrase->chords[1]->duration, 4.0);
    EXPECT_EQ(phrase->chords[2]->duration, 8.0);
}

TEST_F(MIDIChordPhraseTest, ALoadBuildsTheChordsOfTheTransposedFile)
{
    const TemporaryFolder folder;
    writeFile(folder.path / "a.mid", {struck(0.0, {60, 64, 67}), {}, {}});
    phrase->isMasterTrack = true;
    phrase->loadPhrase(folder.path / "a.mid", 2);
    EXPECT_EQ(shortNamesOf(*phrase), Names{"DM"});
    EXPECT_EQ(numbersOf(phrase->generatedEvents), (std::vector<int>{62, 66, 69}));
    EXPECT_EQ(phrase->loadedEvents.size(), 6U);
    phrase->savePhrase(folder.path / "b.mid");
    phrase->loadPhrase(folder.path / "b.mid", 0);
    EXPECT_EQ(shortNamesOf(*phrase), Names{"CM"});
}

TEST_F(MIDIChordPhraseTest, AMissingFileStillRebuildsTheChordsFromTheOldEvents)
{
    phrase->loadedEvents = {noteAt(0.0, 60)};
    phrase->loadPhrase("none.mid", 3);
    EXPECT_EQ(console.take(), (Lines{"MIDIPhrase: Error: The pattern file does not exist.",
                                     "Following chord rule was detected: C (8) Base Key at 0.0."}));
    EXPECT_EQ(shortNamesOf(*phrase), Names{"C8"});
    EXPECT_EQ(numbersOf(phrase->generatedEvents), std::vector<int>{60});
}

TEST_F(MIDIChordPhraseTest, WithoutNotesThereAreNoChords)
{
    phrase->chords = {chordAt(0.0, ruleNamed("CM"))};
    phrase->generatedEvents = {noteAt(0.0, 60)};
    build({});
    EXPECT_TRUE(phrase->chords.empty());
    EXPECT_TRUE(phrase->generatedEvents.empty());
    EXPECT_EQ(console.take(), Lines{});
}

class MIDIChordPhraseFoundRuleTest : public MIDIChordPhraseTest {
protected:
    // The rule that a chord at beat 2 gets for these notes.
    std::shared_ptr<ChordRule> ruleFor(const std::vector<int>& numbers)
    {
        ChordEvent chord;
        chord.position = 2.0;
        for (const int number : numbers) {
            chord.notes.push_back(noteAt(2.0, number));
        }
        const auto rule = phrase->findChordRule(chord);
        EXPECT_EQ(rule, chord.nrule);
        EXPECT_TRUE(phrase->chords.empty());
        return rule;
    }
};

TEST_F(MIDIChordPhraseFoundRuleTest, AnExactMatchIsCopied)
{
    const auto rule = ruleFor({67, 60, 76});
    EXPECT_EQ(rule->shortName, "CM");
    EXPECT_EQ(rule->index, ruleNamed("CM")->index);
    EXPECT_EQ(rule->rule, (std::vector<int>{0, 4, 7}));
    EXPECT_EQ(console.take(), Lines{"MIDIChordPhrase::findChordRule() : Following chord rule was detected: C "
                                    "Major at 2.0."});
}

TEST_F(MIDIChordPhraseFoundRuleTest, WithoutAnExactMatchTheLatestStandsIn)
{
    const auto rule = ruleFor({60, 64});
    EXPECT_EQ(rule->shortName, "(?)C7");
    EXPECT_EQ(rule->longName, "(?)C 7th");
    EXPECT_EQ(rule->rule, (std::vector<int>{0, 4, 7, 10}));
    EXPECT_EQ(rule->index, ruleNamed("C7")->index);
    EXPECT_EQ(rule->inversion, 0);
    EXPECT_EQ(console.take(), Lines{"MIDIChordPhrase::findChordRule() : Warning: No exact chord match."});
}

TEST_F(MIDIChordPhraseFoundRuleTest, WithoutAMatchTheNotesThemselvesStandIn)
{
    const auto rule = ruleFor({61, 60, 73});
    EXPECT_EQ(rule->index, -1);
    EXPECT_EQ(rule->inversion, 0);
    EXPECT_EQ(rule->shortName, "???");
    EXPECT_EQ(rule->longName, "NO CHORD");
    EXPECT_EQ(rule->rule, (std::vector<int>{1, 0, 1}));
    EXPECT_EQ(console.take(), Lines{"MIDIChordPhrase::findChordRule() : Warning: No chord detected."});
}

TEST_F(MIDIChordPhraseFoundRuleTest, WithoutNotesTheRuleIsEmpty)
{
    const auto rule = ruleFor({});
    EXPECT_EQ(rule->longName, "NO CHORD");
    EXPECT_TRUE(rule->rule.empty());
    EXPECT_EQ(console.take(), Lines{"MIDIChordPhrase::findChordRule() : Warning: No chord detected."});
}

TEST_F(MIDIChordPhraseDeathTest, ReducingAChordWithoutARuleStops)
{
    phrase->chords = {chordAt(0.0, nullptr)};
    EXPECT_DEATH(Probe::reduceChordsOf(*phrase), onlyLine(nilMessage));
}

} // namespace
} // namespace volvelle
