#include "wire/ChannelHistory.h"

#include "wire/SystemExclusive.h"

#include <algorithm>
#include <limits>

namespace volvelle {

void ChannelHistory::add(double seconds, const ShortMessage& message)
{
    append({seconds, message, {}});
}

void ChannelHistory::addExclusive(double seconds, std::span<const std::uint8_t> message, std::uint32_t number)
{
    const ExclusiveEffect effect = effectOf(message);
    if (effect == ExclusiveEffect::none) {
        return;
    }
    const ExclusiveChange change = ExclusiveChange::of(message);
    if (!change.isNothing()) {
        append({seconds, {}, change});
    }
    const std::size_t index = exclusives.size();
    if (change.resets) {
        lastOfKey.clear();
    } else if (const auto [last, isNew] = lastOfKey.try_emplace(settingKey(message), index); !isNew) {
        exclusives[last->second].replacedBy = index;
        last->second = index;
    }
    const std::size_t lastReset = change.resets || index == 0 ? index : exclusives.back().lastReset;
    exclusives.push_back({seconds, lastReset, std::numeric_limits<std::size_t>::max(), number});
}

void ChannelHistory::append(const Message& message)
{
    if (messages.size() % stride == 0) {
        snapshots.push_back(latest);
    }
    messages.push_back(message);
    apply(message, latest);
}

void ChannelHistory::apply(const Message& message, DeviceChannels& channels) noexcept
{
    if (message.bytes[0] != 0) {
        channels.apply(message.bytes);
    } else {
        channels.apply(message.change);
    }
}

void ChannelHistory::find(double seconds, DeviceChannels& channels) const noexcept
{
    const auto behind =
        std::lower_bound(messages.begin(), messages.end(), seconds,
                         [](const Message& message, double time) { return message.seconds < time; });
    const auto count = static_cast<std::size_t>(behind - messages.begin());
    const std::size_t snapshot = count / stride;
    channels = snapshot < snapshots.size() ? snapshots[snapshot] : latest;
    for (std::size_t i = snapshot * stride; i < count; ++i) {
        apply(messages[i], channels);
    }
}

std::size_t ChannelHistory::exclusivesBefore(double seconds) const noexcept
{
    const auto behind =
        std::lower_bound(exclusives.begin(), exclusives.end(), seconds,
                         [](const Exclusive& exclusive, double time) { return exclusive.seconds < time; });
    return static_cast<std::size_t>(behind - exclusives.begin());
}

} // namespace volvelle
