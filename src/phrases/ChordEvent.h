#pragma once

#include "phrases/PhraseEvent.h"
#include "theory/ChordRule.h"

#include <memory>
#include <vector>

namespace volvelle {

// A detected chord.
class ChordEvent {
public:
    ChordEvent();
    virtual ~ChordEvent();
    ChordEvent(const ChordEvent&) = delete;
    ChordEvent& operator=(const ChordEvent&) = delete;

    std::shared_ptr<ChordRule> nrule; // the chord's own copy, never the catalogue's object; null for none
    double position = 0.0;            // beats
    double duration = 0.0;            // beats up to the next chord, set by getChordPositions()
    PhraseEvents notes;               // the events that belong to the chord
};

} // namespace volvelle
