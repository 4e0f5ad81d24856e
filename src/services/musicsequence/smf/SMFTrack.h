#pragma once

#include "services/musicsequence/smf/SMFEvent.h"

#include <cstdint>
#include <vector>

namespace volvelle {

// A file track: its events by tick, a note where its note-on stood.
struct SMFTrack {
    std::vector<SMFEvent> events;
    std::uint64_t end = 0; // its end in ticks, not before any end of an event
};

} // namespace volvelle
