#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <vector>

namespace volvelle {

// The bytes of a Standard MIDI File of the sequence at 480 ticks to the beat. A failure leaves `bytes` as
// they were. [any]
[[nodiscard]] OSStatus sequenceFileBytes(const MusicSequence& sequence, std::vector<std::uint8_t>& bytes);

} // namespace volvelle
