#pragma once

#include "wire/DeviceChannels.h"
#include "wire/ExclusiveMemory.h"

#include <cstdint>
#include <span>

namespace volvelle {

// What a device holds by the messages that it got, to be told to another that takes its place. Room is taken
// once, at construction. [any]
class DeviceState {
public:
    void apply(const ShortMessage& message) noexcept { channels.apply(message); }

    // A system exclusive message, whole.
    void applyExclusive(std::span<const std::uint8_t> message) noexcept
    {
        channels.apply(ExclusiveChange::of(message));
        exclusives.apply(message);
    }

    void clear() noexcept
    {
        channels.clear();
        exclusives.clear();
    }

    DeviceChannels channels;
    ExclusiveMemory exclusives;
};

} // namespace volvelle
