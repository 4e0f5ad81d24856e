#include "services/files/PatientWrite.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <unistd.h>

namespace volvelle {

namespace {

constexpr int lookInterval = 20; // milliseconds

// For so long, or until the descriptor takes at least PIPE_BUF bytes at once; -1 is none.
bool isReady(int descriptor)
{
    pollfd waiting{descriptor, POLLOUT, 0};
    return poll(&waiting, 1, lookInterval) > 0;
}

bool isPipe(const std::filesystem::path& path)
{
    std::error_code none;
    return std::filesystem::is_fifo(path, none);
}

// The descriptor, or the system's number of the failure below 0.
int openPatiently(const std::filesystem::path& path, const EndOfPatience& end)
{
    while (true) {
        const int descriptor = open(path.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
        const int failed = descriptor < 0 ? errno : 0;
        const bool hasNoReader = failed == ENXIO && isPipe(path);
        if (!hasNoReader) {
            return failed == 0 ? descriptor : -failed;
        }
        isReady(-1);
        if (const int reason = end(); reason != 0) {
            return -reason;
        }
    }
}

} // namespace

int writePatiently(int descriptor, std::span<const std::uint8_t> bytes, const EndOfPatience& end)
{
    while (!bytes.empty()) {
        if (!isReady(descriptor)) {
            if (const int reason = end(); reason != 0) {
                return reason;
            }
            continue;
        }
        const ssize_t written =
            write(descriptor, bytes.data(), std::min<std::size_t>(bytes.size(), PIPE_BUF));
        if (written < 0 && errno != EINTR && errno != EAGAIN) {
            return errno;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return 0;
}

int writePatiently(const std::filesystem::path& path, std::span<const std::uint8_t> bytes,
                   const EndOfPatience& end)
{
    const int descriptor = openPatiently(path, end);
    if (descriptor < 0) {
        return -descriptor;
    }
    const int failed = writePatiently(descriptor, bytes, end);
    close(descriptor);
    return failed;
}

} // namespace volvelle
