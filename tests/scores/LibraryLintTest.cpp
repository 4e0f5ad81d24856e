#include "scores/LibraryLint.h"

#include "scores/LibraryRules.h"
#include "scores/PhraseBounds.h"
#include "scores/PhraseCompany.h"
#include "scores/PhraseFolders.h"
#include "scores/ScoreFile.h"
#include "scores/ScoreWriter.h"
#include "tests/scores/ScoreTexts.h"
#include "tests/support/ProjectFolders.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
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

    // A score with the next number of its folder.
    static fs::path next(const fs::path& around, const std::string& name)
    {
        const int number = static_cast<int>(scores(around.filename()).size()) + 1;
        return around / (fs::path(phraseName(number)).stem().string() + "-" + name);
    }

    // The second half of a lead before its first one, under another title.
    static std::string withBarsTurned(std::string words)
    {
        words.replace(words.find("title: "), 7, "title: Turned ");
        const auto bars = words.find("notes:\n") + 7;
        const auto third = words.find('\n', words.find('\n', bars) + 1) + 1;
        std::string first = words.substr(bars, third - bars);
        std::string second = words.substr(third);
        if (first.starts_with("| ff ")) {
            first.erase(2, 3);
            second.insert(2, "ff ");
        }
        return words.substr(0, bars) + second + first;
    }

    // Under the next number and another title.
    static fs::path copied(const fs::path& file)
    {
        const fs::path copy = next(file.parent_path(), "copy.score");
        fs::copy_file(file, copy);
        replace(copy, "title: ", "title: Another ");
        return copy;
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
    write(lead, test::head +
                    "machine: yes\nnotes:\n| r:1 G3:1 r:1 C4:1 r:1 G3:1 r:1 C4:1 r:8 |\n"
                    "| r:1 G3:1 r:1 C4:1 r:1 G3:1 r:1 C4:1 r:8 |\n| r:1 C4:1 r:1 F4:1 r:1 C4:1 r:10 |\n"
                    "| G3:4 r:11 D3:1 |\n");
    const auto report = lintScoreFile(lead);
    EXPECT_EQ(report.faults, (Lines{lead.string() + ": line 8, bar 4: D3 lies outside G3 to F#5",
                                    lead.string() + ": line 4: the mean velocity is 76.0, at least 92.0"}));
    EXPECT_EQ(report.scores, 1);
}

TEST_F(LibraryLint, NumbersWithAGapOrADoubleAreTold)
{
    fs::rename(scores("leads").at(4), "lib/leads/004-zz.score");
    EXPECT_EQ(lintLibrary("lib").faults,
              (Lines{"lib/leads/004-zz.score: the number 4 stands twice, 5 is the next",
                     scores("leads").at(5).string() + ": the number 6 leaves a gap, 5 is the next"}));
}

TEST_F(LibraryLint, TheNumberOfOneScoreIsHeldAgainstItsFolder)
{
    const auto leads = scores("leads");
    fs::rename(leads.at(4), "lib/leads/004-zz.score");
    const std::string twice = ": the number 4 stands twice, 5 is the next";
    EXPECT_EQ(lintScoreFile("lib/leads/004-zz.score").faults, Lines{"lib/leads/004-zz.score" + twice});
    EXPECT_EQ(lintScoreFile(leads.at(3)).faults, Lines{leads.at(3).string() + twice});
    EXPECT_EQ(lintScoreFile(leads.at(5)).faults,
              Lines{leads.at(5).string() + ": the number 6 leaves a gap, 5 is the next"});
    EXPECT_EQ(lintScoreFile(leads.at(6)).faults, Lines{});
    fs::create_symlink(fs::absolute("lib/leads/004-zz.score"), "mine.score");
    EXPECT_EQ(lintScoreFile("mine.score").faults, Lines{"mine.score" + twice});
}

TEST_F(LibraryLint, NamesOfAnotherFormAreTold)
{
    fs::rename(scores("drums").back(), "lib/drums/99-short.score");
    write("lib/drums/100-a.scor", "");
    write("lib/drums/.hidden", "");
    write("lib/drums/notes.txt", "");
    const std::string form = ": a score is called NNN-some-name.score";
    EXPECT_EQ(lintLibrary("lib").faults,
              (Lines{"lib/drums/100-a.scor" + form, "lib/drums/99-short.score" + form,
                     "lib/drums/notes.txt" + form}));
    EXPECT_EQ(lintScoreFile("lib/drums/99-short.score").faults, Lines{"lib/drums/99-short.score" + form});
}

TEST_F(LibraryLint, AMIDIFileIsHeldAgainstTheRulesLikeAScore)
{
    const auto last = scores("leads").back();
    const auto bytes = scoreToMIDI(*readScore(last, ScoreKind::lead));
    ASSERT_TRUE(bytes) << bytes.error();
    const std::string words(bytes->begin(), bytes->end());
    write(fs::path(last).replace_extension(".mid"), words);
    fs::remove(last);
    EXPECT_EQ(lintLibrary("lib").faults, Lines{});
    write("lib/leads/groove.mid", words.substr(0, 30));
    EXPECT_EQ(lintLibrary("lib").faults.front(),
              "lib/leads/groove.mid: a MIDI file among scores is called NNN-some-name.mid");
    EXPECT_EQ(lintScoreFile("lib/leads/groove.mid").faults.front(),
              "lib/leads/groove.mid: a MIDI file among scores is called NNN-some-name.mid");
}

TEST_F(LibraryLint, PhrasesWithoutATitleDoNotShareOne)
{
    LibraryRules rules;
    rules.hold({"a.mid", {}}, {});
    rules.hold({"b.mid", {}}, {});
    EXPECT_EQ(std::ranges::count_if(rules.faults,
                                    [](auto& line) { return line.find("title") != std::string::npos; }),
              0);
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

TEST_F(LibraryLint, SomeOfTheFoldersMayBeMissingAndNoneIsEmpty)
{
    fs::remove_all("lib/chords");
    emptyFolder("lib/leads");
    EXPECT_EQ(lintLibrary("lib").faults, Lines{"lib/leads: there are no scores in the folder"});
    fs::remove("lib/leads");
    write("lib/leads", "");
    EXPECT_EQ(lintLibrary("lib").faults, Lines{"lib/leads: the folder cannot be read"});
}

TEST_F(LibraryLint, APhraseThatIsStruckAsAnotherIsTold)
{
    const auto first = scores("drums").front();
    const auto copy = copied(first);
    EXPECT_EQ(lintLibrary("lib").faults,
              Lines{copy.string() + ": the places of kicks and snares differ from those of " +
                    first.string() + " in 0 %, at least 40 %"});
    EXPECT_EQ(lintScoreFile(first).faults,
              Lines{first.string() + ": the places of kicks and snares differ from those of " +
                    copy.string() + " in 0 %, at least 40 %"});
    fs::remove(copy);
    const auto lead = scores("leads").front();
    const auto twin = copied(lead);
    EXPECT_EQ(lintLibrary("lib").faults,
              Lines{twin.string() + ": the places where it is struck differ from those of " + lead.string() +
                    " in 0 %, at least 40 %"});
}

TEST_F(LibraryLint, APhraseWithTheBarsOfAnotherIsTold)
{
    const auto leads = scores("leads");
    const auto turned = next(leads.front().parent_path(), "turned.score");
    const auto lead = std::ranges::find_if(leads, [&](const fs::path& one) {
        write(turned, withBarsTurned(contents(one)));
        const auto places = placesOf(*readScore(one, ScoreKind::lead));
        return distanceOf(places, placesOf(*readScore(turned, ScoreKind::lead))) >= leastDistance;
    });
    ASSERT_NE(lead, leads.end());
    EXPECT_EQ(lintLibrary("lib").faults,
              Lines{turned.string() + ": the places where it is struck differ from those of " +
                    lead->string() + " with its bars in another order in 0 %, at least 25 %"});
}

TEST_F(LibraryLint, AChordPatternThatIsAnotherTransposedIsTold)
{
    const auto first = next("lib/chord-patterns", "a.score");
    write(first, "title: A\nstyle: S\nchords:\n| Am | FM | G#+ | E7 |\n");
    const auto second = next("lib/chord-patterns", "b.score");
    write(second, "title: B\nstyle: S\nchords:\n| Bm | GM | A#+ | F#7 |\n");
    EXPECT_EQ(lintLibrary("lib").faults, Lines{second.string() + ": its chords stand in " + first.string() +
                                               " at the same times, up to a transposition"});
}

TEST_F(LibraryLint, PhrasesAreMeasuredAgainstTheChordPatternsAndDrumsAround)
{
    const auto bass = scores("basses").front();
    write(bass, "title: T\nstyle: S\nmachine: yes\ncolour: yes\nnotes:\n| E1:16 | G1:16 | A1:16 | D1:16 |\n");
    fs::create_directories("mine/basses");
    fs::copy_file(bass, "mine/basses/001-a.score");
    const std::string few = ": line 5: a bass has 10 to 24 notes, not 4";
    EXPECT_EQ(lintLibrary("mine").faults, Lines{"mine/basses/001-a.score" + few});
    PhraseCompany company;
    company.addPattern(
        test::parsed(test::head + "chords:\n| CM FM | CM FM | CM FM | CM FM |\n", ScoreKind::chordPattern));
    const std::string outside = ": a tone sounds outside the chord for ";
    for (const auto& report :
         {lintLibrary("mine", company), lintScoreFile("mine/basses/001-a.score", company)}) {
        ASSERT_EQ(report.faults.size(), 2U);
        EXPECT_TRUE(report.faults.back().starts_with("mine/basses/001-a.score" + outside));
    }
    const auto own = lintScoreFile(bass, company).faults;
    ASSERT_EQ(own.size(), 2U);
    EXPECT_NE(
        own.back().substr(own.back().find(outside)),
        lintLibrary("mine", company).faults.back().substr(std::string("mine/basses/001-a.score").size()));
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
