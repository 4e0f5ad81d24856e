#pragma once

#include "cli/CommandLine.h"
#include "cli/CommandOutput.h"
#include "cli/Options.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <string>

// What the commands' arguments say, and how each command tells the command line about itself. [main]
namespace volvelle {

// The arguments' values, and what is to be done with them once all are known.
struct Request {
    CommonOptions common;
    GenerateOptions generate;
    InspectOptions inspect;
    LibraryCheckOptions libraryCheck;
    LibraryCompileOptions libraryCompile;
    LibraryHearOptions libraryHear;
    PlayOptions play;
    RecordOptions record;
    RenderOptions render;
    PictureOptions picture;
    AppOptions app;
    std::function<int(CommandOutput&)> action;
};

// A command with its purpose and what its help ends with; options for all are understood after it, too.
CLI::App& addCommand(CLI::App& app, const std::string& name, const std::string& purpose,
                     const std::string& footer);

// generate, inspect and library.
void addOwnCommands(CLI::App& app, Request& request);

// Those with sound or a screen: what this process does not have, another program does in its place.
void addHandedCommands(CLI::App& app, Request& request, const HandedCommands& handed, char** argv);

} // namespace volvelle
