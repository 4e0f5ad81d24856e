#include "wire/TimedMessageLine.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace volvelle::test {

namespace {

using testing::ElementsAre;

using Bytes = std::vector<std::uint8_t>;

TimedMessage shortMessage(int offset, std::uint8_t status, std::uint8_t data1 = 60, std::uint8_t data2 = 0)
{
    return {offset, 0, {status, data1, data2}, 3, nullptr};
}

// Valid while the bytes are.
TimedMessage longMessage(int offset, const Bytes& bytes)
{
    return {offset, 0, {}, static_cast<int>(bytes.size()), bytes.data()};
}

Bytes bytesOf(const TimedMessage& message)
{
    return {message.bytes().begin(), message.bytes().end()};
}

std::vector<Bytes> drained(TimedMessageLine& line)
{
    std::vector<Bytes> all;
    while (!line.isEmpty()) {
        all.push_back(bytesOf(line.front()));
        line.removeFront();
    }
    return all;
}

int filledWith(TimedMessageLine& line, const TimedMessage& message)
{
    int count = 0;
    while (line.insert(message)) {
        ++count;
    }
    return count;
}

TEST(TimedMessageLine, GivesMessagesByOffsetAndThoseOfOneOffsetInTheOrderOfEntry)
{
    TimedMessageLine line;
    for (const auto& [offset, number] : {std::pair(5, 1), {0, 2}, {5, 3}, {3, 4}, {0, 5}}) {
        EXPECT_TRUE(line.insert(shortMessage(offset, 0xB0, static_cast<std::uint8_t>(number))));
    }
    EXPECT_THAT(drained(line), ElementsAre(Bytes{0xB0, 2, 0}, Bytes{0xB0, 5, 0}, Bytes{0xB0, 4, 0},
                                           Bytes{0xB0, 1, 0}, Bytes{0xB0, 3, 0}));
}

TEST(TimedMessageLine, GivesWhatLiesBelowAFrameAndBringsTheRestNearer)
{
    TimedMessageLine line;
    line.insert(shortMessage(511, 0xB0, 1));
    line.insert(shortMessage(512, 0xB0, 2));
    line.insert(shortMessage(700, 0xB0, 3));
    ASSERT_EQ(line.upTo(512).size(), 1U);
    EXPECT_EQ(bytesOf(line.upTo(512).front()), (Bytes{0xB0, 1, 0}));
    line.removeFront(1);
    line.advance(512);
    EXPECT_EQ(line.upTo(1).size(), 1U);
    EXPECT_EQ(line.front().offset, 0);
    EXPECT_EQ(line.upTo(189).back().offset, 188);
}

TEST(TimedMessageLine, WhatComesBehindARemovalKeepsTheOrder)
{
    TimedMessageLine line;
    line.insert(shortMessage(0, 0xB0, 1));
    line.insert(shortMessage(9, 0xB0, 2));
    line.removeFront();
    line.insert(shortMessage(0, 0xB0, 3));
    EXPECT_THAT(drained(line), ElementsAre(Bytes{0xB0, 3, 0}, Bytes{0xB0, 2, 0}));
}

constexpr int most = TimedMessageLine::capacity;
constexpr int mostEnds = TimedMessageLine::endsCapacity;

TEST(TimedMessageLine, EachNoteOnKeepsTheRoomOfItsEnd)
{
    TimedMessageLine line(most);
    EXPECT_EQ(filledWith(line, shortMessage(0, 0x91, 60, 1)), most / 2);
    EXPECT_FALSE(line.insert(shortMessage(0, 0xB0, 7, 1)));
    EXPECT_EQ(filledWith(line, shortMessage(0, 0x91, 60, 0)), mostEnds - most / 2);
    line.removeFront();
    EXPECT_FALSE(line.insert(shortMessage(0, 0x90, 60, 1)));
    EXPECT_TRUE(line.insert(shortMessage(0, 0x80)));
    EXPECT_FALSE(line.insert(shortMessage(0, 0x80)));
    EXPECT_EQ(drained(line).size(), static_cast<std::size_t>(mostEnds));
    EXPECT_TRUE(line.insert(shortMessage(0, 0x90, 60, 1)));
}

TEST(TimedMessageLine, WhatSoundsIsOwedItsEndOnceItsBeginIsGone)
{
    TimedMessageLine line;
    EXPECT_TRUE(line.insert(shortMessage(0, 0x90, 60, 1)));
    EXPECT_TRUE(line.insert(shortMessage(0, 0xB0, 64, 127)));
    EXPECT_EQ(drained(line).size(), 2U);
    EXPECT_EQ(filledWith(line, shortMessage(0, 0xB0, 7, 1)), most - 2);
    line.clear();
    EXPECT_EQ(filledWith(line, shortMessage(0, 0xB0, 7, 1)), most);
}

TEST(TimedMessageLine, OfOneKeyTheEndsOfSoManyStrikesAreOwed)
{
    TimedMessageLine line(1);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(line.insert(shortMessage(0, 0x90, 60, 1)));
    }
    EXPECT_EQ(filledWith(line, shortMessage(0, 0xB0, 7, 1)), most - 4);
}

TEST(TimedMessageLine, WhateverFillsItTheEndsOfWhatBeganFindRoom)
{
    const Bytes exclusive{0xF0, 0x7F, 0x7F, 4, 1, 0, 64, 0xF7};
    for (const TimedMessage& filling :
         {shortMessage(0, 0xB0, 11, 64), shortMessage(0, 0xE0, 0, 64), shortMessage(0, 0xD0, 64),
          shortMessage(0, 0xA0, 60, 64), shortMessage(0, 0x91, 60, 64), shortMessage(0, 0xB1, 66, 127),
          longMessage(0, exclusive), shortMessage(0, 0xB1, 123, 0), shortMessage(0, 0x81, 60, 0)}) {
        for (const TimedMessage& end :
             {shortMessage(1, 0x80), shortMessage(1, 0x90), shortMessage(1, 0xB0, 64, 0),
              shortMessage(1, 0xB0, 66, 0), shortMessage(1, 0xB0, 69, 0), shortMessage(1, 0xB0, 120),
              shortMessage(1, 0xB0, 123)}) {
            TimedMessageLine line;
            line.insert(shortMessage(0, 0x90, 60, 64));
            for (const std::uint8_t pedal : holdPedals) {
                line.insert(shortMessage(0, 0xB0, pedal, 64));
            }
            EXPECT_GT(filledWith(line, filling), most / 3);
            EXPECT_TRUE(line.insert(end)) << testing::PrintToString(bytesOf(filling));
        }
    }
}

TEST(TimedMessageLine, WhatEndsSomethingFindsRoomWhereNothingElseDoes)
{
    for (const TimedMessage& end :
         {shortMessage(0, 0x80), shortMessage(0, 0x90), shortMessage(0, 0xB0, 64, 63),
          shortMessage(0, 0xB0, 69, 0), shortMessage(0, 0xB0, 120), shortMessage(0, 0xB0, 123)}) {
        TimedMessageLine line;
        EXPECT_EQ(filledWith(line, shortMessage(0, 0xB0, 7, 1)), most);
        EXPECT_FALSE(line.insert(shortMessage(0, 0x90, 60, 1)));
        EXPECT_FALSE(line.insert(longMessage(0, {0xF0, 1, 2, 0xF7})));
        EXPECT_TRUE(line.insert(end));
    }
}

TEST(TimedMessageLine, OwnsTheBytesOfLongMessages)
{
    TimedMessageLine line;
    Bytes one{0xF0, 1, 2, 0xF7};
    Bytes other{0xF0, 3, 4, 5, 0xF7};
    EXPECT_TRUE(line.insert(longMessage(9, one)));
    EXPECT_TRUE(line.insert(longMessage(4, other)));
    const std::vector<Bytes> expected{other, one};
    std::ranges::fill(one, std::uint8_t{0});
    std::ranges::fill(other, std::uint8_t{0});
    EXPECT_EQ(drained(line), expected);
}

TEST(TimedMessageLine, RefusesLongBytesThatFindNoRoomAndTakesBackWhatIsGone)
{
    TimedMessageLine line;
    const Bytes half(TimedMessageLine::longCapacity / 2, 1);
    const Bytes other(TimedMessageLine::longCapacity / 2, 2);
    const Bytes more(4, 3);
    EXPECT_TRUE(line.insert(longMessage(0, half)));
    EXPECT_TRUE(line.insert(longMessage(1, other)));
    EXPECT_FALSE(line.insert(longMessage(2, more)));
    EXPECT_TRUE(line.insert(shortMessage(3, 0xB0)));
    line.removeFront();
    EXPECT_TRUE(line.insert(longMessage(2, more)));
    EXPECT_THAT(drained(line), ElementsAre(other, more, Bytes{0xB0, 60, 0}));
    EXPECT_TRUE(line.insert(longMessage(0, Bytes(TimedMessageLine::longCapacity, 4))));
}

TEST(TimedMessageLine, ClearedItIsEmptyAndTakesAllAgain)
{
    TimedMessageLine line;
    line.insert(shortMessage(1, 0xB0));
    line.insert(longMessage(0, Bytes(TimedMessageLine::longCapacity, 4)));
    line.removeFront();
    line.clear();
    EXPECT_TRUE(line.isEmpty());
    EXPECT_TRUE(line.upTo(1000).empty());
    EXPECT_TRUE(line.insert(longMessage(0, Bytes(TimedMessageLine::longCapacity, 4))));
}

TEST(ShortMessage, TellsTheLengthOfEachMessageByItsStatus)
{
    for (const int channel : {0, 15}) {
        EXPECT_EQ(shortMessageLength(statusOf(STATUS_NOTEOFF, channel)), 3);
        EXPECT_EQ(shortMessageLength(statusOf(STATUS_NOTEON, channel)), 3);
        EXPECT_EQ(shortMessageLength(statusOf(STATUS_PPRESSURE, channel)), 3);
        EXPECT_EQ(shortMessageLength(statusOf(STATUS_CONTROLLER, channel)), 3);
        EXPECT_EQ(shortMessageLength(statusOf(STATUS_PROGRAM, channel)), 2);
        EXPECT_EQ(shortMessageLength(statusOf(STATUS_CPRESSURE, channel)), 2);
        EXPECT_EQ(shortMessageLength(statusOf(STATUS_PITCHBEND, channel)), 3);
    }
    EXPECT_EQ(dataLength(0xF0), 0);
    EXPECT_EQ(dataLength(0xF1), 1);
    EXPECT_EQ(dataLength(0xF2), 2);
    EXPECT_EQ(dataLength(0xF3), 1);
    for (const std::uint8_t status : Bytes{0xF4, 0xF5, 0xF6, 0xF7, 0xF8, 0xFA, 0xFE, 0xFF}) {
        EXPECT_EQ(dataLength(status), 0);
    }
}

TEST(ShortMessage, TellsWhatBegins)
{
    EXPECT_TRUE(isNoteOn({0x9F, 0, 1}));
    EXPECT_FALSE(isNoteOn({0x9F, 0, 0}));
    EXPECT_FALSE(isNoteOn({0x8F, 0, 1}));
    EXPECT_TRUE(isChannelStatus(0x80));
    EXPECT_TRUE(isChannelStatus(0xEF));
    EXPECT_FALSE(isChannelStatus(0x7F));
    EXPECT_FALSE(isChannelStatus(0xF0));
    EXPECT_FALSE(isChannelStatus(0x190));
}

} // namespace

} // namespace volvelle::test
