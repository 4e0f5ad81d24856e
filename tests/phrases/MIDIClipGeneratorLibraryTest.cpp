#include "base/Checked.h"
#include "phrases/PhraseLibrary.h"
#include "tests/phrases/DrawScript.h"
#include "tests/phrases/PhraseFiles.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/phrases/Probes.h"
#include "tests/support/ConsoleCapture.h"

#include <fstream>
#include <set>
#include <sys/stat.h>

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;
using Ranges = std::vector<std::pair<int, int>>;
using Probe = MIDIClipGeneratorProbe;

class MIDIClipGeneratorLibraryTest : public testing::Test {
protected:
    void touch(const std::string& name) const { std::ofstream(path + name) << "x"; }

    TemporaryFolder folder;
    std::string path = folder.path.string() + "/";
    ConsoleCapture console;
    MIDIClipGenerator generator;
};

using MIDIClipGeneratorLibraryDeathTest = MIDIClipGeneratorLibraryTest;

TEST_F(MIDIClipGeneratorLibraryTest, EachOfThreeFilesComesUpAndNoOther)
{
    for (const char* name : {"001.mid", "002.mid", "003.mid"}) {
        touch(name);
    }
    SeededRandomSource source(3);
    std::set<std::string> names;
    for (int i = 0; i < 100; ++i) {
        names.insert(Probe::loadRandomFileAtOf(generator, path).string());
    }
    EXPECT_EQ(names, (std::set<std::string>{path + "001.mid", path + "002.mid", path + "003.mid"}));
}

TEST_F(MIDIClipGeneratorLibraryTest, TheOneDrawGoesFromOneToTheCount)
{
    for (const char* name : {"001.mid", "002.mid", "003.mid"}) {
        touch(name);
    }
    ScriptedRandomSource source({2});
    EXPECT_EQ(Probe::loadRandomFileAtOf(generator, path), path + "002.mid");
    EXPECT_EQ(source.ranges, (Ranges{{1, 3}}));
    EXPECT_EQ(console.take(), (Lines{"MIDIClipGenerator::loadRandomFileAt() Loading '" + path + "'...",
                                     "There were 3 MIDI files found at '" + path + "'.",
                                     "MIDIClipGenerator::loadRandomFileAt() Loading '" + path + "002.mid'"}));
}

TEST_F(MIDIClipGeneratorLibraryTest, OtherFilesAreAWarningOnly)
{
    touch("001.mid");
    touch("readme.txt");
    EXPECT_EQ(Probe::loadRandomFileAtOf(generator, path), path + "001.mid");
    EXPECT_EQ(console.take(), (Lines{"MIDIClipGenerator::loadRandomFileAt() Loading '" + path + "'...",
                                     "There were 1 MIDI files found at '" + path + "'.",
                                     "WARNING: There are other files at '" + path + "' too.",
                                     "MIDIClipGenerator::loadRandomFileAt() Loading '" + path + "001.mid'"}));
}

TEST_F(MIDIClipGeneratorLibraryTest, FilesAreCountedByTheirEndingInAnyCase)
{
    EXPECT_EQ(Probe::countFilesOf(
                  generator, {"001.mid", "002.MID", "x.MiD", ".mid", "mid", "a.midi", "b.mid.txt"}, "there"),
              4);
    EXPECT_EQ(Probe::countFilesOf(generator, {}, "nowhere"), 0);
    EXPECT_EQ(console.take(), (Lines{"There were 4 MIDI files found at 'there'.",
                                     "There were 0 MIDI files found at 'nowhere'."}));
}

TEST_F(MIDIClipGeneratorLibraryTest, NumbersHaveThreeDigitsAtLeast)
{
    for (const auto& [number, text] : std::vector<std::pair<int, std::string>>{{0, "000"},
                                                                               {1, "001"},
                                                                               {9, "009"},
                                                                               {10, "010"},
                                                                               {99, "099"},
                                                                               {100, "100"},
                                                                               {1000, "1000"},
                                                                               {-1, "00-1"}}) {
        EXPECT_EQ(Probe::formatNumberOf(generator, number), text);
    }
}

TEST_F(MIDIClipGeneratorLibraryDeathTest, AFolderThatCannotBeListedStops)
{
    EXPECT_DEATH(Probe::loadRandomFileAtOf(generator, path + "none/"),
                 onlyLine("Getting contents of '" + path + "none/' failed."));
}

TEST(MIDIClipGeneratorLibrary, MemoryThatDoesNotSufficeIsNoFaultOfTheFolder)
{
    EXPECT_EQ(listingFailure("a/", std::make_error_code(std::errc::not_enough_memory)),
              "The memory does not suffice.");
    EXPECT_EQ(listingFailure("a/", std::make_error_code(std::errc::permission_denied)),
              "Getting contents of 'a/' failed.");
}

TEST_F(MIDIClipGeneratorLibraryDeathTest, AFolderWithoutMIDIFilesStops)
{
    EXPECT_DEATH(Probe::loadRandomFileAtOf(generator, path), onlyLine("No files found in '" + path + "'"));
    touch("readme.txt");
    EXPECT_DEATH(Probe::loadRandomFileAtOf(generator, path), onlyLine("No files found in '" + path + "'"));
}

TEST_F(MIDIClipGeneratorLibraryDeathTest, ANumberedFileThatIsMissingStops)
{
    touch("001.MID");
    EXPECT_DEATH(Probe::loadRandomFileAtOf(generator, path),
                 onlyLine("The file '" + path + "001.mid' does not exist."));
}

TEST_F(MIDIClipGeneratorLibraryDeathTest, ANumberedFileThatIsNoneStops)
{
    ASSERT_EQ(mkfifo((path + "001.mid").c_str(), 0600), 0);
    EXPECT_DEATH(Probe::loadRandomFileAtOf(generator, path), onlyLine("'" + path + "001.mid' is no file."));
}

} // namespace
} // namespace volvelle
