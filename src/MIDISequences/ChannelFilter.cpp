#include "MIDISequences/ChannelFilter.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr std::uint8_t channelCount = 16;

} // namespace

ChannelFilter::ChannelFilter()
{
    channels.reserve(channelCount);
    ChannelFilter::reset();
}

void ChannelFilter::reset()
{
    channels.clear();
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        channels.push_back(channel);
    }
}

bool ChannelFilter::filters(std::uint8_t channel) const
{
    return std::ranges::find(channels, channel) == channels.end();
}

void ChannelFilter::solo(std::uint8_t channel)
{
    if (channel < channelCount) {
        channels.assign(1, channel);
    }
}

void ChannelFilter::mute(std::uint8_t channel)
{
    const auto place = std::ranges::find(channels, channel);
    if (channel < channelCount && place != channels.end()) {
        channels.erase(place);
    }
}

void ChannelFilter::unmute(std::uint8_t channel)
{
    if (channel < channelCount && ChannelFilter::filters(channel)) {
        channels.push_back(channel);
    }
}

void ChannelFilter::unmuteAll()
{
    reset();
}

void ChannelFilter::muteAll()
{
    channels.clear();
}

} // namespace volvelle
