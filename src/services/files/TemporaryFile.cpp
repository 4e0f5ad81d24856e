#include "services/files/TemporaryFile.h"

#include "base/PendingFiles.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace volvelle {

TemporaryFile::~TemporaryFile()
{
    if (descriptor >= 0) {
        close(descriptor);
    }
    if (!name.empty()) {
        unlink(name.c_str());
    }
    forget();
}

int TemporaryFile::create(const std::filesystem::path& folder)
{
    int error = EEXIST;
    for (int attempt = 0; attempt < 1000 && error == EEXIST; ++attempt) {
        error = openNew(folder);
    }
    return error;
}

int TemporaryFile::openNew(const std::filesystem::path& folder)
{
    const std::string candidate = (folder / temporaryFileName(".tmp")).string();
    descriptor = open(candidate.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        return errno;
    }
    name = candidate;
    slot = rememberPendingFile(name);
    return 0;
}

int TemporaryFile::setMode(mode_t mode) const
{
    return fchmod(descriptor, mode) == 0 ? 0 : errno;
}

int TemporaryFile::write(std::span<const std::uint8_t> bytes) const
{
    return writeAll(descriptor, bytes);
}

int TemporaryFile::finish()
{
    int error = fsync(descriptor) == 0 ? 0 : errno;
    if (close(descriptor) != 0 && error == 0) {
        error = errno;
    }
    descriptor = -1;
    return error;
}

int TemporaryFile::takeName(const std::filesystem::path& target, bool overwrite)
{
    int result = overwrite ? rename(name.c_str(), target.c_str())
                           : renameat2(AT_FDCWD, name.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE);
    if (result != 0 && !overwrite && (errno == EINVAL || errno == ENOSYS)) {
        result = link(name.c_str(), target.c_str());
        if (result == 0) {
            unlink(name.c_str());
        }
    }
    if (result != 0) {
        return errno;
    }
    name.clear();
    forget();
    return 0;
}

void TemporaryFile::forget()
{
    forgetPendingFile(slot);
    slot = -1;
}

int writeAll(int descriptor, std::span<const std::uint8_t> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        bytes = bytes.subspan(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return 0;
}

} // namespace volvelle
