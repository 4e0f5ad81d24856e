#include "services/files/MoveFile.h"

#include "services/files/SafeFile.h"
#include "tests/services/files/FileSizeLimit.h"
#include "tests/support/Bytes.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <filesystem>
#include <gtest/gtest.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

using Move = int (*)(const fs::path&, const fs::path&);

class MoveFileTest : public testing::TestWithParam<Move> {
protected:
    static Bytes contentOf(const fs::path& path)
    {
        Bytes bytes;
        EXPECT_EQ(readFile(path, bytes), noErr) << path;
        return bytes;
    }

    TemporaryFolder folder;
    fs::path from = folder.write("a", "old");
    fs::path to = folder.path / "b";
};

TEST_P(MoveFileTest, AMovedFileHasItsBytesAndItsRightsUnderTheNewNameAlone)
{
    fs::permissions(from, fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(GetParam()(from, to), 0);
    EXPECT_EQ(folder.names(), Lines{"b"});
    EXPECT_EQ(contentOf(to), hex("\"old\""));
    EXPECT_EQ(fs::status(to).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_P(MoveFileTest, WhatHasTheNameAlreadyStays)
{
    folder.write("b", "other");
    EXPECT_EQ(GetParam()(from, to), EEXIST);
    EXPECT_EQ(contentOf(from), hex("\"old\""));
    EXPECT_EQ(contentOf(to), hex("\"other\""));
    EXPECT_EQ(folder.names(), (Lines{"a", "b"}));
}

TEST_P(MoveFileTest, AFileOrAFolderThatIsNotThereIsTold)
{
    EXPECT_EQ(GetParam()(folder.path / "none", to), ENOENT);
    EXPECT_EQ(GetParam()(from, folder.path / "none" / "b"), ENOENT);
    EXPECT_EQ(folder.names(), Lines{"a"});
}

INSTANTIATE_TEST_SUITE_P(ByNameAndByCopying, MoveFileTest, testing::Values(&moveFile, &moveFileByCopying));

TEST_P(MoveFileTest, ANameThatIsTooLongIsTold)
{
    EXPECT_EQ(GetParam()(from, folder.path / std::string(256, 'x')), ENAMETOOLONG);
    EXPECT_EQ(folder.names(), Lines{"a"});
}

TEST_F(MoveFileTest, ACopyThatFailsLeavesEverythingAsItWas)
{
    {
        const FileSizeLimit limit(1);
        EXPECT_EQ(moveFileByCopying(from, to), EFBIG);
    }
    EXPECT_EQ(folder.names(), Lines{"a"});
    EXPECT_EQ(contentOf(from), hex("\"old\""));
}

TEST_F(MoveFileTest, AFileMovesToAnotherDevice)
{
    std::error_code none;
    if (!fs::is_directory("/dev/shm", none)) {
        GTEST_SKIP() << "there is no second device";
    }
    const fs::path far = fs::path("/dev/shm") / folder.path.filename();
    EXPECT_EQ(moveFile(from, far), 0);
    EXPECT_EQ(contentOf(far), hex("\"old\""));
    EXPECT_EQ(folder.names(), Lines{});
    EXPECT_EQ(moveFile(far, to), 0);
    EXPECT_FALSE(fs::exists(far));
    EXPECT_EQ(contentOf(to), hex("\"old\""));
}

} // namespace

} // namespace volvelle::test
