#pragma once

#include "cli/CommandOutput.h"
#include "cli/Options.h"

namespace volvelle {

// Shows what MIDI files hold, as text or as JSON, each; one that cannot be read does not hold up the others.
// Returns the exit status.
int runInspect(const InspectOptions& options, CommandOutput& output);

} // namespace volvelle
