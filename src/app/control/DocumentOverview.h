#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace volvelle {

// What is told of a document beside its circle. [main]
struct DocumentOverview {
    // A channel with notes.
    struct Part {
        int channel = 0; // from 0
        std::string label;
        int notes = 0;

        bool operator==(const Part&) const = default;
    };

    struct Chord {
        double position = 0.0; // beats
        std::string name;

        bool operator==(const Chord&) const = default;
    };

    std::vector<Part> parts; // those of an arrangement in its order, others after them by channel
    std::vector<Chord> chords;
    double beats = 0.0; // of the longest track
    double bpm = 120.0; // at the beginning
    int notes = 0;

    static constexpr int beatsPerBar = 4;

    int bars() const; // begun ones count

    // "4 bars · 213 notes", "1 bar · 1 note".
    std::string metaLine() const;

    // The name of the chord that sounds at a beat, empty before the first.
    std::string chordAt(double beat) const;

    // The music as a text for those who do not see the circle: parts, chords, and with a position where it
    // is.
    std::string description() const;
    std::string positionText(double beat) const; // "Bar 2, beat 3, F"
};

// Of the bytes of a MIDI file; those that are none give an empty one.
DocumentOverview overviewOf(const std::vector<std::uint8_t>& data);

// "2.3" for the sixth beat.
std::string barAndBeat(double beat);

} // namespace volvelle
