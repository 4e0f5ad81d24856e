#pragma once

#include "services/audiodevice/MIDIPorts.h"
#include "services/audiograph/AUAudioUnit.h"
#include "services/audiograph/BoundedQueue.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace volvelle {

// A unit that makes no sound itself and sends its messages to a MIDI port of another program, each when its
// frame is due. A thread of its own sends them, so that a slow port never holds up the engine.
class MIDIPortUnit : public AUAudioUnit {
public:
    static constexpr std::size_t capacity = 4096; // messages on their way; more are dropped

    MIDIPortUnit(const AudioComponentDescription& description, std::unique_ptr<MIDIOutput> port);
    // Sends what is on its way at once, and ends. [main thread]
    ~MIDIPortUnit() override;

    // True once the port refused a message. [any thread]
    bool isLost() const { return lost.load(std::memory_order_relaxed); }

protected:
    void renderBlock(const float* inputLeft, const float* inputRight, float* left, float* right, int frames,
                     std::span<const AUMIDIRenderEvent> events) noexcept override;

private:
    using Moment = std::chrono::steady_clock::time_point;

    struct Message {
        Moment due;
        std::uint8_t bytes[3] = {};
        std::uint8_t length = 0;
    };

    void sendAll();
    void send(const Message& message);

    const std::unique_ptr<MIDIOutput> port; // sender thread
    BoundedQueue<Message> queue;            // render thread to sender thread
    std::atomic<bool> lost{false};
    std::atomic<bool> ended{false};
    std::thread sender;
};

// The component behind which a MIDI port stands, for an AVAudioUnitMIDIInstrument.
inline constexpr AudioComponentDescription midiPortComponent{
    fourCharacterCode("aumu"), fourCharacterCode("port"), fourCharacterCode("appl"), 0, 0};

} // namespace volvelle
