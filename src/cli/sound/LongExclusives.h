#pragma once

#include "MIDISequences/realtime/AUMIDIRecorder.h"
#include "base/Status.h"

namespace volvelle {

// Puts exclusives that are too long for the records of a sequence, which cut them off, whole into what a
// recorder wrote down last. Answers the first failure. [main]
[[nodiscard]] OSStatus restoreLongExclusives(AUMIDIRecorder& recorder);

} // namespace volvelle
