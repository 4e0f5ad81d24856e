#include "MIDISequences/realtime/AUMIDIEventListSorter.h"
#include "tests/MIDISequences/realtime/EventList.h"
#include "tests/support/RealtimeGuard.h"
#include "tests/support/Stops.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

namespace volvelle {
namespace {

using namespace test;

constexpr std::uint8_t parameterType = 1;

// The steps one after the other, as they are told.
ListEvents naive(const ChannelFilter& filter, const ListEvents& events, std::int64_t offset)
{
    ListEvents sorted;
    for (ListEvent event : events) {
        const int kind = event.status() & 0xF0;
        if (kind < 0x80 || (kind < 0xF0 && filter.filters(event.status() & 0x0F))) {
            continue;
        }
        if (event.type == 8 || event.type == 9) {
            event.stamp += offset;
            sorted.push_back(event);
        }
    }
    std::ranges::stable_sort(sorted, {}, &ListEvent::stamp);
    return sorted;
}

class AUMIDIEventListSorterTest : public testing::Test {
protected:
    ListEvents sorted(const ListEvents& events, std::int64_t offset = 0)
    {
        const EventList list(events);
        AURenderEvent* const head = sorter.sortEvents(list.head(), offset);
        EXPECT_EQ(head, sorter.lastResult);
        EXPECT_EQ(toldBy(list.head()), events);
        return toldBy(head);
    }

    AUMIDIEventListSorter sorter;
};

TEST_F(AUMIDIEventListSorterTest, NoListGivesNoList)
{
    EXPECT_EQ(sorter.sortEvents(nullptr), nullptr);
    EXPECT_EQ(sorter.lastResult, nullptr);
    EXPECT_TRUE(sorter.specialEvents.empty());
    EXPECT_TRUE(sorter.tempListSort.empty());
}

TEST_F(AUMIDIEventListSorterTest, PutsEventsInTheOrderOfTimeAndKeepsEqualTimes)
{
    EXPECT_EQ(sorted({{.stamp = 30, .bytes = {0x90, 1, 1}},
                      {.stamp = -10, .bytes = {0x90, 2, 1}},
                      {.stamp = 30, .bytes = {0x80, 3, 1}},
                      {.stamp = 20, .bytes = {0xC0, 4}}}),
              (ListEvents{{.stamp = -10, .bytes = {0x90, 2, 1}},
                          {.stamp = 20, .bytes = {0xC0, 4}},
                          {.stamp = 30, .bytes = {0x90, 1, 1}},
                          {.stamp = 30, .bytes = {0x80, 3, 1}}}));
}

TEST_F(AUMIDIEventListSorterTest, DropsDataBytesAtTheStart)
{
    EXPECT_EQ(sorted({{.bytes = {0x7F, 1, 2}}, {.bytes = {}}}), ListEvents{});
    EXPECT_EQ(sorter.lastResult, nullptr);
}

TEST_F(AUMIDIEventListSorterTest, AMutedChannelIsDroppedButNoExclusive)
{
    sorter.mute(3);
    const ListEvent exclusive{.bytes = {0xF3, 1, 2}, .type = AURenderEventMIDISysEx};
    const ListEvent note{.bytes = {0x94, 60, 1}};
    EXPECT_EQ(sorted({{.bytes = {0x93, 60, 1}}, exclusive, note}), (ListEvents{exclusive, note}));
}

TEST_F(AUMIDIEventListSorterTest, OtherTypesAreDropped)
{
    EXPECT_EQ(sorted({{.bytes = {0x90, 60, 1}, .type = parameterType}, {.bytes = {0x90, 60, 1}, .type = 10}}),
              ListEvents{});
}

TEST_F(AUMIDIEventListSorterTest, AnOffsetMovesEveryTimeThatOfExclusivesTooAndTheCableStays)
{
    EXPECT_EQ(
        sorted({{.stamp = 5, .bytes = {0x90, 60, 1}, .cable = 2},
                {.stamp = 1, .bytes = {0xF0, 1, 2, 3, 0xF7}, .cable = 1, .type = AURenderEventMIDISysEx}},
               100),
        (ListEvents{
            {.stamp = 101, .bytes = {0xF0, 1, 2, 3, 0xF7}, .cable = 1, .type = AURenderEventMIDISysEx},
            {.stamp = 105, .bytes = {0x90, 60, 1}, .cable = 2}}));
}

TEST_F(AUMIDIEventListSorterTest, TheWorkingCopyHoldsTheListWithAtMostThreeBytesOfEach)
{
    sorted({{.stamp = 5, .bytes = {0x90, 60, 1}}, {.stamp = 1, .bytes = {0xF0, 1, 2, 3, 0xF7}}});
    ASSERT_EQ(sorter.tempListSort.size(), 2U);
    EXPECT_EQ(sorter.tempListSort[0].MIDI.length, 3);
    EXPECT_EQ(sorter.tempListSort[0].MIDI.data[0], 0xF0);
    EXPECT_EQ(sorter.tempListSort[0].MIDI.next, nullptr);
    EXPECT_EQ(sorter.tempListSort[1].MIDI.eventSampleTime, 5);
}

TEST_F(AUMIDIEventListSorterTest, ReleasesItsListWhenAskedAndWithTheNext)
{
    sorted({{.bytes = {0x90, 60, 1}}});
    EXPECT_NE(sorter.lastResult, nullptr);
    sorter.deallocateRealtimeEventListHead();
    EXPECT_EQ(sorter.lastResult, nullptr);
    sorter.deallocateRealtimeEventListHead();
    sorted({{.bytes = {0x90, 60, 1}}});
    EXPECT_EQ(sorter.sortEvents(nullptr), nullptr);
    EXPECT_EQ(sorter.lastResult, nullptr);
}

TEST_F(AUMIDIEventListSorterTest, ATimeThatDoesNotFitIsAFatalStop)
{
    const EventList list({{.stamp = std::numeric_limits<std::int64_t>::max(), .bytes = {0x90, 60, 1}}});
    EXPECT_STOP(sorter.sortEvents(list.head(), 1), arithmeticMessage);
}

TEST_F(AUMIDIEventListSorterTest, GivesWhatThePlainStepsGive)
{
    std::mt19937 random(52);
    for (int round = 0; round < 3000; ++round) {
        const ListEvents events = randomEvents(random);
        sorter.reset();
        for (int muted = draw(random, 0, 8); muted > 0; --muted) {
            sorter.mute(static_cast<std::uint8_t>(draw(random, 0, 15)));
        }
        const int offset = draw(random, -1000, 1000);
        ASSERT_EQ(sorted(events, offset), naive(sorter, events, offset)) << round;
    }
}

TEST_F(AUMIDIEventListSorterTest, AThousandEventsTakeNoMemoryAndNoLock)
{
    std::mt19937 random(53);
    ListEvents events(1000);
    for (ListEvent& event : events) {
        event = {.stamp = draw(random, 0, 511), .bytes = {0x90, 60, 1}};
        event.bytes.resize(draw(random, 0, 9) == 0 ? 256 : 3);
    }
    const EventList list(events);
    const RealtimeGuard guard;
    for (int i = 0; i < 20; ++i) {
        EXPECT_NE(sorter.sortEvents(list.head()), nullptr);
    }
}

} // namespace
} // namespace volvelle
