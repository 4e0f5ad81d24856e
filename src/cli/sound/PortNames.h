#pragma once

#include "base/Result.h"
#include "cli/CommandOutput.h"

#include <string>
#include <vector>

namespace volvelle {

// The misuse of a port without a name.
inline constexpr const char* namelessPort = "A MIDI port has a name: --port list shows them all.";

// Answers "--port list": a line for each name, or why there are none. Returns the exit status.
int tellPorts(const Result<std::vector<std::string>>& names, CommandOutput& output);

} // namespace volvelle
