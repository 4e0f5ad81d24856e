#pragma once

#include "cli/CommandOutput.h"
#include "cli/Options.h"

namespace volvelle {

// Loads every phrase of a library as the generator does, in the order of their numbers, and tells each one
// that is no file or a damaged one, warns, is silent, has too many notes, begins a chord at its end, or gives
// other chords than its score names. A
// folder of scores, or one score, is held against the rules instead. Returns the exit status.
int runLibraryCheck(const LibraryCheckOptions& options, CommandOutput& output);

} // namespace volvelle
