#include "services/musicsequence/TrackWalk.h"

#include "services/musicsequence/FaultPoint.h"
#include "tests/services/musicsequence/SequenceTools.h"
#include "tests/support/Stops.h"

#include <gtest/gtest.h>

namespace volvelle::test {
namespace {

class TrackWalkTest : public testing::Test {
protected:
    using Operation = MusicSequenceOperation;

    void SetUp() override
    {
        for (const double time : {0.0, 1.0, 2.0}) {
            addMessage(track, time, 0xB0, 7, 99);
        }
    }

    void TearDown() override { clearFaults(); }

    WalkResult walk(const MusicTrack& over, WalkStep step = WalkStep::stepOn)
    {
        visited.clear();
        failures.clear();
        return walkTrack(
            over, [this](WalkFailure failure, OSStatus status) { failures.emplace_back(failure, status); },
            [this, step](const TrackEvent& event, const MusicEventIterator& iterator) {
                visited.push_back(event.time);
                if (step == WalkStep::stay) {
                    MusicEventIteratorDeleteEvent(iterator);
                }
                return step;
            });
    }

    using Failures = std::vector<std::pair<WalkFailure, OSStatus>>;
    using Times = std::vector<double>;

    MusicSequence sequence = newSequence();
    MusicTrack track = newTrack(sequence);
    Times visited;
    Failures failures;
    const std::pair<WalkFailure, OSStatus> end{WalkFailure::step, -10857};
};

using TrackWalkDeathTest = TrackWalkTest;

TEST_F(TrackWalkTest, VisitsEachEventInOrderAndReportsTheEnd)
{
    EXPECT_EQ(walk(track), WalkResult::walked);
    EXPECT_EQ(visited, (Times{0.0, 1.0, 2.0}));
    EXPECT_EQ(failures, Failures{end});
}

TEST_F(TrackWalkTest, GivesTheEventsRecordTypeAndSize)
{
    int calls = 0;
    walkTrack(
        track, [](WalkFailure, OSStatus) {},
        [&calls](const TrackEvent& event, const MusicEventIterator&) {
            ++calls;
            EXPECT_EQ(event.type, kMusicEventType_MIDIChannelMessage);
            EXPECT_EQ(event.size, sizeof(MIDIChannelMessage));
            EXPECT_EQ(event.record<MIDIChannelMessage>().data2, 99);
            return WalkStep::stepOn;
        });
    EXPECT_EQ(calls, 3);
}

TEST_F(TrackWalkTest, AnEmptyTrackIsEmptyWithoutAReport)
{
    EXPECT_EQ(walk(tempoTrackOf(sequence)), WalkResult::empty);
    EXPECT_EQ(failures, Failures{});
}

TEST_F(TrackWalkTest, AVisitorThatDeletesEverythingSeesEveryEventAndNoEnd)
{
    EXPECT_EQ(walk(track, WalkStep::stay), WalkResult::walked);
    EXPECT_EQ(visited, (Times{0.0, 1.0, 2.0}));
    EXPECT_EQ(failures, Failures{});
    EXPECT_EQ(eventsOf(track), Lines{});
}

TEST_F(TrackWalkTest, ATrackOfADeadSequenceFails)
{
    DisposeMusicSequence(sequence);
    sequence.reset();
    EXPECT_EQ(walk(track), WalkResult::failed);
    EXPECT_EQ(failures, (Failures{{WalkFailure::makeIterator, -10854}, {WalkFailure::askCurrent, -10854}}));
}

TEST_F(TrackWalkTest, EachFailureEndsTheWalkOrSkipsAnEvent)
{
    struct Case {
        Operation operation;
        int after;
        WalkResult result;
        Times visited;
        Failures failures;
    };

    const std::vector<Case> cases{
        {Operation::MusicEventIteratorHasCurrentEvent,
         0,
         WalkResult::failed,
         {},
         {{WalkFailure::askCurrent, -7}}},
        {Operation::MusicEventIteratorHasCurrentEvent,
         1,
         WalkResult::walked,
         {0.0},
         {{WalkFailure::askCurrent, -7}}},
        {Operation::MusicEventIteratorGetEventInfo,
         1,
         WalkResult::walked,
         {0.0, 2.0},
         {{WalkFailure::readEvent, -7}, end}},
        {Operation::MusicEventIteratorHasNextEvent,
         1,
         WalkResult::walked,
         {0.0, 1.0},
         {{WalkFailure::askNext, -7}}},
        {Operation::MusicEventIteratorNextEvent, 0, WalkResult::walked, {0.0}, {{WalkFailure::step, -7}}},
    };
    for (const Case& each : cases) {
        setFault(each.operation, {-7, each.after, 1});
        EXPECT_EQ(walk(track), each.result);
        EXPECT_EQ(visited, each.visited);
        EXPECT_EQ(failures, each.failures);
        clearFaults();
    }
}

TEST_F(TrackWalkTest, ForEachEventVisitsAllAndTheEndIsNoFailure)
{
    const auto add = [this](const TrackEvent& event) { visited.push_back(event.time); };
    EXPECT_EQ(forEachEvent(track, add), noErr);
    EXPECT_EQ(visited, (Times{0.0, 1.0, 2.0}));
    EXPECT_EQ(forEachEvent(tempoTrackOf(sequence), add), noErr);
    EXPECT_EQ(visited.size(), 3U);
}

TEST_F(TrackWalkTest, ForEachEventAnswersTheFirstFailure)
{
    for (const Operation operation :
         {Operation::NewMusicEventIterator, Operation::MusicEventIteratorHasCurrentEvent,
          Operation::MusicEventIteratorGetEventInfo, Operation::MusicEventIteratorHasNextEvent,
          Operation::MusicEventIteratorNextEvent}) {
        setFault(operation, {-7, 0, 1});
        EXPECT_EQ(forEachEvent(track, [](const TrackEvent&) {}), -7);
        clearFaults();
    }
}

TEST_F(TrackWalkTest, EraseEventsIfAsksOfEachAndDeletesTheUnwanted)
{
    const auto isUnwanted = [this](const TrackEvent& event) {
        visited.push_back(event.time);
        return event.time >= 1.0;
    };
    EXPECT_EQ(eraseEventsIf(track, isUnwanted), noErr);
    EXPECT_EQ(visited, (Times{0.0, 1.0, 2.0}));
    EXPECT_EQ(eventsOf(track), Lines{"0.0 message B0 07 63"});
}

TEST_F(TrackWalkTest, AnEventThatCannotBeDeletedStaysAndIsTold)
{
    setFault(Operation::MusicEventIteratorDeleteEvent, {-7, 1, 1});
    EXPECT_EQ(eraseEventsIf(track, [](const TrackEvent&) { return true; }), -7);
    EXPECT_EQ(eventsOf(track), Lines{"1.0 message B0 07 63"});
}

TEST_F(TrackWalkDeathTest, TheRecordOfNoPayloadStops)
{
    EXPECT_STOP(TrackEvent().record<MIDINoteMessage>(), nilMessage);
}

} // namespace
} // namespace volvelle::test
