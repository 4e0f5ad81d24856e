#include "base/Checked.h"
#include "phrases/MIDIClipGenerator.h"
#include "tests/phrases/PhraseFiles.h"
#include "tests/phrases/PhraseMaking.h"
#include "tests/support/ConsoleCapture.h"

#include <cstdlib>

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;

// Puts a variable of the environment back as it was.
class KeptVariable {
public:
    explicit KeptVariable(const char* variable) : name(variable)
    {
        if (const char* value = std::getenv(name)) {
            before = value;
        }
    }

    ~KeptVariable()
    {
        if (before) {
            setenv(name, before->c_str(), 1);
        } else {
            unsetenv(name);
        }
    }

    KeptVariable(const KeptVariable&) = delete;
    KeptVariable& operator=(const KeptVariable&) = delete;

private:
    const char* name;
    std::optional<std::string> before;
};

class MIDIClipGeneratorSavingTest : public testing::Test {
protected:
    MIDIClipGeneratorSavingTest()
    {
        unsetenv("XDG_CONFIG_HOME");
        setenv("HOME", home.path.c_str(), 1);
        mixer.chordTrack->generatedEvents = {noteAt(0.0, 60)};
    }

    TemporaryFolder home;
    KeptVariable keptHome{"HOME"};
    KeptVariable keptConfiguration{"XDG_CONFIG_HOME"};
    std::string output = home.path.string() + "/Documents/Volvelle/Phrases/output";
    ConsoleCapture console;
    MIDIPhraseMixer mixer;
    MIDIClipGenerator generator;
};

using MIDIClipGeneratorSavingDeathTest = MIDIClipGeneratorSavingTest;

TEST_F(MIDIClipGeneratorSavingTest, AnArrangementIsANumberedFileInTheDocumentsFolder)
{
    std::filesystem::create_directories(output);
    generator.saveArrangement(mixer, 7);
    EXPECT_EQ(console.take(), Lines{"MIDIClipGenerator::saveArrangement() Saving '" + output + "'..."});
    const auto phrase = MIDIPhrase::make();
    phrase->loadPhrase(output + "/phraseMixer_007.mid", 0);
    EXPECT_EQ(numbersOf(phrase->loadedEvents), (std::vector<int>{60, 60}));
    EXPECT_EQ(generator.phraseMixer, nullptr);
}

TEST_F(MIDIClipGeneratorSavingTest, LongNumbersStandAsTheyAre)
{
    std::filesystem::create_directories(output);
    generator.saveArrangement(mixer, 1000);
    EXPECT_TRUE(std::filesystem::exists(output + "/phraseMixer_1000.mid"));
}

TEST_F(MIDIClipGeneratorSavingTest, AMissingFolderIsReportedAndNotMade)
{
    generator.saveArrangement(mixer, 7);
    const Lines lines = console.take();
    ASSERT_GT(lines.size(), 1U);
    EXPECT_EQ(lines[0], "MIDIClipGenerator::saveArrangement() Saving '" + output + "'...");
    EXPECT_TRUE(
        lines[1].starts_with("MIDISequence::Fehler: Die MIDI Datei konnte nicht gespeichert werden. : "));
    EXPECT_TRUE(std::filesystem::is_empty(home.path));
}

TEST_F(MIDIClipGeneratorSavingTest, SavingAChannelDoesNothing)
{
    generator.save(0, "chords");
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_TRUE(std::filesystem::is_empty(home.path));
}

TEST_F(MIDIClipGeneratorSavingDeathTest, WithoutADocumentsFolderItStops)
{
    unsetenv("HOME");
    EXPECT_DEATH(generator.saveArrangement(mixer, 7), onlyLine(nilMessage));
}

} // namespace
} // namespace volvelle
