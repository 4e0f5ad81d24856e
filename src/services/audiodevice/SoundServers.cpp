#include "services/audiodevice/SoundServers.h"

#include <RtAudio.h>
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace volvelle {

namespace {

bool takesConnections(const std::string& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof(address.sun_path)) {
        return false;
    }
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (descriptor < 0) {
        return false;
    }
    const int result = connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
    const bool isTaken = result == 0 || errno == EAGAIN;
    close(descriptor);
    return isTaken;
}

std::string variable(const char* name)
{
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::string within(const std::string& folder, std::string_view file)
{
    return folder.empty() ? "" : folder + "/" + std::string(file);
}

// The servers that PULSE_SERVER names, without the machine that each is for.
std::vector<std::string> namedServers()
{
    std::istringstream words(variable("PULSE_SERVER"));
    std::vector<std::string> names;
    for (std::string name; words >> name;) {
        names.push_back(name.starts_with('{') ? name.substr(name.find('}') + 1) : name);
    }
    return names;
}

// The path of a server's local socket; empty for a server elsewhere.
std::string socketOf(const std::string& server)
{
    constexpr std::string_view prefix = "unix:";
    const std::string path = server.starts_with(prefix) ? server.substr(prefix.size()) : server;
    return path.starts_with('/') ? path : "";
}

bool isServerNamedElsewhere()
{
    return std::ranges::any_of(namedServers(),
                               [](const std::string& name) { return socketOf(name).empty(); });
}

} // namespace

bool isSoundServerRunning()
{
    const std::string given = variable("XDG_RUNTIME_DIR");
    const std::string runtime = given.empty() ? "/run/user/" + std::to_string(getuid()) : given;
    const std::string remote = variable("PIPEWIRE_REMOTE");
    const std::string pipeWire = remote.empty() ? "pipewire-0" : remote;
    std::vector<std::string> sockets{within(variable("PULSE_RUNTIME_PATH"), "native"),
                                     within(runtime, "pulse/native"), within(runtime, pipeWire),
                                     within(variable("PIPEWIRE_RUNTIME_DIR"), pipeWire)};
    std::ranges::transform(namedServers(), std::back_inserter(sockets), socketOf);
    return std::ranges::any_of(sockets, takesConnections);
}

bool isSoundCardFree()
{
    return !isServerNamedElsewhere() && !isSoundServerRunning() && !isJackServerRunning();
}

bool isJackServerRunning()
{
    try {
        RtAudio audio(RtAudio::UNIX_JACK);
        audio.showWarnings(false);
        return audio.getCurrentApi() == RtAudio::UNIX_JACK && audio.getDeviceCount() > 0;
    } catch (const std::exception&) {
        return false;
    }
}

bool isMIDISequencerPresent()
{
    return access("/dev/snd/seq", R_OK | W_OK) == 0;
}

} // namespace volvelle
