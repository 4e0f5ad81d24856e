#pragma once

#include "wire/MIDIConstants.h"

#include <array>
#include <cstdint>

namespace volvelle {

// A channel message as it is on the wire; a message of two bytes has a third that nobody reads.
using ShortMessage = std::array<std::uint8_t, 3>;

constexpr int channelCount = 16;
constexpr int drumChannel = 9; // counted from 0

// The pedals that hold notes.
inline constexpr std::array<std::uint8_t, 3> holdPedals{CONTROLLER_SUSTAIN, CONTROLLER_SOSTENUTO,
                                                        CONTROLLER_HOLD2};

// The first byte of a message, not one of its data.
constexpr bool isStatus(std::uint8_t byte) noexcept
{
    return byte >= STATUS_NOTEOFF;
}

constexpr bool isChannelStatus(std::uint32_t status) noexcept
{
    return status >= STATUS_NOTEOFF && status < STATUS_SYSEX;
}

constexpr int channelOf(std::uint8_t status) noexcept
{
    return status & 0x0F;
}

constexpr int channelOf(const ShortMessage& message) noexcept
{
    return channelOf(message[0]);
}

// 0x80 to 0xF0: what a message is, whatever its channel.
constexpr std::uint8_t kindOf(std::uint8_t status) noexcept
{
    return status & 0xF0;
}

constexpr std::uint8_t kindOf(const ShortMessage& message) noexcept
{
    return kindOf(message[0]);
}

// The status of that kind on a channel; of a greater number its four lowest bits.
constexpr std::uint8_t statusOf(std::uint8_t kind, int channel) noexcept
{
    return static_cast<std::uint8_t>(kind | (channel & 0x0F));
}

constexpr bool isNoteOn(const ShortMessage& message) noexcept
{
    return kindOf(message) == STATUS_NOTEON && message[2] != 0;
}

constexpr bool isController(const ShortMessage& message, int number) noexcept
{
    return kindOf(message) == STATUS_CONTROLLER && message[1] == number;
}

// Data bytes after a status. A system exclusive message has as many as it likes: 0 here, as for the messages
// that have none.
constexpr int dataLength(std::uint8_t status) noexcept
{
    switch (kindOf(status)) {
    case STATUS_PROGRAM:
    case STATUS_CPRESSURE:
        return 1;
    case STATUS_SYSEX:
        return status == STATUS_SONGPOSITION                              ? 2
               : status == STATUS_TIMECODE || status == STATUS_SONGSELECT ? 1
                                                                          : 0;
    default:
        return 2;
    }
}

// Bytes of a channel message on the wire, by its status.
constexpr int shortMessageLength(std::uint8_t status) noexcept
{
    return 1 + dataLength(status);
}

} // namespace volvelle
