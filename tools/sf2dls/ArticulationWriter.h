#pragma once

#include "services/synthesizer/DLSFile.h"
#include "tools/sf2dls/SoundFontZones.h"

namespace volvelle {

// The articulation of a voice: its envelopes, oscillators, filter, pan, sends and modulators. Pitch stands in
// it only as far as a tuning cannot hold it. Counts in `dropped` the modulators that cannot be said.
DLSArticulation articulationOf(const SoundFontVoice& voice, int unityNote, int& dropped);

} // namespace volvelle
