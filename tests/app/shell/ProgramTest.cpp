#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <QImage>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fstream>
#include <iterator>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace volvelle::test {
namespace {

const std::vector<std::uint8_t> oneNote{0x4D, 0x54, 0x68, 0x64, 0,    0,    0, 6,    0,    0,  0, 1,
                                        0,    96,   0x4D, 0x54, 0x72, 0x6B, 0, 0,    0,    12, 0, 0x90,
                                        60,   100,  96,   0x80, 60,   64,   0, 0xFF, 0x2F, 0};

struct ProgramTest : testing::Test {
    // The program with these arguments, in folders of its own, as the script starts it.
    std::vector<std::string> command(const std::vector<std::string>& variables,
                                     const std::vector<std::string>& arguments,
                                     const std::string& script = "exec \"$0\" \"$@\" 2>&1") const
    {
        std::vector<std::string> words{"env",
                                       "-u",
                                       "DISPLAY",
                                       "-u",
                                       "WAYLAND_DISPLAY",
                                       "-u",
                                       "QT_QPA_PLATFORM",
                                       "-u",
                                       "DBUS_SESSION_BUS_ADDRESS"};
        for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                                 "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
            words.push_back(std::string(name) + "=" + home.path.string());
        }
        words.insert(words.end(), variables.begin(), variables.end());
        words.insert(words.end(), {"sh", "-c", script, VOLVELLE_APP});
        words.insert(words.end(), arguments.begin(), arguments.end());
        return words;
    }

    // What it prints, and how it ends: "TEXT[STATUS]".
    std::string run(const std::vector<std::string>& variables,
                    const std::vector<std::string>& arguments) const
    {
        const std::string output = (home.path / "output").string();
        ChildProcess child(command(variables, arguments), output);
        const int status = child.waitForEnd();
        std::ifstream file(output);
        return std::string(std::istreambuf_iterator<char>(file), {}) + "[" + std::to_string(status) + "]";
    }

    TemporaryFolder home;
    const std::string noDisplay = "There is no display: 'volvelle generate' writes an idea without one.\n[1]";
};

TEST_F(ProgramTest, TestsItself)
{
    EXPECT_TRUE(run({}, {"--self-test"}).ends_with("passed\n[0]"));
}

TEST_F(ProgramTest, SaysInOneLineThatThereIsNoDisplay)
{
    EXPECT_EQ(run({}, {}), noDisplay);
    EXPECT_EQ(run({"DISPLAY=:7654"}, {}), noDisplay);
}

TEST_F(ProgramTest, DrawsAPicture)
{
    const auto file = home.write("One.mid", oneNote);
    const auto picture = home.path / "One.png";
    const std::string told = run({}, {"picture", file.string(), "--out", picture.string(), "--size", "300"});
    EXPECT_TRUE(told.ends_with("[0]")) << told;
    EXPECT_EQ(QImage(QString::fromStdString(picture.string())).size(), QSize(300, 300));
}

TEST_F(ProgramTest, DrawsNoPictureOfAnotherKind)
{
    const auto picture = home.path / "One.jpg";
    EXPECT_EQ(run({}, {"picture", "One.mid", "--out", picture.string()}),
              "A picture is a PNG: name a file that ends in .png, not '" + picture.string() + "'.\n[2]");
    EXPECT_FALSE(std::filesystem::exists(picture));
}

TEST_F(ProgramTest, AFileThatMayNotBeWrittenIsAFailedTest)
{
    ChildProcess child(command({}, {"--self-test"}, "ulimit -f 0; exec \"$0\" \"$@\" 2>&1"));
    EXPECT_EQ(child.readLine(), "The self-test failed: New opened no document.");
    EXPECT_EQ(child.waitForEnd(), 1);
}

TEST_F(ProgramTest, LivesOnWithoutAReaderOfItsLines)
{
    ChildProcess child(command({"QT_QPA_PLATFORM=offscreen"}, {},
                               "(timeout 2 \"$0\" \"$@\" 2>&1; echo $? > \"$HOME/status\") | head -n 1"));
    child.waitForEnd();
    std::ifstream file(home.path / "status");
    int status = 0;
    file >> status;
    EXPECT_EQ(status, 124);
}

TEST_F(ProgramTest, SaysNothingWhereItIsAskedTo)
{
    ChildProcess child(
        command({"QT_QPA_PLATFORM=offscreen"}, {"--quiet"}, "exec timeout 2 \"$0\" \"$@\" 2> /dev/null"));
    EXPECT_EQ(child.readLine(), "");
    EXPECT_EQ(child.waitForEnd(), 124);
}

TEST_F(ProgramTest, PlaysAFileOfAnyBytes)
{
    const auto file = home.write("Gr\xFCn.mid", oneNote);
    ChildProcess child(command({"QT_QPA_PLATFORM=offscreen"}, {file.string()}));
    std::string line = child.readLine();
    while (!line.empty() && line.find("The sequencer is playing.") == std::string::npos) {
        line = child.readLine();
    }
    EXPECT_FALSE(line.empty());
    child.signal(SIGTERM);
    child.waitForEnd();
}

TEST_F(ProgramTest, EndsInOrderWhenItIsAsked)
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        ChildProcess child(command({"QT_QPA_PLATFORM=offscreen"}, {}));
        std::string line = child.readLine();
        const auto holds = [&line](const char* text) { return line.find(text) != std::string::npos; };
        while (!line.empty() && !holds("The audio engine was started.")) {
            line = child.readLine();
        }
        ASSERT_FALSE(line.empty());
        child.signal(number);
        while (!line.empty() && !holds("The app is about to terminate.")) {
            line = child.readLine();
        }
        EXPECT_FALSE(line.empty()) << number;
        EXPECT_EQ(child.waitForEnd(), 0) << number;
    }
}

TEST_F(ProgramTest, EndsInOrderWhenItIsAskedBeforeItsWindowIsThere)
{
    ChildProcess child(command({"QT_QPA_PLATFORM=offscreen"}, {}));
    std::string line = child.readLine();
    ASSERT_FALSE(line.empty());
    child.signal(SIGTERM);
    while (!line.empty() && line.find("The app is about to terminate.") == std::string::npos) {
        line = child.readLine();
    }
    EXPECT_FALSE(line.empty());
    EXPECT_EQ(child.waitForEnd(), 0);
}

// A display that takes the connection and never says a word.
TEST_F(ProgramTest, EndsWhenItIsAskedThoughTheDisplayNeverAnswers)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const place = reinterpret_cast<sockaddr*>(&address);
    const int display = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(display, place, size), 0);
    ASSERT_EQ(listen(display, 1), 0);
    ASSERT_EQ(getsockname(display, place, &size), 0);
    constexpr int first = 6000; // the port of display 0
    const std::string name = "127.0.0.1:" + std::to_string(ntohs(address.sin_port) - first);
    ChildProcess child(command({"DISPLAY=" + name, "QT_QPA_PLATFORM=xcb"}, {}));
    pollfd coming = {display, POLLIN, 0};
    constexpr int longest = 30'000; // milliseconds
    EXPECT_EQ(poll(&coming, 1, longest), 1);
    child.signal(SIGTERM);
    EXPECT_EQ(child.waitForEnd(), 128 + SIGTERM);
    close(display);
}

} // namespace
} // namespace volvelle::test
