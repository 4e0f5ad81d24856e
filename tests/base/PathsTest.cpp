#include "base/Paths.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace volvelle {
namespace {

namespace fs = std::filesystem;

class Paths : public testing::Test {
protected:
    void SetUp() override
    {
        unsetenv("XDG_CONFIG_HOME");
        unsetenv("XDG_STATE_HOME");
        setenv("HOME", home.c_str(), 1);
    }

    void TearDown() override { setResourcesFolder(std::nullopt); }

    void writeUserDirs(const std::string& text)
    {
        fs::create_directories(home / ".config");
        std::ofstream(home / ".config/user-dirs.dirs") << text;
    }

    test::TemporaryFolder temporary;
    fs::path home = temporary.path;
};

TEST_F(Paths, DocumentsAreAFolderOfTheProgramsBelowHome)
{
    EXPECT_EQ(documentsFolder(), home / "Documents" / "Volvelle");
}

TEST_F(Paths, TheUsersConfigurationNamesTheDocumentsFolder)
{
    writeUserDirs("# comment\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
    EXPECT_EQ(documentsFolder(), home / "Dokumente" / "Volvelle");
    writeUserDirs("XDG_DOCUMENTS_DIR=\"/srv/papers\"\n");
    EXPECT_EQ(documentsFolder(), fs::path("/srv/papers/Volvelle"));
    writeUserDirs("XDG_DOCUMENTS_DIR=\"\"\n");
    EXPECT_EQ(documentsFolder(), home / "Documents" / "Volvelle");
}

TEST_F(Paths, ABrokenLineAboveAGoodOneIsPassedOver)
{
    for (const char* broken :
         {"XDG_DOCUMENTS_DIR=\"$HOME/Half", "XDG_DOCUMENTS_DIR=\"", "XDG_DOCUMENTS_DIR=$HOME/Bare",
          "xdg_documents_dir=\"$HOME/Small\"", " XDG_DOCUMENTS_DIR=\"$HOME/Indented\"", "\"", "", "# \""}) {
        writeUserDirs(std::string(broken) + "\nXDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n");
        EXPECT_EQ(documentsFolder(), home / "Dokumente" / "Volvelle") << broken;
    }
}

TEST_F(Paths, TheFirstGoodLineCounts)
{
    writeUserDirs("XDG_DOCUMENTS_DIR=\"/one\"\nXDG_DOCUMENTS_DIR=\"/two\"\n");
    EXPECT_EQ(documentsFolder(), fs::path("/one/Volvelle"));
}

TEST_F(Paths, WithoutAHomeThereIsNoDocumentsFolder)
{
    unsetenv("HOME");
    EXPECT_EQ(documentsFolder(), std::nullopt);
}

TEST_F(Paths, TheStateIsAFolderOfTheProgramsBelowHomeOrWhereTheUserSaysSo)
{
    EXPECT_EQ(stateFolder(), home / ".local/state/volvelle");
    setenv("XDG_STATE_HOME", "relative", 1);
    EXPECT_EQ(stateFolder(), home / ".local/state/volvelle");
    setenv("XDG_STATE_HOME", "/srv/states", 1);
    EXPECT_EQ(stateFolder(), fs::path("/srv/states/volvelle"));
    unsetenv("XDG_STATE_HOME");
    unsetenv("HOME");
    EXPECT_EQ(stateFolder(), std::nullopt);
}

TEST_F(Paths, AChosenResourcesFolderComesFirst)
{
    EXPECT_EQ(resourcesFolders().size(), resourcesFolder() ? 1U : 0U);
    setResourcesFolder(home / "mine");
    EXPECT_EQ(resourcesFolders().front(), home / "mine");
    EXPECT_EQ(resourcesFolder(), home / "mine");
}

} // namespace
} // namespace volvelle
