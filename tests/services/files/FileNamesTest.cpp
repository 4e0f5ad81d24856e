#include "services/files/FileNames.h"
#include "base/Text.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace volvelle::test {

namespace {

namespace fs = std::filesystem;

TEST(FileNames, AFileWithoutAFolderStandsInThisOne)
{
    EXPECT_EQ(folderOf("a/b/c.mid"), "a/b");
    EXPECT_EQ(folderOf("/c.mid"), "/");
    EXPECT_EQ(folderOf("c.mid"), ".");
    EXPECT_EQ(folderOf(""), ".");
}

TEST(FileNames, AnEndingStandsInSmallLetters)
{
    EXPECT_EQ(fileEnding("a/B.C.MiD"), ".mid");
    EXPECT_EQ(fileEnding("a.b/c"), "");
    EXPECT_EQ(fileEnding(".mid"), "");
    EXPECT_EQ(fileEnding("a."), ".");
    EXPECT_EQ(fileEnding("a.\xC4"), ".\xC4");
}

TEST(FileNames, AMIDIFileHasOneOfTwoEndings)
{
    EXPECT_TRUE(isMIDIFileName("a.mid"));
    EXPECT_TRUE(isMIDIFileName("a.MIDI"));
    EXPECT_FALSE(isMIDIFileName("a.mid.txt"));
    EXPECT_FALSE(isMIDIFileName("amid"));
    EXPECT_FALSE(isMIDIFileName(".mid"));
}

TEST(FileNames, ANumberStandsBeforeTheEnding)
{
    EXPECT_EQ(withNumber("a/b.mid", 1), "a/b 1.mid");
    EXPECT_EQ(withNumber("b", 12), "b 12");
    EXPECT_EQ(numberedFile("a/b.mid", 1), "a/b.mid");
    EXPECT_EQ(numberedFile("a/b.mid", 2), "a/b 2.mid");
    EXPECT_EQ(numberedFile("a.b.mid", 3), "a.b 3.mid");
}

TEST(FileNames, ANumberedNameIsNoLongerThanAFileSystemTakes)
{
    EXPECT_EQ(withNumber("a/" + std::string(251, 'x') + ".mid", 12),
              "a/" + std::string(248, 'x') + " 12.mid");
    EXPECT_EQ(withNumber(std::string(248, 'x') + "é.mid", 2), std::string(248, 'x') + " 2.mid");
    EXPECT_EQ(withNumber(std::string(247, 'x') + "éxx.mid", 2), std::string(247, 'x') + "é 2.mid");
    EXPECT_EQ(withNumber(std::string(247, 'x') + "\xA9xxx.mid", 2), std::string(247, 'x') + "\xA9x 2.mid");
    const std::string none(252, 'x');
    EXPECT_EQ(withNumber(none + ".mid", 2), none + " 2.mid");
}

TEST(FileNames, ANameIsTakenByWhateverHasIt)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(isNameTaken(folder.path / "a"));
    EXPECT_TRUE(isNameTaken(folder.path));
    EXPECT_TRUE(isNameTaken(folder.write("a", "")));
    fs::create_symlink("nowhere", folder.path / "b");
    EXPECT_TRUE(isNameTaken(folder.path / "b"));
    EXPECT_FALSE(isNameTaken(folder.path / "a/b"));
}

TEST(FileNames, APipeADeviceAndAnOpenDescriptorAreStreams)
{
    const TemporaryFolder folder;
    const fs::path file = folder.write("a", "");
    ASSERT_EQ(mkfifo((folder.path / "pipe").c_str(), 0600), 0);
    const int descriptor = open(file.c_str(), O_RDONLY);
    EXPECT_TRUE(isStream(folder.path / "pipe"));
    EXPECT_TRUE(isStream("/dev/null"));
    EXPECT_TRUE(isStream(concat("/dev/fd/", descriptor)));
    close(descriptor);
    EXPECT_FALSE(isStream(concat("/dev/fd/", descriptor)));
    EXPECT_FALSE(isStream("/dev/volvelle"));
    EXPECT_FALSE(isStream("/dev/shm"));
    EXPECT_FALSE(isStream(file));
}

} // namespace

} // namespace volvelle::test
