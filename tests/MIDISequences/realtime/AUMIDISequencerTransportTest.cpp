#include "tests/MIDISequences/realtime/SequencerProbe.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/Stops.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace volvelle::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

const StampedEvents fourEvents{
    {0, {0xB0, 7, 1}}, {24000, {0xB0, 7, 2}}, {24000, {0xB0, 7, 3}}, {96000, {0xB0, 7, 4}}};

class AUMIDISequencerTransport : public testing::Test {
protected:
    AUMIDISequencerTransport() { sequencer.load(fourEvents); }

    SequencerProbe sequencer;
    ConsoleCapture console;
};

} // namespace

TEST_F(AUMIDISequencerTransport, ANewOneHasTheInitialValues)
{
    const AUMIDISequencer fresh;

    EXPECT_EQ(fresh.delegate, nullptr);
    EXPECT_TRUE(fresh.isMultiChannel);
    EXPECT_FALSE(fresh.isLooping);
    EXPECT_NE(fresh.sequence(), nullptr);
    EXPECT_NE(fresh.phraseMixer, nullptr);
    EXPECT_TRUE(fresh.specialEvents.empty());
    EXPECT_EQ(fresh.samplerate, 48000.0);
    EXPECT_EQ(fresh.currentFile, std::nullopt);
    EXPECT_EQ(fresh.currentChannel, 0);
    EXPECT_EQ(fresh.loopCount, 0);
    EXPECT_EQ(fresh.getTempoFactor(), 1.0);
    EXPECT_EQ(fresh.getRate(), 1.0);
    EXPECT_FALSE(fresh.isPlaying());
    EXPECT_FALSE(fresh.seeking);
    EXPECT_THAT(fresh.channelFilter, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
    EXPECT_THAT(fresh.statusFilter, IsEmpty());
    EXPECT_EQ(fresh.getCurrentEventIndex(), 0);
    EXPECT_TRUE(fresh.isEmpty());
    EXPECT_TRUE(fresh.realtimeEvents.empty());
    EXPECT_EQ(fresh.currentFrames, 512);
    EXPECT_EQ(fresh.cable, 1);
    EXPECT_EQ(fresh.getCurrentEvent(), nullptr);
    EXPECT_GE(fresh.channelFilter.capacity(), 16U);
}

TEST_F(AUMIDISequencerTransport, TempoFactorAndRateAreClamped)
{
    sequencer.setTempoFactor(0.05);
    EXPECT_EQ(sequencer.getTempoFactor(), 0.1);
    sequencer.setTempoFactor(11.0);
    EXPECT_EQ(sequencer.getTempoFactor(), 10.0);
    sequencer.setTempoFactor(notANumber);
    EXPECT_EQ(sequencer.getTempoFactor(), 10.0);
    sequencer.setRate(0.05);
    EXPECT_EQ(sequencer.getRate(), 0.1);
    sequencer.setRate(11.0);
    EXPECT_EQ(sequencer.getRate(), 10.0);
    sequencer.setRate(notANumber);
    EXPECT_EQ(sequencer.getRate(), 10.0);
    sequencer.setRate(1.25);
    EXPECT_EQ(sequencer.getRate(), 1.25);
}

TEST_F(AUMIDISequencerTransport, StartingWithoutEventsIsToldAndPlaysNothing)
{
    sequencer.load(StampedEvents{});
    sequencer.start(7);

    EXPECT_FALSE(sequencer.isPlaying());
    EXPECT_THAT(console.take(),
                ElementsAre("AUMIDISequencer::stop()", "AUMIDISequencer::seek(0.0)",
                            "AUMIDISequencer::start() at 7",
                            "AUMIDISequencer::ERROR: There is no MIDI data available for playing."));
}

TEST_F(AUMIDISequencerTransport, StartingStopsAndPlaysFromTheBeginning)
{
    sequencer.seekToPosition(0.5);
    console.take();
    sequencer.start(7);

    EXPECT_TRUE(sequencer.isPlaying());
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 0);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
    EXPECT_EQ(sequencer.getCurrentTimeInSeconds(), 0.0);
    EXPECT_THAT(console.take(), ElementsAre("AUMIDISequencer::stop()", "AUMIDISequencer::seek(0.0)",
                                            "AUMIDISequencer::start() at 7"));
}

TEST_F(AUMIDISequencerTransport, StoppingSendsItsFiveRowsOfMessages)
{
    sequencer.stop();

    ASSERT_EQ(sequencer.realtimeEvents.size(), 80U);
    for (std::uint8_t channel = 0; channel < 16; ++channel) {
        const auto controller = static_cast<std::uint8_t>(0xB0 + channel);
        const auto program = static_cast<std::uint8_t>(0xC0 + channel);
        EXPECT_THAT(sequencer.realtimeEvents.bytes(channel), ElementsAre(controller, 123, 0));
        EXPECT_THAT(sequencer.realtimeEvents.bytes(16U + channel), ElementsAre(controller, 123, 0));
        EXPECT_THAT(sequencer.realtimeEvents.bytes(32U + 2U * channel), ElementsAre(controller, 121, 0));
        EXPECT_THAT(sequencer.realtimeEvents.bytes(33U + 2U * channel), ElementsAre(controller, 64, 0));
        EXPECT_THAT(sequencer.realtimeEvents.bytes(64U + channel), ElementsAre(program, 0, 0));
    }
    EXPECT_TRUE(sequencer.seeking);
}

TEST_F(AUMIDISequencerTransport, AResetEmptiesTheListsOfTheMonitor)
{
    sequencer.addMonitoring(AUMIDIEventEx(AURenderEventMIDI, Bytes{0x90, 60, 1}.data(), 3, 0));
    ASSERT_EQ(sequencer.getSize(), 1);
    ASSERT_EQ(sequencer.getRunningNotesCount(), 1);
    sequencer.reset();
    EXPECT_EQ(sequencer.getSize(), 0);
    EXPECT_EQ(sequencer.getRunningNotesCount(), 0);
}

TEST_F(AUMIDISequencerTransport, PausingAndGoingOnMovesTheStart)
{
    sequencer.startClean(1000);
    sequencer.play(1000, 512);
    console.take();
    sequencer.pause();
    EXPECT_FALSE(sequencer.isPlaying());
    EXPECT_EQ(sequencer.realtimeEvents.size(), 16U);
    EXPECT_EQ(sequencer.play(2000, 512).size(), 16U);
    EXPECT_EQ(sequencer.getCurrentTimeInSeconds(), 1000.0 / 48000.0);
    sequencer._continue();

    EXPECT_TRUE(sequencer.isPlaying());
    EXPECT_EQ(sequencer.getCurrentTimeInSeconds(), 0.0);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 512);
    EXPECT_THAT(console.take(), ElementsAre("AUMIDISequencer::pause()", "AUMIDISequencer::continue()"));
}

TEST_F(AUMIDISequencerTransport, RewindingSetsEverythingToTheBeginning)
{
    sequencer.startClean(1000);
    sequencer.play(1000, 30000);
    sequencer.loopCount = 4;
    sequencer.rewind();

    EXPECT_EQ(sequencer.getCurrentEventIndex(), 0);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
    EXPECT_EQ(sequencer.loopCount, 0);
    EXPECT_TRUE(sequencer.seeking);
    EXPECT_TRUE(sequencer.isPlaying());
    EXPECT_EQ(sequencer.getCurrentTimeInSeconds(), -1000.0 / 48000.0);
}

TEST_F(AUMIDISequencerTransport, SeekingGoesToTheFirstEventThatIsNotBefore)
{
    sequencer.seekToPosition(0.25);
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 1);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 24000);
    sequencer.seekToPosition(0.26);
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 3);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 24960);
    sequencer.seekToPosition(1.5);
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 3);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 96000);
    EXPECT_EQ(sequencer.getProgress(), 1.0);
    sequencer.seekToPosition(-0.5);
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 0);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
    EXPECT_TRUE(sequencer.seeking);
    EXPECT_THAT(console.take(), ElementsAre("AUMIDISequencer::seek(0.25)", "AUMIDISequencer::seek(0.26)",
                                            "AUMIDISequencer::seek(1.5)", "AUMIDISequencer::seek(-0.5)"));
}

TEST_F(AUMIDISequencerTransport, SeekingInAListOutOfOrderTakesTheFirstInTheList)
{
    sequencer.load(
        StampedEvents{{50, {0xB0, 7, 1}}, {90, {0xB0, 7, 1}}, {10, {0xB0, 7, 2}}, {80, {0xB0, 7, 3}}});
    sequencer.seekToPosition(0.9);

    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 72);
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 1);
}

TEST_F(AUMIDISequencerTransport, SeekingWithoutAnEventBehindLeavesTheNextOneAsItIs)
{
    sequencer.load(StampedEvents{{-50, {0xB0, 7, 1}}, {-10, {0xB0, 7, 2}}});
    sequencer.seekToEvent(1);
    sequencer.seekToPosition(0.0);

    EXPECT_EQ(sequencer.getCurrentEventIndex(), 1);
}

TEST_F(AUMIDISequencerTransport, RewindingGoesToTheFirstEventEvenWhereItStandsBeforeTheFile)
{
    sequencer.load(StampedEvents{{-50, {0xB0, 7, 1}}, {10, {0xB0, 7, 2}}});
    sequencer.seekToPosition(0.0);
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 1);
    sequencer.rewind();

    EXPECT_EQ(sequencer.getCurrentEventIndex(), 0);
}

TEST_F(AUMIDISequencerTransport, SeekingToAnEventMovesTheNextOneAndNotThePosition)
{
    sequencer.seekToEvent(3);
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 3);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
    EXPECT_TRUE(sequencer.seeking);
    sequencer.seeking = false;
    sequencer.seekToEvent(4);
    sequencer.seekToEvent(-1);
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 3);
    EXPECT_TRUE(sequencer.seeking);
    EXPECT_THAT(console.take(), IsEmpty());
}

TEST_F(AUMIDISequencerTransport, PositionsAndLengthsAreToldInSamplesBeatsAndSeconds)
{
    sequencer.seekToPosition(0.5);

    EXPECT_EQ(sequencer.getDurationInSamples(), 96000);
    EXPECT_EQ(sequencer.getDurationInBeats(), 4.0);
    EXPECT_EQ(sequencer.getDurationInSeconds(), 2.0);
    EXPECT_EQ(sequencer.getProgress(), 0.5);
    EXPECT_EQ(sequencer.getCurrentPositionInBeats(), 2.0);
    EXPECT_EQ(sequencer.getPositionInSeconds(), 1.0);
    EXPECT_EQ(sequencer.getCurrentEvent()->event().data[2], 4);
    EXPECT_EQ(sequencer.getEventList().size(), 4U);
    sequencer.setSamplerate(96000.0);
    EXPECT_EQ(sequencer.getDurationInSeconds(), 1.0);
}

TEST_F(AUMIDISequencerTransport, AnEmptyListHasNoLengthAndNoProgress)
{
    sequencer.load(StampedEvents{});

    EXPECT_EQ(sequencer.getProgress(), 0.0);
    EXPECT_EQ(sequencer.getDurationInSamples(), 0);
    EXPECT_EQ(sequencer.getDurationInBeats(), 0.0);
    EXPECT_EQ(sequencer.getCurrentPositionInBeats(), 0.0);
}

TEST_F(AUMIDISequencerTransport, ChannelsAreMutedAndOpenedLikeThoseOfAFilter)
{
    sequencer.mute(3);
    sequencer.mute(3);
    sequencer.mute(16);
    EXPECT_EQ(sequencer.channelFilter.size(), 15U);
    sequencer.unmute(3);
    sequencer.unmute(3);
    sequencer.unmute(16);
    EXPECT_EQ(sequencer.channelFilter.size(), 16U);
    EXPECT_EQ(sequencer.channelFilter.back(), 3);
    sequencer.solo(16);
    EXPECT_EQ(sequencer.channelFilter.size(), 16U);
    sequencer.solo(5);
    EXPECT_THAT(sequencer.channelFilter, ElementsAre(5));
    sequencer.muteAll();
    EXPECT_THAT(sequencer.channelFilter, IsEmpty());
    sequencer.unmuteAll();
    EXPECT_THAT(sequencer.channelFilter, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15));
    sequencer.transpose(3);
}

TEST_F(AUMIDISequencerTransport, ResettingSetsWhatItTells)
{
    sequencer.isMultiChannel = false;
    sequencer.isLooping = true;
    sequencer.currentFile = "a.mid";
    sequencer.currentChannel = 3;
    sequencer.setTempoFactor(2.0);
    sequencer.setRate(3.0);
    sequencer.statusFilter = {0x90};
    sequencer.mute(1);
    sequencer.startClean(1000);
    sequencer.sendEvent(0, 0x90, 1, 1);
    sequencer.loopCount = 3;
    console.take();
    sequencer.reset();

    EXPECT_TRUE(sequencer.isMultiChannel);
    EXPECT_FALSE(sequencer.isLooping);
    EXPECT_EQ(sequencer.currentFile, std::nullopt);
    EXPECT_EQ(sequencer.currentChannel, 0);
    EXPECT_EQ(sequencer.loopCount, 0);
    EXPECT_EQ(sequencer.getTempoFactor(), 1.0);
    EXPECT_FALSE(sequencer.isPlaying());
    EXPECT_EQ(sequencer.channelFilter.size(), 16U);
    EXPECT_TRUE(sequencer.isEmpty());
    EXPECT_TRUE(sequencer.realtimeEvents.empty());
    EXPECT_EQ(sequencer.getRate(), 3.0);
    EXPECT_THAT(sequencer.statusFilter, ElementsAre(0x90));
    EXPECT_TRUE(sequencer.seeking);
    EXPECT_EQ(sequencer.getCurrentTimeInSeconds(), 1000.0 / 48000.0);
    EXPECT_THAT(console.take(), IsEmpty());
}

TEST_F(AUMIDISequencerTransport, AGeneratedEventIsStampedWithTheNextBlock)
{
    sequencer.startClean(1000);
    sequencer.play(1000, 100);
    const AUMIDIEvent event = sequencer.generateRealtimeEvent(5, 0x90, 60, 100);

    EXPECT_EQ(event.next, nullptr);
    EXPECT_EQ(event.eventSampleTime, 1100);
    EXPECT_EQ(event.eventType, AURenderEventMIDI);
    EXPECT_EQ(event.length, 3);
    EXPECT_EQ(event.cable, 1);
    EXPECT_THAT(event.data, ElementsAre(0x95, 60, 100));
}

TEST_F(AUMIDISequencerTransport, AGeneratedExclusiveIsStampedWithTheBlocksLengthAndHasThreeBytes)
{
    const AUMIDIEvent event = sequencer.generateRealtimeEvent({0xF0, 1, 2, 3, 0xF7});

    EXPECT_EQ(event.eventSampleTime, 512);
    EXPECT_EQ(event.eventType, AURenderEventMIDISysEx);
    EXPECT_EQ(event.length, 3);
    EXPECT_THAT(event.data, ElementsAre(0xF0, 1, 2));
}

TEST_F(AUMIDISequencerTransport, AnEventAddedByValueHasThreeBytesAtMost)
{
    AUMIDIEvent event = sequencer.generateRealtimeEvent({0xF0, 1, 2, 3, 0xF7});
    event.length = 200;
    sequencer.addRealtimeEvent(event);

    EXPECT_TRUE(sequencer.seeking);
    EXPECT_THAT(sequencer.realtimeEvents.bytes(0), ElementsAre(0xF0, 1, 2));
}

TEST_F(AUMIDISequencerTransport, OfWhatWasSentTheNewestIsDroppedAndCounted)
{
    for (int i = 0; i < 4100; ++i) {
        sequencer.sendEvent(0, 0x90, static_cast<std::uint8_t>(i % 128), 1);
    }
    EXPECT_EQ(sequencer.realtimeEvents.size(), 4096U);
    EXPECT_EQ(sequencer.realtimeEvents.dropped, 4U);

    const StampedEvents sent = sequencer.play(10, 64);
    ASSERT_EQ(sent.size(), 4096U);
    EXPECT_EQ(sent.back(), (Stamped{4105, {0x90, 127, 1}}));
}

TEST(AUMIDISequencerTransportDeathTest, AStatusAndAChannelAbove255AreAFatalStop)
{
    AUMIDISequencer sequencer;
    EXPECT_STOP(sequencer.sendEvent(1, 0xFF, 0, 0), arithmeticMessage);
}

TEST(AUMIDISequencerTransportDeathTest, APlaceThatIsNotANumberIsAFatalStop)
{
    AUMIDISequencer sequencer;
    EXPECT_STOP(sequencer.seekToPosition(notANumber), conversionMessage, {"AUMIDISequencer::seek(nan)"});
}

TEST(AUMIDISequencerTransportDeathTest, AnEventThatIsNotInTheQueueIsAFatalStop)
{
    const AUMIDISequencer sequencer;
    EXPECT_STOP(sequencer.realtimeEvents[0], indexMessage);
}

} // namespace volvelle::test
