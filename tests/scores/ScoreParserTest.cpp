#include "scores/ScoreParser.h"

#include "tests/scores/ScoreTexts.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using test::faultOf;
using test::head;
using test::parsed;
using test::rest;
using Notes = std::vector<ScoreNote>;
using Chords = std::vector<ScoreChord>;

constexpr double gap = Score::gap;
const std::string emptyRow = "................|................|................|................|";

std::string leadFault(const std::string& firstBar)
{
    return faultOf(head + "notes:\n" + firstBar + "\n" + rest + rest + rest, ScoreKind::lead);
}

Notes leadNotes(const std::string& firstBar)
{
    return parsed(head + "notes:\n" + firstBar + "\n" + rest + rest + rest, ScoreKind::lead).notes;
}

std::string patternFault(const std::string& bars)
{
    return faultOf(head + "chords:\n" + bars, ScoreKind::chordPattern);
}

std::string drumFault(const std::string& rows)
{
    return faultOf(head + "drums:\n" + rows, ScoreKind::drums);
}

TEST(ScoreParserHeader, TitleStyleAndMachineAreKept)
{
    const auto score = parsed("; a comment\n\ntitle:  Two: Words \r\nstyle: slow\nmachine: yes\nnotes:\n" +
                                  rest + rest + rest + rest,
                              ScoreKind::bass);
    EXPECT_EQ(score.title, "Two: Words");
    EXPECT_EQ(score.style, "slow");
    EXPECT_TRUE(score.machine);
    EXPECT_EQ(score.kind, ScoreKind::bass);
    EXPECT_FALSE(parsed(head + "notes:\n" + rest + rest + rest + rest, ScoreKind::bass).machine);
}

TEST(ScoreParserHeader, AColourIsMarked)
{
    const std::string bars = "chords:\n| Am | FM | GM | . |\n";
    EXPECT_TRUE(parsed(head + "colour: yes\n" + bars, ScoreKind::chordPattern).colour);
    EXPECT_FALSE(parsed(head + bars, ScoreKind::chordPattern).colour);
    EXPECT_EQ(faultOf("colour: no\n", ScoreKind::lead), "line 1: \"colour\" is \"yes\" or left out");
}

TEST(ScoreParserHeader, AByteOrderMarkIsPassedOver)
{
    EXPECT_EQ(parsed("\xEF\xBB\xBF" + head + "notes:\n" + rest + rest + rest + rest, ScoreKind::lead).title,
              "T");
}

TEST(ScoreParserHeader, AByteThatIsNoUTF8IsNamedWhereverItStands)
{
    const std::string form = " is no UTF-8: save the score as UTF-8";
    EXPECT_EQ(faultOf("title: Caf\xE9\n", ScoreKind::lead), "line 1: the byte E9" + form);
    EXPECT_EQ(faultOf(head + "; \xC3\xA9 \xC3", ScoreKind::lead), "line 3: the byte C3" + form);
    EXPECT_EQ(faultOf(head + "notes:\n" + rest + "\n\n\xFF", ScoreKind::lead), "line 7: the byte FF" + form);
    EXPECT_EQ(
        parsed("title: Caf\xC3\xA9\nstyle: S\nnotes:\n" + rest + rest + rest + rest, ScoreKind::lead).title,
        "Caf\xC3\xA9");
}

TEST(ScoreParserHeader, EveryFaultIsOnePlainLine)
{
    const auto lead = ScoreKind::lead;
    EXPECT_EQ(faultOf("title\n", lead), "line 1: a header line reads \"key: value\"");
    EXPECT_EQ(faultOf(": T\n", lead), "line 1: a header line reads \"key: value\"");
    EXPECT_EQ(faultOf("\ntitle:\n", lead), "line 2: \"title\" has no value");
    EXPECT_EQ(faultOf("title: A\ntitle: B\n", lead), "line 2: \"title\" stands twice");
    EXPECT_EQ(faultOf("author: A\n", lead), "line 1: the key \"author\" is not known here");
    EXPECT_EQ(faultOf("from: C2\n", lead), "line 1: the key \"from\" is not known here");
    EXPECT_EQ(faultOf("dynamics: mf\n", lead), "line 1: the key \"dynamics\" is not known here");
    EXPECT_EQ(faultOf("machine: no\n", lead), "line 1: \"machine\" is \"yes\" or left out");
    EXPECT_EQ(faultOf("style: S\nnotes:\n", lead),
              "line 2: the title is missing: write \"title: ...\" above");
    EXPECT_EQ(faultOf("title: T\nnotes:\n", lead),
              "line 2: the style is missing: write \"style: ...\" above");
}

TEST(ScoreParserHeader, WhatIsNeverHeardOfAChordPatternIsAFault)
{
    for (const std::string key : {"from", "dynamics", "machine"}) {
        EXPECT_EQ(faultOf(key + ": C2\n", ScoreKind::chordPattern),
                  "line 1: \"" + key + "\" is never heard of a chord pattern: leave it out");
    }
}

TEST(ScoreParserBody, TheOpeningWordFitsTheKind)
{
    EXPECT_EQ(faultOf(head, ScoreKind::lead), "line 2: the body is missing: there is no line \"notes:\"");
    EXPECT_EQ(faultOf("", ScoreKind::drums), "line 1: the body is missing: there is no line \"drums:\"");
    EXPECT_EQ(faultOf(head + "drums:\n", ScoreKind::chordPattern),
              "line 3: the body opens with \"chords:\", not \"drums:\"");
    EXPECT_EQ(faultOf(head + "Notes:\n", ScoreKind::lead),
              "line 3: the body opens with \"notes:\", not \"Notes:\"");
}

TEST(ScoreParserBody, FourBarsAreAPhraseAndNoOtherNumberIs)
{
    EXPECT_EQ(faultOf(head + "notes:\n", ScoreKind::lead), "line 3: the body has 0 bars, not 4");
    EXPECT_EQ(faultOf(head + "notes:\n" + rest, ScoreKind::lead), "line 4: the body has 1 bar, not 4");
    EXPECT_EQ(faultOf(head + "notes:\n| r:16 | r:16 | r:16 |\n", ScoreKind::lead),
              "line 4: the body has 3 bars, not 4");
    EXPECT_EQ(faultOf(head + "notes:\n| r:16 | r:16 | r:16 | r:16 |\n" + rest, ScoreKind::lead),
              "line 5: a phrase has 4 bars, and this is one more");
    EXPECT_EQ(leadFault("r:16 |"), "line 4: a line of bars begins and ends with \"|\"");
    EXPECT_EQ(leadFault("|"), "line 4: a line of bars begins and ends with \"|\"");
}

TEST(ScoreParserNotes, APlainNoteEndsA32ndOfABeatEarly)
{
    EXPECT_EQ(leadNotes("| C3:4 r:8 G3:4 |"), (Notes{{0, 1 - gap, 60, 76}, {3, 1 - gap, 67, 76}}));
}

TEST(ScoreParserNotes, AStaccatoNoteSoundsForHalfItsLengthButASixteenthAtLeast)
{
    EXPECT_EQ(leadNotes("| C3:8' C3:2' C3:1' r:5 |"),
              (Notes{{0, 1 - gap, 60, 76}, {2, 0.25 - gap, 60, 76}, {2.5, 0.25 - gap, 60, 76}}));
}

TEST(ScoreParserNotes, LevelsAccentsGhostsAndNumbersSetTheVelocity)
{
    const auto notes =
        leadNotes("| pp C3:1 p C3:1 mp C3:1 mf C3:1 f C3:1 ff C3:1 C3:1> C3:1_ pp C3:1_ C3:1=101 C3:1'>"
                  " r:5 |");
    std::vector<int> velocities;
    for (const auto& note : notes) {
        velocities.push_back(note.velocity);
    }
    EXPECT_EQ(velocities, (std::vector<int>{40, 52, 64, 76, 88, 100, 115, 65, 15, 101, 55}));
}

TEST(ScoreParserNotes, AChordKeepsTheOrderOfTheText)
{
    EXPECT_EQ(leadNotes("| [E3 C3 G3]:16 |"),
              (Notes{{0, 4 - gap, 64, 76}, {0, 4 - gap, 60, 76}, {0, 4 - gap, 67, 76}}));
}

TEST(ScoreParserNotes, ATieLengthensWhatWasStruckLastOverTheBarLine)
{
    const auto score =
        parsed(head + "notes:\n| r:12 [C3 G3]:4 | ~:16 | mf ~:2 r:14 |\n" + rest, ScoreKind::chords);
    EXPECT_EQ(score.notes, (Notes{{3, 5.5 - gap, 60, 76}, {3, 5.5 - gap, 67, 76}}));
}

TEST(ScoreParserNotes, ABarThatIsTooShortOrTooLongIsNamed)
{
    EXPECT_EQ(leadFault("| C3:15 |"), "line 4, bar 1: the cells add up to 15 sixteenths, not 16");
    EXPECT_EQ(leadFault("| C3:15 r:2 |"), "line 4, bar 1: the cells add up to 17 sixteenths, not 16");
    EXPECT_EQ(faultOf(head + "notes:\n" + rest + "\n; comment\n| r:15 |\n", ScoreKind::bass),
              "line 7: the body has 2 bars, not 4");
    EXPECT_EQ(faultOf(head + "notes:\n" + rest + "\n; comment\n| r:15 | r:16 |\n" + rest, ScoreKind::bass),
              "line 7, bar 2: the cells add up to 15 sixteenths, not 16");
}

TEST(ScoreParserNotes, ACellThatIsNoneIsShown)
{
    const std::string form =
        " is no cell: PITCH:LEN, [PITCH PITCH]:LEN, r:LEN, ~:LEN or a level pp p mp mf f ff";
    EXPECT_EQ(leadFault("| C3 r:16 |"), "line 4, bar 1: \"C3\"" + form);
    EXPECT_EQ(leadFault("| mff r:16 |"), "line 4, bar 1: \"mff\"" + form);
    EXPECT_EQ(leadFault("| C3:0 |"), "line 4, bar 1: \"C3:0\" has no length from 1 to 16");
    EXPECT_EQ(leadFault("| C3:17 |"), "line 4, bar 1: \"C3:17\" has no length from 1 to 16");
    EXPECT_EQ(leadFault("| C3: |"), "line 4, bar 1: \"C3:\" has no length from 1 to 16");
    EXPECT_EQ(leadFault("| H3:16 |"), "line 4, bar 1: \"H3\" is no pitch from C-2 to G8");
    EXPECT_EQ(leadFault("| [C3 H3]:16 |"), "line 4, bar 1: \"H3\" is no pitch from C-2 to G8");
    EXPECT_EQ(leadFault("| []:16 |"), "line 4, bar 1: \"[]\" is no pitch from C-2 to G8");
    EXPECT_EQ(leadFault("| [ ]:16 |"), "line 4, bar 1: \"[ ]\" holds no pitch");
    EXPECT_EQ(leadFault("| :16 |"), "line 4, bar 1: \"\" is no pitch from C-2 to G8");
    EXPECT_EQ(leadFault("| [C3 E3:16 |"), "line 4, bar 1: \"[C3 E3\" is no pitch from C-2 to G8");
}

TEST(ScoreParserNotes, MarksThatMakeNoSenseBehindALengthAreShown)
{
    for (const std::string marks : {"x", "''", ">>", "_>", "=9'", ">=x"}) {
        EXPECT_EQ(leadFault("| C3:16" + marks + " |"),
                  "line 4, bar 1: \"" + marks + "\" cannot stand behind a length");
    }
    EXPECT_EQ(leadFault("| r:16> |"), "line 4, bar 1: \">\" cannot stand behind a length");
}

TEST(ScoreParserNotes, AVelocityOutsideItsBoundsIsShown)
{
    for (const std::string velocity : {"", "0", "128", "99999999999"}) {
        EXPECT_EQ(leadFault("| C3:16'=" + velocity + " |"),
                  "line 4, bar 1: \"" + velocity + "\" is no velocity from 1 to 127");
    }
}

TEST(ScoreParserNotes, ATieWithoutANoteOrInsideABarIsAFault)
{
    EXPECT_EQ(leadFault("| ~:16 |"), "line 4, bar 1: there is no note to lengthen");
    EXPECT_EQ(leadFault("| C3:8 ~:8 |"), "line 4, bar 1: a tie stands as the first cell of a bar");
    EXPECT_EQ(faultOf(head + "notes:\n| C3:16 | ~:4> r:12 |\n" + rest + rest, ScoreKind::lead),
              "line 4, bar 2: a tie has nothing behind its length");
    EXPECT_EQ(faultOf(head + "notes:\n| C3:8 r:8 | ~:4 r:12 |\n" + rest + rest, ScoreKind::lead),
              "line 4, bar 2: there is no note to lengthen");
}

TEST(ScoreParserChords, AChordSoundsUntilTheNextAndEndsA32ndOfABeatBefore)
{
    const auto score = parsed(head + "chords:\n| Am . FM . | . | CM | - |\n", ScoreKind::chordPattern);
    EXPECT_EQ(score.chords, (Chords{{0, "Am"}, {2, "FM"}, {8, "CM"}}));
    ASSERT_EQ(score.notes.size(), 9U);
    EXPECT_EQ(score.notes[0].duration, 2 - gap);
    EXPECT_EQ(score.notes[3].duration, 6 - gap);
    EXPECT_EQ(score.notes[6].position + score.notes[6].duration, 12 - gap);
}

TEST(ScoreParserChords, TheLastChordEndsJustBeforeBeat16)
{
    const auto score = parsed(head + "chords:\n| Am | . | . | . . . . . . . . . . . . . . . E7 |\n",
                              ScoreKind::chordPattern);
    EXPECT_EQ(score.chords.back(), (ScoreChord{15.75, "E7"}));
    EXPECT_EQ(score.notes.back().position + score.notes.back().duration, 16 - gap);
}

TEST(ScoreParserChords, ChordsLieInClosePositionFromTheRootUpwardAtOneVelocity)
{
    const auto score =
        parsed(head + "chords:\n| Am | G7 | . . . . . . . CM | B8 |\n", ScoreKind::chordPattern);
    std::vector<int> numbers;
    for (const auto& note : score.notes) {
        numbers.push_back(note.number);
        EXPECT_EQ(note.velocity, 100);
    }
    EXPECT_EQ(numbers, (std::vector<int>{57, 60, 64, 55, 59, 62, 65, 48, 52, 55, 59}));
}

TEST(ScoreParserChords, InversionsAndVelocitiesAreRefusedWithTheNameToWrite)
{
    const std::string line = ": inversions and velocities of chords are never heard: write ";
    EXPECT_EQ(patternFault("| Am7/G | . | . | . |"), "line 4, bar 1: Am7/G" + line + "Am7");
    EXPECT_EQ(patternFault("| Am | C7=96 | . | . |"), "line 4, bar 2: C7=96" + line + "C7");
    EXPECT_EQ(patternFault("| Am | . | C7/E=96 | . |"), "line 4, bar 3: C7/E=96" + line + "C7");
}

TEST(ScoreParserChords, ANameThatDetectionWouldChangeIsRefusedWithTheRightOne)
{
    EXPECT_EQ(patternFault("| C6 | . | . | . |"), "line 4, bar 1: C6 is found again as Am7: write Am7");
    EXPECT_EQ(patternFault("| CM | Csus2 | . | . |"),
              "line 4, bar 2: Csus2 is found again as Gsus4: write Gsus4");
    EXPECT_EQ(patternFault("| CM | . | E+ | . |"), "line 4, bar 3: E+ is found again as G#+: write G#+");
    EXPECT_EQ(patternFault("| CM | . | . | Co7 |"), "line 4, bar 4: Co7 is found again as Ao7: write Ao7");
}

TEST(ScoreParserChords, EveryOtherFaultOfACellIsNamed)
{
    EXPECT_EQ(patternFault("| Am . . | . | . | . |"),
              "line 4, bar 1: a bar holds 1, 2, 4, 8 or 16 cells, not 3");
    EXPECT_EQ(patternFault("| | . | . | . |"), "line 4, bar 1: a bar holds 1, 2, 4, 8 or 16 cells, not 0");
    EXPECT_EQ(patternFault("| . | . | . | . |"), "line 4, bar 1: there is no chord that could go on");
    EXPECT_EQ(patternFault("| Am | - | . | . |"), "line 4, bar 3: there is no chord that could go on");
    EXPECT_EQ(patternFault("| Cmaj7 | . | . | . |"),
              "line 4, bar 1: \"Cmaj7\" is no chord name: a root, as C or F#, and one of 8 5 M m o + sus4 "
              "-5 m6 7 m7 o7");
    EXPECT_EQ(
        patternFault("| H/E | . | . | . |"),
        "line 4, bar 1: \"H/E\" is no chord name: a root, as C or F#, and one of 8 5 M m o + sus4 -5 m6 "
        "7 m7 o7");
}

TEST(ScoreParserDrums, HitsStandByTimeAndRowsInTheOrderOfTheText)
{
    const auto score =
        parsed(head + "drums:\nhat 42 |5...............|................|................|...............9|\n"
                      "kick 36 |1...2...........|................|................|................|\n",
               ScoreKind::drums);
    EXPECT_EQ(score.notes, (Notes{{0, 0.25 - gap, 42, 67},
                                  {0, 0.25 - gap, 36, 16},
                                  {1, 0.25 - gap, 36, 29},
                                  {15.75, 0.25 - gap, 42, 118}}));
}

TEST(ScoreParserDrums, TheNineDigitsAreNineVelocities)
{
    const auto score =
        parsed(head + "drums:\nx 36 |123456789.......|................|................|................|\n",
               ScoreKind::drums);
    std::vector<int> velocities;
    for (const auto& note : score.notes) {
        velocities.push_back(note.velocity);
    }
    EXPECT_EQ(velocities, (std::vector<int>{16, 29, 41, 54, 67, 79, 92, 105, 118}));
}

TEST(ScoreParserDrums, EveryFaultOfARowIsNamed)
{
    const std::string form = "line 4: a row of drums reads: NAME KEY |bar|bar|bar|bar|";
    EXPECT_EQ(drumFault(""), "line 3: the body has no row of drums");
    EXPECT_EQ(drumFault("kick |" + emptyRow), form);
    EXPECT_EQ(drumFault("bass drum 36 |" + emptyRow), form);
    EXPECT_EQ(drumFault("kick 36"), form);
    EXPECT_EQ(drumFault("kick 36 |" + emptyRow + " x"), form);
    EXPECT_EQ(drumFault("kick 128 |" + emptyRow), "line 4: \"128\" is no key from 0 to 127");
    EXPECT_EQ(drumFault("kick C3 |" + emptyRow), "line 4: \"C3\" is no key from 0 to 127");
    EXPECT_EQ(drumFault("kick 36 |................|"), "line 4: a row of drums has 4 bars, not 1");
    EXPECT_EQ(drumFault("kick 36 |................|...|................|................|"),
              "line 4, bar 2: a bar of drums has 16 cells, not 3");
    EXPECT_EQ(drumFault("kick 36 |...............x|................|................|................|"),
              "line 4, bar 1: a drum cell is \".\" or 1 to 9, not \"x\"");
    EXPECT_EQ(drumFault("kick 36 |é..............|................|................|................|"),
              "line 4, bar 1: a bar of drums has 16 cells, not 15");
    EXPECT_EQ(drumFault("kick 36 |...............é|................|................|................|"),
              "line 4, bar 1: a drum cell is \".\" or 1 to 9, not \"é\"");
    EXPECT_EQ(drumFault("kick 36 |...............0|................|................|................|"),
              "line 4, bar 1: a drum cell is \".\" or 1 to 9, not \"0\"");
}

} // namespace
} // namespace volvelle
