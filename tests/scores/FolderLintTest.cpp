#include "scores/FolderLint.h"

#include "scores/PhraseBounds.h"
#include "tests/scores/ScoreTexts.h"

namespace volvelle {
namespace {

using Lines = std::vector<std::string>;

// Struck so often in each bar, from its start or a sixteenth later.
Score phraseOf(ScoreKind kind, int inBar, double from = 0)
{
    Score score;
    score.kind = kind;
    for (int i = 0; i < Score::bars * inBar; ++i) {
        score.notes.push_back({i / inBar * 4.0 + from + i % inBar * 0.25, 0.25, 40});
    }
    return score;
}

TEST(FolderLint, EveryThirdPhraseLeavesABarNearlyEmpty)
{
    std::vector<Score> drums(3, phraseOf(ScoreKind::drums, 6));
    EXPECT_EQ(lintFolder(drums, ScoreKind::drums), Lines{"0 of 3 phrases leave one bar nearly empty, with 5 "
                                                         "places that are struck at most: every third does"});
    drums[1] = phraseOf(ScoreKind::drums, 5);
    EXPECT_EQ(lintFolder(drums, ScoreKind::drums), Lines{});
    EXPECT_EQ(lintFolder({phraseOf(ScoreKind::drums, 6), phraseOf(ScoreKind::drums, 6)}, ScoreKind::drums),
              Lines{});
    EXPECT_EQ(
        lintFolder(std::vector<Score>(3, phraseOf(ScoreKind::chordPattern, 6)), ScoreKind::chordPattern),
        Lines{});
}

TEST(FolderLint, TwoOfThreeBassesSoundOnTheFirstBeatOfEveryBar)
{
    std::vector<Score> basses(3, phraseOf(ScoreKind::bass, 2, 0.25));
    const std::string fault = " of 3 basses sound on the first beat of every bar: two of three do";
    EXPECT_EQ(lintFolder(basses, ScoreKind::bass), Lines{"0" + fault});
    basses[0] = phraseOf(ScoreKind::bass, 2);
    EXPECT_EQ(lintFolder(basses, ScoreKind::bass), Lines{"1" + fault});
    basses[2] = phraseOf(ScoreKind::bass, 1);
    EXPECT_EQ(lintFolder(basses, ScoreKind::bass), Lines{});
}

// On beats 1 and 3 of each bar, so many semitones apart.
Score bassOf(int step)
{
    Score score;
    score.kind = ScoreKind::bass;
    for (int half = 0; half < 2 * Score::bars; ++half) {
        score.notes.push_back({half * 2.0, 2.0, static_cast<std::uint8_t>(half % 2 == 0 ? 40 : 40 + step)});
    }
    return score;
}

TEST(FolderLint, HalfOfTheBarsOfBassesGoByAThird)
{
    for (const int step : {-9, -8, -4, -3, 3, 4, 8, 9, 15}) {
        std::vector<Score> basses(10, bassOf(7));
        std::fill_n(basses.begin(), 5, bassOf(step));
        EXPECT_EQ(lintFolder(basses, ScoreKind::bass), Lines{}) << step;
        basses[5].notes[1].number = bassOf(step).notes[1].number;
        EXPECT_EQ(
            lintFolder(basses, ScoreKind::bass),
            Lines{"21 of 40 bars of basses go by a third or a sixth from beat 1 to beat 3: 50 % at most"})
            << step;
        EXPECT_EQ(lintFolder(std::vector<Score>(9, bassOf(step)), ScoreKind::bass), Lines{}) << step;
    }
    for (const int step : {-12, -7, -5, -2, 0, 2, 5, 6, 7, 10, 12}) {
        EXPECT_EQ(lintFolder(std::vector<Score>(10, bassOf(step)), ScoreKind::bass), Lines{}) << step;
    }
}

TEST(FolderLint, ATenthOfTheDrumsIsFull)
{
    Score full = phraseOf(ScoreKind::drums, 5);
    std::vector<Score> drums(10, phraseOf(ScoreKind::drums, 5));
    full.notes.resize(fullDrums);
    drums[0] = drums[1] = full;
    EXPECT_EQ(lintFolder(drums, ScoreKind::drums), Lines{});
    full.notes.resize(fullDrums + 1);
    drums[1] = phraseOf(ScoreKind::drums, 5);
    drums[0] = full;
    EXPECT_EQ(lintFolder(drums, ScoreKind::drums), Lines{});
    drums[1] = full;
    EXPECT_EQ(lintFolder(drums, ScoreKind::drums),
              Lines{"2 of 10 drum phrases have more than 80 notes: one of 10 at most"});
}

TEST(FolderLint, AFifthOfAFolderAreColours)
{
    std::vector<Score> leads(10, phraseOf(ScoreKind::lead, 2));
    leads[0].colour = leads[1].colour = true;
    EXPECT_EQ(lintFolder(leads, ScoreKind::lead), Lines{});
    leads[2].colour = true;
    EXPECT_EQ(lintFolder(leads, ScoreKind::lead), Lines{"3 of 10 phrases are colours: one of 5 at most"});
    EXPECT_EQ(lintFolder({leads[0]}, ScoreKind::lead), Lines{});
}

// Each with a style and bars of its own, one of them nearly empty.
std::vector<Score> manyLeads(int count)
{
    std::vector<Score> leads;
    for (int i = 0; i < count; ++i) {
        Score lead = phraseOf(ScoreKind::lead, 2);
        lead.style = "style " + std::to_string(i) + ", as it comes";
        for (std::size_t note = 0; note < lead.notes.size(); ++note) {
            const int place = note % 2 == 0 ? i % 5 : 5 + i / 5;
            lead.notes[note].position = Score::beatsInBar * static_cast<double>(note / 2) + 0.25 * place;
        }
        leads.push_back(lead);
    }
    return leads;
}

TEST(FolderLint, AStyleStandsForEightPerCentOfAFolder)
{
    std::vector<Score> leads = manyLeads(25);
    leads[3].style = "ska, one";
    leads[9].style = "ska, another";
    EXPECT_EQ(lintFolder(leads, ScoreKind::lead), Lines{});
    leads[12].style = "ska";
    EXPECT_EQ(lintFolder(leads, ScoreKind::lead), Lines{"3 of 25 phrases have the style 'ska': 8 % at most"});
    leads.pop_back();
    EXPECT_EQ(lintFolder(leads, ScoreKind::lead), Lines{});
}

TEST(FolderLint, ARhythmStandsForTwelvePerCentOfTheBars)
{
    std::vector<Score> leads = manyLeads(25);
    const Score common = leads[4];
    leads[5].notes = leads[6].notes = common.notes;
    EXPECT_EQ(lintFolder(leads, ScoreKind::lead), Lines{});
    leads[7].notes = common.notes;
    EXPECT_EQ(lintFolder(leads, ScoreKind::lead),
              Lines{"16 of 100 bars are struck at the same places: 12 % at most"});
    EXPECT_EQ(lintFolder(leads, ScoreKind::chordPattern), Lines{});
    leads[7].notes.clear();
    EXPECT_EQ(lintFolder(leads, ScoreKind::lead),
              Lines{"12 of 96 bars are struck at the same places: 12 % at most"});
}

} // namespace
} // namespace volvelle
