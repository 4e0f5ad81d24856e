#include "midi/MIDIStatus.h"

#include "base/Text.h"

#include <string_view>

namespace volvelle {

namespace {

constexpr std::string_view unknownName = "Unknown MIDI Status";

std::string_view channelName(std::uint8_t number)
{
    switch (number) {
    case MIDIStatus::NoteOff:
        return "Note Off";
    case MIDIStatus::NoteOn:
        return "Note On";
    case MIDIStatus::PolyPressure:
        return "Polyphonic Pressure";
    case MIDIStatus::ControlChange:
        return "Control Change";
    case MIDIStatus::ProgramChange:
        return "Program Change";
    case MIDIStatus::ChannelPressure:
        return "Channel Pressure";
    case MIDIStatus::PitchBend:
        return "Pitch Bend";
    default:
        return unknownName;
    }
}

std::string_view systemName(std::uint8_t number)
{
    switch (number) {
    case MIDIStatus::SysEx:
        return "System Exclusive";
    case MIDIStatus::MidiTimeCode:
        return "MIDI Time Code";
    case MIDIStatus::SongPosition:
        return "Song Position Pointer";
    case MIDIStatus::SongSelect:
        return "Song Select";
    case MIDIStatus::TuneRequest:
        return "Tune Request";
    case MIDIStatus::EOX:
        return "End Of System Exclusive";
    case MIDIStatus::Sync:
        return "MIDI Clock";
    case MIDIStatus::Start:
        return "Start";
    case MIDIStatus::Continue:
        return "Continue";
    case MIDIStatus::Stop:
        return "Stop";
    case MIDIStatus::ActiveSensing:
        return "Active Sensing";
    case MIDIStatus::SystemReset:
        return "System Reset";
    default:
        return unknownName;
    }
}

} // namespace

std::optional<MIDIStatus> MIDIStatus::fromRawValue(std::uint8_t rawValue)
{
    const bool isSystem = rawValue >= SysEx;
    const bool isChannel = rawValue >= NoteOff && rawValue % 16 == 0;
    if (!isSystem && !isChannel) {
        return std::nullopt;
    }
    return static_cast<Case>(rawValue);
}

std::string MIDIStatus::getName(std::uint8_t number)
{
    return std::string(number < SysEx ? channelName(number) : systemName(number));
}

std::string MIDIStatus::getHex(MIDIStatus number)
{
    return "0x" + hexadecimal(number.rawValue());
}

} // namespace volvelle
