#include "wire/ChannelHistory.h"

#include "tests/wire/ToldState.h"

#include <gmock/gmock.h>

#include <random>
#include <string>
#include <vector>

namespace volvelle::test {

namespace {

using Bytes = std::vector<std::uint8_t>;
using testing::ElementsAre;

const Bytes generalMIDIOn{0xF0, 0x7E, 0x7F, 0x09, 0x01, 0xF7};

Bytes masterVolume(std::uint8_t value)
{
    return {0xF0, 0x7F, 0x7F, 0x04, 0x01, 0x00, value, 0xF7};
}

Bytes octaveTuning(std::uint8_t channels)
{
    Bytes bytes{0xF0, 0x7E, 0x7F, 0x08, 0x08, 0x00, 0x00, channels};
    bytes.resize(20, 0x40);
    bytes.push_back(0xF7);
    return bytes;
}

struct Message {
    double seconds = 0.0;
    Bytes bytes;
};

ShortMessage shortMessage(const Bytes& bytes)
{
    return {bytes[0], bytes[1], bytes[2]};
}

std::vector<Message> piece(std::size_t count)
{
    std::mt19937 random(31);
    const auto draw = [&](unsigned below) { return static_cast<std::uint8_t>(random() % below); };
    const std::array<std::uint8_t, 13> numbers{0, 32, 1, 7, 11, 64, 6, 38, 98, 99, 100, 101, 121};
    std::vector<Message> messages;
    double seconds = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        seconds += draw(3) * 0.25;
        if (draw(100) == 0) {
            messages.push_back({seconds, draw(3) == 0 ? generalMIDIOn : octaveTuning(draw(16))});
            continue;
        }
        const auto kind = static_cast<std::uint8_t>(draw(3) == 0 ? 0xA0 + 0x10 * draw(5) : 0xB0);
        const std::uint8_t first = kind == 0xB0 ? numbers.at(draw(13)) : draw(128);
        messages.push_back({seconds, {static_cast<std::uint8_t>(kind | draw(4)), first, draw(4)}});
    }
    return messages;
}

// One message after the other, from the start.
DeviceChannels walked(const std::vector<Message>& messages, double seconds)
{
    DeviceChannels channels;
    for (const Message& message : messages) {
        if (message.seconds >= seconds) {
            break;
        }
        if (message.bytes.size() > 3) {
            channels.apply(ExclusiveChange::of(message.bytes));
        } else {
            channels.apply(shortMessage(message.bytes));
        }
    }
    return channels;
}

ChannelHistory historyOf(const std::vector<Message>& messages)
{
    ChannelHistory history;
    std::uint32_t number = 0;
    for (const Message& message : messages) {
        if (message.bytes.size() > 3) {
            history.addExclusive(message.seconds, message.bytes, number);
        } else {
            history.add(message.seconds, shortMessage(message.bytes));
        }
        ++number;
    }
    return history;
}

std::vector<std::uint32_t> exclusivesAt(const ChannelHistory& history, double seconds)
{
    std::vector<std::uint32_t> numbers;
    history.forEachExclusive(seconds, [&](std::uint32_t number) { numbers.push_back(number); });
    return numbers;
}

} // namespace

class ChannelHistoryRandomTest : public testing::TestWithParam<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Lengths, ChannelHistoryRandomTest,
                         testing::Values(0, 1, 40, 1023, 1024, 1025, 5000));

TEST_P(ChannelHistoryRandomTest, FindsWhatWalkingThroughAllMessagesFinds)
{
    const std::vector<Message> messages = piece(GetParam());
    const ChannelHistory history = historyOf(messages);
    const double end = messages.empty() ? 1.0 : messages.back().seconds + 1.0;
    for (int i = 0; i <= 60; ++i) {
        const double seconds = end * i / 60.0;
        DeviceChannels found;
        history.find(seconds, found);
        const DeviceChannels expected = walked(messages, seconds);
        for (int channel = 0; channel < channelCount; ++channel) {
            EXPECT_EQ(told(found[channel], channel), told(expected[channel], channel)) << seconds;
        }
    }
}

TEST(ChannelHistory, AMessageCountsFromItsTimeOn)
{
    const ChannelHistory history = historyOf({{2.0, {0xB0, 7, 33}}});
    DeviceChannels found;
    history.find(2.0, found);
    EXPECT_EQ(found[0].controller(7), 100);
    history.find(2.000001, found);
    EXPECT_EQ(found[0].controller(7), 33);
}

TEST(ChannelHistory, AResetBringsAllChannelsBack)
{
    const ChannelHistory history =
        historyOf({{1.0, {0xB0, 7, 33}}, {1.0, {0xBF, 7, 34}}, {2.0, generalMIDIOn}, {3.0, {0xB0, 7, 35}}});
    DeviceChannels found;
    history.find(2.5, found);
    EXPECT_EQ(found[0].controller(7), 100);
    EXPECT_EQ(found[15].controller(7), 100);
    history.find(3.5, found);
    EXPECT_EQ(found[0].controller(7), 35);
}

TEST(ChannelHistory, OfVeryManySettingsTheNewestAreTold)
{
    ChannelHistory history;
    history.addExclusive(0.0, generalMIDIOn, 0);
    for (std::uint32_t i = 1; i <= 1000; ++i) {
        Bytes bytes{0xF0,
                    0x41,
                    0x10,
                    0x42,
                    0x12,
                    0x40,
                    static_cast<std::uint8_t>(1 + i / 128),
                    static_cast<std::uint8_t>(i % 128)};
        bytes.resize(12);
        bytes.push_back(0xF7);
        history.addExclusive(1.0, bytes, i);
    }
    const std::vector<std::uint32_t> found = exclusivesAt(history, 2.0);
    ASSERT_EQ(found.size(), ExclusiveMemory::maximumMessages);
    EXPECT_EQ(found[0], 0U);
    EXPECT_EQ(found[1], 1000 - ExclusiveMemory::maximumMessages + 2);
    EXPECT_EQ(found.back(), 1000U);
}

// As a device that got them one after the other remembers them.
class ChannelHistoryExclusivesTest : public testing::TestWithParam<int> {};

INSTANTIATE_TEST_SUITE_P(Resets, ChannelHistoryExclusivesTest, testing::Values(0, 700, 30'000));

TEST_P(ChannelHistoryExclusivesTest, CountAsInADeviceThatGotThemAll)
{
    constexpr int many = 100'000;
    std::mt19937 random(5);
    std::vector<Bytes> messages;
    ChannelHistory history;
    for (int i = 0; i < many; ++i) {
        const bool isReset = GetParam() != 0 && i > 0 && random() % static_cast<unsigned>(GetParam()) == 0;
        const auto key = static_cast<std::uint8_t>(random() % 128);
        const auto program = static_cast<std::uint8_t>(random() % (i < many / 2 ? 2 : 9));
        const auto value = static_cast<std::uint8_t>(random() % 128);
        messages.push_back(isReset ? generalMIDIOn
                                   : Bytes{0xF0, 0x7F, 0x7F, 8, 2, program, 1, key, value, 0, 0, 0xF7});
        history.addExclusive(i, messages.back(), static_cast<std::uint32_t>(i));
    }
    ExclusiveMemory device;
    for (int i = 0; i <= many; ++i) {
        if (i % 997 == 0 || i % 1024 < 2 || i == many) {
            std::vector<Bytes> expected;
            for (std::size_t place = 0; place < device.size(); ++place) {
                expected.emplace_back(device[place].begin(), device[place].end());
            }
            std::vector<Bytes> found;
            history.forEachExclusive(i, [&](std::uint32_t number) { found.push_back(messages[number]); });
            ASSERT_EQ(found, expected) << i;
        }
        if (i < many) {
            device.apply(messages[static_cast<std::size_t>(i)]);
        }
    }
}

TEST(ChannelHistory, OfExclusivesTheLastResetAndTheLastOfEachSettingBehindItCount)
{
    const ChannelHistory history = historyOf({{0.0, masterVolume(1)},
                                              {1.0, generalMIDIOn},
                                              {2.0, masterVolume(2)},
                                              {3.0, octaveTuning(1)},
                                              {4.0, masterVolume(3)},
                                              {5.0, {0xF0, 0x7D, 1, 2, 3, 0xF7}},
                                              {6.0, generalMIDIOn},
                                              {7.0, octaveTuning(1)}});
    EXPECT_THAT(exclusivesAt(history, 0.0), ElementsAre());
    EXPECT_THAT(exclusivesAt(history, 0.5), ElementsAre(0));
    EXPECT_THAT(exclusivesAt(history, 1.0), ElementsAre(0));
    EXPECT_THAT(exclusivesAt(history, 1.5), ElementsAre(1));
    EXPECT_THAT(exclusivesAt(history, 3.5), ElementsAre(1, 2, 3));
    EXPECT_THAT(exclusivesAt(history, 5.5), ElementsAre(1, 3, 4));
    EXPECT_THAT(exclusivesAt(history, 6.5), ElementsAre(6));
    EXPECT_THAT(exclusivesAt(history, 9.0), ElementsAre(6, 7));
}

} // namespace volvelle::test
