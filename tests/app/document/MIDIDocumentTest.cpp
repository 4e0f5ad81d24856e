#include "app/document/MIDIDocument.h"
#include "phrases/MIDIClipGenerator.h"
#include "services/musicsequence/FaultPoint.h"
#include "tests/support/ConsoleCapture.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

TEST(MIDIDocument, AnEmptyArrangementReadsBackAsSixteenEmptyTracksAndATempoTrack)
{
    MIDIClipGenerator generator;
    const auto arrangement = generator.makeArrangement(true);
    const auto data = MIDIDocument::sequenceData(arrangement->musicSequence);
    ASSERT_TRUE(data);
    const std::vector<std::uint8_t> head(data->begin(), data->begin() + 14);
    EXPECT_EQ(head, (std::vector<std::uint8_t>{'M', 'T', 'h', 'd', 0, 0, 0, 6, 0, 1, 0, 17, 0x01, 0xE0}));
    for (const auto flags : {kMusicSequenceLoadSMF_PreserveTracks, kMusicSequenceLoadSMF_ChannelsToTracks}) {
        MusicSequence sequence;
        ASSERT_EQ(NewMusicSequence(sequence), noErr);
        ASSERT_EQ(MusicSequenceFileLoadData(sequence, *data, kMusicSequenceFile_MIDIType, flags), noErr);
        std::uint32_t count = 0;
        EXPECT_EQ(MusicSequenceGetTrackCount(sequence, count), noErr);
        EXPECT_EQ(count, 16U);
        for (std::uint32_t i = 0; i < count; ++i) {
            MusicTrack track;
            ASSERT_EQ(MusicSequenceGetIndTrack(sequence, i, track), noErr);
            MusicEventIterator iterator;
            ASSERT_EQ(NewMusicEventIterator(track, iterator), noErr);
            bool hasEvent = true;
            EXPECT_EQ(MusicEventIteratorHasCurrentEvent(iterator, hasEvent), noErr);
            EXPECT_FALSE(hasEvent);
        }
    }
}

TEST(MIDIDocument, AFailedConversionIsToldAndGivesNothing)
{
    test::ConsoleCapture capture;
    EXPECT_EQ(MIDIDocument::sequenceData(nullptr), std::nullopt);
    EXPECT_EQ(capture.take(), std::vector<std::string>{
                                  "MIDIDocument::sequenceData() : Error: Could not convert music sequence to "
                                  "data. Status: -10854"});
}

TEST(MIDIDocument, ASuccessWithoutDataGivesNothing)
{
    MusicSequence sequence;
    ASSERT_EQ(NewMusicSequence(sequence), noErr);
    setFault(MusicSequenceOperation::MusicSequenceFileCreateData, {});
    EXPECT_EQ(MIDIDocument::sequenceData(sequence), std::nullopt);
    clearFaults();
}

} // namespace
} // namespace volvelle
