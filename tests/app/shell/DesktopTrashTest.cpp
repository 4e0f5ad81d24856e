#include "app/shell/DesktopTrash.h"

#include "app/control/LocalizedName.h"
#include "tests/services/files/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace volvelle::test {
namespace {

struct DesktopTrashTest : testing::Test {
    // Beside the trash, so that both stand on one device.
    TemporaryFolder folder;
    DesktopTrash trash;
};

TEST_F(DesktopTrashTest, TakesAFileAndGivesItBack)
{
    const auto file = folder.write("Grün & %.mid", "content");
    const auto place = trash.take(file);
    ASSERT_TRUE(place) << place.error();
    EXPECT_TRUE(folder.names().empty());
    EXPECT_TRUE(std::filesystem::exists(*place));
    const auto info =
        place->parent_path().parent_path() / "info" / (place->filename().string() + ".trashinfo");
    EXPECT_TRUE(std::filesystem::exists(info));
    EXPECT_TRUE(trash.restore(*place, file));
    EXPECT_EQ(folder.names(), std::vector<std::string>{"Grün & %.mid"});
    EXPECT_FALSE(std::filesystem::exists(info));
}

TEST_F(DesktopTrashTest, TakesNamesOfAnyBytesAndLengthAndGivesThemBack)
{
    for (const std::string& name : {std::string("a\xE9 %.mid"), std::string(251, 'x') + ".mid"}) {
        for (int round = 0; round < 2; ++round) {
            const auto file = folder.write(name, "content");
            const auto place = trash.take(file);
            ASSERT_TRUE(place) << place.error();
            EXPECT_TRUE(folder.names().empty());
            const auto info =
                place->parent_path().parent_path() / "info" / (place->filename().string() + ".trashinfo");
            EXPECT_TRUE(std::filesystem::exists(info)) << info;
            const auto other = trash.take(folder.write(name, "other"));
            ASSERT_TRUE(other);
            EXPECT_NE(*other, *place);
            EXPECT_TRUE(trash.restore(*place, file));
            EXPECT_EQ(std::filesystem::file_size(file), 7U);
            EXPECT_FALSE(std::filesystem::exists(info));
            std::filesystem::remove(file);
        }
    }
}

TEST_F(DesktopTrashTest, MakesTheTrashWhereNoneIsYetAndNeverInTheWorkingFolder)
{
    TemporaryFolder fresh;
    TemporaryFolder working;
    const auto before = std::filesystem::current_path();
    const std::string data = std::getenv("XDG_DATA_HOME");
    setenv("XDG_DATA_HOME", (fresh.path / ".local/share").c_str(), 1);
    std::filesystem::current_path(working.path);
    const auto place = trash.take(folder.write("Slow tide.mid", "content"));
    std::filesystem::current_path(before);
    setenv("XDG_DATA_HOME", data.c_str(), 1);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->parent_path(), fresh.path / ".local/share/Trash/files");
    EXPECT_TRUE(working.names().empty());
}

// Another device than the user's trash is on, with a folder there that goes in the end.
struct DesktopTrashOtherDeviceTest : DesktopTrashTest {
    DesktopTrashOtherDeviceTest()
    {
        struct stat here{};
        struct stat there{};
        const bool isOther = stat(folder.path.c_str(), &here) == 0 && stat("/dev/shm", &there) == 0 &&
                             here.st_dev != there.st_dev && access("/dev/shm", W_OK) == 0;
        if (isOther) {
            std::filesystem::create_directory(other);
        }
    }

    ~DesktopTrashOtherDeviceTest() override
    {
        std::filesystem::remove_all(other);
        removeEmpty(ownTrash);
    }

    // What a trash leaves of itself.
    static void removeEmpty(const std::filesystem::path& trashFolder)
    {
        std::error_code kept;
        for (const char* part : {"files", "info", ""}) {
            std::filesystem::remove(trashFolder / part, kept);
        }
    }

    std::filesystem::path write(const std::string& name) const
    {
        std::ofstream(other / name) << "content";
        return other / name;
    }

    const std::filesystem::path other = std::filesystem::path("/dev/shm") / folder.path.filename();
    const std::filesystem::path ownTrash = "/dev/shm/.Trash-" + std::to_string(getuid());
};

TEST_F(DesktopTrashOtherDeviceTest, TheTrashThatAllShareThereIsUsed)
{
    namespace fs = std::filesystem;
    const fs::path shared = "/dev/shm/.Trash";
    if (!fs::exists(other) || fs::exists(shared)) {
        GTEST_SKIP() << "there is no second device, or it has a trash";
    }
    fs::create_directory(shared);
    fs::permissions(shared, fs::perms::all | fs::perms::sticky_bit);
    const fs::path own = shared / std::to_string(getuid());
    const auto file = write("Slow tide.mid");
    const auto place = trash.take(file);
    EXPECT_TRUE(place);
    if (place) {
        EXPECT_EQ(place->parent_path(), own / "files");
        EXPECT_TRUE(trash.restore(*place, file));
        EXPECT_EQ(fs::file_size(file), 7U);
        EXPECT_TRUE(fs::is_empty(own / "info"));
    }
    removeEmpty(own);
    fs::remove(shared);
}

TEST_F(DesktopTrashOtherDeviceTest, WhatComesFromAnotherDeviceIsTakenAndGivenBack)
{
    if (!std::filesystem::exists(other)) {
        GTEST_SKIP() << "there is no second device";
    }
    for (const char* name : {"Slow tide.mid", "a\xE9.mid"}) {
        const auto file = write(name);
        const auto place = trash.take(file);
        ASSERT_TRUE(place) << place.error();
        EXPECT_FALSE(std::filesystem::exists(file));
        const auto info =
            place->parent_path().parent_path() / "info" / (place->filename().string() + ".trashinfo");
        EXPECT_TRUE(std::filesystem::exists(info)) << info;
        EXPECT_TRUE(trash.restore(*place, file));
        EXPECT_EQ(std::filesystem::file_size(file), 7U);
        EXPECT_FALSE(std::filesystem::exists(info));
        EXPECT_FALSE(std::filesystem::exists(*place));
    }
}

TEST_F(DesktopTrashTest, TakesAFileOutOfAStickyFolder)
{
    namespace fs = std::filesystem;
    const fs::path sticky = folder.path / "sticky";
    fs::create_directory(sticky);
    fs::permissions(sticky, fs::perms::all | fs::perms::sticky_bit);
    for (const char* name : {"sticky/Slow tide.mid", "sticky/a\xE9.mid"}) {
        const auto file = folder.write(name, "content");
        const auto place = trash.take(file);
        ASSERT_TRUE(place) << place.error();
        EXPECT_FALSE(fs::exists(file));
        EXPECT_TRUE(trash.restore(*place, file));
        EXPECT_EQ(fs::file_size(file), 7U);
    }
}

TEST_F(DesktopTrashTest, LeavesAFileAndNothingElseWhereTheTrashMadeByHandCannotBe)
{
    namespace fs = std::filesystem;
    TemporaryFolder fresh;
    const std::string data = std::getenv("XDG_DATA_HOME");
    fresh.write("Trash/files", "no folder");
    setenv("XDG_DATA_HOME", fresh.path.c_str(), 1);
    const auto file = folder.write("a\xE9.mid", "content");
    const auto place = trash.take(file);
    setenv("XDG_DATA_HOME", data.c_str(), 1);
    ASSERT_FALSE(place);
    EXPECT_EQ(place.error(), "'aé' could not be moved to the trash.");
    EXPECT_EQ(fs::file_size(file), 7U);
    EXPECT_TRUE(fs::is_empty(fresh.path / "Trash/info"));
}

// A note of where a file comes from has some forty bytes at least.
TEST_F(DesktopTrashTest, GivesAFileBackThatTheTrashHasNoRoomToNote)
{
    namespace fs = std::filesystem;
    for (const rlim_t room : {0U, 4U, 20U}) {
        for (const char* name : {"Slow tide.mid", "a\xE9.mid"}) {
            TemporaryFolder fresh;
            const std::string data = std::getenv("XDG_DATA_HOME");
            setenv("XDG_DATA_HOME", fresh.path.c_str(), 1);
            const auto file = folder.write(name, "content");
            const auto place = [&] {
                const FileSizeLimit limit(room);
                return trash.take(file);
            }();
            setenv("XDG_DATA_HOME", data.c_str(), 1);
            ASSERT_FALSE(place) << room;
            EXPECT_EQ(place.error(),
                      "'" + shownName(file) +
                          "' could not be moved to the trash: it would be larger than allowed.");
            EXPECT_EQ(fs::file_size(file), 7U);
            EXPECT_TRUE(fs::is_empty(fresh.path / "Trash/files"));
            EXPECT_TRUE(fs::is_empty(fresh.path / "Trash/info"));
        }
    }
}

TEST_F(DesktopTrashTest, LeavesAFileThatHasTheNameByNow)
{
    const auto file = folder.write("Slow tide.mid", "old");
    const auto place = trash.take(file);
    ASSERT_TRUE(place);
    folder.write("Slow tide.mid", "new");
    const auto restored = trash.restore(*place, file);
    ASSERT_FALSE(restored);
    EXPECT_EQ(restored.error(),
              "There is already an idea called 'Slow tide'; the other one stays in the trash.");
    EXPECT_EQ(std::filesystem::file_size(file), 3U);
    EXPECT_TRUE(std::filesystem::exists(*place));
}

TEST_F(DesktopTrashTest, TellsWhatItCannotTakeOrGiveBack)
{
    const auto missing = folder.path / "Slow tide.mid";
    const auto place = trash.take(missing);
    ASSERT_FALSE(place);
    EXPECT_EQ(place.error(), "'Slow tide' could not be moved to the trash.");
    const auto restored = trash.restore(folder.path / "gone", missing);
    ASSERT_FALSE(restored);
    EXPECT_EQ(restored.error(), "'Slow tide' could not be brought back from the trash.");
}

} // namespace
} // namespace volvelle::test
