#include "sequence/SequenceFileBytes.h"

#include <gtest/gtest.h>

namespace volvelle::test {

TEST(SequenceFileBytes, AFileHas480TicksToTheBeat)
{
    MusicSequence sequence;
    MusicTrack track;
    ASSERT_EQ(NewMusicSequence(sequence), noErr);
    ASSERT_EQ(MusicSequenceNewTrack(sequence, track), noErr);
    ASSERT_EQ(MusicTrackNewMIDINoteEvent(track, 1.0, {0, 60, 100, 0, 0.5F}), noErr);
    std::vector<std::uint8_t> bytes;
    ASSERT_EQ(sequenceFileBytes(sequence, bytes), noErr);
    ASSERT_GT(bytes.size(), 14U);
    EXPECT_EQ(bytes[12] * 256 + bytes[13], 480);
}

TEST(SequenceFileBytes, WithoutASequenceThereAreNone)
{
    std::vector<std::uint8_t> bytes;
    EXPECT_NE(sequenceFileBytes(nullptr, bytes), noErr);
    EXPECT_TRUE(bytes.empty());
}

} // namespace volvelle::test
