#pragma once

#include <cstdint>

namespace volvelle {

// A sound as a channel asks for it, by bank select and program change.
struct SoundChoice {
    std::uint8_t channel = 0;
    std::uint8_t bankMSB = 0;
    std::uint8_t bankLSB = 0; // not looked at
    std::uint8_t program = 0;
};

} // namespace volvelle
