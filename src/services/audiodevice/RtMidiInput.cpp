#include "services/audiodevice/RtMidiInput.h"

#include "services/audiodevice/RtMidiConnection.h"

#include <algorithm>
#include <utility>

namespace volvelle {

namespace {

void handOn(double /*delta*/, std::vector<unsigned char>* bytes, void* receiver)
{
    static_cast<MIDIReceiver*>(receiver)->receive(std::chrono::steady_clock::now(), *bytes);
}

} // namespace

RtMidiInput::RtMidiInput(std::unique_ptr<RtMidiIn> given, std::shared_ptr<MIDIReceiver> to)
    : midi(std::move(given)), receiver(std::move(to))
{
    midi->ignoreTypes(false, true, true);
    midi->setCallback(handOn, receiver.get());
}

// What is kept for good calls its receiver no more: its server is dead.
RtMidiInput::~RtMidiInput()
{
    endConnection(std::move(midi));
}

bool RtMidiInput::isLost()
{
    lost = lost || isGone();
    return lost;
}

bool RtMidiInput::isGone()
{
    if (midi->getCurrentApi() == RtMidi::UNIX_JACK && !isJackServerRunning()) {
        return true;
    }
    try {
        const std::vector<std::string> names = portNames(*midi);
        return !isVirtual && std::ranges::find(names, portName) == names.end();
    } catch (const std::exception&) {
        return true;
    }
}

} // namespace volvelle
