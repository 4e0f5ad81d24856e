#pragma once

#include "services/audiodevice/MIDIPorts.h"
#include "services/soundunits/PortQueue.h"
#include "wire/ShortMessage.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace volvelle {

// What comes in at a MIDI port, on its way to whoever takes it: channel messages and exclusives, each whole,
// also where it came in pieces. All else is left out: clock, active sensing, what is meant for one moment. An
// exclusive that another message breaks off, one of more than longestExclusive bytes, and what finds no room
// is dropped and counted; the end of a note that was taken always finds room.
class PortInbox : public MIDIReceiver {
public:
    static constexpr std::size_t longestExclusive = 65535; // bytes, F0 and F7 among them

    explicit PortInbox(std::size_t capacity = PortQueue::standardCapacity);

    // A message that came in pieces came with the last of them.
    void receive(Moment arrived, std::span<const std::uint8_t> bytes) noexcept override;

    // Takes out the next message. False where none waits. [main]
    bool take(Moment& arrived, std::vector<std::uint8_t>& message) { return queue.pop(arrived, message); }

    // Messages that were dropped since the beginning. [any]
    std::size_t dropped() const noexcept { return missed.load(std::memory_order_relaxed); }

private:
    // [render]
    void receiveStatus(Moment arrived, std::uint8_t status) noexcept;
    void receiveData(Moment arrived, std::uint8_t byte) noexcept;
    void append(std::uint8_t byte) noexcept;
    void endExclusive(Moment arrived) noexcept;
    void pass(Moment arrived, std::span<const std::uint8_t> message) noexcept;

    void drop() noexcept { missed.fetch_add(1, std::memory_order_relaxed); }

    PortQueue queue;
    std::atomic<std::size_t> missed{0};
    std::vector<std::uint8_t> exclusive; // has all its room from the beginning
    std::size_t exclusiveLength = 0;     // bytes that came, also those without room; 0 outside an exclusive
    ShortMessage shortMessage{};         // its status is 0 where data bytes belong to nothing
    int shortLength = 0;                 // bytes that came
};

} // namespace volvelle
