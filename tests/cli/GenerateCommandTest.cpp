#include "base/Paths.h"
#include "services/musicsequence/MusicSequence.h"
#include "tests/cli/ProgramRun.h"

#include <gmock/gmock.h>

namespace volvelle::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Generate : public ProgramRun {
protected:
    std::uint32_t tracksOf(const std::string& name) const
    {
        MusicSequence sequence;
        NewMusicSequence(sequence);
        EXPECT_EQ(MusicSequenceFileLoad(sequence, folder / "work" / name, kMusicSequenceFile_MIDIType,
                                        kMusicSequenceLoadSMF_PreserveTracks),
                  noErr);
        std::uint32_t count = 0;
        MusicSequenceGetTrackCount(sequence, count);
        return count;
    }

    double lengthOf(const std::string& name) const
    {
        MusicSequence sequence;
        NewMusicSequence(sequence);
        MusicSequenceFileLoad(sequence, folder / "work" / name, kMusicSequenceFile_MIDIType,
                              kMusicSequenceLoadSMF_PreserveTracks);
        double longest = 0.0;
        for (std::uint32_t i = 0; i < 16; ++i) {
            MusicTrack track;
            MusicSequenceGetIndTrack(sequence, i, track);
            double length = 0.0;
            std::uint32_t size = sizeof length;
            MusicTrackGetProperty(track, kSequenceTrackProperty_TrackLength, &length, size);
            longest = std::max(longest, length);
        }
        return longest;
    }
};

TEST_F(Generate, WithoutArgumentsWritesASixteenTrackFileUnderItsDefaultName)
{
    const auto result = volvelle("generate");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.error, IsEmpty());
    EXPECT_THAT(names(), ElementsAre("New MIDI Idea.mid"));
    EXPECT_THAT(read("New MIDI Idea.mid"), StartsWith(std::string("MThd\0\0\0\6\0\1\0\x11\1\xE0", 14)));
    EXPECT_EQ(tracksOf("New MIDI Idea.mid"), 16U);
}

TEST_F(Generate, ReportsTitlesChordsAndNotesOfEachSoundingChannel)
{
    const auto result = volvelle("generate --out idea.mid");
    EXPECT_THAT(result.output, StartsWith("Phrases\n  CHORDS                "));
    for (const char* label : {"\nChords\n", "\nNotes\n  CHORDS  ", "  BASE DRUMS ", "  POLYMETRIC GENERATOR ",
                              "\nWrote 'idea.mid'.\n"}) {
        EXPECT_THAT(result.output, HasSubstr(label));
    }
    EXPECT_THAT(result.output, testing::Not(HasSubstr("POLYRHYTHM")));
    EXPECT_THAT(result.output, testing::Not(HasSubstr(".mid\n  ")));
}

TEST_F(Generate, ConsoleLinesAreShownOnRequestAlone)
{
    EXPECT_THAT(volvelle("generate").output, testing::Not(HasSubstr("MIDIClipGenerator::")));
    EXPECT_THAT(volvelle("generate --verbose").output, StartsWith("MIDIClipGenerator::makeArrangement()\n"));
    EXPECT_THAT(volvelle("generate --quiet").output, IsEmpty());
}

TEST_F(Generate, ManyFilesAreNumberedBehindTheName)
{
    EXPECT_EQ(volvelle("generate --count 3 --out 'My Idea.mid'").status, 0);
    EXPECT_THAT(names(), ElementsAre("My Idea 1.mid", "My Idea 2.mid", "My Idea 3.mid"));
    EXPECT_NE(read("My Idea 1.mid"), read("My Idea 2.mid"));
}

TEST_F(Generate, ALongFileHoldsArrangementsBehindEachOther)
{
    EXPECT_EQ(volvelle("generate --long 3 --out long.mid").status, 0);
    EXPECT_GT(lengthOf("long.mid"), 32.0);
    EXPECT_LE(lengthOf("long.mid"), 48.0);
}

TEST_F(Generate, AnExistingFileIsReplaced)
{
    write("idea.mid", "old");
    EXPECT_EQ(volvelle("generate --out idea.mid").status, 0);
    EXPECT_THAT(read("idea.mid"), StartsWith("MThd"));
    EXPECT_THAT(names(), ElementsAre("idea.mid"));
}

TEST_F(Generate, AFolderThatIsNotThereIsOnePlainLine)
{
    const auto result = volvelle("generate --out nowhere/idea.mid");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "'nowhere/idea.mid' could not be written: its folder does not exist.\n");
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(Generate, AFullDiskIsOnePlainLine)
{
    const auto result = volvelle("generate --out /dev/full");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "'/dev/full' could not be written: the device is full.\n");
}

TEST_F(Generate, ADeviceIsWrittenDirectly)
{
    EXPECT_EQ(volvelle("generate --quiet --out /dev/stdout").output.substr(0, 4), "MThd");
    EXPECT_EQ(volvelle("generate --out /dev/null").status, 0);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(Generate, ATargetThatIsAFolderStaysAsItWas)
{
    write("folder/inside", "x");
    const auto result = volvelle("generate --out folder");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(names(), ElementsAre("folder"));
    EXPECT_EQ(read("folder/inside"), "x");
}

TEST_F(Generate, ABrokenLibraryStopsWithItsMessageAndLeavesTheTargetAlone)
{
    write("idea.mid", "old");
    const auto missing = volvelle("generate --resources gone --out idea.mid");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.error, "Getting contents of 'gone/Phrases/chord patterns/' failed.\n");

    write("lib/Phrases/chord patterns/readme.txt", "x");
    const auto empty = volvelle("generate --resources lib --out idea.mid");
    EXPECT_EQ(empty.status, 1);
    EXPECT_EQ(empty.error, "No files found in 'lib/Phrases/chord patterns/'\n");

    write("lib/Phrases/chord patterns/002.mid", "x");
    const auto gap = volvelle("generate --resources lib --out idea.mid");
    EXPECT_EQ(gap.status, 1);
    EXPECT_EQ(gap.error, "The file 'lib/Phrases/chord patterns/001.mid' does not exist.\n");
    EXPECT_EQ(read("idea.mid"), "old");
    EXPECT_THAT(names(), ElementsAre("idea.mid", "lib"));
}

} // namespace
} // namespace volvelle::test
