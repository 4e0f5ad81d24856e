#include "scores/ScoreCompiler.h"

#include "tests/scores/ScoreTexts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace volvelle {
namespace {

namespace fs = std::filesystem;
using test::head;
using test::rest;

const std::string lead = head + "notes:\n| C4:4 r:12 |\n" + rest + rest + rest;
const std::string otherLead = head + "notes:\n| D4:4 r:12 |\n" + rest + rest + rest;

class ScoreCompiler : public testing::Test {
protected:
    void SetUp() override
    {
        folder =
            fs::path(testing::TempDir()) / ("scores-" + std::to_string(getpid()) + "-" +
                                            testing::UnitTest::GetInstance()->current_test_info()->name());
        for (const auto kind : allScoreKinds) {
            fs::create_directories(scores() / scoreFolder(kind));
        }
    }

    void TearDown() override { fs::remove_all(folder); }

    fs::path scores() const { return folder / "library"; }

    fs::path out() const { return folder / "out"; }

    fs::path leads() const { return out() / "Phrases2/02 leads"; }

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

TEST_F(ScoreCompiler, AScoreBecomesAMIDIFileAndNoTemporaryFileStays)
{
    write(folder / "a.score", lead);
    std::string error;
    ASSERT_TRUE(compileScore(folder / "a.score", folder / "a.mid", ScoreKind::lead, error)) << error;
    EXPECT_EQ(read(folder / "a.mid").substr(0, 4), "MThd");
    EXPECT_EQ(names(folder), (std::vector<std::string>{"a.mid", "a.score", "library"}));
}

TEST_F(ScoreCompiler, AFileWithTheSameBytesIsNotTouched)
{
    write(folder / "a.score", lead);
    std::string error;
    ASSERT_TRUE(compileScore(folder / "a.score", folder / "a.mid", ScoreKind::lead, error)) << error;
    const auto long_ago = fs::file_time_type{} + std::chrono::hours(1);
    fs::last_write_time(folder / "a.mid", long_ago);
    ASSERT_TRUE(compileScore(folder / "a.score", folder / "a.mid", ScoreKind::lead, error)) << error;
    EXPECT_EQ(fs::last_write_time(folder / "a.mid"), long_ago);
    write(folder / "a.score", otherLead);
    ASSERT_TRUE(compileScore(folder / "a.score", folder / "a.mid", ScoreKind::lead, error)) << error;
    EXPECT_NE(fs::last_write_time(folder / "a.mid"), long_ago);
}

TEST_F(ScoreCompiler, AFaultyScoreLeavesThePhraseAlone)
{
    write(folder / "a.score", "title: T\n");
    write(folder / "a.mid", "old");
    std::string error;
    EXPECT_FALSE(compileScore(folder / "a.score", folder / "a.mid", ScoreKind::lead, error));
    EXPECT_EQ(error, "the body is missing: there is no line \"notes:\"");
    EXPECT_EQ(read(folder / "a.mid"), "old");
}

TEST_F(ScoreCompiler, AScoreThatIsMissingAndAPlaceThatCannotBeWrittenAreErrors)
{
    std::string error;
    EXPECT_FALSE(compileScore(folder / "none.score", folder / "a.mid", ScoreKind::lead, error));
    EXPECT_EQ(error, "the score cannot be read");
    EXPECT_FALSE(compileScore(folder, folder / "a.mid", ScoreKind::lead, error));
    EXPECT_EQ(error, "the score cannot be read");
    write(folder / "a.score", lead);
    EXPECT_FALSE(compileScore(folder / "a.score", folder / "none/a.mid", ScoreKind::lead, error));
    EXPECT_EQ(error, "a.mid cannot be written");
    fs::create_directories(folder / "b.mid/full");
    EXPECT_FALSE(compileScore(folder / "a.score", folder / "b.mid", ScoreKind::lead, error));
    EXPECT_EQ(error, "b.mid cannot be written");
    EXPECT_FALSE(fs::exists(folder / "b.mid.new"));
}

TEST_F(ScoreCompiler, ALibraryIsNumberedInTheOrderOfTheNames)
{
    write(scores() / "leads/002-b.score", otherLead);
    write(scores() / "leads/001-a.score", lead);
    write(scores() / "leads/notes.txt", "no score");
    LibraryReport report;
    EXPECT_TRUE(compileLibrary(scores(), out(), report));
    EXPECT_EQ(report.compiled, 2);
    EXPECT_EQ(report.changed, 2);
    EXPECT_EQ(report.removed, 0);
    EXPECT_EQ(names(leads()), (std::vector<std::string>{"001.mid", "002.mid"}));
    EXPECT_NE(read(leads() / "001.mid").find("\x92\x48"), std::string::npos); // C4
    for (const auto* path :
         {"Phrases/chord patterns", "Phrases2/01 chords", "Phrases2/09 basses", "Phrases2/10 drums"}) {
        EXPECT_TRUE(fs::is_directory(out() / path)) << path;
    }
}

TEST_F(ScoreCompiler, ASecondRunChangesNothing)
{
    write(scores() / "leads/001-a.score", lead);
    LibraryReport first;
    LibraryReport second;
    EXPECT_TRUE(compileLibrary(scores(), out(), first));
    EXPECT_TRUE(compileLibrary(scores(), out(), second));
    EXPECT_EQ(second.compiled, 1);
    EXPECT_EQ(second.changed, 0);
}

TEST_F(ScoreCompiler, NumberedPhrasesBeyondTheLastAreRemovedAndNothingElse)
{
    write(scores() / "leads/001-a.score", lead);
    for (const auto* name :
         {"002.mid", "1000.mid", "0002.mid", "2.mid", "my own.mid", "002.txt", "99999999.mid"}) {
        write(leads() / name, "x");
    }
    LibraryReport report;
    EXPECT_TRUE(compileLibrary(scores(), out(), report));
    EXPECT_EQ(report.removed, 2);
    EXPECT_EQ(names(leads()), (std::vector<std::string>{"0002.mid", "001.mid", "002.txt", "2.mid",
                                                        "99999999.mid", "my own.mid"}));
}

TEST_F(ScoreCompiler, AFaultyScoreIsReportedAndKeepsItsNumber)
{
    write(scores() / "leads/001-a.score", "title: T\n");
    write(scores() / "leads/002-b.score", lead);
    write(leads() / "001.mid", "old");
    LibraryReport report;
    EXPECT_FALSE(compileLibrary(scores(), out(), report));
    EXPECT_EQ(report.errors, std::vector<std::string>{
                                 "leads/001-a.score: the body is missing: there is no line \"notes:\""});
    EXPECT_EQ(report.compiled, 1);
    EXPECT_EQ(read(leads() / "001.mid"), "old");
    EXPECT_EQ(names(leads()), (std::vector<std::string>{"001.mid", "002.mid"}));
}

TEST_F(ScoreCompiler, AMissingFolderIsReportedAndItsPhrasesStay)
{
    fs::remove_all(scores() / "drums");
    write(out() / "Phrases2/10 drums/001.mid", "old");
    LibraryReport report;
    EXPECT_FALSE(compileLibrary(scores(), out(), report));
    EXPECT_EQ(report.errors, std::vector<std::string>{"drums: the folder cannot be read"});
    EXPECT_EQ(read(out() / "Phrases2/10 drums/001.mid"), "old");
}

TEST_F(ScoreCompiler, APlaceThatCannotBeMadeIsReported)
{
    write(out() / "Phrases", "a file");
    LibraryReport report;
    EXPECT_FALSE(compileLibrary(scores(), out(), report));
    EXPECT_EQ(report.errors, std::vector<std::string>{"Phrases/chord patterns: the folder cannot be made"});
}

} // namespace
} // namespace volvelle
