#include "cli/sound/TerminalKeys.h"

#include <unistd.h>

namespace volvelle {

TerminalKeys::TerminalKeys()
{
    termios settings{};
    if (isatty(STDIN_FILENO) == 0 || tcgetattr(STDIN_FILENO, &settings) != 0) {
        return;
    }
    before = settings;
    settings.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    settings.c_cc[VMIN] = 0;
    settings.c_cc[VTIME] = 0;
    tcsetattr(STDIN_FILENO, TCSANOW, &settings);
}

TerminalKeys::~TerminalKeys()
{
    if (before) {
        tcsetattr(STDIN_FILENO, TCSANOW, &*before);
    }
}

std::optional<char> TerminalKeys::read()
{
    char key = 0;
    if (!before || ::read(STDIN_FILENO, &key, 1) != 1) {
        return std::nullopt;
    }
    return key;
}

} // namespace volvelle
