#pragma once

#include "theory/MIDINote.h"

#include <memory>
#include <vector>

namespace volvelle {

// The notes of one octave. Making one is a fatal stop: it names notes that are not there yet.
class MIDIOctave {
public:
    MIDIOctave();
    virtual ~MIDIOctave() = default;

    std::vector<std::shared_ptr<MIDINote>> notes;
};

} // namespace volvelle
