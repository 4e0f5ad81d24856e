#include "audio/SoundBankFinder.h"

#include "base/Paths.h"
#include "tests/audio/TemporaryFolder.h"

namespace volvelle::test {
namespace {

class SoundBankFinderTest : public testing::Test {
protected:
    SoundBankFinderTest() { setResourcesFolder(folder.path); }

    ~SoundBankFinderTest() override { setResourcesFolder(std::nullopt); }

    TemporaryFolder folder;
};

TEST_F(SoundBankFinderTest, ABankInTheResourcesIsFoundByNameAndExtension)
{
    const auto bank = folder.put("gs_instruments.dls", "RIFF");
    EXPECT_EQ(soundBankInResources("gs_instruments", "dls"), bank);
    EXPECT_EQ(soundBankInResources("gs_instruments", "sf2"), std::nullopt);
    EXPECT_EQ(soundBankInResources("soundfont1", "dls"), std::nullopt);
}

TEST_F(SoundBankFinderTest, AFolderIsNoBank)
{
    std::filesystem::create_directory(folder.path / "soundfont1.sf2");
    EXPECT_EQ(soundBankInResources("soundfont1", "sf2"), std::nullopt);
}

} // namespace
} // namespace volvelle::test
