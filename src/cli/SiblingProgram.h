#pragma once

#include "cli/CommandOutput.h"

#include <filesystem>
#include <string>
#include <vector>

namespace volvelle {

// The programs that stand beside this one.
inline constexpr const char* soundProgram = "volvelle-sound";
inline constexpr const char* screenProgram = "volvelle-app";

// Where a program beside this one stands.
std::filesystem::path siblingProgram(const char* name);

// Says that a program is missing; returns exitFailed.
int tellMissingSibling(const char* name, CommandOutput& output);

// Runs a program beside this one with the streams of this one, waits for its end, and returns its exit
// status: exitFailed, with a line, where it did not begin or was ended. It ends with this process: a signal
// that asks this one to end, held or not, asks it, and 128 and the signal's number are returned after its
// end. The same one again ends it at once. [main]
int runSibling(const char* name, const std::vector<std::string>& arguments, CommandOutput& output);

} // namespace volvelle
