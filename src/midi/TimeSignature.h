#pragma once

#include <cstdint>

namespace volvelle {

struct TimeSignature {
    std::uint8_t numerator = 4;   // beats of the bar
    std::uint8_t denumerator = 4; // note value of a beat, as a plain number
    std::uint8_t _8th = 24;       // MIDI clocks per metronome click
    std::uint8_t _32nd = 8;       // 32nd notes per quarter note
};

} // namespace volvelle
