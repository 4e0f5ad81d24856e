#pragma once

#include "cli/CommandOutput.h"
#include "cli/Options.h"

namespace volvelle {

// Makes three arrangements that hold the phrase of a score, and plays them one after the other through the
// program with sound; keeps them as files of free names where a folder is named. What asks the process to end
// ends all of it, and leaves no temporary folder behind. Returns the exit status. [main]
int runLibraryHear(const LibraryHearOptions& options, CommandOutput& output);

} // namespace volvelle
