#pragma once

#include "cli/CommandOutput.h"

namespace volvelle {

// One whole road without display, device or the user's folders, on a clock turned by hand: New, Generate,
// Play to the end, Save, Done, open again. Says "passed", or what was wrong. Returns the exit status. [main]
int runSelfTest(CommandOutput& output);

} // namespace volvelle
