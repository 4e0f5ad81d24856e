#pragma once

#include "tests/cli/ProgramRun.h"
#include "tests/services/audiodevice/SoundServersFolder.h"
#include "tests/support/ChildProcess.h"

#include <memory>
#include <string>

// Starts a server of the test's own and lets the program find it.
#define START_SERVER(name)                                                                                   \
    servers.start(name);                                                                                     \
    USE_SERVER(servers, name)

namespace volvelle::test {

// Runs the program beside the test, with sound servers that are the test's own, none at first.
class PlayRun : public ProgramRun {
protected:
    // Runs `volvelle ARGUMENTS` in the test's folder, after shell commands `first`. Its standard output is
    // read line by line.
    std::unique_ptr<ChildProcess> begin(const std::string& arguments, const std::string& first = "") const;

    // What it wrote to standard error.
    std::string errors() const;

    SoundServersFolder servers{SoundServersFolder::Kind::own};
};

} // namespace volvelle::test
