#include "cli/CommandOutput.h"

#include "tests/cli/ProgramRun.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace volvelle::test {
namespace {

using testing::HasSubstr;
using testing::Not;

// The program with standard output and standard error on a terminal.
class CommandOutputOnTerminalTest : public ProgramRun {
protected:
    CommandOutputOnTerminalTest()
    {
        grantpt(screen);
        unlockpt(screen);
        terminal = open(ptsname(screen), O_RDWR | O_NOCTTY | O_CLOEXEC);
    }

    ~CommandOutputOnTerminalTest() override
    {
        close(terminal);
        close(screen);
    }

    void setColumns(unsigned short columns) const
    {
        const winsize size{24, columns, 0, 0};
        ASSERT_EQ(ioctl(terminal, TIOCSWINSZ, &size), 0);
    }

    // What the terminal got of a program.
    std::string shown(const std::string& arguments, int status = 0) const
    {
        const std::string name = ptsname(screen);
        EXPECT_EQ(volvelle(arguments + " >" + name + " 2>" + name).status, status);
        std::string text;
        char bytes[4096];
        pollfd waiting = {screen, POLLIN, 0};
        while (poll(&waiting, 1, 0) == 1) {
            const ssize_t count = ::read(screen, bytes, sizeof(bytes));
            text.append(bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
        return text;
    }

    const int screen = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    int terminal = -1;
};

TEST(CommandOutput, ABarShowsHowMuchIsDone)
{
    EXPECT_EQ(progressBar(0, 10, 79), "[                              ] 0 of 10");
    EXPECT_EQ(progressBar(3, 10, 79), "[#########                     ] 3 of 10");
    EXPECT_EQ(progressBar(10, 10, 79), "[##############################] 10 of 10");
    EXPECT_EQ(progressBar(2'000'000'000, 2'000'000'001, 79),
              "[############################# ] 2000000000 of 2000000001");
}

TEST(CommandOutput, ABarFitsIntoANarrowTerminal)
{
    EXPECT_EQ(progressBar(1, 2, 40), "[###############               ] 1 of 2");
    EXPECT_EQ(progressBar(1, 2, 19), "[#####     ] 1 of 2");
    EXPECT_EQ(progressBar(1, 2, 10), "[ ] 1 of 2");
    EXPECT_EQ(progressBar(1, 2, 9), "1 of 2");
    EXPECT_EQ(progressBar(1, 2, 3), "1 o");
    EXPECT_EQ(progressBar(1, 2, 0), "");
}

TEST_F(CommandOutputOnTerminalTest, ABarIsGoneBeforeALineIsShown)
{
    setColumns(80);
    const std::string text = shown("generate --count 3 --out a");
    EXPECT_THAT(text, HasSubstr("] 1 of 3\r\x1B[K'a 2.mid': "));
    EXPECT_THAT(text, HasSubstr("] 2 of 3\r\x1B[K'a 3.mid': "));
    EXPECT_THAT(text, Not(HasSubstr("3 of 3")));
}

TEST_F(CommandOutputOnTerminalTest, ABarIsGoneBeforeAFailureIsTold)
{
    setColumns(80);
    std::filesystem::create_directory(folder / "work/a 2.mid");
    EXPECT_THAT(shown("generate --count 3 --quiet --out a", 1), Not(HasSubstr("1 of 3")));
    EXPECT_THAT(shown("generate --count 3 --out a", 1), HasSubstr("] 1 of 3\r\x1B[K'a 2.mid' "));
}

TEST_F(CommandOutputOnTerminalTest, ABarHasTheWidthOfTheTerminal)
{
    setColumns(20);
    EXPECT_THAT(shown("generate --count 2 --out a"), HasSubstr("[#####     ] 1 of 2\r"));
}

} // namespace
} // namespace volvelle::test
