#pragma once

#include "services/audiograph/AUMIDIRenderEvent.h"

#include <cstddef>
#include <span>
#include <vector>

namespace volvelle {

// The messages that wait in front of a unit, by offset, equal offsets in the order of entry. Of a fixed size.
// [render thread]
class MIDIEventBuffer {
public:
    static constexpr int capacity = 8192; // messages
    static constexpr int noteOnCapacity = capacity - capacity / 4;

    MIDIEventBuffer() { events.reserve(capacity); }

    // False where the message finds no room. Note-ons find less of it than others.
    bool insert(const AUMIDIRenderEvent& event) noexcept;

    // The messages below `frames`; valid until consume().
    std::span<const AUMIDIRenderEvent> upTo(int frames) const noexcept;

    // Takes the first `count` away and brings the others nearer by `frames`.
    void consume(std::size_t count, int frames) noexcept;

    void clear() noexcept { events.clear(); }

private:
    std::vector<AUMIDIRenderEvent> events;
};

} // namespace volvelle
