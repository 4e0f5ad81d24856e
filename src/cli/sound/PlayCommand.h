#pragma once

#include "base/realtime/AudioSink.h"
#include "cli/CommandOutput.h"
#include "cli/SoundOptions.h"

#include <memory>

namespace volvelle {

// Plays a MIDI file to its end, through the synthesizer or to a MIDI port of another program. On a terminal
// one line follows the music; the space bar pauses and goes on, q and Ctrl-C end. A play in the background of
// a shell has neither line nor keys. Returns the exit status.
int runPlay(const PlayOptions& options, CommandOutput& output);

// The same into a sink of the caller's. An empty description says that it is not known yet what plays.
int runPlay(const PlayOptions& options, CommandOutput& output, const std::shared_ptr<AudioSink>& sink);

} // namespace volvelle
