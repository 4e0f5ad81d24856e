#pragma once

#include <cstdint>
#include <vector>

namespace volvelle {

// A note as an arrangement plays it: on the grid of sixteenths.
struct HeardNote {
    int position = 0; // sixteenths from the start
    int length = 0;   // sixteenths that it sounds
    std::uint8_t key = 60;
    std::uint8_t velocity = 76;

    bool operator==(const HeardNote&) const = default;
};

// By position.
using HeardNotes = std::vector<HeardNote>;

} // namespace volvelle
