#include "tests/cli/sound/TerminalRun.h"
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

class PlayTerminal : public TerminalRun {
protected:
    PlayTerminal() { write("row.mid", NoteRow{480}.file()); }
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

TEST_F(PlayTerminal, StoppedItLeavesTheTerminalAsItWasToAShellThatSetsNothingItself)
{
    const termios before = settings();
    const auto shell = beginShell("export VOLVELLE\nPS1='ready> ' ENV= exec dash -i\n");
    ASSERT_TRUE(waitFor("ready> ")) << screen;
    type("$VOLVELLE play row.mid\n");
    ASSERT_TRUE(waitFor("Bar 1.2")) << screen;
    press('\x1A');
    ASSERT_TRUE(waitFor("Stopped")) << screen;
    EXPECT_TRUE(isSame(settings(), before));
    type("echo still $((40 + 2))\n");
    ASSERT_TRUE(waitFor("still 42")) << screen;
    screen.clear();
    type("fg\n");
    ASSERT_TRUE(waitFor("Bar ")) << screen;
    press('q');
    ASSERT_TRUE(waitFor("ready> ")) << screen;
    EXPECT_TRUE(isSame(settings(), before));
    type("exit 7\n");
    EXPECT_EQ(shell->waitForEnd(), 7);
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
