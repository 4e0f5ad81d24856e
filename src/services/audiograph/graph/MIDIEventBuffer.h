#pragma once

#include "services/audiograph/graph/AUMIDIRenderEvent.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace volvelle {

// The messages that wait in front of a unit, by offset, equal offsets in the order of entry. It owns their
// bytes, long ones too, in room of a fixed size. [render thread]
class MIDIEventBuffer {
public:
    static constexpr int capacity = 16384; // messages: more than the whole state of sixteen channels
    static constexpr int noteOnCapacity = capacity - capacity / 4;
    static constexpr std::size_t longCapacity = 262144; // bytes of all long messages

    MIDIEventBuffer();

    // Copies the message. False where it finds no room. Note-ons find less of it than others.
    bool insert(const AUMIDIRenderEvent& event) noexcept;

    // The messages below `frames`; valid until consume().
    std::span<const AUMIDIRenderEvent> upTo(int frames) const noexcept;

    // Takes the first `count` away and brings the others nearer by `frames`.
    void consume(std::size_t count, int frames) noexcept;

    void clear() noexcept;

private:
    const std::uint8_t* copied(std::span<const std::uint8_t> bytes) noexcept;
    void gatherLongBytes() noexcept;

    std::vector<AUMIDIRenderEvent> events;
    std::vector<std::uint8_t> longBytes; // of the long messages, with gaps where some are gone
    std::vector<std::uint8_t> gathered;  // the same without gaps, while they are gathered
};

} // namespace volvelle
