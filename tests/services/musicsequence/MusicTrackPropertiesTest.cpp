#include "tests/services/musicsequence/SequenceTools.h"

#include <array>
#include <gtest/gtest.h>
#include <limits>

namespace volvelle::test {

namespace {

template <class T>
OSStatus set(const MusicTrack& track, MusicTrackProperty property, T value)
{
    return MusicTrackSetProperty(track, property, &value, sizeof(value));
}

template <class T>
T get(const MusicTrack& track, MusicTrackProperty property)
{
    T value{};
    std::uint32_t size = 64;
    EXPECT_EQ(MusicTrackGetProperty(track, property, &value, size), noErr);
    EXPECT_EQ(size, sizeof(T));
    return value;
}

class MusicTrackProperties : public testing::Test {
protected:
    MusicSequence sequence = newSequence();
    MusicTrack track = newTrack(sequence);
};

TEST_F(MusicTrackProperties, ANewTrackIsEmptyUnmutedAndUnlooped)
{
    EXPECT_EQ(get<MusicTrackLoopInfo>(track, kSequenceTrackProperty_LoopInfo).loopDuration, 0.0);
    EXPECT_EQ(get<double>(track, kSequenceTrackProperty_OffsetTime), 0.0);
    EXPECT_FALSE(get<bool>(track, kSequenceTrackProperty_MuteStatus));
    EXPECT_FALSE(get<bool>(track, kSequenceTrackProperty_SoloStatus));
    EXPECT_FALSE(get<bool>(track, kSequenceTrackProperty_AutomatedParameters));
    EXPECT_EQ(get<double>(track, kSequenceTrackProperty_TrackLength), 0.0);
    EXPECT_EQ(get<std::int16_t>(track, kSequenceTrackProperty_TimeResolution), 480);
}

TEST_F(MusicTrackProperties, EveryPropertyReadsBackWhatWasSet)
{
    EXPECT_EQ(set(track, kSequenceTrackProperty_LoopInfo, MusicTrackLoopInfo{4.0, 3}), noErr);
    EXPECT_EQ(set(track, kSequenceTrackProperty_OffsetTime, -2.5), noErr);
    EXPECT_EQ(set(track, kSequenceTrackProperty_MuteStatus, true), noErr);
    EXPECT_EQ(set(track, kSequenceTrackProperty_SoloStatus, true), noErr);
    EXPECT_EQ(set(track, kSequenceTrackProperty_AutomatedParameters, true), noErr);
    EXPECT_EQ(set(track, kSequenceTrackProperty_TrackLength, 8.0), noErr);
    EXPECT_EQ(set(track, kSequenceTrackProperty_TimeResolution, std::int16_t{96}), noErr);
    EXPECT_EQ(get<MusicTrackLoopInfo>(track, kSequenceTrackProperty_LoopInfo).loopDuration, 4.0);
    EXPECT_EQ(get<MusicTrackLoopInfo>(track, kSequenceTrackProperty_LoopInfo).numberOfLoops, 3);
    EXPECT_EQ(get<double>(track, kSequenceTrackProperty_OffsetTime), -2.5);
    EXPECT_TRUE(get<bool>(track, kSequenceTrackProperty_MuteStatus));
    EXPECT_TRUE(get<bool>(track, kSequenceTrackProperty_SoloStatus));
    EXPECT_TRUE(get<bool>(track, kSequenceTrackProperty_AutomatedParameters));
    EXPECT_EQ(get<double>(track, kSequenceTrackProperty_TrackLength), 8.0);
    EXPECT_EQ(get<std::int16_t>(track, kSequenceTrackProperty_TimeResolution), 96);
}

TEST_F(MusicTrackProperties, MuteAndSoloAreTwoProperties)
{
    EXPECT_EQ(set(track, kSequenceTrackProperty_MuteStatus, true), noErr);
    EXPECT_FALSE(get<bool>(track, kSequenceTrackProperty_SoloStatus));
}

TEST_F(MusicTrackProperties, ASizeThatDoesNotFitIsRefused)
{
    const std::vector<std::uint32_t> sizes{16, 8, 1, 1, 1, 8, 2};
    for (MusicTrackProperty property = 0; property < sizes.size(); ++property) {
        std::array<std::uint8_t, 32> room{};
        std::uint32_t size = sizes[property] - 1;
        EXPECT_EQ(MusicTrackGetProperty(track, property, room.data(), size),
                  kAudioToolboxErr_InvalidProperty);
        EXPECT_EQ(size, sizes[property] - 1);
        EXPECT_EQ(MusicTrackSetProperty(track, property, room.data(), size),
                  kAudioToolboxErr_InvalidProperty);
        EXPECT_EQ(MusicTrackSetProperty(track, property, room.data(), sizes[property] + 1),
                  kAudioToolboxErr_InvalidProperty);
        size = 32;
        EXPECT_EQ(MusicTrackGetProperty(track, property, nullptr, size), kAudioToolboxErr_InvalidProperty);
        EXPECT_EQ(MusicTrackSetProperty(track, property, nullptr, sizes[property]),
                  kAudioToolboxErr_InvalidProperty);
    }
}

TEST_F(MusicTrackProperties, AnUnknownPropertyIsRefused)
{
    EXPECT_EQ(set(track, 7, 1.0), kAudioToolboxErr_InvalidProperty);
    double value = 3.0;
    std::uint32_t size = sizeof(value);
    EXPECT_EQ(MusicTrackGetProperty(track, 7, &value, size), kAudioToolboxErr_InvalidProperty);
    EXPECT_EQ(value, 3.0);
}

TEST_F(MusicTrackProperties, LengthsAndOffsetsMustBeFiniteAndLengthsNotNegative)
{
    for (const double value :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(set(track, kSequenceTrackProperty_TrackLength, value), kAudioToolboxErr_InvalidEventType);
        EXPECT_EQ(set(track, kSequenceTrackProperty_OffsetTime, value), kAudioToolboxErr_InvalidEventType);
    }
    EXPECT_EQ(set(track, kSequenceTrackProperty_TrackLength, -1.0), kAudioToolboxErr_InvalidEventType);
}

TEST_F(MusicTrackProperties, DeletionsNeverLowerTheLength)
{
    addNote(track, 7.0, 60, 1.0F);
    EXPECT_EQ(MusicEventIteratorDeleteEvent(iteratorOf(track)), noErr);
    EXPECT_EQ(MusicTrackClear(track, 0.0, 100.0), noErr);
    EXPECT_EQ(lengthOf(track), 8.0);
}

TEST_F(MusicTrackProperties, WithoutATrackBothAnswerNoSequence)
{
    double value = 0.0;
    std::uint32_t size = sizeof(value);
    EXPECT_EQ(MusicTrackGetProperty(nullptr, 5, &value, size), kAudioToolboxErr_NoSequence);
    EXPECT_EQ(MusicTrackSetProperty(nullptr, 5, &value, size), kAudioToolboxErr_NoSequence);
}

} // namespace

} // namespace volvelle::test
