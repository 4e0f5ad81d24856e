#pragma once

#include "wire/HeldSounds.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace volvelle {

// The messages on their way to a MIDI port, of any length, from one thread that pushes to one that pops.
// Neither ever waits. Each note-on and each pedal that is taken reserves the room of its end: the end of what
// began is never refused.
class PortQueue {
public:
    using Moment = std::chrono::steady_clock::time_point;

    // A message costs its own bytes and 16.
    static constexpr std::size_t standardCapacity = std::size_t{1} << 20; // bytes

    explicit PortQueue(std::size_t capacity = standardCapacity);

    // False where a message finds no room; it is dropped then. [any] The one that pushes.
    bool push(Moment due, std::span<const std::uint8_t> message) noexcept;

    // Pushes what popping gives as an empty message: all that sounds is to end. Never refused.
    // [any] The one that pushes.
    void pushEnd(Moment due) noexcept;

    // False where the queue is empty. [any] The one that pops.
    bool pop(Moment& due, std::vector<std::uint8_t>& message);

private:
    struct Header {
        Moment due;
        std::uint64_t length = 0; // bytes
    };

    void append(Moment due, std::span<const std::uint8_t> message) noexcept;
    void put(std::size_t place, const void* from, std::size_t count) noexcept;
    void get(std::size_t place, void* into, std::size_t count) const noexcept;

    std::vector<std::uint8_t> bytes;
    std::atomic<std::size_t> begin{0}; // bytes popped since the start
    std::atomic<std::size_t> end{0};   // bytes pushed since the start
    HeldSounds sounds;                 // of who pushes: after all that was pushed
};

} // namespace volvelle
