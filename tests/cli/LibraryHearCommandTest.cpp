#include "tests/cli/ProgramRun.h"
#include "tests/support/ProjectFolders.h"

#include <gmock/gmock.h>
#include <tuple>

namespace volvelle::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

// Runs the program beside one that, in place of playing, notes its arguments and the size of its file.
class LibraryHearCommandTest : public ProgramRun {
protected:
    LibraryHearCommandTest()
    {
        write("volvelle-sound",
              "#!/bin/sh\necho \"$@\" | sed 's/=[^ ]*resources/=R/; s,-- .*/,-- ,' >> heard\n"
              "test -s \"$(eval echo \\\"\\${$#}\\\")\"\n");
        std::filesystem::permissions(folder / "work/volvelle-sound", std::filesystem::perms::owner_all);
        write("leads/001-a.score", "title: T\nstyle: S\nnotes:\n| ff C4:16 | r:16 | C4:16 | r:16 |\n");
        write("chord-patterns/001-a.score", "title: P\nstyle: S\nchords:\n| Am | FM | GM | E7 |\n");
    }

    ProgramResult hear(const std::string& arguments) const
    {
        return shell(
            "cp \"$VOLVELLE\" alone; ./alone library hear --resources \"${VOLVELLE%/*}/resources\" " +
            arguments);
    }
};

TEST_F(LibraryHearCommandTest, AScoreIsPlayedInThreeArrangements)
{
    const auto result = hear("leads/001-a.score");
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_THAT(result.output, StartsWith("'001-a 1.mid': "));
    EXPECT_EQ(read("heard"), "play --resources=R -- 001-a 1.mid\nplay --resources=R -- 001-a 2.mid\n"
                             "play --resources=R -- 001-a 3.mid\n");
}

TEST_F(LibraryHearCommandTest, AFolderKeepsTheArrangements)
{
    std::filesystem::create_directory(folder / "work/kept");
    EXPECT_EQ(hear("leads/001-a.score --out kept --port Out --bank b.sf2 --quiet").output, "");
    EXPECT_THAT(read("heard"),
                StartsWith("play --port=Out --bank=b.sf2 --resources=R --quiet -- 001-a 1.mid\n"));
    for (const char* name : {"kept/001-a 1.mid", "kept/001-a 2.mid", "kept/001-a 3.mid"}) {
        const auto lead = volvelle(std::string("inspect --json '") + name + "'").output;
        EXPECT_THAT(lead, HasSubstr("\"channel\":2,")) << name;
    }
}

TEST_F(LibraryHearCommandTest, ASecondHearingReplacesNothing)
{
    write("kept/001-a 2.mid", "mine");
    EXPECT_EQ(hear("leads/001-a.score --out kept").status, 0);
    const std::string first = read("kept/001-a 1.mid");
    EXPECT_THAT(hear("leads/001-a.score --out kept").output, StartsWith("'001-a 5.mid': "));
    EXPECT_EQ(read("kept/001-a 1.mid"), first);
    EXPECT_EQ(read("kept/001-a 2.mid"), "mine");
    EXPECT_THAT(read("heard"), HasSubstr("001-a 3.mid\nplay --resources=R -- 001-a 4.mid\n"
                                         "play --resources=R -- 001-a 5.mid\n"));
    EXPECT_NE(read("kept/001-a 7.mid"), "");
    EXPECT_FALSE(std::filesystem::exists(folder / "work/kept/001-a 8.mid"));
}

TEST_F(LibraryHearCommandTest, AChordPatternLeadsTheOthers)
{
    std::filesystem::create_directory(folder / "work/kept");
    EXPECT_EQ(hear("chord-patterns/001-a.score --out kept").status, 0);
    const auto shown = volvelle("inspect 'kept/001-a 2.mid'");
    EXPECT_EQ(shown.status, 0);
    EXPECT_THAT(shown.output, HasSubstr("12.0"));
}

TEST_F(LibraryHearCommandTest, WhatCannotBeHeardIsOneLine)
{
    write("leads/002-b.score", "broken");
    const std::pair<std::string, std::string> cases[] = {
        {"leads/002-b.score", "leads/002-b.score: line 1: a header line reads \"key: value\"\n"},
        {"leads/003-c.score", "leads/003-c.score: the score cannot be read\n"},
        {"volvelle-sound",
         "volvelle-sound: a score lies in one of the folders chord-patterns, chords, leads, basses, drums\n"},
        {"leads/001-a.score --out gone", "There is no folder 'gone'.\n"}};
    for (const auto& [arguments, line] : cases) {
        const auto result = hear(arguments);
        EXPECT_EQ(result.status, 1) << arguments;
        EXPECT_EQ(result.error, line);
    }
}

TEST_F(LibraryHearCommandTest, APhraseOfTheLibraryThatIsNoFileIsNotWaitedFor)
{
    const auto result = shell("cp \"$VOLVELLE\" alone; cp -r \"${VOLVELLE%/*}/resources\" own; "
                              "cd own/Phrases2/10*; rm 001.mid; mkfifo 001.mid; cd ../../..; "
                              "exec timeout 20 ./alone library hear --resources own leads/001-a.score");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "'own/Phrases2/10 drums/001.mid' is no file.\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "work/heard"));
}

TEST_F(LibraryHearCommandTest, WithoutPhrasesItTellsHowToGiveThem)
{
    const auto bare = shell("cp \"$VOLVELLE\" alone; ./alone library hear leads/001-a.score");
    EXPECT_EQ(bare.status, 1);
    EXPECT_EQ(bare.error, "The phrases are missing: name the folder that holds Phrases and Phrases2 with "
                          "--resources DIR.\n");
    const auto partly = shell("cp -r \"${VOLVELLE%/*}/resources\" own; rm -r own/Phrases2; "
                              "./alone library hear --resources own leads/001-a.score");
    EXPECT_EQ(partly.status, 1);
    EXPECT_EQ(partly.error, "'own/Phrases2/01 chords' holds no phrases: name a folder that holds Phrases and "
                            "Phrases2 with --resources DIR.\n");
}

TEST_F(LibraryHearCommandTest, ASignalEndsAllOfItAndLeavesNoFolderBehind)
{
    const std::tuple<std::string, std::string, int> cases[] = {
        {"kill -INT $PPID\nexec sleep 60", "", 130},
        {"kill -TERM $PPID\nexec sleep 60", "", 143},
        {"trap 'exit 0' TERM\nkill -INT $PPID\nwhile :; do :; done", "", 130},
        {"trap 'kill -INT $PPID' TERM\nkill -HUP $PPID\nwhile :; do :; done", "", 130},
        {"kill -INT $PPID\nexit 0", "trap '' INT; ", 0},
        {"exit 0", "trap '' CHLD; ", 0}};
    for (const auto& [script, before, status] : cases) {
        std::filesystem::remove_all(folder / "work/temporary");
        std::filesystem::create_directory(folder / "work/temporary");
        write("heard", "");
        write("volvelle-sound", "#!/bin/sh\necho x >> heard\n" + script + "\n");
        const auto result =
            shell(before + "cp \"$VOLVELLE\" alone; TMPDIR=\"$PWD/temporary\" ./alone library hear "
                           "--resources \"${VOLVELLE%/*}/resources\" leads/001-a.score");
        EXPECT_EQ(result.status, status) << script;
        EXPECT_EQ(result.error, "");
        EXPECT_EQ(read("heard"), status == 0 ? "x\nx\nx\n" : "x\n") << script;
        EXPECT_TRUE(std::filesystem::is_empty(folder / "work/temporary")) << script;
    }
}

TEST_F(LibraryHearCommandTest, AFatalStopLeavesNoFolderBehind)
{
    std::filesystem::create_directory(folder / "work/temporary");
    write("volvelle-sound", "#!/bin/sh\nrm -r own/Phrases2\n");
    const auto result =
        shell("cp \"$VOLVELLE\" alone; cp -r \"${VOLVELLE%/*}/resources\" own; "
              "TMPDIR=\"$PWD/temporary\" ./alone library hear --resources own leads/001-a.score");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.output, StartsWith("'001-a 1.mid': "));
    EXPECT_NE(result.error, "");
    EXPECT_TRUE(std::filesystem::is_empty(folder / "work/temporary"));
}

// The player holds a pipe open for as long as it lives.
TEST_F(LibraryHearCommandTest, APlayerEndsWithTheProgramThatIsKilled)
{
    write("volvelle-sound", "#!/bin/sh\nexec 3> alive\nkill -KILL $PPID\nexec sleep 60\n");
    const auto result = shell("mkfifo alive; cp \"$VOLVELLE\" alone; "
                              "./alone library hear --resources \"${VOLVELLE%/*}/resources\" "
                              "leads/001-a.score > /dev/null & timeout 30 cat alive && echo ended; wait $!");
    EXPECT_EQ(result.output, "ended\n");
    EXPECT_EQ(result.status, 128 + 9);
}

TEST_F(LibraryHearCommandTest, TwoSignalsAtOnceLeaveThePlayerTimeToEnd)
{
    write("volvelle-sound", "#!/bin/sh\ntrap 'sleep 0.2; echo ended >> heard; exit 0' TERM\n"
                            "kill -TERM $PPID\nkill -HUP $PPID\nwhile :; do :; done\n");
    EXPECT_THAT(hear("leads/001-a.score").status, testing::AnyOf(129, 143));
    EXPECT_THAT(read("heard"), HasSubstr("ended"));
}

TEST_F(LibraryHearCommandTest, APlayerThatFailsEndsIt)
{
    write("volvelle-sound", "#!/bin/sh\nexit 1\n");
    std::filesystem::permissions(folder / "work/volvelle-sound", std::filesystem::perms::owner_all);
    EXPECT_EQ(hear("leads/001-a.score").status, 1);
    write("volvelle-sound", "#!/bin/sh\nkill -KILL $$\n");
    EXPECT_EQ(hear("leads/001-a.score").error,
              "The program 'volvelle-sound' ended before its work was done.\n");
}

TEST_F(LibraryHearCommandTest, AMIDIFileIsHeardLikeAScore)
{
    EXPECT_EQ(shell("cp \"${VOLVELLE%/*}/resources/Phrases2/02 leads/001.mid\" leads/002-b.mid").status, 0);
    EXPECT_EQ(hear("leads/002-b.mid").status, 0);
    EXPECT_THAT(read("heard"), StartsWith("play --resources=R -- 002-b 1.mid\n"));
}

} // namespace
} // namespace volvelle::test
