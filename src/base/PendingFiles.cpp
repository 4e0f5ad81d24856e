#include "base/PendingFiles.h"

#include "base/Text.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace volvelle {

namespace {

constexpr std::string_view nameStart = ".volvelle-";
std::atomic<unsigned> nextName{0};

enum class PlaceState { free, filling, pending };

struct PendingFile {
    std::atomic<PlaceState> state{PlaceState::free};
    std::array<char, PATH_MAX> path{};
};

std::array<PendingFile, 8> pendingFiles;
static_assert(std::atomic<PlaceState>::is_always_lock_free);

bool isEntry(const char* name)
{
    return std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0;
}

// By system calls alone, for the sake of signal handlers.
void removeFolder(int parent, const char* name, int depth)
{
    const int folder = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    alignas(dirent64) std::array<char, 2048> entries{};
    ssize_t count = 0;
    while (folder >= 0 && (count = getdents64(folder, entries.data(), entries.size())) > 0) {
        for (ssize_t place = 0; place < count;) {
            const auto* entry = reinterpret_cast<const dirent64*>(entries.data() + place);
            const bool isFolder = unlinkat(folder, entry->d_name, 0) != 0 && errno == EISDIR;
            if (isFolder && depth > 1 && isEntry(entry->d_name)) {
                removeFolder(folder, entry->d_name, depth - 1);
            }
            place += entry->d_reclen;
        }
    }
    if (folder >= 0) {
        close(folder);
        unlinkat(parent, name, AT_REMOVEDIR);
    }
}

} // namespace

std::string temporaryFileName(std::string_view ending)
{
    return concat(nameStart, getpid(), "-", nextName++, ending);
}

namespace {

// An earlier process may have had the number of this one.
bool isStillNamed(pid_t process, unsigned number)
{
    if (process == getpid()) {
        return number < nextName;
    }
    return kill(process, 0) == 0 || errno != ESRCH;
}

} // namespace

std::optional<std::string_view> endingLeftBehind(std::string_view name)
{
    if (!name.starts_with(nameStart)) {
        return std::nullopt;
    }
    const char* const end = name.data() + name.size();
    pid_t process = 0;
    unsigned number = 0;
    const auto first = std::from_chars(name.data() + nameStart.size(), end, process);
    if (first.ec != std::errc() || first.ptr == end || *first.ptr != '-' || process <= 0) {
        return std::nullopt;
    }
    const auto second = std::from_chars(first.ptr + 1, end, number);
    if (second.ec != std::errc() || isStillNamed(process, number)) {
        return std::nullopt;
    }
    return std::string_view(second.ptr, end);
}

bool isLeftBehind(std::string_view name, std::string_view ending)
{
    return endingLeftBehind(name) == ending;
}

int rememberPendingFile(const std::string& path)
{
    for (std::size_t i = 0; path.size() < PATH_MAX && i < pendingFiles.size(); ++i) {
        PendingFile& pending = pendingFiles[i];
        PlaceState expected = PlaceState::free;
        if (pending.state.compare_exchange_strong(expected, PlaceState::filling)) {
            std::memcpy(pending.path.data(), path.c_str(), path.size() + 1);
            pending.state = PlaceState::pending;
            return static_cast<int>(i);
        }
    }
    return -1;
}

void forgetPendingFile(int place)
{
    if (place >= 0) {
        pendingFiles[static_cast<std::size_t>(place)].state = PlaceState::free;
    }
}

void removePendingFiles()
{
    for (const PendingFile& pending : pendingFiles) {
        if (pending.state == PlaceState::pending && unlink(pending.path.data()) != 0 && errno == EISDIR) {
            removeFolder(AT_FDCWD, pending.path.data(), pendingFolderDepth);
        }
    }
}

} // namespace volvelle
