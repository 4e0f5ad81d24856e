#include "services/soundunits/PortInbox.h"
#include "tests/support/RealtimeGuard.h"

#include <gtest/gtest.h>

#include <thread>
#include <utility>

namespace volvelle {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Moment = PortInbox::Moment;
using Messages = std::vector<std::pair<int, Bytes>>; // with the moment of each

Moment moment(int number)
{
    return Moment(Moment::duration(number));
}

Messages takeAll(PortInbox& inbox)
{
    Messages all;
    Moment arrived;
    Bytes message;
    while (inbox.take(arrived, message)) {
        all.emplace_back(static_cast<int>(arrived.time_since_epoch().count()), message);
    }
    return all;
}

// What the pieces give, each at the moment of its number.
Messages taken(const std::vector<Bytes>& pieces, std::size_t dropped = 0)
{
    PortInbox inbox;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        inbox.receive(moment(static_cast<int>(i)), pieces[i]);
    }
    EXPECT_EQ(inbox.dropped(), dropped);
    return takeAll(inbox);
}

Bytes exclusiveOf(std::size_t length)
{
    Bytes bytes(length, 0x11);
    bytes.front() = 0xF0;
    bytes.back() = 0xF7;
    return bytes;
}

TEST(PortInbox, ChannelMessagesOfEachKindComeThroughWithTheirMoments)
{
    const std::vector<Bytes> all{{0x80, 60, 1}, {0x9F, 0, 127}, {0xA1, 60, 5}, {0xB2, 64, 127}, {0xC3, 5},
                                 {0xD4, 9},     {0xE5, 1, 64},  {0x90, 60, 0}, {0xF0, 1, 0xF7}};
    Messages expected;
    for (std::size_t i = 0; i < all.size(); ++i) {
        expected.emplace_back(i, all[i]);
    }
    EXPECT_EQ(taken(all), expected);
}

TEST(PortInbox, WhatIsMeantForOneMomentIsLeftOut)
{
    EXPECT_EQ(taken({{0xF8},
                     {0xFE},
                     {0xFA},
                     {0xFB},
                     {0xFC},
                     {0xFF},
                     {0xF9},
                     {0xFD},
                     {0xF1, 5},
                     {0xF2, 1, 2},
                     {0xF3, 7},
                     {0xF4},
                     {0xF5},
                     {0xF6},
                     {0xF7},
                     {}}),
              Messages{});
}

TEST(PortInbox, AnExclusiveInPiecesIsOneMessageWithTheMomentOfItsEnd)
{
    EXPECT_EQ(taken({{0xF0}, {1, 2}, {3}, {0xF7}}), (Messages{{3, {0xF0, 1, 2, 3, 0xF7}}}));
    EXPECT_EQ(taken({{0xF0, 1}, {0xF8}, {2, 0xFE, 3, 0xF7}}), (Messages{{2, {0xF0, 1, 2, 3, 0xF7}}}));
    EXPECT_EQ(taken({{0xF0, 0xF7, 0xF0, 1, 0xF7, 0x90, 1, 2}}),
              (Messages{{0, {0xF0, 0xF7}}, {0, {0xF0, 1, 0xF7}}, {0, {0x90, 1, 2}}}));
}

TEST(PortInbox, AnExclusiveThatIsBrokenOffIsCountedAndTheMessageThatBrokeItStays)
{
    EXPECT_EQ(taken({{0xF0, 1}, {0x90, 60, 1}, {2, 3}}, 1),
              (Messages{{1, {0x90, 60, 1}}, {2, {0x90, 2, 3}}}));
    EXPECT_EQ(taken({{0xF0, 1}, {0xF0, 2, 0xF7}}, 1), (Messages{{1, {0xF0, 2, 0xF7}}}));
    EXPECT_EQ(taken({{0xF0, 1}, {0xF6}, {2, 0xF7}}, 1), Messages{});
}

TEST(PortInbox, MessagesInPiecesAndWithoutTheirStatusAreWhole)
{
    EXPECT_EQ(taken({{0x90}, {60}, {1, 61}, {0xF8, 2, 0xC0, 5, 6}}),
              (Messages{{2, {0x90, 60, 1}}, {3, {0x90, 61, 2}}, {3, {0xC0, 5}}, {3, {0xC0, 6}}}));
    EXPECT_EQ(taken({{60, 1}, {0x90, 60, 0x91, 61, 2}, {0xF0, 0xF7, 1, 2}}),
              (Messages{{1, {0x91, 61, 2}}, {2, {0xF0, 0xF7}}}));
}

TEST(PortInbox, TheLongestExclusiveComesThroughAndALongerOneIsCounted)
{
    const Bytes longest = exclusiveOf(PortInbox::longestExclusive);
    EXPECT_EQ(
        taken({longest, exclusiveOf(PortInbox::longestExclusive + 1), exclusiveOf(200'000), longest}, 2),
        (Messages{{0, longest}, {3, longest}}));
}

TEST(PortInbox, WhatFindsNoRoomIsCountedButNotTheEndOfANote)
{
    PortInbox inbox(80);
    for (int i = 0; i < 50; ++i) {
        inbox.receive(moment(i), Bytes{0x90, static_cast<std::uint8_t>(i), 1});
    }
    const std::size_t dropped = inbox.dropped();
    for (int i = 0; i < 50; ++i) {
        inbox.receive(moment(i), Bytes{0x80, static_cast<std::uint8_t>(i), 1});
    }
    Messages expected;
    const auto taken = static_cast<int>(50 - dropped);
    for (const std::uint8_t status : {std::uint8_t{0x90}, std::uint8_t{0x80}}) {
        for (int i = 0; i < taken; ++i) {
            expected.emplace_back(i, Bytes{status, static_cast<std::uint8_t>(i), 1});
        }
    }
    EXPECT_EQ(takeAll(inbox), expected);
    EXPECT_EQ(taken, 2);
    EXPECT_EQ(inbox.dropped(), 96U);
}

TEST(PortInbox, ReceivingTakesNoLockAndNoMemory)
{
    PortInbox inbox(4096);
    const Bytes exclusive = exclusiveOf(1000);
    const test::RealtimeGuard guard;
    for (int i = 0; i < 100; ++i) {
        inbox.receive(moment(i), exclusive);
        inbox.receive(moment(i), std::initializer_list<std::uint8_t>{0x90, 60, 1, 0x80, 60, 1});
    }
}

TEST(PortInbox, OnTwoThreadsEveryMessageIsTakenOrCounted)
{
    PortInbox inbox(1000);
    constexpr int count = 20'000;
    std::thread sender([&inbox] {
        for (int i = 0; i < count; ++i) {
            inbox.receive(moment(i), Bytes{0xE0, static_cast<std::uint8_t>(i & 0x7F), 3});
        }
    });
    Messages all;
    for (std::size_t whole = 0; whole < count; whole = all.size() + inbox.dropped()) {
        const Messages more = takeAll(inbox);
        all.insert(all.end(), more.begin(), more.end());
    }
    sender.join();
    for (const auto& [arrived, message] : all) {
        ASSERT_EQ(message, (Bytes{0xE0, static_cast<std::uint8_t>(arrived & 0x7F), 3}));
    }
    EXPECT_EQ(all.size() + inbox.dropped(), static_cast<std::size_t>(count));
}

} // namespace
} // namespace volvelle
