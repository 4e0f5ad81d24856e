#pragma once

#include <string>

namespace volvelle {

// One named chord of a chord pattern.
struct ScoreChord {
    double position = 0; // beats from the start
    std::string name;    // as "Am7"

    bool operator==(const ScoreChord&) const = default;
};

} // namespace volvelle
