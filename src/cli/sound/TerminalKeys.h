#pragma once

#include <optional>

namespace volvelle {

// Reads single keys from standard input for its lifetime where that is a terminal and the program in its
// foreground; elsewhere there are none, and the terminal is left alone. It is put back at the end, and when
// Ctrl-Z stops the program. One at a time. [main]
class TerminalKeys {
public:
    TerminalKeys();
    ~TerminalKeys();
    TerminalKeys(const TerminalKeys&) = delete;
    TerminalKeys& operator=(const TerminalKeys&) = delete;

    // The next key that was pressed, if there is one.
    std::optional<char> read();

    // True where the program is not the one that its terminal `descriptor` belongs to; false where that is no
    // terminal or has no such program.
    static bool isInBackgroundOf(int descriptor);

private:
    static bool takeTerminal();
};

} // namespace volvelle
