#pragma once

namespace volvelle {

// The program with a window: opens the files that the arguments name, or runs the command "picture" or the
// self-test. Returns the exit status: 0 done, 1 could not, 2 usage. Called once. [main]
int runApp(int argc, char** argv);

} // namespace volvelle
