#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <vector>

namespace volvelle {

// Reads a MIDI file for the realtime sequencer, which takes sixteen tracks: one for each channel, and what is
// of no channel in the first of them, before all else of its beat. Answers a failure of the service. [main]
[[nodiscard]] OSStatus readSequencedMusic(const std::vector<std::uint8_t>& data, MusicSequence& music);

} // namespace volvelle
