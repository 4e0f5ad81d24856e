#include "tests/cli/sound/PlayRun.h"
#include "tests/rendering/NoteRow.h"

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

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

    // A shell on the terminal, with job control, that runs a script; VOLVELLE stands for the program.
    std::unique_ptr<ChildProcess> beginShell(const std::string& script) const
    {
        const std::string name = ptsname(keyboard);
        write("script", "VOLVELLE='" VOLVELLE_PROGRAM "'\nset -m\n" + script);
        const std::string line = "cd '" + (folder / "work").string() + "' && exec setsid --ctty sh script <" +
                                 name + " >" + name + " 2>&1";
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

TEST_F(PlayTerminal, ControlBackslashLeavesTheTerminalAsItWas)
{
    const termios before = settings();
    const auto play = beginOnTerminal("play row.mid");
    ASSERT_TRUE(waitFor("Bar 1.2")) << errors();
    press('\x1C');
    EXPECT_EQ(play->waitForEnd(), 0);
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

TEST_F(PlayTerminal, WithTheSequencerInsideTheEngineTheKeysWorkAsWell)
{
    const termios before = settings();
    const auto play = beginOnTerminal("play row.mid --engine render");
    ASSERT_TRUE(waitFor("\rBar 1.2")) << errors();
    press(' ');
    ASSERT_TRUE(waitFor("\rPaused  Bar 1.")) << screen;
    press(' ');
    ASSERT_TRUE(waitFor("\rBar 2.1")) << screen;
    press('q');
    EXPECT_TRUE(waitFor("beats\x1B[K\r\n"));
    EXPECT_EQ(play->waitForEnd(), 0);
    EXPECT_TRUE(isSame(settings(), before));
    EXPECT_EQ(errors(), "");
}

TEST_F(PlayTerminal, TheLineFitsIntoANarrowTerminal)
{
    const winsize narrow{24, 20, 0, 0};
    ASSERT_EQ(ioctl(terminal, TIOCSWINSZ, &narrow), 0);
    const auto play = beginOnTerminal("play row.mid");
    ASSERT_TRUE(waitFor("\rBar 1.2") && waitFor("\rBar 1.3")) << errors();
    for (std::size_t at = screen.find("\rBar "); at != std::string::npos;
         at = screen.find("\rBar ", at + 1)) {
        const std::size_t end = screen.find("\x1B[K", at);
        EXPECT_TRUE(end == std::string::npos || end - at - 1 == 19) << screen;
    }
    press('q');
    EXPECT_EQ(play->waitForEnd(), 0);
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

TEST_F(PlayTerminal, InTheBackgroundOfAShellItPlaysToItsEndAndLeavesTheTerminalAlone)
{
    write("row.mid", NoteRow{8}.file());
    const termios before = settings();
    const auto shell = beginShell("$VOLVELLE play row.mid & wait $!\necho ended $?\n");
    EXPECT_TRUE(waitFor("Playing 'row.mid' through "));
    EXPECT_TRUE(isSame(settings(), before));
    EXPECT_TRUE(waitFor("ended 0\r\n"));
    EXPECT_EQ(screen.find("Bar "), std::string::npos) << screen;
    EXPECT_TRUE(isSame(settings(), before));
    EXPECT_EQ(shell->waitForEnd(), 0);
}

TEST_F(PlayTerminal, ATerminalThatStopsTheOutputOfTheBackgroundDoesNotStopThePlay)
{
    write("row.mid", NoteRow{8}.file());
    const auto shell = beginShell("stty tostop\n$VOLVELLE play row.mid & wait $!\necho ended $?\n");
    EXPECT_TRUE(waitFor("ended 0\r\n")) << screen;
    EXPECT_EQ(shell->waitForEnd(), 0);
}

TEST_F(PlayTerminal, BroughtToTheFrontOfAShellItTakesTheTerminal)
{
    const termios before = settings();
    const auto shell = beginShell("$VOLVELLE play row.mid &\nread key\nfg >fg.txt\necho ended $?\n");
    ASSERT_TRUE(waitFor("Playing 'row.mid' through ")) << screen;
    press('\n');
    ASSERT_TRUE(waitFor("Bar ")) << screen;
    press('q');
    EXPECT_TRUE(waitFor("ended 0\r\n")) << screen;
    EXPECT_TRUE(isSame(settings(), before));
    EXPECT_EQ(shell->waitForEnd(), 0);
}

TEST_F(PlayTerminal, SentToTheBackgroundItPlaysOn)
{
    write("row.mid", NoteRow{12}.file());
    const auto shell = beginShell("$VOLVELLE play row.mid\nbg >bg.txt\nwait\necho ended\n");
    ASSERT_TRUE(waitFor("Bar 1.2")) << screen;
    press('\x1A');
    EXPECT_TRUE(waitFor("ended\r\n")) << screen;
    EXPECT_EQ(shell->waitForEnd(), 0);
}

// What is left to say finds no terminal any more, and that is a failure as everywhere.
TEST_F(PlayTerminal, ATerminalThatClosesEndsThePlay)
{
    const auto play = beginOnTerminal("play row.mid");
    ASSERT_TRUE(waitFor("Bar 1.2")) << errors();
    close(std::exchange(terminal, -1));
    close(std::exchange(keyboard, -1));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(play->waitForEnd(), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

} // namespace
} // namespace volvelle::test
