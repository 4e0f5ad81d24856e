#pragma once

#include "MIDISequences/RenderEventPool.h"

#include <cstdint>

namespace volvelle {

// A chain of records of the pool while it grows. Whoever takes its head owns the chain. [any]
struct RenderEventChain {
    AURenderEvent* head = nullptr;
    AURenderEvent* tail = nullptr;

    void append(const AUMIDIEvent& record, const std::uint8_t* bytes)
    {
        AURenderEvent* const made = makeRenderEvent(record, bytes);
        (head == nullptr ? head : tail->head.next) = made;
        tail = made;
    }
};

} // namespace volvelle
