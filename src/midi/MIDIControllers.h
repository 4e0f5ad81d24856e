#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace volvelle {

// A controller by its place in this list, 0 to 111. The places run without a gap, so from _0x3A on the raw
// value is 16 below the controller number: what goes on the wire is a CONTROLLER_ constant or a plain byte,
// never the raw value. [any]
class MIDIControllers {
public:
    enum Case : std::uint8_t {
        BankSelectMSB,
        ModulationWheel,
        BreathController,
        _0x03,
        FootControllerMSB,
        PortamentoTimeMSB,
        DataEntry,
        MainVolume,
        Balance,
        _0x09,
        Panorama,
        Expression,
        EffectControl1,
        EffectControl2,
        _0x0E,
        _0x0F,
        GeneralPurpose1,
        GeneralPurpose2,
        GeneralPurpose3,
        GeneralPurpose4,
        _0x14,
        _0x15,
        _0x16,
        _0x17,
        _0x18,
        _0x19,
        _0x1A,
        _0x1B,
        _0x1C,
        _0x1D,
        _0x1E,
        _0x1F,
        BankSelectLSB,
        _0x21,
        _0x22,
        _0x23,
        _0x24,
        _0x25,
        _0x26,
        _0x27,
        _0x28,
        _0x29,
        _0x3A,
        _0x3B,
        _0x3C,
        _0x3D,
        _0x3E,
        _0x3F,
        Hold1,
        Portamento,
        Sostenuto,
        SoftPedal,
        LegatoFootSwitch,
        Hold2,
        SoundController1,
        SoundController2,
        SoundController3,
        SoundController4,
        SoundController5,
        SoundController6,
        SoundController7,
        SoundController8,
        SoundController9,
        SoundController10,
        GeneralPurpose5,
        GeneralPurpose6,
        GeneralPurpose7,
        GeneralPurpose8,
        PortamentoControl,
        _0x55,
        _0x56,
        _0x57,
        _0x58,
        _0x59,
        _0x5A,
        Effect1Depth,
        Effect2Depth,
        Effect3Depth,
        Effect4Depth,
        Effect5Depth,
        DataIncrement,
        DataDecrement,
        NRPN_LSB,
        NRPN_MSB,
        RPN_LSB,
        RPN_MSB,
        _0x66,
        _0x67,
        _0x68,
        _0x69,
        _0x6A,
        _0x6B,
        _0x6C,
        _0x6D,
        _0x6E,
        _0x6F,
        _0x70,
        _0x71,
        _0x72,
        _0x73,
        _0x74,
        _0x75,
        _0x76,
        _0x77,
        AllSoundsOff,
        ResetControllers,
        LocalControl,
        AllNotesOff,
        OmniOff,
        OmniOn,
        MonoOn,
        PolyOn,
    };

    constexpr MIDIControllers(Case value) : value(value) {}

    Case value;

    constexpr std::uint8_t rawValue() const { return value; }

    // The case with that raw value, if there is one.
    static std::optional<MIDIControllers> fromRawValue(std::uint8_t rawValue);

    // The name of a controller number from 0 to 127, not of a place in the list; "Controller {number}" for
    // one without a name. The texts are not those of MIDIControllerNames.
    static std::string getName(std::uint8_t number);

    // "0x" and the raw value as two upper-case hexadecimal digits.
    static std::string getHex(MIDIControllers number);

    friend constexpr auto operator<=>(MIDIControllers, MIDIControllers) = default;
};

} // namespace volvelle

template <>
struct std::hash<volvelle::MIDIControllers> {
    std::size_t operator()(volvelle::MIDIControllers value) const noexcept { return value.rawValue(); }
};
