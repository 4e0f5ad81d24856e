#pragma once

// From where on music is heard to be wrong: what an arrangement is thrown away for, and what a phrase has to
// keep in the mean over all that it may meet. docs/ear.md tells them.
namespace volvelle {

inline constexpr double mostOutside = 0.08;  // of the time, a tone of a follower outside the chord
inline constexpr double leastMet = 0.5;      // of the chord changes, by a bass
inline constexpr double leastRoots = 0.5;    // of the chords, by a bass
inline constexpr double leastOnKicks = 0.25; // of the notes of a bass
inline constexpr double mostRepeats = 0.3;   // of the steps of a lead
inline constexpr int leastDistinctChords = 3;
inline constexpr double longestChord = 8; // beats
inline constexpr int leastKicks = 4;

} // namespace volvelle
