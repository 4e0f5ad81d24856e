#pragma once

#include <cstdint>

namespace volvelle {

// Where a sequencer stands past the last block.
struct SequencerPosition {
    std::uint64_t serial = 0; // of the last command that it obeys
    double beats = 0.0;
    double seconds = 0.0; // at rate 1.0
};

} // namespace volvelle
