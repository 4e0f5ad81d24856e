#pragma once

#include <cstdint>

namespace volvelle {

// "aumu" as the number that its four letters spell.
constexpr std::uint32_t fourCharacterCode(const char (&code)[5])
{
    std::uint32_t result = 0;
    for (int i = 0; i < 4; ++i) {
        result = result << 8 | static_cast<std::uint8_t>(code[i]);
    }
    return result;
}

// Which component to make. Type, subtype and manufacturer name it; the flags are carried along.
struct AudioComponentDescription {
    std::uint32_t componentType = 0;
    std::uint32_t componentSubType = 0;
    std::uint32_t componentManufacturer = 0;
    std::uint32_t componentFlags = 0;
    std::uint32_t componentFlagsMask = 0;

    bool operator==(const AudioComponentDescription&) const = default;
};

// The two components of the house: the synthesizer is registered by its own service, the limiter is always
// there.
inline constexpr AudioComponentDescription synthesizerComponent{
    fourCharacterCode("aumu"), fourCharacterCode("msyn"), fourCharacterCode("appl"), 0, 0};
inline constexpr AudioComponentDescription limiterComponent{
    fourCharacterCode("aufx"), fourCharacterCode("lmtr"), fourCharacterCode("appl"), 0, 0};

} // namespace volvelle
