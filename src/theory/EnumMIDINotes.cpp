#include "theory/EnumMIDINotes.h"

#include <array>

namespace volvelle {

std::optional<EnumMIDINotes> EnumMIDINotes::fromRawValue(int rawValue)
{
    if (rawValue < C || rawValue > B) {
        return std::nullopt;
    }
    return static_cast<Case>(rawValue);
}

std::string EnumMIDINotes::getName(int number)
{
    static constexpr std::array<std::string_view, 12> names = {"C",  "C#", "D",  "D#", "E",  "F",
                                                               "F#", "G",  "G#", "A",  "A#", "B"};
    return number < C || number > B ? std::string() : std::string(names[static_cast<std::size_t>(number)]);
}

bool EnumMIDINotes::isBlackKey(std::string_view name)
{
    return name.find('#') != std::string_view::npos;
}

} // namespace volvelle
