#pragma once

#include "tests/cli/ProgramRun.h"
#include "tests/services/audiodevice/ChildProcess.h"
#include "tests/services/audiodevice/SoundServersFolder.h"

#include <memory>
#include <string>

// Starts a server of the test's own and lets the program find it. GTEST_SKIP and FAIL end the function that
// they stand in.
#define START_SERVER(name)                                                                                   \
    servers.start(name);                                                                                     \
    if (const std::string reason = servers.use(name); reason.ends_with("not installed")) {                   \
        GTEST_SKIP() << reason;                                                                              \
    } else if (!reason.empty()) {                                                                            \
        FAIL() << reason;                                                                                    \
    }

namespace volvelle::test {

// Runs the program beside the test, with sound servers that are the test's own, none at first.
class PlayRun : public ProgramRun {
protected:
    // Runs `volvelle ARGUMENTS` in the test's folder, behind shell commands `first`. Its standard output is
    // read line by line.
    std::unique_ptr<ChildProcess> begin(const std::string& arguments, const std::string& first = "") const;

    // What it wrote to standard error.
    std::string errors() const;

    SoundServersFolder servers{SoundServersFolder::Kind::own};
};

} // namespace volvelle::test
