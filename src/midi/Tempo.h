#pragma once

#include <cstdint>

namespace volvelle {

// Sample frames of a beat at 48,000 Hz and 120 beats a minute.
inline constexpr double usualSamplesPerBeat = 24000.0;

// The three bytes of a Set Tempo record, and the number that they stand for.
struct Tempo {
    std::uint8_t b1 = 0;
    std::uint8_t b2 = 0;
    std::uint8_t b3 = 0;
    std::uint32_t value = 0;
};

} // namespace volvelle
