#pragma once

#include "tests/cli/sound/PlayRun.h"

#include <memory>
#include <string>
#include <termios.h>

namespace volvelle::test {

// The program on a terminal of its own, whose keys a test presses.
class TerminalRun : public PlayRun {
protected:
    TerminalRun();
    ~TerminalRun() override;

    std::unique_ptr<ChildProcess> beginOnTerminal(const std::string& arguments) const;

    // A shell on the terminal, with job control, that runs a script; VOLVELLE stands for the program.
    std::unique_ptr<ChildProcess> beginShell(const std::string& script) const;

    termios settings() const;

    // Reads what the program shows until `text` is among it, for half a minute at most.
    bool waitFor(const std::string& text);

    void press(char key) const;
    void type(const std::string& line) const;

    int keyboard = -1;
    int terminal = -1;
    std::string screen;
};

} // namespace volvelle::test
