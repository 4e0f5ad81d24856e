#pragma once

#include "cli/CommandOutput.h"
#include "cli/Options.h"

namespace volvelle {

// Shows what a MIDI file holds, as text or as JSON. Returns the exit status.
int runInspect(const InspectOptions& options, CommandOutput& output);

} // namespace volvelle
