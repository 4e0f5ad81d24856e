#pragma once

#include "cli/CommandOutput.h"
#include "cli/SoundOptions.h"

namespace volvelle {

// Plays a MIDI file to its end, through the synthesizer or to a MIDI port of another program. On a terminal
// one line follows the music; the space bar pauses and goes on, q and Ctrl-C end. Returns the exit status.
int runPlay(const PlayOptions& options, CommandOutput& output);

} // namespace volvelle
