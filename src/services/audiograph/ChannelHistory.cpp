#include "services/audiograph/ChannelHistory.h"

#include <algorithm>

namespace volvelle {

void ChannelHistory::add(double seconds, const std::array<std::uint8_t, 3>& bytes)
{
    if (messages.size() % stride == 0) {
        snapshots.push_back(latest);
    }
    const std::size_t channel = bytes[0] & 0x0FU;
    messages.push_back({seconds, bytes});
    latest[channel].apply(bytes);
    mentioned[channel].touch(bytes);
}

void ChannelHistory::find(double seconds, Channels& channels) const noexcept
{
    const auto behind =
        std::lower_bound(messages.begin(), messages.end(), seconds,
                         [](const Message& message, double time) { return message.seconds < time; });
    const auto count = static_cast<std::size_t>(behind - messages.begin());
    const std::size_t snapshot = count / stride;
    channels = snapshot < snapshots.size() ? snapshots[snapshot] : latest;
    for (std::size_t i = snapshot * stride; i < count; ++i) {
        channels[messages[i].bytes[0] & 0x0FU].apply(messages[i].bytes);
    }
    for (std::size_t i = 0; i < channelCount; ++i) {
        channels[i].touchAll(mentioned[i]);
    }
}

} // namespace volvelle
