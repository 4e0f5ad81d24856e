#include "services/files/NewFile.h"

#include "base/PendingFiles.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace volvelle {

namespace {

void syncFolder(const std::filesystem::path& folder)
{
    const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened >= 0) {
        fsync(opened);
        close(opened);
    }
}

// The file that a path leads to, through links.
std::filesystem::path targetOf(const std::filesystem::path& path)
{
    std::error_code unresolved;
    std::filesystem::path target = std::filesystem::weakly_canonical(path, unresolved);
    return unresolved || target.empty() ? path : target;
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
    target = targetOf(path);
    folder = target.has_parent_path() ? target.parent_path() : ".";
    struct stat existing = {};
    if (stat(target.c_str(), &existing) == 0 && !S_ISREG(existing.st_mode)) {
        error = S_ISDIR(existing.st_mode) ? EISDIR : ENOTSUP;
        return false;
    }
    bool opened = false;
    do {
        opened = openNew();
    } while (!opened && errno == EEXIST);
    return keep(opened);
}

bool NewFile::openNew()
{
    const std::string candidate = (folder / temporaryFileName(".tmp")).string();
    descriptor = open(candidate.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        return false;
    }
    name = candidate;
    slot = rememberPendingFile(name);
    return true;
}

bool NewFile::write(const void* bytes, std::int64_t count)
{
    if (error == 0) {
        error = writeAll(descriptor, bytes, count);
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

bool NewFile::takePlace(bool overwrite)
{
    if (error == 0 && keep(takeMode()) && keep(fsync(descriptor) == 0)) {
        keep(close(descriptor) == 0);
        descriptor = -1;
    }
    if (error == 0 && keep(takeName(overwrite))) {
        name.clear();
        syncFolder(folder);
    }
    drop();
    return error == 0;
}

bool NewFile::takeMode()
{
    struct stat existing = {};
    return stat(target.c_str(), &existing) != 0 || fchmod(descriptor, existing.st_mode & 07777U) == 0;
}

bool NewFile::takeName(bool overwrite)
{
    if (overwrite) {
        return rename(name.c_str(), target.c_str()) == 0;
    }
    if (renameat2(AT_FDCWD, name.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
        return true;
    }
    const bool isUnknown = errno == EINVAL || errno == ENOSYS; // to this file system
    return isUnknown && link(name.c_str(), target.c_str()) == 0 && unlink(name.c_str()) == 0;
}

void NewFile::drop()
{
    if (descriptor >= 0) {
        close(descriptor);
    }
    if (!name.empty()) {
        unlink(name.c_str());
    }
    forgetPendingFile(slot);
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

int writeAll(int descriptor, const void* bytes, std::int64_t count)
{
    const auto* next = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t written = ::write(descriptor, next, static_cast<std::size_t>(count));
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        next += written < 0 ? 0 : written;
        count -= written < 0 ? 0 : written;
    }
    return 0;
}

} // namespace volvelle
