#include "services/files/SafeFile.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

namespace volvelle {

namespace {

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
    return file.descriptor < 0
               ? errno
               : writeAll(file.descriptor, bytes.data(), static_cast<std::int64_t>(bytes.size()));
}

int replaceRegular(const std::filesystem::path& path, std::span<const std::uint8_t> bytes, bool overwrite,
                   const NewFile::Keeper& keep)
{
    NewFile file;
    if (file.create(path) && file.write(bytes.data(), static_cast<std::int64_t>(bytes.size()))) {
        file.takePlace(overwrite, keep);
    }
    return file.failure();
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

int putFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes, bool overwrite,
            const NewFile::Keeper& keep)
try {
    if (path.empty()) {
        return ENOENT;
    }
    struct stat existing = {};
    const bool exists = stat(path.c_str(), &existing) == 0;
    if (exists && !overwrite) {
        return EEXIST;
    }
    if (exists && !S_ISREG(existing.st_mode) && !S_ISDIR(existing.st_mode)) {
        return writeDirectly(path, bytes);
    }
    return replaceRegular(path, bytes, overwrite, keep);
} catch (const std::bad_alloc&) {
    return ENOMEM;
}

OSStatus replaceFile(const std::filesystem::path& path, std::span<const std::uint8_t> bytes, bool overwrite)
{
    return statusOf(putFile(path, bytes, overwrite));
}

} // namespace volvelle
