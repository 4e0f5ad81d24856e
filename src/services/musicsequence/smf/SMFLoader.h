#pragma once

#include "services/musicsequence/MusicSequence.h"

#include <cstdint>
#include <span>

namespace volvelle {

class MusicSequenceObject;

// Puts what the bytes hold in the place of the sequence's tracks and of its tempo track's content. On failure
// the sequence is as it was; fileIOErr where the memory does not suffice. [any]
[[nodiscard]] OSStatus loadSMF(MusicSequenceObject& sequence, std::span<const std::uint8_t> bytes,
                               MusicSequenceLoadFlags flags);

} // namespace volvelle
