#pragma once

#include "services/audiodevice/MIDIPorts.h"
#include "services/audiograph/graph/AUAudioUnit.h"
#include "services/soundunits/PortSender.h"

#include <memory>
#include <span>

namespace volvelle {

// A unit that makes no sound itself and sends its messages to a MIDI port of another program, each when its
// frame is due, exclusives among them. A thread of its own sends them, so that a slow port never holds up the
// engine. Nothing sounds on at the port after the unit's life, nor once it has left its engine.
class MIDIPortUnit : public AUAudioUnit {
public:
    MIDIPortUnit(const AudioComponentDescription& description, std::unique_ptr<MIDIOutput> port);
    // Sends what is on its way at once, then the ends of all notes that sound and pedals that are down. A
    // port whose sending does not come back is left after a while. [main]
    ~MIDIPortUnit() override;

    // True once the port refused a message. [any]
    bool isLost() const { return sender->isLost(); }

    void engineStopped() override;
    void reset() noexcept override;

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const TimedMessage> events) noexcept override;

private:
    const std::shared_ptr<PortSender> sender;
};

// The component behind which a MIDI port stands, for an AVAudioUnitMIDIInstrument.
inline constexpr AudioComponentDescription midiPortComponent{
    fourCharacterCode("aumu"), fourCharacterCode("port"), fourCharacterCode("appl"), 0, 0};

} // namespace volvelle
