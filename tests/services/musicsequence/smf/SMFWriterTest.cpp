#include "services/musicsequence/smf/SMFWriter.h"

#include "tests/services/musicsequence/SequenceTools.h"
#include "tests/support/AllocationCount.h"

#include <gtest/gtest.h>
#include <limits>

namespace volvelle::test {

namespace {

class SMFWriters : public testing::Test {
protected:
    // The events of the one track, in hex.
    std::string written() const
    {
        const Bytes bytes = save(sequence);
        const std::size_t start =
            hex("\"MThd\" 00000006 0001 0002 01E0 \"MTrk\" 00000004 00FF2F00").size() + 8;
        return hexOf({bytes.begin() + static_cast<std::ptrdiff_t>(start), bytes.end()});
    }

    static std::string asHex(std::string_view digits) { return hexOf(hex(digits)); }

    MusicSequence sequence = newSequence();
    MusicTrack track = newTrack(sequence);
};

TEST_F(SMFWriters, ANoteUnderATempoIsWrittenByteForByte)
{
    addTempo(sequence, 0.0, 120.0);
    addNote(track, 0.0, 60, 1.0F);
    EXPECT_EQ(save(sequence), hex("\"MThd\" 00000006 0001 0002 01E0"
                                  "\"MTrk\" 0000000B 00 FF5103 07A120 00 FF2F00"
                                  "\"MTrk\" 0000000C 00 903C64 8360 3C00 00 FF2F00"));
}

TEST_F(SMFWriters, AnEmptySequenceIsATempoTrackOfItsEndAlone)
{
    EXPECT_EQ(save(newSequence()), hex("\"MThd\" 00000006 0001 0001 01E0 \"MTrk\" 00000004 00 FF2F00"));
}

TEST_F(SMFWriters, TheResolutionStandsInTheHeaderAndScalesTheTimes)
{
    addNote(track, 1.0, 60, 0.5F);
    EXPECT_EQ(save(sequence, 96), hex("\"MThd\" 00000006 0001 0002 0060 \"MTrk\" 00000004 00 FF2F00"
                                      "\"MTrk\" 0000000B 60 903C64 30 3C00 00 FF2F00"));
    EXPECT_EQ(save(sequence, 0), save(sequence, 480));
    EXPECT_EQ(save(sequence, -5), save(sequence, 480));
}

TEST_F(SMFWriters, ASingleTrackHoldsEverythingMerged)
{
    const MusicTrack second = newTrack(sequence);
    addTempo(sequence, 0.0, 120.0);
    addNote(track, 0.0, 60, 1.0F);
    addNote(second, 0.0, 40, 0.5F, 1);
    setLength(second, 2.0);
    Bytes bytes;
    EXPECT_EQ(writeSMF(sequence, SMFFormat::SingleTrack, 96, bytes), noErr);
    EXPECT_EQ(bytes, hex("\"MThd\" 00000006 0000 0001 0060 \"MTrk\" 0000001A"
                         "00 FF5103 07A120 00 903C64 00 912864 30 2800 30 903C00 60 FF2F00"));
}

TEST_F(SMFWriters, RunningStatusIsCancelledByMetasAndExclusives)
{
    addMessage(track, 0.0, 0xB0, 7, 1);
    addMessage(track, 0.0, 0xB0, 10, 2);
    addMeta(track, 0.0, 0x01, hex("\"A\""));
    addMessage(track, 0.0, 0xB0, 7, 3);
    addRawData(track, 0.0, hex("F0 01 F7"));
    addMessage(track, 0.0, 0xB0, 7, 4);
    addMessage(track, 0.0, 0xC0, 5, 99);
    addMessage(track, 0.0, 0xD0, 6, 99);
    EXPECT_EQ(written(), asHex("00 B00701 00 0A02 00 FF010141 00 B00703 00 F00201F7 00 B00704 00 C005 00 D006"
                               "00 FF2F00"));
}

TEST_F(SMFWriters, AReleaseVelocityOtherThanZeroIsWrittenAsANoteOff)
{
    addNote(track, 0.0, 60, 1.0F, 0, 100, 64);
    addNote(track, 1.0, 62, 1.0F, 0, 100, 0);
    EXPECT_EQ(written(), asHex("00 903C64 8360 803C40 00 903E64 8360 3E00 00 FF2F00"));
}

TEST_F(SMFWriters, ANoteOfVelocityZeroIsWrittenWithVelocityOne)
{
    addNote(track, 0.0, 60, 1.0F, 0, 0);
    EXPECT_EQ(written(), asHex("00 903C01 8360 3C00 00 FF2F00"));
}

TEST_F(SMFWriters, OffsStandBeforeOnsOfOneTick)
{
    addNote(track, 0.0, 60, 1.0F);
    addMessage(track, 1.0, 0xC0, 5);
    addNote(track, 1.0, 60, 1.0F);
    EXPECT_EQ(written(), asHex("00 903C64 8360 3C00 00 C005 00 903C64 8360 3C00 00 FF2F00"));
}

TEST_F(SMFWriters, TheOffOfANoteOfNoLengthStandsBehindItsOn)
{
    addNote(track, 0.0, 60, 1.0F);
    addNote(track, 1.0, 62, 0.0F, 0, 50);
    addNote(track, 1.0, 62, 0.0F, 0, 51);
    EXPECT_EQ(written(), asHex("00 903C64 8360 3C00 00 3E32 00 3E00 00 3E33 00 3E00 00 FF2F00"));
}

TEST_F(SMFWriters, StartAndEndAreRoundedEachByItself)
{
    addNote(track, 0.4 / 480, 60, static_cast<float>(1.0 / 480));
    addNote(track, 10.6 / 480, 62, static_cast<float>(0.3 / 480));
    EXPECT_EQ(written(), asHex("00 903C64 01 3C00 0A 3E64 00 3E00 00 FF2F00"));
}

TEST_F(SMFWriters, TheEndIsTheLaterOfLengthAndLastEvent)
{
    addNote(track, 0.0, 60, 1.0F);
    setLength(track, 2.0);
    EXPECT_EQ(written(), asHex("00 903C64 8360 3C00 8360 FF2F00"));
    setLength(track, 0.25);
    EXPECT_EQ(written(), asHex("00 903C64 8360 3C00 00 FF2F00"));
}

TEST_F(SMFWriters, AnEndOfTrackEventOnlyLengthensTheTrack)
{
    addMeta(track, 1.0, 0x2F, {});
    addNote(track, 0.0, 60, 0.5F);
    EXPECT_EQ(written(), asHex("00 903C64 8170 3C00 8170 FF2F00"));
}

TEST_F(SMFWriters, SystemMessagesAreEscapesOfTheirStatusAndData)
{
    addMessage(track, 0.0, 0xF1, 1, 2);
    addMessage(track, 0.0, 0xF2, 1, 2);
    addMessage(track, 0.0, 0xF3, 1, 2);
    addMessage(track, 0.0, 0xF6, 1, 2);
    addMessage(track, 0.0, 0xFF, 1, 2);
    EXPECT_EQ(written(), asHex("00 F702F101 00 F703F20102 00 F702F301 00 F701F6 00 F701FF 00 FF2F00"));
}

TEST_F(SMFWriters, RawDataIsAnExclusiveOrAPacket)
{
    addRawData(track, 0.0, hex("F0 43 12 F7"));
    addRawData(track, 0.0, hex("F0 43 12"));
    addRawData(track, 0.0, hex("00 F7"));
    addRawData(track, 0.0, hex("F7"));
    addRawData(track, 0.0, {});
    EXPECT_EQ(written(), asHex("00 F0034312F7 00 F0024312 00 F70200F7 00 F701F7 00 F700 00 FF2F00"));
}

TEST_F(SMFWriters, WhatAFileCannotHoldIsLeftOut)
{
    EXPECT_EQ(tryUserData(track, 0.0, hex("01")), noErr);
    EXPECT_EQ(MusicTrackNewParameterEvent(track, 0.0, {}), noErr);
    EXPECT_EQ(MusicTrackNewAUPresetEvent(track, 0.0, {}), noErr);
    EXPECT_EQ(MusicTrackNewExtendedNoteEvent(track, 0.0, {0, 0, 1.0F, {}}), noErr);
    EXPECT_EQ(written(), asHex("8360 FF2F00"));
}

TEST_F(SMFWriters, TemposAreClampedToThreeBytes)
{
    const MusicSequence fresh = newSequence();
    addTempo(fresh, 0.0, 1.0e-300);
    addTempo(fresh, 0.0, 1.0e300);
    addTempo(fresh, 0.0, 60.0);
    EXPECT_EQ(save(fresh), hex("\"MThd\" 00000006 0001 0001 01E0 \"MTrk\" 00000019"
                               "00 FF5103 FFFFFF 00 FF5103 000001 00 FF5103 0F4240 00 FF2F00"));
}

TEST_F(SMFWriters, AGapTooLongForADeltaTimeIsBridged)
{
    addMessage(track, 0x0FFFFFFF / 480.0, 0xC0, 1);
    EXPECT_EQ(written(), asHex("FFFFFF7F C001 00 FF2F00"));
    EXPECT_EQ(MusicTrackMoveEvents(track, 0.0, 1.0e9, 2.0 / 480.0), noErr);
    EXPECT_EQ(written(), asHex("FFFFFF7F FF7F00 02 C001 00 FF2F00"));
}

TEST_F(SMFWriters, NestedNotesOfOneKeyEndFirstInFirstOut)
{
    addNote(track, 0.0, 60, 4.0F, 0, 100, 1);
    addNote(track, 1.0, 60, 1.0F, 0, 90, 2);
    EXPECT_EQ(written(), asHex("00 903C64 8360 3C5A 8360 803C02 8740 3C01 00 FF2F00"));
}

TEST_F(SMFWriters, ANoteOfNoLengthInsideALongerOneOfItsKeyEndsTheLongerOne)
{
    addNote(track, 0.0, 60, 2.0F);
    addNote(track, 1.0, 60, 0.0F, 0, 90);
    EXPECT_EQ(written(), asHex("00 903C64 8360 3C00 00 3C5A 8360 3C00 00 FF2F00"));
}

TEST_F(SMFWriters, ATimeBeyondWhatATrackCanHoldIsRefused)
{
    Bytes bytes = hex("01");
    addMessage(track, 1.0e300, 0xC0, 1);
    EXPECT_EQ(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 1, 480, bytes), fileIOErr);
    EXPECT_EQ(bytes, hex("01"));
    const MusicSequence long_ = newSequence();
    setLength(tempoTrackOf(long_), std::numeric_limits<double>::max());
    EXPECT_EQ(MusicSequenceFileCreateData(long_, kMusicSequenceFile_MIDIType, 1, 480, bytes), fileIOErr);
}

TEST_F(SMFWriters, AFileHolds64MiBOfFillersAtMost)
{
    constexpr double mostFillers = (64U << 20U) / 7;
    addMessage(track, (mostFillers + 1.0) * 0x0FFFFFFF / 480.0, 0xC0, 1);
    Bytes bytes;
    EXPECT_EQ(writeSMF(sequence, SMFFormat::SingleTrack, 480, bytes), noErr);
    const MusicTrack other = newTrack(sequence);
    addMessage(other, 0x0FFFFFFF / 480.0, 0xC0, 1);
    EXPECT_EQ(writeSMF(sequence, SMFFormat::MultiTrack, 480, bytes), noErr);
    EXPECT_EQ(bytes.size(), 14 + 12 + 8 + std::size_t{64U << 20U} / 7 * 7 + 10 + 8 + 10);
    addMessage(other, (0x0FFFFFFF * 2.0 + 1.0) / 480.0, 0xC0, 1);
    bytes = hex("01");
    EXPECT_EQ(writeSMF(sequence, SMFFormat::MultiTrack, 480, bytes), fileIOErr);
    EXPECT_EQ(bytes, hex("01"));
    EXPECT_EQ(writeSMF(sequence, SMFFormat::SingleTrack, 480, bytes), noErr);
}

TEST_F(SMFWriters, ASmallSequenceThatWouldBecomeAGreatFileIsRefusedForLittleMemory)
{
    for (int i = 0; i < 1000; ++i) {
        addNote(track, i * 1.0e13, 60);
    }
    Bytes bytes;
    const AllocationCount allocations;
    EXPECT_EQ(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 1, 480, bytes), fileIOErr);
    EXPECT_LE(allocations.greatest, 128U << 20U);
}

TEST_F(SMFWriters, WhateverAllocationFailsTheWritingTellsItAndChangesNothing)
{
    addNote(track, 1.0, 60, 2.0F);
    addNote(track, 2.0, 60);
    addNote(track, 0.0, 62, 0.0F);
    addTempo(sequence, 0.0, 90.0);
    addMeta(track, 0.5, 3, hex("41"));
    const Bytes expected = save(sequence);
    OSStatus status = fileIOErr;
    std::size_t refused = 0;
    for (; status != noErr && refused < 1000; ++refused) {
        Bytes bytes;
        {
            const AllocationCount allocations(refused);
            status = MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 1, 480, bytes);
        }
        EXPECT_EQ(status, bytes.empty() ? fileIOErr : noErr);
        EXPECT_EQ(bytes, bytes.empty() ? Bytes() : expected);
    }
    EXPECT_GT(refused, 8U);
    EXPECT_EQ(status, noErr);
}

TEST_F(SMFWriters, MoreTracksThanAHeaderCanCountAreRefused)
{
    for (int i = 1; i < 65'534; ++i) {
        newTrack(sequence);
    }
    Bytes bytes;
    EXPECT_EQ(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 1, 480, bytes), noErr);
    newTrack(sequence);
    EXPECT_EQ(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 1, 480, bytes), fileIOErr);
    EXPECT_EQ(writeSMF(sequence, SMFFormat::SingleTrack, 480, bytes), noErr);
    EXPECT_EQ(trackCountOf(load(bytes)), 1U);
}

TEST_F(SMFWriters, AnEventOf256MiBIsRefused)
{
    Bytes bytes(0x10000000);
    EXPECT_EQ(tryRawData(track, 0.0, bytes), noErr);
    Bytes target;
    EXPECT_EQ(MusicSequenceFileCreateData(sequence, kMusicSequenceFile_MIDIType, 1, 480, target), fileIOErr);
}

TEST_F(SMFWriters, AnotherFileTypeIsRefused)
{
    Bytes bytes;
    EXPECT_EQ(MusicSequenceFileCreateData(sequence, 0, 1, 480, bytes), kAudioToolboxErr_InvalidSequenceType);
}

TEST_F(SMFWriters, NoSequenceIsRefused)
{
    Bytes bytes;
    EXPECT_EQ(writeSMF(nullptr, SMFFormat::SingleTrack, 480, bytes), kAudioToolboxErr_NoSequence);
}

} // namespace

} // namespace volvelle::test
