#include "services/files/FileRights.h"

#include <array>
#include <linux/limits.h>
#include <string_view>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace volvelle {

namespace {

constexpr std::string_view accessList = "system.posix_acl_access";
constexpr std::string_view ofUsers = "user.";
constexpr mode_t withoutGroup = 07707;

bool copyAttribute(int descriptor, const std::filesystem::path& from, const char* name)
{
    std::array<char, XATTR_SIZE_MAX> value{};
    const ssize_t length = getxattr(from.c_str(), name, value.data(), value.size());
    return length >= 0 && fsetxattr(descriptor, name, value.data(), static_cast<std::size_t>(length), 0) == 0;
}

// With an access list the bits of the group are its mask.
bool takeAttributes(int descriptor, const std::filesystem::path& from)
{
    std::array<char, XATTR_LIST_MAX> names{};
    const ssize_t length = listxattr(from.c_str(), names.data(), names.size());
    bool hasAllRights = true;
    for (ssize_t at = 0; at < length;) {
        const char* const name = names.data() + at;
        const std::string_view known(name);
        if (known == accessList || known.starts_with(ofUsers)) {
            const bool isTaken = copyAttribute(descriptor, from, name);
            hasAllRights = hasAllRights && (isTaken || known != accessList);
        }
        at += static_cast<ssize_t>(known.size()) + 1;
    }
    return hasAllRights;
}

bool takeGroup(int descriptor, const struct stat& from)
{
    struct stat own = {};
    constexpr auto same = static_cast<uid_t>(-1);
    return (fstat(descriptor, &own) == 0 && own.st_uid == from.st_uid && own.st_gid == from.st_gid) ||
           fchown(descriptor, from.st_uid, from.st_gid) == 0 || own.st_gid == from.st_gid ||
           fchown(descriptor, same, from.st_gid) == 0;
}

} // namespace

bool takeRights(int descriptor, const std::filesystem::path& other)
{
    struct stat existing = {};
    if (stat(other.c_str(), &existing) != 0) {
        return true;
    }
    const bool hasGroup = takeGroup(descriptor, existing);
    const mode_t mode = existing.st_mode & 07777U;
    const bool isModeSet = fchmod(descriptor, hasGroup ? mode : mode & withoutGroup) == 0;
    return isModeSet && (takeAttributes(descriptor, other) || fchmod(descriptor, mode & withoutGroup) == 0);
}

} // namespace volvelle
