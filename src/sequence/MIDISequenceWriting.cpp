#include "sequence/MIDISequenceWriting.h"

#include "midi/MIDIRawDataExtension.h"

namespace volvelle {

namespace {

auto channelFailure(std::string_view kind, std::uint8_t channel)
{
    return [=] { return concat("Es konnte kein ", kind, " für Kanal ", channel, " erzeugt werden."); };
}

auto systemFailure(std::string_view kind)
{
    return [kind] { return concat("Es konnte kein ", kind, " Event erzeugt werden."); };
}

} // namespace

template <class Node, class Failure>
void MIDISequence::writeSystemMessage(const std::shared_ptr<Node>& event, std::uint8_t data1,
                                      std::uint8_t data2, const Failure& failure,
                                      void (SequenceFoundDelegate::*found)(const std::shared_ptr<Node>&))
{
    writeMessage(event, failure, found, [&](const MusicTrack& track) {
        return MusicTrackNewMIDIChannelEvent(track, event->position,
                                             {event->getStausByte(), data1, data2, 0});
    });
}

void MIDISequence::createNoteEvent(double position, std::uint8_t channel, std::uint8_t note,
                                   std::uint8_t velocity, std::uint8_t releaseVelocity, float duration)
{
    const auto event =
        std::make_shared<MidiNoteEvent>(position, duration, channel, note, velocity, releaseVelocity);
    addToTree(event);
    createNoteMessage(event);
}

void MIDISequence::createNoteMessage(const std::shared_ptr<MidiNoteEvent>& event)
{
    required(event);
    const auto failure = [&event] {
        return concat("Es konnte keine neue Note für Kanal ", event->channel, " erzeugt werden.");
    };
    writeMessage(event, failure, &SequenceFoundDelegate::foundNoteEvent, [&](const MusicTrack& track) {
        return MusicTrackNewMIDINoteEvent(
            track, event->position,
            {event->channel, event->number, event->velocity, event->releaseVelocity, event->duration});
    });
}

void MIDISequence::createPolyphonicPressureEvent(double position, std::uint8_t channel, std::uint8_t number,
                                                 std::uint8_t value)
{
    const auto event = std::make_shared<MidiPolyPressureEvent>(position, channel, number, value);
    addToTree(event);
    createPolyphonicPressureMessage(event);
}

void MIDISequence::createPolyphonicPressureMessage(const std::shared_ptr<MidiPolyPressureEvent>& event)
{
    required(event);
    writeSystemMessage(event, event->number, event->value,
                       channelFailure("POLY PRESSURE Event", event->channel),
                       &SequenceFoundDelegate::foundPolyPressureEvent);
}

void MIDISequence::createControllerEvent(double position, std::uint8_t channel, std::uint8_t number,
                                         std::uint8_t value)
{
    const auto event = std::make_shared<MidiControllerEvent>(position, channel, number, value);
    addToTree(event);
    createControllerMessage(event);
}

void MIDISequence::createControllerMessage(const std::shared_ptr<MidiControllerEvent>& event)
{
    required(event);
    writeSystemMessage(
        event, event->number, event->value,
        [&event] {
            return concat("Es konnte kein CONTROLLER Eventfür Kanal ", event->channel, " erzeugt werden.");
        },
        &SequenceFoundDelegate::foundControllerEvent);
}

void MIDISequence::createProgramChangeEvent(double position, std::uint8_t channel, std::uint8_t value)
{
    const auto event = std::make_shared<MidiProgramChangeEvent>(position, channel, value);
    addToTree(event);
    createProgramChangeMessage(event);
}

void MIDISequence::createProgramChangeMessage(const std::shared_ptr<MidiProgramChangeEvent>& event)
{
    required(event);
    writeSystemMessage(event, event->value, 0, channelFailure("PROGRAM CHANGE Event", event->channel),
                       &SequenceFoundDelegate::foundProgramChangeEvent);
}

void MIDISequence::createAfterTouchEvent(double position, std::uint8_t channel, std::uint8_t value)
{
    const auto event = std::make_shared<MidiChannelPressureEvent>(position, channel, value);
    addToTree(event);
    createAfterTouchMessage(event);
}

void MIDISequence::createAfterTouchMessage(const std::shared_ptr<MidiChannelPressureEvent>& event)
{
    required(event);
    writeSystemMessage(event, event->value, 0, channelFailure("CHANNEL PRESSURE Event", event->channel),
                       &SequenceFoundDelegate::foundChannelPressureEvent);
}

void MIDISequence::createPitchWheelEvent(double position, std::uint8_t channel, std::uint8_t msb,
                                         std::uint8_t lsb)
{
    const auto event = std::make_shared<MidiPitchBendEvent>();
    event->position = position;
    event->channel = channel;
    event->bend.msb = msb;
    event->bend.lsb = lsb;
    addToTree(event);
    createPitchWheelMessage(event);
}

void MIDISequence::createPitchWheelMessage(const std::shared_ptr<MidiPitchBendEvent>& event)
{
    required(event);
    writeSystemMessage(event, event->bend.msb, event->bend.lsb,
                       channelFailure("PITCHBEND Event", event->channel),
                       &SequenceFoundDelegate::foundPitchBendEvent);
}

void MIDISequence::createSysExEvent(double position, std::uint16_t length,
                                    const std::vector<std::uint8_t>& data)
{
    const auto event = std::make_shared<SystemExclusiveEvent>();
    event->position = position;
    event->setData(length, data);
    addToTree(event);
    createSysExMessage(event);
}

void MIDISequence::createSysExMessage(const std::shared_ptr<SystemExclusiveEvent>& event)
{
    const MusicTrack track = getTrack(required(event).channel);
    if (track && event->data.empty()) {
        logLine(noPayloadText);
        ensureSongLength(event->position);
        return;
    }
    writeMessage(event, systemFailure("SYSEX"), &SequenceFoundDelegate::foundSysExEvent,
                 [&](const MusicTrack& target) {
                     const MyMIDIRawData record(event->data);
                     return MusicTrackNewMIDIRawDataEvent(target, event->position, record.ptr);
                 });
}

void MIDISequence::createSystemTimeCodeEvent(double position, std::uint8_t value)
{
    const auto event = std::make_shared<SystemTimeCodeEvent>(position, value);
    addToTree(event);
    createSystemTimeCodeMessage(event);
}

void MIDISequence::createSystemTimeCodeMessage(const std::shared_ptr<SystemTimeCodeEvent>& event)
{
    writeSystemMessage(event, required(event).value, 0, systemFailure("TIME CODE"),
                       &SequenceFoundDelegate::foundSystemTimeCodeEvent);
}

void MIDISequence::createSystemSongPositionPointerEvent(double position, std::uint8_t msb, std::uint8_t lsb)
{
    const auto event = std::make_shared<SystemSongPositionPointerEvent>(position, msb, lsb);
    addToTree(event);
    createSystemSongPositionPointerMessage(event);
}

void MIDISequence::createSystemSongPositionPointerMessage(
    const std::shared_ptr<SystemSongPositionPointerEvent>& event)
{
    required(event);
    writeSystemMessage(event, event->msb, event->lsb, systemFailure("SONG POSITION POINTER"),
                       &SequenceFoundDelegate::foundSystemSongPositionPointerEvent);
}

void MIDISequence::createSystemSongSelectEvent(double position, std::uint8_t value)
{
    const auto event = std::make_shared<SystemSongSelectEvent>(position, value);
    addToTree(event);
    createSystemSongSelectMessage(event);
}

void MIDISequence::createSystemSongSelectMessage(const std::shared_ptr<SystemSongSelectEvent>& event)
{
    writeSystemMessage(event, required(event).value, 0, systemFailure("SONG SELECT"),
                       &SequenceFoundDelegate::foundSystemSongSelectEvent);
}

void MIDISequence::createSystemTuneRequestEvent(double position)
{
    const auto event = std::make_shared<SystemTuneRequestEvent>(position);
    addToTree(event);
    createSystemTuneRequestMessage(event);
}

void MIDISequence::createSystemTuneRequestMessage(const std::shared_ptr<SystemTuneRequestEvent>& event)
{
    writeSystemMessage(event, 0, 0, systemFailure("TUNE REQUEST"),
                       &SequenceFoundDelegate::foundSystemTuneRequestEvent);
}

void MIDISequence::createSystemTimingClockEvent(double position)
{
    const auto event = std::make_shared<SystemClockEvent>(position);
    addToTree(event);
    createSystemTimingClockMessage(event);
}

void MIDISequence::createSystemTimingClockMessage(const std::shared_ptr<SystemClockEvent>& event)
{
    writeSystemMessage(event, 0, 0, systemFailure("CLOCK"), &SequenceFoundDelegate::foundSystemClockEvent);
}

void MIDISequence::createSystemStartEvent(double position)
{
    const auto event = std::make_shared<SystemStartEvent>(position);
    addToTree(event);
    createSystemStartMessage(event);
}

void MIDISequence::createSystemStartMessage(const std::shared_ptr<SystemStartEvent>& event)
{
    writeSystemMessage(event, 0, 0, systemFailure("START"), &SequenceFoundDelegate::foundSystemStartEvent);
}

void MIDISequence::createSystemContinueEvent(double position)
{
    const auto event = std::make_shared<SystemContinueEvent>(position);
    addToTree(event);
    createSystemContinueMessage(event);
}

void MIDISequence::createSystemContinueMessage(const std::shared_ptr<SystemContinueEvent>& event)
{
    writeSystemMessage(event, 0, 0, systemFailure("CONTINUE"),
                       &SequenceFoundDelegate::foundSystemContinueEvent);
}

void MIDISequence::createSystemStopEvent(double position)
{
    const auto event = std::make_shared<SystemStopEvent>(position);
    addToTree(event);
    createSystemStopMessage(event);
}

void MIDISequence::createSystemStopMessage(const std::shared_ptr<SystemStopEvent>& event)
{
    writeSystemMessage(event, 0, 0, systemFailure("STOP"), &SequenceFoundDelegate::foundSystemStopEvent);
}

void MIDISequence::createSystemActiveSensingEvent(double position)
{
    const auto event = std::make_shared<SystemActiveSensingEvent>(position);
    addToTree(event);
    createSystemActiveSensingMessage(event);
}

void MIDISequence::createSystemActiveSensingMessage(const std::shared_ptr<SystemActiveSensingEvent>& event)
{
    writeSystemMessage(event, 0, 0, systemFailure("ACTIVE SENSING"),
                       &SequenceFoundDelegate::foundSystemActiveSensingEvent);
}

void MIDISequence::createSystemResetEvent(double position)
{
    const auto event = std::make_shared<SystemResetEvent>(position);
    addToTree(event);
    createSystemResetMessage(event);
}

void MIDISequence::createSystemResetMessage(const std::shared_ptr<SystemResetEvent>& event)
{
    writeSystemMessage(event, 0, 0, systemFailure("SYSTEM RESET"),
                       &SequenceFoundDelegate::foundSystemResetEvent);
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
        logLine(undefinedTrackText);
        return;
    }
    ensureSongLength(position);
}

} // namespace volvelle
