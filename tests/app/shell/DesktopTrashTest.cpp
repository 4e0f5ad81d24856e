#include "app/shell/DesktopTrash.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>

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
