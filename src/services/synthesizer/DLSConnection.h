#pragma once

#include <cstddef>
#include <cstdint>

namespace volvelle {

// What can move a parameter of a voice.
namespace DLSSource {
inline constexpr std::uint16_t none = 0;
inline constexpr std::uint16_t lfo = 1;
inline constexpr std::uint16_t velocity = 2;
inline constexpr std::uint16_t keyNumber = 3;
inline constexpr std::uint16_t volumeEnvelope = 4;
inline constexpr std::uint16_t modulationEnvelope = 5;
inline constexpr std::uint16_t pitchWheel = 6;
inline constexpr std::uint16_t keyPressure = 7;
inline constexpr std::uint16_t channelPressure = 8;
inline constexpr std::uint16_t vibrato = 9;
inline constexpr std::uint16_t controller1 = 0x81;
inline constexpr std::uint16_t controller7 = 0x87;
inline constexpr std::uint16_t controller10 = 0x8A;
inline constexpr std::uint16_t controller11 = 0x8B;
inline constexpr std::uint16_t controller91 = 0xDB;
inline constexpr std::uint16_t controller93 = 0xDD;
inline constexpr std::uint16_t bendRange = 0x100;
} // namespace DLSSource

// The parameters. Gain, resonance: tenths of a decibel; pitch, cutoff, frequencies: cents; times: cents of a
// second; sustain levels, pan, sends: thousandths.
namespace DLSDestination {
inline constexpr std::uint16_t gain = 0x001;
inline constexpr std::uint16_t pitch = 0x003;
inline constexpr std::uint16_t pan = 0x004;
inline constexpr std::uint16_t chorus = 0x080;
inline constexpr std::uint16_t reverb = 0x081;
inline constexpr std::uint16_t lfoFrequency = 0x104;
inline constexpr std::uint16_t lfoDelay = 0x105;
inline constexpr std::uint16_t vibratoFrequency = 0x114;
inline constexpr std::uint16_t vibratoDelay = 0x115;
inline constexpr std::uint16_t volumeAttack = 0x206;
inline constexpr std::uint16_t volumeDecay = 0x207;
inline constexpr std::uint16_t volumeRelease = 0x209;
inline constexpr std::uint16_t volumeSustain = 0x20A;
inline constexpr std::uint16_t volumeDelay = 0x20B;
inline constexpr std::uint16_t volumeHold = 0x20C;
inline constexpr std::uint16_t modulationAttack = 0x30A;
inline constexpr std::uint16_t modulationDecay = 0x30B;
inline constexpr std::uint16_t modulationRelease = 0x30D;
inline constexpr std::uint16_t modulationSustain = 0x30E;
inline constexpr std::uint16_t modulationDelay = 0x30F;
inline constexpr std::uint16_t modulationHold = 0x310;
inline constexpr std::uint16_t cutoff = 0x500;
inline constexpr std::uint16_t resonance = 0x501;
} // namespace DLSDestination

// The bits of a transform: a curve (linear, concave, convex, switch), "both ways" and "upside down", for the
// source and for the control.
namespace DLSTransform {
inline constexpr int controlCurveShift = 4;
inline constexpr int sourceCurveShift = 10;
inline constexpr std::uint16_t curveMask = 0xF;
inline constexpr std::uint16_t controlBipolar = 0x0100;
inline constexpr std::uint16_t controlInverted = 0x0200;
inline constexpr std::uint16_t sourceBipolar = 0x4000;
inline constexpr std::uint16_t sourceInverted = 0x8000;
} // namespace DLSTransform

// One connection of an articulation: source, shaped by control, moves destination by `scale`.
struct DLSConnection {
    static constexpr double unit = 65536.0; // of `scale`
    static constexpr std::size_t size = 12; // in a file, bytes

    std::uint16_t source = DLSSource::none;
    std::uint16_t control = DLSSource::none;
    std::uint16_t destination = 0;
    std::uint16_t transform = 0;
    std::int32_t scale = 0;

    bool operator==(const DLSConnection&) const = default;
};

} // namespace volvelle
