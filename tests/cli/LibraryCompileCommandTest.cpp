#include "tests/cli/ProgramRun.h"

#include <gmock/gmock.h>

namespace volvelle::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class LibraryCompileCommandTest : public ProgramRun {
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

    // The shell looks until its program waits for the lock of "lib", or half a thousand times.
    const std::string waits = "n=$(stat -c %i lib); for i in $(seq 500); do "
                              "grep -q -- \"->.* $! .*:$n \" /proc/locks && break; done; ";

    static std::string notes(const std::string& pitch)
    {
        return "title: N\nstyle: test\n\nnotes:\n| " + pitch + ":16 |\n| r:16 |\n| " + pitch +
               ":16 |\n| r:16 |\n";
    }
};

TEST_F(LibraryCompileCommandTest, ScoresBecomeAWorkingLibrary)
{
    writeScores("| CM | FM | GM | Am |");
    const auto result = volvelle("library compile scores lib");
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_EQ(result.output, "5 scores compiled, 5 phrases written, 0 removed.\n");
    EXPECT_THAT(read("lib/Phrases2/10 drums/001.mid"), StartsWith("MThd"));
    EXPECT_THAT(volvelle("generate --resources lib").output, HasSubstr("CHORDS                A\n"));
}

TEST_F(LibraryCompileCommandTest, WhatDidNotChangeIsNotWrittenAgain)
{
    writeScores("| CM | FM | GM | Am |");
    volvelle("library compile scores lib");
    EXPECT_EQ(volvelle("library compile scores lib").output,
              "5 scores compiled, 0 phrases written, 0 removed.\n");
    writeScores("| CM | FM | GM | Dm |");
    EXPECT_EQ(volvelle("library compile scores lib").output,
              "5 scores compiled, 1 phrases written, 0 removed.\n");
}

TEST_F(LibraryCompileCommandTest, AFaultyScoreIsOneLineAndTheOldLibraryStaysWhole)
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

// A phrase of a library is a MIDI file like any other.
TEST_F(LibraryCompileCommandTest, MIDIFilesTakeThePlaceOfScores)
{
    writeScores("| CM | FM | GM | Am |");
    volvelle("library compile scores lib");
    const std::string lead = read("lib/Phrases2/02 leads/001.mid");
    const std::string pattern = read("lib/Phrases/chord patterns/001.mid");
    write("scores/leads/007-mine.mid", lead);
    write("scores/leads/003-b.score", notes("F4"));
    write("scores/leads/groove.MIDI", lead);
    write("scores/chord-patterns/002-b.mid", pattern);
    std::filesystem::remove(folder / "work/scores/chord-patterns/001-a.score");
    EXPECT_EQ(volvelle("library compile scores other").output,
              "8 scores compiled, 8 phrases written, 0 removed.\n");
    EXPECT_EQ(read("other/Phrases2/02 leads/001.mid"), lead);
    EXPECT_NE(read("other/Phrases2/02 leads/002.mid"), lead);
    EXPECT_EQ(read("other/Phrases2/02 leads/003.mid"), lead);
    EXPECT_EQ(read("other/Phrases2/02 leads/004.mid"), lead);
    EXPECT_EQ(read("other/Phrases/chord patterns/001.mid"), pattern);
    EXPECT_EQ(volvelle("generate --resources other").status, 0);
    std::filesystem::remove(folder / "work/scores/leads/groove.MIDI");
    EXPECT_EQ(volvelle("library compile scores other").output,
              "7 scores compiled, 0 phrases written, 1 removed.\n");
}

TEST_F(LibraryCompileCommandTest, AMIDIFileThatIsNoPhraseIsOneLineAndNothingChanges)
{
    writeScores("| CM | FM | GM | Am |");
    volvelle("library compile scores lib");
    const std::string before = read("lib/Phrases2/02 leads/001.mid");
    write("scores/leads/001-a.score", notes("F4"));
    write("scores/leads/002-long.mid",
          std::string("MThd\0\0\0\6\0\0\0\1\0\x60MTrk\0\0\0\xD\0\x92H@\x18\x82H\0\x98\0\xFF\x2F\0", 35));
    write("scores/drums/002-b.mid", "x");
    const auto result = volvelle("library compile scores lib");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error, "leads/002-long.mid: the MIDI file is 32.25 beats long, at most 16\n"
                            "drums/002-b.mid: the MIDI file cannot be read\n");
    EXPECT_EQ(read("lib/Phrases2/02 leads/001.mid"), before);
}

TEST_F(LibraryCompileCommandTest, AFolderWithoutScoresIsNamedInOneLine)
{
    const auto result = volvelle("library compile gone lib");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.error,
              "'gone' holds no folder of scores: chord-patterns, chords, leads, basses, drums\n");
    EXPECT_EQ(names(), std::vector<std::string>{});
}

TEST_F(LibraryCompileCommandTest, TheSecondWaitsForTheFirst)
{
    writeScores("| CM | FM | GM | Am |");
    volvelle("library compile scores lib");
    const std::string before = read("lib/Phrases/chord patterns/001.mid");
    writeScores("| CM | FM | GM | Dm |");
    const auto waiting =
        shell("exec 9< lib; flock 9; timeout 0.3 \"$VOLVELLE\" library compile scores lib 9<&-");
    EXPECT_EQ(waiting.status, 124);
    EXPECT_EQ(waiting.output, "Another process is writing into 'lib': waiting for it.\n");
    EXPECT_EQ(waiting.error, "");
    EXPECT_EQ(read("lib/Phrases/chord patterns/001.mid"), before);
    EXPECT_EQ(volvelle("library compile scores lib").output,
              "5 scores compiled, 1 phrases written, 0 removed.\n");
}

TEST_F(LibraryCompileCommandTest, WhatCameIntoThePlaceOfAPhraseMeanwhileStays)
{
    writeScores("| CM | FM | GM | Am |");
    volvelle("library compile scores lib");
    writeScores("| CM | FM | GM | Dm |");
    const std::string place = "lib/Phrases/chord patterns/001.mid";
    const auto result =
        shell("exec 9< lib; flock 9; \"$VOLVELLE\" library compile scores lib 9<&- & " + waits + "rm '" +
              place + "'; mkdir '" + place + "'; echo mine > '" + place + "/a'; exec 9<&-; wait $!");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "'" + place + "' is no file\n");
    EXPECT_EQ(read(place + "/a"), "mine\n");
}

TEST_F(LibraryCompileCommandTest, AFolderThatWentWhileItWasWaitedForIsMadeAnew)
{
    writeScores("| CM | FM | GM | Am |");
    const auto result =
        shell("mkdir lib; exec 9< lib; flock 9; \"$VOLVELLE\" library compile scores lib 9<&- & " + waits +
              "rmdir lib; mkdir lib; exec 8< lib; flock 8; exec 9<&-; " + waits +
              "ls lib; echo held; exec 8<&-; wait $!");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "Another process is writing into 'lib': waiting for it.\nheld\n"
                             "5 scores compiled, 5 phrases written, 0 removed.\n");
    EXPECT_THAT(read("lib/Phrases2/10 drums/001.mid"), StartsWith("MThd"));
}

TEST_F(LibraryCompileCommandTest, WhatOneThatWasKilledLeftGoesWithTheNext)
{
    writeScores("| CM | FM | GM | Am |");
    volvelle("library compile scores lib");
    EXPECT_EQ(
        shell("sh -c 'd=\"lib/Phrases2/02 leads/.volvelle-$$-0.new\"; mkdir \"$d\"; echo > \"$d/001.mid\"'; "
              "ls -A 'lib/Phrases2/02 leads' | wc -l")
            .output,
        "2\n");
    EXPECT_EQ(volvelle("library compile scores lib").status, 0);
    EXPECT_EQ(shell("ls -A 'lib/Phrases2/02 leads'").output, "001.mid\n");
}

} // namespace
} // namespace volvelle::test
