#include "services/audiodevice/SoundServers.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace volvelle::test {

namespace {

// An environment in which no server runs, until a test sets up one that takes connections.
class SoundServers : public testing::Test {
protected:
    SoundServers()
    {
        for (const char* name :
             {"PULSE_SERVER", "PULSE_RUNTIME_PATH", "PIPEWIRE_RUNTIME_DIR", "PIPEWIRE_REMOTE"}) {
            set(name, std::nullopt);
        }
        set("XDG_RUNTIME_DIR", folder.string());
        set("JACK_DEFAULT_SERVER", "volvelle-none");
        set("JACK_NO_START_SERVER", "1");
    }

    ~SoundServers() override
    {
        for (const auto& [name, value] : before) {
            value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
        }
        for (const int socket : sockets) {
            close(socket);
        }
    }

    void set(const std::string& name, const std::optional<std::string>& value)
    {
        const char* now = std::getenv(name.c_str());
        before.try_emplace(name, now == nullptr ? std::nullopt : std::optional<std::string>(now));
        value ? setenv(name.c_str(), value->c_str(), 1) : unsetenv(name.c_str());
    }

    // A local socket that takes connections; its path.
    std::string listenAt(const std::string& name)
    {
        const std::filesystem::path path = folder / name;
        std::filesystem::create_directories(path.parent_path());
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        path.string().copy(address.sun_path, sizeof(address.sun_path) - 1);
        sockets.push_back(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        EXPECT_EQ(bind(sockets.back(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
        EXPECT_EQ(listen(sockets.back(), 8), 0);
        return path.string();
    }

    TemporaryFolder temporary;
    std::filesystem::path folder = temporary.path;

private:
    std::map<std::string, std::optional<std::string>> before;
    std::vector<int> sockets;
};

} // namespace

TEST_F(SoundServers, WithoutAServerTheCardIsFree)
{
    EXPECT_FALSE(isSoundServerRunning());
    EXPECT_TRUE(isSoundCardFree());
}

TEST_F(SoundServers, AServerInTheRuntimeFolderIsFound)
{
    for (const char* name : {"pulse/native", "pipewire-0"}) {
        EXPECT_TRUE(isSoundCardFree());
        const std::string path = listenAt(name);
        EXPECT_TRUE(isSoundServerRunning()) << name;
        EXPECT_FALSE(isSoundCardFree()) << name;
        std::filesystem::remove(path);
    }
}

TEST_F(SoundServers, AServerInTheRuntimeFolderOfPipeWireOrPulseAudioIsFound)
{
    listenAt("own/pipewire-0");
    set("PIPEWIRE_RUNTIME_DIR", (folder / "own").string());
    EXPECT_TRUE(isSoundServerRunning());
    set("PIPEWIRE_REMOTE", "other");
    EXPECT_FALSE(isSoundServerRunning());
    listenAt("own/other");
    EXPECT_FALSE(isSoundCardFree());
    set("PIPEWIRE_RUNTIME_DIR", std::nullopt);
    EXPECT_TRUE(isSoundCardFree());
    listenAt("own/native");
    set("PULSE_RUNTIME_PATH", (folder / "own").string());
    EXPECT_FALSE(isSoundCardFree());
}

TEST_F(SoundServers, AServerThatIsNamedIsFoundWhereItAnswers)
{
    const std::string path = listenAt("named");
    for (const std::string& name :
         {path, "unix:" + path, "{0123456789abcdef}unix:" + path, "unix:/nowhere  unix:" + path}) {
        set("PULSE_SERVER", name);
        EXPECT_TRUE(isSoundServerRunning()) << name;
        EXPECT_FALSE(isSoundCardFree()) << name;
    }
    for (const std::string& name :
         {"unix:" + path + "x", path + "x", std::string("{0123}/nowhere"), std::string()}) {
        set("PULSE_SERVER", name);
        EXPECT_FALSE(isSoundServerRunning()) << name;
        EXPECT_TRUE(isSoundCardFree()) << name;
    }
}

TEST_F(SoundServers, WhereAServerElsewhereIsNamedTheCardIsLeftAlone)
{
    for (const char* name :
         {"tcp:sounds.example:4713", "sounds", "unix:/nowhere tcp6:sounds", "{0123}sounds"}) {
        set("PULSE_SERVER", name);
        EXPECT_FALSE(isSoundServerRunning()) << name;
        EXPECT_FALSE(isSoundCardFree()) << name;
    }
}

} // namespace volvelle::test
