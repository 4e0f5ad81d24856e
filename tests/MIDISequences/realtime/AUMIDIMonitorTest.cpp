#include "MIDISequences/realtime/AUMIDIMonitor.h"
#include "tests/support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <functional>
#include <numeric>
#include <thread>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;
using test::RealtimeGuard;

// A monitor whose inner forms a test may call.
class OpenMonitor : public AUMIDIMonitor {
public:
    using AUMIDIMonitor::addNote;
    using AUMIDIMonitor::clearWithoutQueue;
    using AUMIDIMonitor::removeNote;
    using AUMIDIMonitor::trackEvents;
};

std::shared_ptr<AUMIDIEventEx> event(const Bytes& bytes, std::int64_t time = 0)
{
    return std::make_shared<AUMIDIEventEx>(AURenderEventMIDI, bytes, static_cast<std::uint32_t>(bytes.size()),
                                           time);
}

AUMIDIEvent record(std::uint8_t status, std::uint8_t second, std::uint8_t third)
{
    return event({status, second, third})->event();
}

std::vector<Bytes> bytesOf(const std::vector<std::shared_ptr<AUMIDIEventEx>>& events)
{
    std::vector<Bytes> all;
    for (const auto& one : events) {
        all.push_back(one->array());
    }
    return all;
}

TEST(AUMIDIMonitor, StartsEmptyWithRoomAhead)
{
    const AUMIDIMonitor monitor;
    EXPECT_EQ(AUMIDIMonitor::MAXEVENTS, 512);
    EXPECT_TRUE(monitor.autoClear);
    EXPECT_EQ(monitor.queue.label, "com.orvane.aumidi-queue");
    EXPECT_EQ(monitor.getSize(), 0);
    EXPECT_EQ(monitor.getRunningNotesCount(), 0);
    EXPECT_GE(monitor.inputList.capacity(), 512U);
    EXPECT_GE(monitor.runningNotes.capacity(), 2048U);
    EXPECT_EQ(monitor.droppedNotes, 0U);
}

TEST(AUMIDIMonitor, KeepsACopyOfTypeBytesAndTimeOnly)
{
    AUMIDIMonitor monitor;
    Bytes bytes(300);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    bytes.front() = 0xF0;
    AUMIDIEventEx exclusive(AURenderEventMIDISysEx, bytes, 300, 77);
    exclusive.id = 4;
    exclusive.beats = 1.5;
    exclusive.duration = 2.5;
    exclusive.meta = 3;
    exclusive.pEvent()->cable = 2;
    monitor.addMonitoring(exclusive);
    const std::shared_ptr<AUMIDIEventEx> copy = monitor.popMonitoring();
    EXPECT_NE(copy.get(), &exclusive);
    EXPECT_EQ(copy->event().eventType, AURenderEventMIDISysEx);
    EXPECT_EQ(copy->event().eventSampleTime, 77);
    EXPECT_EQ(copy->event().cable, 0);
    EXPECT_EQ(copy->array(), bytes);
    EXPECT_EQ(copy->id, 0);
    EXPECT_EQ(copy->beats, 0.0);
    EXPECT_EQ(copy->duration, 0.0);
    EXPECT_EQ(copy->meta, 0x7F);
}

TEST(AUMIDIMonitor, GivesTheFirstEventFirstAndNoneOfNone)
{
    AUMIDIMonitor monitor;
    EXPECT_EQ(monitor.popMonitoring(), nullptr);
    monitor.addMonitoring(*event({0x90, 60, 1}));
    monitor.addMonitoring(*event({0x90, 61, 1}));
    EXPECT_EQ(monitor.getSize(), 2);
    EXPECT_EQ(bytesOf(monitor.getEvents()), (std::vector<Bytes>{{0x90, 60, 1}, {0x90, 61, 1}}));
    EXPECT_EQ(monitor.popMonitoring()->array(), (Bytes{0x90, 60, 1}));
    EXPECT_EQ(monitor.popMonitoring()->array(), (Bytes{0x90, 61, 1}));
    EXPECT_EQ(monitor.popMonitoring(), nullptr);
    EXPECT_EQ(monitor.getRunningNotesCount(), 2);
}

TEST(AUMIDIMonitor, The513thEventEmptiesBothLists)
{
    AUMIDIMonitor monitor;
    for (int i = 0; i < 512; ++i) {
        monitor.addMonitoring(*event({0x90, 60, 1}));
    }
    EXPECT_EQ(monitor.getSize(), 512);
    EXPECT_EQ(monitor.getRunningNotesCount(), 512);
    monitor.addMonitoring(*event({0x90, 60, 1}));
    EXPECT_EQ(monitor.getSize(), 0);
    EXPECT_EQ(monitor.getRunningNotesCount(), 0);
    EXPECT_EQ(monitor.droppedNotes, 0U);
}

TEST(AUMIDIMonitor, WithoutAutoClearTheListGrowsAndNotesBeyondTheirRoomAreCounted)
{
    AUMIDIMonitor monitor;
    monitor.autoClear = false;
    for (int i = 0; i < 2050; ++i) {
        monitor.addMonitoring(*event({0x90, 60, 1}));
    }
    EXPECT_EQ(monitor.getSize(), 2050);
    EXPECT_EQ(monitor.getRunningNotesCount(), 2048);
    EXPECT_EQ(monitor.droppedNotes, 2U);
    monitor.reset();
    EXPECT_EQ(monitor.getSize(), 0);
    EXPECT_EQ(monitor.getRunningNotesCount(), 0);
    EXPECT_GE(monitor.runningNotes.capacity(), 2048U);
}

TEST(AUMIDIMonitor, ResetAndClearMonitoringEmptyBothLists)
{
    AUMIDIMonitor monitor;
    for (const bool isReset : {true, false}) {
        monitor.addMonitoring(*event({0x90, 60, 1}));
        isReset ? monitor.reset() : monitor.clearMonitoring();
        EXPECT_TRUE(monitor.getEvents().empty());
        EXPECT_TRUE(monitor.getRunningNotes().empty());
    }
}

TEST(AUMIDIMonitor, SortsByTimeAndKeepsEqualTimes)
{
    AUMIDIMonitor monitor;
    monitor.sort();
    monitor.addMonitoring(*event({0x90, 1, 1}, 30));
    monitor.addMonitoring(*event({0x90, 2, 1}, 10));
    monitor.addMonitoring(*event({0x90, 3, 1}, -20));
    monitor.addMonitoring(*event({0x90, 4, 1}, 10));
    monitor.sort();
    EXPECT_EQ(bytesOf(monitor.getEvents()),
              (std::vector<Bytes>{{0x90, 3, 1}, {0x90, 2, 1}, {0x90, 4, 1}, {0x90, 1, 1}}));
}

TEST(AUMIDIMonitor, TwoNotesOfAKeyNeedTwoEnds)
{
    AUMIDIMonitor monitor;
    monitor.addMonitoring(*event({0x90, 60, 1}));
    monitor.addMonitoring(*event({0x90, 60, 2}));
    monitor.addMonitoring(*event({0x80, 60, 0}));
    EXPECT_EQ(bytesOf(monitor.getRunningNotes()), (std::vector<Bytes>{{0x90, 60, 2}}));
    monitor.addMonitoring(*event({0x80, 60, 0}));
    EXPECT_EQ(monitor.getRunningNotesCount(), 0);
    monitor.addMonitoring(*event({0x80, 60, 0}));
    EXPECT_EQ(monitor.getRunningNotesCount(), 0);
}

TEST(AUMIDIMonitor, ANoteOffEndsTheKeyOnAnyChannel)
{
    AUMIDIMonitor monitor;
    monitor.addMonitoring(*event({0x91, 60, 1}));
    monitor.addMonitoring(*event({0x82, 60, 0}));
    EXPECT_EQ(monitor.getRunningNotesCount(), 0);
}

TEST(AUMIDIMonitor, ANoteOnWithVelocityZeroEndsANote)
{
    AUMIDIMonitor monitor;
    monitor.addMonitoring(*event({0x90, 60, 1}));
    monitor.addMonitoring(*event({0x90, 60, 0}));
    EXPECT_EQ(monitor.getRunningNotesCount(), 0);
}

TEST(AUMIDIMonitor, PolyphonicPressureAddsANoteAndPressureZeroEndsOne)
{
    AUMIDIMonitor monitor;
    monitor.addMonitoring(*event({0xA0, 60, 10}));
    EXPECT_EQ(monitor.getRunningNotesCount(), 1);
    monitor.addMonitoring(*event({0xA0, 60, 0}));
    EXPECT_EQ(monitor.getRunningNotesCount(), 0);
}

TEST(AUMIDIMonitor, APedalChangesNothing)
{
    AUMIDIMonitor monitor;
    monitor.addMonitoring(*event({0xB0, 64, 127}));
    monitor.addMonitoring(*event({0x90, 60, 1}));
    monitor.addMonitoring(*event({0x80, 60, 0}));
    EXPECT_EQ(monitor.getRunningNotesCount(), 0);
    monitor.addMonitoring(*event({0x90, 61, 1}));
    monitor.addMonitoring(*event({0xB0, 64, 0}));
    EXPECT_EQ(monitor.getRunningNotesCount(), 1);
}

TEST(AUMIDIMonitor, TellsWhatAMessageIsForEveryStatus)
{
    for (int status = 0; status < 256; ++status) {
        const bool isOn = status >= 0x90 && status < 0xB0;
        for (const std::uint8_t value : Bytes{0, 1, 127}) {
            const AUMIDIEvent message = record(static_cast<std::uint8_t>(status), 64, value);
            EXPECT_EQ(AUMIDIMonitor::isNoteOn(message), isOn && value > 0) << status;
            EXPECT_EQ(AUMIDIMonitor::isNoteOff(message),
                      (status >= 0x80 && status < 0x90) || (isOn && value == 0))
                << status;
            EXPECT_EQ(AUMIDIMonitor::isNote(message), status >= 0x80 && status < 0xB0) << status;
            EXPECT_FALSE(AUMIDIMonitor::isController(message)) << status;
            EXPECT_FALSE(AUMIDIMonitor::isController(message, 64)) << status;
        }
    }
}

TEST(AUMIDIMonitor, TheFormsForTheRenderThreadTakeNoLockAndNoMemory)
{
    OpenMonitor monitor;
    monitor.addMonitoring(*event({0x90, 1, 1}));
    const std::shared_ptr<AUMIDIEventEx> on = event({0x90, 60, 1});
    const std::shared_ptr<AUMIDIEventEx> off = event({0x80, 60, 0});
    std::weak_ptr<AUMIDIEventEx> waiting = monitor.inputList.front();
    {
        const RealtimeGuard guard;
        for (int i = 0; i < 3000; ++i) {
            monitor.trackEvents(on);
        }
        monitor.trackEvents(off);
        monitor.addNote(off);
        monitor.removeNote(on);
        monitor.clearWithoutQueue();
    }
    EXPECT_TRUE(monitor.runningNotes.empty());
    EXPECT_EQ(monitor.droppedNotes, 953U); // one place held the note of the beginning
    EXPECT_EQ(on.use_count(), 1);
    EXPECT_FALSE(waiting.expired());
    EXPECT_EQ(monitor.getSize(), 0);
    EXPECT_TRUE(monitor.getEvents().empty());
    EXPECT_EQ(monitor.popMonitoring(), nullptr);
    EXPECT_TRUE(waiting.expired());
}

TEST(AUMIDIMonitor, WhatComesAfterAClearingOfTheRenderThreadIsKept)
{
    OpenMonitor monitor;
    monitor.addMonitoring(*event({0x90, 60, 1}));
    monitor.clearWithoutQueue();
    monitor.addMonitoring(*event({0x90, 61, 1}));
    EXPECT_EQ(bytesOf(monitor.getEvents()), (std::vector<Bytes>{{0x90, 61, 1}}));
    monitor.clearWithoutQueue();
    monitor.sort();
    monitor.addMonitoring(*event({0x90, 62, 1}));
    EXPECT_EQ(bytesOf(monitor.getEvents()), (std::vector<Bytes>{{0x90, 62, 1}}));
}

TEST(AUMIDIMonitor, TheNextOperationFreesWhatTheRenderThreadCleared)
{
    using Operation = std::function<void(OpenMonitor&)>;
    const std::vector<Operation> operations{
        [](OpenMonitor& monitor) { monitor.addMonitoring(*event({0xF8})); },
        [](OpenMonitor& monitor) { monitor.popMonitoring(); }, [](OpenMonitor& monitor) { monitor.sort(); },
        [](OpenMonitor& monitor) { monitor.clearMonitoring(); },
        [](OpenMonitor& monitor) { monitor.reset(); }};
    for (const Operation& operation : operations) {
        OpenMonitor monitor;
        monitor.addMonitoring(*event({0xB0, 7, 1}));
        const std::weak_ptr<AUMIDIEventEx> cleared = monitor.inputList.front();
        monitor.clearWithoutQueue();
        EXPECT_FALSE(cleared.expired());
        operation(monitor);
        EXPECT_TRUE(cleared.expired());
    }
}

TEST(AUMIDIMonitor, TwoThreadsAddAndFetch)
{
    AUMIDIMonitor monitor;
    monitor.autoClear = false;
    constexpr int count = 3000;
    std::thread adding([&] {
        for (int i = 0; i < count; ++i) {
            monitor.addMonitoring(*event({0xC0, static_cast<std::uint8_t>(i % 128)}, i));
        }
    });
    std::int64_t expected = 0;
    while (expected < count) {
        monitor.getRunningNotesCount();
        if (const auto next = monitor.popMonitoring()) {
            EXPECT_EQ(next->event().eventSampleTime, expected++);
        }
    }
    adding.join();
    EXPECT_EQ(monitor.getSize(), 0);
}

} // namespace
} // namespace volvelle
