#include "MIDISequences/AUMIDIEvents.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <array>
#include <numeric>
#include <type_traits>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Lines = std::vector<std::string>;
using test::ConsoleCapture;
using test::RealtimeGuard;

Bytes counting(std::size_t count)
{
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    return bytes;
}

TEST(AUMIDIEventEx, HoldsTypeTimeAndBytes)
{
    const AUMIDIEventEx event(9, Bytes{0xF0, 1, 2, 3, 0xF7}, 5, -480);
    EXPECT_EQ(event.size, 29);
    const AUMIDIEvent* record = event.pEvent();
    EXPECT_EQ(static_cast<const void*>(record), event.mem);
    EXPECT_EQ(record->next, nullptr);
    EXPECT_EQ(record->eventSampleTime, -480);
    EXPECT_EQ(record->eventType, 9);
    EXPECT_EQ(record->reserved, 0);
    EXPECT_EQ(record->length, 5);
    EXPECT_EQ(record->cable, 0);
    EXPECT_EQ(event.data(), event.mem + 21);
    EXPECT_EQ(event.array(), (Bytes{0xF0, 1, 2, 3, 0xF7}));
    EXPECT_EQ(event.length(), 5U);
}

TEST(AUMIDIEventEx, StartsWithoutIdentityAndPlace)
{
    const AUMIDIEventEx event(Bytes{0x90, 60, 100});
    EXPECT_EQ(event.id, 0);
    EXPECT_EQ(event.beats, 0.0);
    EXPECT_EQ(event.duration, 0.0);
    EXPECT_EQ(event.meta, 0x7F);
    EXPECT_EQ(AUMIDIEventEx::MAXBYTES, 256U);
}

TEST(AUMIDIEventEx, IsAMIDIEventAtTimeZeroWhenMadeOfBytesAlone)
{
    const AUMIDIEventEx event(Bytes{0x90, 60, 100});
    EXPECT_EQ(event.pEvent()->eventType, AURenderEventMIDI);
    EXPECT_EQ(event.pEvent()->eventType, 8);
    EXPECT_EQ(event.pEvent()->eventSampleTime, 0);
    EXPECT_EQ(event.pEvent()->data[1], 60);
}

TEST(AUMIDIEventEx, MayBeEmpty)
{
    ConsoleCapture capture;
    const AUMIDIEventEx event((Bytes()));
    EXPECT_EQ(event.size, 24);
    EXPECT_EQ(event.length(), 0U);
    EXPECT_EQ(event.toHex(), "");
    EXPECT_EQ(event.toText(), "");
    EXPECT_TRUE(event.array().empty());
    EXPECT_TRUE(capture.take().empty());
}

TEST(AUMIDIEventEx, TellsOfAnArrayShorterThanTheLengthOnly)
{
    ConsoleCapture capture;
    const AUMIDIEventEx shorter(8, Bytes{1, 2}, 3, 0);
    EXPECT_EQ(capture.take(), Lines{"WARNING: The length parameter 3 is not equal to the data length 2."});
    EXPECT_EQ(shorter.length(), 2U);
    EXPECT_EQ(shorter.size, 26);
    const AUMIDIEventEx longer(8, Bytes{1, 2, 3}, 2, 0);
    EXPECT_EQ(longer.array(), (Bytes{1, 2, 3}));
    EXPECT_TRUE(capture.take().empty());
}

TEST(AUMIDIEventEx, CopiesTheBytesBehindAPointer)
{
    const Bytes bytes = counting(10);
    const AUMIDIEventEx event(8, bytes.data(), 4, 12);
    EXPECT_EQ(event.array(), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(event.pEvent()->length, 4);
    EXPECT_EQ(event.pEvent()->eventSampleTime, 12);
}

TEST(AUMIDIEventEx, CopiesARecordWithAnotherLength)
{
    AURenderEvent next;
    AUMIDIEventEx source(9, counting(10), 10, 77);
    source.pEvent()->cable = 3;
    source.pEvent()->next = &next;
    const AUMIDIEventEx event(*source.pEvent(), 6);
    EXPECT_EQ(event.pEvent()->next, &next);
    EXPECT_EQ(event.pEvent()->eventSampleTime, 77);
    EXPECT_EQ(event.pEvent()->eventType, 9);
    EXPECT_EQ(event.pEvent()->cable, 3);
    EXPECT_EQ(event.pEvent()->length, 6);
    EXPECT_EQ(event.array(), counting(6));
    const AUMIDIEventEx one(*source.pEvent(), 1);
    EXPECT_EQ(one.array(), Bytes{1});
    EXPECT_EQ(one.event().data[2], 3);
}

TEST(AUMIDIEventEx, CopiesRecordAndBytesOfAnotherAndNothingElse)
{
    AUMIDIEventEx source(8, counting(5), 5, 9);
    source.id = 4;
    source.beats = 2.0;
    source.duration = 1.0;
    source.meta = 1;
    const AUMIDIEventEx copy(source);
    EXPECT_NE(copy.mem, source.mem);
    source.data()[0] = 99;
    EXPECT_EQ(copy.array(), counting(5));
    EXPECT_EQ(copy.pEvent()->eventSampleTime, 9);
    EXPECT_EQ(copy.id, 0);
    EXPECT_EQ(copy.beats, 0.0);
    EXPECT_EQ(copy.duration, 0.0);
    EXPECT_EQ(copy.meta, 0x7F);
}

TEST(AUMIDIEventEx, GivesItsRecordByValueAndByPointer)
{
    AUMIDIEventEx event(Bytes{0x90, 60, 100});
    AUMIDIEvent record = event.event();
    record.data[0] = 0x80;
    record.eventSampleTime = 5;
    EXPECT_EQ(event.array()[0], 0x90);
    event.setEvent(record);
    EXPECT_EQ(event.array(), (Bytes{0x80, 60, 100}));
    EXPECT_EQ(event.pEvent()->eventSampleTime, 5);
    const AUMIDIEvent* seen = nullptr;
    event.with([&seen](const AUMIDIEvent* given) { seen = given; });
    EXPECT_EQ(seen, event.pEvent());
}

TEST(AUMIDIEventEx, TakesNoNewDataPointer)
{
    AUMIDIEventEx event(Bytes{1, 2, 3});
    std::uint8_t other = 9;
    event.setData(&other);
    EXPECT_EQ(event.data(), event.mem + 21);
    EXPECT_EQ(event.array(), (Bytes{1, 2, 3}));
}

TEST(AUMIDIEventEx, PrintsItsBytes)
{
    const AUMIDIEventEx event(Bytes{5, 0xAB, 'A'});
    EXPECT_EQ(event.toHex(), " 5AB41");
    EXPECT_EQ(event.toText(), "\x05\u00ABA");
}

TEST(AUMIDIEventEx, IsOverwrittenByALongRecord)
{
    AUMIDIEventEx event(8, Bytes(256), 256, 0);
    const AUMIDIEventEx source(9, counting(10), 10, 33);
    event.InitializeWith(*source.pEvent());
    EXPECT_EQ(event.length(), 10U);
    EXPECT_EQ(event.array(), counting(10));
    EXPECT_EQ(event.pEvent()->eventType, 9);
    EXPECT_EQ(event.pEvent()->eventSampleTime, 33);
    EXPECT_EQ(event.pEvent()->length, 10);
}

TEST(AUMIDIEventEx, KeepsItsLengthForAShortRecord)
{
    AUMIDIEventEx event(8, Bytes(5, 7), 5, 0);
    event.InitializeWith(*AUMIDIEventEx(Bytes{0x90, 60, 100}).pEvent());
    EXPECT_EQ(event.length(), 5U);
    EXPECT_EQ(event.array(), (Bytes{0x90, 60, 100, 7, 7}));
    EXPECT_EQ(event.pEvent()->length, 3);
}

TEST(AUMIDIEventEx, TakesNoBytesThatItHasNoRoomFor)
{
    AUMIDIEventEx event(8, Bytes(5, 7), 5, 0);
    event.InitializeWith(*AUMIDIEventEx(8, counting(6), 6, 4).pEvent());
    EXPECT_EQ(event.length(), 5U);
    EXPECT_EQ(event.array(), (Bytes{1, 2, 3, 7, 7}));
    EXPECT_EQ(event.pEvent()->eventSampleTime, 4);
}

TEST(AUMIDIEventEx, NeverGrowsAgain)
{
    AUMIDIEventEx event(8, Bytes(8), 8, 0);
    event.InitializeWith(*AUMIDIEventEx(counting(4)).pEvent());
    EXPECT_EQ(event.length(), 4U);
    event.InitializeWith(*AUMIDIEventEx(Bytes(8, 9)).pEvent());
    EXPECT_EQ(event.length(), 4U);
    EXPECT_EQ(event.array(), (Bytes{9, 9, 9, 4}));
}

TEST(AUMIDIEventEx, IgnoresARecordAbove256Bytes)
{
    AUMIDIEventEx event(8, Bytes(300, 7), 300, 1);
    event.InitializeWith(*AUMIDIEventEx(9, Bytes(257, 3), 257, 5).pEvent());
    EXPECT_EQ(event.array(), Bytes(300, 7));
    EXPECT_EQ(event.pEvent()->eventType, 8);
    EXPECT_EQ(event.pEvent()->eventSampleTime, 1);
    event.InitializeWith(*AUMIDIEventEx(9, Bytes(256, 3), 256, 5).pEvent());
    EXPECT_EQ(event.array(), Bytes(256, 3));
}

TEST(AUMIDIEventExDeathTest, StopsAtALengthThatARecordCannotHold)
{
    const Bytes bytes(65536);
    EXPECT_EQ(AUMIDIEventEx(Bytes(65535)).length(), 65535U);
    EXPECT_DEATH((void)AUMIDIEventEx(bytes), "Not enough bits to represent the passed value");
    EXPECT_DEATH((void)AUMIDIEventEx(8, bytes.data(), 0xFFFFFFFFU, 0), "Not enough bits");
    EXPECT_DEATH((void)AUMIDIEventEx(8, bytes.data(), 0x7FFFFFFFU, 0), "Not enough bits");
}

void limitMemory(rlim_t bytes)
{
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_AS, &limit);
}

TEST(AUMIDIEventExDeathTest, StopsAtSuchALengthBeforeItAllocates)
{
    if (!RealtimeGuard::isEffective()) {
        GTEST_SKIP() << "the sanitizers take the memory that the limit keeps back";
    }
    const Bytes bytes(16);
    EXPECT_DEATH(
        {
            limitMemory(1U << 30U);
            (void)AUMIDIEventEx(8, bytes.data(), 0x7FFFFF00U, 0);
        },
        "^Not enough bits to represent the passed value\n$");
}

TEST(AUMIDIEventEx, IsCopiedOnlyWhereThatIsSaid)
{
    EXPECT_TRUE((std::is_constructible_v<AUMIDIEventEx, const AUMIDIEventEx&>));
    EXPECT_FALSE((std::is_convertible_v<const AUMIDIEventEx&, AUMIDIEventEx>));
}

TEST(AUMIDIEventEx, IsOverwrittenWithoutAnAllocation)
{
    AUMIDIEventEx event(8, Bytes(256), 256, 0);
    const AUMIDIEventEx longer(9, counting(200), 200, 33);
    const AUMIDIEventEx shorter(Bytes{0x90, 60, 100});
    const AUMIDIEventEx tooLong(9, Bytes(257, 3), 257, 5);
    {
        const RealtimeGuard guard;
        event.InitializeWith(*tooLong.pEvent());
        event.InitializeWith(*longer.pEvent());
        event.InitializeWith(*shorter.pEvent());
    }
    EXPECT_EQ(event.length(), 200U);
    EXPECT_EQ(event.array()[1], 60);
}

TEST(AURenderEvent, SharesItsHeadWithItsRecord)
{
    AURenderEvent event;
    event.MIDI = AUMIDIEvent{nullptr, 12, AURenderEventMIDI, 0, 3, 0, {0x90, 60, 100}};
    EXPECT_EQ(event.head.eventSampleTime, 12);
    EXPECT_EQ(event.head.eventType, 8);
    EXPECT_EQ(event.head.next, nullptr);
}

TEST(AUMIDIEventStack, GivesOneScratchEventInEveryPlace)
{
    AUMIDIEventStack stack;
    EXPECT_EQ(AUMIDIEventStack::MAXEVENTS, 512);
    const auto first = stack.next();
    EXPECT_EQ(first->pEvent()->eventType, 8);
    EXPECT_EQ(first->pEvent()->eventSampleTime, 0);
    EXPECT_EQ(first->array(), Bytes(256));
    for (int i = 1; i < 1100; ++i) {
        ASSERT_EQ(stack.next(), first);
    }
}

TEST(AUMIDIEventStack, GivesItsEventsWithoutAnAllocation)
{
    AUMIDIEventStack stack;
    const auto first = stack.next();
    int others = 0;
    {
        const RealtimeGuard guard;
        for (int i = 0; i < 2 * AUMIDIEventStack::MAXEVENTS; ++i) {
            others += stack.next() == first ? 0 : 1;
        }
    }
    EXPECT_EQ(others, 0);
}

class StackOf : public AUMIDIEventStack {
public:
    explicit StackOf(std::vector<std::shared_ptr<AUMIDIEventEx>> items) : AUMIDIEventStack(std::move(items))
    {
    }
};

TEST(AUMIDIEventStack, GivesItsEventsInARing)
{
    const auto one = std::make_shared<AUMIDIEventEx>(Bytes{1});
    const auto two = std::make_shared<AUMIDIEventEx>(Bytes{2});
    StackOf stack({one, two});
    EXPECT_EQ(stack.next(), one);
    EXPECT_EQ(stack.next(), two);
    EXPECT_EQ(stack.next(), one);
}

TEST(AUMIDIEventStack, MakesAFreshEventWhereItHasNone)
{
    StackOf stack({});
    const auto one = stack.next();
    EXPECT_NE(one, stack.next());
    EXPECT_EQ(one->pEvent()->eventType, 8);
    EXPECT_EQ(one->array(), Bytes(256));
}

TEST(ChannelFilter, LetsAllSixteenChannelsPassAtFirst)
{
    ChannelFilter filter;
    Bytes all(16);
    std::iota(all.begin(), all.end(), std::uint8_t{0});
    EXPECT_EQ(filter.channels, all);
    EXPECT_GE(filter.channels.capacity(), 16U);
    EXPECT_FALSE(filter.filters(0));
    EXPECT_FALSE(filter.filters(15));
    EXPECT_TRUE(filter.filters(16));
}

TEST(ChannelFilter, SingsSolo)
{
    ChannelFilter filter;
    filter.solo(16);
    EXPECT_EQ(filter.channels.size(), 16U);
    filter.solo(3);
    EXPECT_EQ(filter.channels, Bytes{3});
    EXPECT_TRUE(filter.filters(4));
    filter.reset();
    EXPECT_EQ(filter.channels.size(), 16U);
}

TEST(ChannelFilter, MutesAChannelOnceAndBringsItBackOnce)
{
    ChannelFilter filter;
    filter.mute(3);
    filter.mute(3);
    filter.mute(16);
    EXPECT_EQ(filter.channels.size(), 15U);
    EXPECT_TRUE(filter.filters(3));
    filter.unmute(3);
    filter.unmute(3);
    filter.unmute(16);
    EXPECT_EQ(filter.channels.size(), 16U);
    EXPECT_EQ(filter.channels.back(), 3);
}

TEST(ChannelFilter, MutesAndUnmutesAll)
{
    ChannelFilter filter;
    filter.muteAll();
    EXPECT_TRUE(filter.channels.empty());
    EXPECT_TRUE(filter.filters(0));
    filter.unmuteAll();
    EXPECT_EQ(filter.channels, ChannelFilter().channels);
}

TEST(ChannelFilter, KeepsItsRoom)
{
    ChannelFilter filter;
    const std::uint8_t* room = filter.channels.data();
    int dropped = 0;
    {
        const RealtimeGuard guard;
        for (std::uint8_t channel = 0; channel < 20; ++channel) {
            filter.mute(channel);
            filter.unmute(channel);
            filter.solo(channel);
            dropped += filter.filters(channel) ? 1 : 0;
            filter.muteAll();
            filter.unmuteAll();
            filter.reset();
        }
    }
    EXPECT_EQ(dropped, 4);
    EXPECT_EQ(filter.channels.data(), room);
}

} // namespace
} // namespace volvelle
