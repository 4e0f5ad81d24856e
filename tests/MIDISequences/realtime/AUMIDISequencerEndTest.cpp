#include "tests/MIDISequences/realtime/SequencerProbe.h"
#include "tests/support/ConsoleCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AUMIDISequencerEnd : public testing::Test {
protected:
    SequencerProbe sequencer;
};

constexpr std::int64_t farAway = 1'000'000;
const Stamped lastEvent{farAway, {0xB0, 7, 1}};

StampedEvents withLast(StampedEvents events)
{
    events.push_back(lastEvent);
    return events;
}

} // namespace

TEST_F(AUMIDISequencerEnd, AFileThatEndsStopsStandsAtItsBeginningAndIsTold)
{
    sequencer.load(StampedEvents{{0, {0x90, 60, 90}}, {100, {0x80, 60, 0}}});
    sequencer.startClean(1000);
    sequencer.listener->calls.clear();

    EXPECT_THAT(sequencer.play(1000, 512),
                ElementsAre(Stamped{1000, {0x90, 60, 90}}, Stamped{1100, {0x80, 60, 0}}));
    EXPECT_THAT(sequencer.listener->calls, ElementsAre("complete"));
    EXPECT_FALSE(sequencer.isPlaying());
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 0);
    EXPECT_EQ(sequencer.realtimeEvents.size(), 80U);
    EXPECT_EQ(sequencer.play(1512, 512).size(), 80U);
    EXPECT_THAT(sequencer.play(2024, 512), IsEmpty());
}

TEST_F(AUMIDISequencerEnd, ALoopTellsOneOnEveryPassAndSoundsAgainFromTheNextCycle)
{
    sequencer.load(StampedEvents{{0, {0xB0, 7, 1}}, {100, {0xB0, 7, 2}}});
    sequencer.isLooping = true;
    sequencer.startClean(1000);
    sequencer.listener->calls.clear();

    for (std::int64_t time = 1000; time < 1000 + 3 * 512; time += 512) {
        EXPECT_THAT(sequencer.play(time, 512),
                    ElementsAre(Stamped{time, {0xB0, 7, 1}}, Stamped{time + 100, {0xB0, 7, 2}}));
        EXPECT_EQ(sequencer.loopCount, 1);
    }
    EXPECT_THAT(sequencer.listener->calls, ElementsAre("loop 1", "loop 1", "loop 1"));
    EXPECT_EQ(sequencer.getCurrentTimeInSeconds(), -1300.0 / 48000.0);
}

TEST_F(AUMIDISequencerEnd, ALastEventThatIsMutedOrDroppedEndsNothing)
{
    sequencer.load(StampedEvents{{0, {0xB0, 7, 1}}, {100, {0x91, 60, 2}}});
    sequencer.mute(1);
    sequencer.startClean(1000);
    sequencer.listener->calls.clear();
    sequencer.play(1000, 512);
    EXPECT_EQ(sequencer.getCurrentEventIndex(), 1);
    EXPECT_EQ(sequencer.getCurrentPositionInSamples(), 512);
    sequencer.unmute(1);
    EXPECT_THAT(sequencer.play(1512, 512), IsEmpty());

    EXPECT_TRUE(sequencer.isPlaying());
    EXPECT_THAT(sequencer.listener->calls, IsEmpty());
}

TEST_F(AUMIDISequencerEnd, TheInternalFormEndsTheFileBeforeItsLastEvent)
{
    sequencer.load(StampedEvents{{0, {0xF0, 1, 2, 3, 0xF7}}, {100, {0x90, 60, 90}}});
    sequencer.isLooping = true;
    sequencer.startClean(1000);
    sequencer.listener->calls.clear();

    EXPECT_THAT(sequencer.playInternal(1000, 512),
                ElementsAre(Stamped{1000, {0xF0, 1, 2}}, Stamped{1200, {0x90, 60, 90}}));
    EXPECT_THAT(sequencer.listener->calls, ElementsAre("loop 1"));
    EXPECT_EQ(sequencer.getRunningNotesCount(), 1);
    sequencer.isLooping = false;
    EXPECT_THAT(sequencer.playInternal(1512, 512),
                ElementsAre(Stamped{1100, {0xF0, 1, 2}}, Stamped{1200, {0x90, 60, 90}}));
    EXPECT_THAT(sequencer.listener->calls, ElementsAre("loop 1", "complete"));
    EXPECT_FALSE(sequencer.isPlaying());
    EXPECT_THAT(sequencer.playInternal(2024, 512), IsEmpty());
}

TEST_F(AUMIDISequencerEnd, TheInternalFormHasNoGateAndSendsNothingThatWaits)
{
    sequencer.load(withLast({{0, {0xB0, 7, 1}}}));
    sequencer.start(0);

    EXPECT_THAT(sequencer.playInternal(0, 512), ElementsAre(Stamped{0, {0xB0, 7, 1}}));
    EXPECT_EQ(sequencer.realtimeEvents.size(), 80U);
    EXPECT_TRUE(sequencer.seeking);
}

TEST_F(AUMIDISequencerEnd, TheInternalFormTakesTimeAndLengthOfTheBlockEvenWhereNothingPlays)
{
    sequencer.playInternal(48'000, 100);

    EXPECT_EQ(sequencer.currentFrames, 100);
    EXPECT_EQ(sequencer.getCurrentTimeInSeconds(), 1.0);
    EXPECT_EQ(sequencer.generateRealtimeEvent(0, 0x90, 1, 1).eventSampleTime, 48'100);
}

TEST_F(AUMIDISequencerEnd, TheInternalFormLinksItsRecordsToNothing)
{
    auto events = eventsOf({{0, {0xB0, 7, 1}}, {900, {0xB0, 7, 2}}});
    AURenderEvent other;
    events.front()->pEvent()->next = &other;
    sequencer.load(events);
    sequencer.startClean(1);

    ASSERT_EQ(sequencer.processInternal(1, 512).size(), 1U);
    EXPECT_EQ(sequencer.processInternal(1, 512).size(), 0U);
    sequencer.startClean(1);
    EXPECT_EQ(sequencer.processInternal(1, 512).front().next, nullptr);
}

TEST_F(AUMIDISequencerEnd, TheLinesOfAnEndAreToldByTheWayForRenderingThreads)
{
    sequencer.load(StampedEvents{{0, {0xB0, 7, 1}}});
    sequencer.startClean(1);
    ConsoleCapture console;
    sequencer.play(1, 512);
    realtimeprint("after");

    EXPECT_THAT(console.take(),
                ElementsAre("AUMIDISequencer::stop()", "AUMIDISequencer::seek(0.0)", "after"));
}

TEST_F(AUMIDISequencerEnd, ADelegateMayStartInItsCall)
{
    sequencer.load(StampedEvents{{0, {0xB0, 7, 1}}});
    sequencer.listener->answer = [this](const std::string& call) {
        if (call == "complete") {
            sequencer.start(513);
        }
    };
    sequencer.startClean(1);
    ConsoleCapture console;
    sequencer.play(1, 512);

    EXPECT_TRUE(sequencer.isPlaying());
    EXPECT_THAT(console.take(), ElementsAre("AUMIDISequencer::stop()", "AUMIDISequencer::seek(0.0)",
                                            "AUMIDISequencer::stop()", "AUMIDISequencer::seek(0.0)",
                                            "AUMIDISequencer::start() at 513"));
    EXPECT_EQ(sequencer.play(513, 512).size(), 161U);
}

TEST_F(AUMIDISequencerEnd, WithoutADelegateNothingIsTold)
{
    sequencer.delegate = nullptr;
    sequencer.load(StampedEvents{{0, {0xB0, 7, 1}}});
    sequencer.startClean(1);

    EXPECT_EQ(sequencer.play(1, 512).size(), 1U);
    EXPECT_FALSE(sequencer.isPlaying());
}

} // namespace volvelle::test
