#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace volvelle::scores {

// A chord name of a chord pattern: a root and one of 8 5 M m o + sus2 sus4 -5 6 m6 7 m7 o7.
struct ChordName {
    int root = 0;               // pitch class
    std::vector<int> intervals; // semitones above the root, root first, all within the octave

    // The set of pitch classes as twelve bits, C lowest.
    unsigned tones() const;
};

// Reads a name as "F#m7", or answers nothing.
std::optional<ChordName> chordNamed(std::string_view name);

// The types whose names are found again, on some roots at least, as "8 5 M m".
std::string chordTypes();

// The name under which these pitch classes are found again when the phrase is loaded: of all names with
// exactly these tones the last one, by type and then by root. Empty if no chord has them.
std::string chordDetected(unsigned tones);

} // namespace volvelle::scores
