#include "scores/PhraseLint.h"

#include "tests/scores/ScoreTexts.h"

namespace volvelle {
namespace {

using test::head;
using test::parsed;
using Lines = std::vector<std::string>;

Lines bassFaults(const std::string& bars, const std::string& flags = "")
{
    return lintPhrase(parsed(head + flags + "notes:\n" + bars, ScoreKind::bass));
}

Lines patternFaults(const std::string& bars)
{
    return lintPhrase(parsed(head + "chords:\n" + bars, ScoreKind::chordPattern));
}

TEST(PhraseLint, AChordPatternHasThreeDistinctChordsAndNoneForMoreThanEightBeats)
{
    EXPECT_EQ(patternFaults("| Am | . | FM | GM |"), Lines{});
    EXPECT_EQ(patternFaults("| Am | FM | Am | FM |"), Lines{"line 3: 2 distinct chords, at least 3"});
    EXPECT_EQ(patternFaults("| Am | FM GM | . | . - - - |"),
              Lines{"line 3: GM goes on for 10.0 beats, at most 8.0"});
}

TEST(PhraseLint, ALeadIsPlayedOut)
{
    const std::string bars = " G3:4 r:12 | C4:4 r:12 | r:16 | r:16 |\n";
    EXPECT_EQ(lintPhrase(parsed(head + "notes:\n| f" + bars, ScoreKind::lead)),
              Lines{"line 3: the mean velocity is 88.0, at least 92.0"});
    EXPECT_EQ(lintPhrase(parsed(head + "notes:\n| ff" + bars, ScoreKind::lead)), Lines{});
}

TEST(PhraseLint, ABassStandsOnBeatsOneAndThreeInThreeBars)
{
    const std::string grounded = "| E1:4 r:4 B0:4 r:4 |\n";
    const std::string late = "| E1:4 r:5 B0:4 r:3 |\n";
    EXPECT_EQ(bassFaults(grounded + late + grounded + grounded), Lines{});
    const std::string twoBars = grounded + late + late + grounded;
    EXPECT_EQ(bassFaults(twoBars), Lines{"line 3: 2 bars have notes on beats 1 and 3, at least 3"});
    EXPECT_EQ(bassFaults(twoBars, "colour: yes\n"), Lines{});
}

TEST(PhraseLint, EachBarOfABassHoldsTwoTonesThatFindARoot)
{
    const std::string good = "| E1:4 r:4 B0:4 r:4 |\n";
    EXPECT_EQ(bassFaults(good + "| E1:4 r:4 E0:4 r:4 |\n" + good + "| E1:4 r:4 D1:4 r:4 |\n"),
              (Lines{"line 3: bar 2 has no two tones that are 4, 5, 7 or 8 semitones apart",
                     "line 3: bar 4 has no two tones that are 4, 5, 7 or 8 semitones apart"}));
    for (const std::string tone : {"C1", "A0", "A1", "B0", "G#0", "B1"}) {
        EXPECT_EQ(bassFaults(good + good + good + "| E1:4 r:4 " + tone + ":4 r:4 |\n"),
                  tone == "B0" ? Lines{"line 3: the four bars are alike"} : Lines{});
    }
    EXPECT_EQ(bassFaults(good + good + good + "| E1:4 r:12 |\n"), Lines{});
}

TEST(PhraseLint, DrumsHaveFourKicksWithOneInBarsOneAndThree)
{
    const std::string bar = "8...8...........|";
    const std::string silence = "................|";
    const auto faults = [](const std::string& row, const std::string& flags = "") {
        return lintPhrase(parsed(head + flags + "drums:\nlow 35 |" + row + "\n", ScoreKind::drums));
    };
    EXPECT_EQ(faults(bar + silence + bar + silence), Lines{});
    EXPECT_EQ(faults(bar + silence + silence + silence), Lines{"line 3: 2 kicks, at least 4"});
    EXPECT_EQ(faults(bar + silence + silence + silence, "colour: yes\n"), Lines{});
    EXPECT_EQ(faults(silence + bar + silence + bar),
              (Lines{"line 3: bar 1 has no kick", "line 3: bar 3 has no kick"}));
}

TEST(PhraseLint, TheFourBarsAreNotAlike)
{
    const std::string bar = "| [C3 E3]:4 r:12 |\n";
    const auto faults = [](const std::string& bars) {
        return lintPhrase(parsed(head + "notes:\n" + bars, ScoreKind::chords));
    };
    EXPECT_EQ(faults(bar + bar + bar + bar), Lines{"line 3: the four bars are alike"});
    EXPECT_EQ(faults(bar + bar + bar + "| [C3 F3]:4 r:12 |\n"), Lines{});
    EXPECT_EQ(faults(bar + bar + bar + "| r:1 [C3 E3]:4 r:11 |\n"), Lines{});
}

} // namespace
} // namespace volvelle
