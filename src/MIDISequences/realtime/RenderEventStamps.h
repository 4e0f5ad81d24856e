#pragma once

#include "MIDISequences/AURenderEvent.h"

#include <cstdint>

namespace volvelle {

// Stamps each record of a chain of AUMIDISequencer::process with the frame at which it sounds, for a block of
// so many frames from `time` on. Null is no chain.
// - The first `cleanupCount` records, which end notes, sound at the block's first frame, whatever their
// stamps.
// - Any other sounds at the smallest stamp among itself and all that follow it, so that none sounds later
//   than one after it: what was sent first cannot undo what the file says. A stamp before the block, as
//   AUMIDISequencer::immediateTime is one, counts as its first frame, one after it as the next block's first.
// A record that is stamped `time + frames` belongs to the next block: the host keeps it. [render] No lock, no
// allocation.
void stampInOrder(AURenderEvent* chain, int cleanupCount, std::int64_t time, int frames) noexcept;

} // namespace volvelle
