#include "MIDISequences/ChannelFilter.h"

#include "MIDISequences/ChannelList.h"

namespace volvelle {

ChannelFilter::ChannelFilter()
{
    channels.reserve(16);
    ChannelFilter::reset();
}

void ChannelFilter::reset()
{
    openAllChannels(channels);
}

bool ChannelFilter::filters(std::uint8_t channel) const
{
    return !hasChannel(channels, channel);
}

void ChannelFilter::solo(std::uint8_t channel)
{
    soloChannel(channels, channel);
}

void ChannelFilter::mute(std::uint8_t channel)
{
    muteChannel(channels, channel);
}

void ChannelFilter::unmute(std::uint8_t channel)
{
    unmuteChannel(channels, channel);
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
