#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace volvelle::scores {

// A pitch class 0 to 11 from its name: C C# D D# E F F# G G# A A# B.
std::optional<int> pitchClass(std::string_view name);

// A MIDI key 0 to 127 from its name; middle C is "C3", key 60, and "C-2" is key 0.
std::optional<int> pitchNumber(std::string_view name);

// The names back: "F#", and "F#3" for key 66.
std::string_view pitchClassName(int pitchClass);
std::string pitchName(int number);

} // namespace volvelle::scores
