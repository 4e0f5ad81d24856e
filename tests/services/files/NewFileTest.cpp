#include "services/files/NewFile.h"

#include "base/PendingFiles.h"
#include "services/files/SafeFile.h"
#include "tests/services/files/FileSizeLimit.h"
#include "tests/support/AllocationCount.h"
#include "tests/support/Bytes.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace volvelle::test {

namespace {

Bytes contentOf(const std::filesystem::path& path)
{
    Bytes bytes;
    EXPECT_EQ(readFile(path, bytes), noErr);
    return bytes;
}

class NewFiles : public testing::Test {
protected:
    // A file in a folder whose path has that many bytes; replaced by "02", and what it was called then.
    std::string replaced(std::size_t lengthOfFolder, const std::string& name) const
    {
        std::filesystem::path place = folder.path;
        while (place.native().size() + 1 < lengthOfFolder) {
            const std::size_t left = lengthOfFolder - place.native().size() - 1;
            place /= std::string(left > 200 ? 100 : left, 'd');
        }
        std::filesystem::create_directories(place);
        std::string called = "none";
        EXPECT_EQ(putFile(place / name, hex("01"), false), 0);
        EXPECT_EQ(putFile(place / name, hex("02"), true,
                          [&](const std::filesystem::path& aside) {
                              EXPECT_EQ(contentOf(aside), hex("01"));
                              called = aside.filename().string();
                              return true;
                          }),
                  0);
        EXPECT_EQ(contentOf(place / name), hex("02"));
        EXPECT_TRUE(std::filesystem::remove(place / name));
        EXPECT_TRUE(std::filesystem::is_empty(place));
        return called.substr(called.find_first_not_of("0123456789-", std::string(".volvelle-").size()));
    }

    // Out of a pipe, when the file takes its place and not before.
    static void expectThatABCComesAtOnce(NewFile& file, int reader)
    {
        std::array<char, 8> read{};
        EXPECT_EQ(::read(reader, read.data(), read.size()), -1);
        EXPECT_TRUE(file.takePlace());
        EXPECT_EQ(::read(reader, read.data(), read.size()), 3);
        EXPECT_STREQ(read.data(), "abc");
    }

    TemporaryFolder folder;
    std::filesystem::path path = folder.path / "a.mid";
};

TEST_F(NewFiles, ANewFileReadsWhatItWroteAndTellsItsLength)
{
    const Bytes bytes = hex("01 02 03 04 05");
    NewFile file;
    ASSERT_TRUE(file.create(path));
    EXPECT_EQ(file.length(), 0);
    EXPECT_TRUE(file.write(bytes.data(), 5));
    EXPECT_EQ(file.length(), 5);
    EXPECT_EQ(file.seek(-2, SEEK_END), 3);
    Bytes read(9);
    EXPECT_EQ(file.read(read.data(), 9), 2);
    EXPECT_EQ(Bytes(read.begin(), read.begin() + 2), hex("04 05"));
    EXPECT_EQ(file.failure(), 0);
}

TEST_F(NewFiles, ANewFileKeepsItsFirstFailureUntilItBeginsAnew)
{
    NewFile file;
    ASSERT_TRUE(file.create(path));
    EXPECT_EQ(file.seek(-1, SEEK_SET), -1);
    EXPECT_EQ(file.failure(), EINVAL);
    EXPECT_FALSE(file.write("a", 1));
    EXPECT_EQ(file.length(), 0);
    EXPECT_FALSE(file.takePlace());
    EXPECT_EQ(file.failure(), EINVAL);
    EXPECT_EQ(file.read(nullptr, 1), -1);
    EXPECT_EQ(file.length(), -1);
    EXPECT_EQ(folder.names(), Lines{});
    ASSERT_TRUE(file.create(path));
    EXPECT_EQ(file.failure(), 0);
    EXPECT_TRUE(file.takePlace());
    EXPECT_EQ(folder.names(), Lines{"a.mid"});
}

TEST_F(NewFiles, ANewFileForAFolderIsRefused)
{
    NewFile file;
    EXPECT_FALSE(file.create(folder.path));
    EXPECT_EQ(file.failure(), EISDIR);
}

TEST_F(NewFiles, ANewFileForAPipeIsCopiedThereOnceItIsComplete)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
    NewFile file;
    ASSERT_TRUE(file.create("/dev/fd/" + std::to_string(ends[1])));
    EXPECT_TRUE(file.write("axc", 3));
    EXPECT_EQ(file.seek(1, SEEK_SET), 1);
    EXPECT_TRUE(file.write("b", 1));
    expectThatABCComesAtOnce(file, ends[0]);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(NewFiles, ANewFileForADescriptorIsCopiedThereOnceItIsComplete)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
    NewFile file;
    EXPECT_FALSE(file.create(folder.path));
    ASSERT_TRUE(file.createFor(ends[1]));
    EXPECT_EQ(file.failure(), 0);
    EXPECT_TRUE(file.write("abc", 3));
    expectThatABCComesAtOnce(file, ends[0]);
    close(ends[0]);
    ASSERT_TRUE(file.createFor(-1));
    {
        const FileSizeLimit limit(3);
        EXPECT_FALSE(file.write("four", 4));
    }
    EXPECT_TRUE(file.failedAside());
    close(ends[1]);
    EXPECT_EQ(folder.names(), Lines{});
}

TEST_F(NewFiles, ANewFileForADeviceTakesItsPlaceOnlyWhereItMayBeReplaced)
{
    NewFile file;
    ASSERT_TRUE(file.create("/dev/null"));
    EXPECT_FALSE(file.takePlace(false));
    EXPECT_EQ(file.failure(), EEXIST);
    ASSERT_TRUE(file.create("/dev/full"));
    EXPECT_TRUE(file.write("a", 1));
    EXPECT_FALSE(file.takePlace());
    EXPECT_EQ(file.failure(), ENOSPC);
}

TEST_F(NewFiles, ANewFileGivesItsPlaceAmongThePendingFilesBack)
{
    for (int i = 0; i < 20; ++i) {
        NewFile file;
        ASSERT_TRUE(file.create(path));
        ASSERT_TRUE(file.create(path));
        EXPECT_EQ(folder.names().size(), 1U);
    }
    NewFile file;
    ASSERT_TRUE(file.create(path));
    removePendingFiles();
    EXPECT_EQ(folder.names(), Lines{});
}

TEST_F(NewFiles, ANewFileCanBeRemovedBeforeASuddenEnd)
{
    NewFile file;
    ASSERT_TRUE(file.create(path));
    EXPECT_EQ(folder.names().size(), 1U);
    removePendingFiles();
    EXPECT_EQ(folder.names(), Lines{});
}

TEST_F(NewFiles, MemoryThatDoesNotSufficeIsAFailure)
{
    int refused = 0;
    for (const std::filesystem::path& target : {path, std::filesystem::path("/dev/null")}) {
        for (std::size_t first = 0; first < 100; ++first) {
            NewFile file;
            const AllocationCount count(first);
            refused += file.create(target) ? 0 : 1;
            EXPECT_EQ(file.failure() == ENOMEM, count.count > first) << first;
        }
    }
    EXPECT_GE(refused, 2);
    EXPECT_EQ(folder.names(), Lines{});
}

using NewFilesDeathTest = NewFiles;

// The signal comes from the kernel within the call that makes the file.
TEST_F(NewFilesDeathTest, ASignalAsSoonAsANewFileIsThereLeavesNothingBehind)
{
    EXPECT_EXIT(
        {
            std::signal(SIGTERM, [](int) {
                removePendingFiles();
                _exit(7);
            });
            const int watch = inotify_init1(0);
            const bool isWatched =
                watch >= 0 && inotify_add_watch(watch, folder.path.c_str(), IN_CREATE) >= 0 &&
                fcntl(watch, F_SETSIG, SIGTERM) == 0 && fcntl(watch, F_SETOWN, getpid()) == 0 &&
                fcntl(watch, F_SETFL, O_ASYNC) == 0;
            NewFile file;
            file.create(path);
            _exit(isWatched ? 8 : 9);
        },
        testing::ExitedWithCode(7), "");
    EXPECT_EQ(folder.names(), Lines{});
}

TEST_F(NewFiles, ANewFileThatCannotBeMadeIsNoPendingFile)
{
    for (int i = 0; i < 20; ++i) {
        NewFile file;
        EXPECT_FALSE(file.create(folder.path / "none" / "a.mid"));
    }
    const int place = rememberPendingFile((folder.path / "a").string());
    EXPECT_EQ(place, 0);
    forgetPendingFile(place);
}

TEST_F(NewFiles, ATemporaryFolderThatIsNotThereIsDoneWithout)
{
    const char* const before = std::getenv("TMPDIR");
    const std::string kept = before != nullptr ? before : "";
    setenv("TMPDIR", (folder.path / "none").c_str(), 1);
    NewFile file;
    EXPECT_TRUE(file.create("/dev/null"));
    EXPECT_TRUE(file.write("a", 1));
    EXPECT_TRUE(file.takePlace());
    setenv("TMPDIR", folder.path.c_str(), 1);
    EXPECT_TRUE(file.create("/dev/null"));
    EXPECT_EQ(folder.names(), Lines{});
    if (before != nullptr) {
        setenv("TMPDIR", kept.c_str(), 1);
    } else {
        unsetenv("TMPDIR");
    }
}

TEST_F(NewFiles, AFailureBesideADeviceIsToldFromOneOfTheDevice)
{
    NewFile file;
    ASSERT_TRUE(file.create("/dev/full"));
    {
        const FileSizeLimit limit(3);
        EXPECT_FALSE(file.write("four", 4));
    }
    EXPECT_EQ(file.failure(), EFBIG);
    EXPECT_TRUE(file.failedAside());
    ASSERT_TRUE(file.create("/dev/full"));
    EXPECT_FALSE(file.failedAside());
    EXPECT_TRUE(file.write("a", 1));
    EXPECT_FALSE(file.takePlace());
    EXPECT_FALSE(file.failedAside());
}

TEST_F(NewFiles, ANewFileThatTookItsPlaceIsNotRemoved)
{
    const Bytes bytes = hex("01");
    NewFile file;
    ASSERT_TRUE(file.create(path));
    EXPECT_TRUE(file.write(bytes.data(), 1));
    EXPECT_TRUE(file.takePlace(false));
    removePendingFiles();
    EXPECT_EQ(contentOf(path), bytes);
}

TEST_F(NewFiles, AFileThatAppearsMeanwhileIsNotReplaced)
{
    NewFile file;
    ASSERT_TRUE(file.create(path));
    EXPECT_EQ(replaceFile(path, hex("01"), false), noErr);
    EXPECT_FALSE(file.takePlace(false));
    EXPECT_EQ(file.failure(), EEXIST);
    EXPECT_EQ(contentOf(path), hex("01"));
    EXPECT_EQ(folder.names().size(), 1U);
}

// Another program takes the place while the one that is replaced is looked at.
TEST_F(NewFiles, WhatTookThePlaceMeanwhileGetsAFreeNameBesideWhatGoesBack)
{
    const auto other = [this](const std::filesystem::path&) {
        EXPECT_EQ(putFile(folder.path / "other", hex("03"), false), 0);
        std::filesystem::rename(folder.path / "other", path);
        return false;
    };
    folder.write("a.mid", "1");
    folder.write("a 2.mid", "2");
    EXPECT_EQ(putFile(path, hex("02"), true, other), ECANCELED);
    EXPECT_EQ(contentOf(path), hex("31"));
    EXPECT_EQ(contentOf(folder.path / "a 2.mid"), hex("32"));
    EXPECT_EQ(contentOf(folder.path / "a 3.mid"), hex("03"));
    EXPECT_EQ(folder.names().size(), 3U);
}

TEST_F(NewFiles, AFileIsReplacedAlsoWhereItsNameHasNoRoomBesideAnother)
{
    EXPECT_EQ(replaced(3975, std::string(100, 'n') + ".mid"), ".replaced");
    EXPECT_EQ(replaced(200, std::string(100, 'n') + ".mid"), std::string(100, 'n') + ".mid.replaced");
}

TEST_F(NewFiles, AFileIsReplacedAlsoWhereThereIsRoomForATemporaryNameAlone)
{
    constexpr std::size_t moreDigits = 2;
    const std::size_t length = PATH_MAX - 2 - temporaryFileName(".tmp").size() - moreDigits;
    EXPECT_EQ(replaced(length, "a.mid"), ".tmp");
}

} // namespace

} // namespace volvelle::test
