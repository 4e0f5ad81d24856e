#pragma once

#include "hearing/HeardChord.h"
#include "phrases/ArrangementTracks.h"

#include <array>
#include <vector>

namespace volvelle {

// The chords of sixteen beats, in order, and what sounds at each sixteenth.
class Harmony {
public:
    static constexpr int sixteenths = arrangementBeats * 4;

    // Chords from the end on are left out.
    explicit Harmony(std::vector<HeardChord> list);

    // The chord that sounds at a sixteenth, null before the first one and outside 0 to 63.
    const HeardChord* chordAt(int sixteenth) const;

    // The sixteenth at which the next chord begins, 64 after the last.
    int endOf(std::size_t chord) const;

    std::vector<HeardChord> chords;

private:
    std::array<int, sixteenths> places{}; // in chords, -1 before the first
};

} // namespace volvelle
