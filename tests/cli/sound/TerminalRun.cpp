#include "tests/cli/sound/TerminalRun.h"

#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace volvelle::test {

TerminalRun::TerminalRun()
{
    keyboard = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    grantpt(keyboard);
    unlockpt(keyboard);
    terminal = open(ptsname(keyboard), O_RDWR | O_NOCTTY | O_CLOEXEC);
}

TerminalRun::~TerminalRun()
{
    close(terminal);
    close(keyboard);
}

std::unique_ptr<ChildProcess> TerminalRun::beginOnTerminal(const std::string& arguments) const
{
    const std::string name = ptsname(keyboard);
    const std::string line = "cd '" + (folder / "work").string() + "' && exec setsid --ctty '" +
                             VOLVELLE_PROGRAM "' " + arguments + " <" + name + " >" + name + " 2>errors";
    return std::make_unique<ChildProcess>(std::vector<std::string>{"sh", "-c", line});
}

std::unique_ptr<ChildProcess> TerminalRun::beginShell(const std::string& script) const
{
    const std::string name = ptsname(keyboard);
    write("script", "VOLVELLE='" VOLVELLE_PROGRAM "'\nset -m\n" + script);
    const std::string line = "cd '" + (folder / "work").string() + "' && exec setsid --ctty sh script <" +
                             name + " >" + name + " 2>&1";
    return std::make_unique<ChildProcess>(std::vector<std::string>{"sh", "-c", line});
}

termios TerminalRun::settings() const
{
    termios now{};
    EXPECT_EQ(tcgetattr(terminal, &now), 0);
    return now;
}

bool TerminalRun::waitFor(const std::string& text)
{
    while (screen.find(text) == std::string::npos) {
        pollfd waiting = {keyboard, POLLIN, 0};
        char bytes[256];
        const ssize_t count = poll(&waiting, 1, 30'000) == 1 ? ::read(keyboard, bytes, sizeof(bytes)) : 0;
        if (count <= 0) {
            return false;
        }
        screen.append(bytes, static_cast<std::size_t>(count));
    }
    return true;
}

void TerminalRun::press(char key) const
{
    ASSERT_EQ(::write(keyboard, &key, 1), 1);
}

void TerminalRun::type(const std::string& line) const
{
    for (const char key : line) {
        press(key);
    }
}

} // namespace volvelle::test
