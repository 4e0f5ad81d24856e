#include "MIDISequences/RenderEventPool.h"
#include "base/realtime/BoundedQueue.h"
#include "tests/support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <numeric>
#include <set>
#include <thread>
#include <vector>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;
using test::RealtimeGuard;

Bytes counting(std::size_t count, std::uint8_t first)
{
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), first);
    return bytes;
}

AUMIDIEvent record(std::uint16_t length)
{
    AUMIDIEvent event;
    event.eventSampleTime = -5;
    event.eventType = AURenderEventMIDISysEx;
    event.length = length;
    event.cable = 3;
    return event;
}

AURenderEvent* made(const Bytes& bytes)
{
    return makeRenderEvent(record(static_cast<std::uint16_t>(bytes.size())), bytes.data());
}

Bytes bytesOf(const AURenderEvent* event)
{
    const std::uint8_t* first = renderEventBytes(event->MIDI);
    return {first, first + event->MIDI.length};
}

TEST(RenderEventPool, GivesARecordWithAllItsBytesAndWithoutALink)
{
    for (const std::size_t length : {0U, 1U, 2U, 3U, 4U, 255U, 256U, 257U, 65535U}) {
        const Bytes bytes = counting(length, 200);
        AURenderEvent other;
        AUMIDIEvent source = record(static_cast<std::uint16_t>(length));
        source.next = &other;
        AURenderEvent* event = makeRenderEvent(source, bytes.data());
        EXPECT_EQ(event->head.next, nullptr);
        EXPECT_EQ(event->head.eventSampleTime, -5);
        EXPECT_EQ(event->head.eventType, AURenderEventMIDISysEx);
        EXPECT_EQ(event->MIDI.reserved, 0);
        EXPECT_EQ(event->MIDI.length, length);
        EXPECT_EQ(event->MIDI.cable, 3);
        EXPECT_EQ(bytesOf(event), bytes);
        releaseRenderEvents(event);
    }
}

TEST(RenderEventPool, KeepsTheBytesOfARecordThatHasFewerThanThree)
{
    AUMIDIEvent source = record(1);
    source.data[1] = 8;
    source.data[2] = 9;
    const std::uint8_t status = 0xF8;
    AURenderEvent* event = makeRenderEvent(source, &status);
    EXPECT_EQ(event->MIDI.data[0], 0xF8);
    EXPECT_EQ(event->MIDI.data[1], 8);
    EXPECT_EQ(event->MIDI.data[2], 9);
    releaseRenderEvents(event);
}

TEST(RenderEventPool, TakesBackNothing)
{
    releaseRenderEvents(nullptr);
}

TEST(RenderEventPool, NeverGivesARecordTwice)
{
    std::set<AURenderEvent*> given;
    AURenderEvent* head = nullptr;
    for (int i = 0; i < 3000; ++i) {
        AURenderEvent* event = made(counting(static_cast<std::size_t>(i % 3) * 2, 1));
        EXPECT_TRUE(given.insert(event).second);
        event->head.next = head;
        head = event;
    }
    for (AURenderEvent* event = head; event != nullptr; event = event->head.next) {
        EXPECT_EQ(bytesOf(event), counting(event->MIDI.length, 1));
    }
    releaseRenderEvents(head);
}

TEST(RenderEventPool, AllocatesNothingThatWasMadeAheadOrCameBack)
{
    const RenderEventRoom room({350, 350, 350, 350});
    const Bytes bytes = counting(largeRenderEvent, 0);
    constexpr std::uint16_t lengths[]{3, mediumRenderEvent, textRenderEvent, largeRenderEvent};
    for (int round = 0; round < 100; ++round) {
        const RealtimeGuard guard;
        AURenderEvent* head = nullptr;
        for (int i = 0; i < 1400; ++i) {
            AURenderEvent* event = makeRenderEvent(record(lengths[i % 4]), bytes.data());
            event->head.next = head;
            head = event;
        }
        releaseRenderEvents(head);
    }
}

TEST(RenderEventPool, TakesBackARecordWhoseLengthWasChanged)
{
    const RenderEventRoom room({0, 0, 0, 300});
    const Bytes bytes = counting(256, 0);
    const RealtimeGuard guard;
    for (int i = 0; i < 2000; ++i) {
        AURenderEvent* event = makeRenderEvent(record(256), bytes.data());
        event->MIDI.length = 1;
        releaseRenderEvents(event);
    }
}

// What one owner holds is not counted for the other.
TEST(RenderEventPool, HasRoomForAllOwnersTogether)
{
    const RenderEventRoom one({0, 0, 0, 900});
    const Bytes bytes = counting(largeRenderEvent, 0);
    const auto chainOf900 = [&] {
        AURenderEvent* head = nullptr;
        for (int i = 0; i < 900; ++i) {
            AURenderEvent* event = makeRenderEvent(record(largeRenderEvent), bytes.data());
            event->head.next = head;
            head = event;
        }
        return head;
    };
    AURenderEvent* const first = chainOf900();
    const RenderEventRoom two({0, 0, 0, 900});
    AURenderEvent* second = nullptr;
    {
        const RealtimeGuard guard;
        second = chainOf900();
    }
    releaseRenderEvents(first);
    releaseRenderEvents(second);
}

// Two threads make chains, and each gives back those of the other.
TEST(RenderEventPool, ThreadsGiveBackWhatOthersMade)
{
    constexpr int chains = 4000;
    BoundedQueue<AURenderEvent*> roads[2]{BoundedQueue<AURenderEvent*>(16), BoundedQueue<AURenderEvent*>(16)};
    bool isWhole[2]{true, true};
    const auto work = [&](std::size_t own) {
        int sent = 0;
        int received = 0;
        while (sent < chains || received < chains) {
            if (sent < chains && !roads[own].isFull()) {
                AURenderEvent* head = made(counting(3, static_cast<std::uint8_t>(sent)));
                head->head.next = made(counting(20, static_cast<std::uint8_t>(sent)));
                roads[own].push(head);
                ++sent;
            }
            AURenderEvent* head = nullptr;
            if (roads[1 - own].pop(head)) {
                const auto first = static_cast<std::uint8_t>(received++);
                isWhole[own] = isWhole[own] && bytesOf(head) == counting(3, first) &&
                               bytesOf(head->head.next) == counting(20, first);
                releaseRenderEvents(head);
            } else {
                std::this_thread::yield();
            }
        }
    };
    std::thread other(work, 1);
    work(0);
    other.join();
    EXPECT_TRUE(isWhole[0]);
    EXPECT_TRUE(isWhole[1]);
}

} // namespace
} // namespace volvelle
