#pragma once

#include <array>
#include <string_view>

namespace volvelle {

// The names of the twelve pitch classes from C up: sharps, no flats.
inline constexpr std::array<std::string_view, 12> pitchClassNames{"C",  "C#", "D",  "D#", "E",  "F",
                                                                  "F#", "G",  "G#", "A",  "A#", "B"};

} // namespace volvelle
