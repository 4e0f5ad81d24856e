#pragma once

#include <compare>
#include <cstdint>

namespace volvelle {

// A sound that a sequence is going to ask for.
struct AUMIDIProgram {
    std::uint8_t channel = 0;
    std::uint8_t bankMSB = 0;
    std::uint8_t bankLSB = 0;
    std::uint8_t program = 0;

    auto operator<=>(const AUMIDIProgram&) const = default;
};

} // namespace volvelle
