#include "MIDISequences/realtime/AUMIDISequencerLine.h"

#include "MIDISequences/realtime/AUMIDISequencerRenderScope.h"

#include <charconv>
#include <cmath>

namespace volvelle {

namespace {

constexpr double leastDecimal = 1e-4;
constexpr double leastLargeScientific = 1e16;

} // namespace

void AUMIDISequencerLine::append(std::string_view text) noexcept
{
    count += text.copy(characters.data() + count, characters.size() - count);
}

void AUMIDISequencerLine::append(double value) noexcept
{
    const double size = std::abs(value);
    const bool isDecimal = size == 0.0 || (size >= leastDecimal && size < leastLargeScientific);
    std::array<char, 40> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                   isDecimal ? std::chars_format::fixed : std::chars_format::scientific)
                         .ptr;
    const std::string_view digits{buffer.data(), end};
    append(digits);
    if (isDecimal && digits.find('.') == std::string_view::npos) {
        append(std::string_view(".0"));
    }
}

void AUMIDISequencerLine::appendInteger(std::int64_t value) noexcept
{
    std::array<char, 24> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    append(std::string_view{buffer.data(), end});
}

void AUMIDISequencerLine::send() const
{
    if (AUMIDISequencerRenderScope::isInside()) {
        realtimeprint(view());
    } else {
        debugprint(view());
    }
}

} // namespace volvelle
