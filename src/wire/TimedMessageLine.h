#pragma once

#include "wire/HeldSounds.h"
#include "wire/TimedMessage.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace volvelle {

// Messages that wait for their place, by offset, equal offsets in the order of entry. It owns their bytes,
// long ones too. All room is taken at construction: what finds none is refused. Each note-on and each pedal
// that is taken reserves the room of its end: the end of what began is never refused, and other ends find
// room where nothing else does. [any] No lock, and no memory but in the constructor.
class TimedMessageLine {
public:
    // Messages, with the ends that are owed: more than the whole state of sixteen channels.
    static constexpr int capacity = 16384;
    static constexpr int endsCapacity = capacity + capacity / 4; // for what ends something
    static constexpr std::size_t longCapacity = 262144;          // bytes of all long messages

    // Room is reserved for the ends of so many strikes of one key: 1 where the first ends them all.
    explicit TimedMessageLine(int mostOfOneKey = HeldSounds::usualStrikes);
    TimedMessageLine(const TimedMessageLine&) = delete;
    TimedMessageLine& operator=(const TimedMessageLine&) = delete;

    // Copies the message. False, and nothing changed, where it finds no room.
    bool insert(const TimedMessage& message) noexcept;

    bool isEmpty() const noexcept { return first == messages.size(); }

    // The next message; valid until the next change. Not of an empty line.
    const TimedMessage& front() const noexcept { return messages[first]; }

    void removeFront() noexcept { removeFront(1); }

    void removeFront(std::size_t count) noexcept;

    // The messages below `frames`; valid until the next change.
    std::span<const TimedMessage> upTo(int frames) const noexcept;

    // Brings all that waits nearer by `frames`.
    void advance(int frames) noexcept;

    // Nothing waits and nothing sounds.
    void clear() noexcept;

private:
    bool hasRoomFor(const TimedMessage& message) const noexcept;
    const std::uint8_t* copied(std::span<const std::uint8_t> bytes) noexcept;
    void gatherLongBytes() noexcept;
    void forgetMessages() noexcept;

    std::vector<TimedMessage> messages;
    std::size_t first = 0;               // what stands before it is done
    HeldSounds sounds;                   // after all that was taken
    std::vector<std::uint8_t> longBytes; // of the long messages, with gaps where some are gone
    std::vector<std::uint8_t> gathered;  // the same without gaps, while they are gathered
};

} // namespace volvelle
