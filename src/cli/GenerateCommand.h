#pragma once

#include "cli/CommandOutput.h"
#include "cli/Options.h"

namespace volvelle {

// Writes one arrangement, or several, as Standard MIDI Files and reports what was chosen. A file that was
// named is replaced, and only when the new one is whole; without a name no file is. Returns the exit status.
int runGenerate(const GenerateOptions& options, CommandOutput& output);

} // namespace volvelle
