#pragma once

#include "MIDISequences/RenderEventPool.h"

#include <cstdint>

namespace volvelle {

// A chain of records of the pool while it grows. Whoever takes its head owns the chain. [any]
struct RenderEventChain {
    AURenderEvent* head = nullptr;
    AURenderEvent* tail = nullptr;

    // A copy of the record with `record.length` bytes, after the last one. It may be changed.
    AUMIDIEvent& append(const AUMIDIEvent& record, const std::uint8_t* bytes)
    {
        return append(makeRenderEvent(record, bytes));
    }

    // A record of the pool itself.
    AUMIDIEvent& append(AURenderEvent* made)
    {
        (head == nullptr ? head : tail->head.next) = made;
        tail = made;
        return made->MIDI;
    }
};

} // namespace volvelle
