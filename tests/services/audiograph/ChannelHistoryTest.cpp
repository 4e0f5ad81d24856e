#include "services/audiograph/ChannelHistory.h"

#include <gmock/gmock.h>

#include <random>
#include <string>
#include <vector>

namespace volvelle::test {

namespace {

struct Message {
    double seconds = 0.0;
    std::array<std::uint8_t, 3> bytes{};
};

std::vector<Message> piece(std::size_t count)
{
    std::mt19937 random(31);
    const auto draw = [&](unsigned below) { return static_cast<std::uint8_t>(random() % below); };
    const std::array<std::uint8_t, 12> numbers{0, 32, 1, 7, 11, 64, 6, 38, 98, 99, 100, 101};
    std::vector<Message> messages;
    double seconds = 0.0;
    for (std::size_t i = 0; i < count; ++i) {
        seconds += draw(3) * 0.25;
        const auto kind = static_cast<std::uint8_t>(draw(3) == 0 ? 0xC0 + 0x10 * draw(3) : 0xB0);
        const std::uint8_t first = kind == 0xB0 ? numbers.at(draw(12)) : draw(128);
        messages.push_back({seconds, {static_cast<std::uint8_t>(kind | draw(4)), first, draw(4)}});
    }
    return messages;
}

std::string told(const ChannelState& state, int channel)
{
    ChannelMessages messages;
    state.tell(channel, messages);
    std::string line;
    for (int i = 0; i < messages.count; ++i) {
        for (const std::uint8_t byte : messages.list[static_cast<std::size_t>(i)]) {
            line += std::to_string(byte) + " ";
        }
    }
    return line;
}

// One message after the other, from the start.
ChannelHistory::Channels walked(const std::vector<Message>& messages, double seconds)
{
    ChannelHistory::Channels channels;
    for (const Message& message : messages) {
        ChannelState& state = channels.at(message.bytes[0] & 0x0FU);
        if (message.seconds < seconds) {
            state.apply(message.bytes);
        } else {
            state.touch(message.bytes);
        }
    }
    return channels;
}

ChannelHistory historyOf(const std::vector<Message>& messages)
{
    ChannelHistory history;
    for (const Message& message : messages) {
        history.add(message.seconds, message.bytes);
    }
    return history;
}

} // namespace

class ChannelHistories : public testing::TestWithParam<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Lengths, ChannelHistories, testing::Values(0, 1, 40, 1023, 1024, 1025, 5000));

TEST_P(ChannelHistories, FindsWhatWalkingThroughAllMessagesFinds)
{
    const std::vector<Message> messages = piece(GetParam());
    const ChannelHistory history = historyOf(messages);
    const double end = messages.empty() ? 1.0 : messages.back().seconds + 1.0;
    for (int i = 0; i <= 60; ++i) {
        const double seconds = end * i / 60.0;
        ChannelHistory::Channels found;
        history.find(seconds, found);
        const ChannelHistory::Channels expected = walked(messages, seconds);
        for (std::size_t channel = 0; channel < found.size(); ++channel) {
            EXPECT_EQ(told(found[channel], static_cast<int>(channel)),
                      told(expected[channel], static_cast<int>(channel)))
                << seconds;
        }
    }
}

TEST(ChannelHistory, AMessageCountsFromItsTimeOn)
{
    const ChannelHistory history = historyOf({{2.0, {0xB0, 7, 33}}});
    ChannelHistory::Channels at;
    ChannelHistory::Channels behind;
    history.find(2.0, at);
    history.find(2.000001, behind);
    EXPECT_EQ(told(at[0], 0), "176 121 0 176 7 100 ");
    EXPECT_EQ(told(behind[0], 0), "176 121 0 176 7 33 ");
}

} // namespace volvelle::test
