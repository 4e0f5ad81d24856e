#pragma once

#include "services/audiodevice/MIDIPorts.h"
#include "services/audiodevice/PortListeners.h"

#include <RtMidi.h>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace volvelle {

// An input through the kernel's sequencer, that hears one port, or one that others connect to.
class RtMidiInput : public MIDIInput {
public:
    // Hands what comes to the receiver from now on; the port is opened after this.
    RtMidiInput(std::unique_ptr<RtMidiIn> input, std::shared_ptr<MIDIReceiver> target);

    bool isLost() override;

    std::string name() const override { return portName; }

    std::unique_ptr<RtMidiIn> midi;
    std::string portName;
    bool isVirtual = false; // others connect to it, and none is to be lost

private:
    std::shared_ptr<MIDIReceiver> receiver;
    PortListeners listeners;
    bool lost = false;
};

} // namespace volvelle
