#include "services/audiodevice/NewFile.h"

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
    const std::string candidate = (folder / temporaryFileName(".audio.tmp")).string();
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

} // namespace volvelle
