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

class AUMIDISequencerProcess : public testing::Test {
protected:
    SequencerProbe sequencer;
};

const StampedEvents threeNotes{{0, {0x90, 60, 90}}, {0, {0x91, 62, 91}}, {0, {0x92, 64, 92}}};
constexpr std::int64_t farAway = 1'000'000;
const Stamped lastEvent{farAway, {0xB0, 7, 1}};

StampedEvents withLast(StampedEvents events)
{
    events.push_back(lastEvent);
    return events;
}

} // namespace

TEST_F(AUMIDISequencerProcess, AnEventAtTheBlocksEndGoesOutInThisCycle)
{
    sequencer.load(withLast({{512, {0xB0, 7, 100}}}));
    sequencer.startClean(1000);

    EXPECT_THAT(sequencer.play(1000, 512), ElementsAre(Stamped{1512, {0xB0, 7, 100}}));
    EXPECT_THAT(sequencer.play(1512, 512), IsEmpty());
}

TEST_F(AUMIDISequencerProcess, TheInternalFormLeavesAnEventAtTheBlocksEndToTheNext)
{
    sequencer.load(withLast({{512, {0xB0, 7, 100}}}));
    sequencer.startClean(1000);

    EXPECT_THAT(sequencer.playInternal(1000, 512), IsEmpty());
    EXPECT_THAT(sequencer.playInternal(1512, 512), ElementsAre(Stamped{1512, {0xB0, 7, 100}}));
}

TEST_F(AUMIDISequencerProcess, ATempoOfTwoTakesTwoSamplesOfTheFileAFrame)
{
    sequencer.load(withLast({{1000, {0xB0, 7, 100}}, {1025, {0xB0, 7, 101}}}));
    sequencer.setTempoFactor(2.0);
    sequencer.startClean(5000);

    EXPECT_THAT(sequencer.play(5000, 512), ElementsAre(Stamped{5500, {0xB0, 7, 100}}));
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 1024);
    EXPECT_THAT(sequencer.play(5512, 512), ElementsAre(Stamped{5512, {0xB0, 7, 101}}));
}

TEST_F(AUMIDISequencerProcess, TempoFactorAndRateAreMultiplied)
{
    sequencer.load(withLast({}));
    sequencer.setTempoFactor(2.0);
    sequencer.setRate(1.5);
    sequencer.startClean(1);
    sequencer.play(1, 100);

    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 300);
}

TEST_F(AUMIDISequencerProcess, AtTheSlowestTempoBlocksOfOneFrameStandStill)
{
    sequencer.load(withLast({{1, {0xB0, 7, 100}}}));
    sequencer.setTempoFactor(0.1);
    sequencer.startClean(1);
    for (std::int64_t time = 1; time < 1000; ++time) {
        ASSERT_THAT(sequencer.play(time, 1), IsEmpty());
    }

    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
}

TEST_F(AUMIDISequencerProcess, SeekingEndsTheRunningNotesFirst)
{
    sequencer.load(withLast(threeNotes));
    sequencer.startClean(1000);
    sequencer.play(1000, 512);
    ASSERT_EQ(sequencer.getRunningNotesCount(), 3);
    sequencer.seeking = true;

    EXPECT_THAT(sequencer.play(1512, 512),
                ElementsAre(Stamped{0, {0x90, 60, 0}}, Stamped{0, {0x91, 62, 0}}, Stamped{0, {0x92, 64, 0}}));
    EXPECT_EQ(sequencer.cleanupCount, 3);
    EXPECT_EQ(sequencer.getRunningNotesCount(), 0);
    EXPECT_FALSE(sequencer.seeking);
    EXPECT_THAT(sequencer.play(2024, 512), IsEmpty());
    EXPECT_EQ(sequencer.cleanupCount, 0);
}

TEST_F(AUMIDISequencerProcess, WhereItIsStoppedRunningNotesEndThoughNothingSeeks)
{
    sequencer.load(withLast(threeNotes));
    sequencer.startClean(1000);
    sequencer.play(1000, 512);
    sequencer.stopped = true;

    EXPECT_EQ(sequencer.play(1512, 512).size(), 3U);
    EXPECT_EQ(sequencer.getRunningNotesCount(), 0);
}

TEST_F(AUMIDISequencerProcess, WhatWasSentComesBeforeTheFilesEventsASampleApart)
{
    sequencer.load(withLast({{3, {0xB0, 7, 100}}}));
    sequencer.startClean(1000);
    sequencer.sendEvent(1, 0x90, 60, 100);
    sequencer.sendEvent({0xF0, 1, 2, 3, 4, 5, 0xF7});

    EXPECT_THAT(sequencer.play(1000, 512),
                ElementsAre(Stamped{1000, {0x91, 60, 100}}, Stamped{1001, {0xF0, 1, 2, 3, 4, 5, 0xF7}},
                            Stamped{1003, {0xB0, 7, 100}}));
    EXPECT_TRUE(sequencer.realtimeEvents.empty());
}

// The cycle before may have come between the two steps of sending.
TEST_F(AUMIDISequencerProcess, WhatWasSentEndsTheRunningNotesThoughNothingSeeksAnyMore)
{
    sequencer.load(withLast({{0, {0x90, 60, 90}}}));
    sequencer.startClean(1000);
    sequencer.play(1000, 512);
    sequencer.sendEvent(3, 0xB0, 7, 1);
    sequencer.seeking = false;

    EXPECT_THAT(sequencer.play(1512, 512),
                ElementsAre(Stamped{0, {0x90, 60, 0}}, Stamped{1512, {0xB3, 7, 1}}));
    EXPECT_EQ(sequencer.cleanupCount, 1);
}

TEST_F(AUMIDISequencerProcess, WhatWasSentGoesOutWithoutAFileToo)
{
    sequencer.sendEvent(0, 0x90, 60, 100);

    EXPECT_THAT(sequencer.play(0, 512), ElementsAre(Stamped{0, {0x90, 60, 100}}));
    EXPECT_THAT(sequencer.play(512, 512), IsEmpty());
}

TEST_F(AUMIDISequencerProcess, ACycleWithNothingToDoLeavesSeekingAsItIs)
{
    sequencer.seeking = true;

    EXPECT_EQ(sequencer.process(1, 512), nullptr);
    EXPECT_TRUE(sequencer.seeking);
}

TEST_F(AUMIDISequencerProcess, ALateNoteIsDroppedAndToldAndOtherLateEventsGoOutAtOnce)
{
    sequencer.load(withLast({{100, {0x90, 60, 90}}, {200, {0xB3, 7, 100}}, {900, {0x80, 60, 0}}}));
    sequencer.startClean(1000);
    sequencer.play(1000, 512);
    sequencer.seekToEvent(0);
    sequencer.setTempoFactor(0.5);
    ConsoleCapture console;

    EXPECT_THAT(sequencer.play(1512, 512),
                ElementsAre(Stamped{100, {0x90, 60, 0}}, Stamped{-0x100000000, {0xB3, 7, 100}}));
    EXPECT_THAT(console.take(),
                ElementsAre("sequencer position: 512",
                            "AUMIDISequencer::WARNING: A MIDI events is out of the timeframe (in the past) "
                            "and will be scheduled now.",
                            "expected frame time: 688", "allowed frame min: 1512", "current: 1512 (-1336)",
                            "tempo factor: 0.5 (60.0) bpm", "sequencer position: 512",
                            "AUMIDISequencer::WARNING: A MIDI events is out of the timeframe (in the past) "
                            "and will be scheduled now.",
                            "expected frame time: 888", "allowed frame min: 1512", "current: 1512 (-1136)",
                            "tempo factor: 0.5 (60.0) bpm"));
}

TEST_F(AUMIDISequencerProcess, AnEventThatATempoBelowZeroPutsBehindTheBlockGoesOutAtItsEnd)
{
    sequencer.load(withLast({{0, {0x90, 60, 90}}}));
    sequencer.startClean(1000);
    sequencer.play(1000, 2048);
    sequencer.seekToEvent(0);
    sequencer.tempoRate = -1.0;
    ConsoleCapture console;

    EXPECT_THAT(sequencer.play(3048, 512),
                ElementsAre(Stamped{0, {0x90, 60, 0}}, Stamped{3560, {0x90, 60, 90}}));
    EXPECT_THAT(console.take(),
                ElementsAre("sequencer position: 2048",
                            "AUMIDISequencer::WARNING: A MIDI events is out of the timeframe (in the future) "
                            "and will be scheduled earlier.",
                            "expected frame time: 5096", "allowed frame max: 3560", "current: 3048 (+1536)",
                            "tempo factor: -1.0 (-120.0) bpm"));
}

TEST_F(AUMIDISequencerProcess, TimeZeroGivesNothingOfTheFile)
{
    sequencer.load(withLast({{0, {0xB0, 7, 100}}}));
    sequencer.startClean(0);

    EXPECT_THAT(sequencer.play(0, 512), IsEmpty());
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
    EXPECT_THAT(sequencer.play(512, 512), ElementsAre(Stamped{512, {0xB0, 7, 100}}));
}

TEST_F(AUMIDISequencerProcess, MutedChannelsAndKindsAreNotSent)
{
    const StampedEvents events{{1, {0x90, 60, 90}}, {2, {0x91, 60, 90}},  {3, {0xB1, 7, 90}},
                               {4, {0xF8}},         {5, {0xF0, 1, 0xF7}}, {6, {0x05, 1, 2}}};
    sequencer.load(withLast(events));
    sequencer.mute(0);
    sequencer.mute(8);
    sequencer.statusFilter = {0x90};
    sequencer.startClean(1000);

    EXPECT_THAT(sequencer.play(1000, 512),
                ElementsAre(Stamped{1003, {0xB1, 7, 90}}, Stamped{1005, {0xF0, 1, 0xF7}},
                            Stamped{1006, {0x05, 1, 2}}));
    EXPECT_EQ(sequencer.getRunningNotesCount(), 0);
}

TEST_F(AUMIDISequencerProcess, MetaEventsAreKeptEvenWhereTheyAreMuted)
{
    const Bytes tempo{0xFD, 0x51, 120, 0xFF, 0x51, 3, 1, 2, 3};
    sequencer.load(withLast({{10, tempo}}));
    sequencer.startClean(1000);
    EXPECT_THAT(sequencer.play(1000, 512), ElementsAre(Stamped{1010, tempo}));
    sequencer.mute(0x0D);
    sequencer.startClean(2000);
    EXPECT_THAT(sequencer.play(2000, 512), IsEmpty());

    ASSERT_EQ(sequencer.specialEvents.size(), 2U);
    EXPECT_EQ(sequencer.specialEvents[0].eventSampleTime, 1010);
    EXPECT_EQ(sequencer.specialEvents.bytes(1), tempo);
    EXPECT_EQ(sequencer.specialEvents.take()->array(), tempo);
}

TEST_F(AUMIDISequencerProcess, OfTheMetaEventsTheOldestGo)
{
    StampedEvents events;
    for (int i = 0; i < 600; ++i) {
        events.push_back({i, {0xFD, 1, 0}});
    }
    sequencer.load(withLast(events));
    sequencer.startClean(1000);
    sequencer.play(1000, 1000);

    EXPECT_EQ(sequencer.specialEvents.size(), 512U);
    EXPECT_EQ(sequencer.specialEvents[0].eventSampleTime, 1088);
    EXPECT_EQ(sequencer.specialEvents.dropped, 88U);
}

TEST_F(AUMIDISequencerProcess, ACycleThatFindsAnOperationUnderWayGivesNothing)
{
    sequencer.load(withLast({{0, {0xB0, 7, 1}}}));
    sequencer.startClean(1);
    sequencer.exclusively([this] {
        EXPECT_THAT(sequencer.play(1, 512), IsEmpty());
        EXPECT_THAT(sequencer.playInternal(1, 512), IsEmpty());
        EXPECT_FALSE(sequencer.startAtOnce(1));
        EXPECT_FALSE(sequencer.stopAtOnce());
        EXPECT_TRUE(sequencer.isPlaying());
    });

    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
    EXPECT_THAT(sequencer.play(513, 512), ElementsAre(Stamped{513, {0xB0, 7, 1}}));
}

TEST_F(AUMIDISequencerProcess, ThePlainFormThatFindsAnOperationUnderWayGivesNothing)
{
    sequencer.load(withLast({{0, {0xB0, 7, 1}}}));
    sequencer.startClean(1000);
    EXPECT_THAT(sequencer.playInternal(1000, 512), testing::SizeIs(1));
    sequencer.exclusively([&] { EXPECT_THAT(sequencer.playInternal(1512, 512), IsEmpty()); });
}

TEST_F(AUMIDISequencerProcess, StoppingAtOnceIsStopping)
{
    sequencer.load(withLast({{0, {0xB0, 7, 1}}}));
    sequencer.startClean(1);
    sequencer.play(1, 512);
    ConsoleCapture console;
    EXPECT_TRUE(sequencer.stopAtOnce());
    realtimeprint("after");

    EXPECT_FALSE(sequencer.isPlaying());
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
    EXPECT_EQ(sequencer.realtimeEvents.size(), 80U);
    EXPECT_THAT(console.take(),
                ElementsAre("AUMIDISequencer::stop()", "AUMIDISequencer::seek(0.0)", "after"));
}

TEST_F(AUMIDISequencerProcess, AnEventBeforeItsTimeStaysTheNextOne)
{
    sequencer.load(withLast({{0, {0xB0, 7, 1}}, {600, {0xB0, 7, 2}}}));
    sequencer.startClean(1);
    sequencer.play(1, 512);

    EXPECT_EQ(sequencer.getCurrentEventIndex(), 1);
}

TEST_F(AUMIDISequencerProcess, RecordsOfARowStayUntilTheNextCycleOrUntilTheyAreTakenBack)
{
    sequencer.load(withLast({{0, {0xB0, 7, 1}}}));
    sequencer.startClean(1);
    sequencer.process(1, 512);
    sequencer.deallocateRealtimeEventListHead();
    sequencer.deallocateRealtimeEventListHead();

    EXPECT_EQ(sequencer.process(513, 512), nullptr);
}

TEST(AUMIDISequencerProcessDeathTest, ATempoThatIsNoNumberOrNoneStopsTheProgram)
{
    const auto playAt = [](double tempo) {
        SequencerProbe sequencer;
        sequencer.load(StampedEvents{{0, {0xB0, 7, 1}}, {1, {0xB0, 7, 1}}});
        sequencer.startClean(1);
        sequencer.tempoRate = tempo;
        writeRealtimeLines();
        flushLog();
        console().setSink(nullptr);
        sequencer.process(1, 512);
    };
    constexpr double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EXIT(playAt(0.0), testing::KilledBySignal(SIGABRT), std::string(conversionMessage));
    EXPECT_EXIT(playAt(infinite), testing::KilledBySignal(SIGABRT), std::string(conversionMessage));
    EXPECT_EXIT(playAt(std::numeric_limits<double>::quiet_NaN()), testing::KilledBySignal(SIGABRT),
                std::string(conversionMessage));
    EXPECT_EXIT(playAt(1e300), testing::KilledBySignal(SIGABRT), std::string(conversionMessage));
}

} // namespace volvelle::test
