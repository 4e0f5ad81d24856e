#pragma once

namespace volvelle {

// A chord that notes follow, up to the next one.
struct HeardChord {
    int position = 0;   // sixteenths from the start
    unsigned tones = 0; // pitch classes as twelve bits, C lowest
    int root = 0;       // pitch class

    bool hasTone(int pitchClass) const { return (tones >> pitchClass & 1U) != 0; }

    bool operator==(const HeardChord&) const = default;
};

} // namespace volvelle
