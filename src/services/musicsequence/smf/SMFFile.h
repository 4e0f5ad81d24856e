#pragma once

#include "services/musicsequence/smf/SMFEvents.h"
#include "services/musicsequence/smf/SMFTrack.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace volvelle {

// What a Standard MIDI File holds.
struct SMFFile {
    std::span<const std::uint8_t> bytes; // the file itself, owned by whoever had it read
    int format = 1;
    int division = 480; // ticks a beat, 1 to 32767
    SMFEvents events;
    std::vector<SMFTrack> tracks;
    std::vector<std::string> warnings; // what was mended, in plain English

    auto eventsOf(const SMFTrack& track) const { return events.run(track.first, track.count); }

    auto eventsOf(const SMFTrack& track) { return events.run(track.first, track.count); }
};

} // namespace volvelle
