#pragma once

// What the sources of MIDIClipGenerator share about the two generated tracks.
namespace volvelle {

inline constexpr int polyRhythmChannel = 10;
inline constexpr int polyMeterChannel = 14;
inline constexpr int polyMeterSteps = 64; // sixteenths

} // namespace volvelle
