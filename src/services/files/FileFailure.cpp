#include "services/files/FileFailure.h"

#include "base/Text.h"
#include "services/files/NewFile.h"
#include "services/files/SafeFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace volvelle {

namespace {

std::string protectionOf(const std::filesystem::path& file)
{
    std::error_code none;
    const bool isProtected = std::filesystem::exists(file, none) && !isWritable(file);
    return isProtected ? "it is write-protected" : "its folder is not writable";
}

} // namespace

std::string writeFailureReason(const std::filesystem::path& file, int error)
{
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return "its folder does not exist";
    case EISDIR:
        return "it is a folder";
    case EEXIST:
        return "it is there already";
    case ELOOP:
        return "its links lead in a circle";
    case ENAMETOOLONG:
        return "its name is too long";
    case ENOSPC:
    case EDQUOT:
        return "the device is full";
    case EFBIG:
        return "it would be larger than allowed";
    case EACCES:
    case EPERM:
        return protectionOf(file);
    case EROFS:
        return "the device is read-only";
    case EINTR:
        return "it was ended before it was done";
    case EPIPE:
    case ETIMEDOUT:
        return "nobody reads it";
    default:
        return std::system_category().message(error);
    }
}

std::string writeFailure(const std::filesystem::path& file, int error)
{
    return concat("'", file.string(), "' could not be written: ", writeFailureReason(file, error), ".");
}

std::string readObstacle(const std::filesystem::path& file)
{
    struct stat found = {};
    const bool isFound = stat(file.c_str(), &found) == 0;
    if (isFound && S_ISDIR(found.st_mode)) {
        return writeFailureReason(file, EISDIR);
    }
    if (isFound && faccessat(AT_FDCWD, file.c_str(), R_OK, AT_EACCESS) == 0) {
        return std::cmp_greater(found.st_size, greatestFile) ? "it is larger than 2 GiB" : "";
    }
    return errno == EACCES || errno == EPERM ? "it may not be read" : writeFailureReason(file, errno);
}

} // namespace volvelle
