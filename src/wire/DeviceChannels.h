#pragma once

#include "wire/ChannelState.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace volvelle {

// What a system exclusive message changes in the channels of a device.
struct ExclusiveChange {
    bool resets = false;           // all of them
    std::uint16_t octaveTuned = 0; // bit n: channel n chose no tuning program any more

    static ExclusiveChange of(std::span<const std::uint8_t> message) noexcept;

    bool isNothing() const noexcept { return !resets && octaveTuned == 0; }
};

// The sixteen channels of a device. [any]
class DeviceChannels {
public:
    const ChannelState& operator[](int channel) const noexcept
    {
        return states[static_cast<std::size_t>(channel)];
    }

    void apply(const ShortMessage& message) noexcept
    {
        states[static_cast<std::size_t>(channelOf(message))].apply(message);
    }

    void apply(const ExclusiveChange& change) noexcept;

    void clear() noexcept { states.fill(ChannelState()); }

private:
    std::array<ChannelState, channelCount> states;
};

} // namespace volvelle
