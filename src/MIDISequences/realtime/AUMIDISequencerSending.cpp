#include "MIDISequences/realtime/AUMIDISequencer.h"
#include "base/Checked.h"
#include "wire/MIDIConstants.h"

#include <algorithm>

namespace volvelle {

namespace {

constexpr std::size_t inPlace = 3; // bytes

} // namespace

AUMIDIEvent AUMIDISequencer::generateRealtimeEvent(std::uint8_t channel, std::uint8_t status,
                                                   std::uint8_t data1, std::uint8_t data2)
{
    AUMIDIEvent event;
    event.eventSampleTime = checkedAdd<std::int64_t>(currentSampleTime, currentFrames);
    event.eventType = AURenderEventMIDI;
    event.length = inPlace;
    event.cable = cable;
    event.data[0] = checkedAdd(status, channel);
    event.data[1] = data1;
    event.data[2] = data2;
    return event;
}

AUMIDIEvent AUMIDISequencer::generateRealtimeEvent(const std::vector<std::uint8_t>& data)
{
    AUMIDIEvent event;
    event.eventSampleTime = currentFrames;
    event.eventType = AURenderEventMIDISysEx;
    event.length = static_cast<std::uint16_t>(std::min(data.size(), inPlace));
    std::copy_n(data.begin(), event.length, event.data);
    return event;
}

void AUMIDISequencer::sendEvent(std::uint8_t channel, std::uint8_t status, std::uint8_t data1,
                                std::uint8_t data2)
{
    addRealtimeEvent(generateRealtimeEvent(channel, status, data1, data2));
}

void AUMIDISequencer::sendEvent(const std::vector<std::uint8_t>& data)
{
    AUMIDIEvent event = generateRealtimeEvent(data);
    event.length = checkedCast<std::uint16_t>(data.size());
    addRealtimeEvent(event, data.data());
}

void AUMIDISequencer::addRealtimeEvent(const AUMIDIEvent& event)
{
    AUMIDIEvent whole = event;
    whole.length = std::min<std::uint16_t>(event.length, inPlace);
    addRealtimeEvent(whole, whole.data);
}

void AUMIDISequencer::addRealtimeEvent(const AUMIDIEvent& event, const std::uint8_t* bytes)
{
    seeking = true;
    realtimeEvents.push(event, bytes);
}

void AUMIDISequencer::sendAll(void (AUMIDISequencer::*send)(std::uint8_t))
{
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        (this->*send)(channel);
    }
}

void AUMIDISequencer::allNotesOff()
{
    sendAll(&AUMIDISequencer::allNotesOff);
}

void AUMIDISequencer::allNotesOff(std::uint8_t channel)
{
    sendEvent(channel, STATUS_CONTROLLER, CONTROLLER_NOTES_OFF, 0);
}

void AUMIDISequencer::allSoundsOff()
{
    sendAll(&AUMIDISequencer::allSoundsOff);
}

void AUMIDISequencer::allSoundsOff(std::uint8_t channel)
{
    sendEvent(channel, STATUS_CONTROLLER, CONTROLLER_SOUNDS_OFF, 0);
}

void AUMIDISequencer::resetProgram(std::uint8_t channel)
{
    sendEvent(channel, STATUS_PROGRAM, 0, 0);
}

void AUMIDISequencer::resetPrograms()
{
    sendAll(&AUMIDISequencer::resetProgram);
}

void AUMIDISequencer::resetControllers()
{
    sendAll(&AUMIDISequencer::resetControllers);
}

void AUMIDISequencer::resetControllers(std::uint8_t channel)
{
    sendEvent(channel, STATUS_CONTROLLER, CONTROLLER_RESET_CONTROLLERS, 0);
    sendEvent(channel, STATUS_CONTROLLER, CONTROLLER_SUSTAIN, 0);
}

} // namespace volvelle
