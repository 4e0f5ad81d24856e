#include "scores/PitchNames.h"

#include "scores/ScoreText.h"
#include "wire/PitchClassNames.h"

#include <algorithm>

namespace volvelle::scores {

std::optional<int> pitchClass(std::string_view name)
{
    const auto found = std::ranges::find(pitchClassNames, name);
    if (found == pitchClassNames.end()) {
        return std::nullopt;
    }
    return static_cast<int>(found - pitchClassNames.begin());
}

std::optional<int> pitchNumber(std::string_view name)
{
    const auto digits = name.find_first_of("-0123456789");
    if (digits == std::string_view::npos) {
        return std::nullopt;
    }
    const auto tone = pitchClass(name.substr(0, digits));
    const auto octave = wholeNumber(name.substr(digits), -2, 8);
    if (!tone || !octave) {
        return std::nullopt;
    }
    const int number = (*octave + 2) * 12 + *tone;
    return number <= 127 ? std::optional(number) : std::nullopt;
}

std::string_view pitchClassName(int pitchClass)
{
    return pitchClassNames[static_cast<std::size_t>(pitchClass % 12)];
}

std::string pitchName(int number)
{
    return std::string(pitchClassName(number % 12)) + std::to_string(number / 12 - 2);
}

} // namespace volvelle::scores
