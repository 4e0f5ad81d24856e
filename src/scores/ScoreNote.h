#pragma once

#include <cstdint>

namespace volvelle {

// One sounding note of a score.
struct ScoreNote {
    double position = 0;      // beats from the start
    double duration = 0;      // beats that it sounds, already shortened for the gap after it
    std::uint8_t number = 60; // MIDI key, 0 to 127
    std::uint8_t velocity = 76;
    int line = 0; // of the text where it stands, counted from 1; 0 where there is none

    // Whether both sound alike.
    bool operator==(const ScoreNote& other) const
    {
        return position == other.position && duration == other.duration && number == other.number &&
               velocity == other.velocity;
    }
};

} // namespace volvelle
