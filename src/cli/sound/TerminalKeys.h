#pragma once

#include <optional>
#include <termios.h>

namespace volvelle {

// Reads single keys from standard input for its lifetime where that is a terminal; elsewhere there are none.
// The terminal is put back at the end.
class TerminalKeys {
public:
    TerminalKeys();
    ~TerminalKeys();
    TerminalKeys(const TerminalKeys&) = delete;
    TerminalKeys& operator=(const TerminalKeys&) = delete;

    // The next key that was pressed, if there is one.
    std::optional<char> read();

private:
    std::optional<termios> before; // a value where the terminal was changed
};

} // namespace volvelle
