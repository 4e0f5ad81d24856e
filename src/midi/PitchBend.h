#pragma once

#include <cstdint>

namespace volvelle {

// The two data bytes of a pitch bend, and both as one 16-bit number with `msb` as its low byte. Bytes come
// out as they went in: the 7-bit packing of MIDI plays no part here.
class PitchBend {
public:
    std::uint8_t msb = 0; // first data byte
    std::uint8_t lsb = 0; // second data byte
    std::uint16_t value = 0;
    std::uint16_t* ptr = nullptr; // set during the two operations only

    // msb + 256 * lsb, also stored in `value`.
    std::uint16_t getIntValue();

    // The exact inverse of getIntValue.
    void setIntValue(std::uint16_t number);
};

} // namespace volvelle
