#pragma once

#include "cli/CommandOutput.h"
#include "cli/ScreenOptions.h"
#include "cli/SoundOptions.h"

namespace volvelle {

// The commands that need the libraries of sound, or of screens. They live in programs of their own beside
// this one, so that the others start without loading those. Null for those of another program.
struct HandedCommands {
    int (*play)(const PlayOptions& options, CommandOutput& output) = nullptr; // of "volvelle-sound"
    int (*record)(const RecordOptions& options, CommandOutput& output) = nullptr;
    int (*render)(const RenderOptions& options, CommandOutput& output) = nullptr;
    int (*picture)(const PictureOptions& options, CommandOutput& output) = nullptr; // of "volvelle-app"
    int (*open)(const AppOptions& options, CommandOutput& output) = nullptr;
};

// Runs the command that the arguments ask for, without one the application with the files that they name, and
// returns the exit status: 0 done, 1 could not (plain lines on standard error), 2 usage. A fatal stop ends
// the process with 1. A command that is not among `commands` is handed over to the program that has it.
// Called once. [main]
int runCommandLine(int argc, char** argv, const HandedCommands& commands = {});

} // namespace volvelle
