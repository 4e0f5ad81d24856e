#pragma once

#include "services/musicsequence/smf/SMFWarnings.h"

#include <cstddef>

namespace volvelle {

// What was wrong with one file track.
struct SMFTrackReport {
    std::size_t notes = 0;
    std::size_t damaged = 0;    // events, or runs of bytes, that were left out
    std::size_t orphanOffs = 0; // note-offs without a note
    std::size_t openNotes = 0;
    std::size_t longNumbers = 0;
    std::size_t badTempos = 0;
    bool endsEarly = false; // inside an event
    bool hasNoEnd = false;
    bool hasEventsBehindEnd = false;
    bool hasWrongLength = false;

    // `number` counts from 1.
    void tell(std::size_t number, SMFWarnings& warnings) const;
};

} // namespace volvelle
