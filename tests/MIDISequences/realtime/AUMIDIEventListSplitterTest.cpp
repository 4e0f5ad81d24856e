#include "MIDISequences/realtime/AUMIDIEventListSplitter.h"
#include "MIDISequences/RenderEventPool.h"
#include "tests/MIDISequences/realtime/EventList.h"
#include "tests/support/RealtimeGuard.h"
#include "tests/support/Stops.h"

#include <gtest/gtest.h>

namespace volvelle {
namespace {

using namespace test;

// The steps one after the other, as they are told.
ListEvents naive(const ChannelFilter& filter, const ListEvents& events, int instance)
{
    ListEvents passed;
    for (const ListEvent& event : events) {
        const int status = event.status();
        if (status < 0x80) {
            continue;
        }
        if (status < 0xF0 && filter.filters(status & 0x0F)) {
            continue;
        }
        if (status < 0xF0 && instance != -1 && (status & 0x0F) != instance) {
            continue;
        }
        if (event.type == 8 || event.type == 9) {
            passed.push_back(event);
        }
    }
    ListEvents kept;
    for (const ListEvent& event : passed) {
        if (instance == -1 || (event.status() & 0x0F) == instance) {
            kept.push_back(event);
        }
    }
    return kept;
}

class AUMIDIEventListSplitterTest : public testing::Test {
protected:
    // The list of an instance; that of -1 is released.
    ListEvents split(const ListEvents& events, int instance)
    {
        const EventList list(events);
        AURenderEvent* const head = splitter.splitRealtimeEventListHead(list.head(), instance);
        EXPECT_EQ(toldBy(list.head()), events);
        const ListEvents told = toldBy(head);
        if (instance == -1) {
            releaseRenderEvents(head);
        }
        return told;
    }

    AUMIDIEventListSplitter splitter;
    const ListEvents notes{{.stamp = 9, .bytes = {0x91, 60, 1}},
                           {.stamp = 5, .bytes = {0x92, 61, 1}, .cable = 3},
                           {.stamp = 7, .bytes = {0x81, 60, 0}}};
};

TEST_F(AUMIDIEventListSplitterTest, AnInstanceOutOfRangeGetsNothing)
{
    EXPECT_EQ(splitter.NUMSAMPLERS, 16);
    for (const int instance : {16, -2, 1000}) {
        EXPECT_EQ(split({{.bytes = {0xF0}}}, instance), ListEvents{});
        splitter.deallocateRealtimeEventListHead(instance);
    }
    splitter.NUMSAMPLERS = 1;
    EXPECT_EQ(split(notes, 1), ListEvents{});
}

TEST_F(AUMIDIEventListSplitterTest, MoreInstancesThanPlacesAreAFatalStop)
{
    splitter.NUMSAMPLERS = 17;
    EXPECT_STOP(split({{.bytes = {0xF0}}, {.bytes = {0x80, 1, 1}}}, 16), indexMessage);
    EXPECT_STOP(splitter.deallocateRealtimeEventListHead(16), indexMessage);
}

TEST_F(AUMIDIEventListSplitterTest, AllChannelsInOneKeepTheListAndItsOrder)
{
    EXPECT_EQ(split(notes, -1), notes);
    for (const AURenderEvent* const head : splitter.channelHeads) {
        EXPECT_EQ(head, nullptr);
    }
}

TEST_F(AUMIDIEventListSplitterTest, AChannelGetsItsOwn)
{
    EXPECT_EQ(split(notes, 1), (ListEvents{notes[0], notes[2]}));
    EXPECT_EQ(split(notes, 2), (ListEvents{notes[1]}));
    EXPECT_EQ(toldBy(splitter.channelHeads[1]), (ListEvents{notes[0], notes[2]}));
    EXPECT_EQ(toldBy(splitter.channelHeads[2]), (ListEvents{notes[1]}));
    EXPECT_EQ(splitter.tempListME.size(), 1U);
    EXPECT_EQ(splitter.tempListRE.size(), 1U);
}

TEST_F(AUMIDIEventListSplitterTest, AMutedChannelIsDroppedForAllInOneToo)
{
    splitter.mute(1);
    EXPECT_EQ(split(notes, -1), (ListEvents{notes[1]}));
    EXPECT_EQ(split(notes, 1), ListEvents{});
}

TEST_F(AUMIDIEventListSplitterTest, SystemMessagesGoToTheInstanceOfTheirLowBits)
{
    const ListEvent exclusive{.bytes = {0xF0, 1, 2, 3, 4, 0xF7}, .type = AURenderEventMIDISysEx};
    const ListEvent clock{.bytes = {0xF8}};
    splitter.muteAll();
    for (int instance = 0; instance < 16; ++instance) {
        const ListEvents expected = instance == 0   ? ListEvents{exclusive}
                                    : instance == 8 ? ListEvents{clock}
                                                    : ListEvents{};
        EXPECT_EQ(split({exclusive, clock}, instance), expected) << instance;
        EXPECT_EQ(splitter.tempListME.size(), 2U);
    }
    EXPECT_EQ(split({exclusive, clock}, -1), (ListEvents{exclusive, clock}));
}

TEST_F(AUMIDIEventListSplitterTest, AChannelWithoutEventsKeepsItsListWhereNothingPassedAndLosesItElse)
{
    split(notes, 1);
    EXPECT_EQ(split({}, 1), ListEvents{});
    EXPECT_EQ(toldBy(splitter.channelHeads[1]).size(), 2U);
    EXPECT_EQ(split({{.bytes = {0xF0}}}, 1), ListEvents{});
    EXPECT_EQ(splitter.channelHeads[1], nullptr);
}

TEST_F(AUMIDIEventListSplitterTest, AListThatAnotherTookThePlaceOfCanStillBeRead)
{
    const EventList list(notes);
    const AURenderEvent* const first = splitter.splitRealtimeEventListHead(list.head(), 1);
    EXPECT_NE(splitter.splitRealtimeEventListHead(list.head(), 1), first);
    splitter.deallocateRealtimeEventListHead(1);
    EXPECT_EQ(splitter.channelHeads[1], nullptr);
    EXPECT_EQ(toldBy(first), (ListEvents{notes[0], notes[2]}));
}

TEST_F(AUMIDIEventListSplitterTest, ListsThatOthersTookThePlaceOfDoNotPileUp)
{
    ListEvents events(20, {.bytes = {0x91, 60, 1}});
    const EventList list(events);
    const auto splitAgain = [&](int times) {
        for (int i = 0; i < times; ++i) {
            EXPECT_NE(splitter.splitRealtimeEventListHead(list.head(), 1), nullptr);
        }
    };
    splitAgain(AUMIDIEventListSplitter::maximumReplaced + 1);
    const RealtimeGuard guard;
    splitAgain(20'000);
}

TEST_F(AUMIDIEventListSplitterTest, ReleasingAllInOneReleasesNothing)
{
    const EventList list(notes);
    AURenderEvent* const head = splitter.splitRealtimeEventListHead(list.head(), -1);
    splitter.deallocateRealtimeEventListHead(-1);
    EXPECT_EQ(toldBy(head), notes);
    releaseRenderEvents(head);
}

TEST_F(AUMIDIEventListSplitterTest, GivesWhatThePlainStepsGive)
{
    std::mt19937 random(54);
    for (int round = 0; round < 3000; ++round) {
        const ListEvents events = randomEvents(random);
        splitter.reset();
        for (int muted = draw(random, 0, 8); muted > 0; --muted) {
            splitter.mute(static_cast<std::uint8_t>(draw(random, 0, 15)));
        }
        for (int instance = -1; instance < 16; ++instance) {
            ASSERT_EQ(split(events, instance), naive(splitter, events, instance)) << round << ' ' << instance;
        }
    }
}

TEST_F(AUMIDIEventListSplitterTest, AThousandEventsForAllChannelsTakeNoMemoryAndNoLock)
{
    ListEvents events(1000);
    for (std::size_t i = 0; i < events.size(); ++i) {
        events[i].bytes = {static_cast<std::uint8_t>(0x90 + i % 16), 60, 1};
    }
    events[0].bytes.assign(256, 0xF0);
    const EventList list(events);
    const RealtimeGuard guard;
    for (int i = 0; i < 20; ++i) {
        for (int instance = 0; instance < 16; ++instance) {
            EXPECT_NE(splitter.splitRealtimeEventListHead(list.head(), instance), nullptr);
        }
        for (int instance = 0; instance < 16; ++instance) {
            splitter.deallocateRealtimeEventListHead(instance);
        }
    }
}

} // namespace
} // namespace volvelle
