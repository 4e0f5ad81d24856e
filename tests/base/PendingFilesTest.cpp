#include "base/PendingFiles.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace volvelle {

namespace {

// A folder with files "0" to "8"; what was noted is forgotten at the end.
class PendingFiles : public testing::Test {
protected:
    PendingFiles()
    {
        for (int i = 0; i < 9; ++i) {
            std::ofstream(path(i)) << i;
        }
    }

    ~PendingFiles() override
    {
        for (int place = 0; place < 8; ++place) {
            forgetPendingFile(place);
        }
    }

    std::string path(int number) const { return (folder / std::to_string(number)).string(); }

    // The numbers of the files that stand there.
    std::string standing() const
    {
        std::string result;
        for (int i = 0; i < 9; ++i) {
            result += std::filesystem::exists(path(i)) ? std::to_string(i) : "";
        }
        return result;
    }

    void rememberEight() const
    {
        for (int i = 0; i < 8; ++i) {
            EXPECT_EQ(rememberPendingFile(path(i)), i);
        }
    }

    test::TemporaryFolder temporary;
    std::filesystem::path folder = temporary.path;
};

TEST_F(PendingFiles, EightAreNotedAndTheNinthIsNot)
{
    rememberEight();
    EXPECT_EQ(rememberPendingFile(path(8)), -1);
    removePendingFiles();
    EXPECT_EQ(standing(), "8");
}

TEST_F(PendingFiles, APlaceThatWasGivenBackIsGivenAgain)
{
    for (const int place : {0, 3, 7}) {
        rememberEight();
        forgetPendingFile(place);
        EXPECT_EQ(rememberPendingFile(path(8)), place);
        EXPECT_EQ(rememberPendingFile(path(place)), -1);
        for (int i = 0; i < 8; ++i) {
            forgetPendingFile(i);
        }
    }
}

TEST_F(PendingFiles, WhatWasForgottenIsNotRemoved)
{
    rememberEight();
    for (const int place : {0, 7}) {
        forgetPendingFile(place);
    }
    removePendingFiles();
    EXPECT_EQ(standing(), "078");
}

TEST_F(PendingFiles, AFolderGoesWithItsFilesAndWithoutWhatItLeadsTo)
{
    for (const char* const name : {"flat", "deep", "deep/in"}) {
        std::filesystem::create_directory(folder / name);
        std::ofstream(folder / name / "a") << name;
        std::ofstream(folder / name / ".b") << name;
    }
    std::filesystem::create_directory_symlink(folder / "deep/in", folder / "flat/link");
    std::filesystem::create_directory_symlink(folder / "deep/in", folder / "link");
    EXPECT_EQ(rememberPendingFile((folder / "flat").string()), 0);
    EXPECT_EQ(rememberPendingFile((folder / "link").string()), 1);
    removePendingFiles();
    EXPECT_FALSE(std::filesystem::exists(folder / "flat"));
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(folder / "link")));
    EXPECT_TRUE(std::filesystem::exists(folder / "deep/in/a"));
    EXPECT_EQ(standing(), "012345678");
}

TEST_F(PendingFiles, AFolderGoesWithTheFoldersInItToADepth)
{
    for (const int depth : {pendingFolderDepth, pendingFolderDepth + 1}) {
        const std::filesystem::path top = folder / ("top" + std::to_string(depth));
        std::filesystem::path inner = top;
        for (int i = 1; i < depth; ++i) {
            inner /= "a folder";
        }
        std::filesystem::create_directories(inner);
        std::ofstream(inner / "a") << depth;
        std::ofstream(top / "a") << depth;
        EXPECT_GE(rememberPendingFile(top.string()), 0);
        removePendingFiles();
        EXPECT_EQ(std::filesystem::exists(top), depth > pendingFolderDepth);
        EXPECT_FALSE(std::filesystem::exists(top / "a"));
    }
}

TEST_F(PendingFiles, ANameOfALivingProcessOfAnotherUserIsNotLeftBehind)
{
    const auto look = [] {
        const bool isOther = geteuid() != 0 || setuid(65534) == 0;
        return isOther && !isLeftBehind(".volvelle-1-0.new", ".new") ? 7 : 8;
    };
    EXPECT_EXIT(_exit(look()), testing::ExitedWithCode(7), "");
}

TEST_F(PendingFiles, ForgettingNoPlaceIsNothing)
{
    rememberEight();
    forgetPendingFile(-1);
    EXPECT_EQ(rememberPendingFile(path(8)), -1);
}

TEST_F(PendingFiles, ALongerPathInAPlaceLeavesNothingOfTheOneBefore)
{
    EXPECT_EQ(rememberPendingFile(path(1) + "-and-more"), 0);
    forgetPendingFile(0);
    EXPECT_EQ(rememberPendingFile(path(1)), 0);
    removePendingFiles();
    EXPECT_EQ(standing(), "02345678");
}

TEST_F(PendingFiles, APathIsNotedUpToTheLengthThatTheSystemTakes)
{
    EXPECT_EQ(rememberPendingFile(std::string(PATH_MAX, 'a')), -1);
    EXPECT_EQ(rememberPendingFile(std::string(PATH_MAX - 1, 'a')), 0);
}

TEST_F(PendingFiles, NoTwoTemporaryNamesAreEqual)
{
    const std::string first = temporaryFileName(".mid");
    EXPECT_NE(temporaryFileName(".mid"), first);
    const std::string start = ".volvelle-" + std::to_string(getpid()) + "-";
    EXPECT_EQ(first.substr(0, start.size()), start);
    EXPECT_EQ(first.substr(first.size() - 4), ".mid");
}

TEST_F(PendingFiles, ANameIsLeftBehindByAProcessThatIsNoMore)
{
    const pid_t ended = fork();
    if (ended == 0) {
        _exit(0);
    }
    ASSERT_EQ(waitpid(ended, nullptr, 0), ended);
    const std::string start = ".volvelle-" + std::to_string(ended);
    EXPECT_TRUE(isLeftBehind(start + "-0.new", ".new"));
    EXPECT_TRUE(isLeftBehind(start + "-17.new", ".new"));
    for (const std::string& name :
         {temporaryFileName(".new"), start + "-0.tmp", start + "-.new", start + ".new", start + "-a.new",
          start + "-0new", std::string(".volvelle--0.new"), std::string(".volvelle-0-0.new"),
          start + "-0.new.new", std::string(".volvelle-99999999999-0.new"), "a" + start + "-0.new",
          std::string()}) {
        EXPECT_FALSE(isLeftBehind(name, ".new")) << name;
    }
}

TEST_F(PendingFiles, ANameThatThisProcessHasNotGivenIsOfAnEarlierOne)
{
    const std::string name = temporaryFileName("");
    const auto numberAt = name.rfind('-') + 1;
    const std::string start = name.substr(0, numberAt);
    const int given = std::stoi(name.substr(numberAt));
    EXPECT_FALSE(isLeftBehind(start + std::to_string(given) + ".new", ".new"));
    EXPECT_TRUE(isLeftBehind(start + std::to_string(given + 1) + ".new", ".new"));
    temporaryFileName("");
    EXPECT_FALSE(isLeftBehind(start + std::to_string(given + 1) + ".new", ".new"));
}

} // namespace

} // namespace volvelle
