#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <string>
#include <vector>

namespace volvelle {

struct FoundNote {
    double position = 0.0; // beats
    double duration = 0.0; // beats
    std::uint8_t number = 0;
    std::uint8_t velocity = 0;
    std::uint8_t releaseVelocity = 0;
    std::uint8_t channel = 0;
};

struct FoundChord {
    double position = 0.0; // beats
    double duration = 0.0; // beats, up to the next chord or the end
    std::string shortName;
    std::string longName;
    std::vector<int> notes; // keys from middle C upward, root first
};

// The chords of a file, found as the chord track finds them: from the notes of chordChannel where there are
// any, else from all channels but drumChannel. `notes` ascend by position, `length` is the file's in beats.
std::vector<FoundChord> findChords(const std::vector<FoundNote>& notes, double length);

} // namespace volvelle
