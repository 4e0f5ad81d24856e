#pragma once

#include "MIDISequences/realtime/AUMIDISequencer.h"

#include <memory>
#include <vector>

namespace volvelle {

// One section of a matrix: a looping sequencer for each channel. [main]
class MatrixTracks {
public:
    MatrixTracks();

    static constexpr int trackCount = 16;

    std::vector<std::shared_ptr<AUMIDISequencer>> tracks; // track n plays on channel n
};

} // namespace volvelle
