#pragma once

#include "app/circle/MIDICircleViewDelegate.h"

#include <string>
#include <vector>

namespace volvelle {

// What a disc shows besides its notes. [any]
struct DiscContent {
    struct Chord {
        double position = 0.0; // beats
        std::string name;

        bool operator==(const Chord&) const = default;
    };

    double beats = usualBeats; // of a full turn
    double beatsPerBar = 4.0;
    std::vector<Chord> chords; // by position
    double position = 0.0;     // beats
    double tempo = 120.0;      // beats a minute
    bool isPlaying = false;
    bool isSmall = false; // a tile's: rim, ink, hub and notes alone
    bool hasTexts = true; // position and tempo in the hub

    // But for where it is and whether it plays.
    bool hasSameMusic(const DiscContent& other) const
    {
        return beats == other.beats && beatsPerBar == other.beatsPerBar && tempo == other.tempo &&
               isSmall == other.isSmall && hasTexts == other.hasTexts && chords == other.chords;
    }

    bool operator==(const DiscContent&) const = default;
};

} // namespace volvelle
