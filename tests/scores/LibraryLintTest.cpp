#include "scores/LibraryLint.h"

#include "scores/ScoreFile.h"
#include "tests/scores/ScoreTexts.h"
#include "tests/support/ProjectFolders.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>
#include <iterator>
#include <sys/stat.h>

namespace volvelle {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

std::string contents(const fs::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// A copy of the project's library, which has no fault, in a folder of its own.
class LibraryLint : public testing::Test {
protected:
    void SetUp() override
    {
        fs::copy(test::sourceFolder() / "library", folder / "lib", fs::copy_options::recursive);
        working = fs::current_path();
        fs::current_path(folder);
    }

    void TearDown() override { fs::current_path(working); }

    static std::vector<fs::path> scores(const std::string& kind)
    {
        const auto scores = scoresIn("lib/" + kind);
        return scores ? *scores : std::vector<fs::path>{};
    }

    static void write(const fs::path& file, const std::string& words)
    {
        std::ofstream(file, std::ios::binary) << words;
    }

    static void replace(const fs::path& file, const std::string& from, const std::string& to)
    {
        std::string words = contents(file);
        const auto at = words.find(from);
        ASSERT_NE(at, std::string::npos) << file;
        write(file, words.replace(at, from.size(), to));
    }

    static void emptyFolder(const fs::path& path)
    {
        fs::remove_all(path);
        fs::create_directory(path);
    }

    test::TemporaryFolder temporary;
    fs::path folder = temporary.path;
    fs::path working;
};

TEST_F(LibraryLint, TheFaultsOfAScoreAreToldWithTheFile)
{
    const auto lead = scores("leads").at(3);
    write(lead, test::head + "notes:\n| C3:15 |\n" + test::rest + test::rest + test::rest);
    const Lines unread{lead.string() + ": line 4, bar 1: the cells add up to 15 sixteenths, not 16"};
    EXPECT_EQ(lintLibrary("lib").faults, unread);
    EXPECT_EQ(lintScoreFile(lead).faults, unread);
    write(lead, test::head + "machine: yes\nnotes:\n| A3:1 G3:1 F3:1 E3:4 r:9 |\n| r:16 |\n"
                             "| E3:4 C3:4 r:8 |\n| D3:4 G3:4 r:8 |\n");
    const auto report = lintScoreFile(lead);
    EXPECT_EQ(
        report.faults,
        (Lines{
            lead.string() + ": line 7, bar 3: C3 lies outside D3 to A#4",
            lead.string() +
                ": line 5, bar 1: a third step of one or two semitones, at most 2: leap by three or more"}));
    EXPECT_EQ(report.scores, 1);
}

TEST_F(LibraryLint, NumbersWithAGapOrADoubleAreTold)
{
    fs::rename(scores("leads").at(4), "lib/leads/004-zz.score");
    EXPECT_EQ(lintLibrary("lib").faults,
              (Lines{"lib/leads/004-zz.score: the number 4 stands twice, 5 is the next",
                     scores("leads").at(5).string() + ": the number 6 leaves a gap, 5 is the next"}));
}

TEST_F(LibraryLint, NamesOfAnotherFormAreTold)
{
    const auto last = scores("drums").back();
    const std::string number = std::to_string(scores("drums").size());
    fs::rename(last, "lib/drums/" + number + "-short.score");
    write("lib/drums/100-a.scor", "");
    write("lib/drums/.hidden", "");
    write("lib/drums/notes.txt", "");
    const std::string form = ": a score is called NNN-some-name.score";
    EXPECT_EQ(lintLibrary("lib").faults,
              (Lines{"lib/drums/100-a.scor" + form, "lib/drums/" + number + "-short.score" + form,
                     "lib/drums/notes.txt" + form}));
    EXPECT_EQ(lintScoreFile("lib/drums/" + number + "-short.score").faults,
              Lines{"lib/drums/" + number + "-short.score" + form});
}

TEST_F(LibraryLint, ThreeDigitsOrMoreAreANumber)
{
    EXPECT_EQ(scoreNumber("a/001-b.score"), 1);
    EXPECT_EQ(scoreNumber("1000-b.score"), 1000);
    for (const auto* name : {"01-b.score", "0001-b.score", "1000000-b.score", "001b.score", "001-.score",
                             "001-b.txt", "b.score", ".score"}) {
        EXPECT_EQ(scoreNumber(name), std::nullopt) << name;
    }
}

TEST_F(LibraryLint, ATitleThatStandsTwiceIsTold)
{
    const auto first = scores("chords").at(0);
    const auto other = scores("basses").at(2);
    const std::string title = readScore(first, ScoreKind::chords)->title;
    const std::string own = readScore(other, ScoreKind::bass)->title;
    replace(other, "title: " + own, "; here\ntitle: " + title);
    const Lines fault{other.string() + ": line 2: the title \"" + title + "\" stands in " + first.string() +
                      ", too: each is used once"};
    EXPECT_EQ(lintLibrary("lib").faults, fault);
    EXPECT_EQ(lintScoreFile(other).faults, fault);
}

TEST_F(LibraryLint, FoldersThatAreMissingOrEmptyAreTold)
{
    fs::remove_all("lib/drums");
    emptyFolder("lib/leads");
    EXPECT_EQ(lintLibrary("lib").faults, (Lines{"lib/leads: there are no scores in the folder",
                                                "lib/drums: the folder cannot be read"}));
}

TEST_F(LibraryLint, EveryThirdPhraseLeavesABarNearlyEmpty)
{
    emptyFolder("lib/drums");
    const std::string bar = "9.2.3.4.5.6.....|";
    for (const auto* number : {"001", "002", "003"}) {
        write("lib/drums/" + std::string(number) + "-a.score", "title: Drum " + std::string(number) +
                                                                   "\nstyle: S\ndrums:\nlow 36 |" + bar +
                                                                   bar + bar + "6.5.4.3.2.1.1.1.|\n");
    }
    EXPECT_EQ(
        lintLibrary("lib").faults,
        Lines{"lib/drums: 0 of 3 phrases leave one bar nearly empty, with 5 places that are struck at most: "
              "every third does"});
    replace("lib/drums/002-a.score", bar, "9.2.3.4.6.......|");
    EXPECT_EQ(lintLibrary("lib").faults, Lines{});
    fs::remove("lib/drums/002-a.score");
    fs::rename("lib/drums/003-a.score", "lib/drums/002-a.score");
    EXPECT_EQ(lintLibrary("lib").faults, Lines{});
}

TEST_F(LibraryLint, TwoOfThreeBassesSoundOnTheFirstBeatOfEveryBar)
{
    emptyFolder("lib/basses");
    const std::string bar = "| E1:4 E1:4 E1:4 r:2 E1:2 |\n";
    const std::string late = "| r:1 E1:4 r:11 |\n";
    for (const auto* number : {"001", "002", "003"}) {
        write("lib/basses/" + std::string(number) + "-a.score", "title: Bass " + std::string(number) +
                                                                    "\nstyle: S\nmachine: yes\nnotes:\n" +
                                                                    bar + bar + late + bar);
    }
    const std::string fault = " of 3 basses sound on the first beat of every bar: two of three do";
    EXPECT_EQ(lintLibrary("lib").faults, Lines{"lib/basses: 0" + fault});
    replace("lib/basses/001-a.score", late, "| ~:4 r:12 |\n");
    EXPECT_EQ(lintLibrary("lib").faults, Lines{"lib/basses: 1" + fault});
    replace("lib/basses/003-a.score", late, "| E1:1 r:15 |\n");
    EXPECT_EQ(lintLibrary("lib").faults, Lines{});
}

TEST_F(LibraryLint, AScoreOutsideTheFoldersIsTold)
{
    const auto lead = scores("leads").at(0);
    fs::copy_file(lead, folder / "001-a.score");
    EXPECT_EQ(
        lintScoreFile("001-a.score").faults,
        Lines{
            "001-a.score: a score lies in one of the folders chord-patterns, chords, leads, basses, drums"});
    fs::current_path("lib/leads");
    EXPECT_EQ(lintScoreFile(lead.filename()).faults, Lines{});
}

TEST_F(LibraryLint, AScoreThatCannotBeReadIsTold)
{
    EXPECT_EQ(lintScoreFile("lib/leads/001-gone.score").faults,
              Lines{"lib/leads/001-gone.score: the score cannot be read"});
    const auto pipe = scores("leads").back();
    fs::remove(pipe);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(lintLibrary("lib").faults, Lines{pipe.string() + ": the score cannot be read"});
}

} // namespace
} // namespace volvelle
