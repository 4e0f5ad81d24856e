#include "services/files/NewFile.h"

#include "base/PendingFiles.h"
#include "base/Text.h"
#include "services/files/FileNames.h"
#include "services/files/FileRights.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <new>
#include <sys/mman.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

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

// Leads a path through links to its file, whether that is there or not. 0 or the system's number of the
// failure.
int followLinks(std::filesystem::path& path)
{
    constexpr int mostLinks = 40;
    for (int i = 0; i < mostLinks; ++i) {
        struct stat found = {};
        if (lstat(path.c_str(), &found) != 0) {
            return errno == ENOENT ? 0 : errno;
        }
        if (!S_ISLNK(found.st_mode)) {
            return 0;
        }
        std::error_code unread;
        path = path.parent_path() / std::filesystem::read_symlink(path, unread);
        if (unread) {
            return unread.value();
        }
    }
    return ELOOP;
}

bool renameWith(unsigned flags, const std::string& from, const std::filesystem::path& to)
{
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags) == 0;
}

// Whether the file system does not know such a renaming.
bool isUnknown(int failure)
{
    return failure == EINVAL || failure == ENOSYS;
}

constexpr const char* endingOfReplaced = ".replaced";

// A file without a name, which goes with its descriptor. -1 where it fails.
int openNamelessIn(const std::filesystem::path& folder)
{
    int descriptor = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (descriptor < 0 && errno == EOPNOTSUPP) {
        const std::string name = (folder / temporaryFileName(".tmp")).string();
        const int slot = rememberPendingFile(name);
        descriptor = open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (descriptor >= 0) {
            unlink(name.c_str());
        }
        forgetPendingFile(slot);
    }
    return descriptor;
}

// In the first folder for temporary files that may be used, else in memory; `aside` is told where.
int openNameless(std::filesystem::path& aside)
{
    std::error_code none;
    for (const std::filesystem::path& folder :
         {std::filesystem::temp_directory_path(none), std::filesystem::path("/tmp"),
          std::filesystem::path("/dev/shm")}) {
        const int descriptor = folder.empty() ? -1 : openNamelessIn(folder);
        if (descriptor >= 0) {
            aside = folder;
            return descriptor;
        }
    }
    aside = "memory";
    return memfd_create("volvelle", MFD_CLOEXEC);
}

} // namespace

NewFile::~NewFile()
{
    drop();
}

bool NewFile::create(const std::filesystem::path& path)
try {
    drop();
    outlet = -1;
    isComplete = false;
    target = path;
    struct stat existing = {};
    const bool exists = stat(target.c_str(), &existing) == 0;
    isDirect = exists && !S_ISREG(existing.st_mode) && !S_ISDIR(existing.st_mode);
    error = exists && S_ISDIR(existing.st_mode) ? EISDIR : target.empty() ? ENOENT : 0;
    if (error == 0 && isDirect) {
        descriptor = openNameless(aside);
        return recordUnless(descriptor >= 0);
    }
    error = error == 0 ? followLinks(target) : error;
    if (error == 0 && exists && !isWritable(target)) {
        error = EACCES;
    }
    return error == 0 && recordUnless(openFree());
} catch (const std::bad_alloc&) {
    error = ENOMEM;
    return false;
}

bool NewFile::createFor(int descriptorOfCaller)
try {
    drop();
    outlet = descriptorOfCaller;
    isDirect = true;
    isComplete = false;
    error = 0;
    descriptor = openNameless(aside);
    return recordUnless(descriptor >= 0);
} catch (const std::bad_alloc&) {
    error = ENOMEM;
    return false;
}

bool NewFile::openFree()
{
    bool opened = false;
    do {
        opened = openNew();
    } while (!opened && errno == EEXIST);
    return opened;
}

bool NewFile::openNew()
{
    std::string candidate = (folderOf(target) / temporaryFileName(".tmp")).string();
    slot = rememberPendingFile(candidate);
    descriptor = open(candidate.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0) {
        forgetPendingFile(std::exchange(slot, -1));
        return false;
    }
    name = std::move(candidate);
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
    recordUnless(got >= 0);
    return got;
}

std::int64_t NewFile::seek(std::int64_t offset, int whence)
{
    const off_t position = lseek(descriptor, offset, whence);
    recordUnless(position >= 0);
    return position;
}

std::int64_t NewFile::length()
{
    struct stat information = {};
    return recordUnless(fstat(descriptor, &information) == 0) ? information.st_size : -1;
}

bool NewFile::takePlace(bool overwrite, const Keeper& keep)
{
    if (isDirect) {
        if (error == 0) {
            isComplete = true;
            error = overwrite ? copyIntoTarget() : EEXIST;
        }
        drop();
        return error == 0;
    }
    const std::filesystem::path folder = folderOf(target);
    if (error == 0 && recordUnless(takeRights(descriptor, target)) && recordUnless(fsync(descriptor) == 0)) {
        rememberItself();
        recordUnless(close(descriptor) == 0);
        descriptor = -1;
    }
    if (error == 0 && recordUnless(takeName(overwrite, keep))) {
        name.clear();
        syncFolder(folder);
    }
    drop();
    return error == 0;
}

int NewFile::openTarget() const
{
    return outlet >= 0 ? fcntl(outlet, F_DUPFD_CLOEXEC, 0)
                       : open(target.c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
}

int NewFile::copyIntoTarget()
{
    const int opened = openTarget();
    if (opened < 0) {
        return errno;
    }
    std::array<char, 65536> bytes{};
    int failed = seek(0, SEEK_SET) == 0 ? 0 : error;
    ssize_t count = 0;
    while (failed == 0 && (count = ::read(descriptor, bytes.data(), bytes.size())) > 0) {
        failed = writeAll(opened, bytes.data(), count);
    }
    const int unread = count < 0 ? errno : 0;
    close(opened);
    return failed != 0 ? failed : unread;
}

void NewFile::rememberItself()
{
    struct stat itself = {};
    if (fstat(descriptor, &itself) == 0) {
        device = itself.st_dev;
        inode = itself.st_ino;
    }
}

bool NewFile::takeName(bool overwrite, const Keeper& keep)
{
    if (overwrite) {
        return keep ? exchange(keep) : rename(name.c_str(), target.c_str()) == 0;
    }
    return renameWith(RENAME_NOREPLACE, name, target) ||
           (isUnknown(errno) && link(name.c_str(), target.c_str()) == 0 && unlink(name.c_str()) == 0);
}

bool NewFile::exchange(const Keeper& keep)
{
    constexpr int mostTries = 100; // where the target comes and goes
    for (int tried = 0; tried < mostTries; ++tried) {
        if (renameWith(RENAME_NOREPLACE, name, target)) {
            return true;
        }
        const bool isThere = errno == EEXIST;
        if (isThere) {
            if (!takeNameOfReplaced()) {
                return false;
            }
            if (renameWith(RENAME_EXCHANGE, name, target)) {
                return keepReplaced(keep);
            }
        }
        if (isUnknown(errno)) {
            return rename(name.c_str(), target.c_str()) == 0;
        }
        if (!isThere || errno != ENOENT) {
            return false;
        }
    }
    return false;
}

// From here on the temporary name may be that of a file of the user's.
bool NewFile::takeNameOfReplaced()
{
    if (name.ends_with(endingOfReplaced)) {
        return true;
    }
    forgetPendingFile(std::exchange(slot, -1));
    return takeNameWith(concat("-", target.filename().string(), endingOfReplaced)) ||
           (errno == ENAMETOOLONG && takeNameWith(endingOfReplaced)) || errno == ENAMETOOLONG;
}

bool NewFile::takeNameWith(const std::string& ending)
{
    std::filesystem::path candidate;
    bool isRenamed = false;
    do {
        candidate = folderOf(target) / temporaryFileName(ending);
        isRenamed = renameWith(RENAME_NOREPLACE, name, candidate);
    } while (!isRenamed && errno == EEXIST);
    name = isRenamed ? candidate.string() : name;
    return isRenamed;
}

bool NewFile::keepReplaced(const Keeper& keep)
{
    const std::string replaced = std::exchange(name, "");
    bool isKept = false;
    try {
        isKept = keep(replaced);
    } catch (const std::exception&) {
        isKept = false;
    }
    if (isKept) {
        unlink(replaced.c_str());
    } else {
        giveBack(replaced);
    }
    errno = ECANCELED;
    return isKept;
}

// What another program has put into the place meanwhile gets a free name beside it.
void NewFile::giveBack(const std::string& replaced) const
{
    struct stat found = {};
    if (renameWith(RENAME_EXCHANGE, replaced, target)) {
        if (lstat(replaced.c_str(), &found) == 0 && found.st_dev == device && found.st_ino == inode) {
            unlink(replaced.c_str());
            return;
        }
    } else if (renameWith(RENAME_NOREPLACE, replaced, target)) {
        return;
    }
    bool isTaken = true;
    for (int number = 2; isTaken; ++number) {
        isTaken = !renameWith(RENAME_NOREPLACE, replaced, numberedFile(target, number)) && errno == EEXIST;
    }
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

bool NewFile::recordUnless(bool good)
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

bool isWritable(const std::filesystem::path& file)
{
    struct stat existing = {};
    return stat(file.c_str(), &existing) == 0 && (existing.st_mode & 0222U) != 0 &&
           faccessat(AT_FDCWD, file.c_str(), W_OK, AT_EACCESS) == 0;
}

} // namespace volvelle
