#include "base/Extensions.h"
#include "base/Paths.h"
#include "base/Text.h"
#include "tests/support/ConsoleCapture.h"
#include "tests/support/ScriptedRandomSource.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <numeric>
#include <set>

namespace volvelle {
namespace {

namespace fs = std::filesystem;

using Lines = std::vector<std::string>;
using test::ConsoleCapture;

class ExtensionsFolderTest : public testing::Test {
protected:
    test::TemporaryFolder temporary;
    fs::path folder = temporary.path;
};

TEST_F(ExtensionsFolderTest, IsThereAlready)
{
    ConsoleCapture capture;
    EXPECT_TRUE(ensureDirectoryExists(folder));
    EXPECT_TRUE(fs::is_empty(folder));
    EXPECT_TRUE(capture.take().empty());
}

TEST_F(ExtensionsFolderTest, MayBeAPlainFile)
{
    const fs::path file = folder / "file";
    std::ofstream(file) << "x";
    EXPECT_TRUE(ensureDirectoryExists(file));
    EXPECT_TRUE(fs::is_regular_file(file));
}

TEST_F(ExtensionsFolderTest, IsMadeWithAllItsParents)
{
    ConsoleCapture capture;
    EXPECT_TRUE(ensureDirectoryExists(folder / "a" / "b" / "c"));
    EXPECT_TRUE(fs::is_directory(folder / "a" / "b" / "c"));
    EXPECT_TRUE(capture.take().empty());
}

TEST_F(ExtensionsFolderTest, CannotBeMadeBelowAFile)
{
    ConsoleCapture capture;
    std::ofstream(folder / "file") << "x";
    const fs::path wanted = folder / "file" / "below";
    EXPECT_FALSE(ensureDirectoryExists(wanted));
    EXPECT_EQ(capture.take(), Lines{concat("ensureDirectoryExists() : ERROR: Creating required directory '",
                                           wanted.string(), "' failed: Not a directory")});
}

class ExtensionsPathsOfTheUserTest : public ExtensionsFolderTest {
protected:
    void SetUp() override
    {
        ExtensionsFolderTest::SetUp();
        keep("HOME", home);
        keep("XDG_CONFIG_HOME", configuration);
        unsetenv("XDG_CONFIG_HOME");
    }

    void TearDown() override
    {
        bringBack("HOME", home);
        bringBack("XDG_CONFIG_HOME", configuration);
        setResourcesFolder(std::nullopt);
        ExtensionsFolderTest::TearDown();
    }

private:
    static void keep(const char* name, std::optional<std::string>& value)
    {
        if (const char* found = std::getenv(name)) {
            value = found;
        }
    }

    static void bringBack(const char* name, const std::optional<std::string>& value)
    {
        if (value) {
            setenv(name, value->c_str(), 1);
        } else {
            unsetenv(name);
        }
    }

    std::optional<std::string> home;
    std::optional<std::string> configuration;
};

TEST_F(ExtensionsPathsOfTheUserTest, AreFoundAndLogged)
{
    ConsoleCapture capture;
    setenv("HOME", folder.c_str(), 1);
    setResourcesFolder(folder / "resources");
    getPaths();
    EXPECT_EQ(documentsURL, folder / "Documents/Volvelle");
    EXPECT_EQ(resourcesURL, folder / "resources");
    EXPECT_EQ(capture.take(),
              (Lines{concat("AudioUnitViewController::getPaths() : Audio Unit's documents path is: ",
                            (folder / "Documents/Volvelle").string()),
                     concat("AudioUnitViewController::getPaths() : Audio Unit's resources path is: ",
                            (folder / "resources").string())}));
    EXPECT_FALSE(sharedURLAudio);
    EXPECT_FALSE(sharedURLMIDI);
}

TEST_F(ExtensionsPathsOfTheUserTest, AreMissedAndLogged)
{
    ConsoleCapture capture;
    unsetenv("HOME");
    getPaths();
    EXPECT_FALSE(documentsURL);
    EXPECT_FALSE(resourcesURL);
    EXPECT_EQ(capture.take(),
              (Lines{"AudioUnitViewController::getPaths() : ERROR: Audio Unit's documents path is nil.",
                     "AudioUnitViewController::getPaths() : ERROR: Audio Unit's resources path is nil."}));
}

TEST(ExtensionsStringValue, HasTheHighestByteFirst)
{
    EXPECT_EQ(stringValue(0x61626364), "abcd");
    EXPECT_EQ(stringValue(0x6D696469), "midi");
    EXPECT_EQ(stringValue(0), std::string(4, '\0'));
}

TEST(ExtensionsStringValue, DecodesMacRoman)
{
    EXPECT_EQ(stringValue(0x808A8E9F), "Ääéü");
    EXPECT_EQ(stringValue(0xA0A9A7AA), "†©ß™");
    EXPECT_EQ(stringValue(0xDBD0D1F0), "€–—\uF8FF");
    EXPECT_EQ(stringValue(0xCAFFFEFB), "\u00A0\u02C7\u02DB\u02DA");
}

TEST(ExtensionsStringValue, DecodesTheWholeUpperHalfOfMacRoman)
{
    const std::string characters =
        "ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ"
        "–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
    std::string decoded;
    for (std::uint32_t byte = 0x80; byte < 0x100; byte += 4) {
        decoded += stringValue(byte << 24U | (byte + 1) << 16U | (byte + 2) << 8U | (byte + 3));
    }
    EXPECT_EQ(decoded, characters);
}

TEST(ExtensionsStringValue, IsDefinedForAllBytes)
{
    std::set<std::string> characters;
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        const std::string value = stringValue(byte * 0x01010101U);
        EXPECT_NE(value, "FAIL");
        EXPECT_EQ(value.size() % 4, 0U);
        characters.insert(value.substr(0, value.size() / 4));
    }
    EXPECT_EQ(characters.size(), 256U);
}

TEST(ExtensionsUniqueName, StandsBehindItsPrefix)
{
    const std::string name = uniqueName("a");
    EXPECT_EQ(name.substr(0, 2), "a-");
    EXPECT_GT(name.size(), 10U);
    EXPECT_EQ(uniqueName("").front(), '-');
}

TEST(ExtensionsUniqueName, IsDrawnFromTheRandomSource)
{
    std::vector<int> bytes(32);
    std::iota(bytes.begin(), bytes.end(), 0xF0 - 16);
    test::ScriptedRandomSource source({bytes.begin(), bytes.begin() + 16});
    EXPECT_EQ(uniqueName(std::nullopt).substr(0, 32), "E0E1E2E3E4E5E6E7E8E9EAEBECEDEEEF");
    EXPECT_EQ(source.ranges, (std::vector<std::pair<int, int>>(16, {0, 255})));
}

TEST(ExtensionsUniqueName, HasNoDashOfItsOwn)
{
    const std::string name = uniqueName(std::nullopt);
    EXPECT_EQ(name.find('-'), std::string::npos);
    EXPECT_FALSE(name.empty());
}

TEST(ExtensionsUniqueName, ComesOnceOnly)
{
    std::set<std::string> names;
    for (int i = 0; i < 1000; ++i) {
        names.insert(uniqueName(std::nullopt));
    }
    EXPECT_EQ(names.size(), 1000U);
}

TEST(ExtensionsCapitals, StandAsTheyAre)
{
    const std::string names =
        "Kabul, Tirana, Algiers, Andorra la Vella, Luanda, St. John's, Buenos Aires, Yerevan, "
        "Canberra, Vienna, Baku, Nassau, Manama, Dhaka, Bridgetown, Minsk, Brussels, Belmopan, "
        "Porto Novo, Thimphu, Sucre, Sarajevo, Gaborone, Brasilia, Bandar Seri Begawan, Sofia, "
        "Ouagadougou, Bujumbura, Phnom Penh, Yaoundé, Ottawa, Praia, Bangui, N'Djamena, Santiago, "
        "Beijing, Bogota, Moroni, San José, Zagreb, Havana, Nicosia, Prague, Kinshasa, Copenagen, "
        "Djibouti, Roseau, Santo Domingo, Dili, Quito, Cairo, San Salvador, Malabo, Asmara, "
        "Tallinn, Mbabane, Addis Ababa, Suva, Helsinki, Paris, Libreville, Banjul, Tbilisi, "
        "Berlin, Accra, Athens, St. George's, Guatemala City, Conakry, Bissau, Georgetown, "
        "Port-au-Prince, Tegucigalpa, Budapest, Reykjavík, New Delhi, Jakarta, Tehran, Baghdad, "
        "Dublin, Jerusalem, Rome, Yamoussoukro, Kingston, Tokyo, Amman, Astana, Nairobi, Tarawa, "
        "Pyongyang, Seoul, Pristina, Kuwait City, Bishkek, Vientiane, Riga, Beirut, Maseru, "
        "Monrovia, Tripoli, Vaduz, Vilnius, Luxembourg, Antananarivo, Lilongwe, Kuala Lumpur, "
        "Malé, Bamako, Valletta, Majuro, Nouakchott, Port Louis, Mexico City, Palikir, Chisinau, "
        "Monaco, Ulaanbaatar, Podgorica, Rabat, Maputo, Naypyidaw, Windhoek, Yaren, Kathmandu, "
        "Amsterdam, Wellington, Managua, Niamey, Abuja, Skopje, Oslo, Muscat, Islamabad, Melekeok, "
        "East Jerusalem, Panama City, Port Moresby, Asunción, Lima, Manila, Warsaw, Lisbon, Doha, "
        "Brazzaville, Bucharest, Moscow, Kigali, Basseterre, Castries, Kingstown, Apia, "
        "San Marino, São Tomé, Riyadh, Dakar, Belgrade, Victoria, Freetown, Singapore, "
        "Bratislava, Ljubljana, Honiara, Mogadishu, Pretoria, Juba, Madrid, "
        "Sri Jayawardenapura Kotte, Khartoum, Paramaribo, Stockholm, Bern, Damascus, Taipei, "
        "Dushanbe, Dodoma, Bangkok, Lomé, Nukualofa, Port of Spain, Tunis, Ankara, Ashgabat, "
        "Funafuti, Kampala, Kiev, Abu Dhabi, London, Washington D.C., Montevideo, Tashkent, "
        "Port Vila, Vatican City, Caracas, Hanoi, Sana'a, Lusaka, Harare";
    std::string joined;
    for (const std::string_view name : capitals) {
        joined += joined.empty() ? "" : ", ";
        joined += name;
    }
    EXPECT_EQ(joined, names);
    EXPECT_EQ(capitals.size(), 197U);
}

} // namespace
} // namespace volvelle
