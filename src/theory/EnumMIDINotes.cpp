#include "theory/EnumMIDINotes.h"

#include "wire/PitchClassNames.h"

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
    const auto index = static_cast<std::size_t>(number);
    return number < C || number > B ? std::string() : std::string(pitchClassNames[index]);
}

bool EnumMIDINotes::isBlackKey(std::string_view name)
{
    return name.find('#') != std::string_view::npos;
}

} // namespace volvelle
