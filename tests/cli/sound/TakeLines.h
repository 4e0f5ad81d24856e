#pragma once

#include "tests/sequence/SequenceTexts.h"

#include <cstdint>
#include <vector>

namespace volvelle::test {

// The events of a MIDI file's tracks as texts, all tracks after each other.
Lines takeLines(const std::vector<std::uint8_t>& file);

} // namespace volvelle::test
