#pragma once

#include <cstdint>

namespace volvelle {

// One sounding note of a score.
struct ScoreNote {
    double position = 0;      // beats from the start
    double duration = 0;      // beats that it sounds, already shortened for the gap behind it
    std::uint8_t number = 60; // MIDI key, 0 to 127
    std::uint8_t velocity = 76;

    bool operator==(const ScoreNote&) const = default;
};

} // namespace volvelle
