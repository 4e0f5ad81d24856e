#include "tests/cli/sound/NoteRow.h"
#include "tests/cli/sound/PlayRun.h"

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace volvelle::test {
namespace {

// The program on a terminal of its own, whose keys a test presses.
class PlayTerminal : public PlayRun {
protected:
    PlayTerminal()
    {
        keyboard = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        grantpt(keyboard);
        unlockpt(keyboard);
        terminal = open(ptsname(keyboard), O_RDWR | O_NOCTTY | O_CLOEXEC);
        write("row.mid", NoteRow{480}.file());
    }

    ~PlayTerminal() override
    {
        close(terminal);
        close(keyboard);
    }

    std::unique_ptr<ChildProcess> beginOnTerminal(const std::string& arguments) const
    {
        const std::string name = ptsname(keyboard);
        const std::string line = "cd '" + (folder / "work").string() + "' && exec setsid --ctty '" +
                                 VOLVELLE_PROGRAM "' " + arguments + " <" + name + " >" + name + " 2>errors";
        return std::make_unique<ChildProcess>(std::vector<std::string>{"sh", "-c", line});
    }

    termios settings() const
    {
        termios now{};
        EXPECT_EQ(tcgetattr(terminal, &now), 0);
        return now;
    }

    // Reads what the program shows until `text` is among it, for half a minute at most.
    bool waitFor(const std::string& text)
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

    void press(char key) const { ASSERT_EQ(::write(keyboard, &key, 1), 1); }

    int keyboard = -1;
    int terminal = -1;
    std::string screen;
};

bool isSame(const termios& one, const termios& other)
{
    return one.c_iflag == other.c_iflag && one.c_oflag == other.c_oflag && one.c_cflag == other.c_cflag &&
           one.c_lflag == other.c_lflag && one.c_cc[VMIN] == other.c_cc[VMIN] &&
           one.c_cc[VTIME] == other.c_cc[VTIME];
}

TEST_F(PlayTerminal, ControlCEndsSoonAndLeavesTheTerminalAsItWas)
{
    const termios before = settings();
    const auto play = beginOnTerminal("play row.mid");
    ASSERT_TRUE(waitFor("Bar 1.2")) << errors();
    EXPECT_EQ(settings().c_lflag & static_cast<tcflag_t>(ICANON | ECHO), 0U);
    const auto start = std::chrono::steady_clock::now();
    press('\x03');
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
    EXPECT_TRUE(isSame(settings(), before));
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayTerminal, QEndsAndTheLastLineIsEnded)
{
    const termios before = settings();
    const auto play = beginOnTerminal("play row.mid");
    ASSERT_TRUE(waitFor("Bar 1.2")) << errors();
    press('q');
    EXPECT_TRUE(waitFor("beats\x1B[K\r\n"));
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_TRUE(isSame(settings(), before));
}

TEST_F(PlayTerminal, ALostDeviceHasALineOfItsOwn)
{
    START_SERVER("jack");
    const auto play = beginOnTerminal("play row.mid");
    ASSERT_TRUE(waitFor("Bar 1.2")) << errors();
    servers.signal("jack", SIGKILL);
    EXPECT_TRUE(waitFor("beats\x1B[K\r\nThe audio device was lost: the music plays on silently.\r\n\rBar "));
    press('q');
    EXPECT_EQ(play->waitForEnd(), 0);
}

} // namespace
} // namespace volvelle::test
