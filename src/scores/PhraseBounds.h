#pragma once

#include "hearing/HearingBounds.h"
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

// MARK: Of one phrase

inline constexpr double leastLeadVelocity = 92; // mean
inline constexpr int leastGroundedBars = 3;     // of a bass, with a note on beats 1 and 3

// MARK: Of a folder

inline constexpr double leastDistance = 0.4;        // of the places at which two of its phrases are struck
inline constexpr double leastDistanceOfBars = 0.25; // of the same, the bars of one in any order
inline constexpr double mostThirds = 0.5;           // of the bars of basses step by one from beat 1 to beat 3
inline constexpr int fewBasses = 10;                // fewer may step as they like
inline constexpr double mostOfStyle = 0.08;         // of its phrases have one style
inline constexpr double mostOfRhythm = 0.12; // of its bars, empty ones aside, are struck at the same places
inline constexpr int fewForShares = 25;      // of fewer phrases these two are not asked
inline constexpr int ofColours = 5;          // one phrase of so many is a colour at most
inline constexpr int ofFullDrums = 10; // one drum phrase of so many has more than fullDrums hits at most
inline constexpr int fullDrums = 80;

} // namespace volvelle
