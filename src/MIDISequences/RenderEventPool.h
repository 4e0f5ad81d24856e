#pragma once

#include "MIDISequences/AURenderEvent.h"

#include <cstdint>

// The records of chains, shared by the whole process: blocks of four sizes, each kind kept in a free list. A
// chain may be made by one thread and given back by another.
namespace volvelle {

// Bytes; a small block has three. What is longer than a large one is taken from the system.
inline constexpr std::uint16_t mediumRenderEvent = 32;  // metas of a tempo, short exclusives
inline constexpr std::uint16_t textRenderEvent = 128;   // most metas of text
inline constexpr std::uint16_t largeRenderEvent = 1043; // the longest that a flattened file holds

// A record of a chain, with room for all its bytes: a copy of `record`, link cleared, with `record.length`
// bytes from `bytes`. [any] No lock; allocates only where the blocks made ahead are used up, and what was
// once allocated is kept. A record above largeRenderEvent is allocated, and freed when it is given back.
AURenderEvent* makeRenderEvent(const AUMIDIEvent& record, const std::uint8_t* bytes);

// Gives back a chain of such records, on any thread, whoever made it; null is none. [any] No lock.
void releaseRenderEvents(AURenderEvent* head) noexcept;

// Blocks of each size.
struct RenderEventCounts {
    int small = 0;
    int medium = 0;
    int text = 0;
    int large = 0;
};

// What one owner of records needs at a time at most: there are as many blocks as all owners together need, so
// that none is made while they render. Making and ending it allocates. [main]
class RenderEventRoom {
public:
    explicit RenderEventRoom(RenderEventCounts counts);
    ~RenderEventRoom();
    RenderEventRoom(const RenderEventRoom&) = delete;
    RenderEventRoom& operator=(const RenderEventRoom&) = delete;

private:
    const RenderEventCounts counts;
};

// The bytes of a record that has room for all of them. [any]
inline const std::uint8_t* renderEventBytes(const AUMIDIEvent& record)
{
    return reinterpret_cast<const std::uint8_t*>(&record) + offsetof(AUMIDIEvent, data);
}

} // namespace volvelle
