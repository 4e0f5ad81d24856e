#pragma once

#include "cli/CommandOutput.h"
#include "cli/Options.h"

namespace volvelle {

// Loads every phrase of a library as the generator does, in the order of their numbers, and tells each one
// that is no file or a damaged one, warns, is silent, holds thousands of events, begins a chord at its end,
// or gives other chords than its score names; then what breaks the rules, see LibraryRules. A folder of
// scores, or one score, is held against the rules alone. Returns the exit status.
int runLibraryCheck(const LibraryCheckOptions& options, CommandOutput& output);

} // namespace volvelle
