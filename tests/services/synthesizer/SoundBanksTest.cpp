#include "services/synthesizer/SoundBanks.h"

#include "tests/services/synthesizer/TinyBank.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/ProjectFolders.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <utility>

namespace volvelle::test {

namespace {

std::vector<std::uint8_t> bytesOf(const std::string& text)
{
    return {text.begin(), text.end()};
}

class SoundBanksTest : public testing::Test {
protected:
    void map(const std::string& json) const { resources.write("banks.json", bytesOf(json)); }

    SoundBanks banks() const { return {resources.path, {user.path, shared.path}}; }

    TemporaryFolder resources;
    TemporaryFolder user;
    TemporaryFolder shared;
};

} // namespace

TEST_F(SoundBanksTest, FindsABankInTheResourcesFirst)
{
    map(R"({"soundfont1.sf2": ["Other.sf2"]})");
    shared.write("Other.sf2", {1});
    const auto own = resources.write("soundfont1.sf2", {1});
    EXPECT_EQ(banks().find("soundfont1", "sf2"), own);
}

TEST_F(SoundBanksTest, FindsTheFirstCandidateThatIsInstalled)
{
    map(R"({"soundfont2.sf2": ["Absent.sf2", "There.sf2", "Later.sf2"]})");
    user.write("Later.sf2", {1});
    const auto there = shared.write("There.sf2", {1});
    EXPECT_EQ(banks().find("soundfont2", "sf2"), there);
}

TEST_F(SoundBanksTest, PrefersTheUsersFolder)
{
    map(R"({"soundfont2.sf2": ["There.sf2"]})");
    shared.write("There.sf2", {1});
    const auto own = user.write("There.sf2", {1});
    EXPECT_EQ(banks().find("soundfont2", "sf2"), own);
}

TEST_F(SoundBanksTest, FindsNothingUnderANameThatIsNotInTheMap)
{
    map(R"({"soundfont1.sf2": ["There.sf2"]})");
    shared.write("There.sf2", {1});
    EXPECT_EQ(banks().find("soundfont3", "sf2"), std::nullopt);
    EXPECT_EQ(banks().find("soundfont1", "dls"), std::nullopt);
}

TEST_F(SoundBanksTest, NeverLeavesTheFoldersByAName)
{
    map(R"({"soundfont1.sf2": ["../There.sf2", "/etc/passwd", 7]})");
    EXPECT_EQ(banks().find("soundfont1", "sf2"), std::nullopt);
    EXPECT_EQ(banks().find("../resources/soundfont1", "sf2"), std::nullopt);
}

TEST_F(SoundBanksTest, LogsAMapThatCannotBeRead)
{
    ConsoleCapture console;
    map("{\"soundfont1.sf2\": [");
    EXPECT_EQ(banks().find("soundfont1", "sf2"), std::nullopt);
    EXPECT_EQ(console.take(),
              (std::vector<std::string>{"The map of sound banks \"" +
                                        (resources.path / "banks.json").string() + "\" cannot be read."}));
}

TEST_F(SoundBanksTest, TakesTheBuiltInBankAsTheBest)
{
    map(R"({"best": ["There.sf2"]})");
    shared.write("There.sf2", {1});
    const auto own = resources.write("gs_instruments.dls", {1});
    EXPECT_EQ(banks().best(), own);
}

TEST_F(SoundBanksTest, TakesTheBestOfTheMapWithoutABuiltInBank)
{
    map(R"({"best": ["Good.sf2", "Lesser.sf2"]})");
    shared.write("Large.sf2", {1, 2, 3});
    const auto lesser = shared.write("Lesser.sf2", {1});
    EXPECT_EQ(banks().best(), lesser);
}

TEST_F(SoundBanksTest, TakesTheLargestSoundFontWithoutAMap)
{
    user.write("Small.sf2", {1});
    user.write("Not a bank.wav", {1, 2, 3, 4});
    const auto large = shared.write("Large.sf3", {1, 2});
    EXPECT_EQ(banks().best(), large);
    EXPECT_EQ(SoundBanks(std::nullopt, {shared.path}).best(), large);
}

TEST_F(SoundBanksTest, HasNoBestBankWhereThereIsNone)
{
    EXPECT_EQ(banks().best(), std::nullopt);
    EXPECT_EQ(SoundBanks(std::nullopt, {shared.path / "absent"}).best(), std::nullopt);
}

TEST_F(SoundBanksTest, LooksInTheUsersDataFolders)
{
    shared.write("data/soundfonts/a.sf2", {1});
    const char* before = std::getenv("XDG_DATA_HOME");
    const std::string kept = before == nullptr ? "" : before;
    setenv("XDG_DATA_HOME", (shared.path / "data").c_str(), 1);
    const auto folders = soundFontFolders();
    if (before == nullptr) {
        unsetenv("XDG_DATA_HOME");
    } else {
        setenv("XDG_DATA_HOME", kept.c_str(), 1);
    }
    ASSERT_FALSE(folders.empty());
    EXPECT_EQ(folders.front(), shared.path / "data/soundfonts");
}

TEST(SoundBanksMap, NamesOneFileForEachNumberedBank)
{
    ConsoleCapture console;
    const std::array<std::pair<const char*, const char*>, 5> numbered{
        {{"soundfont1", "FluidR3_GM.sf2"},
         {"soundfont2", "GeneralUser-GS.sf2"},
         {"soundfont6", "MuseScore_General_Lite.sf3"},
         {"soundfont7", "OPL-3_FM_128M.sf2"},
         {"soundfont9", "FluidR3Mono_GM.sf3"}}};
    for (const auto& [name, file] : numbered) {
        const TemporaryFolder fonts;
        const SoundBanks banks(sourceFolder() / "resources", {fonts.path});
        for (const char* other :
             {"TimGM6mb.sf2", "default-GM.sf2", "default-GM.sf3", "MuseScore_General.sf3"}) {
            fonts.write(other, {1});
        }
        for (const auto& [otherName, otherFile] : numbered) {
            if (file != otherFile) {
                fonts.write(otherFile, {1});
            }
        }
        EXPECT_EQ(banks.find(name, "sf2"), std::nullopt) << name;
        const auto bank = fonts.write(file, {1});
        EXPECT_EQ(banks.find(name, "sf2"), bank) << name;
    }
    EXPECT_TRUE(console.take().empty());
}

TEST(SoundBanksMap, TheBankOfTheResourcesIsNoOther)
{
    const TemporaryFolder fonts;
    const SoundBanks banks(sourceFolder() / "resources", {fonts.path});
    const auto bank = fonts.write("TimGM6mb.sf2", {1});
    EXPECT_EQ(banks.find("gs_instruments", "dls"), std::nullopt);
    EXPECT_EQ(banks.best(), bank);
}

} // namespace volvelle::test
