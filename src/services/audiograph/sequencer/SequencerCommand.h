#pragma once

#include <cstdint>

namespace volvelle {

// What the main thread wants of a sequencer: the whole of it, so that one that was never seen is not missed.
struct SequencerCommand {
    std::uint64_t serial = 0;      // counts commands
    std::uint64_t startSerial = 0; // counts starts
    std::uint64_t moveSerial = 0;  // the serial of the last command that set the position
    double beats = 0.0;            // where the last start or move went
    float rate = 1.0F;
    bool isPlaying = false;
};

} // namespace volvelle
