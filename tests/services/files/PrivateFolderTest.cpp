#include "services/files/PrivateFolder.h"

#include "base/PendingFiles.h"
#include "services/files/SafeFile.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>

namespace volvelle {
namespace {

namespace fs = std::filesystem;

TEST(PrivateFolder, IsForItsUserAloneAndGoesWithAllThatIsInIt)
{
    fs::path place;
    {
        const PrivateFolder folder;
        const PrivateFolder other;
        place = folder.path();
        EXPECT_NE(place, other.path());
        EXPECT_EQ(fs::status(place).permissions(), fs::perms::owner_all);
        EXPECT_EQ(replaceFile(place / "a", {}, false), noErr);
    }
    EXPECT_FALSE(fs::exists(place));
}

TEST(PrivateFolder, CanBeRemovedWithItsFilesBeforeASuddenEnd)
{
    const PrivateFolder folder;
    for (int i = 0; i < 200; ++i) {
        EXPECT_EQ(replaceFile(folder.path() / (std::string(200, 'a') + std::to_string(i)), {}, false), noErr);
    }
    removePendingFiles();
    EXPECT_FALSE(fs::exists(folder.path()));
}

TEST(PrivateFolder, GivesItsPlaceAmongThePendingFilesBack)
{
    for (int i = 0; i < 20; ++i) {
        const PrivateFolder folder;
    }
    const PrivateFolder folder;
    removePendingFiles();
    EXPECT_FALSE(fs::exists(folder.path()));
}

} // namespace
} // namespace volvelle
