#pragma once

#include "MIDISequences/AUMIDIEventEx.h"

#include <memory>
#include <string>
#include <vector>

namespace volvelle {

// A file's events in the order of time, and where they came from.
class SequencerFile {
public:
    std::string filePath; // empty for none
    std::vector<std::shared_ptr<AUMIDIEventEx>> fileEvents;
};

} // namespace volvelle
