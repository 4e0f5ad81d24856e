#pragma once

#include "rendering/RenderPart.h"
#include "services/audiograph/sequencer/SequencerEvents.h"

namespace volvelle {

// The piece without the notes that do not begin in the part; of earlier ones the ends stay, for keys that are
// struck again. What strikes the drums soon after it stays, too soft to be heard, since it ends drums that
// ring; so does what strikes a key anew that a pedal holds, and one that is still down is released by it.
// All notes of one channel stand on one track. [any]
SequencerEvents notesOf(const RenderPart& part, const SequencerEvents& piece);

} // namespace volvelle
