#include "tests/services/audiodevice/SoundServersFolder.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <unistd.h>

namespace volvelle::test {

namespace {

std::filesystem::path folderOf(SoundServersFolder::Kind kind)
{
    if (kind == SoundServersFolder::Kind::shared) {
        return VOLVELLE_SERVERS_FOLDER;
    }
    std::string pattern = (std::filesystem::temp_directory_path() / "volvelle-servers-XXXXXX").string();
    return mkdtemp(pattern.data());
}

void set(const char* name, const std::string& value)
{
    setenv(name, value.c_str(), 1);
}

void unset(std::initializer_list<const char*> names)
{
    for (const char* name : names) {
        unsetenv(name);
    }
}

} // namespace

SoundServersFolder::SoundServersFolder(Kind given) : path(folderOf(given)), kind(given)
{
    set("XDG_RUNTIME_DIR", path.string());
    set("HOME", path.string());
    set("PULSE_SERVER", "unix:" + (path / "none").string());
    set("JACK_DEFAULT_SERVER", "volvelle-none-" + std::to_string(getpid())); // nobody else's
    set("JACK_NO_START_SERVER", "1");
    unset({"PULSE_RUNTIME_PATH", "PIPEWIRE_RUNTIME_DIR", "PIPEWIRE_REMOTE"});
    if (kind == Kind::own) {
        set("JACK_NAME", "volvelle-own-" + std::to_string(std::hash<std::string>()(VOLVELLE_SERVERS_FOLDER)));
    }
}

SoundServersFolder::~SoundServersFolder()
{
    if (kind == Kind::own) {
        run("stop", "");
        std::filesystem::remove_all(path);
    }
}

void SoundServersFolder::start(const std::string& server)
{
    run("start", server);
}

void SoundServersFolder::signal(const std::string& server, int number) const
{
    const int process = std::atoi(contents(server + ".pid").c_str());
    ASSERT_GT(process, 1);
    ASSERT_EQ(kill(process, number), 0);
}

std::string SoundServersFolder::use(const std::string& server) const
{
    if (server == "pulse") {
        set("PULSE_SERVER", "unix:" + (path / "native").string());
    } else {
        set("JACK_DEFAULT_SERVER", contents("jack.name"));
    }
    const std::string reason = contents(server + ".skip");
    return reason.empty() && contents(server + ".pid").empty() ? server + " was not started" : reason;
}

bool SoundServersFolder::isMissing(const std::string& reason)
{
    return reason.ends_with("not installed") && std::getenv("CI") == nullptr;
}

void SoundServersFolder::run(const std::string& command, const std::string& server) const
{
    const std::string line =
        "'" VOLVELLE_SERVERS_SCRIPT "' " + command + " '" + path.string() + "' " + server;
    EXPECT_EQ(std::system(line.c_str()), 0);
}

std::string SoundServersFolder::contents(const std::string& name) const
{
    std::ifstream file(path / name);
    std::string line;
    std::getline(file, line);
    return line;
}

} // namespace volvelle::test
