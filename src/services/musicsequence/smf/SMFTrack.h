#pragma once

#include <cstddef>
#include <cstdint>

namespace volvelle {

// A file track: its events by tick, a note where its note-on stood, as a run of the events of the file.
struct SMFTrack {
    std::size_t first = 0;
    std::size_t count = 0;
    std::uint64_t end = 0; // its end in ticks, not before any end of an event
};

} // namespace volvelle
