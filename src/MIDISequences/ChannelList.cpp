#include "MIDISequences/ChannelList.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr std::uint8_t channelCount = 16;

} // namespace

bool hasChannel(const std::vector<std::uint8_t>& channels, std::uint8_t channel)
{
    return std::ranges::find(channels, channel) != channels.end();
}

void openAllChannels(std::vector<std::uint8_t>& channels)
{
    channels.clear();
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        channels.push_back(channel);
    }
}

void soloChannel(std::vector<std::uint8_t>& channels, std::uint8_t channel)
{
    if (channel < channelCount) {
        channels.assign(1, channel);
    }
}

void muteChannel(std::vector<std::uint8_t>& channels, std::uint8_t channel)
{
    const auto place = std::ranges::find(channels, channel);
    if (channel < channelCount && place != channels.end()) {
        channels.erase(place);
    }
}

void unmuteChannel(std::vector<std::uint8_t>& channels, std::uint8_t channel)
{
    if (channel < channelCount && !hasChannel(channels, channel)) {
        channels.push_back(channel);
    }
}

} // namespace volvelle
