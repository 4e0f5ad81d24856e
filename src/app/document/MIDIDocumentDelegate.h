#pragma once

#include "MIDISequences/AUMIDIEventEx.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace volvelle {

// The screen that shows a document. [main]
class MIDIDocumentDelegate {
public:
    virtual ~MIDIDocumentDelegate() = default;

    // There are new events to show.
    virtual void midiDocumentUpdateEvents(const std::vector<std::shared_ptr<AUMIDIEventEx>>& events) = 0;

    // There is new content to play, a Standard MIDI File.
    virtual void midiDocumentPlaySequence(const std::vector<std::uint8_t>& data) = 0;
};

} // namespace volvelle
