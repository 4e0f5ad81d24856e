#include "tests/support/ConsoleCapture.h"
#include "tests/support/ScriptedRandomSource.h"
#include "theory/MIDINotes.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace volvelle {
namespace {

using Lines = std::vector<std::string>;
using Numbers = std::vector<int>;
using test::ConsoleCapture;
using test::ScriptedRandomSource;

constexpr int upward = 0;
constexpr int downward = 1;

Lines namesOf(const std::vector<std::shared_ptr<ChordRule>>& rules)
{
    Lines names;
    for (const auto& rule : rules) {
        names.push_back(rule->shortName);
    }
    return names;
}

std::string exactName(ChordRules& rules, const Numbers& notes)
{
    const auto match = rules.getExactMatch(rules.findMatches(notes));
    return match ? match->shortName : "none";
}

Numbers transposed(const std::string& name, const Numbers& notes, int direction)
{
    const ScriptedRandomSource random({direction});
    ChordRules rules;
    const auto rule =
        std::ranges::find_if(rules.rules, [&name](const auto& other) { return other->shortName == name; });
    const Numbers result = rules.transpose(**rule, notes);
    EXPECT_EQ(random.ranges, (std::vector<std::pair<int, int>>{{0, 1}}));
    return result;
}

TEST(ChordRule, StartsOutsideTheCatalogue)
{
    const ChordRule rule;
    EXPECT_EQ(rule.index, -1);
    EXPECT_EQ(rule.shortName, "");
    EXPECT_EQ(rule.longName, "");
    EXPECT_EQ(rule.inversion, 0);
    EXPECT_TRUE(rule.rule.empty());
}

TEST(ChordRules, HoldFourteenTypesInTwelveKeys)
{
    const ChordRules rules;
    ASSERT_EQ(rules.rules.size(), 168U);
    for (std::size_t i = 0; i < 168; ++i) {
        const ChordRule& rule = *rules.rules[i];
        const int row = static_cast<int>(i) / 12;
        const int key = static_cast<int>(i) % 12;
        EXPECT_EQ(rule.index, static_cast<int>(i));
        EXPECT_EQ(rule.inversion, 0);
        EXPECT_EQ(rule.shortName, EnumMIDINotes::getName(key) + EnumMIDIChords::getShortName(row));
        EXPECT_EQ(rule.longName, EnumMIDINotes::getName(key) + " " + EnumMIDIChords::getLongName(row));
        EXPECT_EQ(rule.rule.front(), key);
        EXPECT_EQ(rule.rule.size(), EnumMIDIChords::getRule(row).size());
    }
}

TEST(ChordRules, StandByTypeAndThenByKey)
{
    const ChordRules rules;
    const std::vector<std::pair<std::size_t, std::string>> names = {
        {0, "C8"}, {1, "C#8"}, {12, "C5"}, {24, "CM"}, {33, "AM"}, {36, "Cm"}, {167, "Bo7"}};
    for (const auto& [index, name] : names) {
        EXPECT_EQ(rules.rules[index]->shortName, name);
    }
    EXPECT_EQ(rules.rules[24]->longName, "C Major");
    EXPECT_EQ(rules.rules[24]->rule, (Numbers{0, 4, 7}));
    EXPECT_EQ(rules.rules[33]->rule, (Numbers{9, 1, 4}));
    EXPECT_EQ(rules.rules[45]->shortName, "Am");
    EXPECT_EQ(rules.rules[45]->rule, (Numbers{9, 0, 4}));
    EXPECT_EQ(rules.rules[145]->longName, "C# Minor 7th");
}

TEST(ChordRules, FindNothingForNoNotes)
{
    ConsoleCapture capture;
    ChordRules rules;
    rules.findMatches({60});
    EXPECT_TRUE(rules.findMatches({}).empty());
    EXPECT_EQ(rules.getMatchingIndex(), -1);
    EXPECT_TRUE(capture.take().empty());
}

TEST(ChordRules, FindAllRulesOnTheRootOfASingleNote)
{
    ChordRules rules;
    const auto matches = rules.findMatches({60});
    EXPECT_EQ(namesOf(matches), (Lines{"C8", "C5", "CM", "Cm", "Co", "C+", "Csus2", "Csus4", "C-5", "C6",
                                       "Cm6", "C7", "Cm7", "Co7"}));
    EXPECT_EQ(rules.getMatchingIndex(), 0);
    EXPECT_EQ(rules.getExactMatch(matches), matches[0]);
    EXPECT_EQ(matches[0], rules.rules[0]);
}

TEST(ChordRules, ReduceNotesToTheirPitchClasses)
{
    ChordRules rules;
    EXPECT_EQ(rules.reduceToOctave({60, 72, 67}), (Numbers{0, 7}));
    EXPECT_EQ(rules.getOctavePattern(), (Numbers{2, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0}));
    EXPECT_EQ(exactName(rules, {60, 72, 67}), "C5");
}

TEST(ChordRules, MatchByTheLeadingElementsOnly)
{
    ChordRules rules;
    EXPECT_EQ(namesOf(rules.findMatches({64, 67})), (Lines{"Em", "Eo", "Em6", "Em7", "Eo7"}));
    EXPECT_EQ(rules.getMatchingIndex(), -1);
    EXPECT_EQ(rules.getExactMatch(rules.rules), nullptr);
    const Lines matches = namesOf(rules.findMatches({60, 64}));
    EXPECT_EQ(matches.front(), "CM");
}

TEST(ChordRules, TakeTheLastOfSeveralExactMatches)
{
    ChordRules rules;
    EXPECT_EQ(exactName(rules, {60, 64, 67, 69}), "Am7");
    EXPECT_EQ(exactName(rules, {60, 62, 67}), "Gsus4");
    EXPECT_EQ(exactName(rules, {60, 65, 67}), "Csus4");
    EXPECT_EQ(exactName(rules, {60, 64, 68}), "G#+");
    EXPECT_EQ(exactName(rules, {60, 63, 66, 69}), "Ao7");
    EXPECT_EQ(exactName(rules, {64, 67, 72}), "CM");
}

TEST(ChordRules, FindMatchesOfWhatTheirReductionGives)
{
    class OtherReduction : public ChordRules {
    public:
        Numbers reduceToOctave(const Numbers& notes) override
        {
            reduced.push_back(notes);
            return pattern;
        }

        Numbers pattern;
        std::vector<Numbers> reduced;
    } rules;

    EXPECT_TRUE(rules.findMatches({60}).empty());
    EXPECT_TRUE(rules.findMatches({}).empty());
    rules.pattern = {2, 6, 9};
    EXPECT_EQ(exactName(rules, {61}), "DM");
    EXPECT_EQ(rules.reduced, (std::vector<Numbers>{{60}, {61}}));
}

TEST(ChordRules, FindNothingForFivePitchClasses)
{
    ChordRules rules;
    EXPECT_TRUE(rules.findMatches({60, 62, 64, 65, 67}).empty());
    EXPECT_EQ(rules.getMatchingIndex(), -1);
}

TEST(ChordRules, GiveNoExactMatchBeyondTheGivenRules)
{
    ChordRules rules;
    const auto matches = rules.findMatches({60, 64, 67, 69});
    ASSERT_GT(rules.getMatchingIndex(), 0);
    EXPECT_EQ(rules.getExactMatch({matches[0]}), nullptr);
    EXPECT_EQ(rules.getExactMatch({}), nullptr);
}

// The search as it reads: whether each leading element of a rule stands in the pattern.
Lines plainMatches(ChordRules& rules, const Numbers& notes, int& exact)
{
    const Numbers pattern = rules.reduceToOctave(notes);
    Lines names;
    exact = -1;
    for (const auto& rule : rules.rules) {
        if (rule->rule.size() < pattern.size()) {
            continue;
        }
        const auto end = rule->rule.begin() + static_cast<std::ptrdiff_t>(pattern.size());
        if (std::all_of(rule->rule.begin(), end, [&pattern](int element) {
                return std::ranges::find(pattern, element) != pattern.end();
            })) {
            exact = rule->rule.size() == pattern.size() ? static_cast<int>(names.size()) : exact;
            names.push_back(rule->shortName);
        }
    }
    return names;
}

TEST(ChordRules, FindTheSameAsAPlainSearchForEverySetOfPitchClasses)
{
    ChordRules rules;
    for (unsigned set = 1; set < 4096; ++set) {
        Numbers notes;
        for (int i = 0; i < 12; ++i) {
            if ((set >> static_cast<unsigned>(i) & 1U) != 0) {
                notes.push_back(60 + i);
            }
        }
        int exact = -1;
        const Lines expected = plainMatches(rules, notes, exact);
        ASSERT_EQ(namesOf(rules.findMatches(notes)), expected) << set;
        ASSERT_EQ(rules.getMatchingIndex(), exact) << set;
    }
}

TEST(ChordRules, WrapNotesOutOfRangeBy127)
{
    ChordRules rules;
    EXPECT_EQ(rules.reduceToOctave({128}), Numbers{1});
    EXPECT_EQ(rules.reduceToOctave({-1}), Numbers{6});
    for (int note = -600; note <= 600; ++note) {
        int wrapped = note;
        while (wrapped > 127) {
            wrapped -= 127;
        }
        while (wrapped < 0) {
            wrapped += 127;
        }
        ASSERT_EQ(rules.reduceToOctave({note}), Numbers{wrapped % 12}) << note;
    }
}

TEST(ChordRules, WarnOfAnEmptyReductionAndKeepTheLastPattern)
{
    ConsoleCapture capture;
    ChordRules rules;
    rules.reduceToOctave({61});
    EXPECT_TRUE(rules.reduceToOctave({}).empty());
    EXPECT_EQ(capture.take(), Lines{"Warning: The notes array is empty."});
    EXPECT_EQ(rules.getOctavePattern()[1], 1);
}

TEST(ChordRules, LeaveChordTonesWhereTheyAre)
{
    EXPECT_EQ(transposed("CM", {60, 64, 67}, upward), (Numbers{60, 64, 67}));
    EXPECT_EQ(transposed("CM", {60, 64, 67}, downward), (Numbers{60, 64, 67}));
}

TEST(ChordRules, MoveNotesToTheNearestFreeChordTone)
{
    EXPECT_EQ(transposed("CM", {61, 65, 68}, upward), (Numbers{64, 67, 72}));
    EXPECT_EQ(transposed("CM", {61, 65, 68}, downward), (Numbers{60, 64, 67}));
    EXPECT_EQ(transposed("CM", {60, 60, 60}, upward), (Numbers{60, 64, 67}));
    EXPECT_EQ(transposed("CM", {67, 60, 62}, downward), (Numbers{55, 60, 67}));
}

TEST(ChordRules, KnowAsManyChordTonesAsThereAreNotes)
{
    EXPECT_EQ(transposed("CM", {67, 67}, upward), (Numbers{72, 76}));
    EXPECT_EQ(transposed("CM", {67}, downward), Numbers{60});
    EXPECT_EQ(transposed("C5", {60, 60, 60}, upward), (Numbers{60, 67, 72}));
}

TEST(ChordRules, SkipTheOppositeEndWhenASearchWraps)
{
    EXPECT_EQ(transposed("C8", {121}, upward), Numbers{12});
    EXPECT_EQ(transposed("G8", {3}, downward), Numbers{115});
    EXPECT_EQ(transposed("F#8", {3}, downward), Numbers{126});
    EXPECT_EQ(transposed("C#8", {126}, upward), Numbers{1});
}

TEST(ChordRules, ShowTheKeysOfTheLastTransposition)
{
    const ScriptedRandomSource random({upward});
    ChordRules rules;
    EXPECT_EQ(rules.getCurrentKeys(), Numbers(128, 0));
    rules.transpose(*rules.rules[0], {61});
    const Numbers keys = rules.getCurrentKeys();
    EXPECT_EQ(keys[60], 1);
    EXPECT_EQ(keys[61], 0);
    EXPECT_EQ(keys[72], 2);
}

TEST(ChordRules, TransposeNoNotesToNone)
{
    EXPECT_TRUE(transposed("CM", {}, upward).empty());
}

TEST(ChordRules, LeaveANoteOf128Out)
{
    EXPECT_EQ(transposed("CM", {60, 128}, upward), Numbers{60});
    EXPECT_EQ(transposed("CM", {128}, downward), Numbers{});
}

TEST(ChordRulesDeathTest, StopAtNotesBeyondTheRange)
{
    ChordRules rules;
    EXPECT_DEATH(rules.transpose(*rules.rules[24], {129}), "Range requires lowerBound <= upperBound");
    EXPECT_DEATH(rules.transpose(*rules.rules[24], {-1}), "Index out of range");
}

TEST(ChordRulesDeathTest, StopASearchThatCanNeverEnd)
{
    ChordRules rules;
    EXPECT_DEATH(rules.transpose(ChordRule(), {60}), "A search that can never end was stopped");
    EXPECT_DEATH(rules.transpose(*rules.rules[0], Numbers(12, 60)),
                 "A search that can never end was stopped");
}

TEST(ChordRules, PrintTheCatalogueAtOnce)
{
    ConsoleCapture capture;
    ChordRules rules;
    rules.dumpout();
    const Lines lines = capture.take();
    ASSERT_EQ(lines.size(), 169U);
    EXPECT_EQ(lines[0], "The count of chord rules is: 168");
    EXPECT_EQ(lines[1], "0: C8, C (8) Base Key");
    EXPECT_EQ(lines[25], "24: CM, C Major");
    EXPECT_EQ(lines[168], "167: Bo7, B Diminished 7th");
}

} // namespace
} // namespace volvelle
