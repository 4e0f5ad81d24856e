#pragma once

#include "cli/CommandOutput.h"
#include "cli/SoundOptions.h"

namespace volvelle {

// Renders a MIDI file into an audio file, up to the end of its last sound. The file is replaced only when the
// new one is whole. Returns the exit status.
int runRender(const RenderOptions& options, CommandOutput& output);

} // namespace volvelle
