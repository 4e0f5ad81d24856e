#include "base/Paths.h"
#include "services/musicsequence/MusicSequence.h"
#include "tests/cli/ProgramRun.h"

#include <gmock/gmock.h>

#include <sstream>
#include <utility>

namespace volvelle::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class GenerateCommandTest : public ProgramRun {
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

TEST_F(GenerateCommandTest, WithoutArgumentsWritesASixteenTrackFileUnderItsDefaultName)
{
    const auto result = volvelle("generate");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.error, IsEmpty());
    EXPECT_THAT(names(), ElementsAre("New MIDI Idea.mid"));
    EXPECT_THAT(read("New MIDI Idea.mid"), StartsWith(std::string("MThd\0\0\0\6\0\1\0\x11\1\xE0", 14)));
    EXPECT_EQ(tracksOf("New MIDI Idea.mid"), 16U);
}

TEST_F(GenerateCommandTest, ReportsTitlesChordsAndNotesOfEachSoundingChannel)
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

TEST_F(GenerateCommandTest, ConsoleLinesAreShownOnRequestAlone)
{
    EXPECT_THAT(volvelle("generate").output, testing::Not(HasSubstr("MIDIClipGenerator::")));
    EXPECT_THAT(volvelle("generate --verbose").output, StartsWith("MIDIClipGenerator::makeArrangement()\n"));
    EXPECT_THAT(volvelle("generate --quiet").output, IsEmpty());
}

TEST_F(GenerateCommandTest, ManyFilesAreNumberedBehindTheName)
{
    EXPECT_EQ(volvelle("generate --count 3 --out 'My Idea.mid'").status, 0);
    EXPECT_THAT(names(), ElementsAre("My Idea 1.mid", "My Idea 2.mid", "My Idea 3.mid"));
    EXPECT_NE(read("My Idea 1.mid"), read("My Idea 2.mid"));
}

TEST_F(GenerateCommandTest, ALongFileHoldsArrangementsBehindEachOther)
{
    EXPECT_EQ(volvelle("generate --long 3 --out long.mid").status, 0);
    EXPECT_GT(lengthOf("long.mid"), 32.0);
    EXPECT_LE(lengthOf("long.mid"), 48.0);
}

TEST_F(GenerateCommandTest, AnExistingFileThatIsNamedIsReplaced)
{
    write("idea.mid", "old");
    EXPECT_EQ(volvelle("generate --out idea.mid").status, 0);
    EXPECT_THAT(read("idea.mid"), StartsWith("MThd"));
    EXPECT_THAT(names(), ElementsAre("idea.mid"));
}

TEST_F(GenerateCommandTest, WithoutANameNoFileIsReplaced)
{
    write("New MIDI Idea.mid", "old");
    std::filesystem::create_symlink("nowhere", folder / "work/New MIDI Idea 2.mid");
    EXPECT_THAT(volvelle("generate").output, testing::EndsWith("Wrote 'New MIDI Idea 3.mid'.\n"));
    EXPECT_EQ(volvelle("generate").status, 0);
    EXPECT_THAT(names(), ElementsAre("New MIDI Idea 2.mid", "New MIDI Idea 3.mid", "New MIDI Idea 4.mid",
                                     "New MIDI Idea.mid"));
    EXPECT_EQ(read("New MIDI Idea.mid"), "old");
}

TEST_F(GenerateCommandTest, WithoutANameManyFilesTakeTheFreeNumbers)
{
    write("New MIDI Idea 2.mid", "old");
    EXPECT_EQ(volvelle("generate --count 3").status, 0);
    EXPECT_THAT(names(), ElementsAre("New MIDI Idea 1.mid", "New MIDI Idea 2.mid", "New MIDI Idea 3.mid",
                                     "New MIDI Idea 4.mid"));
    EXPECT_EQ(read("New MIDI Idea 2.mid"), "old");
}

TEST_F(GenerateCommandTest, WithANameManyFilesAreReplaced)
{
    write("a 2.mid", "old");
    EXPECT_EQ(volvelle("generate --count 2 --out a").status, 0);
    EXPECT_THAT(names(), ElementsAre("a 1.mid", "a 2.mid"));
    EXPECT_THAT(read("a 2.mid"), StartsWith("MThd"));
}

TEST_F(GenerateCommandTest, ManyFilesNeedANameToNumber)
{
    std::filesystem::create_directory(folder / "work/folder");
    const std::pair<std::string, std::string> cases[] = {
        {"folder/", "it is a folder"}, {"..", "it is a folder"}, {".", "it is a folder"}};
    for (const auto& [name, reason] : cases) {
        for (const char* count : {"", " --count 2"}) {
            const auto result = volvelle("generate --out '" + name + "'" + count);
            EXPECT_EQ(result.status, 1) << name << count;
            EXPECT_EQ(result.error, "'" + name + "' could not be written: " + reason + ".\n");
        }
    }
    EXPECT_THAT(names(), ElementsAre("folder"));
    EXPECT_TRUE(std::filesystem::is_empty(folder / "work/folder"));
}

TEST_F(GenerateCommandTest, ANameWithoutItsEndingGetsIt)
{
    for (const char* name : {"a", "b.MID", "c.midi", "d.v2"}) {
        EXPECT_EQ(volvelle(std::string("generate --out ") + name).status, 0);
    }
    EXPECT_THAT(names(), ElementsAre("a.mid", "b.MID", "c.midi", "d.v2.mid"));
}

TEST_F(GenerateCommandTest, ANameOfAnAudioFileIsAQuestionOfUsage)
{
    for (const std::string ending : {".wav", ".flac", ".ogg", ".mp3"}) {
        const auto result = volvelle("generate --out idea" + ending);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.error, "An idea is a MIDI file and no " + ending +
                                    ": name one that ends in .mid, and turn it into sound with the command "
                                    "'render'.\n");
    }
    EXPECT_EQ(volvelle("generate --out idea.WAV").status, 2);
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateCommandTest, StandardOutputGetsTheBytesAlone)
{
    for (const char* arguments : {"generate --out -", "generate --out - --verbose"}) {
        const auto result = volvelle(arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_THAT(result.output, StartsWith("MThd"));
        EXPECT_THAT(result.output, testing::EndsWith(std::string("\xFF\x2F\0", 3)));
        EXPECT_EQ(result.error, "");
    }
    const auto full = shell("exec \"$VOLVELLE\" generate --out - >/dev/full");
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.error, "'standard output' could not be written: the device is full.\n");
    const auto many = volvelle("generate --out - --count 2");
    EXPECT_EQ(many.status, 2);
    EXPECT_EQ(many.error, "Standard output takes one idea: leave --count out.\n");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateCommandTest, TheDeviceOfStandardOutputIsStandardOutput)
{
    for (const std::string name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"}) {
        write("more.mid", "begin");
        EXPECT_EQ(shell("exec \"$VOLVELLE\" generate --out " + name + " >>more.mid").error, "");
        EXPECT_THAT(read("more.mid"), StartsWith("beginMThd"));
    }
    EXPECT_THAT(names(), ElementsAre("more.mid"));
}

TEST_F(GenerateCommandTest, ManyLongFilesReportEveryArrangement)
{
    const auto result = volvelle("generate --long 3 --count 2 --out a");
    std::istringstream lines(result.output);
    std::vector<std::string> begins;
    for (std::string line; std::getline(lines, line);) {
        begins.push_back(line.substr(0, line.find(':')));
    }
    EXPECT_THAT(begins,
                ElementsAre("'a 1.mid'", "'a 1.mid'", "'a 1.mid'", "'a 2.mid'", "'a 2.mid'", "'a 2.mid'"));
}

TEST_F(GenerateCommandTest, ALinkThatLeadsNowhereGetsItsFile)
{
    std::filesystem::create_symlink("there.mid", folder / "work/link.mid");
    EXPECT_EQ(volvelle("generate --out link.mid").status, 0);
    EXPECT_THAT(read("there.mid"), StartsWith("MThd"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "work/link.mid"));
}

TEST_F(GenerateCommandTest, WhatCannotBeWrittenIsRefusedWithItsReason)
{
    write("kept.mid", "old");
    std::filesystem::permissions(folder / "work/kept.mid", std::filesystem::perms::owner_read);
    std::filesystem::create_symlink("circle.mid", folder / "work/circle.mid");
    const std::pair<std::string, std::string> cases[] = {
        {"kept.mid", "it is write-protected"},
        {"circle.mid", "its links lead in a circle"},
        {".", "it is a folder"},
        {std::string(252, 'a') + ".mid", "its name is too long"}};
    for (const auto& [name, reason] : cases) {
        const auto result = volvelle("generate --out " + name);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.error, "'" + name + "' could not be written: " + reason + ".\n");
        EXPECT_EQ(result.output, "");
    }
    EXPECT_EQ(read("kept.mid"), "old");
    EXPECT_THAT(names(), ElementsAre("circle.mid", "kept.mid"));
}

TEST_F(GenerateCommandTest, WhatDoesNotFitLeavesNothing)
{
    const auto result = shell("ulimit -f 1; exec \"$VOLVELLE\" generate --long 9 --out a.mid");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "'a.mid' could not be written: it would be larger than allowed.\n");
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateCommandTest, WithoutPhrasesItTellsHowToGiveThem)
{
    const auto result = volvelle("generate --resources gone --out idea.mid");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "'gone' holds no phrases: name a folder that holds Phrases and Phrases2 with "
                            "--resources DIR.\n");
    const auto bare = shell("cp \"$VOLVELLE\" bare && exec ./bare generate");
    EXPECT_EQ(bare.status, 1);
    EXPECT_EQ(bare.error, "The phrases are missing: name the folder that holds Phrases and Phrases2 with "
                          "--resources DIR.\n");
    EXPECT_THAT(names(), ElementsAre("bare"));
    shell("mkdir lib; cp -r \"${VOLVELLE%/*}\"/resources/Phrases* lib");
    const std::pair<const char*, const char*> cases[] = {
        {"rm lib/Phrases2/10*/*", "lib/Phrases2/10 drums"},
        {"rm -r lib/Phrases2", "lib/Phrases2/01 chords"},
        {"rm -r lib/Phrases/*; touch lib/Phrases/a.mid", "lib"}};
    for (const auto& [change, place] : cases) {
        shell(change);
        EXPECT_EQ(volvelle("generate --resources lib --out idea.mid").error,
                  std::string("'") + place +
                      "' holds no phrases: name a folder that holds Phrases and "
                      "Phrases2 with --resources DIR.\n");
    }
}

TEST_F(GenerateCommandTest, AFolderThatIsNotThereIsOnePlainLine)
{
    const auto result = volvelle("generate --out nowhere/idea.mid");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "'nowhere/idea.mid' could not be written: its folder does not exist.\n");
    EXPECT_THAT(result.output, IsEmpty());
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(GenerateCommandTest, AFullDiskIsOnePlainLine)
{
    const auto result = volvelle("generate --out /dev/full");
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.error, "'/dev/full' could not be written: the device is full.\n");
}

TEST_F(GenerateCommandTest, ADeviceIsWrittenDirectly)
{
    EXPECT_EQ(volvelle("generate --quiet --out /dev/stdout").output.substr(0, 4), "MThd");
    EXPECT_EQ(volvelle("generate --out /dev/null").status, 0);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(GenerateCommandTest, ATargetThatIsAFolderStaysAsItWas)
{
    write("folder/inside", "x");
    const auto result = volvelle("generate --out folder");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(names(), ElementsAre("folder"));
    EXPECT_EQ(read("folder/inside"), "x");
}

TEST_F(GenerateCommandTest, APhraseThatCannotBeReadIsToldOnce)
{
    shell("mkdir lib; cp -r \"${VOLVELLE%/*}\"/resources/Phrases* lib; rm lib/Phrases2/02*/*");
    write("lib/Phrases2/02 leads/001.mid", "no music");
    for (const char* count : {"--out a", "--count 3 --quiet", "--long 3", "--out - --quiet"}) {
        const auto result = volvelle(std::string("generate --resources lib ") + count);
        EXPECT_EQ(result.status, 0) << count;
        EXPECT_EQ(result.error,
                  "'lib/Phrases2/02 leads/001.mid' is no Standard MIDI File. MELODY PHRASE stays "
                  "empty.\n");
    }
}

TEST_F(GenerateCommandTest, ABrokenLibraryStopsWithItsMessageAndLeavesTheTargetAlone)
{
    write("idea.mid", "old");
    shell("mkdir lib; cp -r \"${VOLVELLE%/*}\"/resources/Phrases* lib; rm lib/Phrases/*/*");
    write("lib/Phrases/chord patterns/002.mid", "x");
    const auto gap = volvelle("generate --resources lib --out idea.mid");
    EXPECT_EQ(gap.status, 1);
    EXPECT_EQ(gap.error, "The file 'lib/Phrases/chord patterns/001.mid' does not exist.\n");

    const auto pipe = shell("rm lib/Phrases/*/002.mid; mkfifo 'lib/Phrases/chord patterns/001.mid'; exec "
                            "timeout 20 \"$VOLVELLE\" generate "
                            "--resources lib --out idea.mid");
    EXPECT_EQ(pipe.status, 1);
    EXPECT_EQ(pipe.error, "'lib/Phrases/chord patterns/001.mid' is no file.\n");
    EXPECT_EQ(read("idea.mid"), "old");
    EXPECT_THAT(names(), ElementsAre("idea.mid", "lib"));
}

} // namespace
} // namespace volvelle::test
