#pragma once

#include <array>
#include <cstdint>

namespace volvelle {

// A channel message as it is on the wire; a message of two bytes has a third that nobody reads.
using ShortMessage = std::array<std::uint8_t, 3>;

constexpr int channelCount = 16;

// The pedals that hold notes: sustain, sostenuto, hold.
inline constexpr std::array<std::uint8_t, 3> holdPedals{64, 66, 69};

constexpr int channelOf(const ShortMessage& message) noexcept
{
    return message[0] & 0x0F;
}

// 0x80 to 0xF0: what the message is, whatever its channel.
constexpr int kindOf(const ShortMessage& message) noexcept
{
    return message[0] & 0xF0;
}

constexpr bool isNoteOn(const ShortMessage& message) noexcept
{
    return kindOf(message) == 0x90 && message[2] != 0;
}

// Bytes of a channel message on the wire, by its status.
constexpr int shortMessageLength(int status) noexcept
{
    return (status & 0xE0) == 0xC0 ? 2 : 3;
}

} // namespace volvelle
