#pragma once

namespace volvelle {

// Runs the command that the arguments ask for and returns the exit status: 0 done, 1 could not (one plain
// line on standard error), 2 usage. A fatal stop ends the process with 1. Called once. [main thread]
int runCommandLine(int argc, char** argv);

} // namespace volvelle
