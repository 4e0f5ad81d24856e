#include "services/files/SafeFile.h"
#include "tests/services/musicsequence/SequenceTools.h"
#include "tests/support/AllocationCount.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

constexpr auto midi = kMusicSequenceFile_MIDIType;
constexpr auto erase = kMusicSequenceFileFlags_EraseFile;

class MusicSequenceFiles : public testing::Test {
protected:
    MusicSequenceFiles() { addNote(newTrack(sequence), 0.0, 60); }

    TemporaryFolder folder;
    std::filesystem::path path = folder.path / "Idea.mid";
    MusicSequence sequence = newSequence();
};

TEST_F(MusicSequenceFiles, AFileHoldsTheSameBytesAsTheData)
{
    EXPECT_EQ(MusicSequenceFileCreate(sequence, path, midi, 0, 0), noErr);
    Bytes bytes;
    EXPECT_EQ(readFile(path, bytes), noErr);
    EXPECT_EQ(bytes, save(sequence));
    const MusicSequence again = newSequence();
    EXPECT_EQ(MusicSequenceFileLoad(again, path, midi, 0), noErr);
    EXPECT_EQ(save(again), bytes);
    EXPECT_EQ(folder.names(), Lines{"Idea.mid"});
}

TEST_F(MusicSequenceFiles, AnExistingFileIsReplacedOnlyWhereTheFlagSaysSo)
{
    EXPECT_EQ(replaceFile(path, hex("01"), false), noErr);
    EXPECT_EQ(MusicSequenceFileCreate(sequence, path, midi, 0, 480), fileExistsErr);
    Bytes bytes;
    EXPECT_EQ(readFile(path, bytes), noErr);
    EXPECT_EQ(bytes, hex("01"));
    EXPECT_EQ(MusicSequenceFileCreate(sequence, path, midi, erase, 480), noErr);
    EXPECT_EQ(readFile(path, bytes), noErr);
    EXPECT_EQ(bytes, save(sequence));
}

TEST_F(MusicSequenceFiles, ASequenceIsMadeFromAFileOrItsBytesAtOnce)
{
    EXPECT_EQ(MusicSequenceFileCreate(sequence, path, midi, 0, 480), noErr);
    const Bytes bytes = save(sequence);
    MusicSequence fromFile;
    MusicSequence fromData;
    EXPECT_EQ(NewMusicSequenceFromFile(path, 0, fromFile), noErr);
    EXPECT_EQ(NewMusicSequenceFromData(bytes, 0, fromData), noErr);
    EXPECT_EQ(save(fromFile), bytes);
    EXPECT_EQ(save(fromData), bytes);
    EXPECT_EQ(NewMusicSequenceFromFile(folder.path / "none.mid", 0, fromFile), fileNotFoundErr);
    EXPECT_EQ(NewMusicSequenceFromData(hex("01"), 0, fromData), fileFormatErr);
    EXPECT_EQ(fromFile, nullptr);
    EXPECT_EQ(fromData, nullptr);
}

TEST_F(MusicSequenceFiles, AFileThatIsNotThereIsNotFound)
{
    const Bytes before = save(sequence);
    EXPECT_EQ(MusicSequenceFileLoad(sequence, path, midi, 0), fileNotFoundErr);
    EXPECT_EQ(MusicSequenceFileCreate(sequence, folder.path / "none" / "a.mid", midi, erase, 480),
              fileNotFoundErr);
    EXPECT_EQ(save(sequence), before);
}

TEST_F(MusicSequenceFiles, AFolderCannotBeReadOrWritten)
{
    EXPECT_EQ(MusicSequenceFileLoad(sequence, folder.path, midi, 0), fileIOErr);
    EXPECT_EQ(MusicSequenceFileCreate(sequence, folder.path, midi, erase, 480), fileIOErr);
    EXPECT_EQ(folder.names(), Lines{});
}

TEST_F(MusicSequenceFiles, AFileThatIsNoMusicIsRefused)
{
    EXPECT_EQ(replaceFile(path, hex("\"no music\""), false), noErr);
    EXPECT_EQ(MusicSequenceFileLoad(sequence, path, midi, 0), fileFormatErr);
}

TEST_F(MusicSequenceFiles, ASequenceThatAFileCannotHoldLeavesAnExistingFileAlone)
{
    EXPECT_EQ(replaceFile(path, hex("01"), false), noErr);
    setLength(tempoTrackOf(sequence), 1.0e300);
    EXPECT_EQ(MusicSequenceFileCreate(sequence, path, midi, erase, 480), fileIOErr);
    Bytes bytes;
    EXPECT_EQ(readFile(path, bytes), noErr);
    EXPECT_EQ(bytes, hex("01"));
}

TEST_F(MusicSequenceFiles, WhateverAllocationFailsTheWritingTellsItAndLeavesAnExistingFileAlone)
{
    const Bytes expected = save(sequence);
    OSStatus status = fileIOErr;
    std::size_t refused = 0;
    for (; status != noErr && refused < 1000; ++refused) {
        EXPECT_EQ(replaceFile(path, hex("01"), true), noErr);
        {
            const AllocationCount allocations(refused);
            status = MusicSequenceFileCreate(sequence, path, midi, erase, 480);
        }
        Bytes bytes;
        EXPECT_EQ(readFile(path, bytes), noErr);
        EXPECT_EQ(bytes, status == noErr ? expected : hex("01"));
        EXPECT_EQ(status == noErr ? fileIOErr : status, fileIOErr);
        EXPECT_EQ(folder.names(), Lines{"Idea.mid"});
    }
    EXPECT_GT(refused, 8U);
    EXPECT_EQ(status, noErr);
}

TEST_F(MusicSequenceFiles, AnotherTypeIsRefused)
{
    EXPECT_EQ(MusicSequenceFileCreate(sequence, path, 1, erase, 480), kAudioToolboxErr_InvalidSequenceType);
    EXPECT_EQ(MusicSequenceFileLoad(sequence, path, 1, 0), kAudioToolboxErr_InvalidSequenceType);
    EXPECT_EQ(folder.names(), Lines{});
}

} // namespace

} // namespace volvelle::test
