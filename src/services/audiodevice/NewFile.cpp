#include "services/audiodevice/NewFile.h"

#include "services/audiodevice/AudioFileWriter.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace volvelle {

namespace {

enum class SlotState { free, filling, pending };

struct PendingFile {
    std::atomic<SlotState> state{SlotState::free};
    std::array<char, PATH_MAX> name{};
};

std::array<PendingFile, 8> pendingFiles;

int remember(const std::string& name)
{
    for (std::size_t i = 0; name.size() < PATH_MAX && i < pendingFiles.size(); ++i) {
        SlotState expected = SlotState::free;
        if (pendingFiles[i].state.compare_exchange_strong(expected, SlotState::filling)) {
            std::memcpy(pendingFiles[i].name.data(), name.c_str(), name.size() + 1);
            pendingFiles[i].state = SlotState::pending;
            return static_cast<int>(i);
        }
    }
    return -1;
}

void forget(int slot)
{
    if (slot >= 0) {
        pendingFiles[static_cast<std::size_t>(slot)].state = SlotState::free;
    }
}

std::string freshName()
{
    static std::atomic<unsigned> counter{0};
    return ".volvelle-" + std::to_string(getpid()) + "-" + std::to_string(counter++) + ".audio.tmp";
}

void syncFolder(const std::filesystem::path& folder)
{
    const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened >= 0) {
        fsync(opened);
        close(opened);
    }
}

} // namespace

NewFile::~NewFile()
{
    drop();
}

bool NewFile::create(const std::filesystem::path& path)
{
    drop();
    error = 0;
    std::error_code unresolved;
    target = std::filesystem::weakly_canonical(path, unresolved);
    if (unresolved || target.empty()) {
        target = path;
    }
    const std::filesystem::file_status existing = std::filesystem::status(target, unresolved);
    if (std::filesystem::exists(existing) && !std::filesystem::is_regular_file(existing)) {
        error = std::filesystem::is_directory(existing) ? EISDIR : ENOTSUP;
        return false;
    }
    bool opened = false;
    do {
        opened = openNew(target.has_parent_path() ? target.parent_path() : ".");
    } while (!opened && errno == EEXIST);
    return keep(opened);
}

bool NewFile::openNew(const std::filesystem::path& folder)
{
    const std::string candidate = (folder / freshName()).string();
    descriptor = open(candidate.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        return false;
    }
    name = candidate;
    slot = remember(name);
    return true;
}

bool NewFile::write(const void* bytes, std::int64_t count)
{
    const auto* next = static_cast<const char*>(bytes);
    while (error == 0 && count > 0) {
        const ssize_t written = ::write(descriptor, next, static_cast<std::size_t>(count));
        if (written >= 0) {
            next += written;
            count -= written;
        } else if (errno != EINTR) {
            keep(false);
        }
    }
    return error == 0;
}

std::int64_t NewFile::read(void* bytes, std::int64_t count)
{
    const ssize_t got = ::read(descriptor, bytes, static_cast<std::size_t>(count));
    keep(got >= 0);
    return got;
}

std::int64_t NewFile::seek(std::int64_t offset, int whence)
{
    const off_t position = lseek(descriptor, offset, whence);
    keep(position >= 0);
    return position;
}

std::int64_t NewFile::length()
{
    struct stat information = {};
    return keep(fstat(descriptor, &information) == 0) ? information.st_size : -1;
}

bool NewFile::takePlace()
{
    struct stat existing = {};
    if (error == 0 && stat(target.c_str(), &existing) == 0) {
        keep(fchmod(descriptor, existing.st_mode & 07777U) == 0);
    }
    if (error == 0) {
        keep(fsync(descriptor) == 0);
    }
    if (error == 0) {
        keep(close(descriptor) == 0);
        descriptor = -1;
    }
    if (error == 0 && keep(rename(name.c_str(), target.c_str()) == 0)) {
        name.clear();
        syncFolder(target.has_parent_path() ? target.parent_path() : ".");
    }
    drop();
    return error == 0;
}

void NewFile::drop()
{
    if (descriptor >= 0) {
        close(descriptor);
    }
    if (!name.empty()) {
        unlink(name.c_str());
    }
    forget(slot);
    descriptor = -1;
    name.clear();
    slot = -1;
}

bool NewFile::keep(bool good)
{
    if (!good && error == 0) {
        error = errno;
    }
    return good;
}

void removePendingAudioFiles()
{
    for (const PendingFile& pending : pendingFiles) {
        if (pending.state == SlotState::pending) {
            unlink(pending.name.data());
        }
    }
}

} // namespace volvelle
