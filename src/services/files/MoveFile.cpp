#include "services/files/MoveFile.h"

#include "services/files/FileNames.h"
#include "services/files/FileRights.h"
#include "services/files/SafeFile.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace volvelle {

namespace {

void syncFolderOf(const std::filesystem::path& file)
{
    const std::filesystem::path folder = folderOf(file);
    const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (opened >= 0) {
        fsync(opened);
        close(opened);
    }
}

} // namespace

int moveFile(const std::filesystem::path& from, const std::filesystem::path& to)
{
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        syncFolderOf(to);
        syncFolderOf(from);
        return 0;
    }
    switch (errno) {
    case EXDEV:
    case EINVAL:
    case ENOSYS:
        return moveFileByCopying(from, to);
    case ENOTDIR:
        return ENOENT;
    default:
        return errno;
    }
}

int moveFileByCopying(const std::filesystem::path& from, const std::filesystem::path& to)
{
    std::vector<std::uint8_t> bytes;
    if (const OSStatus status = readFile(from, bytes); status != noErr) {
        return status == fileNotFoundErr ? ENOENT : EIO;
    }
    if (const int failed = putFile(to, bytes, false); failed != 0) {
        return failed == ENOTDIR ? ENOENT : failed;
    }
    const int opened = open(to.c_str(), O_WRONLY | O_CLOEXEC);
    const bool isMoved = opened >= 0 && takeRights(opened, from) && unlink(from.c_str()) == 0;
    const int failed = errno;
    close(opened);
    if (!isMoved) {
        unlink(to.c_str());
        return failed;
    }
    syncFolderOf(from);
    return 0;
}

} // namespace volvelle
