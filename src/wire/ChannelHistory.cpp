#include "wire/ChannelHistory.h"

#include "wire/SystemExclusive.h"

#include <algorithm>
#include <utility>

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
    if (index % stride == 0) {
        exclusiveSnapshots.push_back(counting);
    }
    std::size_t replaced = none;
    if (change.resets) {
        lastOfKey.clear();
        counting.clear();
    } else if (const auto [last, isNew] = lastOfKey.try_emplace(settingKey(message), index); !isNew) {
        replaced = std::exchange(last->second, index);
        exclusives[replaced].replacedBy = index;
    }
    const std::size_t before = index == 0 ? none : exclusives.back().lastReset;
    exclusives.push_back({seconds, change.resets ? index : before, none, number});
    count(index, replaced);
}

void ChannelHistory::count(std::size_t index, std::size_t replaced)
{
    const auto place = std::ranges::lower_bound(counting, replaced);
    if (place != counting.end() && *place == replaced) {
        counting.erase(place);
    }
    if (counting.size() == ExclusiveMemory::maximumMessages) {
        const bool hasReset = counting.front() == exclusives[index].lastReset;
        counting.erase(counting.begin() + (hasReset ? 1 : 0));
    }
    counting.push_back(index);
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

std::span<const std::uint32_t> ChannelHistory::exclusivesBefore(double seconds,
                                                                Numbers& numbers) const noexcept
{
    const auto behind =
        std::lower_bound(exclusives.begin(), exclusives.end(), seconds,
                         [](const Exclusive& exclusive, double time) { return exclusive.seconds < time; });
    const auto end = static_cast<std::size_t>(behind - exclusives.begin());
    const std::size_t reset = end == 0 ? none : exclusives[end - 1].lastReset;
    std::size_t size = 0;
    const auto keep = [&](std::size_t index) {
        const bool isBehind = reset == none || index >= reset;
        if (isBehind && exclusives[index].replacedBy >= end) {
            numbers[size++] = exclusives[index].number;
        }
    };
    const std::size_t snapshot = end / stride;
    const bool isKnown = snapshot < exclusiveSnapshots.size();
    std::ranges::for_each(isKnown ? exclusiveSnapshots[snapshot] : counting, keep);
    for (std::size_t i = snapshot * stride; i < end; ++i) {
        keep(i);
    }
    const std::size_t over = size - std::min(size, ExclusiveMemory::maximumMessages);
    if (reset != none) {
        numbers[over] = numbers[0];
    }
    return std::span(numbers).subspan(over, size - over);
}

} // namespace volvelle
