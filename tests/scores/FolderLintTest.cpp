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

} // namespace
} // namespace volvelle
