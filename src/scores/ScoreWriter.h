#pragma once

#include "base/Result.h"
#include "scores/Score.h"

#include <cstdint>
#include <span>
#include <vector>

namespace volvelle {

// The score as the bytes of a Standard MIDI File: format 0, 480 ticks to the beat, one track that ends at
// beat 16. At its start stand the title as the track's name and a text "style: ...", of a machine and of a
// colour one more; a chord pattern has a text "chord: Am7" at the place of every chord; the notes lie on the
// channel of the score's kind. The same score gives the same bytes. [any]
Result<std::vector<std::uint8_t>> scoreToMIDI(const Score& score);

// Whether the bytes are a file that scoreToMIDI wrote, as far as its start tells. [any]
bool isCompiledPhrase(std::span<const std::uint8_t> bytes);

} // namespace volvelle
