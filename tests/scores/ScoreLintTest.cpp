#include "scores/ScoreLint.h"

#include "tests/scores/ScoreTexts.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using test::head;
using test::parsed;
using Lines = std::vector<std::string>;

constexpr double sixteenth = Score::sixteenth - Score::gap;

std::string fewVelocities(int count)
{
    return "a played phrase has at least 6 velocities, not " + std::to_string(count) +
           ": vary them, or write \"machine: yes\" above";
}

// A score of so many sixteenths, two to the beat, or four where they are many, that no rule objects to.
Score goodScore(ScoreKind kind, std::uint8_t number, int count)
{
    Score score;
    score.kind = kind;
    const double step = count > 32 ? 0.25 : 0.5;
    for (int i = 0; i < count; ++i) {
        score.notes.push_back({i * step, sixteenth, number, static_cast<std::uint8_t>(60 + i % 8)});
    }
    if (kind == ScoreKind::lead) {
        score.notes.back().number += 3;
    }
    return score;
}

Score goodLead()
{
    auto score = goodScore(ScoreKind::lead, 70, 12);
    for (std::size_t i = 6; i < 12; ++i) {
        score.notes[i].position += 8;
    }
    return score;
}

Score goodComping()
{
    return goodScore(ScoreKind::chords, 60, 24);
}

TEST(ScoreLint, AGoodScoreHasNoFault)
{
    EXPECT_EQ(lintScore(goodLead()), Lines{});
    EXPECT_EQ(lintScore(goodComping()), Lines{});
    EXPECT_EQ(lintScore(goodScore(ScoreKind::bass, 36, 10)), Lines{});
    EXPECT_EQ(lintScore(goodScore(ScoreKind::drums, 36, 40)), Lines{});
}

TEST(ScoreLint, EachKindHasItsNumberOfNotes)
{
    EXPECT_EQ(lintScore(goodScore(ScoreKind::chords, 60, 11)),
              Lines{"a chord phrase has 12 to 48 notes, not 11"});
    EXPECT_EQ(lintScore(goodScore(ScoreKind::bass, 36, 9)), Lines{"a bass has 10 to 24 notes, not 9"});
    EXPECT_EQ(lintScore(goodScore(ScoreKind::drums, 36, 39)),
              Lines{"a drum phrase has 40 to 160 notes, not 39"});
    EXPECT_EQ(lintScore(goodScore(ScoreKind::lead, 70, 10)), Lines{"a lead has 11 to 24 notes, not 10"});
}

TEST(ScoreLint, AChordPatternHasThreeToEightChords)
{
    auto score = goodScore(ScoreKind::chordPattern, 60, 8);
    EXPECT_EQ(lintScore(score), Lines{"a chord pattern has 3 to 8 chords, not 0"});
    for (int i = 0; i < 9; ++i) {
        score.chords.push_back({i * 0.5, i % 2 == 0 ? "CM" : "FM"});
    }
    EXPECT_EQ(lintScore(score), Lines{"a chord pattern has 3 to 8 chords, not 9"});
}

TEST(ScoreLint, KeysStayInTheRangeOfTheKind)
{
    auto lead = goodLead();
    lead.notes[0].number = 66;
    lead.notes.back().number = 91;
    EXPECT_EQ(lintScore(lead),
              (Lines{"bar 1: F#3 lies outside G3 to F#5", "bar 4: G5 lies outside G3 to F#5"}));
    auto drums = goodScore(ScoreKind::drums, 36, 40);
    drums.notes[0].number = 88;
    EXPECT_EQ(lintScore(drums), Lines{"bar 1: key 88 lies outside key 27 to key 87"});
}

TEST(ScoreLint, NotesLieWithinTheFourBarsAndLastASixteenth)
{
    auto bass = goodScore(ScoreKind::bass, 36, 11);
    bass.notes[8] = {15, 2, 36, 80};
    bass.notes[9] = {16, sixteenth, 40, 80};
    bass.notes[10] = {-1, sixteenth, 45, 80};
    EXPECT_EQ(lintScore(bass),
              (Lines{"bar 4: a note ends behind beat 16", "a note begins at beat 16.0, outside 0 to 16",
                     "a note begins at beat -1.0, outside 0 to 16"}));
    auto shortNote = goodScore(ScoreKind::bass, 36, 10);
    shortNote.notes[0].duration = 0.125;
    EXPECT_EQ(lintScore(shortNote), Lines{"bar 1: a note is shorter than a sixteenth"});
}

TEST(ScoreLint, VelocitiesArePlayed)
{
    auto bass = goodScore(ScoreKind::bass, 36, 10);
    bass.notes[0].velocity = 14;
    bass.notes[1].velocity = 121;
    EXPECT_EQ(lintScore(bass), (Lines{"bar 1: the velocity 14 lies outside 15 to 120",
                                      "bar 1: the velocity 121 lies outside 15 to 120"}));
}

TEST(ScoreLint, SixVelocitiesDifferUnlessAMachinePlays)
{
    auto bass = goodScore(ScoreKind::bass, 36, 10);
    for (auto& note : bass.notes) {
        note.velocity = 80;
    }
    EXPECT_EQ(lintScore(bass), Lines{fewVelocities(1)});
    bass.machine = true;
    EXPECT_EQ(lintScore(bass), Lines{});
    auto played = goodScore(ScoreKind::bass, 36, 10);
    played.machine = true;
    EXPECT_EQ(lintScore(played),
              Lines{"the phrase has 8 velocities: leave \"machine: yes\" out, it stands for fewer than 6"});
}

TEST(ScoreLint, AKeyIsNotStruckWhileItSounds)
{
    auto bass = goodScore(ScoreKind::bass, 36, 10);
    bass.notes[0].duration = 0.75;
    EXPECT_EQ(lintScore(bass), Lines{"bar 1: C1 is struck while it sounds"});
}

TEST(ScoreLint, AChordPhraseHasThreeVoicesOrFourThatSitWide)
{
    auto comping = goodComping();
    comping.notes.push_back({15, sixteenth, 56, 80});
    comping.notes.push_back({15, sixteenth, 60, 80});
    comping.notes.push_back({15, sixteenth, 64, 80});
    EXPECT_EQ(lintScore(comping), Lines{});
    comping.notes.push_back({15, sixteenth, 67, 80});
    EXPECT_EQ(lintScore(comping), Lines{"bar 4: 4 voices at beat 15.0 are more than 3"});
    comping.notes.back().number = 68;
    EXPECT_EQ(lintScore(comping), Lines{});
    comping.notes.push_back({15, sixteenth, 71, 80});
    EXPECT_EQ(lintScore(comping), Lines{"bar 4: 5 voices at beat 15.0 are more than 4"});
}

TEST(ScoreLint, VoicesOfAChordPhraseStandThreeSemitonesApart)
{
    auto comping = goodComping();
    comping.notes.push_back({15, sixteenth, 60, 80});
    comping.notes.push_back({15, sixteenth, 62, 80});
    EXPECT_EQ(lintScore(comping), Lines{"bar 4: C3 and D3 stand closer than 3 semitones"});
}

TEST(ScoreLint, ADrummerHasThreeLimbsAndTwoMoreHandsBesideHim)
{
    auto drums = goodScore(ScoreKind::drums, 36, 40);
    for (const auto key : std::initializer_list<std::uint8_t>{36, 38, 42, 54, 82}) {
        drums.notes.push_back({15, sixteenth, key, 80});
    }
    EXPECT_EQ(lintScore(drums), Lines{});
    drums.notes.push_back({15, sixteenth, 49, 80});
    drums.notes.push_back({15, sixteenth, 63, 80});
    EXPECT_EQ(lintScore(drums), (Lines{"bar 4: 4 drums of the kit at beat 15.0, at most 3",
                                       "bar 4: 3 hand drums at beat 15.0, at most 2"}));
}

TEST(ScoreLint, ALeadBreathesInEachPairOfBars)
{
    auto lead = goodScore(ScoreKind::lead, 70, 21);
    for (std::size_t i = 0; i < lead.notes.size(); ++i) {
        lead.notes[i].position = static_cast<double>(i) * 0.75;
    }
    EXPECT_EQ(lintScore(lead),
              (Lines{"bars 1 and 2 hold no breath of a beat", "bars 3 and 4 hold no breath of a beat"}));
    lead.notes.erase(lead.notes.begin() + 4, lead.notes.begin() + 6);
    EXPECT_EQ(lintScore(lead), Lines{"bars 3 and 4 hold no breath of a beat"});
}

TEST(ScoreLint, ALeadHasOneHighestPoint)
{
    auto lead = goodLead();
    lead.notes[2].number = 73;
    EXPECT_EQ(lintScore(lead), Lines{"bar 4: C#4 is reached again: a lead has one highest point"});
    EXPECT_EQ(lintScore(Score{}), (Lines{"a lead has 11 to 24 notes, not 0", fewVelocities(0)}));
}

TEST(ScoreLint, LeadsAndBassesTakeTwoSmallStepsAtMost)
{
    auto bass = goodScore(ScoreKind::bass, 36, 10);
    bass.notes[1].number = 38;
    EXPECT_EQ(lintScore(bass), Lines{});
    bass.notes[7].number = 37;
    EXPECT_EQ(lintScore(bass),
              Lines{"bar 1: a third step of one or two semitones, at most 2: leap by three or more"});
    bass.notes[7].number = 39;
    EXPECT_EQ(lintScore(bass), Lines{});
}

TEST(ScoreLint, DrumsTurnInTheFourthBar)
{
    auto drums = goodScore(ScoreKind::drums, 36, 64);
    EXPECT_EQ(lintScore(drums), Lines{"bar 4 is struck as bar 1 is: drums turn in the fourth bar"});
    drums.notes.back().number = 38;
    EXPECT_EQ(lintScore(drums), Lines{});
}

TEST(ScoreLint, FaultsOfATextAreToldWithTheLine)
{
    const std::string bar = "| E1:2=60 E1:2=61 E1:2=62 E1:2=63 E1:2=62 r:6 |\n";
    EXPECT_EQ(
        lintScore(
            parsed(head + "notes:\n" + bar + "\n| r:16 |\n| r:12 D#2:4=121 |\n" + bar, ScoreKind::bass)),
        (Lines{"line 7, bar 3: D#2 lies outside E0 to D2",
               "line 7, bar 3: the velocity 121 lies outside 15 to 120", "line 3: " + fewVelocities(5)}));
    EXPECT_EQ(lintScore(parsed(head + "chords:\n| CM |\n| FM - FM . | GM | . |\n", ScoreKind::chordPattern)),
              Lines{"line 5, bar 2: FM stands twice in a row"});
    const std::string silence = "................|";
    EXPECT_EQ(lintScore(parsed(head + "drums:\nhat 42 |" + silence +
                                   "1234561234561234|1234561234561234|12345678........|"
                                   "\nlow 26 |" +
                                   silence + silence + silence + "9...............|\n",
                               ScoreKind::drums)),
              Lines{"line 5, bar 4: key 26 lies outside key 27 to key 87"});
}

TEST(ScoreLint, ANoteHeldAcrossTheMiddleIsNoBreath)
{
    auto lead = goodScore(ScoreKind::lead, 70, 16);
    lead.notes.erase(lead.notes.begin() + 4, lead.notes.begin() + 6);
    lead.notes.push_back({8, 7.5, 74, 80});
    EXPECT_EQ(lintScore(lead), Lines{"bars 3 and 4 hold no breath of a beat"});
}

TEST(ScoreLint, NeighbouringChordsDifferAndDoNotOverlap)
{
    auto pattern = goodScore(ScoreKind::chordPattern, 60, 8);
    pattern.chords = {{0, "CM"}, {8, "CM"}, {12, "GM"}};
    EXPECT_EQ(lintScore(pattern), Lines{"bar 3: CM stands twice in a row"});
    pattern.chords = {{0, "CM"}, {8, "FM"}, {12, "GM"}};
    pattern.notes.push_back({0, 8, 55, 80});
    EXPECT_EQ(lintScore(pattern), Lines{"bar 1: CM does not end before FM"});
}

} // namespace
} // namespace volvelle
