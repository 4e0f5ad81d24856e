#pragma once

#include "services/audiodevice/MIDIPorts.h"
#include "services/audiograph/AUAudioUnit.h"
#include "services/soundunits/PortQueue.h"
#include "services/soundunits/PortSounds.h"

#include <atomic>
#include <memory>
#include <span>
#include <thread>

namespace volvelle {

// A unit that makes no sound itself and sends its messages to a MIDI port of another program, each when its
// frame is due, exclusives among them. A thread of its own sends them, so that a slow port never holds up the
// engine. Nothing sounds on at the port behind the unit's life, nor once it has left its engine.
class MIDIPortUnit : public AUAudioUnit {
public:
    MIDIPortUnit(const AudioComponentDescription& description, std::unique_ptr<MIDIOutput> port);
    // Sends what is on its way at once, then the ends of all notes that sound and pedals that are down.
    // [main thread]
    ~MIDIPortUnit() override;

    // True once the port refused a message. [any thread]
    bool isLost() const { return lost.load(std::memory_order_relaxed); }

    void reset() noexcept override;

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const AUMIDIRenderEvent> events) noexcept override;

private:
    using Moment = PortQueue::Moment;

    void sendAll();
    void waitUntil(Moment due) const;
    void send(std::span<const std::uint8_t> message);
    void endAll();

    const std::unique_ptr<MIDIOutput> port; // sender thread
    PortSounds sounds;                      // sender thread: what sounds at the port
    PortQueue queue;                        // render thread to sender thread
    std::atomic<bool> lost{false};
    std::atomic<bool> ended{false};
    std::thread sender;
};

// The component behind which a MIDI port stands, for an AVAudioUnitMIDIInstrument.
inline constexpr AudioComponentDescription midiPortComponent{
    fourCharacterCode("aumu"), fourCharacterCode("port"), fourCharacterCode("appl"), 0, 0};

} // namespace volvelle
