#pragma once

#include <cstdint>

namespace volvelle {

struct KeySignature {
    std::uint8_t sf = 0; // sharps, or flats in two's complement
    std::uint8_t mi = 0; // 0 major, 1 minor
};

} // namespace volvelle
