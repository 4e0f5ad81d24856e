#include "services/files/FileRights.h"

#include "services/files/MoveFile.h"
#include "services/files/SafeFile.h"
#include "tests/support/Bytes.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace volvelle::test {

namespace {

// Others may read and write by group and list: the owner rw, user 65534 r, the group r, mask rw, others
// nothing.
constexpr std::string_view listed("\2\0\0\0\1\0\6\0\377\377\377\377\2\0\4\0\376\377\0\0"
                                  "\4\0\4\0\377\377\377\377\20\0\6\0\377\377\377\377"
                                  "\40\0\0\0\377\377\377\377",
                                  44);

class FileRights : public testing::Test {
protected:
    FileRights() { folder.write("a.mid", "old"); }

    struct stat found() const
    {
        struct stat result = {};
        EXPECT_EQ(stat(file.c_str(), &result), 0);
        return result;
    }

    std::string attribute(const char* name) const
    {
        std::array<char, 100> value{};
        const ssize_t length = getxattr(file.c_str(), name, value.data(), value.size());
        return {value.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
    }

    void save() const { EXPECT_EQ(putFile(file, hex("01"), true), 0); }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path / "a.mid";
};

TEST_F(FileRights, AFileThatIsSavedKeepsItsMode)
{
    for (const mode_t mode : {0600U, 0640U, 0664U, 0755U}) {
        ASSERT_EQ(chmod(file.c_str(), mode), 0);
        save();
        EXPECT_EQ(found().st_mode & 07777U, mode);
    }
}

TEST_F(FileRights, AFileThatIsSavedKeepsItsAttributes)
{
    ASSERT_EQ(setxattr(file.c_str(), "user.tags", "drums", 5, 0), 0);
    ASSERT_EQ(setxattr(file.c_str(), "user.rating", "5", 1, 0), 0);
    save();
    EXPECT_EQ(attribute("user.tags"), "drums");
    EXPECT_EQ(attribute("user.rating"), "5");
    const std::filesystem::path moved = folder.path / "b.mid";
    EXPECT_EQ(moveFileByCopying(file, moved), 0);
    file = moved;
    EXPECT_EQ(attribute("user.tags"), "drums");
}

TEST_F(FileRights, AFileThatIsSavedKeepsItsAccessList)
{
    ASSERT_EQ(setxattr(file.c_str(), "system.posix_acl_access", listed.data(), listed.size(), 0), 0);
    save();
    EXPECT_EQ(attribute("system.posix_acl_access"), listed);
    EXPECT_EQ(found().st_mode & 07777U, 0660U);
}

TEST_F(FileRights, AFileThatIsSavedKeepsItsOwnerAndGroup)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only the superuser gives files away";
    }
    ASSERT_EQ(chown(file.c_str(), 65534, 29), 0);
    ASSERT_EQ(chmod(file.c_str(), 0660), 0);
    save();
    EXPECT_EQ(found().st_uid, 65534U);
    EXPECT_EQ(found().st_gid, 29U);
    EXPECT_EQ(found().st_mode & 07777U, 0660U);
}

// In a process of its own, which may give the file away to nobody.
TEST_F(FileRights, AGroupThatCannotBeGivenGivesItsRightsToNoOther)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "only the superuser gives files away";
    }
    ASSERT_EQ(chown(file.c_str(), 65534, 29), 0);
    ASSERT_EQ(chmod(file.c_str(), 0660), 0);
    ASSERT_EQ(chown(folder.path.c_str(), 65534, 65534), 0);
    const pid_t child = fork();
    if (child == 0) {
        const bool isNobody = setgid(65534) == 0 && setuid(65534) == 0;
        _exit(isNobody && putFile(file, {}, true) == 0 ? 0 : 1);
    }
    int ended = 1;
    ASSERT_EQ(waitpid(child, &ended, 0), child);
    ASSERT_EQ(ended, 0);
    EXPECT_EQ(found().st_uid, 65534U);
    EXPECT_EQ(found().st_gid, 65534U);
    EXPECT_EQ(found().st_mode & 07777U, 0600U);
}

TEST_F(FileRights, WhereThereIsNoOtherNothingChanges)
{
    const int opened = open(file.c_str(), O_WRONLY | O_CLOEXEC);
    const mode_t before = found().st_mode;
    EXPECT_TRUE(takeRights(opened, folder.path / "none"));
    EXPECT_EQ(found().st_mode, before);
    close(opened);
    EXPECT_FALSE(takeRights(opened, file));
    EXPECT_EQ(errno, EBADF);
}

} // namespace

} // namespace volvelle::test
