#pragma once

#include "services/audiodevice/MIDIPorts.h"
#include "services/soundunits/PortQueue.h"
#include "wire/HeldSounds.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <semaphore>
#include <span>
#include <thread>

namespace volvelle {

// What sends the messages of a queue to a MIDI port, each when it is due, on a thread of its own. A port
// whose sending never comes back keeps that thread, and what it needs, but nobody else. Made by make().
class PortSender {
public:
    // Begins the thread.
    static std::shared_ptr<PortSender> make(std::unique_ptr<MIDIOutput> port);

    // Sends what is on its way at once, then the ends of all that sounds, and waits for that, but not for a
    // message that takes longer than `patience`. Called once, at the end. [main]
    void end(std::chrono::milliseconds patience = std::chrono::seconds(2));

    // Ends all that sounds after what is on its way, soon and without a wait. [any]
    void endSounds() { endWanted.store(true, std::memory_order_release); }

    // True once the port refused a message. [any]
    bool isLost() const { return lost.load(std::memory_order_relaxed); }

    PortQueue queue; // to the thread

private:
    using Moment = PortQueue::Moment;

    explicit PortSender(std::unique_ptr<MIDIOutput> output) : port(std::move(output)) {}

    void sendAll();
    void waitUntil(Moment due) const;
    void send(std::span<const std::uint8_t> message);
    void endAll();

    const std::unique_ptr<MIDIOutput> port; // sender thread
    HeldSounds sounds;                      // sender thread: what sounds at the port
    std::atomic<std::int64_t> sent{0};      // messages
    std::atomic<bool> lost{false};
    std::atomic<bool> ended{false};
    std::atomic<bool> endWanted{false};
    std::binary_semaphore done{0};
    std::thread thread;
};

} // namespace volvelle
