#pragma once

#include "MIDISequences/RenderEventPool.h"

namespace volvelle {

// A chain of records while it is put together. It owns nothing: whoever takes the head does. [render]
class AUMIDISequencerChain {
public:
    AURenderEvent* head = nullptr;

    // A copy of the record with `record.length` bytes, behind the last one. It may be changed.
    AUMIDIEvent& append(const AUMIDIEvent& record, const std::uint8_t* bytes)
    {
        return append(makeRenderEvent(record, bytes));
    }

    AUMIDIEvent& append(AURenderEvent* made)
    {
        if (tail == nullptr) {
            head = made;
        } else {
            tail->head.next = made;
        }
        tail = made;
        return made->MIDI;
    }

private:
    AURenderEvent* tail = nullptr;
};

} // namespace volvelle
