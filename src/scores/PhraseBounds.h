#pragma once

#include "scores/ScoreKind.h"

#include <cstddef>
#include <string_view>

// What a phrase has to keep to be heard well in any arrangement; docs/ear.md tells them. [any]
namespace volvelle {

// The bounds of one kind.
struct PhraseBounds {
    std::string_view what;
    int lowest; // keys, with two semitones of room above
    int highest;
    int least; // notes; of a chord pattern chords
    int most;
    std::size_t voices; // at one position
};

const PhraseBounds& phraseBounds(ScoreKind kind);

// MARK: Over all chord patterns, moved by -6 to 6 semitones

inline constexpr int farthestMove = 6;       // semitones down and up
inline constexpr double mostOutside = 0.08;  // of the time, a tone of a follower outside the chord
inline constexpr double leastMet = 0.5;      // of the chord changes, by a bass
inline constexpr double leastRoots = 0.5;    // of the chords, by a bass
inline constexpr double leastOnKicks = 0.25; // of the notes of a bass, over all drum phrases
inline constexpr double mostRepeats = 0.3;   // of the steps of a lead
inline constexpr double leastDistance = 0.4; // of the places at which two phrases of a folder are struck

// MARK: Of one phrase

inline constexpr int leastDistinctChords = 3;
inline constexpr double longestChord = 8;       // beats
inline constexpr double leastLeadVelocity = 92; // mean
inline constexpr int leastGroundedBars = 3;     // of a bass, with a note on beats 1 and 3
inline constexpr int leastKicks = 4;

// MARK: Of a folder

inline constexpr int ofColours = 5;    // one phrase of so many is a colour at most
inline constexpr int ofFullDrums = 10; // one drum phrase of so many has more than fullDrums hits at most
inline constexpr int fullDrums = 80;

} // namespace volvelle
