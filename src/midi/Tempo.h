#pragma once

#include <cstdint>

namespace volvelle {

// The three bytes of a Set Tempo record, and the number that they stand for.
struct Tempo {
    std::uint8_t b1 = 0;
    std::uint8_t b2 = 0;
    std::uint8_t b3 = 0;
    std::uint32_t value = 0;
};

} // namespace volvelle
