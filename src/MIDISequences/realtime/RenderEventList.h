#pragma once

#include "MIDISequences/AURenderEvent.h"
#include "MIDISequences/RenderEventPool.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

// What those who read lists of render events have in common. [any] No lock, no allocation.
namespace volvelle {

inline constexpr std::size_t listRoomAhead = 1024;   // events for which room is made at construction
inline constexpr std::size_t longListRoomAhead = 64; // of them of each of the longer sizes

// What a list of that many events needs.
inline constexpr RenderEventCounts listRoom{static_cast<int>(listRoomAhead), static_cast<int>(listRoomAhead),
                                            static_cast<int>(longListRoomAhead),
                                            static_cast<int>(longListRoomAhead)};

// Calls `visit` with each MIDI and exclusive record of a list; records of other types are left out.
template <class Visit>
void visitMIDI(const AURenderEvent* event, Visit&& visit)
{
    for (; event != nullptr; event = event->head.next) {
        if (event->head.eventType == AURenderEventMIDI || event->head.eventType == AURenderEventMIDISysEx) {
            visit(event->MIDI);
        }
    }
}

inline std::uint8_t kindOf(const AUMIDIEvent& event)
{
    return event.data[0] & 0xF0;
}

inline std::uint8_t channelOf(const AUMIDIEvent& event)
{
    return event.data[0] & 0x0F;
}

// The record without its link and without what does not fit into it: at most three bytes.
inline AUMIDIEvent heldByValue(const AUMIDIEvent& event)
{
    AUMIDIEvent held = event;
    held.next = nullptr;
    held.length = std::min(held.length, std::uint16_t{sizeof(held.data)});
    return held;
}

inline AURenderEvent asRenderEvent(const AUMIDIEvent& event)
{
    AURenderEvent held;
    held.MIDI = event;
    return held;
}

// Where an event goes in the order of time, and which it was in its list.
struct EventPlace {
    std::int64_t stamp = 0; // samples
    std::size_t index = 0;

    bool operator<(const EventPlace& other) const
    {
        return stamp != other.stamp ? stamp < other.stamp : index < other.index;
    }
};

// Puts places in the order of time; equal times stay in that of the list.
inline void sortPlaces(std::vector<EventPlace>& places)
{
    if (!std::ranges::is_sorted(places, std::less())) {
        std::ranges::sort(places, std::less());
    }
}

} // namespace volvelle
