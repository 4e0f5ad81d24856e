#pragma once

#include "cli/CommandOutput.h"
#include "cli/SoundOptions.h"

namespace volvelle {

// The commands that need the libraries of sound. They live in a program of their own, "volvelle-sound" beside
// this one, so that the others start without loading those.
struct SoundCommands {
    int (*play)(const PlayOptions& options, CommandOutput& output);
    int (*render)(const RenderOptions& options, CommandOutput& output);
};

// Runs the command that the arguments ask for and returns the exit status: 0 done, 1 could not (one plain
// line on standard error), 2 usage. A fatal stop ends the process with 1. Without `sound`, a command with
// sound is handed over to the other program. Called once. [main]
int runCommandLine(int argc, char** argv, const SoundCommands* sound = nullptr);

} // namespace volvelle
