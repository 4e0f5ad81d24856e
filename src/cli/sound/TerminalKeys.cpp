#include "cli/sound/TerminalKeys.h"

#include <unistd.h>

namespace volvelle {

TerminalKeys::~TerminalKeys()
{
    if (before && !isInBackgroundOf(STDIN_FILENO)) {
        tcsetattr(STDIN_FILENO, TCSANOW, &*before);
    }
}

std::optional<char> TerminalKeys::read()
{
    char key = 0;
    if (!takeTerminal() || ::read(STDIN_FILENO, &key, 1) != 1) {
        return std::nullopt;
    }
    return key;
}

bool TerminalKeys::isInBackgroundOf(int descriptor)
{
    const pid_t foreground = tcgetpgrp(descriptor);
    return foreground != -1 && foreground != getpgrp();
}

// Again each time: a shell that stopped the program and goes on with it sets the terminal meanwhile.
bool TerminalKeys::takeTerminal()
{
    constexpr auto wholeLines = static_cast<tcflag_t>(ICANON | ECHO);
    termios settings{};
    if (isatty(STDIN_FILENO) == 0 || isInBackgroundOf(STDIN_FILENO) ||
        tcgetattr(STDIN_FILENO, &settings) != 0) {
        return false;
    }
    if ((settings.c_lflag & wholeLines) == 0 && settings.c_cc[VMIN] == 0 && settings.c_cc[VTIME] == 0) {
        return true;
    }
    before = settings;
    settings.c_lflag &= ~wholeLines;
    settings.c_cc[VMIN] = 0;
    settings.c_cc[VTIME] = 0;
    return tcsetattr(STDIN_FILENO, TCSANOW, &settings) == 0;
}

} // namespace volvelle
