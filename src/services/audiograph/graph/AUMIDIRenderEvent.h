#pragma once

#include <cstdint>

namespace volvelle {

// A MIDI message on its way into a unit.
struct AUMIDIRenderEvent {
    int offset = 0; // frames of the unit's own rate, from the first frame of the block
    std::uint8_t cable = 0;
    std::uint8_t shortBytes[3] = {};
    int length = 0; // bytes
    const std::uint8_t* longBytes =
        nullptr; // of a message of more than three bytes; valid while it is looked at

    const std::uint8_t* bytes() const { return longBytes != nullptr ? longBytes : shortBytes; }
};

} // namespace volvelle
