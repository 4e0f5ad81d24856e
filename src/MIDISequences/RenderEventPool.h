#pragma once

#include "MIDISequences/AURenderEvent.h"

#include <cstdint>

// The records of chains, shared by the whole process: blocks for up to three bytes and blocks for up to
// largeRenderEvent, each kind kept in a free list. A chain may be made by one thread and given back by
// another.
namespace volvelle {

inline constexpr std::uint16_t largeRenderEvent = 256; // bytes; a longer record is taken from the system

// A record of a chain, with room for all its bytes: a copy of `record`, link cleared, with `record.length`
// bytes from `bytes`. [any] No lock; allocates only where the blocks made ahead are used up, and what was
// once allocated is kept. A record above largeRenderEvent is allocated, and freed when it is given back.
AURenderEvent* makeRenderEvent(const AUMIDIEvent& record, const std::uint8_t* bytes);

// Gives back a chain of such records, on any thread, whoever made it; null is none. [any] No lock.
void releaseRenderEvents(AURenderEvent* head) noexcept;

// Sees to it that so many blocks of each kind are free. [any] Allocates what is missing.
void prepareRenderEvents(int count);

// The bytes of a record that has room for all of them. [any]
inline const std::uint8_t* renderEventBytes(const AUMIDIEvent& record)
{
    return reinterpret_cast<const std::uint8_t*>(&record) + offsetof(AUMIDIEvent, data);
}

} // namespace volvelle
