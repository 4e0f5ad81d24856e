#include "tests/services/musicsequence/SequenceTools.h"

#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

// A file of format 1 and 96 ticks a beat with this one track.
MusicSequence loadTrack(std::string_view digits)
{
    return load(fileOf(1, 96, {hex(digits)}));
}

Lines eventsIn(std::string_view digits)
{
    const MusicSequence sequence = loadTrack(digits);
    EXPECT_EQ(warningsOf(sequence), Lines{});
    return eventsOf(trackOf(sequence, 0));
}

TEST(SMFReader, EveryKindOfEventIsRead)
{
    EXPECT_EQ(eventsIn("00 FF0304 \"Bass\" 00 C005 00 B00764 60 903C64 30 803C40 00 E00040 00 D011 00 A03C22"
                       "00 F0037E09F7 00 F702F301 00 FF7F00 00 FF8101AA 60 FF2F00"),
              (Lines{"0.0 meta 03 42 61 73 73", "0.0 message C0 05 00", "0.0 message B0 07 64",
                     "1.0 note 0 60 100 64 0.5", "1.5 message E0 00 40", "1.5 message D0 11 00",
                     "1.5 message A0 3C 22", "1.5 raw F0 7E 09 F7", "1.5 raw F3 01", "1.5 meta 7F",
                     "1.5 meta 81 AA"}));
}

TEST(SMFReader, ANoteOnOfVelocityZeroIsANoteOffOfReleaseVelocityZero)
{
    EXPECT_EQ(eventsIn("00 903C64 60 3C00 00 FF2F00"), Lines{"0.0 note 0 60 100 0 1.0"});
}

TEST(SMFReader, RunningStatusGoesOnBehindMetasAndExclusives)
{
    EXPECT_EQ(eventsIn("00 B00701 00 0702 00 FF0100 00 0703 00 F001F7 00 0704 00 FF2F00"),
              (Lines{"0.0 message B0 07 01", "0.0 message B0 07 02", "0.0 meta 01", "0.0 message B0 07 03",
                     "0.0 raw F0 F7", "0.0 message B0 07 04"}));
}

TEST(SMFReader, NestedNotesOfOneKeyArePairedFirstInFirstOut)
{
    EXPECT_EQ(eventsIn("00 903C64 60 3C32 60 803C01 60 3C02 00 FF2F00"),
              (Lines{"0.0 note 0 60 100 1 2.0", "1.0 note 0 60 50 2 2.0"}));
}

TEST(SMFReader, ARepetitionAtOneTickIsOneInEitherOrder)
{
    const Lines expected{"0.0 note 0 60 100 0 1.0", "1.0 note 0 60 50 0 1.0"};
    EXPECT_EQ(eventsIn("00 903C64 60 3C00 00 3C32 60 3C00 00 FF2F00"), expected);
    EXPECT_EQ(eventsIn("00 903C64 60 3C32 00 3C00 60 3C00 00 FF2F00"), expected);
}

TEST(SMFReader, NotesOfTwoChannelsAndKeysDoNotMeet)
{
    EXPECT_EQ(eventsIn("00 903C64 00 913C32 00 903D11 60 813C00 60 803C00 60 803D00 00 FF2F00"),
              (Lines{"0.0 note 0 60 100 0 2.0", "0.0 note 1 60 50 0 1.0", "0.0 note 0 61 17 0 3.0"}));
}

TEST(SMFReader, NotesArePairedInsideTheirFileTrack)
{
    const MusicSequence sequence =
        load(fileOf(1, 96, {hex("00 903C64 8100 3C00 00 FF2F00"), hex("60 903C32 60 3C00 00 FF2F00")}), 1);
    EXPECT_EQ(trackCountOf(sequence), 1U);
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)),
              (Lines{"0.0 note 0 60 100 0 1.3333334", "1.0 note 0 60 50 0 1.0"}));
}

TEST(SMFReader, ANoteOfNoLengthIsKept)
{
    EXPECT_EQ(eventsIn("00 903C64 00 3C00 00 FF2F00"), Lines{"0.0 note 0 60 100 0 0.0"});
}

TEST(SMFReader, TheEndOfTrackIsTheLength)
{
    EXPECT_EQ(lengthOf(trackOf(loadTrack("00 903C64 60 3C00 60 FF2F00"), 0)), 2.0);
}

TEST(SMFReader, TheDivisionIsKept)
{
    std::int16_t division = 0;
    const MusicSequence sequence = loadTrack("00 FF2F00");
    EXPECT_EQ(MusicSequenceGetLoadDivision(sequence, division), noErr);
    EXPECT_EQ(division, 96);
    std::uint32_t size = 2;
    EXPECT_EQ(
        MusicTrackGetProperty(trackOf(sequence, 0), kSequenceTrackProperty_TimeResolution, &division, size),
        noErr);
    EXPECT_EQ(division, 96);
}

TEST(SMFReader, NumbersOfFourBytesAndPaddedOnesAreRead)
{
    EXPECT_EQ(eventsIn("80808060 C001 8080808060 C002 00 FF2F00"),
              (Lines{"1.0 message C0 01 00", "2.0 message C0 02 00"}));
}

TEST(SMFReader, ALongGapsFillerIsDropped)
{
    EXPECT_EQ(eventsIn("FFFFFF7F FF7F00 01 C001 00 FF7F00 00 FF2F00"),
              (Lines{"2796202.6666666665 message C0 01 00", "2796202.6666666665 meta 7F"}));
}

TEST(SMFReader, ALongerHeaderAndForeignChunksAreSkipped)
{
    const Bytes bytes = joined({hex("\"MThd\" 00000008 0001 0001 0060 AABB \"XFIH\" 00000003 010203"),
                                chunkOf(hex("00 C001 00 FF2F00")), hex("\"XFKM\" 00000001 00")});
    const MusicSequence sequence = load(bytes);
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)), Lines{"0.0 message C0 01 00"});
    EXPECT_EQ(warningsOf(sequence), Lines{});
}

TEST(SMFReader, AFileInsideARiffFileIsRead)
{
    const Bytes inner = fileOf(0, 96, {hex("00 C001 00 FF2F00")});
    const Bytes bytes = joined({hex("\"RIFF\" 40000000 \"RMIDdata\""), hex("1D000000"), inner, hex("00"),
                                hex("\"LIST\" 04000000 \"INFO\"")});
    const MusicSequence sequence = load(bytes);
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)), Lines{"0.0 message C0 01 00"});
    EXPECT_EQ(warningsOf(sequence), Lines{});
}

TEST(SMFReader, TimeCodeIsReadAt480TicksABeat)
{
    // 25 frames of 40 ticks: a tick is a millisecond.
    const MusicSequence sequence = load(fileOf(1, 0xE728, {hex("00 FF5103 07A120 8768 C001 8768 FF2F00")}));
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)), Lines{"2.0 message C0 01 00"});
    EXPECT_EQ(lengthOf(trackOf(sequence, 0)), 4.0);
    EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), Lines{});
    EXPECT_EQ(warningsOf(sequence),
              Lines{"The file counts time in frames; it was read at 120 beats a minute."});
    std::int16_t division = 0;
    EXPECT_EQ(MusicSequenceGetLoadDivision(sequence, division), noErr);
    EXPECT_EQ(division, 480);
}

TEST(SMFReader, SeparateSequencesAreLaidOneAfterAnother)
{
    const Bytes one = hex("00 FF5103 07A120 00 903C64 60 3C00 60 FF2F00");
    const MusicSequence sequence = load(fileOf(2, 96, {one, one}));
    EXPECT_EQ(eventsOf(trackOf(sequence, 0)), Lines{"0.0 note 0 60 100 0 1.0"});
    EXPECT_EQ(eventsOf(trackOf(sequence, 1)), Lines{"2.0 note 0 60 100 0 1.0"});
    EXPECT_EQ(eventsOf(tempoTrackOf(sequence)), (Lines{"0.0 tempo 120.0", "2.0 tempo 120.0"}));
    EXPECT_EQ(warningsOf(sequence),
              Lines{"The file holds separate sequences; they were laid one after another."});
}

} // namespace

} // namespace volvelle::test
