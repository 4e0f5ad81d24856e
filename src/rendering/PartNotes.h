#pragma once

#include "rendering/RenderPart.h"
#include "services/audiograph/sequencer/SequencerEvents.h"

namespace volvelle {

// The piece without the notes that do not begin in the part, which is cut where none of these and its own
// change each other. Drums that ring where it ends are ended by the first strike after it that chokes them,
// which stays, too soft to be heard. All notes of one channel stand on one track. [any]
SequencerEvents notesOf(const RenderPart& part, const SequencerEvents& piece);

} // namespace volvelle
