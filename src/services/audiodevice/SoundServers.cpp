#include "services/audiodevice/SoundServers.h"

#include <RtAudio.h>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

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
    close(descriptor);
    return result == 0 || errno == EAGAIN;
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

} // namespace

bool isSoundServerRunning()
{
    constexpr std::string_view unixPrefix = "unix:";
    std::string named = variable("PULSE_SERVER");
    if (named.starts_with(unixPrefix)) {
        named.erase(0, unixPrefix.size());
    }
    const std::string runtime = variable("XDG_RUNTIME_DIR");
    const std::array<std::string, 4> sockets{named, within(variable("PULSE_RUNTIME_PATH"), "native"),
                                             within(runtime, "pulse/native"), within(runtime, "pipewire-0")};
    return std::any_of(sockets.begin(), sockets.end(), takesConnections);
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
