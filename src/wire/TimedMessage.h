#pragma once

#include "wire/ShortMessage.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace volvelle {

// A MIDI message and its place in the block to come.
struct TimedMessage {
    int offset = 0; // frames from the first frame of the block
    std::uint8_t cable = 0;
    ShortMessage shortBytes{};
    int length = 0; // bytes
    // Of a message of more than three bytes; valid while it is looked at.
    const std::uint8_t* longBytes = nullptr;

    bool isLong() const noexcept { return longBytes != nullptr; }

    std::span<const std::uint8_t> bytes() const noexcept
    {
        return {isLong() ? longBytes : shortBytes.data(), static_cast<std::size_t>(length)};
    }
};

} // namespace volvelle
