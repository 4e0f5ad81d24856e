#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace volvelle {

// A MIDI document: the bytes of a Standard MIDI File.
class MIDIDocument {
public:
    // The file bytes of a sequence at 480 ticks to the beat; without a value where that fails, which is told
    // on the console. [main]
    static std::optional<std::vector<std::uint8_t>> sequenceData(const MusicSequence& sequence);
};

} // namespace volvelle
