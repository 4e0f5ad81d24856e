#include "MIDISequences/realtime/AUMIDIEventListMixer.h"
#include "tests/MIDISequences/realtime/EventList.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/RealtimeGuard.h"
#include "tests/support/Stops.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>

namespace volvelle {
namespace {

using namespace test;
using Lines = std::vector<std::string>;

const std::string becameZero = "AUMIDIEvents::mixEvents() : WARNING: An ON velocity was mapped to zero!";

// The steps one after the other, as they are told, for one of the two lists.
void walk(const AUMIDIEventListMixer& mixer, const ListEvents& events, bool isFirst, std::int64_t offset,
          bool noteSplit, ListEvents& mixed, Lines& lines)
{
    for (ListEvent event : events) {
        const bool isMIDI = event.type == 8 || event.type == 9;
        const int kind = event.status() & 0xF0;
        const auto byte = [&event](std::size_t index) {
            return event.bytes.size() > index ? event.bytes[index] : std::uint8_t{0};
        };
        event.cable = 0;
        if (!isMIDI || kind < 0x80) {
            continue;
        }
        if (kind < 0xF0) {
            if (mixer.filters(event.status() & 0x0F)) {
                if (!isFirst || kind != 0xB0 || (byte(1) != 121 && byte(1) != 123)) {
                    continue;
                }
            }
            const bool isKept = std::ranges::count(mixer.notes, byte(1)) > 0;
            if (noteSplit && (kind == 0x90 || kind == 0x80) && !isKept) {
                continue;
            }
            if (kind == 0x90 && byte(2) >= 1 && byte(2) <= 127) {
                event.bytes[2] = mixer.velocities.at(byte(2));
                if (byte(2) == 0 && isFirst) {
                    lines.push_back(becameZero);
                }
            }
            event.stamp += offset;
        }
        mixed.push_back(event);
    }
}

class AUMIDIEventListMixerTest : public testing::Test {
protected:
    ListEvents mixed(const ListEvents& first, const ListEvents& second, std::int64_t offset1 = 0,
                     std::int64_t offset2 = 0, bool noteSplit = false)
    {
        const EventList ev1(first);
        const EventList ev2(second);
        AURenderEvent* const head = mixer.mixEvents(ev1.head(), ev2.head(), offset1, offset2, noteSplit);
        EXPECT_EQ(head, mixer.lastResult);
        EXPECT_EQ(toldBy(ev1.head()), first);
        EXPECT_EQ(toldBy(ev2.head()), second);
        return toldBy(head);
    }

    AUMIDIEventListMixer mixer;
    ConsoleCapture console;
};

TEST_F(AUMIDIEventListMixerTest, TwoListsOfNothingGiveNothing)
{
    EXPECT_EQ(mixer.mixEvents(nullptr, nullptr), nullptr);
    EXPECT_EQ(mixer.lastResult, nullptr);
    EXPECT_TRUE(mixer.specialEvents.empty());
}

TEST_F(AUMIDIEventListMixerTest, ResetOpensAllAndLeavesVelocitiesAsTheyAre)
{
    for (const bool isReset : {true, false}) {
        mixer.velocities.fill(9);
        mixer.notes = {1};
        mixer.muteAll();
        isReset ? mixer.reset() : mixer.unmuteAll();
        EXPECT_EQ(mixer.channels.size(), 16U);
        EXPECT_EQ(mixer.notes.size(), 128U);
        EXPECT_EQ(mixer.notes[127], 127);
        EXPECT_EQ(mixer.velocities[0], 1);
        EXPECT_EQ(mixer.velocities[1], 1);
        EXPECT_EQ(mixer.velocities[127], 127);
    }
}

TEST_F(AUMIDIEventListMixerTest, ANoteFilterTakesEveryNthKeyFromAKeyOn)
{
    mixer.makeNoteFilter(2, 60);
    ASSERT_EQ(mixer.notes.size(), 34U);
    EXPECT_EQ(mixer.notes.front(), 60);
    EXPECT_EQ(mixer.notes[1], 62);
    EXPECT_EQ(mixer.notes.back(), 126);
    mixer.makeNoteFilter(1, 0);
    EXPECT_EQ(mixer.notes.size(), 128U);
    mixer.makeNoteFilter(5, 128);
    EXPECT_TRUE(mixer.notes.empty());
    mixer.makeNoteFilter(-3, 120);
    EXPECT_EQ(mixer.notes, (Bytes{120, 123, 126}));
}

TEST_F(AUMIDIEventListMixerTest, ANoteFilterWithoutChannelsOrBelowTheKeysIsAFatalStop)
{
    EXPECT_STOP(mixer.makeNoteFilter(0, 60), arithmeticMessage);
    EXPECT_STOP(mixer.makeNoteFilter(0, 200), arithmeticMessage);
    EXPECT_STOP(mixer.makeNoteFilter(2, -1), conversionMessage);
}

TEST_F(AUMIDIEventListMixerTest, ItsRecordsHaveNothingReserved)
{
    AURenderEvent record;
    record.MIDI = {.eventSampleTime = 5, .eventType = AURenderEventMIDI, .reserved = 7, .length = 3};
    record.MIDI.data[0] = 0x90;
    const AURenderEvent* const first = mixer.mixEvents(&record, &record);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->MIDI.reserved, 0);
    ASSERT_NE(first->head.next, nullptr);
    EXPECT_EQ(first->head.next->MIDI.reserved, 0);
}

TEST_F(AUMIDIEventListMixerTest, MergesByTimeAndPutsTheFirstListFirstAtEqualTimes)
{
    EXPECT_EQ(mixed({{.stamp = 10, .bytes = {0x90, 1, 1}}, {.stamp = 5, .bytes = {0x90, 2, 1}}},
                    {{.stamp = 4, .bytes = {0x90, 3, 1}}, {.stamp = 9, .bytes = {0x90, 4, 1}}}, 0, 1),
              (ListEvents{{.stamp = 5, .bytes = {0x90, 2, 1}},
                          {.stamp = 5, .bytes = {0x90, 3, 1}},
                          {.stamp = 10, .bytes = {0x90, 1, 1}},
                          {.stamp = 10, .bytes = {0x90, 4, 1}}}));
    EXPECT_EQ(mixer.specialEvents.size(), 4U);
    EXPECT_EQ(mixer.tempListSort.size(), 4U);
    EXPECT_EQ(mixer.tempListSort.back().MIDI.data[1], 4);
}

TEST_F(AUMIDIEventListMixerTest, ExclusivesStayWhereTheyAreAndEveryCableBecomesZero)
{
    const ListEvent exclusive{
        .stamp = 3, .bytes = {0xF0, 1, 2, 3, 0xF7}, .cable = 2, .type = AURenderEventMIDISysEx};
    EXPECT_EQ(mixed({exclusive}, {{.stamp = 1, .bytes = {0x90, 1, 1}, .cable = 1}}, 100, 100),
              (ListEvents{{.stamp = 3, .bytes = exclusive.bytes, .type = AURenderEventMIDISysEx},
                          {.stamp = 101, .bytes = {0x90, 1, 1}}}));
}

TEST_F(AUMIDIEventListMixerTest, CommandsOfSilencePassAClosedChannelInTheFirstListOnly)
{
    mixer.mute(1);
    const auto controller = [](std::uint8_t number) { return ListEvent{.bytes = {0xB1, number, 0}}; };
    const ListEvents all{
        controller(123), controller(121), controller(120), controller(7), {.bytes = {0x91, 123, 1}}};
    EXPECT_EQ(mixed(all, {}), (ListEvents{controller(123), controller(121)}));
    EXPECT_EQ(mixed({}, all), ListEvents{});
    EXPECT_EQ(mixer.lastResult, nullptr);
}

TEST_F(AUMIDIEventListMixerTest, KeysPlayAPartInASplitAlone)
{
    mixer.makeNoteFilter(2, 60);
    const ListEvents notes{{.bytes = {0x90, 60, 1}},
                           {.bytes = {0x90, 61, 1}},
                           {.bytes = {0x80, 61, 1}},
                           {.bytes = {0xA0, 61, 1}},
                           {.bytes = {0xB0, 61, 1}}};
    EXPECT_EQ(mixed(notes, {}), notes);
    const ListEvents split{notes[0], notes[3], notes[4]};
    EXPECT_EQ(mixed(notes, {}, 0, 0, true), split);
    EXPECT_EQ(mixed({}, notes, 0, 0, true), split);
}

TEST_F(AUMIDIEventListMixerTest, VelocitiesAreMappedInBothListsAndToldInTheFirstWhereTheyBecomeZero)
{
    mixer.velocities[100] = 50;
    mixer.velocities[99] = 0;
    const ListEvents notes{{.bytes = {0x90, 1, 100}}, {.bytes = {0x90, 2, 99}}, {.bytes = {0x80, 3, 100}}};
    const ListEvents expected{{.bytes = {0x90, 1, 50}}, {.bytes = {0x90, 2, 0}}, {.bytes = {0x80, 3, 100}}};
    EXPECT_EQ(mixed({}, notes), expected);
    EXPECT_EQ(console.take(), Lines{});
    EXPECT_EQ(mixed(notes, {}), expected);
    EXPECT_EQ(console.take(), Lines{becameZero});
}

TEST_F(AUMIDIEventListMixerTest, VelocitiesZeroAndAbove127StayAsTheyAre)
{
    mixer.velocities.fill(9);
    const ListEvents notes{{.bytes = {0x90, 1, 0}}, {.bytes = {0x90, 1, 128}}, {.bytes = {0x90, 1, 255}}};
    EXPECT_EQ(mixed(notes, notes).size(), 6U);
    EXPECT_EQ(mixed(notes, {}), notes);
}

TEST_F(AUMIDIEventListMixerTest, AnEventThatIsFilledAgainGivesNoByteOfWhatItHeldBefore)
{
    for (const std::size_t length : {256U, 4U, 200U, 3U, 300U, 255U, 1U}) {
        ListEvent exclusive{.bytes = Bytes(length), .type = AURenderEventMIDISysEx};
        std::iota(exclusive.bytes.begin(), exclusive.bytes.end(), static_cast<std::uint8_t>(length));
        exclusive.bytes.front() = 0xF0;
        EXPECT_EQ(mixed({}, {exclusive}), ListEvents{exclusive});
        EXPECT_EQ(mixer.specialEvents[0]->array(), exclusive.bytes);
        EXPECT_EQ(mixer.specialEvents[0]->length(), length);
        const AUMIDIEventEx copy(*mixer.specialEvents[0]);
        EXPECT_EQ(copy.array(), exclusive.bytes);
    }
}

TEST_F(AUMIDIEventListMixerTest, MoreEventsThanWereMadeReadyAllComeThrough)
{
    ListEvents events;
    for (int i = 0; i < 2500; ++i) {
        const auto length = static_cast<std::size_t>(i % 10 == 0 ? 300 : 3);
        ListEvent event{.stamp = i, .bytes = Bytes(length, static_cast<std::uint8_t>(i))};
        event.bytes[0] = i % 10 == 0 ? 0xF0 : 0x90;
        event.bytes[1] = static_cast<std::uint8_t>(i % 128);
        event.bytes[2] = static_cast<std::uint8_t>(i / 128);
        event.type = i % 10 == 0 ? AURenderEventMIDISysEx : AURenderEventMIDI;
        events.push_back(event);
    }
    EXPECT_EQ(mixed(events, {}), events);
}

TEST_F(AUMIDIEventListMixerTest, ReleasesItsListWhenAskedAndWithTheNext)
{
    mixed({{.bytes = {0x90, 60, 1}}}, {});
    mixer.deallocateRealtimeEventListHead();
    EXPECT_EQ(mixer.lastResult, nullptr);
    mixed({{.bytes = {0x90, 60, 1}}}, {});
    EXPECT_EQ(mixer.mixEvents(nullptr, nullptr), nullptr);
    EXPECT_EQ(mixer.lastResult, nullptr);
}

TEST_F(AUMIDIEventListMixerTest, ATimeThatDoesNotFitIsAFatalStop)
{
    const EventList list({{.stamp = std::numeric_limits<std::int64_t>::min(), .bytes = {0x90, 60, 1}}});
    EXPECT_STOP(mixer.mixEvents(nullptr, list.head(), 0, -1), arithmeticMessage);
}

TEST_F(AUMIDIEventListMixerTest, GivesWhatThePlainStepsGive)
{
    std::mt19937 random(55);
    for (int round = 0; round < 3000; ++round) {
        const ListEvents first = randomEvents(random);
        const ListEvents second = randomEvents(random);
        mixer.reset();
        for (int muted = draw(random, 0, 12); muted > 0; --muted) {
            mixer.mute(static_cast<std::uint8_t>(draw(random, 0, 15)));
        }
        std::ranges::generate(mixer.velocities,
                              [&] { return static_cast<std::uint8_t>(draw(random, 0, 3)); });
        mixer.makeNoteFilter(draw(random, 1, 4), draw(random, 0, 100));
        const int offset1 = draw(random, -10, 10);
        const int offset2 = draw(random, -10, 10);
        const bool noteSplit = draw(random, 0, 1) == 1;
        ListEvents expected;
        Lines lines;
        walk(mixer, first, true, offset1, noteSplit, expected, lines);
        walk(mixer, second, false, offset2, noteSplit, expected, lines);
        std::ranges::stable_sort(expected, {}, &ListEvent::stamp);
        ASSERT_EQ(mixed(first, second, offset1, offset2, noteSplit), expected) << round;
        ASSERT_EQ(console.take(), lines) << round;
    }
}

TEST_F(AUMIDIEventListMixerTest, AThousandEventsTakeNoMemoryAndNoLock)
{
    std::mt19937 random(56);
    ListEvents events(500);
    for (ListEvent& event : events) {
        event = {.stamp = draw(random, 0, 511), .bytes = {0x90, 60, 1}};
        event.bytes.resize(draw(random, 0, 9) == 0 ? static_cast<std::size_t>(draw(random, 4, 256)) : 3U);
    }
    for (std::size_t i = 0; i < 20; ++i) {
        events[i * 7].bytes.resize(1043);
    }
    const EventList first(events);
    std::ranges::reverse(events);
    const EventList second(events);
    mixer.velocities[1] = 0;
    const RealtimeGuard guard;
    for (int i = 0; i < 20; ++i) {
        EXPECT_NE(mixer.mixEvents(first.head(), second.head(), i, -i, true), nullptr);
    }
}

} // namespace
} // namespace volvelle
