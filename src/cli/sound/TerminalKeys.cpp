#include "cli/sound/TerminalKeys.h"

#include <cerrno>
#include <csignal>
#include <termios.h>
#include <unistd.h>

namespace volvelle {

namespace {

// Of the one terminal, for the answer to a signal too.
termios before{};
volatile std::sig_atomic_t isTaken = 0; // `before` is how it was

void giveBackTerminal()
{
    if (isTaken != 0 && !TerminalKeys::isInBackgroundOf(STDIN_FILENO)) {
        tcsetattr(STDIN_FILENO, TCSANOW, &before);
    }
    isTaken = 0;
}

// What stands here may stand in the answer to a signal.
void stop(int signal)
{
    const int failed = errno;
    sigset_t stopping;
    sigset_t held;
    giveBackTerminal();
    std::signal(signal, SIG_DFL);
    sigemptyset(&stopping);
    sigaddset(&stopping, signal);
    std::raise(signal);
    pthread_sigmask(SIG_UNBLOCK, &stopping, &held); // it stops here, and goes on here
    pthread_sigmask(SIG_SETMASK, &held, nullptr);
    std::signal(signal, stop);
    errno = failed;
}

} // namespace

TerminalKeys::TerminalKeys()
{
    if (std::signal(SIGTSTP, stop) == SIG_IGN) {
        std::signal(SIGTSTP, SIG_IGN);
    }
}

TerminalKeys::~TerminalKeys()
{
    if (std::signal(SIGTSTP, SIG_DFL) == SIG_IGN) {
        std::signal(SIGTSTP, SIG_IGN);
    }
    giveBackTerminal();
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
    isTaken = 0;
    before = settings;
    isTaken = 1;
    settings.c_lflag &= ~wholeLines;
    settings.c_cc[VMIN] = 0;
    settings.c_cc[VTIME] = 0;
    return tcsetattr(STDIN_FILENO, TCSANOW, &settings) == 0;
}

} // namespace volvelle
