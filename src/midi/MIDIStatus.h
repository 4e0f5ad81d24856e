#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace volvelle {

// A status byte without its channel. The digits of the reserved cases at 0xF4 and 0xF5 stand swapped.
// [any]
class MIDIStatus {
public:
    enum Case : std::uint8_t {
        NoteOff = 0x80,
        NoteOn = 0x90,
        PolyPressure = 0xA0,
        ControlChange = 0xB0,
        ProgramChange = 0xC0,
        ChannelPressure = 0xD0,
        PitchBend = 0xE0,
        SysEx = 0xF0,
        MidiTimeCode = 0xF1,
        SongPosition = 0xF2,
        SongSelect = 0xF3,
        _0x4F = 0xF4,
        _0x5F = 0xF5,
        TuneRequest = 0xF6,
        EOX = 0xF7,
        Sync = 0xF8,
        _0xF9 = 0xF9,
        Start = 0xFA,
        Continue = 0xFB,
        Stop = 0xFC,
        _0xFD = 0xFD,
        ActiveSensing = 0xFE,
        SystemReset = 0xFF,
    };

    constexpr MIDIStatus(Case value) : value(value) {}

    Case value;

    constexpr std::uint8_t rawValue() const { return value; }

    // The case with that raw value, if there is one.
    static std::optional<MIDIStatus> fromRawValue(std::uint8_t rawValue);

    // The name of a plain status byte; a byte that no case has, so one with a channel, is
    // "Unknown MIDI Status".
    static std::string getName(std::uint8_t number);

    // "0x" and the raw value as two upper-case hexadecimal digits.
    static std::string getHex(MIDIStatus number);

    friend constexpr auto operator<=>(MIDIStatus, MIDIStatus) = default;
};

} // namespace volvelle

template <>
struct std::hash<volvelle::MIDIStatus> {
    std::size_t operator()(volvelle::MIDIStatus value) const noexcept { return value.rawValue(); }
};
