#pragma once

#include "cli/CommandOutput.h"
#include "cli/Options.h"

namespace volvelle {

// Compiles a folder of scores, and of MIDI files in their place, into a folder of phrases; writes only what
// changed, and nothing where a score fails: each of those is told in a line of its own. Returns the exit
// status.
int runLibraryCompile(const LibraryCompileOptions& options, CommandOutput& output);

} // namespace volvelle
