#pragma once

#include "cli/CommandOutput.h"

#include <functional>
#include <string>
#include <string_view>

namespace volvelle {

class Shell;

// One whole road without display, device or the user's folders, on a clock turned by hand: New, Generate,
// Play to the end, Save, Done, open again. Says "passed", or what was wrong. Returns the exit status. [main]
int runSelfTest(CommandOutput& output);

// Its road in an application that is there, on a clock turned by hand: "", or what was wrong. `before` is
// told each step that a button or a command does: "New", "Generate", "Save", "Open", "Done". [main]
std::string walkRoad(const std::function<void(std::string_view step, Shell& shell)>& before);

// "", or what is wrong with the icon. [main]
std::string iconFault();

} // namespace volvelle
