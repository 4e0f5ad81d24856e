#include "cli/LibraryCheckCommand.h"
#include "base/Paths.h"
#include "base/RandomSource.h"
#include "scores/PhraseFolders.h"
#include "scores/ScoreKind.h"
#include "scores/ScoreWriter.h"
#include "tests/cli/GoodScores.h"
#include "tests/cli/ProgramRun.h"
#include "tests/support/ProjectFolders.h"

#include <gmock/gmock.h>
#include <sstream>
#include <sys/stat.h>

namespace volvelle::test {
namespace {

using testing::Contains;
using testing::Each;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class LibraryCheckCommandTest : public ProgramRun {
protected:
    LibraryCheckCommandTest()
    {
        for (const auto& [kind, score] : goodScores) {
            write(std::string("good/") + kind + "/001-a.score", score);
        }
        EXPECT_EQ(volvelle("library compile good lib").status, 0);
    }

    void put(ScoreKind kind, std::vector<ScoreNote> notes, std::vector<ScoreChord> chords,
             const std::string& name = "001.mid") const
    {
        Score score;
        score.title = "X";
        score.style = "S";
        score.kind = kind;
        score.notes = std::move(notes);
        score.chords = std::move(chords);
        const auto bytes = scoreToMIDI(score);
        ASSERT_TRUE(bytes) << bytes.error();
        write("lib/" + std::string(phraseFolder(kind)) + "/" + name, {bytes->begin(), bytes->end()});
    }

    // --ear in this process, from a seed.
    static ProgramResult listenedTo(const std::filesystem::path& library)
    {
        SystemRandomSource source(1);
        RandomSource* const before = setRandomSource(&source);
        CommandOutput output(false);
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int status = runLibraryCheck({.folder = library, .ear = true}, output);
        setRandomSource(before);
        setResourcesFolder(std::nullopt);
        std::string error = testing::internal::GetCapturedStderr();
        return {status, testing::internal::GetCapturedStdout(), std::move(error)};
    }

    // What is told of the library.
    std::string problem() const
    {
        const auto result = volvelle("library check lib");
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.error, EndsWith(" of 'lib'.\n"));
        return result.output;
    }

    std::vector<std::string> problems() const
    {
        std::vector<std::string> lines;
        std::istringstream words(problem());
        for (std::string line; std::getline(words, line);) {
            lines.push_back(line);
        }
        return lines;
    }
};

TEST_F(LibraryCheckCommandTest, TheProjectsOwnLibraryIsInOrder)
{
    const auto result = volvelle("library check");
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_THAT(result.output, testing::MatchesRegex("[0-9]+ phrases are in order\\.\n"));
    EXPECT_GE(std::stoi(result.output), 80);
}

TEST_F(LibraryCheckCommandTest, TheProjectsOwnLibrarySoundsWithinItsBounds)
{
    const auto result = listenedTo(std::filesystem::path(VOLVELLE_PROGRAM).parent_path() / "resources");
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_THAT(result.output, HasSubstr("share of first beats with a bass note: "));
}

TEST_F(LibraryCheckCommandTest, ALibraryThatSoundsOutsideTheBoundsIsTold)
{
    put(ScoreKind::bass, {{0.0, 1.0, 40, 90}}, {});
    const std::string line = "\nnotes per beat, channel 9: 0.063 is outside 0.5 to 4.0\n";
    EXPECT_THAT(listenedTo(folder / "work/lib").output, HasSubstr(line));
    std::filesystem::create_symlink("gone", folder / "work/lib/Phrases2/09 basses/002.mid");
    EXPECT_THAT(listenedTo(folder / "work/lib").output, Not(HasSubstr(line)));
}

TEST_F(LibraryCheckCommandTest, AGoodLibraryPasses)
{
    EXPECT_EQ(volvelle("library check lib").output, "5 phrases are in order.\n");
}

TEST_F(LibraryCheckCommandTest, OtherChordsThanTheScoreNamesAreTold)
{
    put(ScoreKind::chordPattern, {{0.0, 3.0, 60, 90}, {0.0, 3.0, 64, 90}, {0.0, 3.0, 67, 90}}, {{0.0, "Cm"}});
    EXPECT_THAT(
        problems(),
        Contains("lib/Phrases/chord patterns/001.mid: the score names Cm at 0.0; found were CM at 0.0"));
}

TEST_F(LibraryCheckCommandTest, ADuplicatedNoteIsTold)
{
    put(ScoreKind::chordPattern, {{0.0, 1.0, 60, 90}, {1.0, 1.0, 60, 90}}, {});
    EXPECT_THAT(problems(),
                Contains("lib/Phrases/chord patterns/001.mid: Duplicated note event (60) at position "
                         "1.0."));
}

TEST_F(LibraryCheckCommandTest, NotesThatAreNoChordAreTold)
{
    put(ScoreKind::chordPattern, {{0.0, 1.0, 60, 90}, {0.0, 1.0, 61, 90}}, {});
    EXPECT_THAT(problems(), Contains("lib/Phrases/chord patterns/001.mid: No chord detected."));
}

TEST_F(LibraryCheckCommandTest, AChordAtTheEndOfThePhraseIsTold)
{
    put(ScoreKind::chordPattern, {{0.0, 1.0, 60, 90}, {15.9, 0.05, 64, 90}}, {});
    EXPECT_THAT(
        problems(),
        Contains("lib/Phrases/chord patterns/001.mid: a chord begins at 16.0, the end of the phrase"));
}

TEST_F(LibraryCheckCommandTest, ASilentPhraseIsTold)
{
    put(ScoreKind::drums, {}, {});
    EXPECT_EQ(problem(), "lib/Phrases2/10 drums/001.mid: the phrase is silent\n");
}

TEST_F(LibraryCheckCommandTest, APhraseThatCannotBeReadIsNotSilentButBroken)
{
    const std::string place = "lib/Phrases2/02 leads/001.mid";
    write(place, "no music");
    EXPECT_EQ(problem(), place + ": the file is no MIDI file\n");
    std::filesystem::resize_file(folder / "work" / place, (std::uintmax_t{1} << 31U) + 1);
    EXPECT_EQ(problem(), place + ": the file cannot be read\n");
}

TEST_F(LibraryCheckCommandTest, AGapInTheNumbersIsToldOnce)
{
    for (const char* name : {"003.mid", "004.mid", "005.mid"}) {
        put(ScoreKind::lead, {{0.0, 1.0, 60, 90}}, {}, name);
    }
    const auto lines = problems();
    EXPECT_EQ(std::ranges::count_if(
                  lines, [](const auto& line) { return line.find("expected here") != std::string::npos; }),
              1);
    EXPECT_THAT(lines, Contains("lib/Phrases2/02 leads/003.mid: '002.mid' was expected here"));
}

TEST_F(LibraryCheckCommandTest, AFolderNamedLikeAScoreIsAFolder)
{
    for (const std::string& name : {std::string("a.mid"), std::string("a.score")}) {
        std::filesystem::copy(folder / "work/lib", folder / "work" / name,
                              std::filesystem::copy_options::recursive);
        EXPECT_EQ(volvelle("library check " + name).output, "5 phrases are in order.\n");
    }
    EXPECT_EQ(volvelle("library check gone.score").error, "There is no folder or score 'gone.score'.\n");
}

TEST_F(LibraryCheckCommandTest, ALinkThatLeadsNowhereIsTold)
{
    for (const char* name : {"lib/Phrases/chord patterns/002.mid", "lib/Phrases2/09 basses/002.mid"}) {
        std::filesystem::create_symlink("gone", folder / "work" / name);
        EXPECT_EQ(problem(), std::string(name) + ": there is no such file\n");
        std::filesystem::remove(folder / "work" / name);
    }
}

TEST_F(LibraryCheckCommandTest, WhatIsNoFileIsTold)
{
    const std::string name = "lib/Phrases2/09 basses/002.mid";
    mkfifo((folder / "work" / name).c_str(), 0600);
    EXPECT_EQ(problem(), name + ": it is no file\n");
    std::filesystem::remove(folder / "work" / name);
    std::filesystem::create_directory(folder / "work" / name);
    EXPECT_EQ(problem(), name + ": it is no file\n");
}

TEST_F(LibraryCheckCommandTest, AThousandFilesAndMoreStandInTheOrderOfTheirNumbers)
{
    const std::string bass = read("lib/Phrases2/09 basses/001.mid");
    for (int number = 2; number <= 1001; ++number) {
        write("lib/Phrases2/09 basses/" + phraseName(number), bass);
    }
    EXPECT_THAT(problems(), Each(Not(HasSubstr("expected"))));
    write("lib/Phrases2/09 basses/1003.mid", bass);
    write("lib/Phrases2/09 basses/a.mid", bass);
    const auto lines = problems();
    EXPECT_EQ(lines[0], "lib/Phrases2/09 basses/1003.mid: '1002.mid' was expected here");
    EXPECT_EQ(lines[1], "lib/Phrases2/09 basses/a.mid: '1004.mid' was expected here");
}

TEST_F(LibraryCheckCommandTest, TheProjectsOwnScoresAreInOrder)
{
    const auto result = volvelle("library check '" + (sourceFolder() / "library").string() + "'");
    EXPECT_EQ(result.status, 0) << result.output;
    EXPECT_THAT(result.output, testing::MatchesRegex("[0-9]+ phrases are in order\\.\n"));
}

TEST_F(LibraryCheckCommandTest, AScoreIsHeldAgainstTheRules)
{
    write("scores/basses/001-a.score", goodBass);
    EXPECT_EQ(volvelle("library check scores/basses/001-a.score").output, "1 phrase is in order.\n");
    std::string wrong = goodBass;
    write("scores/basses/001-a.score", wrong.replace(wrong.find("A1:4"), 2, "F4"));
    const auto result = volvelle("library check scores/basses/001-a.score");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "scores/basses/001-a.score: line 6, bar 3: F4 lies outside E0 to D2\n");
    EXPECT_EQ(result.error, "1 problem in 1 phrase of 'scores/basses/001-a.score'.\n");
}

TEST_F(LibraryCheckCommandTest, AFolderOfSomeScoresIsHeldAgainstTheRulesAndNotMeasured)
{
    write("scores/basses/001-a.score", goodBass);
    EXPECT_EQ(volvelle("library check scores").output, "1 phrase is in order.\n");
    std::filesystem::create_directories(folder / "work/scores/drums");
    EXPECT_EQ(volvelle("library check scores").output, "scores/drums: there are no scores in the folder\n");
    EXPECT_EQ(volvelle("library check --ear scores").error,
              "--ear measures compiled phrases: name the folder of Phrases and Phrases2.\n");
}

TEST_F(LibraryCheckCommandTest, AScoreIsMeasuredAgainstTheLibraryInUse)
{
    const std::string late = "title: T\nstyle: S\nnotes:\n"
                             "| r:2 E1:2=60 B0:2=66 G0:2=61 C1:2=62 r:6 |\n"
                             "| r:2 E1:2=60 B0:2=66 G0:2=61 D1:2=63 r:6 |\n"
                             "| r:2 A1:2=64 D1:2=66 F1:2=61 C1:2=62 r:6 |\n"
                             "| r:2 E1:4=65 r:10 |\n";
    write("scores/basses/001-a.score", late);
    const auto output = volvelle("library check scores/basses/001-a.score").output;
    EXPECT_THAT(output, HasSubstr("scores/basses/001-a.score: of the chord changes the bass meets "));
    EXPECT_THAT(output, HasSubstr(" %, at least 50 %\n"));
}

TEST_F(LibraryCheckCommandTest, AScoreIsFoundThroughALink)
{
    write("scores/basses/001-a.score", goodBass);
    std::filesystem::create_symlink("scores/basses/001-a.score", folder / "work/mine.score");
    EXPECT_EQ(volvelle("library check mine.score").output, "1 phrase is in order.\n");
}

TEST_F(LibraryCheckCommandTest, TheTitleOfAScoreIsHeldAgainstTheLibrary)
{
    write("scores/basses/001-a.score", goodBass);
    write("scores/leads/004-b.score", goodBass);
    write("scores/leads/005-c.score", "broken");
    EXPECT_EQ(
        volvelle("library check scores/basses/001-a.score").output,
        "scores/basses/001-a.score: line 1: the title \"T\" stands in scores/leads/004-b.score, too: each is "
        "used once\n");
}

TEST_F(LibraryCheckCommandTest, WhatIsNoLibraryAndNoScoreIsOneLine)
{
    write("empty/a.txt", "x");
    const std::string held = "' holds neither Phrases and Phrases2 nor a folder of scores: chord-patterns, "
                             "chords, leads, basses, drums.\n";
    const std::pair<std::string, std::string> cases[] = {
        {"gone", "There is no folder or score 'gone'.\n"},
        {"''", "There is no folder or score ''.\n"},
        {"empty/a.txt", "There is no folder or score 'empty/a.txt'.\n"},
        {"gone/leads/001-a.score", "There is no folder or score 'gone/leads/001-a.score'.\n"},
        {"empty", "'empty" + held},
        {"good/leads", "'good/leads" + held}};
    for (const auto& [name, line] : cases) {
        const auto result = volvelle("library check " + name);
        EXPECT_EQ(result.status, 1) << name;
        EXPECT_EQ(result.output + result.error, line);
    }
}

TEST_F(LibraryCheckCommandTest, ADamagedPhraseIsTold)
{
    const std::string whole = read("lib/Phrases2/02 leads/001.mid");
    write("lib/Phrases2/02 leads/001.mid", whole.substr(0, whole.size() - 4));
    EXPECT_THAT(problem(), testing::MatchesRegex("lib/Phrases2/02 leads/001\\.mid: .*\\.\n"));
}

TEST_F(LibraryCheckCommandTest, APhraseHasNoMoreNotesThanItsKindMayHave)
{
    std::vector<ScoreNote> notes;
    for (int i = 0; i < 25; ++i) {
        notes.push_back({i % 8 * 2.0, 1.0, static_cast<std::uint8_t>(40 + i), 90});
    }
    put(ScoreKind::lead, notes, {});
    const std::string line = "lib/Phrases2/02 leads/001.mid: a lead has 11 to 24 notes, not 25";
    EXPECT_THAT(problems(), Contains(line));
    notes.pop_back();
    put(ScoreKind::lead, notes, {});
    EXPECT_THAT(problems(), Not(Contains(line)));
}

TEST_F(LibraryCheckCommandTest, AChordPatternOfThousandsOfNotesIsTold)
{
    std::vector<ScoreNote> notes;
    for (int i = 0; i < 1001; ++i) {
        notes.push_back({i / 64.0, 1 / 128.0, static_cast<std::uint8_t>(48 + i % 2), 90});
    }
    put(ScoreKind::chordPattern, notes, {});
    const std::string line = "lib/Phrases/chord patterns/001.mid: the phrase has 2002 events, at most 2000";
    EXPECT_THAT(problems(), Contains(line));
    notes.pop_back();
    put(ScoreKind::chordPattern, notes, {});
    EXPECT_THAT(problems(), Not(Contains(HasSubstr(" events, at most "))));
    EXPECT_THAT(problems(), Contains(HasSubstr("lib/Phrases/chord patterns/001.mid: ")));
}

TEST_F(LibraryCheckCommandTest, WhatACompilationLeftBehindIsPassedOver)
{
    std::filesystem::create_directory(folder / "work/lib/Phrases2/02 leads/.volvelle-1-2.new");
    EXPECT_EQ(volvelle("library check lib").output, "5 phrases are in order.\n");
}

TEST_F(LibraryCheckCommandTest, ACompiledPhraseIsHeldAgainstTheRulesOfItsScore)
{
    write("good/basses/001-a.score", changed(goodBass, "A1:4", "F4:4"));
    volvelle("library compile good lib");
    EXPECT_EQ(problem(), "lib/Phrases2/09 basses/001.mid: bar 3: F4 lies outside E0 to D2\n");
    write("good/basses/001-a.score", changed(goodBass, "E1:4=60 r:2 B0:2=66", "r:4 r:2 B0:2=66"));
    write("good/basses/001-a.score", changed(read("good/basses/001-a.score"), "E1:4=60 r:2", "r:4 r:2"));
    volvelle("library compile good lib");
    EXPECT_THAT(problems(),
                Contains("lib/Phrases2/09 basses/001.mid: 1 bar has notes on beats 1 and 3, at least 3"));
}

TEST_F(LibraryCheckCommandTest, PhrasesOfAFolderAreHeldAgainstEachOther)
{
    write("good/leads/002-b.score", changed(read("good/leads/001-a.score"), "A4:4", "G#4:4"));
    write("good/chord-patterns/002-b.score",
          "title: Q\nstyle: S\ncolour: yes\nchords:\n| Dm | A#M | CM | A7 |\n");
    write("good/drums/002-b.score",
          changed(read("good/drums/001-a.score"), "style: S", "style: S\ncolour: yes"));
    write("good/drums/003-c.score", changed(read("good/drums/002-b.score"), "title: D", "title: E"));
    volvelle("library compile good lib");
    const std::string differ = " differ from those of lib/Phrases2/";
    EXPECT_EQ(
        problem(),
        "lib/Phrases/chord patterns/002.mid: its chords stand in lib/Phrases/chord patterns/001.mid at the "
        "same times, up to a transposition\n"
        "lib/Phrases2/02 leads/002.mid: the title \"L\" stands in lib/Phrases2/02 leads/001.mid, too: each "
        "is "
        "used once\n"
        "lib/Phrases2/02 leads/002.mid: the places where it is struck" +
            differ +
            "02 leads/001.mid in 0 %, at least 40 %\n"
            "lib/Phrases2/10 drums/002.mid: the title \"D\" stands in lib/Phrases2/10 drums/001.mid, too: "
            "each is "
            "used once\n"
            "lib/Phrases2/10 drums/002.mid: the places of kicks and snares" +
            differ +
            "10 drums/001.mid in 0 %, at least 40 %\n"
            "lib/Phrases2/10 drums/003.mid: the places of kicks and snares" +
            differ +
            "10 drums/001.mid in 0 %, at least 40 %\n"
            "lib/Phrases2/10 drums: 0 of 3 phrases leave one bar nearly empty, with 5 places that are struck "
            "at most: every third does\n"
            "lib/Phrases2/10 drums: 2 of 3 phrases are colours: one of 5 at most\n");
}

TEST_F(LibraryCheckCommandTest, WhatIsOddIsToldWhoeverHearsTheConsole)
{
    put(ScoreKind::chordPattern, {{0.0, 1.0, 60, 90}, {1.0, 1.0, 60, 90}}, {});
    const auto quiet = volvelle("library check lib");
    const auto verbose = volvelle("library check lib --verbose");
    EXPECT_THAT(quiet.output, StartsWith("lib/Phrases/chord patterns/001.mid: Duplicated note event (60) at "
                                         "position 1.0.\n"));
    EXPECT_THAT(verbose.output, StartsWith("Warning: Duplicated note event (60) at position 1.0.\n"));
    EXPECT_THAT(verbose.output, EndsWith(quiet.output));
}

TEST_F(LibraryCheckCommandTest, AnEmptyOrMissingFolderIsTold)
{
    std::filesystem::remove(folder / "work/lib/Phrases2/09 basses/001.mid");
    EXPECT_EQ(problem(), "lib/Phrases2/09 basses: there are no phrases\n");
    std::filesystem::remove_all(folder / "work/lib/Phrases2/09 basses");
    EXPECT_EQ(problem(), "lib/Phrases2/09 basses: the folder cannot be listed\n");
}

} // namespace
} // namespace volvelle::test
