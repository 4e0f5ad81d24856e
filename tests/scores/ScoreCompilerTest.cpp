#include "scores/ScoreCompiler.h"

#include "scores/ScoreFile.h"
#include "scores/ScoreKind.h"
#include "tests/scores/ScoreTexts.h"
#include "tests/services/files/FileSizeLimit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace volvelle {
namespace {

namespace fs = std::filesystem;
using test::head;
using test::rest;
using Lines = std::vector<std::string>;

const std::string lead = head + "notes:\n| C4:4 r:12 |\n" + rest + rest + rest;
const std::string otherLead = head + "notes:\n| D4:4 r:12 |\n" + rest + rest + rest;

class ScoreCompiler : public testing::Test {
protected:
    void SetUp() override
    {
        folder =
            fs::path(testing::TempDir()) / ("scores-" + std::to_string(getpid()) + "-" +
                                            testing::UnitTest::GetInstance()->current_test_info()->name());
        write(scores() / "chord-patterns/001-a.score", head + "chords:\n| CM | FM | GM | Am |\n");
        write(scores() / "drums/001-a.score",
              head +
                  "drums:\nkick 36 |9...............|................|................|................|\n");
        for (const auto* name : {"chords", "leads", "basses"}) {
            write(scores() / name / "001-a.score", lead);
        }
    }

    void TearDown() override { fs::remove_all(folder); }

    fs::path scores() const { return folder / "library"; }

    fs::path out() const { return folder / "out"; }

    fs::path leads() const { return out() / "Phrases2/02 leads"; }

    // The errors of compiling the library.
    Lines compiled() const
    {
        LibraryReport report;
        const bool done = compileLibrary(scores(), out(), report);
        EXPECT_EQ(done, report.errors.empty());
        return report.errors;
    }

    static void write(const fs::path& path, const std::string& words)
    {
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << words;
    }

    static std::string read(const fs::path& path)
    {
        std::stringstream words;
        words << std::ifstream(path, std::ios::binary).rdbuf();
        return words.str();
    }

    static std::vector<std::string> names(const fs::path& where)
    {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator(where)) {
            found.push_back(entry.path().filename().string());
        }
        std::ranges::sort(found);
        return found;
    }

    fs::path folder;
};

TEST_F(ScoreCompiler, ALibraryIsNumberedInTheOrderOfTheNames)
{
    write(scores() / "leads/002-b.score", otherLead);
    write(scores() / "leads/notes.txt", "no score");
    LibraryReport report;
    EXPECT_TRUE(compileLibrary(scores(), out(), report));
    EXPECT_EQ(report.compiled, 6);
    EXPECT_EQ(report.changed, 6);
    EXPECT_EQ(report.removed, 0);
    EXPECT_EQ(names(leads()), (Lines{"001.mid", "002.mid"}));
    EXPECT_EQ(read(leads() / "001.mid").substr(0, 4), "MThd");
    EXPECT_NE(read(leads() / "001.mid").find("\x92\x48"), std::string::npos); // C4
    for (const auto kind : allScoreKinds) {
        EXPECT_TRUE(fs::exists(out() / phraseFolder(kind) / "001.mid")) << phraseFolder(kind);
    }
}

TEST_F(ScoreCompiler, ASecondRunChangesNothing)
{
    EXPECT_EQ(compiled(), Lines{});
    LibraryReport second;
    EXPECT_TRUE(compileLibrary(scores(), out(), second));
    EXPECT_EQ(second.compiled, 5);
    EXPECT_EQ(second.changed, 0);
}

TEST_F(ScoreCompiler, OnlyWhatDiffersIsWrittenAndNothingElseStays)
{
    write(scores() / "leads/001-a.score", lead);
    write(scores() / "leads/002-b.score", lead);
    EXPECT_EQ(compiled(), Lines{});
    const auto longAgo = fs::file_time_type{} + std::chrono::hours(1);
    fs::last_write_time(leads() / "001.mid", longAgo);
    fs::last_write_time(leads() / "002.mid", longAgo);
    write(scores() / "leads/002-b.score", otherLead);
    EXPECT_EQ(compiled(), Lines{});
    EXPECT_EQ(fs::last_write_time(leads() / "001.mid"), longAgo);
    EXPECT_NE(fs::last_write_time(leads() / "002.mid"), longAgo);
    EXPECT_EQ(names(out()), (Lines{"Phrases", "Phrases2"}));
    EXPECT_EQ(names(leads()), (Lines{"001.mid", "002.mid"}));
}

TEST_F(ScoreCompiler, AThousandScoresStandInTheOrderOfTheirNumbers)
{
    for (const auto* name : {"1000-d", "999-c", "002-b", "1-a", "x"}) {
        write(scores() / ("leads/" + std::string(name) + ".score"),
              name == std::string("1000-d") ? otherLead : lead);
    }
    EXPECT_EQ(compiled(), Lines{});
    EXPECT_EQ(read(leads() / "004.mid"), read(leads() / "001.mid"));
    EXPECT_NE(read(leads() / "005.mid"), read(leads() / "001.mid"));
    EXPECT_EQ(read(leads() / "006.mid"), read(leads() / "001.mid"));
}

TEST_F(ScoreCompiler, CompiledPhrasesBeyondTheLastAreRemovedAndNothingElse)
{
    for (const auto* name : {"001-a", "002-b", "003-c"}) {
        write(scores() / ("leads/" + std::string(name) + ".score"), lead);
    }
    EXPECT_EQ(compiled(), Lines{});
    for (const auto* name : {"1000.mid", "0002.mid", "2.mid", "99999999.mid"}) {
        fs::copy_file(leads() / "001.mid", leads() / name);
    }
    for (const auto* name : {"004.mid", "my own.mid", "002.txt"}) {
        write(leads() / name, "x");
    }
    ASSERT_EQ(mkfifo((leads() / "005.mid").c_str(), 0600), 0);
    fs::remove(scores() / "leads/002-b.score");
    fs::remove(scores() / "leads/003-c.score");
    LibraryReport report;
    EXPECT_TRUE(compileLibrary(scores(), out(), report));
    EXPECT_EQ(report.removed, 3);
    EXPECT_EQ(names(leads()), (Lines{"0002.mid", "001.mid", "002.txt", "004.mid", "005.mid", "2.mid",
                                     "99999999.mid", "my own.mid"}));
}

TEST_F(ScoreCompiler, AFaultyScoreIsReportedAndNothingChanges)
{
    EXPECT_EQ(compiled(), Lines{});
    write(scores() / "leads/001-kite.score", "title: T\n");
    write(scores() / "leads/002-b.score", otherLead);
    write(scores() / "drums/001-b.score", "");
    write(leads() / "001.mid", "old");
    fs::copy_file(out() / "Phrases2/09 basses/001.mid", leads() / "009.mid");
    EXPECT_EQ(compiled(),
              (Lines{"leads/001-kite.score: line 1: the body is missing: there is no line \"notes:\"",
                     "drums/001-b.score: line 1: the body is missing: there is no line \"drums:\""}));
    EXPECT_EQ(read(leads() / "001.mid"), "old");
    EXPECT_EQ(names(leads()), (Lines{"001.mid", "009.mid"}));
    fs::remove_all(out());
    EXPECT_EQ(compiled().size(), 2U);
    EXPECT_FALSE(fs::exists(out()));
}

TEST_F(ScoreCompiler, AFolderThatIsMissingOrEmptyIsReportedAndNothingChanges)
{
    fs::remove_all(scores() / "drums");
    fs::remove(scores() / "basses/001-a.score");
    write(scores() / "basses/readme.txt", "no score");
    write(out() / "Phrases2/10 drums/001.mid", "old");
    EXPECT_EQ(compiled(), (Lines{"basses: there are no scores in the folder",
                                 "drums: there is no such folder: all five are needed"}));
    EXPECT_EQ(names(out()), Lines{"Phrases2"});
    EXPECT_EQ(names(out() / "Phrases2/10 drums"), Lines{"001.mid"});
    write(scores() / "basses/001-a.score", lead);
    write(scores() / "drums", "a file");
    EXPECT_EQ(compiled(), Lines{"drums: the folder cannot be read"});
}

TEST_F(ScoreCompiler, AFolderWithoutFoldersOfScoresIsNamed)
{
    for (const auto kind : allScoreKinds) {
        fs::remove_all(scores() / scoreFolder(kind));
    }
    const std::string fault =
        "/library' holds no folder of scores: chord-patterns, chords, leads, basses, drums";
    EXPECT_EQ(compiled(), Lines{"'" + folder.string() + fault});
    fs::remove_all(scores());
    EXPECT_EQ(compiled(), Lines{"'" + folder.string() + fault});
    EXPECT_FALSE(fs::exists(out()));
}

TEST_F(ScoreCompiler, WhatStandsInTheWayOfAFolderOrAPhraseIsNamedAndNothingChanges)
{
    write(folder / "out", "a file");
    EXPECT_EQ(compiled(), Lines{"'" + out().string() + "' is no folder"});
    fs::remove(out());
    write(out() / "Phrases", "a file");
    EXPECT_EQ(compiled(), Lines{"'" + (out() / "Phrases").string() + "' is no folder"});
    EXPECT_EQ(names(out()), Lines{"Phrases"});
    fs::remove(out() / "Phrases");
    fs::create_directories(leads() / "001.mid");
    EXPECT_EQ(compiled(), Lines{"'" + (leads() / "001.mid").string() + "' is no file"});
    fs::remove(leads() / "001.mid");
    ASSERT_EQ(mkfifo((leads() / "001.mid").c_str(), 0600), 0);
    EXPECT_EQ(compiled(), Lines{"'" + (leads() / "001.mid").string() + "' is no file"});
    EXPECT_EQ(names(out()), Lines{"Phrases2"});
}

TEST_F(ScoreCompiler, ALinkIsNoneOfItsPhrasesAndStays)
{
    write(scores() / "leads/002-b.score", otherLead);
    EXPECT_EQ(compiled(), Lines{});
    fs::copy_file(leads() / "001.mid", folder / "mine.mid");
    fs::create_symlink(folder / "mine.mid", leads() / "003.mid");
    EXPECT_EQ(compiled(), Lines{});
    EXPECT_TRUE(fs::is_symlink(leads() / "003.mid"));
    for (const fs::path& target : {folder / "mine.mid", folder / "gone.mid"}) {
        fs::remove(leads() / "002.mid");
        fs::create_symlink(target, leads() / "002.mid");
        EXPECT_EQ(compiled(), Lines{"'" + (leads() / "002.mid").string() + "' is a link"});
        EXPECT_EQ(fs::read_symlink(leads() / "002.mid"), target);
    }
    EXPECT_FALSE(fs::exists(folder / "gone.mid"));
}

TEST_F(ScoreCompiler, ALinkThatLeadsNowhereStandsInTheWayOfAFolder)
{
    fs::create_directories(out());
    fs::create_symlink("gone", out() / "Phrases2");
    EXPECT_EQ(compiled(), Lines{"'" + (out() / "Phrases2").string() + "' is no folder"});
    EXPECT_EQ(names(out()), Lines{"Phrases2"});
}

TEST_F(ScoreCompiler, AWriteProtectedPhraseStaysAndSoDoTheOthers)
{
    EXPECT_EQ(compiled(), Lines{});
    const std::string before = read(leads() / "001.mid");
    fs::permissions(out() / "Phrases2/10 drums/001.mid", fs::perms::owner_read);
    write(scores() / "leads/001-a.score", otherLead);
    EXPECT_EQ(compiled(), Lines{"'" + (out() / "Phrases2/10 drums/001.mid").string() +
                                "' could not be written: it is write-protected."});
    EXPECT_EQ(read(leads() / "001.mid"), before);
}

TEST_F(ScoreCompiler, AFolderThatMayNotBeWrittenLeavesAllOthersAsTheyWere)
{
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser may write everywhere";
    }
    EXPECT_EQ(compiled(), Lines{});
    const std::string before = read(leads() / "001.mid");
    write(scores() / "leads/001-a.score", otherLead);
    write(scores() / "basses/001-a.score", otherLead);
    const fs::path basses = out() / "Phrases2/09 basses";
    fs::permissions(basses, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(compiled(), Lines{"'" + (basses / "001.mid").string() +
                                "' could not be written: its folder is not writable."});
    EXPECT_EQ(read(leads() / "001.mid"), before);
    EXPECT_EQ(names(leads()), Lines{"001.mid"});
    fs::permissions(basses, fs::perms::owner_all);
}

TEST_F(ScoreCompiler, WhatDoesNotFitIsNamedWithItsReasonAndLeavesNoFolder)
{
    Lines errors;
    {
        const test::FileSizeLimit limit(3);
        errors = compiled();
    }
    EXPECT_EQ(errors, Lines{"'" + (out() / "Phrases/chord patterns/001.mid").string() +
                            "' could not be written: it would be larger than allowed."});
    EXPECT_FALSE(fs::exists(out()));
}

TEST_F(ScoreCompiler, AFolderOnAnotherDeviceIsALinkLikeAnyOther)
{
    const fs::path there = fs::path("/dev/shm") / folder.filename();
    fs::create_directories(there);
    fs::create_directories(out());
    fs::create_symlink(there, out() / "Phrases2");
    EXPECT_EQ(compiled(), Lines{});
    write(scores() / "leads/001-a.score", otherLead);
    EXPECT_EQ(compiled(), Lines{});
    EXPECT_NE(read(leads() / "001.mid").find("\x92\x4A"), std::string::npos); // D4
    EXPECT_EQ(names(leads()), Lines{"001.mid"});
    fs::remove_all(there);
}

TEST_F(ScoreCompiler, AnEmptyNameIsNoFolder)
{
    LibraryReport report;
    EXPECT_FALSE(compileLibrary(scores(), "", report));
    EXPECT_EQ(report.errors, Lines{"'' could not be written: its folder does not exist."});
    EXPECT_FALSE(holdsScoreFolders(""));
}

TEST_F(ScoreCompiler, ANameThatBeginsWithADotIsNoScore)
{
    fs::create_symlink("someone@somewhere.1", scores() / "leads/.#001-a.score");
    write(scores() / "leads/._001-a.score", "no score");
    LibraryReport report;
    EXPECT_TRUE(compileLibrary(scores(), out(), report));
    EXPECT_EQ(report.compiled, 5);
}

TEST_F(ScoreCompiler, AScoreThatIsNoFileIsReported)
{
    ASSERT_EQ(mkfifo((scores() / "leads/002-pipe.score").c_str(), 0600), 0);
    fs::create_directories(scores() / "leads/003-folder.score");
    fs::create_symlink("gone", scores() / "leads/004-link.score");
    EXPECT_EQ(compiled(), (Lines{"leads/002-pipe.score: the score cannot be read",
                                 "leads/003-folder.score: the score cannot be read",
                                 "leads/004-link.score: the score cannot be read"}));
}

} // namespace
} // namespace volvelle
