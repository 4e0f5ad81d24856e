#include "services/files/FileExchange.h"

#include "base/PendingFiles.h"
#include "services/files/FileFailure.h"
#include "services/files/FileNames.h"
#include "services/files/NewFile.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view sideEnding = ".new";
constexpr std::string_view keptEnding = ".kept";

bool isThere(const fs::path& file)
{
    struct stat found = {};
    return lstat(file.c_str(), &found) == 0;
}

bool takeName(const fs::path& from, const fs::path& to)
{
    return ::rename(from.c_str(), to.c_str()) == 0;
}

// Where the file system knows no exchange the first steps aside.
bool swapNames(const fs::path& one, const fs::path& other)
{
    if (renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE) == 0) {
        return true;
    }
    const bool isUnknown = errno == EINVAL || errno == ENOSYS;
    const fs::path spare = one.parent_path() / temporaryFileName(".old");
    if (!isUnknown || !takeName(one, spare)) {
        return false;
    }
    const bool isOtherMoved = takeName(other, one);
    if (isOtherMoved && takeName(spare, other)) {
        return true;
    }
    const int failed = errno;
    if (isOtherMoved) {
        takeName(one, other);
    }
    takeName(spare, one);
    errno = failed;
    return false;
}

// 0 where a file may take that name, else the system's number of what is in the way.
int obstacleAt(const fs::path& place)
{
    struct stat found = {};
    const bool isFree = lstat(place.c_str(), &found) != 0 || S_ISREG(found.st_mode);
    return isFree ? 0 : S_ISDIR(found.st_mode) ? EISDIR : EEXIST;
}

// A new file, which is on disk only once it is synced. 0 or the system's number of the failure.
int writeNew(const fs::path& file, std::span<const std::uint8_t> bytes)
{
    const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (opened < 0) {
        return errno;
    }
    const int failed = writeAll(opened, bytes.data(), std::ssize(bytes));
    return close(opened) == 0 || failed != 0 ? failed : errno;
}

// Puts a file or a folder on disk. 0 or the system's number of the failure.
int sync(const fs::path& path)
{
    const int opened = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const int failed = opened >= 0 && fsync(opened) == 0 ? 0 : errno;
    if (opened >= 0) {
        close(opened);
    }
    return failed;
}

// Whether that name leads to what is open.
bool isStill(const fs::path& path, int opened)
{
    struct stat named = {};
    struct stat held = {};
    return stat(path.c_str(), &named) == 0 && fstat(opened, &held) == 0 && named.st_dev == held.st_dev &&
           named.st_ino == held.st_ino;
}

Result<> resultOf(const fs::path& file, int error)
{
    return error == 0 ? Result<>() : failure(writeFailure(file, error));
}

} // namespace

FileExchange::~FileExchange()
{
    for (const auto& [folder, side] : sides) {
        std::error_code ignored;
        fs::remove_all(side, ignored);
    }
    while (!isDone && !made.empty()) {
        rmdir(made.back().c_str());
        made.pop_back();
    }
    for (const int folder : locks) {
        close(folder);
    }
}

// Who waited may find that the folder went meanwhile.
Result<> FileExchange::lock(const fs::path& folder, const std::function<void()>& tellWaiting)
{
    while (true) {
        if (Result<> there = makeFolder(folder); !there) {
            return there;
        }
        const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        const bool isHeld = opened >= 0 && waitFor(opened, tellWaiting);
        if (isHeld && !isStill(folder, opened)) {
            close(opened);
            continue;
        }
        if (opened >= 0) {
            locks.push_back(opened);
        }
        return {};
    }
}

bool FileExchange::waitFor(int opened, const std::function<void()>& tellWaiting)
{
    bool isHeld = flock(opened, LOCK_EX | LOCK_NB) == 0;
    if (!isHeld && errno == EWOULDBLOCK) {
        signals.reset();
        if (tellWaiting && !std::exchange(hasWaited, true)) {
            tellWaiting();
        }
        do {
            isHeld = flock(opened, LOCK_EX) == 0;
        } while (!isHeld && errno == EINTR);
        signals = std::make_unique<HeldSignals>();
    }
    return isHeld;
}

Result<> FileExchange::makeFolder(const fs::path& folder)
{
    folders.insert(folder);
    fs::path step;
    for (const fs::path& part : folder) {
        step /= part;
        std::error_code unknown;
        if (fs::is_directory(step, unknown)) {
            continue;
        }
        if (mkdir(step.c_str(), 0777) != 0) {
            return failure(writeFailure(step, errno));
        }
        made.push_back(step);
    }
    return {};
}

Result<> FileExchange::put(const fs::path& file, std::span<const std::uint8_t> bytes)
{
    int error = signals->isOneWaiting() ? EINTR : note(ChangeKind::put, file);
    if (error == 0) {
        error = writeNew(changes.back().aside, bytes);
    }
    return resultOf(file, error);
}

Result<> FileExchange::remove(const fs::path& file)
{
    return resultOf(file, note(ChangeKind::remove, file));
}

Result<> FileExchange::carryOut()
{
    if (Result<> synced = syncNew(); !synced) {
        return synced;
    }
    for (std::size_t i = 0; i < changes.size(); ++i) {
        if (const int error = take(changes[i]); error != 0) {
            goBack(i);
            return failure(writeFailure(changes[i].file, error));
        }
    }
    syncFolders();
    isDone = true;
    clearLeftovers();
    return {};
}

// All at once, when all are written: that is much faster than one by one.
Result<> FileExchange::syncNew() const
{
    for (const Change& change : changes) {
        const bool isPut = change.kind == ChangeKind::put;
        const int error = signals->isOneWaiting() ? EINTR : isPut ? sync(change.aside) : 0;
        if (error != 0) {
            return failure(writeFailure(change.file, error));
        }
    }
    return {};
}

void FileExchange::syncFolders() const
{
    std::set<fs::path> changed;
    for (const auto& [folder, side] : sides) {
        changed.insert(folder);
    }
    for (const fs::path& folder : made) {
        changed.insert(folderOf(folder));
    }
    for (const fs::path& folder : changed) {
        sync(folder);
    }
}

void FileExchange::clearLeftovers() const
{
    for (const fs::path& folder : folders) {
        std::error_code unread;
        for (fs::directory_iterator entry(folder, unread), end; !unread && entry != end;
             entry.increment(unread)) {
            if (isLeftBehind(entry->path().filename().string(), sideEnding)) {
                std::error_code ignored;
                fs::remove_all(entry->path(), ignored);
            }
        }
    }
}

int FileExchange::note(ChangeKind kind, const fs::path& file)
{
    const fs::path folder = file.parent_path();
    folders.insert(folder);
    fs::path& side = sides[folder];
    if (side.empty()) {
        side = folder / temporaryFileName(sideEnding);
        if (mkdir(side.c_str(), 0777) != 0) {
            const int error = errno;
            sides.erase(folder);
            return error;
        }
    }
    changes.push_back({kind, file, side / file.filename()});
    return 0;
}

// 0 or the system's number of the failure.
int FileExchange::take(const Change& change)
{
    if (const int obstacle = obstacleAt(change.file); obstacle != 0) {
        return obstacle;
    }
    const bool isTaken = change.kind == ChangeKind::remove ? takeName(change.file, change.aside)
                         : isThere(change.file)            ? swapNames(change.aside, change.file)
                                                           : takeName(change.aside, change.file);
    return isTaken ? 0 : errno;
}

bool FileExchange::giveBack(const Change& change)
{
    if (!isThere(change.aside)) {
        return takeName(change.file, change.aside);
    }
    return isThere(change.file) ? swapNames(change.aside, change.file) : takeName(change.aside, change.file);
}

void FileExchange::goBack(std::size_t done)
{
    std::set<fs::path> kept;
    while (done-- > 0) {
        const Change& change = changes[done];
        if (!giveBack(change) && isThere(change.aside)) {
            kept.insert(change.file.parent_path());
        }
    }
    for (const fs::path& folder : kept) {
        takeName(sides[folder], folder / temporaryFileName(keptEnding));
        sides.erase(folder);
    }
}

} // namespace volvelle
