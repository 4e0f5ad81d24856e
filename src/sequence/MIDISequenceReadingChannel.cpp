#include "midi/MIDIConstants.h"
#include "sequence/SequenceLog.h"
#include "sequence/SequenceReading.h"

namespace volvelle {

template <class Node>
void SequenceReading::takeChannelEvent(const std::shared_ptr<Node>& event, const TrackEvent& source,
                                       Found<Node> found)
{
    event->channel = source.record<MIDIChannelMessage>().status & 0x0FU;
    assignment.channel = event->channel;
    take(event, Target::ownTrack, found);
}

template <class Node>
void SequenceReading::takeSystemEvent(const TrackEvent& source, Found<Node> found)
{
    const auto& message = source.record<MIDIChannelMessage>();
    const auto event = nodeAt<Node>(source);
    if constexpr (requires { event->value; }) {
        event->value = message.data1;
    } else if constexpr (requires { event->msb; }) {
        event->msb = message.data1;
        event->lsb = message.data2;
    }
    take(event, Target::firstTrack, found);
}

void SequenceReading::readChannel(const TrackEvent& event)
{
    const auto& message = event.record<MIDIChannelMessage>();
    sequence.diagnose(concat("Diagnose: MIDI Channel Message: Status = ", message.status, " Data1 = ",
                             message.data1, " Data2 = ", message.data2, " Position = ", event.time));
    const std::uint8_t channel = message.status & 0x0FU;
    switch (message.status & 0xF0U) {
    case STATUS_PPRESSURE:
        return takeChannelEvent(
            std::make_shared<MidiPolyPressureEvent>(event.time, channel, message.data1, message.data2), event,
            &SequenceFoundDelegate::foundPolyPressureEvent);
    case STATUS_CONTROLLER:
        return takeChannelEvent(
            std::make_shared<MidiControllerEvent>(event.time, channel, message.data1, message.data2), event,
            &SequenceFoundDelegate::foundControllerEvent);
    case STATUS_PROGRAM:
        sequence.patches.at(channel) = message.data1;
        return takeChannelEvent(std::make_shared<MidiProgramChangeEvent>(event.time, channel, message.data1),
                                event, &SequenceFoundDelegate::foundProgramChangeEvent);
    case STATUS_CPRESSURE:
        return takeChannelEvent(
            std::make_shared<MidiChannelPressureEvent>(event.time, channel, message.data1), event,
            &SequenceFoundDelegate::foundChannelPressureEvent);
    case STATUS_PITCHBEND: {
        const auto bend = nodeAt<MidiPitchBendEvent>(event);
        bend->bend.msb = message.data1;
        bend->bend.lsb = message.data2;
        return takeChannelEvent(bend, event, &SequenceFoundDelegate::foundPitchBendEvent);
    }
    default:
        return readSystem(event);
    }
}

void SequenceReading::readSystem(const TrackEvent& event)
{
    using D = SequenceFoundDelegate;
    const std::uint8_t status = event.record<MIDIChannelMessage>().status;
    switch (status) {
    case STATUS_TIMECODE:
        return takeSystemEvent(event, &D::foundSystemTimeCodeEvent);
    case STATUS_SONGPOSITION:
        return takeSystemEvent(event, &D::foundSystemSongPositionPointerEvent);
    case STATUS_SONGSELECT:
        return takeSystemEvent(event, &D::foundSystemSongSelectEvent);
    case STATUS_TUNEREQUEST:
        return takeSystemEvent(event, &D::foundSystemTuneRequestEvent);
    case STATUS_TIMINGCLOCK:
        return takeSystemEvent(event, &D::foundSystemClockEvent);
    case STATUS_START:
        return takeSystemEvent(event, &D::foundSystemStartEvent);
    case STATUS_CONTINUE:
        return takeSystemEvent(event, &D::foundSystemContinueEvent);
    case STATUS_STOP:
        return takeSystemEvent(event, &D::foundSystemStopEvent);
    case STATUS_ACTIVESENSING:
        return takeSystemEvent(event, &D::foundSystemActiveSensingEvent);
    case STATUS_RESET:
        return takeSystemEvent(event, &D::foundSystemResetEvent);
    default:
        sequence.diagnose(concat("Diagnose: Ein Unbekanntes Event vom Type ", status,
                                 ", Position = ", event.time, " erhalten."));
        return take(nodeAt<UnknownEvent>(event), Target::firstTrack,
                    &SequenceFoundDelegate::foundUnknownEvent);
    }
}

} // namespace volvelle
