#pragma once

#include "phrases/PhraseEvent.h"
#include "sequence/MIDISequence16.h"

namespace volvelle {

// Writes an event, moved by `offset` beats, through the create operation of its type. Note-offs are left out,
// since a note-on carries its duration, and so are events of no type.
void writePhraseEvent(MIDISequence16& target, const PhraseEvent& event, double offset = 0.0);

} // namespace volvelle
