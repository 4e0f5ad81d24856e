#include "services/audiodevice/RtMidiInput.h"

#include <utility>

namespace volvelle {

namespace {

void handOn(double /*delta*/, std::vector<unsigned char>* bytes, void* receiver)
{
    static_cast<MIDIReceiver*>(receiver)->receive(std::chrono::steady_clock::now(), *bytes);
}

} // namespace

RtMidiInput::RtMidiInput(std::unique_ptr<RtMidiIn> input, std::shared_ptr<MIDIReceiver> target)
    : midi(std::move(input)), receiver(std::move(target))
{
    midi->ignoreTypes(false, true, true);
    midi->setCallback(handOn, receiver.get());
}

bool RtMidiInput::isLost()
{
    lost = lost || (!isVirtual && !listeners.hasThisProcess(portName));
    return lost;
}

} // namespace volvelle
