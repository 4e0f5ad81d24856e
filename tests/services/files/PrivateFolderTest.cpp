#include "services/files/PrivateFolder.h"

#include "services/files/SafeFile.h"

#include <filesystem>
#include <gtest/gtest.h>

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

} // namespace
} // namespace volvelle
