#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace volvelle {

// A meta type, with the types that the system adds for events of its own. The last cases stand out of order.
// [any]
class METATags {
public:
// The constants of the same names are others on purpose.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"

    enum Case : std::uint8_t {
        META_SEQUENCENUMBER = 0x00,
        META_TEXTf = 0x01,
        META_COPYRIGHT = 0x02,
        META_TRACKNAME = 0x03,
        META_INSTRUMENTNAME = 0x04,
        META_LYRICS = 0x05,
        META_MARKER = 0x06,
        META_CUEPOINT = 0x07,
        META_PROGRAMNAME = 0x08,
        META_DEVICENAME = 0x09,
        META_CHANNELPREFIX = 0x20,
        META_MIDIPORT = 0x21,
        META_EOT = 0x2F,
        META_SETTEMPO = 0x51,
        META_SMTPOFFSET = 0x54,
        META_TIMESIGNATURE = 0x58,
        META_KEYSIGNATURE = 0x59,
        META_SPECIFIC = 0x7F,
        META_SYSEX = 0xF0,
        META_UNKNOWN = 0xFF,
        META_EXTENDEDNOTE = 0xF1,
        META_AUPARAMETER = 0xF2,
        META_AUPRESET = 0xF3,
    };

#pragma GCC diagnostic pop

    constexpr METATags(Case value) : value(value) {}

    Case value;

    constexpr std::uint8_t rawValue() const { return value; }

    // The case with that raw value, if there is one.
    static std::optional<METATags> fromRawValue(std::uint8_t rawValue);

    // The name of a plain type byte; "Meta Unknown" for one that no case has.
    static std::string getName(std::uint8_t number);

    friend constexpr auto operator<=>(METATags, METATags) = default;
};

} // namespace volvelle

template <>
struct std::hash<volvelle::METATags> {
    std::size_t operator()(volvelle::METATags value) const noexcept { return value.rawValue(); }
};
