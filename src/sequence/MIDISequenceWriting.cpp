#include "sequence/SequenceLog.h"
#include "sequence/SequenceWriter.h"

namespace volvelle {

void MIDISequence::createNoteEvent(double position, std::uint8_t channel, std::uint8_t note,
                                   std::uint8_t velocity, std::uint8_t releaseVelocity, float duration)
{
    SequenceWriter(*this).create<MidiNoteEvent>(position, duration, channel, note, velocity, releaseVelocity);
}

void MIDISequence::createNoteMessage(const std::shared_ptr<MidiNoteEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createPolyphonicPressureEvent(double position, std::uint8_t channel, std::uint8_t number,
                                                 std::uint8_t value)
{
    SequenceWriter(*this).create<MidiPolyPressureEvent>(position, channel, number, value);
}

void MIDISequence::createPolyphonicPressureMessage(const std::shared_ptr<MidiPolyPressureEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createControllerEvent(double position, std::uint8_t channel, std::uint8_t number,
                                         std::uint8_t value)
{
    SequenceWriter(*this).create<MidiControllerEvent>(position, channel, number, value);
}

void MIDISequence::createControllerMessage(const std::shared_ptr<MidiControllerEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createProgramChangeEvent(double position, std::uint8_t channel, std::uint8_t value)
{
    SequenceWriter(*this).create<MidiProgramChangeEvent>(position, channel, value);
}

void MIDISequence::createProgramChangeMessage(const std::shared_ptr<MidiProgramChangeEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createAfterTouchEvent(double position, std::uint8_t channel, std::uint8_t value)
{
    SequenceWriter(*this).create<MidiChannelPressureEvent>(position, channel, value);
}

void MIDISequence::createAfterTouchMessage(const std::shared_ptr<MidiChannelPressureEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createPitchWheelEvent(double position, std::uint8_t channel, std::uint8_t msb,
                                         std::uint8_t lsb)
{
    SequenceWriter(*this).create<MidiPitchBendEvent>(position, channel, PitchBend{msb, lsb});
}

void MIDISequence::createPitchWheelMessage(const std::shared_ptr<MidiPitchBendEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSysExEvent(double position, std::uint16_t length,
                                    const std::vector<std::uint8_t>& data)
{
    const auto event = std::make_shared<SystemExclusiveEvent>();
    event->position = position;
    event->setData(length, data);
    SequenceWriter(*this).take(event);
}

void MIDISequence::createSysExMessage(const std::shared_ptr<SystemExclusiveEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSystemTimeCodeEvent(double position, std::uint8_t value)
{
    SequenceWriter(*this).create<SystemTimeCodeEvent>(position, value);
}

void MIDISequence::createSystemTimeCodeMessage(const std::shared_ptr<SystemTimeCodeEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSystemSongPositionPointerEvent(double position, std::uint8_t msb, std::uint8_t lsb)
{
    SequenceWriter(*this).create<SystemSongPositionPointerEvent>(position, msb, lsb);
}

void MIDISequence::createSystemSongPositionPointerMessage(
    const std::shared_ptr<SystemSongPositionPointerEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSystemSongSelectEvent(double position, std::uint8_t value)
{
    SequenceWriter(*this).create<SystemSongSelectEvent>(position, value);
}

void MIDISequence::createSystemSongSelectMessage(const std::shared_ptr<SystemSongSelectEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSystemTuneRequestEvent(double position)
{
    SequenceWriter(*this).create<SystemTuneRequestEvent>(position);
}

void MIDISequence::createSystemTuneRequestMessage(const std::shared_ptr<SystemTuneRequestEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSystemTimingClockEvent(double position)
{
    SequenceWriter(*this).create<SystemClockEvent>(position);
}

void MIDISequence::createSystemTimingClockMessage(const std::shared_ptr<SystemClockEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSystemStartEvent(double position)
{
    SequenceWriter(*this).create<SystemStartEvent>(position);
}

void MIDISequence::createSystemStartMessage(const std::shared_ptr<SystemStartEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSystemContinueEvent(double position)
{
    SequenceWriter(*this).create<SystemContinueEvent>(position);
}

void MIDISequence::createSystemContinueMessage(const std::shared_ptr<SystemContinueEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSystemStopEvent(double position)
{
    SequenceWriter(*this).create<SystemStopEvent>(position);
}

void MIDISequence::createSystemStopMessage(const std::shared_ptr<SystemStopEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSystemActiveSensingEvent(double position)
{
    SequenceWriter(*this).create<SystemActiveSensingEvent>(position);
}

void MIDISequence::createSystemActiveSensingMessage(const std::shared_ptr<SystemActiveSensingEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::createSystemResetEvent(double position)
{
    SequenceWriter(*this).create<SystemResetEvent>(position);
}

void MIDISequence::createSystemResetMessage(const std::shared_ptr<SystemResetEvent>& event)
{
    SequenceWriter(*this).write(event);
}

void MIDISequence::ensureSongLength(double length)
{
    if (sequenceLength < length) {
        sequenceLength = length;
    }
}

void MIDISequence::createUserEvent(double position)
{
    createExtraEvent(position);
}

void MIDISequence::createExtraEvent(double position)
{
    if (!getTrack(0)) {
        logLine("MIDISequence::Fehler: Die Spur ist undefiniert.");
        return;
    }
    ensureSongLength(position);
}

} // namespace volvelle
