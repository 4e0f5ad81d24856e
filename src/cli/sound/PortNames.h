#pragma once

#include "base/Result.h"
#include "cli/CommandOutput.h"

#include <string>
#include <vector>

namespace volvelle {

// Answers "--port list": a line for each name, or why there are none. Returns the exit status.
int tellPorts(const Result<std::vector<std::string>>& names, CommandOutput& output);

} // namespace volvelle
