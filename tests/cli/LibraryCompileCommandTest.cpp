#include "tests/cli/ProgramRun.h"

#include <gmock/gmock.h>

namespace volvelle::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class LibraryCompile : public ProgramRun {
protected:
    void writeScores(const std::string& chords) const
    {
        write("scores/chord-patterns/001-a.score", "title: A\nstyle: test\n\nchords:\n" + chords + "\n");
        write("scores/chords/001-a.score", notes("E3"));
        write("scores/leads/001-a.score", notes("E4"));
        write("scores/basses/001-a.score", notes("E1"));
        write("scores/drums/001-a.score",
              "title: D\nstyle: test\n\ndrums:\nkick 36 "
              "|9...9...9...9...|9...9...9...9...|9...9...9...9...|9...9...9...9...|\n");
    }

    static std::string notes(const std::string& pitch)
    {
        return "title: N\nstyle: test\n\nnotes:\n| " + pitch + ":16 |\n| r:16 |\n| " + pitch +
               ":16 |\n| r:16 |\n";
    }
};

TEST_F(LibraryCompile, ScoresBecomeAWorkingLibrary)
{
    writeScores("| CM | FM | GM | Am |");
    const auto result = volvelle("library compile scores lib");
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_EQ(result.output, "5 scores compiled, 5 phrases written, 0 removed.\n");
    EXPECT_THAT(read("lib/Phrases2/10 drums/001.mid"), StartsWith("MThd"));
    EXPECT_EQ(volvelle("library check lib").output, "5 phrases are in order.\n");
    EXPECT_THAT(volvelle("generate --resources lib").output, HasSubstr("CHORDS                A\n"));
}

TEST_F(LibraryCompile, WhatDidNotChangeIsNotWrittenAgain)
{
    writeScores("| CM | FM | GM | Am |");
    volvelle("library compile scores lib");
    EXPECT_EQ(volvelle("library compile scores lib").output,
              "5 scores compiled, 0 phrases written, 0 removed.\n");
    writeScores("| CM | FM | GM | Dm |");
    EXPECT_EQ(volvelle("library compile scores lib").output,
              "5 scores compiled, 1 phrases written, 0 removed.\n");
}

TEST_F(LibraryCompile, AFaultyScoreIsOneLineAndTheOldLibraryStaysWhole)
{
    writeScores("| CM | FM | GM | Am |");
    volvelle("library compile scores lib");
    const std::string before = read("lib/Phrases2/02 leads/001.mid");
    writeScores("| CM | FM | GM | C6 |");
    write("scores/leads/001-a.score", notes("F4"));
    const auto result = volvelle("library compile scores lib");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error,
              "chord-patterns/001-a.score: line 5, bar 4: C6 is found again as Am7: write Am7\n");
    EXPECT_EQ(read("lib/Phrases2/02 leads/001.mid"), before);
}

TEST_F(LibraryCompile, AFolderWithoutScoresIsNamedInOneLine)
{
    const auto result = volvelle("library compile gone lib");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error,
              "'gone' holds no folder of scores: chord-patterns, chords, leads, basses, drums\n");
    EXPECT_EQ(names(), std::vector<std::string>{});
}

} // namespace
} // namespace volvelle::test
