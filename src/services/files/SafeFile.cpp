#include "services/files/SafeFile.h"

#include "services/files/TemporaryFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace volvelle {

namespace {

constexpr std::size_t greatestFile = std::size_t{1} << 31U;

OSStatus statusOf(int error)
{
    switch (error) {
    case 0:
        return noErr;
    case ENOENT:
    case ENOTDIR:
        return fileNotFoundErr;
    case EEXIST:
        return fileExistsErr;
    default:
        return fileIOErr;
    }
}

// A descriptor that is closed at the end of its life.
class OpenFile {
public:
    OpenFile(const std::filesystem::path& path, int flags) : descriptor(open(path.c_str(), flags | O_CLOEXEC))
    {
    }

    ~OpenFile()
    {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }

    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    const int descriptor;
};

OSStatus readAll(int descriptor, std::size_t expected, std::vector<std::uint8_t>& bytes)
{
    constexpr std::size_t step = 65536;
    std::size_t filled = 0;
    bytes.resize(expected + 1);
    while (true) {
        const ssize_t count = read(descriptor, bytes.data() + filled, bytes.size() - filled);
        if (count == 0) {
            bytes.resize(filled);
            return noErr;
        }
        if (count < 0 && errno != EINTR) {
            return fileIOErr;
        }
        filled += count < 0 ? 0 : static_cast<std::size_t>(count);
        if (filled > greatestFile) {
            return fileIOErr;
        }
        if (filled == bytes.size()) {
            bytes.resize(filled + std::max(step, filled / 2));
        }
    }
}

int writeDirectly(const std::filesystem::path& path, std::span<const std::uint8_t> bytes)
{
    const OpenFile file(path, O_WRONLY | O_NOCTTY);
    return file.descriptor < 0 ? errno : writeAll(file.descriptor, bytes);
}

void syncFolder(const std::filesystem::path& folder)
{
    const OpenFile opened(folder, O_RDONLY | O_DIRECTORY);
    if (opened.descriptor >= 0) {
        fsync(opened.descriptor);
    }
}

// The file that a path leads to, through links.
std::filesystem::path targetOf(const std::filesystem::path& path)
{
    std::error_code error;
    std::filesystem::path target = std::filesystem::weakly_canonical(path, error);
    return error ? path : target;
}

int replaceRegular(const std::filesystem::path& target, std::span<const std::uint8_t> bytes, bool overwrite,
                   const struct stat* existing)
{
    const std::filesystem::path folder = target.has_parent_path() ? target.parent_path() : ".";
    TemporaryFile temporary;
    int error = temporary.create(folder);
    if (error == 0 && existing != nullptr) {
        error = temporary.setMode(existing->st_mode & 07777U);
    }
    if (error == 0) {
        error = temporary.write(bytes);
    }
    if (error == 0) {
        error = temporary.finish();
    }
    if (error == 0) {
        error = temporary.takeName(target, overwrite);
    }
    if (error == 0) {
        syncFolder(folder);
    }
    return error;
}

} // namespace

OSStatus readFile(const std::filesystem::path& path, std::vector<std::uint8_t>& bytes)
{
    const OpenFile file(path, O_RDONLY | O_NOCTTY);
    struct stat information = {};
    if (file.descriptor < 0 || fstat(file.descriptor, &information) != 0) {
        return statusOf(errno);
    }
    const auto size = static_cast<std::size_t>(S_ISREG(information.st_mode) ? information.st_size : 0);
    if (S_ISDIR(information.st_mode) || size > greatestFile) {
        return fileIOErr;
    }
    try {
        std::vector<std::uint8_t> result;
        const OSStatus status = readAll(file.descriptor, size, result);
        if (status == noErr) {
            bytes = std::move(result);
        }
        return status;
    } catch (const std::bad_alloc&) {
        return fileIOErr;
    }
}

OSStatus replaceFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes, bool overwrite)
{
    if (path.empty()) {
        return fileNotFoundErr;
    }
    struct stat existing = {};
    const bool exists = stat(path.c_str(), &existing) == 0;
    if (exists && !overwrite) {
        return fileExistsErr;
    }
    if (exists && S_ISDIR(existing.st_mode)) {
        return fileIOErr;
    }
    if (exists && !S_ISREG(existing.st_mode)) {
        return statusOf(writeDirectly(path, bytes));
    }
    return statusOf(replaceRegular(targetOf(path), bytes, overwrite, exists ? &existing : nullptr));
}

} // namespace volvelle
