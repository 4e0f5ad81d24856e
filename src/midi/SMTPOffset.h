#pragma once

#include <cstdint>

namespace volvelle {

struct SMTPOffset {
    std::uint8_t hours = 0;
    std::uint8_t minutes = 0;
    std::uint8_t seconds = 0;
    std::uint8_t frames = 0;
    std::uint8_t fract = 0; // hundredths of a frame
};

} // namespace volvelle
